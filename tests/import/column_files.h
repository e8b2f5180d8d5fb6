// Columns as files: what imports are to read back.
#pragma once

#include <algorithm>
#include <string>

#include "support/columns.h"

namespace qxe::test {

/// A cell as a field of a text file.
inline std::string field_text(const Cell& cell, int type) {
  return is_null(cell) ? "" : to_text(cell, type);
}

/// Texts of the cells. The two zeros are one.
inline std::vector<std::string> cell_texts(const Column& column) {
  std::vector<std::string> texts = to_texts(column);
  std::replace(texts.begin(), texts.end(), std::string("-0"), std::string("0"));
  return texts;
}

/// Comma separated lines. No text may hold a comma, a quote or a line break.
inline std::string lines_of(const Columns& columns) {
  std::string data;
  for (size_t row = 0; row < columns.front().column.cells.size(); ++row) {
    for (const NamedColumn& named : columns) {
      data += field_text(named.column.cells[row], named.column.type) + ",";
    }
    data.back() = '\n';
  }
  return data;
}

/// The catalog of these lines; `directives` are lines of their own.
inline std::string catalog_of(const Columns& columns, const std::string& directives = "//CSV\n") {
  const std::string letters = "IFDTAEN";  // from QX_DT_INTEGER on
  std::string catalog = directives;
  for (const NamedColumn& named : columns) {
    const auto& [type, cells, scale] = named.column;
    catalog += letters[static_cast<size_t>(type - QX_DT_INTEGER)] + ("\t9\t" + named.name);
    if (type == QX_DT_DECIMAL) catalog += "\t" + std::to_string(scale);
    catalog += "\n";
  }
  return catalog;
}

/// A binary file of strings, or lines for another type.
inline std::string one_column_file(const Column& column) {
  std::string file;
  for (const Cell& cell : column.cells) {
    const std::string text = field_text(cell, column.type);
    if (column.type != QX_DT_STRING) {
      file += text + "\n";
      continue;
    }
    for (int shift = 24; shift >= 0; shift -= 8) {
      file += static_cast<char>(text.size() >> shift & 0xff);
    }
    file += text;
  }
  return file;
}

}  // namespace qxe::test
