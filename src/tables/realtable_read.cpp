// Reading single values: a position in a set names a row, the row's pointer a value.
#include "tables/cell_read.h"
#include "tables/realtables.h"
#include "tables/row_list.h"

namespace qxe {

const TSetArray* TRealTable::set_with(int set, int pos) const {
  if (pos < 0) {
    report("ReadData", QX_ERROR_NO_SET, "No Such Record: %d ", pos);
    return nullptr;
  }
  const int position = SetID2Pos(set);
  if (position < 0) return nullptr;
  const TSetArray* const rows = sets_[static_cast<size_t>(position)].get();
  return pos < rows->FArraySize ? rows : nullptr;
}

/// The frame of the three reads: finds the row and the filter, then `put_row(address of the row
/// number)` for filter 0 or `put(filter, row)`.
template <class PutRow, class Put>
int TRealTable::read_at(int set, int filter, int pos, int* type, PutRow&& put_row, Put&& put) {
  const TSetArray* const rows = set_with(set, pos);
  if (rows == nullptr) return QX_ERROR_NO_SET;
  if (filter == QX_FLT_ROWNO) {
    *type = QX_DT_INTEGER;
    return put_row(rows->PIntAr() + pos);
  }
  const int position = FilterID2Pos(filter);
  if (position < 0) {
    return report("ReadData", QX_ERROR_NO_FILTER, "No Such Filter: %d", filter);
  }
  return put(*filter_at(position), rows->element(pos));
}

int TRealTable::ReadData(int set, int filter, int pos, int* type, void* out) {
  return ReadData(set, filter, pos, type, out, TStrArray::kMaxText + 1);
}

int TRealTable::ReadData(int set, int filter, int pos, int* type, void* out, int size) {
  return read_at(
      set, filter, pos, type, [&](const int* row) { return put_value(out, *row); },
      [&](const TFilter& column, int row) { return read_cell(column, row, type, out, size); });
}

int TRealTable::ReadData(int set, int filter, int pos, int* type, long* out) {
  return read_at(
      set, filter, pos, type,
      [&](const int* row) {
        *out = reinterpret_cast<long>(row);
        return static_cast<int>(sizeof *row);
      },
      [&](const TFilter& column, int row) { return read_cell_address(column, row, type, out); });
}

int TRealTable::GetVNo(int set, int filter, int pos, int* out) {
  const TSetArray* const rows = set_with(set, pos);
  if (rows == nullptr) return QX_ERROR_NO_SET;
  const int position = FilterID2Pos(filter);
  if (position < 0) return QX_ERROR_NO_FILTER;
  *out = value_number(*filter_at(position), rows->element(pos));
  return 0;
}

int TRealTable::GetVNoList(int set, int filter, int* out) {
  const TFilter* const column = GetFilter(filter);
  if (column == nullptr) return QX_ERROR_NO_FILTER;
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) return QX_ERROR_NO_SET;
  gather_rows(std::as_const(*column->PVL).PIntAr(), RowList(*source), 0, source->FArraySize, out);
  return source->FArraySize;
}

}  // namespace qxe
