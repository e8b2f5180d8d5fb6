// The choice of a way, at its borders.
#include "summary/sum_method.h"

#include <gtest/gtest.h>

#include "qxe.h"
#include "support/case_name.h"

namespace qxe::test {
namespace {

struct MethodCase {
  const char* name;
  std::vector<int> lists;  // lengths
  int rows;
  int measures;
  int flags;
  SumMethod method;
  unsigned long memory = 1UL << 40;
  int workers = 2;
  int l2_size = 1 << 20;
};

class SumMethodTest : public testing::TestWithParam<MethodCase> {};

TEST_P(SumMethodTest, IsChosen) {
  const MethodCase& wanted = GetParam();
  SumWork work;
  for (const int length : wanted.lists) work.add_dimension(length);
  work.rows = wanted.rows;
  work.measures = wanted.measures;
  work.flags = wanted.flags;
  work.workers = wanted.workers;
  work.l2_size = wanted.l2_size;
  work.available_memory = wanted.memory;
  EXPECT_EQ(GetSuitableSumMethod(work), wanted.method);
}

constexpr int kMillion = 1000000;
using M = SumMethod;

INSTANTIATE_TEST_SUITE_P(
    All, SumMethodTest,
    testing::Values(
        MethodCase{"NoDimension", {}, 10, 1, 31, M::kCube},
        MethodCase{"NoDimensionAndNoCache", {}, 10, 1, 31, M::kFastCube, 1UL << 40, 2, 1},
        MethodCase{"Bits30", {32767, 16384}, kMillion, 1, 31, M::kFastNonCube},
        MethodCase{"Bits31", {40000, 30000}, kMillion, 1, 31, M::kNonCube},
        MethodCase{"TwoToThe30IsOfBits31", {1 << 30}, kMillion, 1, 31, M::kNonCube},
        MethodCase{"BelowTwoToThe30", {(1 << 30) - 1}, kMillion, 1, 31, M::kFastNonCube},
        MethodCase{"BitsOfOne", std::vector<int>(30, 1), 5, 0, 0, M::kCube},
        MethodCase{"BitsOfOneToo", std::vector<int>(31, 1), 5, 0, 0, M::kNonCube},
        // 20 bytes a cell and worker, below half of the cache.
        MethodCase{"LargestCube", {13107}, 100, 1, 31, M::kCube},
        MethodCase{"AboveLargestCube", {13108}, 100, 1, 31, M::kFastNonCube},
        MethodCase{"CountsAreSmall", {65535}, 100, 1, 1, M::kCube},
        MethodCase{"CountsAtTheBorder", {65536}, 100, 1, 1, M::kFastNonCube},
        // Whatever the cache.
        MethodCase{
            "TenMillion", {10000000}, 100000000, 1, 1, M::kFastCube, 1UL << 40, 1, 2147483647},
        MethodCase{
            "BelowTenMillion", {9999999}, 100000000, 1, 1, M::kCube, 1UL << 40, 1, 2147483647},
        // As many cells of all workers as rows.
        MethodCase{"FastCube", {50000}, 100000, 2, 31, M::kFastCube},
        MethodCase{"FastNonCube", {50001}, 100000, 2, 31, M::kFastNonCube},
        // 20 bytes a row beside the cheaper way's 12 for sum and count.
        MethodCase{
            "JustEnoughMemory", {10 * kMillion}, kMillion, 1, 8, M::kFastNonCube, 64UL * kMillion},
        MethodCase{"ShortOfMemory",
                   {10 * kMillion},
                   kMillion,
                   1,
                   8,
                   M::kFastNonCubeByRow,
                   64UL * kMillion - 2},
        MethodCase{"NoMemory", {100000}, kMillion, 1, 8, M::kFastNonCubeByRow, 0}),
    case_name<MethodCase>);

}  // namespace
}  // namespace qxe::test
