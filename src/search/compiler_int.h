// Compilation of integers whose range is small for their number: values address a table.
#pragma once

#include "search/compiler.h"
#include "search/value_list.h"

namespace qxe {

/// Slots of the table: one a value, one for NULL, one more.
inline long address_span(const _RawIntArrayRangeInfo& range) {
  return static_cast<long>(range.max) - range.min + 3;
}

/// Whether `count` integers of this range are few enough apart for a table.
bool addressable(long count, const _RawIntArrayRangeInfo& range);

_RawIntArrayRangeInfo int_range(const int* data, long count, int workers);

/// The value list of addressable integers and their numbers in it. With `null_ahead` NULL is in the
/// list in any case.
ValueList<TIntArray> compile_by_address(const int* data, long count, int* numbers,
                                        const _RawIntArrayRangeInfo& range, bool null_ahead,
                                        int workers);

}  // namespace qxe
