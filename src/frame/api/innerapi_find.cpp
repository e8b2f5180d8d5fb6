// Serial layer: find cursors.
#include "frame/api/innerapi.h"
#include "frame/api/search_checks.h"
#include "frame/api/serial_layer.h"

namespace qxe {

namespace {

/// `check(layer)` and the check of the bounds come first. Whatever fails leaves no cursor open.
template <class Check>
int open_str_find(const char* layer, int table, int filter, int ope, const char* v1, const char* v2,
                  Check&& check) {
  return with_real_table({.layer = layer}, table, [&](TRealTable& target) {
    int status = check(layer);
    if (status >= 0) status = check_bounds(layer, ope, v1, v2);
    if (status >= 0) return target.OpenStrFind(filter, ope, v1, v2);
    target.CloseFind();
    return status;
  });
}

}  // namespace

int innerQXOpenStrFindReal(int table, int filter, int ope, const char* v1, const char* v2) {
  return open_str_find("QXOpenStrFindReal", table, filter, ope, v1, v2,
                       [](const char*) { return 0; });
}

int innerQXOpenStrFindRealSJIS(int table, int filter, int ope, const char* v1, const char* v2) {
  return open_str_find("QXOpenStrFindRealSJIS", table, filter, ope, v1, v2, check_sjis);
}

int innerQXOpenStrFindRealLocale(int table, int filter, int ope, const char* v1, const char* v2,
                                 int localeId) {
  return open_str_find("QXOpenStrFindRealLocale", table, filter, ope, v1, v2,
                       [&](const char* layer) { return check_locale(layer, localeId); });
}

int innerQXOpenIntFindReal(int table, int filter, int ope, int v1, int v2) {
  return with_real_table({.layer = "QXOpenIntFindReal"}, table, [&](TRealTable& target) {
    return target.OpenIntFind(filter, ope, v1, v2);
  });
}

int innerQXOpenFloatFindReal(int table, int filter, int ope, double v1, double v2) {
  return with_real_table({.layer = "QXOpenFloatFindReal"}, table, [&](TRealTable& target) {
    return target.OpenFloatFind(filter, ope, v1, v2);
  });
}

int innerQXOpenNumericFindReal(int table, int filter, int ope, const Numeric& v1,
                               const Numeric& v2) {
  return with_real_table({.layer = "QXOpenNumericFindReal"}, table, [&](TRealTable& target) {
    return target.OpenNumericFind(filter, ope, v1, v2);
  });
}

int innerQXGetFindStatus(int table, int* hitCount, int* filterId) {
  return with_real_table({.layer = "QXGetFindStatus"}, table, [&](TRealTable& target) {
    return target.GetFindStatus(hitCount, filterId);
  });
}

int innerQXGetNextHitReal(int table, int searchId, int set, int position, int backward,
                          int* filterId, int* hitPosition) {
  return with_real_table({.layer = "QXGetNextHitReal"}, table, [&](TRealTable& target) {
    return target.GetNextHit(searchId, set, position, backward != 0, filterId, hitPosition);
  });
}

int innerQXCloseFindReal(int table) {
  return with_real_table({.layer = "QXCloseFindReal"}, table, [](TRealTable& target) {
    target.CloseFind();
    return 0;
  });
}

int innerQXFindRecNoReal(int table, int set, int row) {
  return with_real_table({.layer = "QXFindRecNoReal"}, table,
                         [&](TRealTable& target) { return target.FindRecNo(set, row); });
}

}  // namespace qxe
