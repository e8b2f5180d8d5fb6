#include "tables/cell_read.h"

#include <algorithm>

#include "storage/family.h"
#include "storage/strings.h"

namespace qxe {

namespace {

/// Where a value lies: an element of a filter's value list or tail.
struct Cell {
  const TBaseArray* values;
  int index;
};

Cell cell_of(const TFilter& filter, int row) {
  const int p = value_number(filter, row);
  return {&filter.values_of(p), p < 0 ? -p : p};
}

/// Copies a text into `size` bytes; returns the copied length.
int put_text(void* out, const char* text, int size) {
  const size_t limit = static_cast<size_t>(size);
  return static_cast<int>(std::min(qxe_strlcpy(static_cast<char*>(out), text, limit), limit - 1));
}

}  // namespace

int read_cell(const TFilter& filter, int row, int* type, void* out, int textSize) {
  *type = filter.data_type();
  const Cell cell = cell_of(filter, row);
  return with_family(*cell.values, [&]<class Array>(const Array& values) {
    const auto value = view_of(values)[cell.index];
    if constexpr (std::is_same_v<Array, TStrArray>) {
      return put_text(out, value, textSize);
    } else {
      return put_value(out, value);
    }
  });
}

int read_cell_address(const TFilter& filter, int row, int* type, long* out) {
  *type = filter.data_type();
  const Cell cell = cell_of(filter, row);
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

}  // namespace qxe
