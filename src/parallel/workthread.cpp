#include "parallel/workthread.h"

#include <errno.h>

#include "frame/base/error_ring.h"
#include "parallel/task_table.h"

namespace qxe {

CWorkThread::CWorkThread(int index, NOTIFY_HANDLE* notice) : notice_(notice) {
  param_.index = index;
  param_.self = this;
  if (keep_alive() != 0) throw CQXException(QX_ERROR_OUT_OF_MEMORY);
}

void CWorkThread::setup_task(int task) {
  task_ = task;
  result_ = QX_ERROR_UNKNOWN;
}

void CWorkThread::resume() {
  keep_alive();  // a thread that ended while parked is replaced before it has something to lose
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

void CWorkThread::notify_finish(int result) {
  std::lock_guard<std::mutex> guard(notice_->lock);
  result_ = result;
  running_ = false;
  ++notice_->finished;
  notice_->changed.notify_all();
}

int CWorkThread::join() {
  if (!alive_) return -1;
  pthread_join(thread_, nullptr);
  alive_ = false;
  return 0;
}

void* CWorkThread::thread_main(void* self) {
  mark_worker_thread();
  try {
    static_cast<CWorkThread*>(self)->thread_mainloop();
  } catch (...) {
    // Deliberate: a task that lets an exception out loses its thread, and the pool replaces it.
  }
  return nullptr;
}

void CWorkThread::thread_mainloop() {
  for (;;) {
    gate_.acquire();
    if (task_ == 0) return;
    const TaskFunction function = mpp_func_map[task_].function;
    if (function == nullptr) throw CQXException(QX_ERROR_INNER_ENGINE);
    notify_finish(function(&param_));
  }
}

}  // namespace qxe
