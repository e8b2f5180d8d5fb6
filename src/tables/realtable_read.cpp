// Reading single values: a position in a set names a row, the row's pointer a value.
#include <algorithm>

#include "storage/family.h"
#include "storage/strings.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

/// Where a value lies: an element of a filter's value list or tail.
struct Cell {
  const TBaseArray* values;
  int index;
};

int value_number(const TFilter& filter, int row) {
  return static_cast<const TIntArray&>(*filter.PVL).PIntAr()[row];
}

Cell cell_of(const TFilter& filter, int row) {
  const int p = value_number(filter, row);
  return {&filter.values_of(p), p < 0 ? -p : p};
}

template <class Value>
int put_value(void* out, const Value& value) {
  memcpy(out, &value, sizeof value);
  return static_cast<int>(sizeof value);
}

/// Copies a text into `size` bytes; returns the copied length.
int put_text(void* out, const char* text, int size) {
  const size_t limit = static_cast<size_t>(size);
  return static_cast<int>(std::min(qxe_strlcpy(static_cast<char*>(out), text, limit), limit - 1));
}

int put_cell(const Cell& cell, void* out, int textSize) {
  return with_family(*cell.values, [&]<class Array>(const Array& values) {
    const auto value = view_of(values)[cell.index];
    if constexpr (std::is_same_v<Array, TStrArray>) {
      return put_text(out, value, textSize);
    } else {
      return put_value(out, value);
    }
  });
}

/// Stores the address of a value; its width or text length. A decimal has no address form.
int put_address(const Cell& cell, long* out) {
  return with_family(*cell.values, [&]<class Array>(const Array& values) -> int {
    if constexpr (std::is_same_v<Array, TNumericArray>) {
      return QX_ERROR_NO_SET;
    } else if constexpr (std::is_same_v<Array, TStrArray>) {
      const char* const text = view_of(values)[cell.index];
      *out = reinterpret_cast<long>(text);
      return static_cast<int>(strlen(text));
    } else {
      *out = reinterpret_cast<long>(values.values() + cell.index);
      return static_cast<int>(sizeof(typename Array::Value));
    }
  });
}

}  // namespace

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
/// number)` for filter 0 or `put(cell)`.
template <class PutRow, class Put>
int TRealTable::read_cell(int set, int filter, int pos, int* type, PutRow&& put_row, Put&& put) {
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
  const TFilter& column = *filter_at(position);
  *type = column.data_type();
  return put(cell_of(column, rows->element(pos)));
}

int TRealTable::ReadData(int set, int filter, int pos, int* type, void* out) {
  return ReadData(set, filter, pos, type, out, TStrArray::kMaxText + 1);
}

int TRealTable::ReadData(int set, int filter, int pos, int* type, void* out, int size) {
  return read_cell(
      set, filter, pos, type, [&](const int* row) { return put_value(out, *row); },
      [&](const Cell& cell) { return put_cell(cell, out, size); });
}

int TRealTable::ReadData(int set, int filter, int pos, int* type, long* out) {
  return read_cell(
      set, filter, pos, type,
      [&](const int* row) {
        *out = reinterpret_cast<long>(row);
        return static_cast<int>(sizeof *row);
      },
      [&](const Cell& cell) { return put_address(cell, out); });
}

int TRealTable::GetVNo(int set, int filter, int pos, int* out) {
  const TSetArray* const rows = set_with(set, pos);
  if (rows == nullptr) return QX_ERROR_NO_SET;
  const int position = FilterID2Pos(filter);
  if (position < 0) return QX_ERROR_NO_FILTER;
  *out = value_number(*filter_at(position), rows->element(pos));
  return 0;
}

}  // namespace qxe
