#include "import/filter_import.h"

#include <algorithm>

#include "import/binary_strings.h"
#include "import/catalog_text.h"
#include "import/mpp_text_parser.h"
#include "import/row_append.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

/// Path of a client's file; faults in it go to a log beside it.
std::string opened_with_log(const char* directory, const char* file) {
  check_path(directory, "pFilePath");
  check_file_name(file, "pFileName");
  const std::string path = CnvRelativeToAbsolute(directory);
  LOGOBJ.setFileName(build_AbsoluteName(path, CErrorLog::kDefaultName).c_str());
  CErrorLog::isBegin = true;
  return build_AbsoluteName(path, file);
}

/// What a text file is to become when it joins the values of a filter.
ColumnDescription description_of(const TFilter& filter) {
  ColumnDescription column;
  column.type = filter.data_type();
  if (column.type == QX_DT_DECIMAL) {
    column.info = static_cast<const TNumericArray&>(*filter.VL).GetDecimalInfo();
  }
  return column;
}

}  // namespace

int addFilterFromFile(TRealTable& table, int position, const char* name, int type, int rows,
                      const char* directory, const char* file, const NumericInfo& info) {
  const std::string path = opened_with_log(directory, file);
  const int total_rows = table.TotalRecs();
  CMppTextParser parser({name, type, 0, 0, info});
  return raised(table.AddFilter(position, name,
                                parser.DoParse(path, std::min(rows, total_rows), total_rows)));
}

int appendFilterFromFile(TRealTable& table, TFilter& filter, int position, int rows,
                         const char* directory, const char* file) {
  RowAppend append(table, position, rows);
  const std::string path = opened_with_log(directory, file);
  if (filter.data_type() == QX_DT_STRING) {
    append.set_column(filter, parse_bin(path, rows));
  } else {
    append.set_column(filter, CMppTextParser(description_of(filter)).DoParse(path, rows, rows));
  }
  return append.commit();
}

}  // namespace qxe
