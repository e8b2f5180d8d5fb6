// Plain functions: database and table files.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXLoadDB(const char* dir, const char* name) {
  return plain_call([&] { return innerQXLoadDB(dir, name); });
}

int QXSaveDB() {
  return plain_call([] { return innerQXSaveDB(); });
}

int QXSaveDBAs(char* dir, const char* name) {
  return plain_call([&] { return innerQXSaveDBAs(dir, name); });
}

int QXGetPathName(char* dir, char* name) {
  return plain_call(__func__, {dir, name}, [&] { return innerQXGetPathName(dir, name); });
}

int QXLoadRealTable(const char* dir, const char* file) {
  return plain_call([&] { return innerQXLoadRealTable(dir, file); });
}

int QXSaveRealTable(const char* dir, int tableId) {
  return plain_call([&] { return innerQXSaveRealTable(dir, tableId); });
}
