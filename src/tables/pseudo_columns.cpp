#include "tables/pseudo_columns.h"

#include <limits.h>

#include <set>

#include "search/compiler.h"
#include "storage/family.h"

namespace qxe {

int total_rows(std::span<const SourceRows> parts) {
  constexpr long kMaxTotalRows = INT_MAX - 1;  // row pointers count one more
  long total = 0;
  for (const SourceRows& part : parts) total += part.rows.count;
  if (total <= kMaxTotalRows) return static_cast<int>(total);
  throw CQXException(QX_ERROR_ROW_SIZE, "RowSize overflow");
}

Column table_id_column(std::span<const SourceRows> parts) {
  std::set<int> ids;
  for (const SourceRows& part : parts) {
    if (part.rows.count > 0) ids.insert(part.table_id);
  }
  const int rows = total_rows(parts);
  Block<int> values = make_block<int>(static_cast<long>(ids.size()) + 1);
  values[0] = QX_NULL_INT;
  std::copy(ids.begin(), ids.end(), values.get() + 1);
  Block<int> numbers = make_block<int>(static_cast<long>(rows) + 1);
  int* next = numbers.get();
  *next++ = 0;
  for (const SourceRows& part : parts) {
    if (part.rows.count == 0) continue;
    const auto number = 1 + std::distance(ids.begin(), ids.find(part.table_id));
    next = std::fill_n(next, part.rows.count, static_cast<int>(number));
  }
  return {std::make_unique<TIntArray>(rows + 1, std::move(numbers)),
          std::make_unique<TIntArray>(static_cast<int>(ids.size()) + 1, std::move(values))};
}

Column row_number_column(std::span<const SourceRows> parts) {
  const int rows = total_rows(parts);
  Block<int> numbers = make_block<int>(rows);
  int* next = numbers.get();
  for (const SourceRows& part : parts) {
    for (int i = 0; i < part.rows.count; ++i) *next++ = part.rows[i];
  }
  return compile_column(QX_DT_INTEGER, rows, rows, numbers.get(), false);
}

}  // namespace qxe
