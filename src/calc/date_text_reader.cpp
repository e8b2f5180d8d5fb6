// Dates and times from text. Nearly every cell of an import is plain digits and separators, so that
// shape has a straight path; anything else goes by the full rules.
#include <array>

#include "calc/date_formats.h"
#include "calc/datetime.h"
#include "parallel/smpengine.h"
#include "storage/family.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr size_t kLongestText = 50;

using Numbers = std::array<int, 3>;  // in the order of the text

void tell(bool* bad, bool value) {
  if (bad != nullptr) *bad = value;
}

/// Moves `at` over up to four digits; -1 when there is none.
int read_digits(const char*& at, const char* end) {
  const char* const first = at;
  int value = 0;
  for (; at < end && at < first + 4 && is_digit(*at); ++at) value = value * 10 + (*at - '0');
  return at == first ? -1 : value;
}

/// Numbers of a text that is three runs of digits with `separator` between them and nothing else.
bool read_plain(std::string_view text, char separator, Numbers* numbers) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (size_t i = 0; i < numbers->size(); ++i) {
    if (i > 0 && (at == end || *at++ != separator)) return false;
    (*numbers)[i] = read_digits(at, end);
    if ((*numbers)[i] < 0) return false;
  }
  return at == end;
}

bool read_number(std::string_view text, bool strict, int* number) {
  *number = Str2Int(text, strict, nullptr);
  return *number != QX_NULL_INT;
}

/// Numbers of a text cut at its last two separators, which are "-" if there is one at all.
bool read_date_numbers(std::string_view text, bool strict, Numbers* numbers) {
  const char separator = text.find('-') != std::string_view::npos ? '-' : '/';
  const size_t last = text.rfind(separator);
  if (last == std::string_view::npos || last == 0) return false;
  const size_t middle = text.rfind(separator, last - 1);
  if (middle == std::string_view::npos) return false;
  return read_number(text.substr(0, middle), strict, &(*numbers)[0]) &&
         read_number(text.substr(middle + 1, last - middle - 1), strict, &(*numbers)[1]) &&
         read_number(text.substr(last + 1), strict, &(*numbers)[2]);
}

_stdate date_of(const Numbers& numbers, int order) {
  switch (order) {
    case kDayFirst: return {numbers[2], numbers[1], numbers[0]};
    case kMonthFirst: return {numbers[2], numbers[0], numbers[1]};
    default: return {numbers[0], numbers[1], numbers[2]};
  }
}

/// Cuts `rest` behind its first ":"; false and all of it when there is none.
bool take_until_colon(std::string_view* rest, std::string_view* part) {
  const size_t colon = rest->find(':');
  const bool found = colon != std::string_view::npos;
  *part = rest->substr(0, colon);
  *rest = found ? rest->substr(colon + 1) : std::string_view();
  return found;
}

bool read_seconds(std::string_view text, bool strict, _sttime* time) {
  const size_t point = text.find('.');
  if (!read_number(text.substr(0, point), strict, &time->second)) return false;
  return point == std::string_view::npos ||
         read_number(text.substr(point + 1), strict, &time->millisecond);
}

bool parseStr2Time(std::string_view text, bool strict, _sttime* time) {
  *time = {};
  std::string_view part;
  if (!take_until_colon(&text, &part) || !read_number(part, strict, &time->hour)) return false;
  if (text.empty()) return true;
  take_until_colon(&text, &part);
  if (!read_number(part, strict, &time->minute)) return false;
  return text.empty() || read_seconds(text, strict, time);
}

double serial_of(const _stdate& date, bool* bad) {
  bool no_such_day = false;
  const int serial = getDateField(date, &no_such_day);
  tell(bad, no_such_day);
  return no_such_day ? kNullDouble : serial;
}

double unreadable(bool* bad) {
  tell(bad, true);
  return kNullDouble;
}

double empty_text(bool* bad) {
  tell(bad, false);
  return kNullDouble;
}

std::string_view without_blanks_around(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

double or_zero(double part) {
  return is_null_double(part) ? 0.0 : part;
}

/// The frame of all date-and-time forms; `read_date` and `read_time` take a text and an error.
template <class ReadDate, class ReadTime>
double read_date_time(std::string_view text, bool strict, bool* bad, ReadDate read_date,
                      ReadTime read_time) {
  if (text.empty()) return empty_text(bad);
  text = without_blanks_around(text.substr(0, kLongestText));
  const std::string_view first = text.substr(0, text.find(' '));
  const std::string_view second = without_blanks_around(text.substr(first.size()));
  const bool lone_time = first.find(':') != std::string_view::npos;
  if (first.empty() || (lone_time && strict)) return unreadable(bad);

  bool bad_date = false;
  bool bad_time = false;
  const double date = lone_time ? kNullDouble : read_date(first, &bad_date);
  const double time = read_time(lone_time ? first : second, &bad_time);
  tell(bad, bad_date || bad_time);
  if (strict && (bad_date || bad_time)) return kNullDouble;
  return or_zero(date) + or_zero(time);
}

}  // namespace

double Str2DateInOrder(std::string_view text, int order, bool strict, bool* bad) {
  if (text.empty()) return empty_text(bad);
  text = text.substr(0, kLongestText);
  Numbers numbers;
  if (read_plain(text, '/', &numbers) || read_plain(text, '-', &numbers) ||
      read_date_numbers(text, strict, &numbers)) {
    return serial_of(date_of(numbers, order), bad);
  }
  return unreadable(bad);
}

double Str2Time(std::string_view text, bool strict, bool* bad) {
  if (text.empty()) return empty_text(bad);
  text = text.substr(0, kLongestText);
  _sttime time{};
  if (Numbers numbers; read_plain(text, ':', &numbers)) {
    time = {numbers[0], numbers[1], numbers[2], 0};
  } else if (!parseStr2Time(text, strict, &time)) {
    return unreadable(bad);
  }
  tell(bad, false);
  return getTime2double(time);
}

double Str2DateTimeInOrder(std::string_view text, int order, bool strict, bool* bad) {
  return read_date_time(
      text, strict, bad,
      [&](std::string_view part, bool* failed) {
        return Str2DateInOrder(part, order, strict, failed);
      },
      [&](std::string_view part, bool* failed) { return Str2Time(part, strict, failed); });
}

double Str2DateExType(std::string_view text, int dateType, bool /*strict*/, bool* bad) {
  if (text.empty()) return empty_text(bad);
  DateTimeFields fields;
  if (strptime(text, getstrp_DateFormat(dateType), &fields) == nullptr) return unreadable(bad);
  const int year = has_year(dateType) ? fields.year : ENG->start_time().tm_year;
  return serial_of({year + 1900, fields.month + 1, fields.day}, bad);
}

double Str2TimeExType(std::string_view text, int timeType, bool /*strict*/, bool* bad) {
  if (text.empty()) return empty_text(bad);
  DateTimeFields fields;
  if (strptime(text, getstrp_TimeFormat(timeType), &fields) == nullptr) return unreadable(bad);
  tell(bad, false);
  return getTime2double({fields.hour, fields.minute, fields.second, 0});
}

double Str2DateTimeExType(std::string_view text, int dateType, int timeType, bool strict,
                          bool* bad) {
  return read_date_time(
      text, strict, bad,
      [&](std::string_view part, bool* failed) {
        return Str2DateExType(part, dateType, strict, failed);
      },
      [&](std::string_view part, bool* failed) {
        return Str2TimeExType(part, timeType, strict, failed);
      });
}

}  // namespace qxe
