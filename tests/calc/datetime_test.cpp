#include "calc/datetime.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "qxe.h"

namespace qxe {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr double kNull = -std::numeric_limits<double>::infinity();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kNoon = 0.5;

const sys_days kSerialZero = std::chrono::year(1899) / 12 / 30;

double serial_of(int year, int month, int day) {
  const sys_days wanted = std::chrono::year(year) / month / day;
  return static_cast<double>((wanted - kSerialZero).count());
}

// ---- Serials ------------------------------------------------------------------------------------

TEST(SerialTest, AgreesWithTheCalendarOnEveryDay) {
  const sys_days first = std::chrono::year(1) / 1 / 1;
  const sys_days last = std::chrono::year(9999) / 12 / 31;
  for (sys_days day = first; day <= last; day += days(1)) {
    const year_month_day date(day);
    const int year = static_cast<int>(date.year());
    const int month = static_cast<int>(static_cast<unsigned>(date.month()));
    const int day_of_month = static_cast<int>(static_cast<unsigned>(date.day()));
    const int serial = static_cast<int>((day - kSerialZero).count());
    bool bad = false;
    ASSERT_EQ(getDateField({year, month, day_of_month}, &bad), serial);
    ASSERT_FALSE(bad);

    _stdatetime fields{};
    Double2DateTimeNoValidationWithMSEC(serial, &fields);
    ASSERT_EQ(fields.year, year);
    ASSERT_EQ(fields.month, month);
    ASSERT_EQ(fields.day, day_of_month);
    ASSERT_EQ(fields.weekday, static_cast<int>(std::chrono::weekday(day).c_encoding()) + 1);
    ASSERT_EQ(fields.day_of_year, (day - sys_days(date.year() / 1 / 1)).count() + 1);
  }
}

TEST(SerialTest, HasNoOtherDates) {
  const _stdate cases[] = {
      {0, 1, 1},       {10000, 1, 1},      {2024, 0, 1},  {2024, 13, 1}, {2024, 1, 0},
      {2024, 1, 32},   {2024, 4, 31},      {2024, 2, 30}, {2023, 2, 29}, {1900, 2, 29},
      {2024, 12, 32},  {2024, -1, 1},      {2024, 1, -1}, {-1, 1, 1},    {2024, 3, 0},
      {INT_MIN, 1, 1}, {2024, INT_MAX, 1},
  };
  for (const _stdate& date : cases) {
    bool bad = false;
    EXPECT_EQ(getDateField(date, &bad), 0);
    EXPECT_TRUE(bad) << date.year << '/' << date.month << '/' << date.day;
  }
}

TEST(SerialTest, GivesTimesBackByTheMillisecond) {
  for (const double day : {0.0, 1.0, 45352.0, serial_of(9999, 12, 31)}) {
    for (int wanted = 0; wanted < 86400000; wanted += wanted % 10007 == 0 ? 1 : 1009) {
      const _sttime time{wanted / 3600000, wanted / 60000 % 60, wanted / 1000 % 60, wanted % 1000};
      _stdatetime fields{};
      Double2DateTimeNoValidationWithMSEC(day + getTime2double(time), &fields);
      const int got =
          fields.hour * 3600000 + fields.minute * 60000 + fields.second * 1000 + fields.millisecond;
      ASSERT_EQ(got, wanted) << "on day " << day;
    }
  }
}

TEST(SerialTest, TimesNoClockShowsAreMidnight) {
  EXPECT_EQ(getTime2double({12, 0, 0, 0}), kNoon);
  EXPECT_EQ(getTime2double({23, 59, 59, 999}), 86399999 / 8.64e7);
  for (const _sttime& time : {_sttime{24, 0, 0, 0}, _sttime{1, 60, 0, 0}, _sttime{1, 0, 60, 0},
                              _sttime{1, 0, 0, 1000}, _sttime{-1, 30, 0, 0}}) {
    EXPECT_EQ(getTime2double(time), 0.0);
  }
}

// ---- Text to serial -----------------------------------------------------------------------------

TEST(DateOrderTest, WordsAreTakenInAnyCase) {
  EXPECT_EQ(date_order_from_word("YYYYMMDD", kDayFirst), kYearFirst);
  EXPECT_EQ(date_order_from_word(" ddmmyyyy\r\n", kYearFirst), kDayFirst);
  EXPECT_EQ(date_order_from_word("MmDdYyYy", kYearFirst), kMonthFirst);
  EXPECT_EQ(date_order_from_word("YYMMDD", kDayFirst), kDayFirst);
  EXPECT_EQ(date_order_from_word("", kMonthFirst), kMonthFirst);
}

struct ReadCase {
  const char* text;
  bool strict;
  double value;
  bool bad;
};

using Reader = double (*)(std::string_view text, bool strict, bool* bad);

template <size_t kCount>
void expect_readings(Reader reader, const ReadCase (&cases)[kCount]) {
  for (const ReadCase& wanted : cases) {
    SCOPED_TRACE(testing::Message() << '"' << wanted.text << "\" strict " << wanted.strict);
    bool bad = !wanted.bad;
    EXPECT_EQ(reader(wanted.text, wanted.strict, &bad), wanted.value);
    EXPECT_EQ(bad, wanted.bad);
    EXPECT_EQ(reader(wanted.text, wanted.strict, nullptr), wanted.value);
  }
}

TEST(Str2DateTest, CutsAtTheLastTwoSeparators) {
  const ReadCase cases[] = {
      {"", true, kNull, false},
      {"1900/03/01", true, 61, false},
      {"1900/1/1", true, 2, false},
      {"2024-02-29", true, serial_of(2024, 2, 29), false},
      {"+2024/3/1", true, serial_of(2024, 3, 1), false},
      {"2024/3/1x", false, serial_of(2024, 3, 1), false},
      {"2024/3/1x", true, kNull, true},
      {"2020/2024/3/1", false, serial_of(2020, 3, 1), false},
      {"2020/1/1-2-3", false, serial_of(2020, 2, 3), false},
      {"2024/3/99999999999", false, kNull, true},
      {"\t2024/3/1", true, kNull, true},
      {"                                                  2024/3/1", false, kNull, true},
      {"2024/3/1                                          junk", true, serial_of(2024, 3, 1),
       false},
  };
  expect_readings(Str2Date, cases);
}

TEST(Str2TimeTest, ReadsHoursToMilliseconds) {
  const ReadCase cases[] = {
      {"", true, kNull, false},
      {"12:00:00", true, kNoon, false},
      {"12:00", true, kNoon, false},
      {"00:00:01.5", true, 1005 / 8.64e7, false},
      {"00:00:01.005", true, 1005 / 8.64e7, false},
      {"25:00", true, 0.0, false},
      {"12:00:00x", false, kNoon, false},
      {"12:00:00x", true, kNull, true},
      {"12:00 PM", true, kNull, true},
      {"12:00:00:00", true, kNull, true},
  };
  expect_readings(Str2Time, cases);
}

TEST(Str2DateTimeTest, AddsTheParts) {
  const double day = serial_of(2024, 3, 1);
  const ReadCase cases[] = {
      {"", true, kNull, false},
      {"2024/3/1 12:00:00", true, day + kNoon, false},
      {"2024/3/1", true, day, false},
      {"2024/3/1 noon", false, day, true},
      {"2024/3/1 noon", true, kNull, true},
      {"2024/2/30 12:00", false, kNoon, true},
      {"2024/2/30 12:00", true, kNull, true},
      {"12:00", false, kNoon, false},
      {"12:00", true, kNull, true},
      {"abc def", false, 0.0, true},
      {"2024/3/1 12:00 PM", true, kNull, true},
  };
  expect_readings(Str2DateTime, cases);
}

/// The rules once more in their plainest form: std::string and strtol.
bool model_number(const std::string& text, long* value) {
  *value = strtol(text.c_str(), nullptr, 10);
  return !text.empty() && *value > INT_MIN && *value <= INT_MAX;
}

double model_date(const std::string& text) {
  const char* const separator = text.find('-') != std::string::npos ? "-" : "/";
  const size_t last = text.rfind(separator);
  if (last == std::string::npos || last == 0) return kNull;
  const size_t middle = text.substr(0, last).rfind(separator);
  if (middle == std::string::npos) return kNull;
  long year = 0;
  long month = 0;
  long day = 0;
  if (!model_number(text.substr(0, middle), &year) ||
      !model_number(text.substr(middle + 1, last - middle - 1), &month) ||
      !model_number(text.substr(last + 1), &day)) {
    return kNull;
  }
  if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return kNull;
  const year_month_day date =
      std::chrono::year(static_cast<int>(year)) / static_cast<int>(month) / static_cast<int>(day);
  return date.ok() ? static_cast<double>((sys_days(date) - kSerialZero).count()) : kNull;
}

double model_time(const std::string& text) {
  const size_t first = text.find(':');
  if (first == std::string::npos) return kNull;
  const size_t second = text.find(':', first + 1);
  const size_t point = second == std::string::npos ? second : text.find('.', second);
  const auto part = [&](size_t from, size_t to, long* value) {
    return model_number(text.substr(from, to == std::string::npos ? to : to - from), value);
  };
  long hour = 0;
  long minute = 0;
  long seconds = 0;
  long milliseconds = 0;
  if (!part(0, first, &hour)) return kNull;
  if (first + 1 < text.size()) {
    if (!part(first + 1, second, &minute)) return kNull;
    if (second != std::string::npos && second + 1 < text.size()) {
      if (!part(second + 1, point, &seconds)) return kNull;
      if (point != std::string::npos && !part(point + 1, std::string::npos, &milliseconds)) {
        return kNull;
      }
    }
  }
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || seconds < 0 || seconds > 59 ||
      milliseconds < 0 || milliseconds > 999) {
    return 0.0;
  }
  return static_cast<double>(((hour * 60 + minute) * 60 + seconds) * 1000 + milliseconds) / 8.64e7;
}

