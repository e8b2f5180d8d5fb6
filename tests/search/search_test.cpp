// Searches by value, by row number and by position, through the interface. Random ones, and lists
// of values, are compared with plain rows in tests/api/edit_model_test.cpp.
#include <gtest/gtest.h>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

struct SearchCase {
  const char* name;
  int ope;
  Cell low;
  Cell high;
  Rows rows;
};

class IntegerSearchTest : public EngineTest, public testing::WithParamInterface<SearchCase> {};

TEST_P(IntegerSearchTest, KeepsMatchingRowsInSetOrder) {
  const SearchCase& wanted = GetParam();
  TestTable table({{"age", ints({30, kNullInt, 10, 30, 20})}});
  EXPECT_EQ(table.rows(table.search("age", wanted.ope, wanted.low, wanted.high)), wanted.rows);
}

constexpr int kStrict = QX_OPE_STRICT;

INSTANTIATE_TEST_SUITE_P(
    Operators, IntegerSearchTest,
    testing::Values(SearchCase{"Equal", QX_OPE_EQ, 30, {}, {1, 4}},
                    SearchCase{"EqualAbsent", QX_OPE_EQ, 25, {}, {}},
                    SearchCase{"EqualNull", QX_OPE_EQ, {}, {}, {2}},
                    SearchCase{"EqualNullStrict", QX_OPE_EQ | kStrict, {}, {}, {}},
                    SearchCase{"Between", QX_OPE_BETWEEN, 10, 20, {3, 5}},
                    SearchCase{"BetweenAbsentBounds", QX_OPE_BETWEEN, 11, 29, {5}},
                    SearchCase{"BetweenReversed", QX_OPE_BETWEEN, 20, 10, {}},
                    SearchCase{"BetweenNullAndValue", QX_OPE_BETWEEN, {}, 10, {2, 3}},
                    SearchCase{"AtMostLeavesNullOut", QX_OPE_LEQ, 20, {}, {3, 5}},
                    SearchCase{"AtMostNull", QX_OPE_LEQ, {}, {}, {}},
                    SearchCase{"AtLeast", QX_OPE_GEQ, 20, {}, {1, 4, 5}},
                    SearchCase{"AtLeastNull", QX_OPE_GEQ, {}, {}, {1, 2, 3, 4, 5}},
                    SearchCase{"AtLeastStrict", QX_OPE_GEQ | kStrict, 5, {}, {1, 3, 4, 5}},
                    SearchCase{"DiffersLeavesNullOut", QX_OPE_NEQ, 30, {}, {3, 5}},
                    SearchCase{"DiffersFromNull", QX_OPE_NEQ, {}, {}, {1, 3, 4, 5}},
                    SearchCase{"DiffersFromAbsent", QX_OPE_NEQ, 11, {}, {1, 3, 4, 5}},
                    SearchCase{"Within", QX_OPE_WITHIN, 10, 30, {5}},
                    SearchCase{"WithinNull", QX_OPE_WITHIN, {}, 30, {3, 5}},
                    SearchCase{"Below", QX_OPE_LES, 20, {}, {3}},
                    SearchCase{"BelowNull", QX_OPE_LES, {}, {}, {}},
                    SearchCase{"Above", QX_OPE_GT, 10, {}, {1, 4, 5}},
                    SearchCase{"AboveNull", QX_OPE_GT, {}, {}, {1, 3, 4, 5}},
                    SearchCase{"IsNull", QX_OPE_ISNULL, {}, {}, {2}}),
    case_name<SearchCase>);

class StringSearchTest : public EngineTest, public testing::WithParamInterface<SearchCase> {};

TEST_P(StringSearchTest, KeepsMatchingRowsInSetOrder) {
  const SearchCase& wanted = GetParam();
  TestTable table({{"name", strings({"abc", "", "bcd", "abd", "d", "ab\xFF"})}});
  EXPECT_EQ(table.rows(table.search("name", wanted.ope, wanted.low, wanted.high)), wanted.rows);
}

