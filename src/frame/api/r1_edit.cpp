// Convenience forms: one value, whose type the name tells.
#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

namespace {

template <size_t N>
int overwrite(const char (&name)[N], int type, int table, int filter, int set, int start,
              void* value) {
  return guarded_call(name,
                      [&] { return overwrite_with(name, type, table, filter, set, start, value); });
}

template <size_t N>
int fill(const char (&name)[N], int type, int table, int filter, int set, int start, int count,
         void* value) {
  return guarded_call(
      name, [&] { return fill_with(name, type, table, filter, set, start, count, value); });
}

}  // namespace

int RQXOverwriteRealExIntR1(int table, int filter, int set, int start, int value) {
  return overwrite(__func__, QX_DT_INTEGER, table, filter, set, start, &value);
}

int RQXOverwriteRealExDblR1(int table, int filter, int set, int start, double value) {
  return overwrite(__func__, QX_DT_DOUBLE, table, filter, set, start, &value);
}

int RQXOverwriteRealExNumericR1(int table, int filter, int set, int start, const Numeric* value) {
  return overwrite(__func__, QX_DT_DECIMAL, table, filter, set, start, const_cast<Numeric*>(value));
}

int RQXOverwriteRealExStrR1(int table, int filter, int set, int start, char* value) {
  return overwrite(__func__, QX_DT_STRING, table, filter, set, start, &value);
}

int RQXFillRealExIntR1(int table, int filter, int set, int start, int count, int value) {
  return fill(__func__, QX_DT_INTEGER, table, filter, set, start, count, &value);
}

int RQXFillRealExDblR1(int table, int filter, int set, int start, int count, double value) {
  return fill(__func__, QX_DT_DOUBLE, table, filter, set, start, count, &value);
}

int RQXFillRealExNumericR1(int table, int filter, int set, int start, int count,
                           const Numeric* value) {
  return fill(__func__, QX_DT_DECIMAL, table, filter, set, start, count,
              const_cast<Numeric*>(value));
}

int RQXFillRealExStrR1(int table, int filter, int set, int start, int count, char* value) {
  return fill(__func__, QX_DT_STRING, table, filter, set, start, count, &value);
}
