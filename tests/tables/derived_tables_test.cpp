// Tables made of others: their names, forms, attributes and limits, and what is refused. Their rows
// are compared with plain loops by the edit model.
#include <algorithm>
#include <functional>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Texts = std::vector<std::string>;
using Rows = std::vector<int>;

int list_of_one[] = {1, 0};
int list_of_two[] = {2, 0};
int list_empty[] = {0};

std::string name_of(int table) {
  return RQXGetTableNameR1(table);
}

Texts filter_names(int table) {
  int ids[512];
  Texts names;
  const int count = require(RQXGetFilterIDList(table, ids), "RQXGetFilterIDList");
  for (int i = 0; i < count; ++i) names.emplace_back(RQXGetFilterNameR1(table, ids[i]));
  return names;
}

TestTable made(int id) {
  return TestTable::existing(require(id, "a table of others"));
}

/// Two rows of integers and strings.
class DerivedTest : public EngineTest {
 protected:
  const TestTable table_{{{"a", ints({1, 2})}, {"b", strings({"x", "y"})}}, "t"};
  const int id_ = table_.id();
};

TEST_F(DerivedTest, ADuplicateHasTheRootSetAloneWithNameAndAttributes) {
  table_.add_set({2});
  RQXSetSetName(id_, 1, "all");
  char area[64] = "root";
  RQXSetSubsetAttr(id_, 1, area);
  const int copy = RQXDuplicateRealTable(nullptr, id_);
  EXPECT_EQ(RQXGetNSet(copy), 1);
  EXPECT_EQ(RQXGetCurrentSetID(copy), 1);
  EXPECT_STREQ(RQXGetSetNameR1(copy, 1), "all");
  char copied[64] = "";
  RQXGetSubsetAttr(copy, 1, copied);
  EXPECT_STREQ(copied, "root");
}

/// Byte 20 of the attribute block of a filter's row pointers or value list.
char attribute(int table, int filter, bool values) {
  char area[64] = "";
  require(RQXGetFilterAttr(table, filter, area, values), "RQXGetFilterAttr");
  return area[20];
}

TEST_F(DerivedTest, AttributesComeAlongAsFarAsPromised) {
  for (const int filter : {1, 2}) {
    for (const bool values : {false, true}) {
      char area[64] = "";
      require(RQXGetFilterAttr(id_, filter, area, values), "RQXGetFilterAttr");
      area[20] = values ? 'v' : 'p';
      require(RQXSetFilterAttr(id_, filter, area, values), "RQXSetFilterAttr");
    }
  }
  const int copy = RQXDuplicateRealTable("copy", id_);
  const int rows = RQXExtractRealTable("rows", id_, 1, nullptr);
  for (const int filter : {1, 2}) {
    const char of_copied_list = filter == 2 ? '\0' : 'v';  // texts start unmarked
    EXPECT_EQ(attribute(copy, filter, false), 'p');
    EXPECT_EQ(attribute(copy, filter, true), of_copied_list);
    EXPECT_EQ(attribute(rows, filter, false), '\0');
    EXPECT_EQ(attribute(rows, filter, true), 'v');
    const int twin = RQXDupRealFilter(id_, filter);
    EXPECT_EQ(attribute(id_, twin, false), '\0');
    EXPECT_EQ(attribute(id_, twin, true), of_copied_list);
  }
}

TEST_F(DerivedTest, NamesStayAsTheyAre) {
  RQXDupRealFilter(id_, 1);
  RQXMoveRealFilter(id_, 2, 0);
  const int source = RQXExtractRealTableEx("s", id_, 1, 0, 1, nullptr);
  EXPECT_EQ(filter_names(source), (Texts{"#REC_NO", "a_#1", "a", "b"}));
  const int copy = RQXDuplicateRealTable("s", source);
  EXPECT_EQ(filter_names(copy), filter_names(source));
  EXPECT_EQ(name_of(copy), "s_#1");
  EXPECT_EQ(filter_names(RQXExtractRealTableEx("n", id_, 1, 1, 1, list_empty)),
            (Texts{"#TABLE_ID", "#REC_NO"}));
}

