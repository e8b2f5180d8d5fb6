#include "calc/type_conversion_values.h"

#include <limits.h>
#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "calc/date_integer_forms.h"
#include "storage/family.h"

namespace qxe {

namespace {

/// NULL for infinity, which has none.
double fraction_of(double x) {
  if (!std::isfinite(x)) return kNullDouble;
  return x - std::floor(x);
}

double serial_or_null(int date) {
  double serial = kNullDouble;
  serial_of_date(date, &serial);  // leaves it for what is no date
  return serial;
}

Numeric decimal_of(double x, const Context& context) {
  Numeric number;
  RQXNumericDbl2Num(&context.target_info, &number, x);  // a failure leaves NaN
  return number;
}

double double_of(const Numeric& x, const Context& context) {
  double value = kNullDouble;
  RQXNumericNum2Dbl(&x, &context.source_info, &value);  // a failure leaves NULL
  return value;
}

}  // namespace

// From integers

double intVL2dblVL(int x, const Context&) {
  return x;
}

double intVL2dateVL(int x, const Context&) {
  return serial_or_null(x);
}

double intVL2timeVL(int, const Context&) {
  return 0.0;
}

double intVL2datetimeVL(int x, const Context&) {
  return serial_or_null(x);
}

const char* intVL2strVL(int x, const Context& context) {
  *std::to_chars(context.text, context.text + kNumberTextSlot, x).ptr = '\0';
  return context.text;
}

Numeric intVL2decVL(int x, const Context& context) {
  return decimal_of(x, context);
}

// From floats

int dblVL2intVL(double x, const Context&) {
  constexpr double kBeyondInt = 2147483648.0;
  return std::fabs(x) < kBeyondInt ? static_cast<int>(x) : QX_NULL_INT;
}

double dblVL2dateVL(double x, const Context&) {
  return std::floor(x);
}

double dblVL2timeVL(double x, const Context&) {
  return fraction_of(x);
}

double dblVL2datetimeVL(double x, const Context&) {
  return x;
}

/// As "%10.6f" whatever the locale.
const char* dblVL2strVL(double x, const Context& context) {
  constexpr long kWidth = 10;
  char* const begin = context.text;
  char* end = std::to_chars(begin, begin + kDoubleTextSlot - 1, x, std::chars_format::fixed, 6).ptr;
  const long blanks = std::max(kWidth - (end - begin), 0L);
  std::copy_backward(begin, end, end + blanks);
  std::fill_n(begin, blanks, ' ');
  end[blanks] = '\0';
  return begin;
}

Numeric dblVL2decVL(double x, const Context& context) {
  return decimal_of(x, context);
}

// From dates

int dateVL2intVL(double x, const Context& context) {
  int date = 0;
  return date_of_serial(x, context.date_order, &date) ? date : QX_NULL_INT;
}

double dateVL2dblVL(double x, const Context&) {
  return std::floor(x);
}

double dateVL2timeVL(double, const Context&) {
  return 0.0;
}

double dateVL2datetimeVL(double x, const Context&) {
  return std::floor(x);
}

const char* dateVL2strVL(double x, const Context& context) {
  int date = 0;
  if (!date_of_serial(x, context.date_order, &date)) return QX_NULL_STR;
  addSlash(date, context.text, context.date_order);
  return context.text;
}

Numeric dateVL2decVL(double x, const Context& context) {
  return decimal_of(dateVL2dblVL(x, context), context);
}

// From times. A time has no date, while a date has the time 0.

int timeVL2intVL(double, const Context&) {
  return 0;
}

double timeVL2dblVL(double x, const Context&) {
  return x < 0 ? kNullDouble : fraction_of(x);
}

double timeVL2dateVL(double, const Context&) {
  return kNullDouble;
}

double timeVL2datetimeVL(double, const Context&) {
  return kNullDouble;
}

const char* timeVL2strVL(double x, const Context& context) {
  if (!(x >= 0.0 && x <= 1.0)) return QX_NULL_STR;
  addColon(x, context.text);
  return context.text;
}

Numeric timeVL2decVL(double x, const Context& context) {
  return decimal_of(timeVL2dblVL(x, context), context);
}

// From dates with times

int datetimeVL2intVL(double x, const Context& context) {
  return dateVL2intVL(x, context);
}

double datetimeVL2dblVL(double x, const Context&) {
  return x;
}

double datetimeVL2dateVL(double x, const Context&) {
  return std::floor(x);
}

double datetimeVL2timeVL(double x, const Context&) {
  return fraction_of(x);
}

const char* datetimeVL2strVL(double x, const Context& context) {
  if (*dateVL2strVL(x, context) == '\0') return QX_NULL_STR;
  char* const end = context.text + strlen(context.text);
  *end = ' ';
  addColon(fraction_of(x), end + 1);
  return context.text;
}

Numeric datetimeVL2decVL(double x, const Context& context) {
  return decimal_of(x, context);
}

// From strings. A text that looks like a date or a time is one, for every type.

namespace {

/// The integer that a text begins with and the place behind it.
int leading_int(const char* text, const char** end) {
  char* stop = nullptr;
  const long number = strtol(text, &stop, 10);
  *end = stop;
  return number < INT_MIN || number > INT_MAX ? QX_NULL_INT : static_cast<int>(number);
}

double leading_date(const char* text) {
  const char* end = nullptr;
  return serial_or_null(leading_int(text, &end));
}

/// A text that is a number from end to end, with a point for the decimals whatever the locale.
double whole_double(const char* text) {
  static const locale_t plain_locale = newlocale(LC_ALL_MASK, "C", nullptr);
  const char* const end = text + strlen(text);
  double value = 0.0;
  const auto [stop, fault] = std::from_chars(text, end, value);
  if (stop != end || fault != std::errc()) {  // blanks, a plus, another base, out of range
    char* rest = nullptr;
    value = strtod_l(text, &rest, plain_locale);
    if (rest != end) return kNullDouble;
  }
  return Family<TDoubleArray>::normalized(value);
}

}  // namespace

int strVL2intVL(const char* x, const Context&) {
  const char* end = nullptr;
  int number = 0;
  if (CheckDateStr(x, &end, &number)) return number;
  if (CheckTimeStr(x, &number)) return 0;
  number = leading_int(x, &end);
  return *x == '\0' || *end != '\0' ? QX_NULL_INT : number;
}

double strVL2dblVL(const char* x, const Context&) {
  int date = 0;
  int time = 0;
  if (CheckDateTimeStr(x, &date, &time)) return serial_or_null(date) + TimeOuter2Inner(time);
  if (CheckTimeStr(x, &time)) return TimeOuter2Inner(time);
  if (*x == '\0') return kNullDouble;
  return whole_double(x);
}

double strVL2dateVL(const char* x, const Context&) {
  const char* end = nullptr;
  int date = 0;
  return CheckDateStr(x, &end, &date) ? serial_or_null(date) : leading_date(x);
}

double strVL2timeVL(const char* x, const Context&) {
  int time = 0;
  return CheckTimeStr(x, &time) ? TimeOuter2Inner(time) : kNullDouble;
}

double strVL2datetimeVL(const char* x, const Context&) {
  int date = 0;
  int time = 0;
  if (!CheckDateTimeStr(x, &date, &time)) return leading_date(x);
  return serial_or_null(date) + TimeOuter2Inner(time);
}

Numeric strVL2decVL(const char* x, const Context& context) {
  Numeric number;
  char* rest = nullptr;
  const int status = RQXNumericStr2Num(x, &context.target_info, &number, &rest);
  return status == QX_NUMERIC_DONE && *rest == '\0' ? number : Family<TNumericArray>::null();
}

// From decimals

int decVL2intVL(Numeric x, const Context& context) {
  return dblVL2intVL(double_of(x, context), context);
}

double decVL2dblVL(Numeric x, const Context& context) {
  return double_of(x, context);
}

double decVL2dateVL(Numeric x, const Context& context) {
  return std::floor(double_of(x, context));
}

double decVL2timeVL(Numeric x, const Context& context) {
  return fraction_of(double_of(x, context));
}

double decVL2datetimeVL(Numeric x, const Context& context) {
  return double_of(x, context);
}

const char* decVL2strVL(Numeric x, const Context& context) {
  const NumericInfo& info = context.source_info;
  RQXNumericNum2Str(&x, &info, info.scale, info.rounding, context.text, kDecimalTextSlot);
  return context.text;
}

Numeric decVL2decVL(Numeric x, const Context& context) {
  Numeric number;
  RQXNumericRescale(&x, &context.source_info, &context.target_info, &number);  // failed: NaN
  return number;
}

}  // namespace qxe
