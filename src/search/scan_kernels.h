// The innermost loops of a search: the value numbers of many rows, or many bytes of text, are
// compared at a time. Rows that hit are packed, so that a row costs no branch.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace qxe {

/// Value numbers from `first` up to, not including, `end`.
struct ValueRange {
  int first = 0;
  int end = 0;

  bool empty() const { return first >= end; }
  bool contains(int value_number) const {
    return static_cast<unsigned>(value_number - first) < static_cast<unsigned>(end - first);
  }
};

/// A condition that is one or two ranges of value numbers. Empty ranges are {0, 0}.
struct RangeTest {
  ValueRange a;
  ValueRange b;

  bool operator()(int value_number) const {
    return (int{a.contains(value_number)} | int{b.contains(value_number)}) != 0;  // no jump
  }
};

/// A condition looked up in a table of one bit per value number.
struct BitTest {
  const uint32_t* words;

  bool operator()(int value_number) const {
    return (words[static_cast<uint32_t>(value_number) / 32] >> (value_number % 32) & 1) != 0;
  }
};

/// Makes the bit table of `count` bytes: `words` has a word for every 32 of them, begun ones too.
void pack_hits(const unsigned char* hits, int count, uint32_t* words);

enum class VectorUnit { kNone, kAvx2, kAvx512 };

/// The rows of a set and their value numbers.
struct ScanRows {
  const int* pv;    // by row
  const int* rows;  // null: all rows in their first order, so that row i + 1 is at position i

  int row(long i) const { return rows == nullptr ? static_cast<int>(i) + 1 : rows[i]; }
};

/// The loops. The first two write the rows at positions `begin` to `end` that pass to `out`, which
/// has room for all of them, and returns how many; elements of `out` behind them change too.
struct ScanKernels {
  long (*in_ranges)(const ScanRows& rows, long begin, long end, const RangeTest& test, int* out);
  long (*in_bits)(const ScanRows& rows, long begin, long end, const BitTest& test, int* out);
  /// The first place of `pattern`, of `size` bytes, at least one, or null.
  const char* (*find_bytes)(const char* begin, const char* end, const char* pattern, size_t size);
  /// Writes `first_row` + i for each bit i that is set in `count` words, ascending. Returns the end
  /// of what it wrote; elements behind it change too, up to `room_end`.
  int* (*put_rows)(const uint32_t* words, long count, int first_row, int* out, const int* room_end);
};

/// Whether this machine has the unit.
bool has_vector_unit(VectorUnit unit);
/// The loops as that unit runs them; all have the same results.
const ScanKernels& scan_kernels(VectorUnit unit);
/// The fastest on this machine.
const ScanKernels& scan_kernels();

}  // namespace qxe