Cell s(const char* text) {
  return std::string(text);
}

INSTANTIATE_TEST_SUITE_P(
    Operators, StringSearchTest,
    testing::Values(SearchCase{"Equal", QX_OPE_EQ, s("abd"), {}, {4}},
                    SearchCase{"EqualEmpty", QX_OPE_EQ, s(""), {}, {2}},
                    SearchCase{"DiffersKeepsEmpty", QX_OPE_NEQ, s("abc"), {}, {2, 3, 4, 5, 6}},
                    SearchCase{"AtMostKeepsEmpty", QX_OPE_LEQ, s("abc"), {}, {1, 2}},
                    SearchCase{"AtMostEmpty", QX_OPE_LEQ, s(""), {}, {}},
                    SearchCase{"AtMostEmptyStrict", QX_OPE_LEQ | kStrict, s(""), {}, {2}},
                    SearchCase{"BelowEmpty", QX_OPE_LES, s(""), {}, {}},
                    SearchCase{"AtLeastEmpty", QX_OPE_GEQ, s(""), {}, {1, 2, 3, 4, 5, 6}},
                    SearchCase{"AboveEmpty", QX_OPE_GT, s(""), {}, {1, 3, 4, 5, 6}},
                    SearchCase{"Between", QX_OPE_BETWEEN, s("abc"), s("abd"), {1, 4}},
                    SearchCase{"Begins", QX_OPE_BEGINS, s("ab"), {}, {1, 4, 6}},
                    SearchCase{"BeginsEmpty", QX_OPE_BEGINS, s(""), {}, {1, 2, 3, 4, 5, 6}},
                    SearchCase{"BeginsWithLastByteFF", QX_OPE_BEGINS, s("ab\xFF"), {}, {}},
                    SearchCase{"Contains", QX_OPE_CONTAINS, s("bc"), {}, {1, 3}},
                    SearchCase{"ContainsEmpty", QX_OPE_CONTAINS, s(""), {}, {1, 2, 3, 4, 5, 6}},
                    SearchCase{"Ends", QX_OPE_ENDS, s("d"), {}, {3, 4, 5}},
                    SearchCase{"EndsLonger", QX_OPE_ENDS, s("xabc"), {}, {}}),
    case_name<SearchCase>);

class SearchTest : public EngineTest {};

TEST_F(SearchTest, LeavesTheCurrentSetAndKeepsTheAttributeBlock) {
  TestTable table({{"a", ints({1, 2, 3})}});
  const int source = table.add_set({3, 1});
  char block[64] = "mark";
  ASSERT_EQ(RQXSetSubsetAttr(table.id(), source, block), 0);
  const int found = table.search("a", QX_OPE_GEQ, 1, {}, source);
  EXPECT_EQ(RQXGetCurrentSetID(table.id()), source);
  EXPECT_EQ(table.rows(found), (Rows{3, 1}));
  char copy[64] = "";
  ASSERT_EQ(RQXGetSubsetAttr(table.id(), found, copy), 0);
  EXPECT_STREQ(copy, "mark");
}

