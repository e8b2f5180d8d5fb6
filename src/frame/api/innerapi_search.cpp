// Serial layer: searches. Each makes a new set and returns its id.
#include "frame/api/innerapi.h"
#include "frame/api/search_checks.h"
#include "frame/api/serial_layer.h"

namespace qxe {

namespace {

/// The shape of all searches with bounds: `search(table)` unless one is missing.
template <class Search>
int search_values(const char* layer, int table, int ope, const char* value1, const char* value2,
                  Search&& search) {
  return with_table({.layer = layer, .saved = &g_TFSSaved}, table, [&](TBaseTable& target) {
    const int status = check_bounds(layer, ope, value1, value2);
    return status < 0 ? status : search(target);
  });
}

int search_by_field(const char* layer, int table, int filter, int set, int ope, const char* value1,
                    const char* value2) {
  return search_values(layer, table, ope, value1, value2, [&](TBaseTable& target) {
    return target.SearchByField(filter, set, ope, value1, value2);
  });
}

}  // namespace

int innerQXSearchByField(int table, int filter, int set, int ope, const char* value1,
                         const char* value2) {
  return search_by_field("QXSearchByField", table, filter, set, ope, value1, value2);
}

int innerQXSearchByField2(int table, int filter, int set, int ope, const char* value1,
                          const char* value2) {
  return search_values("QXSearchByField2", table, ope, value1, value2, [&](TBaseTable& target) {
    const TFilter* const column = target.GetFilter(filter);
    if (column == nullptr) return target.missing_filter(filter);
    return column->data_type() == QX_DT_STRING
               ? target.SearchByField2(filter, set, ope, value1, value2)
               : target.SearchByField(filter, set, ope, value1, value2);
  });
}

int innerQXSearchByFieldSJIS(int table, int filter, int set, int ope, const char* value1,
                             const char* value2) {
  static constexpr char kLayer[] = "QXSearchByFieldSJIS";
  const int status = check_sjis(kLayer);
  return status < 0 ? status : search_by_field(kLayer, table, filter, set, ope, value1, value2);
}

int innerQXSearchByFieldLocale(int table, int filter, int set, int ope, const char* value1,
                               const char* value2, int localeId) {
  static constexpr char kLayer[] = "QXSearchByFieldLocale";
  const int status = check_locale(kLayer, localeId);
  return status < 0 ? status : search_by_field(kLayer, table, filter, set, ope, value1, value2);
}

int innerQXSearchByFieldWildCard(int table, int filter, int set, const char* pattern) {
  return with_real_table(
      {.layer = "QXSearchByFieldWildCard", .saved = &g_TFSSaved}, table,
      [&](TRealTable& target) { return target.SearchByFieldWildCard(filter, set, pattern); });
}

int innerQXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2) {
  return with_table(
      {.layer = "QXSearchByRowNo", .saved = &g_TFSSaved}, table,
      [&](TBaseTable& target) { return target.SearchByRecNo(filter, set, ope, n1, n2); });
}

int innerQXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2) {
  return with_real_table(
      {.layer = "QXSearchByDispRowNoReal", .saved = &g_TFSSaved}, table,
      [&](TRealTable& target) { return target.SearchByRowNo(set, ope, n1, n2); });
}

int innerQXSearch(int table, int filter, int set, const unsigned char* flags) {
  return with_table({.layer = "QXSearch", .saved = &g_TFSSaved}, table,
                    [&](TBaseTable& target) { return target.Search(filter, set, flags); });
}

}  // namespace qxe
