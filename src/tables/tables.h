// The abstract table: a list of sets over a common row count, and every operation that the
// interface performs on a table whatever its kind.
#pragma once

#include <memory>
#include <vector>

#include "storage/filters.h"
#include "storage/setarray.h"

namespace qxe {

class CsvRowWriter;
class SectionReader;
class SectionWriter;
class TRealTable;
class TableGuest;
struct CsvLineDiv_t;
struct TableForm;

enum class TableKind : int { kBase = 0, kReal = 1, kJoin = 2 };

/// Virtual operations stand in the fixed order of the class; an operation joins at its place when
/// it is built.
class TBaseTable : NonCopyable {
 public:
  static constexpr int kNameSize = 256;
  static constexpr int kMaxSets = 10000;
  static constexpr int kMaxFilters = 512;

  /// Closes its guests.
  virtual ~TBaseTable();

  /// 0 for a real table, 2 for a join table, as files say it.
  virtual int GetTableKind() const { return 0; }
  virtual int GetNFilter() const { return -1; }
  virtual void SetCurrentSetID(int id) = 0;
  virtual int GetCurrentSetID() const { return current_set_id_; }
  virtual void DecMaxSetID() {
    if (MaxSetID > 0) --MaxSetID;
  }
  /// 1 for a real table, 2 for a join table.
  virtual TableKind GetType() const { return TableKind::kBase; }
  virtual int TotalRecs() const = 0;
  /// Copies up to `max` ids; returns the number of sets in all.
  virtual int GetSetIDList(int max, int* out) const;
  virtual int GetSetSize(int id) const = 0;
  /// Position of a set; an id below 0 is the current set. Logs and returns QX_ERROR_NO_SET.
  virtual int SetID2Pos(int id) const;
  /// The set, or null after logging.
  virtual TSetArray* GetSet(int id) const = 0;
  virtual void PurgeSubSets() = 0;
  virtual int DelSet(int) { return 0; }

  // Set algebra, sorts and searches return the new set's id or a negative status.
  /// The rows that are not in a set.
  virtual int SetNot(int set) = 0;
  virtual int MppSetNot(int set) = 0;
  /// Two sets combined by QX_SET_AND, QX_SET_OR or QX_SET_ANDNOT.
  virtual int SetOpe(int op, int set1, int set2) = 0;
  virtual int MppSetOpe(int op, int set1, int set2) = 0;
  virtual int SortByField(int filter, int set, int dir) = 0;
  virtual int SortByRecNo(int filter, int set, int dir) = 0;
  /// Rows whose row number meets the condition.
  virtual int SearchByRecNo(int filter, int set, int ope, int n1, int n2) = 0;
  virtual int SearchByField(int filter, int set, int ope, const char* v1, const char* v2) = 0;
  virtual int MppSearchByField(int filter, int set, int ope, const char* v1, const char* v2) = 0;
  virtual int SearchByField2(int filter, int set, int ope, const char* v1, const char* v2) = 0;
  virtual int MppSortByField(int filter, int set, int dir) = 0;
  /// Applies a hit table of one byte per value number.
  virtual int Search(int filter, int set, const unsigned char* flags) = 0;
  /// Rows whose string matches a pattern with wildcards; real tables only.
  virtual int SearchByFieldWildCard(int filter, int set, const char* pattern) = 0;
  virtual int MppSearchByFieldWildCard(int filter, int set, const char* pattern) = 0;

  /// The filter, or null after logging.
  virtual TFilter* GetFilter(int id) = 0;
  virtual int GetFilterIDList(int* out) const = 0;
  /// Names of the table and the filter; both empty when there is none.
  virtual int FilterID2Name(int id, char* table, char* filter) = 0;