TEST_F(SearchTest, RefusesWhatDoesNotGoTogether) {
  TestTable table({{"n", ints({1})}, {"s", strings({"a"})}});
  const int t = table.id();
  const int n = table.filter("n");
  const int s_id = table.filter("s");
  int one = 1;
  char* const number = reinterpret_cast<char*>(&one);
  char text[] = "a";
  expect_failure(RQXSearchByField(99, n, -1, 0, number, number), QX_ERROR_NO_TABLE,
                 "No Such Table: 99");
  expect_failure(RQXSearchByField(t, 99, -1, 0, number, number), QX_ERROR_NO_FILTER,
                 "No Such Filter: 99");
  expect_failure(RQXSearchByField(t, 0, -1, 0, number, number), QX_ERROR_NO_FILTER);
  expect_failure(RQXSearchByField(t, n, 99, 0, number, number), QX_ERROR_NO_SET_ID,
                 "No Such Set: 99");
  for (const int ope : {12, 127}) {
    expect_failure(RQXSearchByField(t, n, -1, ope, number, number), QX_ERROR_OPERATION,
                   "Invalid Parameter : OpeNo");
  }
  for (const int ope : {QX_OPE_BEGINS, QX_OPE_CONTAINS, QX_OPE_ENDS}) {
    expect_failure(RQXSearchByField(t, n, -1, ope, text, text), QX_ERROR_OPERATION,
                   "String operation for Integer column is not allowed.");
  }
  expect_failure(RQXSearchByField(t, s_id, -1, QX_OPE_ISNULL, text, text), QX_ERROR_OPERATION,
                 "'IS NULL' operation for String column is not allowd.");
  // Also on an empty set.
  const int empty = table.add_set({});
  expect_failure(RQXSearchByField(t, n, empty, QX_OPE_ENDS, text, text), QX_ERROR_OPERATION);
  EXPECT_EQ(RQXGetNSet(t), 2);
}

TEST_F(SearchTest, CharacterCodesOfTheCallerMustBeTheDatabases) {
  TestTable table({{"s", strings({"a"})}});
  const int f = table.filter("s");
  char text[] = "a";
  expect_failure(RQXSearchByFieldSJIS(table.id(), f, -1, 0, text, text), QX_ERROR_LOCALE,
                 "Not equal to WS DBCharCode");
  expect_failure(RQXSearchByFieldLocale(table.id(), f, -1, 0, text, text, QX_LOCALE_EUC),
                 QX_ERROR_LOCALE, "Invalid Parameter : LocaleID");
  EXPECT_GT(RQXSearchByFieldLocale(table.id(), f, -1, 0, text, text, QX_LOCALE_UTF8), 0);
  EXPECT_GT(RQXSearchByFieldLocale(table.id(), f, -1, 0, text, text, 99), 0);
  ASSERT_EQ(RQXSetKanjiCode(QX_LOCALE_SJIS), 0);
  EXPECT_GT(RQXSearchByFieldSJIS(table.id(), f, -1, 0, text, text), 0);
}

struct CodeCase {
  const char* name;
  int locale;
  std::vector<std::string> texts;
  const char* part;
  Rows contain;
  Rows end;
};

class CharacterCodeTest : public EngineTest, public testing::WithParamInterface<CodeCase> {};

TEST_P(CharacterCodeTest, TextIsFoundWhereACharacterBegins) {
  const CodeCase& wanted = GetParam();
  ASSERT_EQ(RQXSetKanjiCode(wanted.locale), 0);
  TestTable table({{"s", strings(wanted.texts)}});
  EXPECT_EQ(table.rows(table.search("s", QX_OPE_CONTAINS, s(wanted.part))), wanted.contain);
  EXPECT_EQ(table.rows(table.search("s", QX_OPE_ENDS, s(wanted.part))), wanted.end);
}

const std::vector<std::string> kBackslashes = {"\x83\x5C", "\x5C", "a\x5C", "\x83\x5C\x5Cz"};

INSTANTIATE_TEST_SUITE_P(
    Codes, CharacterCodeTest,
    testing::Values(
        CodeCase{"ShiftJis", QX_LOCALE_SJIS, kBackslashes, "\x5C", {2, 3, 4}, {2, 3}},
        CodeCase{"Ms932", QX_LOCALE_MS932, kBackslashes, "\x5C", {2, 3, 4}, {2, 3}},
        CodeCase{"Ms949",
                 QX_LOCALE_MS949,
                 {"\x81\x61", "a", "\xB0\xA1\x61", "\xB0\xA1\x81\x61"},
                 "a",
                 {2, 3},
                 {2, 3}},
        CodeCase{"Euc",
                 QX_LOCALE_EUC,
                 {"\xA4\xA2\xA4\xA2", "\xA2\xA4", "\xA4\xA2\xA2\xA4", "a\xA2\xA4z"},
                 "\xA2\xA4",
                 {2, 3, 4},
                 {2, 3}},
        CodeCase{"Utf8",
                 QX_LOCALE_UTF8,
                 {"\u00e9", "\xA9", "\u00e9\xA9", "\xA9z"},
                 "\xA9",
                 {2, 3, 4},
                 {2, 3}},
        CodeCase{"Cp1252", QX_LOCALE_CP1252, kBackslashes, "\x5C", {1, 2, 3, 4}, {1, 2, 3}},
        CodeCase{"Ms936", QX_LOCALE_MS936, kBackslashes, "\x5C", {1, 2, 3, 4}, {1, 2, 3}}),
    case_name<CodeCase>);