TEST_F(DerivedTest, AnExtractTakesColumnsAsListed) {
  table_.add_set({2});  // the current set
  int list[] = {2, QX_FLT_REC_NO, 1, 2, QX_FLT_TABLE_ID, QX_FLT_REC_NO, 0, 1};
  const TestTable extract = made(QXExtractRealTable("e", id_, -1, list));
  EXPECT_EQ(filter_names(extract.id()),
            (Texts{"b", "#REC_NO", "a", "b_#1", "#TABLE_ID", "#REC_NO_#1"}));
  EXPECT_EQ(extract.texts("b_#1"), Texts{"y"});
  EXPECT_EQ(extract.texts("#REC_NO_#1"), Texts{"2"});
  EXPECT_EQ(RQXGetCurrentSetID(id_), 2);
}

TEST_F(DerivedTest, ACombinationTakesTheFirstSidesNamesAndDecimals) {
  const TestTable first({{"a", decimals(1, {"1.5", ""})}, {"RecNo", ints({2, 2})}});
  const TestTable second({{"x", decimals(3, {"1.449", "99999999999999999999999999999999999.000"})},
                          {"a", ints({5, 6})}});
  int list1[] = {1, 0, 2, 1, 0};
  int list2[] = {1, 2, 0, 0, -1};
  char name[] = "a b";
  const TestTable both =
      made(RQXCombineRealTableEx2(name, 5, -1, first.id(), 1, list1, second.id(), 1, list2));
  EXPECT_EQ(name_of(both.id()), "a_b");
  EXPECT_EQ(filter_names(both.id()), (Texts{"TableID", "RecNo", "a", "a_#1", "RECNO", "a_#2"}));
  EXPECT_EQ(both.texts("a"),
            (Texts{"1.5", "NULL", "1.4", "99999999999999999999999999999999999.0"}));
  const TestTable other =
      made(QXCombineRealTable(nullptr, second.id(), 1, list_of_one, first.id(), 1, list_of_one));
  EXPECT_EQ(other.texts("x")[2], "1.500");
}

TEST_F(DerivedTest, PseudoColumnsMayBeAll) {
  char name[] = "";
  const TestTable both =
      made(RQXCombineRealTableEx(name, 0, 1, id_, 1, list_empty, id_, 1, list_empty));
  EXPECT_EQ(both.texts("RecNo"), (Texts{"1", "2", "1", "2"}));
  EXPECT_EQ(name_of(both.id()).rfind("realtbl", 0), 0u);
}

TEST_F(DerivedTest, AListOfTablesNamesColumnsAfterTheFirst) {
  int tables[] = {id_, id_, 0};
  int sets[] = {1, -1};
  int filters1[] = {1, 0};
  int filters2[] = {0, -5};
  char name[] = "list";
  const TestTable list =
      made(RQXCombineTableList(name, tables, sets, filters1, filters2, nullptr, nullptr));
  const Texts names = filter_names(list.id());
  ASSERT_EQ(names.size(), 4u);
  EXPECT_EQ(names[2], "a");
  EXPECT_EQ(names[3].rfind("filter", 0), 0u);
  EXPECT_EQ(list.texts("a"), (Texts{"1", "2", "NULL", "NULL"}));
  EXPECT_EQ(list.texts(names[3]), Texts(4, "NULL"));
}

TEST_F(DerivedTest, AListTakesSixtyFourTables) {
  Rows tables(65, id_);
  Rows sets(65, 1);
  Rows filters(65, 1);
  char name[] = "list";
  tables[64] = 0;
  EXPECT_EQ(made(QXCombineTableList(name, tables.data(), sets.data(), nullptr, nullptr,
                                    filters.data(), nullptr))
                .total_rows(),
            128);
  tables[64] = id_;
  tables.push_back(0);
  expect_failure(
      RQXCombineTableList(name, tables.data(), sets.data(), nullptr, nullptr, nullptr, nullptr),
      QX_ERROR_PARAMETER, "Invalid Parameter : nTables(65)");
}

