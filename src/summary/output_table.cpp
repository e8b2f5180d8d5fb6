#include "summary/output_table.h"

#include <string>
#include <utility>

#include "parallel/smpengine.h"
#include "tables/table_collection.h"

namespace qxe {

UntrimmedNames::UntrimmedNames()
    : before_(std::exchange(TTableCollection::m_nDisableTrimUntilSharp, true)) {}

UntrimmedNames::~UntrimmedNames() {
  TTableCollection::m_nDisableTrimUntilSharp = before_;
}

std::unique_ptr<TRealTable> new_output_table(const TBaseTable& source, int rows) {
  TTableCollection& tables = *ENG->collection();
  if (tables.count() >= TTableCollection::kMaxTables) {
    throw CQXException(report("SumTable", QX_ERROR_TABLE_COUNT, "TableCount overflow"));
  }
  char name[TBaseTable::kNameSize];
  raised(tables.GenTableName((std::string("XTBL_") + source.name()).c_str(), name));
  return std::make_unique<TRealTable>(tables.issue_table_id(), name, rows);
}

}  // namespace qxe
