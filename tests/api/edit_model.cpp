#include "edit_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "support/engine_test.h"
#include "support/raw_values.h"

namespace qxe::test {

ModelTable::ModelTable(TestTable made, Columns wanted)
    : table(made), columns(std::move(wanted)), sets{{table.set_id(TestTable::kAllRows), {}}} {
  sets.front().rows = model().all_rows();
}

ModelTable::ModelTable(const Columns& wanted) : ModelTable(TestTable(wanted), wanted) {}

void ModelTable::take_rows() {
  const auto before = sets.front().rows.size();
  sets.front().rows = model().all_rows();
  if (sets.front().rows.size() != before) cursor.reset();
}

EditModel::EditModel(const RandomData& data, int code) : random(data), locale(code) {
  RQXClearDB();
  require(RQXSetKanjiCode(code), "RQXSetKanjiCode");
  drain_ring();
  // Below a hundred rows values do not wait for a merge, above they do.
  for (const int rows : {random.below(20), 90 + random.below(20), 150 + random.below(150)}) {
    tables.emplace_back(random.table(rows));
  }
}

Cell EditModel::any_value(const Column& column) {
  if (random.chance(70)) return normal_form(random.bound(column), column.type);
  Column fresh = random.column(column.type, 1);
  return column.type == QX_DT_DECIMAL && fresh.scale != column.scale ? Cell{} : fresh.cells[0];
}

std::vector<Cell> EditModel::any_values(const Column& column, int count) {
  std::vector<Cell> values(static_cast<size_t>(count));
  for (Cell& value : values) value = any_value(column);
  return values;
}

void EditModel::expect_status(int status, int wanted) const {
  EXPECT_EQ(hex(status), hex(wanted)) << to_text(drain_ring());
}

void EditModel::expect_equal() const {
  for (const ModelTable& table : tables) test::expect_equal(table);
}

void EditModel::expect_sample() {
  constexpr int kCells = 4;
  for (ModelTable& table : tables) {
    for (int i = 0; i < kCells; ++i) {
      const auto& [id, rows] = any_set(table);
      const auto& [name, column] = any_column(table);
      if (rows.empty()) continue;
      const int position = random.below(static_cast<int>(rows.size()));
      const auto row = static_cast<size_t>(rows[static_cast<size_t>(position)]);
      const Cell cell = table.table.cell(name, position + 1, id);
      const Cell& wanted = column.cells[row - 1];
      ASSERT_EQ(cell, wanted) << to_text(cell, column.type) << " for "
                              << to_text(wanted, column.type) << " in "
                              << told(table, name, {id, position + 1});
    }
  }
}

std::string told(const ModelTable& table, const std::string& what,
                 std::initializer_list<int> numbers) {
  std::string text = "table " + std::to_string(table.id()) + " " + what;
  for (const int number : numbers) text += " " + std::to_string(number);
  return text;
}

void take_names(ModelTable& table) {
  std::vector<int> ids(512);
  const int count = require(RQXGetFilterIDList(table.id(), ids.data()), "RQXGetFilterIDList");
  ASSERT_EQ(count, static_cast<int>(table.columns.size()));
  for (size_t i = 0; i < table.columns.size(); ++i) {
    char name[256] = "";
    require(RQXGetFilterName(table.id(), ids[i], name), "RQXGetFilterName");
    table.columns[i].name = name;
  }
}

void expect_equal(const ModelTable& table) {
  SCOPED_TRACE("table " + std::to_string(table.id()));
  ASSERT_EQ(table.table.total_rows(), table.total_rows());
  ASSERT_EQ(RQXGetNSet(table.id()), static_cast<int>(table.sets.size()));
  ASSERT_EQ(RQXGetNFilter(table.id()), static_cast<int>(table.columns.size()));
  for (const ModelSet& set : table.sets) {
    ASSERT_EQ(table.table.rows(set.id), set.rows) << "set " << set.id;
  }
  for (const auto& [name, wanted] : table.columns) {
    const Column column = table.table.column(name);
    ASSERT_EQ(column.type, wanted.type) << name;
    ASSERT_EQ(column.scale, wanted.scale) << name;
    ASSERT_EQ(column.cells, wanted.cells) << name;
  }
}

namespace {

std::vector<Cell> value_list(const _TFilterInfo& filter, int scale) {
  std::vector<Cell> cells;
  for (int i = 0; i < filter.valueCount; ++i) {
    switch (filter.type) {
      case QX_DT_INTEGER: cells.emplace_back(static_cast<int*>(filter.values)[i]); break;
      case QX_DT_STRING:
        cells.emplace_back(std::string(filter.pool + static_cast<long*>(filter.values)[i]));
        break;
      case QX_DT_DECIMAL:
        cells.push_back(from_numeric(static_cast<Numeric*>(filter.values)[i], scale));
        break;
      default: cells.emplace_back(static_cast<double*>(filter.values)[i]);
    }
    cells.back() = normal_form(cells.back(), filter.type);
  }
  return cells;
}

void expect_value_list(const _TFilterInfo& filter, const Column& column, bool all_used) {
  const std::vector<Cell> values = value_list(filter, column.scale);
  ASSERT_EQ(values.at(0), normal_form({}, column.type));
  ASSERT_EQ(std::adjacent_find(values.begin(), values.end(), std::greater_equal<>()), values.end());
  ASSERT_EQ(filter.rowCount, static_cast<int>(column.cells.size()) + 1);
  std::vector<bool> used(values.size());
  used[0] = true;
  for (size_t row = 1; row <= column.cells.size(); ++row) {
    const auto number = static_cast<size_t>(filter.pv[row]);
    ASSERT_LT(number, values.size()) << row;
    ASSERT_EQ(values[number], column.cells[row - 1]) << row;
    used[number] = true;
  }
  ASSERT_TRUE(!all_used || std::find(used.begin(), used.end(), false) == used.end());
}

}  // namespace

void expect_value_lists(const ModelTable& table, bool all_used) {
  for (const auto& [name, column] : table.columns) {
    SCOPED_TRACE(told(table, name, {}));
    _TFilterInfo filter = {};
    ASSERT_EQ(QXGetFilter(table.id(), table.table.filter(name), &filter), 0);
    expect_value_list(filter, column, all_used);
  }
}

namespace {

const EditOperation& chosen(RandomData& random, const std::vector<EditOperation>& operations) {
  int weights = 0;
  for (const EditOperation& operation : operations) weights += operation.weight;
  int left = random.below(weights);
  size_t i = 0;
  while (left >= operations[i].weight) left -= operations[i++].weight;
  return operations[i];
}

}  // namespace

void run_edits(EditModel model, const std::string& run, int steps,
               const std::vector<EditOperation>& operations) {
  std::string journal;
  for (int step = 0; step < steps; ++step) {
    journal += std::to_string(step) + ": " + chosen(model.random, operations).run(model) + "\n";
    // Now and then, so that pending values are read as they wait and as they are merged.
    model.expect_sample();
    if (step % 8 == 7 || step == steps - 1) model.expect_equal();
    if (step % 64 == 63) expect_value_lists(model.any_table());
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << run << "\n" << journal;
      return;
    }
  }
}

}  // namespace qxe::test
