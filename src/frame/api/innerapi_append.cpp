// Serial layer: rows from a file of one column.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "import/filter_import.h"

namespace qxe {

int innerQXAppendRealFilter2(int table, int filter, int type, int pos, int rows, const char* dir,
                             const char* file) {
  static constexpr char kLayer[] = "QXAppendRealFilter2";
  return with_real_table({.layer = kLayer, .access = Access::kEdit, .saved = &g_TFSaved}, table,
                         [&](TRealTable& target) {
                           TFilter* const column = target.GetFilter(filter);
                           if (column == nullptr) return QX_ERROR_NO_FILTER;
                           if (type != column->data_type()) {
                             return report(kLayer, QX_ERROR_APPEND_TYPE,
                                           "Illegal data type ( Not STRING )");
                           }
                           return appendFilterFromFile(target, *column, pos, rows, dir, file);
                         });
}

}  // namespace qxe
