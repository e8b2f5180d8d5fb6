// First rows of distinct values and combinations, through the interface.
#include <gtest/gtest.h>

#include <set>

#include "support/engine_test.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;
using Names = std::vector<std::string>;

class UniqueTest : public EngineTest {
 protected:
  static int extract(const TestTable& table, const Names& columns, int set = TestTable::kAllRows) {
    std::vector<int> filters;
    for (const std::string& column : columns) filters.push_back(table.filter(column));
    filters.push_back(0);
    return RQXExtractUniqueReal(table.id(), table.set_id(set), filters.data());
  }

  static Rows first_rows(const NaiveModel& model, const Names& columns, const Rows& rows) {
    std::set<std::vector<Cell>> seen;
    Rows kept;
    for (const int row : rows) {
      std::vector<Cell> cells;
      for (const std::string& column : columns) cells.push_back(model.cell(column, row));
      if (seen.insert(cells).second) kept.push_back(row);
    }
    return kept;
  }

  static void expect_first_rows(const Columns& columns, const Names& keys) {
    const NaiveModel model(columns);
    const TestTable table(columns);
    EXPECT_EQ(table.rows(extract(table, keys)), first_rows(model, keys, model.all_rows()));
  }
};

class RandomUniqueTest : public UniqueTest, public testing::WithParamInterface<int> {};

// Long lists have more combinations than 64 bits can number.
TEST_P(RandomUniqueTest, EqualsTheNaiveModel) {
  RandomData random(static_cast<unsigned>(GetParam()));
  const Columns columns = random.table(random.chance(10) ? 0 : 1 + random.below(400));
  const NaiveModel model(columns);
  const TestTable table(columns);
  for (int round = 0; round < 30; ++round) {
    const Rows rows = random.set_of(model.total_rows());
    Names keys;
    for (int i = random.chance(20) ? 40 : 1 + random.below(4); i > 0; --i) {
      keys.push_back(columns[static_cast<size_t>(random.below(7))].name);
    }
    const int found = extract(table, keys, table.add_set(rows));
    ASSERT_EQ(table.rows(found), first_rows(model, keys, rows))
        << keys.size() << " columns from " << keys[0] << " on, seed " << GetParam() << "\n"
        << to_text(columns);
    EXPECT_EQ(RQXGetCurrentSetID(table.id()), found);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomUniqueTest, testing::Range(1, 13));

// When all values but one were seen, the last one is looked for; it may be NULL, late or missing.
TEST_F(UniqueTest, FindsTheLastValueOfAShortList) {
  constexpr int kRows = 5000;
  RandomData random(1);
  for (const int place : {0, 300, 2500, kRows - 1, kRows}) {
    for (const int rare : {kNullInt, 0, 9}) {
      std::vector<int> values;
      for (int i = 0; i < kRows; ++i) values.push_back(i == place ? rare : 1 + random.below(8));
      expect_first_rows({{"a", ints(values)}}, {"a"});
    }
  }
}

TEST_F(UniqueTest, HashesWhatIsTooManyToMark) {
  RandomData random(2);
  for (const int distinct : {40, 3000}) {
    std::vector<int> a, b;
    for (int i = 0; i < 3000; ++i) {
      a.push_back(i < 1500 ? i * 7 : random.below(distinct));
      b.push_back(i < 1500 ? -i : random.below(distinct));
    }
    expect_first_rows({{"a", ints(a)}, {"b", ints(b)}}, {"a", "b"});
  }
}

TEST_F(UniqueTest, TheResultHasNameAndAttributeBlockOfItsSource) {
  TestTable table({{"a", ints({1, 2, 1})}});
  const int source = table.add_set({3, 2, 1});
  char block[64] = "mark";
  ASSERT_EQ(RQXSetSubsetAttr(table.id(), source, block), 0);
  const int found = extract(table, {"a"}, source);
  EXPECT_EQ(table.rows(found), (Rows{3, 2}));
  EXPECT_EQ(table.rows(source), (Rows{3, 2, 1}));
  char copy[64] = "";
  ASSERT_EQ(RQXGetSubsetAttr(table.id(), found, copy), 0);
  EXPECT_STREQ(copy, "mark");
}

TEST_F(UniqueTest, RefusesBadListsAndUnknownParts) {
  TestTable table({{"a", ints({1, 1})}});
  const int t = table.id();
  const int set = table.set_id(TestTable::kAllRows);
  int none[] = {0};
  expect_failure(RQXExtractUniqueReal(t, set, none), QX_ERROR_UNIQUE_FILTERS,
                 "No Filter or FilterCount Overflow");
  std::vector<int> many(513, table.filter("a"));
  many.push_back(0);
  expect_failure(RQXExtractUniqueReal(t, set, many.data()), QX_ERROR_UNIQUE_FILTERS);
  many[512] = 0;
  EXPECT_EQ(table.rows(RQXExtractUniqueReal(t, set, many.data())), (Rows{1}));
  int unknown[] = {table.filter("a"), 99, 0};
  expect_failure(RQXExtractUniqueReal(t, set, unknown), QX_ERROR_NO_FILTER, "No Such Filter: 99");
  int good[] = {table.filter("a"), 0};
  expect_failure(QXExtractUniqueReal(t, 99, good), QX_ERROR_NO_SET, "No Such Set: 99");
  expect_failure(QXExtractUniqueReal(99, set, good), QX_ERROR_NO_TABLE, "No Such Table: 99");
  EXPECT_EQ(RQXGetNSet(t), 2);
}

}  // namespace
}  // namespace qxe::test
