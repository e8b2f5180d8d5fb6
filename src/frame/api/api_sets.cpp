// Plain functions: sets.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXGetNSet(int table) {
  return plain_call([&] { return innerQXGetNSet(table); });
}

int QXGetTotalRows(int table) {
  return plain_call([&] { return innerQXGetTotalRows(table); });
}

int QXPurgeSubsets(int table) {
  return plain_call([&] { return innerQXPurgeSubsets(table); });
}

int QXGetSetSize(int table, int set) {
  return plain_call([&] { return innerQXGetSetSize(table, set); });
}

int QXGetSet(int table, int set, int** out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetSet(table, set, out); });
}

int QXGetSetList(int table, int max, int* out) {
  return plain_call(__func__, {if_any(max, out)},
                    [&] { return innerQXGetSetIDList(table, max, out); });
}

int QXAddSetReal(int table, int count, int* rows) {
  return plain_call([&] { return innerQXAddSetReal(table, count, rows); });
}

int QXDeleteSet(int table, int set) {
  return plain_call([&] { return innerQXDeleteSet(table, set); });
}

int QXGetCurrentSetID(int table) {
  return plain_call([&] { return innerQXGetCurrentSetID(table); });
}

int QXChangeCurrentSetID(int table, int set) {
  return plain_call([&] { return innerQXChangeCurrentSetID(table, set); });
}

int QXGetSubsetAttr(int table, int set, void** out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetSubsetAttr(table, set, out); });
}

int QXSetSetName(int table, int set, const char* name) {
  return plain_call([&] { return innerQXSetSetName(table, set, name); });
}

int QXGetSetName(int table, int set, char* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetSetName(table, set, out); });
}

int QXSetOpeReal(int table, int op, int set1, int set2) {
  return plain_call([&] { return innerQXSetOpeReal(table, op, set1, set2); });
}

int QXSetNotReal(int table, int set) {
  return plain_call([&] { return innerQXSetNotReal(table, set); });
}

int QXSetOpe2(int op, int totalRows, _TSetDescript a, _TSetDescript b, _TSetDescript* result) {
  return plain_call(__func__, {result},
                    [&] { return innerQXSetOpe2(op, totalRows, a, b, result); });
}
