// The database in memory: all tables, their ids and names, and which table refers to which.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tables/derived_tables.h"
#include "tables/tables.h"

namespace qxe {

class SectionReader;
class SectionWriter;
class TRealTable;
struct ChainRequest;
struct JoinRequest;
class TJoinTable;
struct TreeColumns;

class TTableCollection : NonCopyable {
 public:
  static constexpr int kMaxTables = 10000;
  static constexpr int kPathSize = 512;

  static int m_nCutLastSpace;            // trailing blanks of strings are cut when stored
  static bool m_nDisableTrimUntilSharp;  // generated names are not cut at "_#"

  /// Kinds of generated names with their numbers.
  enum class GeneratedName { kFilter, kRealizedTable, kJoinTable, kRealTable };

  TTableCollection() = default;
  /// Reads a database section: all of a file or image behind its stream header. Throws
  /// QX_ERROR_TABLE_KIND for a table of an unknown kind.
  explicit TTableCollection(SectionReader& reader);
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
  /// Writes the database section. Without joins, which refer to ids, tables are numbered from 1 on
  /// in the section. `versions`: four words.
  void save_sections(SectionWriter& writer, const int* versions) const;
  /// Reads a table section, its type word first. Throws QX_ERROR_NOT_REAL_SOURCE for one that is
  /// not a real table's.
  std::unique_ptr<TRealTable> read_section(SectionReader& reader) const;
  /// Takes over such a table under the next id, which is returned, and a free name made of its own.
  int adopt_new_table(std::unique_ptr<TRealTable> table);
  /// Both in one step: a failure changes nothing.
  int load_section(SectionReader& reader);
  /// Throws QX_ERROR_TABLE_COUNT_LOAD when there is no room for a table to load.
  void check_loadable() const;
  /// The id that the next table will get. Throws QX_ERROR_TABLE_COUNT behind the highest one.
  int issue_table_id();
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
  /// The pairs of a join's set as a real table.
  int AddRealized(const char* name, int table, int set, const RealizedColumns& columns);
  /// Writes out the hierarchy that a chain of joins describes, a row for each node.
  int RealizeJoinChain(const char* name, const ChainRequest& request);
  /// Adds columns to such a table: what the nodes' rows have in a source table.
  int Qualify(int tree, const TreeColumns& columns);
  /// Sets the longest chain, which is also the longest list of Qualify. 16 to 510; another number
  /// fails and leaves 510.
  int SetMaxJoinChain(int n);
  /// Ids of the tables that would break if this one changed; returns their count.
  int ReferedIDList(int id, int* out) const;
  bool IsReferred(int id) const;
  bool IsEditable(int id) const;
  long GetTotalMemorySize() const;
  /// The same with the borrowed data of shared tables.
  long GetTotalMemorySizeWithShared() const;

  // Files. Directories and names are as clients give them. Failures throw.
  /// Saves under an absolute directory, which is written back to `path` (kPathSize bytes), and
  /// remembers both. Does nothing while the working directory is gone.
  void SaveDB(char* path, const char* name);
  /// Saves where the last save or load was.
  void ReSave();
  void SaveRealTable(const char* path, int id) const;
  void SaveRealTableAs(const char* path, const char* name, int id) const;
  /// Writes the tables of a list that ends with -1, all rows of each in one set, into an existing
  /// file from `offset` on. `*end` is behind the last one written, also when a table of the list
  /// cannot be. Returns 0 or that table's status.
  int SaveRealTable2(const char* file, long offset, const int* ids, long* end) const;
  int LoadRealTable(const char* path, const char* name);
  /// Reads `count` tables; their ids go to `ids`. Returns the last table id issued. Those in front
  /// of one that fails stay.
  int LoadRealTable2(const char* file, long offset, int count, int* ids, long* end);
  /// Whether files are written for the preceding data version; stays until it is switched off.
  void set_old_version(bool on) { old_version_ = on; }
  /// QX_ERROR_SAVE_VERSION when a table, 0 for all, has a decimal filter.
  int NumericUsedCheck(int table) const;
  /// Where the database was loaded from or saved to, for ReSave.
  void remember_place(const std::string& path, const std::string& name);
  int GetPathName(char* path, char* name) const;
  const char* database_path() const { return database_path_; }
  const char* database_name() const { return database_name_; }

 private:
  TRealTable& real_table(const char* layer, int id) const;
  TJoinTable& join_table(const char* layer, int id) const;
  template <class Fill>
  int derive_table(const char* name, Fill&& fill, GeneratedName kind = GeneratedName::kRealTable);
  int add_join(const char* layer, const JoinRequest& request);
  TRealTable& savable_table(const char* layer, int id) const;
  void save_table_file(const char* layer, const char* path, const std::string& file, int id,
                       const unsigned char* header) const;

  int FTblIDIssued = 0;  // last table id issued
  bool old_version_ = false;
  char database_path_[kPathSize] = "";
  char database_name_[kPathSize] = "";
  std::vector<std::unique_ptr<TBaseTable>> tables_;  // ascending ids
};

/// `name` into `out` (256 bytes), or a generated one - kind, date and time, number - for null or
/// "". QX_ERROR_TABLE_NAME (QX_ERROR_FILTER_NAME for a filter) for one of more than 255 bytes.
int ValidateNames(const char* name, TTableCollection::GeneratedName kind, char* out);

}  // namespace qxe
