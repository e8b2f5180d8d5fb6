// Searches of a set that decide by something else than a condition on values. The results have the
// set's order, name and attribute block.
#pragma once

#include <memory>

#include "storage/filters.h"
#include "storage/setarray.h"

namespace qxe {

/// Rows whose value is marked in `hits`, one byte for each entry of the column's value list.
std::unique_ptr<TSetArray> search_hits(const TSetArray& source, const TFilter& column,
                                       const unsigned char* hits);

/// Rows by a column of texts that carry one leading byte which is not to be matched. `ope` from
/// QX_OPE_EQ to QX_OPE_ENDS; another one throws QX_ERROR_OPERATION, a column of another type
/// QX_ERROR_NOT_STRING.
std::unique_ptr<TSetArray> search_skipped_texts(const TSetArray& source, const TFilter& column,
                                                int ope, const char* v1, const char* v2);

/// Rows by their row number. `ope` from QX_OPE_EQ to QX_OPE_GT; another one throws
/// QX_ERROR_OPERATION.
std::unique_ptr<TSetArray> search_row_numbers(const TSetArray& source, int ope, int n1, int n2);

}  // namespace qxe
