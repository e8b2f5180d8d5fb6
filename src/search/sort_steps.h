// The steps of every sort by row pointers, as functions of a slice: the serial forms run them over
// all rows, the tasks of the parallel forms over a worker's share.
//
// A sort key is a number made of value numbers. Rows are first counted and moved by key, or for
// long keys by bucket (the top bits of the key); a bucket then fits the cache and is sorted by the
// bits below. On the way a row and its key stand in one 64-bit word, so that no later step reads
// row pointers at random.
#pragma once

#include <stdint.h>

#include <algorithm>
#include <vector>

#include "frame/base/memory.h"
#include "parallel/sliced_task.h"
#include "search/radix_info.h"

namespace qxe {

/// Up to this many keys a sort counts every key and is done in one pass.
constexpr uint64_t kSingleStepKeys = 0x10000;

/// Throws QX_ERROR_PARAMETER after logging under `layer` when `dir` is neither 0 nor 1.
void check_sort_direction(const char* layer, int dir);

/// The number that a sort orders rows by: base + the sum of weight * pv[row], in [0, limit).
/// A descending column counts down from the end of its value list, so that all steps sort upward
/// and keep equal keys in the source's order.
struct SortKey {
  struct Digit {
    const int* pv;
    int64_t weight;  // below 0: descending
  };

  SortKey() = default;
  /// The key of a sort by one column.
  SortKey(int dir, const int* pv, uint64_t nValues) { add(dir, pv, nValues); }

  /// Adds a column of `nValues` values, more significant than those before. Throws
  /// QX_ERROR_PARAMETER for a direction that is neither 0 nor 1.
  void add(int dir, const int* pv, uint64_t nValues);

  std::vector<Digit> digits;
  uint64_t base = 0;
  uint64_t limit = 1;
};

/// A row below its key in one word.
struct WordLayout {
  int row_bits;

  uint64_t pack(uint64_t key, int row) const {
    return key << row_bits | static_cast<uint64_t>(row);
  }
  int row(uint64_t word) const { return static_cast<int>(word & ((uint64_t{1} << row_bits) - 1)); }
};

/// For keys below 2^32 and any rows.
constexpr WordLayout kNarrowKeyLayout{32};

/// Rows, their keys and how keys make buckets.
template <class Key>
struct KeyedRows {
  /// A bucket for each key.
  KeyedRows(const SortKey& key, const int* source, Key* room)
      : sort_key(&key), rows(source), keys(room), buckets(static_cast<int>(key.limit)) {}
  /// Buckets by the top bits.
  KeyedRows(const SortKey& key, const int* source, Key* room, const RadixInfo& radix)
      : sort_key(&key),
        rows(source),
        keys(room),
        shift(radix.low_bits),
        buckets(radix.highest_bucket() + 1) {}

  const SortKey* sort_key;
  const int* rows;
  Key* keys;      // of each row; written by `countup`
  int shift = 0;  // bucket = key >> shift
  int buckets;    // in all
};

/// keys[i] = base + the sum of weight * pv(i) over the digits; `pv_of(digit)` gives pv.
template <class Key, class PvOf>
void combine_digits(const SortKey& sort_key, long n, Key* keys, PvOf&& pv_of) {
  std::fill_n(keys, n, static_cast<Key>(sort_key.base));
  for (const SortKey::Digit& digit : sort_key.digits) {
    const auto pv = pv_of(digit);
    const Key weight = static_cast<Key>(digit.weight);
    for (long i = 0; i < n; ++i) keys[i] += weight * static_cast<Key>(pv(i));
  }
}

/// Whether the rows are r, r + 1, r + 2, ...
inline bool is_run(const int* rows, long n) {
  int gaps = 0;
  for (long i = 1; i < n; ++i) gaps |= rows[i] - rows[i - 1] - 1;
  return gaps == 0;
}

/// keys[i] = the key of rows[i].
template <class Key>
void gather_keys(const SortKey& sort_key, const int* rows, long n, Key* keys) {
  if (is_run(rows, n)) {  // without row numbers the loop is vectorized
    combine_digits(sort_key, n, keys, [=](const SortKey::Digit& digit) {
      return [pv = digit.pv + *rows](long i) { return pv[i]; };
    });
  } else {
    combine_digits(sort_key, n, keys, [=](const SortKey::Digit& digit) {
      return [pv = digit.pv, rows](long i) { return pv[rows[i]]; };
    });
  }
}

template <class Key>
void count_keys(const Key* keys, long n, int shift, int* counters) {
#pragma GCC unroll 4
  for (long i = 0; i < n; ++i) ++counters[keys[i] >> shift];
}

/// Makes the keys of a slice and counts them by bucket.
template <class Key>
void countup(const KeyedRows<Key>& source, Slice slice, int* counters) {
  constexpr long kBlock = 1024;  // keys of a block stay in the nearest cache
  std::fill_n(counters, source.buckets, 0);
  for (long i = slice.begin; i < slice.end; i += kBlock) {
    const long n = std::min(kBlock, slice.end - i);
    gather_keys(*source.sort_key, source.rows + i, n, source.keys + i);
    count_keys(source.keys + i, n, source.shift, counters);
  }
}

/// Puts each row of a slice at its bucket's next position; `starts` are the slice's own, so that
/// slices write disjoint places.
template <class Key>
void transfer_rows(const KeyedRows<Key>& source, Slice slice, int* __restrict starts,
                   int* __restrict out) {
  const Key* const keys = source.keys;
  const int* const rows = source.rows;
  const int shift = source.shift;
#pragma GCC unroll 4
  for (long i = slice.begin; i < slice.end; ++i) out[starts[keys[i] >> shift]++] = rows[i];
}

/// The same with the key beside the row.
template <class Key>
void transfer_words(const KeyedRows<Key>& source, Slice slice, int* starts, WordLayout layout,
                    uint64_t* words) {
  const Key* const keys = source.keys;
  const int* const rows = source.rows;
  const int shift = source.shift;
#pragma GCC unroll 4
  for (long i = slice.begin; i < slice.end; ++i) {
    words[starts[keys[i] >> shift]++] = layout.pack(keys[i], rows[i]);
  }
}

/// Counters of each bucket, one set for each worker, which clears its own.
class BucketCounters {
 public:
  BucketCounters(int workers, int buckets)
      : workers_(workers),
        buckets_(buckets),
        counters_(make_block<int>(static_cast<long>(workers) * buckets)) {}

  int* of(int worker) { return counters_.get() + static_cast<long>(worker) * buckets_; }

  /// Turns counts into positions: bucket by bucket, and within a bucket worker by worker, which
  /// keeps the sort stable. `bucket_starts`, when not null, gets buckets + 1 entries.
  void form_starts(int* bucket_starts);

 private:
  int workers_;
  int buckets_;
  Block<int> counters_;
};

/// Words in buckets by the top bits of their keys, and where their rows go.
struct BucketedWords {
  uint64_t* words;
  const int* bucket_starts;  // of each bucket, and the number of words
  int buckets;
  WordLayout layout;
  RadixInfo radix;
  int* out;
};

/// Sorts the buckets that begin in `slice` by the low bits of their keys into `out`.
void sort_buckets(const BucketedWords& source, Slice slice);

/// Stable sort on the calling thread, by keys below 2^32: in one pass that counts every key, or
/// through ScopeCSort where keys are many.
void sort_by_key(const SortKey& sort_key, int n, const int* rows, int* out);
/// The same through buckets: its cost does not depend on the number of keys.
void ScopeCSort(const SortKey& sort_key, int n, const int* rows, int* out);

}  // namespace qxe
