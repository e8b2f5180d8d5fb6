// The columns that a measure has in the output table of RQXNonCubeSum.
#pragma once

#include <string>

#include "summary/grouping.h"
#include "tables/realtables.h"

namespace qxe {

/// Adds columns of results at the end of a table. Failures are thrown.
class MeasureColumns {
 public:
  MeasureColumns(TRealTable& output, const Grouping& groups) : output_(output), groups_(groups) {}

  /// Counts of rows under `name`.
  void add_counts(const std::string& name);
  /// What `flags` ask for: count, maximum, minimum, sum and average of `measure`.
  void add_measure(const TFilter& measure, int flags, Reduced reduced);

 private:
  void add(const std::string& name, Column column);
  Column sums(const TFilter& measure, const Reduced& reduced) const;
  Column averages(const TFilter& measure, const Reduced& reduced) const;

  TRealTable& output_;
  const Grouping& groups_;
  int counts_filter_ = 0;  // the first column of counts, once it is there
};

}  // namespace qxe
