// Text files of one column: filters made of them, appends to filters, and searches for their
// values.
#include <limits.h>

#include "import/column_files.h"
#include "import/import_fixture.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/naive_model.h"
#include "support/random_data.h"

namespace qxe::test {

namespace {

using Texts = std::vector<std::string>;

class OneColumnTest : public ImportTest {
 protected:
  static int add(const TestTable& table, int type, const std::string& data, int rows) {
    write_file("column", data);
    return RQXAddRealFilter2(table.id(), 0, "new", type, rows, nullptr, "", "column");
  }
  static int add_decimals(const TestTable& table, const std::string& data, int rows, int scale,
                          int rounding) {
    write_file("column", data);
    return RQXAddRealFilter2Numeric(table.id(), 0, "new", QX_DT_DECIMAL, rows, nullptr, "",
                                    "column", scale, rounding);
  }
  static int append_column(const TestTable& table, const std::string& column, int type, int pos,
                           int count, const std::string& data) {
    write_file("column", data);
    return RQXAppendRealFilter2(table.id(), table.filter(column), type, pos, count, "", "column");
  }
  static int search(const TestTable& table, const std::string& column, const std::string& values,
                    int set = -1) {
    write_file("column", values);
    return RQXSearchByFieldNValuesFromCSV(table.id(), table.filter(column), set, "", "column");
  }
};

// ---- Filters ------------------------------------------------------------------------------------

TEST_F(OneColumnTest, EachLineIsAValueAsInAnImport) {
  const TestTable table({{"old", ints({1, 2, 3, 4})}});
  ASSERT_GT(add(table, QX_DT_STRING, "a,b\r\n\"c\"\n\nd\"e", 4), 0);
  ASSERT_GT(add(table, QX_DT_INTEGER, "1,000\n-2\n\n4\n", 4), 0);
  ASSERT_GT(add(table, QX_DT_DECIMAL, "1.5\n\"2\"\n", 2), 0);
  ASSERT_GT(add_decimals(table, "1.25\n-1.25\n", 4, 1, QX_ROUND_DOWN), 0);
  EXPECT_EQ(table.texts("new"), (Texts{"a,b", "c", "", "d\"e"}));
  EXPECT_EQ(table.texts("new_#1"), (Texts{"1000", "-2", "NULL", "4"}));
  EXPECT_EQ(table.texts("new_#2"), (Texts{"1.500000", "2.000000", "NULL", "NULL"}));
  EXPECT_EQ(table.texts("new_#3"), (Texts{"1.2", "-1.2", "NULL", "NULL"}));
}

TEST_F(OneColumnTest, LinesBeyondTheRowsDoNotCount) {
  const TestTable table({{"old", ints({1, 2})}});
  ASSERT_GT(add(table, QX_DT_INTEGER, "1\nbad\n", 1), 0);
  ASSERT_GT(add(table, QX_DT_INTEGER, "1\n2\nbad\n", 100), 0);
  ASSERT_GT(add(table, QX_DT_INTEGER, "bad\n", 0), 0);
  EXPECT_EQ(table.texts("new"), (Texts{"1", "NULL"}));
  EXPECT_EQ(table.texts("new_#1"), (Texts{"1", "2"}));
  EXPECT_EQ(table.texts("new_#2"), (Texts{"NULL", "NULL"}));
}

TEST_F(OneColumnTest, RandomColumnsComeBackAsWritten) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    RandomData random(seed);
    const int type = QX_DT_INTEGER + random.below(QX_DT_DECIMAL - QX_DT_INTEGER + 1);
    const int rows = random.chance(30) ? 5000 : random.below(30);
    Column column = random.column(type, rows);
    std::string lines;
    for (const Cell& cell : column.cells) {
      const std::string text = field_text(cell, type);
      lines += random.chance(20) ? "\"" + text + "\"\r\n" : text + "\n";
    }
    const int wanted = random.chance(50) ? rows : random.below(rows + 1);
    const TestTable table = TestTable::existing(RQXAddRealTable("t", rows));
    ASSERT_GT(type == QX_DT_DECIMAL
                  ? add_decimals(table, lines, wanted, column.scale, QX_ROUND_HALFUP)
                  : add(table, type, lines, wanted),
              0);
    std::fill(column.cells.begin() + wanted, column.cells.end(), normal_form({}, type));
    ASSERT_EQ(table.texts("new"), cell_texts(column)) << "seed " << seed;
  }
}

