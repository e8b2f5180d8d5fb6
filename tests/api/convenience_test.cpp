// The convenience forms, which return the value itself.
#include <array>
#include <atomic>
#include <chrono>
#include <thread>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class ConvenienceTest : public EngineTest {
 protected:
  int id(const char* column) const { return table_.filter(column); }

  const TestTable table_{{{"i", ints({7, kNullInt})},
                          {"d", doubles({2.5, kNullDouble})},
                          {"s", strings({"text", ""})},
                          {"n", decimals(2, {"1.25", ""})},
                          {"day", dates({"2024/02/29", ""})},
                          {"clock", times({"12:30:00", ""})},
                          {"both", datetimes({"2024/02/29 12:30:00", ""})}}};
  const int t_ = table_.id();
};

TEST_F(ConvenienceTest, ReadsValuesOfTheTypeAskedFor) {
  EXPECT_EQ(RQXGetDataIntR1(t_, id("i"), 1, 0), 7);
  EXPECT_EQ(RQXGetData1IntR1(t_, id("i"), 1, 1), 7);
  EXPECT_EQ(RQXGetDataDblR1(t_, id("d"), 1, 0), 2.5);
  EXPECT_EQ(RQXGetData1DblR1(t_, id("day"), 1, 1), RQXStr2DateR1("2024/02/29"));
  EXPECT_STREQ(RQXGetDataStrR1(t_, id("s"), 1, 0), "text");
  EXPECT_STREQ(RQXGetData1StrR1(t_, id("s"), 1, 1), "text");
  Numeric value = {};
  EXPECT_EQ(RQXGetDataNumericR1(t_, id("n"), 1, 0, &value), -1);
  EXPECT_EQ(value.lo, 125UL);
  value = {};
  EXPECT_EQ(RQXGetData1NumericR1(t_, id("n"), 1, 1, &value), 16);
  EXPECT_EQ(value.lo, 125UL);
}

TEST_F(ConvenienceTest, GivesNullForAnotherTypeAndForAFailure) {
  EXPECT_EQ(RQXGetDataIntR1(t_, id("s"), 1, 0), kNullInt);
  EXPECT_EQ(RQXGetDataDblR1(t_, id("i"), 1, 0), kNullDouble);
  EXPECT_STREQ(RQXGetDataStrR1(t_, id("i"), 1, 0), "");
  Numeric value = {5, 5};
  EXPECT_EQ(RQXGetDataNumericR1(t_, id("i"), 1, 0, &value), -1);
  EXPECT_EQ(RQXGetData1NumericR1(t_, id("s"), 1, 1, &value), 4);
  EXPECT_EQ(value.lo, 5UL);
  EXPECT_TRUE(ring().empty());

  EXPECT_EQ(RQXGetData1IntR1(t_, id("i"), 1, 3), kNullInt);
  EXPECT_EQ(RQXGetData1DblR1(t_, 99, 1, 1), kNullDouble);
  EXPECT_STREQ(RQXGetData1StrR1(99, id("s"), 1, 1), "");
  expect_failure(RQXGetDataNumericR1(99, id("n"), 1, 0, &value), QX_ERROR_NO_TABLE,
                 "No Such Table: 99");
}

TEST_F(ConvenienceTest, WritesCellsAsText) {
  const std::vector<std::pair<const char*, std::array<const char*, 2>>> wanted = {
      {"i", {"7", "-2147483648"}},
      {"d", {"2.500000", "-inf"}},
      {"s", {"text", ""}},
      {"n", {"1.25", ""}},
      {"day", {"2024/02/29", ""}},
      {"clock", {"12:30:00", ""}},
      {"both", {"2024/02/29 12:30:00", ""}},
  };
  for (const auto& [column, texts] : wanted) {
    EXPECT_STREQ(RQXGetData1Cnv2StrR1(t_, id(column), 1, 1), texts[0]) << column;
    EXPECT_STREQ(RQXGetData1Cnv2StrR1(t_, id(column), 1, 2), texts[1]) << column;
  }
  EXPECT_STREQ(RQXGetData1Cnv2StrR1(t_, id("i"), 1, 3), "");
}

TEST_F(ConvenienceTest, ReadsBlocksOfOneType) {
  int count = 0;
  std::array<int, 128> integers;
  EXPECT_EQ(RQXGetData1MIntR1(t_, id("i"), 1, 1, &count, integers.data()), 4);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(integers[1], kNullInt);
  EXPECT_EQ(RQXGetData1MIntR1(t_, QX_FLT_ROWNO, 1, 1, &count, integers.data()), 4);
  EXPECT_EQ(integers[1], 2);
  std::array<double, 128> doubles_read;
  EXPECT_EQ(RQXGetData1MDblR1(t_, id("d"), 1, 1, &count, doubles_read.data()), 8);
  EXPECT_EQ(doubles_read[0], 2.5);
  std::array<int, 128> offsets;
  std::array<char, 4096> texts;
  EXPECT_EQ(RQXGetData1MStrR1(t_, id("s"), 1, 1, &count, offsets.data(), texts.data()), 4);
  EXPECT_EQ(count, 2);
  EXPECT_STREQ(texts.data() + offsets[0], "text");
  EXPECT_EQ(offsets[1], 5);
}

