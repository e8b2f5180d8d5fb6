// Serial layer: tables and filters that are made of others.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"

namespace qxe {

// Tables

int innerQXDuplicateRealTable(const char* name, int table) {
  return with_collection(
      {.layer = "QXDuplicateRealTable", .saved = &g_TFSaved},
      [&](TTableCollection& tables) { return tables.DuplicateRealTable(name, table); });
}

int innerQXExtractRealTable(const char* name, int table, int set, const int* filters) {
  return with_collection({.layer = "QXExtractRealTable", .saved = &g_TFSaved},
                         [&](TTableCollection& tables) {
                           return tables.ExtractRealTable(name, table, set, {.filters = filters});
                         });
}

int innerQXExtractRealTableEx(const char* name, int table, int set,
                              const ExtractedColumns& columns) {
  return with_collection(
      {.layer = "QXExtractRealTableEx", .saved = &g_TFSaved},
      [&](TTableCollection& tables) { return tables.ExtractRealTable(name, table, set, columns); });
}

int innerQXCombineRealTableEx(const char* name, CombinePseudo pseudo, const CombineIds& first,
                              const CombineIds& second) {
  return with_collection({.layer = "QXCombineRealTableEx", .saved = &g_TFSaved},
                         [&](TTableCollection& tables) {
                           return tables.CombineRealTable(name, first, second, pseudo);
                         });
}

int innerQXCombineTableList(const char* name, const CombineListIds& ids) {
  return with_collection(
      {.layer = "QXCombineTableList", .saved = &g_TFSaved},
      [&](TTableCollection& tables) { return tables.CombineTableList(name, ids); });
}

int innerQXCondenseRealTable(int table) {
  return with_real_table(
      {.layer = "QXCondenseRealTable", .access = Access::kEdit, .saved = &g_TFSaved}, table,
      [](TRealTable& target) { return target.CondenseTable(); });
}

// Filters

namespace {

template <class Duplicate>
int duplicate_filter(const char* layer, int table, Duplicate&& duplicate) {
  return with_real_table({.layer = layer, .access = Access::kChange, .saved = &g_TFSaved}, table,
                         duplicate);
}

}  // namespace

int innerQXDupRealFilter(int table, int filter) {
  return duplicate_filter("QXDupRealFilter", table,
                          [&](TRealTable& target) { return target.DupFilter(filter); });
}

int innerQXDupRealFilterEx(int table, int filter, int type) {
  return duplicate_filter("QXDupRealFilterEx", table, [&](TRealTable& target) {
    return target.DupFilterEx(filter, type, nullptr);
  });
}

int innerQXDupRealFilterExNumeric(int table, int filter, int type, const NumericInfo& info) {
  static constexpr char kLayer[] = "QXDupRealFilterExNumeric";
  return duplicate_filter(kLayer, table, [&](TRealTable& target) {
    const int status = type == QX_DT_DECIMAL ? check_numeric_info(kLayer, &info) : 0;
    return status < 0 ? status : target.DupFilterEx(filter, type, &info);
  });
}

}  // namespace qxe
