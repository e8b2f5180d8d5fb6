// A table that rows are appended to, beside a naive model of it.
#pragma once

#include <algorithm>

#include "import/column_files.h"
#include "import/import_fixture.h"
#include "support/naive_model.h"
#include "support/random_data.h"

namespace qxe::test {

/// What a failed append must leave: the texts of all cells, and the sets.
struct TableState {
  std::vector<std::vector<std::string>> texts;
  std::vector<std::vector<int>> sets;

  bool operator==(const TableState&) const = default;
};

/// Writes cells from row `first` on as an append does: NULLs fill a gap.
inline void write_cells(Column& column, int first, const std::vector<Cell>& cells) {
  if (cells.empty()) return;
  const auto begin = static_cast<size_t>(first - 1);
  const size_t end = std::max(column.cells.size(), begin + cells.size());
  column.cells.resize(end, normal_form({}, column.type));
  std::copy(cells.begin(), cells.end(), column.cells.begin() + first - 1);
}

/// The first `count` cells, NULLs behind the last one.
inline std::vector<Cell> first_cells(const Column& column, int count) {
  std::vector<Cell> cells = column.cells;
  cells.resize(static_cast<size_t>(count), normal_form({}, column.type));
  return cells;
}

class AppendTest : public ImportTest {
 protected:
  int append(const TestTable& table, int pos, int count, const std::string& catalog,
             const std::string& data) const {
    write_file(directory() / "append.cat", catalog);
    write_file(directory() / "SrcData.dat", data);
    return RQXAppendCatalogFile(table.id(), pos, count, directory().path().c_str(), "append.cat");
  }

  static TableState state_of(const TestTable& table) {
    TableState state;
    int filters[QX_CATALOG_MAX_COLUMNS + 1];
    const int count = require(RQXGetFilterIDList(table.id(), filters), "RQXGetFilterIDList");
    for (int i = 0; i < count; ++i) {
      char name[256];
      require(RQXGetFilterName(table.id(), filters[i], name), "RQXGetFilterName");
      state.texts.push_back(table.texts(name));
    }
    for (int set = 1; set <= RQXGetNSet(table.id()); ++set) state.sets.push_back(table.rows(set));
    return state;
  }

  /// The table's cells are the model's, sets but the first one are as they were, and searches and
  /// sorts of each column agree with plain loops.
  static void expect_table(const TestTable& table, const Columns& wanted, RandomData& random) {
    const NaiveModel model(wanted);
    ASSERT_EQ(table.rows(), model.all_rows());
    Columns read;
    for (const NamedColumn& named : wanted) {
      read.push_back({named.name, table.column(named.name)});
      ASSERT_EQ(read.back().column.type, named.column.type) << named.name;
      ASSERT_EQ(cell_texts(read.back().column), cell_texts(named.column)) << named.name;
    }
    const NaiveModel cells(read);
    for (const NamedColumn& named : read) {
      const Cell bound = random.bound(named.column);
      const int found = table.search(named.name, QX_OPE_GEQ, bound);
      ASSERT_EQ(table.rows(found),
                cells.search(named.name, QX_OPE_GEQ, bound, {}, model.all_rows()))
          << named.name;
      ASSERT_EQ(table.rows(table.sort(named.name)), cells.sort({{named.name}}, model.all_rows()))
          << named.name;
    }
  }
};

}  // namespace qxe::test
