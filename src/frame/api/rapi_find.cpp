// Exported functions: find cursors.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXOpenStrFindReal(int table, int filter, int ope, char* v1, char* v2) {
  return pass_through_call(__func__,
                           [&] { return innerQXOpenStrFindReal(table, filter, ope, v1, v2); });
}

int RQXOpenStrFindRealSJIS(int table, int filter, int ope, char* v1, char* v2) {
  return pass_through_call(__func__,
                           [&] { return innerQXOpenStrFindRealSJIS(table, filter, ope, v1, v2); });
}

int RQXOpenStrFindRealLocale(int table, int filter, int ope, char* v1, char* v2, int localeId) {
  return pass_through_call(
      __func__, [&] { return innerQXOpenStrFindRealLocale(table, filter, ope, v1, v2, localeId); });
}

int RQXOpenIntFindReal(int table, int filter, int ope, int v1, int v2) {
  return pass_through_call(__func__,
                           [&] { return innerQXOpenIntFindReal(table, filter, ope, v1, v2); });
}

int RQXOpenFloatFindReal(int table, int filter, int ope, double v1, double v2) {
  return pass_through_call(__func__,
                           [&] { return innerQXOpenFloatFindReal(table, filter, ope, v1, v2); });
}

int RQXOpenNumericFindReal(int table, int filter, int ope, Numeric v1, Numeric v2) {
  return pass_through_call(__func__,
                           [&] { return innerQXOpenNumericFindReal(table, filter, ope, v1, v2); });
}

int RQXGetFindStatus(int table, int* hitCount, int* filterId) {
  return pass_through_call(__func__, {hitCount, filterId},
                           [&] { return innerQXGetFindStatus(table, hitCount, filterId); });
}

int RQXGetNextHitReal(int table, int searchId, int set, int position, int backward, int* filterId,
                      int* hitPosition) {
  return pass_through_call(__func__, {filterId, hitPosition}, [&] {
    return innerQXGetNextHitReal(table, searchId, set, position, backward, filterId, hitPosition);
  });
}

int RQXCloseFindReal(int table) {
  return pass_through_call(__func__, [&] { return innerQXCloseFindReal(table); });
}

int RQXFindRecNoReal(int table, int set, int row) {
  return raising_call(__func__, [&] { return innerQXFindRecNoReal(table, set, row); });
}
