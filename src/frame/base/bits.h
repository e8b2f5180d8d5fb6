// Bits of words.
#pragma once

#include <stdint.h>

namespace qxe {

/// Bits set in a word. Without an instruction for it std::popcount is a call.
inline int bit_count(uint64_t word) {
  word -= (word >> 1) & 0x5555555555555555;
  word = (word & 0x3333333333333333) + ((word >> 2) & 0x3333333333333333);
  word = (word + (word >> 4)) & 0x0f0f0f0f0f0f0f0f;
  return static_cast<int>((word * 0x0101010101010101) >> 56);
}

}  // namespace qxe
