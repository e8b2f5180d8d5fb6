// Searches by a pattern with wildcards, through the interface. Random ones are compared with plain
// rows in tests/api/edit_model_test.cpp.
#include <gtest/gtest.h>

#include "support/engine_test.h"
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

}  // namespace
}  // namespace qxe::test
