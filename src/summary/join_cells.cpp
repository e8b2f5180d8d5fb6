// A summary by handle over a join: groups of its rows are added to their cells.
#include <algorithm>

#include "storage/family.h"
#include "summary/join_groups.h"
#include "summary/summary.h"

namespace qxe {

namespace {

/// Adds what is known of a group to its cell, as far as the cells have arrays for it.
void add_group(const Reduced& groups, size_t group, int rows, int cell, CellArrays& cells) {
  cells.count[cell] += rows;
  if (cells.max != nullptr) cells.max[cell] = std::max(cells.max[cell], groups.max[group + 1]);
  if (cells.min != nullptr) cells.min[cell] = std::min(cells.min[cell], groups.min[group + 1]);
  if (cells.sum != nullptr) cells.sum[cell] += groups.sums[group];
  if (cells.decimal_sum != nullptr) {
    add_decimal(cells.decimal_sum[cell], groups.decimal_sums[group]);
  }
}

}  // namespace

/// The cell of each group; the dimensions are the first ones of the groups.
std::vector<int> TSummary::cells_of(const JoinGroups& groups) const {
  std::vector<int> cells(static_cast<size_t>(groups.groups()));
  for (size_t d = 0; d < dims_.size(); ++d) {
    const SummaryDimension& dimension = dims_[d];
    const Block<int> numbers = groups.dimension_numbers(d);
    for (size_t i = 0; i < cells.size(); ++i) {
      const int number = numbers[i + 1];
      const int category =
          dimension.own_map ? number : dimension.categories[static_cast<size_t>(number)];
      cells[i] += category * dimension.multiplier;
    }
  }
  return cells;
}

/// Rows without a measure are groups of their own, which are left out; strings have no NULL here.
CellArrays TSummary::joined_cells(int mask) {
  auto& join = static_cast<TJoinTable&>(*table_);
  std::vector<JoinColumn> dimensions;
  std::vector<JoinColumn> measures;
  std::vector<SumMeasure> asked;
  for (const SummaryDimension& dimension : dims_) {
    dimensions.push_back(find_join_column(join, dimension.filter));
  }
  const bool has_nulls = measure_ != 0 && filter(measure_).data_type() != QX_DT_STRING;
  if (measure_ != 0) {
    measures.push_back(find_join_column(join, measure_));
    asked.push_back({measures[0].source, mask, -1});
    note_measure(*measures[0].source);
  }
  if (has_nulls) {
    dimensions.push_back(find_join_column(join, measure_));
    dimensions.back().null_test = true;
  }
  CellArrays cells;
  cells.make(mask, measure_type_, cell_count_);
  JoinGroups groups(join, *join.find_set(set_id_), std::move(dimensions), std::move(measures),
                    std::move(asked));
  const std::vector<int> cell_of = cells_of(groups);
  const Reduced reduced = measure_ != 0 ? groups.take_reduced(0) : Reduced{};
  const Block<int> has_value =
      has_nulls ? groups.dimension_numbers(dims_.size()) : Block<int>(nullptr);
  for (size_t i = 0; i < cell_of.size(); ++i) {
    if (has_nulls && has_value[i + 1] == 0) continue;
    add_group(reduced, i, groups.grouping().counts()[i], cell_of[i], cells);
  }
  return cells;
}

}  // namespace qxe
