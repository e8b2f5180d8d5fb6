#include "import/parallel_parse.h"

#include <algorithm>

#include "import/import_step.h"
#include "import/source_file.h"

namespace qxe {

namespace {

constexpr long kMaxRows = 0x7FFFFFFF;
constexpr long kFewRows = 64;

}  // namespace

int mpp_import_step1(void* block) {
  return run_pool_step(block);
}

int mpp_import_step2(void* block) {
  return run_pool_step(block);
}

// With a limit a first round takes as many lines. When some of them are left out, further rounds
// take lines for the rows still wanted. A few rows are not worth a round: one worker goes on until
// it has them.
void ParallelParse::parse(const std::string& file, long limit) {
  const SourceFile source = open_logged(file);
  const long size = source.size();
  long begin = layout_.title_line ? source.behind_lines(0, size, 1) : 0;
  do {
    const long wanted = limit - rows_;
    const bool few = wanted <= kFewRows;
    const bool rest = few || limit == kAllRows;
    const long end = rest ? size : source.behind_lines(begin, size, wanted);
    run_step1(source, alloc_step1(source, begin, end, few ? 1 : INT_MAX), wanted);
    begin = end;
  } while (begin < size && rows_ < limit);
}

/// Up to `most` even ranges that end with a line. Short text gives fewer.
ParallelParse::Shares ParallelParse::alloc_step1(const SourceFile& file, long begin, long end,
                                                 int most) {
  const int workers =
      std::min(ENG->n_threads_for_elements(end - begin, ENG->bytes_per_worker()), most);
  const long size = (end - begin) / workers;
  Shares shares;
  for (int i = 1; i < workers && end - begin > size; ++i) {
    const long next = file.behind_lines(begin + size, end, 1);
    shares.push_back(std::make_unique<Share>(begin, next));
    begin = next;
  }
  if (begin < end || shares.empty()) shares.push_back(std::make_unique<Share>(begin, end));
  return shares;
}

void ParallelParse::run_step1(const SourceFile& file, Shares shares, long limit) {
  int status = 0;
  try {
    run_import_step(task_, static_cast<int>(shares.size()), [&](int share) {
      text2pvvl(*shares[static_cast<size_t>(share)], file, limit);
    });
  } catch (const CQXException& failure) {
    status = failure.ErrorCode();
  } catch (const std::bad_alloc&) {
    status = QX_ERROR_OUT_OF_MEMORY;
  }
  collect_shares(std::move(shares), status);
}

void ParallelParse::text2pvvl(Share& share, const SourceFile& file, long limit) const {
  share.parser = make_parser(layout_, file.path(), share.errors);
  share.parser->ParseFile(file, share.begin, share.end, limit);
  share.finished = true;
}

/// Prints the faults of the shares in the order of the file, up to the first share that failed;
/// `status` is that one's. Keeps the shares with rows, and one in any case.
void ParallelParse::collect_shares(Shares shares, int status) {
  for (auto& share : shares) {
    share->errors.AllLogMsgPrint(lines_);
    if (!share->finished) throw CQXException(status);
    lines_ += share->parser->lines();
    rows_ += share->parser->rows();
    if (share->parser->rows() > 0 || shares_.empty()) shares_.push_back(std::move(share));
  }
  if (lines_ >= kMaxRows) {
    LogMsg(CatalogErrTable[kErrMaxRows], static_cast<int>(kMaxRows));
    throw CQXException(QX_ERROR_TEXT_ROWS);
  }
}

std::vector<size_t> ParallelParse::columns_by_size() const {
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

Column ParallelParse::take_column(size_t column, int rows) {
  std::vector<std::unique_ptr<CField>> fields;
  std::vector<CField*> shares;
  std::vector<long> first_rows;
  long next_row = 1;  // row 0 is NULL
  for (const auto& share : shares_) {
    fields.push_back(share->parser->take_field(column));
    shares.push_back(fields.back().get());
    first_rows.push_back(next_row);
    next_row += fields.back()->rows();
  }
  Column result;
  result.vl = shares[0]->merge(shares);
  result.pv = std::make_unique<TIntArray>(rows + 1, false);
  int* const numbers = result.pv->PIntAr();
  numbers[0] = 0;
  std::fill(numbers + next_row, numbers + rows + 1, 0);
  run_import_step(QX_MPP_IMPORT_MERGE, static_cast<int>(shares.size()), [&](int worker) {
    const auto share = static_cast<size_t>(worker);
    shares[share]->number_rows(numbers + first_rows[share]);
  });
  result.condensed = true;
  return result;
}

}  // namespace qxe
