// Rows inserted and deleted, values written to the rows of sets.
#include <algorithm>

#include "edit_model_operations.h"
#include "support/engine_test.h"
#include "support/raw_values.h"

namespace qxe::test {
namespace {

// Rows

std::string insert_rows(EditModel& model) {
  ModelTable& table = model.any_table();
  const int total = table.total_rows();
  const int pos = model.random.below(total + 5);
  const int count = total > kMostRows ? 1 : 1 + model.random.below(20);
  model.expect_status(
      (model.random.chance(50) ? RQXInsertRealRows : QXInsertRealRows)(table.id(), pos, count),
      count);
  const int at = std::clamp(pos, 1, total + 1);
  for (auto& [name, column] : table.columns) {
    column.cells.insert(column.cells.begin() + at - 1, static_cast<size_t>(count),
                        normal_form({}, column.type));
  }
  for (ModelSet& set : table.sets) {
    for (int& row : set.rows) row += row >= at ? count : 0;
  }
  table.take_rows();
  return told(table, "insert", {pos, count});
}

/// Takes the rows out of the model; returns how many there were.
int erase_rows(ModelTable& table, std::vector<int> gone) {
  std::sort(gone.begin(), gone.end());
  gone.erase(std::unique(gone.begin(), gone.end()), gone.end());
  table.cursor.reset();
  for (auto& [name, column] : table.columns) {
    for (size_t i = gone.size(); i > 0; --i) {
      column.cells.erase(column.cells.begin() + gone[i - 1] - 1);
    }
  }
  for (ModelSet& set : table.sets) {
    std::vector<int> kept;
    for (const int row : set.rows) {
      const auto place = std::lower_bound(gone.begin(), gone.end(), row);
      if (place != gone.end() && *place == row) continue;
      kept.push_back(row - static_cast<int>(place - gone.begin()));
    }
    set.rows = kept;
  }
  return static_cast<int>(gone.size());
}

/// Now and then whatever there is.
int rows_to_delete(EditModel& model, int most) {
  return model.random.chance(2) ? most : 1 + model.random.below(std::min(most, 15));
}

std::string delete_rows(EditModel& model) {
  ModelTable& table = model.any_table();
  const int total = table.total_rows();
  if (total == 0) return "nothing to delete";
  const int start = 1 + model.random.below(total);
  const int count = rows_to_delete(model, total + 3);
  const auto first = table.sets.front().rows.begin() + start - 1;
  const int deleted = erase_rows(table, {first, first + std::min(count, total - start + 1)});
  model.expect_status(
      (model.random.chance(50) ? RQXDeleteRealRows : QXDeleteRealRows)(table.id(), start, count),
      deleted);
  return told(table, "delete", {start, count});
}

std::string delete_rows_of_set(EditModel& model) {
  ModelTable& table = model.any_table();
  const ModelSet& set = model.any_set(table);
  const int size = static_cast<int>(set.rows.size());
  if (size == 0) return "nothing to delete";
  const int start = 1 + model.random.below(size);
  const int count = rows_to_delete(model, size - start + 1);
  const int id = set.id;
  const auto first = set.rows.begin() + start - 1;
  const int deleted = erase_rows(table, {first, first + count});
  model.expect_status((model.random.chance(50) ? RQXDeleteRealRowsEx : QXDeleteRealRowsEx)(
                          table.id(), id, start, count),
                      deleted);
  return told(table, "delete by set", {id, start, count});
}

// Values

/// Part of a set of a table.
struct Target {
  ModelTable* table;
  const ModelSet* set;
  NamedColumn* column;
  int start;
  int count;

