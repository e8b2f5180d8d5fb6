// Bitmaps over all rows of a table: the form in which lists of rows in any order are combined.
// Row r is bit r % 32 of word r / 32; bit 0 stands for no row.
#pragma once

#include <stdint.h>

#include <span>

namespace qxe {

/// Words of a bitmap over `totalRows` rows.
inline int bitmap_words(int totalRows) {
  return static_cast<int>((totalRows + 32L) >> 5);
}

/// Clears the bitmap and sets a bit for each row.
void ToBitMap(std::span<const int> rows, int words, uint32_t* bitmap);
/// The same on the pool, each worker in a bitmap of its own.
void MppToBitMap(std::span<const int> rows, int words, uint32_t* bitmap);

/// Word by word; `n` is the number of rows, `out` may be `a`.
void ANDBitMap(int n, const uint32_t* a, const uint32_t* b, uint32_t* out);
void ORBitMap(int n, const uint32_t* a, const uint32_t* b, uint32_t* out);
/// Inverts the bits of rows 1 to `n`; all others are 0 then.
void NegateBitMap(int n, uint32_t* bitmap);

int count_bits(int words, const uint32_t* bitmap);
/// Writes the rows of all bits that are set, ascending; `rows` has room for them, and not more is
/// written. Returns how many.
int BM2Array(int words, const uint32_t* bitmap, std::span<int> rows);

}  // namespace qxe
