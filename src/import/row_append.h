// Rows from a file on their way into a real table. Whatever can fail is done beside the table, on
// value lists and row pointers of the new rows; only then the table grows and takes them over.
#pragma once

#include <vector>

#include "search/compiler.h"

namespace qxe {

class TRealTable;

/// An append, or an overwrite, or both. Until `commit` has succeeded the table is as it was.
class RowAppend : NonCopyable {
 public:
  /// `count` rows from row `pos` on: below 0 means behind the last row; rows that exist are
  /// overwritten; what lies between the last row and a further `pos` becomes rows of NULLs. Throws
  /// QX_ERROR_PARAMETER for row 0 or a negative count, QX_ERROR_ROW_SIZE for too many rows,
  /// QX_ERROR_HIGH_SPEED_FILTER for new rows of a table with a high-speed filter.
  RowAppend(TRealTable& table, int pos, int count);

  int count() const { return count_; }

  /// The new rows of a filter of the same value family: `count` of them, from row 1 on. Decimals
  /// of different scale get the higher one. Throws QX_ERROR_HIGH_SPEED_FILTER, and
  /// QX_ERROR_DATA_SIZE when a decimal has no room for the digits of the higher scale.
  void set_column(TFilter& filter, Column rows);

  /// Makes the table grow and writes the rows. Filters that got none are NULL in rows that did not
  /// exist. Returns `count`.
  int commit();

 private:
  struct Part {
    TFilter* filter;
    MergedLists merged;             // of the filter and the new rows
    std::unique_ptr<TIntArray> pv;  // numbers in the merged list
  };

  void write(Part& part) const;

  TRealTable& table_;
  const int first_row_;
  const int count_;
  int growth_ = 0;
  std::vector<Part> parts_;
};

}  // namespace qxe
