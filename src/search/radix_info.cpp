#include "search/radix_info.h"

#include <algorithm>
#include <bit>

#include "parallel/smpengine.h"

namespace qxe {

namespace {

constexpr int kMinFirstBits = 4;  // fewer buckets would not keep the workers busy
// Longer keys, and tables of more than so many counters for a row, take further passes.
constexpr int kMaxTwoStepBits = 27;
constexpr long kCountersPerRow = 8;
// Then a bucket has some 4096 rows, and a pass at most as many counters.
constexpr int kBucketRowBits = 12;
constexpr int kMaxPassBits = 12;
// Above a thousand write positions the first step loses more than a later pass costs.
constexpr int kMaxLongFirstBits = 9;

/// ceil(log2(count)) - 1, and -1 below 2: a step's share of the cache in bits.
int step_bits(long count) {
  return count < 2 ? -1 : ConvertFromVLtoBitsize(static_cast<uint64_t>(count - 1)) - 1;
}

/// Write positions of the first step: a cache line each, in a fifth of the cache.
int first_step_bits() {
  return step_bits(ENG->l2_size() / (ENG->l2_line() * 5L));
}

/// Counters of the second step, beside the rows of an average bucket, 16 bytes a row.
int second_step_bits(uint64_t nValues, long n) {
  const long rows_per_value = nValues > 1 ? n / static_cast<long>(nValues - 1) : n;
  const long beside_rows = ENG->l2_size() / (std::max(rows_per_value, 1L) * 16);
  return step_bits(std::max(beside_rows, ENG->l2_size() / (ENG->l2_line() * 4L)));
}

}  // namespace

int ConvertFromVLtoBitsize(uint64_t highest) {
  return static_cast<int>(std::bit_width(highest));
}

int build_radix_info(uint64_t nValues, long n, RadixInfo* info) {
  const int bits = ConvertFromVLtoBitsize(nValues - 1);
  const int first = first_step_bits();
  const int second = second_step_bits(nValues, n);
  const int both = first + second;
  const int wanted =
      bits > both ? first + ((bits - both) >> 1) : bits - (second - ((both - bits) >> 1));
  info->bits = bits;
  info->first_bits = std::max(wanted, kMinFirstBits);
  info->low_bits = std::max(bits - info->first_bits, 0);
  info->low_passes = 1;
  return 2;
}

int build_n_filter_radix_info(uint64_t limit, long n, RadixInfo* info) {
  build_radix_info(limit, n, info);
  const bool sparse = n >> info->first_bits < (1L << info->low_bits) / kCountersPerRow;
  if (info->bits <= kMaxTwoStepBits && !sparse) return 2;
  const int paying = ConvertFromVLtoBitsize(static_cast<uint64_t>(n)) - kBucketRowBits;
  info->first_bits = std::clamp(paying, kMinFirstBits, kMaxLongFirstBits);
  info->low_bits = std::max(info->bits - info->first_bits, 0);
  info->low_passes = std::max((info->low_bits + kMaxPassBits - 1) / kMaxPassBits, 1);
  return info->low_passes > 1 ? 3 : 2;
}

}  // namespace qxe
