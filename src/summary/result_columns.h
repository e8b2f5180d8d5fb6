// Columns of output tables. A result column is what compilation would make of its values; but its
// values are mostly small whole numbers, or entries of a list that is sorted already, so that they
// are ranked by a table instead of being sorted.
#pragma once

#include "storage/filters.h"

namespace qxe {

/// Row pointers on their way into a column: one more than rows, of which the first is yet to be
/// written. Row i + 1 belongs at index i + 1.
inline Block<int> make_row_numbers(int rows) {
  return make_block<int>(static_cast<long>(rows) + 1);
}

/// Rows that hold values of `list` by their numbers, made by make_row_numbers. The column's value
/// list has those that are used and NULL, with the list's type, and with its scale if decimal.
Column used_values_column(const TBaseArray& list, Block<int> numbers, int rows);
/// The same with the list's attribute block, as extraction makes it.
Column extracted_values_column(const TBaseArray& list, Block<int> numbers, int rows);
/// The same with a copy of the whole list.
Column whole_list_column(TBaseArray& list, Block<int> numbers, int rows);

/// Columns of `rows` raw values. NULL is at number 0 in any case.
Column int_column(const int* values, int rows);
Column double_column(const double* values, int rows);
Column decimal_column(const Numeric* values, int rows, const NumericInfo& info);

}  // namespace qxe
