// Find cursors and the place of a row in a set, through the interface.
#include <gtest/gtest.h>
#include <limits.h>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

class FindTest : public EngineTest {
 protected:
  static constexpr int kClosed = 0;

  /// The opening call that the column's type asks for.
  int open(const char* column, int ope, const Cell& low, const Cell& high = {}) const {
    const int id = table_.id();
    const int filter = table_.filter(column);
    const int type = RQXGetFilterType(id, filter);
    RawValues bounds(type, {low, high});
    const auto* const values = static_cast<const double*>(bounds.data());
    switch (type) {
      case QX_DT_INTEGER:
        return RQXOpenIntFindReal(id, filter, ope, static_cast<int*>(bounds.data())[0],
                                  static_cast<int*>(bounds.data())[1]);
      case QX_DT_STRING:
        return RQXOpenStrFindReal(id, filter, ope, bounds.value(0), bounds.value(1));
      case QX_DT_DECIMAL:
        return RQXOpenNumericFindReal(id, filter, ope, to_numeric(low), to_numeric(high));
      default: return RQXOpenFloatFindReal(id, filter, ope, values[0], values[1]);
    }
  }

  /// Positions of all hits in a set, as they come.
  Rows browse(int search, int set, int position, bool backward) const {
    Rows hits;
    int filter = 0;
    while (RQXGetNextHitReal(table_.id(), search, set, position, backward ? 1 : 0, &filter,
                             &position) == 1) {
      hits.push_back(position);
    }
    return hits;
  }

  /// The open cursor's search id.
  int status(int* count = nullptr) const {
    int counted = -1, filter = -1;
    const int id = RQXGetFindStatus(table_.id(), count == nullptr ? &counted : count, &filter);
    EXPECT_EQ(filter > 0, id > 0);
    return id;
  }

  const TestTable table_{{{"int", ints({30, kNullInt, 10, 30, 20})},
                          {"date", dates({"2024/03/01", "", "2024/02/29", "2024/03/01", ""})},
                          {"text", strings({"abc", "", "cab", "b", "ab\xff"})},
                          {"decimal", decimals(2, {"1.00", "", "-0.50", "1.00", "2.25"})}}};
};

struct FindCase {
  const char* name;
  const char* column;
  int ope;
  Cell low;
  Cell high;
  Rows rows;
  bool counts_null = false;
};

class FindHitsTest : public FindTest, public testing::WithParamInterface<FindCase> {};

TEST_P(FindHitsTest, AreSteppedToInBothDirectionsAndInAnySet) {
  const FindCase& wanted = GetParam();
  const int search = open(wanted.column, wanted.ope, wanted.low, wanted.high);
  ASSERT_GT(search, 0);
  EXPECT_EQ(browse(search, 1, 0, false), wanted.rows);
  EXPECT_EQ(browse(search, 1, 6, true), Rows(wanted.rows.rbegin(), wanted.rows.rend()));
  const Rows rows = {5, 3, 1, 3};
  Rows places;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (std::find(wanted.rows.begin(), wanted.rows.end(), rows[i]) != wanted.rows.end()) {
      places.push_back(static_cast<int>(i) + 1);
    }
  }
  EXPECT_EQ(browse(search, table_.add_set(rows), 0, false), places);
  int count = 0;
  EXPECT_EQ(status(&count), search);
  EXPECT_EQ(count, static_cast<int>(wanted.rows.size()) + (wanted.counts_null ? 1 : 0));
}

