#include "summary/noncube_sum.h"

#include <utility>

#include "frame/api/innerapi.h"
#include "parallel/smpengine.h"
#include "summary/measure_columns.h"
#include "summary/output_table.h"
#include "summary/result_columns.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr char kLayer[] = "NonCubeSum";
constexpr int kAllFlags = QX_SUM_COUNT | QX_SUM_MAX | QX_SUM_MIN | QX_SUM_SUM | QX_SUM_AVG;
constexpr int kTextFlags = QX_SUM_COUNT | QX_SUM_MAX | QX_SUM_MIN;
constexpr int kMaxDigits = 10;

void check_count(int count, int limit, const char* name) {
  if (count >= 0 && count <= limit) return;
  throw CQXException(
      report(kLayer, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : %s(%d)", name, count));
}

TFilter* existing_filter(TRealTable& source, int id) {
  TFilter* const filter = source.GetFilter(id);
  if (filter == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  return filter;
}

unsigned long available_memory() {
  unsigned long total = 0;
  unsigned long available = 0;
  innerQXGetSystemMemInfo(&total, &available);
  return available;
}

}  // namespace

TNonCubeSum::TNonCubeSum(TRealTable& source, const NonCubeRequest& request) : source_(source) {
  check_count(request.nDim, QX_MAX_DIM, "nDim");
  check_count(request.nMsr, QX_MAX_MSR, "nMsr");
  set_ = source.GetSet(request.set);
  if (set_ == nullptr) throw CQXException(QX_ERROR_NO_SET);
  read_filters(request);
  source.CheckMergeFilterTVL(true);
  choose_method();
  if (method_ == SumMethod::kNonCube) check_measures(request);
}

void TNonCubeSum::read_filters(const NonCubeRequest& request) {
  for (int i = 0; i < request.nDim; ++i) {
    dimensions_.push_back(existing_filter(source_, request.dims[i]));
  }
  for (int i = 0; i < request.nMsr; ++i) {
    measures_.push_back({existing_filter(source_, request.msrs[i]), request.flags[i]});
  }
}

void TNonCubeSum::choose_method() {
  SumWork work;
  for (const TFilter* dimension : dimensions_) work.add_dimension(dimension->VL->FArraySize);
  for (const Measure& measure : measures_) work.flags |= measure.flags;
  work.rows = set_->FArraySize;
  work.measures = static_cast<int>(measures_.size());
  work.workers = ENG->run_threads();
  work.l2_size = ENG->l2_size();
  work.available_memory = available_memory();
  method_ = GetSuitableSumMethod(work);
}

/// Deliberate: only where rows are sorted by the dimensions themselves. The other ways leave out
/// what a measure has not.
void TNonCubeSum::check_measures(const NonCubeRequest& request) const {
  for (size_t i = 0; i < measures_.size(); ++i) {
    const Measure& measure = measures_[i];
    const int allowed = measure.is_number() ? kAllFlags : kTextFlags;
    if (measure.flags == 0 || (measure.flags & ~allowed) != 0) {
      throw CQXException(
          report(kLayer, QX_ERROR_PARAMETER, "Invalid Parameter : flags(%d)", measure.flags));
    }
    const bool rounds = measure.is_number() && measure.filter->data_type() != QX_DT_DECIMAL;
    if (rounds && request.digits[i] > kMaxDigits) {
      throw CQXException(report(kLayer, QX_ERROR_SUMMARY_PARAMETER,
                                "Invalid Parameter : digits(%d)", request.digits[i]));
    }
  }
}

Wanted TNonCubeSum::Measure::wanted() const {
  return {filter, (flags & (QX_SUM_MAX | QX_SUM_MIN)) != 0,
          is_number() && (flags & (QX_SUM_SUM | QX_SUM_AVG)) != 0};
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
  for (const Measure& measure : measures_) {
    const bool is_first = &measure == measures_.data();
    columns.add_measure(*measure.filter,
                        measure.is_number() ? measure.flags : measure.flags & kTextFlags,
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

}  // namespace qxe
