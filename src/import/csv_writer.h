// Rows of value numbers to lines of text. A table hands over the value numbers of a block of rows,
// column by column; the values are rendered here.
#pragma once

#include <stdint.h>

#include <vector>

#include "frame/base/memory.h"
#include "import/cell_text.h"
#include "import/export_format.h"
#include "storage/filters.h"

namespace qxe {

class CCMultiThreadExport;

/// One column of an export.
class CsvColumn {
 public:
  CsvColumn(int filterId, const TFilter& filter, const EXPTFMT_t* format, char dateSeparator);

  int filter_id() const { return filter_id_; }
  const TFilter& filter() const { return *filter_; }
  /// Longest text of a value; of strings 0, since they have no limit.
  int max_width() const { return max_width_; }
  /// Bytes that a value takes on average, roughly.
  long typical_width() const;
  bool is_string() const { return type_ == QX_DT_STRING; }

  /// Renders the whole value list in advance when `rows` rows make that pay.
  void cache_texts(long rows);
  /// Whether the values lie so far apart that they must be asked for before they are needed: first
  /// the entry of the list and then, for a string, the text that the entry points at.
  bool is_far() const;
  void prefetch_value(int number) const;
  void prefetch_text(int number) const;
  /// The text of a value number of a column of strings.
  const char* string(int number) const;
  /// Writes the text of a value number of any other column at `out` and returns its end. Writes up
  /// to kTextOverrun bytes of no meaning behind it.
  char* put(int number, char* out) const;

 private:
  // A rendered text, copied whole because that is quicker than by length.
  struct CachedText {
    char text[kTextOverrun - 1];
    uint8_t size;
  };

  template <class Value>
  const Value& value(int number) const {
    return number >= 0 ? static_cast<const Value*>(list_)[number]
                       : static_cast<const Value*>(tail_)[-number];
  }
  char* render(int number, char* out) const;
  char* put_serial(double serial, char* out) const;

  int filter_id_;
  const TFilter* filter_;
  int type_;
  const void* list_;
  const void* tail_;       // pending values, null without any
  const char* pool_ = "";  // of strings
  const char* tail_pool_ = "";
  int list_size_;
  int unit_;  // bytes of an entry
  int decimals_ = -1;
  int rounding_ = -1;
  NumericInfo info_{};
  char date_separator_;
  int max_width_ = 0;
  std::vector<CachedText> cache_;  // by value number; empty when the list is not cached
};

/// What all lines of an export have in common.
struct CsvLayout {
  std::vector<CsvColumn> columns;
  char separator = ',';

  /// Longest line without its strings.
  long max_width() const;
  long typical_width() const;
};

/// Collects lines in a buffer of its own, which goes out to the exporter part by part.
class CsvRowWriter : NonCopyable {
 public:
  static constexpr int kBlockRows = 512;

  CsvRowWriter(const CsvLayout& layout, CCMultiThreadExport& exporter);

  int columns() const { return static_cast<int>(layout_.columns.size()); }
  const CsvColumn& column(int i) const { return layout_.columns[static_cast<size_t>(i)]; }
  /// Where the value numbers of column `i` go for the next block of up to kBlockRows rows.
  int* numbers(int i) { return numbers_.get() + static_cast<long>(i) * kBlockRows; }
  /// Writes a line for each of the block's rows.
  void put_rows(int rows);

  /// What follows belongs to part `part`.
  void begin_part(int part) { part_ = part; }
  void end_part();

 private:
  void prefetch(int row, int rows);
  void put_row(int row);
  char* put_string(const char* text, char* at);
  /// The place for `size` bytes and the rest of a line behind `at`, the end of what is collected.
  char* with_room(char* at, size_t size);
  void flush(const char* end);

  const CsvLayout& layout_;
  CCMultiThreadExport& exporter_;
  int part_ = 0;
  size_t line_room_;
  std::vector<int> far_columns_;
  Block<int> numbers_;
  Block<char> buffer_;
  char* at_;
  char* end_;
};

}  // namespace qxe
