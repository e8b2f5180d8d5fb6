#include "summary/measure_columns.h"

#include "search/compiler_steps.h"
#include "summary/result_columns.h"

namespace qxe {

int mpp_noncube_measure_finit(void* block) {
  return run_pool_step(block);
}

namespace {

std::string column_name(const char* kind, const TFilter& measure) {
  return std::string(kind) + "<" + measure.FFilterName + ">";
}

const NumericInfo& decimal_info(const TFilter& measure) {
  return static_cast<const TNumericArray&>(*measure.VL).GetDecimalInfo();
}

double quotient(double sum, int count) {
  return sum / count;
}

Numeric quotient(Numeric sum, int count) {
  const Numeric divisor{static_cast<unsigned long>(count), 0};
  RQXNumericDiv(&sum, &divisor, &sum);
  return sum;
}

/// Sums divided by the groups' counts of rows, those without a value included.
template <class Sum>
Block<Sum> quotients(const Sum* sums, const Grouping& groups) {
  Block<Sum> result = make_block<Sum>(groups.groups());
  const int workers = compile_workers(groups.groups(), true);
  run_step(QX_MPP_NONCUBE_MEASURE_FINIT, workers, [&](int worker) {
    const Slice slice = even_slice(groups.groups(), workers, worker);
    for (long i = slice.begin; i < slice.end; ++i) {
      result[i] = quotient(sums[i], groups.counts()[i]);
    }
  });
  return result;
}

}  // namespace

void MeasureColumns::add(const std::string& name, Column column) {
  raised(output_.AddFilter(output_.GetNFilter(), name.c_str(), std::move(column)));
}

void MeasureColumns::add_counts(const std::string& name) {
  if (counts_filter_ == 0) {
    add(name, int_column(groups_.counts(), groups_.groups()));
    counts_filter_ = output_.filter_at(output_.GetNFilter() - 1)->FFilterID;
  } else {
    const TFilter& first = *output_.GetFilter(counts_filter_);
    add(name, {std::unique_ptr<TIntArray>(first.PVL->MppCopyArray()),
               std::unique_ptr<TBaseArray>(first.VL->MppCopyArray())});
  }
}

void MeasureColumns::add_measure(const TFilter& measure, int flags, Reduced reduced) {
  const int rows = groups_.groups();
  if ((flags & QX_SUM_COUNT) != 0) add_counts(column_name("N", measure));
  if ((flags & QX_SUM_MAX) != 0) {
    add(column_name("MAX", measure), used_values_column(*measure.VL, std::move(reduced.max), rows));
  }
  if ((flags & QX_SUM_MIN) != 0) {
    add(column_name("MIN", measure), used_values_column(*measure.VL, std::move(reduced.min), rows));
  }
  if ((flags & QX_SUM_SUM) != 0) add(column_name("SUM", measure), sums(measure, reduced));
  if ((flags & QX_SUM_AVG) != 0) add(column_name("AVG", measure), averages(measure, reduced));
}

Column MeasureColumns::sums(const TFilter& measure, const Reduced& reduced) const {
  const int rows = groups_.groups();
  if (reduced.sums != nullptr) return double_column(reduced.sums.get(), rows);
  return decimal_column(reduced.decimal_sums.get(), rows, decimal_info(measure));
}

Column MeasureColumns::averages(const TFilter& measure, const Reduced& reduced) const {
  const int rows = groups_.groups();
  if (reduced.sums != nullptr) {
    return double_column(quotients(reduced.sums.get(), groups_).get(), rows);
  }
  return decimal_column(quotients(reduced.decimal_sums.get(), groups_).get(), rows,
                        decimal_info(measure));
}

}  // namespace qxe
