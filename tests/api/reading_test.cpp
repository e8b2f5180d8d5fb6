// Reading rows: single values, row numbers, value numbers, blocks, and the convenience forms that
// return the value itself.
#include <string.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Ints = std::vector<int>;
using Texts = std::vector<std::string>;

/// A value and a NULL of each type.
class ReadingTest : public EngineTest {
 protected:
  enum Filter { kInt = 1, kDouble, kString, kDecimal, kDay, kClock, kBoth };

  const TestTable table_{{{"i", ints({7, kNullInt})},
                          {"d", doubles({2.5, kNullDouble})},
                          {"s", strings({"text", ""})},
                          {"n", decimals(2, {"1.25", ""})},
                          {"day", dates({"2024/02/29", ""})},
                          {"clock", times({"12:30:00", ""})},
                          {"both", datetimes({"2024/02/29 12:30:00", ""})}}};
  const int t_ = table_.id();
};

TEST_F(ReadingTest, EveryFormGivesTypeSizeAndValue) {
  using Bytes = std::array<char, 4096>;
  const std::pair<int, int> types[] = {{QX_DT_INTEGER, 4},  {QX_DT_DOUBLE, 8}, {QX_DT_STRING, 4},
                                       {QX_DT_DECIMAL, 16}, {QX_DT_DATE, 8},   {QX_DT_TIME, 8},
                                       {QX_DT_DATETIME, 8}};
  int filter = 0;
  for (const auto& [type, size] : types) {
    ++filter;
    for (const int row : {1, 2}) {
      const int wanted_size = row == 2 && type == QX_DT_STRING ? 0 : size;
      Bytes wanted = {};
      int type_read = 0;
      EXPECT_EQ(RQXGetData(t_, filter, 1, row - 1, &type_read, wanted.data()), wanted_size);
      EXPECT_EQ(type_read, type);
      for (auto* read : {RQXGetData1, QXGetData1}) {
        Bytes cell = {};
        EXPECT_EQ(read(t_, filter, 1, row, &type_read, cell.data()), wanted_size);
        EXPECT_EQ(cell, wanted);
      }
      Bytes text = {};
      EXPECT_EQ(RQXGetData1Str(t_, filter, 1, row, &type_read, text.data()), wanted_size);
      EXPECT_EQ(text, wanted);
    }
  }
  Texts texts;
  for (const char* name : {"i", "d", "s", "n", "day", "clock", "both"}) {
    texts.push_back(table_.text(name, 1));
  }
  EXPECT_EQ(texts,
            (Texts{"7", "2.5", "text", "1.25", "2024/02/29", "12:30:00", "2024/02/29 12:30:00"}));
}

TEST_F(ReadingTest, PutsTheInfoBeforeADecimal) {
  struct {
    NumericInfo info;
    Numeric value;
  } cell = {};
  int type = 0;
  EXPECT_EQ(RQXGetData1Ex(t_, kDecimal, 1, 1, &type, &cell, 64), 16);
  EXPECT_EQ((Ints{cell.info.scale, cell.info.rounding}), (Ints{2, QX_ROUND_HALFUP}));
  EXPECT_EQ(cell.value.lo, 125UL);
}

TEST_F(ReadingTest, FollowsTheOrderOfTheSet) {
  const TestTable table({{"a", strings({"one", "two", "three"})}});
  const int set = table.add_set({3, 1});
  EXPECT_EQ(table.texts("a", set), (Texts{"three", "one"}));
  EXPECT_EQ(table.text("a", 2, -1), "one");
  int type = 0;
  int row = 0;
  EXPECT_EQ(RQXGetData(table.id(), QX_FLT_ROWNO, set, 0, &type, &row), 4);
  EXPECT_EQ((Ints{type, row}), (Ints{QX_DT_INTEGER, 3}));
  EXPECT_EQ(RQXGetRowNo(table.id(), set, 1, &row), 4);
  EXPECT_EQ(row, 1);
  EXPECT_EQ(QXGetRowNo1(table.id(), set, 1, &row), 4);
  EXPECT_EQ(row, 3);
  Ints rows = {7, 7, 7, 7};
  EXPECT_EQ(RQXGetRowNo1M(table.id(), set, 1, 4, rows.data()), 2);
  EXPECT_EQ(rows, (Ints{3, 1, 7, 7}));
  EXPECT_EQ(RQXGetRowNo1M(table.id(), set, 2, 1, rows.data()), 1);
  EXPECT_EQ(rows[0], 1);
}

