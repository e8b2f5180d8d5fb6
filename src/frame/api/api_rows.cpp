// Plain functions: reading, searching and sorting rows.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

// Rows

int QXGetData(int table, int filter, int set, int pos, int* type, void* out) {
  return plain_call(__func__, {type, out},
                    [&] { return innerQXGetData(table, filter, set, pos, type, out); });
}

int QXGetData1(int table, int filter, int set, int pos, int* type, void* out) {
  return plain_call(__func__, {type, out},
                    [&] { return innerQXGetData1(table, filter, set, pos, type, out); });
}

int QXGetRowNo(int table, int set, int pos, int* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetRowNo(table, set, pos, out); });
}

int QXGetRowNo1(int table, int set, int pos, int* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetRowNo1(table, set, pos, out); });
}

// Searches and sorts

int QXSearchByField(int table, int filter, int set, int ope, char* value1, char* value2) {
  return plain_call([&] { return innerQXSearchByField(table, filter, set, ope, value1, value2); });
}

int QXSearchByField2(int table, int filter, int set, int ope, char* value1, char* value2) {
  return plain_call([&] { return innerQXSearchByField2(table, filter, set, ope, value1, value2); });
}

int QXSearchByFieldWildCard(int table, int filter, int set, const char* pattern) {
  return plain_call([&] { return innerQXSearchByFieldWildCard(table, filter, set, pattern); });
}

int QXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2) {
  return plain_call([&] { return innerQXSearchByRowNo(table, filter, set, ope, n1, n2); });
}

int QXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2) {
  return plain_call([&] { return innerQXSearchByDispRowNoReal(table, set, ope, n1, n2); });
}

int QXSearch(int table, int filter, int set, unsigned char* flags) {
  return plain_call(__func__, {flags}, [&] { return innerQXSearch(table, filter, set, flags); });
}

int QXSortByField(int table, int filter, int set, int dir) {
  return plain_call([&] { return innerQXSortByField(table, filter, set, dir); });
}

int QXSortByRowNo(int table, int filter, int set, int dir) {
  return plain_call([&] { return innerQXSortByRowNo(table, filter, set, dir); });
}

int QXExtractUniqueReal(int table, int set, int* filters) {
  return plain_call(__func__, {filters},
                    [&] { return innerQXExtractUniqueReal(table, set, filters); });
}

int QXServiceSortByN(int n, int* counts, int* nonZero, int* nonZeroIndex, int* order) {
  return plain_call(__func__, {if_any(n, counts), nonZero, if_any(n, nonZeroIndex)},
                    [&] { return innerQXServiceSortByN(n, counts, nonZero, nonZeroIndex, order); });
}
