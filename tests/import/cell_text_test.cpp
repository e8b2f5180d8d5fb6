// Texts of numbers compared with the system's formatted output.
#include "import/cell_text.h"

#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace qxe {
namespace {

std::string double_text(double value, int decimals) {
  char text[512];
  return std::string(text, put_double(value, decimals, text));
}

std::string printed(double value, int decimals) {
  char text[512];
  const bool plain = std::fabs(value) < 1e18;
  snprintf(text, sizeof text, plain ? "%0.*f" : "%0.*E", plain ? decimals : 13, value);
  return text;
}

void expect_as_printed(double value) {
  for (int decimals = 0; decimals <= 18; ++decimals) {
    ASSERT_EQ(double_text(value, decimals), printed(value, decimals)) << decimals << " decimals";
  }
}

TEST(CellTextTest, DoublesOfAnyBitsAreTextsOfThePrinter) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (std::isfinite(value)) expect_as_printed(value);
  }
}

TEST(CellTextTest, DoublesOfEveryMagnitudeAreTextsOfThePrinter) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; ++i) {
    const double mantissa = static_cast<double>(random() % 2'000'001) - 1e6;
    expect_as_printed(mantissa * std::pow(10.0, static_cast<double>(random() % 40) - 20));
  }
}

/// Halves of the last digit, exact in binary or just beside it, and neighbours of powers of ten.
TEST(CellTextTest, TiesRoundAsThePrinterDoes) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 20000; ++i) {
    const double tie = static_cast<double>(random() % 4096) / 2048 + 0.0005;
    const double decimal_tie = (static_cast<double>(random() % 1'000'000) * 10 + 5) / 10000;
    for (const double value : {tie, decimal_tie, -tie}) {
      expect_as_printed(value);
      expect_as_printed(std::nextafter(value, 1e9));
      expect_as_printed(std::nextafter(value, -1e9));
    }
  }
  for (int exponent = -20; exponent <= 20; ++exponent) {
    const double power = std::pow(10.0, exponent);
    for (const double value : {power, std::nextafter(power, 0), -power}) expect_as_printed(value);
  }
}

TEST(CellTextTest, ZerosAndExtremesAreTextsOfThePrinter) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0, -0.0, -1e-9, Limits::min(), Limits::denorm_min(), Limits::max(),
                             Limits::lowest(), 1e18, 999999999999999999.0, 0x1p43, 0x1p53}) {
    expect_as_printed(value);
  }
}

TEST(CellTextTest, IntegersAreTextsOfThePrinter) {
  std::mt19937 random(4);
  for (int i = 0; i < 20000; ++i) {
    const int value = static_cast<int>(random()) >> random() % 31;
    char text[64];
    ASSERT_EQ(std::string(text, put_integer(value, text)), std::to_string(value));
  }
}

TEST(CellTextTest, DecimalsAreTextsOfTheDecimalLibrary) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 40000; ++i) {
    const auto shift = static_cast<int>(random() % 64);
    const bool wide = random() % 4 == 0;
    Numeric value{random() >> shift, wide ? static_cast<long>(random() % 1000) - 500 : 0};
    if (!wide && random() % 2 == 0) value = {0 - value.lo, value.lo == 0 ? 0 : -1};
    const NumericInfo info{static_cast<int>(random() % 39), static_cast<int>(random() % 7)};
    const int scale = random() % 2 == 0 ? -1 : static_cast<int>(random() % 39);
    const int rounding = scale < 0 ? -1 : static_cast<int>(random() % 7);
    char wanted[64];
    RQXNumericNum2Str(&value, &info, scale, rounding, wanted, sizeof wanted);
    char text[64];
    ASSERT_EQ(std::string(text, put_decimal(value, info, scale, rounding, text)), wanted)
        << value.hi << " " << value.lo << " scale " << info.scale << " to " << scale;
  }
  Numeric nan;
  RQXNumericSetNan(&nan);
  char text[64];
  EXPECT_EQ(put_decimal(nan, {2, 4}, -1, -1, text), text);
}

}  // namespace
}  // namespace qxe
