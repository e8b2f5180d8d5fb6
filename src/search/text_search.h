// Searches whose condition is tested on each distinct text by itself: contains, ends with,
// wildcards.
#pragma once

#include <memory>

#include "search/scan_kernels.h"
#include "storage/family.h"

namespace qxe {

class TFilter;
class TSetArray;

/// A test of one text.
struct TextCondition {
  bool (*matches)(const char* text, const char* pattern) = nullptr;
  const char* pattern = "";
  /// Bytes that stand in every text that matches, so that many texts can be looked through as one;
  /// "" when no such bytes are known.
  const char* piece = "";
  bool negate = false;
  /// Bytes with which every text that matches begins: only those texts are tested.
  const char* prefix = "";
};

/// A new set of those rows of `source`, which is not empty, whose text meets the condition, with
/// the source's attribute block.
std::unique_ptr<TSetArray> search_texts(const TSetArray& source, const TFilter& filter,
                                        const TextCondition& condition);

/// Entries of an ascending list that begin with `prefix`.
ValueRange with_prefix(const ValueView<TStrArray>& list, const char* prefix);

/// A test of a text costs far more than a row of a scan, so fewer of them are worth a worker.
long texts_per_worker();

}  // namespace qxe
