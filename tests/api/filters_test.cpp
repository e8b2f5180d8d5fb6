// Filters: adding, order, names, records of what they are made of.
#include <string.h>

#include <array>
#include <numeric>
#include <regex>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class FiltersTest : public EngineTest {
 protected:
  static std::vector<int> order(int table) {
    std::vector<int> ids(512);
    const int count = RQXGetFilterIDList(table, ids.data());
    ids.resize(static_cast<size_t>(count));
    return ids;
  }
  static std::string name_of(int table, int filter) {
    char name[256] = "";
    require(RQXGetFilterName(table, filter, name), "RQXGetFilterName");
    return name;
  }
  static int add_nulls(int table, int pos, const char* name, int type = QX_DT_INTEGER) {
    return RQXAddRealFilter2(table, pos, name, type, 0, nullptr, nullptr, nullptr);
  }
};

TEST_F(FiltersTest, TakePlaceAtAPositionOfTheDisplayOrder) {
  const int table = RQXAddRealTable("t", 2);
  EXPECT_EQ(add_nulls(table, 0, "a"), 1);
  EXPECT_EQ(add_nulls(table, 1024, "b"), 2);
  EXPECT_EQ(add_nulls(table, 1, "c"), 3);
  EXPECT_EQ(add_nulls(table, -5, "d"), 4);
  EXPECT_EQ(order(table), (std::vector<int>{4, 1, 3, 2}));
  EXPECT_EQ(RQXMoveRealFilter(table, 0, 2), 0);
  EXPECT_EQ(order(table), (std::vector<int>{1, 3, 4, 2}));
  EXPECT_EQ(QXMoveRealFilter(table, 3, -1), 0);
  EXPECT_EQ(order(table), (std::vector<int>{2, 1, 3, 4}));
  EXPECT_EQ(ring().back().message, "Invalid Parameter : ToIndex");
  EXPECT_EQ(RQXDeleteRealFilter(table, 1), 0);
  EXPECT_EQ(order(table), (std::vector<int>{2, 3, 4}));
  EXPECT_EQ(RQXGetNFilter(table), 3);
  EXPECT_EQ(add_nulls(table, 0, "e"), 5);
}

TEST_F(FiltersTest, ReadNullInRowsWithoutAValue) {
  const int table = RQXAddRealTable("t", 4);
  int values[] = {7, 8};
  const int filter = RQXAddRealFilter2(table, 0, "a", QX_DT_INTEGER, 2, values, nullptr, nullptr);
  const TestTable seen = TestTable::existing(table);
  EXPECT_EQ(seen.texts("a"), (std::vector<std::string>{"7", "8", "NULL", "NULL"}));
  EXPECT_EQ(RQXGetFilterType(table, filter), QX_DT_INTEGER);

  int more[] = {1, 2, 3, 4, 5, 6};
  RQXAddRealFilter2(table, 1, "b", QX_DT_INTEGER, 6, more, nullptr, nullptr);
  EXPECT_EQ(seen.texts("b"), (std::vector<std::string>{"1", "2", "3", "4"}));
}

struct TypeCase {
  const char* name;
  int type;
  int width;
  int unit;
  std::vector<std::string> nulls;
};

class FilterTypesTest : public FiltersTest, public testing::WithParamInterface<TypeCase> {};

TEST_P(FilterTypesTest, HaveTheirTypeWidthAndNull) {
  const TypeCase& wanted = GetParam();
  const int table = RQXAddRealTable("t", 2);
  const int filter = add_nulls(table, 0, "empty", wanted.type);
  EXPECT_EQ(RQXGetFilterType(table, filter), wanted.type);
  EXPECT_EQ(RQXGetFilterWidth(table, filter), wanted.width);
  _TRFilterInfo info;
  EXPECT_EQ(RQXGetFilterInfo(table, filter, &info), 0);
  EXPECT_EQ(info.type, wanted.type);
  EXPECT_EQ(info.unitSize, wanted.unit);
  EXPECT_EQ(info.valueCount, 1);
  EXPECT_EQ(TestTable::existing(table).texts("empty"), wanted.nulls);
}

const std::vector<std::string> kTwoNulls = {"NULL", "NULL"};

