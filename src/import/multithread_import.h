// The import of a catalog's data file on all workers: its rows become a new table, or rows of one.
#pragma once

#include <string>

#include "import/parallel_parse.h"

namespace qxe {

class TRealTable;

class CCMultiThreadImport : NonCopyable {
 public:
  /// The layout must outlive the object.
  explicit CCMultiThreadImport(const DataLayout& layout)
      : layout_(layout), parse_(layout, QX_MPP_IMPORT_PARSE) {}

  /// Reads `dataFile` into a new table, whose name `tableName` is the seed of, and returns the
  /// table's id. Throws the status of the first fault that ends the import; faults in front of it
  /// are in the log, and there is no table.
  int MppImport(const std::string& dataFile, const char* tableName);

  /// Writes the first `rowCount` rows of `dataFile` into `table` from row `rowPos` on, as RowAppend
  /// does, column by column into the filters in display order. Returns `rowCount`; throws as
  /// MppImport, and the table is as it was then.
  int MppAppend(const std::string& dataFile, TRealTable& table, int rowPos, int rowCount);

 private:
  int MppImport_run_step2(const char* tableName);

  const DataLayout& layout_;
  ParallelParse parse_;
};

}  // namespace qxe
