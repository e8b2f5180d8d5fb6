// Set algebra through the interface.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

bool wanted(int op, bool in_a, bool in_b) {
  if (op == QX_SET_AND) return in_a && in_b;
  return op == QX_SET_OR ? in_a || in_b : in_a && !in_b;
}

/// What an operation gives, row by row.
Rows combined(int op, int total, const Rows& a, const Rows& b) {
  std::vector<bool> in_a(static_cast<size_t>(total) + 1), in_b(in_a.size());
  for (const int row : a) in_a[static_cast<size_t>(row)] = true;
  for (const int row : b) in_b[static_cast<size_t>(row)] = true;
  Rows rows;
  for (int row = 1; row <= total; ++row) {
    const auto place = static_cast<size_t>(row);
    if (wanted(op, in_a[place], in_b[place])) rows.push_back(row);
  }
  return rows;
}

Rows complement(int total, const Rows& rows) {
  Rows all(static_cast<size_t>(total));
  std::iota(all.begin(), all.end(), 1);
  return combined(QX_SET_ANDNOT, total, all, rows);
}

/// QXSetOpe2 with the result as a vector; empty with `*status` on a failure.
Rows combine_lists(int op, int total, Rows a, Rows b, int* status) {
  _TSetDescript result = {7, nullptr};
  *status = QXSetOpe2(op, total, {static_cast<int>(a.size()), a.data()},
                      {static_cast<int>(b.size()), b.data()}, &result);
  if (*status < 0) {
    EXPECT_EQ(result.count, -1);
    EXPECT_EQ(result.rows, nullptr);
    return {};
  }
  EXPECT_EQ(result.count, *status);
  EXPECT_NE(result.rows, nullptr);
  Rows rows(result.rows, result.rows + result.count);
  void* block = result.rows;
  EXPECT_EQ(QXFreeMem(&block), 0);
  return rows;
}

void expect_combined(int op, int total, const Rows& a, const Rows& b) {
  int status = 0;
  EXPECT_EQ(combine_lists(op, total, a, b, &status), combined(op, total, a, b));
  EXPECT_GE(status, 0);
}

/// Every `step`th row from `first` on.
Rows each(int first, int step, int total) {
  Rows rows;
  for (int row = first; row <= total; row += step) rows.push_back(row);
  return rows;
}

constexpr int kOperations[] = {QX_SET_AND, QX_SET_OR, QX_SET_ANDNOT};

class SetOperationsTest : public EngineTest {};

class RandomSetOperationsTest : public EngineTest, public testing::WithParamInterface<int> {
 protected:
  /// Some repeat rows, in order or out of it.
  Rows random_set(int total) {
    Rows rows = random_.set_of(total);
    if (!rows.empty() && random_.chance(20)) {
      for (int i = 1 + random_.below(3); i > 0; --i) {
        const int row = rows[static_cast<size_t>(random_.below(static_cast<int>(rows.size())))];
        rows.insert(rows.begin() + random_.below(static_cast<int>(rows.size()) + 1), row);
      }
      if (random_.chance(50)) std::sort(rows.begin(), rows.end());
    }
    return rows;
  }

  RandomData random_{static_cast<unsigned>(GetParam())};
};

