#include "frame/api/call_frame.h"

#include <new>

#include "frame/base/error_ring.h"

namespace qxe {

std::mutex qx_mutex;
char FUNC_NAME_EX[256] = "";

void mutex_initialize() {
  qx_mutex.try_lock();  // held by this call now, or still by an earlier one
  qx_mutex.unlock();
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
