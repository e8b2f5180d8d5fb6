// Appending to one filter: text files of values, binary files of strings.
#include <limits.h>

#include "import/append_fixture.h"
#include "support/case_name.h"

namespace qxe::test {

namespace {

using Texts = std::vector<std::string>;

class AppendFilterTest : public AppendTest {
 protected:
  int append_column(const TestTable& table, const std::string& column, int type, int pos, int count,
                    const std::string& data) const {
    write_file(directory() / "column", data);
    return RQXAppendRealFilter2(table.id(), table.filter(column), type, pos, count,
                                directory().path().c_str(), "column");
  }
};

TEST_F(AppendFilterTest, RowsAreWrittenAsByAPlainLoop) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    RandomData random(seed);
    const int rows = random.below(50);
    Columns columns = random.table(rows);
    const TestTable table(columns);
    const auto chosen = static_cast<size_t>(random.below(static_cast<int>(columns.size())));
    Column& column = columns[chosen].column;
    const int lines = random.chance(20) ? 4000 : random.below(30) + 1;
    const Column added = random.column(column.type, lines);
    const int count = random.chance(50) ? lines : random.below(lines + 10);
    const int pos = random.chance(30) ? -1 : random.below(rows + 10) + 1;
    ASSERT_EQ(
        append_column(table, columns[chosen].name, column.type, pos, count, one_column_file(added)),
        count)
        << "seed " << seed << " " << to_text(drain_ring());
    write_cells(column, pos < 0 ? rows + 1 : pos, first_cells(added, count));
    for (NamedColumn& other : columns) {
      other.column.cells.resize(column.cells.size(), normal_form({}, other.column.type));
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    expect_table(table, columns, random);
  }
}

TEST_F(AppendFilterTest, DecimalsTakeTheFormOfTheFilter) {
  const TestTable table({{"n", decimals(1, {"1.5"})}});
  NumericInfo info = {1, QX_ROUND_DOWN};
  ASSERT_EQ(RQXSetNumericInfo(table.id(), table.filter("n"), &info, false), 0);
  EXPECT_EQ(append_column(table, "n", QX_DT_DECIMAL, -1, 2, "1.59\n\"2\"\n"), 2);
  EXPECT_EQ(table.texts("n"), (Texts{"1.5", "1.5", "2.0"}));
}

TEST_F(AppendFilterTest, LinesBehindTheRowsAreNotLookedAt) {
  const TestTable table({{"a", ints({1})}});
  EXPECT_EQ(append_column(table, "a", QX_DT_INTEGER, -1, 2, "2\n3\nbad\n"), 2);
  EXPECT_EQ(append_column(table, "a", QX_DT_INTEGER, -1, 0, "bad\n"), 0);
  EXPECT_EQ(table.texts("a"), (Texts{"1", "2", "3"}));
}

// ---- Binary files -------------------------------------------------------------------------------

class BinaryStringsTest : public AppendFilterTest {
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
  EXPECT_EQ(append_strings(1, 2, one_column_file(strings({with_nul, "next"}))), 2);
  EXPECT_EQ(table_.texts("s"), (Texts{"cut", "next", "", "\xff\x01", "b"}));
}

TEST_F(BinaryStringsTest, StringsMayBeLong) {
  const std::string longest(3000000, 'x');
  EXPECT_EQ(append_strings(1, 2, one_column_file(strings({longest, "y"}))), 2);
  long address = 0;
  int type = 0;
  ASSERT_GE(RQXGetData1ExPtr(table_.id(), table_.filter("s"), 1, 1, &type, &address), 0);
  EXPECT_EQ(reinterpret_cast<const char*>(address), longest);
  EXPECT_EQ(table_.text("s", 2), "y");
}

TEST_F(BinaryStringsTest, TrailingBlanksAreCutWhenTheEngineIsSetSo) {
  ASSERT_EQ(RQXSetTailSpaceFlag(1), 0);
  EXPECT_EQ(append_strings(-1, 2, one_column_file(strings({"b  ", "  "}))), 2);
  EXPECT_EQ(table_.texts("s"), (Texts{"b", "b", ""}));
  EXPECT_EQ(table_.rows(table_.search("s", QX_OPE_EQ, "b")), (std::vector<int>{1, 2}));
}

TEST_F(BinaryStringsTest, AFileMayEndBehindAnyRecordAndNowhereElse) {
  const Column column = strings({"one", "", "three"});
  const std::string file = one_column_file(column);
  const std::vector<size_t> ends = {7, 11, 20};
  const TableState before = state_of(table_);
  for (size_t size = 0; size <= file.size(); ++size) {
    const int status = append_strings(1, 3, file.substr(0, size));
    const auto end = std::find(ends.begin(), ends.end(), size);
    if (end == ends.end()) {
      expect_failure(status, QX_ERROR_CATALOG, "Failed to parse catalog");
      ASSERT_EQ(state_of(table_), before) << size;
      continue;
    }
    ASSERT_EQ(status, 3);
    Texts wanted = {"one", "", "three"};
    std::fill(wanted.begin() + (end - ends.begin()) + 1, wanted.end(), "");
    ASSERT_EQ(table_.texts("s"), wanted);
    table_ = TestTable({{"s", strings({"b"})}});
  }
  EXPECT_EQ(append_strings(1, 1, file.substr(0, 9)), 1);  // the cut is behind the rows
}

TEST_F(BinaryStringsTest, ALengthBeyondTheFileIsRefused) {
  const TableState before = state_of(table_);
  for (const char* const length : {"\x7f\xff\xff\xff", "\xff\xff\xff\xff", "\x01\x01\x01\x01"}) {
    expect_failure(append_strings(-1, 2, std::string(length) + "text"), QX_ERROR_CATALOG);
  }
  expect_failure(append_strings(-1, 2, ""), QX_ERROR_CATALOG);
  EXPECT_EQ(append_strings(-1, 0, ""), 0);
  EXPECT_EQ(state_of(table_), before);
}

// ---- Failures -----------------------------------------------------------------------------------

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

class FailingColumnTest : public AppendTest, public testing::WithParamInterface<FailingColumn> {};

TEST_P(FailingColumnTest, LeavesTheTableAsItWas) {
  const FailingColumn& wanted = GetParam();
  write_file(directory() / "good", "5\n6\n");
  write_file(directory() / "bad", "5\n6x\n");
  write_file(directory() / "long", std::string(4096, '1'));
  const TestTable table({{"a", ints({1, 2})}, {"s", strings({"x", "y"})}});
  const TableState before = state_of(table);
  const int status = RQXAppendRealFilter2(table.id(), wanted.filter, wanted.type, wanted.pos,
                                          wanted.count, directory().path().c_str(), wanted.file);
  expect_failure(status, wanted.status, wanted.message);
  EXPECT_EQ(state_of(table), before);
  Texts log = log_lines();
  for (std::string& line : log) line.resize(line.find(directory().path()));
  EXPECT_EQ(log, wanted.log);
}

INSTANTIATE_TEST_SUITE_P(
    All, FailingColumnTest,
    testing::Values(
        FailingColumn{"NoFilter", 9, QX_DT_INTEGER, 0, -1, "none", QX_ERROR_NO_FILTER,
                      "No Such Filter: 9"},
        FailingColumn{"OtherType", 1, QX_DT_DOUBLE, 0, -1, "none", QX_ERROR_APPEND_TYPE,
                      "Illegal data type ( Not STRING )"},
        FailingColumn{"RowZero", 1, QX_DT_INTEGER, 0, 2, "none", QX_ERROR_PARAMETER,
                      "Invalid Parameter : AppendPos(0)"},
        FailingColumn{"NegativeCount", 2, QX_DT_STRING, 1, -2, "none", QX_ERROR_PARAMETER,
                      "Invalid Parameter : nRows(-2)"},
        FailingColumn{"TooManyRows", 1, QX_DT_INTEGER, 2, INT_MAX - 1, "good", QX_ERROR_ROW_SIZE,
                      "RowSize overflow"},
        FailingColumn{"NoName", 1, QX_DT_INTEGER, 1, 2, "", QX_ERROR_FILE,
                      "Invalid Parameter : pFileName"},
        FailingColumn{"NullName", 2, QX_DT_STRING, 1, 2, nullptr, QX_ERROR_FILE,
                      "Invalid Parameter : pFileName"},
        FailingColumn{"BadValue",
                      1,
                      QX_DT_INTEGER,
                      1,
                      2,
                      "bad",
                      QX_ERROR_INVALID_DATA,
                      "Illegal string data",
                      {"DATA ERROR \t\t----->\t[INTEGER] = \"6x\"  \t@ Row = 2 in "}},
        FailingColumn{"LongLine",
                      1,
                      QX_DT_INTEGER,
                      1,
                      2,
                      "long",
                      QX_ERROR_TEXT_FIELD,
                      "StringSize overflow",
                      {"DATA OVERFLOW ERROR - MAX_STRING_SIZE EXCEED \t\t @  Row = 1 @ File = "}}),
    case_name<FailingColumn>);

TEST_F(AppendFilterTest, MissingTablesAndFilesAreRefused) {
  const TestTable table({{"a", ints({1})}, {"s", strings({"x"})}});
  expect_failure(RQXAppendRealFilter2(99, 1, QX_DT_INTEGER, 0, -1, nullptr, nullptr),
                 QX_ERROR_NO_TABLE, "No Such Table: 99");
  expect_failure(RQXAppendRealFilter2(table.id(), 1, QX_DT_INTEGER, 1, 1, "", "none"),
                 QX_ERROR_FILE, "FILE  [");
  expect_failure(RQXAppendRealFilter2(table.id(), 2, QX_DT_STRING, 1, 1, "nowhere", "none"),
                 QX_ERROR_FILE, "FILE  [");
  EXPECT_EQ(table.total_rows(), 1);
}

}  // namespace

}  // namespace qxe::test
