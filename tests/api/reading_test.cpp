// Reading rows: single values, row numbers, value numbers, blocks.
#include <string.h>

#include <array>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class ReadingTest : public EngineTest {
 protected:
  static constexpr int kRoot = 1;
};

struct CellCase {
  const char* name;
  Column column;  // one value and one NULL
  int size;
  std::string value;
  std::string null;
};

class ReadingTypesTest : public ReadingTest, public testing::WithParamInterface<CellCase> {};

TEST_P(ReadingTypesTest, GiveTypeSizeAndValueInEveryForm) {
  const CellCase& wanted = GetParam();
  const TestTable table({{"a", wanted.column}});
  const int a = table.filter("a");
  const int null_size = wanted.column.type == QX_DT_STRING ? 0 : wanted.size;
  std::array<char, 4096> from0;
  std::array<char, 4096> from1;
  from0.fill(0);
  from1.fill(0);
  int type = 0;
  EXPECT_EQ(RQXGetData(table.id(), a, kRoot, 0, &type, from0.data()), wanted.size);
  EXPECT_EQ(type, wanted.column.type);
  EXPECT_EQ(QXGetData(table.id(), a, kRoot, 1, &type, from1.data()), null_size);
  for (auto* read : {RQXGetData1, QXGetData1}) {
    std::array<char, 4096> cell;
    cell.fill(0);
    EXPECT_EQ(read(table.id(), a, kRoot, 1, &type, cell.data()), wanted.size);
    EXPECT_EQ(cell, from0);
  }
  std::array<char, 4096> text;
  text.fill(0);
  EXPECT_EQ(RQXGetData1Str(table.id(), a, kRoot, 2, &type, text.data()), null_size);
  EXPECT_EQ(text, from1);
  EXPECT_EQ(table.texts("a"), (std::vector<std::string>{wanted.value, wanted.null}));
}

INSTANTIATE_TEST_SUITE_P(
    All, ReadingTypesTest,
    testing::Values(CellCase{"Integer", ints({-5, kNullInt}), 4, "-5", "NULL"},
                    CellCase{"Double", doubles({1.5, kNullDouble}), 8, "1.5", "NULL"},
                    CellCase{"Date", dates({"2024/02/29", ""}), 8, "2024/02/29", "NULL"},
                    CellCase{"Time", times({"23:59:58", ""}), 8, "23:59:58", "NULL"},
                    CellCase{"DateTime", datetimes({"2024/02/29 12:00:00", ""}), 8,
                             "2024/02/29 12:00:00", "NULL"},
                    CellCase{"String", strings({"text", ""}), 4, "text", ""},
                    CellCase{"Decimal", decimals(3, {"-1.250", ""}), 16, "-1.250", "NULL"}),
    case_name<CellCase>);

TEST_F(ReadingTest, PutsTheInfoBeforeADecimal) {
  const TestTable table({{"a", decimals(3, {"0.005"})}});
  struct {
    NumericInfo info;
    Numeric value;
  } cell = {};
  int type = 0;
  EXPECT_EQ(RQXGetData1Ex(table.id(), table.filter("a"), kRoot, 1, &type, &cell, 64), 16);
  EXPECT_EQ(cell.info.scale, 3);
  EXPECT_EQ(cell.info.rounding, QX_ROUND_HALFUP);
  EXPECT_EQ(cell.value.lo, 5UL);
}

TEST_F(ReadingTest, FollowsTheOrderOfTheSet) {
  const TestTable table({{"a", strings({"one", "two", "three"})}});
  const int set = table.add_set({3, 1});
  EXPECT_EQ(table.texts("a", set), (std::vector<std::string>{"three", "one"}));
  EXPECT_EQ(table.text("a", 2, -1), "one");
  int type = 0;
  int row = 0;
  EXPECT_EQ(RQXGetData(table.id(), QX_FLT_ROWNO, set, 0, &type, &row), 4);
  EXPECT_EQ(type, QX_DT_INTEGER);
  EXPECT_EQ(row, 3);
  EXPECT_EQ(RQXGetRowNo(table.id(), set, 1, &row), 4);
  EXPECT_EQ(row, 1);
  EXPECT_EQ(QXGetRowNo1(table.id(), set, 1, &row), 4);
  EXPECT_EQ(row, 3);
  std::array<int, 4> rows = {7, 7, 7, 7};
  EXPECT_EQ(RQXGetRowNo1M(table.id(), set, 1, 4, rows.data()), 2);
  EXPECT_EQ(rows, (std::array<int, 4>{3, 1, 7, 7}));
  EXPECT_EQ(RQXGetRowNo1M(table.id(), set, 2, 1, rows.data()), 1);
  EXPECT_EQ(rows[0], 1);
  EXPECT_EQ(RQXGetRowNo1M(table.id(), set, 1, 0, rows.data()), 0);
}

