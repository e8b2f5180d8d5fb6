// Bitmaps over a table's rows, and what of set algebra does not show through the interface.
#include <gtest/gtest.h>

#include "frame/api/dbtask.h"
#include "search/bitmaps.h"
#include "search/set_operations.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;
using Words = std::vector<uint32_t>;

class SetStepsTest : public EngineTest {};

Rows rows_of(const Words& words) {
  const int count = static_cast<int>(words.size());
  Rows rows(static_cast<size_t>(count_bits(count, words.data())));
  EXPECT_EQ(BM2Array(count, words.data(), rows), static_cast<int>(rows.size()));
  return rows;
}

Words bitmap_of(const Rows& rows, int total, void (*fill)(std::span<const int>, int, uint32_t*)) {
  Words words(static_cast<size_t>(bitmap_words(total)), 0xdeadbeef);
  fill(rows, bitmap_words(total), words.data());
  return words;
}

TEST_F(SetStepsTest, BitmapsHaveAWordForRowZero) {
  EXPECT_EQ(bitmap_words(0), 1);
  EXPECT_EQ(bitmap_words(31), 1);
  EXPECT_EQ(bitmap_words(32), 2);
  EXPECT_EQ(bitmap_words(INT32_MAX), 1 << 26);
  EXPECT_EQ(bitmap_of({1, 31, 32}, 32, ToBitMap), (Words{0x80000002, 1}));
}

TEST_F(SetStepsTest, BitmapsOfAllWorkersTogetherAreOne) {
  RandomData random(3);
  for (const int total : {0, 1, 40, 3000}) {
    for (int round = 0; round < 10; ++round) {
      const Rows rows = random.set_of(total);
      EXPECT_EQ(bitmap_of(rows, total, MppToBitMap), bitmap_of(rows, total, ToBitMap));
    }
  }
}

TEST_F(SetStepsTest, NegationLeavesOutWhatIsNoRow) {
  for (const int total : {0, 1, 30, 31, 32, 33, 63, 64, 95}) {
    Words words = bitmap_of({}, total, ToBitMap);
    NegateBitMap(total, words.data());
    Rows all;
    for (int row = 1; row <= total; ++row) all.push_back(row);
    EXPECT_EQ(rows_of(words), all);
    NegateBitMap(total, words.data());
    EXPECT_EQ(rows_of(words), Rows{});
  }
}

TEST_F(SetStepsTest, BitmapsCombineInPlace) {
  Words a = bitmap_of({40, 1, 2}, 50, ToBitMap);
  const Words b = bitmap_of({2, 50, 40}, 50, ToBitMap);
  Words either(2);
  ORBitMap(50, a.data(), b.data(), either.data());
  EXPECT_EQ(rows_of(either), (Rows{1, 2, 40, 50}));
  ANDBitMap(50, a.data(), b.data(), a.data());
  EXPECT_EQ(rows_of(a), (Rows{2, 40}));
}

TEST_F(SetStepsTest, ResultsAreAllocatedExactlyOrForTenRows) {
  const Rows some = {1, 2, 3}, shuffled = {3, 1, 3};
  for (const auto& operands : {some, shuffled}) {
    EXPECT_EQ(SetOpeCommon(QX_SET_OR, 5, operands, some)->FAllocSize, 3);
    EXPECT_EQ(SetOpeCommon(QX_SET_ANDNOT, 5, operands, some)->FAllocSize, 10);
    EXPECT_EQ(SetOpeNot(5, operands)->FAllocSize, operands == some ? 2 : 3);
  }
  EXPECT_EQ(SetOpeNot(3, some)->FAllocSize, 10);
  EXPECT_EQ(SetOpeNot(0, {})->FAllocSize, 10);
  EXPECT_EQ(SetOpeCommon(QX_SET_AND, 5, {}, some)->FAllocSize, 10);
}

TEST_F(SetStepsTest, OnlyTheSerialFormLogsAnUnknownCode) {
  EXPECT_THROW(MppSetOpeCommon(3, 5, {}, {}), CQXException);
  EXPECT_TRUE(ring().empty());
  EXPECT_THROW(SetOpeCommon(3, 5, {}, {}), CQXException);
  EXPECT_EQ(ring().size(), 1u);
}

std::unique_ptr<TIntArray> array_of(const Rows& rows) {
  auto array = std::make_unique<TIntArray>(static_cast<int>(rows.size()), false);
  std::copy(rows.begin(), rows.end(), array->PIntAr());
  return array;
}

TEST_F(SetStepsTest, ASieveKeepsTheOrderOfItsFirstSet) {
  const auto sieved = [](const Rows& a, const Rows& b, long capacity) {
    const auto result = SieveOpe(50, *array_of(a), *array_of(b));
    EXPECT_EQ(result->FAllocSize, capacity);
    return Rows(result->values(), result->values() + result->FArraySize);
  };
  EXPECT_EQ(sieved({9, 40, 3, 7}, {3, 50, 9}, 3), (Rows{9, 3}));
  EXPECT_EQ(sieved({9, 3}, {40, 50, 1}, 2), Rows{});
  EXPECT_EQ(sieved({9, 3, 9, 9}, {9}, 3), (Rows{9, 9, 9}));
}

TEST_F(SetStepsTest, ArraysAreTheSameByTypeSizeAndContent) {
  const auto one = array_of({1, 2}), same = array_of({1, 2});
  EXPECT_TRUE(CheckSame(*one, *same));
  EXPECT_FALSE(CheckSame(*one, *array_of({1, 3})));
  EXPECT_FALSE(CheckSame(*one, *array_of({1})));
  EXPECT_TRUE(CheckSame(*array_of({}), *array_of({})));
  TDoubleArray reals(2, true);
  EXPECT_FALSE(CheckSame(*one, reals));
  TStrArray left(1, true), right(1, true);
  left.PutPChar(0, "gone");
  left.PutPChar(0, "b");
  right.PutPChar(0, "b");
  EXPECT_TRUE(CheckSame(left, right));
  right.PutPChar(0, "c");
  EXPECT_FALSE(CheckSame(left, right));
}

TEST_F(SetStepsTest, TheTaskObjectHasTheSameOperations) {
  const TestTable table({{"a", ints({1, 2, 3})}});
  const int set = table.add_set({3, 1});
  EXPECT_EQ(table.rows(DBTASK()->SetOpeReal(table.id(), QX_SET_AND, set, 1)), (Rows{1, 3}));
  EXPECT_EQ(table.rows(DBTASK()->SetNotReal(table.id(), set)), (Rows{2}));
  expect_failure(DBTASK()->SetOpeReal(table.id(), 3, set, 1), QX_ERROR_OPERATION);
  expect_failure(DBTASK()->SetNotReal(table.id(), 99), QX_ERROR_NO_SET, "No Such Set: 99");
}

}  // namespace
}  // namespace qxe::test
