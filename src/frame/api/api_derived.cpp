// Plain functions: derived tables and filters.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXDuplicateRealTable(const char* name, int table) {
  return plain_call([&] { return innerQXDuplicateRealTable(name, table); });
}

int QXExtractRealTable(const char* name, int table, int set, int* filters) {
  return plain_call([&] { return innerQXExtractRealTable(name, table, set, filters); });
}

int QXExtractRealTableEx(const char* name, int table, int set, int addTableId, int addRecNo,
                         int* filters) {
  return plain_call([&] {
    return innerQXExtractRealTableEx(name, table, set, {filters, addTableId != 0, addRecNo != 0});
  });
}

int QXCombineRealTable(char* name, int table1, int set1, int* filters1, int table2, int set2,
                       int* filters2) {
  return plain_call(__func__, {filters1, filters2}, [&] {
    return innerQXCombineRealTableEx(name, {false, false}, {table1, set1, filters1},
                                     {table2, set2, filters2});
  });
}

int QXCombineRealTableEx(char* name, int addTableId, int addRowNumber, int table1, int set1,
                         int* filters1, int table2, int set2, int* filters2) {
  return plain_call(__func__, {filters1, filters2}, [&] {
    return innerQXCombineRealTableEx(name, {addTableId != 0, addRowNumber != 0},
                                     {table1, set1, filters1}, {table2, set2, filters2});
  });
}

int QXCombineTableList(char* name, int* tableIds, int* setIds, int* filters1, int* filters2,
                       int* filters3, int* filters4) {
  return plain_call(__func__, {tableIds, setIds}, [&] {
    return innerQXCombineTableList(name,
                                   {tableIds, setIds, {filters1, filters2, filters3, filters4}});
  });
}

int QXCondenseRealTable(int table) {
  return plain_call([&] { return innerQXCondenseRealTable(table); });
}

int QXDupRealFilter(int table, int filter) {
  return plain_call([&] { return innerQXDupRealFilter(table, filter); });
}

int QXDupRealFilterEx(int table, int filter, int type) {
  return plain_call([&] { return innerQXDupRealFilterEx(table, filter, type); });
}
