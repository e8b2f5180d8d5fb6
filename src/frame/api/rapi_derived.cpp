// Exported functions: derived tables and filters.

#include "frame/api/call_frame.h"
#include "frame/api/dbtask.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXDuplicateRealTable(const char* name, int table) {
  return pass_through_call(__func__, [&] { return innerQXDuplicateRealTable(name, table); });
}

int RQXExtractRealTable(const char* name, int table, int set, int* filters) {
  return pass_through_call(__func__,
                           [&] { return innerQXExtractRealTable(name, table, set, filters); });
}

int RQXExtractRealTableEx(const char* name, int table, int set, int addTableId, int addRecNo,
                          int* filters) {
  return pass_through_call(__func__, [&] {
    return innerQXExtractRealTableEx(name, table, set, {filters, addTableId != 0, addRecNo != 0});
  });
}

int RQXCombineRealTable(char* name, int table1, int set1, int* filters1, int table2, int set2,
                        int* filters2) {
  return pass_through_call(__func__, {filters1, filters2}, [&] {
    return innerQXCombineRealTableEx(name, {false, false}, {table1, set1, filters1},
                                     {table2, set2, filters2});
  });
}

int RQXCombineRealTableEx(char* name, int addTableId, int addRowNumber, int table1, int set1,
                          int* filters1, int table2, int set2, int* filters2) {
  return pass_through_call(__func__, {filters1, filters2}, [&] {
    return innerQXCombineRealTableEx(name, {addTableId != 0, addRowNumber != 0},
                                     {table1, set1, filters1}, {table2, set2, filters2});
  });
}

int RQXCombineRealTableEx2(char* name, int addTableId, int addRowNumber, int table1, int set1,
                           int* filters1, int table2, int set2, int* filters2) {
  return pass_through_call(__func__, {filters1, filters2}, [&] {
    return innerQXCombineRealTableEx(name, {addTableId != 0, addRowNumber != 0},
                                     {table1, set1, filters1}, {table2, set2, filters2});
  });
}

int RQXCombineTableList(char* name, int* tableIds, int* setIds, int* filters1, int* filters2,
                        int* filters3, int* filters4) {
  return pass_through_call(__func__, {tableIds, setIds}, [&] {
    return innerQXCombineTableList(name,
                                   {tableIds, setIds, {filters1, filters2, filters3, filters4}});
  });
}

int RQXCondenseRealTable(int table) {
  return guarded_call(__func__, [&] { return DBTASK()->CondenseRealTable(table); });
}

int RQXDupRealFilter(int table, int filter) {
  return pass_through_call(__func__, [&] { return innerQXDupRealFilter(table, filter); });
}

int RQXDupRealFilterEx(int table, int filter, int type) {
  return pass_through_call(__func__, [&] { return innerQXDupRealFilterEx(table, filter, type); });
}

int RQXDupRealFilterExNumeric(int table, int filter, int type, int scale, int rounding) {
  return pass_through_call(__func__, [&] {
    return innerQXDupRealFilterExNumeric(table, filter, type, {scale, rounding});
  });
}
