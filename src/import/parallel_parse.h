// The parsing of a text file on all workers. The file is cut at line ends, one range per worker;
// each parses its range into fields of its own. Then column after column is made of the shares:
// their values become one value list, and each worker numbers the rows of its share.
#pragma once

#include <limits.h>

#include <memory>
#include <string>
#include <vector>

#include "import/errlog.h"
#include "import/text_parser.h"
#include "parallel/task_table.h"
#include "storage/filters.h"

namespace qxe {

class SourceFile;

class ParallelParse : NonCopyable {
 public:
  static constexpr long kAllRows = LONG_MAX;

  /// The layout must outlive the object; parsing runs as `task`.
  ParallelParse(const DataLayout& layout, TaskId task) : layout_(layout), task_(task) {}

  /// Reads the first `limit` rows of a file; lines that are left out do not count, and lines behind
  /// the last row are not looked at. Throws the status of the first fault that ends the import;
  /// faults in front of it are in the log.
  void parse(const std::string& file, long limit);

  long rows() const { return rows_; }

  /// The columns, those with the most texts first: taken in this order, they give their memory back
  /// before the others need some.
  std::vector<size_t> columns_by_size() const;

  /// The column of `rows` rows, at least those read: the further ones are NULL. Gives back the
  /// memory of its shares, so that each column can be taken once.
  Column take_column(size_t column, int rows);

 private:
  struct Share {
    Share(long share_begin, long share_end) : begin(share_begin), end(share_end) {}

    long begin;  // offsets in the file
    long end;
    CatalogErrorInfo errors;
    std::unique_ptr<CTextParser> parser;
    bool finished = false;
  };
  using Shares = std::vector<std::unique_ptr<Share>>;

  static Shares alloc_step1(const SourceFile& file, long begin, long end, int most);
  void run_step1(const SourceFile& file, Shares shares, long limit);
  void text2pvvl(Share& share, const SourceFile& file, long limit) const;
  void collect_shares(Shares shares, int status);

  const DataLayout& layout_;
  const TaskId task_;
  Shares shares_;  // in the order of the file
  long lines_ = 0;
  long rows_ = 0;
};

}  // namespace qxe
