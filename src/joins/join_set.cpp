#include "joins/join_set.h"

#include <algorithm>

#include "parallel/mpp_memory.h"

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
      if (*array != nullptr) size += (*array)->GetMemSize();
    }
  }
  return size;
}

int FindLoc(int value, int n, const int* starts) {
  // As long as each driving row has one partner, join row and driving row have one number.
  if (value < n && starts[value] == value) return value;
  return static_cast<int>(std::upper_bound(starts, starts + n, value) - starts) - 1;
}

int DrivingStarts::row_at(int join_row) const {
  return starts == nullptr ? join_row : FindLoc(join_row, count, starts);
}

namespace {

const int* elements(const std::unique_ptr<TSetArray>& array) {
  return array == nullptr ? nullptr : std::as_const(*array).PIntAr();
}

}  // namespace

DrivingStarts JoinSet::driving_starts() const {
  return {elements(index[direction]), rows[direction]->FArraySize, row_count};
}

TSetArray& JoinSet::driving_index() {
  std::unique_ptr<TSetArray>& own = index[direction];
  if (own == nullptr) {
    auto made = std::make_unique<TSetArray>(rows[direction]->FArraySize, false);
    MppFillUp(made->PIntAr(), 0, made->FArraySize);
    own = std::move(made);
  }
  return *own;
}

JoinRows::JoinRows(const JoinSet& set, const KeyNumbers& key)
    : direction_(set.direction),
      starts_(set.driving_starts()),
      driving_(elements(set.rows[set.direction])),
      driven_(elements(set.rows[set.driven()])),
      run_starts_(elements(set.index[set.driven()])),
      key_(key) {}

void JoinRows::DesolveJoinRecNo(int join_row, int* master_row, int* slave_row) const {
  const int i = starts_.row_at(join_row);
  *master_row = driving_[i];
  *slave_row = partners_of(i)[join_row - starts_.begin_of(i)];
}

int JoinRows::row_of(int side, int join_row) const {
  int driving = 0;
  int driven = 0;
  DesolveJoinRecNo(join_row, &driving, &driven);
  return side == direction_ ? driving : driven;
}

Block<int> JoinRows::partners_of_values() const {
  Block<int> partners = make_block<int>(key_.values);
  for (int v = 0; v < key_.values; ++v) {
    const int* const run = run_starts_ + key_.of_value(v);
    partners[v] = run[0] < run[1] ? driven_[run[0]] : 0;
  }
  return partners;
}

void JoinRows::rows_of(int side, int first, int count, int* out) const {
  if (count <= 0) return;
  int i = starts_.row_at(first);
  for (int at = first; at < first + count; ++i) {
    const int size = std::min(starts_.end_of(i), first + count) - at;
    if (side == direction_) {
      std::fill_n(out, size, driving_[i]);
    } else {
      std::copy_n(partners_of(i) + (at - starts_.begin_of(i)), size, out);
    }
    out += size;
    at += size;
  }
}

}  // namespace qxe
