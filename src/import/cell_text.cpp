// Scaled numbers are mostly short, and how many digits stand in front of their point is hard to
// predict. So eight digits are made at a time without branches, and leading zeros are skipped by
// their count.
#include "import/cell_text.h"

#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace qxe {

namespace {

static_assert(std::endian::native == std::endian::little);

constexpr int kShortDigits = 8;
constexpr uint32_t kShortLimit = 100'000'000;  // 10^8
constexpr int kLongTextSize = 20;
constexpr int kMaxScale = 15;  // of scaled units; a number that needs more takes the long way

constexpr double kPowersOf10[kMaxScale + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                               1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// The eight digits of a number below 10^8 as values 0 to 9, the first one in the lowest byte. Each
/// step halves the groups by a multiplication with the reciprocal.
uint64_t eight_digits(uint32_t number) {
  uint64_t groups = number / 10'000 | static_cast<uint64_t>(number % 10'000) << 32;
  const uint64_t hundreds = (groups * 10'486 >> 20) & 0x0000007f'0000007f;
  groups = hundreds | (groups - hundreds * 100) << 16;
  const uint64_t tens = (groups * 103 >> 10) & 0x000f000f'000f000f;
  return tens | (groups - tens * 10) << 8;
}

constexpr uint64_t kAsciiZeros = 0x30303030'30303030;

/// Zeros in front of the first other digit; 8 when there is none.
int leading_zeros(uint64_t digits) {
  return std::countr_zero(digits) / 8;
}

/// Digits without the leading `zeros` as text, eight bytes whose end has no meaning.
void put_digits(uint64_t digits, int zeros, char* out) {
  const uint64_t text = (digits + kAsciiZeros) >> (8 * zeros);
  memcpy(out, &text, sizeof text);
}

/// units / 10^scale, for a scale up to 7.
char* put_short_scaled(uint32_t units, int scale, char* out) {
  const uint64_t digits = eight_digits(units);
  const int point = kShortDigits - scale;
  const int first = std::min(leading_zeros(digits), point - 1);
  put_digits(digits, first, out);
  out += point - first;
  if (scale == 0) return out;
  *out = '.';
  put_digits(digits, point, out + 1);
  return out + 1 + scale;
}

/// units / 10^scale, for a scale up to kMaxScale.
char* put_scaled(uint64_t units, int scale, char* out) {
  if (units < kShortLimit && scale < kShortDigits) {
    return put_short_scaled(static_cast<uint32_t>(units), scale, out);
  }
  char* const end = std::to_chars(out, out + kLongTextSize, units).ptr;
  if (scale == 0) return end;
  const int digits = static_cast<int>(end - out);
  const int whole = std::max(digits - scale, 1);
  const int zeros = std::max(scale - digits, 0);  // behind the point
  char* const point = out + whole;
  memmove(point + 1 + zeros, digits > scale ? point : out, static_cast<size_t>(scale - zeros));
  if (digits <= scale) *out = '0';
  *point = '.';
  memset(point + 1, '0', static_cast<size_t>(zeros));
  return point + 1 + scale;
}

char* put_sign(bool negative, char* out) {
  *out = '-';
  return out + (negative ? 1 : 0);
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
  if (decimals <= kMaxScale) {
    const double scaled = magnitude * kPowersOf10[decimals];
    if (scaled < kExact) {
      const auto units = static_cast<int64_t>(scaled);
      const double beyond_half = scaled - static_cast<double>(units) - 0.5;
      if (std::fabs(beyond_half) > kDoubt) {
        out = put_sign(std::signbit(value), out);
        return put_scaled(static_cast<uint64_t>(units + (beyond_half > 0 ? 1 : 0)), decimals, out);
      }
    }
  }
  return std::to_chars(out, out + kDoubleTextSize + decimals, value, std::chars_format::fixed,
                       decimals)
      .ptr;
}

char* put_decimal(const Numeric& value, const NumericInfo& info, int scale, int rounding,
                  char* out) {
  const bool negative = value.hi < 0;
  const bool is_narrow = negative ? value.hi == -1 && value.lo != 0 : value.hi == 0;
  if (is_narrow && info.scale <= kMaxScale && (scale < 0 || scale == info.scale)) {
    return put_scaled(negative ? 0 - value.lo : value.lo, info.scale, put_sign(negative, out));
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
