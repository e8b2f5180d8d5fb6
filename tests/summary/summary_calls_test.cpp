// Summaries: what calls refuse, names of categories, how summaries end, and the records and totals
// of their tables.
#include <functional>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

constexpr char kHandleWords[] = "Invalid Parameter : SumHandle";

class SummaryTest : public EngineTest {
 protected:
  static int open(int handle, const TestTable& table, const std::vector<std::string>& dimensions,
                  const std::string& measure = "", int set = -1) {
    std::vector<_TRDimensionDef> records;
    for (const std::string& name : dimensions) records.push_back({table.filter(name), ""});
    return RQXSummaryOpen(handle, table.id(), set, static_cast<int>(records.size()), records.data(),
                          measure.empty() ? 0 : table.filter(measure));
  }

  static int exec(int handle, int mask = 15) {
    int done = 0;
    require(RQXSummaryExec(handle, mask, &done), "RQXSummaryExec");
    return done;
  }

  static int count(int handle, std::vector<int> coordinates) {
    int type = 0, rows = -1;
    char value[4096];
    const int status =
        RQXSummaryRead(handle, QX_SUM_COUNT, coordinates.data(), &type, &type, &rows, value);
    return status < 0 ? status : rows;
  }

  static int status(int handle) {
    int out = 0;
    return RQXSummaryStatus(handle, &out, &out, &out, &out, &out);
  }

  const TestTable table_{{{"city", strings({"Oslo", "Lima", "", "Oslo", "Lima", "Oslo"})},
                          {"year", ints({2001, 2001, 2002, kNullInt, 2002, 2001})},
                          {"price", doubles({1.5, 2.5, 4, 8, kNullDouble, 16})},
                          {"amount", decimals(2, {"1.25", "-0.50", "", "3.00", "7.75", "0.01"})}},
                         "sales"};
};

// What calls refuse

struct RefusedCase {
  const char* name;
  std::function<int(const TestTable&)> call;
  int code;
  const char* text;
};

int dummy[4];
char text_out[4096];
void* address = nullptr;
_TRDimensionDef by_city[40] = {{1, ""}};
_TRDimensionDef unknown[] = {{9, ""}};
_TDimensionDef plain[40] = {{1, 0, nullptr, nullptr, nullptr}};
int map_of_three[] = {0, 1, 2};
char first_name[] = "a";
char* two_names[] = {first_name, nullptr};

int fails(int, int, int, int, int, int, char**) {
  return QX_ERROR_PARAMETER;
}
int open_defined(const TestTable& table, _TDimensionDef definition) {
  return QXSummaryOpen(1, table.id(), -1, 1, &definition, 0);
}
int read(int handle, int type, int coordinate) {
  return RQXSummaryRead(handle, type, &coordinate, dummy, dummy + 1, dummy + 2, text_out);
}

/// Handle 0 is open, 2 executed for counts and maxima, 5 free.
class RefusedSummaryTest : public SummaryTest, public testing::WithParamInterface<RefusedCase> {
 protected:
  RefusedSummaryTest() {
    open(0, table_, {"city"});
    open(2, table_, {"city"}, "price");
    exec(2, 3);
  }
};

TEST_P(RefusedSummaryTest, TellsWhyAndChangesNothing) {
  expect_failure(GetParam().call(table_), GetParam().code, GetParam().text);
  EXPECT_EQ(status(0), 1);
  EXPECT_EQ(status(1), 0);
  EXPECT_EQ(count(2, {2}), 3);
  EXPECT_EQ(RQXGetNTable(), 1);
}

#define QXE_CASE(name, code, text, ...)                                            \
  RefusedCase {                                                                    \
#name, [](const TestTable& table) { (void)table; return __VA_ARGS__; }, code, text \
  }

