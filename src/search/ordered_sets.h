// Set operations on lists of rows that ascend, as searches make them: both are walked side by side
// through windows of the table that fit the nearest cache. What an operation costs depends on the
// lists, not on the table.
#pragma once

#include <memory>
#include <span>

#include "storage/setarray.h"

namespace qxe {

using RowSpan = std::span<const int>;

/// Combines `a` and `b` by QX_SET_AND, QX_SET_OR or QX_SET_ANDNOT, large lists on the pool. Null
/// when one of them does not ascend, has a row twice or a row outside 1 to `totalRows`: that shows
/// on the way.
std::unique_ptr<TSetArray> combine_ordered(int op, int totalRows, RowSpan a, RowSpan b);
/// The rows from 1 to `totalRows` that are not in `rows`.
std::unique_ptr<TSetArray> complement_ordered(int totalRows, RowSpan rows);

}  // namespace qxe