TEST_F(OneColumnTest, TheFirstFaultOfALongFileCounts) {
  const TestTable table = TestTable::existing(RQXAddRealTable("t", 20000));
  std::string data;
  for (int line = 1; line <= 20000; ++line) data += line % 6007 == 0 ? "x\n" : "12345\n";
  expect_failure(add(table, QX_DT_INTEGER, data, 20000), QX_ERROR_INVALID_DATA,
                 "Illegal string data");
  EXPECT_EQ(logged_rows(), std::vector<int>{6007});
  EXPECT_GT(add(table, QX_DT_INTEGER, data, 6006), 0);
  expect_failure(add(table, QX_DT_STRING, std::string(4096, 'x'), 4), QX_ERROR_TEXT_FIELD,
                 "StringSize overflow");
  EXPECT_GT(add(table, QX_DT_STRING, "\"" + std::string(4095, 'x') + "\"", 4), 0);
  EXPECT_EQ(RQXGetNFilter(table.id()), 2);
}

// ---- Appends ------------------------------------------------------------------------------------

TEST_F(OneColumnTest, AppendedDecimalsTakeTheFormOfTheFilter) {
  const TestTable table({{"n", decimals(1, {"1.5"})}});
  NumericInfo info = {1, QX_ROUND_DOWN};
  ASSERT_EQ(RQXSetNumericInfo(table.id(), table.filter("n"), &info, false), 0);
  EXPECT_EQ(append_column(table, "n", QX_DT_DECIMAL, -1, 2, "1.59\n\"2\"\nbad\n"), 2);
  EXPECT_EQ(table.texts("n"), (Texts{"1.5", "1.5", "2.0"}));
}

/// Strings are appended from binary files.
class BinaryStringsTest : public OneColumnTest {
 protected:
  int append_strings(int pos, int count, const std::string& data) const {
    return append_column(table_, "s", QX_DT_STRING, pos, count, data);
  }

  TestTable table_{{{"s", strings({"b"})}}};
};

TEST_F(BinaryStringsTest, AnyBytesButNulAreKept) {
  EXPECT_EQ(append_strings(-1, 4, one_column_file(strings({"a\n,\"", "", "\xff\x01", "b"}))), 4);
  EXPECT_EQ(table_.texts("s"), (Texts{"b", "a\n,\"", "", "\xff\x01", "b"}));
  const std::string with_nul("cut\0off", 7);
  const std::string longest(3000000, 'x');
  EXPECT_EQ(append_strings(1, 2, one_column_file(strings({with_nul, longest}))), 2);
  EXPECT_EQ(table_.text("s", 1), "cut");
  long address = 0;
  int type = 0;
  ASSERT_GE(RQXGetData1ExPtr(table_.id(), 1, 1, 2, &type, &address), 0);
  EXPECT_EQ(reinterpret_cast<const char*>(address), longest);
}

TEST_F(BinaryStringsTest, TrailingBlanksAreCutWhenTheEngineIsSetSo) {
  EXPECT_EQ(table_.rows(search(table_, "s", "b  ")), std::vector<int>{});
  ASSERT_EQ(RQXSetTailSpaceFlag(1), 0);
  EXPECT_EQ(append_strings(-1, 2, one_column_file(strings({"b  ", "  "}))), 2);
  EXPECT_EQ(table_.texts("s"), (Texts{"b", "b", ""}));
  EXPECT_EQ(table_.rows(search(table_, "s", "b  ", 1)), (std::vector<int>{1, 2}));
}

