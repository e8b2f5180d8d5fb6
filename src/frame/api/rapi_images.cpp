// Exported functions: images of tables and databases in memory, the memory stream.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXGetRealTableMemSize(int table, long* size) {
  return pass_through_call(__func__, {size},
                           [&] { return innerQXGetRealTableMemSize(table, size); });
}

int RQXSaveRealTable2Mem(int table, long size, void* block, void** end) {
  return pass_through_call(__func__, {block, end},
                           [&] { return innerQXSaveRealTable2Mem(table, size, block, end); });
}

int RQXLoadRealTableFromMem(void* block, void** end) {
  return pass_through_call(__func__, {block, end},
                           [&] { return innerQXLoadRealTableFromMem(block, end); });
}

int RQXSaveDB2Mem(long size, void* block, void** end) {
  return pass_through_call(__func__, {block, end},
                           [&] { return innerQXSaveDB2Mem(size, block, end); });
}

int RQXLoadDBFromMem(void* block, void** end) {
  return pass_through_call(__func__, {block, end},
                           [&] { return innerQXLoadDBFromMem(block, end); });
}

int RQXGetMemRealTable(int table, void** block, long* size) {
  return pass_through_call(__func__, {block, size},
                           [&] { return innerQXGetMemRealTable(table, block, size); });
}

int RQXLoadMemRealTable(void* block, long size) {
  return pass_through_call(__func__, {block}, [&] { return innerQXLoadMemRealTable(block, size); });
}

int RQXFreeMemRealTable() {
  return pass_through_call(__func__, [] { return innerQXFreeMemRealTable(); });
}

// Memory stream

int RQXMemStreamOpenWrite() {
  return pass_through_call(__func__, [] { return innerQXMemStreamOpenWrite(); });
}

int RQXMemStreamWrite(const void* data, int size) {
  return pass_through_call(__func__, {if_any(size, data)},
                           [&] { return innerQXMemStreamWrite(data, size); });
}

int RQXMemStreamGetWriteBuf(long* size, void** area) {
  return pass_through_call(__func__, {size, area},
                           [&] { return innerQXMemStreamGetWriteBuf(size, area); });
}

int RQXMemStreamOpenRead(long size, void* area) {
  return pass_through_call(__func__, {area}, [&] { return innerQXMemStreamOpenRead(size, area); });
}

int RQXMemStreamRead(void* data, int size) {
  return pass_through_call(__func__, {if_any(size, data)},
                           [&] { return innerQXMemStreamRead(data, size); });
}

int RQXMemStreamGetStatus(int* mode, long* used, long* position, void** area) {
  return pass_through_call(__func__, {mode, used, position, area},
                           [&] { return innerQXMemStreamGetStatus(mode, used, position, area); });
}

int RQXMemStreamClose() {
  return pass_through_call(__func__, [] { return innerQXMemStreamClose(); });
}

int RQXSaveRealTableMem(int table, int oneSet) {
  return pass_through_call(__func__, [&] { return innerQXSaveRealTableMem(table, oneSet != 0); });
}

int RQXLoadRealTableMem() {
  return pass_through_call(__func__, [] { return innerQXLoadRealTableMem(); });
}
