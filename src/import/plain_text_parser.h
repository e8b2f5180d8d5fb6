// Text files of one column: each line is a value.
#pragma once

#include <string>

#include "import/text_parser.h"
#include "storage/filters.h"

namespace qxe {

class CPlainTextParser : public CTextParser {
 public:
  /// The layout of a file of one column.
  static DataLayout layout_of(const ColumnDescription& column);

  CPlainTextParser(const DataLayout& layout, const std::string& file, CatalogErrorInfo& errors)
      : CTextParser(layout, file, errors), file_(file) {}

  /// Reads the first `rows` lines of the file into a column of `total_rows` rows; the rows without
  /// a line are NULL. Throws QX_ERROR_FILE when it is missing, QX_ERROR_INVALID_DATA for the first
  /// value that does not convert, QX_ERROR_TEXT_FIELD for a line above 4095 bytes; logged.
  Column parse_txt2(int rows, int total_rows);

 protected:
  void parse_lines(const char* begin, const char* end) override;
  void data_fault(const Cell& cell, int column, int line) override;

 private:
  const std::string& file_;
  long limit_ = 0;
};

}  // namespace qxe
