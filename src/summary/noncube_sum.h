// RQXNonCubeSum: a summary of one set, with any measures, as a new table.
#pragma once

#include <vector>

#include "summary/grouping.h"
#include "tables/realtables.h"

namespace qxe {

struct NonCubeRequest {
  int set;
  int nDim;
  const int* dims;  // filter ids
  int nMsr;
  const int* msrs;    // filter ids
  const int* flags;   // QX_SUM_ bits, for each measure
  const int* digits;  // to round to, for each measure; read for their range only
};

class TNonCubeSum {
 public:
  /// Throws when the request names what `source` has not, or too much. Merges pending values.
  TNonCubeSum(TRealTable& source, const NonCubeRequest& request);

  /// Makes the table; returns its id or a negative status.
  int MppRun();

 private:
  struct Measure {
    const TFilter* filter;
    int flags;

    bool is_number() const { return filter->data_type() != QX_DT_STRING; }
    Wanted wanted() const;
  };

  void read_filters(const NonCubeRequest& request);
  void choose_method();
  void check_measures(const NonCubeRequest& request) const;
  void add_dimensions(TRealTable& output, const Grouping& groups) const;

  TRealTable& source_;
  const TSetArray* set_ = nullptr;
  std::vector<TFilter*> dimensions_;
  std::vector<Measure> measures_;
  SumMethod method_ = SumMethod::kNonCube;
};

}  // namespace qxe
