// Filters: adding, order, names, records of what they are made of.
#include <string.h>

#include <array>
#include <regex>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Ints = std::vector<int>;
using Texts = std::vector<std::string>;

class FiltersTest : public EngineTest {
 protected:
  static Ints order(int table) {
    Ints ids(512);
    ids.resize(static_cast<size_t>(RQXGetFilterIDList(table, ids.data())));
    return ids;
  }
  static std::string name_of(int table, int filter) { return RQXGetFilterNameR1(table, filter); }
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
  EXPECT_EQ(order(table), (Ints{4, 1, 3, 2}));
  EXPECT_EQ(RQXMoveRealFilter(table, 0, 2), 0);
  EXPECT_EQ(order(table), (Ints{1, 3, 4, 2}));
  EXPECT_EQ(QXMoveRealFilter(table, 3, -1), 0);
  EXPECT_EQ(order(table), (Ints{2, 1, 3, 4}));
  EXPECT_EQ(ring().back().message, "Invalid Parameter : ToIndex");
  EXPECT_EQ(RQXDeleteRealFilter(table, 1), 0);
  EXPECT_EQ(order(table), (Ints{2, 3, 4}));
  EXPECT_EQ(add_nulls(table, 0, "e"), 5);
}

TEST_F(FiltersTest, ReadNullInRowsWithoutAValue) {
  const TestTable table = TestTable::existing(RQXAddRealTable("t", 4));
  int values[] = {1, 2, 3, 4, 5, 6};
  for (const int count : {2, 6}) {
    RQXAddRealFilter2(table.id(), count, "a", QX_DT_INTEGER, count, values, nullptr, nullptr);
  }
  EXPECT_EQ(table.texts("a"), (Texts{"1", "2", "NULL", "NULL"}));
  EXPECT_EQ(table.texts("a_#1"), (Texts{"1", "2", "3", "4"}));
}

TEST_F(FiltersTest, HaveTheirTypeWidthAndNull) {
  struct {
    int type, width, unit;
  } const cases[] = {{QX_DT_INTEGER, 4, 4},  {QX_DT_DOUBLE, 8, 8}, {QX_DT_DATE, 8, 8},
                     {QX_DT_TIME, 8, 8},     {QX_DT_STRING, 0, 8}, {QX_DT_DATETIME, 8, 8},
                     {QX_DT_DECIMAL, 16, 16}};
  const TestTable table = TestTable::existing(RQXAddRealTable("t", 1));
  for (const auto& [type, width, unit] : cases) {
    const int filter = add_nulls(table.id(), 99, "empty", type);
    EXPECT_EQ(RQXGetFilterType(table.id(), filter), type);
    EXPECT_EQ(RQXGetFilterWidth(table.id(), filter), width);
    _TRFilterInfo info;
    EXPECT_EQ(RQXGetFilterInfo(table.id(), filter, &info), 0);
    EXPECT_EQ((Ints{info.id, info.type, info.unitSize, info.valueCount}),
              (Ints{filter, type, unit, 1}));
    EXPECT_EQ(table.text(info.name, 1), type == QX_DT_STRING ? "" : "NULL");
  }
  EXPECT_EQ(RQXGetFilterWidth(TestTable({{"a", strings({"ab", "", "abcd"})}}).id(), 1), 4);
}

TEST_F(FiltersTest, MakeNamesUniqueByTheFirstFreeNumber) {
  const int table = RQXAddRealTable("t", 1);
  const auto name_made_of = [&](const char* name) {
    return name_of(table, add_nulls(table, 9, name));
  };
  EXPECT_EQ(name_made_of("a"), "a");
  EXPECT_EQ(name_made_of("a"), "a_#1");
  EXPECT_EQ(name_made_of("a_#1"), "a_#2");
  ASSERT_EQ(RQXDeleteRealFilter(table, 2), 0);
  EXPECT_EQ(name_made_of("a"), "a_#1");
  EXPECT_EQ(name_made_of("a"), "a_#3");
  ASSERT_EQ(RQXDeleteRealFilter(table, 1), 0);
  EXPECT_EQ(name_made_of("ab"), "ab");
  EXPECT_EQ(name_made_of("a"), "a");
  EXPECT_EQ(name_made_of("RecNo"), "RECNO");
  EXPECT_EQ(name_made_of("net price"), "net_price");
  EXPECT_TRUE(std::regex_match(name_made_of(""), std::regex("filter[0-9]{14}_1")));
}

