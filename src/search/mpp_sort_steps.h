// The steps of a parallel sort, shared by sorts by one column (32-bit keys) and by several (64-bit
// keys). Each worker counts its slice of the rows; the running sums over workers and buckets then
// give every worker places of its own, so nothing is shared while rows move.
#pragma once

#include "parallel/sliced_task.h"
#include "search/sort_steps.h"

namespace qxe {

/// The tasks for one width of keys.
template <class Key>
struct SortTasks;

template <>
struct SortTasks<uint32_t> {
  static constexpr TaskId kSingleCountup = QX_MPP_SINGLE_SORT_COUNTUP;
  static constexpr TaskId kSingleTransfer = QX_MPP_SINGLE_SORT_TRANSFER;
  static constexpr TaskId kMultiCountup = QX_MPP_MULTI_SORT_COUNTUP;
  static constexpr TaskId kMultiTransfer = QX_MPP_MULTI_SORT_TRANSFER;
  static constexpr TaskId kTwoSteps = QX_MPP_SORT_STEP2;
  static constexpr TaskId kThreeSteps = QX_MPP_SORT_STEP3;
};

template <>
struct SortTasks<uint64_t> {
  static constexpr TaskId kSingleCountup = QX_MPP_SINGLE_SORT_N_FILTER_COUNTUP;
  static constexpr TaskId kSingleTransfer = QX_MPP_SINGLE_SORT_N_FILTER_TRANSFER;
  static constexpr TaskId kMultiCountup = QX_MPP_MULTI_SORT_N_FILTER_COUNTUP;
  static constexpr TaskId kMultiTransfer = QX_MPP_MULTI_SORT_N_FILTER_TRANSFER;
  static constexpr TaskId kTwoSteps = QX_MPP_SORT_N_FILTER_STEP2;
  static constexpr TaskId kThreeSteps = QX_MPP_SORT_N_FILTER_STEP3;
};

template <class Key>
struct CountupParams {
  KeyedRows<Key> source;
  Slice slice;
  int* counters;  // the worker's own
};

template <class Key>
struct TransferRowsParams {
  KeyedRows<Key> source;
  Slice slice;
  int* starts;  // the worker's own
  int* out;
};

template <class Key>
struct TransferWordsParams {
  KeyedRows<Key> source;
  Slice slice;
  int* starts;  // the worker's own
  WordLayout layout;
  uint64_t* words;
};

struct SortBucketsParams {
  BucketedWords source;
  Slice slice;  // of the sorted rows: the worker does the buckets that begin in it
};

template <class Key>
int run_countup(void* block) {
  return run_task<CountupParams<Key>>(block,
                                      [](auto& p) { countup(p.source, p.slice, p.counters); });
}

template <class Key>
int run_transfer_rows(void* block) {
  return run_task<TransferRowsParams<Key>>(
      block, [](auto& p) { transfer_rows(p.source, p.slice, p.starts, p.out); });
}

template <class Key>
int run_transfer_words(void* block) {
  return run_task<TransferWordsParams<Key>>(
      block, [](auto& p) { transfer_words(p.source, p.slice, p.starts, p.layout, p.words); });
}

inline int run_sort_buckets(void* block) {
  return run_task<SortBucketsParams>(block, [](auto& p) { sort_buckets(p.source, p.slice); });
}

/// Counts all rows and turns the counts into start positions.
template <class Key>
BucketCounters mpp_form_starts(TaskId id, const KeyedRows<Key>& source, int n, int* bucket_starts) {
  SlicedTask<CountupParams<Key>> task(id, n, ENG->rows_per_worker());
  BucketCounters counters(task.workers(), source.buckets);
  task.run([&](Slice slice, int worker) {
    return CountupParams<Key>{source, slice, counters.of(worker)};
  });
  counters.form_starts(bucket_starts);
  return counters;
}

/// Sorts by counting every key.
template <class Key>
void mpp_single_step(const SortKey& sort_key, int n, const int* rows, int* out) {
  using Tasks = SortTasks<Key>;
  const Block<Key> keys = make_block<Key>(n);
  const KeyedRows<Key> source(sort_key, rows, keys.get());
  BucketCounters counters = mpp_form_starts(Tasks::kSingleCountup, source, n, nullptr);
  SlicedTask<TransferRowsParams<Key>> task(Tasks::kSingleTransfer, n, ENG->rows_per_worker());
  task.run([&](Slice slice, int worker) {
    return TransferRowsParams<Key>{source, slice, counters.of(worker), out};
  });
}

/// Moves rows with their keys into `words`, bucket by bucket.
template <class Key>
void mpp_fill_buckets(const SortKey& sort_key, int n, const int* rows, const RadixInfo& radix,
                      WordLayout layout, int* bucket_starts, uint64_t* words) {
  using Tasks = SortTasks<Key>;
  const Block<Key> keys = make_block<Key>(n);
  const KeyedRows<Key> source(sort_key, rows, keys.get(), radix);
  BucketCounters counters = mpp_form_starts(Tasks::kMultiCountup, source, n, bucket_starts);
  SlicedTask<TransferWordsParams<Key>> task(Tasks::kMultiTransfer, n, ENG->rows_per_worker());
  task.run([&](Slice slice, int worker) {
    return TransferWordsParams<Key>{source, slice, counters.of(worker), layout, words};
  });
}

/// Sorts by buckets of the keys' top bits, then each bucket by itself.
template <class Key>
void mpp_multi_step(const SortKey& sort_key, int n, const int* rows, const RadixInfo& radix,
                    WordLayout layout, int* out) {
  using Tasks = SortTasks<Key>;
  const int buckets = radix.highest_bucket() + 1;
  const Block<uint64_t> words = make_block<uint64_t>(n);
  const Block<int> starts = make_block<int>(buckets + 1L);
  mpp_fill_buckets<Key>(sort_key, n, rows, radix, layout, starts.get(), words.get());
  const BucketedWords source{words.get(), starts.get(), buckets, layout, radix, out};
  const TaskId id = radix.low_passes > 1 ? Tasks::kThreeSteps : Tasks::kTwoSteps;
  SlicedTask<SortBucketsParams> task(id, n, ENG->rows_per_worker());
  task.run([&](Slice slice) { return SortBucketsParams{source, slice}; });
}

}  // namespace qxe
