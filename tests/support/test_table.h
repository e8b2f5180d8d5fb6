// A real table of the engine, made in one line and asked by column names, through the public
// interface only.
#pragma once

#include <string>
#include <vector>

#include "support/columns.h"

namespace qxe::test {

/// TestTable table({{"age", ints({30, kNullInt, 10})}, {"name", strings({"a", "b", ""})}});
///
/// Calls under test return the engine's status. What a test takes for granted (the columns are
/// added, a set can be read) throws when it fails. The table goes with the database.
class TestTable {
 public:
  /// Stands for the root set, all rows in their first order.
  static constexpr int kAllRows = 0;

  /// Columns of equal length; an empty name lets the engine generate one.
  explicit TestTable(const Columns& columns, const std::string& name = "");
  /// A table that the engine made.
  static TestTable existing(int id) { return TestTable(id); }

  int id() const { return id_; }
  /// Id of the column.
  int filter(const std::string& column) const;
  /// The engine's id of a set; kAllRows gives the root set's.
  int set_id(int set) const;
  int total_rows() const;

  // Sets.
  /// Adds a set of these rows and returns its id.
  int add_set(std::vector<int> rows) const;
  /// Row numbers of a set in its order.
  std::vector<int> rows(int set = kAllRows) const;

  // Searches and sorts; each returns the id of the new set or a status below 0.
  int search(const std::string& column, int ope, const Cell& value1, const Cell& value2 = {},
             int set = kAllRows) const;
  int search_values(const std::string& column, const std::vector<Cell>& values,
                    int set = kAllRows) const;
  int sort(const std::string& column, int direction = QX_SORT_ASC, int set = kAllRows) const;
  /// The first key is the least significant one.
  int sort(const std::vector<SortKey>& keys, int set = kAllRows) const;

  // Values, in the order of a set.
  Column column(const std::string& name, int set = kAllRows) const;
  std::vector<std::string> texts(const std::string& column, int set = kAllRows) const;
  /// `position` counts from 1.
  Cell cell(const std::string& column, int position, int set = kAllRows) const;
  std::string text(const std::string& column, int position, int set = kAllRows) const;

 private:
  explicit TestTable(int id) : id_(id) {}
  void add_column(const NamedColumn& named) const;
  int type_of(int filter) const;
  Cell cell_of(int filter, int set, int position) const;

  int id_;
};

/// The status, or an exception with the call's name and the ring when it is below 0.
int require(int status, const std::string& call);

}  // namespace qxe::test
