#include "import/multithread_import.h"

#include <algorithm>

#include "import/import_step.h"
#include "import/mapped_file.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr long kMaxRows = 0x7FFFFFFF;

}  // namespace

int mpp_import_step1(void* block) {
  return run_task<ImportStep>(block, [](auto& step) { step.call(step.body, step.worker); });
}

int mpp_import_step2(void* block) {
  return run_task<ImportStep>(block, [](auto& step) { step.call(step.body, step.worker); });
}

int CCMultiThreadImport::MppImport(const std::string& dataFile, const char* tableName) {
  {
    const MappedFile file(dataFile);
    alloc_step1(file);
    MppImport_run_step1(dataFile, file);
  }
  return MppImport_run_step2(tableName);
}

/// Cuts the file behind the title line into even ranges that end with a line. A worker gets a page
/// at least.
void CCMultiThreadImport::alloc_step1(const MappedFile& file) {
  const auto behind_line_end = [&](const char* place) {
    return std::min(std::find(place, file.end(), '\n') + 1, file.end());
  };
  const int workers = ENG->n_threads_for_elements(file.size(), ENG->page_size());
  const long share = file.size() / workers;
  const char* begin = layout_.title_line ? behind_line_end(file.begin()) : file.begin();
  while (static_cast<int>(shares_.size()) < workers) {
    const bool last = static_cast<int>(shares_.size()) == workers - 1;
    const char* const end =
        last || file.end() - begin <= share ? file.end() : behind_line_end(begin + share);
    shares_.push_back(std::make_unique<Share>(begin, end));
    begin = end;
    if (end == file.end()) break;
  }
}

void CCMultiThreadImport::MppImport_run_step1(const std::string& dataFile, const MappedFile& file) {
  int status = 0;
  try {
    run_import_step(QX_MPP_IMPORT_PARSE, static_cast<int>(shares_.size()), [&](int worker) {
      text2pvvl(*shares_[static_cast<size_t>(worker)], dataFile, file.end());
    });
  } catch (const CQXException& failure) {
    status = failure.ErrorCode();
  }
  collect_shares(status);
}

void CCMultiThreadImport::text2pvvl(Share& share, const std::string& dataFile,
                                    const char* data_end) {
  share.parser = make_parser(layout_, dataFile, share.errors);
  share.parser->ParseMem(share.begin, share.end, data_end);
  share.finished = true;
}

/// Prints the faults of the shares in the order of the file, up to the first share that failed;
/// `status` is that one's.
void CCMultiThreadImport::collect_shares(int status) {
  long lines = 0;
  for (const auto& share : shares_) {
    share->errors.AllLogMsgPrint(lines);
    if (!share->finished) throw CQXException(status);
    lines += share->parser->lines();
    rows_ += share->parser->rows();
  }
  if (lines >= kMaxRows) {
    LogMsg(CatalogErrTable[kErrMaxRows], static_cast<int>(kMaxRows));
    throw CQXException(QX_ERROR_TEXT_ROWS);
  }
}

int CCMultiThreadImport::MppImport_run_step2(const char* tableName) {
  TTableCollection& tables = *ENG->collection();
  if (tables.count() >= TTableCollection::kMaxTables) {
    throw CQXException(report("AddRealTable", QX_ERROR_TABLE_COUNT, "TableCount overflow"));
  }
  char name[TBaseTable::kNameSize];
  raised(tables.GenTableName(tableName, name));
  auto table = std::make_unique<TRealTable>(tables.issue_table_id(), name, static_cast<int>(rows_));
  std::vector<Column> columns(layout_.columns.size());
  for (const size_t i : columns_by_size()) columns[i] = pvvl2filt(i);
  for (size_t i = 0; i < columns.size(); ++i) {
    raised(table->AddFilter(static_cast<int>(i), layout_.columns[i].name.c_str(),
                            std::move(columns[i])));
  }
  return tables.adopt_table(std::move(table));
}

/// Those with the most texts first, so that their memory is given back before the others need some.
std::vector<size_t> CCMultiThreadImport::columns_by_size() const {
  std::vector<long> texts(layout_.columns.size());
  std::vector<size_t> order(texts.size());
  for (size_t i = 0; i < order.size(); ++i) {
    order[i] = i;
    for (const auto& share : shares_) texts[i] += share->parser->field(i).texts();
  }
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t left, size_t right) { return texts[left] > texts[right]; });
  return order;
}

/// Makes a finished column of its shares, whose memory is given back.
Column CCMultiThreadImport::pvvl2filt(size_t column) {
  std::vector<std::unique_ptr<CField>> fields;
  std::vector<CField*> shares;
  std::vector<long> first_rows;
  long rows = 1;  // row 0 is NULL
  for (const auto& share : shares_) {
    fields.push_back(share->parser->take_field(column));
    shares.push_back(fields.back().get());
    first_rows.push_back(rows);
    rows += fields.back()->rows();
  }
  Column result;
  result.vl = shares[0]->merge(shares);
  result.pv = std::make_unique<TIntArray>(static_cast<int>(rows), false);
  int* const numbers = result.pv->PIntAr();
  numbers[0] = 0;
  run_import_step(QX_MPP_IMPORT_MERGE, static_cast<int>(shares.size()), [&](int worker) {
    const auto share = static_cast<size_t>(worker);
    shares[share]->number_rows(numbers + first_rows[share]);
  });
  return result;
}

}  // namespace qxe
