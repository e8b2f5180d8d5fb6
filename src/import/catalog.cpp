#include "import/catalog.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>

#include "calc/date_formats.h"
#include "import/catalog_text.h"
#include "import/errlog.h"
#include "import/source_file.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

constexpr int kMaxColumns = TBaseTable::kMaxFilters;
constexpr int kMaxWidth = 4095;
constexpr int kMaxScale = 38;

/// A whole number, or -1.
int number_of(std::string_view word) {
  int number = -1;
  const auto [rest, fault] = std::from_chars(word.data(), word.data() + word.size(), number);
  return fault == std::errc() && rest == word.data() + word.size() ? number : -1;
}

/// Type of a column by its letter, 0 for another letter.
int type_of_letter(char letter) {
  switch (letter & ~0x20) {  // as a capital
    case 'I': return QX_DT_INTEGER;
    case 'F': return QX_DT_DOUBLE;
    case 'D': return QX_DT_DATE;
    case 'T': return QX_DT_TIME;
    case 'A': return QX_DT_STRING;
    case 'E': return QX_DT_DATETIME;
    case 'N': return QX_DT_DECIMAL;
    default: return 0;
  }
}

[[noreturn]] void fail(int status) {
  throw CQXException(status, "Failed to parse catalog");
}

/// A token, empty when the line has fewer.
const std::string& token_at(const std::vector<std::string>& tokens, size_t place) {
  static const std::string empty;
  return place < tokens.size() ? tokens[place] : empty;
}

}  // namespace

void CCatalogParser::init() {
  set_error_log(CErrorLog::kDefaultName);
  CErrorLog::isBegin = true;
}

void CCatalogParser::set_error_log(const std::string& name) {
  const std::string path = name.starts_with('/') ? name : build_AbsoluteName(directory_, name);
  unlink(path.c_str());
  LOGOBJ.setFileName(path.c_str());
}

int CCatalogParser::readInfo(const std::string& path) {
  path_ = path;
  const FileText file = open_logged(path).read_all();
  for (const char* line = file.begin(); line < file.end();) {
    const char* const stop = std::find(line, file.end(), '\n');
    ++row_;
    read_line(removeSpaceCR({line, static_cast<size_t>(stop - line)}));
    line = stop + 1;
  }
  check_complete();
  return static_cast<int>(layout_.columns.size());
}

void CCatalogParser::verifyItems(const TRealTable& table) {
  const int filters = table.GetNFilter();
  const int items = static_cast<int>(layout_.columns.size());
  if (filters != items) {
    LogMsg("FILTER MISMATCH \t----->\tFilters - Items [%d - %d] ", filters, items);
    if (layout_.error_mode != ErrorMode::kContinue) {
      throw CQXException(QX_ERROR_CATALOG, "FILTER MISMATCH \t----->\tFilters - Items [%d - %d] ",
                         filters, items);
    }
    if (filters == 0) throw CQXException(QX_ERROR_PARAMETER, "No Filter");
    drop_columns(std::min(filters, items));
  }
  for (size_t i = 0; i < layout_.columns.size(); ++i) {
    if (layout_.columns[i].type == table.filter_at(static_cast<int>(i))->data_type()) continue;
    throw CQXException(QX_ERROR_MERGE_TYPE, "Illegal data type");
  }
}

/// Makes the columns behind the first `kept` ones fields that are read and dropped.
void CCatalogParser::drop_columns(int kept) {
  layout_.columns.resize(static_cast<size_t>(kept));
  for (InputField& input : layout_.inputs) {
    if (input.column >= kept) input.column = -1;
  }
}

void CCatalogParser::check_complete() const {
  if (layout_.file_type == FileType::kNone) {
    LogMsg("NO FILE FORMAT IS SPECIFIED");
    fail(QX_ERROR_CATALOG);
  }
  if (layout_.columns.empty()) {
    LogMsg("NO FILTER IS SPECIFIED");
    fail(QX_ERROR_CATALOG);
  }
  // The file type may stand behind the columns.
  for (size_t input = 0; input < layout_.inputs.size(); ++input) check_width(input);
}

void CCatalogParser::read_line(const std::string& line) {
  if (line.empty()) return;
  if (line.starts_with("//")) {
    read_directive(get_TabSepToken(line));
  } else {
    read_column(get_TabSepToken(line));
  }
}

// Names of character codes are comments here: separators, quotes and line ends are bytes in every
// code, and nothing is converted.
void CCatalogParser::read_directive(const Tokens& tokens) {
  const std::string& word = tokens[0];
  if (same_word(word, "//CSV")) {
    layout_.file_type = FileType::kCsv;
  } else if (same_word(word, "//TAB")) {
    layout_.file_type = FileType::kTab;
  } else if (same_word(word, "//FIX")) {
    layout_.file_type = FileType::kFix;
  } else if (same_word(word, "//CUTTOP")) {
    layout_.title_line = true;
  } else if (same_word(word, "//USR")) {
    set_user_separators(tokens);
  } else if (same_word(word, "//ERROR")) {
    set_error_mode(token_at(tokens, 1));
  } else if (same_word(word, "//ERRORLOG") && !token_at(tokens, 1).empty()) {
    set_error_log(tokens[1]);
  }
}

