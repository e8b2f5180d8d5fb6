// Export of a join table: the rows of both parents behind a block of join rows, then the value
// numbers of their columns.
#include <algorithm>

#include "import/mtexport.h"
#include "joins/join_table.h"

namespace qxe {

void TJoinTable::OutCsvPartFile(CsvRowWriter& writer, int set, const CsvLineDiv_t& part) {
  const JoinRows pairs = rows(*find_set(set));
  int rows_of_side[kSides][CsvRowWriter::kBlockRows];
  for (int left = part.size(); left > 0; left -= CsvRowWriter::kBlockRows) {
    const int count = std::min(left, CsvRowWriter::kBlockRows);
    const int first = part.last - left;  // from 0
    for (int side = 0; side < kSides; ++side) pairs.rows_of(side, first, count, rows_of_side[side]);
    for (int i = 0; i < writer.columns(); ++i) {
      const CsvColumn& column = writer.column(i);
      int side = 0;
      JFilterID2Pos(column.filter_id(), &side);
      const int* const numbers = std::as_const(*column.filter().PVL).PIntAr();
      std::transform(rows_of_side[side], rows_of_side[side] + count, writer.numbers(i),
                     [numbers](int row) { return numbers[row]; });
    }
    writer.put_rows(count);
  }
}

}  // namespace qxe