TEST(TextReaderTest, AgreesWithTheRulesOnRandomTexts) {
  const std::vector<std::string> pieces = {"/",  "/", "-",    "-",    ":", ":",  ":",
                                           ".",  " ", "1",    "2",    "3", "29", "30",
                                           "02", "x", "2024", "2023", "0", "12", "59"};
  std::mt19937 random(2024);
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (size_t count = random() % 8 + 1; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    ASSERT_EQ(Str2Date(text, false, nullptr), model_date(text)) << '"' << text << '"';
    ASSERT_EQ(Str2Time(text, false, nullptr), model_time(text)) << '"' << text << '"';
  }
}

// ---- Serial to text -----------------------------------------------------------------------------

struct WriteCase {
  double serial;
  int order;
  const char* date;
  const char* time;
};

TEST(TextWriterTest, WritesInTheOrderAsked) {
  const double day = serial_of(2024, 3, 1);
  const WriteCase cases[] = {
      {0.0, kYearFirst, "1899/12/30", "00:00:00"},
      {day, kYearFirst, "2024/03/01", "00:00:00"},
      {day, kDayFirst, "01/03/2024", "00:00:00"},
      {day, kMonthFirst, "03/01/2024", "00:00:00"},
      {day + kNoon, kYearFirst, "2024/03/01", "12:00:00"},
      {day + 86399999 / 8.64e7, kYearFirst, "2024/03/01", "23:59:59.999"},
      {day + 1005 / 8.64e7, kDayFirst, "01/03/2024", "00:00:01.005"},
      {0.99999999, kYearFirst, "1899/12/30", "23:59:59.999"},
      {0.999999999, kYearFirst, "1899/12/31", "00:00:00"},
      {-1.25, kYearFirst, "1899/12/29", "06:00:00"},
      {serial_of(1, 1, 1), kYearFirst, "0001/01/01", "00:00:00"},
      {serial_of(9999, 12, 31), kMonthFirst, "12/31/9999", "00:00:00"},
      {serial_of(9999, 12, 31) + 1, kYearFirst, "10000/01/01", "00:00:00"},
      {serial_of(-5, 7, 4), kYearFirst, "-005/07/04", "00:00:00"},
  };
  for (const WriteCase& wanted : cases) {
    SCOPED_TRACE(testing::Message() << wanted.serial << " order " << wanted.order);
    char text[kSerialTextSize];
    const std::string both = std::string(wanted.date) + ' ' + wanted.time;
    EXPECT_EQ(Double2DateStrNoValidation(wanted.serial, text, '/', wanted.order),
              static_cast<int>(strlen(wanted.date)));
    EXPECT_STREQ(text, wanted.date);
    EXPECT_EQ(Double2TimeStrNoValidation(wanted.serial, text),
              static_cast<int>(strlen(wanted.time)));
    EXPECT_STREQ(text, wanted.time);
    EXPECT_EQ(Double2DateTimeStrNoValidation(wanted.serial, text, '/', wanted.order),
              static_cast<int>(both.size()));
    EXPECT_EQ(text, both);
  }
  char text[kSerialTextSize];
  Double2DateTimeStrNoValidation(day + kNoon, text, '-', kDayFirst);
  EXPECT_STREQ(text, "01-03-2024 12:00:00");
}