INSTANTIATE_TEST_SUITE_P(All, FilterTypesTest,
                         testing::Values(TypeCase{"Integer", QX_DT_INTEGER, 4, 4, kTwoNulls},
                                         TypeCase{"Double", QX_DT_DOUBLE, 8, 8, kTwoNulls},
                                         TypeCase{"Date", QX_DT_DATE, 8, 8, kTwoNulls},
                                         TypeCase{"Time", QX_DT_TIME, 8, 8, kTwoNulls},
                                         TypeCase{"String", QX_DT_STRING, 0, 8, {"", ""}},
                                         TypeCase{"DateTime", QX_DT_DATETIME, 8, 8, kTwoNulls},
                                         TypeCase{"Decimal", QX_DT_DECIMAL, 16, 16, kTwoNulls}),
                         case_name<TypeCase>);

TEST_F(FiltersTest, MakeNamesUnique) {
  const int table = RQXAddRealTable("t", 1);
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "a")), "a");
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "a")), "a_#1");
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "a_#1")), "a_#2");
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "RecNo")), "RECNO");
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "net price")), "net_price");
  EXPECT_TRUE(
      std::regex_match(name_of(table, add_nulls(table, 9, "")), std::regex("filter[0-9]{14}_1")));
}

TEST_F(FiltersTest, TakeTheFirstFreeNumberOfAName) {
  const int table = RQXAddRealTable("t", 1);
  const int first = add_nulls(table, 9, "a");
  const int second = add_nulls(table, 9, "a");
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "a")), "a_#2");
  ASSERT_EQ(RQXDeleteRealFilter(table, second), 0);
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "a")), "a_#1");
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "a")), "a_#3");
  ASSERT_EQ(RQXDeleteRealFilter(table, first), 0);
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "ab")), "ab");
  EXPECT_EQ(name_of(table, add_nulls(table, 9, "a")), "a");
}

TEST_F(FiltersTest, AreRenamedAndFoundByName) {
  const TestTable table({{"a", ints({1})}, {"b", ints({1})}});
  const int b = table.filter("b");
  EXPECT_EQ(RQXSetFilterName(table.id(), b, "a"), 0);
  EXPECT_EQ(name_of(table.id(), b), "a_#1");
  EXPECT_STREQ(RQXGetFilterNameR1(table.id(), b), "a_#1");
  EXPECT_STREQ(RQXGetFilterNameR1(table.id(), 99), "");
  EXPECT_EQ(QXSetFilterName(table.id(), b, "c"), 0);
  EXPECT_EQ(RQXGetFilterIDFromName(table.id(), "c"), b);
  EXPECT_EQ(RQXGetFilterIDFromName2(table.id(), "c", -1), b);
  expect_failure(QXGetFilterIDFromName(table.id(), "C"), QX_ERROR_NO_FILTER, "No Filter");
}

TEST_F(FiltersTest, NumberFiveHundredAndTwelveAtMost) {
  const int table = RQXAddRealTable("t", 1);
  for (int i = 0; i < 512; ++i) require(add_nulls(table, i, "f"), "add");
  expect_failure(add_nulls(table, 0, std::string(300, 'x').c_str(), 99), QX_ERROR_FILTER_COUNT,
                 "FilterCount overflow");
  EXPECT_EQ(RQXGetNFilter(table), 512);
}

TEST_F(FiltersTest, TellTheWidthOfTheLongestString) {
  const TestTable table({{"a", strings({"ab", "", "abcd"})}});
  EXPECT_EQ(RQXGetFilterWidth(table.id(), table.filter("a")), 4);
}

TEST_F(FiltersTest, AreCopiedIntoRecordsAndBuffers) {
  const TestTable table({{"a", strings({"b", "", "a", "b"})}}, "t");
  const int filter = table.filter("a");
  _TRFilterInfo info;
  EXPECT_EQ(RQXGetFilterInfo(table.id(), filter, &info), 0);
  EXPECT_EQ(info.id, filter);
  EXPECT_EQ(info.valueCount, 3);
  EXPECT_STREQ(info.name, "a");

  std::array<int, 5> pv = {};
  std::array<long, 3> offsets = {};
  std::vector<char> pool(static_cast<size_t>(info.poolSize));
  const _TRFilterBody body = {5, pv.data(), 3, offsets.data(), info.poolSize, pool.data()};
  _TRFilterBody request = body;
  EXPECT_EQ(RQXGetFilterBody(table.id(), filter, &request), 0);
  EXPECT_EQ(pv, (std::array<int, 5>{0, 2, 0, 1, 2}));
  EXPECT_STREQ(pool.data() + offsets[0], "");
  EXPECT_STREQ(pool.data() + offsets[1], "a");
  EXPECT_STREQ(pool.data() + offsets[2], "b");

  _TFilterInfo live;
  EXPECT_EQ(QXGetFilter(table.id(), filter, &live), 0);
  EXPECT_EQ(live.rowCount, 5);
  EXPECT_EQ(live.pv[4], 2);
  EXPECT_EQ(live.type, QX_DT_STRING);
  EXPECT_EQ(live.valueCount, 3);
  EXPECT_STREQ(live.pool + static_cast<long*>(live.values)[2], "b");
  EXPECT_STREQ(live.name, "a");
  EXPECT_EQ(live.orgTableId, 0);
  EXPECT_EQ(live.orgFilterId, filter);
}

