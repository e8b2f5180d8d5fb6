// Column compilation: raw values become a sorted list of the distinct ones and, for each element,
// the number of its value in that list. Accommodation: two such lists become one, and the numbers
// of both columns follow.
#pragma once

#include <memory>

#include "storage/filters.h"

namespace qxe {

/// A raw integer array at a glance.
struct _RawIntArrayRangeInfo {  // NOLINT(bugprone-reserved-identifier): a fixed name
  int nulls = 0;
  int min = 0x7FFFFFFF;  // of the non-NULL values
  int max = QX_NULL_INT;
};

/// Outcome of a compilation. The value list holds `unique` values of the input's width; of strings,
/// pointers into the input.
struct CompiledColumn {
  Block<int> row_pointers;  // one value number per input element, from 0
  int unique = 0;
  Block<char> value_list;  // ascending, no two equal
};

/// Compiles `WholeSize` raw values of `DataType` (2 to 8), `Width1Unit` bytes each (4, 8, 8, 16; of
/// strings pointers), on the calling thread. With the tail-space setting on, strings lose trailing
/// blanks in place. Throws QX_ERROR_NO_RECORD for a size below 1, QX_ERROR_DATA_WIDTH for a width
/// that does not fit, QX_ERROR_TYPE_MISMATCH for an unknown type.
CompiledColumn Compile(int WholeSize, int DataType, int Width1Unit, const void* data,
                       const _RawIntArrayRangeInfo* range = nullptr);
/// The same result, made on the worker pool.
CompiledColumn MppCompile(int WholeSize, int DataType, int Width1Unit, const void* data);

/// Whether Compile will address a table by value: integers whose range is small for their number.
bool WillBeCompiledBySorting(int DataType, int n, const void* data, _RawIntArrayRangeInfo* out);
_RawIntArrayRangeInfo GetIntRange(int n, const int* data);

/// Two value lists as one.
struct MergedLists {
  std::unique_ptr<TBaseArray> list;  // null: the lists were identical, and there are no maps
  Block<int> map1;  // for each entry of the first list its number in the merged one
  Block<int> map2;
};

/// The merge of two value lists of one type, whose row pointers have not followed yet. The merged
/// list has the first list's attribute block, extended type and decimal info. Throws
/// QX_ERROR_MERGE_TYPE for lists of different types.
MergedLists MergeLists(const TBaseArray& vl1, const TBaseArray& vl2);
MergedLists MppMergeLists(const TBaseArray& vl1, const TBaseArray& vl2);
/// What numbers the entries of two value lists have in their merge, which itself is not made.
struct MatchedLists {
  Block<int> map1;  // null: the first list's numbers stay
  Block<int> map2;
  int size;  // of the merged list
};

/// Both maps ascend strictly. Throws QX_ERROR_MERGE_TYPE for lists of different types.
MatchedLists MppMatchLists(const TBaseArray& vl1, const TBaseArray& vl2);
/// Gives each row the number that `map`, which has `size` entries, has for its value.
void DoRenumber(TIntArray& numbers, const int* map, int size);
void DoMppRenumber(TIntArray& numbers, const int* map, int size);

/// Merges two value lists of one type and renumbers both row pointer arrays. Null when the lists
/// were identical: nothing is touched then. The merged list has the first list's attribute block,
/// extended type and decimal info. Throws QX_ERROR_MERGE_TYPE for lists of different types.
std::unique_ptr<TBaseArray> AccommodationMain(TIntArray& pv1, const TBaseArray& vl1, TIntArray& pv2,
                                              const TBaseArray& vl2);
std::unique_ptr<TBaseArray> MppAccommodationMain(TIntArray& pv1, const TBaseArray& vl1,
                                                 TIntArray& pv2, const TBaseArray& vl2);

/// A column of `rows` raw values as a table stores it: element 0 of the row pointers is 0, value
/// number 0 is NULL, rows count from 1. `total_rows` (at least `rows`) further rows read NULL. Null
/// `char*` elements and NaN are NULL. `mpp` compiles on the pool.
Column compile_column(int type, int rows, int total_rows, const void* data, bool mpp);

/// A filter of `rows` raw values. Throws QX_ERROR_FILTER_NAME for a bad name.
std::unique_ptr<TFilter> GenFilter2(int id, const char* name, int type, int rows, int width,
                                    const void* data);
std::unique_ptr<TFilter> MppGenFilter2(int id, const char* name, int type, int rows, int width,
                                       const void* data);

}  // namespace qxe
