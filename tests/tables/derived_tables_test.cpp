// Tables made of others: copies, extracts, combinations, condensed ones, compared with plain loops
// over random data.
#include <string.h>

#include <algorithm>
#include <map>
#include <set>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Texts = std::vector<std::string>;
using Rows = std::vector<int>;

std::string name_of(int table) {
  char name[256] = "";
  require(RQXGetTableName(table, name), "RQXGetTableName");
  return name;
}

Texts filter_names(int table) {
  int ids[512];
  Texts names;
  const int count = require(RQXGetFilterIDList(table, ids), "RQXGetFilterIDList");
  for (int i = 0; i < count; ++i) {
    char name[256] = "";
    require(RQXGetFilterName(table, ids[i], name), "RQXGetFilterName");
    names.emplace_back(name);
  }
  return names;
}

_TRFilterInfo info_of(int table, int filter) {
  _TRFilterInfo info{};
  require(RQXGetFilterInfo(table, filter, &info), "RQXGetFilterInfo");
  return info;
}

std::vector<Cell> cells_at(const Column& column, const Rows& rows) {
  std::vector<Cell> cells;
  for (const int row : rows) cells.push_back(column.cells[static_cast<size_t>(row - 1)]);
  return cells;
}

/// Entries of the value list that just these cells need, NULL included.
int values_needed(const std::vector<Cell>& cells, int type) {
  std::set<Cell> distinct(cells.begin(), cells.end());
  distinct.insert(normal_form({}, type));
  return static_cast<int>(distinct.size());
}

/// The column must hold these cells, and must be fit for a search.
void expect_column(const TestTable& table, const std::string& name, const Column& wanted) {
  SCOPED_TRACE(name);
  const Column column = table.column(name);
  EXPECT_EQ(column.type, wanted.type);
  EXPECT_EQ(column.scale, wanted.scale);
  // The two zeros are equal cells, but not equal texts.
  ASSERT_TRUE(column.cells == wanted.cells) << to_text({{"is", column}, {"wanted", wanted}});
  if (wanted.cells.empty()) return;
  const NaiveModel model({{name, wanted}});
  const Cell bound = wanted.cells[wanted.cells.size() / 2];
  for (const int ope : {QX_OPE_EQ, QX_OPE_GEQ, QX_OPE_LES}) {
    EXPECT_EQ(table.rows(table.search(name, ope, bound)),
              model.search(name, ope, bound, {}, model.all_rows()))
        << ope;
  }
}

using DuplicateTest = EngineTest;

TEST_F(DuplicateTest, HoldsAllRowsAndColumns) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    RandomData random(seed);
    const Columns columns = random.table(random.below(4) * 150);
    const TestTable table(columns, "t");
    const TestTable copy = TestTable::existing(RQXDuplicateRealTable("copy", table.id()));
    EXPECT_EQ(copy.rows(), table.rows());
    for (const NamedColumn& named : columns) expect_column(copy, named.name, named.column);
    RQXClearDB();
  }
}

TEST_F(DuplicateTest, TakesTheRootSetAloneWithNameAndAttributes) {
  const TestTable table({{"a", ints({1, 2})}, {"b", strings({"x", "y"})}}, "t");
  table.add_set({2});
  RQXSetSetName(table.id(), 1, "all");
  char area[64] = "root";
  RQXSetSubsetAttr(table.id(), 1, area);
  const int copy = RQXDuplicateRealTable(nullptr, table.id());
  EXPECT_EQ(RQXGetNSet(copy), 1);
  EXPECT_EQ(RQXGetCurrentSetID(copy), 1);
  EXPECT_STREQ(RQXGetSetNameR1(copy, 1), "all");
  char copied[64] = "";
  RQXGetSubsetAttr(copy, 1, copied);
  EXPECT_STREQ(copied, "root");
}

/// Byte 20 of the attribute block of a filter's row pointers or value list.
char attribute(int table, int filter, bool valueList) {
  char area[64] = "";
  require(RQXGetFilterAttr(table, filter, area, valueList), "RQXGetFilterAttr");
  return area[20];
}

void set_attributes(int table, int filters) {
  for (int filter = 1; filter <= filters; ++filter) {
    for (const bool valueList : {false, true}) {
      char area[64] = "";
      require(RQXGetFilterAttr(table, filter, area, valueList), "RQXGetFilterAttr");
      area[20] = valueList ? 'v' : 'p';
      require(RQXSetFilterAttr(table, filter, area, valueList), "RQXSetFilterAttr");
    }
  }
}

