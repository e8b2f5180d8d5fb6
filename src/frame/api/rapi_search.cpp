// Exported functions: searches and sorts.

#include "frame/api/call_frame.h"
#include "frame/api/dbtask.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXSearchByField(int table, int filter, int set, int ope, char* value1, char* value2) {
  return pass_through_call(
      __func__, [&] { return innerQXSearchByField(table, filter, set, ope, value1, value2); });
}

int RQXSearchByFieldStr(int table, int filter, int set, int ope, char* value1, char* value2) {
  return pass_through_call(
      __func__, [&] { return innerQXSearchByField(table, filter, set, ope, value1, value2); });
}

int RQXSearchByField2(int table, int filter, int set, int ope, char* value1, char* value2) {
  return pass_through_call(
      __func__, [&] { return innerQXSearchByField2(table, filter, set, ope, value1, value2); });
}

int RQXSearchByFieldSJIS(int table, int filter, int set, int ope, char* value1, char* value2) {
  return pass_through_call(
      __func__, [&] { return innerQXSearchByFieldSJIS(table, filter, set, ope, value1, value2); });
}

int RQXSearchByFieldLocale(int table, int filter, int set, int ope, char* value1, char* value2,
                           int localeId) {
  return pass_through_call(__func__, [&] {
    return innerQXSearchByFieldLocale(table, filter, set, ope, value1, value2, localeId);
  });
}

int RQXSearchByFieldNValues(int table, int filter, int set, int count, void* values) {
  return guarded_call(__func__, {if_any(count, values)}, [&] {
    return DBTASK()->SearchByFieldNValues(table, filter, set, count, values);
  });
}

int RQXSearchByFieldNValuesFromCSV(int table, int filter, int set, const char* dir,
                                   const char* fileName) {
  return guarded_call(__func__, [&] {
    return DBTASK()->SearchByFieldNValuesFromCSV(table, filter, set, dir, fileName);
  });
}

int RQXSearchByFieldWildCard(int table, int filter, int set, const char* pattern) {
  return guarded_call(__func__,
                      [&] { return DBTASK()->SearchByFieldWildCard(table, filter, set, pattern); });
}

int RQXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2) {
  return pass_through_call(__func__,
                           [&] { return innerQXSearchByRowNo(table, filter, set, ope, n1, n2); });
}

int RQXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2) {
  return pass_through_call(__func__,
                           [&] { return innerQXSearchByDispRowNoReal(table, set, ope, n1, n2); });
}

// High-speed search

int RQXHighSpeedSearchSetMark(int table, int set, int filter, bool on) {
  return pass_through_call(__func__,
                           [&] { return innerQXHighSpeedSearchSetMark(table, set, filter, on); });
}

int RQXHighSpeedSearchHasMark(int table, int set, int filter) {
  return pass_through_call(__func__,
                           [&] { return innerQXHighSpeedSearchHasMark(table, set, filter); });
}

int RQXHighSpeedSearchEnable(int table, int filter, bool on) {
  return pass_through_call(__func__,
                           [&] { return innerQXHighSpeedSearchEnable(table, filter, on); });
}

int RQXHighSpeedSearchIsEnabled(int table, int filter) {
  return pass_through_call(__func__,
                           [&] { return innerQXHighSpeedSearchIsEnabled(table, filter); });
}

// Sorts

int RQXSortByField(int table, int filter, int set, int dir) {
  return guarded_call(__func__, [&] { return DBTASK()->SortByField(table, filter, set, dir); });
}

int RQXSortByRowNo(int table, int filter, int set, int dir) {
  return pass_through_call(__func__, [&] { return innerQXSortByRowNo(table, filter, set, dir); });
}

int RQXIntegratedSortByField(int table, int set, int* filters, int* dirs) {
  return guarded_call(__func__, {filters, dirs},
                      [&] { return DBTASK()->IntegratedSortByField(table, set, filters, dirs); });
}

int RQXExtractUniqueReal(int table, int set, int* filters) {
  return pass_through_call(__func__, {filters},
                           [&] { return innerQXExtractUniqueReal(table, set, filters); });
}
