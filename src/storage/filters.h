// A filter is a column: a sorted list of its distinct values and, for each row, the number of its
// value in that list. New values of single rows wait in a small tail list until the next operation
// that needs sorted order merges them.
#pragma once

#include <memory>
#include <vector>

#include "storage/array.h"

namespace qxe {

class SectionReader;
class SectionWriter;
class TRealTable;
class TSetArray;
class TSortedSetArray;

/// Row pointers and value list, as compilation makes them.
struct Column {
  std::unique_ptr<TIntArray> pv;
  std::unique_ptr<TBaseArray> vl;
  bool condensed = false;  // each value is known to belong to a row
};

class TFilter : NonCopyable {
 public:
  static constexpr int kNameSize = 256;

  TFilter() { InitTVL(); }
  /// Throws QX_ERROR_FILTER_NAME for a name that ToFileName refuses.
  TFilter(int id, const char* name);
  /// Deep copy with the same id, name and origin. Throws QX_ERROR_NO_FILTER for null.
  explicit TFilter(const TFilter* other);
  /// Reads a filter section that names filter `id`. Throws QX_ERROR_FILE_FORMAT for one that does
  /// not fit together and QX_ERROR_DATA_TYPE for an unknown value list. That of a join's key need
  /// not begin with NULL.
  TFilter(SectionReader& reader, int id, bool join_key = false);
  ~TFilter();
  /// Writes the filter section. There must be no pending values.
  void SaveFilter(SectionWriter& writer) const;

  /// A copy under another id and name; the attribute block of its row pointers is cleared.
  std::unique_ptr<TFilter> CopyFilter(int id, const char* name) const;
  /// Replaces the column's arrays; an owned old value list is deleted.
  void adopt(Column column);
  /// Replaces the value list alone.
  void adopt_values(std::unique_ptr<TBaseArray> vl);

  /// Whether each value is known to belong to a row. The next change of the rows makes it unknown.
  bool condensed() const { return condensed_; }
  void set_condensed() { condensed_ = true; }

  /// Address form: the array and index that hold the value of value number `p` (below 0: pending).
  const TBaseArray& values_of(int p) const { return p < 0 ? *TVL : *VL; }
  int data_type() const { return ArrayDataTypeEx(*VL); }
  /// Value numbers of `count` ascending values, no two equal (strings as pointers). The value list
  /// takes in those that it lacks, and the row pointers, none of which may be pending, follow. A
  /// failure changes nothing.
  Block<int> numbers_of(Block<char> values, int count, bool mpp);

  // The tail list of pending values.
  void InitTVL();
  /// Tail capacity this filter may have.
  int CalcTVLSize() const;
  /// What `count` new values need: 0 the full path, 1 nothing, 2 a merge first.
  int CheckTVLUse(int count) const;
  void AllocTVL();
  int AppendTVLInt(int value, int row) { return append_tail(&value, row); }
  int AppendTVLDouble(double value, int row) { return append_tail(&value, row); }
  int AppendTVLNumeric(const Numeric& value, int row) { return append_tail(&value, row); }
  int AppendTVLStr(const char* value, int row) { return append_tail(value, row); }
  /// Writes `count` values (laid out as an array of the type; strings as pointers) to the rows at
  /// positions `start` (from 0) onward of `set`. 0, or -1 when the tail has no room for them; that
  /// or an exception leaves the rows as they were.
  int UpdateTVL(int start, int count, void* values, const TSetArray& set);
  /// Writes the one value at `value` to those rows.
  int UpdateTVLFill(int start, int count, void* value, const TSetArray& set);
  /// Tries the tail path; 1 when the values are in, 0 when the caller must recompile the column.
  int UseTVL(int start, int count, void* values, bool fill, bool mpp, TRealTable* table,
             const TSetArray& set);
  /// Folds the tail into the value list. 1 when it merged, 0 when the tail was empty.
  int MergeTVL(bool mpp);
  int pending() const { return FTVLUsed; }
  /// Rises when the value list changes: value numbers from before have lost their meaning.
  int list_version() const { return list_version_; }

  /// Throws QX_ERROR_HIGH_SPEED_FILTER for a high-speed filter.
  void check_changeable() const;
  /// To be called with every change of rows or values, once it cannot fail any more: refuses a
  /// high-speed filter and drops the data of its sorted sets.
  void Taint();
  /// Freezes the filter, so that its sorted sets stay as they are, or allows changes again.
  void HighSpeedSearchEnable(bool on) { high_speed_ = on; }
  bool high_speed() const { return high_speed_; }
  const std::vector<TSortedSetArray*>& sorted_sets() const { return sorted_sets_; }
  void RegisterSortedSet(TSortedSetArray* sorted) { sorted_sets_.push_back(sorted); }
  void UnregisterSortedSet(TSortedSetArray* sorted);

  /// Room for this many rows in all.
  void reserve_rows(int rows);
  /// Opens a gap of `count` NULL rows before row `at`. There must be room for them.
  void insert_rows(int at, int count);

  long GetMemSize() const;
  long GetBorrowedSize() const;

  int FFilterID = 0;
  char FFilterName[kNameSize] = "";
  TIntArray* PVL = nullptr;     // row pointers, element 0 is 0
  TBaseArray* VL = nullptr;     // distinct values ascending, element 0 is NULL
  bool FVLBorrowed = false;     // the lists belong to another object
  int FOrgTblID = 0;            // 0 for a filter built here
  int FOrgFltID = 0;            // own id for a filter built here
  TBaseArray* TVL = nullptr;    // pending values in order of arrival, element 0 is NULL
  TIntArray* TVLRow = nullptr;  // for each pending value the row that uses it

 private:
  template <class Array>
  bool reserve_tail(long entries, long text_bytes);
  int append_tail(const void* value, int row);
  int update_rows(int start, int count, void* values, bool fill, const TSetArray& set);

  int FTVLAlloc = 0;  // capacity, entry 0 included
  int FTVLUsed = 0;   // entries in use, entry 0 not counted
  int FTVLMax = 0;
  int FTVLMinRows = 0;
  int list_version_ = 0;
  bool high_speed_ = false;
  bool condensed_ = false;
  std::vector<TSortedSetArray*> sorted_sets_;  // not owned
};

}  // namespace qxe
