// Inserting rows into a real table.
#include <gtest/gtest.h>
#include <limits.h>

#include "frame/base/memory.h"
#include "parallel/smpengine.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

class InsertRowsTest : public EngineTest {
 protected:
  static TRealTable& inner(const TestTable& table) {
    return static_cast<TRealTable&>(*ENG->collection()->find(table.id()));
  }
};

Rows shifted(Rows rows, int at, int count) {
  for (int& row : rows) row += row >= at ? count : 0;
  return rows;
}

/// Overwrites the first rows with values that wait in the filters' tails.
void leave_pending(TRealTable& inner, const TestTable& table, Columns& columns,
                   const Columns& news) {
  for (size_t i = 0; i < columns.size(); ++i) {
    RawValues values(news[i].column);
    const auto count = static_cast<int>(news[i].column.cells.size());
    TFilter* const filter = inner.GetFilter(table.filter(columns[i].name));
    ASSERT_EQ(filter->UseTVL(0, count, values.data(), false, false, nullptr, inner.root_set()), 1);
    std::copy(news[i].column.cells.begin(), news[i].column.cells.end(),
              columns[i].column.cells.begin());
  }
}

TEST_F(InsertRowsTest, RowsMoveInFiltersTailsAndSets) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    RandomData random(seed);
    const int rows = random.chance(50) ? random.below(20) : 150;
    Columns columns = random.table(rows);
    const TestTable table(columns);
    const Rows set_rows = random.set_of(rows);
    const int set = table.add_set(set_rows);
    if (rows >= 150) leave_pending(inner(table), table, columns, random.table(20));

    const int pos = random.below(rows + 5);
    const int count = random.below(30) + 1;
    ASSERT_EQ(inner(table).InsRows(pos, count), count);
    const int at = std::clamp(pos, 1, rows + 1);
    for (NamedColumn& named : columns) {
      auto& cells = named.column.cells;
      cells.insert(cells.begin() + at - 1, static_cast<size_t>(count),
                   normal_form({}, named.column.type));
    }
    for (const bool merged : {false, true}) {
      if (merged) inner(table).CheckMergeFilterTVL(false);
      for (const auto& [name, column] : columns) {
        ASSERT_EQ(table.column(name).cells, column.cells) << "seed " << seed << " " << name;
      }
    }
    Rows all(static_cast<size_t>(rows + count));
    for (size_t i = 0; i < all.size(); ++i) all[i] = static_cast<int>(i) + 1;
    ASSERT_EQ(table.rows(), all);
    ASSERT_EQ(table.rows(set), shifted(set_rows, at, count));
  }
}

TEST_F(InsertRowsTest, BadArgumentsChangeNothing) {
  const TestTable table({{"a", ints({1, 2})}});
  expect_failure(inner(table).InsRows(-1, 1), QX_ERROR_ROW_POSITION,
                 "Invalid Parameter : InsPos(-1)");
  expect_failure(inner(table).InsRows(1, 0), QX_ERROR_PARAMETER, "Invalid Parameter : InsCount(0)");
  expect_failure(inner(table).InsRows(1, INT_MAX - 2), QX_ERROR_ROW_SIZE, "RowSize overflow");
  EXPECT_EQ(table.total_rows(), 2);
}

TEST_F(InsertRowsTest, AFailedAllocationChangesNothing) {
  RandomData random(5);
  const Columns columns = random.table(50);
  const TestTable table(columns);
  const long size = inner(table).GetMemSize();
  int failures = 0;
  for (bool inserted = false; !inserted; ++failures) {
    fail_allocation_after(failures, false);
    try {
      inserted = inner(table).InsRows(10, 1000) == 1000;
    } catch (const CQXException& failure) {
      EXPECT_EQ(failure.ErrorCode(), QX_ERROR_OUT_OF_MEMORY);
    }
    fail_allocation_after(-1, false);
    if (inserted) break;
    ASSERT_EQ(table.total_rows(), 50);
    ASSERT_EQ(inner(table).GetMemSize(), size);
    for (const auto& [name, column] : columns) {
      ASSERT_EQ(table.column(name).cells, column.cells) << name;
    }
  }
  EXPECT_EQ(failures, 8);  // seven filters and the set of all rows
}

}  // namespace
}  // namespace qxe::test
