// Sorts of rows by row pointer. Row pointers are ranks, so no sort compares a value; all are stable
// in the source's order, in both directions.
#pragma once

#include "storage/filters.h"

namespace qxe {

/// Sorts `n` rows by `pv[row]` (value numbers below `nValues`) into `out`. `dir` 0 ascending, 1
/// descending; another one throws QX_ERROR_PARAMETER.
void CountingSort(int dir, int n, const int* rows, int* out, const int* pv, int nValues);
/// The same on the worker pool.
void MppCountingSort(int dir, int n, const int* rows, int* out, const int* pv, int nValues);

/// Exclusive running sum of `counts` into `starts` (may be the same array), upward for `dir` 0,
/// downward for 1.
void Aggregate(int dir, int nValues, const int* counts, int* starts);
/// Counts `pv[row]` of each row into `counts`, which it clears first.
void CountupNExist(int n, const int* rows, int nValues, const int* pv, int* counts);
/// The same for ready keys.
void CountupNExist2(int n, const int* keys, int nValues, int* counts);
/// Puts each row at `out[starts[pv[row]]++]`.
void MoveRecsForSort(int n, const int* rows, const int* pv, int* out, int* starts);

/// Sorts `n` rows by their own number; duplicates collapse unless `n` is below a 32nd of
/// `totalRows`. Returns the rows written.
int BitMapSort(int dir, int totalRows, int n, const int* rows, int* out);

/// Positions 0 to n - 1 by descending count, ties ascending. See QXServiceSortByN.
int service_sort_by_n(int n, const int* counts, int* nonZero, int* nonZeroIndex, int* order);

}  // namespace qxe
