// Serial layer: new filters from values in memory, from a text file, or of NULLs alone.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "import/filter_import.h"
#include "storage/family.h"

namespace qxe {

namespace {

struct NewFilter {
  int pos;
  const char* name;
  int type;
  int rows;
  void* data;        // or null
  const char* dir;   // of the file
  const char* file;  // or null or ""
  NumericInfo info;  // of decimals
};

int check_new_filter(const char* layer, const TRealTable& table, const NewFilter& filter) {
  if (!table.has_room_for_filter()) {
    return report(layer, QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  }
  if (!is_data_type(filter.type)) {
    return report(layer, QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(%d)", filter.type);
  }
  if (filter.rows < 0) {
    return report(layer, QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(%d)", filter.rows);
  }
  return 0;
}

int value_width(int type) {
  return with_family_of(type, []<class Array>(std::type_identity<Array>) {
    return static_cast<int>(sizeof(typename Family<Array>::Value));
  });
}

/// The filter from its source: memory goes before a file, a file before nothing.
int make_filter(TRealTable& table, const NewFilter& filter, const char* name) {
  if (filter.data != nullptr) {
    return table.AddFilter2(filter.pos, name, filter.type, filter.rows, value_width(filter.type),
                            filter.data);
  }
  if (filter.file != nullptr && *filter.file != '\0') {
    return addFilterFromFile(table, filter.pos, name, filter.type, filter.rows, filter.dir,
                             filter.file, filter.info);
  }
  return table.AddEmptyFilter(filter.pos, name, filter.type);
}

int add_filter(const char* layer, TRealTable& table, const NewFilter& filter) {
  int status = check_new_filter(layer, table, filter);
  if (status < 0) return status;
  char name[TBaseTable::kNameSize];
  status = ValidateNames(filter.name, TTableCollection::GeneratedName::kFilter, name);
  if (status < 0) return status;
  const int id = make_filter(table, filter, name);
  if (id >= 0 && filter.type == QX_DT_DECIMAL) {
    static_cast<TNumericArray&>(*table.GetFilter(id)->VL).SetDecimalInfo(filter.info);
  }
  return id;
}

int add_filter_to(const char* layer, int table, const NewFilter& filter) {
  return with_real_table({.layer = layer, .access = Access::kChange, .saved = &g_TFSaved}, table,
                         [&](TRealTable& target) { return add_filter(layer, target, filter); });
}

}  // namespace

int innerQXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                          const char* dir, const char* file) {
  return add_filter_to("QXAddRealFilter2", table,
                       {pos, name, type, rows, data, dir, file, TNumericArray::kDefaultInfo});
}

int innerQXAddRealFilter2Numeric(int table, int pos, const char* name, int type, int rows,
                                 void* data, const char* dir, const char* file,
                                 const NumericInfo& info) {
  static constexpr char kLayer[] = "QXAddRealFilter2Numeric";
  if (type != QX_DT_DECIMAL) {
    return report(kLayer, QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(%d)", type);
  }
  const int status = check_numeric_info(kLayer, &info);
  if (status < 0) return status;
  return add_filter_to(kLayer, table, {pos, name, type, rows, data, dir, file, info});
}

}  // namespace qxe