TEST_F(FiltersTest, AreRenamedAndFoundByName) {
  const TestTable table({{"a", ints({1})}, {"b", ints({1})}});
  const int b = table.filter("b");
  EXPECT_EQ(RQXSetFilterName(table.id(), b, "a"), 0);
  EXPECT_EQ(name_of(table.id(), b), "a_#1");
  EXPECT_EQ(name_of(table.id(), 99), "");
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
}

TEST_F(FiltersTest, AreCopiedIntoRecordsAndBuffers) {
  const TestTable table({{"a", strings({"b", "", "a", "b"})}}, "t");
  std::array<int, 5> pv = {};
  std::array<long, 3> offsets = {};
  char pool[64];
  _TRFilterBody body = {5, pv.data(), 3, offsets.data(), sizeof pool, pool};
  EXPECT_EQ(RQXGetFilterBody(table.id(), 1, &body), 0);
  EXPECT_EQ(pv, (std::array<int, 5>{0, 2, 0, 1, 2}));
  EXPECT_EQ(std::string(pool + offsets[0]) + (pool + offsets[1]) + (pool + offsets[2]), "ab");

  _TFilterInfo live;
  EXPECT_EQ(QXGetFilter(table.id(), 1, &live), 0);
  EXPECT_EQ((Ints{live.rowCount, live.pv[4], live.type, live.valueCount}),
            (Ints{5, 2, QX_DT_STRING, 3}));
  EXPECT_STREQ(live.pool + static_cast<long*>(live.values)[2], "b");
  EXPECT_STREQ(live.name, "a");
  EXPECT_EQ((Ints{live.orgTableId, live.orgFilterId}), (Ints{0, 1}));
  ASSERT_EQ(QXGetFilter(table.id(), RQXDupRealFilter(table.id(), 1), &live), 0);
  EXPECT_EQ(live.orgFilterId, 1);
}

TEST_F(FiltersTest, CopyNoMoreThanTheStatedCapacities) {
  const TestTable table({{"a", ints({30, 10, 20})}});
  Ints pv = {-7, -7, -7, -7};
  Ints values = pv;
  _TRFilterBody body = {2, pv.data(), 3, values.data(), 0, nullptr};
  EXPECT_EQ(RQXGetFilterBody(table.id(), 1, &body), 0);
  EXPECT_EQ(pv, (Ints{0, 3, -7, -7}));
  EXPECT_EQ(values, (Ints{kNullInt, 10, 20, -7}));
  pv[0] = -7;
  body = {0, pv.data(), 0, values.data(), 0, nullptr};
  EXPECT_EQ(RQXGetFilterBody(table.id(), 1, &body), 0);
  EXPECT_EQ(pv[0], -7);
}

TEST_F(FiltersTest, PutTheInfoBeforeTheValuesOfDecimals) {
  const TestTable table({{"a", decimals(2, {"1.25", "-0.50"})}});
  struct {
    NumericInfo info;
    Numeric values[3];
  } out = {};
  _TRFilterBody body = {0, nullptr, 3, &out, 0, nullptr};
  EXPECT_EQ(RQXGetFilterBody(table.id(), 1, &body), 0);
  EXPECT_EQ((Ints{out.info.scale, out.info.rounding}), (Ints{2, QX_ROUND_HALFUP}));
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
  EXPECT_EQ((Ints{count, infos[0].id, infos[1].type}), (Ints{3, 1, QX_DT_DOUBLE}));
  EXPECT_EQ(infos[1].name, long_name);
  EXPECT_STREQ(names[0], "a");
  EXPECT_EQ(std::string(names[1]), std::string(63, 'n'));
  EXPECT_STREQ(names[2], "untouched");
  EXPECT_EQ(RQXGetAllFilterInfo(table.id(), 2, &count, infos, nullptr), 3);
}

