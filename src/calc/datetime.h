// Dates and times. A serial is a double: the integer part counts days since 30 December 1899, the
// fraction is the part of the day. NULL is negative infinity.
#pragma once

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

/// Date order of texts, as the engine's setting.
enum DateOrder : int { kYearFirst = 0, kDayFirst = 1, kMonthFirst = 2 };

/// Order named by "YYYYMMDD", "DDMMYYYY" or "MMDDYYYY" in any case with white space; `fallback` for
/// another word.
int date_order_from_word(const char* word, int fallback);

}  // namespace qxe
