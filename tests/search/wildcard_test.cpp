// Searches by a pattern with wildcards, through the interface. Random ones are compared with plain
// rows in tests/api/edit_model_test.cpp.
#include <gtest/gtest.h>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

int wildcard(const TestTable& table, const std::string& pattern, int set = TestTable::kAllRows) {
  return RQXSearchByFieldWildCard(table.id(), table.filter("s"), table.set_id(set),
                                  pattern.c_str());
}

struct PatternCase {
  const char* name;
  const char* pattern;
  Rows rows;
};

class WildCardPatternTest : public EngineTest, public testing::WithParamInterface<PatternCase> {};

TEST_P(WildCardPatternTest, HitsTextsThatMatchAsAWhole) {
  TestTable table({{"s", strings({"Boston", "", "Bolton", "B", "a*b", "axb", "a\\b", "boston",
                                  "\xe6\x9d\xb1", "abab"})}});
  const Rows found = table.rows(wildcard(table, GetParam().pattern));
  EXPECT_EQ(found, GetParam().rows);
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, WildCardPatternTest,
    testing::Values(
        PatternCase{"Plain", "Boston", {1}}, PatternCase{"Run", "B*ton", {1, 3}},
        PatternCase{"RunOfNothing", "B*", {1, 3, 4}}, PatternCase{"NotAPart", "osto", {}},
        PatternCase{"Inside", "*os*", {1, 8}}, PatternCase{"Byte", "Bo?ton", {1, 3}},
        PatternCase{"ByteNeedsOne", "Boston?", {}},
        PatternCase{"AllButEmpty", "*", {1, 3, 4, 5, 6, 7, 8, 9, 10}}, PatternCase{"Empty", "", {}},
        PatternCase{"AtLeastTwo", "*?*?", {1, 3, 5, 6, 7, 8, 9, 10}},
        PatternCase{"PlainStar", "a\\*b", {5}}, PatternCase{"AnyByte", "a?b", {5, 6, 7}},
        PatternCase{"PlainBackslash", "a\\\\b", {7}}, PatternCase{"PlainQuestionMark", "a\\?b", {}},
        PatternCase{"RunBeforePlainStar", "*\\*b", {5}},
        PatternCase{"BytesOfACharacter", "\xe6??", {9}},
        PatternCase{"CharacterIsThreeBytes", "???", {5, 6, 7, 9}},
        PatternCase{"PatternEndsInACharacter", "\xe6\x9d", {}},
        PatternCase{"StarWithinACutCharacter", "\xe6*", {9}},
        PatternCase{"LastOfSeveral", "*ab", {10}}, PatternCase{"TwoRuns", "*o*o*", {1, 3, 8}}),
    case_name<PatternCase>);

class WildCardTest : public EngineTest {
 protected:
  static int search(const TestTable& table, const char* column, int set, const char* pattern) {
    return RQXSearchByFieldWildCard(table.id(), table.filter(column), set, pattern);
  }
};

TEST_F(WildCardTest, ResultIsCurrentAndLikeItsSource) {
  TestTable table({{"s", strings({"ab", "b", "ac"})}});
  const int source = table.add_set({3, 2, 1});
  char block[64] = "mark";
  ASSERT_EQ(RQXSetSubsetAttr(table.id(), source, block), 0);
  ASSERT_EQ(RQXSetSetName(table.id(), source, "source"), 0);
  for (const char* pattern : {"a*", "x*"}) {
    for (auto* search : {RQXSearchByFieldWildCard, QXSearchByFieldWildCard}) {
      const int found = search(table.id(), table.filter("s"), source, pattern);
      EXPECT_EQ(table.rows(found), *pattern == 'a' ? (Rows{3, 1}) : Rows{});
      EXPECT_EQ(RQXGetCurrentSetID(table.id()), found);
      char text[256] = "";
      ASSERT_EQ(RQXGetSubsetAttr(table.id(), found, text), 0);
      EXPECT_STREQ(text, "mark");
      ASSERT_EQ(RQXGetSetName(table.id(), found, text), 0);
      EXPECT_STREQ(text, "source");
    }
  }
  EXPECT_EQ(table.rows(search(table, "s", -1, "*")), Rows{});  // of the current set, which is empty
  EXPECT_EQ(RQXGetNSet(table.id()), 7);
}

