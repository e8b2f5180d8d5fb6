// Tables: ids, names, properties, memory.
#include <string.h>

#include <regex>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class TablesTest : public EngineTest {
 protected:
  static std::vector<int> ids() {
    std::vector<int> list(10000);
    const int count = RQXGetTableIDList(list.data());
    list.resize(static_cast<size_t>(count));
    return list;
  }
  static std::string name_of(int table) {
    char name[256] = "";
    require(RQXGetTableName(table, name), "RQXGetTableName");
    return name;
  }
};

TEST_F(TablesTest, IssuesIdsUpwardAndNeverTwice) {
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(RQXAddRealTable("t", 1), i);
  EXPECT_EQ(RQXDeleteTable(3), 0);
  EXPECT_EQ(ids(), (std::vector<int>{1, 2, 4, 5}));
  EXPECT_EQ(RQXGetNTable(), 4);
  EXPECT_EQ(QXAddRealTable("t", 1), 6);
  expect_failure(RQXDeleteTable(3), QX_ERROR_NO_TABLE, "table not exist");
}

TEST_F(TablesTest, HoldsTenThousandTables) {
  for (int i = 0; i < 10000; ++i) require(RQXAddRealTable(std::to_string(i).c_str(), 0), "add");
  expect_failure(RQXAddRealTable("one_more", 0), QX_ERROR_TABLE_COUNT, "TableCount overflow");
  int tables[] = {1, 0};
  int sets[] = {1};
  char name[] = "n";
  for (const int status :
       {RQXDuplicateRealTable("n", 1), RQXExtractRealTable("n", 1, 1, nullptr),
        QXCombineRealTable(nullptr, 1, 1, tables, 1, 1, tables),
        RQXCombineTableList(name, tables, sets, nullptr, nullptr, nullptr, nullptr)}) {
    EXPECT_EQ(hex(status), hex(QX_ERROR_TABLE_COUNT));
  }
  EXPECT_EQ(RQXGetNTable(), 10000);
  EXPECT_EQ(RQXGetTableIDFromName("9999"), 10000);
}

TEST_F(TablesTest, CleansNamesAndMakesThemUnique) {
  const int first = RQXAddRealTable("a b", 1);
  EXPECT_EQ(name_of(first), "a_b");
  EXPECT_EQ(name_of(RQXAddRealTable("a b", 1)), "a_b_#1");
  EXPECT_EQ(name_of(RQXAddRealTable("a_b_#7", 1)), "a_b_#2");
  EXPECT_EQ(RQXGetTableIDFromName("a_b"), first);
  expect_failure(RQXGetTableIDFromName("a b"), QX_ERROR_NO_TABLE, "No Table");
}

TEST_F(TablesTest, GeneratesANameForNoName) {
  const std::regex pattern("realtbl[0-9]{14}_1(_#[0-9]+)?");
  EXPECT_TRUE(std::regex_match(name_of(RQXAddRealTable("", 1)), pattern));
  EXPECT_TRUE(std::regex_match(name_of(RQXAddRealTable(nullptr, 1)), pattern));
}

TEST_F(TablesTest, OffersFreeNamesInEveryForm) {
  RQXAddRealTable("sales", 1);
  char name[256] = "";
  char* shared = nullptr;
  EXPECT_EQ(RQXGenerateTableName("sales", name), 0);
  EXPECT_STREQ(name, "sales_#1");
  EXPECT_EQ(RQXGenTableName("sales_#9", name), 0);
  EXPECT_STREQ(name, "sales_#1");
  EXPECT_EQ(QXGenTableName("sales", &shared), 0);
  EXPECT_STREQ(shared, "sales_#1");
  EXPECT_STREQ(RQXGenerateTableNameR1("sales"), "sales_#1");
  EXPECT_STREQ(RQXGenTableNameR1("free"), "free");
  EXPECT_STREQ(RQXGenTableNameR1(""), "");
}

TEST_F(TablesTest, RenamesTables) {
  const int first = RQXAddRealTable("first", 1);
  const int second = RQXAddRealTable("second", 1);
  EXPECT_EQ(RQXSetTableName(second, "first"), 0);
  EXPECT_EQ(name_of(second), "first_#1");
  EXPECT_EQ(QXSetTableName(first, "first"), 0);
  EXPECT_EQ(name_of(first), "first");
  EXPECT_STREQ(RQXGetTableNameR1(second), "first_#1");
  EXPECT_STREQ(RQXGetTableNameR1(99), "");
}

TEST_F(TablesTest, DescribesATable) {
  const TestTable table({{"a", ints({1, 2, 3})}, {"b", strings({"", "", ""})}}, "people");
  table.add_set({1});
  _TTableInfo info;
  memset(&info, 0x55, sizeof info);
  EXPECT_EQ(RQXGetTableProperty(table.id(), &info), 0);
  EXPECT_EQ(info.id, table.id());
  EXPECT_EQ(info.kind, 0);
  EXPECT_EQ(info.filterCount, 2);
  EXPECT_EQ(info.setCount, 2);
  EXPECT_EQ(info.totalRows, 3);
  EXPECT_STREQ(info.name, "people");
}

TEST_F(TablesTest, MayBeEditedWhileNoTableRefersToThem) {
  const TestTable table({{"a", ints({1})}});
  int referring[4] = {7, 7, 7, 7};
  EXPECT_EQ(RQXTableCanEdit(table.id(), referring), 0);
  EXPECT_EQ(referring[0], 7);
  int* live = nullptr;
  EXPECT_EQ(QXTableCanEdit(table.id(), &live), 0);
}

TEST_F(TablesTest, AccountForTheirMemory) {
  unsigned long before = 0;
  EXPECT_EQ(RQXGetTotalMemorySize(&before), 0);
  const TestTable table({{"a", ints(std::vector<int>(100000, 5))}});
  const int set = table.add_set(std::vector<int>(50000, 1));
  const int filter = table.filter("a");

  unsigned long after = 0;
  unsigned long with_shared = 0;
  unsigned long of_table = 0;
  unsigned long of_filter = 0;
  unsigned long of_set = 0;
  EXPECT_EQ(QXGetTotalMemorySize(&after), 0);
  EXPECT_EQ(RQXGetTotalMemorySizeWithShared(&with_shared), 0);
  EXPECT_EQ(RQXGetTableMemorySize(table.id(), &of_table), 0);
  EXPECT_EQ(QXGetFilterMemorySize(table.id(), filter, &of_filter), 0);
  EXPECT_EQ(RQXGetSetMemorySize(table.id(), set, &of_set), 0);
  EXPECT_GE(of_filter, 400000UL);
  EXPECT_GE(of_set, 200000UL);
  EXPECT_GE(of_table, of_filter + of_set + 400000UL);  // the root set
  EXPECT_GE(after, before + of_table);
  EXPECT_EQ(with_shared, after);
}

TEST_F(TablesTest, KnowNoPathBeforeALoad) {
  EXPECT_STREQ(RQXGetDBPathR1(), "");
  EXPECT_STREQ(RQXGetDBNameR1(), "");
}

}  // namespace
}  // namespace qxe::test
