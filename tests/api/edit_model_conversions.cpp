#include "edit_model_conversions.h"

#include <limits.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <chrono>

namespace qxe::test {

namespace {

constexpr int kScaleOfTexts = 6;  // of floats
constexpr double kSecondsOfDay = 86400;

int128 power_of_ten(int exponent) {
  int128 power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

bool has(const std::string& text, char c) {
  return text.find(c) != std::string::npos;
}

// Dates and times. Integers and texts know the years 1900 to 2099.

Cell date_of_number(long number) {
  using std::chrono::sys_days;
  using std::chrono::year;
  using std::chrono::year_month_day;
  const year_month_day date(year(static_cast<int>(number / 10000)),
                            std::chrono::month(static_cast<unsigned>(number / 100 % 100)),
                            std::chrono::day(static_cast<unsigned>(number % 100)));
  if (number < 19000101 || number > 20991231 || !date.ok()) return {};
  return static_cast<double>((sys_days(date) - sys_days(year(1899) / 12 / 30)).count());
}

/// Empty for a day that has none.
std::string date_text(double serial) {
  const Cell day = floor(serial);
  const bool known = day >= date_of_number(19000101) && day <= date_of_number(20991231);
  return known ? to_text(day, QX_DT_DATE) : "";
}

int number_of_date(const std::string& text) {
  return atoi((text.substr(0, 4) + text.substr(5, 2) + text.substr(8, 2)).c_str());
}

/// The seconds are cut, but for what a time that was a text has more.
std::string time_text(double fraction) {
  if (fraction < 0 || fraction > 1) return "";
  const auto seconds = static_cast<unsigned>(fraction * kSecondsOfDay + 0.01);
  char text[32];
  snprintf(text, sizeof text, "%02u:%02u:%02u", seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text;
}

/// Of "HH:MM:SS", or of nothing, which is midnight.
double time_of_text(const std::string& text) {
  int hour = 0;
  int minute = 0;
  int second = 0;
  sscanf(text.c_str(), "%d:%d:%d", &hour, &minute, &second);
  return hour > 23 ? 0 : (hour * 3600 + minute * 60 + second + 0.01) / kSecondsOfDay;
}

// Decimals

/// A text of digits with a sign and a point; NULL when it is something else.
std::optional<Cell> decimal_of_text(const std::string& text, int scale) {
  constexpr size_t kMostDigits = 34;
  std::string digits = text.substr(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = digits.rfind('-', 0) == 0;
  digits.erase(0, negative ? 1 : 0);
  const size_t point = std::min(digits.find('.'), digits.size());
  const size_t behind = digits.size() - std::min(point + 1, digits.size());
  digits.erase(point, 1);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) return Cell{};
  if (digits.size() > kMostDigits) return std::nullopt;
  int128 units = 0;
  for (const char digit : digits) units = units * 10 + (digit - '0');
  return rescaled(Decimal{static_cast<int>(behind), negative ? -units : units}, scale);
}

/// By the shortest text that gives the same float again. Of large numbers that text has fewer
/// digits than the number.
std::optional<Cell> decimal_of(double x, int scale) {
  if (fabs(x) < 1e-12) return Decimal{scale, 0};
  if (fabs(x) > 1e39) return Cell{};
  if (fabs(x) > 1e15) return std::nullopt;
  char text[80];
  *std::to_chars(text, text + sizeof text - 1, x, std::chars_format::fixed).ptr = '\0';
  return decimal_of_text(text, scale);
}

// One function for each source

std::optional<Cell> from_int(int x, int to, int scale) {
  switch (to) {
    case QX_DT_DATE:
    case QX_DT_DATETIME: return date_of_number(x);
    case QX_DT_TIME: return 0.0;
    case QX_DT_STRING: return std::to_string(x);
    case QX_DT_DECIMAL: return rescaled(Decimal{0, x}, scale);
    default: return static_cast<double>(x);
  }
}

std::optional<Cell> from_double(double x, int to, int scale) {
  char text[400];
  switch (to) {
    case QX_DT_INTEGER: return fabs(x) < 2147483648.0 ? Cell{static_cast<int>(x)} : Cell{};
    case QX_DT_DATE: return floor(x);
    case QX_DT_TIME: return x - floor(x);
    case QX_DT_STRING: snprintf(text, sizeof text, "%10.*f", kScaleOfTexts, x); return text;
    case QX_DT_DECIMAL: return decimal_of(x, scale);
    default: return x;
  }
}

std::optional<Cell> from_time(double x, int to, int scale) {
  switch (to) {
    case QX_DT_INTEGER: return 0;
    case QX_DT_DOUBLE: return x - floor(x);
    case QX_DT_STRING: return time_text(x);
    case QX_DT_DECIMAL: return decimal_of(x - floor(x), scale);
    default: return Cell{};  // no date
  }
}

std::optional<Cell> from_datetime(double x, int to, int scale) {
  const std::string date = date_text(x);
  switch (to) {
    case QX_DT_INTEGER: return date.empty() ? Cell{} : number_of_date(date);
    case QX_DT_STRING: return date.empty() ? date : date + " " + time_text(x - floor(x));
    default: return from_double(x, to, scale);
  }
}

std::optional<Cell> from_date(double x, int to, int scale) {
  return to == QX_DT_STRING ? date_text(x) : from_datetime(floor(x), to, scale);
}

/// A text of a date, a time or both, as conversions to strings write them.
std::optional<Cell> from_date_text(const std::string& text, int to) {
  const bool is_date = has(text, '/');
  const Cell day = is_date ? date_of_number(number_of_date(text)) : Cell{};
  const double time = time_of_text(is_date ? text.substr(10) : text);
  const Cell both = is_date ? Cell{std::get<double>(day) + time} : Cell{};
  switch (to) {
    case QX_DT_INTEGER: return is_date ? number_of_date(text) : 0;
    case QX_DT_DOUBLE: return is_date ? both : time;
    case QX_DT_DATE: return day;
    case QX_DT_TIME: return is_date ? Cell{} : time;
    case QX_DT_DATETIME: return both;
    default: return Cell{};  // no decimal
  }
}

/// A number from end to end; a date may have something behind it.
std::optional<Cell> from_number_text(const std::string& text, int to, int scale) {
  char* end = nullptr;
  const long integer = strtol(text.c_str(), &end, 10);
  const bool is_integer = !text.empty() && *end == '\0' && integer > kNullInt && integer <= INT_MAX;
  const double number = strtod(text.c_str(), &end);
  const bool is_number = !text.empty() && *end == '\0';
  switch (to) {
    case QX_DT_INTEGER: return is_integer ? Cell{static_cast<int>(integer)} : Cell{};
    case QX_DT_DOUBLE: return is_number ? Cell{number} : Cell{};
    case QX_DT_TIME: return Cell{};
    case QX_DT_DECIMAL: return decimal_of_text(text, scale);
    default: return date_of_number(integer);
  }
}

std::optional<Cell> from_decimal(const Decimal& x, int to, int scale) {
  if (to == QX_DT_DECIMAL) return rescaled(x, scale);
  const std::string text = to_text(x, QX_DT_DECIMAL);
  return to == QX_DT_STRING ? Cell{text} : from_double(strtod(text.c_str(), nullptr), to, scale);
}

std::optional<Cell> from_value(const Cell& cell, int from, int to, int scale) {
  if (from == QX_DT_INTEGER) return from_int(std::get<int>(cell), to, scale);
  if (from == QX_DT_DECIMAL) return from_decimal(std::get<Decimal>(cell), to, scale);
  if (from == QX_DT_STRING) {
    const auto& text = std::get<std::string>(cell);
    const bool is_date_text = has(text, '/') || has(text, ':');
    return is_date_text ? from_date_text(text, to) : from_number_text(text, to, scale);
  }
  const double x = std::get<double>(cell) + 0.0;  // there is one zero
  switch (from) {
    case QX_DT_DATE: return from_date(x, to, scale);
    case QX_DT_TIME: return from_time(x, to, scale);
    case QX_DT_DATETIME: return from_datetime(x, to, scale);
    default: return from_double(x, to, scale);
  }
}

}  // namespace

std::optional<Cell> converted(const Cell& cell, int from, int to, int scale) {
  if (is_null(cell) || (from == to && to != QX_DT_DECIMAL)) return normal_form(cell, to);
  const auto value = from_value(cell, from, to, scale);
  return value ? normal_form(*value, to) : value;
}

Cell rescaled(const Cell& cell, int scale) {
  if (is_null(cell)) return cell;
  const auto [digits, units] = std::get<Decimal>(cell);
  if (scale >= digits) {
    const int128 factor = power_of_ten(scale - digits);
    const int128 limit = (power_of_ten(38) - 1) / factor;
    return units > limit || units < -limit ? Cell{} : Decimal{scale, units * factor};
  }
  const int128 divisor = power_of_ten(digits - scale);
  const int128 rest = (units < 0 ? -units : units) % divisor;
  const int128 carry = rest * 2 < divisor ? 0 : units < 0 ? -1 : 1;
  return Decimal{scale, units / divisor + carry};
}

}  // namespace qxe::test
