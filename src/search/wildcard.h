// Patterns with wildcards, and whether a text matches one.
#pragma once

#include <string>

#include "frame/base/memory.h"

namespace qxe {

/// A pattern: `*` stands for any run of bytes, `?` for one byte, `\` makes a `*`, `?` or `\` behind
/// it plain. A text matches as a whole.
///
/// It is kept in normal form: of each group of `*` and `?` the `?` come first and one `*` last, so
/// that behind a `*` stand known bytes or the end.
class WildCard {
 public:
  /// `multiByte`: whether the pattern is made of characters of the database code, so that their
  /// trailing bytes escape nothing; otherwise of bytes. Throws QX_ERROR_PARAMETER for a `\` before
  /// anything else or at the end.
  WildCard(const char* pattern, int multiByte);

  bool match(const char* text) const;
  const char* normal_form() const { return pattern_.get(); }
  /// The known bytes in front, with which every text that matches begins.
  std::string prefix() const;
  /// The longest run of known bytes, which every text that matches contains; the first of several.
  std::string longest_piece() const;

 private:
  Block<char> pattern_;
};

/// Whether `text` matches `pattern`, in normal form. The time is bounded by the product of their
/// lengths, whatever the stars.
bool wildcard_do_exec(const char* pattern, const char* text);

}  // namespace qxe
