// Sorts of sets through the interface.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "support/engine_test.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

class SortApiTest : public EngineTest {};

/// Random tables small and large enough for every path, and a random set of each.
template <class Body>
void for_random_tables(unsigned seeds, Body&& body) {
  for (unsigned seed = 1; seed <= seeds; ++seed) {
    RandomData random(seed);
    const NaiveModel model(random.table(random.below(seed % 5 == 0 ? 3000 : 150)));
    const TestTable table(model.columns());
    const Rows rows = random.set_of(model.total_rows());
    SCOPED_TRACE("seed " + std::to_string(seed) + "\n" + to_text(model.columns()));
    body(random, model, table, table.add_set(rows), rows);
    if (testing::Test::HasFailure()) return;
    RQXClearDB();
  }
}

TEST_F(SortApiTest, SortsByEveryTypeInBothDirections) {
  for_random_tables(40, [](auto&, auto& model, auto& table, int set, const Rows& rows) {
    for (const NamedColumn& column : model.columns()) {
      for (const int dir : {QX_SORT_ASC, QX_SORT_DESC}) {
        const Rows wanted = model.sort({{column.name, dir}}, rows);
        EXPECT_EQ(table.rows(table.sort(column.name, dir, set)), wanted) << column.name << dir;
        const int serial = QXSortByField(table.id(), table.filter(column.name), set, dir);
        EXPECT_EQ(table.rows(serial), wanted) << column.name << dir;
      }
    }
  });
}

TEST_F(SortApiTest, SortsBySeveralKeysOfWhichTheLastDominates) {
  for_random_tables(60, [](auto& random, auto& model, auto& table, int set, const Rows& rows) {
    std::vector<SortKey> keys;
    for (int i = random.below(9); i > 0; --i) {
      const auto column = static_cast<size_t>(random.below(7));
      keys.push_back({model.columns()[column].name, random.below(2)});
    }
    EXPECT_EQ(table.rows(table.sort(keys, set)), model.sort(keys, rows));
  });
}

TEST_F(SortApiTest, SortsByRowNumber) {
  for_random_tables(20, [](auto&, auto&, auto& table, int set, const Rows& rows) {
    Rows wanted = rows;
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(table.rows(RQXSortByRowNo(table.id(), 0, set, QX_SORT_ASC)), wanted);
    std::reverse(wanted.begin(), wanted.end());
    EXPECT_EQ(table.rows(QXSortByRowNo(table.id(), 0, set, QX_SORT_DESC)), wanted);
  });
}

TEST_F(SortApiTest, SortByValueKeepsDuplicateRowsAndSortByNumberDropsThem) {
  const TestTable table({{"n", ints({5, 4, 3})}});
  const int set = table.add_set({3, 1, 3, 2, 1});
  EXPECT_EQ(table.rows(table.sort("n", QX_SORT_ASC, set)), (Rows{3, 3, 2, 1, 1}));
  EXPECT_EQ(table.rows(table.sort({{"n", QX_SORT_DESC}}, set)), (Rows{1, 1, 2, 3, 3}));
  const int by_number = RQXSortByRowNo(table.id(), 0, set, QX_SORT_ASC);
  EXPECT_EQ(table.rows(by_number), (Rows{1, 2, 3}));
  EXPECT_EQ(RQXGetSetSize(table.id(), by_number), 3);
}

TEST_F(SortApiTest, MakesACurrentSetLikeTheSourceAndLeavesTheSourceAlone) {
  const TestTable table({{"n", ints({2, 3, 1})}});
  const int set = table.add_set({1, 2, 3});
  char attributes[64] = "kept";
  ASSERT_EQ(RQXSetSetName(table.id(), set, "chosen"), 0);
  ASSERT_EQ(RQXSetSubsetAttr(table.id(), set, attributes), 0);
  for (const auto sort :
       {+[](const TestTable&t, int s) { return t.sort("n", QX_SORT_DESC, s); },
        +[](const TestTable&t, int s) {
          return t.sort({{"n", 1}}, s);
        },
        +[](const TestTable&t, int s) { return RQXSortByRowNo(t.id(), 0, s, QX_SORT_DESC); }}) {
    const int sorted = sort(table, set);
    EXPECT_GT(sorted, set);
    EXPECT_EQ(RQXGetCurrentSetID(table.id()), sorted);
    char name[256] = "";
    EXPECT_EQ(RQXGetSetName(table.id(), sorted, name), 0);
    EXPECT_STREQ(name, "chosen");
    char copied[64] = "";
    EXPECT_EQ(RQXGetSubsetAttr(table.id(), sorted, copied), 0);
    EXPECT_STREQ(copied, "kept");
    EXPECT_EQ(table.rows(set), (Rows{1, 2, 3}));
  }
}

TEST_F(SortApiTest, SortsTheCurrentSetForANegativeId) {
  const TestTable table({{"n", ints({2, 3, 1})}});
  table.add_set({1, 2});
  int filters[] = {table.filter("n"), 0};
  int dirs[] = {QX_SORT_DESC, 0};
  EXPECT_EQ(table.rows(RQXSortByField(table.id(), filters[0], -1, QX_SORT_DESC)), (Rows{2, 1}));
  EXPECT_EQ(table.rows(RQXSortByRowNo(table.id(), 0, -1, QX_SORT_ASC)), (Rows{1, 2}));
  EXPECT_EQ(table.rows(RQXIntegratedSortByField(table.id(), -1, filters, dirs)), (Rows{2, 1}));
}

