// RQXNonCubeSum: a summary of one set, with any measures, as a new table.
#pragma once

#include "summary/sum_request.h"
#include "tables/realtables.h"

namespace qxe {

class TNonCubeSum {
 public:
  /// Throws when the request names what `source` has not, or too much. Merges pending values.
  TNonCubeSum(TRealTable& source, const NonCubeRequest& request);

  /// Makes the table; returns its id or a negative status.
  int MppRun();

 private:
  void read_filters(const NonCubeRequest& request);
  void add_dimensions(TRealTable& output, const Grouping& groups) const;

  TRealTable& source_;
  const TSetArray* set_ = nullptr;
  std::vector<TFilter*> dimensions_;
  std::vector<SumMeasure> measures_;
  SumMethod method_ = SumMethod::kNonCube;
};

/// The summary of a table of any kind as a new table; returns its id or a negative status, or
/// throws.
int sum_to_table(TBaseTable& source, const NonCubeRequest& request);

}  // namespace qxe
