// Catalogs of exports: what an import needs to read the text file back.
#include <string>

#include "import/mtexport.h"
#include "import/output_path.h"
#include "import/round_mode_names.h"
#include "storage/charcode.h"
#include "tables/tables.h"

namespace qxe {

namespace {

constexpr char kLayer[] = "CreateCatalogFile";
// Imports of separated values do not read the width.
constexpr char kWidth[] = "01";
constexpr int kMaxScale = 38;

char type_letter(int type) {
  switch (type) {
    case QX_DT_INTEGER: return 'I';
    case QX_DT_DOUBLE: return 'F';
    case QX_DT_DATE: return 'D';
    case QX_DT_TIME: return 'T';
    case QX_DT_STRING: return 'A';
    case QX_DT_DATETIME: return 'E';
    default: return 'N';
  }
}

/// Scale and rounding mode of a column of decimals.
std::string decimal_part(const TNumericArray& values, const EXPTFMT_t* format) {
  NumericInfo info = values.GetDecimalInfo();
  if (format != nullptr && format->decimals >= 0 && format->decimals <= kMaxScale) {
    info = {format->decimals, format->rounding};
  }
  std::string part("\t");
  part.append(std::to_string(info.scale)).append("\t");
  part.append(TransNumericRoundType2Str(info.rounding));
  return part;
}

std::string column_line(TBaseTable& table, int id, const ExportFormats& formats) {
  char table_name[TBaseTable::kNameSize];
  char name[TFilter::kNameSize];
  table.FilterID2Name(id, table_name, name);
  const TBaseArray& values = *table.GetFilter(id)->VL;
  const int type = ArrayDataTypeEx(values);
  std::string line(1, type_letter(type));
  line.append("\t").append(kWidth).append("\t").append(name);
  if (type == QX_DT_DECIMAL) {
    line += decimal_part(static_cast<const TNumericArray&>(values), find_format(formats, name));
  }
  line += '\n';
  return line;
}

std::string head_lines(char separator) {
  char code[32];
  getDBCharCode(code, false);
  std::string lines(separator == '\t' ? "//TAB" : "//CSV");
  lines.append("\n//").append(code).append("\n");
  return lines;
}

int write_text(const std::string& path, const std::string& text) {
  zvk_fstream stream;
  if (stream.open(path.c_str(), kModeWrite, true) != 0) {
    return report(kLayer, QX_ERROR_FILE, "Illegal FileName");
  }
  const bool written = stream.write(text.data(), static_cast<long>(text.size())) == 0;
  if (stream.close() != 0 || !written) {
    return report(kLayer, QX_ERROR_FILE, "Failed to write (%s)", path.c_str());
  }
  return 0;
}

}  // namespace

int TBaseTable::CreateCatalogFile(const int* filters, char separator, const char* directory,
                                  const char* file, const char* formatFile) {
  int status = check_output(kLayer, directory, file);
  if (status < 0) return status;
  std::vector<int> ids;
  status = list_export_filters(*this, filters, &ids);
  if (status < 0) return status;
  ExportFormats formats;
  if (formatFile != nullptr) {
    status = readFmtInfo(formatFile, &formats);
    if (status < 0) return status;
  }
  std::string text = head_lines(separator);
  for (const int id : ids) text += column_line(*this, id, formats);
  return write_text(path_in(directory, file), text);
}

}  // namespace qxe