TEST_F(FiltersTest, CarryTwoAttributeBlocksWithTheEnginesBytes) {
  const TestTable table({{"d", doubles({1})}, {"n", decimals(2, {"1.25"})}});
  std::array<unsigned char, 64> rows;
  rows.fill(1);
  EXPECT_EQ(RQXSetFilterAttr(table.id(), 2, rows.data(), false), 0);
  std::array<unsigned char, 64> block;
  block.fill(9);
  EXPECT_EQ(RQXSetFilterAttr(table.id(), 2, block.data(), true), 0);
  std::array<unsigned char, 64> read = {};
  EXPECT_EQ(RQXGetFilterAttr(table.id(), 2, read.data(), false), 0);
  EXPECT_EQ(read, rows);
  void* live = nullptr;
  EXPECT_EQ(QXGetFilterAttr(table.id(), 2, &live, true), 0);
  const auto* const bytes = static_cast<const unsigned char*>(live);
  EXPECT_EQ((Ints{bytes[5], bytes[6], bytes[7], bytes[63]}), (Ints{9, 2, QX_ROUND_HALFUP, 9}));
  EXPECT_EQ(table.text("n", 1), "1.25");

  block[0] = QX_DT_STRING;
  expect_failure(RQXSetFilterAttr(table.id(), 1, block.data(), true), QX_ERROR_PARAMETER,
                 "Invalid Parameter : DataType(6)");
  block[0] = QX_DT_DATE;
  EXPECT_EQ(RQXSetFilterAttr(table.id(), 1, block.data(), true), 0);
  EXPECT_EQ(RQXGetFilterType(table.id(), 1), QX_DT_DATE);
}

TEST_F(FiltersTest, CountTheRowsOfEachValue) {
  const TestTable table({{"a", ints({20, 10, kNullInt, 20})}});
  Ints counts(3, 7);
  EXPECT_EQ(QXGetValCount(table.id(), 1, 1, counts.data()), 0);
  EXPECT_EQ(counts, (Ints{1, 1, 2}));
  EXPECT_EQ(QXGetValCount(table.id(), 1, table.add_set({4}), counts.data()), 0);
  EXPECT_EQ(counts, (Ints{0, 0, 1}));
}

// Scale and rounding of decimals

struct RescaleCase {
  const char* name;
  NumericInfo info;
  Texts values;
  int value_count;
};

class NumericInfoTest : public FiltersTest, public testing::WithParamInterface<RescaleCase> {};

TEST_P(NumericInfoTest, RewritesTheValues) {
  const RescaleCase& wanted = GetParam();
  const TestTable table({{"a", decimals(2, {"1.25", "", "1.30", "-1.25", "0.04", "1.25"})}});
  NumericInfo info = wanted.info;
  EXPECT_EQ(RQXSetNumericInfo(table.id(), 1, &info, false), 0);
  NumericInfo read = {};
  char name[256] = "";
  EXPECT_EQ(RQXGetNumericInfo(table.id(), 1, &read, name, false), 0);
  EXPECT_EQ((Ints{read.scale, read.rounding}), (Ints{info.scale, info.rounding}));
  EXPECT_STREQ(name, "a");
  EXPECT_EQ(table.texts("a"), wanted.values);
  _TRFilterInfo record;
  RQXGetFilterInfo(table.id(), 1, &record);
  EXPECT_EQ(record.valueCount, wanted.value_count);
  Column sorted = table.column("a");
  std::sort(sorted.cells.begin(), sorted.cells.end());
  EXPECT_EQ(table.texts("a", table.sort("a")), to_texts(sorted));
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

}  // namespace
}  // namespace qxe::test
