// Passing the rows of a set through a condition on their value numbers, source order kept. Large
// sets are divided among the worker pool.
#pragma once

#include "search/scan_kernels.h"
#include "storage/setarray.h"

namespace qxe {

/// A condition looked up in a table of one byte for each of `size` value numbers.
struct TableTest {
  const unsigned char* hits;
  int size;
  bool wanted = true;  // false: the rows whose byte is 0
};

/// A new set of those rows of `source` whose value number `pv[row]` passes, with the source's
/// attribute block, allocated exactly.
std::unique_ptr<TSetArray> MoveRecsForScan(const TSetArray& source, const int* pv,
                                           const RangeTest& test);
std::unique_ptr<TSetArray> MoveRecsForScan(const TSetArray& source, const int* pv,
                                           const TableTest& test);
/// The same by a key for each position of `source` and a byte for each key.
std::unique_ptr<TSetArray> MoveRecsForScanScope(const TSetArray& source, const int* keys,
                                                const unsigned char* hits);

}  // namespace qxe
