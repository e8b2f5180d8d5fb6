// Exported functions: reading rows.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXGetData(int table, int filter, int set, int pos, int* type, void* out) {
  return pass_through_call(__func__, {type, out},
                           [&] { return innerQXGetData(table, filter, set, pos, type, out); });
}

int RQXGetData1(int table, int filter, int set, int pos, int* type, void* out) {
  return pass_through_call(__func__, {type, out},
                           [&] { return innerQXGetData1(table, filter, set, pos, type, out); });
}

int RQXGetData1Ex(int table, int filter, int set, int pos, int* type, void* out, int size) {
  return pass_through_call(__func__, {type, out}, [&] {
    return innerQXGetData1Ex(table, filter, set, pos, type, out, size);
  });
}

int RQXGetData1ExPtr(int table, int filter, int set, int pos, int* type, long* out) {
  return pass_through_call(__func__, {type, out}, [&] {
    return innerQXGetData1ExPtr(table, filter, set, pos, type, out);
  });
}

int RQXGetData1Str(int table, int filter, int set, int pos, int* type, char* out) {
  return pass_through_call(__func__, {type, out},
                           [&] { return innerQXGetData1(table, filter, set, pos, type, out); });
}

int RQXGetData1M(int table, int filter, int set, int first, int* type, int* count, void* values,
                 char* strings) {
  return pass_through_call(__func__, {type, count, values, strings}, [&] {
    return innerQXGetData1M(table, filter, set, first, type, count, values, strings);
  });
}

int RQXGetData1MEx(int table, int filter, int set, int first, int* type, int* count, void* values,
                   char* strings, int size) {
  return pass_through_call(__func__, {type, count, values, strings}, [&] {
    return innerQXGetData1MEx(table, filter, set, first, type, count, values, strings, size);
  });
}

int RQXGetData1MExPtr(int table, int filter, int set, int first, int* type, int* count,
                      long* values) {
  return pass_through_call(__func__, {type, count, values}, [&] {
    return innerQXGetData1MExPtr(table, filter, set, first, type, count, values);
  });
}

int RQXGetRowNo(int table, int set, int pos, int* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetRowNo(table, set, pos, out); });
}

int RQXGetRowNo1(int table, int set, int pos, int* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetRowNo1(table, set, pos, out); });
}

int RQXGetRowNo1M(int table, int set, int first, int count, int* out) {
  return pass_through_call(__func__, {if_any(count, out)},
                           [&] { return innerQXGetRowNo1M(table, set, first, count, out); });
}

int RQXGetVNoList(int table, int filter, int set, int* out) {
  return pass_through_call(__func__, {out},
                           [&] { return innerQXGetVNoList(table, filter, set, out); });
}
