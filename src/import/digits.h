// Digits in machine words: eight characters at a time become a number by three multiplications.
#pragma once

#include <stdint.h>
#include <string.h>

#include <bit>

namespace qxe {

static_assert(std::endian::native == std::endian::little, "the first character is the lowest byte");

inline uint64_t load_word(const char* text) {
  uint64_t word;
  memcpy(&word, text, sizeof word);
  return word;
}

/// Bytes that are 0 have their top bit set in the result. Above the first of them others may, too.
inline uint64_t zero_bytes(uint64_t word) {
  return (word - 0x0101010101010101) & ~word & 0x8080808080808080;
}

/// The text that fills `word` from the top, with `unused` bytes below it read as '0'.
inline uint64_t pad_with_zeros(uint64_t word, int unused) {
  constexpr uint64_t kZeros = 0x3030303030303030;
  const int kept = 4 * (8 - unused);  // half the bits: a shift by all 64 has no meaning
  return word | (kZeros >> kept >> kept);
}

/// Value of eight digits, or -1 when another character is among them.
inline int value_of_digits(uint64_t word) {
  constexpr uint64_t kZeros = 0x3030303030303030;
  constexpr uint64_t kHighHalves = 0xf0f0f0f0f0f0f0f0;
  if ((word & kHighHalves) != kZeros) return -1;
  if (((word + 0x0606060606060606) & kHighHalves) != kZeros) return -1;  // above '9'
  // Neighbouring digits, pairs and quadruples become one number each.
  word = (word & 0x0f0f0f0f0f0f0f0f) * 2561 >> 8;
  word = (word & 0x00ff00ff00ff00ff) * 6553601 >> 16;
  return static_cast<int>((word & 0x0000ffff0000ffff) * 42949672960001 >> 32);
}

/// Value of 1 to 8 digits, or -1 for another text. 8 bytes from `text` on are readable.
inline int short_digits(const char* text, int size) {
  if (size < 1 || size > 8) return -1;
  const int unused = 4 * (8 - size);
  const uint64_t word = load_word(text) << unused << unused;
  return value_of_digits(pad_with_zeros(word, 8 - size));
}

}  // namespace qxe
