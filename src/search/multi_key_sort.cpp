// Sort by several columns: the keys of as many columns as fit beside a row number in 64 bits are
// one mixed-radix number, so that most sorts are one pass whatever the number of columns. The
// passes are stable and run from the least significant columns to the most significant ones.
#include "search/multi_key_sort.h"

#include <limits>
#include <vector>

#include "search/mpp_sort_steps.h"

namespace qxe {

int mpp_single_sort_n_filter_countup(void* block) {
  return run_countup<uint64_t>(block);
}

int mpp_single_sort_n_filter_transfer(void* block) {
  return run_transfer_rows<uint64_t>(block);
}

int mpp_multi_sort_n_filter_countup(void* block) {
  return run_countup<uint64_t>(block);
}

int mpp_multi_sort_n_filter_transfer(void* block) {
  return run_transfer_words<uint64_t>(block);
}

int mpp_sort_n_filter_2step(void* block) {
  return run_sort_buckets(block);
}

int mpp_sort_n_filter_3step(void* block) {
  return run_sort_buckets(block);
}

namespace {

/// Bits that hold every row number of the filters' table.
WordLayout layout_for(int nKeys, TFilter* const* filters) {
  int rows = 1;
  for (int i = 0; i < nKeys; ++i) rows = std::max(rows, filters[i]->PVL->FArraySize - 1);
  return {ConvertFromVLtoBitsize(static_cast<uint64_t>(rows))};
}

/// Consecutive keys joined as long as their product leaves room for the row number.
std::vector<SortKey> group_keys(int nKeys, TFilter* const* filters, const int* dirs,
                                WordLayout layout) {
  const uint64_t most = uint64_t{1} << (64 - layout.row_bits);
  std::vector<SortKey> groups(1);
  for (int i = 0; i < nKeys; ++i) {
    const auto values = static_cast<uint64_t>(filters[i]->VL->FArraySize);
    if (groups.back().limit > most / values) groups.emplace_back();
    groups.back().add(dirs[i], filters[i]->PVL->PIntAr(), values);
  }
  return groups;
}

void SingleStepIntegratedSort(const SortKey& sort_key, int n, const int* rows, int* out) {
  mpp_single_step<uint64_t>(sort_key, n, rows, out);
}

void MultiStepIntegratedSort(const SortKey& sort_key, int n, const int* rows, WordLayout layout,
                             int* out) {
  RadixInfo radix{};
  build_n_filter_radix_info(sort_key.limit, n, &radix);
  mpp_multi_step<uint64_t>(sort_key, n, rows, radix, layout, out);
}

void MppIntegratedCountingSort(const SortKey& sort_key, int n, const int* rows, WordLayout layout,
                               int* out) {
  const bool narrow = static_cast<uint64_t>(n) <= sort_key.limit >> 10;
  if (narrow || sort_key.limit > kSingleStepKeys) {
    MultiStepIntegratedSort(sort_key, n, rows, layout, out);
  } else {
    SingleStepIntegratedSort(sort_key, n, rows, out);
  }
}

}  // namespace

void SortForMultiItem(int nKeys, int nRows, const int* rows, TFilter* const* filters,
                      const int* dirs, int* out) {
  if (nRows == 0) return;
  const WordLayout layout = layout_for(nKeys, filters);
  const std::vector<SortKey> groups = group_keys(nKeys, filters, dirs, layout);
  // The passes alternate between `out` and a second place so that the last one writes `out`.
  const Block<int> between = make_block<int>(groups.size() > 1 ? nRows : 0);
  const int* from = rows;
  for (size_t left = groups.size(); left > 0; --left) {
    int* const to = left % 2 == 1 ? out : between.get();
    MppIntegratedCountingSort(groups[groups.size() - left], nRows, from, layout, to);
    from = to;
  }
}

}  // namespace qxe
