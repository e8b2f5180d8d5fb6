#include "support/columns.h"

#include <math.h>
#include <stdio.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace qxe::test {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kDayZero = std::chrono::year{1899} / 12 / 30;
constexpr double kMillisecondsPerDay = 24.0 * 60 * 60 * 1000;
constexpr int kMaxDecimalDigits = 38;

[[noreturn]] void fail(const std::string& what, const std::string& text) {
  throw std::invalid_argument("no " + what + ": \"" + text + "\"");
}

double date_serial(const std::string& text) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  char end = 0;
  const int parts = sscanf(text.c_str(), "%4d/%2u/%2u%c", &year, &month, &day, &end);
  const year_month_day calendar_day(std::chrono::year{year}, std::chrono::month{month},
                                    std::chrono::day{day});
  if (parts != 3 || !calendar_day.ok()) fail("date", text);
  return static_cast<double>((sys_days(calendar_day) - kDayZero).count());
}

double time_serial(const std::string& text) {
  int hour = 0;
  int minute = 0;
  double second = 0;
  char end = 0;
  if (sscanf(text.c_str(), "%2d:%2d:%lf%c", &hour, &minute, &second, &end) != 3) {
    fail("time", text);
  }
  return round((hour * 60 + minute) * 60000.0 + second * 1000) / kMillisecondsPerDay;
}

double datetime_serial(const std::string& text) {
  const size_t blank = text.find(' ');
  if (blank == std::string::npos) fail("date and time", text);
  return date_serial(text.substr(0, blank)) + time_serial(text.substr(blank + 1));
}

int128 decimal_units(int scale, const std::string& text) {
  const bool negative = text.rfind('-', 0) == 0;
  const std::string digits = text.substr(negative ? 1 : 0);
  const size_t point = std::min(digits.find('.'), digits.size());
  std::string fraction = digits.substr(std::min(point + 1, digits.size()));
  if (fraction.size() > static_cast<size_t>(scale)) fail("decimal of this scale", text);
  fraction.resize(static_cast<size_t>(scale), '0');
  const std::string all = digits.substr(0, point) + fraction;
  if (all.empty() || all.size() > kMaxDecimalDigits ||
      all.find_first_not_of("0123456789") != std::string::npos) {
    fail("decimal", text);
  }
  int128 units = 0;
  for (const char digit : all) units = units * 10 + (digit - '0');
  return negative ? -units : units;
}

template <class Serial>
Column from_texts(int type, const std::vector<std::string>& values, Serial&& serial) {
  Column column{type, {}, 0};
  for (const std::string& text : values) {
    column.cells.push_back(text.empty() ? Cell{} : Cell{serial(text)});
  }
  return column;
}

std::string date_text(long serial) {
  const year_month_day day(kDayZero + std::chrono::days(serial));
  char text[32];
  snprintf(text, sizeof text, "%04d/%02u/%02u", static_cast<int>(day.year()),
           static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
  return text;
}

std::string time_text(long milliseconds) {
  char text[32];
  snprintf(text, sizeof text, "%02ld:%02ld:%02ld", milliseconds / 3600000,
           milliseconds / 60000 % 60, milliseconds / 1000 % 60);
  std::string result = text;
  if (milliseconds % 1000 != 0) {
    snprintf(text, sizeof text, ".%03ld", milliseconds % 1000);
    result += text;
  }
  return result;
}

std::string double_text(double value) {
  char text[32];
  snprintf(text, sizeof text, "%.17g", value);
  return text;
}

/// Bounds of searches may lie far beyond all dates and times.
std::string serial_text(double serial, int type) {
  constexpr double kBeyondDates = 3e6;
  if (!(fabs(serial) < kBeyondDates)) return double_text(serial);
  if (type == QX_DT_DATE) return date_text(lround(floor(serial)));
  const long all = lround(serial * kMillisecondsPerDay);
  if (type == QX_DT_TIME) return time_text(all);
  const long per_day = lround(kMillisecondsPerDay);
  const long time = (all % per_day + per_day) % per_day;
  return date_text((all - time) / per_day) + " " + time_text(time);
}

std::string decimal_text(const Decimal& value) {
  const bool negative = value.units < 0;
  std::string digits;
  for (int128 rest = negative ? -value.units : value.units; rest != 0; rest /= 10) {
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(rest % 10)));
  }
  const auto scale = static_cast<size_t>(value.scale);
  if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
  if (scale > 0) digits.insert(digits.size() - scale, ".");
  return (negative ? "-" : "") + digits;
}

}  // namespace