TEST_F(WildCardTest, SeesValuesThatWereJustWritten) {
  TestTable table({{"s", strings({"ab", "b", "ac"})}});
  char text[] = "anew";
  ASSERT_EQ(RQXOverwriteRealExStrR1(table.id(), table.filter("s"), table.set_id(0), 2, text), 1);
  EXPECT_EQ(table.rows(wildcard(table, "a*w")), (Rows{2}));
}

TEST_F(WildCardTest, BadPatternsAreRefused) {
  TestTable table({{"s", strings({"a"})}});
  const std::string longest(4095, '*');
  EXPECT_EQ(table.rows(wildcard(table, longest)), (Rows{1}));
  const std::string too_long(4096, '*');
  for (const char* pattern : {"\\x", "\\", "a\\", "*\\", "\\\\\\", "\\\xc3\xa9",
                              static_cast<const char*>(nullptr), too_long.c_str()}) {
    expect_failure(search(table, "s", 1, pattern), QX_ERROR_PARAMETER,
                   "Invalid Parameter : Pattern");
    expect_failure(QXSearchByFieldWildCard(table.id(), table.filter("s"), 1, pattern),
                   QX_ERROR_PARAMETER, "Invalid Parameter : Pattern");
  }
  EXPECT_EQ(RQXGetNSet(table.id()), 2);
}

TEST_F(WildCardTest, RefusesWhatIsNoStringFilter) {
  const TestTable table({{"s", strings({"a"})}, {"n", ints({1})}, {"d", dates({"2024/03/01"})}});
  const int s = table.filter("s");
  const int n = table.filter("n");
  expect_failure(RQXSearchByFieldWildCard(99, s, 1, "*"), QX_ERROR_NO_TABLE, "No Such Table: 99");
  expect_failure(RQXSearchByFieldWildCard(table.id(), 99, 99, "*"), QX_ERROR_NO_FILTER,
                 "No Such Filter: 99");
  expect_failure(RQXSearchByFieldWildCard(table.id(), s, 99, "*"), QX_ERROR_NO_SET_ID,
                 "No Such Set: 99");
  for (const int filter : {n, table.filter("d")}) {
    expect_failure(RQXSearchByFieldWildCard(table.id(), filter, 99, "*"), QX_ERROR_TYPE_MISMATCH,
                   "Illegal data type ( Not STRING )");
  }
  // The pattern is looked at first.
  expect_failure(RQXSearchByFieldWildCard(table.id(), n, 1, "\\x"), QX_ERROR_PARAMETER);
  EXPECT_EQ(RQXGetNSet(table.id()), 1);
}

TEST_F(WildCardTest, ATrailingBackslashOfACharacterEscapesNothing) {
  ASSERT_EQ(RQXSetKanjiCode(QX_LOCALE_SJIS), 0);
  TestTable table({{"s", strings({"\x83\x5C", "\x83\x5C*", "\x83\x5Cx", "\x5C", "x\x5C"})}});
  EXPECT_EQ(table.rows(wildcard(table, "\x83\x5C*")), (Rows{1, 2, 3}));
  EXPECT_EQ(table.rows(wildcard(table, "\x83\x5C\\*")), (Rows{2}));
  EXPECT_EQ(table.rows(wildcard(table, "\x83\x5C")), (Rows{1}));
  // The text is matched by bytes.
  EXPECT_EQ(table.rows(wildcard(table, "?\\\\")), (Rows{1, 5}));
  // As two characters of one byte each, the second is a backslash before a star.
  ASSERT_EQ(RQXSetKanjiCode(QX_LOCALE_CP1252), 0);
  EXPECT_EQ(table.rows(wildcard(table, "\x83\x5C*")), (Rows{}));
  expect_failure(wildcard(table, "\x83\x5C"), QX_ERROR_PARAMETER);
}

TEST_F(WildCardTest, ManyStarsTakeNoLongTime) {
  const std::string text(4000, 'a');
  TestTable table({{"s", strings({text, text + "b", "c" + text + "b"})}});
  std::string stars;
  for (int i = 0; i < 1300; ++i) stars += "*a?";
  EXPECT_EQ(table.rows(wildcard(table, stars + "*b")), (Rows{2, 3}));
  EXPECT_EQ(table.rows(wildcard(table, stars + "*c")), (Rows{}));
}

}  // namespace
}  // namespace qxe::test
