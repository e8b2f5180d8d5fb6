#include "support/test_table.h"

#include <string.h>

#include <stdexcept>

#include "support/engine_test.h"
#include "support/raw_values.h"

namespace qxe::test {

namespace {

constexpr int kCellSize = 4096;

int rows_of(const Columns& columns) {
  const size_t rows = columns.empty() ? 0 : columns.front().column.cells.size();
  for (const NamedColumn& named : columns) {
    if (named.column.cells.size() != rows) {
      throw std::invalid_argument("columns of different length: " + named.name);
    }
  }
  return static_cast<int>(rows);
}

template <class T>
T read_as(const char* bytes) {
  T value = {};
  memcpy(&value, bytes, sizeof value);
  return value;
}

/// What RQXGetData1 left in `bytes`; a decimal has its info in front.
Cell read_cell(int type, const char* bytes) {
  switch (type) {
    case QX_DT_INTEGER: return ints({read_as<int>(bytes)}).cells[0];
    case QX_DT_STRING: return std::string(bytes);
    case QX_DT_DECIMAL:
      return from_numeric(read_as<Numeric>(bytes + sizeof(NumericInfo)),
                          read_as<NumericInfo>(bytes).scale);
    default: return doubles({read_as<double>(bytes)}).cells[0];
  }
}

}  // namespace

int require(int status, const std::string& call) {
  if (status < 0) {
    throw std::runtime_error(call + " failed with " + hex(status) + "; " + to_text(drain_ring()));
  }
  return status;
}

TestTable::TestTable(const Columns& columns, const std::string& name)
    : id_(require(RQXAddRealTable(name.c_str(), rows_of(columns)), "RQXAddRealTable")) {
  for (const NamedColumn& named : columns) add_column(named);
}

void TestTable::add_column(const NamedColumn& named) const {
  const Column& column = named.column;
  const int rows = static_cast<int>(column.cells.size());
  const int at_the_end = require(RQXGetNFilter(id_), "RQXGetNFilter");
  RawValues values(column);
  if (column.type == QX_DT_DECIMAL) {
    require(
        RQXAddRealFilter2Numeric(id_, at_the_end, named.name.c_str(), column.type, rows,
                                 values.data(), nullptr, nullptr, column.scale, QX_ROUND_HALFUP),
        "RQXAddRealFilter2Numeric");
  } else {
    require(RQXAddRealFilter2(id_, at_the_end, named.name.c_str(), column.type, rows, values.data(),
                              nullptr, nullptr),
            "RQXAddRealFilter2");
  }
}

int TestTable::filter(const std::string& column) const {
  return require(RQXGetFilterIDFromName(id_, column.c_str()), "RQXGetFilterIDFromName " + column);
}

int TestTable::type_of(int filter) const {
  return require(RQXGetFilterType(id_, filter), "RQXGetFilterType");
}

int TestTable::set_id(int set) const {
  if (set != kAllRows) return set;
  int root = 0;
  require(RQXGetSetList(id_, 1, &root), "RQXGetSetList");
  return root;
}

int TestTable::total_rows() const {
  return require(RQXGetTotalRows(id_), "RQXGetTotalRows");
}

int TestTable::add_set(std::vector<int> rows) const {
  return require(RQXAddSetReal(id_, static_cast<int>(rows.size()), rows.data()), "RQXAddSetReal");
}

std::vector<int> TestTable::rows(int set) const {
  const int id = set_id(set);
  int size = require(RQXGetSetSize(id_, id), "RQXGetSetSize");
  std::vector<int> rows(static_cast<size_t>(size));
  require(RQXGetSet(id_, id, &size, size, rows.data()), "RQXGetSet");
  return rows;
}

int TestTable::search(const std::string& column, int ope, const Cell& value1, const Cell& value2,
                      int set) const {
  const int id = filter(column);
  RawValues values(type_of(id), {value1, value2});
  return RQXSearchByField(id_, id, set_id(set), ope, values.value(0), values.value(1));
}

int TestTable::search_values(const std::string& column, const std::vector<Cell>& values,
                             int set) const {
  const int id = filter(column);
  RawValues raw(type_of(id), values);
  return RQXSearchByFieldNValues(id_, id, set_id(set), static_cast<int>(values.size()), raw.data());
}

int TestTable::sort(const std::string& column, int direction, int set) const {
  return RQXSortByField(id_, filter(column), set_id(set), direction);
}

int TestTable::sort(const std::vector<SortKey>& keys, int set) const {
  std::vector<int> filters;
  std::vector<int> directions;
  for (const SortKey& key : keys) {
    filters.push_back(filter(key.column));
    directions.push_back(key.direction);
  }
  filters.push_back(0);  // ends the list
  directions.push_back(0);
  return RQXIntegratedSortByField(id_, set_id(set), filters.data(), directions.data());
}

Cell TestTable::cell(const std::string& column, int position, int set) const {
  return cell_of(filter(column), set_id(set), position);
}

Cell TestTable::cell_of(int filter, int set, int position) const {
  int type = 0;
  alignas(Numeric) char bytes[kCellSize];
  require(RQXGetData1(id_, filter, set, position, &type, bytes), "RQXGetData1");
  return read_cell(type, bytes);
}

Column TestTable::column(const std::string& name, int set) const {
  const int id = filter(name);
  Column column{type_of(id), {}, 0};
  if (column.type == QX_DT_DECIMAL) {
    NumericInfo info = {};
    require(RQXGetNumericInfo(id_, id, &info, nullptr, false), "RQXGetNumericInfo");
    column.scale = info.scale;
  }
  const int rows = set_id(set);
  const int size = require(RQXGetSetSize(id_, rows), "RQXGetSetSize");
  for (int position = 1; position <= size; ++position) {
    column.cells.push_back(cell_of(id, rows, position));
  }
  return column;
}

std::vector<std::string> TestTable::texts(const std::string& column_name, int set) const {
  return to_texts(column(column_name, set));
}

std::string TestTable::text(const std::string& column, int position, int set) const {
  return to_text(cell(column, position, set), type_of(filter(column)));
}

}  // namespace qxe::test
