// Rows of a real table: inserting and deleting.
#include <limits.h>

#include <algorithm>

#include "search/compiler_steps.h"
#include "tables/realtables.h"
#include "tables/row_deletion.h"

namespace qxe {

namespace {

/// A filter has one row pointer more than the table has rows, and both are counted by an int.
constexpr long kMaxTotalRows = INT_MAX - 1;

/// Makes way for `count` rows before row `at`.
void shift_rows(TSetArray& set, int at, int count) {
  int* const rows = set.PIntAr();
  for (int i = 0; i < set.FArraySize; ++i) rows[i] += rows[i] >= at ? count : 0;
}

/// Gives memory back. When there is none for a smaller block, the larger one stays.
void trim(TBaseArray& array) {
  try {
    array.AdjustMemArea();
  } catch (const CQXException&) {
  }
}

/// Calls `body(part)` for each of `parts` arrays of about `rows` elements; the workers share them.
template <class Body>
void for_each_array(int parts, long rows, const Body& body) {
  if (parts == 0) return;
  const int workers = std::min(parts, compile_workers(parts * rows, true));
  run_step(QX_MPP_RENUMBER, workers, [&](int worker) {
    for (int part = worker; part < parts; part += workers) body(static_cast<size_t>(part));
  });
}

}  // namespace

/// A row change changes every filter.
void TRealTable::check_rows_changeable() const {
  for (const auto& filter : filters_) filter->check_changeable();
}

/// Room in all filters and the set of all rows; a failure gives back what was reserved.
void TRealTable::reserve_rows(int rows) {
  try {
    for (const auto& filter : filters_) filter->reserve_rows(rows);
    root_set().SetArraySize(rows);
  } catch (...) {
    for (const auto& filter : filters_) trim(*filter->PVL);
    throw;
  }
}

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
  check_rows_changeable();
  reserve_rows(total + count);
  // Nothing fails from here on.
  CloseFind();
  root_set().InitAsSet();
  const int at = std::clamp(pos, 1, total + 1);
  for (const auto& filter : filters_) filter->Taint();
  const int moved = total + 1 - at;
  const long written = static_cast<long>(moved) + count;
  for_each_array(GetNFilter(), written, [&](size_t i) { filters_[i]->insert_rows(at, count); });
  if (moved == 0) return count;
  for_each_array(set_count() - 1, total, [&](size_t i) { shift_rows(*sets_[i + 1], at, count); });
  return count;
}

/// Deletes the marked rows and returns their number.
int TRealTable::delete_rows(RowDeletion& deletion) {
  check_rows_changeable();
  CheckMergeFilterTVL(true);  // so that no tail entry has a row to renumber
  const int total = TotalRecs();
  const int deleted = deletion.close();
  // Nothing fails from here on.
  CloseFind();
  for (const auto& filter : filters_) filter->Taint();
  for_each_array(GetNFilter(), total, [&](size_t i) {
    TIntArray& pv = *filters_[i]->PVL;
    pv.SetArraySize(deletion.close_up(pv.PIntAr(), pv.FArraySize));
  });
  for_each_array(set_count() - 1, total, [&](size_t i) {
    TSetArray& set = *sets_[i + 1];
    set.SetArraySize(deletion.renumber(set.PIntAr(), set.FArraySize));
  });
  root_set().SetArraySize(total - deleted);  // still 1, 2, 3, ...
  for (const auto& filter : filters_) trim(*filter->PVL);
  for (const auto& set : sets_) trim(*set);
  return deleted;
}

int TRealTable::DelRows(int start, int count) {
  const int total = TotalRecs();
  if (start < 1 || start > total) {
    return report("DelRows", QX_ERROR_ROW_POSITION, "Invalid Parameter : DelStart(%d)", start);
  }
  if (count < 1) {
    return report("DelRows", QX_ERROR_PARAMETER, "Invalid Parameter : DelCount(%d)", count);
  }
  const int last = start + std::min(count - 1, total - start);
  RowDeletion deletion(total);
  for (int row = start; row <= last; ++row) deletion.mark(row);
  return delete_rows(deletion);
}

int TRealTable::DelRowsEx(int set, int start, int count) {
  const int position = SetID2Pos(set);
  if (position < 0) return report("DelRowsEx", QX_ERROR_NO_SET_ID, "No Such Set: %d", set);
  const TSetArray& rows = *sets_[static_cast<size_t>(position)];
  if (start < 1 || start > rows.FArraySize) {
    return report("DelRowsEx", QX_ERROR_ROW_POSITION, "Invalid Parameter : DelStart(%d)", start);
  }
  if (count < 1 || count > rows.FArraySize - start + 1) {
    return report("DelRowsEx", QX_ERROR_PARAMETER, "Invalid Parameter : DelCount(%d)", count);
  }
  RowDeletion deletion(TotalRecs());
  for (int i = 0; i < count; ++i) deletion.mark(rows.PIntAr()[start - 1 + i]);
  return delete_rows(deletion);
}

}  // namespace qxe