TEST_F(DerivedTest, CopiedDecimalsHaveTheFormAskedFor) {
  const TestTable table({{"n", decimals(2, {"1.25", "1.35", ""})}, {"i", ints({1, 2, 3})}});
  const auto form = [&](int filter) {
    NumericInfo info = {};
    require(RQXGetNumericInfoR1(table.id(), filter, &info), "RQXGetNumericInfoR1");
    return std::pair(info.scale, info.rounding);
  };
  EXPECT_EQ(form(RQXDupRealFilterEx(table.id(), 1, QX_DT_DECIMAL)), std::pair(2, 4));
  EXPECT_EQ(form(RQXDupRealFilterExNumeric(table.id(), 1, QX_DT_DECIMAL, 1, QX_ROUND_UP)),
            std::pair(1, int{QX_ROUND_UP}));
  EXPECT_EQ(table.texts("n_#2"), (Texts{"1.3", "1.4", "NULL"}));
  EXPECT_EQ(form(RQXDupRealFilterEx(table.id(), 2, QX_DT_DECIMAL)), std::pair(6, 4));
  EXPECT_GT(RQXDupRealFilterExNumeric(table.id(), 2, QX_DT_DOUBLE, 99, 99), 0);
}

// With few rows among many values just the values met are looked at.
TEST_F(DerivedTest, AnExtractOfFewRowsAmongManyValues) {
  Columns columns = {{"number", ints({})}, {"name", strings({})}};
  for (int i = 0; i < 5000; ++i) {
    columns[0].column.cells.emplace_back(i % 7 == 0 ? kNullInt : i * 7919 % 100003);
    columns[1].column.cells.emplace_back("name" + std::to_string(i * 31 % 5000));
  }
  const TestTable table(columns);
  const int set = table.add_set({5000, 9, 9, 2, 3000});
  const TestTable extract = made(RQXExtractRealTable("few", table.id(), set, nullptr));
  for (const char* const name : {"number", "name"}) {
    EXPECT_EQ(extract.texts(name), table.texts(name, set));
    _TRFilterInfo info = {};
    require(RQXGetFilterInfo(extract.id(), extract.filter(name), &info), "RQXGetFilterInfo");
    EXPECT_EQ(info.valueCount, 5) << name;
  }
}

