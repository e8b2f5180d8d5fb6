// What a Numeric is inside: a signed 128-bit integer of at most 38 digits. The one pattern below
// all of them stands for NaN, so plain integer order is the order of the values.
#pragma once

#include <array>
#include <cstddef>

#include "qxe_numeric.h"

namespace qxe {

__extension__ using Int128 = __int128;
__extension__ using UInt128 = unsigned __int128;

constexpr int kMaxDigits = 38;

/// 10^0 to 10^38, the greatest power of ten in 127 bits.
constexpr auto kPowersOfTen = [] {
  std::array<Int128, kMaxDigits + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

constexpr Int128 power_of_ten(long digits) {
  return kPowersOfTen[static_cast<std::size_t>(digits)];
}

constexpr Int128 kLimit = power_of_ten(kMaxDigits) - 1;
constexpr Int128 kNan = static_cast<Int128>(UInt128{1} << 127);

inline Int128 load(const Numeric& value) {
  return static_cast<Int128>(static_cast<UInt128>(static_cast<unsigned long>(value.hi)) << 64 |
                             value.lo);
}

inline void write(Int128 integer, Numeric* result) {
  result->lo = static_cast<unsigned long>(integer);
  result->hi = static_cast<long>(integer >> 64);
}

/// The end of every failing function: stores NaN and hands the status on.
inline int fail(int status, Numeric* result) {
  write(kNan, result);
  return status;
}

/// The end of every other function: a value that does not fit fails.
inline int store(Int128 integer, Numeric* result) {
  if (integer > kLimit || integer < -kLimit) return fail(QX_NUMERIC_OVERFLOW, result);
  write(integer, result);
  return QX_NUMERIC_DONE;
}

inline bool is_scale(int scale) {
  return scale >= 0 && scale <= kMaxDigits;
}

inline bool is_valid(const NumericInfo& info) {
  return is_scale(info.scale) && info.rounding >= QX_ROUND_UP && info.rounding <= QX_ROUND_HALFEVEN;
}

}  // namespace qxe
