// Serial layer: set algebra.
#include <algorithm>

#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "search/set_operations.h"

namespace qxe {

int innerQXSetOpeReal(int table, int op, int set1, int set2) {
  return with_table({.layer = "QXSetOpe", .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) { return target.SetOpe(op, set1, set2); });
}

int innerQXSetNotReal(int table, int set) {
  return with_table({.layer = "QXSetNot", .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) { return target.SetNot(set); });
}

namespace {

/// The rows of a caller's list. Throws unless it has them and all lie between 1 and `totalRows`.
RowSpan checked_rows(const _TSetDescript& list, int totalRows) {
  static constexpr char kLayer[] = "QXSetOpe2";
  if (list.count < 0) {
    throw CQXException(
        report(kLayer, QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(%d)", list.count));
  }
  if (list.count == 0) return {};
  const bool good =
      list.rows != nullptr && std::all_of(list.rows, list.rows + list.count,
                                          [&](int row) { return row >= 1 && row <= totalRows; });
  if (!good) {
    throw CQXException(report(kLayer, QX_ERROR_ROW_POSITION, "Invalid Parameter : PSetArray"));
  }
  return {list.rows, static_cast<size_t>(list.count)};
}

}  // namespace

int innerQXSetOpe2(int op, int totalRows, const _TSetDescript& a, const _TSetDescript& b,
                   _TSetDescript* result) {
  *result = {-1, nullptr};
  return with_collection({.layer = "QXSetOpe2"}, [&](TTableCollection&) {
    if (totalRows < 0) {
      return report("QXSetOpe2", QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(%d)", totalRows);
    }
    const auto found =
        SetOpeCommon(op, totalRows, checked_rows(a, totalRows), checked_rows(b, totalRows));
    result->count = found->FArraySize;
    result->rows = found->release_block().release();  // the caller's from here on
    return result->count;
  });
}

}  // namespace qxe
