// Find cursors, which see a table as it was when they were opened, and rows looked up in sets.
#include <algorithm>

#include "edit_model_operations.h"
#include "support/engine_test.h"
#include "support/raw_values.h"

namespace qxe::test {
namespace {

int open_text(EditModel& model, int table, int filter, int ope, char* low, char* high) {
  switch (model.random.below(4)) {
    case 0: return QXOpenStrFindReal(table, filter, ope, low, high);
    case 1: return RQXOpenStrFindRealLocale(table, filter, ope, low, high, model.locale);
    case 2:
      if (model.locale != QX_LOCALE_SJIS) break;
      return RQXOpenStrFindRealSJIS(table, filter, ope, low, high);
    default: break;
  }
  return RQXOpenStrFindReal(table, filter, ope, low, high);
}

int open(EditModel& model, int table, int filter, int type, int ope, RawValues& bounds) {
  const bool plain = model.random.chance(50);
  switch (type) {
    case QX_DT_INTEGER: {
      const auto* const v = static_cast<int*>(bounds.data());
      return (plain ? QXOpenIntFindReal : RQXOpenIntFindReal)(table, filter, ope, v[0], v[1]);
    }
    case QX_DT_STRING:
      return open_text(model, table, filter, ope, bounds.value(0), bounds.value(1));
    case QX_DT_DECIMAL: {
      const auto* const v = static_cast<Numeric*>(bounds.data());
      return RQXOpenNumericFindReal(table, filter, ope, v[0], v[1]);
    }
    default: {
      const auto* const v = static_cast<double*>(bounds.data());
      return (plain ? QXOpenFloatFindReal : RQXOpenFloatFindReal)(table, filter, ope, v[0], v[1]);
    }
  }
}

void expect_status(const ModelTable& table) {
  int count = -1, filter = -1;
  const int id = RQXGetFindStatus(table.id(), &count, &filter);
  if (!table.cursor) {
    EXPECT_EQ(id, 0);
    return;
  }
  const std::vector<bool>& hits = table.cursor->hits;
  EXPECT_EQ(id, table.cursor->id);
  EXPECT_EQ(filter, table.table.filter(table.cursor->column));
  EXPECT_EQ(count, static_cast<int>(std::count(hits.begin(), hits.end(), true)));
}

std::string open_find(EditModel& model) {
  ModelTable& table = model.any_table();
  const auto& [name, column] = model.any_column(table);
  const int type = column.type;
  const int ope = any_operator(model, type, false);
  const Cell low = any_bound(model, column, ope);
  const Cell high = model.random.bound(column);
  RawValues bounds(type, {low, high});
  const int filter = table.table.filter(name);
  const int id = open(model, table.id(), filter, type, ope, bounds);
  std::string what = told(table, "open find " + name + " for " + to_text(low, type), {ope});
  EXPECT_GT(id, table.cursor ? table.cursor->id : 0) << to_text(drain_ring());
  ModelCursor cursor{id, name, {is_find_hit(type, normal_form({}, type), ope, low, high)}};
  for (const Cell& cell : column.cells) {
    cursor.hits.push_back(is_find_hit(type, cell, ope, low, high, model.locale));
  }
  table.cursor = cursor;
  expect_status(table);
  return what;
}

std::string close_find(EditModel& model) {
  ModelTable& table = model.any_table();
  if (model.random.chance(50)) {  // a failed open closes it too
    model.expect_status(RQXOpenIntFindReal(table.id(), 0, 0, 1, 1), QX_ERROR_FILTER_INDEX);
    drain_ring();
  } else {
    model.expect_status((model.random.chance(50) ? QXCloseFindReal : RQXCloseFindReal)(table.id()),
                        0);
  }
  table.cursor.reset();
  return told(table, "close find", {});
}

/// The place of the next hit by looking at each, 0 for none.
int next_place(const std::vector<bool>& hits, const std::vector<int>& rows, int position,
               bool backward) {
  const int size = static_cast<int>(rows.size());
  const int step = backward ? -1 : 1;
  for (int place = backward ? std::min(position, size + 1) - 1 : std::max(position, 0) + 1;
       place >= 1 && place <= size; place += step) {
    if (hits[static_cast<size_t>(rows[static_cast<size_t>(place) - 1])]) return place;
  }
  return 0;
}

/// A few steps from anywhere in any set.
std::string step(EditModel& model) {
  ModelTable& table = model.any_table();
  const ModelSet& set = model.any_set(table);
  const auto next = model.random.chance(50) ? RQXGetNextHitReal : QXGetNextHitReal;
  const bool backward = model.random.chance(50);
  int position = model.random.below(static_cast<int>(set.rows.size()) + 6) - 2;
  std::string what = told(table, backward ? "step back" : "step", {set.id, position});
  expect_status(table);
  int filter = 0;
  if (!table.cursor) {
    model.expect_status(next(table.id(), 1, set.id, position, backward, &filter, &position),
                        QX_ERROR_FIND_CLOSED);
    drain_ring();
    return what + " without a cursor";
  }
  for (int steps = model.random.below(20); steps >= 0; --steps) {
    const int wanted = next_place(table.cursor->hits, set.rows, position, backward);
    const int status =
        next(table.id(), table.cursor->id, set.id, position, backward ? 1 : 0, &filter, &position);
    model.expect_status(status, wanted > 0 ? 1 : 0);
    if (wanted == 0 || status != 1) break;
    EXPECT_EQ(position, wanted);
  }
  return what;
}

std::string find_row(EditModel& model) {
  ModelTable& table = model.any_table();
  const auto& [id, rows] = model.any_set(table);
  const int row = model.random.below(table.total_rows() + 2);
  const auto place = std::find(rows.begin(), rows.end(), row);
  const int wanted = place == rows.end() ? 0 : static_cast<int>(place - rows.begin()) + 1;
  const auto call = model.random.chance(50) ? RQXFindRecNoReal : QXFindRecNoReal;
  model.expect_status(call(table.id(), id, row), wanted);
  return told(table, "find row", {id, row});
}

}  // namespace

std::vector<EditOperation> finds() {
  return {{open_find, 4}, {step, 6}, {close_find, 1}, {find_row, 1}};
}

}  // namespace qxe::test
