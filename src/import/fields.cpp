#include "import/fields.h"

#include <algorithm>

#include "calc/datetime.h"
#include "import/import_step.h"
#include "search/value_list.h"
#include "storage/strings.h"
#include "tables/table_collection.h"

namespace qxe {

std::unique_ptr<CField> make_field(const ColumnDescription& column, bool checked) {
  switch (column.type) {
    case QX_DT_INTEGER: return std::make_unique<CInt_Field>(checked);
    case QX_DT_DOUBLE: return std::make_unique<CDouble_Field>(column, checked);
    case QX_DT_DATE: return std::make_unique<CDate_Field>(column, checked);
    case QX_DT_TIME: return std::make_unique<CTime_Field>(column, checked);
    case QX_DT_STRING: return std::make_unique<CStr_Field>(column, checked);
    case QX_DT_DATETIME: return std::make_unique<CDateTime_Field>(column, checked);
    case QX_DT_DECIMAL: return std::make_unique<CNumeric_Field>(column, checked);
    default:
      throw CQXException(
          report("genItemVector", QX_ERROR_TYPE_MISMATCH, "Illegal data type  : %d", column.type));
  }
}

void CField::drop(std::span<const int> positions, int count) {
  int* const rows = rows_.data() + rows_.size() - count;
  int kept = 0;
  size_t next = 0;
  for (int i = 0; i < count; ++i) {
    if (next < positions.size() && positions[next] == i) {
      ++next;
    } else {
      rows[kept++] = rows[i];
    }
  }
  rows_.shrink(rows_.size() - (count - kept));
  dropped_ = true;
}

namespace {

/// A text for the numeric conversions.
class CleanNumber {
 public:
  explicit CleanNumber(const Cell& cell)
      : text_(stripSpace({cell.text, static_cast<size_t>(cell.size)}, room_)) {}
  std::string_view text() const { return text_; }

