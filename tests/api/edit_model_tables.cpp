// Tables made of tables, and value lists condensed.
#include <algorithm>

#include "edit_model_conversions.h"
#include "edit_model_operations.h"
#include "support/engine_test.h"

namespace qxe::test {
namespace {

constexpr int kMostTables = 5;
constexpr int kMostListed = 8;

/// Takes over a new table of the engine, and deletes one when there are many: the new one's source
/// or another.
void adopt_table(EditModel& model, int id, std::vector<Column> wanted, bool all_used = false) {
  ASSERT_GT(id, 0) << to_text(drain_ring());
  Columns columns;
  for (Column& column : wanted) columns.push_back({"", std::move(column)});
  ModelTable& made = model.tables.emplace_back(TestTable::existing(id), std::move(columns));
  take_names(made);
  expect_equal(made);
  expect_value_lists(made, all_used);
  if (model.tables.size() <= kMostTables) return;
  const auto gone = model.tables.begin() + model.random.below(kMostTables);
  model.expect_status(RQXDeleteTable(gone->id()), 0);
  model.tables.erase(gone);
}

std::vector<Column> columns_of(const ModelTable& table) {
  std::vector<Column> columns;
  for (const NamedColumn& named : table.columns) columns.push_back(named.column);
  return columns;
}

/// Derived tables tend to be smaller than their sources, and small ones have no tails.
std::string fresh_table(EditModel& model) {
  const ModelTable fresh(model.random.table(100 + model.random.below(200)));
  adopt_table(model, fresh.id(), columns_of(fresh));
  return told(fresh, "fresh", {});
}

std::string duplicate_table(EditModel& model) {
  const ModelTable& table = model.any_table();
  std::string what = told(table, "duplicate", {});
  const auto duplicate = model.random.chance(50) ? RQXDuplicateRealTable : QXDuplicateRealTable;
  adopt_table(model, duplicate("copy", table.id()), columns_of(table));
  return what;
}

std::string condense(EditModel& model) {
  const ModelTable& table = model.any_table();
  const auto call = model.random.chance(50) ? RQXCondenseRealTable : QXCondenseRealTable;
  model.expect_status(call(table.id()), 0);
  expect_value_lists(table, true);
  return told(table, "condense", {});
}

// Rows of sets, one set below the other

struct Part {
  ModelTable& table;
  const ModelSet& set;

  /// 0 without a column.
  int filter(const NamedColumn* column) const {
    return column == nullptr ? 0 : table.table.filter(column->name);
  }
};

using Parts = std::vector<Part>;

Parts any_parts(EditModel& model, int count) {
  Parts parts;
  for (; count > 0; --count) {
    ModelTable& table = model.any_table();
    parts.push_back({table, model.any_set(table)});
  }
  return parts;
}

bool is_too_much(const Parts& parts) {
  size_t rows = 0;
  for (const Part& part : parts) rows += part.set.rows.size();
  return rows > kMostRows;
}

Column table_ids(const Parts& parts) {
  Column column;
  for (const auto& [table, set] : parts) {
    column.cells.insert(column.cells.end(), set.rows.size(), table.id());
  }
  return column;
}

Column row_numbers(const Parts& parts) {
  Column column;
  for (const Part& part : parts) {
    column.cells.insert(column.cells.end(), part.set.rows.begin(), part.set.rows.end());
  }
  return column;
}

/// A column of each part, null for NULL in its rows. The first one's form is that of the result.
Column stacked(const Parts& parts, const std::vector<const NamedColumn*>& sources) {
  const auto first =
      std::find_if(sources.begin(), sources.end(), [](auto* source) { return source != nullptr; });
  Column column{(*first)->column.type, {}, (*first)->column.scale};
  for (size_t i = 0; i < parts.size(); ++i) {
    for (const int row : parts[i].set.rows) {
      const auto at = static_cast<size_t>(row - 1);
      const Cell& cell = sources[i] == nullptr ? Cell{} : sources[i]->column.cells[at];
      column.cells.push_back(column.type == QX_DT_DECIMAL ? rescaled(cell, column.scale)
                                                          : normal_form(cell, column.type));
    }
  }
  return column;
}

/// Which columns in front tell where a row comes from.
struct Pseudo {
  bool table_id;
  bool row_number;

