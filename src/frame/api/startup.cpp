// What the loader runs: the engine and the task object exist before a client can call. And what
// happens around fork(), so that a child process can call too.
#include <pthread.h>

#include <new>

#include "frame/api/call_frame.h"
#include "frame/api/dbtask.h"
#include "frame/base/log.h"
#include "parallel/smpengine.h"

namespace qxe {

namespace {

void before_fork() {
  lock_for_fork();
  log_lock.lock();
}

void after_fork() {
  log_lock.unlock();
  unlock_after_fork();
}

void after_fork_in_child() {
  if (ENG != nullptr) ENG->forget_workers();
  after_fork();
}

/// A failure here ends the load.
[[maybe_unused]] const bool started = [] {
  ENG = &CSmpEngine::Instance();
  MPTask = &CDBParallelTask::Instance();
  if (pthread_atfork(before_fork, after_fork, after_fork_in_child) != 0) throw std::bad_alloc();
  return true;
}();

}  // namespace

}  // namespace qxe