Cell s(const char* text) {
  return std::string(text);
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, FindHitsTest,
    testing::Values(
        FindCase{"Equal", "int", QX_OPE_EQ, 30, {}, {1, 4}},
        FindCase{"EqualNull", "int", QX_OPE_EQ, {}, {}, {2}, true},
        FindCase{"Between", "int", QX_OPE_BETWEEN, 11, 30, {1, 4, 5}},
        FindCase{"BetweenReversed", "int", QX_OPE_BETWEEN, 30, 11, {}},
        FindCase{"AtMostHitsNull", "int", QX_OPE_LEQ, 20, {}, {2, 3, 5}, true},
        FindCase{"AtLeast", "int", QX_OPE_GEQ, 20, {}, {1, 4, 5}},
        FindCase{"DiffersHitsNull", "int", QX_OPE_NEQ, 30, {}, {2, 3, 5}, true},
        FindCase{"Within", "date", QX_OPE_WITHIN, {}, date("2024/03/01"), {3}},
        FindCase{"BelowHitsNull", "decimal", QX_OPE_LES, decimal(2, "1.00"), {}, {2, 3}, true},
        FindCase{"Above", "decimal", QX_OPE_GT, decimal(2, "-0.50"), {}, {1, 4, 5}},
        FindCase{"Begins", "text", QX_OPE_BEGINS, s("ab"), {}, {1, 5}},
        FindCase{"BeginsWithLastByteFF", "text", QX_OPE_BEGINS, s("ab\xff"), {}, {5}},
        FindCase{"Contains", "text", QX_OPE_CONTAINS, s("ab"), {}, {1, 3, 5}},
        FindCase{"Ends", "text", QX_OPE_ENDS, s("b"), {}, {3, 4}},
        FindCase{"EndsEmpty", "text", QX_OPE_ENDS, s(""), {}, {1, 2, 3, 4, 5}, true},
        FindCase{"AtMostEmpty", "text", QX_OPE_LEQ, s(""), {}, {2}, true}),
    case_name<FindCase>);

TEST_F(FindTest, PositionsOutsideTheSetMeanItsEnds) {
  const int search = open("int", QX_OPE_GEQ, 20);
  const int set = table_.add_set({1, 3, 5});
  EXPECT_EQ(browse(search, set, INT_MIN, false), (Rows{1, 3}));
  EXPECT_EQ(browse(search, set, INT_MAX, true), (Rows{3, 1}));
  EXPECT_EQ(browse(search, -1, 0, false), (Rows{1, 3}));
  for (const int position : {3, 4, INT_MAX})
    EXPECT_EQ(browse(search, set, position, false), Rows{});
  for (const int position : {1, 0, INT_MIN}) EXPECT_EQ(browse(search, set, position, true), Rows{});
  int filter = 0, hit = 77;
  EXPECT_EQ(RQXGetNextHitReal(table_.id(), search, set, 3, 0, &filter, &hit), 0);
  EXPECT_EQ(filter, table_.filter("int"));
  EXPECT_EQ(hit, 77);
}

TEST_F(FindTest, ATableHasOneCursorWhoseIdIsNew) {
  int filter = 9, hit = 9;
  const auto next = [&](int search, int set) {
    return RQXGetNextHitReal(table_.id(), search, set, 0, 0, &filter, &hit);
  };
  expect_failure(next(1, 1), QX_ERROR_FIND_CLOSED, "Failed to open find");
  EXPECT_EQ(status(), kClosed);
  const int first = open("int", QX_OPE_EQ, 30);
  const int second = open("text", QX_OPE_EQ, s("b"));
  EXPECT_EQ(second, first + 1);
  EXPECT_EQ(status(), second);
  expect_failure(next(first, 1), QX_ERROR_FIND_ID, "Invalid Parameter : SrchID");
  expect_failure(next(second, 99), QX_ERROR_NO_SET, "No Such Set: 99");
  EXPECT_EQ(filter, 9);
  EXPECT_EQ(RQXCloseFindReal(table_.id()), 0);
  EXPECT_EQ(RQXCloseFindReal(table_.id()), 0);
  EXPECT_EQ(status(), kClosed);
  expect_failure(next(second, 1), QX_ERROR_FIND_CLOSED);
  EXPECT_GT(open("int", QX_OPE_EQ, 30), second);
}

