// A step of an import on the worker pool: the calling thread hands out a body and waits.
#pragma once

#include "parallel/sliced_task.h"

namespace qxe {

/// One worker's part of a step. The body lives on the stack of the calling thread.
struct ImportStep {
  void (*call)(const void* body, int worker);
  const void* body;
  int worker;
};

/// Calls `body(worker)` for workers 0 to `workers` - 1 at once and throws the status of the first
/// that fails; a single one runs on the calling thread. `workers` is at most the run threads.
template <class Body>
void run_import_step(TaskId task, int workers, const Body& body) {
  SlicedTask<ImportStep> step(task, workers);
  step.run([&](Slice, int worker) {
    return ImportStep{[](const void* own, int w) { (*static_cast<const Body*>(own))(w); }, &body,
                      worker};
  });
}

/// Workers that sorting this many values is worth.
inline int sorting_workers(long values) {
  return ENG->n_threads_for_elements(values, ENG->rows_per_worker());
}

}  // namespace qxe