TEST_F(BinaryStringsTest, AFileMayEndBehindAnyRecordAndNowhereElse) {
  const std::string file = one_column_file(strings({"one", "", "three"}));
  const std::vector<size_t> ends = {7, 11, 20};
  for (size_t size = 0; size <= file.size(); ++size) {
    const TestTable table({{"s", strings({"b"})}});
    const int status = append_column(table, "s", QX_DT_STRING, 1, 3, file.substr(0, size));
    const auto end = std::find(ends.begin(), ends.end(), size);
    Texts wanted = {"one", "", "three"};
    if (end == ends.end()) {
      expect_failure(status, QX_ERROR_CATALOG, "Failed to parse catalog");
      wanted = {"b"};
    } else {
      ASSERT_EQ(status, 3);
      std::fill(wanted.begin() + (end - ends.begin()) + 1, wanted.end(), "");
    }
    ASSERT_EQ(table.texts("s"), wanted) << size;
  }
  EXPECT_EQ(append_strings(1, 1, file.substr(0, 9)), 1);  // the cut is behind the rows
  for (const char* const length : {"\x7f\xff\xff\xff", "\xff\xff\xff\xff", "\x01\x01\x01\x01"}) {
    expect_failure(append_strings(-1, 2, std::string(length) + "text"), QX_ERROR_CATALOG);
  }
  EXPECT_EQ(append_strings(-1, 0, ""), 0);
  EXPECT_EQ(table_.texts("s"), Texts{"one"});
}

struct FailingColumn {
  const char* name;
  int filter;
  int type;
  int pos;
  int count;
  const char* file;
  int status;
  const char* message = "";
  Texts log = {};
};

class FailingColumnTest : public ImportTest, public testing::WithParamInterface<FailingColumn> {};

TEST_P(FailingColumnTest, LeavesTheTableAsItWas) {
  const FailingColumn& wanted = GetParam();
  write_file("good", "5\n6\n");
  write_file("bad", "5\n6x\n");
  write_file("long", std::string(4096, '1'));
  const TestTable table({{"a", ints({1, 2})}, {"s", strings({"x", "y"})}});
  const std::string before = table_text(table.id());
  const int status = RQXAppendRealFilter2(table.id(), wanted.filter, wanted.type, wanted.pos,
                                          wanted.count, directory().path().c_str(), wanted.file);
  expect_failure(status, wanted.status, wanted.message);
  EXPECT_EQ(table_text(table.id()), before);
  Texts log = log_lines();
  for (std::string& line : log) line.resize(line.find(directory().path()));
  EXPECT_EQ(log, wanted.log);
}

using F = FailingColumn;
constexpr int kInt = QX_DT_INTEGER;

INSTANTIATE_TEST_SUITE_P(
    All, FailingColumnTest,
    testing::Values(
        F{"NoFilter", 9, kInt, 0, -1, "none", QX_ERROR_NO_FILTER, "No Such Filter: 9"},
        F{"OtherType", 1, QX_DT_DOUBLE, 0, -1, "none", QX_ERROR_APPEND_TYPE,
          "Illegal data type ( Not STRING )"},
        F{"RowZero", 1, kInt, 0, 2, "none", QX_ERROR_PARAMETER, "Invalid Parameter : AppendPos(0)"},
        F{"NegativeCount", 2, QX_DT_STRING, 1, -2, "none", QX_ERROR_PARAMETER,
          "Invalid Parameter : nRows(-2)"},
        F{"TooManyRows", 1, kInt, 2, INT_MAX - 1, "good", QX_ERROR_ROW_SIZE, "RowSize overflow"},
        F{"NoName", 1, kInt, 1, 2, "", QX_ERROR_FILE, "Invalid Parameter : pFileName"},
        F{"NullName", 2, QX_DT_STRING, 1, 2, nullptr, QX_ERROR_FILE,
          "Invalid Parameter : pFileName"},
        F{"NoFile", 1, kInt, 1, 1, "none", QX_ERROR_FILE, "FILE  [", {"FILE  ["}},
        F{"NoBinaryFile", 2, QX_DT_STRING, 1, 1, "none", QX_ERROR_FILE, "FILE  [", {"FILE  ["}},
        F{"BadValue",
          1,
          kInt,
          1,
          2,
          "bad",
          QX_ERROR_INVALID_DATA,
          "Illegal string data",
          {"DATA ERROR \t\t----->\t[INTEGER] = \"6x\"  \t@ Row = 2 in "}},
        F{"LongLine",
          1,
          kInt,
          1,
          2,
          "long",
          QX_ERROR_TEXT_FIELD,
          "StringSize overflow",
          {"DATA OVERFLOW ERROR - MAX_STRING_SIZE EXCEED \t\t @  Row = 1 @ File = "}}),
    case_name<F>);

// ---- Searches -----------------------------------------------------------------------------------

