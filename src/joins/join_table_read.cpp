// Reading a join table: a join row names a row of each parent, and the parents' columns the values.
#include <algorithm>

#include "joins/join_table.h"
#include "search/sort.h"
#include "storage/family.h"
#include "tables/cell_read.h"
#include "tables/realtables.h"

namespace qxe {

const JoinSet* TJoinTable::set_with(int set, int pos, int* status) const {
  const JoinSet* const rows = find_set(set);
  if (rows == nullptr) {
    *status = QX_ERROR_NO_SET;
  } else if (pos < 0 || pos >= rows->row_count) {
    *status = report("ReadData", QX_ERROR_NO_RECORD, "No Such Record: %d ", pos);
  } else {
    return rows;
  }
  return nullptr;
}

/// `read(filter, row)` for the parent's filter and row behind a join row.
template <class Read>
int TJoinTable::read_at(int set, int filter, int pos, Read&& read) {
  int status = 0;
  const JoinSet* const found = set_with(set, pos, &status);
  if (found == nullptr) return status;
  const Column column = find_column("ReadData", filter, &status);
  if (column.filter == nullptr) return status;
  return read(*column.filter, rows(*found).row_of(column.side, pos));
}

int TJoinTable::ReadData(int set, int filter, int pos, int* type, void* out) {
  return ReadData(set, filter, pos, type, out, TStrArray::kMaxText + 1);
}

int TJoinTable::ReadData(int set, int filter, int pos, int* type, void* out, int size) {
  if (filter == QX_FLT_ROWNO) {
    int status = 0;
    if (set_with(set, pos, &status) == nullptr) return status;
    *type = QX_DT_INTEGER;
    return put_value(out, pos + 1);
  }
  return read_at(set, filter, pos, [&](const TFilter& column, int row) {
    return read_cell(column, row, type, out, size);
  });
}

int TJoinTable::ReadData(int set, int filter, int pos, int* type, long* out) {
  if (filter == QX_FLT_ROWNO) {  // join rows are numbered, but their numbers stand nowhere
    int status = 0;
    return set_with(set, pos, &status) == nullptr ? status : QX_ERROR_NO_SET;
  }
  return read_at(set, filter, pos, [&](const TFilter& column, int row) {
    return read_cell_address(column, row, type, out);
  });
}

int TJoinTable::GetVNo(int set, int filter, int pos, int* out) {
  return read_at(set, filter, pos, [&](const TFilter& column, int row) {
    *out = value_number(column, row);
    return 0;
  });
}

TJoinTable::Column TJoinTable::find_column(const char* layer, int filter, int* status) {
  int side = 0;
  const int source = GetJoinSrcFltID(filter, &side);
  TFilter* const column = source < 0 ? nullptr : parent(side).GetFilter(source);
  if (column == nullptr) {
    *status = report(layer, missing_filter(filter), "No Such Filter: %d", filter);
  }
  return {column, side};
}

int TJoinTable::GetVNoList(int set, int filter, int* out) {
  int status = 0;
  const Column column = find_column("GetVNoList", filter, &status);
  if (column.filter == nullptr) return status;
  const JoinSet* const found = find_set(set);
  if (found == nullptr) return QX_ERROR_NO_SET;
  rows(*found).rows_of(column.side, 0, found->row_count, out);
  const int* const numbers = std::as_const(*column.filter->PVL).PIntAr();
  std::transform(out, out + found->row_count, out, [numbers](int row) { return numbers[row]; });
  return found->row_count;
}

// Counts per value: a row counts once for each of its partners, which are not looked at.

namespace {

/// A driving row has as many join rows as lie between its beginning and the next one's.
void JCountupNExist_driving(const JoinSet& set, const int* pv, int* counts) {
  const int* const rows = std::as_const(*set.rows[set.direction]).PIntAr();
  const DrivingStarts starts = set.driving_starts();
  for (int i = 0; i < starts.count; ++i) {
    counts[pv[rows[i]]] += starts.end_of(i) - starts.begin_of(i);
  }
}

/// A driven row has a join row for each driving row with its key. A place of row 0 stands for one
/// driving row alone.
void JCountupNExist_driven(const JoinSet& set, const KeyNumbers& driving_key, int keys,
                           const int* pv, int* counts) {
  const Block<int> driving_rows = make_cleared_block<int>(keys);
  const TSetArray& driving = *set.rows[set.direction];
  const int* const rows = driving.PIntAr();
  for (int i = 0; i < driving.FArraySize; ++i) ++driving_rows[driving_key(rows[i])];
  const int* const starts = std::as_const(*set.index[set.driven()]).PIntAr();
  const int* const driven = std::as_const(*set.rows[set.driven()]).PIntAr();
  for (int k = 0; k < keys; ++k) {
    for (int i = starts[k]; i < starts[k + 1]; ++i) {
      counts[pv[driven[i]]] += driven[i] == 0 ? 1 : driving_rows[k];
    }
  }
}

}  // namespace

int TJoinTable::CountN(int set, int filter, int* out) {
  int status = 0;
  const Column column = find_column("CountN", filter, &status);
  if (column.filter == nullptr) return status;
  const JoinSet* const found = find_set(set);
  if (found == nullptr) return QX_ERROR_NO_SET;
  const int* const pv = std::as_const(*column.filter->PVL).PIntAr();
  std::fill_n(out, column.filter->VL->FArraySize, 0);
  if (column.side == found->direction) {
    JCountupNExist_driving(*found, pv, out);
  } else {
    JCountupNExist_driven(*found, key_->side(found->direction), key_->size(), pv, out);
  }
  return 0;
}

}  // namespace qxe
