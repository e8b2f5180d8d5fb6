#include "frame/base/exception.h"

#include <stdarg.h>
#include <stdio.h>

namespace qxe {

CQXException::CQXException(const char* format, ...) : code_(QX_ERROR_OPERATION) {
  va_list args;
  va_start(args, format);
  vsnprintf(message_, sizeof message_, format, args);
  va_end(args);
}

CQXException::CQXException(int code, const char* format, ...) : code_(code) {
  va_list args;
  va_start(args, format);
  vsnprintf(message_, sizeof message_, format, args);
  va_end(args);
}

}  // namespace qxe
