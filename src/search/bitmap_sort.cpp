// Sorts of rows by their own number.
#include <algorithm>
#include <bit>
#include <functional>

#include "search/sort.h"
#include "search/sort_steps.h"

namespace qxe {

namespace {

constexpr int kWordBits = 64;

Block<uint64_t> bitmap_of(int totalRows, int n, const int* rows) {
  Block<uint64_t> bitmap = make_cleared_block<uint64_t>(totalRows / kWordBits + 1L);
  for (int i = 0; i < n; ++i) bitmap[rows[i] / kWordBits] |= uint64_t{1} << rows[i] % kWordBits;
  return bitmap;
}

int* put_upward(uint64_t bits, int first_row, int* out) {
  for (; bits != 0; bits &= bits - 1) *out++ = first_row + std::countr_zero(bits);
  return out;
}

int* put_downward(uint64_t bits, int first_row, int* out) {
  while (bits != 0) {
    const int top = kWordBits - 1 - std::countl_zero(bits);
    *out++ = first_row + top;
    bits ^= uint64_t{1} << top;
  }
  return out;
}

/// For a set that is small against its table; keeps duplicates.
int ScopeBitMapSort(int dir, int n, const int* rows, int* out) {
  std::copy_n(rows, n, out);
  if (dir == QX_SORT_ASC) {
    std::sort(out, out + n);
  } else {
    std::sort(out, out + n, std::greater<>());
  }
  return n;
}

}  // namespace

int BitMapSort(int dir, int totalRows, int n, const int* rows, int* out) {
  if (n == 0) return 0;
  check_sort_direction("BitMapSort", dir);
  if (n < totalRows >> 5) return ScopeBitMapSort(dir, n, rows, out);
  const Block<uint64_t> bitmap = bitmap_of(totalRows, n, rows);
  const int words = totalRows / kWordBits + 1;
  int* end = out;
  if (dir == QX_SORT_ASC) {
    for (int i = 0; i < words; ++i) end = put_upward(bitmap[i], i * kWordBits, end);
  } else {
    for (int i = words - 1; i >= 0; --i) end = put_downward(bitmap[i], i * kWordBits, end);
  }
  return static_cast<int>(end - out);
}

}  // namespace qxe
