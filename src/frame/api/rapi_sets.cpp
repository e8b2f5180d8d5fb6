// Exported functions: sets.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXGetNSet(int table) {
  return pass_through_call(__func__, [&] { return innerQXGetNSet(table); });
}

int RQXGetTotalRows(int table) {
  return pass_through_call(__func__, [&] { return innerQXGetTotalRows(table); });
}

int RQXPurgeSubsets(int table) {
  return raising_call(__func__, [&] { return innerQXPurgeSubsets(table); });
}

int RQXGetSetSize(int table, int set) {
  return pass_through_call(__func__, [&] { return innerQXGetSetSize(table, set); });
}

int RQXGetSet(int table, int set, int* count, int max, int* out) {
  return pass_through_call(__func__, {count, if_any(max, out)},
                           [&] { return innerQXCopySet(table, set, count, max, out); });
}

int RQXGetSetList(int table, int max, int* out) {
  return pass_through_call(__func__, {if_any(max, out)},
                           [&] { return innerQXGetSetIDList(table, max, out); });
}

int RQXGetSetIDList(int table, int max, int* out) {
  return pass_through_call(__func__, {if_any(max, out)},
                           [&] { return innerQXGetSetIDList(table, max, out); });
}

int RQXAddSetReal(int table, int count, int* rows) {
  return raising_call(__func__, [&] { return innerQXAddSetReal(table, count, rows); });
}

int RQXDeleteSet(int table, int set) {
  return pass_through_call(__func__, [&] { return innerQXDeleteSet(table, set); });
}

int RQXGetCurrentSetID(int table) {
  return pass_through_call(__func__, [&] { return innerQXGetCurrentSetID(table); });
}

int RQXChangeCurrentSetID(int table, int set) {
  return pass_through_call(__func__, [&] { return innerQXChangeCurrentSetID(table, set); });
}

int RQXResetSetID(int table, int next) {
  return pass_through_call(__func__, [&] { return innerQXResetSetID(table, next); });
}

int RQXGetSubsetAttr(int table, int set, void* out) {
  return pass_through_call(__func__, {out}, [&] {
    return copy_area(out, [&](void** area) { return innerQXGetSubsetAttr(table, set, area); });
  });
}

int RQXSetSubsetAttr(int table, int set, const void* in) {
  return pass_through_call(__func__, {in}, [&] { return innerQXSetSubsetAttr(table, set, in); });
}

int RQXSetSetName(int table, int set, const char* name) {
  return pass_through_call(__func__, [&] { return innerQXSetSetName(table, set, name); });
}

int RQXGetSetName(int table, int set, char* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetSetName(table, set, out); });
}

int RQXSetOpeReal(int table, int op, int set1, int set2) {
  return raising_call(__func__, [&] { return innerQXSetOpeReal(table, op, set1, set2); });
}

int RQXSetNotReal(int table, int set) {
  return raising_call(__func__, [&] { return innerQXSetNotReal(table, set); });
}
