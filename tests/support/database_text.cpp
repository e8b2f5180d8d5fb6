#include "support/database_text.h"

#include <filesystem>
#include <sstream>
#include <vector>

#include "support/test_table.h"

namespace qxe::test {

namespace {

template <class Get>
std::vector<int> list_of(int count, Get&& get) {
  std::vector<int> ids(static_cast<size_t>(count));
  if (count > 0) get(ids.data());
  return ids;
}

std::vector<int> filters_of(int table) {
  return list_of(require(RQXGetNFilter(table), "RQXGetNFilter"),
                 [&](int* out) { RQXGetFilterIDList(table, out); });
}

std::vector<int> sets_of(int table) {
  const int count = require(RQXGetNSet(table), "RQXGetNSet");
  return list_of(count, [&](int* out) { RQXGetSetList(table, count, out); });
}

void put_sets(int table, std::ostream& out) {
  for (const int set : sets_of(table)) {
    char name[256] = "";
    require(RQXGetSetName(table, set, name), "RQXGetSetName");
    out << "  set " << set << " " << name << ":";
    for (const int row : TestTable::existing(table).rows(set)) out << " " << row;
    out << "\n";
  }
  out << "  current set " << RQXGetCurrentSetID(table) << "\n";
}

}  // namespace

std::string table_text(int table) {
  const TestTable reader = TestTable::existing(table);
  std::ostringstream out;
  char name[256] = "";
  require(RQXGetTableName(table, name), "RQXGetTableName");
  out << "table " << name << " of " << reader.total_rows() << " rows\n";
  for (const int filter : filters_of(table)) {
    require(RQXGetFilterName(table, filter, name), "RQXGetFilterName");
    out << "  " << name << " of type " << RQXGetFilterType(table, filter) << ":";
    for (const std::string& text : reader.texts(name)) out << " " << text;
    out << "\n";
  }
  return out.str();
}

std::string database_text() {
  std::ostringstream out;
  const auto tables = list_of(RQXGetNTable(), [](int* ids) { RQXGetTableIDList(ids); });
  for (const int table : tables) {
    out << table << ": " << table_text(table) << "  filters";
    for (const int filter : filters_of(table)) out << " " << filter;
    out << "\n";
    put_sets(table, out);
  }
  int flags[3] = {};
  RQXGetSavedFlag(flags, flags + 1, flags + 2);
  out << "saved " << flags[0] << flags[1] << flags[2] << "\nin " << std::filesystem::current_path();
  return out.str();
}

}  // namespace qxe::test
