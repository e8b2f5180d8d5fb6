// Plain functions: the memory stream.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXMemStreamOpenWrite() {
  return plain_call([] { return innerQXMemStreamOpenWrite(); });
}

int QXMemStreamWrite(const void* data, int size) {
  return plain_call(__func__, {if_any(size, data)},
                    [&] { return innerQXMemStreamWrite(data, size); });
}

int QXMemStreamGetWriteBuf(long* size, void** area) {
  return plain_call(__func__, {size, area},
                    [&] { return innerQXMemStreamGetWriteBuf(size, area); });
}

int QXMemStreamOpenRead(long size, void* area) {
  return plain_call(__func__, {area}, [&] { return innerQXMemStreamOpenRead(size, area); });
}

int QXMemStreamRead(void* data, int size) {
  return plain_call(__func__, {if_any(size, data)},
                    [&] { return innerQXMemStreamRead(data, size); });
}

int QXMemStreamGetStatus(int* mode, long* used, long* position, void** area) {
  return plain_call(__func__, {mode, used, position, area},
                    [&] { return innerQXMemStreamGetStatus(mode, used, position, area); });
}

int QXMemStreamClose() {
  return plain_call([] { return innerQXMemStreamClose(); });
}

int QXSaveRealTableMem(int table, int oneSet) {
  return plain_call([&] { return innerQXSaveRealTableMem(table, oneSet != 0); });
}

int QXLoadRealTableMem() {
  return plain_call([] { return innerQXLoadRealTableMem(); });
}
