// Export of a real table: a set's rows through the row pointers of its filters.
#include <algorithm>

#include "import/mtexport.h"
#include "tables/realtables.h"

namespace qxe {

int TRealTable::Export(int set, const int* filters, int from, int to, char separator,
                       char dateSeparator, const char* directory, const char* file,
                       const char* formatFile) {
  return export_csv(
      *this, {set, filters, from, to, separator, dateSeparator, directory, file, formatFile}, 1);
}

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
