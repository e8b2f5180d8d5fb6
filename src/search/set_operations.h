// Set algebra on lists of rows. Results are in row order, each row once, whatever the order of the
// operands; only SieveOpe keeps the order of its first one.
#pragma once

#include "search/ordered_sets.h"

namespace qxe {

/// The rows in both lists, in either, or in the first alone: QX_SET_AND, QX_SET_OR, QX_SET_ANDNOT.
/// Rows lie between 1 and `totalRows`. A result is allocated exactly, or for 10 rows when it has
/// none. Throws QX_ERROR_OPERATION for another code; the second form does not log it. Both use the
/// pool where it helps.
std::unique_ptr<TSetArray> SetOpeCommon(int op, int totalRows, RowSpan a, RowSpan b);
std::unique_ptr<TSetArray> MppSetOpeCommon(int op, int totalRows, RowSpan a, RowSpan b);

/// The rows from 1 to `totalRows` that are not in the list.
std::unique_ptr<TSetArray> SetOpeNot(int totalRows, RowSpan rows);
std::unique_ptr<TSetArray> MppSetOpeNot(int totalRows, RowSpan rows);

/// The rows of `a` that are in `b`, in the order of `a`; with room for as many as the shorter of
/// them has.
std::unique_ptr<TIntArray> SieveOpe(int totalRows, const TIntArray& a, const TIntArray& b);

}  // namespace qxe
