// The import of a catalog's data file on all workers: its rows become a new table, or rows of one.
#pragma once

#include <string>

#include "import/parallel_parse.h"

namespace qxe {

class RowAppend;
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

  /// Reads the rows of an append to `table` from `dataFile`; the columns go to the filters in
  /// display order. Returns their number; throws as MppImport and RowAppend, and the table is as it
  /// was then.
  int MppAppend(const std::string& dataFile, TRealTable& table, RowAppend& append);

 private:
  int MppImport_run_step2(const char* tableName);

  const DataLayout& layout_;
  ParallelParse parse_;
};

}  // namespace qxe
