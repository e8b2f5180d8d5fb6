// Rows on their way out of a table: which go, and how the others close up.
#pragma once

#include <stdint.h>

#include "frame/base/memory.h"

namespace qxe {

/// Mark all rows that go, close once, then let any number of threads renumber.
class RowDeletion : NonCopyable {
 public:
  /// For a table of `total` rows.
  explicit RowDeletion(int total);

  /// Row `row` goes; it may be marked again.
  void mark(int row) { words_[row / kRows].marked |= uint64_t{1} << (row % kRows); }
  /// Ends the marking. Returns how many rows go.
  int close();

  /// Closes up an array of `size` elements that is indexed by row number. Returns what is left.
  int close_up(int* elements, int size) const;
  /// Drops the marked rows from a list of row numbers and renumbers the others. Returns what is
  /// left.
  int renumber(int* rows, int count) const;

 private:
  static constexpr int kRows = 64;

  struct Word {
    uint64_t marked;
    int before;  // marked rows below its first row
  };

  int word_count_;
  int first_ = 0;  // the first word with a mark
  Block<Word> words_;
};

}  // namespace qxe
