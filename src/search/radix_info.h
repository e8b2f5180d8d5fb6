// How the bits of a sort key are divided among the steps of a sort, so that each step's counters
// and write positions fit the cache.
#pragma once

#include <stdint.h>

namespace qxe {

/// The first step sorts all rows by the top bits of their keys into buckets; the bits below are
/// sorted within each bucket, by one or several further counting passes.
struct RadixInfo {
  int bits;        // significant bits of a key
  int first_bits;  // the top ones, which number the buckets
  int low_bits;    // those below
  int low_passes;  // counting passes over the low bits

  int highest_bucket() const { return static_cast<int>((uint64_t{1} << first_bits) - 1); }
  /// Bits of one pass within a bucket; the last pass may have fewer.
  int pass_bits() const { return (low_bits + low_passes - 1) / low_passes; }
};

/// Significant bits of `highest`; 0 for 0.
int ConvertFromVLtoBitsize(uint64_t highest);

/// Division for `n` keys below `nValues` in two steps; returns 2.
int build_radix_info(uint64_t nValues, long n, RadixInfo* info);
/// The same for keys of any width; returns 3 when a bucket's low bits take several passes.
int build_n_filter_radix_info(uint64_t limit, long n, RadixInfo* info);

}  // namespace qxe