TEST_F(ReadingTest, CutsLongStrings) {
  const TestTable table({{"a", strings({std::string(5000, 'x')})}});
  const int a = table.filter("a");
  std::array<char, 6000> text;
  int type = 0;
  EXPECT_EQ(RQXGetData1(table.id(), a, kRoot, 1, &type, text.data()), 4095);
  EXPECT_EQ(strlen(text.data()), 4095U);
  EXPECT_EQ(RQXGetData1Ex(table.id(), a, kRoot, 1, &type, text.data(), 10), 9);
  EXPECT_STREQ(text.data(), "xxxxxxxxx");
  EXPECT_EQ(RQXGetData1Ex(table.id(), a, kRoot, 1, &type, text.data(), 6000), 5000);
  long address = 0;
  EXPECT_EQ(RQXGetData1ExPtr(table.id(), a, kRoot, 1, &type, &address), 5000);
  EXPECT_EQ(strlen(reinterpret_cast<const char*>(address)), 5000U);
}

TEST_F(ReadingTest, GivesTheAddressOfAValue) {
  const TestTable table({{"a", doubles({1.5, kNullDouble})}});
  int type = 0;
  long address = 0;
  EXPECT_EQ(RQXGetData1ExPtr(table.id(), table.filter("a"), kRoot, 1, &type, &address), 8);
  EXPECT_EQ(*reinterpret_cast<const double*>(address), 1.5);
  EXPECT_EQ(RQXGetData1ExPtr(table.id(), QX_FLT_ROWNO, kRoot, 2, &type, &address), 4);
  EXPECT_EQ(*reinterpret_cast<const int*>(address), 2);
  std::array<long, 128> addresses;
  int count = 0;
  EXPECT_EQ(
      RQXGetData1MExPtr(table.id(), table.filter("a"), kRoot, 1, &type, &count, addresses.data()),
      8);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(*reinterpret_cast<const double*>(addresses[1]), kNullDouble);
}

TEST_F(ReadingTest, ListsValueNumbers) {
  const TestTable table({{"a", ints({30, kNullInt, 10, 30})}});
  std::array<int, 4> numbers = {7, 7, 7, 7};
  EXPECT_EQ(RQXGetVNoList(table.id(), table.filter("a"), kRoot, numbers.data()), 4);
  EXPECT_EQ(numbers, (std::array<int, 4>{2, 0, 1, 2}));
  const int set = table.add_set({3, 4});
  EXPECT_EQ(RQXGetVNoList(table.id(), table.filter("a"), set, numbers.data()), 2);
  EXPECT_EQ(numbers, (std::array<int, 4>{1, 2, 1, 2}));
  EXPECT_EQ(RQXGetVNoList(table.id(), table.filter("a"), table.add_set({}), numbers.data()), 0);
}

// Blocks

/// One block of either of the two forms with packed strings.
struct BlockRead {
  BlockRead(const TestTable& table, const std::string& column, int first, int size = 0) {
    const int a = table.filter(column);
    status = size == 0
                 ? RQXGetData1M(table.id(), a, -1, first, &type, &count, values, strings)
                 : RQXGetData1MEx(table.id(), a, -1, first, &type, &count, values, strings, size);
  }
  int integer(int i) const {
    int value = 0;
    memcpy(&value, values + 4 * i, sizeof value);
    return value;
  }
  std::string text(int i) const { return strings + integer(i); }

  int status = 0;
  int type = 7;
  int count = 7;
  alignas(Numeric) char values[1024];
  char strings[4096];
};