TEST_F(ReadingTest, CutsLongStrings) {
  const TestTable table({{"a", strings({std::string(5000, 'x')})}});
  std::array<char, 6000> text;
  int type = 0;
  EXPECT_EQ(RQXGetData1(table.id(), 1, 1, 1, &type, text.data()), 4095);
  EXPECT_EQ(strlen(text.data()), 4095U);
  EXPECT_EQ(RQXGetData1Ex(table.id(), 1, 1, 1, &type, text.data(), 10), 9);
  EXPECT_STREQ(text.data(), "xxxxxxxxx");
  EXPECT_EQ(RQXGetData1Ex(table.id(), 1, 1, 1, &type, text.data(), 6000), 5000);
  long address = 0;
  EXPECT_EQ(RQXGetData1ExPtr(table.id(), 1, 1, 1, &type, &address), 5000);
  EXPECT_EQ(strlen(reinterpret_cast<const char*>(address)), 5000U);
}

TEST_F(ReadingTest, GivesTheAddressOfAValue) {
  int type = 0;
  long address = 0;
  EXPECT_EQ(RQXGetData1ExPtr(t_, kDouble, 1, 1, &type, &address), 8);
  EXPECT_EQ(*reinterpret_cast<const double*>(address), 2.5);
  EXPECT_EQ(RQXGetData1ExPtr(t_, QX_FLT_ROWNO, 1, 2, &type, &address), 4);
  EXPECT_EQ(*reinterpret_cast<const int*>(address), 2);
  std::array<long, 128> addresses;
  int count = 0;
  EXPECT_EQ(RQXGetData1MExPtr(t_, kDouble, 1, 1, &type, &count, addresses.data()), 8);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(*reinterpret_cast<const double*>(addresses[1]), kNullDouble);
}

TEST_F(ReadingTest, ListsValueNumbers) {
  const TestTable table({{"a", ints({30, kNullInt, 10, 30})}});
  Ints numbers = {7, 7, 7, 7};
  EXPECT_EQ(RQXGetVNoList(table.id(), 1, 1, numbers.data()), 4);
  EXPECT_EQ(numbers, (Ints{2, 0, 1, 2}));
  EXPECT_EQ(RQXGetVNoList(table.id(), 1, table.add_set({3, 4}), numbers.data()), 2);
  EXPECT_EQ(numbers, (Ints{1, 2, 1, 2}));
  EXPECT_EQ(RQXGetVNoList(table.id(), 1, table.add_set({}), numbers.data()), 0);
}

// Blocks

/// One block of either of the two forms with packed strings.
struct BlockRead {
  BlockRead(const TestTable& table, int filter, int first, int size = 0)
      : status(size == 0
                   ? RQXGetData1M(table.id(), filter, -1, first, &type, &count, values, strings)
                   : RQXGetData1MEx(table.id(), filter, -1, first, &type, &count, values, strings,
                                    size)) {}
  template <class Value>
  Value value(size_t i, size_t offset = 0) const {
    Value value;
    memcpy(&value, values + offset + i * sizeof value, sizeof value);
    return value;
  }
  std::string text(size_t i) const { return strings + value<int>(i); }

  int type = 7;
  int count = 7;
  alignas(Numeric) char values[1024];
  char strings[4096];
  int status;
};

/// `rows` integers, doubles and decimals from 1 on, and strings of 100 bytes.
TestTable counting(int rows) {
  Columns columns = {{"i", ints({})}, {"d", doubles({})}, {"s", strings({})}, {"n", {}}};
  columns[3].column = decimals(2, {});
  for (int i = 1; i <= rows; ++i) {
    columns[0].column.cells.emplace_back(i);
    columns[1].column.cells.emplace_back(i + 0.5);
    columns[2].column.cells.emplace_back(std::string(100, 'x'));
    columns[3].column.cells.emplace_back(Decimal{2, i});
  }
  return TestTable(columns);
}

TEST_F(ReadingTest, ABlockHoldsAsManyValuesAsFit) {
  const TestTable table = counting(200);
  const BlockRead integers(table, 1, 1);
  EXPECT_EQ((Ints{integers.status, integers.type, integers.count}), (Ints{4, QX_DT_INTEGER, 128}));
  EXPECT_EQ((Ints{integers.value<int>(0), integers.value<int>(127)}), (Ints{1, 128}));
  const BlockRead rest(table, 2, 129);
  EXPECT_EQ((Ints{rest.status, rest.count}), (Ints{8, 72}));
  EXPECT_EQ(rest.value<double>(71), 200.5);
  const std::vector<RingEntry> entries = ring();
  ASSERT_EQ(entries.size(), 1U);  // the end of the set
  EXPECT_EQ(entries[0].code, QX_ERROR_NO_SET);
  const BlockRead strings(table, 3, 1);
  EXPECT_EQ((Ints{strings.status, strings.count, strings.value<int>(39)}),
            (Ints{100, 40, 39 * 101}));
  EXPECT_EQ(strings.text(39), std::string(100, 'x'));
  const BlockRead cut(table, 3, 1, 4);
  EXPECT_EQ((Ints{cut.status, cut.count}), (Ints{3, 128}));
  EXPECT_EQ(cut.text(127), "xxx");
  const BlockRead decimals(table, 4, 1);  // 63 behind one info
  EXPECT_EQ((Ints{decimals.status, decimals.count}), (Ints{16, 63}));
  EXPECT_EQ(decimals.value<NumericInfo>(0).scale, 2);
  EXPECT_EQ(decimals.value<Numeric>(62, sizeof(NumericInfo)).lo, 63UL);
  const BlockRead behind(table, 1, 201);
  EXPECT_EQ((Ints{behind.status, behind.count, behind.type}), (Ints{QX_ERROR_NO_SET, 0, 7}));
}