struct PlaceCase {
  const char* name;
  int ope;
  int n1;
  int n2;
  Rows by_number;  // of set {5, 2, 4, 1}
  Rows by_position;
};

class PlaceSearchTest : public EngineTest, public testing::WithParamInterface<PlaceCase> {};

TEST_P(PlaceSearchTest, ComparesRowNumbersAndPositions) {
  const PlaceCase& wanted = GetParam();
  TestTable table({{"a", ints({1, 2, 3, 4, 5})}});
  const int set = table.add_set({5, 2, 4, 1});
  const int by_number = RQXSearchByRowNo(table.id(), 0, set, wanted.ope, wanted.n1, wanted.n2);
  EXPECT_EQ(table.rows(by_number), wanted.by_number);
  EXPECT_EQ(RQXGetCurrentSetID(table.id()), by_number);
  const int by_position =
      RQXSearchByDispRowNoReal(table.id(), set, wanted.ope, wanted.n1, wanted.n2);
  EXPECT_EQ(table.rows(by_position), wanted.by_position);
}

constexpr int kMax = 0x7FFFFFFF;

INSTANTIATE_TEST_SUITE_P(
    Operators, PlaceSearchTest,
    testing::Values(
        PlaceCase{"Equal", 0, 2, 0, {2}, {2}}, PlaceCase{"EqualAbsent", 0, 3, 0, {}, {4}},
        PlaceCase{"EqualZero", 0, 0, 0, {}, {}}, PlaceCase{"Between", 1, 2, 4, {2, 4}, {2, 4, 1}},
        PlaceCase{"BetweenFromZero", 1, 0, 9, {5, 2, 4, 1}, {5, 2, 4, 1}},
        PlaceCase{"AtMost", 2, 2, 0, {2, 1}, {5, 2}}, PlaceCase{"AtLeast", 3, 4, 0, {5, 4}, {1}},
        PlaceCase{"AtLeastZero", 3, 0, 0, {5, 2, 4, 1}, {5, 2, 4, 1}},
        PlaceCase{"Differs", 4, 2, 0, {5, 4, 1}, {5, 4, 1}},
        PlaceCase{"DiffersFromOutside", 4, 9, 0, {5, 2, 4, 1}, {5, 2, 4, 1}},
        PlaceCase{"Within", 5, 1, 4, {2}, {2, 4}}, PlaceCase{"Below", 6, 3, 0, {2, 1}, {5, 2}},
        PlaceCase{"Above", 7, 3, 0, {5, 4}, {1}},
        PlaceCase{"Extremes", 5, -kMax - 1, kMax, {5, 2, 4, 1}, {5, 2, 4, 1}}),
    case_name<PlaceCase>);

TEST_F(SearchTest, PlaceSearchesRefuseOtherOperatorsAndSets) {
  TestTable table({{"a", ints({1})}});
  for (const int ope : {-1, 8, 11, int{QX_OPE_STRICT}}) {
    expect_failure(RQXSearchByRowNo(table.id(), 0, -1, ope, 1, 1), QX_ERROR_OPERATION,
                   "Invalid Parameter : OpeNo");
    expect_failure(RQXSearchByDispRowNoReal(table.id(), -1, ope, 1, 1), QX_ERROR_OPERATION,
                   "Invalid Parameter : OpeNo");
  }
  expect_failure(RQXSearchByRowNo(table.id(), 0, 9, 0, 1, 1), QX_ERROR_NO_SET_ID);
  expect_failure(RQXSearchByDispRowNoReal(table.id(), 9, 0, 1, 1), QX_ERROR_NO_SET_ID);
}

