// The one way from raw values to a value list and numbers, for all families and both drivers.
#pragma once

#include "search/compiler.h"
#include "search/value_list.h"

namespace qxe {

/// Throws when `type` is none of the data types or its values are not `width` bytes wide.
void check_raw_values(int type, int width);

/// Compiles `count` raw values into their value list and, in `numbers`, the number of each. With
/// `null_ahead` NULL is in the list in any case. `range` is that of integers, when it is known.
template <class Array>
ValueList<Array> compile_values(const typename Family<Array>::Value* data, long count, int* numbers,
                                bool null_ahead, int workers,
                                const _RawIntArrayRangeInfo* range = nullptr);

extern template ValueList<TIntArray> compile_values<TIntArray>(const int*, long, int*, bool, int,
                                                               const _RawIntArrayRangeInfo*);
extern template ValueList<TDoubleArray> compile_values<TDoubleArray>(const double*, long, int*,
                                                                     bool, int,
                                                                     const _RawIntArrayRangeInfo*);
extern template ValueList<TStrArray> compile_values<TStrArray>(const char* const*, long, int*, bool,
                                                               int, const _RawIntArrayRangeInfo*);
extern template ValueList<TNumericArray> compile_values<TNumericArray>(
    const Numeric*, long, int*, bool, int, const _RawIntArrayRangeInfo*);

}  // namespace qxe
