// The rows of a set in groups of equal values of some dimensions, and what becomes of a measure in
// each group. There are several ways to find the groups; all number them in the order of their
// values, the first dimension first.
#pragma once

#include <memory>
#include <vector>

#include "storage/filters.h"
#include "summary/group_cell.h"
#include "summary/sum_method.h"
#include "tables/row_list.h"

namespace qxe {

/// What is grouped. Refers to filters of one table without pending values.
struct GroupedRows {
  const TSetArray& set;
  std::vector<TFilter*> dimensions;
  NullMinimum null_minimum;

  int rows() const { return set.FArraySize; }
  /// Combinations of values that can be.
  double cells() const;
};

/// A measure, if any, and what is wanted of it besides the count of rows.
struct Wanted {
  const TFilter* measure = nullptr;
  bool extremes = false;
  bool sum = false;
};

/// Of each group, numbered from 0. Arrays that were not wanted are empty.
struct Reduced {
  Block<int> max;  // value numbers, from element 1 on; see make_row_numbers
  Block<int> min;
  Block<double> sums;
  Block<Numeric> decimal_sums;  // of decimals
};

class Grouping : NonCopyable {
 public:
  virtual ~Grouping() = default;

  /// Passes over all rows. The first call also finds the groups.
  virtual Reduced reduce(const Wanted& wanted) = 0;
  /// The value number that each group has in dimension `d`, from element 1 on.
  virtual Block<int> dimension(int d) const = 0;

  int groups() const { return groups_; }
  const int* counts() const { return counts_.get(); }

 protected:
  int groups_ = 0;
  Block<int> counts_;  // rows of each group
};

/// A cube of all combinations for each worker, whose memory should fit a cache.
std::unique_ptr<Grouping> make_cube(const GroupedRows& source);
/// Rows are first moved into buckets of neighbouring combinations, each of which fits a cache; then
/// one worker sums up each bucket. Sums do not depend on the number of workers.
std::unique_ptr<Grouping> make_bucket_cube(const GroupedRows& source);
/// Rows are sorted; a group is summed up by one worker, so that here, too, the number of workers
/// makes no difference. For combinations that are too many for cubes, or that no int can number,
/// and for little memory.
std::unique_ptr<Grouping> make_sorted_groups(const GroupedRows& source);

/// The way that costs least within the memory that the method's choice has reckoned with.
std::unique_ptr<Grouping> make_grouping(SumMethod method, const GroupedRows& source);

}  // namespace qxe
