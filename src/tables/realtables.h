// The real table: it stores its own filters and sets. A member is defined in the folder of its
// topic: filters, sets, rows and reading here, searches and sorts in search, export in import.
#pragma once

#include <optional>

#include "search/find_cursor.h"
#include "tables/derived_tables.h"
#include "tables/tables.h"

namespace qxe {

class RowDeletion;
class TJoinTable;

class TRealTable : public TBaseTable {
 public:
  /// Empty object for loaders.
  TRealTable() = default;
  /// A table with a root set of `rows` rows. Throws QX_ERROR_GEN_TABLE_NAME for a name that cannot
  /// be made unique.
  TRealTable(int id, const char* name, int rows);
  /// The same without a root set, which the caller adds.
  TRealTable(int id, const char* name);
  /// Reads a real table's section behind its type word, under the id and name that it has there.
  /// What does not fit together throws QX_ERROR_FILE_FORMAT: a table that was read is safe to use.
  explicit TRealTable(SectionReader& reader);
  ~TRealTable() override;

  int GetNFilter() const override { return static_cast<int>(filters_.size()); }
  void SetCurrentSetID(int id) override;
  TableKind GetType() const override { return TableKind::kReal; }
  int TotalRecs() const override;
  int GetSetSize(int id) const override;
  TSetArray* GetSet(int id) const override;
  void PurgeSubSets() override;
  int DelSet(int id) override;
  int SetNot(int set) override;
  int MppSetNot(int set) override;
  int SetOpe(int op, int set1, int set2) override;
  int MppSetOpe(int op, int set1, int set2) override;
  int SortByField(int filter, int set, int dir) override;
  int SortByRecNo(int filter, int set, int dir) override;
  int SearchByRecNo(int filter, int set, int ope, int n1, int n2) override;
  int SearchByField(int filter, int set, int ope, const char* v1, const char* v2) override;
  int MppSearchByField(int filter, int set, int ope, const char* v1, const char* v2) override;
  int SearchByField2(int filter, int set, int ope, const char* v1, const char* v2) override;
  int MppSortByField(int filter, int set, int dir) override;
  int Search(int filter, int set, const unsigned char* flags) override;
  int SearchByFieldWildCard(int filter, int set, const char* pattern) override;
  int MppSearchByFieldWildCard(int filter, int set, const char* pattern) override;
  TFilter* GetFilter(int id) override;
  int GetFilterIDList(int* out) const override;
  int FilterID2Name(int id, char* table, char* filter) override;
  int ReadData(int set, int filter, int pos, int* type, void* out) override;
  int ReadData(int set, int filter, int pos, int* type, void* out, int size) override;
  int ReadData(int set, int filter, int pos, int* type, long* out) override;
  int GetVNo(int set, int filter, int pos, int* out) override;
  int GetVNoList(int set, int filter, int* out) override;
  void OutCsvPartFile(CsvRowWriter& writer, int set, const CsvLineDiv_t& part) override;
  int CountN(int set, int filter, int* out) override;
  int GetFilterIDFromName(const char* name, int side) override;
  long GetMemSize() const override;
  int SearchByFieldNValues(int filter, int set, int count, const void* values) override;
  int MppSearchByFieldNValues(int filter, int set, int count, const void* values) override;
  int MppIntegratedSortByField(int set, const int* filters, const int* dirs) override;
  void SaveTable(SectionWriter& writer, const TableForm& form) override;
  const char* filter_name(int id) override;
  long set_memory(int set) const override;
  bool refers_to(const TRealTable& target) const override;

  // Filters
  /// Position of a filter in display order, or QX_ERROR_NO_FILTER.
  virtual int FilterID2Pos(int id) const;
  int FilterName2Pos(const char* name) const;
  /// Whether there may be one more.
  bool has_room_for_filter() const;
  int FilterName2ID(const char* name) const;
  TFilter* filter_at(int position) const { return filters_[static_cast<size_t>(position)].get(); }
  /// A free filter name from `seed` into `out` (256 bytes); 0 or QX_ERROR_FILTER_NAME.
  int GenFilterName(const char* seed, char* out) const;
  /// Inserts a filter made of ready arrays at display position `pos` (clamped). `orgFilter` below 0
  /// means built here. Returns the new filter's id or a negative status.
  int AddFilter(int pos, const char* name, Column column, int orgFilter = -1);
  /// Compiles `rows` raw values, `unit` bytes each, into a new filter, on the pool; missing rows
  /// read NULL.
  int AddFilter2(int pos, const char* name, int type, int rows, int unit, const void* data,
                 int orgFilter = -1);
  /// A filter of all NULL.
  int AddEmptyFilter(int pos, const char* name, int type, int orgFilter = -1);
  int MoveFilter(int from, int to);
  /// Deletes a filter that no join uses as its key.
  virtual int DropFilter(int id);
  int SetFilterName(int id, const char* name);
  /// Merges every filter's pending values; 1 if any had some.
  int CheckMergeFilterTVL(bool mpp);