TEST_F(DuplicateTest, AttributesComeAlongAsFarAsPromised) {
  const TestTable table(
      {{"a", ints({1, 2})}, {"b", strings({"x", "y"})}, {"c", dates({"2024/01/01", ""})}});
  set_attributes(table.id(), 3);
  const int copy = RQXDuplicateRealTable("copy", table.id());
  const int rows = RQXExtractRealTable("rows", table.id(), 1, nullptr);
  for (int filter = 1; filter <= 3; ++filter) {
    EXPECT_EQ(attribute(copy, filter, false), 'p');
    EXPECT_EQ(attribute(copy, filter, true), filter == 2 ? '\0' : 'v');
    EXPECT_EQ(attribute(rows, filter, false), '\0');
    EXPECT_EQ(attribute(rows, filter, true), 'v');
    const int twin = RQXDupRealFilter(table.id(), filter);
    EXPECT_EQ(attribute(table.id(), twin, false), '\0');
    EXPECT_EQ(attribute(table.id(), twin, true), filter == 2 ? '\0' : 'v');
  }
}

TEST_F(DuplicateTest, KeepsNamesAsTheyAre) {
  const TestTable table({{"a", ints({1})}, {"b", ints({2})}}, "t");
  RQXDupRealFilter(table.id(), 1);
  RQXMoveRealFilter(table.id(), 2, 0);
  int none[] = {0};
  const int source = RQXExtractRealTableEx("s", table.id(), 1, 0, 1, nullptr);
  EXPECT_EQ(filter_names(source), (Texts{"#REC_NO", "a_#1", "a", "b"}));
  const int copy = RQXDuplicateRealTable("s", source);
  EXPECT_EQ(filter_names(copy), filter_names(source));
  EXPECT_EQ(name_of(copy), "s_#1");
  EXPECT_EQ(filter_names(RQXExtractRealTableEx("n", table.id(), 1, 1, 1, none)),
            (Texts{"#TABLE_ID", "#REC_NO"}));
}

using ExtractTest = EngineTest;

TEST_F(ExtractTest, HoldsTheRowsOfTheSetInItsOrder) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    RandomData random(seed);
    const int rows = random.below(3) * 120 + random.below(5);
    const Columns columns = random.table(rows);
    const TestTable table(columns);
    const Rows set = random.set_of(rows);
    const int id = RQXExtractRealTable("", table.id(), table.add_set(set), nullptr);
    const TestTable extract = TestTable::existing(require(id, "RQXExtractRealTable"));
    EXPECT_EQ(extract.total_rows(), static_cast<int>(set.size()));
    EXPECT_EQ(RQXGetNSet(extract.id()), 1);
    for (size_t i = 0; i < columns.size(); ++i) {
      Column wanted = columns[i].column;
      wanted.cells = cells_at(columns[i].column, set);
      expect_column(extract, columns[i].name, wanted);
      EXPECT_EQ(info_of(extract.id(), static_cast<int>(i) + 1).valueCount,
                values_needed(wanted.cells, wanted.type));
    }
    RQXClearDB();
  }
}

TEST_F(ExtractTest, OfFewRowsAmongManyValues) {
  constexpr int kRows = 5000;
  std::vector<int> numbers;
  std::vector<std::string> names;
  for (int i = 0; i < kRows; ++i) {
    numbers.push_back(i % 7 == 0 ? kNullInt : (i * 7919) % 100003);
    names.push_back("name" + std::to_string((i * 31) % kRows));
  }
  const Columns columns = {{"number", ints(numbers)}, {"name", strings(names)}};
  const TestTable table(columns);
  for (const Rows& set : {Rows{}, Rows{1}, Rows{4999, 8, 8, 1, 3000}, Rows{70, 71, 72, 73}}) {
    const TestTable extract =
        TestTable::existing(RQXExtractRealTable("few", table.id(), table.add_set(set), nullptr));
    for (const NamedColumn& named : columns) {
      Column wanted = named.column;
      wanted.cells = cells_at(named.column, set);
      expect_column(extract, named.name, wanted);
      EXPECT_EQ(info_of(extract.id(), extract.filter(named.name)).valueCount,
                values_needed(wanted.cells, wanted.type));
    }
  }
}

