#include "import/text_parser.h"

#include <algorithm>

#include "import/errlog.h"
#include "import/plain_text_parser.h"

namespace qxe {

namespace {

constexpr long kMaxRows = 0x7FFFFFFF;
// Cells of a batch stay in the second level cache together with what their fields touch.
constexpr int kBatchCells = 8192;
constexpr int kMinBatch = 16;
constexpr int kMaxBatch = 256;
static_assert(kMaxBatch <= TextTable::kMaxCells);

}  // namespace

CTextParser::CTextParser(const DataLayout& layout, const std::string& file,
                         CatalogErrorInfo& errors)
    : layout_(layout),
      file_(file),
      errors_(errors),
      batch_size_(std::clamp(kBatchCells / inputs(), kMinBatch, kMaxBatch)),
      cells_((layout.columns.size() + 1) * cell_stride()) {
  for (const ColumnDescription& column : layout.columns) {
    fields_.push_back(make_field(column, layout.checked()));
  }
  for (const InputField& input : layout.inputs) {
    const size_t dropped = layout.columns.size();
    cells_of_input_.push_back(
        cells_of(input.column >= 0 ? static_cast<size_t>(input.column) : dropped));
  }
}

CTextParser::~CTextParser() = default;

void CTextParser::ParseFile(const SourceFile& file, long begin, long end, long limit) {
  size_ = end - begin;
  limit_ = limit;
  for (LineBlocks blocks(file, begin, end); rows_ < limit && blocks.next();) {
    parse_wanted_rows(blocks.begin(), blocks.end(), blocks.offset() == file.size());
  }
  finish();
}

void CTextParser::ParseMem(const char* begin, const char* end) {
  size_ = limit_ = end - begin;
  parse_block(begin, end, true);
  finish();
}

/// Takes no more lines at once than rows are wanted: which of them give a row is known behind them.
void CTextParser::parse_wanted_rows(const char* begin, const char* end, bool last) {
  while (begin < end && rows_ < limit_) {
    long lines = limit_ - rows_;
    const bool all = lines >= end - begin;  // a line has a byte at least
    const char* const stop = all ? end : behind_lines(begin, end, lines);
    parse_block(begin, stop, last && stop == end);
    begin = stop;
  }
}

/// No cell outlives its block: the last batch is stored with it.
void CTextParser::parse_block(const char* begin, const char* end, bool last) {
  block_ = {begin, static_cast<size_t>(end - begin)};
  if (last) data_end_ = end;
  parse_lines(begin, end);
  store_batch();
}

void CTextParser::finish() {
  for (const auto& field : fields_) field->Compile();
}

Cell CTextParser::unquoted(const Cell& cell, bool doubled) {
  if (!doubled) return cell;
  std::string& text = unquoted_.emplace_back(without_doubled_quotes(cell));
  const int size = static_cast<int>(text.size());
  text.append(16, '\0');  // texts are read as words
  return {text.data(), size};
}

void CTextParser::take_row() {
  ++lines_;
  if (++batch_rows_ == batch_size_) store_batch();
}

bool CTextParser::begin_fault() {
  store_batch();
  ++lines_;
  return layout_.error_mode != ErrorMode::kNone;
}

void CTextParser::fail_unless_skipping(int status) const {
  if (layout_.error_mode != ErrorMode::kSkipLine) throw CQXException(status);
}

void CTextParser::take_bad_scan(int status) {
  const bool logged = begin_fault();
  const int line = static_cast<int>(lines_);
  if (status == QX_ERROR_TEXT_FIELD) {
    if (logged) errors_.SetLogMsg(kErrStringSize, line, file_.c_str());
    throw CQXException(status);
  }
  if (logged) errors_.SetLogMsg(kErrParse, line);
  fail_unless_skipping(QX_ERROR_INVALID_DATA);
}

void CTextParser::take_bad_count(int fields) {
  if (begin_fault()) {
    errors_.SetLogMsg(kErrFieldCount, inputs(), fields, static_cast<int>(lines_));
  }
  fail_unless_skipping(QX_ERROR_CATALOG);
}

void CTextParser::take_surplus() {
  if (begin_fault()) {
    errors_.SetLogMsg(kErrSurplusFields, inputs(), inputs(), static_cast<int>(lines_));
  }
  fixed_width_fault();
}

void CTextParser::take_short_field(int width, int size) {
  if (begin_fault()) {
    errors_.SetLogMsg(kErrFieldWidth, width, size, static_cast<int>(lines_));
  }
  fixed_width_fault();
}

void CTextParser::fixed_width_fault() const {
  if (layout_.error_mode == ErrorMode::kStop) throw CQXException(QX_ERROR_CATALOG);
}

void CTextParser::data_fault(const Cell& cell, int column, int line) {
  const std::string text(cell.text, static_cast<size_t>(cell.size));
  errors_.SetLogMsg(kErrData, fields_[static_cast<size_t>(column)]->getTypeName(), text.c_str(),
                    line, column + 1);
}

void CTextParser::store_batch() {
  if (lines_ >= kMaxRows) {
    if (layout_.error_mode != ErrorMode::kNone) {
      errors_.SetLogMsg(kErrMaxRows, static_cast<int>(kMaxRows));
    }
    throw CQXException(QX_ERROR_TEXT_ROWS);
  }
  if (batch_rows_ == 0) return;
  if (rows_ == 0) reserve_rows();
  rows_ += batch_rows_;
  for (size_t column = 0; column < fields_.size(); ++column) {
    fields_[column]->Str2Data({cells_of(column), static_cast<size_t>(batch_rows_)}, bad_);
    for (const int row : bad_) faults_.push_back({row, static_cast<int>(column)});
    bad_.clear();
  }
  if (!faults_.empty()) handle_faults();
  batch_rows_ = 0;
  unquoted_.clear();
}

// Faults come out in the order of the file, as if each row had been stored by itself. Of a line
// that ends the import or is left out the first bad value counts.
void CTextParser::handle_faults() {
  std::sort(faults_.begin(), faults_.end(), [](const Fault& left, const Fault& right) {
    return left.row != right.row ? left.row < right.row : left.column < right.column;
  });
  std::vector<int> dropped;
  for (const auto& [row, column] : faults_) {
    if (!dropped.empty() && dropped.back() == row) continue;
    data_fault(cells_of(static_cast<size_t>(column))[row], column,
               static_cast<int>(first_line_of_batch() + row));
    if (layout_.error_mode == ErrorMode::kStop) throw CQXException(QX_ERROR_INVALID_DATA);
    if (layout_.error_mode == ErrorMode::kSkipLine) dropped.push_back(row);
  }
  faults_.clear();
  if (dropped.empty()) return;
  for (const auto& field : fields_) field->drop(dropped, batch_rows_);
  rows_ -= static_cast<long>(dropped.size());
}

/// Takes the lines of the block for typical ones.
void CTextParser::reserve_rows() {
  const auto lines = static_cast<double>(std::count(block_.begin(), block_.end(), '\n') + 1);
  const double share = static_cast<double>(size_) / static_cast<double>(block_.size());
  const double rows = lines * share * 1.01 + 16;
  const long wanted = std::min(static_cast<long>(rows), limit_);
  for (const auto& field : fields_) field->CreateMemCache(wanted);
}

template <int N>
void DelimitedParser<N>::parse_lines(const char* begin, const char* end) {
  Finder finder(begin, end, delimiters_);
  for (const char* line = begin; line < end;) {
    const char* const* const stops = finder.plain_line(line, this->inputs());
    line = stops != nullptr ? take_plain_line(line, stops) : parse_line(finder, line, end);
  }
}

// Each returns the next line's begin.

/// A line without quotes and faults, which ends with a line feed.
template <int N>
inline const char* DelimitedParser<N>::take_plain_line(const char* line, const char* const* stops) {
  const auto cells = this->line_cells();
  const int last = this->inputs() - 1;
  for (int i = 0; i <= last; ++i) {
    cells[i] = {line, static_cast<int>(stops[i] - line)};
    line = stops[i] + 1;
  }
  if (cells[last].size > 0 && line[-2] == '\r') --cells[last].size;
  this->take_row();
  return line;
}

template <int N>
const char* DelimitedParser<N>::parse_line(Finder& finder, const char* line, const char* end) {
  const int wanted = this->inputs();
  const auto cells = this->line_cells();
  Cell surplus;
  int fields = 0;
  int status = 0;
  for (const char* begin = line;; ++fields) {
    const char* const stop =
        parse_cell(finder, begin, end, fields < wanted ? cells[fields] : surplus, status);
    if (status < 0) {
      const char* const line_end = std::find(stop, end, '\n');
      const char* const next = line_end < end ? line_end + 1 : end;
      finder.seek(next);
      this->take_bad_scan(status);
      return next;
    }
    begin = stop + 1;
    if (stop < end && *stop != '\n') continue;
    const char* const next = std::min(begin, end);
    if (++fields == wanted) {
      this->take_row();
    } else {
      this->take_bad_count(fields);
    }
    return next;
  }
}

template <int N>
inline const char* DelimitedParser<N>::parse_cell(Finder& finder, const char* begin,
                                                  const char* end, Cell& cell, int& status) {
  if (*begin == '"' && begin < end) {
    const char* const stop = parseQuoted(begin + 1, end, cell, status);
    if (status >= 0) finder.seek(std::min(stop + 1, end));
    return stop;
  }
  const char* const stop = finder.next();
  const char* last = stop;
  if (last > begin && last[-1] == '\r' && (stop == end || *stop == '\n')) --last;
  if (last - begin > kMaxUnquotedCell) status = QX_ERROR_TEXT_FIELD;
  cell = {begin, static_cast<int>(last - begin)};
  return stop;
}

template <int N>
const char* DelimitedParser<N>::parseQuoted(const char* begin, const char* end, Cell& cell,
                                            int& status) {
  const QuotedCell found = scan_quoted(begin, end, delimiters_);
  status = found.status;
  if (status < 0) return found.stop;
  cell = this->unquoted(found.cell, found.doubled);
  return found.stop;
}

template class DelimitedParser<1>;
template class DelimitedParser<5>;

void CValueListParser::parse_lines(const char* begin, const char* end) {
  constexpr char kEndMark = '\xff';  // in front of a value: the list ends here
  Finder finder(begin, end, delimiters());
  for (const char* value = begin; value < end && *value != kEndMark;) {
    int status = 0;
    const char* stop = parse_cell(finder, value, end, line_cells()[0], status);
    if (status < 0) {
      finder.seek(stop);
      stop = finder.next();
    } else {
      take_row();
    }
    value = stop + 1;
    if (value != end || *stop != ',') continue;
    line_cells()[0] = {value, 0};  // what a last comma separates
    take_row();
  }
}

CUSRParser::CUSRParser(const DataLayout& layout, const std::string& file, CatalogErrorInfo& errors)
    : DelimitedParser(layout, file, errors,
                      {layout.separators[0], layout.separators[1], layout.separators[2],
                       layout.separators[3], layout.separators[4], '\n'}) {}

void CFixedLengthParser::parse_lines(const char* begin, const char* end) {
  for (const char* line = begin; line < end;) {
    const char* stop = std::find(line, end, '\n');
    const char* const next = std::min(stop + 1, end);
    if (stop > line && stop[-1] == '\r') --stop;
    parse_line(line, stop, next);
    line = next;
  }
}

void CFixedLengthParser::parse_line(const char* line, const char* stop, const char* next) {
  // The last field of the data may be short when no line end follows.
  const bool open_end = at_data_end(next) && next[-1] != '\n';
  for (int i = 0; i < inputs(); ++i) {
    const int width = layout_.inputs[static_cast<size_t>(i)].width;
    const int size = static_cast<int>(std::min<long>(width, stop - line));
    if (size < width && !(open_end && i == inputs() - 1)) {
      return take_short_field(width, size);
    }
    line_cells()[i] = {line, size};
    line += size;
  }
  if (line < stop) return take_surplus();
  take_row();
}

std::unique_ptr<CTextParser> make_parser(const DataLayout& layout, const std::string& file,
                                         CatalogErrorInfo& errors) {
  switch (layout.file_type) {
    case FileType::kTab: return std::make_unique<CTABParser>(layout, file, errors);
    case FileType::kFix: return std::make_unique<CFixedLengthParser>(layout, file, errors);
    case FileType::kUser: return std::make_unique<CUSRParser>(layout, file, errors);
    case FileType::kCsv: return std::make_unique<CCSVParser>(layout, file, errors);
    default: return std::make_unique<CPlainTextParser>(layout, file, errors);
  }
}

}  // namespace qxe
