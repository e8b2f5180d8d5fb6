// Serial layer: sets.
#include <algorithm>

#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "storage/strings.h"

namespace qxe {

int innerQXGetNSet(int table) {
  return with_table({.layer = "QXGetNSet"}, table,
                    [](TBaseTable& target) { return target.set_count(); });
}

int innerQXGetTotalRows(int table) {
  return with_table({.layer = "QXGetTotalRows"}, table,
                    [](TBaseTable& target) { return target.TotalRecs(); });
}

int innerQXPurgeSubsets(int table) {
  return with_table({.layer = "QXPurgeSubsets", .saved = &g_TFSSaved}, table,
                    [](TBaseTable& target) {
                      target.PurgeSubSets();
                      return 0;
                    });
}

int innerQXGetSetSize(int table, int set) {
  return with_table({.layer = "QXGetSetSize"}, table,
                    [&](TBaseTable& target) { return target.GetSetSize(set); });
}

int innerQXGetSet(int table, int set, int** out) {
  return with_set({.layer = "QXGetSet"}, table, set, [&](TSetArray& rows) {
    *out = rows.PIntAr();
    return rows.FArraySize;
  });
}

namespace {

int check_buffer(const char* layer, int max) {
  return max < 0 ? report(layer, QX_ERROR_PARAMETER, "Illegal Buffer size: %d", max) : 0;
}

}  // namespace

int copy_rows(const TSetArray& rows, int* count, int max, int* out) {
  *count = rows.FArraySize;
  std::copy_n(rows.PIntAr(), std::min(max, *count), out);
  return *count;
}

int innerQXCopySet(int table, int set, int* count, int max, int* out) {
  *count = 0;
  const int status = check_buffer("QXGetSet", max);
  if (status < 0) return status;
  return with_set({.layer = "QXGetSet"}, table, set,
                  [&](const TSetArray& rows) { return copy_rows(rows, count, max, out); });
}

int innerQXGetSetIDList(int table, int max, int* out) {
  const int status = check_buffer("QXGetSetIDList", max);
  if (status < 0) return status;
  return with_table({.layer = "QXGetSetIDList"}, table,
                    [&](TBaseTable& target) { return target.GetSetIDList(max, out); });
}

namespace {

int check_rows(const TBaseTable& table, int count, const int* rows) {
  if (count < 0) {
    return report("QXAddSetReal", QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(%d)", count);
  }
  const int total = table.TotalRecs();
  const bool good = count == 0 || (rows != nullptr && std::all_of(rows, rows + count, [&](int row) {
                                     return row >= 1 && row <= total;
                                   }));
  if (good) return 0;
  return report("QXAddSetReal", QX_ERROR_ROW_POSITION, "Invalid Parameter : PSetArray");
}

}  // namespace

int innerQXAddSetReal(int table, int count, const int* rows) {
  return with_real_table({.layer = "QXAddSetReal", .saved = &g_TFSSaved}, table,
                         [&](TRealTable& target) {
                           const int status = check_rows(target, count, rows);
                           if (status < 0) return status;
                           auto set = std::make_unique<TSetArray>(count, false);
                           std::copy_n(rows, count, set->PIntAr());
                           return target.AddSetWithoutCopy(std::move(set));
                         });
}

int innerQXDeleteSet(int table, int set) {
  static constexpr FailureText kTexts[] = {{QX_ERROR_NO_SET, "No such set"},
                                           {QX_ERROR_NO_SET_ID, "No such set"},
                                           {QX_ERROR_ROOT_SET, "Root set cannot be deleted"},
                                           {QX_ERROR_REFERRED, "Referred by Join"}};
  return with_table({.layer = "QXDeleteSet", .saved = &g_TFSSaved, .texts = kTexts}, table,
                    [&](TBaseTable& target) { return target.DelSet(set); });
}

int innerQXGetCurrentSetID(int table) {
  return with_table({.layer = "QXGetCurrentSetID"}, table,
                    [](TBaseTable& target) { return target.GetCurrentSetID(); });
}

int innerQXChangeCurrentSetID(int table, int set) {
  return with_table({.layer = "QXChangeCurrentSetID"}, table, [&](TBaseTable& target) {
    if (set < 0) return 0;  // the current set stays
    target.SetCurrentSetID(set);
    if (target.GetCurrentSetID() != set) {
      return report("QXChangeCurrentSetID", QX_ERROR_NO_SET_ID, "No Such Set: %d ", set);
    }
    // Deliberate: which set is current is no unsaved change.
    g_SETTINGSaved = true;
    return 0;
  });
}

int innerQXResetSetID(int table, int next) {
  return with_real_table({.layer = "QXResetSetID", .saved = &g_TFSSaved}, table,
                         [&](TRealTable& target) { return target.ResetSetID(next); });
}

int innerQXGetSubsetAttr(int table, int set, void** out) {
  return with_set({.layer = "QXGetSubsetAttr"}, table, set, [&](TSetArray& rows) {
    *out = rows.FUserArea;
    return 0;
  });
}

int innerQXSetSubsetAttr(int table, int set, const void* in) {
  return with_set({.layer = "QXSetSubsetAttr", .saved = &g_TFSSaved}, table, set,
                  [&](TSetArray& rows) {
                    if (rows.not_owned()) return QX_ERROR_SHARED_READ_ONLY;
                    memcpy(rows.FUserArea, in, sizeof rows.FUserArea);
                    return 0;
                  });
}

int innerQXSetSetName(int table, int set, const char* name) {
  return with_set({.layer = "QXSetSetName", .saved = &g_TFSSaved}, table, set,
                  [&](TSetArray& rows) {
                    rows.SetSetName(name == nullptr ? "" : name);
                    return 0;
                  });
}

int innerQXGetSetName(int table, int set, char* out) {
  return with_set({.layer = "QXGetSetName"}, table, set, [&](TSetArray& rows) {
    qxe_strlcpy(out, rows.GetSetName(), TIntArray::kNameSize);
    return 0;
  });
}

}  // namespace qxe
