// Value lists: the sorted distinct values of a column, made from unsorted ones.
#pragma once

#include <span>

#include "storage/family.h"

namespace qxe {

/// Values in any order, duplicates allowed, that go into a value list, and where their numbers go.
template <class Array>
struct ValueSource {
  using Value = typename Family<Array>::Value;

  const Value* values;
  long count;
  int* numbers;  // out: for each value its number in the list
};

/// Ascending values, no two equal.
template <class Array>
struct ValueList {
  Block<typename Family<Array>::Value> values;
  int size = 0;
};

/// The value list of all sources together, normalized; texts are the sources' own. Sorts on
/// `workers` workers of the pool; with one, on the calling thread. All sources together hold at
/// least one value.
template <class Array>
ValueList<Array> sort_distinct(std::span<const ValueSource<Array>> sources, int workers);

extern template ValueList<TIntArray> sort_distinct(std::span<const ValueSource<TIntArray>>, int);
extern template ValueList<TDoubleArray> sort_distinct(std::span<const ValueSource<TDoubleArray>>,
                                                      int);
extern template ValueList<TStrArray> sort_distinct(std::span<const ValueSource<TStrArray>>, int);
extern template ValueList<TNumericArray> sort_distinct(std::span<const ValueSource<TNumericArray>>,
                                                       int);

/// As make_value_array; the texts of a long list are copied by the worker pool.
std::unique_ptr<TBaseArray> mpp_make_value_array(int type, int count, Block<char> values);

/// A value list as raw bytes.
template <class Value>
Block<char> as_bytes(Block<Value> values) {
  return Block<char>(reinterpret_cast<char*>(values.release()));
}

}  // namespace qxe
