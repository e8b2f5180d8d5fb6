#include "storage/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace qxe {
namespace {

Value decimal(const char* text, int scale) {
  const NumericInfo info{scale, QX_ROUND_HALFUP};
  Numeric value{};
  EXPECT_EQ(RQXNumericStr2Num(text, &info, &value, nullptr), 0);
  return Value(&value, &info);
}

std::string text_of(const Value& value) {
  char text[64];
  const Numeric number(value);
  RQXNumericNum2Str(&number, &value.getDecimalInfo(), -1, -1, text, sizeof text);
  return text;
}

TEST(ValueTest, DecimalsKeepTheLargerScaleAndDoublesWin) {
  const Value sum = decimal("1.25", 2) + decimal("0.1235", 4);
  EXPECT_EQ(text_of(sum), "1.3735");
  EXPECT_EQ(sum.getDecimalInfo().rounding, QX_ROUND_HALFEVEN);
  EXPECT_EQ(text_of(decimal("1.5", 1) * decimal("0.25", 2)), "0.38");
  EXPECT_EQ(text_of(decimal("1", 0) - decimal("0.75", 2)), "0.25");
  EXPECT_EQ(text_of(decimal("1.00", 2) / decimal("3", 0)), "0.33");
  const Value mixed = Value(1.5) + decimal("2.25", 2);
  ASSERT_EQ(mixed.type(), VALUE_QX_DT_DOUBLE);
  EXPECT_EQ(double(mixed), 3.75);
}

TEST(ValueTest, ADecimalWithoutADoubleFormIsNegativeInfinity) {
  Numeric nan{};
  RQXNumericSetNan(&nan);
  const NumericInfo info{2, QX_ROUND_HALFUP};
  const Value none(&nan, &info);
  EXPECT_EQ(double(Value(1.0) + none), -INFINITY);
  EXPECT_TRUE(Value(-1e300) > none);
}

TEST(ValueTest, ADoubleBeyondTheScaleComparesFalseFromTheDecimal) {
  const Value small = decimal("1.00", 2);
  const Value huge(1e300);
  EXPECT_FALSE(small < huge);
  EXPECT_FALSE(small <= huge);
  EXPECT_FALSE(small == huge);
  EXPECT_FALSE(small != huge);
  EXPECT_FALSE(small > huge);
  EXPECT_FALSE(small >= huge);
  EXPECT_TRUE(huge > small);
  EXPECT_TRUE(small == Value(1.0));
  EXPECT_TRUE(small < decimal("1.0001", 4));
}

TEST(ValueTest, WholeNumbers) {
  EXPECT_EQ(text_of(decimal("-1.50", 2).vfloor()), "-2.00");
  EXPECT_EQ(text_of(decimal("-1.50", 2).vceil()), "-1.00");
  EXPECT_EQ(text_of(decimal("1.50", 2).vround()), "2.00");
  EXPECT_EQ(double(Value(-1.5).vfloor()), -2.0);
  Value value = decimal("1.50", 2);
  value *= -3;
  EXPECT_EQ(text_of(value), "-4.50");
  value /= 2;
  EXPECT_EQ(text_of(value), "-2.25");
}

}  // namespace
}  // namespace qxe
