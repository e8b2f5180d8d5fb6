// Dates and times. A serial is a double: the integer part counts days since 30 December 1899, the
// fraction is the part of the day. NULL is negative infinity.
#pragma once

#include <string_view>

namespace qxe {

struct _stdate {
  int year;
  int month;
  int day;
};

struct _sttime {
  int hour;
  int minute;
  int second;
  int millisecond;
};

struct _stdatetime {
  int millisecond;
  int second;
  int minute;
  int hour;
  int day;
  int month;
  int year;
  int weekday;      // 1 (Sunday) to 7
  int day_of_year;  // from 1
};

/// Date order of texts, as the engine's setting.
enum DateOrder : int { kYearFirst = 0, kDayFirst = 1, kMonthFirst = 2 };

/// Order named by "YYYYMMDD", "DDMMYYYY" or "MMDDYYYY" in any case with white space; `fallback` for
/// another word.
int date_order_from_word(const char* word, int fallback);

/// The engine's setting.
int date_order();

// ---- Serials ------------------------------------------------------------------------------------

/// Serial of a calendar day of the years 1 to 9999. Another date is 0 and sets `*bad`, which may be
/// null and is otherwise left alone.
int getDateField(const _stdate& date, bool* bad);

/// The fraction of the day; 0 for a time that no clock shows.
double getTime2double(const _sttime& time);

/// Splits a serial, rounded to the nearest millisecond. Any number has fields, though those of a
/// serial too far away from the calendar are some far day's. Returns 0.
int Double2DateTimeNoValidationWithMSEC(double serial, _stdatetime* fields);

// ---- Text to serial -----------------------------------------------------------------------------
// An empty text is NULL and no fault; an unreadable one is NULL. `*bad` says whether a part of the
// text could not be read; it may be null. `strict` is that of Str2Int for each number. Only the
// first 50 characters count, but for the format types.

/// Three numbers with "-", or else "/", between them. Years are taken as written.
double Str2DateInOrder(std::string_view text, int order, bool strict, bool* bad);

inline double Str2Date(std::string_view text, bool strict, bool* bad) {
  return Str2DateInOrder(text, kYearFirst, strict, bad);
}
inline double Str2DateDDMMYYYY(std::string_view text, bool strict, bool* bad) {
  return Str2DateInOrder(text, kDayFirst, strict, bad);
}
inline double Str2DateMMDDYYYY(std::string_view text, bool strict, bool* bad) {
  return Str2DateInOrder(text, kMonthFirst, strict, bad);
}

/// "H:", "H:M", "H:M:S" or "H:M:S.milliseconds"; the last is a count, so "1.5" ends with 5 ms.
double Str2Time(std::string_view text, bool strict, bool* bad);

/// A date, and a time behind blanks if one follows. Not strict, a part that cannot be read counts
/// as 0 beside the other one, and a lone time is a fraction; `*bad` is set all the same. Strict, a
/// date that can be read is a must, and so is whatever follows it.
double Str2DateTimeInOrder(std::string_view text, int order, bool strict, bool* bad);

inline double Str2DateTime(std::string_view text, bool strict, bool* bad) {
  return Str2DateTimeInOrder(text, kYearFirst, strict, bad);
}
inline double Str2DateTimeDDMMYYYY(std::string_view text, bool strict, bool* bad) {
  return Str2DateTimeInOrder(text, kDayFirst, strict, bad);
}
inline double Str2DateTimeMMDDYYYY(std::string_view text, bool strict, bool* bad) {
  return Str2DateTimeInOrder(text, kMonthFirst, strict, bad);
}

/// By the format of a date type or time type (date_formats.h); text behind the format's end is
/// ignored, and a format without a year takes the year in which the engine started.
double Str2DateExType(std::string_view text, int dateType, bool strict, bool* bad);
double Str2TimeExType(std::string_view text, int timeType, bool strict, bool* bad);
double Str2DateTimeExType(std::string_view text, int dateType, int timeType, bool strict,
                          bool* bad);

// ---- Serial to text -----------------------------------------------------------------------------
// Each writes into `out`, kSerialTextSize bytes, and returns the length. NULL, and what is no
// number, is the empty text. Milliseconds show only when they are not 0.

inline constexpr int kSerialTextSize = 48;

int Double2DateStrNoValidation(double serial, char* out, char separator = '/',
                               int order = date_order());
int Double2TimeStrNoValidation(double serial, char* out);
int Double2DateTimeStrNoValidation(double serial, char* out, char separator = '/',
                                   int order = date_order());

inline int Double2DateStr(double serial, char* out, char separator = '/') {
  return Double2DateStrNoValidation(serial, out, separator);
}
inline int Double2TimeStr(double serial, char* out) {
  return Double2TimeStrNoValidation(serial, out);
}
inline int Double2DateTimeStr(double serial, char* out, char separator = '/') {
  return Double2DateTimeStrNoValidation(serial, out, separator);
}

}  // namespace qxe
