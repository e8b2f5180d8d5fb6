// Plain functions: row editing.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXInsertRealRows(int table, int pos, int count) {
  return plain_call([&] { return innerQXInsertRealRows(table, pos, count); });
}

int QXDeleteRealRows(int table, int start, int count) {
  return plain_call([&] { return innerQXDeleteRealRows(table, start, count); });
}

int QXDeleteRealRowsEx(int table, int set, int start, int count) {
  return plain_call([&] { return innerQXDeleteRealRowsEx(table, set, start, count); });
}

int QXOverwriteRealEx(int table, int filter, int set, int start, int count, void* data) {
  return plain_call([&] { return innerQXOverwriteRealEx(table, filter, set, start, count, data); });
}
