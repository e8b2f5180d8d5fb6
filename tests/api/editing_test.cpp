// Row editing: what the edit model does not see of it, as value numbers, settings, long texts and
// long lists of values. What is refused stands in failures_test.
#include <limits.h>

#include <algorithm>
#include <limits>

#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;
using Texts = std::vector<std::string>;

/// A table of 200 rows, whose new values wait in tails. The integers are 0, 10, 20, ...
class EditingTest : public EngineTest {
 protected:
  static constexpr int kRows = 200;

  static Columns columns() {
    Columns columns = {{"i", ints({})},
                       {"s", strings(Texts(kRows, "x"))},
                       {"d", doubles(std::vector<double>(kRows, 0.5))},
                       {"n", decimals(2, Texts(kRows, "1.25"))}};
    for (int i = 0; i < kRows; ++i) columns[0].column.cells.emplace_back(i * 10);
    return columns;
  }
  Rows value_numbers(int filter) const {
    Rows numbers(static_cast<size_t>(table_.total_rows()));
    EXPECT_EQ(RQXGetVNoList(id_, filter, 1, numbers.data()), table_.total_rows());
    return numbers;
  }
  std::string text(const char* column, int row) const { return table_.text(column, row); }
  /// Leaves 49 rows, whose values do not wait.
  void make_small() const { EXPECT_EQ(RQXDeleteRealRows(id_, 50, INT_MAX), kRows - 49); }

  const TestTable table_{columns()};
  const int id_ = table_.id();
};

TEST_F(EditingTest, DeletingKeepsValuesAndWhatSetsAreCalled) {
  const int set = table_.add_set({90, 5, 7});
  RQXSetSetName(id_, set, "some");
  make_small();
  EXPECT_EQ(table_.rows(set), (Rows{5, 7}));
  EXPECT_STREQ(RQXGetSetNameR1(id_, set), "some");
  EXPECT_EQ(RQXGetCurrentSetID(id_), set);
  _TRFilterInfo info;
  EXPECT_EQ(RQXGetFilterInfo(id_, 1, &info), 0);
  EXPECT_EQ(info.valueCount, kRows + 1);
  EXPECT_EQ(QXDeleteRealRowsEx(id_, -1, 1, 1), 1);  // of the current set
  EXPECT_EQ(table_.rows(set), Rows{6});
  const int twice = table_.add_set({3, 3, 1, 3});
  EXPECT_EQ(RQXDeleteRealRowsEx(id_, twice, 1, 2), 1);
}

TEST_F(EditingTest, NewValuesWaitUntilTheyAreToBeSorted) {
  int values[] = {20, 25, 25, kNullInt};
  EXPECT_EQ(RQXOverwriteRealEx(id_, 1, 1, 11, 4, values), 4);
  const Rows waiting = value_numbers(1);  // entry 0 is NULL
  EXPECT_EQ(Rows(waiting.begin() + 10, waiting.begin() + 14), (Rows{3, -1, -2, 0}));
  EXPECT_EQ(text("i", 13), "25");
  EXPECT_EQ(table_.rows(table_.search("i", QX_OPE_EQ, 25)), (Rows{12, 13}));
  const Rows merged = value_numbers(1);
  EXPECT_EQ(Rows(merged.begin() + 10, merged.begin() + 14), (Rows{3, 4, 4, 0}));
  EXPECT_EQ(merged[4], 6);  // 40, one further
}

TEST_F(EditingTest, ValuesOfSmallTablesAndLargeEditsDoNotWait) {
  make_small();
  EXPECT_EQ(RQXOverwriteRealExIntR1(id_, 1, 1, 1, 25), 1);
  EXPECT_EQ(value_numbers(1)[0], 4);
  const int many = 20000;
  EXPECT_EQ(RQXInsertRealRows(id_, 50, many), many);
  EXPECT_EQ(RQXFillRealExDblR1(id_, 3, 1, 50, many, 0.25), many);
  const Rows numbers = value_numbers(3);
  EXPECT_EQ(numbers.front(), 2);
  EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 1), many);
}

TEST_F(EditingTest, ManySingleNewValuesAreMergedOnTheWay) {
  const int many = 12000;
  EXPECT_EQ(RQXInsertRealRows(id_, kRows + 1, many), many);
  for (int i = 0; i < 2 * many; ++i) {
    ASSERT_EQ(RQXOverwriteRealExIntR1(id_, 1, 1, kRows + 1 + i % many, i * 7919 % 1000003), 1);
  }
  for (int i = many; i < 2 * many; i += 97) {
    ASSERT_EQ(RQXGetData1IntR1(id_, 1, 1, kRows + 1 + i - many), i * 7919 % 1000003);
  }
}