TEST_F(ExtractTest, KeepsTheOrderOfASort) {
  const TestTable table({{"a", ints({3, kNullInt, 1, 2})}, {"b", strings({"x", "y", "z", "w"})}});
  const int sorted = table.sort("a", QX_SORT_DESC);
  const TestTable extract =
      TestTable::existing(RQXExtractRealTableEx("e", table.id(), sorted, 1, 1, nullptr));
  EXPECT_EQ(extract.texts("a"), (Texts{"3", "2", "1", "NULL"}));
  EXPECT_EQ(extract.texts("b"), (Texts{"x", "w", "z", "y"}));
  EXPECT_EQ(extract.texts("#REC_NO"), (Texts{"1", "4", "3", "2"}));
  EXPECT_EQ(extract.texts("#TABLE_ID"), Texts(4, std::to_string(table.id())));
}

TEST_F(ExtractTest, TakesColumnsAsListed) {
  const TestTable table({{"a", ints({1, 2})}, {"b", strings({"x", "y"})}});
  table.add_set({2});  // the current set
  int list[] = {2, QX_FLT_REC_NO, 1, 2, QX_FLT_TABLE_ID, QX_FLT_REC_NO, 0, 1};
  const TestTable extract = TestTable::existing(QXExtractRealTable("e", table.id(), -1, list));
  EXPECT_EQ(filter_names(extract.id()),
            (Texts{"b", "#REC_NO", "a", "b_#1", "#TABLE_ID", "#REC_NO_#1"}));
  EXPECT_EQ(extract.texts("b_#1"), Texts{"y"});
  EXPECT_EQ(extract.texts("#REC_NO_#1"), Texts{"2"});
  int ids[6];
  RQXGetFilterIDList(extract.id(), ids);
  EXPECT_EQ(Rows(ids, ids + 6), (Rows{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(RQXGetCurrentSetID(table.id()), 2);
}

using CombineTest = EngineTest;

/// What stands in the combined column for both sides' rows; a null side reads NULL.
Column combined(const Column* first, const Rows& rows1, const Column* second, const Rows& rows2) {
  Column column{
      (first != nullptr ? first : second)->type, {}, (first != nullptr ? first : second)->scale};
  const auto add = [&](const Column* side, const Rows& rows) {
    for (const int row : rows) {
      column.cells.push_back(side == nullptr ? normal_form({}, column.type)
                                             : side->cells[static_cast<size_t>(row - 1)]);
    }
  };
  add(first, rows1);
  add(second, rows2);
  return column;
}

TEST_F(CombineTest, HoldsTheRowsOfBothSets) {
  for (unsigned seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    RandomData random(seed);
    const int rows1 = random.below(2) * 200 + random.below(4);
    const int rows2 = random.below(2) * 200 + random.below(4);
    const Columns columns1 = random.table(rows1);
    const Columns columns2 = random.table(rows2);
    const TestTable table1(columns1);
    const TestTable table2(columns2);
    const Rows set1 = random.set_of(rows1);
    const Rows set2 = random.set_of(rows2);
    std::vector<int> list1;
    std::vector<int> list2;
    for (size_t i = 0; i < columns1.size(); ++i) {
      const int sides = random.below(4);  // both more often than one
      list1.push_back(sides == 1 ? 0 : static_cast<int>(i) + 1);
      list2.push_back(sides == 2 ? 0 : static_cast<int>(i) + 1);
    }
    list1.push_back(0);
    list2.push_back(0);
    char name[] = "c";
    const TestTable both = TestTable::existing(
        require(RQXCombineRealTableEx(name, 1, 1, table1.id(), table1.add_set(set1), list1.data(),
                                      table2.id(), table2.add_set(set2), list2.data()),
                "RQXCombineRealTableEx"));
    for (size_t i = 0; i < columns1.size(); ++i) {
      const Column* const first = list1[i] == 0 ? nullptr : &columns1[i].column;
      const Column* const second = list2[i] == 0 ? nullptr : &columns2[i].column;
      expect_column(both, columns1[i].name, combined(first, set1, second, set2));
    }
    std::vector<int> ids(set1.size(), table1.id());
    ids.insert(ids.end(), set2.size(), table2.id());
    expect_column(both, "TableID", ints(ids));
    std::vector<int> numbers = set1;
    numbers.insert(numbers.end(), set2.begin(), set2.end());
    expect_column(both, "RecNo", ints(numbers));
    RQXClearDB();
  }
}

TEST_F(CombineTest, GivesDecimalsTheFirstOnesForm) {
  const TestTable coarse({{"n", decimals(1, {"1.5", "", "-2.0"})}});
  const TestTable fine({{"m", decimals(3, {"1.449", "1.451", "-2.000",
                                           "99999999999999999999999999999999999.000"})}});
  int list[] = {1, 0};
  char name[] = "c";
  const TestTable one =
      TestTable::existing(RQXCombineRealTable(name, coarse.id(), 1, list, fine.id(), 1, list));
  EXPECT_EQ(one.texts("n"), (Texts{"1.5", "NULL", "-2.0", "1.4", "1.5", "-2.0",
                                   "99999999999999999999999999999999999.0"}));
  EXPECT_EQ(info_of(one.id(), 1).valueCount, 5);
  const TestTable other =
      TestTable::existing(QXCombineRealTable(nullptr, fine.id(), 1, list, coarse.id(), 1, list));
  EXPECT_EQ(other.texts("m"),
            (Texts{"1.449", "1.451", "-2.000", "99999999999999999999999999999999999.000", "1.500",
                   "NULL", "-2.000"}));
}

TEST_F(CombineTest, NamesColumnsAfterTheFirstSide) {
  const TestTable table1({{"a", ints({1})}, {"RecNo", ints({2})}, {"TableID", ints({3})}});
  const TestTable table2({{"x", ints({4})}, {"a", ints({5})}, {"z", ints({6})}});
  int list1[] = {1, 0, 2, 3, 1, 0};
  int list2[] = {1, 2, 0, 3, 1, -1};
  char name[] = "a b";
  const TestTable both = TestTable::existing(
      RQXCombineRealTableEx2(name, 5, -1, table1.id(), 1, list1, table2.id(), 1, list2));
  EXPECT_EQ(filter_names(both.id()),
            (Texts{"TableID", "RecNo", "a", "a_#1", "RECNO", "TableID_#1", "a_#2"}));
  EXPECT_EQ(name_of(both.id()), "a_b");
  EXPECT_EQ(both.texts("a_#2"), (Texts{"1", "4"}));
  EXPECT_EQ(both.texts("TableID_#1"), (Texts{"3", "6"}));
}

TEST_F(CombineTest, ATableGoesWithItself) {
  const TestTable table({{"a", strings({"x", "y"})}});
  const int set = table.add_set({2});
  int list[] = {1, 0};
  const TestTable both = TestTable::existing(
      QXCombineRealTableEx(nullptr, 1, 0, table.id(), 1, list, table.id(), set, list));
  EXPECT_EQ(both.texts("a"), (Texts{"x", "y", "y"}));
  EXPECT_EQ(both.texts("TableID"), Texts(3, std::to_string(table.id())));
}

TEST_F(CombineTest, PseudoColumnsMayBeAll) {
  const TestTable table({{"a", strings({"x", "y"})}});
  int none[] = {0};
  char name[] = "";
  const int both = RQXCombineRealTableEx(name, 0, 1, table.id(), 1, none, table.id(), 1, none);
  EXPECT_EQ(TestTable::existing(both).texts("RecNo"), (Texts{"1", "2", "1", "2"}));
  EXPECT_EQ(name_of(both).rfind("realtbl", 0), 0u);
}

using CondenseTest = EngineTest;

TEST_F(CondenseTest, DropsWhatNoRowUses) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    RandomData random(seed);
    const int rows = random.below(2) * 200 + random.below(40);
    const Columns columns = random.table(rows);
    const TestTable source(columns);
    const Rows set = random.set_of(rows);
    int list[] = {1, 2, 3, 4, 5, 6, 7, 0};
    int none[] = {0, 0, 0, 0, 0, 0, 0, 0};
    char name[] = "c";
    // The combined table has all values of the source and the rows of the set.
    const TestTable table = TestTable::existing(require(
        RQXCombineRealTable(name, source.id(), source.add_set(set), list, source.id(), 1, none),
        "RQXCombineRealTable"));
    const std::string before = table_text(table.id());
    EXPECT_EQ(seed % 2 == 0 ? RQXCondenseRealTable(table.id()) : QXCondenseRealTable(table.id()),
              0);
    EXPECT_EQ(table_text(table.id()), before);
    for (size_t i = 0; i < columns.size(); ++i) {
      const Column column = table.column(columns[i].name);
      expect_column(table, columns[i].name, column);
      EXPECT_EQ(info_of(table.id(), static_cast<int>(i) + 1).valueCount,
                values_needed(column.cells, column.type));
    }
    RQXClearDB();
  }
}

TEST_F(CondenseTest, WithAllValuesUsedChangesNothing) {
  const TestTable table({{"a", ints({5, 1, kNullInt})}, {"b", strings({"x", "y", "x"})}});
  _TFilterInfo before{};
  _TFilterInfo after{};
  require(QXGetFilter(table.id(), 2, &before), "QXGetFilter");
  EXPECT_EQ(RQXCondenseRealTable(table.id()), 0);
  require(QXGetFilter(table.id(), 2, &after), "QXGetFilter");
  EXPECT_EQ(after.valueCount, before.valueCount);
  EXPECT_EQ(after.values, before.values);
  EXPECT_EQ(after.pv, before.pv);
}

using TableListTest = EngineTest;

TEST_F(TableListTest, StacksRowsWithTheirOrigin) {
  const TestTable table1({{"a", ints({1, 2, kNullInt})}, {"s", strings({"x", "y", "z"})}});
  const TestTable table2({{"b", ints({7})}, {"c", ints({8})}});
  int tables[] = {table2.id(), table1.id(), table2.id(), 0};
  int sets[] = {1, table1.add_set({3, 1}), -1};
  int filters1[] = {1, 1, 2};
  int filters2[] = {0, -5, 0};
  int filters4[] = {0, 1, 1};
  char name[] = "list";
  const TestTable list = TestTable::existing(require(
      RQXCombineTableList(name, tables, sets, filters1, filters2, nullptr, filters4), "list"));
  const Texts names = filter_names(list.id());
  ASSERT_EQ(names.size(), 5u);
  EXPECT_EQ(names[2], "b");
  EXPECT_EQ(names[3].rfind("filter", 0), 0u);
  EXPECT_EQ(names[4], "a");
  const std::string id1 = std::to_string(table1.id());
  const std::string id2 = std::to_string(table2.id());
  EXPECT_EQ(list.texts("TableID"), (Texts{id2, id1, id1, id2}));
  EXPECT_EQ(list.texts("RecNo"), (Texts{"1", "3", "1", "1"}));
  EXPECT_EQ(list.texts("b"), (Texts{"7", "NULL", "1", "8"}));
  EXPECT_EQ(list.texts(names[3]), Texts(4, "NULL"));
  EXPECT_EQ(list.texts("a"), (Texts{"NULL", "NULL", "1", "7"}));
  EXPECT_EQ(RQXGetNSet(list.id()), 1);
}

TEST_F(TableListTest, TakesSixtyFourTables) {
  const TestTable table({{"a", ints({1})}});
  std::vector<int> tables(65, table.id());
  std::vector<int> sets(65, 1);
  std::vector<int> filters(65, 1);
  char name[] = "list";
  tables[64] = 0;
  const int list = QXCombineTableList(name, tables.data(), sets.data(), nullptr, nullptr,
                                      filters.data(), nullptr);
  EXPECT_EQ(TestTable::existing(list).texts("a"), Texts(64, "1"));
  tables[64] = table.id();
  tables.push_back(0);
  expect_failure(
      RQXCombineTableList(name, tables.data(), sets.data(), nullptr, nullptr, nullptr, nullptr),
      QX_ERROR_PARAMETER, "Invalid Parameter : nTables(65)");
}

// Copies of filters

struct TypeCase {
  const char* name;
  int type;
};

class DupFilterTest : public EngineTest, public testing::WithParamInterface<TypeCase> {
 protected:
  /// Cells of a copy of the column as another type.
  static Column copy_of(const Column& column, int type) {
    const TestTable table({{"a", column}});
    const int copy = type == QX_DT_DECIMAL
                         ? RQXDupRealFilterExNumeric(table.id(), 1, type, 2, QX_ROUND_DOWN)
                         : RQXDupRealFilterEx(table.id(), 1, type);
    EXPECT_EQ(copy, 2);
    return table.column("a_#1");
  }
  static std::vector<int> all_types() {
    return {QX_DT_INTEGER, QX_DT_DOUBLE,   QX_DT_DATE,   QX_DT_TIME,
            QX_DT_STRING,  QX_DT_DATETIME, QX_DT_DECIMAL};
  }
};

/// Each row must read as it does when it is the only one.
TEST_P(DupFilterTest, ConvertsEachRowByItself) {
  for (unsigned seed = 0; seed < 4; ++seed) {
    RandomData random(seed);
    const Column source = random.column(GetParam().type, 40);
    for (const int type : all_types()) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", to type " + std::to_string(type));
      RQXClearDB();
      Column wanted{type, {}, type == QX_DT_DECIMAL ? 2 : 0};
      std::map<Cell, Cell> alone;
      for (const Cell& cell : source.cells) {
        const auto [known, is_new] = alone.try_emplace(cell);
        if (is_new) known->second = copy_of({source.type, {cell}, source.scale}, type).cells[0];
        wanted.cells.push_back(known->second);
      }
      const TestTable table({{"a", source}});
      const int copy = type == QX_DT_DECIMAL
                           ? RQXDupRealFilterExNumeric(table.id(), 1, type, 2, QX_ROUND_DOWN)
                           : QXDupRealFilterEx(table.id(), 1, type);
      ASSERT_EQ(copy, 2);
      expect_column(table, "a_#1", wanted);
      EXPECT_EQ(info_of(table.id(), copy).valueCount, values_needed(wanted.cells, type));
      EXPECT_EQ(to_texts(table.column("a")), to_texts(source));
    }
  }
}