  // Sets
  /// Stores a copy as the current set; returns its id or QX_ERROR_SET_COUNT.
  virtual int AddSet(TSetArray& set);
  virtual int MppAddSet(TSetArray& set);
  /// Stores the set itself as the current set.
  int AddSetWithoutCopy(std::unique_ptr<TSetArray> set);
  /// The same without making it current: what a plain search does with its result.
  int register_set(std::unique_ptr<TSetArray> set);
  /// The next set gets id `next`, which must lie above the last id in use.
  int ResetSetID(int next);
  TSetArray& root_set() const { return *sets_[0]; }

  // Rows
  /// Throws QX_ERROR_HIGH_SPEED_FILTER for a table with a high-speed filter, which can neither gain
  /// nor lose rows. The attempt closes the find cursor.
  void check_rows_changeable();
  /// Inserts `count` NULL rows before row `pos`; 0 means before row 1, beyond the end means at the
  /// end. The new rows are in the root set alone. Returns `count` or a negative status; throws
  /// QX_ERROR_HIGH_SPEED_FILTER. A failure leaves the table as it was.
  int InsRows(int pos, int count);
  /// Deletes `count` rows from row `start` on, those that exist. The rows behind them close up, in
  /// sets too. Returns the rows deleted or a negative status; throws QX_ERROR_HIGH_SPEED_FILTER. A
  /// failure leaves the table as it was.
  int DelRows(int start, int count);
  /// The same for the rows at `count` positions, all of which exist, from `start` (from 1) on in a
  /// set.
  int DelRowsEx(int set, int start, int count);

  // Values
  /// Writes `count` values, an array of the filter's elements (strings as pointers), to the rows at
  /// positions `start` (from 1) onward of a set; the count is cut to the set. Returns the rows
  /// written or a negative status; throws QX_ERROR_HIGH_SPEED_FILTER. A failure leaves the table as
  /// it was.
  int OverWriteEx(int filter, int set, int start, int count, void* data);
  int MppOverWriteEx(int filter, int set, int start, int count, void* data);
  /// The same for decimals of another scale, rounded as the filter rounds. QX_ERROR_DATA_SIZE for
  /// one that does not fit.
  int OverWriteExNumeric(int filter, int set, int start, int count, const Numeric* data, int scale,
                         int rounding);
  /// Writes one value to those rows.
  int FillEx(int filter, int set, int start, int count, void* value);
  int MppFillEx(int filter, int set, int start, int count, void* value);

  /// Positions (from 1) in a set that meet a condition.
  int SearchByRowNo(int set, int ope, int n1, int n2);
  /// Rows of a set by whether the value of an integer filter is among those of a set of `other`;
  /// `out` keeps those whose value is not. NULL is a value like others.
  int MppExtractJoinInOut(int set, int filter, TRealTable& other, int otherSet, int otherFilter,
                          bool out);
  /// The first row of each distinct combination of the filters in a list that ends below 1.
  int MppExtractUniqueReal(int set, const int* filters);

  // High-speed search: a marked set is kept in the order of a filter, while the filter is enabled.
  /// Marks a set for searches by a filter, or takes the mark away; 0 also when there is nothing to
  /// do.
  int HighSpeedSearchSetMark(int set, int filter, bool on);
  /// 1 when the set is marked for the filter, 0 when not.
  int HighSpeedSearchHasMark(int set, int filter);
  /// Fills the marked sets of a filter, below 1 of all filters, and freezes it, or ends that. A
  /// failure changes nothing.
  int HighSpeedSearchEnable(int filter, bool on);

  // The find cursor. Each of the first four closes it, marks the rows that meet a condition (EQ to
  // GT, in strings to ENDS; NULL is the lowest value and no more), and returns its search id or a
  // negative status; it is closed then. It closes too when rows are inserted or deleted and when
  // its filter is dropped. Values that are overwritten do not change it.
  int OpenIntFind(int filter, int ope, int v1, int v2);
  /// For the whole double family.
  int OpenFloatFind(int filter, int ope, double v1, double v2);
  int OpenNumericFind(int filter, int ope, const Numeric& v1, const Numeric& v2);
  int OpenStrFind(int filter, int ope, const char* v1, const char* v2);
  /// 1 with the position (from 1) of the next hit in a set behind `position`, or before it; 0 at
  /// the end; or a negative status.
  int GetNextHit(int searchId, int set, int position, bool backward, int* filter, int* hit) const;
  /// The search id, or 0 and nothing else while no cursor is open.
  int GetFindStatus(int* hitCount, int* filter) const;
  void CloseFind() { find_cursor_.close(); }
  /// Position (from 1) of the first occurrence of a row in a set, 0 when it is not there, or
  /// QX_ERROR_NO_SET.
  int FindRecNo(int set, int row) const;

