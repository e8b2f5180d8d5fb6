// Conversions to and from double and int.
#include <string.h>

#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

#include "rounding.h"

namespace qxe {
namespace {

constexpr long kExactDoubles = 1L << 53;  // whole numbers up to here are doubles
// And so are the powers of ten up to 10^22.
constexpr double kExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kNullInt = std::numeric_limits<int>::min();
constexpr double kNullDouble = -std::numeric_limits<double>::infinity();
constexpr int kLongestText = kMaxDigits + 4;  // "-", "0", "." and the terminator

int store_scaled(long x, const NumericInfo& info, Numeric* result) {
  Int128 integer;
  if (__builtin_mul_overflow(Int128{x}, power_of_ten(info.scale), &integer)) {
    return fail(QX_NUMERIC_OVERFLOW, result);
  }
  return store(integer, result);
}

}  // namespace
}  // namespace qxe

int RQXNumericDbl2Num(const NumericInfo* info, Numeric* result, double x) {
  if (!qxe::is_valid(*info)) return qxe::fail(QX_NUMERIC_BAD_ARGUMENT, result);
  if (std::isnan(x) || x == qxe::kNullDouble) return qxe::fail(QX_NUMERIC_NAN, result);
  if (std::isinf(x)) return qxe::fail(QX_NUMERIC_OVERFLOW, result);
  if (std::abs(x) < qxe::kExactDoubles && std::trunc(x) == x) {
    return qxe::store_scaled(static_cast<long>(x), *info, result);
  }
  char text[32];  // the longest: "-1.2345678901234567e-308"
  *std::to_chars(text, text + sizeof text, x, std::chars_format::scientific).ptr = '\0';
  return RQXNumericStr2Num(text, info, result, nullptr);
}

int RQXNumericNum2Dbl(const Numeric* value, const NumericInfo* info, double* out) {
  *out = qxe::kNullDouble;
  if (!qxe::is_valid(*info)) return QX_NUMERIC_NAN;
  const qxe::Int128 integer = qxe::load(*value);
  if (integer == qxe::kNan) return QX_NUMERIC_NAN;
  if (integer < qxe::kExactDoubles && integer > -qxe::kExactDoubles &&
      info->scale < static_cast<int>(std::size(qxe::kExactPowers))) {
    *out = static_cast<double>(static_cast<long>(integer)) / qxe::kExactPowers[info->scale];
    return QX_NUMERIC_DONE;
  }
  char text[qxe::kLongestText];
  if (RQXNumericNum2Str(value, info, -1, -1, text, sizeof text) != QX_NUMERIC_DONE) {
    return QX_NUMERIC_NAN;  // a pattern that no function of this library stores
  }
  std::from_chars(text, text + strlen(text), *out);
  return QX_NUMERIC_DONE;
}

int RQXNumericInt2Num(const NumericInfo* info, Numeric* value, int x) {
  if (!qxe::is_valid(*info)) return qxe::fail(QX_NUMERIC_BAD_ARGUMENT, value);
  if (x == qxe::kNullInt) return qxe::fail(QX_NUMERIC_NAN, value);
  return qxe::store_scaled(x, *info, value);
}

int RQXNumericNum2Int(const NumericInfo* info, const Numeric* value, int* out) {
  *out = qxe::kNullInt;
  if (!qxe::is_valid(*info)) return QX_NUMERIC_BAD_ARGUMENT;
  const qxe::Int128 integer = qxe::load(*value);
  if (integer == qxe::kNan) return QX_NUMERIC_NAN;
  const qxe::Int128 whole = qxe::divide(integer, qxe::power_of_ten(info->scale), info->rounding);
  if (whole <= qxe::kNullInt || whole > std::numeric_limits<int>::max()) {
    return QX_NUMERIC_OVERFLOW;
  }
  *out = static_cast<int>(whole);
  return QX_NUMERIC_DONE;
}
