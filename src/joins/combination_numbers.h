// Key numbers of joins by several columns: each distinct combination of values gets a number, in
// the order of the combinations, the first column being the most significant.
#pragma once

#include "storage/setarray.h"

namespace qxe {

/// A column's number by row, below `size`: `map[pv[row]]`, or `pv[row]` without a map.
struct NumberedColumn {
  const TIntArray& pv;
  const int* map;
};

class CombinationNumbers : NonCopyable {
 public:
  /// Combinations that the rows of either set have.
  CombinationNumbers(const TSetArray& rows0, const TSetArray& rows1);

  /// A further, less significant column of both sides, whose numbers are below `size`.
  void add(NumberedColumn column0, NumberedColumn column1, int size);
  /// Writes the number of each set's rows, from 1, to `pv`, by row. Returns how many there are.
  int number_rows(TIntArray& pv0, TIntArray& pv1);

 private:
  struct Side {
    const TSetArray& rows;
    Block<uint64_t> keys;  // by position: the combination so far as a number
  };

  long positions() const { return sides_[0].rows.FArraySize + long{sides_[1].rows.FArraySize}; }
  /// Gives the combinations that occur the numbers from 0, in the order of their keys.
  void make_dense();
  void rank_by_bits();
  template <class Array>
  void rank_by_sorting();

  Side sides_[2];
  uint64_t limit_ = 1;  // keys are below this
};

}  // namespace qxe