INSTANTIATE_TEST_SUITE_P(
    Open, RefusedSummaryTest,
    testing::Values(QXE_CASE(HandleAbove7, QX_ERROR_SUMMARY_HANDLE, kHandleWords,
                             RQXSummaryOpen(8, table.id(), -1, 1, by_city, 0)),
                    QXE_CASE(HandleBelow0, QX_ERROR_SUMMARY_HANDLE, kHandleWords,
                             QXSummaryOpen(-1, table.id(), -1, 1, plain, 0)),
                    QXE_CASE(HandleInUse, QX_ERROR_SUMMARY_IN_USE, kHandleWords,
                             RQXSummaryOpen(2, table.id(), -1, 1, by_city, 0)),
                    QXE_CASE(Table, QX_ERROR_NO_TABLE, "Failed to open",
                             RQXSummaryOpen(1, 99, -1, 1, by_city, 0)),
                    QXE_CASE(Set, QX_ERROR_NO_SET, "Failed to open",
                             RQXSummaryOpen(1, table.id(), 99, 1, by_city, 0)),
                    QXE_CASE(Measure, QX_ERROR_NO_FILTER, "Failed to open",
                             RQXSummaryOpen(1, table.id(), -1, 1, by_city, 9)),
                    QXE_CASE(Dimension, QX_ERROR_NO_FILTER, "Failed to open",
                             RQXSummaryOpen(1, table.id(), -1, 1, unknown, 0)),
                    QXE_CASE(Dimensions33, QX_ERROR_SUMMARY_PARAMETER,
                             "Invalid Parameter : nDim(33)",
                             RQXSummaryOpen(1, table.id(), -1, 33, by_city, 0)),
                    QXE_CASE(DimensionsBelow0, QX_ERROR_SUMMARY_PARAMETER,
                             "Invalid Parameter : nDim(-1)",
                             RQXSummaryOpen(1, table.id(), -1, -1, by_city, 0)),
                    QXE_CASE(PlainDimensions33, QX_ERROR_PARAMETER, "Failed to open",
                             QXSummaryOpen(1, table.id(), -1, 33, plain, 0))),
    case_name<RefusedCase>);

INSTANTIATE_TEST_SUITE_P(
    Definition, RefusedSummaryTest,
    testing::Values(QXE_CASE(NoCategory, QX_ERROR_PARAMETER, "Failed to open",
                             open_defined(table, {1, 0, map_of_three, two_names, nullptr})),
                    QXE_CASE(NoNames, QX_ERROR_PARAMETER, "Failed to open",
                             open_defined(table, {1, 3, map_of_three, nullptr, nullptr})),
                    QXE_CASE(NamesTwice, QX_ERROR_PARAMETER, "Failed to open",
                             open_defined(table, {1, 2, nullptr, two_names, fails})),
                    QXE_CASE(CategoryTooHigh, QX_ERROR_PARAMETER, "Failed to open",
                             open_defined(table, {1, 2, map_of_three, two_names, nullptr})),
                    QXE_CASE(TooManyCategories, QX_ERROR_CUBE_SIZE, "Failed to open",
                             open_defined(table, {1, 10'000'001, map_of_three, nullptr, fails}))),
    case_name<RefusedCase>);

