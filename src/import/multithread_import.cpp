#include "import/multithread_import.h"

#include "import/row_append.h"
#include "parallel/smpengine.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

int CCMultiThreadImport::MppImport(const std::string& dataFile, const char* tableName) {
  parse_.parse(dataFile, ParallelParse::kAllRows);
  return MppImport_run_step2(tableName);
}

int CCMultiThreadImport::MppImport_run_step2(const char* tableName) {
  TTableCollection& tables = *ENG->collection();
  if (tables.count() >= TTableCollection::kMaxTables) {
    throw CQXException(report("AddRealTable", QX_ERROR_TABLE_COUNT, "TableCount overflow"));
  }
  char name[TBaseTable::kNameSize];
  raised(tables.GenTableName(tableName, name));
  const int rows = static_cast<int>(parse_.rows());
  auto table = std::make_unique<TRealTable>(tables.issue_table_id(), name, rows);
  std::vector<Column> columns(layout_.columns.size());
  for (const size_t i : parse_.columns_by_size()) columns[i] = parse_.take_column(i, rows);
  for (size_t i = 0; i < columns.size(); ++i) {
    raised(table->AddFilter(static_cast<int>(i), layout_.columns[i].name.c_str(),
                            std::move(columns[i])));
  }
  return tables.adopt_table(std::move(table));
}

int CCMultiThreadImport::MppAppend(const std::string& dataFile, TRealTable& table,
                                   RowAppend& append) {
  parse_.parse(dataFile, append.count());
  for (const size_t i : parse_.columns_by_size()) {
    append.set_column(*table.filter_at(static_cast<int>(i)), parse_.take_column(i, append.count()));
  }
  return append.commit();
}

}  // namespace qxe
