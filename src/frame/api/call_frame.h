// The frames of the exported functions, one template per pattern. `__func__` is the name a client
// reads in the ring, so it cannot be mistyped.
#pragma once

#include <atomic>
#include <initializer_list>
#include <mutex>

#include "frame/base/exception.h"
#include "frame/base/memory.h"

namespace qxe {

/// The one engine lock: everything behind the boundary runs under it.
extern std::mutex qx_mutex;
/// Name of the exported call that came last; a call that waits for the lock already shows here.
extern char FUNC_NAME_EX[256];

inline void mutex_lock() {
  qx_mutex.lock();
}
inline void mutex_unlock() {
  qx_mutex.unlock();
}
/// Ends a call that keeps the lock; only a restart frees it.
void leave_locked();
/// Makes the lock free whoever holds it.
void mutex_initialize();
/// Keeps every call out while the process is copied, so that the copy is whole. A lock that a call
/// left behind does so already.
void lock_for_fork();
void unlock_after_fork();

/// Written outside the lock, hence byte by byte without tearing any.
template <size_t N>
void record_call_name(const char (&name)[N]) {
  static_assert(N <= sizeof FUNC_NAME_EX);
  for (size_t i = 0; i < N; ++i) {
    std::atomic_ref<char>(FUNC_NAME_EX[i]).store(name[i], std::memory_order_relaxed);
  }
}

/// Status of the exception being handled. One of ours becomes a ring entry under `name`.
int status_of_failure(const char* name);

/// Pointers that the caller of an exported function must give.
using Required = std::initializer_list<const void*>;

/// What stands for a buffer that a call does not touch when it is to hold nothing.
inline const void* if_any(int count, const void* buffer) {
  return count > 0 ? buffer : &FUNC_NAME_EX;
}

/// QX_ERROR_PARAMETER with an entry under `name` when a pointer is null, else 0.
int check_required(const char* name, Required pointers);

/// Turns every exception of `body` into a status.
template <class Body>
int guarded(const char* name, Body&& body) {
  try {
    return body();
  } catch (...) {
    return status_of_failure(name);
  }
}

/// Holds the engine lock for one exported call.
class ExportedCall : NonCopyable {
 public:
  template <size_t N>
  explicit ExportedCall(const char (&name)[N]) {
    record_call_name(name);  // before the lock
    mutex_lock();
  }
  ~ExportedCall() { mutex_unlock(); }
};

/// The serial function has caught and logged everything.
template <size_t N, class Body>
decltype(auto) pass_through_call(const char (&name)[N], Body&& body) {
  ExportedCall call(name);
  return body();
}

template <size_t N, class Body>
int pass_through_call(const char (&name)[N], Required pointers, Body&& body) {
  ExportedCall call(name);
  const int status = check_required(name, pointers);
  return status < 0 ? status : body();
}

/// Exceptions become a status and an entry under the exported name.
template <size_t N, class Body>
int guarded_call(const char (&name)[N], Body&& body) {
  ExportedCall call(name);
  return guarded(name, body);
}

template <size_t N, class Body>
int guarded_call(const char (&name)[N], Required pointers, Body&& body) {
  return pass_through_call(name, pointers, [&] { return guarded(name, body); });
}

/// As guarded_call, and a negative status leaves an entry without text under the exported name.
template <size_t N, class Body>
int raising_call(const char (&name)[N], Body&& body) {
  return guarded_call(name, [&] { return raised(body()); });
}

template <size_t N, class Body>
int raising_call(const char (&name)[N], Required pointers, Body&& body) {
  return guarded_call(name, pointers, [&] { return raised(body()); });
}

/// The frame of the plain family and of the convenience forms that reach the engine directly.
template <class Body>
decltype(auto) plain_call(Body&& body) {
  const std::lock_guard<std::mutex> lock(qx_mutex);
  return body();
}

template <class Body>
int plain_call(const char* name, Required pointers, Body&& body) {
  return plain_call([&] {
    const int status = check_required(name, pointers);
    return status < 0 ? status : body();
  });
}

}  // namespace qxe
