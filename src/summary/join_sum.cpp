#include "summary/join_sum.h"

#include <algorithm>
#include <numeric>

#include "parallel/smpengine.h"
#include "summary/fixed_point.h"
#include "summary/measure_columns.h"
#include "summary/output_table.h"
#include "summary/paired_groups.h"
#include "summary/result_columns.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

TJoinSum::TJoinSum(TJoinTable& join, const NonCubeRequest& request)
    : join_(join), set_(join.find_set(request.set)) {
  check_counts(request);
  if (set_ == nullptr) throw CQXException(QX_ERROR_NO_SET);
  for (int side = 0; side < kSides; ++side) join_.parent(side).CheckMergeFilterTVL(true);
  for (int i = 0; i < request.nDim; ++i) dimensions_.push_back(find_column(request.dims[i]));
  for (int i = 0; i < request.nMsr; ++i) {
    measures_.push_back(find_column(request.msrs[i]));
    asked_.push_back({measures_.back().source, request.flags[i], request.digits[i]});
    asked_.back().check();
  }
}

TJoinSum::JoinColumn TJoinSum::find_column(int id) const {
  const TFilter* const source = join_.GetFilter(id);
  if (source == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  int side = 0;
  raised(join_.GetJoinSrcFltID(id, &side));
  return {source, side, join_.GetJoinFilterName(id), nullptr};
}

/// In the order that the groups have: those of the master first.
std::vector<int> TJoinSum::ranked_dimensions() const {
  std::vector<int> order(dimensions_.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [this](int left, int right) {
    return dimensions_[static_cast<size_t>(left)].side <
           dimensions_[static_cast<size_t>(right)].side;
  });
  return order;
}

void TJoinSum::place_columns(const JoinPositions& master, const JoinPositions& slave) {
  for (auto* const columns : {&dimensions_, &measures_}) {
    for (JoinColumn& column : *columns) {
      const JoinPositions& positions = column.side == QX_JOIN_MASTER ? master : slave;
      column.at = positions.column(*column.source, column.side, column.name);
    }
  }
}

int TJoinSum::MppRun() {
  const UntrimmedNames untrimmed;
  if (const auto lines = LinePositions::find(join_, *set_)) {
    place_columns(*lines, *lines);
    std::vector<TFilter*> dimensions;
    for (const int i : ranked_dimensions()) {
      dimensions.push_back(&dimensions_[static_cast<size_t>(i)].at->filter());
    }
    const GroupedRows rows{lines->all(), dimensions, NullMinimum::kAlways};
    return run(*make_grouping(choose_method(dimensions, asked_, rows.rows()), rows), [](int) {});
  }
  const JoinRows pairs = join_.rows(*set_);
  const SidePositions master(pairs, QX_JOIN_MASTER, join_.key().size());
  const SidePositions slave(pairs, QX_JOIN_SLAVE, join_.key().size());
  place_columns(master, slave);
  std::vector<PairedDimension> dimensions;
  for (const int i : ranked_dimensions()) {
    const JoinColumn& column = dimensions_[static_cast<size_t>(i)];
    dimensions.push_back({column.side, column.at.get()});
  }
  PairedGroups groups({&master, &slave}, join_.key().size(), pairs.count(), std::move(dimensions));
  return run(groups, [&](int side) { groups.set_measure_side(side); });
}

/// `face(side)` is called before a measure of that side is reduced.
template <class Face>
int TJoinSum::run(Grouping& groups, const Face& face) {
  const auto reduce_next = [&](size_t i) {
    face(measures_[i].side);
    return reduce(groups, i);
  };
  // The first pass over the rows tells how many groups there are.
  Reduced first = measures_.empty() ? groups.reduce({}) : reduce_next(0);
  std::unique_ptr<TRealTable> output = new_output_table(join_, groups.groups());
  add_dimensions(*output, groups);
  MeasureColumns columns(*output, groups);
  for (size_t i = 0; i < measures_.size(); ++i) {
    columns.add_measure(measures_[i].at->filter(), asked_[i].flags,
                        i == 0 ? std::move(first) : reduce_next(i));
  }
  if (measures_.empty()) columns.add_counts("N");
  return ENG->collection()->adopt_table(std::move(output));
}

Reduced TJoinSum::reduce(Grouping& groups, size_t measure) const {
  const SumMeasure& asked = asked_[measure];
  const TFilter& column = measures_[measure].at->filter();
  Wanted wanted = asked.wanted();
  wanted.measure = &column;
  const bool fixed = wanted.sum && asked.rounds() && asked.digits >= 0;
  if (!fixed || !FixedPointMeasure::serves(column)) return groups.reduce(wanted);
  const FixedPointMeasure rounded(column, asked.digits);
  wanted.measure = &rounded.filter();
  Reduced reduced = groups.reduce(wanted);
  reduced.sums = rounded.sums(reduced.decimal_sums.get(), groups.groups());
  return reduced;
}

void TJoinSum::add_dimensions(TRealTable& output, const Grouping& groups) const {
  const std::vector<int> order = ranked_dimensions();
  for (size_t i = 0; i < dimensions_.size(); ++i) {
    const auto place = std::find(order.begin(), order.end(), static_cast<int>(i));
    const TFilter& column = dimensions_[i].at->filter();
    raised(output.AddFilter(
        output.GetNFilter(), column.FFilterName,
        extracted_values_column(*column.VL,
                                groups.dimension(static_cast<int>(place - order.begin())),
                                groups.groups())));
  }
}

}  // namespace qxe
