// A summary groups the rows of a set by the values of up to 32 dimension filters: one cell for each
// combination of their categories, all of them in memory. A cell is numbered by its coordinates,
// the category numbers; the first dimension is the most significant.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "summary/cell_pass.h"
#include "tables/realtables.h"
#include "tables/table_guest.h"

namespace qxe {

/// One dimension of an open summary.
struct SummaryDimension {
  int filter = 0;
  int category_count = 0;
  int multiplier = 0;
  int list_version = 0;                  // of the filter's value list that the categories stand for
  bool own_map = true;                   // each value is its own category
  bool own_names = true;                 // and its text the category's name
  std::vector<int> categories;           // the caller's map: category of each value number
  std::vector<char> name_text;           // the caller's names of the categories, all in one
  std::vector<char*> names;              // where each begins
  QXCategoryNameFunc name_of = nullptr;  // or what tells them

  /// Whether the caller has said nothing of single values.
  bool is_plain() const { return own_map && own_names; }
  /// As the caller gave it, the copies in place of what was copied.
  _TDimensionDef definition() const;
};

class JoinGroups;

/// What a read gives.
struct SummaryValue {
  int measure_type = 0;
  int value_type = 0;
  int rows = 0;
  const void* value = nullptr;  // null: the cell has none
  NumericInfo info{};           // of decimals
};

/// A table of the collection that is deleted with this, if it still exists then.
class OwnedTable : NonCopyable {
 public:
  ~OwnedTable();

  /// `id` is what made the table; a status below 0 is thrown.
  void adopt(int id);
  TRealTable* get() const { return table_; }

 private:
  TRealTable* table_ = nullptr;
  int id_ = 0;
};

/// Every member throws the status of what is wrong, which it has logged if there are words for it.
class TSummary final : public TableGuest {
 public:
  static constexpr long kMaxCells = 10'000'000;

  /// The definitions are copied.
  TSummary(int handle, TBaseTable& table, int set, int nDim, const _TDimensionDef* dims,
           int measure);
  ~TSummary() override { leave_tables(); }

  void table_goes() override;

  int table_id() const { return table_->id(); }
  int set_id() const { return set_id_; }
  int measure() const { return measure_; }
  int done() const { return done_; }
  int dimension_count() const { return static_cast<int>(dims_.size()); }
  const SummaryDimension& dimension(int i) const { return dims_[static_cast<size_t>(i)]; }

  /// Computes the sum types of a mask; returns those that are done then.
  int SummaryExec(int mask);
  /// One result of one cell. A sum of decimals has type QX_DT_DECIMAL and an info.
  SummaryValue SummaryRead2(int type, const int* coords) const;
  /// The older form: a sum of decimals says it is a double, though its value is a decimal.
  SummaryValue SummaryRead(int type, const int* coords) const;
  /// Name of a category, valid until the next call.
  const char* CategoryRead(int dimNo, int catNo);

  /// A new table of a row for each cell, or each with rows; returns its id.
  int SummaryIntoRealTable(int mask, bool nonEmptyOnly);
  /// The same columns of results, without those of the dimensions, for a table of as many rows.
  void AppendSummaryToRealTable(TRealTable& table, int mask, bool nonEmptyOnly);

 private:
  struct OutputRows;
  struct Averages;

  void define_dimensions(int nDim, const _TDimensionDef* dims);
  bool is_join() const { return table_->GetType() == TableKind::kJoin; }
  void merge_values() const;
  void condense_dimensions() const;
  bool is_sparse() const;
  void work_on_extract();
  void lay_out();
  void copy_map(SummaryDimension& dimension, const int* categories) const;
  void follow_lists();

  TFilter& filter(int id) const;
  std::vector<PassDimension> pass_dimensions(const TSetArray& rows) const;
  CellArrays summed_cells(const TSetArray& rows, int mask);
  CellArrays joined_cells(int mask);
  std::vector<int> cells_of(const JoinGroups& groups) const;
  void note_measure(const TFilter& column);
  void finish(CellArrays& cells) const;
  long cell_at(const int* coords) const;
  SummaryValue value_of(int type, long cell) const;
  const TBaseArray& measure_values() const;

  std::string category_name(int dimNo, int catNo, int table) const;
  OutputRows output_rows(bool nonEmptyOnly) const;
  void add_dimension(TRealTable& target, int dimNo, const OutputRows& rows) const;
  std::unique_ptr<TBaseArray> category_list(int dimNo, int table) const;
  Averages add_results(TRealTable& target, int mask, const OutputRows& rows) const;
  void keep(Averages averages);
  Averages averages_of_cells() const;

  const int handle_;
  TBaseTable* const source_;  // the table that was opened, real or a join
  OwnedTable extract_;        // the rows of a real one's set alone, when that pays
  TBaseTable* table_;         // the one of both that is worked on
  int set_id_;
  int measure_;           // filter id, 0 for none
  int measure_type_ = 0;  // and what it was when the cells were computed
  int measure_version_ = 0;
  NumericInfo measure_info_{};  // of sums of decimals
  std::vector<SummaryDimension> dims_;
  long cell_count_ = 1;
  int done_ = 0;
  CellArrays cells_;
  std::string name_;  // the category name read last
};

/// The name of a category that is a value of a list: the value as text.
std::string DefaultDimName(const TBaseArray& values, int number);

}  // namespace qxe
