// Columns that workers make, one at a time: whoever is free takes the next one that nobody has, so
// that columns of different cost balance themselves.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "search/compiler_steps.h"

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

/// Calls `make(column)` once for each of `columns` columns of `rows` rows, on as many workers as
/// they are worth. A worker begins at the column with its own number and goes round from there.
template <class Make>
void claim_columns(TaskId task, int columns, int rows, const Make& make) {
  const long work = static_cast<long>(columns) * std::max(rows, 1);
  const int workers = std::clamp(compile_workers(work, true), 1, std::max(columns, 1));
  ColumnClaims claims(columns);
  run_step(task, workers, [&](int worker) {
    for (int turn = 0; turn < columns; ++turn) {
      const int column = (worker + turn) % columns;
      if (claims.take(column)) make(column);
    }
  });
}

}  // namespace qxe
