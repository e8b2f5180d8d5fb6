// Plain functions: tables and memory accounting.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXGetNTable() {
  return plain_call([] { return innerQXGetNTable(); });
}

int QXGenerateTableName(const char* seed, char* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGenerateTableName(seed, out); });
}

int QXGenTableName(const char* seed, char** out) {
  return plain_call(__func__, {out}, [&] { return innerQXGenTableName(seed, out); });
}

int QXAddRealTable(const char* name, int rows) {
  return plain_call([&] { return innerQXAddRealTable(name, rows); });
}

int QXDeleteTable(int table) {
  return plain_call([&] { return innerQXDeleteTable(table); });
}

int QXGetTableIDList(int* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetTableIDList(out); });
}

int QXGetTableName(int table, char* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetTableName(table, out); });
}

int QXSetTableName(int table, const char* name) {
  return plain_call([&] { return innerQXSetTableName(table, name); });
}

int QXGetTableProperty(int table, _TTableInfo* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetTableProperty(table, out); });
}

int QXGetTableIDFromName(const char* name) {
  return plain_call([&] { return innerQXGetTableIDFromName(name); });
}

int QXTableCanEdit(int table, int** out) {
  return plain_call(__func__, {out}, [&] { return innerQXTableCanEdit(table, out); });
}

// Memory accounting

int QXGetTotalMemorySize(unsigned long* size) {
  return plain_call(__func__, {size}, [&] { return innerQXGetTotalMemorySize(size); });
}

int QXGetTableMemorySize(int table, unsigned long* size) {
  return plain_call(__func__, {size}, [&] { return innerQXGetTableMemorySize(table, size); });
}

int QXGetFilterMemorySize(int table, int filter, unsigned long* size) {
  return plain_call(__func__, {size},
                    [&] { return innerQXGetFilterMemorySize(table, filter, size); });
}

int QXGetSetMemorySize(int table, int set, unsigned long* size) {
  return plain_call(__func__, {size}, [&] { return innerQXGetSetMemorySize(table, set, size); });
}
