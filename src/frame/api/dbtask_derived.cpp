// The task object's derived tables and filters.
#include "frame/api/dbtask.h"
#include "frame/api/serial_layer.h"

namespace qxe {

int CDBParallelTask::ExtractRealTable(const char* name, int table, int set, const int* filters) {
  return with_collection(
      {.layer = "RQXExtractRealTable", .saved = &g_TFSaved}, [&](TTableCollection& tables) {
        return tables.MppExtractRealTable(name, table, set, {.filters = filters});
      });
}

int CDBParallelTask::ExtractRealTableEx(const char* name, int table, int set,
                                        const ExtractedColumns& columns) {
  return with_collection({.layer = "RQXExtractRealTableEx", .saved = &g_TFSaved},
                         [&](TTableCollection& tables) {
                           return tables.MppExtractRealTable(name, table, set, columns);
                         });
}

int CDBParallelTask::CombineRealTable(const char* name, const CombineIds& first,
                                      const CombineIds& second) {
  return with_collection({.layer = "RQXCombineRealTable", .saved = &g_TFSaved},
                         [&](TTableCollection& tables) {
                           return tables.MppCombineRealTable(name, first, second, {false, false});
                         });
}

int CDBParallelTask::CombineRealTableEx(const char* name, CombinePseudo pseudo,
                                        const CombineIds& first, const CombineIds& second) {
  return with_collection({.layer = "RQXCombineRealTableEx", .saved = &g_TFSaved},
                         [&](TTableCollection& tables) {
                           return tables.MppCombineRealTable(name, first, second, pseudo);
                         });
}

int CDBParallelTask::DuplicateRealTable(const char* name, int table) {
  return with_collection(
      {.layer = "RQXDuplicateRealTable", .saved = &g_TFSaved},
      [&](TTableCollection& tables) { return tables.MppDuplicateRealTable(name, table); });
}

int CDBParallelTask::DupRealFilterEx(int table, int filter, int type) {
  return with_real_table(
      {.layer = "RQXDupRealFilterEx", .access = Access::kChange, .saved = &g_TFSaved}, table,
      [&](TRealTable& target) { return target.MppDupFilterEx(filter, type, nullptr); });
}

int CDBParallelTask::CondenseRealTable(int table) {
  return with_real_table(
      {.layer = "RQXCondenseRealTable", .access = Access::kEdit, .saved = &g_TFSaved}, table,
      [](TRealTable& target) { return target.MppCondenseTable(); });
}

}  // namespace qxe
