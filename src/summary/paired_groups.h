// Groups of a join whose rows have several partners on both sides. Each side is first reduced to
// runs: the rows of one key that are alike in all dimensions of that side. Then runs are paired key
// by key, and a pair counts for as many join rows as its runs have rows, multiplied. So the work
// grows with the rows of the sides and the pairs of runs, not with the join's rows.
#pragma once

#include <array>
#include <vector>

#include "summary/grouping.h"
#include "summary/join_positions.h"

namespace qxe {

/// A dimension of a join's summary. Those of side 0 come first.
struct PairedDimension {
  int side;
  const PositionColumn* column;
};

class PairedGroups : public Grouping {
 public:
  /// `rows` join rows in all, with key numbers below `keys`. Throws QX_ERROR_JOIN_SUM_ROWS for too
  /// many pairs of runs and QX_ERROR_JOIN_SUM_SIZE for too many groups.
  PairedGroups(const std::array<const SidePositions*, kSides>& sides, int keys, int rows,
               std::vector<PairedDimension> dimensions);

  /// Of a measure of side `side`.
  void set_measure_side(int side) { measure_side_ = side; }
  Reduced reduce(const Wanted& wanted) override;
  Block<int> dimension(int d) const override;

 private:
  struct Runs {
    int count = 0;
    std::vector<int> of_position;  // from 0
    std::vector<int> rows;         // by run, as are:
    std::vector<int> groups;       // numbers from 1
    std::vector<int> key_starts;   // by key and one more: the first of its runs
    std::vector<int> group_rows;   // by group, from 1: the first position that has it
  };

  Runs find_runs(const SidePositions& positions, int side, int keys) const;
  long count_pairs(int keys) const;
  void pair_runs(int keys);
  void number_groups();
  template <class Measure>
  Reduced sum_up(const Measure& measure) const;

  const int rows_;
  const std::vector<PairedDimension> dimensions_;
  Runs runs_[kSides];
  std::vector<int> pairs_[kSides];  // the run of each side, by pair
  std::vector<int> group_of_;       // by pair, from 0
  std::vector<int> first_pair_;     // by group
  int measure_side_ = 0;
};

}  // namespace qxe
