// Sorts of sets through the interface, and the first rows of distinct values and combinations.
#include <algorithm>
#include <limits>
#include <set>

#include "support/engine_test.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;
using Names = std::vector<std::string>;

int extract(const TestTable& table, const Names& columns, int set = TestTable::kAllRows) {
  std::vector<int> filters;
  for (const std::string& column : columns) filters.push_back(table.filter(column));
  filters.push_back(0);
  return RQXExtractUniqueReal(table.id(), table.set_id(set), filters.data());
}

Rows first_rows(const NaiveModel& model, const Names& columns, const Rows& rows) {
  std::set<std::vector<Cell>> seen;
  Rows kept;
  for (const int row : rows) {
    std::vector<Cell> cells;
    for (const std::string& column : columns) cells.push_back(model.cell(column, row));
    if (seen.insert(cells).second) kept.push_back(row);
  }
  return kept;
}

class SortApiTest : public EngineTest {};

TEST_F(SortApiTest, EqualsTheNaiveModel) {
  for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
    RandomData random(seed);
    const NaiveModel model(random.table(random.below(seed % 5 == 0 ? 3000 : 150)));
    SCOPED_TRACE("seed " + std::to_string(seed) + "\n" + to_text(model.columns()));
    const TestTable table(model.columns());
    Rows rows = random.set_of(model.total_rows());
    const int set = table.add_set(rows);
    for (const NamedColumn& column : model.columns()) {
      const int dir = random.below(2);
      const Rows wanted = model.sort({{column.name, dir}}, rows);
      EXPECT_EQ(table.rows(table.sort(column.name, dir, set)), wanted) << column.name << dir;
      EXPECT_EQ(table.rows(QXSortByField(table.id(), table.filter(column.name), set, dir)), wanted)
          << column.name << dir;
    }
    for (int round = 0; round < 5; ++round) {
      std::vector<SortKey> keys;
      Names names;
      // Long lists of keys have more combinations than 64 bits can number.
      for (int i = random.chance(10) ? 40 : random.below(9); i > 0; --i) {
        const auto column = static_cast<size_t>(random.below(7));
        keys.push_back({model.columns()[column].name, random.below(2)});
        names.push_back(keys.back().column);
      }
      EXPECT_EQ(table.rows(table.sort(keys, set)), model.sort(keys, rows));
      if (names.empty()) continue;
      EXPECT_EQ(table.rows(extract(table, names, set)), first_rows(model, names, rows));
    }
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(table.rows(RQXSortByRowNo(table.id(), 0, set, QX_SORT_ASC)), rows);
    std::reverse(rows.begin(), rows.end());
    EXPECT_EQ(table.rows(QXSortByRowNo(table.id(), 0, set, QX_SORT_DESC)), rows);
    RQXClearDB();
  }
}

// But for those of a set that is small against its table.
TEST_F(SortApiTest, SortByValueKeepsDuplicateRowsAndSortByNumberDropsThem) {
  const TestTable table({{"n", ints({5, 4, 3})}});
  const int set = table.add_set({3, 1, 3, 2, 1});
  EXPECT_EQ(table.rows(table.sort("n", QX_SORT_ASC, set)), (Rows{3, 3, 2, 1, 1}));
  EXPECT_EQ(table.rows(table.sort({{"n", QX_SORT_DESC}}, set)), (Rows{1, 1, 2, 3, 3}));
  EXPECT_EQ(table.rows(RQXSortByRowNo(table.id(), 0, set, QX_SORT_ASC)), (Rows{1, 2, 3}));
  EXPECT_EQ(table.rows(RQXSortByRowNo(table.id(), 0, set, QX_SORT_DESC)), (Rows{3, 2, 1}));
  const TestTable large({{"n", ints(Rows(1000, 1))}});
  const int small = large.add_set({900, 7, 32, 7, 1});
  EXPECT_EQ(large.rows(RQXSortByRowNo(large.id(), 0, small, QX_SORT_ASC)),
            (Rows{1, 7, 7, 32, 900}));
  EXPECT_EQ(large.rows(RQXSortByRowNo(large.id(), 0, small, QX_SORT_DESC)),
            (Rows{900, 32, 7, 7, 1}));
}

TEST_F(SortApiTest, ReadsAtMost512Keys) {
  const TestTable table({{"same", ints({1, 1, 1})}, {"n", ints({2, 3, 1})}});
  Rows filters(513, 1);
  Rows dirs(513, QX_SORT_ASC);
  filters.back() = 2;
  EXPECT_EQ(table.rows(RQXIntegratedSortByField(table.id(), 1, filters.data(), dirs.data())),
            (Rows{1, 2, 3}));
  filters[511] = 2;
  EXPECT_EQ(table.rows(RQXIntegratedSortByField(table.id(), 1, filters.data(), dirs.data())),
            (Rows{3, 1, 2}));
  filters.back() = 0;
  EXPECT_EQ(table.rows(RQXExtractUniqueReal(table.id(), 1, filters.data())), (Rows{1, 2, 3}));
}

/// The order of positions by their counts; `non_zero` are those that have one.
Rows ranked(Rows counts, Rows* non_zero = nullptr) {
  Rows index(counts.size());
  Rows order(counts.size() + 1);  // never null
  int size = -1;
  EXPECT_EQ(QXServiceSortByN(static_cast<int>(counts.size()), counts.data(), &size, index.data(),
                             order.data()),
            0);
  index.resize(static_cast<size_t>(size));
  if (non_zero != nullptr) *non_zero = index;
  order.resize(counts.size());
  return order;
}

TEST_F(SortApiTest, RanksPositionsByCount) {
  Rows non_zero;
  EXPECT_EQ(ranked({3, 0, 7, 3, 0, 9}, &non_zero), (Rows{5, 2, 0, 3, 1, 4}));
  EXPECT_EQ(non_zero, (Rows{0, 2, 3, 5}));
  const int most = std::numeric_limits<int>::max();
  EXPECT_EQ(ranked({1, most, 0, most - 1, most}), (Rows{1, 4, 3, 0, 2}));
  EXPECT_EQ(ranked({}), Rows{});
}

using UniqueTest = SortApiTest;

void expect_first_rows(const Columns& columns, const Names& keys) {
  const NaiveModel model(columns);
  const TestTable table(columns);
  EXPECT_EQ(table.rows(extract(table, keys)), first_rows(model, keys, model.all_rows()));
}

// When all values but one were seen, the last one is looked for; it may be NULL, late or missing.
TEST_F(UniqueTest, FindsTheLastValueOfAShortList) {
  constexpr int kRows = 5000;
  RandomData random(1);
  for (const int place : {0, 2500, kRows - 1, kRows}) {
    for (const int rare : {kNullInt, 9}) {
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

}  // namespace
}  // namespace qxe::test
