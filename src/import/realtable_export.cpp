// Export of a real table: a set's rows through the row pointers of its filters.
#include <algorithm>

#include "import/mtexport.h"
#include "tables/realtables.h"

namespace qxe {

void TRealTable::OutCsvPartFile(CsvRowWriter& writer, int set, const CsvLineDiv_t& part) {
  const TSetArray& source = *GetSet(set);  // constant: read by several workers
  const int* rows = source.PIntAr() + part.first - 1;
  for (int left = part.size(); left > 0; left -= CsvRowWriter::kBlockRows) {
    const int count = std::min(left, CsvRowWriter::kBlockRows);
    for (int i = 0; i < writer.columns(); ++i) {
      const int* const pointers = writer.column(i).filter().PVL->PIntAr();
      std::transform(rows, rows + count, writer.numbers(i), [=](int row) { return pointers[row]; });
    }
    writer.put_rows(count);
    rows += count;
  }
}

}  // namespace qxe
