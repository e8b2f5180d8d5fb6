// Columns of a derived table that tell where its rows come from.
#pragma once

#include <span>

#include "storage/filters.h"
#include "tables/row_list.h"

namespace qxe {

/// The table's id for the rows of each part, one part after the other.
Column table_id_column(std::span<const SourceRows> parts);
/// The row numbers that the rows have in their tables.
Column row_number_column(std::span<const SourceRows> parts);

/// Rows of all parts together. Throws QX_ERROR_ROW_SIZE above the limit of a table.
int total_rows(std::span<const SourceRows> parts);

}  // namespace qxe
