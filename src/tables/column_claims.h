// Columns that workers make, one at a time: whoever is free takes the next one that nobody has, so
// that columns of different cost balance themselves.
#pragma once

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "search/compiler_steps.h"
#include "storage/filters.h"

namespace qxe {

/// Which columns have been taken. The engine's write lock is held for the look at a slot only.
class ColumnClaims {
 public:
  explicit ColumnClaims(int columns) : taken_(static_cast<size_t>(columns), 0) {}

  bool take(int column) {
    ENG->mt_write_lock();
    const bool is_free = std::exchange(taken_[static_cast<size_t>(column)], 1) == 0;
    ENG->mt_write_unlock();
    return is_free;
  }

 private:
  std::vector<char> taken_;
};

/// About what a column of `rows` rows costs, in passes over a row. `source` may be null.
inline long column_cost(long rows, const TFilter* source) {
  constexpr long kRowsPerValue = 4;  // a value may have to be moved to a new list
  return rows + (source == nullptr ? 0 : kRowsPerValue * source->VL->FArraySize) + 1;
}

/// Calls `make(column)` once for each column, on as many workers as their costs are worth. Dear
/// columns come first: what is left for the end balances the workers.
template <class Make>
void claim_columns(TaskId task, const std::vector<long>& costs, const Make& make) {
  const auto columns = static_cast<int>(costs.size());
  const long work = std::accumulate(costs.begin(), costs.end(), 0L);
  const int workers = std::clamp(compile_workers(work, true), 1, std::max(columns, 1));
  std::vector<int> order(costs.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int left, int right) {
    return costs[static_cast<size_t>(left)] > costs[static_cast<size_t>(right)];
  });
  ColumnClaims claims(columns);
  run_step(task, workers, [&](int) {
    for (const int column : order) {
      if (claims.take(column)) make(column);
    }
  });
}

}  // namespace qxe