TEST_F(FiltersTest, CopyNoMoreThanTheStatedCapacities) {
  const TestTable table({{"a", ints({30, 10, 20})}});
  std::array<int, 4> pv = {-7, -7, -7, -7};
  std::array<int, 4> values = {-7, -7, -7, -7};
  _TRFilterBody body = {2, pv.data(), 3, values.data(), 0, nullptr};
  EXPECT_EQ(RQXGetFilterBody(table.id(), table.filter("a"), &body), 0);
  EXPECT_EQ(pv, (std::array<int, 4>{0, 3, -7, -7}));
  EXPECT_EQ(values, (std::array<int, 4>{kNullInt, 10, 20, -7}));
  body = {0, pv.data(), 0, values.data(), 0, nullptr};
  pv.fill(-7);
  EXPECT_EQ(RQXGetFilterBody(table.id(), table.filter("a"), &body), 0);
  EXPECT_EQ(pv[0], -7);
}

TEST_F(FiltersTest, PutTheInfoBeforeTheValuesOfDecimals) {
  const TestTable table({{"a", decimals(2, {"1.25", "-0.50"})}});
  struct {
    NumericInfo info;
    Numeric values[3];
  } out = {};
  _TRFilterBody body = {0, nullptr, 3, &out, 0, nullptr};
  EXPECT_EQ(RQXGetFilterBody(table.id(), table.filter("a"), &body), 0);
  EXPECT_EQ(out.info.scale, 2);
  EXPECT_EQ(out.info.rounding, QX_ROUND_HALFUP);
  EXPECT_EQ(RQXNumericIsNan(&out.values[0]), 1);
  EXPECT_EQ(out.values[1].hi, -1);
  EXPECT_EQ(out.values[2].lo, 125UL);
}

TEST_F(FiltersTest, AreListedWithTheirNames) {
  const std::string long_name(100, 'n');
  const TestTable table({{"a", ints({1})}, {long_name, doubles({1})}, {"c", ints({1})}});
  _TRFilterInfo infos[2] = {};
  char names[3][64] = {"", "", "untouched"};
  int count = 0;
  EXPECT_EQ(RQXGetAllFilterInfo(table.id(), 2, &count, infos, names), 3);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(infos[0].id, 1);
  EXPECT_EQ(infos[1].type, QX_DT_DOUBLE);
  EXPECT_EQ(infos[1].name, long_name);
  EXPECT_STREQ(names[0], "a");
  EXPECT_EQ(std::string(names[1]), std::string(63, 'n'));
  EXPECT_STREQ(names[2], "untouched");
  EXPECT_EQ(RQXGetAllFilterInfo(table.id(), 2, &count, infos, nullptr), 3);
}

TEST_F(FiltersTest, CarryTwoAttributeBlocks) {
  const TestTable table({{"a", ints({1})}});
  const int filter = table.filter("a");
  std::array<unsigned char, 64> rows;
  std::array<unsigned char, 64> values;
  rows.fill(1);
  values.fill(2);
  EXPECT_EQ(RQXSetFilterAttr(table.id(), filter, rows.data(), false), 0);
  EXPECT_EQ(RQXSetFilterAttr(table.id(), filter, values.data(), true), 0);
  std::array<unsigned char, 64> read = {};
  EXPECT_EQ(RQXGetFilterAttr(table.id(), filter, read.data(), false), 0);
  EXPECT_EQ(read, rows);
  void* live = nullptr;
  EXPECT_EQ(QXGetFilterAttr(table.id(), filter, &live, true), 0);
  EXPECT_EQ(memcmp(live, values.data(), values.size()), 0);
}