TEST_P(DupFilterTest, PlainCopiesAreEqual) {
  RandomData random(3);
  const Column source = random.column(GetParam().type, 60);
  const TestTable table({{"a", source}, {"b", source}});
  EXPECT_EQ(RQXDupRealFilter(table.id(), 1), 3);
  EXPECT_EQ(RQXDupRealFilterEx(table.id(), 1, source.type), 4);
  EXPECT_EQ(QXDupRealFilter(table.id(), 2), 5);
  EXPECT_EQ(filter_names(table.id()), (Texts{"a", "b", "a_#1", "a_#2", "b_#1"}));
  for (const char* const name : {"a_#1", "a_#2", "b_#1"}) expect_column(table, name, source);
}

INSTANTIATE_TEST_SUITE_P(Types, DupFilterTest,
                         testing::Values(TypeCase{"Integer", QX_DT_INTEGER},
                                         TypeCase{"Double", QX_DT_DOUBLE},
                                         TypeCase{"Date", QX_DT_DATE}, TypeCase{"Time", QX_DT_TIME},
                                         TypeCase{"String", QX_DT_STRING},
                                         TypeCase{"DateTime", QX_DT_DATETIME},
                                         TypeCase{"Decimal", QX_DT_DECIMAL}),
                         case_name<TypeCase>);

