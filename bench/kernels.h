// The bare loops beside which the engine's operations are timed: the same work over value numbers,
// without the engine. What an operation costs above its kernel is its overhead.
#pragma once

#include <cstdint>
#include <vector>

namespace qxe::bench {

/// `rows` value numbers below `values`, the same in every run.
std::vector<int> random_codes(int rows, int values);

/// Rows (from 1) whose code lies in [first, end) into `out`; returns how many.
int scan_range(const std::vector<int>& codes, int first, int end, int* out);

/// Rows in the order of their codes: two counting passes over words of code and row.
void sort_codes(const std::vector<int>& codes, int values, int* out);

}  // namespace qxe::bench
