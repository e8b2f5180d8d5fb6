// Serial layer: high-speed search.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"

namespace qxe {

int innerQXHighSpeedSearchSetMark(int table, int set, int filter, bool on) {
  return with_real_table(
      {.layer = "QXHighSpeedSearchSetMark", .saved = &g_TFSSaved}, table,
      [&](TRealTable& target) { return target.HighSpeedSearchSetMark(set, filter, on); });
}

int innerQXHighSpeedSearchHasMark(int table, int set, int filter) {
  return with_real_table({.layer = "QXHighSpeedSearchHasMark"}, table, [&](TRealTable& target) {
    return target.HighSpeedSearchHasMark(set, filter);
  });
}

int innerQXHighSpeedSearchEnable(int table, int filter, bool on) {
  return with_real_table(
      {.layer = "QXHighSpeedSearchEnable", .saved = &g_TFSaved}, table,
      [&](TRealTable& target) { return target.HighSpeedSearchEnable(filter, on); });
}

int innerQXHighSpeedSearchIsEnabled(int table, int filter) {
  return with_filter({.layer = "QXHighSpeedSearchIsEnabled", .kind = TableKind::kReal}, table,
                     filter,
                     [](TBaseTable&, TFilter& column) { return column.high_speed() ? 1 : 0; });
}

}  // namespace qxe