TEST_F(FindTest, AFailedOpenLeavesNoneOpen) {
  const int t = table_.id(), number = table_.filter("int"), text = table_.filter("text");
  char word[] = "b";
  const auto after_open = [&](auto&& call, int code, const char* told) {
    ASSERT_GT(open("int", QX_OPE_EQ, 30), 0);
    expect_failure(call(), code, told);
    EXPECT_EQ(status(), kClosed) << told;
  };
  after_open([&] { return RQXOpenIntFindReal(t, 99, 0, 1, 1); }, QX_ERROR_FILTER_INDEX,
             "Invalid Parameter : SrchFltID");
  after_open([&] { return RQXOpenIntFindReal(t, text, 0, 1, 1); }, QX_ERROR_TYPE_MISMATCH,
             "Illegal data type");
  after_open([&] { return RQXOpenFloatFindReal(t, number, 0, 1, 1); }, QX_ERROR_TYPE_MISMATCH,
             "Illegal data type");
  after_open([&] { return RQXOpenNumericFindReal(t, number, 0, {}, {}); }, QX_ERROR_TYPE_MISMATCH,
             "Illegal data type");
  after_open([&] { return RQXOpenStrFindReal(t, number, 0, word, word); }, QX_ERROR_TYPE_MISMATCH,
             "Illegal data type ( Not STRING )");
  for (const int ope : {-1, int{QX_OPE_BEGINS}, int{QX_OPE_ISNULL}, int{QX_OPE_STRICT}}) {
    after_open([&] { return RQXOpenIntFindReal(t, number, ope, 1, 1); }, QX_ERROR_OPERATION,
               "Invalid Parameter : SrchKind");
  }
  for (const int ope : {-1, int{QX_OPE_ISNULL}, QX_OPE_ENDS | QX_OPE_STRICT}) {
    after_open([&] { return RQXOpenStrFindReal(t, text, ope, word, word); }, QX_ERROR_OPERATION,
               "Invalid Parameter : SrchKind");
  }
  after_open([&] { return RQXOpenStrFindReal(t, text, 0, nullptr, word); }, QX_ERROR_PARAMETER,
             "Invalid Parameter : Value");
  after_open([&] { return RQXOpenStrFindRealSJIS(t, text, 0, word, word); }, QX_ERROR_LOCALE,
             "Not equal to WS DBCharCode");
  after_open([&] { return RQXOpenStrFindRealLocale(t, text, 0, word, word, QX_LOCALE_EUC); },
             QX_ERROR_LOCALE, "Invalid Parameter : LocaleID");
  expect_failure(RQXOpenIntFindReal(99, 1, 0, 1, 1), QX_ERROR_NO_TABLE, "No Such Table: 99");
}

TEST_F(FindTest, CharacterCodesOfTheCallerAreTheDatabases) {
  const int t = table_.id(), text = table_.filter("text");
  char word[] = "b";
  for (const int locale : {int{QX_LOCALE_UTF8}, 99}) {
    EXPECT_GT(RQXOpenStrFindRealLocale(t, text, QX_OPE_EQ, word, nullptr, locale), 0);
  }
  ASSERT_EQ(RQXSetKanjiCode(QX_LOCALE_SJIS), 0);
  EXPECT_GT(RQXOpenStrFindRealSJIS(t, text, QX_OPE_EQ, word, nullptr), 0);
}

// What closes a cursor, and what does not.

struct ChangeCase {
  const char* name;
  int (*change)(int table);  // made while a cursor on filter 1, of integers, is open
  bool closes;
  bool refused = false;
};

class FindChangeTest : public FindTest, public testing::WithParamInterface<ChangeCase> {};

