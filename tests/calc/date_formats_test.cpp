#include "calc/date_formats.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "calc/datetime.h"
#include "parallel/smpengine.h"

namespace qxe {
namespace {

constexpr double kNull = -std::numeric_limits<double>::infinity();

double serial(int year, int month, int day) {
  return getDateField({year, month, day}, nullptr);
}

struct WordCase {
  const char* word;
  int date_type;
  int time_type;
};

TEST(TypeWordTest, NumbersComeFromWholeWords) {
  const WordCase cases[] = {
      {nullptr, 0, 0}, {"", 0, 0},    {"D1", 1, 0},  {"d14", 14, 0},
      {"D0", 0, 0},    {"D15", 0, 0}, {"D", 0, 0},   {"D1x", 0, 0},
      {"D-1", 0, 0},   {"T1", 0, 1},  {"t4", 0, 4},  {"T5", 0, 0},
      {"X1", 0, 0},    {" D1", 0, 0}, {"D 1", 0, 0}, {"D99999999999", 0, 0},
  };
  for (const WordCase& wanted : cases) {
    SCOPED_TRACE(wanted.word == nullptr ? "null" : wanted.word);
    EXPECT_EQ(getDateFormatFromTypeStr(wanted.word), wanted.date_type);
    EXPECT_EQ(getTimeFormatFromTypeStr(wanted.word), wanted.time_type);
  }
}

struct DateCase {
  int type;
  const char* text;
  double value;
};

TEST(DateTypeTest, EveryTypeHasItsFormat) {
  const double wanted = serial(2024, 3, 1);
  const DateCase cases[] = {
      {0, "2024/03/01", wanted},         {1, "2024/3/1", wanted},
      {2, "2024-03-01", wanted},         {5, "01/03/2024", wanted},
      {8, "03.01.24", wanted},           {10, "01.03.24", wanted},
      {-1, "2024/03/01", wanted},        {7, "1/2/68", serial(2068, 1, 2)},
      {7, "1/2/69", serial(1969, 1, 2)}, {1, "2024/03/01 and more", wanted},
      {2, "2024/03/01", kNull},          {1, "1899/12/31", kNull},
      {1, "10000/1/1", kNull},           {1, "2024/13/1", kNull},
  };
  for (const DateCase& wanted_case : cases) {
    SCOPED_TRACE(testing::Message() << "D" << wanted_case.type << ' ' << wanted_case.text);
    bool bad = wanted_case.value != kNull;
    EXPECT_EQ(Str2DateExType(wanted_case.text, wanted_case.type, true, &bad), wanted_case.value);
    EXPECT_EQ(bad, wanted_case.value == kNull);
  }
  bool bad = true;
  EXPECT_EQ(Str2DateExType("", 1, true, &bad), kNull);
  EXPECT_FALSE(bad);
}

TEST(DateTypeTest, ATypeWithoutYearTakesTheYearOfTheStart) {
  const int year = ENG->start_time().tm_year + 1900;
  EXPECT_EQ(Str2DateExType("12/31", 11, true, nullptr), serial(year, 12, 31));
  EXPECT_EQ(Str2DateExType("12.31", 12, true, nullptr), serial(year, 12, 31));
  EXPECT_EQ(Str2DateExType("31/12", 13, true, nullptr), serial(year, 12, 31));
  EXPECT_EQ(Str2DateExType("31.12", 14, true, nullptr), serial(year, 12, 31));
}

TEST(TimeTypeTest, EveryTypeHasItsFormat) {
  const DateCase cases[] = {
      {0, "12:30:15", 45015000 / 8.64e7},
      {1, "12:30:15", 45015000 / 8.64e7},
      {2, "12:30:15", 45000000 / 8.64e7},
      {3, "24:00:00", 82800000 / 8.64e7},
      {4, "13:30", 45000000 / 8.64e7},
      {1, "12:30", 45000000 / 8.64e7},
      {1, "12", 0.5},
      {1, "24:00:00", kNull},
      {3, "0:00:00", kNull},
      {1, "12::30", kNull},
      {1, "12:60:00", kNull},
      {1, "noon", kNull},
  };
  for (const DateCase& wanted : cases) {
    SCOPED_TRACE(testing::Message() << "T" << wanted.type << ' ' << wanted.text);
    bool bad = wanted.value != kNull;
    EXPECT_DOUBLE_EQ(Str2TimeExType(wanted.text, wanted.type, true, &bad), wanted.value);
    EXPECT_EQ(bad, wanted.value == kNull);
  }
}

TEST(DateTimeTypeTest, ReadsBothPartsByTheirFormats) {
  bool bad = true;
  EXPECT_EQ(Str2DateTimeExType("01.03.2024 13:00", 6, 4, true, &bad), serial(2024, 3, 1) + 0.5);
  EXPECT_FALSE(bad);
  EXPECT_EQ(Str2DateTimeExType("01.03.2024", 6, 4, true, &bad), serial(2024, 3, 1));
  EXPECT_FALSE(bad);
  EXPECT_EQ(Str2DateTimeExType("01.03.2024 x", 6, 4, true, &bad), kNull);
  EXPECT_TRUE(bad);
  EXPECT_EQ(Str2DateTimeExType("2024/03/01 12:00", 6, 0, false, &bad), 0.5);
  EXPECT_TRUE(bad);
}

struct FormatCase {
  const char* text = nullptr;
  const char* format = nullptr;
  long read = -1;  // characters, -1 for a text that does not fit
  DateTimeFields fields;
};

TEST(StrptimeTest, ReadsEachConversion) {
  const FormatCase cases[] = {
      {"100%", "100%%", 4, {}},
      {"sunday", "%A", 6, {.weekday = 0}},
      {"WEDx", "%a", 3, {.weekday = 3}},
      {"March", "%B", 5, {.month = 2}},
      {"Sept", "%h", 3, {.month = 8}},
      {"23", "%H", 2, {.hour = 23}},
      {"24", "%H", -1, {}},
      {"24", "%K", 2, {.hour = 23}},
      {"59:60", "%M:%S", 5, {.second = 60, .minute = 59}},
      {"61", "%S", -1, {}},
      {"1900", "%Y", 4, {.year = 0}},
      {"65535", "%Y", 5, {.year = 63635}},
      {"65536", "%Y", -1, {}},
      {"68", "%y", 2, {.year = 168}},
      {"69", "%y", 2, {.year = 69}},
      {"31", "%d", 2, {.day = 31}},
      {"32", "%e", -1, {}},
      {"366", "%j", 3, {.year_day = 365}},
      {"7", "%w", -1, {}},
      {"12:00 AM", "%I:%M %p", 8, {.hour = 0}},
      {"1:00PM", "%I:%M%p", 6, {.hour = 13}},
      {"1:00xm", "%I:%M%p", -1, {}},
      {"01:02:03  pm", "%r", 12, {.second = 3, .minute = 2, .hour = 13}},
      {"01:02:03", "%T", 8, {.second = 3, .minute = 2, .hour = 1}},
      {"01:02:03", "%R", 5, {.minute = 2, .hour = 1}},
      {"3/1/24", "%D", 6, {.day = 1, .month = 2, .year = 124}},
      {"1 \t\n 2", "%d%n%m", 6, {.day = 1, .month = 1}},
      {"1 \t 2", "%d %m", 5, {.day = 1, .month = 1}},
      {" +7", "%d", 3, {.day = 7}},
      {"-7", "%d", -1, {}},
      {"1x2", "%d/%m", -1, {}},
      {"1/", "%d/%m", 2, {.day = 1}},
      {"", "%d", 0, {}},
      {"5", "", 0, {}},
      {"5", "%", -1, {}},
      {"5", "%Q", -1, {}},
  };
  for (const FormatCase& wanted : cases) {
    SCOPED_TRACE(testing::Message() << '"' << wanted.text << "\" by " << wanted.format);
    DateTimeFields fields;
    const char* const end = strptime(wanted.text, wanted.format, &fields);
    EXPECT_EQ(end == nullptr ? -1 : end - wanted.text, wanted.read);
    if (end == nullptr) continue;
    EXPECT_EQ(fields.second, wanted.fields.second);
    EXPECT_EQ(fields.minute, wanted.fields.minute);
    EXPECT_EQ(fields.hour, wanted.fields.hour);
    EXPECT_EQ(fields.day, wanted.fields.day);
    EXPECT_EQ(fields.month, wanted.fields.month);
    EXPECT_EQ(fields.year, wanted.fields.year);
    EXPECT_EQ(fields.weekday, wanted.fields.weekday);
    EXPECT_EQ(fields.year_day, wanted.fields.year_day);
  }
}

}  // namespace
}  // namespace qxe
