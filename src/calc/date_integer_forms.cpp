#include "calc/date_integer_forms.h"

#include <stdio.h>

#include <cmath>

#include "frame/base/exception.h"

namespace qxe {

namespace {

constexpr double kFirstSerial = 2;     // 1 January 1900
constexpr double kLastSerial = 73050;  // 31 December 2099
constexpr double kSecondsOfDay = 86400.0;
constexpr double kSecondsBias = 0.01;  // lifts a time over the rounding of its fraction

}  // namespace

bool serial_of_date(int date, double* serial) {
  const _stdate fields{date / 10000, date / 100 % 100, date % 100};
  if (!CheckDateStr2(fields)) return false;
  *serial = getDateField(fields, nullptr);
  return true;
}

bool date_of_serial(double serial, int order, int* date) {
  const double day = std::floor(serial);
  if (!(day >= kFirstSerial && day <= kLastSerial)) return false;
  _stdatetime fields{};
  Double2DateTimeNoValidationWithMSEC(day, &fields);
  switch (order) {
    case kDayFirst: *date = fields.day * 1000000 + fields.month * 10000 + fields.year; break;
    case kMonthFirst: *date = fields.month * 1000000 + fields.day * 10000 + fields.year; break;
    default: *date = fields.year * 10000 + fields.month * 100 + fields.day;
  }
  return true;
}

double DateOuter2Inner(int date) {
  double serial = 0.0;
  if (!serial_of_date(date, &serial)) throw CQXException(QX_ERROR_PARAMETER);
  return serial;
}

int DateInner2Outer(double serial, int order) {
  int date = 0;
  if (!date_of_serial(serial, order, &date)) throw CQXException(QX_ERROR_PARAMETER);
  return date;
}

double TimeOuter2Inner(int time) {
  const int hour = time / 10000;
  const int minute = time / 100 % 100;
  const int second = time % 100;
  if (time < 0 || hour > 23 || minute > 59 || second > 59) return 0.0;
  return (hour * 3600 + minute * 60 + second + kSecondsBias) / kSecondsOfDay;
}

void addSlash(int date, char* out, int order) {
  const bool year_first = order != kDayFirst && order != kMonthFirst;
  const int least = year_first ? 10000000 : 1000000;  // behind the year, a day or month loses its 0
  if (date < least || date > 99999999) throw CQXException(QX_ERROR_PARAMETER);
  if (year_first) {
    snprintf(out, kIntegerFormTextSize, "%d/%02d/%02d", date / 10000, date / 100 % 100, date % 100);
  } else {
    snprintf(out, kIntegerFormTextSize, "%02d/%02d/%04d", date / 1000000, date / 10000 % 100,
             date % 10000);
  }
}

void addColon(double fraction, char* out) {
  if (!(fraction >= 0.0 && fraction <= 1.0)) throw CQXException(QX_ERROR_PARAMETER);
  const unsigned seconds = static_cast<unsigned>(fraction * kSecondsOfDay + kSecondsBias);
  snprintf(out, kIntegerFormTextSize, "%02u:%02u:%02u", seconds / 3600, seconds / 60 % 60,
           seconds % 60);
}

}  // namespace qxe
