// The rows of a set for loops that copy columns, and parts of tables stacked one on the other.
#pragma once

#include <string.h>

#include <algorithm>

#include "storage/setarray.h"

namespace qxe {

/// Rows in the order of a set. Made on the calling thread, read by workers.
struct RowList {
  const int* rows;  // null: 1, 2, 3, ...
  int count;

  explicit RowList(const TSetArray& set)
      : rows(set.is_counted_up() ? nullptr : set.PIntAr()), count(set.FArraySize) {}

  int operator[](int position) const { return rows == nullptr ? position + 1 : rows[position]; }
};

/// Row pointers of the positions [begin, end).
inline void gather_rows(const int* numbers, const RowList& list, int begin, int end, int* out) {
  if (list.rows == nullptr) {
    std::copy(numbers + 1 + begin, numbers + 1 + end, out);
  } else {
    for (int i = begin; i < end; ++i) *out++ = numbers[list.rows[i]];
  }
}

/// Rows of one table on their way into a derived one.
struct SourceRows {
  int table_id;
  RowList rows;
};

}  // namespace qxe
