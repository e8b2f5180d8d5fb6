#include "import/mtexport.h"

#include <algorithm>

#include "import/output_path.h"
#include "parallel/sliced_task.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

struct ExportParams {
  CCMultiThreadExport* exporter;
};

// Text of a part, about. Many parts keep all workers busy to the end and fit their buffers.
constexpr long kPartSize = 0x80000;
// A row of text is work like this many rows of a scan.
constexpr long kRowCost = 16;

}  // namespace

int mpp_export_createCsv(void* block) {
  return run_task<ExportParams>(block, [](ExportParams& task) { task.exporter->write_parts(); });
}

void CCMultiThreadExport::run(std::vector<CsvLineDiv_t> parts, int threads) {
  parts_ = std::move(parts);
  SlicedTask<ExportParams> task(QX_MPP_EXPORT, threads);
  task.run([&](Slice) { return ExportParams{this}; });
}

void CCMultiThreadExport::write_parts() {
  try {
    CsvRowWriter writer(layout_, *this);
    for (int part = take_part(); part >= 0; part = take_part()) {
      writer.begin_part(part);
      table_.OutCsvPartFile(writer, set_, parts_[static_cast<size_t>(part)]);
      writer.end_part();
    }
  } catch (const CQXException& failure) {
    fail(failure.ErrorCode());
    throw;
  } catch (...) {
    fail(QX_ERROR_UNKNOWN);
    throw;
  }
}

int CCMultiThreadExport::take_part() {
  const std::lock_guard guard(lock_);
  if (status_ < 0 || next_ == static_cast<int>(parts_.size())) return -1;
  return next_++;
}

void CCMultiThreadExport::put(int part, const char* text, size_t size) {
  await_turn(part);
  zvk_write(file_, text, 1, static_cast<long>(size));
}

void CCMultiThreadExport::await_turn(int part) {
  std::unique_lock guard(lock_);
  turn_passed_.wait(guard, [&] { return turn_ == part || status_ < 0; });
  raised(status_);
}

void CCMultiThreadExport::pass_turn() {
  const std::lock_guard guard(lock_);
  ++turn_;
  turn_passed_.notify_all();
}

void CCMultiThreadExport::fail(int status) {
  const std::lock_guard guard(lock_);
  if (status_ == 0) status_ = status;
  turn_passed_.notify_all();
}

namespace {

int check_arguments(const CsvExportRequest& request) {
  if (request.date_separator != '-' && request.date_separator != '/') {
    return report("MppCsvExport", QX_ERROR_PARAMETER, "Invalid Parameter : Datesep(%d)",
                  request.date_separator);
  }
  if (request.set < -1) {
    return report("MppCsvExport", QX_ERROR_NO_SET, "No Such Set: %d", request.set);
  }
  return check_output("MppCsvExport", request.directory, request.file);
}

/// The rows asked for, cut to the set's `size`.
int find_rows(const CsvExportRequest& request, int size, CsvLineDiv_t* rows) {
  rows->first = request.from == -1 ? 1 : request.from;
  rows->last = request.to == -1 ? size : std::min(request.to, size);
  if (size == 0 || rows->first > rows->last) {
    *rows = {1, 0};
  } else if (rows->first < 1) {
    return report("MppCsvExport", QX_ERROR_PARAMETER, "Invalid Parameter : RowFrom(%d) RowTo(%d)",
                  request.from, request.to);
  }
  return 0;
}

/// The columns with what the format file says of them.
int find_columns(TBaseTable& table, const CsvExportRequest& request, CsvLayout* layout) {
  std::vector<int> ids;
  int status = list_export_filters(table, request.filters, &ids);
  if (status < 0) return status;
  ExportFormats formats;
  if (request.format_file != nullptr) {
    status = readFmtInfo(path_in(request.directory, request.format_file).c_str(), &formats);
    if (status < 0) return status;
  }
  layout->separator = request.separator;
  for (const int id : ids) {
    char table_name[TBaseTable::kNameSize];
    char filter_name[TFilter::kNameSize];
    table.FilterID2Name(id, table_name, filter_name);
    layout->columns.emplace_back(id, *table.GetFilter(id), find_format(formats, filter_name),
                                 request.date_separator);
  }
  return 0;
}

}  // namespace

namespace {

/// A join can have a column that its parent has no more.
int check_columns(TBaseTable& table, const std::vector<int>& ids) {
  for (const int id : ids) {
    if (table.GetFilter(id) == nullptr) return table.missing_filter(id);
  }
  return 0;
}

}  // namespace

