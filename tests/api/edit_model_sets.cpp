// Searches, marks, sorts, sets that a client adds, and sets combined.
#include <algorithm>

#include "edit_model_operations.h"
#include "support/engine_test.h"
#include "support/naive_wildcard.h"
#include "support/raw_values.h"

namespace qxe::test {
namespace {

constexpr size_t kMostSets = 8;

/// Takes over a new set of the engine, and deletes one when there are many.
void adopt_set(EditModel& model, ModelTable& table, int id, std::vector<int> rows) {
  ASSERT_GT(id, 0) << to_text(drain_ring());
  EXPECT_EQ(table.table.rows(id), rows);
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

/// All call forms of a search by value.
int call_search(EditModel& model, int table, const NamedColumn& target, int filter, int set,
                int ope, RawValues& bounds) {
  char* const low = bounds.value(0);
  char* const high = bounds.value(1);
  switch (model.random.below(6)) {
    case 0: return QXSearchByField(table, filter, set, ope, low, high);
    case 1: return RQXSearchByFieldStr(table, filter, set, ope, low, high);
    case 2:
      return RQXSearchByFieldLocale(table, filter, set, ope, low, high,
                                    model.random.chance(50) ? 99 : model.locale);
    case 3:
      if (model.locale != QX_LOCALE_SJIS) break;
      return RQXSearchByFieldSJIS(table, filter, set, ope, low, high);
    case 4:
      if (target.column.type == QX_DT_STRING) break;
      return RQXSearchByField2(table, filter, set, ope, low, high);
    default: break;
  }
  return RQXSearchByField(table, filter, set, ope, low, high);
}

std::string search(EditModel& model) {
  const Source source = any_source(model);
  ModelTable& table = *source.table;
  const auto& [name, column] = *source.column;
  const int ope =
      any_operator(model, column.type, true) | (model.random.chance(25) ? int{QX_OPE_STRICT} : 0);
  const Cell low = any_bound(model, column, ope);
  const Cell high = model.random.bound(column);
  const int set = source.set->id;
  const bool marked = RQXHighSpeedSearchHasMark(table.id(), set, source.filter()) == 1;
  auto rows =
      NaiveModel(table.columns, model.locale).search(name, ope, low, high, source.set->rows);
  RawValues bounds(column.type, {low, high});
  const int found =
      call_search(model, table.id(), *source.column, source.filter(), set, ope, bounds);
  if (marked && table.table.rows(found) != rows) {  // the mark is at work
    rows = table.model().sort({{name, QX_SORT_ASC}}, rows);
  }
  adopt_set(model, table, found, std::move(rows));
  return told(table, "search " + name + " for " + to_text(low, column.type), {set, ope});
}

std::string search_values(EditModel& model) {
  ModelTable& table = model.any_table();
  const ModelSet& set = model.any_set(table);
  const auto& [name, column] = model.any_column(table);
  std::vector<Cell> values;
  for (int i = model.random.below(20); i > 0; --i) values.push_back(model.random.bound(column));
  const int source = set.id;
  auto rows = table.model().search_values(name, values, set.rows);
  adopt_set(model, table, table.table.search_values(name, values, source), std::move(rows));
  return told(table, "search values of " + name, {source, static_cast<int>(values.size())});
}

/// Every other one is a text with parts of it made wild.
std::string any_pattern(EditModel& model, const Column& column) {
  const std::vector<std::string> special = {"*", "*", "*", "?", "?", "\\*", "\\?", "\\\\"};
  const auto any_special = [&] {
    return special[static_cast<size_t>(model.random.below(static_cast<int>(special.size())))];
  };
  std::string pattern;
  const Cell text = any_bound(model, column, QX_OPE_CONTAINS);
  for (const char byte : std::get<std::string>(text)) {
    if (model.random.chance(20)) pattern += any_special();
    if (model.random.chance(80)) pattern += byte;
  }
  return model.random.chance(50) ? pattern + any_special() : pattern;
}

std::string search_pattern(EditModel& model) {
  ModelTable& table = model.any_table();
  const ModelSet& set = model.any_set(table);
  const auto& [name, column] = model.any_column(table);
  if (column.type != QX_DT_STRING) return "no strings to match";
  const std::string pattern = any_pattern(model, column);
  const auto parts = pattern_parts(pattern, model.locale);
  const auto call = model.random.chance(50) ? RQXSearchByFieldWildCard : QXSearchByFieldWildCard;
  const int source = set.id;
  const int found = call(table.id(), table.table.filter(name), source, pattern.c_str());
  std::string what = told(table, "search " + name + " for pattern " + pattern, {source});
  if (!parts) {
    model.expect_status(found, QX_ERROR_PARAMETER);
    drain_ring();
    return what + " which is none";
  }
  std::vector<int> rows;
  std::copy_if(set.rows.begin(), set.rows.end(), std::back_inserter(rows), [&](int row) {
    const auto& text = std::get<std::string>(column.cells[static_cast<size_t>(row) - 1]);
    return !text.empty() && naive_match(*parts, text);
  });
  adopt_set(model, table, found, std::move(rows));
  return what;
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

std::string combine_sets(EditModel& model) {
  ModelTable& table = model.any_table();
  const ModelSet& a = model.any_set(table);
  const ModelSet& b = model.any_set(table);
  constexpr int kNot = 3;  // of the first set alone
  const int op = model.random.below(4);
  const int ids[] = {a.id, b.id};
  std::vector<int> rows;
  for (const int row : table.sets.front().rows) {
    const bool in_a = std::find(a.rows.begin(), a.rows.end(), row) != a.rows.end();
    const bool in_b = std::find(b.rows.begin(), b.rows.end(), row) != b.rows.end();
    if (op == QX_SET_AND      ? in_a && in_b
        : op == QX_SET_OR     ? in_a || in_b
        : op == QX_SET_ANDNOT ? in_a && !in_b
                              : !in_a) {
      rows.push_back(row);
    }
  }
  const bool plain = model.random.chance(50);
  adopt_set(model, table,
            op == kNot ? (plain ? QXSetNotReal : RQXSetNotReal)(table.id(), ids[0])
                       : (plain ? QXSetOpeReal : RQXSetOpeReal)(table.id(), op, ids[0], ids[1]),
            std::move(rows));
  return told(table, "combine sets", {op, ids[0], ids[1]});
}

}  // namespace

int any_operator(EditModel& model, int type, bool with_null) {
  constexpr int kLastOfValues = QX_OPE_GT;
  if (type == QX_DT_STRING) return model.random.below(QX_OPE_ENDS + 1);
  const int ope = model.random.below(kLastOfValues + (with_null ? 2 : 1));
  return ope > kLastOfValues ? int{QX_OPE_ISNULL} : ope;
}

Cell any_bound(EditModel& model, const Column& column, int ope) {
  Cell bound = model.random.bound(column);
  const int code = ope & ~QX_OPE_STRICT;
  if (code != QX_OPE_BEGINS && code != QX_OPE_CONTAINS && code != QX_OPE_ENDS) return bound;
  auto& text = std::get<std::string>(bound);
  const int size = static_cast<int>(text.size());
  if (size == 0 || model.random.chance(20)) return bound;
  const int first = code == QX_OPE_BEGINS ? 0 : model.random.below(size);
  const int most = size - first;
  const int count = code == QX_OPE_ENDS ? most : 1 + model.random.below(most);
  return text.substr(static_cast<size_t>(first), static_cast<size_t>(count));
}

std::vector<EditOperation> selections() {
  return {{search, 6}, {mark, 4},    {search_values, 1}, {search_pattern, 3},
          {sort, 3},   {add_set, 3}, {combine_sets, 3}};
}

}  // namespace qxe::test