void CCatalogParser::set_user_separators(const Tokens& tokens) {
  layout_.separators.fill('\0');
  for (size_t i = 0; i < layout_.separators.size(); ++i) {
    const std::string& token = token_at(tokens, i + 1);
    if (token == "\\t") {
      layout_.separators[i] = '\t';
    } else if (token.size() == 1) {
      layout_.separators[i] = token[0];
    }
  }
  const bool any = std::any_of(layout_.separators.begin(), layout_.separators.end(),
                               [](char separator) { return separator != '\0'; });
  layout_.file_type = any ? FileType::kUser : FileType::kCsv;
}

void CCatalogParser::set_error_mode(const std::string& word) {
  if (same_word(word, "CONTINUE")) layout_.error_mode = ErrorMode::kContinue;
  if (same_word(word, "STOP")) layout_.error_mode = ErrorMode::kStop;
  if (same_word(word, "NONE")) layout_.error_mode = ErrorMode::kNone;
  if (same_word(word, "SKIPLINE")) layout_.error_mode = ErrorMode::kSkipLine;
}

void CCatalogParser::read_column(const Tokens& tokens) {
  if (token_at(tokens, 0).empty() || token_at(tokens, 1).empty() || token_at(tokens, 2).empty()) {
    LogMsg("QX_CATALOG_PARSE_ERROR\t----->\t in %s\t\t@ Row = %d ", path_.c_str(), row_);
    fail(QX_ERROR_CATALOG);
  }
  ColumnDescription column;
  column.type = type_of_letter(tokens[0][0]);
  column.name = tokens[2];
  if (column.type == 0) {
    LogMsg("UNDEFINED FILTER TYPE\t----->\t[%s] in %s\t\t@ Row = %d ", tokens[0].c_str(),
           path_.c_str(), row_);
    fail(QX_ERROR_NOT_STRING);
  }
  if (column.name.size() > kMaxNameSize) {
    LogMsg("FILTERS NAME SIZE EXCEED MAXIMUM LIMIT\t\t [ > %d] ", kMaxNameSize);
    fail(QX_ERROR_CATALOG);
  }
  if (layout_.inputs.size() == kMaxColumns) {
    LogMsg("FILTERS EXCEED MAXIMUM LIMIT\t\t [ > %d] ", kMaxColumns);
    fail(QX_ERROR_CATALOG);
  }
  const bool skipped = std::any_of(tokens.begin() + 3, tokens.end(),
                                   [](const std::string& word) { return same_word(word, "SKIP"); });
  layout_.inputs.push_back(
      {number_of(tokens[1]), skipped ? -1 : static_cast<int>(layout_.columns.size())});
  width_words_.push_back({tokens[1], row_});
  check_width(layout_.inputs.size() - 1);
  if (skipped) return;
  read_options(tokens, column);
  layout_.columns.push_back(std::move(column));
}

void CCatalogParser::check_width(size_t input) const {
  const int width = layout_.inputs[input].width;
  if (layout_.file_type != FileType::kFix || (width >= 1 && width <= kMaxWidth)) return;
  LogMsg("FILTER SIZE LIMIT EXCEEDED (>=%d) \t----->\t[%s] in %s\t\t@ Row = %d ", kMaxWidth + 1,
         width_words_[input].word.c_str(), path_.c_str(), width_words_[input].row);
  fail(QX_ERROR_CATALOG);
}

void CCatalogParser::read_options(const Tokens& tokens, ColumnDescription& column) const {
  const std::string& first = token_at(tokens, 3);
  switch (column.type) {
    case QX_DT_DATE: column.date_format = getDateFormatFromTypeStr(first.c_str()); break;
    case QX_DT_TIME: column.time_format = getTimeFormatFromTypeStr(first.c_str()); break;
    case QX_DT_DATETIME:
      column.date_format = getDateFormatFromTypeStr(first.c_str());
      column.time_format = getTimeFormatFromTypeStr(token_at(tokens, 4).c_str());
      break;
    case QX_DT_DECIMAL: read_decimal_options(tokens, column.info); break;
    default: break;
  }
}

void CCatalogParser::read_decimal_options(const Tokens& tokens, NumericInfo& info) const {
  const std::string& scale = token_at(tokens, 3);
  if (!scale.empty()) {
    info.scale = number_of(scale);
    if (info.scale < 0 || info.scale > kMaxScale) {
      LogMsg("QX_ERROR_INVALID_SCALE\t----->\t[%s] in %s\t\t@ Row = %d ", scale.c_str(),
             path_.c_str(), row_);
      fail(QX_ERROR_CATALOG);
    }
  }
  const std::string& rounding = token_at(tokens, 4);
  if (!rounding.empty()) {
    info.rounding = TransNumericRoundType(rounding);
    if (info.rounding == QX_NULL_INT) {
      LogMsg("QX_ERROR_INVALID_ROUNDMODE\t----->\t[%s] in %s\t\t@ Row = %d ", rounding.c_str(),
             path_.c_str(), row_);
      fail(QX_ERROR_CATALOG);
    }
  }
}

}  // namespace qxe
