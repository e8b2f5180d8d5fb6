// Serial layer: the records and totals of summary tables, and the detail of a filter.
#include "frame/api/cell_text.h"
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "storage/family.h"
#include "summary/detail.h"
#include "summary/sum_attributes.h"

namespace qxe {

// Columns of summary tables

int innerQXGetSumFilterAttr(int table, int filter, void* attr) {
  return with_filter({.layer = "QXGetSumFilterAttr", .kind = TableKind::kReal}, table, filter,
                     [&](TBaseTable&, TFilter& column) {
                       memcpy(attr, column.PVL->FUserArea, sizeof column.PVL->FUserArea);
                       return 0;
                     });
}

int innerQXSetSumFilterAttr(int table, int filter, const void* attr) {
  return with_filter({.layer = "QXSetSumFilterAttr",
                      .kind = TableKind::kReal,
                      .access = Access::kChange,
                      .saved = &g_TFSaved},
                     table, filter, [&](TBaseTable&, TFilter& column) {
                       memcpy(column.PVL->FUserArea, attr, sizeof column.PVL->FUserArea);
                       return 0;
                     });
}

int innerQXIsSummaryOutputTable(int table, int* nDim, int* nMsr) {
  *nDim = 0;
  *nMsr = 0;
  return with_table({.layer = "QXIsSummaryOutputTable"}, table, [&](TBaseTable& target) {
    if (target.GetType() != TableKind::kReal) return 0;
    const SummaryColumns columns = summary_columns(static_cast<TRealTable&>(target));
    *nDim = columns.dimensions;
    *nMsr = columns.measures;
    if (columns.count() == 0) return 0;
    return columns.count() == target.GetNFilter() ? 1 : 2;
  });
}

int innerQXDimNo2FilterID(int table, int role, int ordinal) {
  return with_real_table({.layer = "QXDimNo2FilterID"}, table,
                         [&](TRealTable& target) { return DimNo2FilterID(target, role, ordinal); });
}

int innerQXCalcTotal(int table, int set, int filter, int mode, double* total) {
  *total = kNullDouble;
  return with_real_table({.layer = "QXCalcTotal"}, table, [&](TRealTable& target) {
    return CalcTotal(target, set, filter, mode, total);
  });
}

// Detail

int innerQXOpenDetailInfo(int table, int set, int filter, int* dataType, int* valueCount,
                          int* distinctCount) {
  DetailDisp.reset();
  return with_table({.layer = "QXOpenDetailInfo"}, table, [&](TBaseTable& target) {
    DetailDisp = std::make_unique<TDetailDisp>(target, set, filter);
    *dataType = DetailDisp->data_type();
    *valueCount = DetailDisp->value_count();
    *distinctCount = DetailDisp->distinct_count();
    return ++DetailHandle;
  });
}

namespace {

int refuse_detail(const char* layer) {
  return report(layer, QX_ERROR_SUMMARY_HANDLE, "Failed to open handle");
}

/// `body(detail)`; `words` tell that none is open.
template <class Body>
int with_detail(const char* layer, int handle, const char* words, Body&& body) {
  if (DetailDisp == nullptr) return report(layer, QX_ERROR_DETAIL, "%s", words);
  if (handle != DetailHandle) return refuse_detail(layer);
  return guarded(layer, [&] {
    body(*DetailDisp);
    return 0;
  });
}

/// A value as RQXGetData1 gives it: a decimal behind its info.
void copy_cell(const TBaseArray& values, int number, char* out) {
  if (values.GetDataType() == QX_DT_DECIMAL) {
    const NumericInfo& info = static_cast<const TNumericArray&>(values).GetDecimalInfo();
    memcpy(out, &info, sizeof info);
    out += sizeof info;
  }
  values.GetData(number, out);
}

int read_detail(const char* layer, int handle, const DetailPosition& place, int* type, char* out) {
  return with_detail(layer, handle, "Failed to make detailvalue", [&](const TDetailDisp& detail) {
    const int number = detail.number_at(place);
    copy_cell(detail.values(), number, out);
    *type = detail.data_type();
  });
}

}  // namespace

int innerQXGetDetailCount(int handle, const DetailPosition& place, int* count) {
  return with_detail("QXGetDetailCount", handle, "Failed to make detailcount",
                     [&](const TDetailDisp& detail) { *count = detail.count_at(place); });
}

int innerQXGetDetailValue(int handle, const DetailPosition& place, int* type, void* value) {
  return read_detail("QXGetDetailValue", handle, place, type, static_cast<char*>(value));
}

int innerQXGetDetailValueStr(int handle, const DetailPosition& place, int* type, char* text) {
  char cell[kCellText];
  const int status = read_detail("QXGetDetailValueStr", handle, place, type, cell);
  if (status >= 0) write_cell_text(*type, cell, text);
  return status;
}

int innerQXCloseDetailInfo(int handle) {
  if (handle >= 0 && DetailDisp != nullptr && handle != DetailHandle) {
    return refuse_detail("QXCloseDetailInfo");
  }
  DetailDisp.reset();
  return 0;
}

}  // namespace qxe
