#include "import/filter_import.h"

#include <algorithm>

#include "import/catalog_text.h"
#include "import/errlog.h"
#include "import/plain_text_parser.h"
#include "tables/realtables.h"

namespace qxe {

int addFilterFromFile(TRealTable& table, int position, const char* name, int type, int rows,
                      const char* directory, const char* file, const NumericInfo& info) {
  check_path(directory, "pFilePath");
  check_file_name(file, "pFileName");
  const std::string path = CnvRelativeToAbsolute(directory);
  LOGOBJ.setFileName(build_AbsoluteName(path, CErrorLog::kDefaultName).c_str());
  CErrorLog::isBegin = true;
  const DataLayout layout = CPlainTextParser::layout_of({name, type, 0, 0, info});
  const std::string file_path = build_AbsoluteName(path, file);
  CatalogErrorInfo errors;
  CPlainTextParser parser(layout, file_path, errors);
  const int total_rows = table.TotalRecs();
  return raised(
      table.AddFilter(position, name, parser.parse_txt2(std::min(rows, total_rows), total_rows)));
}

}  // namespace qxe
