// Random edits on tables of the engine, each made on plain rows as well.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {

struct ModelSet {
  int id;
  std::vector<int> rows;
};

/// An open find cursor.
struct ModelCursor {
  int id;
  std::string column;
  std::vector<bool> hits;  // by row; row 0 reads NULL
};

/// A table of the engine and what it must hold. The first set is that of all rows.
struct ModelTable {
  TestTable table;
  Columns columns;
  std::vector<ModelSet> sets;
  std::optional<ModelCursor> cursor;

  /// Made in the engine as well.
  explicit ModelTable(const Columns& wanted);
  ModelTable(TestTable made, Columns wanted);

  int id() const { return table.id(); }
  int total_rows() const { return static_cast<int>(sets.front().rows.size()); }
  NaiveModel model() const { return NaiveModel(columns); }
  /// To be called when the columns may have become longer.
  void take_rows();
};

/// Tables in random hands. An operation takes one, does the same to the engine and to the model,
/// and tells in a few words what it did; one that makes a table adds it to `tables`.
class EditModel {
 public:
  /// On an empty database whose strings are in the code of a locale.
  explicit EditModel(const RandomData& data, int code = QX_LOCALE_UTF8);

  ModelTable& any_table() { return any_of(tables); }
  ModelSet& any_set(ModelTable& table) { return any_of(table.sets); }
  NamedColumn& any_column(ModelTable& table) { return any_of(table.columns); }
  /// A value that a column of this kind may get: one in it, NULL, or a new one.
  Cell any_value(const Column& column);
  std::vector<Cell> any_values(const Column& column, int count);

  template <class Item>
  Item& any_of(std::vector<Item>& items) {
    return random.any_of(items);
  }

  /// Compares a result with the wanted one, then all tables with their models.
  void expect_status(int status, int wanted) const;
  void expect_equal() const;
  /// A few cells of each table, without a merge of values that wait.
  void expect_sample();

  RandomData random;
  const int locale;
  std::vector<ModelTable> tables;
};

/// How a journal names an operation and its arguments.
std::string told(const ModelTable& table, const std::string& what,
                 std::initializer_list<int> numbers);

/// Tables are kept small enough to be compared often: operations add few rows to larger ones.
constexpr int kMostRows = 600;

/// Gives the columns the names that the engine has given them.
void take_names(ModelTable& table);

void expect_equal(const ModelTable& table);
/// Merges what waits, then looks at the table's columns from inside: value lists that ascend from
/// NULL on, and rows whose value numbers name their cells. `all_used`: no value is without a row.
void expect_value_lists(const ModelTable& table, bool all_used = false);

struct EditOperation {
  std::string (*run)(EditModel& model);
  int weight;  // how often it is chosen, compared with the others
};

/// Makes `steps` random operations of the list. A failure shows `run`, which tells the seed, and
/// the operations so far.
void run_edits(EditModel model, const std::string& run, int steps,
               const std::vector<EditOperation>& operations);

}  // namespace qxe::test
