// What RQXNonCubeSum is asked for, of a real table or of a join.
#pragma once

#include <vector>

#include "summary/grouping.h"

namespace qxe {

struct NonCubeRequest {
  int set;
  int nDim;
  const int* dims;  // filter ids
  int nMsr;
  const int* msrs;    // filter ids
  const int* flags;   // QX_SUM_ bits, for each measure
  const int* digits;  // decimal places of its sums, for each measure; below 0: as they come
};

struct SumMeasure {
  const TFilter* filter;
  int flags;
  int digits;

  bool is_number() const { return filter->data_type() != QX_DT_STRING; }
  /// Texts have no sum.
  int possible_flags() const;
  /// Whether the number of decimal places means something here.
  bool rounds() const { return is_number() && filter->data_type() != QX_DT_DECIMAL; }
  Wanted wanted() const;
  /// Throws QX_ERROR_PARAMETER for flags that the measure cannot have and
  /// QX_ERROR_SUMMARY_PARAMETER for too many decimal places.
  void check() const;
};

/// Throws QX_ERROR_SUMMARY_PARAMETER for too many dimensions or measures.
void check_counts(const NonCubeRequest& request);

/// Bytes that the system has free.
unsigned long available_memory();

/// The way to sum up `rows` rows, by what the processor and the memory are like now.
SumMethod choose_method(const std::vector<TFilter*>& dimensions,
                        const std::vector<SumMeasure>& measures, int rows);

}  // namespace qxe
