// The engine's one exception type: a status code and a text, copied by value through every frame.
#pragma once

#include <string.h>

#include "qxe.h"

namespace qxe {

class CQXException {
 public:
  CQXException() = default;
  explicit CQXException(int code) : code_(code) {}
  /// Text only: the code is QX_ERROR_OPERATION.
  explicit CQXException(const char* format, ...) __attribute__((format(printf, 2, 3)));
  CQXException(int code, const char* format, ...) __attribute__((format(printf, 3, 4)));

  const char* Message() const { return message_; }
  int ErrorCode() const { return code_; }

 private:
  static constexpr int kMessageSize = 500;  // longer text is cut at 499 characters

  char message_[kMessageSize] = "";
  int code_ = 0;
};

/// Throws a negative status and hands any other on.
inline int raised(int status) {
  if (status < 0) throw CQXException(status);
  return status;
}

}  // namespace qxe
