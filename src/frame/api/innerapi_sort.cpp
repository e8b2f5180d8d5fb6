// Serial layer: sorts and the extraction of first rows. Each makes a new set and returns its id.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "search/sort.h"

namespace qxe {

namespace {

/// `sort(table)` for a direction of 0 or 1.
template <class Sort>
int sort_rows(const char* layer, int table, int dir, Sort&& sort) {
  return with_table({.layer = layer, .saved = &g_TFSSaved}, table, [&](TBaseTable& target) {
    if (dir != QX_SORT_ASC && dir != QX_SORT_DESC) {
      return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : Dir");
    }
    return sort(target);
  });
}

}  // namespace

int innerQXSortByField(int table, int filter, int set, int dir) {
  return sort_rows("QXSortByField", table, dir,
                   [&](TBaseTable& target) { return target.SortByField(filter, set, dir); });
}

int innerQXSortByRowNo(int table, int filter, int set, int dir) {
  return sort_rows("QXSortByRowNo", table, dir,
                   [&](TBaseTable& target) { return target.SortByRecNo(filter, set, dir); });
}

int innerQXExtractUniqueReal(int table, int set, const int* filters) {
  return with_real_table(
      {.layer = "QXExtractUniqueReal", .saved = &g_TFSSaved}, table,
      [&](TRealTable& target) { return target.MppExtractUniqueReal(set, filters); });
}

int innerQXServiceSortByN(int n, const int* counts, int* nonZero, int* nonZeroIndex, int* order) {
  return with_collection({.layer = "QXServiceSortByN"}, [&](TTableCollection&) {
    return service_sort_by_n(n, counts, nonZero, nonZeroIndex, order);
  });
}

}  // namespace qxe
