// Steps of a compilation or a merge on several workers: the calling thread hands out a body and
// waits.
#pragma once

#include "parallel/sliced_task.h"

namespace qxe {

/// One worker's share of a step. The body lives on the stack of the calling thread.
struct PoolStep {
  void (*call)(const void* body, int worker);
  const void* body;
  int worker;
};

/// The task function of every task that consists of such steps.
inline int run_pool_step(void* block) {
  return run_task<PoolStep>(block, [](PoolStep& step) { step.call(step.body, step.worker); });
}

/// Workers that `rows` rows are worth, when they may run on the pool at all.
inline int compile_workers(long rows, bool mpp) {
  return mpp ? ENG->n_threads_for_elements(rows, ENG->rows_per_worker()) : 1;
}

/// Calls `body(worker)` for workers 0 to `workers` - 1 at once. A single one is the calling thread
/// itself, which may be a worker of something else.
template <class Body>
void run_step(TaskId id, int workers, const Body& body) {
  if (workers == 1) {
    body(0);
    return;
  }
  SlicedTask<PoolStep> task(id, workers);
  task.run([&](Slice, int worker) {
    return PoolStep{[](const void* own, int w) { (*static_cast<const Body*>(own))(w); }, &body,
                    worker};
  });
}

template <class Body>
void run_compile_step(int workers, const Body& body) {
  run_step(QX_MPP_COMPILE, workers, body);
}

}  // namespace qxe
