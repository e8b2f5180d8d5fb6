// Plain functions: find cursors.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXOpenStrFindReal(int table, int filter, int ope, char* v1, char* v2) {
  return plain_call([&] { return innerQXOpenStrFindReal(table, filter, ope, v1, v2); });
}

int QXOpenIntFindReal(int table, int filter, int ope, int v1, int v2) {
  return plain_call([&] { return innerQXOpenIntFindReal(table, filter, ope, v1, v2); });
}

int QXOpenFloatFindReal(int table, int filter, int ope, double v1, double v2) {
  return plain_call([&] { return innerQXOpenFloatFindReal(table, filter, ope, v1, v2); });
}

int QXGetFindStatus(int table, int* hitCount, int* filterId) {
  return plain_call(__func__, {hitCount, filterId},
                    [&] { return innerQXGetFindStatus(table, hitCount, filterId); });
}

int QXGetNextHitReal(int table, int searchId, int set, int position, int backward, int* filterId,
                     int* hitPosition) {
  return plain_call(__func__, {filterId, hitPosition}, [&] {
    return innerQXGetNextHitReal(table, searchId, set, position, backward, filterId, hitPosition);
  });
}

int QXCloseFindReal(int table) {
  return plain_call([&] { return innerQXCloseFindReal(table); });
}

int QXFindRecNoReal(int table, int set, int row) {
  return plain_call([&] { return innerQXFindRecNoReal(table, set, row); });
}