 private:
  char room_[kMaxQuotedCell];
  std::string_view text_;
};

std::string_view text_of(const Cell& cell) {
  return {cell.text, static_cast<size_t>(cell.size)};
}

}  // namespace

template <class Array>
TextField<Array>::TextField(const ColumnDescription& column, bool checked, DigitShape shape)
    : CField(checked), column_(column), digits_(shape) {
  values_.push_back(Family<Array>::null());
}

template <class Array>
void TextField<Array>::Str2Data(std::span<const Cell> cells, std::vector<int>& bad) {
  int* const rows = rows_.extend(static_cast<long>(cells.size()));
  if (std::is_same_v<Array, TStrArray>) {
    add_values(texts_.number(cells, rows));
  } else {
    digits_.find(cells, rows);
    number_others(cells, rows);
  }
  if (bad_.empty()) return;
  for (size_t i = 0; i < cells.size(); ++i) {
    const auto text = static_cast<size_t>(rows[i]);
    if (text < bad_.size() && bad_[text]) bad.push_back(static_cast<int>(i));
  }
}

/// Numbers the cells that have none yet and are not empty.
template <class Array>
void TextField<Array>::number_others(std::span<const Cell> cells, int* rows) {
  if (std::count(rows, rows + cells.size(), 0) == 0) return;
  Cell others[TextTable::kMaxCells];
  int places[TextTable::kMaxCells];
  int numbers[TextTable::kMaxCells];
  size_t count = 0;
  for (size_t i = 0; i < cells.size(); ++i) {
    others[count] = cells[i];
    places[count] = static_cast<int>(i);
    count += rows[i] == 0 && cells[i].size > 0;
  }
  if (count == 0) return;
  add_values(texts_.number({others, count}, numbers));
  for (size_t i = 0; i < count; ++i) {
    rows[places[i]] = numbers[i];
    digits_.add(others[i], numbers[i]);
  }
}

template <class Array>
void TextField<Array>::add_values(std::span<const Cell> texts) {
  const auto first = static_cast<size_t>(values_.size());
  Value* const values = values_.extend(static_cast<long>(texts.size()));
  for (size_t i = 0; i < texts.size(); ++i) {
    if constexpr (std::is_same_v<Array, TStrArray>) {
      values[i] = texts[i].text;
      continue;
    }
    bool is_bad = false;
    values[i] = convert(texts[i], &is_bad);
    if (is_bad && checked_) {
      bad_.resize(first + i + 1);
      bad_.back() = true;
    }
  }
}

template <class Array>
void TextField<Array>::Compile() {
  digits_.close();
  texts_.close();
  if (dropped_) forget_unused_texts();
}

template <class Array>
void TextField<Array>::forget_unused_texts() {
  std::vector<int> kept(static_cast<size_t>(values_.size()), 0);
  kept[0] = 1;
  for (long i = 0; i < rows_.size(); ++i) kept[static_cast<size_t>(rows_[i])] = 1;
  int next = 0;
  for (size_t i = 0; i < kept.size(); ++i) {
    if (kept[i] == 0) continue;
    values_[next] = values_[static_cast<long>(i)];
    kept[i] = next++;
  }
  values_.shrink(next);
  for (long i = 0; i < rows_.size(); ++i) rows_[i] = kept[static_cast<size_t>(rows_[i])];
}

namespace {

void set_type_info(TBaseArray&, const ColumnDescription&) {}
void set_type_info(TDoubleArray& array, const ColumnDescription& column) {
  array.SetDispType(column.date_format, column.time_format);
}
void set_type_info(TNumericArray& array, const ColumnDescription& column) {
  array.SetDecimalInfo(column.info);
}

}  // namespace

template <class Array>
std::unique_ptr<TBaseArray> TextField<Array>::merge(std::span<CField* const> shares) {
  std::vector<ValueSource<Array>> sources;
  long total = 0;
  for (CField* const share : shares) {
    auto& own = static_cast<TextField&>(*share);
    own.numbers_ = make_block<int>(own.values_.size());
    sources.push_back({own.values_.data(), own.values_.size(), own.numbers_.get()});
    total += own.values_.size();
  }
  ValueList<Array> list =
      sort_distinct<Array>(std::span<const ValueSource<Array>>(sources), sorting_workers(total));
  auto array = mpp_make_value_array(column_.type, list.size, as_bytes(std::move(list.values)));
  set_type_info(static_cast<Array&>(*array), column_);
  return array;
}

template <class Array>
void TextField<Array>::number_rows(int* out) const {
  const int* const numbers = numbers_.get();
  const int* const texts = rows_.data();
  const long count = rows_.size();
  for (long i = 0; i < count; ++i) out[i] = numbers[texts[i]];
}

template class TextField<TDoubleArray>;
template class TextField<TStrArray>;
template class TextField<TNumericArray>;

double CDouble_Field::convert(const Cell& text, bool* bad) const {
  return Str2Double(CleanNumber(text).text(), checked_, bad);
}

double CDate_Field::convert(const Cell& text, bool* bad) const {
  if (column_.date_format != 0) {
    return Str2DateExType(text_of(text), column_.date_format, checked_, bad);
  }
  return Str2DateInOrder(text_of(text), date_order(), checked_, bad);
}

double CTime_Field::convert(const Cell& text, bool* bad) const {
  if (column_.time_format != 0) {
    return Str2TimeExType(text_of(text), column_.time_format, checked_, bad);
  }
  return Str2Time(text_of(text), checked_, bad);
}

double CDateTime_Field::convert(const Cell& text, bool* bad) const {
  if (column_.date_format != 0) {
    return Str2DateTimeExType(text_of(text), column_.date_format, column_.time_format, checked_,
                              bad);
  }
  return Str2DateTimeInOrder(text_of(text), date_order(), checked_, bad);
}

Numeric CNumeric_Field::convert(const Cell& text, bool* bad) const {
  const std::string number(CleanNumber(text).text());
  Numeric value;
  char* rest = nullptr;
  const int status = RQXNumericStr2Num(number.c_str(), &column_.info, &value, &rest);
  while (status == 0 && *rest == ' ') ++rest;
  if (status != 0 || *rest != '\0') {
    *bad = true;
    RQXNumericSetNan(&value);
  }
  return value;
}

void CStr_Field::Str2Data(std::span<const Cell> cells, std::vector<int>& bad) {
  if (TTableCollection::m_nCutLastSpace == 0) return TextField::Str2Data(cells, bad);
  Cell cut[TextTable::kMaxCells];
  for (size_t i = 0; i < cells.size(); ++i) {
    cut[i] = cells[i];
    while (cut[i].size > 0 && cut[i].text[cut[i].size - 1] == ' ') --cut[i].size;
  }
  TextField::Str2Data({cut, cells.size()}, bad);
}

}  // namespace qxe