TEST_F(ReadingTest, ABlockTakesTheLongestAndTheEmptyString) {
  const TestTable table(
      {{"s", strings({std::string(4095, 'x'), std::string(4500, 'y'), "", "b"})}});
  EXPECT_EQ(BlockRead(table, 1, 1).count, 1);
  EXPECT_EQ(BlockRead(table, 1, 1).text(0).size(), 4095U);
  EXPECT_EQ(BlockRead(table, 1, 2, 6000).count, 0);
  EXPECT_EQ(BlockRead(table, 1, 2).text(0).size(), 4095U);  // reads cut it
  const BlockRead empty(table, 1, 3);
  EXPECT_EQ((Ints{empty.status, empty.count}), (Ints{0, 2}));
  EXPECT_EQ(empty.text(1), "b");
}

// Convenience forms

TEST_F(ReadingTest, ConvenienceFormsReadTheirType) {
  EXPECT_EQ(RQXGetDataIntR1(t_, kInt, 1, 0), 7);
  EXPECT_EQ(RQXGetData1IntR1(t_, kInt, 1, 1), 7);
  EXPECT_EQ(RQXGetDataDblR1(t_, kDouble, 1, 0), 2.5);
  EXPECT_EQ(RQXGetData1DblR1(t_, kDay, 1, 1), RQXStr2DateR1("2024/02/29"));
  EXPECT_STREQ(RQXGetDataStrR1(t_, kString, 1, 0), "text");
  EXPECT_STREQ(RQXGetData1StrR1(t_, kString, 1, 1), "text");
  Numeric value = {};
  EXPECT_EQ(RQXGetDataNumericR1(t_, kDecimal, 1, 0, &value), -1);
  EXPECT_EQ(value.lo, 125UL);
  value = {};
  EXPECT_EQ(RQXGetData1NumericR1(t_, kDecimal, 1, 1, &value), 16);
  EXPECT_EQ(value.lo, 125UL);
}

TEST_F(ReadingTest, ConvenienceFormsGiveNullForAnotherTypeAndForAFailure) {
  EXPECT_EQ(RQXGetDataIntR1(t_, kString, 1, 0), kNullInt);
  EXPECT_EQ(RQXGetDataDblR1(t_, kInt, 1, 0), kNullDouble);
  EXPECT_STREQ(RQXGetDataStrR1(t_, kInt, 1, 0), "");
  Numeric value = {5, 5};
  EXPECT_EQ(RQXGetDataNumericR1(t_, kInt, 1, 0, &value), -1);
  EXPECT_EQ(RQXGetData1NumericR1(t_, kString, 1, 1, &value), 4);
  EXPECT_EQ(value.lo, 5UL);
  EXPECT_TRUE(ring().empty());
  EXPECT_EQ(RQXGetData1IntR1(t_, kInt, 1, 3), kNullInt);
  EXPECT_EQ(RQXGetData1DblR1(t_, 99, 1, 1), kNullDouble);
  EXPECT_STREQ(RQXGetData1StrR1(99, kString, 1, 1), "");
  expect_failure(RQXGetDataNumericR1(99, kDecimal, 1, 0, &value), QX_ERROR_NO_TABLE,
                 "No Such Table: 99");
}

TEST_F(ReadingTest, CellsAsText) {
  const std::array<const char*, 2> wanted[] = {{"7", "-2147483648"},
                                               {"2.500000", "-inf"},
                                               {"text", ""},
                                               {"1.25", ""},
                                               {"2024/02/29", ""},
                                               {"12:30:00", ""},
                                               {"2024/02/29 12:30:00", ""}};
  for (int filter = kInt; filter <= kBoth; ++filter) {
    for (const int row : {1, 2}) {
      EXPECT_STREQ(RQXGetData1Cnv2StrR1(t_, filter, 1, row),
                   wanted[filter - 1][static_cast<size_t>(row) - 1]);
    }
  }
  EXPECT_STREQ(RQXGetData1Cnv2StrR1(t_, kInt, 1, 3), "");
}

