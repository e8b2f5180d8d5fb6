// The rows of a join's set in groups, by columns of either side, without the join's pairs.
#pragma once

#include <vector>

#include "summary/join_positions.h"
#include "summary/sum_request.h"

namespace qxe {

class PairedGroups;

/// A column of a join that a summary reads.
struct JoinColumn {
  const TFilter* source;
  int side;
  std::string name;
  bool null_test = false;  // only whether there is a value: its numbers are 0 and 1

  std::unique_ptr<PositionColumn> at = nullptr;  // where the summary reads it
};

/// The column under the join's own name. Throws QX_ERROR_NO_FILTER.
JoinColumn find_join_column(TJoinTable& join, int filter);

class JoinGroups : NonCopyable {
 public:
  /// Passes over the rows once; `asked` belongs to the measures. The join's parents have no
  /// pending values. Throws what PairedGroups does.
  JoinGroups(const TJoinTable& join, const JoinSet& set, std::vector<JoinColumn> dimensions,
             std::vector<JoinColumn> measures, std::vector<SumMeasure> asked);
  ~JoinGroups();

  /// Their counts; its dimensions are those of the master first.
  const Grouping& grouping() const { return *grouping_; }
  int groups() const { return grouping_->groups(); }
  /// The columns by position: their names and value lists are those of the result.
  const TFilter& dimension(size_t i) const { return dimensions_[i].at->filter(); }
  const TFilter& measure(size_t i) const { return measures_[i].at->filter(); }
  const SumMeasure& asked(size_t i) const { return asked_[i]; }
  /// The value number that each group has in a dimension, from element 1 on.
  Block<int> dimension_numbers(size_t i) const;
  /// What was asked of a measure. Each measure can be taken once.
  Reduced take_reduced(size_t measure);

 private:
  std::vector<size_t> ranked_dimensions() const;
  void place_columns(const JoinPositions& master, const JoinPositions& slave);
  void group_lines();
  void group_pairs(const TJoinTable& join, const JoinSet& set);
  Reduced reduce(size_t measure);

  std::vector<JoinColumn> dimensions_;
  std::vector<JoinColumn> measures_;
  std::vector<SumMeasure> asked_;
  std::unique_ptr<LinePositions> lines_;
  std::unique_ptr<GroupedRows> rows_;
  std::unique_ptr<Grouping> grouping_;
  PairedGroups* pairs_ = nullptr;  // the grouping, if it is one
  Reduced first_;                  // of the first measure
};

}  // namespace qxe
