// Row editing: the serial layer and the task object, which differ in the form of the table's
// operation that they call.
#include "frame/api/dbtask.h"
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"

namespace qxe {

namespace {

template <class Body>
int edit_table(const char* layer, int table, Body&& body) {
  return with_real_table({.layer = layer, .access = Access::kEdit, .saved = &g_TFSaved}, table,
                         body);
}

/// A call's way to write values, and the family of the values where its name tells it.
struct ValueEdit {
  static constexpr int kAnyType = 0;

  const char* layer = "";
  int (TRealTable::*write)(int filter, int set, int start, int count, void* values) = nullptr;
  int type = kAnyType;

  /// An unknown filter is left to the operation.
  bool fits(TRealTable& table, int filter) const {
    const int position = type == kAnyType ? QX_ERROR_NO_FILTER : table.FilterID2Pos(filter);
    return position < 0 || table.filter_at(position)->VL->GetDataType() == type;
  }

  int operator()(int table, int filter, int set, int start, int count, void* values) const {
    return edit_table(layer, table, [&](TRealTable& target) {
      if (!fits(target, filter)) {
        return report(layer, QX_ERROR_TYPE_MISMATCH, "Illegal data type  : %d", type);
      }
      return (target.*write)(filter, set, start, count, values);
    });
  }
};

}  // namespace

int innerQXInsertRealRows(int table, int pos, int count) {
  return edit_table("QXInsertRealRows", table,
                    [&](TRealTable& target) { return target.InsRows(pos, count); });
}

int innerQXDeleteRealRows(int table, int start, int count) {
  return edit_table("QXDeleteRealRows", table,
                    [&](TRealTable& target) { return target.DelRows(start, count); });
}

int innerQXDeleteRealRowsEx(int table, int set, int start, int count) {
  return edit_table("QXDeleteRealRowsEx", table,
                    [&](TRealTable& target) { return target.DelRowsEx(set, start, count); });
}

int innerQXOverwriteRealEx(int table, int filter, int set, int start, int count, void* data) {
  return ValueEdit{"QXOverwriteRealEx", &TRealTable::OverWriteEx}(table, filter, set, start, count,
                                                                  data);
}

int innerQXOverwriteRealExStr(int table, int filter, int set, int start, int count, char** data) {
  return ValueEdit{"QXOverwriteRealExStr", &TRealTable::OverWriteEx, QX_DT_STRING}(
      table, filter, set, start, count, data);
}

int overwrite_with(const char* layer, int type, int table, int filter, int set, int start,
                   void* value) {
  return ValueEdit{layer, &TRealTable::MppOverWriteEx, type}(table, filter, set, start, 1, value);
}

int fill_with(const char* layer, int type, int table, int filter, int set, int start, int count,
              void* value) {
  return ValueEdit{layer, &TRealTable::MppFillEx, type}(table, filter, set, start, count, value);
}

int CDBParallelTask::OverwriteRealEx(int table, int filter, int set, int start, int count,
                                     void* data) {
  return ValueEdit{"RQXOverwriteRealEx", &TRealTable::MppOverWriteEx}(table, filter, set, start,
                                                                      count, data);
}

int CDBParallelTask::FillRealEx(int table, int filter, int set, int start, int count, void* value) {
  return ValueEdit{"RQXFillRealEx", &TRealTable::MppFillEx}(table, filter, set, start, count,
                                                            value);
}

}  // namespace qxe
