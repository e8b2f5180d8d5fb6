// Row editing: what each call does to rows, sets and values, and what it refuses.
#include <limits.h>

#include <functional>
#include <numeric>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;
using Texts = std::vector<std::string>;

class EditRowsTest : public EngineTest {
 protected:
  EditRowsTest() { RQXSetSetName(id_, set_, "some"); }

  Texts values() const { return table_.texts("i"); }

  const TestTable table_{{{"i", ints({1, 2, 3, 4})}, {"s", strings({"a", "b", "c", "d"})}}};
  const int id_ = table_.id();
  const int set_ = table_.add_set({4, 2, 1});
};

TEST_F(EditRowsTest, NewRowsAreNullAndInNoSetButTheFirst) {
  EXPECT_EQ(RQXInsertRealRows(id_, 2, 2), 2);
  EXPECT_EQ(values(), (Texts{"1", "NULL", "NULL", "2", "3", "4"}));
  EXPECT_EQ(table_.texts("s"), (Texts{"a", "", "", "b", "c", "d"}));
  EXPECT_EQ(table_.rows(), (Rows{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(table_.rows(set_), (Rows{6, 4, 1}));
}

TEST_F(EditRowsTest, RowsAreInsertedWithinTheTable) {
  EXPECT_EQ(RQXInsertRealRows(id_, 0, 1), 1);
  EXPECT_EQ(QXInsertRealRows(id_, 100, 1), 1);
  EXPECT_EQ(values(), (Texts{"NULL", "1", "2", "3", "4", "NULL"}));
  EXPECT_EQ(table_.rows(set_), (Rows{5, 3, 2}));
}

TEST_F(EditRowsTest, DeletedRowsLeaveAllSets) {
  EXPECT_EQ(RQXDeleteRealRows(id_, 2, 2), 2);
  EXPECT_EQ(values(), (Texts{"1", "4"}));
  EXPECT_EQ(table_.rows(), (Rows{1, 2}));
  EXPECT_EQ(table_.rows(set_), (Rows{2, 1}));
  EXPECT_STREQ(RQXGetSetNameR1(id_, set_), "some");
  EXPECT_EQ(RQXGetCurrentSetID(id_), set_);
}

TEST_F(EditRowsTest, RowsBehindTheLastNeedNotExistToBeDeleted) {
  EXPECT_EQ(QXDeleteRealRows(id_, 3, INT_MAX), 2);
  EXPECT_EQ(values(), (Texts{"1", "2"}));
}

TEST_F(EditRowsTest, ATableMayLoseAllRowsAndGetNewOnes) {
  EXPECT_EQ(RQXDeleteRealRows(id_, 1, 4), 4);
  EXPECT_EQ(table_.total_rows(), 0);
  EXPECT_EQ(RQXGetNFilter(id_), 2);
  EXPECT_EQ(table_.rows(set_), Rows{});
  EXPECT_EQ(RQXInsertRealRows(id_, 1, 2), 2);
  EXPECT_EQ(RQXOverwriteRealExIntR1(id_, 1, 1, 2, 3), 1);
  EXPECT_EQ(values(), (Texts{"NULL", "3"}));
}

TEST_F(EditRowsTest, RowsAreDeletedByTheirPlaceInASet) {
  EXPECT_EQ(RQXDeleteRealRowsEx(id_, set_, 1, 2), 2);  // rows 4 and 2
  EXPECT_EQ(values(), (Texts{"1", "3"}));
  EXPECT_EQ(table_.rows(set_), Rows{1});
  EXPECT_EQ(QXDeleteRealRowsEx(id_, -1, 1, 1), 1);  // the current set
  EXPECT_EQ(values(), Texts{"3"});
}

TEST_F(EditRowsTest, ARowThatASetHoldsTwiceIsDeletedOnce) {
  const int twice = table_.add_set({3, 3, 1, 3});
  EXPECT_EQ(RQXDeleteRealRowsEx(id_, twice, 1, 2), 1);
  EXPECT_EQ(values(), (Texts{"1", "2", "4"}));
  EXPECT_EQ(table_.rows(twice), Rows{1});
}

TEST_F(EditRowsTest, ValuesStayInTheListWhenTheirRowsAreGone) {
  EXPECT_EQ(RQXDeleteRealRows(id_, 1, 3), 3);
  _TRFilterInfo info;
  EXPECT_EQ(RQXGetFilterInfo(id_, 1, &info), 0);
  EXPECT_EQ(info.valueCount, 5);
}

/// A table of 200 rows, whose values wait in tails, with an integer in each row that tells it.
class EditValuesTest : public EngineTest {
 protected:
  static constexpr int kRows = 200;

  static std::vector<int> numbers() {
    std::vector<int> all(kRows);
    std::iota(all.begin(), all.end(), 0);
    for (int& number : all) number *= 10;
    return all;
  }
  static Columns columns() {
    return {{"i", ints(numbers())},
            {"s", strings(Texts(kRows, "x"))},
            {"d", doubles(std::vector<double>(kRows, 0.5))},
            {"n", decimals(2, Texts(kRows, "1.25"))}};
  }
  int value_number(int row) const {
    std::vector<int> all(kRows);
    EXPECT_EQ(RQXGetVNoList(id_, 1, 1, all.data()), kRows);
    return all[static_cast<size_t>(row - 1)];
  }
  std::string text(const char* column, int row) const { return table_.text(column, row); }

  const TestTable table_{columns()};
  const int id_ = table_.id();
};

TEST_F(EditValuesTest, NewValuesWaitUntilTheyAreToBeSorted) {
  int values[] = {20, 25, 25, kNullInt};
  EXPECT_EQ(RQXOverwriteRealEx(id_, 1, 1, 11, 4, values), 4);
  EXPECT_EQ(value_number(11), 3);  // known: entry 0 is NULL
  EXPECT_EQ(value_number(12), -1);
  EXPECT_EQ(value_number(13), -2);
  EXPECT_EQ(value_number(14), 0);
  EXPECT_EQ(text("i", 13), "25");
  EXPECT_EQ(table_.rows(table_.search("i", QX_OPE_EQ, 25)), (Rows{12, 13}));
  EXPECT_EQ(value_number(12), 4);
  EXPECT_EQ(value_number(13), 4);
  EXPECT_EQ(value_number(5), 6);  // 40, one further
}

TEST_F(EditValuesTest, SmallTablesNeverWait) {
  EXPECT_EQ(RQXDeleteRealRows(id_, 100, 101), 101);
  EXPECT_EQ(RQXOverwriteRealExIntR1(id_, 1, 1, 1, 25), 1);
  int numbers[99];
  EXPECT_EQ(RQXGetVNoList(id_, 1, 1, numbers), 99);
  EXPECT_EQ(numbers[0], 4);
}

TEST_F(EditValuesTest, GoThroughASetInItsOrder) {
  const int set = table_.add_set({7, 5, 7, 3});
  int values[] = {1, 2, 3};
  EXPECT_EQ(RQXOverwriteRealEx(id_, 1, set, 1, 3, values), 3);
  EXPECT_EQ(text("i", 7), "3");  // the last value of a row stays
  EXPECT_EQ(text("i", 5), "2");
  EXPECT_EQ(text("i", 3), "20");
}

TEST_F(EditValuesTest, CountIsCutToTheSet) {
  const int set = table_.add_set({7, 5, 3});
  int values[] = {1, 2};
  EXPECT_EQ(RQXOverwriteRealEx(id_, 1, set, 2, INT_MAX, values), 2);
  EXPECT_EQ(RQXFillRealEx(id_, 1, set, 3, 5, values), 1);
  EXPECT_EQ(text("i", 3), "1");
}

TEST_F(EditValuesTest, LargeEditsDoNotWait) {
  const int many = 20000;
  EXPECT_EQ(RQXInsertRealRows(id_, kRows + 1, many), many);
  const double value = 0.25;
  EXPECT_EQ(RQXFillRealExDblR1(id_, 3, 1, kRows + 1, many, value), many);
  std::vector<int> all(kRows + many);
  EXPECT_EQ(RQXGetVNoList(id_, 3, 1, all.data()), kRows + many);
  EXPECT_EQ(all[0], 2);
  EXPECT_EQ(all[kRows], 1);
  EXPECT_EQ(all.back(), 1);
}

TEST_F(EditValuesTest, ManySingleNewValuesAreMergedOnTheWay) {
  const int many = 12000;
  EXPECT_EQ(RQXInsertRealRows(id_, kRows + 1, many), many);
  for (int i = 0; i < 2 * many; ++i) {
    const int row = kRows + 1 + i % many;
    ASSERT_EQ(RQXOverwriteRealExIntR1(id_, 1, 1, row, i * 7919 % 1000003), 1);
  }
  for (int i = many; i < 2 * many; i += 97) {
    ASSERT_EQ(RQXGetData1IntR1(id_, 1, 1, kRows + 1 + i - many), i * 7919 % 1000003);
  }
}

TEST_F(EditValuesTest, NullsOfEveryKind) {
  char* null_text = nullptr;
  const double not_a_number = std::numeric_limits<double>::quiet_NaN();
  Numeric null_number = {};
  RQXNumericSetNan(&null_number);
  EXPECT_EQ(RQXOverwriteRealExIntR1(id_, 1, 1, 1, QX_NULL_INT), 1);
  EXPECT_EQ(RQXOverwriteRealExStrR1(id_, 2, 1, 1, null_text), 1);
  EXPECT_EQ(RQXFillRealEx(id_, 2, 1, 2, 1, &null_text), 1);
  EXPECT_EQ(RQXOverwriteRealExDblR1(id_, 3, 1, 1, not_a_number), 1);
  EXPECT_EQ(RQXFillRealExNumericR1(id_, 4, 1, 1, 1, &null_number), 1);
  EXPECT_EQ(text("i", 1), "NULL");
  EXPECT_EQ(text("s", 1), "");
  EXPECT_EQ(text("s", 2), "");
  EXPECT_EQ(text("d", 1), "NULL");
  EXPECT_EQ(text("n", 1), "NULL");
}

TEST_F(EditValuesTest, DecimalsAreAtTheScaleOfTheFilter) {
  const Numeric value = to_numeric(decimal(2, "-3.50"));
  EXPECT_EQ(RQXOverwriteRealExNumericR1(id_, 4, 1, 1, &value), 1);
  EXPECT_EQ(text("n", 1), "-3.50");
}

TEST_F(EditValuesTest, TrailingBlanksAreCutWhenAsked) {
  const auto write = [&](int row, int count) {
    RawValues values(QX_DT_STRING, {std::string("a  "), std::string(" b ")});
    EXPECT_EQ(RQXOverwriteRealEx(id_, 2, 1, row, count, values.data()), count);
    EXPECT_STREQ(values.value(0), RQXGetData1StrR1(id_, 2, 1, row));
  };
  write(1, 2);
  RQXSetTailSpaceFlag(1);
  write(3, 2);
  EXPECT_EQ(text("s", 1), "a  ");
  EXPECT_EQ(text("s", 2), " b ");
  EXPECT_EQ(text("s", 3), "a");
  EXPECT_EQ(text("s", 4), " b");
  EXPECT_EQ(RQXDeleteRealRows(id_, 50, kRows), kRows - 49);  // values do not wait any more
  write(5, 2);
  EXPECT_EQ(text("s", 5), "a");
  char blanks[] = "   ";
  EXPECT_EQ(RQXFillRealExStrR1(id_, 2, 1, 1, 2, blanks), 2);
  EXPECT_EQ(text("s", 2), "");
}

TEST_F(EditValuesTest, StringsUpToTheLongestThatIsRead) {
  for (const bool wait : {true, false}) {
    std::string longest(4095, 'y');
    std::string longer(4096, 'y');
    char* values[] = {longest.data(), longer.data()};
    EXPECT_EQ(RQXOverwriteRealExStr(id_, 2, 1, 1, 1, values), 1);
    EXPECT_EQ(text("s", 1), longest);
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    expect_failure(RQXOverwriteRealExStr(id_, 2, 1, 3, 2, values), QX_ERROR_STRING_SIZE,
                   "StringSize overflow");
    expect_failure(RQXFillRealExStrR1(id_, 2, 1, 3, 2, values[1]), QX_ERROR_STRING_SIZE);
    EXPECT_EQ(database_text(), before);
    if (!wait) break;
    EXPECT_EQ(RQXDeleteRealRows(id_, 50, kRows), kRows - 49);
  }
}

// Refusals

struct Refusal {
  const char* name;
  std::function<int(int table)> call;
  int code;
  const char* text;
};

int numbers[] = {1, 2, 3, 4};
Numeric number;
char text[] = "text";

class EditRefusalTest : public EngineTest, public testing::WithParamInterface<Refusal> {};

TEST_P(EditRefusalTest, ChangesNothing) {
  // Filter 1 are integers, 2 strings; set 1 are all three rows, set 2 two of them.
  const TestTable table({{"i", ints({1, 2, 3})}, {"s", strings({"a", "b", "c"})}});
  table.add_set({3, 1});
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  const Refusal& wanted = GetParam();
  expect_failure(wanted.call(table.id()), wanted.code, wanted.text);
  EXPECT_EQ(database_text(), before);
}

#define QXE_CASE(name, code, words, ...)                           \
  Refusal {                                                        \
#name, [](int table) { (void)table; return __VA_ARGS__; }, code, \
        words \
  }

INSTANTIATE_TEST_SUITE_P(
    Rows, EditRefusalTest,
    testing::Values(QXE_CASE(InsertIntoNoTable, QX_ERROR_NO_TABLE, "No Such Table: 99",
                             RQXInsertRealRows(99, 1, 1)),
                    QXE_CASE(InsertBeforeNegative, QX_ERROR_ROW_POSITION,
                             "Invalid Parameter : InsPos(-1)", RQXInsertRealRows(table, -1, 1)),
                    QXE_CASE(InsertNone, QX_ERROR_PARAMETER, "Invalid Parameter : InsCount(0)",
                             QXInsertRealRows(table, 1, 0)),
                    QXE_CASE(InsertTooMany, QX_ERROR_ROW_SIZE, "RowSize overflow",
                             RQXInsertRealRows(table, 1, INT_MAX - 3)),
                    QXE_CASE(DeleteFromNoTable, QX_ERROR_NO_TABLE, "No Such Table: 99",
                             QXDeleteRealRows(99, 1, 1)),
                    QXE_CASE(DeleteRowZero, QX_ERROR_ROW_POSITION,
                             "Invalid Parameter : DelStart(0)", RQXDeleteRealRows(table, 0, 1)),
                    QXE_CASE(DeleteRowBehindTheLast, QX_ERROR_ROW_POSITION,
                             "Invalid Parameter : DelStart(4)", RQXDeleteRealRows(table, 4, 1)),
                    QXE_CASE(DeleteNone, QX_ERROR_PARAMETER, "Invalid Parameter : DelCount(0)",
                             RQXDeleteRealRows(table, 1, 0)),
                    QXE_CASE(DeleteOfNoSet, QX_ERROR_NO_SET_ID, "No Such Set: 99",
                             RQXDeleteRealRowsEx(table, 99, 1, 1)),
                    QXE_CASE(DeletePositionZero, QX_ERROR_ROW_POSITION,
                             "Invalid Parameter : DelStart", RQXDeleteRealRowsEx(table, 2, 0, 1)),
                    QXE_CASE(DeleteBehindTheSet, QX_ERROR_ROW_POSITION,
                             "Invalid Parameter : DelStart", RQXDeleteRealRowsEx(table, 2, 3, 1)),
                    QXE_CASE(DeleteMoreThanTheSet, QX_ERROR_PARAMETER,
                             "Invalid Parameter : DelCount", QXDeleteRealRowsEx(table, 2, 2, 2)),
                    QXE_CASE(DeleteFarMoreThanTheSet, QX_ERROR_PARAMETER,
                             "Invalid Parameter : DelCount",
                             RQXDeleteRealRowsEx(table, 2, 2, INT_MAX)),
                    QXE_CASE(DeleteNoneOfASet, QX_ERROR_PARAMETER, "Invalid Parameter : DelCount",
                             RQXDeleteRealRowsEx(table, 2, 1, -1))),
    case_name<Refusal>);

INSTANTIATE_TEST_SUITE_P(
    Values, EditRefusalTest,
    testing::Values(
        QXE_CASE(OverwriteInNoTable, QX_ERROR_NO_TABLE, "No Such Table: 99",
                 RQXOverwriteRealEx(99, 1, 1, 1, 1, numbers)),
        QXE_CASE(OverwriteInNoSet, QX_ERROR_NO_SET_ID, "No Such Set: 99",
                 RQXOverwriteRealEx(table, 1, 99, 1, 1, numbers)),
        QXE_CASE(OverwriteWithNothing, QX_ERROR_PARAMETER, "Invalid Parameter : PWData(0)",
                 QXOverwriteRealEx(table, 1, 1, 1, 1, nullptr)),
        QXE_CASE(OverwriteAtZero, QX_ERROR_PARAMETER, "Invalid Parameter : WriteStart(0)",
                 RQXOverwriteRealEx(table, 1, 1, 0, 1, numbers)),
        QXE_CASE(OverwriteBehindTheSet, QX_ERROR_PARAMETER, "Invalid Parameter : WriteStart(3)",
                 RQXOverwriteRealEx(table, 1, 2, 3, 1, numbers)),
        QXE_CASE(OverwriteNone, QX_ERROR_PARAMETER, "Invalid Parameter : WriteCount(0)",
                 RQXOverwriteRealEx(table, 1, 1, 1, 0, numbers)),
        QXE_CASE(OverwriteNoFilter, QX_ERROR_NO_FILTER, "No Such Filter: 99",
                 RQXOverwriteRealEx(table, 99, 1, 1, 1, numbers)),
        QXE_CASE(OverwriteRowNumbers, QX_ERROR_NO_FILTER, "No Such Filter: 0",
                 RQXOverwriteRealExIntR1(table, 0, 1, 1, 5)),
        QXE_CASE(OverwriteIntegersWithStrings, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXOverwriteRealExStr(table, 1, 1, 1, 1, reinterpret_cast<char**>(numbers))),
        QXE_CASE(OverwriteStringsWithAnInteger, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXOverwriteRealExIntR1(table, 2, 1, 1, 5)),
        QXE_CASE(OverwriteIntegersWithADouble, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXOverwriteRealExDblR1(table, 1, 1, 1, 5)),
        QXE_CASE(OverwriteIntegersWithADecimal, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXOverwriteRealExNumericR1(table, 1, 1, 1, &number)),
        QXE_CASE(OverwriteIntegersWithAText, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXOverwriteRealExStrR1(table, 1, 1, 1, text)),
        QXE_CASE(FillNoTable, QX_ERROR_NO_TABLE, "No Such Table: 99",
                 RQXFillRealEx(99, 1, 1, 1, 1, numbers)),
        QXE_CASE(FillWithNothing, QX_ERROR_PARAMETER, "Invalid Parameter : PWData(0)",
                 RQXFillRealEx(table, 1, 1, 1, 1, nullptr)),
        QXE_CASE(FillNone, QX_ERROR_PARAMETER, "Invalid Parameter : WriteCount(-1)",
                 RQXFillRealExIntR1(table, 1, 1, 1, -1, 5)),
        QXE_CASE(FillIntegersWithAText, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXFillRealExStrR1(table, 1, 1, 1, 1, text)),
        QXE_CASE(FillStringsWithADouble, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXFillRealExDblR1(table, 2, 1, 1, 1, 0.5)),
        QXE_CASE(FillStringsWithADecimal, QX_ERROR_TYPE_MISMATCH, "Illegal data type",
                 RQXFillRealExNumericR1(table, 2, 1, 1, 1, &number))),
    case_name<Refusal>);

#undef QXE_CASE

using EditTest = EngineTest;

TEST_F(EditTest, ARefusedDeleteBySetSaysItsExportedNameLast) {
  const TestTable table({{"i", ints({1})}});
  EXPECT_EQ(RQXDeleteRealRowsEx(table.id(), 99, 1, 1), QX_ERROR_NO_SET_ID);
  const std::vector<RingEntry> entries = ring();
  ASSERT_GT(entries.size(), 1U);
  EXPECT_EQ(entries.back().call, "RQXDeleteRealRowsEx");
  EXPECT_EQ(entries.back().message, "");
}

}  // namespace
}  // namespace qxe::test