TEST_F(SortApiTest, EmptySetGivesAnEmptySet) {
  const TestTable table({{"n", ints({2, 1})}});
  const int empty = table.search("n", QX_OPE_EQ, 7);
  for (const int sorted :
       {table.sort("n", QX_SORT_ASC, empty), table.sort({{"n", QX_SORT_DESC}}, empty),
        RQXSortByRowNo(table.id(), 0, empty, QX_SORT_ASC)}) {
    EXPECT_GT(sorted, empty);
    EXPECT_EQ(table.rows(sorted), Rows{});
  }
}

TEST_F(SortApiTest, ReadsAtMost512Keys) {
  const TestTable table({{"same", ints({1, 1, 1})}, {"n", ints({2, 3, 1})}});
  Rows filters(513, table.filter("same"));
  Rows dirs(513, QX_SORT_ASC);
  filters.back() = table.filter("n");
  const int cut =
      RQXIntegratedSortByField(table.id(), table.set_id(0), filters.data(), dirs.data());
  EXPECT_EQ(table.rows(cut), (Rows{1, 2, 3}));
  filters[511] = table.filter("n");
  const int all =
      RQXIntegratedSortByField(table.id(), table.set_id(0), filters.data(), dirs.data());
  EXPECT_EQ(table.rows(all), (Rows{3, 1, 2}));
}

TEST_F(SortApiTest, NamesWhatIsUnknown) {
  const TestTable table({{"n", ints({2, 1})}});
  const int n = table.filter("n");
  const int root = table.set_id(TestTable::kAllRows);
  expect_failure(RQXSortByField(999, n, root, 0), QX_ERROR_NO_TABLE, "No Such Table: 999");
  expect_failure(RQXSortByField(table.id(), 77, root, 0), QX_ERROR_NO_FILTER, "No Such Filter: 77");
  expect_failure(RQXSortByField(table.id(), n, 88, 0), QX_ERROR_NO_SET, "No Such Set: 88");
  expect_failure(RQXSortByRowNo(table.id(), 0, 88, 0), QX_ERROR_NO_SET, "No Such Set: 88");
  expect_failure(RQXSortByField(table.id(), n, root, 2), QX_ERROR_PARAMETER,
                 "Invalid Parameter : SortDir(2)");
  expect_failure(RQXSortByRowNo(table.id(), 0, root, 2), QX_ERROR_PARAMETER,
                 "Invalid Parameter : Dir");
  EXPECT_EQ(RQXGetNSet(table.id()), 1);
}

TEST_F(SortApiTest, MultiKeySortDoesNotNameWhatIsUnknown) {
  const TestTable table({{"n", ints({2, 1})}});
  int dirs[] = {0, 0};
  int unknown_key[] = {77, 0};
  int known_key[] = {table.filter("n"), 0};
  EXPECT_EQ(RQXIntegratedSortByField(table.id(), table.set_id(0), unknown_key, dirs),
            QX_ERROR_NO_FILTER);
  EXPECT_EQ(RQXIntegratedSortByField(table.id(), 88, known_key, dirs), QX_ERROR_NO_SET);
  for (const RingEntry& entry : ring()) EXPECT_EQ(entry.message.find("No Such"), std::string::npos);
  dirs[0] = 2;
  expect_failure(RQXIntegratedSortByField(table.id(), table.set_id(0), known_key, dirs),
                 QX_ERROR_PARAMETER, "Invalid Parameter : SortDir(2)");
  EXPECT_EQ(RQXGetNSet(table.id()), 1);
}

struct Ranking {
  int status = 0;
  int non_zero = -1;
  Rows non_zero_index;
  Rows order;
};

Ranking rank(Rows counts) {
  Ranking result;
  const int n = static_cast<int>(counts.size());
  result.non_zero_index.resize(counts.size());
  result.order.resize(counts.size() + 1);  // never null
  result.status = QXServiceSortByN(n, counts.data(), &result.non_zero, result.non_zero_index.data(),
                                   result.order.data());
  result.non_zero_index.resize(static_cast<size_t>(result.non_zero));
  result.order.resize(counts.size());
  return result;
}

TEST_F(SortApiTest, RanksPositionsByCount) {
  const Ranking small = rank({3, 0, 7, 3, 0, 9});
  EXPECT_EQ(small.status, 0);
  EXPECT_EQ(small.non_zero_index, (Rows{0, 2, 3, 5}));
  EXPECT_EQ(small.order, (Rows{5, 2, 0, 3, 1, 4}));
  const int most = std::numeric_limits<int>::max();
  EXPECT_EQ(rank({1, most, 0, most - 1, most}).order, (Rows{1, 4, 3, 0, 2}));
  EXPECT_EQ(rank({}).non_zero, 0);
}

TEST_F(SortApiTest, RankingNeedsRoomForTheOrder) {
  int count = 1;
  int non_zero = 0;
  int index = 0;
  expect_failure(QXServiceSortByN(1, &count, &non_zero, &index, nullptr), QX_ERROR_UNKNOWN,
                 "Output area not reserved");
}

}  // namespace
}  // namespace qxe::test
