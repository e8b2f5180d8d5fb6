// One value of a column by row number, as every kind of table hands it to a client. Row 0, which is
// no row, reads NULL.
#pragma once

#include "storage/filters.h"

namespace qxe {

inline int value_number(const TFilter& filter, int row) {
  return static_cast<const TIntArray&>(*filter.PVL).PIntAr()[row];
}

/// Copies a number; returns its bytes.
template <class Value>
int put_value(void* out, const Value& value) {
  memcpy(out, &value, sizeof value);
  return static_cast<int>(sizeof value);
}

/// The data type into `*type`, the value into `out`, a text cut to `textSize` bytes with its
/// terminator. Returns its bytes, of a text its length.
int read_cell(const TFilter& filter, int row, int* type, void* out, int textSize);

/// The same with the value's address, which a change of the filter makes invalid. QX_ERROR_NO_SET
/// for a decimal: it has no address form.
int read_cell_address(const TFilter& filter, int row, int* type, long* out);

}  // namespace qxe
