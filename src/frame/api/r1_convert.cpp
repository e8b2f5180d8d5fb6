// Convenience forms: values to text and text to dates and times.
#include <stdio.h>

#include "calc/datetime.h"
#include "frame/api/call_frame.h"
#include "frame/api/cell_text.h"
#include "frame/api/r1_buffer.h"

namespace qxe {

namespace {

template <class Value>
Value value_in(const char* bytes) {
  Value value{};
  memcpy(&value, bytes, sizeof value);
  return value;
}

void write_decimal(const Numeric& value, const NumericInfo& info, char* text) {
  RQXNumericNum2Str(&value, &info, -1, -1, text, kCellText);
}

const char* text_or_empty(const char* text) {
  return text == nullptr ? "" : text;
}

}  // namespace

void write_cell_text(int type, const char* cell, char* text) {
  switch (type) {
    case QX_DT_INTEGER: snprintf(text, kCellText, "%d", value_in<int>(cell)); break;
    case QX_DT_DOUBLE: snprintf(text, kCellText, "%f", value_in<double>(cell)); break;
    case QX_DT_DATE: Double2DateStr(value_in<double>(cell), text); break;
    case QX_DT_TIME: Double2TimeStr(value_in<double>(cell), text); break;
    case QX_DT_DATETIME: Double2DateTimeStr(value_in<double>(cell), text); break;
    case QX_DT_DECIMAL:
      write_decimal(value_in<Numeric>(cell + sizeof(NumericInfo)), value_in<NumericInfo>(cell),
                    text);
      break;
    default: snprintf(text, kCellText, "%s", cell);
  }
}

}  // namespace qxe

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

const char* RQXGetData1Cnv2StrR1(int table, int filter, int set, int pos) {
  char cell[4096];
  int type = 0;
  if (RQXGetData1(table, filter, set, pos, &type, cell) < 0) return "";
  return plain_call([&] {
    write_cell_text(type, cell, gBuf);
    return gBuf;
  });
}

const char* RQXNumericNum2StrR1(const Numeric* value, const NumericInfo* info) {
  if (value == nullptr || info == nullptr) return "";
  return plain_call([&] {
    write_decimal(*value, *info, gBuf);
    return gBuf;
  });
}

const char* RQXDouble2DateStrR1(double serial) {
  return plain_call([&] {
    Double2DateStr(serial, gBuf);
    return gBuf;
  });
}

const char* RQXDouble2TimeStrR1(double serial) {
  return plain_call([&] {
    Double2TimeStr(serial, gBuf);
    return gBuf;
  });
}

const char* RQXDouble2DateTimeStrR1(double serial) {
  return plain_call([&] {
    Double2DateTimeStr(serial, gBuf);
    return gBuf;
  });
}

double RQXStr2DateR1(const char* text) {
  return plain_call([&] { return Str2Date(text_or_empty(text), false, nullptr); });
}

double RQXStr2TimeR1(const char* text) {
  return plain_call([&] { return Str2Time(text_or_empty(text), false, nullptr); });
}

double RQXStr2DateTimeR1(const char* text) {
  return plain_call([&] { return Str2DateTime(text_or_empty(text), false, nullptr); });
}
