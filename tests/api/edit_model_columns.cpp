// Columns made of columns: copies, as they are and in other types.
#include "edit_model_conversions.h"
#include "edit_model_operations.h"
#include "support/engine_test.h"

namespace qxe::test {
namespace {

constexpr int kMostColumns = 10;

/// Takes over a new column at the end, and deletes one when there are many.
void adopt_column(EditModel& model, ModelTable& table, int id, Column wanted) {
  ASSERT_GT(id, 0) << to_text(drain_ring());
  table.columns.push_back({"", std::move(wanted)});
  take_names(table);
  if (table.columns.size() <= kMostColumns) return;
  const auto gone = table.columns.begin() + model.random.below(kMostColumns);
  model.expect_status(RQXDeleteRealFilter(table.id(), table.table.filter(gone->name)), 0);
  if (table.cursor && table.cursor->column == gone->name) table.cursor.reset();
  table.columns.erase(gone);
}

std::string copy_column(EditModel& model) {
  ModelTable& table = model.any_table();
  const auto [name, column] = model.any_column(table);
  const auto copy = model.random.chance(50) ? RQXDupRealFilter : QXDupRealFilter;
  adopt_column(model, table, copy(table.id(), table.table.filter(name)), column);
  return told(table, "copy " + name, {});
}

/// False when a value is beyond the model.
bool convert(const Column& source, Column& column) {
  for (const Cell& cell : source.cells) {
    const auto value = converted(cell, source.type, column.type, column.scale);
    if (!value) return false;
    column.cells.push_back(*value);
  }
  return true;
}

int any_type(EditModel& model) {
  constexpr int kTypes[] = {QX_DT_INTEGER, QX_DT_DOUBLE,   QX_DT_DATE,   QX_DT_TIME,
                            QX_DT_STRING,  QX_DT_DATETIME, QX_DT_DECIMAL};
  return kTypes[model.random.below(static_cast<int>(std::size(kTypes)))];
}

/// All types alike, though most columns of a table may have one, and often the newest, which may be
/// a conversion itself.
const NamedColumn& any_source(EditModel& model, ModelTable& table) {
  if (model.random.chance(30)) return table.columns.back();
  const int type = any_type(model);
  for (const NamedColumn& column : table.columns) {
    if (column.column.type == type && model.random.chance(70)) return column;
  }
  return model.any_column(table);
}

std::string convert_column(EditModel& model) {
  ModelTable& table = model.any_table();
  const auto& [name, source] = any_source(model, table);
  const int type = any_type(model);
  const bool numeric = model.random.chance(40);
  const int scale = numeric ? model.random.below(9) : 6;
  // Without a scale of its own a decimal stays as it is.
  const bool plain = !numeric && source.type == type;
  Column column{type, {}, plain ? source.scale : type == QX_DT_DECIMAL ? scale : 0};
  if (!convert(source, column)) return "nothing to convert";
  const int filter = table.table.filter(name);
  std::string what = told(table, "convert " + name, {type, column.scale});
  const auto call = model.random.chance(50) ? RQXDupRealFilterEx : QXDupRealFilterEx;
  adopt_column(model, table,
               numeric ? RQXDupRealFilterExNumeric(table.id(), filter, type, scale, QX_ROUND_HALFUP)
                       : call(table.id(), filter, type),
               column);
  return what;
}

}  // namespace

std::vector<EditOperation> column_derivations() {
  return {{copy_column, 2}, {convert_column, 12}};
}

}  // namespace qxe::test
