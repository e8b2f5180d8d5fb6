// The collection's part in derived tables: sources by id, name and id of the new table.
#include "joins/join_table.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

TRealTable& TTableCollection::real_table(const char* layer, int id) const {
  TBaseTable* const table = GetTable(id);
  if (table == nullptr) throw CQXException(QX_ERROR_NO_TABLE, "No Such Table: %d", id);
  if (table->GetType() == TableKind::kReal) return static_cast<TRealTable&>(*table);
  throw CQXException(report(layer, QX_ERROR_NOT_REAL, "Illegal table type ( Not REAL )"));
}

TJoinTable& TTableCollection::join_table(const char* layer, int id) const {
  TBaseTable* const table = GetTable(id);
  if (table == nullptr) throw CQXException(QX_ERROR_NO_TABLE, "No Such Table: %d", id);
  if (table->GetType() == TableKind::kJoin) return static_cast<TJoinTable&>(*table);
  throw CQXException(report(layer, QX_ERROR_NOT_JOIN, "Illegal table type ( Not JOIN )"));
}

/// `fill` makes the new table's rows and columns. The table's id stays used when that fails.
template <class Fill>
int TTableCollection::derive_table(const char* name, Fill&& fill, GeneratedName kind) {
  if (count() >= kMaxTables) throw CQXException(QX_ERROR_TABLE_COUNT, "TableCount overflow");
  char valid[TBaseTable::kNameSize];
  raised(ValidateNames(name, kind, valid));
  char unique[TBaseTable::kNameSize];
  raised(GenTableName(valid, unique));
  auto table = std::make_unique<TRealTable>(issue_table_id(), unique);
  const int status = fill(*table);
  return status < 0 ? status : adopt_table(std::move(table));
}

int TTableCollection::DuplicateRealTable(const char* name, int table) {
  return derive_table(name, [&](TRealTable& copy) {
    return copy.DuplicateRealTable(real_table("DuplicateRealTable", table));
  });
}

int TTableCollection::MppDuplicateRealTable(const char* name, int table) {
  return derive_table(name, [&](TRealTable& copy) {
    return copy.MppDuplicateRealTable(real_table("MppDuplicateRealTable", table));
  });
}

int TTableCollection::ExtractRealTable(const char* name, int table, int set,
                                       const ExtractedColumns& columns) {
  return derive_table(name, [&](TRealTable& rows) {
    return rows.ExtractRealTable(set, real_table("ExtractRealTable", table), columns);
  });
}

int TTableCollection::MppExtractRealTable(const char* name, int table, int set,
                                          const ExtractedColumns& columns) {
  return derive_table(name, [&](TRealTable& rows) {
    return rows.MppExtractRealTable(set, real_table("MppExtractRealTable", table), columns);
  });
}

int TTableCollection::CombineRealTable(const char* name, const CombineIds& first,
                                       const CombineIds& second, CombinePseudo pseudo) {
  static constexpr char kLayer[] = "CombineRealTable";
  return derive_table(name, [&](TRealTable& rows) {
    return rows.CombineRealTable({real_table(kLayer, first.table), first.set, first.filters},
                                 {real_table(kLayer, second.table), second.set, second.filters},
                                 pseudo);
  });
}

int TTableCollection::MppCombineRealTable(const char* name, const CombineIds& first,
                                          const CombineIds& second, CombinePseudo pseudo) {
  static constexpr char kLayer[] = "MppCombineRealTable";
  return derive_table(name, [&](TRealTable& rows) {
    return rows.MppCombineRealTable({real_table(kLayer, first.table), first.set, first.filters},
                                    {real_table(kLayer, second.table), second.set, second.filters},
                                    pseudo);
  });
}

int TTableCollection::AddRealized(const char* name, int table, int set,
                                  const RealizedColumns& columns) {
  return derive_table(
      name,
      [&](TRealTable& pairs) {
        return pairs.ConvertJoinToReal(join_table("AddRealized", table), set, columns);
      },
      GeneratedName::kRealizedTable);
}

}  // namespace qxe