INSTANTIATE_TEST_SUITE_P(
    Use, RefusedSummaryTest,
    testing::Values(
        QXE_CASE(ExecHandle, QX_ERROR_SUMMARY_HANDLE, kHandleWords, RQXSummaryExec(8, 1, dummy)),
        QXE_CASE(ExecFree, QX_ERROR_NO_SUMMARY, kHandleWords, QXSummaryExec(5, 1, dummy)),
        QXE_CASE(ExecTwice, QX_ERROR_SUMMARY_DONE, kHandleWords, RQXSummaryExec(2, 8, dummy)),
        QXE_CASE(ReadFree, QX_ERROR_NO_SUMMARY, kHandleWords, read(5, 1, 0)),
        QXE_CASE(ReadType, QX_ERROR_PARAMETER, "Invalid Parameter : SumType(3)", read(2, 3, 0)),
        QXE_CASE(ReadAverage, QX_ERROR_PARAMETER, "Invalid Parameter : SumType(16)",
                 read(2, 16, 0)),
        QXE_CASE(ReadNotDone, QX_ERROR_ROW_RANGE, "Invalid Parameter : SumType(8)", read(2, 8, 0)),
        QXE_CASE(ReadNotExecuted, QX_ERROR_ROW_RANGE, "Invalid Parameter : SumType(1)",
                 read(0, 1, 9)),
        QXE_CASE(ReadBelow, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : Dims(",
                 read(2, 2, -1)),
        QXE_CASE(ReadAbove, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : Dims(", read(2, 1, 3)),
        QXE_CASE(ReadNowhere, QX_ERROR_PARAMETER, "Invalid Parameter : NULL",
                 QXSummaryRead(2, 1, nullptr, dummy, dummy, dummy, &address)),
        QXE_CASE(NameOfFree, QX_ERROR_NO_SUMMARY, kHandleWords, RQXCategoryRead(5, 0, 0, text_out)),
        QXE_CASE(NameDimension, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : DimNo",
                 RQXCategoryRead(0, 1, 0, text_out)),
        QXE_CASE(NameCategory, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : CatNo",
                 RQXCategoryRead(0, 0, 3, text_out)),
        QXE_CASE(StatusHandle, QX_ERROR_SUMMARY_HANDLE, kHandleWords,
                 RQXSummaryStatus(-1, dummy, dummy, dummy, dummy, dummy)),
        QXE_CASE(OutputNotExecuted, QX_ERROR_ROW_RANGE, kHandleWords,
                 RQXSummaryIntoRealTable(0, 1)),
        QXE_CASE(OutputFree, QX_ERROR_NO_SUMMARY, kHandleWords, QXSummaryIntoRealTable(5, 1)),
        QXE_CASE(AppendNotExecuted, QX_ERROR_ROW_RANGE, kHandleWords,
                 RQXAppendSummaryToRealTable(0, table.id(), 1, 0)),
        QXE_CASE(AppendRows, QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(3)",
                 RQXAppendSummaryToRealTable(2, table.id(), 1, 0)),
        QXE_CASE(CloseHandle, QX_ERROR_SUMMARY_HANDLE, kHandleWords, RQXSummaryClose(8))),
    case_name<RefusedCase>);

#undef QXE_CASE

TEST_F(SummaryTest, AppendingToAnUnknownTableIsLoggedAsAnUnknownFailure) {
  open(0, table_, {"city"});
  exec(0);
  expect_failure_logged_as(RQXAppendSummaryToRealTable(0, 99, 1, 0), QX_ERROR_NO_TABLE,
                           QX_ERROR_UNKNOWN, "No Such Table: 99");
}

TEST_F(SummaryTest, HasTenMillionCellsAtMost) {
  std::vector<int> many, more;
  for (int i = 0; i < 3999; ++i) many.push_back(i);
  for (int i = 0; i < 3999; ++i) more.push_back(i % 2499);
  const TestTable table({{"a", ints(many)}, {"b", ints(more)}});
  ASSERT_EQ(hex(open(0, table, {"a", "b"})), hex(0));  // 4,000 times 2,500 with NULL
  EXPECT_EQ(exec(0), 1);
  EXPECT_EQ(count(0, {3999, 2499}), 0);
  EXPECT_EQ(count(0, {1, 1}), 1);
  const int all = table.set_id(TestTable::kAllRows);
  int value = 2499;
  require(RQXOverwriteRealEx(table.id(), table.filter("b"), all, 3999, 1, &value), "overwrite");
  expect_failure(open(1, table, {"a", "b"}), QX_ERROR_CUBE_SIZE, "Failed to open");
  EXPECT_EQ(status(1), 0);
}

// Single results

TEST_F(SummaryTest, DecimalsComeWithTheirForm) {
  open(0, table_, {"city"}, "amount");
  exec(0);
  int oslo[] = {2};
  int measure = 0, type = 0, rows = 0;
  struct {
    Numeric value;
    NumericInfo info;
  } sum;
  ASSERT_EQ(RQXSummaryRead(0, QX_SUM_SUM, oslo, &measure, &type, &rows, &sum), 0);
  EXPECT_EQ(type, QX_DT_DECIMAL);
  EXPECT_EQ(sum.value.lo, 426U);
  EXPECT_EQ(sum.info.scale, 2);
  // The plain form says double and hands out the decimal all the same.
  void* value = nullptr;
  ASSERT_EQ(QXSummaryRead(0, QX_SUM_SUM, oslo, &measure, &type, &rows, &value), 0);
  EXPECT_EQ(type, QX_DT_DOUBLE);
  EXPECT_EQ(measure, QX_DT_DECIMAL);
  EXPECT_EQ(static_cast<Numeric*>(value)->lo, 426U);
  int nowhere[] = {0};
  ASSERT_EQ(QXSummaryRead(0, QX_SUM_MAX, nowhere, &measure, &type, &rows, &value), 0);
  EXPECT_EQ(rows, 0);
  EXPECT_EQ(value, nullptr);
}

// Names of categories

TEST_F(SummaryTest, NamesOfCategoriesAreTheValues) {
  const std::string long_name(300, 'n');
  const TestTable table({{"int", ints({-5})},
                         {"double", doubles({2.5})},
                         {"date", dates({"2024/03/01"})},
                         {"time", times({"12:30:45"})},
                         {"string", strings({long_name})},
                         {"datetime", datetimes({"2024/03/01 12:30:45"})},
                         {"decimal", decimals(2, {"-1.25"})}});
  ASSERT_EQ(open(0, table, {"int", "double", "date", "time", "string", "datetime", "decimal"}), 0);
  const std::vector<std::string> names = {
      "-5", "     2.500", "2024/03/01", "12:30:45", long_name, "2024/03/01 12:30:45", "-1.25"};
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(RQXCategoryReadR1(0, i, 1), names[static_cast<size_t>(i)]);
  }
  EXPECT_STREQ(RQXCategoryReadR1(0, 0, 0), "-2147483648");
  EXPECT_STREQ(RQXCategoryReadR1(0, 2, 0), "");
  EXPECT_STREQ(RQXCategoryReadR1(0, 4, 0), "");
  EXPECT_STREQ(RQXCategoryReadR1(0, 6, 0), "####");
  EXPECT_STREQ(RQXCategoryReadR1(0, 7, 0), "");
  char name[128];
  ASSERT_EQ(RQXCategoryRead(0, 4, 1, name), 0);
  EXPECT_EQ(name, std::string(127, 'n'));
}

int named_by_arguments(int handle, int table, int dimNo, int filter, int nCategory, int catNo,
                       char** name) {
  static char text[80];
  snprintf(text, sizeof text, "%d %d %d %d %d %d", handle, table, dimNo, filter, nCategory, catNo);
  *name = text;
  return 0;
}

TEST_F(SummaryTest, NamesComeFromTheCaller) {
  char none[] = "none", big[] = "big";
  char* names[] = {none, big, nullptr};
  int map[] = {0, 1, 0};
  _TDimensionDef dims[] = {{table_.filter("city"), 3, map, names, nullptr},
                           {table_.filter("year"), 0, nullptr, nullptr, named_by_arguments}};
  ASSERT_EQ(hex(QXSummaryOpen(6, table_.id(), -1, 2, dims, 0)), hex(0));
  none[0] = 'N';  // names and maps have been copied
  map[0] = 2;
  EXPECT_STREQ(RQXCategoryReadR1(6, 0, 0), "none");
  EXPECT_STREQ(RQXCategoryReadR1(6, 0, 2), "");
  char* name = nullptr;
  ASSERT_EQ(QXCategoryRead(6, 1, 2, &name), 0);
  EXPECT_EQ(std::string(name), "6 " + std::to_string(table_.id()) + " 1 2 3 2");

  int table = 0, set = 0, nDim = 0, measure = 0, done = 0;
  _TDimensionDef found[QX_MAX_DIM];
  ASSERT_EQ(QXSummaryStatus(6, &table, &set, &nDim, found, &measure, &done), 1);
  EXPECT_EQ(found[0].nCategory, 3);
  EXPECT_EQ(found[0].piCatNo[1], 1);
  EXPECT_STREQ(found[0].ppCatName[1], "big");
  EXPECT_EQ(found[1].nCategory, 3);
  EXPECT_EQ(found[1].piCatNo, nullptr);
  EXPECT_EQ(found[1].pfnCatName, named_by_arguments);
  EXPECT_EQ(found[2].FilterID, 0);
}

TEST_F(SummaryTest, AFailingNameFunctionAbortsTheTable) {
  int map[] = {0, 0, 0};
  _TDimensionDef dims[] = {{table_.filter("city"), 1, map, nullptr, fails}};
  ASSERT_EQ(hex(QXSummaryOpen(6, table_.id(), -1, 1, dims, 0)), hex(0));
  exec(6);
  expect_failure(RQXCategoryRead(6, 0, 0, text_out), QX_ERROR_PARAMETER,
                 "Invalid Parameter : CallBackRet");
  expect_failure(RQXSummaryIntoRealTable(6, 0), QX_ERROR_PARAMETER,
                 "Invalid Parameter : CallBackRet");
  EXPECT_EQ(RQXGetNTable(), 1);
}

// Output

TEST_F(SummaryTest, OutputTablesAndColumnsGetFreeNames) {
  const TestTable copy({{"a", ints({1, 2})}}, "sales");
  EXPECT_STREQ(RQXGetTableNameR1(copy.id()), "sales_#1");
  open(0, copy, {"a", "a"});
  exec(0);
  const TestTable output = TestTable::existing(RQXSummaryIntoRealTable(0, 1));
  EXPECT_STREQ(RQXGetTableNameR1(output.id()), "XTBL_sales_#1");
  EXPECT_STREQ(RQXGetFilterNameR1(output.id(), 1), "a");
  EXPECT_STREQ(RQXGetFilterNameR1(output.id(), 2), "a_#1");
  EXPECT_EQ(RQXAppendSummaryToRealTable(0, output.id(), 31, 1), 0);
  EXPECT_STREQ(RQXGetFilterNameR1(output.id(), 4), "COUNT_#1");
  EXPECT_STREQ(RQXGetTableNameR1(RQXSummaryIntoRealTable(0, 0)), "XTBL_sales_#1_#1");
}

// How summaries end

TEST_F(SummaryTest, EndWithTheirTable) {
  const TestTable other({{"a", ints({1})}});
  const auto open_all = [&](int table_count) {
    EXPECT_EQ(open(0, table_, {"city"}), 0);
    EXPECT_EQ(open(1, table_, {"year"}, "price"), 0);
    EXPECT_EQ(RQXGetNTable(), table_count);
  };
  open_all(2);
  EXPECT_EQ(open(7, other, {"a"}), 0);
  EXPECT_EQ(RQXDeleteTable(table_.id()), 0);
  EXPECT_EQ(status(0) + status(1), 0);
  EXPECT_EQ(status(7), 1);
  EXPECT_EQ(exec(7), 1);
  EXPECT_EQ(RQXClearDB(), 0);
  EXPECT_EQ(status(7), 0);
  const TestTable again({{"a", ints({1})}});
  EXPECT_EQ(open(7, again, {"a"}), 0);
  EXPECT_EQ(RQXReInitializeMS(), 0);
  EXPECT_EQ(status(7), 0);
  expect_failure(RQXSummaryExec(7, 1, dummy), QX_ERROR_NO_SUMMARY, kHandleWords);
  const TestTable saved({{"a", ints({1})}});
  char place[4096] = "";
  EXPECT_EQ(RQXSaveDBAs(place, "saved"), 0);
  for (const char* const name : {"saved", "none"}) {  // a load that fails leaves no table either
    EXPECT_EQ(open(7, saved, {"a"}), 0);
    EXPECT_EQ(RQXLoadDB("", name) < 0, std::string(name) == "none");
    EXPECT_EQ(status(7), 0);
  }
  ring();
  EXPECT_EQ(RQXSummaryClose(7), 0);
}

/// 200 values, of which the set has 3: the summary works on a table of its own.
class SparseSummaryTest : public SummaryTest {
 protected:
  SparseSummaryTest() {
    std::vector<int> keys;
    for (int i = 0; i < 200; ++i) keys.push_back(i);
    sparse_ = std::make_unique<TestTable>(Columns{{"skipped", ints(keys)}, {"key", ints(keys)}},
                                          "sparse");
    set_ = sparse_->add_set({11, 13, 12});
    EXPECT_EQ(hex(open(4, *sparse_, {"key", "key"}, "key", set_)), hex(0));
  }

  int working_table() const {
    int table = 0, out = 0;
    EXPECT_EQ(RQXSummaryStatus(4, &table, &out, &out, &out, &out), 1);
    return table;
  }

  std::unique_ptr<TestTable> sparse_;
  int set_ = 0;
};

TEST_F(SparseSummaryTest, WorksOnATableOfItsOwn) {
  EXPECT_EQ(RQXGetNTable(), 3);
  EXPECT_NE(working_table(), sparse_->id());
  EXPECT_STREQ(RQXCategoryReadR1(4, 0, 3), "12");
  EXPECT_EQ(exec(4), 15);
  EXPECT_EQ(count(4, {3, 3}), 1);
  EXPECT_EQ(count(4, {3, 2}), 0);
  const int output = RQXSummaryIntoRealTable(4, 1);
  EXPECT_STREQ(RQXGetTableNameR1(output), "XTBL_sparse");
  EXPECT_EQ(TestTable::existing(output).texts("key"), (std::vector<std::string>{"10", "11", "12"}));
  EXPECT_EQ(RQXSummaryClose(4), 0);
  EXPECT_EQ(RQXGetNTable(), 3);  // the output has taken its place
}

TEST_F(SparseSummaryTest, EndsWithEitherTable) {
  EXPECT_EQ(RQXDeleteTable(working_table()), 0);
  EXPECT_EQ(status(4), 0);
  EXPECT_EQ(RQXGetNTable(), 2);
  EXPECT_EQ(hex(open(4, *sparse_, {"key"}, "", set_)), hex(0));
  EXPECT_EQ(RQXDeleteTable(sparse_->id()), 0);
  EXPECT_EQ(status(4), 0);
  EXPECT_EQ(RQXGetNTable(), 1);
}

TEST_F(SparseSummaryTest, EndsWithTheDatabase) {
  EXPECT_EQ(RQXClearDB(), 0);
  EXPECT_EQ(status(4), 0);
  EXPECT_EQ(RQXGetNTable(), 0);
}

TEST_F(SparseSummaryTest, FailuresLeaveNoTable) {
  const TestTable square({{"a", sparse_->column("key")}, {"b", sparse_->column("key")}});
  const int tables = RQXGetNTable();
  const std::vector<int> rows = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  _TRDimensionDef eight[8];  // of 10 categories each
  for (_TRDimensionDef& dimension : eight) dimension.FilterID = 1;
  expect_failure(RQXSummaryOpen(0, square.id(), square.add_set(rows), 8, eight, 0),
                 QX_ERROR_CUBE_SIZE, "Failed to open");
  EXPECT_EQ(RQXGetNTable(), tables);
  EXPECT_EQ(status(0), 0);
}

// Tables that change under an open summary

class ChangedTableTest : public SummaryTest {
 protected:
  /// Writes a value that the column did not have, into row 1.
  void change(const std::string& column, const Cell& value) const {
    const int filter = table_.filter(column);
    RawValues raw(require(RQXGetFilterType(table_.id(), filter), "type"), {value});
    require(RQXOverwriteRealEx(table_.id(), filter, -1, 1, 1, raw.data()), "overwrite");
  }
};

TEST_F(ChangedTableTest, WhatWasOpenedFollows) {
  open(0, table_, {"city"});
  change("city", "Aden");
  EXPECT_EQ(exec(0), 1);
  EXPECT_STREQ(RQXCategoryReadR1(0, 0, 1), "Aden");
  EXPECT_EQ(count(0, {1}), 1);
  EXPECT_EQ(count(0, {3}), 2);
}

TEST_F(ChangedTableTest, WhatWasComputedKeepsCountsAndSums) {
  open(0, table_, {"city"}, "price");
  exec(0);
  change("price", 0.25);
  int oslo[] = {2};
  double sum = 0;
  EXPECT_EQ(RQXSummaryRead(0, QX_SUM_SUM, oslo, dummy, dummy, dummy, &sum), 0);
  EXPECT_EQ(sum, 25.5);
  expect_failure(read(0, QX_SUM_MAX, 2), QX_ERROR_ROW_RANGE, kHandleWords);
  expect_failure(RQXSummaryIntoRealTable(0, 1), QX_ERROR_ROW_RANGE, kHandleWords);
  EXPECT_GE(RQXSummaryIntoRealTable2(0, 9, 1), 0);
  change("city", "Aden");
  expect_failure(RQXSummaryIntoRealTable2(0, 9, 1), QX_ERROR_ROW_RANGE, kHandleWords);
  expect_failure(RQXCategoryRead(0, 0, 0, text_out), QX_ERROR_ROW_RANGE, kHandleWords);
  EXPECT_EQ(count(0, {2}), 3);
}

TEST_F(ChangedTableTest, AMapOfValuesCannotFollow) {
  int map[] = {0, 1, 1};
  _TDimensionDef dims[] = {{table_.filter("city"), 2, map, nullptr, named_by_arguments}};
  ASSERT_EQ(QXSummaryOpen(0, table_.id(), -1, 1, dims, 0), 0);
  change("city", "Aden");
  expect_failure(RQXSummaryExec(0, 1, dummy), QX_ERROR_ROW_RANGE, kHandleWords);
  EXPECT_EQ(status(0), 0);  // a failed computation closes
}

TEST_F(ChangedTableTest, DeletedPartsAreMissed) {
  open(0, table_, {"city"}, "price");
  open(1, table_, {"city"}, "year");
  exec(1);
  const int set = table_.add_set({1, 2});
  open(2, table_, {"city"}, "", set);
  ASSERT_EQ(RQXDeleteSet(table_.id(), set), 0);
  expect_failure(RQXSummaryExec(2, 1, dummy), QX_ERROR_NO_SET, "Failed to open");
  ASSERT_EQ(RQXDeleteRealFilter(table_.id(), table_.filter("price")), 0);
  expect_failure(RQXSummaryExec(0, 1, dummy), QX_ERROR_NO_FILTER, "Failed to open");
  ASSERT_EQ(RQXDeleteRealFilter(table_.id(), table_.filter("city")), 0);
  EXPECT_EQ(count(1, {2}), 2);  // one of the three has no year
  expect_failure(RQXSummaryIntoRealTable(1, 1), QX_ERROR_NO_FILTER, "No Such Filter: 1");
  EXPECT_EQ(RQXGetNTable(), 1);
}

// Records and totals

class SumColumnsTest : public SummaryTest {
 protected:
  int set_record(int filter, int role, int sum_type = 0, int ordinal = 0) const {
    _TSumFilterAttr record{};
    record.role = static_cast<unsigned char>(role);
    record.sumType = static_cast<unsigned char>(sum_type);
    record.ordinal = static_cast<unsigned char>(ordinal);
    return RQXSetSumFilterAttr(table_.id(), filter, &record);
  }

  double total(int filter, int mode, int code = 0, int set = 1) const {
    double value = 1;
    const int status = RQXCalcTotal(table_.id(), set, filter, mode, &value);
    EXPECT_EQ(hex(status), hex(code)) << filter;
    return value;
  }
};

TEST_F(SumColumnsTest, RecordsMarkThem) {
  int dims = 7, measures = 7;
  EXPECT_EQ(RQXIsSummaryOutputTable(table_.id(), &dims, &measures), 0);
  EXPECT_EQ(dims + measures, 0);
  EXPECT_EQ(RQXDimNo2FilterID(table_.id(), QX_ROLE_DIMENSION, 0), 0);
  set_record(1, QX_ROLE_DIMENSION);
  set_record(2, QX_ROLE_DIMENSION, 0, 1);
  set_record(3, QX_ROLE_MEASURE, QX_SUM_SUM);
  EXPECT_EQ(RQXIsSummaryOutputTable(table_.id(), &dims, &measures), 2);
  EXPECT_EQ(dims, 2);
  EXPECT_EQ(measures, 1);
  set_record(4, QX_ROLE_MEASURE, QX_SUM_MAX, 1);
  EXPECT_EQ(RQXIsSummaryOutputTable(table_.id(), &dims, &measures), 1);
  EXPECT_EQ(RQXDimNo2FilterID(table_.id(), QX_ROLE_DIMENSION, 1), 2);
  EXPECT_EQ(RQXDimNo2FilterID(table_.id(), QX_ROLE_MEASURE, 1), 4);
  expect_failure(RQXDimNo2FilterID(table_.id(), QX_ROLE_MEASURE, 2), QX_ERROR_NO_DIMENSION);
  _TSumFilterAttr record{};
  EXPECT_EQ(RQXGetSumFilterAttr(table_.id(), 4, &record), 0);
  EXPECT_EQ(record.sumType, QX_SUM_MAX);
  char block[64];
  EXPECT_EQ(RQXGetFilterAttr(table_.id(), 4, block, false), 0);
  EXPECT_EQ(memcmp(block, &record, sizeof block), 0);
  set_record(4, 3);
  expect_failure(RQXIsSummaryOutputTable(table_.id(), &dims, &measures),
                 QX_ERROR_NOT_SUMMARY_TABLE);
  EXPECT_EQ(dims + measures, 0);
  expect_failure(RQXGetSumFilterAttr(table_.id(), 9, &record), QX_ERROR_NO_FILTER);
  expect_failure(RQXIsSummaryOutputTable(99, &dims, &measures), QX_ERROR_NO_TABLE);
}

TEST_F(SumColumnsTest, Totals) {
  EXPECT_EQ(total(3, 1), 32);
  EXPECT_EQ(total(2, 1), 10007.0);
  EXPECT_EQ(total(3, 1, 0, table_.add_set({1, 4, 5})), 9.5);
  EXPECT_EQ(total(3, 0, QX_ERROR_NOT_SUMMARY_TABLE), kNullDouble);
  EXPECT_EQ(total(1, 7, QX_ERROR_NOT_NUMBER), kNullDouble);
  EXPECT_EQ(total(4, 1, QX_ERROR_NOT_NUMBER), kNullDouble);
  EXPECT_EQ(total(3, 2, QX_ERROR_PARAMETER), kNullDouble);
  EXPECT_EQ(total(9, 1, QX_ERROR_NO_FILTER), kNullDouble);
  EXPECT_EQ(total(9, 1, QX_ERROR_NO_SET, 99), kNullDouble);
  set_record(3, QX_ROLE_DIMENSION);
  EXPECT_EQ(total(3, 0, QX_ERROR_TOTAL_KIND1), kNullDouble);
  set_record(3, QX_ROLE_MEASURE, QX_SUM_MAX);
  EXPECT_EQ(total(3, 0, QX_ERROR_TOTAL_KIND2), kNullDouble);
  EXPECT_EQ(total(3, 1), 32);
  set_record(3, QX_ROLE_MEASURE, QX_SUM_COUNT);
  EXPECT_EQ(total(3, 0), 32);
}

}  // namespace
}  // namespace qxe::test
