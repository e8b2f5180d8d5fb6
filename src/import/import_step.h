// A step of an import on the worker pool: the calling thread hands out a body and waits.
#pragma once

#include "search/compiler_steps.h"

namespace qxe {

/// Calls `body(part)` for parts 0 to `parts` - 1, divided among the workers, and throws the status
/// of the first part that fails.
template <class Body>
void run_import_step(TaskId task, int parts, const Body& body) {
  const int workers = ENG->n_threads_for_elements(parts);
  run_step(task, workers, [&](int worker) {
    const Slice own = even_slice(parts, workers, worker);
    for (long part = own.begin; part < own.end; ++part) body(static_cast<int>(part));
  });
}

/// Workers that sorting this many values is worth.
inline int sorting_workers(long values) {
  return ENG->n_threads_for_elements(values, ENG->rows_per_worker());
}

}  // namespace qxe