TEST_P(RandomSetOperationsTest, EqualTheNaiveModel) {
  static constexpr int kTotals[] = {0, 1, 31, 32, 33, 63, 64, 200, 20000};
  const int total = kTotals[GetParam() % std::size(kTotals)];
  const TestTable table({{"a", ints(Rows(static_cast<size_t>(total), 1))}});
  const int rounds = total > 1000 ? 10 : 30;
  for (int round = 0; round < rounds; ++round) {
    const Rows a = random_set(total), b = random_set(total);
    const int set_a = table.add_set(a), set_b = table.add_set(b);
    for (const int op : kOperations) {
      SCOPED_TRACE("operation " + std::to_string(op) + ", round " + std::to_string(round));
      const int found = RQXSetOpeReal(table.id(), op, set_a, set_b);
      ASSERT_EQ(table.rows(found), combined(op, total, a, b));
      EXPECT_EQ(RQXGetCurrentSetID(table.id()), found);
      expect_combined(op, total, a, b);
    }
    ASSERT_EQ(table.rows(RQXSetNotReal(table.id(), set_a)), complement(total, a)) << round;
    EXPECT_EQ(table.rows(set_a), a);
    EXPECT_EQ(table.rows(set_b), b);
    RQXPurgeSubsets(table.id());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSetOperationsTest, testing::Range(1, 10));

// Sparse beside dense, far apart, behind each other, and all of one kind: each way to go through a
// stretch of the table.
TEST_F(SetOperationsTest, CombineListsOfAnyDensity) {
  constexpr int kTotal = 40000;
  const std::vector<Rows> lists = {
      {},
      {1},
      {kTotal},
      {1, 16384, 16385, 16386, kTotal},
      each(1, 1, kTotal),
      each(2, 2, kTotal),
      each(3, 7, kTotal),
      each(5, 101, kTotal),
      each(77, 4001, kTotal),
      each(1, 1, 20000),
      each(20001, 3, kTotal),
      Rows(3000, 30000),
  };
  for (const Rows& a : lists) {
    for (const Rows& b : lists) {
      for (const int op : kOperations) {
        SCOPED_TRACE("operation " + std::to_string(op) + " on " + std::to_string(a.size()) +
                     " and " + std::to_string(b.size()) + " rows");
        int status = 0;
        ASSERT_EQ(combine_lists(op, kTotal, a, b, &status), combined(op, kTotal, a, b));
      }
    }
  }
}

TEST_F(SetOperationsTest, ComplementListsOfAnyDensity) {
  constexpr int kTotal = 50000;
  const TestTable table({{"a", ints(Rows(kTotal, 1))}});
  for (const Rows& rows :
       {Rows{1}, Rows{kTotal}, each(1, 1, kTotal), each(1, 2, kTotal), each(2, 33, kTotal),
        each(9, 4001, kTotal), each(1, 1, 30000), Rows(2 * kTotal, 7), Rows{5, 5, 6, 7, 7, 7}}) {
    ASSERT_EQ(table.rows(RQXSetNotReal(table.id(), table.add_set(rows))), complement(kTotal, rows))
        << rows.size() << " rows from " << rows[0] << " on";
  }
}

// The disorder may show late, even between two workers' shares.
TEST_F(SetOperationsTest, CombineListsThatAreOrderedButForOnePlace) {
  constexpr int kTotal = 40000;
  const Rows other = each(1, 3, kTotal);
  for (const size_t place : {0, 9999, 13332, 13333, 13334, 19998}) {
    Rows rows = each(2, 2, kTotal);
    std::swap(rows[place], rows[place + 1]);
    for (const int op : kOperations) {
      SCOPED_TRACE("operation " + std::to_string(op) + ", place " + std::to_string(place));
      expect_combined(op, kTotal, rows, other);
      expect_combined(op, kTotal, other, rows);
    }
    rows[place] = rows[place + 1];
    expect_combined(QX_SET_OR, kTotal, rows, other);
    expect_combined(QX_SET_ANDNOT, kTotal, rows, other);
  }
}

// The root set is not read; all orders of the other operand come out alike.
TEST_F(SetOperationsTest, TakeTheRootSetLikeAnyOther) {
  constexpr int kTotal = 6;
  const TestTable table({{"a", ints(Rows(kTotal, 1))}});
  const Rows all = each(1, 1, kTotal);
  for (const Rows& rows : {Rows{}, Rows{2, 5}, Rows{5, 2, 5}, each(1, 1, 5), all, Rows(9, 3)}) {
    const int set = table.add_set(rows);
    for (const int op : kOperations) {
      EXPECT_EQ(table.rows(RQXSetOpeReal(table.id(), op, 1, set)), combined(op, kTotal, all, rows));
      EXPECT_EQ(table.rows(RQXSetOpeReal(table.id(), op, set, 1)), combined(op, kTotal, rows, all));
    }
  }
}

TEST_F(SetOperationsTest, FollowTheRowsOfTheTable) {
  const TestTable table({{"a", ints({1, 2, 3, 4, 5})}});
  const int set = table.add_set({5, 1});
  ASSERT_GE(RQXDeleteRealRows(table.id(), 2, 2), 0);
  EXPECT_EQ(table.rows(RQXSetNotReal(table.id(), set)), (Rows{2}));
  ASSERT_GE(RQXInsertRealRows(table.id(), 2, 2), 0);
  EXPECT_EQ(table.rows(RQXSetNotReal(table.id(), set)).size(), 3u);
}

TEST_F(SetOperationsTest, RefuseBadLists) {
  int status = 0;
  for (const Rows& bad : {Rows{0}, Rows{3}, Rows{1, -5}}) {
    combine_lists(QX_SET_OR, 2, bad, {1}, &status);
    expect_failure(status, QX_ERROR_ROW_POSITION, "Invalid Parameter : PSetArray");
    combine_lists(QX_SET_OR, 2, {1}, bad, &status);
    expect_failure(status, QX_ERROR_ROW_POSITION, "Invalid Parameter : PSetArray");
  }
  combine_lists(QX_SET_OR, -1, {}, {}, &status);
  expect_failure(status, QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(-1)");
  combine_lists(3, 2, {1}, {1}, &status);
  expect_failure(status, QX_ERROR_OPERATION, "Invalid Parameter : OpCode");
  _TSetDescript result = {};
  int row = 1;
  expect_failure(QXSetOpe2(QX_SET_AND, 2, {-1, &row}, {1, &row}, &result), QX_ERROR_ROW_SIZE);
  EXPECT_EQ(result.count, -1);
  expect_failure(QXSetOpe2(QX_SET_AND, 2, {1, nullptr}, {1, &row}, &result), QX_ERROR_ROW_POSITION);
  EXPECT_EQ(result.rows, nullptr);
}

}  // namespace
}  // namespace qxe::test