  int filter() const { return table->table.filter(column->name); }
  int row(int i) const { return *(set->rows.begin() + start - 1 + i); }
  void put(int i, const Cell& value) const { *(column->column.cells.begin() + row(i) - 1) = value; }
};

/// False when there is no row.
bool choose_target(EditModel& model, Target* target) {
  ModelTable& table = model.any_table();
  const ModelSet& set = model.any_set(table);
  const int size = static_cast<int>(set.rows.size());
  if (size == 0) return false;
  const int start = 1 + model.random.below(size);
  const int most = size - start + 1;
  const int count = model.random.chance(50) ? 1 : 1 + model.random.below(most);
  *target = {&table, &set, &model.any_column(table), start, count};
  return true;
}

std::string told(const Target& target, const char* what) {
  return told(*target.table, what + (" " + target.column->name),
              {target.set->id, target.start, target.count});
}

std::string overwrite(EditModel& model) {
  Target target{};
  if (!choose_target(model, &target)) return "nothing to overwrite";
  const Column& column = target.column->column;
  const auto values = model.any_values(column, target.count);
  RawValues raw(column.type, values);
  // What goes beyond the set is not looked at.
  const bool reaches_end =
      target.start + target.count - 1 == static_cast<int>(target.set->rows.size());
  const int count = target.count + (reaches_end && model.random.chance(30) ? 1000 : 0);
  const int filter = target.filter();
  const int status =
      column.type == QX_DT_STRING && model.random.chance(30)
          ? RQXOverwriteRealExStr(target.table->id(), filter, target.set->id, target.start, count,
                                  static_cast<char**>(raw.data()))
          : (model.random.chance(70) ? RQXOverwriteRealEx : QXOverwriteRealEx)(
                target.table->id(), filter, target.set->id, target.start, count, raw.data());
  model.expect_status(status, target.count);
  for (int i = 0; i < target.count; ++i) target.put(i, values[static_cast<size_t>(i)]);
  return told(target, "overwrite");
}

std::string fill(EditModel& model) {
  Target target{};
  if (!choose_target(model, &target)) return "nothing to fill";
  const Cell value = model.any_value(target.column->column);
  RawValues raw(target.column->column.type, {value});
  model.expect_status(RQXFillRealEx(target.table->id(), target.filter(), target.set->id,
                                    target.start, target.count, raw.data()),
                      target.count);
  for (int i = 0; i < target.count; ++i) target.put(i, value);
  return told(target, "fill");
}

/// The R1 forms, which name the type: overwriting one row or filling several.
int write_one(const Target& target, const Cell& value, bool fills) {
  const int table = target.table->id();
  const int filter = target.filter();
  const int set = target.set->id;
  RawValues raw(target.column->column.type, {value});
  switch (target.column->column.type) {
    case QX_DT_INTEGER: {
      const int number = *static_cast<int*>(raw.data());
      return fills ? RQXFillRealExIntR1(table, filter, set, target.start, target.count, number)
                   : RQXOverwriteRealExIntR1(table, filter, set, target.start, number);
    }
    case QX_DT_STRING: {
      char* const text = raw.value(0);
      return fills ? RQXFillRealExStrR1(table, filter, set, target.start, target.count, text)
                   : RQXOverwriteRealExStrR1(table, filter, set, target.start, text);
    }
    case QX_DT_DECIMAL: {
      const auto* const number = static_cast<Numeric*>(raw.data());
      return fills ? RQXFillRealExNumericR1(table, filter, set, target.start, target.count, number)
                   : RQXOverwriteRealExNumericR1(table, filter, set, target.start, number);
    }
    default: {
      const double number = *static_cast<double*>(raw.data());
      return fills ? RQXFillRealExDblR1(table, filter, set, target.start, target.count, number)
                   : RQXOverwriteRealExDblR1(table, filter, set, target.start, number);
    }
  }
}

std::string overwrite_one(EditModel& model) {
  Target target{};
  if (!choose_target(model, &target)) return "nothing to overwrite";
  target.count = 1;
  const Cell value = model.any_value(target.column->column);
  model.expect_status(write_one(target, value, false), 1);
  target.put(0, value);
  return told(target, "overwrite one");
}

/// Many values that wait, if the table has tails.
std::string overwrite_singly(EditModel& model) {
  Target target{};
  if (!choose_target(model, &target)) return "nothing to overwrite";
  target.count = std::min(target.count, 20);
  for (int i = 0; i < target.count; ++i) {
    Target one = target;
    one.start += i;
    const Cell value = model.any_value(target.column->column);
    model.expect_status(write_one(one, value, false), 1);
    one.put(0, value);
  }
  return told(target, "overwrite singly");
}

std::string fill_typed(EditModel& model) {
  Target target{};
  if (!choose_target(model, &target)) return "nothing to fill";
  const Cell value = model.any_value(target.column->column);
  model.expect_status(write_one(target, value, true), target.count);
  for (int i = 0; i < target.count; ++i) target.put(i, value);
  return told(target, "fill typed");
}

// Calls that are refused

std::string refused(EditModel& model) {
  ModelTable& table = model.any_table();
  const int id = table.id();
  const int root = table.sets.front().id;
  const int total = table.total_rows();
  const int filter = table.table.filter(model.any_column(table).name);
  Numeric one = {1, 0};  // as wide as any value
  model.expect_status(RQXInsertRealRows(id, -1, 1), QX_ERROR_ROW_POSITION);
  model.expect_status(RQXDeleteRealRows(id, total + 1, 1), QX_ERROR_ROW_POSITION);
  model.expect_status(RQXDeleteRealRowsEx(id, root, 1, total + 1),
                      total == 0 ? QX_ERROR_ROW_POSITION : QX_ERROR_PARAMETER);
  model.expect_status(RQXOverwriteRealEx(id, filter, root, total + 1, 1, &one), QX_ERROR_PARAMETER);
  model.expect_status(RQXFillRealEx(id, filter, 99999, 1, 1, &one), QX_ERROR_NO_SET_ID);
  drain_ring();
  return told(table, "refused calls", {});
}

}  // namespace

std::vector<EditOperation> edits() {
  return {{insert_rows, 4},      {delete_rows, 4}, {delete_rows_of_set, 4},
          {overwrite, 8},        {fill, 4},        {overwrite_one, 12},
          {overwrite_singly, 8}, {fill_typed, 4},  {refused, 1}};
}

}  // namespace qxe::test