TEST_F(OneColumnTest, ValuesHitTheirRows) {
  const TestTable table({{"a", ints({10, 20, kNullInt, 0, 1234, 20})}});
  const std::pair<std::string, std::vector<int>> cases[] = {
      {"", {}},
      {"20", {2, 6}},
      {"10\n0\r\n20\r\n", {1, 2, 4, 6}},
      {"10,20\r", {1, 2, 6}},
      {"10,,20", {1, 2, 3, 6}},
      {"10\n\n", {1, 3}},
      {"\n", {3}},
      {",10", {1, 3}},
      {"10,\n", {1, 3}},
      {"10,10,11", {1}},
      {"abc", {4}},
      {"20x", {2, 6}},
      {"99999999999", {3}},
      {"\"1,234\",\"10\"", {1, 5}},
      {"\"10\"x,20", {2, 6}},
      {"10,\"20,0\n1234", {1, 5}},
      {std::string(4096, '1') + ",20", {2, 6}},
      {"10," + std::string(5000, '1'), {1}},
      {"10\n\xff,20\n20", {1}}};
  for (const auto& [values, rows] : cases) {
    EXPECT_EQ(table.rows(search(table, "a", values, 1)), rows) << values;
  }
  const int set = table.add_set({6, 3, 1});
  EXPECT_EQ(table.rows(search(table, "a", "10,20")), (std::vector<int>{6, 1}));
  EXPECT_EQ(RQXGetCurrentSetID(table.id()), set);
}

TEST_F(OneColumnTest, RandomListsOfValuesEqualThePlainLoop) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomData random(seed);
    const int rows = random.below(60);
    const Columns columns = random.table(rows);
    const TestTable table(columns);
    const NaiveModel model(columns);
    const std::vector<int> set_rows = random.set_of(rows);
    const int set = table.add_set(set_rows);
    for (const auto& [name, column] : columns) {
      if (name == "time" || name == "datetime" || name == "decimal") continue;
      std::vector<Cell> values(static_cast<size_t>(random.below(40) + 1));
      std::string file;
      for (Cell& value : values) {
        value = normal_form(random.bound(column), column.type);
        file += field_text(value, column.type) + (random.chance(50) ? "," : "\n");
      }
      file.back() = '\n';
      ASSERT_EQ(table.rows(search(table, name, file, set)),
                model.search_values(name, values, set_rows))
          << "seed " << seed << " " << name << "\n"
          << file << to_text(columns);
    }
  }
}

TEST_F(OneColumnTest, TimesAndUnreadableDatesAreSearched) {
  const TestTable table({{"t", times({"12:30:00", "", "01:02:03"})},
                         {"d", dates({"2024/03/01", "", "2024/03/02"})},
                         {"e", datetimes({"2024/03/01 12:00:00", "", "2024/03/02 00:00:00"})}});
  EXPECT_EQ(table.rows(search(table, "t", "1:2:3,12:30")), (std::vector<int>{1, 3}));
  EXPECT_EQ(table.rows(search(table, "d", "2024/3/2,never")), (std::vector<int>{2, 3}));
  EXPECT_EQ(table.rows(search(table, "e", "2024/3/2,2024-03-01 12:00")), (std::vector<int>{1, 3}));
}

TEST_F(OneColumnTest, BadSearchesAreRefused) {
  const TestTable table({{"a", ints({1})}, {"n", decimals(2, {"1.00"})}});
  write_file("v", "1");
  struct {
    int filter, set;
    const char *dir, *file;
    int status;
    const char* text;
  } const cases[] = {{1, 9, "", "v", QX_ERROR_NO_SET_ID, "No Such Set: 9"},
                     {1, 1, nullptr, "v", QX_ERROR_FILE, "Invalid Parameter : pchFilePath"},
                     {1, 1, "", "", QX_ERROR_FILE, "Invalid Parameter : pchFileName"},
                     {1, 1, "nowhere", "v", QX_ERROR_FILE, "FILE  ["},
                     {2, 1, "", "v", QX_ERROR_DATA_TYPE, "Illegal data type  : 8"}};
  for (const auto& [filter, set, dir, file, status, text] : cases) {
    expect_failure(RQXSearchByFieldNValuesFromCSV(table.id(), filter, set, dir, file), status,
                   text);
  }
  EXPECT_EQ(RQXGetNSet(table.id()), 1);
  EXPECT_FALSE(has_log());
}

}  // namespace

}  // namespace qxe::test
