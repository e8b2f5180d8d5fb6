// What each pair of data types makes of a value, at the edges that random values do not meet.
#include <limits>

#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Texts = std::vector<std::string>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const Column kInts = ints({-5, 0, 19000101, 20240229, 20240230, 21000101, 2147483647});
const Column kDates = serials(QX_DT_DATE, {1, 2, 45352, 45352.75, 73050.5, 73051});
const Column kTimes = serials(QX_DT_TIME, {-0.25, 0, 0.5, 1.25});
const Column kDateTimes = serials(QX_DT_DATETIME, {1.5, 45352, 45352.75, 73050.5, 73051.5});
const Column kDecimals = decimals(3, {"-1.750", "-0.500", "0.250", "45352.500"});

/// What becomes of a column, decimals with two digits.
struct Conversion {
  Column source;
  int target;
  Texts wanted;
};

const Conversion kConversions[] = {
    {kInts,
     QX_DT_DOUBLE,
     {"-5", "0", "19000101", "20240229", "20240230", "21000101", "2147483647"}},
    {kInts, QX_DT_DATE, {"NULL", "NULL", "1900/01/01", "2024/02/29", "NULL", "NULL", "NULL"}},
    {ints({-5, 123000}), QX_DT_TIME, {"00:00:00", "00:00:00"}},
    {ints({20240229, 20240230}), QX_DT_DATETIME, {"2024/02/29 00:00:00", "NULL"}},
    {ints({-2147483647, 0, 2147483647}), QX_DT_STRING, {"-2147483647", "0", "2147483647"}},
    {ints({-5, 0, 2147483647}), QX_DT_DECIMAL, {"-5.00", "0.00", "2147483647.00"}},

    {doubles({-1e300, -2147483648.0, -2147483647.5, -1.75, -0.5, 0, 1.999, 2147483647.9,
              2147483648.0, kInfinity}),
     QX_DT_INTEGER,
     {"NULL", "NULL", "-2147483647", "-1", "0", "0", "1", "2147483647", "NULL", "NULL"}},
    {doubles({2, 45351.75, -0.25}), QX_DT_DATE, {"1900/01/01", "2024/02/29", "1899/12/29"}},
    {doubles({-0.25, 0.5, 45351.75, kInfinity}),
     QX_DT_TIME,
     {"18:00:00", "12:00:00", "18:00:00", "NULL"}},
    {doubles({2, 45351.75}), QX_DT_DATETIME, {"1900/01/01 00:00:00", "2024/02/29 18:00:00"}},
    {doubles({-1234567.25, -0.5, 1.5, 123.4567891, kInfinity}),
     QX_DT_STRING,
     {"-1234567.250000", " -0.500000", "  1.500000", "123.456789", "       inf"}},
    {doubles({std::numeric_limits<double>::lowest(), 1}),
     QX_DT_STRING,
     {"-1797693134862315708145274237317043567980705675258449965989174768031572607800285"
      "38760589558632766878171540458953514382464234321326889464182768467546703537516986"
      "04991057655128207624549009038932894407586850845513394230458323690322294816580855"
      "9332123348274797826204144723168738177180919299881250404026184124858368.000000",
      "  1.000000"}},
    {doubles({-0.125, 0.115, 1e300}), QX_DT_DECIMAL, {"-0.13", "0.12", "NULL"}},

    {kDates, QX_DT_INTEGER, {"NULL", "19000101", "20240301", "20240301", "20991231", "NULL"}},
    {kDates, QX_DT_DOUBLE, {"1", "2", "45352", "45352", "73050", "73051"}},
    {dates({"1900/01/01", "2024/03/01"}), QX_DT_TIME, {"00:00:00", "00:00:00"}},
    {serials(QX_DT_DATE, {1, 45352.75}),
     QX_DT_DATETIME,
     {"1899/12/31 00:00:00", "2024/03/01 00:00:00"}},
    {kDates, QX_DT_STRING, {"", "1900/01/01", "2024/03/01", "2024/03/01", "2099/12/31", ""}},
    {serials(QX_DT_DATE, {2, 45352.75}), QX_DT_DECIMAL, {"2.00", "45352.00"}},

    {kTimes, QX_DT_INTEGER, {"0", "0", "0", "0"}},
    {kTimes, QX_DT_DOUBLE, {"NULL", "0", "0.5", "0.25"}},
    {kTimes, QX_DT_DATE, {"NULL", "NULL", "NULL", "NULL"}},
    {kTimes, QX_DT_DATETIME, {"NULL", "NULL", "NULL", "NULL"}},
    {times({"01:02:03", "12:30:45.250", "23:59:59"}),
     QX_DT_STRING,
     {"01:02:03", "12:30:45", "23:59:59"}},
    {kTimes, QX_DT_STRING, {"", "00:00:00", "12:00:00", ""}},
    {kTimes, QX_DT_DECIMAL, {"NULL", "0.00", "0.50", "0.25"}},

    {kDateTimes, QX_DT_INTEGER, {"NULL", "20240301", "20240301", "20991231", "NULL"}},
    {kDateTimes, QX_DT_DOUBLE, {"1.5", "45352", "45352.75", "73050.5", "73051.5"}},
    {kDateTimes,
     QX_DT_DATE,
     {"1899/12/31", "2024/03/01", "2024/03/01", "2099/12/31", "2100/01/01"}},
    {kDateTimes, QX_DT_TIME, {"12:00:00", "00:00:00", "18:00:00", "12:00:00", "12:00:00"}},
    {kDateTimes,
     QX_DT_STRING,
     {"", "2024/03/01 00:00:00", "2024/03/01 18:00:00", "2099/12/31 12:00:00", ""}},
    {serials(QX_DT_DATETIME, {-1.5, 45352.75}), QX_DT_DECIMAL, {"-1.50", "45352.75"}},

    {strings({"2020/1/2", "  2020/1/2", "2020/1/2 12:30:45", "2020/13/2", "12:30", "25:99", " +12",
              "-12", "12 ", "12x", " ", "1e3", "2147483647", "2147483648", "0x10"}),
     QX_DT_INTEGER,
     {"20200102", "20200102", "20200102", "NULL", "0", "0", "12", "-12", "NULL", "NULL", "NULL",
      "NULL", "2147483647", "NULL", "NULL"}},
    {strings({"1e3", " -1.5", "+2", "1.5 ", "1.5x", "", " ", "nan", "1,5", "2020/1/2 x",
              "2020/1/32", "2020/1/2", " 6:00:00", "0x10"}),
     QX_DT_DOUBLE,
     {"1000", "-1.5", "2", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL",
      "43832.000000115739", "0.25000011574074071", "16"}},
    {strings({"2020/1/2", "2020/1/2 12:30:45", "2020/1/2x", "20200102", "20200102x", "2020-01-02",
              "1899/12/31", "12:30", "", "99999999999999999999"}),
     QX_DT_DATE,
     {"2020/01/02", "2020/01/02", "2020/01/02", "2020/01/02", "2020/01/02", "NULL", "NULL", "NULL",
      "NULL", "NULL"}},
    {strings({"12:30", " 1:2:3 ", "25:00", "12", "2020/1/2 12:30", "", "12:30x"}),
     QX_DT_TIME,
     {"12:30:00.010", "01:02:03.010", "00:00:00", "NULL", "NULL", "NULL", "NULL"}},
    {strings({"2020/1/2 12:30:45", "2020/1/2\t1:2", "20200102", "2020/1/2 25:00", "2020/1/2 x",
              "12:30", ""}),
     QX_DT_DATETIME,
     {"2020/01/02 12:30:45.010", "2020/01/02 01:02:00.010", "2020/01/02 00:00:00",
      "2020/01/02 00:00:00", "NULL", "NULL", "NULL"}},
    {strings({"1.005", " +2", "-3.5e1", "12 ", "1x", "", "999999999999999999999999999999999999",
              "9999999999999999999999999999999999999"}),
     QX_DT_DECIMAL,
     {"1.01", "2.00", "-35.00", "NULL", "NULL", "NULL", "999999999999999999999999999999999999.00",
      "NULL"}},

    {decimals(1, {"-2147483648.5", "-1.9", "0.5", "2147483647.9", "99999999999.0"}),
     QX_DT_INTEGER,
     {"NULL", "-1", "0", "2147483647", "NULL"}},
    {kDecimals, QX_DT_DOUBLE, {"-1.75", "-0.5", "0.25", "45352.5"}},
    {kDecimals, QX_DT_DATE, {"1899/12/28", "1899/12/29", "1899/12/30", "2024/03/01"}},
    {kDecimals, QX_DT_TIME, {"06:00:00", "12:00:00", "06:00:00", "12:00:00"}},
    {decimals(3, {"0.250"}), QX_DT_DATETIME, {"1899/12/30 06:00:00"}},
    {kDecimals, QX_DT_STRING, {"-1.750", "-0.500", "0.250", "45352.500"}},
    {decimals(3, {"-1.755", "0.004", "99999999999999999999999999999999999.125"}),
     QX_DT_DECIMAL,
     {"-1.76", "0.00", "99999999999999999999999999999999999.13"}},
    {decimals(0, {"-7", "99999999999999999999999999999999999999"}),
     QX_DT_DECIMAL,
     {"-7.00", "NULL"}}};

using TypeConversionTest = EngineTest;

TEST_F(TypeConversionTest, MakesTheOtherTypesValues) {
  for (const auto& [source, target, wanted] : kConversions) {
    const TestTable table({{"a", source}});
    EXPECT_EQ(RQXDupRealFilterExNumeric(table.id(), 1, target, 2, QX_ROUND_HALFUP), 2);
    EXPECT_EQ(table.texts("a_#1"), wanted) << source.type << " to " << target;
    EXPECT_EQ(to_texts(table.column("a")), to_texts(source));
  }
}

}  // namespace
}  // namespace qxe::test
