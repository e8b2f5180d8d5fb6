// Rows written from files: behind the last one, over those there are, or across both.
#include "edit_model_operations.h"
#include "import/column_files.h"
#include "support/engine_test.h"
#include "support/files.h"

namespace qxe::test {
namespace {

/// Rows that a file writes.
struct Written {
  int position;  // as the call takes it
  int first;     // the first row
  int lines;     // of the file
  int count;     // rows written; NULLs when the file has fewer lines
};

Written any_rows(EditModel& model, const ModelTable& table) {
  const int total = table.total_rows();
  const int lines = total > kMostRows ? 1 : model.random.below(25);
  const int count = model.random.chance(70) ? lines : model.random.below(lines + 5);
  const bool behind = model.random.chance(50);
  const int first = behind ? total + 1 : 1 + model.random.below(total + 5);
  return {behind && model.random.chance(50) ? -1 : first, first, lines, count};
}

/// Values that a text gives again to the last bit, which those of times need not.
Column any_lines(EditModel& model, const Column& column, int lines) {
  Column fresh{column.type, {}, column.scale};
  if (column.type == QX_DT_TIME || column.type == QX_DT_DATETIME) {
    fresh.cells.resize(static_cast<size_t>(lines));
  } else if (column.type == QX_DT_DATE) {
    fresh.cells = model.random.column(QX_DT_DATE, lines).cells;
  } else {
    fresh.cells = model.any_values(column, lines);
  }
  return fresh;
}

void grow(Column& column, size_t rows) {
  if (column.cells.size() < rows) column.cells.resize(rows, normal_form({}, column.type));
}

/// Puts the file's values into the column; NULLs fill a gap and make up for missing lines.
void write(Column& column, const Written& rows, const Column& file) {
  if (rows.count == 0) return;
  const auto first = static_cast<size_t>(rows.first) - 1;
  const auto count = static_cast<size_t>(rows.count);
  grow(column, first + count);
  for (size_t i = 0; i < count; ++i) {
    column.cells[first + i] = i < file.cells.size() ? file.cells[i] : normal_form({}, column.type);
  }
}

std::string append_lines(EditModel& model) {
  ModelTable& table = model.any_table();
  if (table.columns.size() < 2) return "nothing to append";  // a lone empty text is an empty line
  const Written rows = any_rows(model, table);
  Columns file;
  for (const auto& [name, column] : table.columns) {
    file.push_back({name, any_lines(model, column, rows.lines)});
  }
  write_file("append.cat", catalog_of(file));
  write_file("SrcData.dat", lines_of(file));
  model.expect_status(
      RQXAppendCatalogFile(table.id(), rows.position, rows.count, ".", "append.cat"), rows.count);
  for (size_t i = 0; i < file.size(); ++i) write(table.columns[i].column, rows, file[i].column);
  table.take_rows();
  return told(table, "append", {rows.position, rows.lines, rows.count});
}

std::string append_to_column(EditModel& model) {
  ModelTable& table = model.any_table();
  const Written rows = any_rows(model, table);
  auto& [name, column] = model.any_column(table);
  const Column file = any_lines(model, column, rows.lines);
  write_file("column.dat", one_column_file(file));
  // An empty file of strings is no such file.
  const bool refused = column.type == QX_DT_STRING && rows.lines == 0 && rows.count > 0;
  model.expect_status(RQXAppendRealFilter2(table.id(), table.table.filter(name), column.type,
                                           rows.position, rows.count, ".", "column.dat"),
                      refused ? QX_ERROR_CATALOG : rows.count);
  if (refused) return told(table, "refused append to " + name, {});
  write(column, rows, file);
  for (NamedColumn& other : table.columns) grow(other.column, column.cells.size());
  table.take_rows();
  return told(table, "append to " + name, {rows.position, rows.lines, rows.count});
}

}  // namespace

std::vector<EditOperation> appends() {
  return {{append_lines, 3}, {append_to_column, 3}};
}

}  // namespace qxe::test
