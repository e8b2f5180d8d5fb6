#include "tables/table_collection.h"

#include <limits.h>

#include <algorithm>

#include "storage/strings.h"
#include "tables/realtables.h"

namespace qxe {

int TTableCollection::m_nCutLastSpace = 0;
bool TTableCollection::m_nDisableTrimUntilSharp = false;

TTableCollection::~TTableCollection() {
  while (!tables_.empty()) {  // what refers goes before what it refers to
    const std::unique_ptr<TBaseTable> last = std::move(tables_.back());
    tables_.pop_back();
  }
}

int TTableCollection::ID2Loc(int id) const {
  const auto place =
      std::lower_bound(tables_.begin(), tables_.end(), id,
                       [](const auto& table, int wanted) { return table->id() < wanted; });
  if (place == tables_.end() || (*place)->id() != id) return QX_ERROR_NO_TABLE;
  return static_cast<int>(place - tables_.begin());
}

int TTableCollection::Name2Loc(const char* name) const {
  for (size_t i = 0; i < tables_.size(); ++i) {
    if (strcmp(tables_[i]->name(), name) == 0) return static_cast<int>(i);
  }
  return QX_ERROR_NO_TABLE;
}

TBaseTable* TTableCollection::find(int id) const {
  const int place = ID2Loc(id);
  return place < 0 ? nullptr : &at(place);
}

TBaseTable* TTableCollection::GetTable(int id) const {
  TBaseTable* const table = find(id);
  if (table == nullptr) report("GetTable", QX_ERROR_NO_TABLE, "No Such Table: %d", id);
  return table;
}

int TTableCollection::GetTableIDList(int* out) const {
  for (const auto& table : tables_) *out++ = table->id();
  return count();
}

int TTableCollection::GetTableIDFromName(const char* name) const {
  const int place = Name2Loc(name);
  if (place < 0) return report("GetTableIDFromName", QX_ERROR_NO_TABLE, "No Table");
  return at(place).id();
}

int TTableCollection::AddRealTable(const char* name, int rows) {
  if (count() >= kMaxTables) {
    return report("AddRealTable", QX_ERROR_TABLE_COUNT, "TableCount overflow");
  }
  if (rows < 0) {
    return report("AddRealTable", QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(%d)", rows);
  }
  char unique[TBaseTable::kNameSize];
  if (GenTableName(name, unique) < 0) {
    return report("AddRealTable", QX_ERROR_TABLE_NAME, "Invalid Parameter : TblName(%s)", name);
  }
  return adopt_table(std::make_unique<TRealTable>(issue_table_id(), unique, rows));
}

int TTableCollection::issue_table_id() {
  if (FTblIDIssued == INT_MAX) throw CQXException(QX_ERROR_TABLE_COUNT, "TableCount overflow");
  return ++FTblIDIssued;
}

int TTableCollection::adopt_table(std::unique_ptr<TBaseTable> table) {
  tables_.push_back(std::move(table));
  return tables_.back()->id();
}

int TTableCollection::ReferedIDList(int id, int* out) const {
  const int place = ID2Loc(id);
  if (place < 0) {
    return report("ReferedIDList", QX_ERROR_NO_TABLE, "No Such Table: %d", id);
  }
  if (at(place).GetType() != TableKind::kReal) {
    return report("ReferedIDList", QX_ERROR_NOT_REAL, "Illegal table type ( Not REAL )");
  }
  const auto& target = static_cast<const TRealTable&>(at(place));
  int referring = 0;
  // What depends on a table is made after it.
  for (int i = place + 1; i < count(); ++i) {
    if (at(i).refers_to(target)) out[referring++] = at(i).id();
  }
  return referring;
}

bool TTableCollection::IsReferred(int id) const {
  const int place = ID2Loc(id);
  if (place < 0 || at(place).GetType() != TableKind::kReal) return false;
  const auto& target = static_cast<const TRealTable&>(at(place));
  return std::any_of(tables_.begin() + place + 1, tables_.end(),
                     [&](const auto& table) { return table->refers_to(target); });
}

bool TTableCollection::IsEditable(int id) const {
  const TBaseTable* const table = find(id);
  return table != nullptr && table->GetType() == TableKind::kReal && !IsReferred(id);
}

int TTableCollection::DelTable(int id) {
  const int place = ID2Loc(id);
  if (place < 0) return report("DelTable", QX_ERROR_NO_TABLE, "No Such Table: %d", id);
  if (at(place).GetType() == TableKind::kReal && IsReferred(id)) {
    return report("DelTable", QX_ERROR_REFERRED, "Failed to refere table");
  }
  // Its guests close with it, and one of them may delete a table of its own.
  const std::unique_ptr<TBaseTable> gone = std::move(tables_[static_cast<size_t>(place)]);
  tables_.erase(tables_.begin() + place);
  return 0;
}

long TTableCollection::GetTotalMemorySize() const {
  long size =
      static_cast<long>(sizeof(TTableCollection) + tables_.capacity() * sizeof(TBaseTable*));
  for (const auto& table : tables_) size += table->GetMemSize();
  return size;
}

long TTableCollection::GetTotalMemorySizeWithShared() const {
  long size = GetTotalMemorySize();
  for (const auto& table : tables_) {
    if (table->GetType() == TableKind::kReal) {
      size += static_cast<const TRealTable&>(*table).GetBorrowedSize();
    }
  }
  return size;
}

int TTableCollection::GetPathName(char* path, char* name) const {
  qxe_strlcpy(path, database_path_, kPathSize);
  qxe_strlcpy(name, database_name_, kPathSize);
  return 0;
}

}  // namespace qxe
