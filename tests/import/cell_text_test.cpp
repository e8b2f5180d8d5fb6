// Texts of numbers compared with the system's formatted output.
#include "import/cell_text.h"

#include <gtest/gtest.h>
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

// Any bits, any magnitude, halves of the last digit exact in binary or just beside it, neighbours
// of powers of ten, extremes.
TEST(CellTextTest, DoublesAreTextsOfThePrinter) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0, -0.0, -1e-9, Limits::min(), Limits::denorm_min(), Limits::max(),
                             Limits::lowest(), 1e18, 999999999999999999.0, 0x1p43, 0x1p53}) {
    expect_as_printed(value);
  }
  for (int exponent = -20; exponent <= 20; ++exponent) {
    const double power = std::pow(10.0, exponent);
    for (const double value : {power, std::nextafter(power, 0), -power}) expect_as_printed(value);
  }
  std::mt19937_64 random(1);
  for (int i = 0; i < 5000; ++i) {
    const double any = std::bit_cast<double>(random());
    if (std::isfinite(any)) expect_as_printed(any);
    const double mantissa = static_cast<double>(random() % 2'000'001) - 1e6;
    expect_as_printed(mantissa * std::pow(10.0, static_cast<double>(random() % 40) - 20));
    const double tie = static_cast<double>(random() % 4096) / 2048 + 0.0005;
    const double decimal_tie = (static_cast<double>(random() % 1'000'000) * 10 + 5) / 10000;
    for (const double value : {tie, decimal_tie, -tie}) {
      expect_as_printed(value);
      expect_as_printed(std::nextafter(value, 1e9));
      expect_as_printed(std::nextafter(value, -1e9));
    }
  }
}

TEST(CellTextTest, DecimalsAreTextsOfTheDecimalLibrary) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 20000; ++i) {
    const auto shift = static_cast<int>(random() % 64);
    const bool wide = random() % 4 == 0;
    Numeric value{random() >> shift, wide ? static_cast<long>(random() % 1000) - 500 : 0};
    if (!wide && random() % 2 == 0) value = {0 - value.lo, value.lo == 0 ? 0 : -1};
    const NumericInfo info{static_cast<int>(random() % 39), static_cast<int>(random() % 7)};
    NumericInfo as = info;
    if (random() % 2 == 0) as = {static_cast<int>(random() % 39), static_cast<int>(random() % 7)};
    char wanted[64];
    RQXNumericNum2Str(&value, &info, as.scale, as.rounding, wanted, sizeof wanted);
    char text[64];
    ASSERT_EQ(std::string(text, put_decimal(value, info, as, text)), wanted)
        << value.hi << " " << value.lo << " scale " << info.scale << " to " << as.scale;
  }
  Numeric nan;
  RQXNumericSetNan(&nan);
  char text[64];
  EXPECT_EQ(put_decimal(nan, {2, 4}, {2, 4}, text), text);
}

}  // namespace
}  // namespace qxe
