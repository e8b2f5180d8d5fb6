#include "frame/base/error_ring.h"

#include <stdarg.h>
#include <stdio.h>
#include <time.h>

#include "parallel/smpengine.h"
#include "storage/strings.h"

namespace qxe {

namespace {

thread_local bool t_worker = false;
char msgBuf[500];

}  // namespace

void ErrorRing::put(const char* name, int code, const char* message) {
  if (ErrMsgPut >= kEntries) ErrMsgPut = 0;
  if (nError < kEntries) {
    ++nError;
  } else {
    ErrMsgGet = (ErrMsgGet + 1) % kEntries;
  }
  ErrCodes[ErrMsgPut] = code;
  ErrTimes[ErrMsgPut] = static_cast<int>(clock() / 1000);
  qxe_strlcpy(ErrAPINames[ErrMsgPut], name, kNameSize);
  qxe_strlcpy(ErrMessages[ErrMsgPut], message, kMessageSize);
  ++ErrMsgPut;
}

int ErrorRing::take(int* time, char* name, int* code, char* message) {
  if (nError == 0) return 0;
  *time = ErrTimes[ErrMsgGet];
  *code = ErrCodes[ErrMsgGet];
  qxe_strlcpy(name, ErrAPINames[ErrMsgGet], kNameSize);
  qxe_strlcpy(message, ErrMessages[ErrMsgGet], kMessageSize);
  --nError;
  ErrMsgGet = (ErrMsgGet + 1) % kEntries;
  return 1;
}

void PutErrorLog(const char* apiName, int code, const char* message) {
  if (ENG == nullptr || on_worker_thread()) return;
  ENG->error_ring().put(apiName, code, message);
}

const char* getString(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vsnprintf(msgBuf, sizeof msgBuf, format, args);
  va_end(args);
  return msgBuf;
}

int report(const char* name, int code, const char* format, ...) {
  if (on_worker_thread()) return code;
  char text[sizeof msgBuf];
  va_list args;
  va_start(args, format);
  vsnprintf(text, sizeof text, format, args);
  va_end(args);
  PutErrorLog(name, code, text);
  return code;
}

WorkerMark::WorkerMark() {
  t_worker = true;
}

WorkerMark::~WorkerMark() {
  t_worker = false;
}

bool on_worker_thread() {
  return t_worker;
}

}  // namespace qxe
