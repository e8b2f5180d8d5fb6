// Exported functions: database and table files.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "persist/file_place.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXLoadDB(const char* dir, const char* name) {
  return raising_call(__func__, [&] { return innerQXLoadDB(dir, name); });
}

int RQXHSLoadDB(const char* dir, const char* name) {
  return raising_call(__func__, [&] { return innerQXLoadDB(dir, name); });
}

int RQXSaveDB() {
  return raising_call(__func__, [] { return innerQXSaveDB(); });
}

int RQXSaveDBAs(char* dir, const char* name) {
  return raising_call(__func__, [&] { return innerQXSaveDBAs(dir, name); });
}

int RQXSaveDBAsOldVer(char* dir, const char* name, int version) {
  return raising_call(__func__, [&] { return innerQXSaveDBAsOldVer(dir, name, version); });
}

int RQXGetPathName(char* dir, char* name) {
  return guarded_call(__func__, {dir, name}, [&] { return innerQXGetPathName(dir, name); });
}

int RQXGetQXDFileInfo(const char* dir, const char* file, _QXFileInfo* info) {
  return raising_call(__func__, {info},
                      [&] { return innerQXGetQxeFileInfo(dir, file, kDatabaseExtension, info); });
}

int RQXGetQXTFileInfo(const char* dir, const char* file, _QXFileInfo* info) {
  return raising_call(__func__, {info},
                      [&] { return innerQXGetQxeFileInfo(dir, file, kTableExtension, info); });
}

int RQXLoadRealTable(const char* dir, const char* file) {
  return raising_call(__func__, [&] { return innerQXLoadRealTable(dir, file); });
}

int RQXHSLoadRealTable(const char* dir, const char* file) {
  return raising_call(__func__, [&] { return innerQXLoadRealTable(dir, file); });
}

int RQXLoadRealTable2(const char* path, long offset, int count, int* tableIds, long* endOffset) {
  return raising_call(__func__, {if_any(count, tableIds), endOffset}, [&] {
    return innerQXLoadRealTable2(path, offset, count, tableIds, endOffset);
  });
}

int RQXSaveRealTable(const char* dir, int tableId) {
  return raising_call(__func__, [&] { return innerQXSaveRealTable(dir, tableId); });
}

int RQXSaveRealTableAs(const char* dir, const char* file, int tableId) {
  return raising_call(__func__, [&] { return innerQXSaveRealTableAs(dir, file, tableId); });
}

int RQXSaveRealTable2(const char* path, long offset, const int* tableIds, long* endOffset) {
  return raising_call(__func__, {tableIds, endOffset},
                      [&] { return innerQXSaveRealTable2(path, offset, tableIds, endOffset); });
}

int RQXSaveRealTableOldVer(const char* dir, int tableId, int version) {
  return raising_call(__func__, [&] { return innerQXSaveRealTableOldVer(dir, tableId, version); });
}

int RQXSaveRealTableAsOldVer(const char* dir, const char* file, int tableId, int version) {
  return raising_call(__func__,
                      [&] { return innerQXSaveRealTableAsOldVer(dir, file, tableId, version); });
}