TEST_F(SearchTest, SkipsTheLeadingByteOfStoredTexts) {
  TestTable table({{"s", strings({"xabc", "xb", "", "xabd", "x"})}});
  const auto rows = [&](int ope, const char* v1, const char* v2 = "") {
    std::string low = v1;
    std::string high = v2;
    return table.rows(RQXSearchByField2(table.id(), table.filter("s"), table.set_id(0), ope,
                                        low.data(), high.data()));
  };
  EXPECT_EQ(rows(QX_OPE_EQ, "abc"), (Rows{1}));
  EXPECT_EQ(rows(QX_OPE_BETWEEN, "abc", "abd"), (Rows{1, 4}));
  EXPECT_EQ(rows(QX_OPE_LEQ, "abc"), (Rows{1, 5}));
  EXPECT_EQ(rows(QX_OPE_GEQ, "abd"), (Rows{2, 4}));
  EXPECT_EQ(rows(QX_OPE_NEQ, "abc"), (Rows{2, 4, 5}));
  EXPECT_EQ(rows(QX_OPE_WITHIN, "abc", "b"), (Rows{4}));
  EXPECT_EQ(rows(QX_OPE_LES, "abd"), (Rows{1, 5}));
  EXPECT_EQ(rows(QX_OPE_GT, "abc"), (Rows{2, 4}));
  EXPECT_EQ(rows(QX_OPE_BEGINS, "ab"), (Rows{1, 4}));
  EXPECT_EQ(rows(QX_OPE_CONTAINS, "b"), (Rows{1, 2, 4}));
  EXPECT_EQ(rows(QX_OPE_ENDS, "b"), (Rows{2}));
  char text[] = "a";
  for (const int ope : {QX_OPE_ISNULL, QX_OPE_STRICT}) {
    expect_failure(RQXSearchByField2(table.id(), table.filter("s"), -1, ope, text, text),
                   QX_ERROR_OPERATION, "Invalid Parameter : OpeNo");
  }
}

TEST_F(SearchTest, AppliesAHitTableOfTheClient) {
  TestTable table({{"a", ints({30, 10, kNullInt, 30})}});
  unsigned char flags[] = {1, 0, 1};  // NULL, 10, 30
  const int found = QXSearch(table.id(), table.filter("a"), table.set_id(0), flags);
  EXPECT_EQ(table.rows(found), (Rows{1, 3, 4}));
  EXPECT_EQ(RQXGetCurrentSetID(table.id()), found);
}

TEST_F(SearchTest, CountsRowsPerValue) {
  TestTable table({{"a", ints({30, 10, kNullInt, 30})}});
  int counts[3] = {-1, -1, -1};
  ASSERT_EQ(QXGetValCount(table.id(), table.filter("a"), table.set_id(0), counts), 0);
  EXPECT_EQ(std::vector<int>(counts, counts + 3), (std::vector<int>{1, 1, 2}));
  expect_failure(QXGetValCount(table.id(), 9, 1, counts), QX_ERROR_NO_FILTER);
  expect_failure(QXGetValCount(table.id(), table.filter("a"), 9, counts), QX_ERROR_NO_SET);
}

TEST_F(SearchTest, NoRoomForAnotherSetIsAFailure) {
  TestTable table({{"a", ints({1, 2})}});
  while (RQXGetNSet(table.id()) < 10000) table.add_set({1});
  int one = 1;
  char* const value = reinterpret_cast<char*>(&one);
  expect_failure(RQXSearchByField(table.id(), table.filter("a"), 1, 0, value, value),
                 QX_ERROR_SET_COUNT, "SetCount overflow");
  EXPECT_EQ(RQXGetNSet(table.id()), 10000);
}

}  // namespace
}  // namespace qxe::test
