// Rows of a real table: inserting.
#include <limits.h>

#include <algorithm>

#include "tables/realtables.h"

namespace qxe {

namespace {

/// A filter has one row pointer more than the table has rows, and both are counted by an int.
constexpr long kMaxTotalRows = INT_MAX - 1;

/// Makes way for `count` rows before row `at`.
void shift_rows(TSetArray& set, int at, int count) {
  int* const rows = set.PIntAr();
  for (int i = 0; i < set.FArraySize; ++i) rows[i] += rows[i] >= at ? count : 0;
}

}  // namespace

int TRealTable::InsRows(int pos, int count) {
  const int total = TotalRecs();
  if (pos < 0) {
    return report("InsRows", QX_ERROR_ROW_POSITION, "Invalid Parameter : InsPos(%d)", pos);
  }
  if (count < 1) {
    return report("InsRows", QX_ERROR_PARAMETER, "Invalid Parameter : InsCount(%d)", count);
  }
  if (count > kMaxTotalRows - total) {
    return report("InsRows", QX_ERROR_ROW_SIZE, "RowSize overflow");
  }
  for (const auto& filter : filters_) filter->check_changeable();
  for (const auto& filter : filters_) filter->reserve_rows(total + count);
  root_set().SetArraySize(total + count);
  // Nothing fails from here on.
  root_set().InitAsSet();
  const int at = std::clamp(pos, 1, total + 1);
  for (const auto& filter : filters_) {
    filter->Taint();
    filter->insert_rows(at, count);
  }
  if (at > total) return count;
  for (size_t i = 1; i < sets_.size(); ++i) shift_rows(*sets_[i], at, count);
  return count;
}

}  // namespace qxe
