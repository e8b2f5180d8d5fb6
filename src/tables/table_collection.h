// The database in memory: all tables, their ids and names, and which table refers to which.
#pragma once

#include <memory>
#include <vector>

#include "tables/derived_tables.h"
#include "tables/tables.h"

namespace qxe {

class TRealTable;
struct JoinRequest;

class TTableCollection : NonCopyable {
 public:
  static constexpr int kMaxTables = 10000;
  static constexpr int kPathSize = 512;

  static int m_nCutLastSpace;            // trailing blanks of strings are cut when stored
  static bool m_nDisableTrimUntilSharp;  // generated names are not cut at "_#"

  /// Kinds of generated names with their numbers.
  enum class GeneratedName { kFilter, kRealizedTable, kJoinTable, kRealTable };

  TTableCollection() = default;
  ~TTableCollection();

  int count() const { return static_cast<int>(tables_.size()); }
  TBaseTable& at(int position) const { return *tables_[static_cast<size_t>(position)]; }
  int ID2Loc(int id) const;
  int Name2Loc(const char* name) const;
  /// The table, or null after logging "No Such Table: %d".
  TBaseTable* GetTable(int id) const;
  /// The table without a log entry, or null.
  TBaseTable* find(int id) const;
  int GetTableIDList(int* out) const;
  int GetTableIDFromName(const char* name) const;
  /// A free table name from `seed` into `out` (256 bytes).
  int GenTableName(const char* seed, char* out) const;
  int CheckTableName(const char* name) const;
  int SetTableName(int id, const char* name);
  int AddRealTable(const char* name, int rows);
  /// Takes over a finished table under its own id and name; returns the id.
  int adopt_table(std::unique_ptr<TBaseTable> table);
  /// The id that the next table will get.
  int issue_table_id() { return ++FTblIDIssued; }
  int DelTable(int id);
  /// Joins two real tables; returns the join's id. The Mpp form differs in the name of its ring
  /// entries only.
  int AddJoinTable(const JoinRequest& request);
  int MppAddJoinTable(const JoinRequest& request);

  // Derived tables: each makes a new table of others, which must be real, and returns its id. The
  // name is generated for null or "" and made unique. The Mpp forms differ in the name of their
  // ring entries only.
  int DuplicateRealTable(const char* name, int table);
  int MppDuplicateRealTable(const char* name, int table);
  int ExtractRealTable(const char* name, int table, int set, const ExtractedColumns& columns);
  int MppExtractRealTable(const char* name, int table, int set, const ExtractedColumns& columns);
  int CombineRealTable(const char* name, const CombineIds& first, const CombineIds& second,
                       CombinePseudo pseudo);
  int MppCombineRealTable(const char* name, const CombineIds& first, const CombineIds& second,
                          CombinePseudo pseudo);
  /// The name must not be empty here.
  int CombineTableList(const char* name, const CombineListIds& ids);
  /// Ids of the tables that would break if this one changed; returns their count.
  int ReferedIDList(int id, int* out) const;
  bool IsReferred(int id) const;
  bool IsEditable(int id) const;
  long GetTotalMemorySize() const;
  /// The same with the borrowed data of shared tables.
  long GetTotalMemorySizeWithShared() const;
  int GetPathName(char* path, char* name) const;
  const char* database_path() const { return database_path_; }
  const char* database_name() const { return database_name_; }

 private:
  TRealTable& real_table(const char* layer, int id) const;
  template <class Fill>
  int derive_table(const char* name, Fill&& fill);
  int add_join(const char* layer, const JoinRequest& request);

  int FTblIDIssued = 0;  // last table id issued
  char database_path_[kPathSize] = "";
  char database_name_[kPathSize] = "";
  std::vector<std::unique_ptr<TBaseTable>> tables_;  // ascending ids
};

/// `name` into `out` (256 bytes), or a generated one - kind, date and time, number - for null or
/// "". QX_ERROR_TABLE_NAME (QX_ERROR_FILTER_NAME for a filter) for one of more than 255 bytes.
int ValidateNames(const char* name, TTableCollection::GeneratedName kind, char* out);

}  // namespace qxe