Column ints(const std::vector<int>& values) {
  Column column{QX_DT_INTEGER, {}, 0};
  for (const int value : values) column.cells.push_back(normal_form(value, column.type));
  return column;
}

Column doubles(const std::vector<double>& values) {
  return serials(QX_DT_DOUBLE, values);
}

Column serials(int type, const std::vector<double>& values) {
  Column column{type, {}, 0};
  for (const double value : values) column.cells.push_back(normal_form(value, type));
  return column;
}

Column strings(const std::vector<std::string>& values) {
  return {QX_DT_STRING, std::vector<Cell>(values.begin(), values.end()), 0};
}

Column dates(const std::vector<std::string>& values) {
  return from_texts(QX_DT_DATE, values, date_serial);
}

Column times(const std::vector<std::string>& values) {
  return from_texts(QX_DT_TIME, values, time_serial);
}

Column datetimes(const std::vector<std::string>& values) {
  return from_texts(QX_DT_DATETIME, values, datetime_serial);
}

Column decimals(int scale, const std::vector<std::string>& values) {
  Column column = from_texts(QX_DT_DECIMAL, values, [scale](const std::string& text) {
    return Decimal{scale, decimal_units(scale, text)};
  });
  column.scale = scale;
  return column;
}

Cell date(const std::string& text) {
  return dates({text}).cells[0];
}

Cell time_of_day(const std::string& text) {
  return times({text}).cells[0];
}

Cell datetime(const std::string& text) {
  return datetimes({text}).cells[0];
}

Cell decimal(int scale, const std::string& text) {
  return decimals(scale, {text}).cells[0];
}

Cell normal_form(const Cell& cell, int type) {
  if (type == QX_DT_STRING) return is_null(cell) ? Cell{std::string()} : cell;
  const bool marks_null = cell == Cell{kNullInt} || cell == Cell{kNullDouble};
  return marks_null ? Cell{} : cell;
}

std::string to_text(const Cell& cell, int type) {
  if (const int* value = std::get_if<int>(&cell)) return std::to_string(*value);
  if (const auto* value = std::get_if<std::string>(&cell)) return *value;
  if (const auto* value = std::get_if<Decimal>(&cell)) return decimal_text(*value);
  if (const double* value = std::get_if<double>(&cell)) {
    return type == QX_DT_DOUBLE ? double_text(*value) : serial_text(*value, type);
  }
  return "NULL";
}

std::vector<std::string> to_texts(const Column& column) {
  std::vector<std::string> texts;
  for (const Cell& cell : column.cells) texts.push_back(to_text(cell, column.type));
  return texts;
}

std::string to_text(const Columns& columns) {
  constexpr size_t kShownRows = 100;
  std::string text;
  for (const NamedColumn& named : columns) {
    text += named.name + " (type " + std::to_string(named.column.type) + "):";
    const std::vector<std::string> cells = to_texts(named.column);
    for (size_t i = 0; i < std::min(cells.size(), kShownRows); ++i) {
      text += " " + (named.column.type == QX_DT_STRING ? "\"" + cells[i] + "\"" : cells[i]);
    }
    if (cells.size() > kShownRows) text += " ... of " + std::to_string(cells.size());
    text += "\n";
  }
  return text;
}

}  // namespace qxe::test