Column counting(int type, int rows) {
  Column column{type, {}, 2};
  for (int i = 1; i <= rows; ++i) {
    if (type == QX_DT_INTEGER) column.cells.emplace_back(i);
    if (type == QX_DT_DOUBLE) column.cells.emplace_back(i + 0.5);
    if (type == QX_DT_STRING) column.cells.emplace_back(std::string(100, 'x'));
    if (type == QX_DT_DECIMAL) column.cells.emplace_back(Decimal{2, i});
  }
  return column;
}

TEST_F(ReadingTest, FillsABlockOfNumbers) {
  const TestTable table({{"i", counting(QX_DT_INTEGER, 200)}, {"d", counting(QX_DT_DOUBLE, 200)}});
  const BlockRead integers(table, "i", 1);
  EXPECT_EQ(integers.status, 4);
  EXPECT_EQ(integers.type, QX_DT_INTEGER);
  EXPECT_EQ(integers.count, 128);
  EXPECT_EQ(integers.integer(0), 1);
  EXPECT_EQ(integers.integer(127), 128);
  const BlockRead rest(table, "d", 129);
  EXPECT_EQ(rest.status, 8);
  EXPECT_EQ(rest.count, 72);
  double last = 0;
  memcpy(&last, rest.values + 8 * 71, sizeof last);
  EXPECT_EQ(last, 200.5);
  const std::vector<RingEntry> entries = ring();
  ASSERT_EQ(entries.size(), 1U);  // the end of the set
  EXPECT_EQ(entries[0].code, QX_ERROR_NO_SET);
}

TEST_F(ReadingTest, PacksAsManyStringsAsFit) {
  const TestTable table({{"s", counting(QX_DT_STRING, 200)}});
  const BlockRead whole(table, "s", 1);
  EXPECT_EQ(whole.status, 100);
  EXPECT_EQ(whole.count, 40);
  EXPECT_EQ(whole.integer(39), 39 * 101);
  EXPECT_EQ(whole.text(39), std::string(100, 'x'));
  const BlockRead cut(table, "s", 1, 4);
  EXPECT_EQ(cut.status, 3);
  EXPECT_EQ(cut.count, 128);
  EXPECT_EQ(cut.text(127), "xxx");
}

TEST_F(ReadingTest, PacksTheLongestStringThatFitsABlock) {
  const TestTable table({{"s", strings({std::string(4095, 'x'), std::string(4500, 'y')})}});
  EXPECT_EQ(BlockRead(table, "s", 1).count, 1);
  EXPECT_EQ(BlockRead(table, "s", 1).text(0).size(), 4095U);
  EXPECT_EQ(BlockRead(table, "s", 2, 6000).count, 0);
  EXPECT_EQ(BlockRead(table, "s", 2).text(0).size(), 4095U);  // reads cut it
}

TEST_F(ReadingTest, PacksSixtyThreeDecimalsBehindOneInfo) {
  const TestTable table({{"n", counting(QX_DT_DECIMAL, 100)}});
  const BlockRead block(table, "n", 1);
  EXPECT_EQ(block.status, 16);
  EXPECT_EQ(block.count, 63);
  NumericInfo info = {};
  Numeric last = {};
  memcpy(&info, block.values, sizeof info);
  memcpy(&last, block.values + sizeof info + 62 * sizeof last, sizeof last);
  EXPECT_EQ(info.scale, 2);
  EXPECT_EQ(last.lo, 63UL);
}

TEST_F(ReadingTest, BlockBehindTheSetFails) {
  const TestTable table({{"i", ints({1, 2})}});
  const BlockRead block(table, "i", 3);
  EXPECT_EQ(block.status, QX_ERROR_NO_SET);
  EXPECT_EQ(block.count, 0);
  EXPECT_EQ(block.type, 7);
}

TEST_F(ReadingTest, BlockMayBeginWithAnEmptyString) {
  const TestTable table({{"s", strings({"", "b"})}});
  const BlockRead block(table, "s", 1);
  EXPECT_EQ(block.status, 0);
  EXPECT_EQ(block.count, 2);
  EXPECT_EQ(block.text(1), "b");
}

}  // namespace
}  // namespace qxe::test
