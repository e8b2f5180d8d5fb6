// Text files of one column: each line is a value.
#pragma once

#include <string>

#include "import/text_parser.h"

namespace qxe {

class CPlainTextParser : public CTextParser {
 public:
  /// The layout of a file of one column.
  static DataLayout layout_of(const ColumnDescription& column);

  using CTextParser::CTextParser;

 protected:
  void parse_lines(const char* begin, const char* end) override;
  void data_fault(const Cell& cell, int column, int line) override;
};

}  // namespace qxe
