// The last eight failures, oldest first, and the ways to report one.
#pragma once

#include "frame/base/exception.h"

namespace qxe {

/// Ring of the last failures; one lives in the engine object. Guarded by the engine lock.
class ErrorRing {
 public:
  static constexpr int kEntries = 8;
  static constexpr int kNameSize = 63;      // with the terminator
  static constexpr int kMessageSize = 127;  // with the terminator

  /// Adds an entry; a full ring loses its oldest one. Longer texts are cut.
  void put(const char* name, int code, const char* message);

  /// Takes the oldest entry out. Returns 1, or 0 and leaves the outputs alone when there is none.
  /// `name` holds kNameSize bytes, `message` kMessageSize.
  int take(int* time, char* name, int* code, char* message);

 private:
  int nError = 0;
  int ErrMsgGet = 0;
  int ErrMsgPut = 0;
  int ErrCodes[kEntries] = {};
  int ErrTimes[kEntries] = {};  // processor time in milliseconds
  char ErrAPINames[kEntries][kNameSize] = {};
  char ErrMessages[kEntries][kMessageSize] = {};
};

/// The one entry to the ring. Does nothing before the engine exists or on a worker thread, whose
/// status travels to the calling thread instead.
void PutErrorLog(const char* apiName, int code, const char* message);

/// Formats into a static buffer of 500 bytes, overwritten by the next call.
const char* getString(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Puts an entry into the ring and returns `code`, so that log-and-throw and log-and-return are one
/// line. On a worker thread it only returns the code.
int report(const char* name, int code, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

/// Marks the current thread as a worker, which never writes to the ring, while it lives.
class WorkerMark {
 public:
  WorkerMark();
  ~WorkerMark();
  WorkerMark(const WorkerMark&) = delete;
  WorkerMark& operator=(const WorkerMark&) = delete;
};

bool on_worker_thread();

}  // namespace qxe
