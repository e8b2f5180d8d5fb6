// Serial layer: tables, their names, and what everything takes in memory.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "storage/strings.h"

namespace qxe {

namespace {

char PC_UnqName[512];
int ReferedTableIDArray[TTableCollection::kMaxTables];

}  // namespace

int innerQXGetNTable() {
  return collection().count();
}

int innerQXGenerateTableName(const char* seed, char* out) {
  return with_collection({.layer = "QXGenerateTableName"},
                         [&](TTableCollection& tables) { return tables.GenTableName(seed, out); });
}

int innerQXGenTableName(const char* seed, char** out) {
  *out = PC_UnqName;
  return with_collection({.layer = "QXGenTableName"}, [&](TTableCollection& tables) {
    return tables.GenTableName(seed, PC_UnqName);
  });
}

int innerQXAddRealTable(const char* name, int rows) {
  return with_collection(
      {.layer = "QXAddRealTable", .saved = &g_TFSaved}, [&](TTableCollection& tables) {
        char valid[TBaseTable::kNameSize];
        const int status = ValidateNames(name, TTableCollection::GeneratedName::kRealTable, valid);
        return status < 0 ? status : tables.AddRealTable(valid, rows);
      });
}

int innerQXDeleteTable(int table) {
  static constexpr FailureText kTexts[] = {{QX_ERROR_REFERRED, "may be reffered by other table!"},
                                           {QX_ERROR_NO_TABLE, "table not exist"}};
  return with_collection({.layer = "QXDeleteTable", .saved = &g_TFSaved, .texts = kTexts},
                         [&](TTableCollection& tables) { return tables.DelTable(table); });
}

int innerQXGetTableIDList(int* out) {
  return collection().GetTableIDList(out);
}

int innerQXGetTableName(int table, char* out) {
  return with_table({.layer = "QXGetTableName"}, table, [&](TBaseTable& target) {
    qxe_strlcpy(out, target.name(), TBaseTable::kNameSize);
    return 0;
  });
}

int innerQXSetTableName(int table, const char* name) {
  return with_table(
      {.layer = "QXSetTableName", .access = Access::kChange, .saved = &g_TFSaved}, table,
      [&](TBaseTable&) { return collection().SetTableName(table, name == nullptr ? "" : name); });
}

int innerQXGetTableProperty(int table, _TTableInfo* out) {
  return with_table({.layer = "QXGetTableProperty"}, table, [&](TBaseTable& target) {
    *out = {.id = target.id(),
            .kind = target.GetTableKind(),
            .filterCount = target.GetNFilter(),
            .setCount = target.set_count(),
            .totalRows = target.TotalRecs(),
            .name = {}};
    qxe_strlcpy(out->name, target.name(), sizeof out->name);
    return 0;
  });
}

int innerQXGetTableIDFromName(const char* name) {
  return with_collection({.layer = "QXGetTableIDFromName"}, [&](TTableCollection& tables) {
    return tables.GetTableIDFromName(name == nullptr ? "" : name);
  });
}

int innerQXTableCanEdit(int table, int** out) {
  *out = ReferedTableIDArray;
  return with_real_table(
      {.layer = "QXTableCanEdit", .access = Access::kChange}, table,
      [&](TRealTable&) { return collection().ReferedIDList(table, ReferedTableIDArray); });
}

// Memory accounting

namespace {

int store_size(long bytes, unsigned long* size) {
  *size = static_cast<unsigned long>(bytes);
  return 0;
}

}  // namespace

int innerQXGetTotalMemorySize(unsigned long* size) {
  return store_size(collection().GetTotalMemorySize(), size);
}

int innerQXGetTotalMemorySizeWithShared(unsigned long* size) {
  return store_size(collection().GetTotalMemorySizeWithShared(), size);
}

int innerQXGetTableMemorySize(int table, unsigned long* size) {
  return with_table({.layer = "QXGetTableMemorySize"}, table,
                    [&](TBaseTable& target) { return store_size(target.GetMemSize(), size); });
}

int innerQXGetFilterMemorySize(int table, int filter, unsigned long* size) {
  return with_filter(
      {.layer = "QXGetFilterMemorySize"}, table, filter,
      [&](TBaseTable&, TFilter& column) { return store_size(column.GetMemSize(), size); });
}

int innerQXGetSetMemorySize(int table, int set, unsigned long* size) {
  return with_table({.layer = "QXGetSetMemorySize"}, table, [&](TBaseTable& target) {
    return target.GetSet(set) == nullptr ? QX_ERROR_NO_SET
                                         : store_size(target.set_memory(set), size);
  });
}

}  // namespace qxe