TEST_P(FindChangeTest, ClosesTheCursorOrLeavesIt) {
  const int search = open("int", QX_OPE_EQ, 30);
  ASSERT_EQ(table_.filter("int"), 1);
  EXPECT_EQ(GetParam().change(table_.id()) < 0, GetParam().refused);
  EXPECT_EQ(status(), GetParam().closes ? kClosed : search);
  EXPECT_EQ(browse(search, 1, 0, false), GetParam().closes ? Rows{} : (Rows{1, 4}));
}

INSTANTIATE_TEST_SUITE_P(
    Changes, FindChangeTest,
    testing::Values(
        ChangeCase{"Insert", [](int table) { return RQXInsertRealRows(table, 1, 1); }, true},
        ChangeCase{"Delete", [](int table) { return RQXDeleteRealRows(table, 5, 1); }, true},
        ChangeCase{"DeleteBySet", [](int table) { return RQXDeleteRealRowsEx(table, 1, 5, 1); },
                   true},
        ChangeCase{"RefusedInsert", [](int table) { return RQXInsertRealRows(table, -1, 1); },
                   false, true},
        ChangeCase{"RefusedDelete", [](int table) { return RQXDeleteRealRows(table, 9, 1); }, false,
                   true},
        ChangeCase{"DropItsFilter", [](int table) { return RQXDeleteRealFilter(table, 1); }, true},
        ChangeCase{"DropAnother", [](int table) { return RQXDeleteRealFilter(table, 2); }, false},
        ChangeCase{"Overwrite", [](int table) { return RQXFillRealExIntR1(table, 1, 1, 1, 5, 7); },
                   false},
        ChangeCase{"Condense", [](int table) { return RQXCondenseRealTable(table); }, false},
        ChangeCase{"Purge", [](int table) { return RQXPurgeSubsets(table); }, false}),
    case_name<ChangeCase>);

TEST_F(FindTest, ATableWithoutRowsHasNoHits) {
  ASSERT_EQ(RQXDeleteRealRows(table_.id(), 1, 5), 5);
  for (const int ope : {int{QX_OPE_CONTAINS}, int{QX_OPE_BEGINS}, int{QX_OPE_GEQ}}) {
    const int search = open("text", ope, s(""));
    int count = 0;
    EXPECT_EQ(status(&count), search);
    EXPECT_EQ(count, 1);  // NULL
    EXPECT_EQ(browse(search, 1, 0, false), Rows{});
  }
}

TEST_F(FindTest, ItsMemoryIsCounted) {
  const auto memory = [&] {
    unsigned long size = 0;
    EXPECT_EQ(RQXGetTableMemorySize(table_.id(), &size), 0);
    return size;
  };
  const unsigned long before = memory();
  open("int", QX_OPE_EQ, 30);
  EXPECT_GT(memory(), before);
  RQXCloseFindReal(table_.id());
  EXPECT_EQ(memory(), before);
}

TEST_F(FindTest, RowsAreLookedUpInSets) {
  const int t = table_.id();
  const int set = table_.add_set({4, 2, 4});
  for (const auto& [row, place] : {std::pair{4, 1}, {2, 2}, {1, 0}, {0, 0}, {-7, 0}}) {
    EXPECT_EQ(RQXFindRecNoReal(t, set, row), place) << row;
    EXPECT_EQ(QXFindRecNoReal(t, -1, row), place) << row;
  }
  for (const auto& [row, place] : {std::pair{5, 5}, {1, 1}, {6, 0}, {0, 0}}) {
    EXPECT_EQ(RQXFindRecNoReal(t, 1, row), place) << row;
  }
  EXPECT_EQ(RQXFindRecNoReal(t, table_.add_set({}), 1), 0);
  expect_failure(QXFindRecNoReal(t, 99, 1), QX_ERROR_NO_SET, "No Such Set: 99");
  EXPECT_EQ(RQXFindRecNoReal(t, 99, 1), int{QX_ERROR_NO_SET});
  EXPECT_EQ(ring().back().call, "RQXFindRecNoReal");
}

}  // namespace
}  // namespace qxe::test
