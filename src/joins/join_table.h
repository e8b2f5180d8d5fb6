// The join table: pairs of rows of two real tables, as a table of its own. It stores neither
// columns nor pairs: its filters are those of its parents, and of each set it keeps which rows of
// either side pair and how (see join_set.h).
//
// Side 0 is the table that was named as master, side 1 the slave. Filters have ids from 1: first
// those of side 0, then those of side 1, each under a name that is unique in the join. A set starts
// with side 0 driving; a sort by a column of side 1 makes side 1 drive its set.
//
// The parents are not copied. While a join exists they can be neither deleted nor edited, and the
// columns of its key cannot be dropped.
#pragma once

#include <string>

#include "joins/join_build.h"
#include "tables/tables.h"

namespace qxe {

class TTableCollection;

/// What a client asks for.
struct JoinRequest {
  struct Side {
    int table;
    int set;          // below 0: the table's current set
    const int* keys;  // filter ids; the list ends at its first entry below 1 or after kMaxKeys
  };

  const char* name;
  bool outer;  // else inner
  Side sides[kSides];
};

class TJoinTable : public TBaseTable {
 public:
  static constexpr int kMaxKeys = 32;

  /// Throws what RQXAddJoinTable fails with.
  TJoinTable(const TTableCollection& tables, int id, const JoinRequest& request);
  /// Reads a join section behind its type word; the parents are those of `tables` with the ids of
  /// the section. Throws QX_ERROR_FILE_FORMAT for one that does not fit together.
  TJoinTable(SectionReader& reader, const TTableCollection& tables);

  int GetTableKind() const override { return 2; }
  int GetNFilter() const override;
  void SetCurrentSetID(int id) override;
  TableKind GetType() const override { return TableKind::kJoin; }
  int TotalRecs() const override { return sets_[0].row_count; }
  int GetSetSize(int id) const override;
  /// The driving rows.
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
  /// The parent's filter.
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
  bool isQXTShared() const override;
  const char* filter_name(int id) override { return GetJoinFilterName(id); }
  int missing_filter(int id) const override;
  long set_memory(int set) const override;
  bool refers_to(const TRealTable& target) const override;
  bool has_key(const TRealTable& target, int filter) const override;
  void detach_from(const TRealTable& target) override;

  // What is joined
  bool is_outer() const { return outer_; }
  int key_count() const { return static_cast<int>(sides_[0].keys.size()); }
  /// Filter ids of a side's key.
  const std::vector<int>& key_ids(int side) const { return sides_[side].keys; }
  TRealTable& parent(int side) const { return *sides_[side].table; }
  /// The parent's set that was joined.
  int parent_set(int side) const { return sides_[side].set; }
  JoinKey& key() { return *key_; }
  const JoinKey& key() const { return *key_; }

  // Filters
  /// Position within its side of a filter, or QX_ERROR_NO_JOIN_FILTER after logging.
  int JFilterID2Pos(int id, int* side) const;
  /// The parent's id of a filter, or QX_ERROR_NO_JOIN_FILTER after logging.
  int GetJoinSrcFltID(int id, int* side) const;
  /// The join's own name of a filter, or null.
  const char* GetJoinFilterName(int id) const;
  /// Gives every filter a name that is unique in the join.
  void AssignJoinFilterNames();

  // Sets
  /// All pairs of the rows that were joined.
  const JoinSet& first_set() const { return sets_[0]; }
  /// The set, or null after logging.
  const JoinSet* find_set(int id) const;
  /// Of a set that exists: which rows pair.
  JoinRows rows(const JoinSet& set) const { return {set, key_->side(set.direction)}; }
  /// The driven rows, or null after logging.
  TSetArray* GetSlaveSet(int id) const;
  /// Driving and driven index, or null twice after logging.
  void GetProjectionSets(int id, TSetArray** master, TSetArray** slave);
  /// The side that drives a set, or QX_ERROR_NO_SET_ID after logging.
  int GetJoinDir(int id) const;
  /// Joins rows of the two sides to a new set, the current one from then on; returns its id.
  int RegNewSet(JoinSource source);
  /// Rows of one side of a set as the source of a new one: without row 0.
  SideRows side_rows(const JoinSet& set, int side) const;

  // Back to the parents; all work on the join's first set.
  /// Adds the rows of a side, or those that found no partner, to the side's parent as a set. -1 for
  /// an outer join.
  int PutJoinSetToParent(int side, bool unmatched, int* tableId, int* setId);
  /// Adds the first partner of each key, in the order of the master's rows, to the slave as a set;
  /// returns its id.
  int ReturnSet2SlaveTable(int* tableId);
  /// Adds a column of the slave to the master, where each row takes the value of its first partner;
  /// returns the new filter's id.
  int MoveSlaveFlt2Master(int filter);

 private:
  struct Filter {
    int id;  // in the parent
    std::string name;
  };
  struct Side {
    TRealTable* table;
    int set;
    std::vector<int> keys;
    std::vector<Filter> filters;
  };
  struct Column {
    TFilter* filter;
    int side;
  };

  /// Finds a side's table, set and filters.
  Side SetupSide(const TTableCollection& tables, int side, const JoinRequest::Side& wanted,
                 std::vector<int> keys) const;
  std::vector<const TFilter*> key_columns(int side) const;
  void SetupJoinFilters();
  JoinSet MakeJoin(JoinSource source) const;
  /// The filter and its side, or null and a status after logging under `layer`.
  Column find_column(const char* layer, int filter, int* status);
  const JoinSet& set_at(int position) const { return sets_[static_cast<size_t>(position)]; }
  /// A set that has join row `pos`, or null with the status in `*status`.
  const JoinSet* set_with(int set, int pos, int* status) const;
  template <class Read>
  int read_at(int set, int filter, int pos, Read&& read);
  template <class Make>
  int make_set(const char* layer, int filter, int set, Make&& make);
  template <class Make>
  int make_unnamed_set(const char* layer, int filter, int set, Make&& make);
  template <class Sort>
  int sort_side(const char* layer, int side, int set, Sort&& sort);
  template <class Sort>
  int sort_by_field(const char* layer, int filter, int set, int dir, Sort&& sort);
  int search_values(const char* layer, int filter, int set, int count, const void* values);
  void save_sources(SectionWriter& writer) const;
  void save_sets(SectionWriter& writer);
  void save_filters(SectionWriter& writer) const;
  void load_sources(SectionReader& reader, const TTableCollection& tables, int version);
  void load_sets(SectionReader& reader, int version);
  void load_filters(SectionReader& reader, int version);
  /// Checks all that was read and names the filters.
  void LoadComplete();
  int refuse_wildcard(const char* layer) const;
  template <class Combine>
  int combine(const char* layer, int op, int set1, int set2, Combine&& combine_rows);
  template <class Negate>
  int negate(const char* layer, int set, Negate&& negate_rows);

  bool outer_;
  Side sides_[kSides];
  std::unique_ptr<JoinKey> key_;
  std::vector<JoinSet> sets_;  // at the positions of set_ids_
};

}  // namespace qxe