  std::vector<Column> columns(const Parts& parts) const {
    std::vector<Column> columns;
    if (table_id) columns.push_back(table_ids(parts));
    if (row_number) columns.push_back(row_numbers(parts));
    return columns;
  }
};

Pseudo any_pseudo(EditModel& model) {
  return {model.random.chance(10), model.random.chance(10)};
}

/// Chooses columns, adds them to the wanted ones and returns their list.
std::vector<int> choose_listed(EditModel& model, const Part& part, std::vector<Column>& wanted) {
  std::vector<int> filters;
  for (int left = 1 + model.random.below(kMostListed); left > 0; --left) {
    const NamedColumn* const source = &model.any_column(part.table);
    switch (model.random.below(20)) {
      case 0:
        filters.push_back(QX_FLT_TABLE_ID);
        wanted.push_back(table_ids({part}));
        break;
      case 1:
        filters.push_back(QX_FLT_REC_NO);
        wanted.push_back(row_numbers({part}));
        break;
      default: filters.push_back(part.filter(source)); wanted.push_back(stacked({part}, {source}));
    }
  }
  filters.push_back(0);
  return filters;
}

std::string extract(EditModel& model) {
  const Part part = any_parts(model, 1).front();
  const int table = part.table.id();
  const int set = part.set.id;
  const Pseudo pseudo = any_pseudo(model);
  auto wanted = pseudo.columns({part});
  std::vector<int> filters;
  if (model.random.chance(50)) {
    filters = choose_listed(model, part, wanted);
  } else {
    for (const NamedColumn& source : part.table.columns)
      wanted.push_back(stacked({part}, {&source}));
  }
  int* const list = filters.empty() ? nullptr : filters.data();
  std::string what = told(part.table, "extract", {set, static_cast<int>(wanted.size())});
  const bool plain = !pseudo.table_id && !pseudo.row_number && model.random.chance(50);
  const int id =
      plain ? RQXExtractRealTable("rows", table, set, list)
            : RQXExtractRealTableEx("rows", table, set, pseudo.table_id, pseudo.row_number, list);
  adopt_table(model, id, wanted, true);
  return what;
}

/// Null when the column met is of another type.
const NamedColumn* any_of_type(EditModel& model, const Part& part, int type) {
  const NamedColumn& column = model.any_column(part.table);
  return column.column.type == type ? &column : nullptr;
}

/// A column of both sides, or of one of them.
std::vector<const NamedColumn*> any_pair(EditModel& model, const Parts& parts) {
  const NamedColumn* const first = &model.any_column(parts[0].table);
  if (model.random.chance(15)) return {nullptr, &model.any_column(parts[1].table)};
  const NamedColumn* second = nullptr;
  for (int tries = 0; second == nullptr && tries < 4; ++tries) {
    second = any_of_type(model, parts[1], first->column.type);
  }
  return {first, second};
}

std::string combine(EditModel& model) {
  const Parts parts = any_parts(model, 2);
  if (is_too_much(parts)) return "too much to combine";
  const Pseudo pseudo = any_pseudo(model);
  auto wanted = pseudo.columns(parts);
  std::vector<int> filters[2];
  for (int left = 1 + model.random.below(kMostListed); left > 0; --left) {
    const auto sources = any_pair(model, parts);
    for (size_t i : {0, 1}) filters[i].push_back(parts[i].filter(sources[i]));
    wanted.push_back(stacked(parts, sources));
  }
  for (auto& list : filters) list.push_back(0);
  std::string what =
      told(parts[0].table, "combine", {parts[0].set.id, parts[1].table.id(), parts[1].set.id});
  char name[] = "both";
  const auto call = model.random.chance(50) ? RQXCombineRealTableEx : QXCombineRealTableEx;
  const int id =
      call(name, pseudo.table_id, pseudo.row_number, parts[0].table.id(), parts[0].set.id,
           filters[0].data(), parts[1].table.id(), parts[1].set.id, filters[1].data());
  adopt_table(model, id, wanted);
  return what;
}

std::string combine_list(EditModel& model) {
  const Parts parts = any_parts(model, 1 + model.random.below(4));
  if (is_too_much(parts)) return "too much to combine";
  auto wanted = Pseudo{true, true}.columns(parts);
  std::vector<int> tables;
  std::vector<int> sets;
  for (const auto& [table, set] : parts) {
    tables.push_back(table.id());
    sets.push_back(set.id);
  }
  tables.push_back(0);
  std::vector<int> filters[4];
  int* lists[4] = {};
  for (size_t i : {0, 1, 2, 3}) {
    std::vector<const NamedColumn*> sources;
    for (const Part& part : parts) sources.push_back(any_of_type(model, part, QX_DT_INTEGER));
    if (sources[0] == nullptr) continue;  // which gives the name
    for (size_t k = 0; k < parts.size(); ++k) filters[i].push_back(parts[k].filter(sources[k]));
    lists[i] = filters[i].data();
    wanted.push_back(stacked(parts, sources));
  }
  std::string what = told(parts[0].table, "combine a list", {static_cast<int>(parts.size())});
  char name[] = "list";
  adopt_table(
      model,
      RQXCombineTableList(name, tables.data(), sets.data(), lists[0], lists[1], lists[2], lists[3]),
      wanted);
  return what;
}

}  // namespace

std::vector<EditOperation> table_derivations() {
  return {{fresh_table, 2}, {duplicate_table, 1}, {condense, 2},
          {extract, 2},     {combine, 4},         {combine_list, 1}};
}

}  // namespace qxe::test
