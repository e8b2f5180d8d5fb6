#include "tables/row_deletion.h"

#include <algorithm>

#include "frame/base/bits.h"

namespace qxe {

RowDeletion::RowDeletion(int total)
    : word_count_(total / kRows + 1), words_(make_cleared_block<Word>(word_count_)) {}

int RowDeletion::close() {
  int marked = 0;
  for (int i = 0; i < word_count_; ++i) {
    if (marked == 0) first_ = i;
    words_[i].before = marked;
    marked += bit_count(words_[i].marked);
  }
  return marked;
}

int RowDeletion::close_up(int* elements, int size) const {
  int* out = elements + std::min(first_ * kRows, size);
  for (int i = first_; i < word_count_; ++i) {
    const int* const in = elements + static_cast<long>(i) * kRows;
    const int count = std::min(kRows, size - i * kRows);
    uint64_t marked = words_[i].marked;
    if (marked == ~uint64_t{0}) continue;
    if (marked == 0) {
      out = std::copy(in, in + count, out);
      continue;
    }
    for (int j = 0; j < count; ++j, marked >>= 1) {  // a branch would go wrong too often
      *out = in[j];
      out += (marked & 1) ^ 1;
    }
  }
  return static_cast<int>(out - elements);
}

int RowDeletion::renumber(int* rows, int count) const {
  int* out = rows;
  for (int i = 0; i < count; ++i) {
    const int row = rows[i];
    const Word& word = words_[row / kRows];
    const int bit = row % kRows;
    const uint64_t below = (uint64_t{1} << bit) - 1;
    *out = row - word.before - bit_count(word.marked & below);
    out += ((word.marked >> bit) & 1) ^ 1;
  }
  return static_cast<int>(out - rows);
}

}  // namespace qxe
