// What the oracle's random cases do not reach: bytes in memory, bad arguments, and the rules of
// text and NaN, case by case.
#include <gtest/gtest.h>
#include <limits.h>
#include <string.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "number_text.h"

extern "C" long divide_seven_by_two_in_c(void);

namespace qxe {
namespace {

constexpr NumericInfo kCents{2, QX_ROUND_HALFUP};
constexpr NumericInfo kBadInfos[] = {{-1, 0}, {39, 0}, {2, -1}, {2, 7}};

std::array<unsigned char, 16> bytes_of(const Numeric& value) {
  std::array<unsigned char, 16> bytes{};
  memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

TEST(NumericTest, NanAndZeroHaveFixedBytes) {
  std::array<unsigned char, 16> expected{};
  Numeric value = number("7");
  EXPECT_EQ(RQXNumericSetZero(&value), 0);
  EXPECT_EQ(bytes_of(value), expected);
  EXPECT_EQ(RQXNumericIsZero(&value), 1);
  EXPECT_EQ(RQXNumericIsNan(&value), 0);
  expected[15] = 0x80;
  EXPECT_EQ(RQXNumericSetNan(&value), 0);
  EXPECT_EQ(bytes_of(value), expected);
  EXPECT_EQ(RQXNumericIsNan(&value), 1);
  EXPECT_EQ(RQXNumericIsZero(&value), 0);
}

TEST(NumericTest, OnlyTheWholePatternIsNanOrZero) {
  for (const Numeric& value :
       {Numeric{1, 0}, Numeric{0, 1}, Numeric{0, -1}, Numeric{1, LONG_MIN}}) {
    EXPECT_EQ(RQXNumericIsNan(&value), 0);
    EXPECT_EQ(RQXNumericIsZero(&value), 0);
  }
}

TEST(NumericTest, WorksFromC) {
  EXPECT_EQ(divide_seven_by_two_in_c(), 4);
}

TEST(NumericTest, EveryFunctionRefusesABadInfoAndStoresNoValue) {
  const Numeric one = number("1");
  for (const NumericInfo& bad : kBadInfos) {
    SCOPED_TRACE(testing::Message() << "scale " << bad.scale << " rounding " << bad.rounding);
    Numeric result;
    for (const auto function : {RQXNumericRescalingAdd, RQXNumericRescalingSub,
                                RQXNumericRescalingMul, RQXNumericRescalingDiv}) {
      EXPECT_EQ(outcome(function(&bad, &kCents, &kCents, &one, &one, &result), result), "-1 nan");
      EXPECT_EQ(outcome(function(&kCents, &bad, &kCents, &one, &one, &result), result), "-1 nan");
      EXPECT_EQ(outcome(function(&kCents, &kCents, &bad, &one, &one, &result), result), "-1 nan");
    }
    for (const auto function : {RQXNumericRound, RQXNumericFloor, RQXNumericCeil}) {
      EXPECT_EQ(outcome(function(&one, &bad, &result), result), "-1 nan");
    }
    EXPECT_EQ(outcome(RQXNumericRescale(&one, &bad, &kCents, &result), result), "-1 nan");
    EXPECT_EQ(outcome(RQXNumericRescale(&one, &kCents, &bad, &result), result), "-1 nan");
    EXPECT_EQ(outcome(RQXNumericDbl2Num(&bad, &result, 1.0), result), "-1 nan");
    EXPECT_EQ(outcome(RQXNumericInt2Num(&bad, &result, 1), result), "-1 nan");
    int integer = 0;
    EXPECT_EQ(RQXNumericNum2Int(&bad, &one, &integer), -1);
    EXPECT_EQ(integer, INT_MIN);
    double real = 0;
    EXPECT_EQ(RQXNumericNum2Dbl(&one, &bad, &real), 1) << "callers know no other failure";
    EXPECT_EQ(real, -INFINITY);
    const char* text = "1";
    char* rest = nullptr;
    EXPECT_EQ(outcome(RQXNumericStr2Num(text, &bad, &result, &rest), result), "-1 nan");
    EXPECT_EQ(rest, text);
  }
}

TEST(NumericTest, ANumberOfNoScaleSortsAsNan) {
  const Numeric one = number("1");
  const Numeric nan = number("nan");
  const NumericInfo bad{39, 0};
  EXPECT_LT(RQXNumericRescalingCmp(&bad, &kCents, &one, &one), 0);
  EXPECT_GT(RQXNumericRescalingCmp(&kCents, &bad, &one, &one), 0);
  EXPECT_EQ(RQXNumericRescalingCmp(&bad, &kCents, &one, &nan), 0);
}

struct TextCase {
  const char* text;
  const char* outcome;  // at scale 2, half up
  const char* rest;
};

TEST(NumericTest, ReadsTextUpToTheFirstByteThatDoesNotBelong) {
  const std::vector<TextCase> cases = {
      {"\n1", "-1 nan", "\n1"},
      {"nan", "-1 nan", "nan"},
      {"+-1", "-1 nan", "+-1"},
      {"1e-x", "0 100", "e-x"},
      {"-0.004", "0 0", ""},
      // exponents beyond every integer type
      {"1e99999999999999999999999x", "3 nan", "x"},
      {"-1e99999999999999999999999", "3 nan", ""},
      {"0e99999999999999999999999", "0 0", ""},
      {"1e-99999999999999999999999", "0 0", ""},
      {"1e18446744073709551617", "3 nan", ""},
      {"1e-18446744073709551617", "0 0", ""},
  };
  for (const TextCase& wanted : cases) {
    SCOPED_TRACE(wanted.text);
    Numeric result = number("1");
    char* rest = nullptr;
    const int status = RQXNumericStr2Num(wanted.text, &kCents, &result, &rest);
    EXPECT_EQ(outcome(status, result), wanted.outcome);
    EXPECT_STREQ(rest, wanted.rest);
    Numeric without_rest;
    EXPECT_EQ(RQXNumericStr2Num(wanted.text, &kCents, &without_rest, nullptr), status);
    EXPECT_EQ(to_text(without_rest), to_text(result));
  }
}

TEST(NumericTest, WritesNothingIntoNoBuffer) {
  const Numeric one = number("1");
  char guard = '#';
  EXPECT_EQ(RQXNumericNum2Str(&one, &kCents, -1, -1, &guard, 0), -1);
  EXPECT_EQ(RQXNumericNum2Str(&one, &kCents, -1, -1, &guard, -5), -1);
  EXPECT_EQ(guard, '#');
}

TEST(NumericTest, WritesNoTextOfABadForm) {
  const std::pair<int, int> forms[] = {{39, -1}, {-2, -1}, {2, 7}, {2, -2}};
  for (const auto& [scale, rounding] : forms) {
    for (const Numeric& value : {number("123456"), number("nan")}) {
      char text[64] = "untouched";
      EXPECT_EQ(RQXNumericNum2Str(&value, &kCents, scale, rounding, text, sizeof text), -1);
      EXPECT_STREQ(text, "");
    }
  }
}

}  // namespace
}  // namespace qxe
