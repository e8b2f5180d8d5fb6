// Fields: what an import collects of one column. A worker's field takes the cells of its share and
// keeps four bytes a row: a raw integer, or the number of the cell's text among the share's
// distinct texts. When all shares are in, `merge` makes the column's value list, and then the rows
// get their numbers in it. So the memory of an import is bounded by rows and distinct values, not
// by the text.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "import/digit_table.h"
#include "import/growing_block.h"
#include "import/text_table.h"
#include "storage/family.h"

namespace qxe {

/// What is told of a column before its data are read.
struct ColumnDescription {
  std::string name;
  int type = QX_DT_STRING;
  int date_format = 0;  // date type of a catalog; 0 is the engine's date order
  int time_format = 0;
  NumericInfo info = TNumericArray::kDefaultInfo;
};

/// One share of a column.
class CField : NonCopyable {
 public:
  virtual ~CField() = default;

  /// Takes the cells of up to TextTable::kMaxCells rows. The positions of those that do not convert
  /// are added to `bad`; their rows are NULL. An unchecked field takes what the conversion makes of
  /// them instead.
  virtual void Str2Data(std::span<const Cell> cells, std::vector<int>& bad) = 0;
  virtual const char* getTypeName() const = 0;
  virtual int getType() const = 0;
  /// Ends the share, on its worker.
  virtual void Compile() = 0;
  /// The value list of a whole column, whose first share this is. Sorted on the worker pool when it
  /// is long. All shares can number their rows from then on.
  virtual std::unique_ptr<TBaseArray> merge(std::span<CField* const> shares) = 0;
  /// Writes the value number of each row.
  virtual void number_rows(int* out) const = 0;

  /// Distinct texts that the share keeps.
  virtual long texts() const { return 0; }

  long rows() const { return rows_.size(); }
  /// Room for this many rows in all.
  void CreateMemCache(long rows) { rows_.reserve(rows); }
  /// Removes the rows at ascending `positions` among the last `count` ones.
  void drop(std::span<const int> positions, int count);

 protected:
  explicit CField(bool checked) : checked_(checked) {}

  const bool checked_;
  GrowingBlock<int> rows_;
  Block<int> numbers_;    // value numbers, after merge
  bool dropped_ = false;  // rows were removed, so that values may have become unused
};

/// The field of a column. Throws QX_ERROR_TYPE_MISMATCH after logging for an unknown type.
std::unique_ptr<CField> make_field(const ColumnDescription& column, bool checked);

class CInt_Field : public CField {
 public:
  explicit CInt_Field(bool checked) : CField(checked) {}

  void Str2Data(std::span<const Cell> cells, std::vector<int>& bad) override;
  const char* getTypeName() const override { return "INTEGER"; }
  int getType() const override { return QX_DT_INTEGER; }
  void Compile() override;
  std::unique_ptr<TBaseArray> merge(std::span<CField* const> shares) override;
  void number_rows(int* out) const override;

 private:
  int convert(Cell cell, bool* bad) const;
  /// Column whose integers lie close together: numbers stand in a table by value.
  std::unique_ptr<TBaseArray> merge_dense(std::span<CField* const> shares, int low, long span);
  std::unique_ptr<TBaseArray> merge_sparse(std::span<CField* const> shares);
  void mark_values(int low, char* marks) const;

  int low_ = 0;  // smallest and largest integer of the share, without NULL
  int high_ = 0;
  long values_ = 0;  // rows that are not NULL
  // After a dense merge the first share's numbers_, by value from dense_low_ - 1 on, NULL's first.
  const int* dense_ = nullptr;
  int dense_low_ = 0;
};

/// A column whose cells are converted once per distinct text.
template <class Array>
class TextField : public CField {
 public:
  void Str2Data(std::span<const Cell> cells, std::vector<int>& bad) override;
  void Compile() override;
  std::unique_ptr<TBaseArray> merge(std::span<CField* const> shares) override;
  void number_rows(int* out) const override;
  int getType() const override { return column_.type; }
  long texts() const override { return values_.size(); }

 protected:
  using Value = typename Family<Array>::Value;

  TextField(const ColumnDescription& column, bool checked, DigitShape shape);

  /// Value of a text that is not empty. One that cannot be read sets `*bad` and is NULL, or, in an
  /// unchecked field, what the type makes of it.
  virtual Value convert(const Cell& text, bool* bad) const = 0;

  const ColumnDescription column_;

 private:
  void number_others(std::span<const Cell> cells, int* rows);
  void add_value(const Cell& text);
  void forget_unused_texts();

  DigitTable digits_;  // finds most texts of some shapes
  TextTable texts_;
  GrowingBlock<Value> values_;  // of the texts
  std::vector<bool> bad_;       // texts that do not convert; ends with the last of them
};

class CDouble_Field : public TextField<TDoubleArray> {
 public:
  CDouble_Field(const ColumnDescription& column, bool checked)
      : CDouble_Field(column, checked, DigitShape::kFixedPoint) {}
  const char* getTypeName() const override { return "DOUBLE"; }

 protected:
  CDouble_Field(const ColumnDescription& column, bool checked, DigitShape shape)
      : TextField(column, checked, shape) {}
  double convert(const Cell& text, bool* bad) const override;
};

class CDate_Field : public CDouble_Field {
 public:
  CDate_Field(const ColumnDescription& column, bool checked)
      : CDouble_Field(column, checked, DigitShape::kDate) {}
  const char* getTypeName() const override { return "DATE"; }

 protected:
  double convert(const Cell& text, bool* bad) const override;
};

class CTime_Field : public CDouble_Field {
 public:
  CTime_Field(const ColumnDescription& column, bool checked)
      : CDouble_Field(column, checked, DigitShape::kTime) {}
  const char* getTypeName() const override { return "TIME"; }

 protected:
  double convert(const Cell& text, bool* bad) const override;
};

class CDateTime_Field : public CDouble_Field {
 public:
  CDateTime_Field(const ColumnDescription& column, bool checked)
      : CDouble_Field(column, checked, DigitShape::kNone) {}
  const char* getTypeName() const override { return "DATETIME"; }

 protected:
  double convert(const Cell& text, bool* bad) const override;
};

class CStr_Field : public TextField<TStrArray> {
 public:
  CStr_Field(const ColumnDescription& column, bool checked)
      : TextField(column, checked, DigitShape::kNone) {}
  const char* getTypeName() const override { return "STRING"; }
  /// Strings lose trailing blanks first when the engine is set so.
  void Str2Data(std::span<const Cell> cells, std::vector<int>& bad) override;

 protected:
  const char* convert(const Cell& text, bool*) const override { return text.text; }
};

class CNumeric_Field : public TextField<TNumericArray> {
 public:
  CNumeric_Field(const ColumnDescription& column, bool checked)
      : TextField(column, checked, DigitShape::kFixedPoint) {}
  const char* getTypeName() const override { return "DECIMAL"; }

 protected:
  Numeric convert(const Cell& text, bool* bad) const override;
};

}  // namespace qxe
