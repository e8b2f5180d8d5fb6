// Texts of dates and times. Years of four digits, which is all that a calendar holds, are written
// digit by digit; only serials far outside need the formatted output.
#include <stdio.h>

#include <cmath>

#include "calc/datetime.h"

namespace qxe {

namespace {

/// Place of the next character in the caller's buffer.
class TextEnd {
 public:
  explicit TextEnd(char* start) : at_(start) {}

  char* place() const { return at_; }

  TextEnd& put(char c) {
    *at_++ = c;
    return *this;
  }

  TextEnd& put_two_digits(int number) { return put_digit(number / 10).put_digit(number % 10); }

  TextEnd& put_three_digits(int number) {
    return put_digit(number / 100).put_two_digits(number % 100);
  }

  TextEnd& put_year(int year) {
    constexpr int kRoom = 12;
    if (year >= 0 && year <= 9999) return put_two_digits(year / 100).put_two_digits(year % 100);
    at_ += snprintf(at_, kRoom, "%04d", year);
    return *this;
  }

 private:
  TextEnd& put_digit(int digit) { return put(static_cast<char>('0' + digit)); }

  char* at_;
};

void write_date(const _stdatetime& fields, char separator, int order, TextEnd& out) {
  switch (order) {
    case kDayFirst:
      out.put_two_digits(fields.day).put(separator).put_two_digits(fields.month);
      out.put(separator).put_year(fields.year);
      break;
    case kMonthFirst:
      out.put_two_digits(fields.month).put(separator).put_two_digits(fields.day);
      out.put(separator).put_year(fields.year);
      break;
    default:
      out.put_year(fields.year).put(separator);
      out.put_two_digits(fields.month).put(separator).put_two_digits(fields.day);
  }
}

void write_time(const _stdatetime& fields, TextEnd& out) {
  out.put_two_digits(fields.hour).put(':').put_two_digits(fields.minute);
  out.put(':').put_two_digits(fields.second);
  if (fields.millisecond != 0) out.put('.').put_three_digits(fields.millisecond);
}

/// Writes what `body` makes of the serial's fields and ends the text. Returns its length.
template <class Body>
int write_fields(double serial, char* out, Body body) {
  TextEnd end(out);
  if (std::isfinite(serial)) {
    _stdatetime fields{};
    Double2DateTimeNoValidationWithMSEC(serial, &fields);
    body(fields, end);
  }
  *end.place() = '\0';
  return static_cast<int>(end.place() - out);
}

}  // namespace

int Double2DateStrNoValidation(double serial, char* out, char separator, int order) {
  return write_fields(serial, out, [&](const _stdatetime& fields, TextEnd& end) {
    write_date(fields, separator, order, end);
  });
}

int Double2TimeStrNoValidation(double serial, char* out) {
  return write_fields(serial, out, write_time);
}

int Double2DateTimeStrNoValidation(double serial, char* out, char separator, int order) {
  return write_fields(serial, out, [&](const _stdatetime& fields, TextEnd& end) {
    write_date(fields, separator, order, end);
    end.put(' ');
    write_time(fields, end);
  });
}

}  // namespace qxe