TEST_F(FiltersTest, KeepTheEnginesBytesOfTheValueListsBlock) {
  const TestTable table({{"d", doubles({1})}, {"n", decimals(2, {"1.25"})}});
  std::array<unsigned char, 64> block = {};
  block[0] = QX_DT_STRING;
  expect_failure(RQXSetFilterAttr(table.id(), table.filter("d"), block.data(), true),
                 QX_ERROR_PARAMETER, "Invalid Parameter : DataType(6)");
  block[0] = QX_DT_DATE;
  EXPECT_EQ(RQXSetFilterAttr(table.id(), table.filter("d"), block.data(), true), 0);
  EXPECT_EQ(RQXGetFilterType(table.id(), table.filter("d")), QX_DT_DATE);

  block.fill(9);
  EXPECT_EQ(RQXSetFilterAttr(table.id(), table.filter("n"), block.data(), true), 0);
  EXPECT_EQ(RQXGetFilterAttr(table.id(), table.filter("n"), block.data(), true), 0);
  EXPECT_EQ(block[5], 9);
  EXPECT_EQ(block[6], 2);
  EXPECT_EQ(block[7], QX_ROUND_HALFUP);
  EXPECT_EQ(table.text("n", 1), "1.25");
}

TEST_F(FiltersTest, CountTheRowsOfEachValue) {
  const TestTable table({{"a", ints({20, 10, kNullInt, 20})}});
  int counts[3] = {7, 7, 7};
  EXPECT_EQ(QXGetValCount(table.id(), table.filter("a"), 1, counts), 0);
  EXPECT_EQ(std::vector<int>(counts, counts + 3), (std::vector<int>{1, 1, 2}));
  EXPECT_EQ(QXGetValCount(table.id(), table.filter("a"), table.add_set({4}), counts), 0);
  EXPECT_EQ(std::vector<int>(counts, counts + 3), (std::vector<int>{0, 0, 1}));
}

// Scale and rounding of decimals

struct RescaleCase {
  const char* name;
  NumericInfo info;
  std::vector<std::string> values;
  int value_count;
};

class NumericInfoTest : public FiltersTest, public testing::WithParamInterface<RescaleCase> {};

TEST_P(NumericInfoTest, RewritesTheValues) {
  const RescaleCase& wanted = GetParam();
  const TestTable table({{"a", decimals(2, {"1.25", "", "1.30", "-1.25", "0.04", "1.25"})}});
  const int filter = table.filter("a");
  NumericInfo info = wanted.info;
  EXPECT_EQ(RQXSetNumericInfo(table.id(), filter, &info, false), 0);
  NumericInfo read = {};
  char name[256] = "";
  EXPECT_EQ(RQXGetNumericInfo(table.id(), filter, &read, name, false), 0);
  EXPECT_EQ(read.scale, info.scale);
  EXPECT_EQ(read.rounding, info.rounding);
  EXPECT_STREQ(name, "a");
  EXPECT_EQ(table.texts("a"), wanted.values);
  _TRFilterInfo record;
  RQXGetFilterInfo(table.id(), filter, &record);
  EXPECT_EQ(record.valueCount, wanted.value_count);
}

INSTANTIATE_TEST_SUITE_P(
    All, NumericInfoTest,
    testing::Values(RescaleCase{"FinerKeepsThem",
                                {4, QX_ROUND_HALFUP},
                                {"1.2500", "NULL", "1.3000", "-1.2500", "0.0400", "1.2500"},
                                5},
                    RescaleCase{"CoarserMergesEqualOnes",
                                {1, QX_ROUND_HALFUP},
                                {"1.3", "NULL", "1.3", "-1.3", "0.0", "1.3"},
                                4},
                    RescaleCase{"RoundsByTheNewMode",
                                {1, QX_ROUND_FLOOR},
                                {"1.2", "NULL", "1.3", "-1.3", "0.0", "1.2"},
                                5},
                    RescaleCase{"ModeAloneChangesNone",
                                {2, QX_ROUND_DOWN},
                                {"1.25", "NULL", "1.30", "-1.25", "0.04", "1.25"},
                                5},
                    RescaleCase{
                        "TooLargeOnesBecomeNull",
                        {38, QX_ROUND_HALFUP},
                        {"NULL", "NULL", "NULL", "NULL", "0.04" + std::string(36, '0'), "NULL"},
                        2}),
    case_name<RescaleCase>);

TEST_F(FiltersTest, RescaledStayInOrder) {
  const TestTable table({{"a", decimals(2, {"1.25", "", "0.04", "1.24", "-3.00"})}});
  NumericInfo info = {1, QX_ROUND_HALFEVEN};
  ASSERT_EQ(RQXSetNumericInfo(table.id(), table.filter("a"), &info, false), 0);
  EXPECT_EQ(table.rows(table.sort("a")), (std::vector<int>{2, 5, 3, 1, 4}));
}

}  // namespace
}  // namespace qxe::test
