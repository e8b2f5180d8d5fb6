#include "frame/api/call_frame.h"

#include <pthread.h>
#include <time.h>

#include <new>

#include "frame/base/error_ring.h"

namespace qxe {

std::mutex qx_mutex;
char FUNC_NAME_EX[256] = "";

namespace {

std::atomic<bool> lock_was_left{false};
bool lock_is_for_fork = false;

/// Whether the lock was free within a moment.
bool lock_soon() {
  constexpr long kMoment = 10'000'000;  // nanoseconds
  constexpr long kSecond = 1'000'000'000;
  timespec until{};
  clock_gettime(CLOCK_REALTIME, &until);
  until.tv_nsec += kMoment;
  until.tv_sec += until.tv_nsec / kSecond;
  until.tv_nsec %= kSecond;
  return pthread_mutex_timedlock(qx_mutex.native_handle(), &until) == 0;
}

}  // namespace

void leave_locked() {
  lock_was_left = true;
}

void mutex_initialize() {
  lock_was_left = false;
  qx_mutex.try_lock();  // held by this call now, or still by an earlier one
  qx_mutex.unlock();
}

void lock_for_fork() {
  bool locked = false;
  while (!lock_was_left && !locked) locked = lock_soon();
  lock_is_for_fork = locked;
}

void unlock_after_fork() {
  if (lock_is_for_fork) qx_mutex.unlock();
}

int check_required(const char* name, Required pointers) {
  for (const void* const pointer : pointers) {
    if (pointer == nullptr) return report(name, QX_ERROR_PARAMETER, "Invalid Parameter : NULL");
  }
  return 0;
}

int status_of_failure(const char* name) {
  try {
    throw;
  } catch (const CQXException& failure) {
    PutErrorLog(name, failure.ErrorCode(), failure.Message());
    return failure.ErrorCode();
  } catch (const std::bad_alloc&) {
    return report(name, QX_ERROR_OUT_OF_MEMORY, "Out of memory");
  } catch (...) {
    return QX_ERROR_UNKNOWN;
  }
}

}  // namespace qxe
