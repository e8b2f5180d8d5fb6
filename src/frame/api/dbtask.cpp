#include "frame/api/dbtask.h"

#include "calc/datetime.h"
#include "frame/api/serial_layer.h"
#include "import/catalog_import.h"
#include "import/search_values.h"
#include "parallel/smpengine.h"
#include "search/sort.h"

namespace qxe {

CDBParallelTask* MPTask = nullptr;

int CDBTask::GetErrorLog(int* time, char* apiName, int* code, char* message) {
  return ENG->error_ring().take(time, apiName, code, message);
}

int CDBTask::StrToTime(const char* text, double* out) {
  bool bad = false;
  *out = Str2Time(text, true, &bad);
  return bad ? report("QXStrToTime", QX_ERROR_PARAMETER, "NOT A TIME: %s", text) : 0;
}

CDBParallelTask& CDBParallelTask::Instance() {
  static CDBParallelTask task;
  return task;
}

// Set algebra

int CDBParallelTask::SetNotReal(int table, int set) {
  return with_table({.layer = "RQXSetNotReal", .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) { return target.MppSetNot(set); });
}

int CDBParallelTask::SetOpeReal(int table, int op, int set1, int set2) {
  return with_table({.layer = "RQXSetOpeReal", .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) { return target.MppSetOpe(op, set1, set2); });
}

// Search and sort

namespace {

int check_direction(const char* layer, int dir) {
  if (dir == QX_SORT_ASC || dir == QX_SORT_DESC) return 0;
  return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : SortDir(%d)", dir);
}

/// Directions of the keys of a list that ends at its first entry below 1.
int check_directions(const char* layer, const int* filters, const int* dirs) {
  for (int i = 0; i < QX_MAX_SORT_KEYS && filters[i] >= 1; ++i) {
    const int status = check_direction(layer, dirs[i]);
    if (status < 0) return status;
  }
  return 0;
}

}  // namespace

int CDBParallelTask::SearchByField(int table, int filter, int set, int ope, const char* value1,
                                   const char* value2) {
  return with_table({.layer = "RQXSearchByField", .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) {
                      return target.MppSearchByField(filter, set, ope, value1, value2);
                    });
}

int CDBParallelTask::SearchByFieldWildCard(int table, int filter, int set, const char* pattern) {
  return with_real_table(
      {.layer = "RQXSearchByFieldWildCard", .saved = &g_TFSSaved}, table,
      [&](TRealTable& target) { return target.MppSearchByFieldWildCard(filter, set, pattern); });
}

int CDBParallelTask::ServiceSortByN(int n, const int* counts, int* nonZero, int* nonZeroIndex,
                                    int* order) {
  return with_collection({.layer = "RQXServiceSortByN"}, [&](TTableCollection&) {
    return service_sort_by_n(n, counts, nonZero, nonZeroIndex, order);
  });
}

int CDBParallelTask::SortByField(int table, int filter, int set, int dir) {
  static constexpr char kLayer[] = "RQXSortByField";
  const int status = check_direction(kLayer, dir);
  if (status < 0) return status;
  return with_table({.layer = kLayer, .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) { return target.MppSortByField(filter, set, dir); });
}

int CDBParallelTask::IntegratedSortByField(int table, int set, const int* filters,
                                           const int* dirs) {
  static constexpr char kLayer[] = "RQXIntegratedSortByField";
  const int status = check_directions(kLayer, filters, dirs);
  if (status < 0) return status;
  return with_table({.layer = kLayer, .saved = &g_TFSSaved}, table, [&](TBaseTable& target) {
    return target.MppIntegratedSortByField(set, filters, dirs);
  });
}

int CDBParallelTask::SearchByFieldNValues(int table, int filter, int set, int count,
                                          const void* values) {
  return with_table({.layer = "RQXSearchByFieldNValues", .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) {
                      return target.MppSearchByFieldNValues(filter, set, count, values);
                    });
}

int CDBTask::SearchByFieldNValuesFromCSV(int table, int filter, int set, const char* directory,
                                         const char* file) {
  SearchValues values;
  const int status = with_filter({.layer = "RQXSearchByFieldNValuesFromCSV"}, table, filter,
                                 [&](TBaseTable&, TFilter& column) {
                                   values = getValuesFromCSV(column.data_type(), directory, file);
                                   return 0;
                                 });
  if (status < 0) return status;
  return SearchByFieldNValues(table, filter, set, values.count(), values.data());
}

// Import

int CDBParallelTask::AddCatalogFile(const char* directory, const char* catalog) {
  return with_collection({.layer = "RQXAddCatalogFile", .saved = &g_TFSaved},
                         [&](TTableCollection&) { return add_catalog_file(directory, catalog); });
}

int CDBParallelTask::AddCatalogFileEx2(const char* catalogDirectory, const char* catalog,
                                       const char* dataDirectory, const char* dataFile,
                                       const char* tableName) {
  return with_collection(
      {.layer = "RQXAddCatalogFileEx2", .saved = &g_TFSaved}, [&](TTableCollection&) {
        return add_catalog_file_ex2(catalogDirectory, catalog, dataDirectory, dataFile, tableName);
      });
}

int CDBParallelTask::AppendCatalogFile(int table, int rowPos, int rowCount, const char* directory,
                                       const char* catalog) {
  return with_real_table(
      {.layer = "RQXAppendCatalogFile", .access = Access::kEdit, .saved = &g_TFSaved}, table,
      [&](TRealTable& target) {
        return append_catalog_file(target, rowPos, rowCount, directory, catalog);
      });
}

int CDBParallelTask::AppendCatalogFileEx2(int table, int rowPos, int rowCount,
                                          const char* catalogDirectory, const char* catalog,
                                          const char* dataDirectory, const char* dataFile) {
  return with_real_table(
      {.layer = "RQXAppendCatalogFileEx2", .access = Access::kEdit, .saved = &g_TFSaved}, table,
      [&](TRealTable& target) {
        return append_catalog_file_ex2(target, rowPos, rowCount, catalogDirectory, catalog,
                                       dataDirectory, dataFile);
      });
}

}  // namespace qxe
