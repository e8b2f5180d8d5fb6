// Plain functions: filters.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXGetNFilter(int table) {
  return plain_call([&] { return innerQXGetNFilter(table); });
}

int QXGetFilterIDList(int table, int* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetFilterIDList(table, out); });
}

int QXGetFilterWidth(int table, int filter) {
  return plain_call([&] { return innerQXGetFilterWidth(table, filter); });
}

int QXGetFilterType(int table, int filter) {
  return plain_call([&] { return innerQXGetFilterType(table, filter); });
}

int QXGetFilter(int table, int filter, _TFilterInfo* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetFilter(table, filter, out); });
}

int QXGetFilterAttr(int table, int filter, void** out, bool valueList) {
  return plain_call(__func__, {out},
                    [&] { return innerQXGetFilterAttr(table, filter, out, valueList); });
}

int QXDeleteRealFilter(int table, int filter) {
  return plain_call([&] { return innerQXDeleteRealFilter(table, filter); });
}

int QXMoveRealFilter(int table, int from, int to) {
  return plain_call([&] { return innerQXMoveRealFilter(table, from, to); });
}

int QXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                     const char* dir, const char* file) {
  return plain_call(
      [&] { return innerQXAddRealFilter2(table, pos, name, type, rows, data, dir, file); });
}

int QXSetFilterName(int table, int filter, const char* name) {
  return plain_call([&] { return innerQXSetFilterName(table, filter, name); });
}

int QXGetFilterName(int table, int filter, char* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetFilterName(table, filter, out); });
}

int QXGetFilterIDFromName(int table, const char* name) {
  return plain_call([&] { return innerQXGetFilterIDFromName(table, name, kBothSides); });
}

int QXGetValCount(int table, int filter, int set, int* counts) {
  return plain_call(__func__, {counts},
                    [&] { return innerQXGetValCount(table, filter, set, counts); });
}
