// Sorts by row pointer on the calling thread, and the counting primitives.
#include "search/sort.h"
#include "search/sort_steps.h"

namespace qxe {

namespace {

/// One pass that counts every key.
void sort_by_counting(const SortKey& sort_key, int n, const int* rows, int* out) {
  const Block<uint32_t> keys = make_block<uint32_t>(n);
  const KeyedRows<uint32_t> source(sort_key, rows, keys.get());
  BucketCounters counters(1, source.buckets);
  countup(source, {0, n}, counters.of(0));
  counters.form_starts(nullptr);
  transfer_rows(source, {0, n}, counters.of(0), out);
}

}  // namespace

void ScopeCSort(const SortKey& sort_key, int n, const int* rows, int* out) {
  RadixInfo radix{};
  build_n_filter_radix_info(sort_key.limit, n, &radix);
  const Block<uint32_t> keys = make_block<uint32_t>(n);
  const KeyedRows<uint32_t> source(sort_key, rows, keys.get(), radix);
  const Block<uint64_t> words = make_block<uint64_t>(n);
  const Block<int> starts = make_block<int>(source.buckets + 1L);
  BucketCounters counters(1, source.buckets);
  countup(source, {0, n}, counters.of(0));
  counters.form_starts(starts.get());
  transfer_words(source, {0, n}, counters.of(0), kNarrowKeyLayout, words.get());
  sort_buckets({words.get(), starts.get(), source.buckets, kNarrowKeyLayout, radix, out}, {0, n});
}

void sort_by_key(const SortKey& sort_key, int n, const int* rows, int* out) {
  if (n == 0) return;
  // For a small set a counter for each key would cost more than the sort.
  const bool small = static_cast<uint64_t>(n) < sort_key.limit >> 3;
  if (small || sort_key.limit > kSingleStepKeys) {
    ScopeCSort(sort_key, n, rows, out);
  } else {
    sort_by_counting(sort_key, n, rows, out);
  }
}

void CountingSort(int dir, int n, const int* rows, int* out, const int* pv, int nValues) {
  if (n == 0) return;
  sort_by_key(SortKey(dir, pv, static_cast<uint64_t>(nValues)), n, rows, out);
}

void Aggregate(int dir, int nValues, const int* counts, int* starts) {
  check_sort_direction("Aggregate", dir);
  int total = 0;
  const auto add = [&](int value) {
    const int count = counts[value];  // may be the place that is written next
    starts[value] = total;
    total += count;
  };
  if (dir == QX_SORT_ASC) {
    for (int value = 0; value < nValues; ++value) add(value);
  } else {
    for (int value = nValues - 1; value >= 0; --value) add(value);
  }
}

void CountupNExist(int n, const int* rows, int nValues, const int* pv, int* counts) {
  std::fill_n(counts, nValues, 0);
  for (int i = 0; i < n; ++i) ++counts[pv[rows[i]]];
}

void CountupNExist2(int n, const int* keys, int nValues, int* counts) {
  std::fill_n(counts, nValues, 0);
  count_keys(keys, n, 0, counts);
}

void MoveRecsForSort(int n, const int* rows, const int* pv, int* out, int* starts) {
  for (int i = 0; i < n; ++i) out[starts[pv[rows[i]]]++] = rows[i];
}

}  // namespace qxe
