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
const std::string kLargest(38, '9');

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

TEST(NumericTest, NanComesBeforeDivisionByZero) {
  const Numeric nan = number("nan");
  const Numeric zero = number("0");
  Numeric result;
  EXPECT_EQ(outcome(RQXNumericDiv(&nan, &zero, &result), result), "1 nan");
  EXPECT_EQ(outcome(RQXNumericDiv(&zero, &zero, &result), result), "2 nan");
  EXPECT_EQ(
      outcome(RQXNumericRescalingDiv(&kCents, &kCents, &kCents, &nan, &zero, &result), result),
      "1 nan");
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

struct RoundingCase {
  int mode;
  std::array<int, 10> rounded;  // of -2.5 -1.6 -1.5 -1.1 -0.5 0.5 1.1 1.5 1.6 2.5
};

TEST(NumericTest, SevenModesRound) {
  constexpr std::array<int, 10> kTenths = {-25, -16, -15, -11, -5, 5, 11, 15, 16, 25};
  const std::vector<RoundingCase> cases = {
      {QX_ROUND_UP, {-3, -2, -2, -2, -1, 1, 2, 2, 2, 3}},
      {QX_ROUND_DOWN, {-2, -1, -1, -1, 0, 0, 1, 1, 1, 2}},
      {QX_ROUND_CEILING, {-2, -1, -1, -1, 0, 1, 2, 2, 2, 3}},
      {QX_ROUND_FLOOR, {-3, -2, -2, -2, -1, 0, 1, 1, 1, 2}},
      {QX_ROUND_HALFUP, {-3, -2, -2, -1, -1, 1, 1, 2, 2, 3}},
      {QX_ROUND_HALFDOWN, {-2, -2, -1, -1, 0, 0, 1, 1, 2, 2}},
      {QX_ROUND_HALFEVEN, {-2, -2, -2, -1, 0, 0, 1, 2, 2, 2}},
  };
  for (const RoundingCase& wanted : cases) {
    for (size_t i = 0; i < kTenths.size(); ++i) {
      const NumericInfo tenths{1, wanted.mode};
      const Numeric value = number(std::to_string(kTenths[i]));
      int rounded = 0;
      EXPECT_EQ(RQXNumericNum2Int(&tenths, &value, &rounded), 0);
      EXPECT_EQ(rounded, wanted.rounded[i]) << "mode " << wanted.mode << " of " << kTenths[i];
    }
  }
}

TEST(NumericTest, RoundsAcrossScalesOnlyOnce) {
  // 0.4 + 0.099 is 0.499; rounded to tenths first it would be 0.5, and 1 after that.
  const NumericInfo tenths{1, QX_ROUND_HALFUP};
  const NumericInfo thousandths{3, QX_ROUND_HALFUP};
  const NumericInfo whole{0, QX_ROUND_HALFUP};
  const Numeric a = number("4");
  const Numeric b = number("99");
  Numeric result;
  RQXNumericRescalingAdd(&tenths, &thousandths, &whole, &a, &b, &result);
  EXPECT_EQ(to_text(result), "0");
}

TEST(NumericTest, IntermediatesMayExceedEveryNumber) {
  const NumericInfo whole{0, QX_ROUND_HALFEVEN};
  const NumericInfo finest{38, QX_ROUND_HALFEVEN};
  const Numeric largest = number(kLargest);
  const Numeric one = number("1");
  Numeric result;
  EXPECT_EQ(
      outcome(RQXNumericRescalingAdd(&whole, &finest, &whole, &largest, &one, &result), result),
      "0 " + kLargest);
  EXPECT_EQ(
      outcome(RQXNumericRescalingMul(&whole, &finest, &whole, &largest, &one, &result), result),
      "0 1");
  EXPECT_EQ(outcome(RQXNumericRescalingDiv(&finest, &finest, &finest, &largest, &largest, &result),
                    result),
            "3 nan")
      << "1 has no room at scale 38";
  EXPECT_EQ(
      outcome(RQXNumericRescalingDiv(&whole, &whole, &finest, &one, &largest, &result), result),
      "0 1");
}

struct TextCase {
  const char* text;
  const char* outcome;  // at scale 2, half up
  const char* rest;
};

TEST(NumericTest, ReadsTextUpToTheFirstByteThatDoesNotBelong) {
  const std::vector<TextCase> cases = {
      // no number
      {"", "0 nan", ""},
      {" \t ", "0 nan", ""},
      {"x", "-1 nan", "x"},
      {" x", "-1 nan", " x"},
      {"-", "-1 nan", "-"},
      {"+-1", "-1 nan", "+-1"},
      {".", "-1 nan", "."},
      {"-.e5", "-1 nan", "-.e5"},
      {"e5", "-1 nan", "e5"},
      {"\n1", "-1 nan", "\n1"},
      {"nan", "-1 nan", "nan"},
      {"- 1", "-1 nan", "- 1"},
      // a number and a rest
      {"12x", "0 1200", "x"},
      {" \t-1.5 ", "0 -150", " "},
      {"+.5", "0 50", ""},
      {"5.", "0 500", ""},
      {"5..", "0 500", "."},
      {"1.2.3", "0 120", ".3"},
      {"1e", "0 100", "e"},
      {"1e+", "0 100", "e+"},
      {"1e-x", "0 100", "e-x"},
      {"1E+2", "0 10000", ""},
      {"5.e1", "0 5000", ""},
      {"0x10", "0 0", "x10"},
      {"-0", "0 0", ""},
      {"-0.004", "0 0", ""},
      {"1,5", "0 100", ",5"},
      {"1 e2", "0 100", " e2"},
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

TEST(NumericTest, TextFarBelowTheScaleStillRoundsUp) {
  const NumericInfo away{2, QX_ROUND_UP};
  Numeric result;
  EXPECT_EQ(RQXNumericStr2Num("-1e-99999999999999999999999", &away, &result, nullptr), 0);
  EXPECT_EQ(to_text(result), "-1");
}

TEST(NumericTest, WritesNothingIntoNoBuffer) {
  const Numeric one = number("1");
  char guard = '#';
  EXPECT_EQ(RQXNumericNum2Str(&one, &kCents, -1, -1, &guard, 0), -1);
  EXPECT_EQ(RQXNumericNum2Str(&one, &kCents, -1, -1, &guard, -5), -1);
  EXPECT_EQ(guard, '#');
}

TEST(NumericTest, WritesTextWithExactlyTheDigitsAskedFor) {
  struct Case {
    const char* integer;
    int scale, rounding;
    const char* outcome;
  };
  for (const Case& wanted : std::vector<Case>{{"123456", -1, -1, "0 1234.56"},
                                              {"123456", 0, -1, "0 1235"},
                                              {"123456", 0, QX_ROUND_DOWN, "0 1234"},
                                              {"123456", 4, -1, "0 1234.5600"},
                                              {"-5", -1, -1, "0 -0.05"},
                                              {"-4", 1, -1, "0 0.0"},
                                              {"nan", -1, -1, "1 "},
                                              {"123456", 38, -1, "3 "},
                                              {"123456", 39, -1, "-1 "},
                                              {"123456", -2, -1, "-1 "},
                                              {"123456", 2, 7, "-1 "},
                                              {"nan", 2, -2, "-1 "}}) {
    const Numeric value = number(wanted.integer);
    char text[64] = "untouched";
    const int status =
        RQXNumericNum2Str(&value, &kCents, wanted.scale, wanted.rounding, text, sizeof text);
    EXPECT_EQ(std::to_string(status) + ' ' + text, wanted.outcome) << wanted.integer;
  }
}

TEST(NumericTest, DoublesCountAsTheirShortestText) {
  const NumericInfo finest{38, QX_ROUND_HALFUP};
  Numeric result;
  EXPECT_EQ(RQXNumericDbl2Num(&finest, &result, 0.1), 0);
  EXPECT_EQ(to_text(result), "1" + std::string(37, '0'));
  EXPECT_EQ(RQXNumericDbl2Num(&kCents, &result, 1.005), 0);
  EXPECT_EQ(to_text(result), "101") << "although the double is below 1.005";
}

TEST(NumericTest, TextReadsBackAtEveryScale) {
  for (int scale = 0; scale <= 38; ++scale) {
    const NumericInfo info{scale, QX_ROUND_HALFEVEN};
    for (const std::string& integer : {kLargest, '-' + kLargest, std::string("0"),
                                       std::string("-1"), std::string("18446744073709551616")}) {
      const Numeric value = number(integer);
      char text[42];
      ASSERT_EQ(RQXNumericNum2Str(&value, &info, -1, -1, text, sizeof text), 0);
      Numeric back;
      EXPECT_EQ(outcome(RQXNumericStr2Num(text, &info, &back, nullptr), back), "0 " + integer);
    }
  }
}

}  // namespace
}  // namespace qxe
