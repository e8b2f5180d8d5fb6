// Steps of exact arithmetic over two integer types. 128 bits hold nearly everything that occurs and
// report when they do not; 512 bits then hold every intermediate: the greatest is the dividend of a
// division, 38 digits times 10^76, in 380 bits.
#pragma once

#include <boost/multiprecision/cpp_int.hpp>
#include <cstdlib>

#include "rounding.h"

namespace qxe {

using Int512 = boost::multiprecision::number<
    boost::multiprecision::cpp_int_backend<512, 512, boost::multiprecision::signed_magnitude,
                                           boost::multiprecision::unchecked, void>,
    boost::multiprecision::et_off>;

// A step gives its result in `out`, or false when that is beyond the type.

inline bool try_add(Int128 a, Int128 b, Int128& out) {
  return !__builtin_add_overflow(a, b, &out);
}

inline bool try_add(const Int512& a, const Int512& b, Int512& out) {
  out = a + b;
  return true;
}

inline bool try_multiply(Int128 a, Int128 b, Int128& out) {
  return !__builtin_mul_overflow(a, b, &out);
}

inline bool try_multiply(const Int512& a, const Int512& b, Int512& out) {
  out = a * b;
  return true;
}

/// 10^digits, for 0 to 76 digits.
inline bool try_power(int digits, Int128& out) {
  if (digits > kMaxDigits) return false;
  out = power_of_ten(digits);
  return true;
}

inline bool try_power(int digits, Int512& out) {
  const int half = digits / 2;
  out = Int512(power_of_ten(half)) * Int512(power_of_ten(digits - half));
  return true;
}

/// value * 10^digits; negative digits divide and round by `mode`.
template <class Int>
bool try_shift(Int& value, int digits, int mode) {
  if (digits == 0) return true;
  Int factor;
  if (!try_power(std::abs(digits), factor)) return false;
  if (digits > 0) return try_multiply(value, factor, value);
  value = divide(value, factor, mode);
  return true;
}

/// value * 10^digits; nothing to round, as digits are not negative.
template <class Int>
bool try_scale_up(Int& value, int digits) {
  return try_shift(value, digits, QX_ROUND_DOWN);
}

inline int store(const Int512& integer, Numeric* result) {
  if (integer > Int512(kLimit) || integer < Int512(-kLimit)) {
    return fail(QX_NUMERIC_OVERFLOW, result);
  }
  return store(static_cast<Int128>(integer), result);
}

}  // namespace qxe
