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
  /// Calls `body(address_at)`, where address_at(i) is the address of the row at position begin + i,
  /// for `count` of them, at most kBlock. `room` may be used meanwhile.
  template <class Body>
  void visit(long begin, int count, int* room, const Body& body) const;
  /// The row pointers of those rows: in `room`, or where they are.
  const int* read_numbers(const int* numbers, long begin, int count, int* room) const;

  /// The number that each of ascending addresses has in dimension `d`, from element 1 on.
  Block<int> dimension(int d, const int* addresses, int count) const;

 private:
  struct Dimension {
    const int* numbers;
    uint32_t size;
    uint32_t weight;  // the product of the sizes behind
  };

  void combine(long begin, int count, int* out) const;
  template <class NumberAt>
  void combine_numbers(int count, int* out, const NumberAt& number_at) const;

  RowList rows_;
  std::vector<Dimension> dimensions_;
  long cells_ = 1;
};

// Addresses of one or two dimensions are made while they are used: writing them down first and
// reading them again costs more than the product.
template <class Body>
void CellAddresses::visit(long begin, int count, int* room, const Body& body) const {
  if (dimensions_.size() == 2 && rows_.rows == nullptr) {
    const int* const high = dimensions_[0].numbers + begin + 1;
    const int* const low = dimensions_[1].numbers + begin + 1;
    const auto weight = static_cast<int>(dimensions_[0].weight);
    body([=](int i) { return high[i] * weight + low[i]; });
  } else if (dimensions_.size() == 1) {
    const int* const numbers = read_numbers(dimensions_[0].numbers, begin, count, room);
    body([=](int i) { return numbers[i]; });
  } else {
    combine(begin, count, room);
    body([=](int i) { return room[i]; });
  }
}

/// Calls `body(begin, count)` for the blocks of a slice.
template <class Body>
void for_each_block(Slice slice, const Body& body) {
  for (long begin = slice.begin; begin < slice.end; begin += CellAddresses::kBlock) {
    body(begin, static_cast<int>(std::min<long>(slice.end - begin, CellAddresses::kBlock)));
  }
}

}  // namespace qxe
