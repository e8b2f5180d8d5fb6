// Join tables in the collection.
#include "joins/join_table.h"
#include "tables/table_collection.h"

namespace qxe {

int TTableCollection::add_join(const char* layer, const JoinRequest& request) {
  if (count() >= kMaxTables) return report(layer, QX_ERROR_TABLE_COUNT, "TableCount overflow");
  return adopt_table(std::make_unique<TJoinTable>(*this, issue_table_id(), request));
}

int TTableCollection::AddJoinTable(const JoinRequest& request) {
  return add_join("AddJoinTable", request);
}

int TTableCollection::MppAddJoinTable(const JoinRequest& request) {
  return add_join("MppAddJoinTable", request);
}

}  // namespace qxe
