// The record that marks a column as a summary's dimension or measure: the attribute block of its
// row pointers.
#pragma once

#include "tables/realtables.h"

namespace qxe {

_TSumFilterAttr sum_attributes(const TFilter& column);

struct SummaryColumns {
  int dimensions = 0;
  int measures = 0;

  int count() const { return dimensions + measures; }
};

/// Throws QX_ERROR_NOT_SUMMARY_TABLE for a column whose role is none of these.
SummaryColumns summary_columns(const TRealTable& table);

/// The id of the column with this role and ordinal, 0 in a table without such records, or
/// QX_ERROR_NO_DIMENSION.
int DimNo2FilterID(const TRealTable& table, int role, int ordinal);

/// The sum of the values of a set's rows, without NULL, into `*total`, else 0 or a status. Mode 0
/// takes the columns only that counts and sums of a summary stand in, 1 takes all.
int CalcTotal(TRealTable& table, int set, int filter, int mode, double* total);

}  // namespace qxe
