// Serial layer: filters by id and name, adding, moving and deleting them.
#include <algorithm>

#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "storage/strings.h"

namespace qxe {

int innerQXGetNFilter(int table) {
  return with_table({.layer = "QXGetNFilter"}, table,
                    [](TBaseTable& target) { return target.GetNFilter(); });
}

int innerQXGetFilterIDList(int table, int* out) {
  return with_table({.layer = "QXGetFilterIDList"}, table,
                    [&](TBaseTable& target) { return target.GetFilterIDList(out); });
}

int innerQXGetFilterWidth(int table, int filter) {
  return with_table({.layer = "QXGetFilterWidth"}, table,
                    [&](TBaseTable& target) { return target.GetFilterWidth(filter); });
}

int innerQXGetFilterType(int table, int filter) {
  return with_filter({.layer = "QXGetFilterType"}, table, filter,
                     [](TBaseTable&, TFilter& column) { return column.data_type(); });
}

int innerQXDeleteRealFilter(int table, int filter) {
  static constexpr FailureText kTexts[] = {{QX_ERROR_NO_FILTER, "No such filter exist"},
                                           {QX_ERROR_REFERRED, "Refered by Join"}};
  return with_real_table({.layer = "QXDeleteRealFilter",
                          .access = Access::kChange,
                          .saved = &g_TFSaved,
                          .texts = kTexts},
                         table, [&](TRealTable& target) { return target.DropFilter(filter); });
}

int innerQXMoveRealFilter(int table, int from, int to) {
  return with_real_table(
      {.layer = "QXMoveRealFilter", .access = Access::kChange, .saved = &g_TFSaved}, table,
      [&](TRealTable& target) { return target.MoveFilter(from, to); });
}

int innerQXSetFilterName(int table, int filter, const char* name) {
  return with_real_table(
      {.layer = "QXSetFilterName", .access = Access::kChange, .saved = &g_TFSaved}, table,
      [&](TRealTable& target) { return target.SetFilterName(filter, name); });
}

int innerQXGetFilterName(int table, int filter, char* out) {
  return with_table({.layer = "QXGetFilterName"}, table, [&](TBaseTable& target) {
    char table_name[TBaseTable::kNameSize];
    return target.FilterID2Name(filter, table_name, out);
  });
}

int innerQXGetFilterIDFromName(int table, const char* name, int side) {
  return with_table({.layer = "QXGetFilterIDFromName"}, table, [&](TBaseTable& target) {
    return target.GetFilterIDFromName(name == nullptr ? "" : name, side);
  });
}

int innerQXGetValCount(int table, int filter, int set, int* counts) {
  return with_filter({.layer = "QXGetValCount"}, table, filter,
                     [&](TBaseTable& target, TFilter& column) {
                       column.MergeTVL(true);
                       std::fill_n(counts, column.VL->FArraySize, 0);
                       return std::min(target.CountN(set, filter, counts), 0);
                     });
}

}  // namespace qxe
