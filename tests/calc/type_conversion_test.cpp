// What each pair of data types makes of a value, and that parts of a list become what the whole
// list becomes.
#include "calc/type_conversion.h"

#include <gtest/gtest.h>

#include <limits>

#include "calc/datetime.h"
#include "calc/type_conversion_values.h"
#include "parallel/smpengine.h"
#include "storage/family.h"
#include "support/case_name.h"
#include "support/columns.h"
#include "support/raw_values.h"

namespace qxe::test {
namespace {

constexpr NumericInfo kTwoDigits{2, QX_ROUND_HALFUP};
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A value list of NULL and these values.
std::unique_ptr<TBaseArray> list_of(const Column& column) {
  Column whole = column;
  whole.cells.insert(whole.cells.begin(), normal_form({}, column.type));
  RawValues raw(whole);
  const int count = static_cast<int>(whole.cells.size());
  auto list = with_family_of(column.type, [&]<class Array>(std::type_identity<Array>) {
    using Value = typename Family<Array>::Value;
    Block<Value> values = make_block<Value>(count);
    memcpy(static_cast<void*>(values.get()), raw.data(), sizeof(Value) * whole.cells.size());
    return std::unique_ptr<TBaseArray>(std::make_unique<Array>(count, std::move(values)));
  });
  SetArrayDataTypeEx(*list, column.type);
  if (column.type == QX_DT_DECIMAL) {
    static_cast<TNumericArray&>(*list).SetDecimalInfo(column.scale, QX_ROUND_HALFUP);
  }
  return list;
}

Cell cell_of(int value) {
  return normal_form(value, QX_DT_INTEGER);
}
Cell cell_of(double value) {
  return normal_form(value, QX_DT_DOUBLE);
}
Cell cell_of(const char* value) {
  return std::string(value);
}
Cell cell_of(const Numeric& value) {
  return from_numeric(value, kTwoDigits.scale);
}

/// The texts that `convert(target)` makes of a list, element 0 included.
template <class Convert>
std::vector<std::string> texts_of(const TBaseArray& source, int type, Convert&& convert) {
  return with_family_of(type, [&]<class Array>(std::type_identity<Array>) {
    using Value = typename Family<Array>::Value;
    const int count = source.FArraySize;
    const int slot = conversion_text_slot(source);
    std::vector<Value> values(static_cast<size_t>(count));
    std::vector<char> area(static_cast<size_t>(count) * static_cast<size_t>(slot));
    convert(ConversionTarget{values.data(), area.data(), slot, kTwoDigits});
    Column column{type, {}, kTwoDigits.scale};
    for (const Value& value : values) column.cells.push_back(cell_of(value));
    return to_texts(column);
  });
}

std::vector<std::string> converted(const TBaseArray& source, int type) {
  return texts_of(source, type, [&](const ConversionTarget& target) {
    DoTypeConv(source, type, target, ENG->run_threads());
  });
}

struct ConversionCase {
  const char* name;
  Column source;
  int target;
  std::vector<std::string> wanted;
};

class TypeConversionTest : public testing::TestWithParam<ConversionCase> {
 protected:
  const std::unique_ptr<TBaseArray> source_ = list_of(GetParam().source);
};

TEST_P(TypeConversionTest, MakesTheOtherTypesValues) {
  std::vector<std::string> wanted = GetParam().wanted;
  wanted.insert(wanted.begin(), GetParam().target == QX_DT_STRING ? "" : "NULL");
  EXPECT_EQ(converted(*source_, GetParam().target), wanted);
}

TEST_P(TypeConversionTest, MakesTheSameSliceBySlice) {
  const int type = GetParam().target;
  const auto whole = converted(*source_, type);
  const SliceConversion convert = slice_conversion(GetParam().source.type, type);
  ASSERT_NE(convert, nullptr);
  for (long cut = 0; cut <= source_->FArraySize; ++cut) {
    EXPECT_EQ(texts_of(*source_, type,
                       [&](const ConversionTarget& target) {
                         convert(*source_, target, cut, source_->FArraySize);
                         convert(*source_, target, 0, cut);
                       }),
              whole)
        << cut;
  }
}

using Case = ConversionCase;

const Column kInts = ints({-5, 0, 19000101, 20240229, 20240230, 21000101, 2147483647});

INSTANTIATE_TEST_SUITE_P(
    FromIntegers, TypeConversionTest,
    testing::Values(Case{"Doubles",
                         kInts,
                         QX_DT_DOUBLE,
                         {"-5", "0", "19000101", "20240229", "20240230", "21000101", "2147483647"}},
                    Case{"Dates",
                         kInts,
                         QX_DT_DATE,
                         {"NULL", "NULL", "1900/01/01", "2024/02/29", "NULL", "NULL", "NULL"}},
                    Case{"Times", ints({-5, 123000}), QX_DT_TIME, {"00:00:00", "00:00:00"}},
                    Case{"DateTimes",
                         kInts,
                         QX_DT_DATETIME,
                         {"NULL", "NULL", "1900/01/01 00:00:00", "2024/02/29 00:00:00", "NULL",
                          "NULL", "NULL"}},
                    Case{"Strings",
                         ints({-2147483647, -5, 0, 2147483647}),
                         QX_DT_STRING,
                         {"-2147483647", "-5", "0", "2147483647"}},
                    Case{"Decimals",
                         ints({-5, 0, 2147483647}),
                         QX_DT_DECIMAL,
                         {"-5.00", "0.00", "2147483647.00"}}),
    case_name<Case>);

INSTANTIATE_TEST_SUITE_P(
    FromDoubles, TypeConversionTest,
    testing::Values(
        Case{"Integers",
             doubles({-1e300, -2147483648.0, -2147483647.5, -1.75, -0.5, 0, 1.999, 2147483647.9,
                      2147483648.0, 3e9, kInfinity}),
             QX_DT_INTEGER,
             {"NULL", "NULL", "-2147483647", "-1", "0", "0", "1", "2147483647", "NULL", "NULL",
              "NULL"}},
        Case{"Dates",
             doubles({2, 45351.75, -0.25}),
             QX_DT_DATE,
             {"1900/01/01", "2024/02/29", "1899/12/29"}},
        Case{"Times",
             doubles({-0.25, 0.5, 45351.75, kInfinity}),
             QX_DT_TIME,
             {"18:00:00", "12:00:00", "18:00:00", "NULL"}},
        Case{"DateTimes",
             doubles({2, 45351.75}),
             QX_DT_DATETIME,
             {"1900/01/01 00:00:00", "2024/02/29 18:00:00"}},
        Case{"Strings",
             doubles({-1234567.25, -0.5, 0, 1.5, 123.4567891}),
             QX_DT_STRING,
             {"-1234567.250000", " -0.500000", "  0.000000", "  1.500000", "123.456789"}},
        Case{"LongestStrings",
             doubles({std::numeric_limits<double>::lowest(), 1, kInfinity}),
             QX_DT_STRING,
             {"-1797693134862315708145274237317043567980705675258449965989174768031572607800285"
              "38760589558632766878171540458953514382464234321326889464182768467546703537516986"
              "04991057655128207624549009038932894407586850845513394230458323690322294816580855"
              "9332123348274797826204144723168738177180919299881250404026184124858368.000000",
              "  1.000000", "       inf"}},
        Case{
            "Decimals", doubles({-0.125, 0.115, 1e300}), QX_DT_DECIMAL, {"-0.13", "0.12", "NULL"}}),
    case_name<Case>);

const Column kDates = serials(QX_DT_DATE, {1, 2, 45352, 45352.75, 73050.5, 73051});

INSTANTIATE_TEST_SUITE_P(
    FromDates, TypeConversionTest,
    testing::Values(
        Case{"Integers",
             kDates,
             QX_DT_INTEGER,
             {"NULL", "19000101", "20240301", "20240301", "20991231", "NULL"}},
        Case{"Doubles", kDates, QX_DT_DOUBLE, {"1", "2", "45352", "45352", "73050", "73051"}},
        Case{"Times", dates({"1900/01/01", "2024/03/01"}), QX_DT_TIME, {"00:00:00", "00:00:00"}},
        Case{"DateTimes",
             kDates,
             QX_DT_DATETIME,
             {"1899/12/31 00:00:00", "1900/01/01 00:00:00", "2024/03/01 00:00:00",
              "2024/03/01 00:00:00", "2099/12/31 00:00:00", "2100/01/01 00:00:00"}},
        Case{"Strings",
             kDates,
             QX_DT_STRING,
             {"", "1900/01/01", "2024/03/01", "2024/03/01", "2099/12/31", ""}},
        Case{"Decimals", serials(QX_DT_DATE, {2, 45352.75}), QX_DT_DECIMAL, {"2.00", "45352.00"}}),
    case_name<Case>);

const Column kTimes = serials(QX_DT_TIME, {-0.25, 0, 0.5, 1.25});

INSTANTIATE_TEST_SUITE_P(
    FromTimes, TypeConversionTest,
    testing::Values(
        Case{"Integers", kTimes, QX_DT_INTEGER, {"0", "0", "0", "0"}},
        Case{"Doubles", kTimes, QX_DT_DOUBLE, {"NULL", "0", "0.5", "0.25"}},
        Case{"Dates", kTimes, QX_DT_DATE, {"NULL", "NULL", "NULL", "NULL"}},
        Case{"DateTimes", kTimes, QX_DT_DATETIME, {"NULL", "NULL", "NULL", "NULL"}},
        Case{"Strings",
             times({"00:00:00", "01:02:03", "12:30:45.250", "23:59:59"}),
             QX_DT_STRING,
             {"00:00:00", "01:02:03", "12:30:45", "23:59:59"}},
        Case{"StringsOutsideTheDay", kTimes, QX_DT_STRING, {"", "00:00:00", "12:00:00", ""}},
        Case{"Decimals", kTimes, QX_DT_DECIMAL, {"NULL", "0.00", "0.50", "0.25"}}),
    case_name<Case>);

const Column kDateTimes = serials(QX_DT_DATETIME, {1.5, 45352, 45352.75, 73050.5, 73051.5});

INSTANTIATE_TEST_SUITE_P(
    FromDateTimes, TypeConversionTest,
    testing::Values(Case{"Integers",
                         kDateTimes,
                         QX_DT_INTEGER,
                         {"NULL", "20240301", "20240301", "20991231", "NULL"}},
                    Case{"Doubles",
                         kDateTimes,
                         QX_DT_DOUBLE,
                         {"1.5", "45352", "45352.75", "73050.5", "73051.5"}},
                    Case{"Dates",
                         kDateTimes,
                         QX_DT_DATE,
                         {"1899/12/31", "2024/03/01", "2024/03/01", "2099/12/31", "2100/01/01"}},
                    Case{"Times",
                         kDateTimes,
                         QX_DT_TIME,
                         {"12:00:00", "00:00:00", "18:00:00", "12:00:00", "12:00:00"}},
                    Case{"Strings",
                         kDateTimes,
                         QX_DT_STRING,
                         {"", "2024/03/01 00:00:00", "2024/03/01 18:00:00", "2099/12/31 12:00:00",
                          ""}},
                    Case{"Decimals",
                         serials(QX_DT_DATETIME, {-1.5, 45352.75}),
                         QX_DT_DECIMAL,
                         {"-1.50", "45352.75"}}),
    case_name<Case>);

INSTANTIATE_TEST_SUITE_P(
    FromStrings, TypeConversionTest,
    testing::Values(
        Case{"Integers",
             strings({"2020/1/2", "  2020/1/2", "2020/1/2 12:30:45", "2020/13/2", "12:30", "25:99",
                      "12", " +12", "-12", "12 ", "12x", "x", " ", "1e3", "2147483647",
                      "2147483648", "99999999999999999999", "0x10"}),
             QX_DT_INTEGER,
             {"20200102", "20200102", "20200102", "NULL", "0", "0", "12", "12", "-12", "NULL",
              "NULL", "NULL", "NULL", "NULL", "2147483647", "NULL", "NULL", "NULL"}},
        Case{"Doubles",
             strings({"1e3", " -1.5", "+2", "1.5 ", "1.5x", "", " ", "abc", "nan", "1,5",
                      "2020/1/2 x", "2020/1/32"}),
             QX_DT_DOUBLE,
             {"1000", "-1.5", "2", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL",
              "NULL"}},
        Case{"Dates",
             strings({"2020/1/2", "2020/1/2 12:30:45", "2020/1/2x", "20200102", "20200102x",
                      "2020-01-02", "1899/12/31", "12:30", "", "abc", "99999999999999999999"}),
             QX_DT_DATE,
             {"2020/01/02", "2020/01/02", "2020/01/02", "2020/01/02", "2020/01/02", "NULL", "NULL",
              "NULL", "NULL", "NULL", "NULL"}},
        Case{"Times",
             strings({"12:30", " 1:2:3 ", "25:00", "12", "2020/1/2 12:30", "", "12:30x"}),
             QX_DT_TIME,
             {"12:30:00.010", "01:02:03.010", "00:00:00", "NULL", "NULL", "NULL", "NULL"}},
        Case{"DateTimes",
             strings({"2020/1/2 12:30:45", "2020/1/2\t1:2", "20200102", "2020/1/2 25:00",
                      "2020/1/2 x", "12:30", ""}),
             QX_DT_DATETIME,
             {"2020/01/02 12:30:45.010", "2020/01/02 01:02:00.010", "2020/01/02 00:00:00",
              "2020/01/02 00:00:00", "NULL", "NULL", "NULL"}},
        Case{"Decimals",
             strings({"1.005", " +2", "-3.5e1", "12 ", "1x", "", "abc",
                      "999999999999999999999999999999999999",
                      "9999999999999999999999999999999999999"}),
             QX_DT_DECIMAL,
             {"1.01", "2.00", "-35.00", "NULL", "NULL", "NULL", "NULL",
              "999999999999999999999999999999999999.00", "NULL"}}),
    case_name<Case>);

const Column kDecimals = decimals(3, {"-1.750", "-0.500", "0.250", "45352.500"});

INSTANTIATE_TEST_SUITE_P(
    FromDecimals, TypeConversionTest,
    testing::Values(
        Case{"Integers",
             decimals(1, {"-2147483648.5", "-1.9", "0.5", "2147483647.9", "99999999999.0"}),
             QX_DT_INTEGER,
             {"NULL", "-1", "0", "2147483647", "NULL"}},
        Case{"Doubles", kDecimals, QX_DT_DOUBLE, {"-1.75", "-0.5", "0.25", "45352.5"}},
        Case{"Dates",
             kDecimals,
             QX_DT_DATE,
             {"1899/12/28", "1899/12/29", "1899/12/30", "2024/03/01"}},
        Case{"Times", kDecimals, QX_DT_TIME, {"06:00:00", "12:00:00", "06:00:00", "12:00:00"}},
        Case{"DateTimes",
             decimals(3, {"0.250", "45352.500"}),
             QX_DT_DATETIME,
             {"1899/12/30 06:00:00", "2024/03/01 12:00:00"}},
        Case{"Strings", kDecimals, QX_DT_STRING, {"-1.750", "-0.500", "0.250", "45352.500"}},
        Case{"Decimals",
             decimals(3, {"-1.755", "0.004", "99999999999999999999999999999999999.125"}),
             QX_DT_DECIMAL,
             {"-1.76", "0.00", "99999999999999999999999999999999999.13"}},
        Case{"MoreDigits",
             decimals(0, {"-7", "99999999999999999999999999999999999999"}),
             QX_DT_DECIMAL,
             {"-7.00", "NULL"}}),
    case_name<Case>);

TEST(TypeConversionTableTest, HasAFunctionForEveryPair) {
  for (int source = QX_DT_INTEGER; source <= QX_DT_DECIMAL; ++source) {
    for (int target = QX_DT_INTEGER; target <= QX_DT_DECIMAL; ++target) {
      const bool converts = source != target || source == QX_DT_DECIMAL;
      EXPECT_EQ(slice_conversion(source, target) != nullptr, converts) << source << " " << target;
    }
    for (const int none : {-1, 0, 1, 9}) {
      EXPECT_EQ(slice_conversion(source, none), nullptr);
      EXPECT_EQ(slice_conversion(none, source), nullptr);
    }
  }
}

TEST(TypeConversionTableTest, WithoutAPairNothingIsWritten) {
  const auto source = list_of(ints({1, 2}));
  int values[3] = {7, 7, 7};
  DoTypeConv(*source, QX_DT_INTEGER, {values, nullptr, 0, kTwoDigits}, 1);
  EXPECT_EQ(values[0] + values[1] + values[2], 21);
}

TEST(TypeConversionTableTest, DatesFollowTheDateOrder) {
  char text[kNumberTextSlot];
  const auto in_order = [&](int order) { return ConversionContext{{}, {}, order, text}; };
  constexpr double kFirstOfMarch = 45352.5;
  EXPECT_EQ(dateVL2intVL(kFirstOfMarch, in_order(kYearFirst)), 20240301);
  EXPECT_EQ(dateVL2intVL(kFirstOfMarch, in_order(kDayFirst)), 1032024);
  EXPECT_EQ(datetimeVL2intVL(kFirstOfMarch, in_order(kMonthFirst)), 3012024);
  EXPECT_STREQ(dateVL2strVL(kFirstOfMarch, in_order(kDayFirst)), "01/03/2024");
  EXPECT_STREQ(datetimeVL2strVL(kFirstOfMarch, in_order(kMonthFirst)), "03/01/2024 12:00:00");
}

TEST(TypeConversionTableTest, TextsOfDatesAndTimesAreSerials) {
  const ConversionContext none{};
  EXPECT_NEAR(strVL2dblVL("2020/1/2 12:00", none), 43832.5, 1e-6);
  EXPECT_NEAR(strVL2dblVL("2020/1/2", none), 43832, 1e-6);
  EXPECT_NEAR(strVL2dblVL(" 6:00:00", none), 0.25, 1e-6);
  EXPECT_EQ(strVL2dblVL("0x10", none), 16.0);
  EXPECT_EQ(strVL2dblVL("1e999", none), kInfinity);
}

}  // namespace
}  // namespace qxe::test
