// Imports of small files written down in the test.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {

using Rows = std::vector<std::vector<std::string>>;

class ImportTest : public EngineTest {
 protected:
  /// Imports `data` by a catalog of these lines; the table's id or a status.
  int import(const std::string& catalog, const std::string& data) const {
    write_file(directory() / "table.cat", catalog);
    write_file(directory() / "SrcData.dat", data);
    return RQXAddCatalogFile(directory().path().c_str(), "table.cat");
  }

  /// Texts of the table's cells, row by row.
  static Rows rows_of(int id) {
    int filters[QX_CATALOG_MAX_COLUMNS + 1];
    const int columns = require(RQXGetFilterIDList(id, filters), "RQXGetFilterIDList");
    const TestTable table = TestTable::existing(id);
    Rows rows(static_cast<size_t>(table.total_rows()));
    for (int i = 0; i < columns; ++i) {
      char name[256];
      require(RQXGetFilterName(id, filters[i], name), "RQXGetFilterName");
      const std::vector<std::string> texts = table.texts(name);
      for (size_t row = 0; row < rows.size(); ++row) rows[row].push_back(texts[row]);
    }
    return rows;
  }

  std::string log_path() const { return directory() / "catalog_err_log.txt"; }
  bool has_log() const { return std::filesystem::exists(log_path()); }

  /// Lines of the log behind the banner that tell of faults; none without a log.
  std::vector<std::string> log_lines() const {
    std::vector<std::string> lines;
    if (!has_log()) return lines;
    const std::string text = read_file(log_path());
    for (size_t begin = text.find("*/") + 2; begin < text.size();) {
      const size_t end = text.find('\n', begin);
      const std::string line = text.substr(begin, end - begin);
      if (!line.empty() && line.find("ADD CATALOG FAILURE") == std::string::npos) {
        lines.push_back(line);
      }
      begin = end + 1;
    }
    return lines;
  }

  /// The numbers behind "Row = " in the log.
  std::vector<int> logged_rows() const {
    std::vector<int> rows;
    for (const std::string& line : log_lines()) {
      const size_t place = line.find("Row = ");
      if (place != std::string::npos) rows.push_back(std::stoi(line.substr(place + 6)));
    }
    return rows;
  }

  static int table_count() { return RQXGetNTable(); }
};

}  // namespace qxe::test