using DupDecimalTest = EngineTest;

NumericInfo decimal_form(const TestTable& table, int filter) {
  NumericInfo info{};
  require(RQXGetNumericInfo(table.id(), filter, &info, nullptr, false), "RQXGetNumericInfo");
  return info;
}

TEST_F(DupDecimalTest, HasTheFormAskedFor) {
  const TestTable table({{"n", decimals(2, {"1.25", "1.35", ""})}, {"i", ints({1, 2, 3})}});
  const int plain = RQXDupRealFilterEx(table.id(), 1, QX_DT_DECIMAL);
  EXPECT_EQ(decimal_form(table, plain).scale, 2);
  const int shorter = RQXDupRealFilterExNumeric(table.id(), 1, QX_DT_DECIMAL, 1, QX_ROUND_UP);
  EXPECT_EQ(decimal_form(table, shorter).scale, 1);
  EXPECT_EQ(decimal_form(table, shorter).rounding, QX_ROUND_UP);
  EXPECT_EQ(table.texts("n_#2"), (Texts{"1.3", "1.4", "NULL"}));
  const int usual = RQXDupRealFilterEx(table.id(), 2, QX_DT_DECIMAL);
  EXPECT_EQ(decimal_form(table, usual).scale, 6);
  EXPECT_EQ(decimal_form(table, usual).rounding, QX_ROUND_HALFUP);
  EXPECT_GT(RQXDupRealFilterExNumeric(table.id(), 2, QX_DT_DOUBLE, 99, 99), 0);
}

