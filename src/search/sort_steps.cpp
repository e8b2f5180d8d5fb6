#include "search/sort_steps.h"

#include <algorithm>
#include <utility>

#include "search/sort.h"

namespace qxe {

namespace {

// With fewer rows than this, or than one for so many counters, comparing is cheaper than clearing
// and summing the counters.
constexpr long kFewRows = 32;
constexpr long kCountersPerRow = 64;

/// Some bits of a word.
struct Digit {
  int shift;
  uint64_t mask;

  uint64_t operator()(uint64_t word) const { return word >> shift & mask; }
};

/// Makes `counters` the start positions of the words' digits.
void form_digit_starts(const uint64_t* words, long n, Digit digit, int* counters) {
  std::fill_n(counters, digit.mask + 1, 0);
#pragma GCC unroll 4
  for (long i = 0; i < n; ++i) ++counters[digit(words[i])];
  Aggregate(QX_SORT_ASC, static_cast<int>(digit.mask) + 1, counters, counters);
}

void move_words(const uint64_t* words, long n, Digit digit, int* starts, uint64_t* to) {
#pragma GCC unroll 4
  for (long i = 0; i < n; ++i) to[starts[digit(words[i])]++] = words[i];
}

void move_rows(const uint64_t* words, long n, Digit digit, int* __restrict starts,
               WordLayout layout, int* __restrict out) {
#pragma GCC unroll 4
  for (long i = 0; i < n; ++i) out[starts[digit(words[i])]++] = layout.row(words[i]);
}

/// Sorts the buckets of one worker; keeps counters and a second place for words between them.
class BucketSorter {
 public:
  BucketSorter(WordLayout layout, const RadixInfo& radix, long largest_bucket)
      : layout_(layout),
        radix_(radix),
        counters_(make_block<int>(1L << radix.pass_bits())),
        scratch_(make_block<uint64_t>(radix.low_passes > 1 ? largest_bucket : 0)) {}

  void sort(uint64_t* words, long n, int* out) {
    if (n < kFewRows || n < (1L << radix_.pass_bits()) / kCountersPerRow) {
      sort_few(words, n, out);
    } else {
      sort_by_passes(words, n, out);
    }
  }

 private:
  void sort_few(uint64_t* words, long n, int* out) const {
    const WordLayout layout = layout_;
    std::stable_sort(words, words + n, [layout](uint64_t left, uint64_t right) {
      return left >> layout.row_bits < right >> layout.row_bits;
    });
    for (long i = 0; i < n; ++i) out[i] = layout.row(words[i]);
  }

  void sort_by_passes(uint64_t* words, long n, int* out) {
    int* const counters = counters_.get();
    uint64_t* from = words;
    uint64_t* to = scratch_.get();
    for (int pass = 0; pass < radix_.low_passes - 1; ++pass) {
      const Digit digit = digit_of(pass);
      form_digit_starts(from, n, digit, counters);
      move_words(from, n, digit, counters, to);
      std::swap(from, to);
    }
    const Digit digit = digit_of(radix_.low_passes - 1);
    form_digit_starts(from, n, digit, counters);
    move_rows(from, n, digit, counters, layout_, out);
  }

  Digit digit_of(int pass) const {
    const int below = pass * radix_.pass_bits();
    const int bits = std::min(radix_.pass_bits(), radix_.low_bits - below);
    return {layout_.row_bits + below, (uint64_t{1} << bits) - 1};
  }

  WordLayout layout_;
  RadixInfo radix_;
  Block<int> counters_;
  Block<uint64_t> scratch_;
};

}  // namespace

void check_sort_direction(const char* layer, int dir) {
  if (dir == QX_SORT_ASC || dir == QX_SORT_DESC) return;
  throw CQXException(report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : Dir"));
}

void SortKey::add(int dir, const int* pv, uint64_t nValues) {
  check_sort_direction("Aggregate", dir);
  const auto weight = static_cast<int64_t>(limit);
  if (dir == QX_SORT_DESC) base += limit * (nValues - 1);
  digits.push_back({pv, dir == QX_SORT_DESC ? -weight : weight});
  limit *= nValues;
}

void BucketCounters::form_starts(int* bucket_starts) {
  int total = 0;
  for (int bucket = 0; bucket < buckets_; ++bucket) {
    if (bucket_starts != nullptr) bucket_starts[bucket] = total;
    for (int worker = 0; worker < workers_; ++worker) {
      total += std::exchange(of(worker)[bucket], total);
    }
  }
  if (bucket_starts != nullptr) bucket_starts[buckets_] = total;
}

void sort_buckets(const BucketedWords& source, Slice slice) {
  const int* const starts = source.bucket_starts;
  const int* const bucket_end = starts + source.buckets;
  const int* const first = std::lower_bound(starts, bucket_end, slice.begin);
  const int* const last = std::lower_bound(first, bucket_end, slice.end);
  int largest = 0;
  for (const int* start = first; start < last; ++start) {
    largest = std::max(largest, start[1] - start[0]);
  }
  BucketSorter sorter(source.layout, source.radix, largest);
  for (const int* start = first; start < last; ++start) {
    const int rows = start[1] - start[0];
    if (rows > 0) sorter.sort(source.words + *start, rows, source.out + *start);
  }
}

}  // namespace qxe
