// What of set algebra does not show through the interface.
#include "frame/api/dbtask.h"
#include "search/bitmaps.h"
#include "search/set_operations.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

class SetStepsTest : public EngineTest {};

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
  const auto sieved = [](const Rows& a, const Rows& b) {
    const auto result = SieveOpe(50, *array_of(a), *array_of(b));
    return Rows(result->values(), result->values() + result->FArraySize);
  };
  EXPECT_EQ(sieved({9, 40, 3, 7}, {3, 50, 9}), (Rows{9, 3}));
  EXPECT_EQ(sieved({9, 3}, {40, 50, 1}), Rows{});
  EXPECT_EQ(sieved({9, 3, 9, 9}, {9}), (Rows{9, 9, 9}));
}

TEST_F(SetStepsTest, ArraysAreTheSameByTypeSizeAndContent) {
  const auto one = array_of({1, 2});
  EXPECT_TRUE(CheckSame(*one, *array_of({1, 2})));
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
