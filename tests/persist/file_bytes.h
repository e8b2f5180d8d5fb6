// Database and table files built byte by byte from a description, without the engine: what its
// files must look like, and what files of other machines and of older versions look like.
#pragma once

#include <stdint.h>

#include <string>
#include <variant>
#include <vector>

namespace qxe::test {

/// The machine and the version that a file comes from.
struct Origin {
  int data_version = 25;
  int word = 8;  // bytes
  bool big_endian = false;
  bool header = true;  // without one fields lie back to back
  unsigned char char_code = 33;
};

struct Decimal128 {
  uint64_t low;
  int64_t high;
};

/// The attribute block of an array, by its bytes with a meaning.
struct UserArea {
  unsigned char type = 0;
  unsigned char scale = 0;
  unsigned char rounding = 0;
  unsigned char last = 0;  // a client's
};

using Values = std::variant<std::vector<int>, std::vector<double>, std::vector<std::string>,
                            std::vector<Decimal128>>;

struct StoredFilter {
  int id;
  std::string name;
  std::vector<int> pv;
  Values vl;
  UserArea vl_area = {};
  int vl_type = 0;  // 0: that of the values
  UserArea pv_area = {};
  int org_table = 0;
  int org_filter = id;
  int high_speed = 0;
};

struct StoredMark {
  int set;
  int filter;
  std::vector<int> rows;
  int nulls;
};

struct StoredTable {
  int id;
  std::string name;
  std::vector<std::vector<int>> sets;
  std::vector<StoredFilter> filters = {};
  std::vector<int> set_ids = {1};
  int last_set = 1;
  int current_set = 1;
  int last_filter = static_cast<int>(filters.size());
  std::vector<StoredMark> marks = {};
  int type = 0;
};

/// A set of a join: its arrays of each side.
struct StoredJoinSet {
  struct Side {
    std::vector<int> rows;
    std::vector<int> index;
    std::vector<int> unmatched = {};
  };

  int count;  // join rows
  int driving;
  Side sides[2];
};

/// A join of two tables by one column each.
struct StoredJoin {
  int id;
  std::string name;
  bool outer;
  std::vector<int> parents;
  std::vector<int> keys;
  std::vector<StoredJoinSet> sets;
  StoredFilter key_filters[2];
  std::vector<int> filters[2];
  std::vector<int> set_ids = {1};
  int last_set = 1;
  int current_set = 1;
};

/// Where a field lies.
struct StoredField {
  size_t offset;
  size_t size;   // of an element
  size_t count;  // elements
};

struct StoredFile {
  std::string bytes;
  std::vector<StoredField> fields;
};

/// A database: names and last id are those of the tables and joins.
StoredFile database_file(const std::vector<StoredTable>& tables, const Origin& origin = {},
                         const std::vector<StoredJoin>& joins = {});
StoredFile table_file(const StoredTable& table, const Origin& origin = {});
/// The same behind whatever bytes a file has already.
StoredFile table_behind(const std::string& bytes, const StoredTable& table,
                        const Origin& origin = {});

/// A table of three rows with a filter of each type, gaps between ids, a second set and an
/// attribute here and there.
StoredTable table_of_all_types(int id, const std::string& name);

/// Joins of two tables of all types, by their integers: an inner one with a second set, sorted
/// downward, and an outer one. Their ids follow that of the slave.
std::vector<StoredJoin> joins_by_integers(int master, int slave);

}  // namespace qxe::test