TEST_F(DupDecimalTest, OriginIsToldForPlainCopies) {
  const TestTable table({{"a", ints({1, 2, 3})}});
  _TFilterInfo info{};
  require(QXGetFilter(table.id(), RQXDupRealFilter(table.id(), 1), &info), "QXGetFilter");
  EXPECT_EQ(info.orgFilterId, 1);
}

// Failures. Each leaves everything as it was.

struct FailureCase {
  const char* name;
  int (*call)(int table);
  int code;
  const char* text;
};

class DerivedFailureTest : public EngineTest, public testing::WithParamInterface<FailureCase> {};

int list_of_one[] = {1, 0};
int list_of_two[] = {2, 0};
int list_unknown[] = {1, 9, 0};
int list_negative[] = {-1, 0};
int list_empty[] = {0};
int sets_of_one[] = {1, 0};
int sets_unknown[] = {7};
char plain_name[] = "n";
char long_name[257];

TEST_P(DerivedFailureTest, IsTold) {
  memset(long_name, 'n', 256);
  const TestTable table({{"a", ints({1, 2})}, {"b", strings({"x", "y"})}}, "t");
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  expect_failure(GetParam().call(table.id()), GetParam().code, GetParam().text);
  EXPECT_EQ(database_text(), before);
}

std::vector<int> many_filters() {
  std::vector<int> list(513, 1);
  list.push_back(0);
  return list;
}

