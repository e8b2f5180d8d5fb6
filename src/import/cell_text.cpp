#include "import/cell_text.h"

#include <string.h>

#include <charconv>
#include <cmath>

namespace qxe {

namespace {

constexpr int kLongTextSize = 20;

constexpr double kPowersOf10[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr int kMaxPower = 15;

/// units / 10^scale.
char* put_scaled(uint64_t units, int scale, char* out) {
  char* const end = std::to_chars(out, out + kLongTextSize, units).ptr;
  if (scale == 0) return end;
  const int digits = static_cast<int>(end - out);
  const int whole = digits > scale ? digits - scale : 1;  // digits in front of the point
  char* const point = out + whole;
  if (digits > scale) {
    memmove(point + 1, point, static_cast<size_t>(scale));
  } else {  // "5" with scale 3 is "0.005"
    memmove(point + 1 + scale - digits, out, static_cast<size_t>(digits));
    memset(point + 1, '0', static_cast<size_t>(scale - digits));
    *out = '0';
  }
  *point = '.';
  return point + 1 + scale;
}

char* put_exponent(double value, char* out) {
  char* const end =
      std::to_chars(out, out + kDoubleTextSize, value, std::chars_format::scientific, 13).ptr;
  for (char* at = out; at != end; ++at) {
    if (*at >= 'a' && *at <= 'z') *at = static_cast<char>(*at - 'a' + 'A');
  }
  return end;
}

}  // namespace

char* put_integer(int value, char* out) {
  return std::to_chars(out, out + kIntegerTextSize, value).ptr;
}

char* put_double(double value, int decimals, char* out) {
  // Below kExact the product is off by less than 2^-10, so that a fraction farther than kDoubt from
  // a half is rounded to the side of the exact value; the rest needs all digits.
  constexpr double kExact = 0x1p43;
  constexpr double kDoubt = 0x1p-9;
  constexpr double kExponentFrom = 1e18;
  const double magnitude = std::fabs(value);
  if (!(magnitude < kExponentFrom)) return put_exponent(value, out);
  if (decimals <= kMaxPower) {
    const double scaled = magnitude * kPowersOf10[decimals];
    if (scaled < kExact) {
      const auto units = static_cast<uint64_t>(scaled);
      const double beyond_half = scaled - static_cast<double>(units) - 0.5;
      if (std::fabs(beyond_half) > kDoubt) {
        if (std::signbit(value)) *out++ = '-';
        return put_scaled(units + (beyond_half > 0 ? 1 : 0), decimals, out);
      }
    }
  }
  return std::to_chars(out, out + kDoubleTextSize + decimals, value, std::chars_format::fixed,
                       decimals)
      .ptr;
}

char* put_decimal(const Numeric& value, const NumericInfo& info, int scale, int rounding,
                  char* out) {
  const auto low = static_cast<int64_t>(value.lo);
  const bool is_narrow = value.hi == (low < 0 ? -1 : 0);
  if (is_narrow && (scale < 0 || scale == info.scale)) {
    if (low < 0) *out++ = '-';
    const uint64_t units = low < 0 ? 0 - value.lo : value.lo;
    return put_scaled(units, info.scale, out);
  }
  char text[kDecimalTextSize];
  if (RQXNumericNum2Str(&value, &info, scale, rounding, text, sizeof text) != QX_NUMERIC_DONE) {
    return out;
  }
  const size_t length = strlen(text);
  memcpy(out, text, length);
  return out + length;
}

}  // namespace qxe
