#include "calc/date_formats.h"

#include <string.h>
#include <strings.h>

#include <charconv>
#include <iterator>
#include <system_error>

#include "storage/strings.h"

namespace qxe {

namespace {

constexpr const char* kDateFormats[] = {"%Y/%m/%d", "%Y/%m/%d", "%Y-%m-%d", "%m/%d/%Y", "%m.%d.%Y",
                                        "%d/%m/%Y", "%d.%m.%Y", "%m/%d/%y", "%m.%d.%y", "%d/%m/%y",
                                        "%d.%m.%y", "%m/%d",    "%m.%d",    "%d/%m",    "%d.%m"};
constexpr const char* kTimeFormats[] = {"%H:%M:%S", "%H:%M:%S", "%H:%M", "%K:%M:%S", "%K:%M"};
constexpr int kLastDateType = static_cast<int>(std::size(kDateFormats)) - 1;
constexpr int kLastTimeType = static_cast<int>(std::size(kTimeFormats)) - 1;
constexpr int kFirstTypeWithoutYear = 11;

constexpr const char* strp_weekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                         "Thursday", "Friday", "Saturday"};
constexpr const char* strp_monthnames[] = {"January",   "February", "March",    "April",
                                           "May",       "June",     "July",     "August",
                                           "September", "October",  "November", "December"};

/// Number behind `letter` in a type word, 0 unless it is 1 to `most`.
int type_number(const char* word, char letter, int most) {
  if (word == nullptr || (word[0] | 0x20) != letter) return 0;
  const char* const end = word + strlen(word);
  int number = 0;
  const auto [behind, status] = std::from_chars(word + 1, end, number);
  const bool valid = status == std::errc() && behind == end && number >= 1 && number <= most;
  return valid ? number : 0;
}

/// The text that is still to be read.
struct Input {
  const char* at;
  const char* end;

  bool at_end() const { return at == end; }

  void skip_white() {
    while (at < end && is_white(*at)) ++at;
  }

  /// Moves over `word` in any case.
  bool take_word(std::string_view word) {
    if (end - at < static_cast<long>(word.size())) return false;
    if (strncasecmp(at, word.data(), word.size()) != 0) return false;
    at += word.size();
    return true;
  }
};

/// Reads an unsigned number of `low` to `high` and stores it with `offset` added.
bool strp_atoi(Input& input, int* value, int low, int high, int offset) {
  input.skip_white();
  if (!input.at_end() && *input.at == '+') ++input.at;
  int number = 0;
  const auto [behind, status] = std::from_chars(input.at, input.end, number);
  if (status != std::errc() || *input.at == '-' || number < low || number > high) return false;
  input.at = behind;
  *value = number + offset;
  return true;
}

/// Reads one of `names`, whole or its first three letters, and stores its number.
template <size_t kCount>
bool read_name(Input& input, const char* const (&names)[kCount], int* value) {
  for (size_t i = 0; i < kCount; ++i) {
    const std::string_view name = names[i];
    if (input.take_word(name) || input.take_word(name.substr(0, 3))) {
      *value = static_cast<int>(i);
      return true;
    }
  }
  return false;
}

bool read_half_of_day(Input& input, int* hour) {
  if (input.take_word("am")) {
    if (*hour == 12) *hour = 0;
    return true;
  }
  if (!input.take_word("pm")) return false;
  if (*hour <= 11) *hour += 12;
  return true;
}

bool read_short_year(Input& input, int* year) {
  constexpr int kLastOf2000s = 68;
  if (!strp_atoi(input, year, 0, 99, 0)) return false;
  if (*year <= kLastOf2000s) *year += 100;
  return true;
}

bool read_by_format(Input& input, const char* format, DateTimeFields* fields);

bool read_conversion(Input& input, char conversion, DateTimeFields* fields) {
  switch (conversion) {
    case '%': return input.take_word("%");
    case 'A':
    case 'a': return read_name(input, strp_weekdays, &fields->weekday);
    case 'B':
    case 'b':
    case 'h': return read_name(input, strp_monthnames, &fields->month);
    case 'D': return read_by_format(input, "%m/%d/%y", fields);
    case 'H': return strp_atoi(input, &fields->hour, 0, 23, 0);
    case 'I': return strp_atoi(input, &fields->hour, 1, 12, 0);
    case 'K': return strp_atoi(input, &fields->hour, 1, 24, -1);
    case 'M': return strp_atoi(input, &fields->minute, 0, 59, 0);
    case 'R': return read_by_format(input, "%H:%M", fields);
    case 'S': return strp_atoi(input, &fields->second, 0, 60, 0);
    case 'T': return read_by_format(input, "%H:%M:%S", fields);
    case 'Y': return strp_atoi(input, &fields->year, 1900, 65535, -1900);
    case 'd':
    case 'e': return strp_atoi(input, &fields->day, 1, 31, 0);
    case 'j': return strp_atoi(input, &fields->year_day, 1, 366, -1);
    case 'm': return strp_atoi(input, &fields->month, 1, 12, -1);
    case 'n':
    case 't': input.skip_white(); return true;
    case 'p': return read_half_of_day(input, &fields->hour);
    case 'r': return read_by_format(input, "%I:%M:%S %p", fields);
    case 'w': return strp_atoi(input, &fields->weekday, 0, 6, 0);
    case 'y': return read_short_year(input, &fields->year);
    default: return false;
  }
}

bool read_by_format(Input& input, const char* format, DateTimeFields* fields) {
  for (; *format != '\0' && !input.at_end(); ++format) {
    if (is_white(*format)) {
      input.skip_white();
    } else if (*format == '%') {
      if (!read_conversion(input, *++format, fields)) return false;
    } else if (*input.at++ != *format) {
      return false;
    }
  }
  return true;
}

}  // namespace

int getDateFormatFromTypeStr(const char* word) {
  return type_number(word, 'd', kLastDateType);
}

int getTimeFormatFromTypeStr(const char* word) {
  return type_number(word, 't', kLastTimeType);
}

const char* getstrp_DateFormat(int dateType) {
  return kDateFormats[dateType >= 0 && dateType <= kLastDateType ? dateType : 0];
}

const char* getstrp_TimeFormat(int timeType) {
  return kTimeFormats[timeType >= 0 && timeType <= kLastTimeType ? timeType : 0];
}

bool has_year(int dateType) {
  return dateType < kFirstTypeWithoutYear || dateType > kLastDateType;
}

const char* strptime(std::string_view text, const char* format, DateTimeFields* fields) {
  Input input{text.data(), text.data() + text.size()};
  return read_by_format(input, format, fields) ? input.at : nullptr;
}

}  // namespace qxe