TEST(TextWriterTest, NullAndWhatIsNoNumberAreEmpty) {
  for (const double serial : {kNull, kInfinity, kNaN}) {
    char text[kSerialTextSize] = "x";
    EXPECT_EQ(Double2DateStrNoValidation(serial, text, '/', kYearFirst), 0);
    EXPECT_STREQ(text, "");
    text[0] = 'x';
    EXPECT_EQ(Double2TimeStrNoValidation(serial, text), 0);
    EXPECT_STREQ(text, "");
    text[0] = 'x';
    EXPECT_EQ(Double2DateTimeStrNoValidation(serial, text, '/', kMonthFirst), 0);
    EXPECT_STREQ(text, "");
  }
}

TEST(TextWriterTest, AnyFiniteSerialFitsTheBuffer) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 20000; ++i) {
    const double serial = std::bit_cast<double>(random());
    char text[kSerialTextSize];
    ASSERT_LT(Double2DateTimeStrNoValidation(serial, text, '/', i % 3), kSerialTextSize);
  }
}

TEST(TextWriterTest, TextsReadBackInTheSameOrder) {
  std::mt19937 random(6);
  for (int i = 0; i < 30000; ++i) {
    const int day = static_cast<int>(random() % 2958465);
    const double serial = day + static_cast<double>(random() % 86400) / 86400;
    const int order = static_cast<int>(random() % 3);
    char text[kSerialTextSize];
    char again[kSerialTextSize];
    Double2DateTimeStrNoValidation(serial, text, i % 2 == 0 ? '/' : '-', order);
    bool bad = false;
    const double read = Str2DateTimeInOrder(text, order, true, &bad);
    ASSERT_FALSE(bad) << text;
    ASSERT_NEAR(read, serial, 1e-8) << text;
    Double2DateTimeStrNoValidation(read, again, i % 2 == 0 ? '/' : '-', order);
    ASSERT_STREQ(again, text);
  }
}

}  // namespace
}  // namespace qxe
