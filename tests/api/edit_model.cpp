#include "edit_model.h"

#include <gtest/gtest.h>

#include "support/engine_test.h"

namespace qxe::test {

ModelTable::ModelTable(TestTable made, Columns wanted)
    : table(made), columns(std::move(wanted)), sets{{table.set_id(TestTable::kAllRows), {}}} {
  sets.front().rows = model().all_rows();
}

EditModel::EditModel(unsigned seed) : random(seed) {
  // Below a hundred rows values do not wait for a merge, above they do.
  for (const int rows : {random.below(20), 90 + random.below(20), 150 + random.below(150)}) {
    Columns columns = random.table(rows);
    tables.emplace_back(TestTable(columns), std::move(columns));
  }
}

Cell EditModel::any_value(const Column& column) {
  if (random.chance(70)) return normal_form(random.bound(column), column.type);
  Column fresh = random.column(column.type, 1);
  return column.type == QX_DT_DECIMAL && fresh.scale != column.scale ? Cell{} : fresh.cells[0];
}

std::vector<Cell> EditModel::any_values(const Column& column, int count) {
  std::vector<Cell> values;
  for (int i = 0; i < count; ++i) values.push_back(any_value(column));
  return values;
}

void EditModel::expect_status(int status, int wanted) const {
  EXPECT_EQ(hex(status), hex(wanted)) << to_text(drain_ring());
}

void EditModel::expect_equal() const {
  for (const ModelTable& wanted : tables) {
    SCOPED_TRACE("table " + std::to_string(wanted.id()));
    ASSERT_EQ(wanted.table.total_rows(), wanted.total_rows());
    ASSERT_EQ(RQXGetNSet(wanted.id()), static_cast<int>(wanted.sets.size()));
    for (const ModelSet& set : wanted.sets) {
      ASSERT_EQ(wanted.table.rows(set.id), set.rows) << "set " << set.id;
    }
    for (const auto& [name, column] : wanted.columns) {
      ASSERT_EQ(wanted.table.column(name).cells, column.cells) << name;
    }
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

void run_edits(unsigned seed, int steps, const std::vector<EditOperation>& operations) {
  RQXClearDB();
  drain_ring();
  EditModel model(seed);
  std::string journal;
  for (int step = 0; step < steps; ++step) {
    journal += std::to_string(step) + ": " + chosen(model.random, operations).run(model) + "\n";
    // Now and then, so that pending values are read as they wait and as they are merged.
    if (step % 8 == 7 || step == steps - 1) model.expect_equal();
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << "seed " << seed << "\n" << journal;
      return;
    }
  }
}

}  // namespace qxe::test
