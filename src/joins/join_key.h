// The key of a join: one numbering of the values of both sides.
//
// A single column per side is not copied: its value numbers are translated by a map from value
// number to key number, and where a side's value list is the common one, not even that. The row
// pointers stay those of the parent table, which cannot be edited meanwhile. Several columns per
// side become row pointers of the join's own: each distinct combination is numbered, from 1, by its
// place among those of both sides.
#pragma once

#include <memory>
#include <vector>

#include "joins/join_set.h"
#include "storage/filters.h"

namespace qxe {

/// The key columns of one side, of tables without pending values, and the set that is joined.
struct KeySide {
  std::vector<const TFilter*> columns;
  const TSetArray* rows;
};

class JoinKey : NonCopyable {
 public:
  static constexpr int kFilterID = 10000;

  /// Both sides have the same number of columns, at least one, of the same types.
  JoinKey(const KeySide& master, const KeySide& slave);
  /// Reads the filters of both sides as SaveFilters has written them.
  explicit JoinKey(SectionReader& reader);
  void SaveFilters(SectionWriter& writer);

  /// Key numbers are below this.
  int size() const { return size_; }
  const KeyNumbers& side(int side) const { return numbers_[side]; }
  /// One side's key as a filter of the join's own, made at first need. Both sides' filters have one
  /// value list, which side 0 owns.
  TFilter& filter(int side);
  /// Makes those filters if the row pointers are still a parent's.
  void own_filters();
  long GetMemSize() const;

 private:
  void number_values(const TFilter& master, const TFilter& slave);
  void number_combinations(const KeySide& master, const KeySide& slave);
  /// Filters of ready columns and one value list.
  void adopt(std::unique_ptr<TIntArray> (&pv)[kSides], std::unique_ptr<TBaseArray> values);
  void merge_columns(std::unique_ptr<TIntArray> (&pv)[kSides], TBaseArray& values0,
                     TBaseArray& values1);

  int size_ = 0;
  KeyNumbers numbers_[kSides];
  Block<int> maps_[kSides];
  const TFilter* sources_[kSides] = {};  // whose row pointers the numbers are, until there are own
  std::unique_ptr<TFilter> filters_[kSides];
};

}  // namespace qxe