using F = FailureCase;

INSTANTIATE_TEST_SUITE_P(
    Tables, DerivedFailureTest,
    testing::Values(
        F{"DuplicateUnknown", [](int) { return RQXDuplicateRealTable("n", 9); }, QX_ERROR_NO_TABLE,
          "No Such Table: 9"},
        F{"LongName", [](int table) { return RQXDuplicateRealTable(long_name, table); },
          QX_ERROR_TABLE_NAME, ""},
        F{"ExtractUnknown", [](int) { return RQXExtractRealTable("n", 9, 1, nullptr); },
          QX_ERROR_NO_TABLE, "No Such Table: 9"},
        F{"ExtractNoSet", [](int table) { return RQXExtractRealTable("n", table, 7, nullptr); },
          QX_ERROR_NO_SET, "No Such Set: 7"},
        F{"ExtractNoFilter",
          [](int table) { return RQXExtractRealTable("n", table, 1, list_unknown); },
          QX_ERROR_NO_FILTER, "No Such Filter: 9"},
        F{"ExtractNothing",
          [](int table) { return RQXExtractRealTableEx("n", table, 1, 0, 0, list_empty); },
          QX_ERROR_NO_FILTER, "No Filter"},
        F{"ExtractTooMuch",
          [](int table) { return RQXExtractRealTable("n", table, 1, many_filters().data()); },
          QX_ERROR_FILTER_COUNT, "FilterCount overflow"},
        F{"CombineUnknown",
          [](int table) {
            return RQXCombineRealTable(plain_name, table, 1, list_of_one, 9, 1, list_of_one);
          },
          QX_ERROR_NO_TABLE, "No Such Table: 9"},
        F{"CombineNoSet",
          [](int table) {
            return RQXCombineRealTable(plain_name, table, 1, list_of_one, table, 7, list_of_one);
          },
          QX_ERROR_COMBINE_SET, "No Such Set: 7"},
        F{"CombineNoFilter",
          [](int table) {
            return RQXCombineRealTable(plain_name, table, 1, list_unknown, table, 1, list_unknown);
          },
          QX_ERROR_NO_FILTER, "No Such Filter: FltIDList1[1](9)"},
        F{"CombineNoSecondFilter",
          [](int table) {
            static int first[] = {1, 0, 0};
            return RQXCombineRealTable(plain_name, table, 1, first, table, 1, list_unknown);
          },
          QX_ERROR_NO_FILTER, "No Such Filter: FltIDList2[1](9)"},
        F{"CombineTypes",
          [](int table) {
            return RQXCombineRealTable(plain_name, table, 1, list_of_one, table, 1, list_of_two);
          },
          QX_ERROR_APPEND_TYPE, "Illegal data type"},
        F{"CombineNegative",
          [](int table) {
            return RQXCombineRealTable(plain_name, table, 1, list_negative, table, 1, list_of_one);
          },
          QX_ERROR_NO_JOIN_FILTER, "Invalid Parameter : FltIDList1,FltIDList2"},
        F{"CombineNothing",
          [](int table) {
            return RQXCombineRealTable(plain_name, table, 1, list_empty, table, 1, list_negative);
          },
          QX_ERROR_NO_FILTER, "No Filter"},
        F{"CombineTooMuch",
          [](int table) {
            std::vector<int> list = many_filters();
            return RQXCombineRealTable(plain_name, table, 1, list.data(), table, 1, list.data());
          },
          QX_ERROR_FILTER_COUNT, "FilterCount overflow"},
        F{"CombineTooMuchWithPseudo",
          [](int table) {
            std::vector<int> list = many_filters();
            list[511] = 0;
            return RQXCombineRealTableEx(plain_name, 1, 1, table, 1, list.data(), table, 1,
                                         list.data());
          },
          QX_ERROR_FILTER_COUNT, "FilterCount overflow"},
        F{"CondenseUnknown", [](int) { return RQXCondenseRealTable(9); }, QX_ERROR_NO_TABLE,
          "No Such Table: 9"}),
    case_name<FailureCase>);