TEST_F(ConvenienceTest, ReadsAHundredAndTwentyEightDecimalsWithoutInfo) {
  Column column{QX_DT_DECIMAL, {}, 2};
  for (int i = 1; i <= 130; ++i) column.cells.emplace_back(Decimal{2, i});
  const TestTable many({{"n", column}});
  std::array<Numeric, 128> values;
  int count = 0;
  EXPECT_EQ(RQXGetData1MNumericR1(many.id(), many.filter("n"), 1, 2, &count, values.data()), 16);
  EXPECT_EQ(count, 128);
  EXPECT_EQ(values[0].lo, 2UL);
  EXPECT_EQ(values[127].lo, 129UL);
}

TEST_F(ConvenienceTest, WritesNoFurtherThanTheBlock) {
  const TestTable many({{"i", ints(std::vector<int>(300, 5))}});
  std::array<int, 130> values;
  values.fill(7);
  int count = 0;
  EXPECT_EQ(RQXGetData1MIntR1(many.id(), many.filter("i"), 1, 1, &count, values.data()), 4);
  EXPECT_EQ(count, 128);
  EXPECT_EQ(values[127], 5);
  EXPECT_EQ(values[128], 7);
}

TEST_F(ConvenienceTest, SearchesByValuesOnTheStack) {
  EXPECT_EQ(table_.rows(RQXSearchByFieldIntR1(t_, id("i"), 1, QX_OPE_EQ, 7, 0)),
            (std::vector<int>{1}));
  EXPECT_EQ(table_.rows(RQXSearchByFieldDblR1(t_, id("d"), 1, QX_OPE_BETWEEN, 2, 3)),
            (std::vector<int>{1}));
  char text[] = "te";
  for (auto* search : {RQXSearchByFieldStrR1, RQXSearchByFieldStr}) {
    EXPECT_EQ(table_.rows(search(t_, id("s"), 1, QX_OPE_BEGINS, text, nullptr)),
              (std::vector<int>{1}));
  }
  RawValues value(QX_DT_DECIMAL, {decimal(2, "1.25")});
  EXPECT_EQ(
      table_.rows(RQXSearchByFieldNumericR1(t_, id("n"), 1, QX_OPE_EQ, value.value(0), nullptr)),
      (std::vector<int>{1}));
  EXPECT_EQ(table_.rows(RQXSearchByFieldLocaleR1(t_, id("s"), 1, QX_OPE_EQ, text, nullptr, 99)),
            (std::vector<int>{}));
}

TEST_F(ConvenienceTest, ConvertsDatesTimesAndDecimals) {
  EXPECT_STREQ(RQXDouble2DateStrR1(2), "1900/01/01");
  EXPECT_STREQ(RQXDouble2TimeStrR1(0.5), "12:00:00");
  EXPECT_STREQ(RQXDouble2DateTimeStrR1(2.25), "1900/01/01 06:00:00");
  EXPECT_STREQ(RQXDouble2DateStrR1(kNullDouble), "");
  EXPECT_EQ(RQXStr2DateR1("1900/01/01"), 2);
  EXPECT_EQ(RQXStr2TimeR1("25:00"), 0);
  EXPECT_EQ(RQXStr2TimeR1("abc"), kNullDouble);
  EXPECT_EQ(RQXStr2DateTimeR1("1900/01/01 06:00:00"), 2.25);
  EXPECT_EQ(RQXStr2DateR1(nullptr), kNullDouble);
  const NumericInfo info = {3, QX_ROUND_HALFUP};
  const Numeric number = {1250, 0};
  EXPECT_STREQ(RQXNumericNum2StrR1(&number, &info), "1.250");
  Numeric nan;
  RQXNumericSetNan(&nan);
  EXPECT_STREQ(RQXNumericNum2StrR1(&nan, &info), "");
}

TEST_F(ConvenienceTest, TellsTheInfoOfDecimals) {
  NumericInfo info = {};
  EXPECT_EQ(RQXGetNumericInfoR1(t_, id("n"), &info), 0);
  EXPECT_EQ(info.scale, 2);
}

TEST_F(ConvenienceTest, FailedDecimalReadKeepsTheEngineLockedUntilARestart) {
  Numeric value = {};
  EXPECT_EQ(RQXGetData1NumericR1(t_, id("n"), 1, 3, &value), QX_ERROR_NO_SET);
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
