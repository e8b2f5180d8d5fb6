// Sorts by one column on the worker pool.
#include "search/mpp_sort_steps.h"
#include "search/sort.h"

namespace qxe {

int mpp_single_sort_countup(void* block) {
  return run_countup<uint32_t>(block);
}

int mpp_single_sort_transfer(void* block) {
  return run_transfer_rows<uint32_t>(block);
}

int mpp_multi_sort_countup(void* block) {
  return run_countup<uint32_t>(block);
}

int mpp_multi_sort_transfer(void* block) {
  return run_transfer_words<uint32_t>(block);
}

int mpp_sort_2step(void* block) {
  return run_sort_buckets(block);
}

namespace {

void SingleStep_Sort(const SortKey& sort_key, int n, const int* rows, int* out) {
  mpp_single_step<uint32_t>(sort_key, n, rows, out);
}

void MultiStep_Sort(const SortKey& sort_key, int n, const int* rows, int* out) {
  RadixInfo radix{};
  build_radix_info(sort_key.limit, n, &radix);
  mpp_multi_step<uint32_t>(sort_key, n, rows, radix, kNarrowKeyLayout, out);
}

}  // namespace

void MppCountingSort(int dir, int n, const int* rows, int* out, const int* pv, int nValues) {
  if (n == 0) return;
  const SortKey sort_key(dir, pv, static_cast<uint64_t>(nValues));
  if (n <= nValues >> 10) {
    ScopeCSort(sort_key, n, rows, out);  // too few rows to wake a worker for
  } else if (sort_key.limit <= kSingleStepKeys) {
    SingleStep_Sort(sort_key, n, rows, out);
  } else {
    MultiStep_Sort(sort_key, n, rows, out);
  }
}

}  // namespace qxe
