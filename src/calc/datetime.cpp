#include "calc/datetime.h"

#include <algorithm>
#include <cmath>

#include "parallel/smpengine.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr int nMonthDays[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};

constexpr int kSerialOfYearZero = 693959;  // days from 1 January of year 0 to serial 0
constexpr double kMillisecondsOfDay = 8.64e7;
constexpr double kHalfMillisecond = 5.787037037037037e-9;  // in days
constexpr double kFarthestDay = 2e9;                       // so that days and years fit an int

bool is_leap(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

/// Year, month and day of the day `days` after 1 January of year 0. The years are counted from
/// 1 March, so that the leap day ends a year, a century and a cycle.
void set_calendar_day(long days, _stdatetime* fields) {
  constexpr long kCycle = 146097;  // days in 400 years
  constexpr long kCentury = 36524;
  constexpr long kFourYears = 1461;
  const long since_march = days - 60;
  const long cycle = (since_march >= 0 ? since_march : since_march - kCycle + 1) / kCycle;
  const long day_of_cycle = since_march - cycle * kCycle;
  const long year = (day_of_cycle - day_of_cycle / (kFourYears - 1) + day_of_cycle / kCentury -
                     day_of_cycle / (kCycle - 1)) /
                    365;
  const long day = day_of_cycle - (365 * year + year / 4 - year / 100);
  const long month = (5 * day + 2) / 153;  // 0 is March; each five months have 153 days
  fields->day = static_cast<int>(day - (153 * month + 2) / 5 + 1);
  fields->month = static_cast<int>(month < 10 ? month + 3 : month - 9);
  fields->year = static_cast<int>(year + cycle * 400 + (month < 10 ? 0 : 1));
}

void set_clock(double fraction, _stdatetime* fields) {
  const int milliseconds = static_cast<int>(std::fabs(fraction) * kMillisecondsOfDay);
  fields->millisecond = milliseconds % 1000;
  fields->second = milliseconds / 1000 % 60;
  fields->minute = milliseconds / 60000 % 60;
  fields->hour = milliseconds / 3600000;
}

}  // namespace

int date_order_from_word(const char* word, int fallback) {
  char name[64];
  qxe_strlcpy(name, word, sizeof name);
  CutWhiteSpace(name);
  AnsiUpperCase(name);
  const std::string_view order = name;
  if (order == "YYYYMMDD") return kYearFirst;
  if (order == "DDMMYYYY") return kDayFirst;
  if (order == "MMDDYYYY") return kMonthFirst;
  return fallback;
}

int date_order() {
  return ENG->date_format();
}

int getDateField(const _stdate& date, bool* bad) {
  const auto [year, month, day] = date;
  bool valid = year >= 1 && year <= 9999 && month >= 1 && month <= 12;
  const bool leap = is_leap(year);
  if (valid) {
    const int leap_day = leap && month == 2 && day == 29 ? 1 : 0;
    valid = day >= 1 && day <= nMonthDays[month] - nMonthDays[month - 1] + leap_day;
  }
  if (!valid) {
    if (bad != nullptr) *bad = true;
    return 0;
  }
  const int before_leap_day = leap && month <= 2 ? 1 : 0;
  return year * 365 + year / 4 - year / 100 + year / 400 + nMonthDays[month - 1] + day -
         kSerialOfYearZero - before_leap_day;
}

double getTime2double(const _sttime& time) {
  const auto within = [](int value, int most) { return value >= 0 && value <= most; };
  if (!within(time.hour, 23) || !within(time.minute, 59) || !within(time.second, 59) ||
      !within(time.millisecond, 999)) {
    return 0.0;
  }
  return (time.hour * 3600000 + time.minute * 60000 + time.second * 1000 + time.millisecond) /
         kMillisecondsOfDay;
}

int Double2DateTimeNoValidationWithMSEC(double serial, _stdatetime* fields) {
  double whole = 0.0;
  double fraction = std::modf(std::isnan(serial) ? 0.0 : serial, &whole);
  if (fraction != 0.0) {
    fraction = std::modf(serial + std::copysign(kHalfMillisecond, serial), &whole);
  }
  const long days =
      static_cast<long>(std::clamp(whole, -kFarthestDay, kFarthestDay)) + kSerialOfYearZero;
  set_calendar_day(days, fields);
  set_clock(fraction, fields);
  fields->weekday = static_cast<int>(((days - 1) % 7 + 7) % 7 + 1);
  fields->day_of_year = nMonthDays[fields->month - 1] + fields->day +
                        (is_leap(fields->year) && fields->month > 2 ? 1 : 0);
  return 0;
}

}  // namespace qxe
