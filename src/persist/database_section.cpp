// The database section: versions, ids, the names of all tables, then a section for each table.
#include <algorithm>

#include "joins/join_table.h"
#include "persist/data_version.h"
#include "persist/section_carrier.h"
#include "persist/section_check.h"
#include "persist/table_form.h"
#include "storage/strings.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

void TTableCollection::save_sections(SectionWriter& writer, const int* versions) const {
  const bool renumbered = std::none_of(tables_.begin(), tables_.end(), [](const auto& table) {
    return table->GetType() == TableKind::kJoin;
  });
  writer.write(versions, sizeof versions[0], 4);
  write_field(writer, renumbered ? count() : FTblIDIssued);
  write_field(writer, count());
  for (const auto& table : tables_) write_name(writer, table->name());
  for (int i = 0; i < count(); ++i) {
    at(i).SaveTable(writer, {.id = renumbered ? i + 1 : at(i).id(), .versions = versions});
  }
}

namespace {

struct TableName {
  char text[TBaseTable::kNameSize];
};

std::vector<TableName> read_names(SectionReader& reader, int count) {
  reader.check_left(sizeof(TableName), count);
  std::vector<TableName> names(static_cast<size_t>(count));
  for (TableName& name : names) read_name(reader, name.text);
  return names;
}

/// `tables` are those in front of it.
std::unique_ptr<TBaseTable> read_table(SectionReader& reader, const TTableCollection& tables) {
  switch (read_field<int>(reader)) {
    case QX_FILE_REAL: return std::make_unique<TRealTable>(reader);
    case QX_FILE_JOIN: return std::make_unique<TJoinTable>(reader, tables);
    default: throw CQXException(QX_ERROR_TABLE_KIND);
  }
}

}  // namespace

TTableCollection::TTableCollection(SectionReader& reader) {
  read_versions(reader, "TTableCollection");
  FTblIDIssued = read_field<int>(reader);
  const int tables = read_field<int>(reader);
  check_format(tables >= 0 && tables <= kMaxTables && FTblIDIssued >= 0);
  for (const TableName& name : read_names(reader, tables)) {
    auto table = read_table(reader, *this);
    check_format(table->id() <= FTblIDIssued &&
                 (count() == 0 || table->id() > tables_.back()->id()));
    table->set_name(name.text);
    adopt_table(std::move(table));
  }
}

void TTableCollection::check_loadable() const {
  if (count() < kMaxTables) return;
  throw CQXException(report("LoadRealTable", QX_ERROR_TABLE_COUNT_LOAD, "TableCount overflow"));
}

std::unique_ptr<TRealTable> TTableCollection::read_section(SectionReader& reader) const {
  check_loadable();
  if (read_field<int>(reader) != QX_FILE_REAL) throw CQXException(QX_ERROR_NOT_REAL_SOURCE);
  return std::make_unique<TRealTable>(reader);
}

int TTableCollection::load_section(SectionReader& reader) {
  return adopt_new_table(read_section(reader));
}

int TTableCollection::adopt_new_table(std::unique_ptr<TRealTable> table) {
  char unique[TBaseTable::kNameSize];
  if (GenTableName(table->name(), unique) < 0) throw CQXException(QX_ERROR_GEN_TABLE_NAME);
  table->set_name(unique);
  tables_.reserve(tables_.size() + 1);
  table->set_id(issue_table_id());
  return adopt_table(std::move(table));
}

}  // namespace qxe
