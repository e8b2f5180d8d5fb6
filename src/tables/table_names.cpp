// Names of tables: checking, making them unique, generating them.
#include <time.h>

#include "storage/strings.h"
#include "tables/free_name.h"
#include "tables/table_collection.h"

namespace qxe {

int TTableCollection::GenTableName(const char* seed, char* out) const {
  char base[TBaseTable::kNameSize];
  if (seed == nullptr || !verifySeedName(seed, base)) {
    return report("GenTableName", QX_ERROR_TABLE_NAME, "Invalid Parameter : SeedName");
  }
  char candidate[kFreeNameSize];
  first_free_name(
      base, count(), [&](int i) { return at(i).name(); }, candidate);
  if (strlen(candidate) >= TBaseTable::kNameSize) {
    report("GenTableName", QX_ERROR_FILE, "Failed to get tablename");
    return QX_ERROR_TABLE_NAME;
  }
  qxe_strlcpy(out, candidate, TBaseTable::kNameSize);
  return 0;
}

int TTableCollection::CheckTableName(const char* name) const {
  char cleaned[TBaseTable::kNameSize];
  char unique[TBaseTable::kNameSize];
  const bool good = name != nullptr &&
                    qxe_strlcpy(cleaned, name, sizeof cleaned) < sizeof cleaned &&
                    ToFileName(cleaned) && GenTableName(cleaned, unique) >= 0;
  if (good) return 0;
  return report("CheckTableName", QX_ERROR_TABLE_NAME, "Illegal table name  : %s",
                name == nullptr ? "" : name);
}

int TTableCollection::SetTableName(int id, const char* name) {
  const size_t length = strlen(name);
  if (length >= TBaseTable::kNameSize) {
    return report("SetTableName", QX_ERROR_TABLE_NAME, "Invalid Parameter : TableName len(%d)",
                  static_cast<int>(length));
  }
  char cleaned[TBaseTable::kNameSize];
  qxe_strlcpy(cleaned, name, sizeof cleaned);
  if (!ToFileName(cleaned)) {
    return report("SetTableName", QX_ERROR_TABLE_NAME, "Invalid Parameter : TableName(%s)", name);
  }
  const int same = Name2Loc(cleaned);
  if (same >= 0 && at(same).id() == id) return 0;
  char unique[TBaseTable::kNameSize];
  const int status = GenTableName(cleaned, unique);
  if (status < 0) return status;
  TBaseTable* const table = find(id);
  if (table == nullptr) {
    return report("SetTableName", QX_ERROR_NO_TABLE, "No Such Table: %d ", id);
  }
  table->set_name(unique);
  return 0;
}

namespace {

const char* prefix_of(TTableCollection::GeneratedName kind) {
  switch (kind) {
    case TTableCollection::GeneratedName::kFilter: return "filter";
    case TTableCollection::GeneratedName::kRealizedTable: return "createtbl";
    case TTableCollection::GeneratedName::kJoinTable: return "jointbl";
    case TTableCollection::GeneratedName::kRealTable: break;
  }
  return "realtbl";
}

}  // namespace

int ValidateNames(const char* name, TTableCollection::GeneratedName kind, char* out) {
  if (name != nullptr && *name != '\0') {
    if (qxe_strlcpy(out, name, TBaseTable::kNameSize) < TBaseTable::kNameSize) return 0;
    return kind == TTableCollection::GeneratedName::kFilter ? QX_ERROR_FILTER_NAME
                                                            : QX_ERROR_TABLE_NAME;
  }
  const time_t now = time(nullptr);
  tm local{};
  localtime_r(&now, &local);
  char stamp[32];
  strftime(stamp, sizeof stamp, "%Y%m%d%H%M%S", &local);
  snprintf(out, TBaseTable::kNameSize, "%s%s_%d", prefix_of(kind), stamp, 1);
  return 0;
}

}  // namespace qxe