TEST_F(ReadingTest, BlocksOfOneType) {
  int count = 0;
  std::array<int, 130> integers;
  EXPECT_EQ(RQXGetData1MIntR1(t_, QX_FLT_ROWNO, 1, 1, &count, integers.data()), 4);
  EXPECT_EQ((Ints{count, integers[1]}), (Ints{2, 2}));
  std::array<double, 128> reals;
  EXPECT_EQ(RQXGetData1MDblR1(t_, kDouble, 1, 1, &count, reals.data()), 8);
  EXPECT_EQ(reals[0], 2.5);
  std::array<char, 4096> texts;
  EXPECT_EQ(RQXGetData1MStrR1(t_, kString, 1, 1, &count, integers.data(), texts.data()), 4);
  EXPECT_EQ((Ints{count, integers[0], integers[1]}), (Ints{2, 0, 5}));
  EXPECT_STREQ(texts.data(), "text");

  const TestTable many = counting(130);
  integers.fill(7);
  EXPECT_EQ(RQXGetData1MIntR1(many.id(), 1, 1, 1, &count, integers.data()), 4);
  EXPECT_EQ((Ints{count, integers[127], integers[128]}), (Ints{128, 128, 7}));
  std::array<Numeric, 128> values;  // without an info
  EXPECT_EQ(RQXGetData1MNumericR1(many.id(), 4, 1, 2, &count, values.data()), 16);
  EXPECT_EQ(count, 128);
  EXPECT_EQ(values[127].lo, 129UL);
}

TEST_F(ReadingTest, SearchesByValuesOnTheStack) {
  char text[] = "te";
  RawValues value(QX_DT_DECIMAL, {decimal(2, "1.25")});
  for (const int found :
       {RQXSearchByFieldIntR1(t_, kInt, 1, QX_OPE_EQ, 7, 0),
        RQXSearchByFieldDblR1(t_, kDouble, 1, QX_OPE_BETWEEN, 2, 3),
        RQXSearchByFieldStrR1(t_, kString, 1, QX_OPE_BEGINS, text, nullptr),
        RQXSearchByFieldStr(t_, kString, 1, QX_OPE_BEGINS, text, nullptr),
        RQXSearchByFieldLocaleR1(t_, kString, 1, QX_OPE_BEGINS, text, nullptr, 99),
        RQXSearchByFieldNumericR1(t_, kDecimal, 1, QX_OPE_EQ, value.value(0), nullptr)}) {
    EXPECT_EQ(table_.rows(found), Ints{1});
  }
}

TEST_F(ReadingTest, ConvertsDatesTimesAndDecimals) {
  EXPECT_STREQ(RQXDouble2DateStrR1(2), "1900/01/01");
  EXPECT_STREQ(RQXDouble2TimeStrR1(0.5), "12:00:00");
  EXPECT_STREQ(RQXDouble2DateTimeStrR1(2.25), "1900/01/01 06:00:00");
  EXPECT_STREQ(RQXDouble2DateStrR1(kNullDouble), "");
  EXPECT_EQ(RQXStr2DateR1("1900/01/01"), 2);
  EXPECT_EQ(RQXStr2TimeR1("25:00"), 0);
  EXPECT_EQ(RQXStr2TimeR1("abc"), kNullDouble);
  EXPECT_EQ(RQXStr2DateTimeR1("1900/01/01 06:00:00"), 2.25);
  EXPECT_EQ(RQXStr2DateR1(nullptr), kNullDouble);
  NumericInfo info = {};
  EXPECT_EQ(RQXGetNumericInfoR1(t_, kDecimal, &info), 0);
  EXPECT_EQ(info.scale, 2);
  Numeric number = {1250, 0};
  EXPECT_STREQ(RQXNumericNum2StrR1(&number, &info), "12.50");
  RQXNumericSetNan(&number);
  EXPECT_STREQ(RQXNumericNum2StrR1(&number, &info), "");
}

TEST_F(ReadingTest, FailedDecimalReadKeepsTheEngineLockedUntilARestart) {
  Numeric value = {};
  EXPECT_EQ(RQXGetData1NumericR1(t_, kDecimal, 1, 3, &value), QX_ERROR_NO_SET);
  std::atomic<bool> entered = false;
  std::thread other([&] {
    RQXGetNTable();
    entered = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(entered);
  EXPECT_EQ(RQXReInitializeMS(), 0);
  other.join();
  EXPECT_EQ(RQXGetNTable(), 0);
}

}  // namespace
}  // namespace qxe::test
