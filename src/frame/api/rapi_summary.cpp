// Exported functions: summaries, summary tables, detail.
#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "storage/strings.h"
#include "summary/detail.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXSummaryOpen(int handle, int table, int set, int nDim, _TRDimensionDef* dims, int measure) {
  return pass_through_call(__func__, {if_any(nDim, dims)}, [&] {
    return innerRQXSummaryOpen(handle, table, set, nDim, dims, measure);
  });
}

int RQXSummaryExec(int handle, int sumMask, int* doneMask) {
  return pass_through_call(__func__, {doneMask},
                           [&] { return innerQXSummaryExec(handle, sumMask, doneMask); });
}

int RQXSummaryRead(int handle, int sumType, int* coords, int* measureType, int* valueType,
                   int* rows, void* value) {
  return pass_through_call(__func__, {measureType, valueType, rows, value}, [&] {
    return innerQXSummaryRead2(handle, sumType, coords, measureType, valueType, rows, value);
  });
}

int RQXCategoryRead(int handle, int dimNo, int catNo, char* name) {
  constexpr size_t kNameSize = 128;
  return pass_through_call(__func__, {name}, [&] {
    char* whole = nullptr;
    const int status = innerQXCategoryRead(handle, dimNo, catNo, &whole);
    if (status >= 0) qxe_strlcpy(name, whole, kNameSize);
    return status;
  });
}

int RQXSummaryStatus(int handle, int* table, int* set, int* nDim, int* measure, int* doneMask) {
  return pass_through_call(__func__, {table, set, nDim, measure, doneMask}, [&] {
    return innerQXSummaryStatus(handle, table, set, nDim, nullptr, measure, doneMask);
  });
}

int RQXSummaryIntoRealTable(int handle, int nonEmptyOnly) {
  return pass_through_call(__func__,
                           [&] { return innerQXSummaryIntoRealTable(handle, nonEmptyOnly); });
}

int RQXSummaryIntoRealTable2(int handle, int mask, int nonEmptyOnly) {
  return pass_through_call(
      __func__, [&] { return innerQXSummaryIntoRealTable2(handle, mask, nonEmptyOnly); });
}

int RQXAppendSummaryToRealTable(int handle, int table, int mask, int nonEmptyOnly) {
  return pass_through_call(
      __func__, [&] { return innerQXAppendSummaryToRealTable(handle, table, mask, nonEmptyOnly); });
}

int RQXSummaryClose(int handle) {
  return pass_through_call(__func__, [&] { return innerQXSummaryClose(handle); });
}

int RQXGetN_Summary() {
  return pass_through_call(__func__, [] { return QX_N_SUMMARY; });
}

// Columns of summary tables

int RQXGetSumFilterAttr(int table, int filter, void* attr) {
  return pass_through_call(__func__, {attr},
                           [&] { return innerQXGetSumFilterAttr(table, filter, attr); });
}

int RQXSetSumFilterAttr(int table, int filter, void* attr) {
  return pass_through_call(__func__, {attr},
                           [&] { return innerQXSetSumFilterAttr(table, filter, attr); });
}

int RQXIsSummaryOutputTable(int table, int* nDim, int* nMsr) {
  return pass_through_call(__func__, {nDim, nMsr},
                           [&] { return innerQXIsSummaryOutputTable(table, nDim, nMsr); });
}

int RQXDimNo2FilterID(int table, int role, int ordinal) {
  return pass_through_call(__func__, [&] { return innerQXDimNo2FilterID(table, role, ordinal); });
}

int RQXCalcTotal(int table, int set, int filter, int mode, double* total) {
  return pass_through_call(__func__, {total},
                           [&] { return innerQXCalcTotal(table, set, filter, mode, total); });
}

// Detail

int RQXOpenDetailInfo(int table, int set, int filter, int* dataType, int* valueCount,
                      int* distinctCount) {
  return pass_through_call(__func__, {dataType, valueCount, distinctCount}, [&] {
    return innerQXOpenDetailInfo(table, set, filter, dataType, valueCount, distinctCount);
  });
}

int RQXGetDetailCount(int handle, int orderKind, int direction, int listKind, int position,
                      int* count) {
  return pass_through_call(__func__, {count}, [&] {
    return innerQXGetDetailCount(handle, {orderKind, direction, listKind, position}, count);
  });
}

int RQXGetDetailValue(int handle, int orderKind, int direction, int listKind, int position,
                      int* type, void* value) {
  return pass_through_call(__func__, {type, value}, [&] {
    return innerQXGetDetailValue(handle, {orderKind, direction, listKind, position}, type, value);
  });
}

int RQXGetDetailValueStr(int handle, int orderKind, int direction, int listKind, int position,
                         int* type, char* text) {
  return pass_through_call(__func__, {type, text}, [&] {
    return innerQXGetDetailValueStr(handle, {orderKind, direction, listKind, position}, type, text);
  });
}

int RQXCloseDetailInfo(int handle) {
  return pass_through_call(__func__, [&] { return innerQXCloseDetailInfo(handle); });
}
