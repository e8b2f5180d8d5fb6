#include "parallel/workthread.h"

#include <errno.h>

#include "frame/base/error_ring.h"
#include "parallel/task_table.h"

namespace qxe {

CWorkThread::CWorkThread(int index, NOTIFY_HANDLE* notice, SpinWait spin)
    : notice_(notice), spin_(spin) {
  param_.index = index;
  param_.self = this;
  if (keep_alive() != 0) throw CQXException(QX_ERROR_OUT_OF_MEMORY);
}

void CWorkThread::setup_task(int task) {
  task_ = task;
  result_ = QX_ERROR_UNKNOWN;
}

void CWorkThread::resume() {
  // A thread that ended while parked is replaced before it has something to lose.
  if (keep_alive() != 0) return notify_finish(QX_ERROR_OUT_OF_MEMORY);
  running_ = true;
  gate_.release();
}

bool CWorkThread::exists() const {
  int policy = 0;
  sched_param priority{};
  return pthread_getschedparam(thread_, &policy, &priority) != ESRCH;
}

int CWorkThread::keep_alive() {
  if (alive_) {
    if (exists()) return 0;
    join();
    if (running_) {  // lost inside a task
      notify_finish(task_ == 0 ? 0 : QX_ERROR_WORKER_LOST);
      if (task_ == 0) return -1;
    }
  }
  if (pthread_create(&thread_, nullptr, thread_main, this) != 0) return -1;
  alive_ = true;
  return 0;
}

void CWorkThread::run_on_caller(int task) {
  setup_task(task);
  const WorkerMark mark;
  try {
    result_ = run_task_function();
  } catch (...) {
    result_ = QX_ERROR_WORKER_LOST;
  }
}

void CWorkThread::notify_finish(int result) {
  result_ = result;
  running_ = false;
  std::lock_guard<std::mutex> guard(notice_->lock);
  notice_->finished.fetch_add(1, std::memory_order_release);
  notice_->changed.notify_all();
}

int CWorkThread::join() {
  if (!alive_) return -1;
  pthread_join(thread_, nullptr);
  alive_ = false;
  return 0;
}

void* CWorkThread::thread_main(void* self) {
  const WorkerMark mark;
  try {
    static_cast<CWorkThread*>(self)->thread_mainloop();
  } catch (...) {
    // Deliberate: a task that lets an exception out loses its thread, and the pool replaces it.
  }
  return nullptr;
}

void CWorkThread::thread_mainloop() {
  for (;;) {
    if (!spin_.until([this] { return gate_.try_acquire(); })) gate_.acquire();
    if (task_ == 0) return;
    notify_finish(run_task_function());
  }
}

int CWorkThread::run_task_function() {
  const TaskFunction function = mpp_func_map[task_].function;
  if (function == nullptr) throw CQXException(QX_ERROR_INNER_ENGINE);
  return function(&param_);
}

}  // namespace qxe
