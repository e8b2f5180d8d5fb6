#include "import/plain_text_parser.h"

#include <algorithm>

#include "import/catalog_text.h"
#include "import/errlog.h"
#include "import/mapped_file.h"

namespace qxe {

DataLayout CPlainTextParser::layout_of(const ColumnDescription& column) {
  DataLayout layout;
  layout.columns.push_back(column);
  layout.inputs.push_back({0, 0});
  return layout;
}

Column CPlainTextParser::parse_txt2(int rows, int total_rows) {
  limit_ = rows;
  const MappedFile mapped(file_);
  ParseMem(mapped.begin(), mapped.end(), mapped.end());
  CField* const only = &field(0);
  Column column;
  column.vl = only->merge({&only, 1});
  column.pv = std::make_unique<TIntArray>(total_rows + 1, true);
  only->number_rows(column.pv->PIntAr() + 1);
  return column;
}

void CPlainTextParser::parse_lines(const char* begin, const char* end) {
  for (const char* line = begin; line < end && lines() < limit_;) {
    const char* stop = std::find(line, end, '\n');
    const char* const next = std::min(stop + 1, end);
    if (stop > line && stop[-1] == '\r') --stop;
    const std::string_view value = removeQuotes({line, static_cast<size_t>(stop - line)});
    if (value.size() > kMaxUnquotedCell) {
      report("parseLine", QX_ERROR_TEXT_FIELD, "StringSize overflow");
      return take_bad_scan(QX_ERROR_TEXT_FIELD, next);
    }
    cell(0) = {value.data(), static_cast<int>(value.size())};
    take_row(next);
    line = next;
  }
}

void CPlainTextParser::data_fault(const Cell& cell, int, int line) {
  const std::string text(cell.text, static_cast<size_t>(cell.size));
  report("Str2Data", QX_ERROR_INVALID_DATA, "Illegal string data");
  LogMsg("DATA ERROR \t\t----->\t[%s] = \"%s\"  \t@ Row = %d in %s ", field(0).getTypeName(),
         text.c_str(), line, file_.c_str());
}

}  // namespace qxe