  // Derived tables: each of these fills this table, which is new and has no rows and no filters
  // yet. Their columns are shared out among the workers; the Mpp forms differ in the name of their
  // ring entries only. A negative status or an exception leaves a table that is to be deleted.
  /// All rows and columns of `source`.
  int DuplicateRealTable(TRealTable& source);
  int MppDuplicateRealTable(TRealTable& source) { return DuplicateRealTable(source); }
  /// The rows of a set, in set order.
  int ExtractRealTable(int set, TRealTable& source, const ExtractedColumns& columns);
  int MppExtractRealTable(int set, TRealTable& source, const ExtractedColumns& columns);
  /// The rows of two sets, one below the other.
  int CombineRealTable(const CombineSource& first, const CombineSource& second,
                       CombinePseudo pseudo);
  int MppCombineRealTable(const CombineSource& first, const CombineSource& second,
                          CombinePseudo pseudo);
  /// The pairs of a join's set.
  int ConvertJoinToReal(TJoinTable& join, int set, const RealizedColumns& columns);
  /// A root set of `rows` rows for a table that has none.
  void add_root_set(int rows);
  /// A further filter, under `name` as it is when that is free, whose column is still to come.
  TFilter& add_blank_filter(const char* name);

  // Derived filters, at the end. Each returns the new filter's id or a negative status.
  int DupFilter(int id);
  /// Converts to another data type; `info` is that of decimals, null for the usual one, or for a
  /// plain copy of decimals.
  int DupFilterEx(int id, int type, const NumericInfo* info);
  int MppDupFilterEx(int id, int type, const NumericInfo* info);

  /// Drops the values that no row uses. No row's value changes.
  int CondenseFilter(int id);
  int CondenseTable();
  int MppCondenseTable();

  long GetBorrowedSize() const;

 private:
  struct ValueEdit;
  struct EditTarget;

  /// Merges pending values and tidies text lists up, so that workers can read and copy filters.
  void settle_values();
  int extract_rows(const char* layer, int set, TRealTable& source, const ExtractedColumns& columns);
  int combine(const char* layer, const CombineSource& first, const CombineSource& second,
              CombinePseudo pseudo);
  int duplicate_filter(const char* layer, int id, int type, const NumericInfo* info);
  int condense_filters(const char* layer);
  void reserve_rows(int rows);
  /// The tables that use this one's value numbers get their own before these change.
  void detach_dependents();
  int delete_rows(RowDeletion& deletion);
  std::optional<EditTarget> locate(ValueEdit& edit, int* status) const;
  int edit_values(ValueEdit edit);
  /// Makes `column` a filter under a free name; the checks have been made.
  int insert_filter(int pos, const char* name, Column column, int orgFilter);
  /// QX_ERROR_FILTER_COUNT or QX_ERROR_FILTER_NAME after logging under `layer`, else 0.
  int check_new_filter(const char* layer, const char* countText, const char* name) const;
  /// The set if it has position `pos`, or null.
  const TSetArray* set_with(int set, int pos) const;
  template <class PutRow, class Put>
  int read_at(int set, int filter, int pos, int* type, PutRow&& put_row, Put&& put);
  template <class Store, class Make>
  int make_set(const char* layer, int filter, int set, Store store, Make&& make);
  int search_values(const char* layer, int filter, int set, int count, const void* values);
  template <class Array, class Value>
  int open_find(const char* layer, const char* typeText, int filter, int ope, Value v1, Value v2);
  int search_wildcard_pattern(const char* layer, int filter, int set, const char* pattern);
  void save_sets(SectionWriter& writer, bool one_set);
  void save_filters(SectionWriter& writer);
  void save_sorted_sets(SectionWriter& writer);
  void load_sets(SectionReader& reader);
  void load_filters(SectionReader& reader, int data_version);
  void load_sorted_sets(SectionReader& reader);

  std::vector<std::unique_ptr<TSetArray>> sets_;   // at the positions of set_ids_
  std::vector<std::unique_ptr<TFilter>> filters_;  // in display order
  int MaxFilterIDs = 0;                            // last filter id issued
  FindCursor find_cursor_;
};

}  // namespace qxe