TEST_F(EditingTest, NullsOfEveryKind) {
  char* null_text = nullptr;
  Numeric null_number = {};
  RQXNumericSetNan(&null_number);
  const double not_a_number = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(RQXOverwriteRealExIntR1(id_, 1, 1, 1, QX_NULL_INT), 1);
  EXPECT_EQ(RQXOverwriteRealExStrR1(id_, 2, 1, 1, null_text), 1);
  EXPECT_EQ(RQXFillRealEx(id_, 2, 1, 2, 1, &null_text), 1);
  EXPECT_EQ(RQXOverwriteRealExDblR1(id_, 3, 1, 1, not_a_number), 1);
  EXPECT_EQ(RQXFillRealExNumericR1(id_, 4, 1, 1, 1, &null_number), 1);
  EXPECT_EQ(text("i", 1) + text("s", 1) + text("s", 2) + text("d", 1) + text("n", 1),
            "NULLNULLNULL");
}

TEST_F(EditingTest, TrailingBlanksAreCutWhenAsked) {
  const auto write = [&](int row) {
    RawValues values(QX_DT_STRING, {std::string("a  "), std::string(" b ")});
    EXPECT_EQ(RQXOverwriteRealEx(id_, 2, 1, row, 2, values.data()), 2);
    EXPECT_STREQ(values.value(0), RQXGetData1StrR1(id_, 2, 1, row));
    return text("s", row) + "|" + text("s", row + 1);
  };
  EXPECT_EQ(write(1), "a  | b ");
  RQXSetTailSpaceFlag(1);
  EXPECT_EQ(write(3), "a| b");
  make_small();
  EXPECT_EQ(write(5), "a| b");
  char blanks[] = "   ";
  EXPECT_EQ(RQXFillRealExStrR1(id_, 2, 1, 1, 2, blanks), 2);
  EXPECT_EQ(text("s", 2), "");
}

TEST_F(EditingTest, StringsUpToTheLongestThatIsRead) {
  std::string longest(4095, 'y');
  std::string longer(4096, 'y');
  char* values[] = {longest.data(), longer.data()};
  for (const bool small : {false, true}) {
    if (small) make_small();
    EXPECT_EQ(RQXOverwriteRealExStr(id_, 2, 1, 1, 1, values), 1);
    EXPECT_EQ(text("s", 1), longest);
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    expect_failure(RQXOverwriteRealExStr(id_, 2, 1, 3, 2, values), QX_ERROR_STRING_SIZE,
                   "StringSize overflow");
    expect_failure(RQXFillRealExStrR1(id_, 2, 1, 3, 2, values[1]), QX_ERROR_STRING_SIZE);
    EXPECT_EQ(database_text(), before);
  }
}

TEST_F(EditingTest, ARefusedDeleteBySetSaysItsExportedNameLast) {
  EXPECT_EQ(RQXDeleteRealRowsEx(id_, 99, 1, 1), QX_ERROR_NO_SET_ID);
  const RingEntry last = ring().back();
  EXPECT_EQ(last.call, "RQXDeleteRealRowsEx");
  EXPECT_EQ(last.message, "");
}

// Long lists of values: few new ones join them in place, many make a new list.

Cell cell_of(int type, int number) {
  char text[16];
  switch (type) {
    case QX_DT_INTEGER: return number;
    case QX_DT_STRING: snprintf(text, sizeof text, "t%08d", number); return std::string(text);
    case QX_DT_DECIMAL: return Decimal{2, number};
    default: return number / 2.0;
  }
}

TEST_F(EditingTest, LongListsTakeFewAndManyNewValues) {
  constexpr int kLong = 5000;
  RandomData random(1);
  for (const int type : {QX_DT_INTEGER, QX_DT_DOUBLE, QX_DT_STRING, QX_DT_DECIMAL}) {
    for (const auto& [count, highest] : {std::pair{1, 22000}, {900, 20000}, {4000, 22000}}) {
      SCOPED_TRACE("type " + std::to_string(type) + " count " + std::to_string(count));
      Column column{type, {}, type == QX_DT_DECIMAL ? 2 : 0};
      for (int i = 0; i < kLong; ++i) column.cells.push_back(cell_of(type, random.below(20000)));
      const TestTable table({{"c", column}});
      const int first = 1 + random.below(kLong - count + 1);
      std::vector<Cell> news;
      for (int i = 0; i < count; ++i) news.push_back(cell_of(type, random.below(highest)));
      RawValues raw(type, news);
      ASSERT_EQ(RQXOverwriteRealEx(table.id(), 1, 1, first, count, raw.data()), count);
      std::copy(news.begin(), news.end(), column.cells.begin() + first - 1);
      const std::vector<Cell> sorted = table.column("c", table.sort("c")).cells;
      ASSERT_TRUE(table.column("c").cells == column.cells);
      std::sort(column.cells.begin(), column.cells.end());
      ASSERT_TRUE(sorted == column.cells);
    }
  }
}

}  // namespace
}  // namespace qxe::test
