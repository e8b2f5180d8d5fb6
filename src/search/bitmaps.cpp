#include "search/bitmaps.h"

#include <algorithm>
#include <vector>

#include "frame/base/bits.h"
#include "search/compiler_steps.h"
#include "search/scan_kernels.h"

namespace qxe {

int mpp_tobitmap(void* block) {
  return run_pool_step(block);
}

void ToBitMap(std::span<const int> rows, int words, uint32_t* bitmap) {
  std::fill_n(bitmap, words, 0u);
  for (const int row : rows) bitmap[row >> 5] |= uint32_t{1} << (row & 31);
}

void MppToBitMap(std::span<const int> rows, int words, uint32_t* bitmap) {
  const long count = static_cast<long>(rows.size());
  // A further bitmap is cleared and joined, which takes its time too.
  const int workers =
      ENG->n_threads_for_elements(count, std::max<long>(ENG->rows_per_worker(), words / 4));
  std::vector<Block<uint32_t>> own(static_cast<size_t>(workers));
  run_step(QX_MPP_TOBITMAP, workers, [&](int worker) {
    uint32_t* map = bitmap;
    if (worker > 0) {
      own[static_cast<size_t>(worker)] = make_block<uint32_t>(words);
      map = own[static_cast<size_t>(worker)].get();
    }
    const Slice slice = even_slice(count, workers, worker);
    ToBitMap(rows.subspan(static_cast<size_t>(slice.begin), static_cast<size_t>(slice.size())),
             words, map);
  });
  for (size_t worker = 1; worker < own.size(); ++worker) {
    for (int i = 0; i < words; ++i) bitmap[i] |= own[worker][i];
  }
}

void ANDBitMap(int n, const uint32_t* a, const uint32_t* b, uint32_t* out) {
  for (int i = 0; i < bitmap_words(n); ++i) out[i] = a[i] & b[i];
}

void ORBitMap(int n, const uint32_t* a, const uint32_t* b, uint32_t* out) {
  for (int i = 0; i < bitmap_words(n); ++i) out[i] = a[i] | b[i];
}

void NegateBitMap(int n, uint32_t* bitmap) {
  const int words = bitmap_words(n);
  for (int i = 0; i < words; ++i) bitmap[i] = ~bitmap[i];
  bitmap[0] &= ~uint32_t{1};
  const int used = static_cast<int>((n + 1L) & 31);  // bits of the last word; 0: all
  if (used != 0) bitmap[words - 1] &= (uint32_t{1} << used) - 1;
}

int count_bits(int words, const uint32_t* bitmap) {
  int bits = 0;
  for (int i = 0; i < words; ++i) bits += bit_count(bitmap[i]);
  return bits;
}

int BM2Array(int words, const uint32_t* bitmap, std::span<int> rows) {
  int* const end =
      scan_kernels().put_rows(bitmap, words, 0, rows.data(), rows.data() + rows.size());
  return static_cast<int>(end - rows.data());
}

}  // namespace qxe