TEST_F(DerivedTest, AFullTableTakesNoCopyOfAFilter) {
  for (int i = 3; i <= 512; ++i) ASSERT_EQ(RQXDupRealFilter(id_, 1), i);
  expect_failure(RQXDupRealFilter(id_, 1), QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  expect_failure(RQXDupRealFilterEx(id_, 99, 3), QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  EXPECT_EQ(RQXGetNFilter(RQXDuplicateRealTable("n", id_)), 512);
}

// Failures. Each leaves everything as it was.

char plain_name[] = "n";
int list_unknown[] = {1, 9, 0};
int list_negative[] = {-1, 0};
int sets_of_one[] = {1, 0};
int sets_unknown[] = {7};

int combine(int table, int* filters1, int* filters2, int set2 = 1) {
  return RQXCombineRealTable(plain_name, table, 1, filters1, table, set2, filters2);
}

int combine_list(const char* name, int table, int* sets, int* filters) {
  int tables[] = {table, 0};
  return RQXCombineTableList(const_cast<char*>(name), tables, sets, nullptr, filters, nullptr,
                             nullptr);
}

/// One filter 513 times, or less often with two pseudo columns in front.
int take_too_much(int table, bool extract, bool pseudo) {
  Rows list(pseudo ? 511 : 513, 1);
  list.push_back(0);
  if (extract) return RQXExtractRealTableEx("n", table, 1, pseudo, pseudo, list.data());
  return RQXCombineRealTableEx(plain_name, pseudo, pseudo, table, 1, list.data(), table, 1,
                               list.data());
}

struct Refusal {
  const char* name;
  std::function<int(int table)> call;
  int code;
  const char* text;
};

class DerivedRefusalTest : public DerivedTest, public testing::WithParamInterface<Refusal> {};

TEST_P(DerivedRefusalTest, ChangesNothing) {
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  expect_failure(GetParam().call(id_), GetParam().code, GetParam().text);
  EXPECT_EQ(database_text(), before);
}

#define QXE_CASE(name, code, text, ...)                                               \
  Refusal {                                                                           \
#name, []([[maybe_unused]] int id) { return __VA_ARGS__; }, QX_ERROR_##code, text \
  }

INSTANTIATE_TEST_SUITE_P(
    Calls, DerivedRefusalTest,
    testing::Values(
        QXE_CASE(ExtractSet, NO_SET, "No Such Set: 7", RQXExtractRealTable("n", id, 7, nullptr)),
        QXE_CASE(ExtractFilter, NO_FILTER, "No Such Filter: 9",
                 RQXExtractRealTable("n", id, 1, list_unknown)),
        QXE_CASE(ExtractNothing, NO_FILTER, "No Filter",
                 RQXExtractRealTableEx("n", id, 1, 0, 0, list_empty)),
        QXE_CASE(ExtractTooMuch, FILTER_COUNT, "FilterCount overflow",
                 take_too_much(id, true, false)),
        QXE_CASE(CombineSecondTable, NO_TABLE, "No Such Table: 9",
                 RQXCombineRealTable(plain_name, id, 1, list_of_one, 9, 1, list_of_one)),
        QXE_CASE(CombineSet, COMBINE_SET, "No Such Set: 7",
                 combine(id, list_of_one, list_of_one, 7)),
        QXE_CASE(CombineFilter, NO_FILTER, "No Such Filter: FltIDList1[1](9)",
                 combine(id, list_unknown, list_unknown)),
        QXE_CASE(CombineSecondFilter, NO_FILTER, "No Such Filter: FltIDList2[0](9)",
                 combine(id, sets_of_one, list_unknown + 1)),
        QXE_CASE(CombineTypes, APPEND_TYPE, "Illegal data type",
                 combine(id, list_of_one, list_of_two)),
        QXE_CASE(CombineNegative, NO_JOIN_FILTER, "Invalid Parameter : FltIDList1,FltIDList2",
                 combine(id, list_negative, list_of_one)),
        QXE_CASE(CombineNothing, NO_FILTER, "No Filter", combine(id, list_empty, list_negative)),
        QXE_CASE(CombineTooMuch, FILTER_COUNT, "FilterCount overflow",
                 take_too_much(id, false, false)),
        QXE_CASE(CombineTooMuchWithPseudo, FILTER_COUNT, "FilterCount overflow",
                 take_too_much(id, false, true)),
        QXE_CASE(ListOfNone, NO_TABLE, "Not Real Table",
                 combine_list("n", 0, sets_of_one, nullptr)),
        QXE_CASE(ListTable, NO_TABLE, "No Such Table: 9",
                 combine_list("n", 9, sets_of_one, nullptr)),
        QXE_CASE(ListSet, NO_SET, "No Such Set: SetIDList[0] 7]",
                 combine_list("n", id, sets_unknown, nullptr)),
        QXE_CASE(ListFilter, NO_FILTER, "No Such Filter: 7",
                 combine_list("n", id, sets_of_one, sets_unknown)),
        QXE_CASE(ListNotInteger, DATA_TYPE, "Illegal data type ( Not INTEGER )",
                 combine_list("n", id, sets_of_one, list_of_two)),
        QXE_CASE(ListEmptyName, CHAIN_NAME, "Invalid Parameter : PCTblName()",
                 combine_list("", id, sets_of_one, nullptr)),
        QXE_CASE(ListNullName, CHAIN_NAME, "Invalid Parameter : PCTblName()",
                 combine_list(nullptr, id, sets_of_one, nullptr)),
        QXE_CASE(CopyToType0, TYPE_MISMATCH, "Invalid Parameter : DataType(0)",
                 RQXDupRealFilterEx(id, 1, 0)),
        QXE_CASE(CopyToType9, TYPE_MISMATCH, "Invalid Parameter : DataType(9)",
                 QXDupRealFilterEx(id, 1, 9)),
        QXE_CASE(CopyScale, PARAMETER, "Invalid Parameter : scale(39)",
                 RQXDupRealFilterExNumeric(id, 1, QX_DT_DECIMAL, 39, 4)),
        QXE_CASE(CopyRounding, PARAMETER, "Invalid Parameter : rounding_mode(7)",
                 RQXDupRealFilterExNumeric(id, 1, QX_DT_DECIMAL, 2, 7))),
    case_name<Refusal>);

#undef QXE_CASE

}  // namespace
}  // namespace qxe::test