  /// One value by position (from 0) in a set; see the source for buffers and results.
  virtual int ReadData(int set, int filter, int pos, int* type, void* out) = 0;
  virtual int ReadData(int set, int filter, int pos, int* type, void* out, int size) = 0;
  /// Its address instead of a copy.
  virtual int ReadData(int set, int filter, int pos, int* type, long* out) = 0;
  /// Its value number.
  virtual int GetVNo(int set, int filter, int pos, int* out) = 0;
  /// The value numbers of the whole set; returns its size.
  virtual int GetVNoList(int set, int filter, int* out) = 0;

  /// Writes rows `from` to `to` (positions from 1 in the set) of the filters of a list ended by -1
  /// to a text file, on the calling thread alone; see MppCsvExport.
  virtual int Export(int set, const int* filters, int from, int to, char separator,
                     char dateSeparator, const char* directory, const char* file,
                     const char* formatFile);
  /// Hands the value numbers of a part of an export's rows to `writer`, block by block. Runs on a
  /// worker.
  virtual void OutCsvPartFile(CsvRowWriter& writer, int set, const CsvLineDiv_t& part) = 0;

  /// Rows of the set per value number; `out` has one int per entry of the value list.
  virtual int CountN(int set, int filter, int* out) = 0;
  virtual int GetFilterIDFromName(const char* name, int side) = 0;
  virtual long GetMemSize() const = 0;
  virtual int SearchByFieldNValues(int filter, int set, int count, const void* values) = 0;
  virtual int MppSearchByFieldNValues(int filter, int set, int count, const void* values) = 0;
  virtual int MppIntegratedSortByField(int set, const int* filters, const int* dirs) = 0;
  virtual bool isQXTShared() const { return false; }
  /// Writes the table section, its type word first. Tidies the table up before: no value, set or
  /// row changes.
  virtual void SaveTable(SectionWriter& writer, const TableForm& form) = 0;

  // What the frame and the collection ask of a table, whatever its kind.
  /// The name that the table keeps for a filter, or null.
  virtual const char* filter_name(int id) = 0;
  /// Status of a filter that GetFilter does not find.
  virtual int missing_filter(int) const { return QX_ERROR_NO_FILTER; }
  /// Bytes of a set that exists.
  virtual long set_memory(int set) const = 0;
  /// Whether this table would break if `target` changed.
  virtual bool refers_to(const TRealTable&) const { return false; }
  /// Whether it pairs rows by that filter of `target`.
  virtual bool has_key(const TRealTable&, int) const { return false; }
  /// `target` is about to change its value numbers, though not its values: whatever depends on them
  /// must be kept here.
  virtual void detach_from(const TRealTable&) {}

  /// Width of a filter's values: 4, 8, 16, or its longest string.
  int GetFilterWidth(int id);
  /// Writes a catalog that describes an export of `filters` (ended by -1) with that format file,
  /// which counts from the working directory; null for none.
  int CreateCatalogFile(const int* filters, char separator, const char* directory, const char* file,
                        const char* formatFile);

  int id() const { return table_id_; }
  const char* name() const { return table_name_; }
  void set_name(const char* name);
  void set_id(int id) { table_id_ = id; }
  int set_count() const { return static_cast<int>(set_ids_.size()); }
  int max_set_id() const { return MaxSetID; }
  bool shared() const { return shared_; }

  void add_guest(TableGuest& guest) { guests_.push_back(&guest); }
  void remove_guest(TableGuest& guest);

 protected:
  /// The head of every table section, behind the type word.
  void SaveBaseInfo(SectionWriter& writer, const TableForm& form) const;
  /// Returns the section's data version. Throws QX_ERROR_FILE_FORMAT for one that is not known and
  /// for ids that do not ascend.
  int LoadBaseInfo(SectionReader& reader);

  int table_id_ = 0;
  char table_name_[kNameSize] = "";
  std::vector<int> set_ids_;  // ascending; position 0 is the root set
  int MaxSetID = 0;           // last set id issued
  int current_set_id_ = 0;
  bool shared_ = false;  // the storage is an image in shared memory, so it cannot be edited

 private:
  std::vector<TableGuest*> guests_;  // not owned
};

}  // namespace qxe
