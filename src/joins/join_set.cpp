#include "joins/join_set.h"

#include <algorithm>

namespace qxe {

int OppositeSide(int side) {
  if (side == QX_JOIN_MASTER || side == QX_JOIN_SLAVE) return 1 - side;
  throw CQXException(
      report("OppositeSide", QX_ERROR_JOIN_SIDE, "Illegal target ( Not Master or Slave )"));
}

long JoinSet::GetMemSize() const {
  long size = static_cast<long>(sizeof(JoinSet));
  for (int side = 0; side < kSides; ++side) {
    for (const auto* array : {&rows[side], &index[side], &unmatched[side]}) {
      size += (*array)->GetMemSize();
    }
  }
  return size;
}

int FindLoc(int value, int n, const int* starts) {
  // As long as each driving row has one partner, join row and driving row have one number.
  if (value < n && starts[value] == value) return value;
  return static_cast<int>(std::upper_bound(starts, starts + n, value) - starts) - 1;
}

namespace {

const int* elements(const std::unique_ptr<TSetArray>& array) {
  return std::as_const(*array).PIntAr();
}

}  // namespace

JoinRows::JoinRows(const JoinSet& set, const KeyNumbers& key)
    : direction_(set.direction),
      count_(set.row_count),
      driving_count_(set.rows[set.direction]->FArraySize),
      driving_(elements(set.rows[set.direction])),
      starts_(elements(set.index[set.direction])),
      driven_(elements(set.rows[set.driven()])),
      run_starts_(elements(set.index[set.driven()])),
      key_(key) {}

void JoinRows::DesolveJoinRecNo(int join_row, int* master_row, int* slave_row) const {
  const int i = FindLoc(join_row, driving_count_, starts_);
  *master_row = driving_[i];
  *slave_row = partners_of(i)[join_row - starts_[i]];
}

int JoinRows::row_of(int side, int join_row) const {
  int driving = 0;
  int driven = 0;
  DesolveJoinRecNo(join_row, &driving, &driven);
  return side == direction_ ? driving : driven;
}

void JoinRows::rows_of(int side, int first, int count, int* out) const {
  if (count <= 0) return;
  int i = FindLoc(first, driving_count_, starts_);
  for (int at = first; at < first + count; ++i) {
    const int size = std::min(end_of(i), first + count) - at;
    if (side == direction_) {
      std::fill_n(out, size, driving_[i]);
    } else {
      std::copy_n(partners_of(i) + (at - starts_[i]), size, out);
    }
    out += size;
    at += size;
  }
}

}  // namespace qxe
