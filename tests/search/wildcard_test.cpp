// Searches by a pattern with wildcards, through the interface.
#include <gtest/gtest.h>

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

class WildCardTest : public EngineTest {};

TEST_F(WildCardTest, HitsTextsThatMatchAsAWhole) {
  const TestTable table({{"s", strings({"Boston", "", "Bolton", "B", "a*b", "axb", "a\\b", "boston",
                                        "\xe6\x9d\xb1", "abab"})}});
  const std::pair<const char*, Rows> cases[] = {
      {"Boston", {1}},  {"B*", {1, 3, 4}},
      {"osto", {}},     {"Bo?ton", {1, 3}},
      {"Boston?", {}},  {"*", {1, 3, 4, 5, 6, 7, 8, 9, 10}},
      {"", {}},         {"*?*?", {1, 3, 5, 6, 7, 8, 9, 10}},
      {"a\\*b", {5}},   {"a\\\\b", {7}},
      {"*\\*b", {5}},   {"\xe6??", {9}},
      {"\xe6\x9d", {}}, {"\xe6*", {9}},
      {"*ab", {10}}};
  for (const auto& [pattern, rows] : cases) {
    EXPECT_EQ(table.rows(wildcard(table, pattern)), rows) << pattern;
  }
}

TEST_F(WildCardTest, BadPatternsAreRefused) {
  TestTable table({{"s", strings({"a"})}});
  const std::string longest(4095, '*');
  EXPECT_EQ(table.rows(wildcard(table, longest)), (Rows{1}));
  const std::string too_long(4096, '*');
  for (const char* pattern : {"\\x", "\\", "a\\", "*\\", "\\\\\\", "\\\xc3\xa9",
                              static_cast<const char*>(nullptr), too_long.c_str()}) {
    expect_failure(QXSearchByFieldWildCard(table.id(), table.filter("s"), 1, pattern),
                   QX_ERROR_PARAMETER, "Invalid Parameter : Pattern");
  }
  EXPECT_EQ(RQXGetNSet(table.id()), 2);
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
