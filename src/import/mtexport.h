// Export of a set's rows to a delimited text file. The rows are cut into parts; workers render
// them, each the next one that nobody has, and write their texts to the file in the parts' order.
#pragma once

#include <condition_variable>
#include <mutex>
#include <vector>

#include "import/csv_writer.h"
#include "persist/zvk_fstream.h"

namespace qxe {

class TBaseTable;

/// First and last row of a part, as positions in the set from 1; `last` below `first` is no row.
struct CsvLineDiv_t {
  int first;
  int last;

  int size() const { return last - first + 1; }
};

/// What a client asks for; see RQXExportAsCSV.
struct CsvExportRequest {
  int set;             // -1: the current set
  const int* filters;  // ends at -1; -1 as the first: all
  int from;
  int to;
  char separator;
  char date_separator;
  const char* directory;
  const char* file;
  const char* format_file;  // null: none
};

/// Writes the file. Returns 0 or a negative status after logging; memory that runs out throws.
int export_csv(TBaseTable& table, const CsvExportRequest& request, int maxThreads);

/// The same on the worker pool for the table with id `table`.
int MppCsvExport(int table, int set, const int* filters, int from, int to, char separator,
                 char dateSeparator, const char* directory, const char* file,
                 const char* formatFile);

/// The filters of a client's list, all for a list that begins with -1. Logs and returns
/// QX_ERROR_NO_JOIN_FILTER for one that the table does not have, QX_ERROR_PARAMETER for null.
int list_export_filters(TBaseTable& table, const int* filters, std::vector<int>* ids);

/// One export while it runs.
class CCMultiThreadExport : NonCopyable {
 public:
  CCMultiThreadExport(TBaseTable& table, int set, const CsvLayout& layout, zvk_fstream& file)
      : table_(table), set_(set), layout_(layout), file_(file) {}

  /// Writes the parts with `threads` workers; throws the first failure.
  void run(std::vector<CsvLineDiv_t> parts, int threads);

  /// A worker's whole work: renders and writes parts until none is left or one has failed.
  void write_parts();
  /// Writes a piece of the text of part `part` once all parts before it are written. Throws when
  /// that fails or another worker has failed.
  void put(int part, const char* text, size_t size);
  /// The part whose turn it is has been written.
  void pass_turn();

 private:
  int take_part();
  void await_turn(int part);
  void fail(int status);

  TBaseTable& table_;
  int set_;
  const CsvLayout& layout_;
  zvk_fstream& file_;  // used by the worker whose turn it is
  std::vector<CsvLineDiv_t> parts_;

  std::mutex lock_;  // of what follows
  std::condition_variable turn_passed_;
  int next_ = 0;    // part that nobody has taken
  int turn_ = 0;    // part whose text may be written
  int status_ = 0;  // of the first failure
};

}  // namespace qxe