int combine_list(char* name, int table, int* sets, int* filters) {
  int tables[] = {table, 0};
  return RQXCombineTableList(name, tables, sets, nullptr, filters, nullptr, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, DerivedFailureTest,
    testing::Values(
        F{"Empty", [](int) { return combine_list(plain_name, 0, sets_of_one, nullptr); },
          QX_ERROR_NO_TABLE, "Not Real Table"},
        F{"NoTable", [](int) { return combine_list(plain_name, 9, sets_of_one, nullptr); },
          QX_ERROR_NO_TABLE, "No Such Table: 9"},
        F{"NoSet", [](int table) { return combine_list(plain_name, table, sets_unknown, nullptr); },
          QX_ERROR_NO_SET, "No Such Set: SetIDList[0] 7]"},
        F{"NoFilter",
          [](int table) { return combine_list(plain_name, table, sets_of_one, sets_unknown); },
          QX_ERROR_NO_FILTER, "No Such Filter: 7"},
        F{"NotInteger",
          [](int table) { return combine_list(plain_name, table, sets_of_one, list_of_two); },
          QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )"},
        F{"EmptyName",
          [](int table) {
            static char empty[] = "";
            return combine_list(empty, table, sets_of_one, nullptr);
          },
          QX_ERROR_CHAIN_NAME, "Invalid Parameter : PCTblName()"},
        F{"NullName", [](int table) { return combine_list(nullptr, table, sets_of_one, nullptr); },
          QX_ERROR_CHAIN_NAME, "Invalid Parameter : PCTblName()"},
        F{"LongName",
          [](int table) { return combine_list(long_name, table, sets_of_one, nullptr); },
          QX_ERROR_CHAIN_NAME, "Invalid Parameter : PCTblName(nnn"}),
    case_name<FailureCase>);

INSTANTIATE_TEST_SUITE_P(
    Filters, DerivedFailureTest,
    testing::Values(
        F{"DupUnknown", [](int table) { return RQXDupRealFilter(table, 9); },
          QX_ERROR_NO_MASTER_KEY, "No Such Filter: 9"},
        F{"DupExUnknown", [](int table) { return RQXDupRealFilterEx(table, 0, QX_DT_DATE); },
          QX_ERROR_NO_MASTER_KEY, "No Such Filter: 0"},
        F{"DupTypeZero", [](int table) { return RQXDupRealFilterEx(table, 1, 0); },
          QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(0)"},
        F{"DupTypeNine", [](int table) { return QXDupRealFilterEx(table, 1, 9); },
          QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(9)"},
        F{"DupScale",
          [](int table) { return RQXDupRealFilterExNumeric(table, 1, QX_DT_DECIMAL, 39, 4); },
          QX_ERROR_PARAMETER, "Invalid Parameter : scale(39)"},
        F{"DupRounding",
          [](int table) { return RQXDupRealFilterExNumeric(table, 1, QX_DT_DECIMAL, 2, 7); },
          QX_ERROR_PARAMETER, "Invalid Parameter : rounding_mode(7)"}),
    case_name<FailureCase>);

using DerivedLimitTest = EngineTest;

TEST_F(DerivedLimitTest, AFullTableTakesNoCopyOfAFilter) {
  const TestTable table({{"a", ints({1})}});
  for (int i = 2; i <= 512; ++i) ASSERT_EQ(RQXDupRealFilter(table.id(), 1), i);
  expect_failure(RQXDupRealFilter(table.id(), 1), QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  expect_failure(RQXDupRealFilterEx(table.id(), 99, 3), QX_ERROR_FILTER_COUNT,
                 "FilterCount overflow");
  EXPECT_EQ(RQXGetNFilter(RQXDuplicateRealTable("n", table.id())), 512);
}

}  // namespace
}  // namespace qxe::test
