// Order-preserving 64-bit pieces of values, so that all families sort by comparing integers.
#pragma once

#include <bit>

#include "storage/family.h"

namespace qxe {

/// `key(value, depth)` is a piece of the value: values that agree in all earlier pieces are ordered
/// as their pieces are. Values that agree in a piece differ, if at all, in later ones when
/// `more(key, depth)`, the next of which is at `depth + kStep`.
template <class Array>
struct SortKey;

constexpr uint64_t kSignBit = uint64_t{1} << 63;

template <>
struct SortKey<TIntArray> {
  static constexpr int kStep = 1;
  static uint64_t key(int value, int) { return static_cast<uint32_t>(value) ^ (kSignBit >> 32); }
  static bool more(uint64_t, int) { return false; }
};

template <>
struct SortKey<TDoubleArray> {
  static constexpr int kStep = 1;
  /// Negative numbers in reverse, below the positive ones.
  static uint64_t key(double value, int) {
    const uint64_t bits = std::bit_cast<uint64_t>(value);
    return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
  }
  static bool more(uint64_t, int) { return false; }
};

template <>
struct SortKey<TStrArray> {
  static constexpr int kStep = 8;
  /// The eight bytes from `depth` on, the first one highest; zeros behind the end.
  static uint64_t key(const char* text, int depth) {
    if (!word_is_readable(text + depth)) return key_by_bytes(text + depth);
    uint64_t word;
    memcpy(&word, text + depth, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    const uint64_t ends = (word - 0x0101010101010101) & ~word & 0x8080808080808080;
    if (ends != 0) word &= (ends & (~ends + 1)) / 0x80 - 1;  // the bytes before the first zero
    return __builtin_bswap64(word);
  }
  static bool more(uint64_t key, int) { return (key & 0xff) != 0; }
  static int compare_from(const char* left, const char* right, int depth) {
    return strcmp(left + depth, right + depth);
  }

 private:
  /// Bytes behind a text's end may be anything, but they are in its page of memory.
  static bool word_is_readable(const char* text) {
#ifdef __SANITIZE_ADDRESS__
    return text == nullptr;
#else
    constexpr size_t kPage = 4096;
    return (reinterpret_cast<size_t>(text) & (kPage - 1)) <= kPage - sizeof(uint64_t);
#endif
  }
  static uint64_t key_by_bytes(const char* text) {
    uint64_t key = 0;
    for (int shift = 56; shift >= 0 && *text != '\0'; shift -= 8) {
      key |= static_cast<uint64_t>(static_cast<unsigned char>(*text++)) << shift;
    }
    return key;
  }
};

template <>
struct SortKey<TNumericArray> {
  static constexpr int kStep = 1;
  /// First the value itself as far as 64 bits hold it, since nearly all do; then both halves.
  static uint64_t key(const Numeric& value, int depth) {
    if (depth == 1) return static_cast<uint64_t>(value.hi) ^ kSignBit;
    if (depth == 2) return value.lo;
    const long sign_of_low = static_cast<long>(value.lo) >> 63;
    if (value.hi == sign_of_low) return value.lo ^ kSignBit;
    return value.hi < 0 ? 0 : ~uint64_t{0};
  }
  static bool more(uint64_t key, int depth) {
    return depth == 0 ? key == 0 || key == ~uint64_t{0} : depth == 1;
  }
  static int compare_from(const Numeric& left, const Numeric& right, int) {
    return Family<TNumericArray>::compare(left, right);
  }
};

/// Families whose first piece is the whole value.
template <class Array>
constexpr bool kKeyIsValue =
    std::is_same_v<Array, TIntArray> || std::is_same_v<Array, TDoubleArray>;

inline int value_of_key(uint64_t key, std::type_identity<TIntArray>) {
  return static_cast<int>(static_cast<uint32_t>(key ^ (kSignBit >> 32)));
}
inline double value_of_key(uint64_t key, std::type_identity<TDoubleArray>) {
  return std::bit_cast<double>((key & kSignBit) != 0 ? key ^ kSignBit : ~key);
}

}  // namespace qxe
