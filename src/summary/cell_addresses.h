// Combinations of value numbers as one number in mixed radix, the first dimension being the most
// significant: the address of a cell in a cube. Addresses are in the order of the values.
#pragma once

#include <vector>

#include "parallel/sliced_task.h"
#include "summary/grouping.h"

namespace qxe {

class CellAddresses {
 public:
  static constexpr int kBlock = 1024;  // positions that are read at a time

  /// There must be fewer than 2^31 combinations.
  explicit CellAddresses(const GroupedRows& source);

  long cells() const { return cells_; }
  /// Addresses of the rows at `count` positions, at most kBlock: in `room`, or where they are.
  const int* read(long begin, int count, int* room) const;
  /// The row pointers of those rows, in the same way.
  const int* read_numbers(const int* numbers, long begin, int count, int* room) const;

  /// The number that each of ascending addresses has in dimension `d`, from element 1 on.
  Block<int> dimension(int d, const int* addresses, int count) const;

 private:
  struct Dimension {
    const int* numbers;
    uint32_t size;
    uint32_t weight;  // the product of the sizes behind
  };

  template <class NumberAt>
  void combine(int count, int* out, const NumberAt& number_at) const;

  RowList rows_;
  std::vector<Dimension> dimensions_;
  long cells_ = 1;
};

/// Calls `body(begin, count)` for the blocks of a slice.
template <class Body>
void for_each_block(Slice slice, const Body& body) {
  for (long begin = slice.begin; begin < slice.end; begin += CellAddresses::kBlock) {
    body(begin, static_cast<int>(std::min<long>(slice.end - begin, CellAddresses::kBlock)));
  }
}

}  // namespace qxe
