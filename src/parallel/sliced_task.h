// Divide, run, collect: the shape of every parallel operation, once.
#pragma once

#include <new>
#include <type_traits>

#include "parallel/smpengine.h"
#include "parallel/task_table.h"

namespace qxe {

/// Half-open range of element positions.
struct Slice {
  long begin;
  long end;

  long size() const { return end - begin; }
};

/// Slice `i` of `parts` even ones; the last takes the remainder.
inline Slice even_slice(long elements, int parts, int i) {
  const long share = elements / parts;
  return {share * i, i == parts - 1 ? elements : share * (i + 1)};
}

/// Shapes a worker's block; `Params` is trivially copyable and marks what it hands back `// out`.
template <class Params>
Params& task_params(void* block) {
  static_assert(std::is_trivially_copyable_v<Params> && sizeof(Params) <= WorkerParam::kStorage);
  return *std::launder(reinterpret_cast<Params*>(static_cast<WorkerParam*>(block)->storage));
}

/// Body of a task function: runs `body` on the block's parameters, turns exceptions into statuses.
template <class Params, class Body>
int run_task(void* block, Body&& body) {
  try {
    body(task_params<Params>(block));
    return 0;
  } catch (const CQXException& failure) {
    return failure.ErrorCode();
  } catch (const std::bad_alloc&) {
    return QX_ERROR_OUT_OF_MEMORY;
  } catch (...) {
    return QX_ERROR_UNKNOWN;
  }
}

/// `elements` divided evenly among as many workers as the work is worth; each gets a `Params`. The
/// first share runs on the calling thread, so that small work wakes nobody.
template <class Params>
class SlicedTask : NonCopyable {
 public:
  /// `per_worker`: elements that are worth a worker. Work on a row that is as cheap as a load or
  /// two passes ENG->rows_per_worker(), work on coarse parts 1.
  SlicedTask(TaskId task, long elements, long per_worker = 1)
      : task_(task),
        elements_(elements),
        workers_(ENG->n_threads_for_elements(elements, per_worker)) {}

  /// `fill(Slice, int worker)` or `fill(Slice)` gives each worker its parameters. Throws the first
  /// failing worker's status.
  template <class Fill>
  void run(Fill&& fill) {
    for (int i = 0; i < workers_; ++i) {
      const Slice slice = even_slice(elements_, workers_, i);
      if constexpr (std::is_invocable_v<Fill, Slice, int>) {
        (*this)[i] = fill(slice, i);
      } else {
        (*this)[i] = fill(slice);
      }
    }
    ENG->run_threads_task(workers_, task_);
  }

  int workers() const { return workers_; }
  Params& operator[](int worker) { return task_params<Params>(&ENG->get_thread_param(worker)); }

 private:
  TaskId task_;
  long elements_;
  int workers_;
};

}  // namespace qxe
