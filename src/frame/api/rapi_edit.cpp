// Exported functions: row editing.

#include "frame/api/call_frame.h"
#include "frame/api/dbtask.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXInsertRealRows(int table, int pos, int count) {
  return pass_through_call(__func__, [&] { return innerQXInsertRealRows(table, pos, count); });
}

int RQXDeleteRealRows(int table, int start, int count) {
  return pass_through_call(__func__, [&] { return innerQXDeleteRealRows(table, start, count); });
}

int RQXDeleteRealRowsEx(int table, int set, int start, int count) {
  return raising_call(__func__, [&] { return innerQXDeleteRealRowsEx(table, set, start, count); });
}

int RQXOverwriteRealEx(int table, int filter, int set, int start, int count, void* data) {
  return guarded_call(
      __func__, [&] { return DBTASK()->OverwriteRealEx(table, filter, set, start, count, data); });
}

int RQXOverwriteRealExStr(int table, int filter, int set, int start, int count, char** data) {
  return pass_through_call(
      __func__, [&] { return innerQXOverwriteRealExStr(table, filter, set, start, count, data); });
}

int RQXFillRealEx(int table, int filter, int set, int start, int count, void* value) {
  return guarded_call(
      __func__, [&] { return DBTASK()->FillRealEx(table, filter, set, start, count, value); });
}
