// Numbers as plain text in the tests: the integer, or "nan".
#pragma once

#include <algorithm>
#include <string>

#include "qxe_numeric.h"

namespace qxe {

__extension__ using Bits128 = unsigned __int128;

inline Numeric number(const std::string& text) {
  if (text == "nan") return {0, static_cast<long>(1UL << 63)};
  const bool negative = text.front() == '-';
  Bits128 bits = 0;
  for (const char c : text.substr(negative)) bits = bits * 10 + static_cast<Bits128>(c - '0');
  if (negative) bits = -bits;
  return {static_cast<unsigned long>(bits), static_cast<long>(bits >> 64)};
}

inline std::string to_text(const Numeric& value) {
  if (value.lo == 0 && value.hi == static_cast<long>(1UL << 63)) return "nan";
  const bool negative = value.hi < 0;
  Bits128 bits = static_cast<Bits128>(static_cast<unsigned long>(value.hi)) << 64 | value.lo;
  if (negative) bits = -bits;
  std::string text;
  do {
    text.push_back(static_cast<char>('0' + static_cast<int>(bits % 10)));
    bits /= 10;
  } while (bits != 0);
  if (negative) text.push_back('-');
  std::reverse(text.begin(), text.end());
  return text;
}

/// What a call gave, as the oracle writes it: "status value".
inline std::string outcome(int status, const Numeric& result) {
  return std::to_string(status) + ' ' + to_text(result);
}

}  // namespace qxe
