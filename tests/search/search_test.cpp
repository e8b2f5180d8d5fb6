// Searches by value, by list of values, by row number and by position, through the interface.
#include <limits.h>

#include <algorithm>
#include <array>

#include "support/engine_test.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

constexpr int kStrict = QX_OPE_STRICT;
constexpr std::array kNumberOperators = {QX_OPE_EQ,  QX_OPE_BETWEEN, QX_OPE_LEQ,
                                         QX_OPE_GEQ, QX_OPE_NEQ,     QX_OPE_WITHIN,
                                         QX_OPE_LES, QX_OPE_GT,      QX_OPE_ISNULL};
constexpr std::array kTextOperators = {QX_OPE_EQ,     QX_OPE_BETWEEN,  QX_OPE_LEQ, QX_OPE_GEQ,
                                       QX_OPE_NEQ,    QX_OPE_WITHIN,   QX_OPE_LES, QX_OPE_GT,
                                       QX_OPE_BEGINS, QX_OPE_CONTAINS, QX_OPE_ENDS};

class RandomSearchTest : public EngineTest, public testing::WithParamInterface<int> {
 protected:
  int random_operator(int type) {
    const int ope =
        type == QX_DT_STRING
            ? kTextOperators[static_cast<size_t>(random_.below(kTextOperators.size()))]
            : kNumberOperators[static_cast<size_t>(random_.below(kNumberOperators.size()))];
    return random_.chance(25) ? ope | kStrict : ope;
  }
  const NamedColumn& any_column() const { return columns_[static_cast<size_t>(random_.below(7))]; }

  mutable RandomData random_{static_cast<unsigned>(GetParam())};
  // Tables of a few hundred rows searched through sets of all sizes cross the border between the
  // small sets, whose own values are decided, and the others.
  const Columns columns_ = random_.table(random_.chance(10) ? 0 : 1 + random_.below(400));
  const NaiveModel model_{columns_};
  const TestTable table_{columns_};
};

TEST_P(RandomSearchTest, EqualsTheNaiveModel) {
  for (int round = 0; round < 60; ++round) {
    const auto& [name, column] = any_column();
    const Rows rows = random_.set_of(model_.total_rows());
    const int ope = random_operator(column.type);
    const Cell low = random_.bound(column);
    const Cell high = random_.bound(column);
    const int found = table_.search(name, ope, low, high, table_.add_set(rows));
    ASSERT_EQ(table_.rows(found), model_.search(name, ope, low, high, rows))
        << name << " operator " << ope << " low " << to_text(low, column.type) << " high "
        << to_text(high, column.type) << " seed " << GetParam() << "\n"
        << to_text(columns_);
  }
}

