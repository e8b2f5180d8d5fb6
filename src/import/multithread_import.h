// The import of a data file on all workers. Step 1 cuts the file at line ends, one range per
// worker; each parses its range into fields of its own. Step 2 takes column after column: the
// shares' values become one value list, and each worker numbers the rows of its share.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "import/errlog.h"
#include "import/text_parser.h"
#include "storage/filters.h"

namespace qxe {

class MappedFile;

class CCMultiThreadImport : NonCopyable {
 public:
  /// The layout must outlive the object.
  explicit CCMultiThreadImport(const DataLayout& layout) : layout_(layout) {}

  /// Reads `dataFile` into a new table, whose name `tableName` is the seed of, and returns the
  /// table's id. Throws the status of the first fault that ends the import; faults in front of it
  /// are in the log, and there is no table.
  int MppImport(const std::string& dataFile, const char* tableName);

 private:
  struct Share {
    const char* begin;
    const char* end;
    CatalogErrorInfo errors;
    std::unique_ptr<CTextParser> parser;
    bool finished = false;
  };

  void alloc_step1(const MappedFile& file);
  void MppImport_run_step1(const std::string& dataFile, const MappedFile& file);
  void text2pvvl(Share& share, const std::string& dataFile, const char* data_end);
  void collect_shares(int status);
  int MppImport_run_step2(const char* tableName);
  std::vector<size_t> columns_by_size() const;
  Column pvvl2filt(size_t column);

  const DataLayout& layout_;
  std::vector<std::unique_ptr<Share>> shares_;
  long rows_ = 0;
};

}  // namespace qxe
