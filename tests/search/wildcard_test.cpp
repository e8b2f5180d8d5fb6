// Searches by a pattern with wildcards, through the interface.
#include <gtest/gtest.h>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/naive_wildcard.h"
#include "support/random_data.h"
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

// Random patterns and texts

/// Characters of a code that share bytes with each other, and halves of them.
std::vector<std::string> alphabet(int locale) {
  switch (locale) {
    case QX_LOCALE_SJIS:
    case QX_LOCALE_MS932: return {"a", "b", "\x83\x5c", "\x83\x61", "\x83\x83", "\xb1", "\x83"};
    case QX_LOCALE_MS949: return {"a", "\xb0\xa1", "\xa1\xb0", "\x81\x5c", "\x81\x61", "\xb0"};
    case QX_LOCALE_EUC: return {"a", "\xa4\xa2", "\xa2\xa4", "\x8e\xb1", "\x8f\xa2\xa4", "\x8f"};
    case QX_LOCALE_UTF8: return {"a", "b", "\xc3\xa9", "\xe6\x9d\xb1", "\xf0\x9f\x98\x80", "\xe6"};
    default: return {"a", "b", "\x83", "\x5c", "\xff"};
  }
}

class RandomWildCardTest : public EngineTest, public testing::WithParamInterface<int> {
 protected:
  std::string random_text(int most) {
    std::string text;
    for (int i = random_.below(most + 1); i > 0; --i) {
      text += random_.chance(10) ? std::string(1, "*?\\"[random_.below(3)]) : any(alphabet_);
    }
    return text;
  }

  /// A pattern; every other one is a text with parts of it made wild.
  std::string random_pattern(const std::vector<std::string>& texts) {
    const std::vector<std::string> special = {"*", "*", "*", "?", "?", "\\*", "\\?", "\\\\"};
    std::string pattern;
    if (random_.chance(50)) {
      for (int i = random_.below(7); i > 0; --i) {
        pattern += any(random_.chance(50) ? special : alphabet_);
      }
      return random_.chance(5) ? pattern + "\\" : pattern;
    }
    for (const char byte : any(texts)) {
      if (random_.chance(20)) {
        pattern += any(special);
      } else if (random_.chance(90)) {
        pattern += byte;
      }
    }
    return pattern;
  }

  const std::string& any(const std::vector<std::string>& of) {
    return of[static_cast<size_t>(random_.below(static_cast<int>(of.size())))];
  }

  RandomData random_{static_cast<unsigned>(GetParam())};
  std::vector<std::string> alphabet_;
};

Rows model_search(const std::vector<std::string>& texts, const std::vector<PatternPart>& parts,
                  const Rows& set) {
  Rows found;
  for (const int row : set) {
    const std::string& text = texts[static_cast<size_t>(row) - 1];
    if (!text.empty() && naive_match(parts, text)) found.push_back(row);
  }
  return found;
}

// Sets of all sizes cross the border between the small sets, whose own values are tested, and the
// others.
TEST_P(RandomWildCardTest, EqualsTheNaiveModelInEveryCode) {
  for (int locale = QX_LOCALE_SJIS; locale <= QX_LOCALE_MS936; ++locale) {
    RQXClearDB();
    ASSERT_EQ(RQXSetKanjiCode(locale), 0);
    alphabet_ = alphabet(locale);
    std::vector<std::string> texts;
    for (int i = 1 + random_.below(1200); i > 0; --i) texts.push_back(random_text(8));
    const TestTable table({{"s", strings(texts)}});
    for (int round = 0; round < 15; ++round) {
      const Rows set = random_.set_of(static_cast<int>(texts.size()));
      const std::string pattern = random_pattern(texts);
      const auto parts = pattern_parts(pattern, locale);
      const int found = wildcard(table, pattern, table.add_set(set));
      if (!parts) {
        expect_failure(found, QX_ERROR_PARAMETER);
        continue;
      }
      ASSERT_EQ(table.rows(found), model_search(texts, *parts, set))
          << "pattern " << pattern << " locale " << locale << " seed " << GetParam();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWildCardTest, testing::Range(1, 9));

}  // namespace
}  // namespace qxe::test