TEST_P(RandomSearchTest, ValueListsEqualTheNaiveModel) {
  for (int round = 0; round < 30; ++round) {
    const auto& [name, column] = any_column();
    const Rows rows = random_.set_of(model_.total_rows());
    std::vector<Cell> values;
    for (int i = random_.below(20); i > 0; --i) values.push_back(random_.bound(column));
    const int found = table_.search_values(name, values, table_.add_set(rows));
    ASSERT_EQ(table_.rows(found), model_.search_values(name, values, rows))
        << name << " seed " << GetParam() << "\n"
        << to_text(columns_);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSearchTest, testing::Range(1, 13));

class SearchTest : public EngineTest {};

Cell s(const char* text) {
  return std::string(text);
}

// Where the rules are not those of plain comparison.
TEST_F(SearchTest, NullsAndEmptyTextsHaveRulesOfTheirOwn) {
  const TestTable table({{"n", ints({30, kNullInt, 10, 30, 20, 40})},
                         {"s", strings({"abc", "", "bcd", "abd", "d", "ab\xFF"})}});
  struct {
    const char* column;
    int ope;
    Cell low, high;
    Rows rows;
  } const cases[] = {{"n", QX_OPE_EQ, {}, {}, {2}},
                     {"n", QX_OPE_EQ | kStrict, {}, {}, {}},
                     {"n", QX_OPE_BETWEEN, 20, 10, {}},
                     {"n", QX_OPE_BETWEEN, {}, 10, {2, 3}},
                     {"n", QX_OPE_LEQ, 20, {}, {3, 5}},
                     {"n", QX_OPE_GEQ, {}, {}, {1, 2, 3, 4, 5, 6}},
                     {"n", QX_OPE_NEQ, 30, {}, {3, 5, 6}},
                     {"n", QX_OPE_WITHIN, {}, 30, {3, 5}},
                     {"n", QX_OPE_GT, {}, {}, {1, 3, 4, 5, 6}},
                     {"n", QX_OPE_ISNULL, {}, {}, {2}},
                     {"s", QX_OPE_NEQ, s("abc"), {}, {2, 3, 4, 5, 6}},
                     {"s", QX_OPE_LEQ, s("abc"), {}, {1, 2}},
                     {"s", QX_OPE_LEQ, s(""), {}, {}},
                     {"s", QX_OPE_LEQ | kStrict, s(""), {}, {2}},
                     {"s", QX_OPE_BEGINS, s("ab"), {}, {1, 4, 6}},
                     {"s", QX_OPE_BEGINS, s("ab\xFF"), {}, {}},
                     {"s", QX_OPE_CONTAINS, s(""), {}, {1, 2, 3, 4, 5, 6}},
                     {"s", QX_OPE_ENDS, s("xabc"), {}, {}}};
  for (const auto& [column, ope, low, high, rows] : cases) {
    EXPECT_EQ(table.rows(table.search(column, ope, low, high)), rows) << column << ope;
  }
}

TEST_F(SearchTest, CharacterCodesOfTheCallerMustBeTheDatabases) {
  // The second byte of the first text's character is a backslash.
  const TestTable table({{"s", strings({"\x83\x5C", "\x5C", "a\x5C"})}});
  char text[] = "\x5C";
  const auto search = [&](int locale) {
    return RQXSearchByFieldLocale(table.id(), 1, -1, QX_OPE_ENDS, text, text, locale);
  };
  EXPECT_GT(search(QX_LOCALE_UTF8), 0);
  EXPECT_GT(search(99), 0);
  ASSERT_EQ(RQXSetKanjiCode(QX_LOCALE_SJIS), 0);
  expect_failure(search(QX_LOCALE_UTF8), QX_ERROR_LOCALE);
  EXPECT_EQ(table.rows(search(QX_LOCALE_SJIS)), (Rows{2, 3}));
  EXPECT_EQ(table.rows(RQXSearchByFieldSJIS(table.id(), 1, 1, QX_OPE_CONTAINS, text, text)),
            (Rows{2, 3}));
}

bool compares(int number, int ope, int low, int high) {
  switch (ope) {
    case QX_OPE_EQ: return number == low;
    case QX_OPE_BETWEEN: return low <= number && number <= high;
    case QX_OPE_LEQ: return number <= low;
    case QX_OPE_GEQ: return number >= low;
    case QX_OPE_NEQ: return number != low;
    case QX_OPE_WITHIN: return low < number && number < high;
    case QX_OPE_LES: return number < low;
    default: return number > low;
  }
}

TEST_F(SearchTest, RowNumbersAndPositionsAreCompared) {
  const TestTable table({{"a", ints({1, 2, 3, 4, 5})}});
  const Rows rows = {5, 2, 4, 1};
  const int set = table.add_set(rows);
  for (int ope = QX_OPE_EQ; ope <= QX_OPE_GT; ++ope) {
    for (const int low : {INT_MIN, 0, 1, 2, 3, 5, 9, INT_MAX}) {
      for (const int high : {INT_MIN, 0, 2, 4, INT_MAX}) {
        Rows by_number, by_position;
        for (size_t i = 0; i < rows.size(); ++i) {
          if (compares(rows[i], ope, low, high)) by_number.push_back(rows[i]);
          if (compares(static_cast<int>(i) + 1, ope, low, high)) by_position.push_back(rows[i]);
        }
        SCOPED_TRACE(std::to_string(ope) + " " + std::to_string(low) + " " + std::to_string(high));
        EXPECT_EQ(table.rows(RQXSearchByRowNo(table.id(), 0, set, ope, low, high)), by_number);
        EXPECT_EQ(table.rows(RQXSearchByDispRowNoReal(table.id(), set, ope, low, high)),
                  by_position);
      }
    }
  }
}

TEST_F(SearchTest, SkipsTheLeadingByteOfStoredTexts) {
  const TestTable table({{"s", strings({"xabc", "xb", "", "xabd", "x"})}});
  struct {
    int ope;
    std::string low, high;
    Rows rows;
  } cases[] = {{QX_OPE_EQ, "abc", "", {1}},        {QX_OPE_BETWEEN, "abc", "abd", {1, 4}},
               {QX_OPE_LEQ, "abc", "", {1, 5}},    {QX_OPE_GEQ, "abd", "", {2, 4}},
               {QX_OPE_NEQ, "abc", "", {2, 4, 5}}, {QX_OPE_WITHIN, "abc", "b", {4}},
               {QX_OPE_LES, "abd", "", {1, 5}},    {QX_OPE_GT, "abc", "", {2, 4}},
               {QX_OPE_BEGINS, "ab", "", {1, 4}},  {QX_OPE_CONTAINS, "b", "", {1, 2, 4}},
               {QX_OPE_ENDS, "b", "", {2}}};
  for (auto& [ope, low, high, rows] : cases) {
    EXPECT_EQ(table.rows(RQXSearchByField2(table.id(), 1, 1, ope, low.data(), high.data())), rows)
        << ope;
  }
}

// A set that is made of another: whether it becomes current, and what it is called.
TEST_F(SearchTest, ResultsAreLikeTheirSourceAndLeaveItAlone) {
  const TestTable table({{"a", ints({2, 3, 1})}, {"s", strings({"x", "y", "z"})}});
  static int keys[] = {1, 0};
  static int descending[] = {QX_SORT_DESC, 0};
  static unsigned char flags[] = {0, 1, 1, 0};
  static int value = 2;
  static char* const two = reinterpret_cast<char*>(&value);
  struct {
    int (*make)(int table, int set);
    Rows rows;
    bool current = true;
    const char* name = "chosen";
    const char* block = "mark";
  } const cases[] = {
      {[](int t, int set) { return RQXSearchByField(t, 1, set, QX_OPE_GEQ, two, two); },
       {1, 2},
       false,
       ""},
      {[](int t, int set) { return QXSearch(t, 1, set, flags); }, {3, 1}},
      {[](int t, int set) { return RQXSearchByFieldWildCard(t, 2, set, "x"); }, {1}},
      {[](int t, int set) { return QXSearchByFieldWildCard(t, 2, set, "no"); }, {}},
      {[](int t, int set) { return RQXSearchByRowNo(t, 0, set, QX_OPE_GEQ, 2, 0); }, {3, 2}},
      {[](int t, int set) { return RQXSortByField(t, 1, set, QX_SORT_ASC); }, {3, 1, 2}},
      {[](int t, int set) { return QXSortByField(t, 1, set, QX_SORT_DESC); }, {2, 1, 3}},
      {[](int t, int set) { return RQXIntegratedSortByField(t, set, keys, descending); },
       {2, 1, 3}},
      {[](int t, int set) { return RQXSortByRowNo(t, 0, set, QX_SORT_DESC); }, {3, 2, 1}},
      {[](int t, int set) { return RQXExtractUniqueReal(t, set, keys); }, {3, 1, 2}},
      {[](int t, int set) { return RQXSetOpeReal(t, QX_SET_OR, set, set); },
       {1, 2, 3},
       true,
       "",
       ""},
      {[](int t, int set) { return RQXSetNotReal(t, set); }, {}, true, "", ""}};
  int number = 0;
  for (const auto& [make, rows, current, name, block] : cases) {
    SCOPED_TRACE(number++);
    const int source = table.add_set({3, 1, 2});
    RQXSetSetName(table.id(), source, "chosen");
    const char mark[64] = "mark";
    RQXSetSubsetAttr(table.id(), source, mark);
    for (const int given : {source, -1}) {  // by its id and as the current set
      RQXChangeCurrentSetID(table.id(), source);
      const int found = make(table.id(), given);
      EXPECT_EQ(table.rows(found), rows);
      EXPECT_EQ(RQXGetCurrentSetID(table.id()), current ? found : source);
      char text[256] = "x";
      EXPECT_EQ(RQXGetSetName(table.id(), found, text), 0);
      EXPECT_STREQ(text, name);
      text[0] = 'x';
      EXPECT_EQ(RQXGetSubsetAttr(table.id(), found, text), 0);
      EXPECT_STREQ(text, block);
      EXPECT_EQ(table.rows(source), (Rows{3, 1, 2}));
    }
  }
}

}  // namespace
}  // namespace qxe::test
