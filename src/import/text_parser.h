// Text parsers: they divide the lines of a data file into cells and hand them, a batch of rows at a
// time, to the fields of the columns. A parser gets a range of whole lines and reads it by blocks
// of whole lines, so no line ever lies across two blocks; fields keep no text but the distinct
// ones.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "import/catalog.h"
#include "import/cell_finder.h"

namespace qxe {

class CatalogErrorInfo;

/// The base of all: fault policy, batches and fields. A derived class divides lines.
class CTextParser : NonCopyable {
 public:
  /// `file` is the name that faults show. Both references must outlive the parser.
  CTextParser(const DataLayout& layout, const std::string& file, CatalogErrorInfo& errors);
  virtual ~CTextParser();

  // Each parses one share of the data, once, and throws the status of a fault that ends the import.
  /// Takes the lines between two offsets of a file, up to the one that gives row number `limit`.
  void ParseFile(const SourceFile& file, long begin, long end, long limit);
  /// Takes data that stand in memory as a whole; SourceFile::kReadable bytes follow them.
  void ParseMem(const char* begin, const char* end);

  /// Lines read, good and bad; rows stored.
  long lines() const { return lines_; }
  long rows() const { return rows_; }
  CField& field(size_t column) { return *fields_[column]; }
  std::unique_ptr<CField> take_field(size_t column) { return std::move(fields_[column]); }

 protected:
  virtual void parse_lines(const char* begin, const char* end) = 0;
  /// Notes a value that does not convert.
  virtual void data_fault(const Cell& cell, int column, int line);

  const std::string& file() const { return file_; }
  CatalogErrorInfo& errors() { return errors_; }
  int inputs() const { return static_cast<int>(layout_.inputs.size()); }
  bool at_data_end(const char* place) const { return place == data_end_; }
  /// Where the cells of the present line go, by input field.
  class LineCells {
   public:
    Cell& operator[](int input) const { return columns_[input][row_]; }

   private:
    friend class CTextParser;
    LineCells(Cell* const* columns, int row) : columns_(columns), row_(row) {}

    Cell* const* columns_;
    int row_;
  };
  LineCells line_cells() const { return {cells_of_input_.data(), batch_rows_}; }
  /// A quoted cell without its quotes; the text stays until the batch is stored.
  Cell unquoted(const Cell& cell, bool doubled);

  // Each ends a line.
  void take_row();
  void take_bad_scan(int status);
  void take_bad_count(int fields);
  /// Of fixed width: bytes left behind the last field, or a field shorter than it should be.
  void take_surplus();
  void take_short_field(int width, int size);

  const DataLayout& layout_;

 private:
  struct Fault {
    int row;  // in the batch
    int column;
  };

  /// Counts a bad line, the batch before it being stored; true when faults are logged.
  bool begin_fault();
  void fixed_width_fault() const;
  /// Ends the import, unless bad lines are left out.
  void fail_unless_skipping(int status) const;
  void parse_wanted_rows(const char* begin, const char* end, bool last);
  void parse_block(const char* begin, const char* end, bool last);
  void finish();
  void store_batch();
  void handle_faults();
  void reserve_rows();
  /// Cells of a column. A cache line lies between columns: at distances of a power of two the cells
  /// of one line would fall into one set of the cache.
  size_t cell_stride() const { return static_cast<size_t>(batch_size_) + 64 / sizeof(Cell); }
  Cell* cells_of(size_t column) { return cells_.data() + column * cell_stride(); }
  long first_line_of_batch() const { return lines_ - batch_rows_ + 1; }

  const std::string& file_;
  CatalogErrorInfo& errors_;
  std::vector<std::unique_ptr<CField>> fields_;

  int batch_size_;
  int batch_rows_ = 0;
  std::vector<Cell> cells_;            // of each column, then of dropped fields
  std::vector<Cell*> cells_of_input_;  // where the cells of an input field begin
  std::deque<std::string> unquoted_;   // texts of cells that do not stand in the file as they are
  std::vector<Fault> faults_;
  std::vector<int> bad_;  // positions in a batch

  long size_ = 0;                   // of the share
  long limit_ = 0;                  // rows wanted
  std::string_view block_;          // in memory
  const char* data_end_ = nullptr;  // once the block in memory is the data's last
  long lines_ = 0;
  long rows_ = 0;
};

/// Cells between delimiters, `N` separators being possible.
template <int N>
class DelimitedParser : public CTextParser {
 public:
  DelimitedParser(const DataLayout& layout, const std::string& file, CatalogErrorInfo& errors,
                  const Delimiters<N>& delimiters)
      : CTextParser(layout, file, errors), delimiters_(delimiters) {}

 protected:
  using Finder = CellFinder<N>;

  void parse_lines(const char* begin, const char* end) override;
  /// Returns the delimiter behind the cell, or the end. After a negative status the result is a
  /// place in the cell's line.
  const char* parse_cell(Finder& finder, const char* begin, const char* end, Cell& cell,
                         int& status);
  const Delimiters<N>& delimiters() const { return delimiters_; }

 private:
  const char* take_plain_line(const char* line, const char* const* stops);
  const char* parse_line(Finder& finder, const char* line, const char* end);
  const char* parseQuoted(const char* begin, const char* end, Cell& cell, int& status);

  const Delimiters<N> delimiters_;
};

class CCSVParser : public DelimitedParser<1> {
 public:
  CCSVParser(const DataLayout& layout, const std::string& file, CatalogErrorInfo& errors)
      : DelimitedParser(layout, file, errors, {',', '\n'}) {}
};

class CTABParser : public DelimitedParser<1> {
 public:
  CTABParser(const DataLayout& layout, const std::string& file, CatalogErrorInfo& errors)
      : DelimitedParser(layout, file, errors, {'\t', '\n'}) {}
};

/// A list of values for the only column: commas and line ends separate them alike, and each is a
/// row. A value that breaks the rules of quoting or is too long is left out.
class CValueListParser : public CCSVParser {
 public:
  using CCSVParser::CCSVParser;

 protected:
  void parse_lines(const char* begin, const char* end) override;
};

/// Five separators of the user's choice.
class CUSRParser : public DelimitedParser<5> {
 public:
  CUSRParser(const DataLayout& layout, const std::string& file, CatalogErrorInfo& errors);
};

/// Cells of fixed width, without separators or quotes.
class CFixedLengthParser : public CTextParser {
 public:
  using CTextParser::CTextParser;

 protected:
  void parse_lines(const char* begin, const char* end) override;

 private:
  void parse_line(const char* line, const char* stop, const char* next);
};

/// The parser for a layout's file type.
std::unique_ptr<CTextParser> make_parser(const DataLayout& layout, const std::string& file,
                                         CatalogErrorInfo& errors);

}  // namespace qxe
