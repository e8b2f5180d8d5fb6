// The bare loops beside which the engine's operations are timed: the same work over value numbers,
// without the engine. What an operation costs above its kernel is its overhead.
#pragma once

#include <cstdint>
#include <vector>

namespace qxe::bench {

/// `rows` value numbers below `values`, the same in every run.
std::vector<int> random_codes(int rows, int values);

/// Rows (from 1) whose code lies in [first, end): each of `threads` threads scans an even part and
/// writes its rows from the part's own place in `out` on. Returns how many.
int scan_range(const std::vector<int>& codes, int first, int end, int threads, int* out);

/// Rows of the first use of each code below `values`, in the same layout; a code that several parts
/// use comes out once for each. Returns how many.
int first_uses(const std::vector<int>& codes, int values, int threads, int* out);

/// Sum of the values of `count` pseudo-random rows: a code, then its value.
double sum_of_cells(const std::vector<int>& codes, const std::vector<double>& values, int count);

/// Rows in the order of their codes: two counting passes over words of code and row.
void sort_codes(const std::vector<int>& codes, int values, int* out);

}  // namespace qxe::bench
