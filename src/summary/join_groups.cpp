#include "summary/join_groups.h"

#include <algorithm>
#include <numeric>

#include "summary/fixed_point.h"
#include "summary/paired_groups.h"

namespace qxe {

JoinColumn find_join_column(TJoinTable& join, int filter) {
  const TFilter* const source = join.GetFilter(filter);
  if (source == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  int side = 0;
  raised(join.GetJoinSrcFltID(filter, &side));
  return {source, side, join.GetJoinFilterName(filter)};
}

JoinGroups::JoinGroups(const TJoinTable& join, const JoinSet& set,
                       std::vector<JoinColumn> dimensions, std::vector<JoinColumn> measures,
                       std::vector<SumMeasure> asked)
    : dimensions_(std::move(dimensions)),
      measures_(std::move(measures)),
      asked_(std::move(asked)),
      lines_(LinePositions::find(join, set)) {
  if (lines_ != nullptr) {
    group_lines();
  } else {
    group_pairs(join, set);
  }
  // The first pass over the rows tells how many groups there are.
  first_ = measures_.empty() ? grouping_->reduce({}) : reduce(0);
}

JoinGroups::~JoinGroups() = default;

std::vector<size_t> JoinGroups::ranked_dimensions() const {
  std::vector<size_t> order(dimensions_.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(), [this](size_t left, size_t right) {
    return dimensions_[left].side < dimensions_[right].side;
  });
  return order;
}

void JoinGroups::place_columns(const JoinPositions& master, const JoinPositions& slave) {
  for (auto* const columns : {&dimensions_, &measures_}) {
    for (JoinColumn& column : *columns) {
      const JoinPositions& positions = column.side == QX_JOIN_MASTER ? master : slave;
      column.at = positions.column(*column.source, column.side, column.name);
      if (column.null_test) column.at->test_for_null();
    }
  }
}

void JoinGroups::group_lines() {
  place_columns(*lines_, *lines_);
  std::vector<TFilter*> dimensions;
  for (const size_t i : ranked_dimensions()) dimensions.push_back(&dimensions_[i].at->filter());
  const SumMethod method = choose_method(dimensions, asked_, lines_->all().FArraySize);
  rows_ = std::make_unique<GroupedRows>(
      GroupedRows{lines_->all(), std::move(dimensions), NullMinimum::kAlways});
  grouping_ = make_grouping(method, *rows_);
}

void JoinGroups::group_pairs(const TJoinTable& join, const JoinSet& set) {
  const JoinRows pairs = join.rows(set);
  const int keys = join.key().size();
  const SidePositions master(pairs, QX_JOIN_MASTER, keys);
  const SidePositions slave(pairs, QX_JOIN_SLAVE, keys);
  place_columns(master, slave);
  std::vector<PairedDimension> dimensions;
  for (const size_t i : ranked_dimensions()) {
    dimensions.push_back({dimensions_[i].side, dimensions_[i].at.get()});
  }
  auto groups = std::make_unique<PairedGroups>(std::array{&master, &slave}, keys, pairs.count(),
                                               std::move(dimensions));
  pairs_ = groups.get();
  grouping_ = std::move(groups);
}

Block<int> JoinGroups::dimension_numbers(size_t i) const {
  const std::vector<size_t> order = ranked_dimensions();
  const auto place = std::find(order.begin(), order.end(), i) - order.begin();
  return grouping_->dimension(static_cast<int>(place));
}

Reduced JoinGroups::take_reduced(size_t measure) {
  return measure == 0 ? std::move(first_) : reduce(measure);
}

Reduced JoinGroups::reduce(size_t measure) {
  if (pairs_ != nullptr) pairs_->set_measure_side(measures_[measure].side);
  const SumMeasure& asked = asked_[measure];
  const TFilter& column = measures_[measure].at->filter();
  Wanted wanted = asked.wanted();
  wanted.measure = &column;
  const bool fixed = wanted.sum && asked.rounds() && asked.digits >= 0;
  if (!fixed || !FixedPointMeasure::serves(column)) return grouping_->reduce(wanted);
  const FixedPointMeasure rounded(column, asked.digits);
  wanted.measure = &rounded.filter();
  Reduced reduced = grouping_->reduce(wanted);
  reduced.sums = rounded.sums(reduced.decimal_sums.get(), groups());
  return reduced;
}

}  // namespace qxe