int list_export_filters(TBaseTable& table, const int* filters, std::vector<int>* ids) {
  if (filters == nullptr) {
    return report("Export", QX_ERROR_PARAMETER, "Invalid Parameter : IDList");
  }
  std::vector<int> all(static_cast<size_t>(table.GetNFilter()));
  table.GetFilterIDList(all.data());
  if (*filters == -1) {
    *ids = std::move(all);
    return check_columns(table, *ids);
  }
  for (int i = 0; filters[i] != -1; ++i) {
    if (std::find(all.begin(), all.end(), filters[i]) == all.end()) {
      report("Export", QX_ERROR_NO_SET, "Invalid Parameter : IDList[%d] (%d)", i, filters[i]);
      return QX_ERROR_NO_JOIN_FILTER;
    }
    ids->push_back(filters[i]);
  }
  return check_columns(table, *ids);
}

namespace {

/// Cuts `rows` into parts of about one size: small enough for a writer's buffer, and one for each
/// thread at least.
std::vector<CsvLineDiv_t> SetCsvtable(const CsvLineDiv_t& rows, const CsvLayout& layout,
                                      int threads) {
  const long share = (static_cast<long>(rows.size()) + threads - 1) / threads;
  const long step = std::clamp(kPartSize / layout.typical_width(), 1L, share);
  std::vector<CsvLineDiv_t> parts;
  for (long first = rows.first; first <= rows.last; first += step) {
    const long last = std::min<long>(first + step - 1, rows.last);
    parts.push_back({static_cast<int>(first), static_cast<int>(last)});
  }
  return parts;
}

int worthwhile_threads(int rows, int maxThreads) {
  const long per_thread = std::max(ENG->rows_per_worker() / kRowCost, 1L);
  return std::min({ENG->n_threads_for_elements(rows, per_thread), maxThreads,
                   static_cast<int>(QX_EXPORT_MAX_THREADS)});
}

/// Throws when a line cannot be written.
void write_rows(TBaseTable& table, int set, const CsvLineDiv_t& rows, CsvLayout* layout,
                int maxThreads, zvk_fstream& file) {
  if (rows.size() == 0 || layout->columns.empty()) return;
  for (CsvColumn& column : layout->columns) column.cache_texts(rows.size());
  const int threads = worthwhile_threads(rows.size(), maxThreads);
  CCMultiThreadExport(table, set, *layout, file).run(SetCsvtable(rows, *layout, threads), threads);
}

/// Creates the file with the rows' lines.
int CreateCsvExportFile(TBaseTable& table, int set, const CsvLineDiv_t& rows, CsvLayout* layout,
                        int maxThreads, const std::string& path) {
  zvk_fstream file;
  if (file.open(path.c_str(), kModeWrite, true) != 0) {
    return report("CreateCsvExportFile", QX_ERROR_FILE, "Illegal FileName");
  }
  try {
    write_rows(table, set, rows, layout, maxThreads, file);
    zvk_close(file);
  } catch (const CQXException& failure) {
    if (failure.ErrorCode() != QX_ERROR_FILE) throw;
    return report("CreateCsvExportFile", QX_ERROR_FILE, "Failed to write (%s)", path.c_str());
  }
  return 0;
}

}  // namespace

int export_csv(TBaseTable& table, const CsvExportRequest& request, int maxThreads) {
  int status = check_arguments(request);
  if (status < 0) return status;
  const int set = request.set == -1 ? table.GetCurrentSetID() : request.set;
  const int size = table.GetSetSize(set);
  if (size < 0) {
    return report("Export", QX_ERROR_NO_SET, "Failed to get index SetLoc ( result SetID2Pos )");
  }
  CsvLineDiv_t rows{};
  status = find_rows(request, size, &rows);
  if (status < 0) return status;
  CsvLayout layout;
  status = find_columns(table, request, &layout);
  if (status < 0) return status;
  return CreateCsvExportFile(table, set, rows, &layout, maxThreads,
                             path_in(request.directory, request.file));
}

int TBaseTable::Export(int set, const int* filters, int from, int to, char separator,
                       char dateSeparator, const char* directory, const char* file,
                       const char* formatFile) {
  return export_csv(
      *this, {set, filters, from, to, separator, dateSeparator, directory, file, formatFile}, 1);
}

int MppCsvExport(int table, int set, const int* filters, int from, int to, char separator,
                 char dateSeparator, const char* directory, const char* file,
                 const char* formatFile) {
  TBaseTable* const target = ENG->collection()->GetTable(table);
  if (target == nullptr) return QX_ERROR_NO_TABLE;
  return export_csv(*target,
                    {set, filters, from, to, separator, dateSeparator, directory, file, formatFile},
                    ENG->run_threads());
}

}  // namespace qxe
