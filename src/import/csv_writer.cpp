#include "import/csv_writer.h"

#include <string.h>

#include <algorithm>

#include "calc/datetime.h"
#include "import/mtexport.h"
#include "storage/family.h"

namespace qxe {

namespace {

// Digits of doubles beyond the column's display decimals, and what a format file may ask for.
constexpr int kExtraDecimals = 3;
constexpr int kMaxFormatDecimals = 15;
constexpr int kMaxScale = 38;

// Lists up to this size stay in the processor's cache when rendered.
constexpr int kMaxCachedValues = 16384;
// Rows for each value that make rendering it in advance pay.
constexpr int kRowsPerCachedValue = 4;

// Rows between asking for a value, asking for its text and writing it.
constexpr int kAhead = 8;
// Bytes of a text to ask for; they often lie in two lines of the cache.
constexpr int kTextStart = 32;

constexpr size_t kBufferSize = 0x100000;

/// The assembler line keeps the compiler from dropping calls of functions that only prefetch.
inline void prefetch_line(const void* address) {
  __builtin_prefetch(address);
  asm volatile("");
}

int double_decimals(const TDoubleArray& values, const EXPTFMT_t* format) {
  if (format != nullptr && format->decimals >= 0 && format->decimals <= kMaxFormatDecimals) {
    return format->decimals;
  }
  return std::max(values.display_scale() + kExtraDecimals, 0);
}

const void* data_of(const TBaseArray* array) {
  return array == nullptr ? nullptr : array->data();
}

const char* pool_of(const TBaseArray* array) {
  return array == nullptr ? nullptr : static_cast<const TStrArray&>(*array).pool();
}

}  // namespace

CsvColumn::CsvColumn(int filterId, const TFilter& filter, const EXPTFMT_t* format,
                     char dateSeparator)
    : filter_id_(filterId),
      filter_(&filter),
      type_(filter.data_type()),
      list_(filter.VL->data()),
      tail_(data_of(filter.TVL)),
      list_size_(filter.VL->FArraySize),
      unit_(filter.VL->FUnitSize),
      date_separator_(dateSeparator) {
  switch (type_) {
    case QX_DT_INTEGER: max_width_ = kIntegerTextSize; break;
    case QX_DT_DOUBLE:
      decimals_ = double_decimals(static_cast<const TDoubleArray&>(*filter.VL), format);
      max_width_ = kDoubleTextSize + decimals_;
      break;
    case QX_DT_STRING:
      pool_ = pool_of(filter.VL);
      tail_pool_ = pool_of(filter.TVL);
      break;
    case QX_DT_DECIMAL:
      info_ = static_cast<const TNumericArray&>(*filter.VL).GetDecimalInfo();
      if (format != nullptr && format->decimals <= kMaxScale) {
        decimals_ = format->decimals;
        rounding_ = format->rounding;
      }
      max_width_ = kDecimalTextSize;
      break;
    default: max_width_ = kSerialTextSize;
  }
}

long CsvColumn::typical_width() const {
  if (!is_string()) return max_width_ / 2;
  return static_cast<const TStrArray&>(*filter_->VL).pool_used() / std::max(list_size_, 1);
}

void CsvColumn::cache_texts(long rows) {
  if (is_string() || list_size_ > kMaxCachedValues) return;
  if (list_size_ > rows / kRowsPerCachedValue) return;
  std::vector<CachedText> texts(static_cast<size_t>(list_size_));
  const Block<char> text = make_block<char>(max_width_ + kTextOverrun);
  for (int number = 0; number < list_size_; ++number) {
    const auto size = static_cast<size_t>(render(number, text.get()) - text.get());
    CachedText& entry = texts[static_cast<size_t>(number)];
    if (size > sizeof entry.text) return;
    memcpy(entry.text, text.get(), size);
    entry.size = static_cast<uint8_t>(size);
  }
  cache_ = std::move(texts);
}

inline const char* CsvColumn::string(int number) const {
  return (number >= 0 ? pool_ : tail_pool_) + value<long>(number);
}

bool CsvColumn::is_far() const {
  return list_size_ > kMaxCachedValues;
}

inline void CsvColumn::prefetch_value(int number) const {
  prefetch_line(static_cast<const char*>(list_) + static_cast<long>(number) * unit_);
}

inline void CsvColumn::prefetch_text(int number) const {
  const char* const text = string(number);
  prefetch_line(text);
  prefetch_line(text + kTextStart);
}

char* CsvColumn::put(int number, char* out) const {
  if (cache_.empty() || number < 0) return render(number, out);
  const CachedText& entry = cache_[static_cast<size_t>(number)];
  memcpy(out, entry.text, sizeof entry);
  return out + entry.size;
}

char* CsvColumn::render(int number, char* out) const {
  switch (type_) {
    case QX_DT_INTEGER: {
      const int integer = value<int>(number);
      return Family<TIntArray>::is_null(integer) ? out : put_integer(integer, out);
    }
    case QX_DT_DECIMAL:
      return put_decimal(value<Numeric>(number), info_, decimals_, rounding_, out);
    default: return put_serial(value<double>(number), out);
  }
}

char* CsvColumn::put_serial(double serial, char* out) const {
  if (is_null_double(serial) || serial != serial) return out;
  switch (type_) {
    case QX_DT_DATE: return out + Double2DateStrNoValidation(serial, out, date_separator_);
    case QX_DT_TIME: return out + Double2TimeStrNoValidation(serial, out);
    case QX_DT_DATETIME: return out + Double2DateTimeStrNoValidation(serial, out, date_separator_);
    default: return put_double(serial, decimals_, out);
  }
}

long CsvLayout::max_width() const {
  long width = kTextOverrun;
  for (const CsvColumn& column : columns) width += column.max_width() + 1;
  return width;
}

long CsvLayout::typical_width() const {
  long width = 0;
  for (const CsvColumn& column : columns) width += column.typical_width() + 1;
  return width;
}

CsvRowWriter::CsvRowWriter(const CsvLayout& layout, CCMultiThreadExport& exporter)
    : layout_(layout),
      exporter_(exporter),
      line_room_(static_cast<size_t>(layout.max_width())),
      numbers_(make_block<int>(static_cast<long>(layout.columns.size()) * kBlockRows)) {
  const size_t size = kBufferSize + line_room_;
  buffer_ = make_block<char>(static_cast<long>(size));
  at_ = buffer_.get();
  end_ = at_ + size;
  for (int i = 0; i < columns(); ++i) {
    if (column(i).is_far()) far_columns_.push_back(i);
  }
}

void CsvRowWriter::put_rows(int rows) {
  for (int row = -2 * kAhead; row < 0; ++row) prefetch(row, rows);
  for (int row = 0; row < rows; ++row) {
    prefetch(row, rows);
    put_row(row);
  }
}

/// Two steps, so that the text's place is known when it is asked for.
inline void CsvRowWriter::prefetch(int row, int rows) {
  const int value_row = std::min(row + 2 * kAhead, rows - 1);
  const int text_row = std::clamp(row + kAhead, 0, rows - 1);
  for (const int i : far_columns_) {
    column(i).prefetch_value(numbers(i)[value_row]);
    if (column(i).is_string()) column(i).prefetch_text(numbers(i)[text_row]);
  }
}

void CsvRowWriter::put_row(int row) {
  char* at = with_room(at_, 0);
  const int* number = numbers_.get() + row;
  for (const CsvColumn& column : layout_.columns) {
    at = column.is_string() ? put_string(column.string(*number), at) : column.put(*number, at);
    *at++ = layout_.separator;
    number += kBlockRows;
  }
  at[-1] = '\n';
  at_ = at;
}

inline char* CsvRowWriter::put_string(const char* text, char* at) {
  const size_t size = strlen(text);
  if (size > kBufferSize) {
    flush(at);
    exporter_.put(part_, text, size);
    return buffer_.get();
  }
  at = with_room(at, size);
  memcpy(at, text, size);
  return at + size;
}

inline char* CsvRowWriter::with_room(char* at, size_t size) {
  if (static_cast<size_t>(end_ - at) >= size + line_room_) return at;
  flush(at);
  return buffer_.get();
}

void CsvRowWriter::flush(const char* end) {
  exporter_.put(part_, buffer_.get(), static_cast<size_t>(end - buffer_.get()));
}

void CsvRowWriter::end_part() {
  flush(at_);
  at_ = buffer_.get();
  exporter_.pass_turn();
}

}  // namespace qxe
