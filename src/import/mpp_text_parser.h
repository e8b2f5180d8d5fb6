// The read of a text file of one column on all workers.
#pragma once

#include <string>

#include "import/parallel_parse.h"

namespace qxe {

class CMppTextParser : NonCopyable {
 public:
  explicit CMppTextParser(const ColumnDescription& column);

  /// The first `rows` lines of the file as a column of `total_rows` rows, at least `rows`; the rows
  /// without a line are NULL. Throws QX_ERROR_FILE when it is missing, QX_ERROR_INVALID_DATA for
  /// the first value that does not convert, QX_ERROR_TEXT_FIELD for a line above 4095 bytes;
  /// logged.
  Column DoParse(const std::string& file, int rows, int total_rows);

 private:
  const DataLayout layout_;
  ParallelParse parse_;
};

}  // namespace qxe
