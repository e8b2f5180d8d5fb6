// Serial layer: summaries by handle.
#include <algorithm>
#include <array>

#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "storage/strings.h"
#include "summary/summaries.h"

namespace qxe {

namespace {

constexpr char kFailed[] = "Failed to open";

}  // namespace

int innerQXSummaryOpen(int handle, int table, int set, int nDim, const _TDimensionDef* dims,
                       int measure) {
  static constexpr char kLayer[] = "QXSummaryOpen";
  return guarded(kLayer, [&] {
    auto& place = summary_place(kLayer, handle);
    if (place != nullptr) {
      return report(kLayer, QX_ERROR_SUMMARY_IN_USE, "Invalid Parameter : SumHandle");
    }
    const int status = with_table({.layer = kLayer}, table, [&](TBaseTable& target) {
      place = std::make_unique<TSummary>(handle, target, set, nDim, dims, measure);
      return 0;
    });
    return status < 0 ? report(kLayer, status, kFailed) : 0;
  });
}

int innerRQXSummaryOpen(int handle, int table, int set, int nDim, const _TRDimensionDef* dims,
                        int measure) {
  if (nDim < 0 || nDim > QX_MAX_DIM) {
    return report("RQXSummaryOpen", QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : nDim(%d)",
                  nDim);
  }
  std::array<_TDimensionDef, QX_MAX_DIM> plain{};
  for (int i = 0; i < nDim; ++i) plain[static_cast<size_t>(i)].FilterID = dims[i].FilterID;
  return innerQXSummaryOpen(handle, table, set, nDim, plain.data(), measure);
}

int innerQXSummaryExec(int handle, int sumMask, int* doneMask) {
  static constexpr char kLayer[] = "QXSummaryExec";
  return guarded(kLayer, [&] {
    TSummary& summary = open_summary(kLayer, handle);
    if (summary.done() != 0) {
      return report(kLayer, QX_ERROR_SUMMARY_DONE, "Invalid Parameter : SumHandle");
    }
    const int done = guarded(kLayer, [&] { return summary.SummaryExec(sumMask); });
    if (done < 0) {
      close_summary(handle);
      return report(kLayer, done, kFailed);
    }
    *doneMask = done;
    return 0;
  });
}

namespace {

/// `read(summary)` gives the result, whose value `put(result)` hands on.
template <class Read, class Put>
int read_summary(const char* layer, int handle, const int* coords, int* measureType, int* valueType,
                 int* rows, Read&& read, Put&& put) {
  return guarded(layer, [&] {
    const TSummary& summary = open_summary(layer, handle);
    const int status = summary.dimension_count() == 0 ? 0 : check_required(layer, {coords});
    if (status < 0) return status;
    const SummaryValue result = read(summary);
    *measureType = result.measure_type;
    *valueType = result.value_type;
    *rows = result.rows;
    put(result);
    return 0;
  });
}

void copy_value(const SummaryValue& result, void* out) {
  const auto copy = [&](size_t size) { memcpy(out, result.value, size); };
  switch (result.value_type) {
    case QX_DT_INTEGER: copy(sizeof(int)); break;
    case QX_DT_STRING:
      qxe_strlcpy(static_cast<char*>(out), static_cast<const char*>(result.value),
                  TStrArray::kMaxText + 1);
      break;
    case QX_DT_DECIMAL:
      copy(sizeof(Numeric));
      memcpy(static_cast<char*>(out) + sizeof(Numeric), &result.info, sizeof result.info);
      break;
    default: copy(sizeof(double));
  }
}

}  // namespace

int innerQXSummaryRead2(int handle, int sumType, const int* coords, int* measureType,
                        int* valueType, int* rows, void* value) {
  return read_summary(
      "QXSummaryRead2", handle, coords, measureType, valueType, rows,
      [&](const TSummary& summary) { return summary.SummaryRead2(sumType, coords); },
      [&](const SummaryValue& result) {
        if (result.value != nullptr) copy_value(result, value);
      });
}

int innerQXSummaryRead(int handle, int sumType, const int* coords, int* measureType, int* valueType,
                       int* rows, void** value) {
  return read_summary(
      "QXSummaryRead", handle, coords, measureType, valueType, rows,
      [&](const TSummary& summary) { return summary.SummaryRead(sumType, coords); },
      [&](const SummaryValue& result) { *value = const_cast<void*>(result.value); });
}

int innerQXCategoryRead(int handle, int dimNo, int catNo, char** name) {
  static constexpr char kLayer[] = "QXCategoryRead";
  return guarded(kLayer, [&] {
    *name = const_cast<char*>(open_summary(kLayer, handle).CategoryRead(dimNo, catNo));
    return 0;
  });
}

int innerQXSummaryStatus(int handle, int* table, int* set, int* nDim, _TDimensionDef* dims,
                         int* measure, int* doneMask) {
  static constexpr char kLayer[] = "QXSummaryStatus";
  return guarded(kLayer, [&] {
    const auto& summary = summary_place(kLayer, handle);
    if (summary == nullptr) return 0;
    *table = summary->table_id();
    *set = summary->set_id();
    *nDim = summary->dimension_count();
    *measure = summary->measure();
    *doneMask = summary->done();
    if (dims == nullptr) return 1;
    std::fill_n(dims, QX_MAX_DIM, _TDimensionDef{});
    for (int i = 0; i < *nDim; ++i) dims[i] = summary->dimension(i).definition();
    return 1;
  });
}

int innerQXSummaryIntoRealTable2(int handle, int mask, int nonEmptyOnly) {
  static constexpr char kLayer[] = "QXSummaryIntoRealTable";
  return with_collection({.layer = kLayer, .saved = &g_TFSaved}, [&](TTableCollection&) {
    return executed_summary(kLayer, handle).SummaryIntoRealTable(mask, nonEmptyOnly != 0);
  });
}

int innerQXSummaryIntoRealTable(int handle, int nonEmptyOnly) {
  constexpr int kAll = QX_SUM_COUNT | QX_SUM_MAX | QX_SUM_MIN | QX_SUM_SUM | QX_SUM_AVG;
  return innerQXSummaryIntoRealTable2(handle, kAll, nonEmptyOnly);
}

int innerQXAppendSummaryToRealTable(int handle, int table, int mask, int nonEmptyOnly) {
  static constexpr char kLayer[] = "QXAppendSummaryToRealTable";
  return guarded(kLayer, [&] {
    TSummary& summary = executed_summary(kLayer, handle);
    if (collection().find(table) == nullptr) {
      // Deliberate: the entry says QX_ERROR_UNKNOWN.
      report(kLayer, QX_ERROR_UNKNOWN, "No Such Table: %d ", table);
      return QX_ERROR_NO_TABLE;
    }
    return with_real_table({.layer = kLayer, .access = Access::kChange, .saved = &g_TFSaved}, table,
                           [&](TRealTable& target) {
                             summary.AppendSummaryToRealTable(target, mask, nonEmptyOnly != 0);
                             return 0;
                           });
  });
}

int innerQXSummaryClose(int handle) {
  static constexpr char kLayer[] = "QXSummaryClose";
  return guarded(kLayer, [&] {
    summary_place(kLayer, handle);
    close_summary(handle);
    return 0;
  });
}

}  // namespace qxe
