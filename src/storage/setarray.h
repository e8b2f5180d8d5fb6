// Sets: ordered lists of row numbers of one table. Every search, sort and selection makes one.
#pragma once

#include <vector>

#include "storage/array.h"

namespace qxe {

class TFilter;
class TSortedSetArray;
struct RangeTest;

class TSetArray : public TIntArray {
 public:
  using TIntArray::TIntArray;
  ~TSetArray() override;

  /// Same rows, attribute block and name; the copy has no sorted sets.
  TSetArray* CopyArray() override;
  TSetArray* MppCopyArray() override;
  long GetMemSize() const override;

  /// A new set without the elements that are not above 0, order kept.
  std::unique_ptr<TSetArray> CopyWithout0() const;

  void RegisterSortedSet(TSortedSetArray* sorted) { sorted_sets_.push_back(sorted); }
  void UnregisterSortedSet(TSortedSetArray* sorted);
  /// The sorted set built on this set for `filter`, or null.
  TSortedSetArray* GetSortedSet(const TFilter* filter) const;
  /// Deletes that sorted set if there is one.
  void RemoveSortedSet(const TFilter* filter);

  // Searches: defined beside the other searches. All use the worker pool where it helps; the second
  // form of the first says its own name in the ring.
  std::unique_ptr<TSetArray> SearchByValue(TFilter* filter, int ope, const char* v1, const char* v2,
                                           bool negate) const;
  std::unique_ptr<TSetArray> MppSearchByValue(TFilter* filter, int ope, const char* v1,
                                              const char* v2, bool negate) const;
  /// Rows whose value is one of `count` values laid out as an array of the filter's type.
  std::unique_ptr<TSetArray> SearchByNValues(TFilter* filter, int count, const void* values) const;

 private:
  std::vector<TSortedSetArray*> sorted_sets_;  // owned
};

/// The rows of a set in the order of one filter's values, rows with equal values in the set's.
/// Tainted (without data) after an edit of the filter until it is reclaimed.
class TSortedSetArray : public TIntArray {
 public:
  TSortedSetArray() = default;
  ~TSortedSetArray() override;

  long GetMemSize() const override;
  void SaveArray(SectionWriter& writer) override;

  /// Registers with both owners of the link.
  void initialize(TSetArray* set, TFilter* filter);
  /// Drops the data.
  void Taint();
  /// Sorts the set's rows anew if the data are gone. The filter must have no pending values. A
  /// failure leaves it without data.
  void Reclaim();
  bool tainted() const { return data_ == nullptr; }

  TSetArray* set() const { return set_; }
  TFilter* filter() const { return filter_; }
  /// Rows at the head whose value is NULL; 0 for a filter of strings.
  int null_count() const { return null_count_; }

  /// The rows whose value numbers pass, in the filter's order, as a new set with the attribute
  /// block of the set it serves. Not to be called while tainted.
  std::unique_ptr<TSetArray> SearchByValue(const RangeTest& test) const;

 private:
  TSetArray* set_ = nullptr;
  TFilter* filter_ = nullptr;
  int null_count_ = 0;
};

/// A set with room for all rows of `source`, under its name and attribute block; its elements are
/// not yet written.
std::unique_ptr<TSetArray> set_like(const TSetArray& source);

}  // namespace qxe
