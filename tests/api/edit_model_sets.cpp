// Searches, marks, sorts and sets that a client adds.
#include "edit_model_operations.h"
#include "support/engine_test.h"

namespace qxe::test {
namespace {

constexpr size_t kMostSets = 8;

/// Takes over a new set of the engine, and deletes one when there are many.
void adopt_set(EditModel& model, ModelTable& table, int id, std::vector<int> rows) {
  ASSERT_GT(id, 0) << to_text(drain_ring());
  table.sets.push_back({id, std::move(rows)});
  if (table.sets.size() <= kMostSets) return;
  const int place = 1 + model.random.below(static_cast<int>(kMostSets));
  model.expect_status(RQXDeleteSet(table.id(), table.sets[static_cast<size_t>(place)].id), 0);
  table.sets.erase(table.sets.begin() + place);
}

/// What a search reads.
struct Source {
  ModelTable* table;
  const ModelSet* set;
  const NamedColumn* column;

  int filter() const { return table->table.filter(column->name); }
};

std::vector<Source> marked_sources(ModelTable& table) {
  std::vector<Source> sources;
  for (const ModelSet& set : table.sets) {
    for (const NamedColumn& column : table.columns) {
      const Source source{&table, &set, &column};
      if (RQXHighSpeedSearchHasMark(table.id(), set.id, source.filter()) != 1) continue;
      sources.push_back(source);
    }
  }
  return sources;
}

/// Often a marked one.
Source any_source(EditModel& model) {
  std::vector<Source> marked;
  for (ModelTable& table : model.tables) {
    for (const Source& source : marked_sources(table)) marked.push_back(source);
  }
  if (!marked.empty() && model.random.chance(50)) return model.any_of(marked);
  ModelTable& table = model.any_table();
  return {&table, &model.any_set(table), &model.any_column(table)};
}

std::string search(EditModel& model) {
  static constexpr int kOperators[] = {QX_OPE_EQ,     QX_OPE_BETWEEN, QX_OPE_LEQ, QX_OPE_GEQ,
                                       QX_OPE_NEQ,    QX_OPE_WITHIN,  QX_OPE_LES, QX_OPE_GT,
                                       QX_OPE_BEGINS, QX_OPE_CONTAINS};
  const Source source = any_source(model);
  ModelTable& table = *source.table;
  const auto& [name, column] = *source.column;
  const int ope = kOperators[model.random.below(column.type == QX_DT_STRING ? 10 : 8)];
  const Cell low = model.random.bound(column);
  const Cell high = model.random.bound(column);
  const int set = source.set->id;
  const bool marked = RQXHighSpeedSearchHasMark(table.id(), set, source.filter()) == 1;
  auto rows = table.model().search(name, ope, low, high, source.set->rows);
  const int found = table.table.search(name, ope, low, high, set);
  if (marked && table.table.rows(found) != rows) {  // the mark is at work
    rows = table.model().sort({{name, QX_SORT_ASC}}, rows);
  }
  adopt_set(model, table, found, std::move(rows));
  return told(table, "search " + name, {set, ope});
}

/// Marks a set instead of those marked before, or as well, and freezes the filter for a moment. The
/// order stays until the next edit.
std::string mark(EditModel& model) {
  ModelTable& table = model.any_table();
  const bool instead = model.random.chance(50);
  for (const Source& source : instead ? marked_sources(table) : std::vector<Source>()) {
    model.expect_status(
        RQXHighSpeedSearchSetMark(table.id(), source.set->id, source.filter(), false), 0);
  }
  const int set = model.any_set(table).id;
  const int filter = table.table.filter(model.any_column(table).name);
  model.expect_status(RQXHighSpeedSearchSetMark(table.id(), set, filter, true), 0);
  model.expect_status(RQXHighSpeedSearchEnable(table.id(), filter, true), 0);
  model.expect_status(RQXInsertRealRows(table.id(), 1, 1), QX_ERROR_HIGH_SPEED_FILTER);
  drain_ring();
  model.expect_status(RQXHighSpeedSearchEnable(table.id(), filter, false), 0);
  return told(table, "mark", {set, filter});
}

std::string sort(EditModel& model) {
  ModelTable& table = model.any_table();
  const ModelSet& set = model.any_set(table);
  std::vector<SortKey> keys;
  for (int i = 1 + model.random.below(3); i > 0; --i) {
    keys.push_back({model.any_column(table).name, model.random.below(2)});
  }
  const int source = set.id;
  auto rows = table.model().sort(keys, set.rows);
  adopt_set(model, table, table.table.sort(keys, source), std::move(rows));
  return told(table, "sort " + keys.back().column, {source, static_cast<int>(keys.size())});
}

/// Some rows, a few of them twice.
std::string add_set(EditModel& model) {
  ModelTable& table = model.any_table();
  std::vector<int> rows = model.random.set_of(table.total_rows());
  if (!rows.empty() && model.random.chance(50)) rows.push_back(model.any_of(rows));
  adopt_set(model, table, table.table.add_set(rows), rows);
  return told(table, "add set", {static_cast<int>(rows.size())});
}

}  // namespace

std::vector<EditOperation> selections() {
  return {{search, 5}, {mark, 4}, {sort, 3}, {add_set, 3}};
}

}  // namespace qxe::test
