// Exported functions: filters.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXGetNFilter(int table) {
  return pass_through_call(__func__, [&] { return innerQXGetNFilter(table); });
}

int RQXGetFilterIDList(int table, int* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetFilterIDList(table, out); });
}

int RQXGetFilterWidth(int table, int filter) {
  return pass_through_call(__func__, [&] { return innerQXGetFilterWidth(table, filter); });
}

int RQXGetFilterType(int table, int filter) {
  return pass_through_call(__func__, [&] { return innerQXGetFilterType(table, filter); });
}

int RQXGetFilterInfo(int table, int filter, _TRFilterInfo* out) {
  return pass_through_call(__func__, {out},
                           [&] { return innerQXGetFilterInfo(table, filter, out); });
}

int RQXGetFilterBody(int table, int filter, _TRFilterBody* body) {
  return pass_through_call(__func__, {body},
                           [&] { return innerQXGetFilterBody(table, filter, body); });
}

int RQXGetAllFilterInfo(int table, int max, int* count, _TRFilterInfo* infos, char (*names)[64]) {
  return pass_through_call(__func__, {count, if_any(max, infos)}, [&] {
    return innerQXGetAllFilterInfo(table, max, count, infos, names);
  });
}

int RQXGetFilterAttr(int table, int filter, void* out, bool valueList) {
  return pass_through_call(__func__, {out}, [&] {
    return copy_area(
        out, [&](void** area) { return innerQXGetFilterAttr(table, filter, area, valueList); });
  });
}

int RQXSetFilterAttr(int table, int filter, const void* in, bool valueList) {
  return pass_through_call(__func__, {in},
                           [&] { return innerQXSetFilterAttr(table, filter, in, valueList); });
}

int RQXDeleteRealFilter(int table, int filter) {
  return pass_through_call(__func__, [&] { return innerQXDeleteRealFilter(table, filter); });
}

int RQXMoveRealFilter(int table, int from, int to) {
  return pass_through_call(__func__, [&] { return innerQXMoveRealFilter(table, from, to); });
}

int RQXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                      const char* dir, const char* file) {
  return pass_through_call(__func__, [&] {
    return innerQXAddRealFilter2(table, pos, name, type, rows, data, dir, file);
  });
}

int RQXAddRealFilter2Numeric(int table, int pos, const char* name, int type, int rows, void* data,
                             const char* dir, const char* file, int scale, int rounding) {
  return pass_through_call(__func__, [&] {
    return innerQXAddRealFilter2Numeric(table, pos, name, type, rows, data, dir, file,
                                        {scale, rounding});
  });
}

int RQXAppendRealFilter2(int table, int filter, int type, int pos, int rows, const char* dir,
                         const char* file) {
  return pass_through_call(__func__, [&] {
    return innerQXAppendRealFilter2(table, filter, type, pos, rows, dir, file);
  });
}

int RQXSetFilterName(int table, int filter, const char* name) {
  return pass_through_call(__func__, [&] { return innerQXSetFilterName(table, filter, name); });
}

int RQXGetFilterName(int table, int filter, char* out) {
  return pass_through_call(__func__, {out},
                           [&] { return innerQXGetFilterName(table, filter, out); });
}

int RQXGetFilterIDFromName(int table, const char* name) {
  return pass_through_call(__func__,
                           [&] { return innerQXGetFilterIDFromName(table, name, kBothSides); });
}

int RQXGetFilterIDFromName2(int table, const char* name, int side) {
  return pass_through_call(__func__, [&] { return innerQXGetFilterIDFromName(table, name, side); });
}

int RQXSetNumericInfo(int table, int filter, NumericInfo* info, bool /*unused*/) {
  return pass_through_call(__func__, [&] { return innerQXSetNumericInfo(table, filter, info); });
}

int RQXGetNumericInfo(int table, int filter, NumericInfo* info, char* name, bool /*unused*/) {
  return pass_through_call(__func__, {info},
                           [&] { return innerQXGetNumericInfo(table, filter, info, name); });
}
