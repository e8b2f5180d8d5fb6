// Export of a real table: a set's rows through the row pointers of its filters.
#include <algorithm>

#include "import/mtexport.h"
#include "tables/realtables.h"

namespace qxe {

// Workers share the arrays, so they must reach them as constant ones: handing out a changeable
// block marks its array as changed.
void TRealTable::OutCsvPartFile(CsvRowWriter& writer, int set, const CsvLineDiv_t& part) {
  const TSetArray& rows = *GetSet(set);
  const int* row = rows.PIntAr() + part.first - 1;
  for (int left = part.size(); left > 0; left -= CsvRowWriter::kBlockRows) {
    const int count = std::min(left, CsvRowWriter::kBlockRows);
    for (int i = 0; i < writer.columns(); ++i) {
      const TIntArray& pointers = *writer.column(i).filter().PVL;
      std::transform(row, row + count, writer.numbers(i),
                     [numbers = pointers.PIntAr()](int r) { return numbers[r]; });
    }
    writer.put_rows(count);
    row += count;
  }
}

}  // namespace qxe
