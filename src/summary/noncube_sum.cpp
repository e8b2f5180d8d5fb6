#include "summary/noncube_sum.h"

#include <utility>

#include "parallel/smpengine.h"
#include "summary/join_sum.h"
#include "summary/measure_columns.h"
#include "summary/output_table.h"
#include "summary/result_columns.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

TFilter* existing_filter(TRealTable& source, int id) {
  TFilter* const filter = source.GetFilter(id);
  if (filter == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  return filter;
}

}  // namespace

TNonCubeSum::TNonCubeSum(TRealTable& source, const NonCubeRequest& request) : source_(source) {
  check_counts(request);
  set_ = source.GetSet(request.set);
  if (set_ == nullptr) throw CQXException(QX_ERROR_NO_SET);
  read_filters(request);
  source.CheckMergeFilterTVL(true);
  method_ = choose_method(dimensions_, measures_, set_->FArraySize);
  // Deliberate: only where rows are sorted by the dimensions themselves. The other ways leave out
  // what a measure has not.
  if (method_ != SumMethod::kNonCube) return;
  for (const SumMeasure& measure : measures_) measure.check();
}

void TNonCubeSum::read_filters(const NonCubeRequest& request) {
  for (int i = 0; i < request.nDim; ++i) {
    dimensions_.push_back(existing_filter(source_, request.dims[i]));
  }
  for (int i = 0; i < request.nMsr; ++i) {
    measures_.push_back(
        {existing_filter(source_, request.msrs[i]), request.flags[i], request.digits[i]});
  }
}

int TNonCubeSum::MppRun() {
  const UntrimmedNames untrimmed;
  const GroupedRows rows{*set_, dimensions_,
                         method_ == SumMethod::kCube ? NullMinimum::kNever : NullMinimum::kAlways};
  const std::unique_ptr<Grouping> groups = make_grouping(method_, rows);
  // The first pass over the rows tells how many groups there are.
  Reduced first = groups->reduce(measures_.empty() ? Wanted{} : measures_[0].wanted());
  std::unique_ptr<TRealTable> output = new_output_table(source_, groups->groups());
  add_dimensions(*output, *groups);
  MeasureColumns columns(*output, *groups);
  for (const SumMeasure& measure : measures_) {
    const bool is_first = &measure == measures_.data();
    columns.add_measure(*measure.filter, measure.flags & measure.possible_flags(),
                        is_first ? std::move(first) : groups->reduce(measure.wanted()));
  }
  if (measures_.empty() || method_ == SumMethod::kNonCube) columns.add_counts("N");
  return ENG->collection()->adopt_table(std::move(output));
}

void TNonCubeSum::add_dimensions(TRealTable& output, const Grouping& groups) const {
  const int rows = groups.groups();
  for (size_t i = 0; i < dimensions_.size(); ++i) {
    TBaseArray& list = *dimensions_[i]->VL;
    Block<int> numbers = groups.dimension(static_cast<int>(i));
    raised(output.AddFilter(output.GetNFilter(), dimensions_[i]->FFilterName,
                            method_ == SumMethod::kNonCube
                                ? extracted_values_column(list, std::move(numbers), rows)
                                : whole_list_column(list, std::move(numbers), rows)));
  }
}

int sum_to_table(TBaseTable& source, const NonCubeRequest& request) {
  if (source.GetType() == TableKind::kJoin) {
    return TJoinSum(static_cast<TJoinTable&>(source), request).MppRun();
  }
  return TNonCubeSum(static_cast<TRealTable&>(source), request).MppRun();
}

}  // namespace qxe
