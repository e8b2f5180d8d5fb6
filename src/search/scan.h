// Passing the rows of a set through a condition on their value numbers, source order kept.
#pragma once

#include <string.h>

#include "parallel/sliced_task.h"

namespace qxe {

/// Value numbers from `first` up to, not including, `end`.
struct ValueRange {
  int first = 0;
  int end = 0;

  bool empty() const { return first >= end; }
  bool contains(int value_number) const {
    return static_cast<unsigned>(value_number - first) < static_cast<unsigned>(end - first);
  }
};

/// A condition that is one or two ranges of value numbers. Empty ranges are {0, 0}.
struct RangeTest {
  ValueRange a;
  ValueRange b;

  bool operator()(int value_number) const {
    return a.contains(value_number) | b.contains(value_number);
  }
};

/// A condition looked up in a table of one byte per value number.
struct TableTest {
  const unsigned char* hits;

  bool operator()(int value_number) const { return hits[value_number] != 0; }
};

/// Keys read from the row's pointer in a filter.
struct RowKeys {
  const int* pv;

  int operator()(const int* rows, long i) const { return pv[rows[i]]; }
};

/// Keys laid out position by position.
struct LocalKeys {
  const int* keys;

  int operator()(const int*, long i) const { return keys[i]; }
};

/// Writes the rows of `slice` that pass to `out`; returns how many. One store per row and no
/// branch: a miss is overwritten by the next row.
template <class Keys, class Test>
long move_recs(const int* rows, Slice slice, Keys keys, Test test, int* out) {
  int* next = out;
  for (long i = slice.begin; i < slice.end; ++i) {
    *next = rows[i];
    next += test(keys(rows, i));
  }
  return next - out;
}

/// Rows `rows[0..n-1]` whose value number hits go to `out` (room for n); returns how many.
int MoveRecsForScan(int n, const int* rows, int* out, const int* pv, const RangeTest& test);
int MoveRecsForScan(int n, const int* rows, int* out, const int* pv, const TableTest& test);
/// The same by keys of their own, one for each position.
int MoveRecsForScanScope(int n, const int* rows, int* out, const int* keys, const TableTest& test);

/// The same results on the worker pool.
int MppMoveRecsForScan(int n, const int* rows, int* out, const int* pv, const RangeTest& test);
int MppMoveRecsForScan(int n, const int* rows, int* out, const int* pv, const TableTest& test);
int MppMoveRecsForScanScope(int n, const int* rows, int* out, const int* keys,
                            const TableTest& test);

}  // namespace qxe
