// Plain functions: summaries.
#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXSummaryOpen(int handle, int table, int set, int nDim, _TDimensionDef* dims, int measure) {
  return plain_call(__func__, {if_any(nDim, dims)},
                    [&] { return innerQXSummaryOpen(handle, table, set, nDim, dims, measure); });
}

int QXSummaryExec(int handle, int sumMask, int* doneMask) {
  return plain_call(__func__, {doneMask},
                    [&] { return innerQXSummaryExec(handle, sumMask, doneMask); });
}

int QXSummaryRead(int handle, int sumType, int* coords, int* measureType, int* valueType, int* rows,
                  void** value) {
  return plain_call(__func__, {measureType, valueType, rows, value}, [&] {
    return innerQXSummaryRead(handle, sumType, coords, measureType, valueType, rows, value);
  });
}

int QXCategoryRead(int handle, int dimNo, int catNo, char** name) {
  return plain_call(__func__, {name},
                    [&] { return innerQXCategoryRead(handle, dimNo, catNo, name); });
}

int QXSummaryStatus(int handle, int* table, int* set, int* nDim, _TDimensionDef* dims, int* measure,
                    int* doneMask) {
  return plain_call(__func__, {table, set, nDim, dims, measure, doneMask}, [&] {
    return innerQXSummaryStatus(handle, table, set, nDim, dims, measure, doneMask);
  });
}

int QXSummaryIntoRealTable(int handle, int nonEmptyOnly) {
  return plain_call([&] { return innerQXSummaryIntoRealTable(handle, nonEmptyOnly); });
}

int QXSummaryClose(int handle) {
  return plain_call([&] { return innerQXSummaryClose(handle); });
}

int QXGetN_Summary() {
  return plain_call([] { return QX_N_SUMMARY; });
}
