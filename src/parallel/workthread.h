// One thread of the pool. It parks at its gate until a task is set and the gate opens.
#pragma once

#include <pthread.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <semaphore>

#include "frame/base/memory.h"

namespace qxe {

/// Shared by all workers: how many have finished the present round.
struct NOTIFY_HANDLE {
  std::mutex lock;
  std::condition_variable changed;
  std::atomic<int> finished = 0;
};

/// How often a thread looks for a change before it sleeps: waking a sleeper costs more than a small
/// step takes. 0 when there are more workers than processors.
class SpinWait {
 public:
  explicit SpinWait(int rounds) : rounds_(rounds) {}

  /// Whether `changed()` came true while spinning.
  template <class Changed>
  bool until(Changed&& changed) const {
    for (int i = 0; i < rounds_; ++i) {
      if (changed()) return true;
      __builtin_ia32_pause();
    }
    return changed();
  }

 private:
  int rounds_;
};

class CWorkThread;

/// What a task function gets. The raw storage is shaped by each task with a struct of its own.
struct WorkerParam {
  static constexpr std::size_t kStorage = 8192;

  int index = 0;
  int elements = 0;
  CWorkThread* self = nullptr;
  alignas(64) std::byte storage[kStorage];
};

class CWorkThread : NonCopyable {
 public:
  /// Starts the thread. Throws QX_ERROR_OUT_OF_MEMORY when the system refuses.
  CWorkThread(int index, NOTIFY_HANDLE* notice, SpinWait spin);
  ~CWorkThread() = default;

  void setup_task(int task);
  void resume();
  void resume(int task) {
    setup_task(task);
    resume();
  }
  /// Runs a task on the calling thread in this worker's place: the controlling thread takes the
  /// first share of a round instead of waiting for it.
  void run_on_caller(int task);
  /// Sees to it that the thread exists. A thread that was lost inside a task reports
  /// QX_ERROR_WORKER_LOST for it and is replaced. Returns 0, or -1 without a thread.
  int keep_alive();
  void notify_finish(int result);
  /// Waits for the thread's end. 0, or -1 when there is none.
  int join();

  WorkerParam& param() { return param_; }
  int result() const { return result_; }

 private:
  static void* thread_main(void* self);
  void thread_mainloop();
  int run_task_function();
  bool exists() const;

  pthread_t thread_{};
  std::binary_semaphore gate_{0};
  NOTIFY_HANDLE* notice_;
  SpinWait spin_;
  WorkerParam param_;
  int task_ = 0;  // index into mpp_func_map; 0 ends the thread
  int result_ = -1;
  std::atomic<bool> running_ = false;  // a task has been started and has not reported
  bool alive_ = false;
};

}  // namespace qxe
