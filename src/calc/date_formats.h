// Date and time formats: the numbered types of catalogs, and the parser that reads a text by a
// format.
#pragma once

#include <string_view>

namespace qxe {

/// What a format can read, with the bases of the C library's `tm`.
struct DateTimeFields {
  int second = 0;
  int minute = 0;
  int hour = 0;
  int day = 0;    // 1 to 31
  int month = 0;  // 0 to 11
  int year = 0;   // from 1900
  int weekday = 0;
  int year_day = 0;
};

/// Number of a type word, "D1" to "D14" or "T1" to "T4" in any case; 0 for another word or null.
int getDateFormatFromTypeStr(const char* word);
int getTimeFormatFromTypeStr(const char* word);

/// Format of a date or time type; an unknown number is as type 0.
const char* getstrp_DateFormat(int dateType);
const char* getstrp_TimeFormat(int timeType);

/// Whether the format of a date type holds a year.
bool has_year(int dateType);

/// Reads `text` by `format` and stores the fields that the format names. Returns the place behind
/// what was read, or null when the text does not fit. The end of either string ends the reading
/// with success.
///
/// White space in the format skips white space, other characters stand for themselves, and after a
/// percent sign: Y y m d e j year, month and day; B b h month name; A a w weekday; H I K hour of 0
/// to 23, 1 to 12, 1 to 24 stored minus 1; M S minute and second; p am or pm; D R T r whole dates
/// and times; n t white space; % itself. Names count in any case, whole or their first three
/// letters.
const char* strptime(std::string_view text, const char* format, DateTimeFields* fields);

}  // namespace qxe
