// The older integer forms: a date as an integer that spells it, a time as HHMMSS, and the strict
// recognisers that make them from text. Type conversions go through them. They know the years 1900
// to 2099.
#pragma once

#include "calc/datetime.h"

namespace qxe {

/// What addSlash and addColon write into.
inline constexpr int kIntegerFormTextSize = 20;

/// DateOuter2Inner and DateInner2Outer for many values that need be no dates: false, and the output
/// untouched, instead of an exception.
bool serial_of_date(int date, double* serial);
bool date_of_serial(double serial, int order, int* date);

// The conversions throw QX_ERROR_PARAMETER for what is no date or time of theirs.

/// Serial of YYYYMMDD.
double DateOuter2Inner(int date);

/// The date of a serial as an integer in the date order, without leading zeros: 1 March 2024 is
/// 20240301, 1032024 or 3012024. A fraction is ignored.
int DateInner2Outer(double serial, int order = date_order());

/// Fraction of HHMMSS, 0 for what is no time. A hundredth of a second is added, so that cutting to
/// seconds gives the same time again.
double TimeOuter2Inner(int time);

/// Writes an integer of DateInner2Outer with slashes into `out`.
void addSlash(int date, char* out, int order = date_order());

/// Writes a fraction from 0 to 1 as "HH:MM:SS" into `out`.
void addColon(double fraction, char* out);

/// Whether the text begins, behind blanks and tabs, with a date "YYYY/M/D" of the calendar. Stores
/// YYYYMMDD and the place behind the date.
bool CheckDateStr(const char* text, const char** end, int* date);
/// Whether the calendar of 1900 to 2099 has this day.
bool CheckDateStr2(const _stdate& date);
/// Whether the text is a time "H:M" or "H:M:S" with nothing but blanks and tabs around it. Stores
/// HHMMSS, whose numbers may be beyond the clock.
bool CheckTimeStr(const char* text, int* time);
/// Whether the text is a date alone (time 0) or a date and a time.
bool CheckDateTimeStr(const char* text, int* date, int* time);

}  // namespace qxe
