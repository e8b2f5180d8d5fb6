#include "calc/date_integer_forms.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <string.h>

#include <limits>

#include "calc/datetime.h"
#include "calc/type_conversion_values.h"
#include "frame/base/exception.h"

namespace qxe {
namespace {

template <class Call>
int status_of(Call call) {
  try {
    call();
  } catch (const CQXException& failure) {
    return failure.ErrorCode();
  }
  return 0;
}

TEST(DateIntegerTest, SpellsEveryDayOf1900To2099) {
  for (int serial = 2; serial <= 73050; ++serial) {
    const int date = DateInner2Outer(serial, kYearFirst);
    ASSERT_EQ(DateOuter2Inner(date), serial);
    const int year = date / 10000;
    const int month = date / 100 % 100;
    const int day = date % 100;
    ASSERT_EQ(DateInner2Outer(serial + 0.75, kDayFirst), (day * 100 + month) * 10000 + year);
    ASSERT_EQ(DateInner2Outer(serial, kMonthFirst), (month * 100 + day) * 10000 + year);

    char text[kIntegerFormTextSize];
    char wanted[kSerialTextSize];
    for (const int order : {kYearFirst, kDayFirst, kMonthFirst}) {
      addSlash(DateInner2Outer(serial, order), text, order);
      Double2DateStrNoValidation(serial, wanted, '/', order);
      ASSERT_STREQ(text, wanted);
    }
  }
  EXPECT_EQ(DateOuter2Inner(19000101), 2);
  EXPECT_EQ(DateOuter2Inner(20991231), 73050);
}

TEST(DateIntegerTest, RefusesOtherDates) {
  for (const int date : {0, -20240301, 18991231, 21000101, 20241301, 20240001, 20240100, 20240132,
                         20230229, 19000229, 20240230, INT_MAX, INT_MIN}) {
    EXPECT_EQ(status_of([&] { DateOuter2Inner(date); }), QX_ERROR_PARAMETER) << date;
  }
  for (const double serial :
       {1.0, 1.99, 73051.0, -1e300, 1e300, std::numeric_limits<double>::quiet_NaN(),
        -std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(status_of([&] { DateInner2Outer(serial, kYearFirst); }), QX_ERROR_PARAMETER);
  }
  EXPECT_EQ(DateInner2Outer(73050.99, kYearFirst), 20991231);
}

TEST(DateIntegerTest, SlashesNeedEightDigits) {
  char text[kIntegerFormTextSize];
  addSlash(1032024, text, kDayFirst);
  EXPECT_STREQ(text, "01/03/2024");
  EXPECT_EQ(status_of([&] { addSlash(1032024, text, kYearFirst); }), QX_ERROR_PARAMETER);
  EXPECT_EQ(status_of([&] { addSlash(132024, text, kMonthFirst); }), QX_ERROR_PARAMETER);
  EXPECT_EQ(status_of([&] { addSlash(100000000, text, kDayFirst); }), QX_ERROR_PARAMETER);
  EXPECT_EQ(status_of([&] { addSlash(-1032024, text, kDayFirst); }), QX_ERROR_PARAMETER);
}

TEST(TimeIntegerTest, EverySecondComesBack) {
  for (int second = 0; second < 86400; ++second) {
    const int time = second / 3600 * 10000 + second / 60 % 60 * 100 + second % 60;
    char text[kIntegerFormTextSize];
    char wanted[kSerialTextSize];
    addColon(TimeOuter2Inner(time), text);
    Double2TimeStrNoValidation(second / 86400.0, wanted);
    ASSERT_STREQ(text, wanted);
  }
  EXPECT_NEAR(TimeOuter2Inner(123000), 0.5208333 + 0.01 / 86400, 1e-6);
  for (const int time : {-1, 240000, 126000, 123060, INT_MAX, INT_MIN}) {
    EXPECT_EQ(TimeOuter2Inner(time), 0.0) << time;
  }
}

TEST(TimeIntegerTest, ColonsNeedAFraction) {
  char text[kIntegerFormTextSize];
  addColon(0.0, text);
  EXPECT_STREQ(text, "00:00:00");
  addColon(1.0, text);
  EXPECT_STREQ(text, "24:00:00");
  for (const double fraction : {-0.001, 1.001, std::numeric_limits<double>::quiet_NaN(),
                                -std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(status_of([&] { addColon(fraction, text); }), QX_ERROR_PARAMETER);
  }
}

struct RecogniserCase {
  const char* text;
  int date;       // -1: no date at its start
  long end;       // place behind the date
  int time;       // -1: no time
  int date_time;  // time of a date and time, -1: neither form
};

TEST(RecogniserTest, TellsDatesAndTimes) {
  const RecogniserCase cases[] = {
      {"2020/1/2", 20200102, 8, -1, 0},
      {" \t2020/01/02", 20200102, 12, -1, 0},
      {"2020/1/2 12:30:45", 20200102, 8, -1, 123045},
      {"2020/1/2\t1:5 ", 20200102, 8, -1, 10500},
      {"2020/1/2 text", 20200102, 8, -1, -1},
      {"1900/2/29", -1, 0, -1, -1},
      {"2100/1/1", -1, 0, -1, -1},
      {"2021/2/29", -1, 0, -1, -1},
      {"2020/13/1", -1, 0, -1, -1},
      {"2020/1/123", -1, 0, -1, -1},
      {"2020/001/1", -1, 0, -1, -1},
      {"2020-1-2", -1, 0, -1, -1},
      {"20/1/2020", -1, 0, -1, -1},
      {"2020/1/", -1, 0, -1, -1},
      {"", -1, 0, -1, -1},
      {"12:30", -1, 0, 123000, -1},
      {"99:99", -1, 0, 999900, -1},
      {"12:30x", -1, 0, -1, -1},
      {"12:30:45.5", -1, 0, -1, -1},
      {"123:30", -1, 0, -1, -1},
      {"12:345", -1, 0, -1, -1},
  };
  for (const RecogniserCase& wanted : cases) {
    SCOPED_TRACE(testing::Message() << '"' << wanted.text << '"');
    const char* end = nullptr;
    int date = -1;
    int time = -1;
    EXPECT_EQ(CheckDateStr(wanted.text, &end, &date), wanted.date != -1);
    EXPECT_EQ(date, wanted.date);
    EXPECT_EQ(end == nullptr ? 0 : end - wanted.text, wanted.end);
    EXPECT_EQ(CheckTimeStr(wanted.text, &time), wanted.time != -1);
    EXPECT_EQ(time, wanted.time);
    time = -1;
    EXPECT_EQ(CheckDateTimeStr(wanted.text, &date, &time) ? time : -1, wanted.date_time);
  }
}

TEST(DateOrderTest, ConversionsFollowIt) {
  char text[kNumberTextSlot];
  const auto in_order = [&](int order) { return ConversionContext{{}, {}, order, text}; };
  constexpr double kFirstOfMarch = 45352.5;
  EXPECT_EQ(dateVL2intVL(kFirstOfMarch, in_order(kDayFirst)), 1032024);
  EXPECT_EQ(datetimeVL2intVL(kFirstOfMarch, in_order(kMonthFirst)), 3012024);
  EXPECT_STREQ(dateVL2strVL(kFirstOfMarch, in_order(kDayFirst)), "01/03/2024");
  EXPECT_STREQ(datetimeVL2strVL(kFirstOfMarch, in_order(kMonthFirst)), "03/01/2024 12:00:00");
}

}  // namespace
}  // namespace qxe
