// One set of a join table: which rows pair, without a list of the pairs.
//
// A join table shows pairs of rows of two tables, side 0 and side 1. In each of its sets one side
// drives and the other is driven. The driving rows stand in the set's order; the driven rows are
// sorted by key number, so that the partners of a driving row are one run of them. A join row is a
// driving row with one of its partners; join rows are numbered from 0, driving row by driving row.
//
//    driving rows   key   index (first join row)        driven rows by key   index (start of key)
//    i=0   row 7     2      0                            0   row 4  (key 1)    key 0   0
//    i=1   row 3     1      2                            1   row 2  (key 2)    key 1   0
//    i=2   row 9     2      3                            2   row 5  (key 2)    key 2   1
//                         (5 join rows in all)                                 end     3
//
//    join row        0       1       2       3       4
//    driving row     7       7       3       9       9
//    driven row      2       5       4       2       5
//
// Join row 3 is found so: bisection gives i = 2, the last driving row whose index is not above 3;
// its row 9 has key 2, whose run begins at 1; 3 - 3 = 0 rows behind that stands row 2.
//
// An outer join needs a partner for every row: row 0, which no table has and which reads NULL. The
// driven rows without partner are the run of key 0 and come first, with row 0 driving; a driving
// row without partner has a run of its own that holds row 0.
#pragma once

#include <memory>

#include "parallel/sliced_task.h"
#include "storage/setarray.h"

namespace qxe {

/// Key numbers of one side: rows of the two sides pair when their numbers are equal. 0 is NULL.
struct KeyNumbers {
  const int* pv = nullptr;   // value number by row; row 0 has 0
  const int* map = nullptr;  // key number by value number, ascending; null: they are the same
  int values = 0;            // value numbers are below this
  int rows = 0;              // rows from 1 to this
  bool condensed = false;    // each value but NULL is known to belong to one of these rows

  int of_value(int value) const { return map == nullptr ? value : map[value]; }
  int operator()(int row) const { return of_value(pv[row]); }
};

constexpr int kSides = 2;

/// The other one. Throws QX_ERROR_JOIN_SIDE for what is no side.
int OppositeSide(int side);

/// Where driving rows begin among the join rows.
struct DrivingStarts {
  const int* starts;  // null: at 0, 1, 2, ..., as each driving row has one partner
  int count;
  int join_rows;

  int begin_of(int i) const { return starts == nullptr ? i : starts[i]; }
  int end_of(int i) const { return i + 1 < count ? begin_of(i + 1) : join_rows; }
  /// The driving row to which a join row belongs.
  int row_at(int join_row) const;
};

struct JoinSet {
  int row_count = 0;                             // join rows
  int direction = 0;                             // the side that drives
  std::unique_ptr<TSetArray> rows[kSides];       // by side, driving or driven
  std::unique_ptr<TSetArray> index[kSides];      // likewise; that of the driving side can be null
  std::unique_ptr<TSetArray> unmatched[kSides];  // rows that found no partner

  int driven() const { return OppositeSide(direction); }
  DrivingStarts driving_starts() const;
  /// The driving side's index for those who need it as an array: where it is 0, 1, 2, ... it is
  /// made now.
  TSetArray& driving_index();
  long GetMemSize() const;
};

/// Index of the last of `n` ascending `starts`, no two equal, that is not above `value`. The first
/// must not be.
int FindLoc(int value, int n, const int* starts);

/// The join rows of a set, read only.
class JoinRows {
 public:
  /// `key` is that of the driving side.
  JoinRows(const JoinSet& set, const KeyNumbers& key);

  int count() const { return starts_.join_rows; }
  int direction() const { return direction_; }

  // The two sides of the set
  int driving_count() const { return starts_.count; }
  const int* driving() const { return driving_; }
  const int* driven() const { return driven_; }
  const KeyNumbers& driving_key() const { return key_; }
  /// The places in driven() of the partners that each driving row with a key number has.
  Slice partners(int key) const {
    const int begin = run_starts_[key];
    const int end = run_starts_[key + 1];
    // Row 0 has a place for each driving row that lacks a partner.
    return {begin, begin < end && driven_[begin] == 0 ? begin + 1 : end};
  }
  /// Where each driving row is known to have one partner: the driving rows, which then are those of
  /// the join rows; else null.
  const int* single_rows() const { return starts_.starts == nullptr ? driving_ : nullptr; }
  /// First partner by value number of the driving side, 0 where there is none.
  Block<int> partners_of_values() const;

  /// Both rows of a join row that exists.
  void DesolveJoinRecNo(int join_row, int* master_row, int* slave_row) const;
  /// The row of one side.
  int row_of(int side, int join_row) const;
  /// The rows of one side at the join rows `first` to `first` + `count` - 1.
  void rows_of(int side, int first, int count, int* out) const;

 private:
  const int* partners_of(int i) const { return driven_ + run_starts_[key_(driving_[i])]; }

  int direction_;
  DrivingStarts starts_;
  const int* driving_;
  const int* driven_;
  const int* run_starts_;
  KeyNumbers key_;
};

}  // namespace qxe
