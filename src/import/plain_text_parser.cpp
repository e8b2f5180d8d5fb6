#include "import/plain_text_parser.h"

#include <algorithm>

#include "import/catalog_text.h"
#include "import/errlog.h"

namespace qxe {

DataLayout CPlainTextParser::layout_of(const ColumnDescription& column) {
  DataLayout layout;
  layout.columns.push_back(column);
  layout.inputs.push_back({0, 0});
  return layout;
}

void CPlainTextParser::parse_lines(const char* begin, const char* end) {
  for (const char* line = begin; line < end;) {
    const char* stop = std::find(line, end, '\n');
    const char* const next = std::min(stop + 1, end);
    if (stop > line && stop[-1] == '\r') --stop;
    const std::string_view value = removeQuotes({line, static_cast<size_t>(stop - line)});
    if (value.size() > kMaxUnquotedCell) return take_bad_scan(QX_ERROR_TEXT_FIELD);
    line_cells()[0] = {value.data(), static_cast<int>(value.size())};
    take_row();
    line = next;
  }
}

void CPlainTextParser::data_fault(const Cell& cell, int, int line) {
  const std::string text(cell.text, static_cast<size_t>(cell.size));
  errors().SetLogMsg(kErrPlainData, field(0).getTypeName(), text.c_str(), line, file().c_str());
}

}  // namespace qxe
