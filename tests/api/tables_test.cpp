// Tables and sets: ids, names, properties, memory; rows, the current set, attribute blocks.
#include <string.h>

#include <array>
#include <numeric>
#include <regex>

#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Ints = std::vector<int>;

class TablesTest : public EngineTest {
 protected:
  static std::string name_of(int table) { return RQXGetTableNameR1(table); }
};

TEST_F(TablesTest, IssuesIdsUpwardAndNeverTwice) {
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(RQXAddRealTable("t", 1), i);
  EXPECT_EQ(RQXDeleteTable(3), 0);
  Ints ids(10);
  EXPECT_EQ(RQXGetTableIDList(ids.data()), 4);
  EXPECT_EQ(Ints(ids.begin(), ids.begin() + 4), (Ints{1, 2, 4, 5}));
  EXPECT_EQ(QXAddRealTable("t", 1), 6);
  EXPECT_EQ(RQXGetNTable(), 5);
  expect_failure(RQXDeleteTable(3), QX_ERROR_NO_TABLE, "table not exist");
}

TEST_F(TablesTest, CleansNamesAndMakesThemUnique) {
  const int first = RQXAddRealTable("a b", 1);
  EXPECT_EQ(name_of(first), "a_b");
  EXPECT_EQ(name_of(RQXAddRealTable("a b", 1)), "a_b_#1");
  EXPECT_EQ(name_of(RQXAddRealTable("a_b_#7", 1)), "a_b_#2");
  EXPECT_EQ(RQXGetTableIDFromName("a_b"), first);
  expect_failure(RQXGetTableIDFromName("a b"), QX_ERROR_NO_TABLE, "No Table");
  const std::regex generated("realtbl[0-9]{14}_1(_#[0-9]+)?");
  EXPECT_TRUE(std::regex_match(name_of(RQXAddRealTable("", 1)), generated));
  EXPECT_TRUE(std::regex_match(name_of(RQXAddRealTable(nullptr, 1)), generated));
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
  EXPECT_EQ(QXSetTableName(first, "first"), 0);
  EXPECT_EQ(name_of(first), "first");
  char name[256] = "";
  EXPECT_EQ(RQXGetTableName(second, name), 0);
  EXPECT_STREQ(name, "first_#1");
  EXPECT_EQ(name_of(99), "");
}

TEST_F(TablesTest, DescribesATable) {
  const TestTable table({{"a", ints({1, 2, 3})}, {"b", strings({"", "", ""})}}, "people");
  table.add_set({1});
  _TTableInfo info;
  memset(&info, 0x55, sizeof info);
  EXPECT_EQ(RQXGetTableProperty(table.id(), &info), 0);
  EXPECT_EQ((Ints{info.id, info.kind, info.filterCount, info.setCount, info.totalRows}),
            (Ints{table.id(), 0, 2, 2, 3}));
  EXPECT_STREQ(info.name, "people");
  int referring = 7;
  EXPECT_EQ(RQXTableCanEdit(table.id(), &referring), 0);
  EXPECT_EQ(referring, 7);
  int* live = nullptr;
  EXPECT_EQ(QXTableCanEdit(table.id(), &live), 0);
  EXPECT_STREQ(RQXGetDBPathR1(), "");
  EXPECT_STREQ(RQXGetDBNameR1(), "");
}

TEST_F(TablesTest, AccountForTheirMemory) {
  unsigned long before = 0;
  EXPECT_EQ(RQXGetTotalMemorySize(&before), 0);
  const TestTable table({{"a", ints(Ints(100000, 5))}});
  const int set = table.add_set(Ints(50000, 1));
  unsigned long after = 0;
  unsigned long with_shared = 0;
  unsigned long of_table = 0;
  unsigned long of_filter = 0;
  unsigned long of_set = 0;
  EXPECT_EQ(QXGetTotalMemorySize(&after), 0);
  EXPECT_EQ(RQXGetTotalMemorySizeWithShared(&with_shared), 0);
  EXPECT_EQ(RQXGetTableMemorySize(table.id(), &of_table), 0);
  EXPECT_EQ(QXGetFilterMemorySize(table.id(), 1, &of_filter), 0);
  EXPECT_EQ(RQXGetSetMemorySize(table.id(), set, &of_set), 0);
  EXPECT_GE(of_filter, 400000UL);
  EXPECT_GE(of_set, 200000UL);
  EXPECT_GE(of_table, of_filter + of_set + 400000UL);  // the root set
  EXPECT_GE(after, before + of_table);
  EXPECT_EQ(with_shared, after);
}

class SetsTest : public EngineTest {
 protected:
  Ints ids() const {
    Ints list(10001);
    list.resize(static_cast<size_t>(RQXGetSetList(id_, 10001, list.data())));
    return list;
  }

  const TestTable table_{{{"a", ints({5, 4, 3, 2, 1})}}, "table"};
  const int id_ = table_.id();
};

TEST_F(SetsTest, KeepRowsInTheirOrderAndLeaveTheCallersAlone) {
  EXPECT_EQ(ids(), Ints{1});
  EXPECT_EQ(RQXGetCurrentSetID(id_), 1);
  Ints rows = {4, 1, 4};
  const int set = RQXAddSetReal(id_, 3, rows.data());
  EXPECT_EQ(set, 2);
  EXPECT_EQ(rows, (Ints{4, 1, 4}));
  rows[0] = 5;
  EXPECT_EQ(table_.rows(set), (Ints{4, 1, 4}));
  EXPECT_EQ(RQXGetCurrentSetID(id_), set);
  EXPECT_EQ(RQXGetSetSize(id_, -1), 3);
  int* live = nullptr;
  EXPECT_EQ(QXGetSet(id_, set, &live), 3);
  EXPECT_EQ(Ints(live, live + 3), (Ints{4, 1, 4}));
  EXPECT_EQ(table_.rows(RQXAddSetReal(id_, 0, nullptr)), Ints{});
}

TEST_F(SetsTest, TellTheirSizeToAShortBuffer) {
  Ints rows = {7, 7, 7};
  int count = 0;
  EXPECT_EQ(RQXGetSet(id_, 1, &count, 2, rows.data()), 5);
  EXPECT_EQ(count, 5);
  EXPECT_EQ(rows, (Ints{1, 2, 7}));
  table_.add_set({1});
  rows[0] = 7;
  EXPECT_EQ(RQXGetSetIDList(id_, 1, rows.data()), 2);
  EXPECT_EQ(rows, (Ints{1, 2, 7}));
}

TEST_F(SetsTest, AreDeletedWithoutGivingTheirIdsBack) {
  table_.add_set({1});
  const int current = table_.add_set({2});
  EXPECT_EQ(RQXDeleteSet(id_, -1), 0);
  EXPECT_EQ(RQXGetCurrentSetID(id_), 1);
  EXPECT_EQ(ids(), (Ints{1, 2}));
  EXPECT_EQ(table_.add_set({3}), current + 1);
  EXPECT_EQ(RQXPurgeSubsets(id_), 0);
  EXPECT_EQ(ids(), Ints{1});
  EXPECT_EQ(table_.add_set({3}), current + 2);
  expect_failure(RQXDeleteSet(id_, 1), QX_ERROR_ROOT_SET, "Root set cannot be deleted");
}

TEST_F(SetsTest, GetTheIdThatWasAskedFor) {
  table_.add_set({1});
  EXPECT_EQ(RQXResetSetID(id_, 10), 0);
  EXPECT_EQ(table_.add_set({1}), 10);
  RQXDeleteSet(id_, 10);
  EXPECT_EQ(RQXResetSetID(id_, 3), 0);
  EXPECT_EQ(table_.add_set({1}), 3);
  for (const int taken : {3, 0}) {
    expect_failure(RQXResetSetID(id_, taken), QX_ERROR_NO_SET_ID, "return of inner call");
  }
}

TEST_F(SetsTest, BecomeCurrentOnRequest) {
  const int set = table_.add_set({1});
  EXPECT_EQ(RQXChangeCurrentSetID(id_, 1), 0);
  EXPECT_EQ(RQXGetCurrentSetID(id_), 1);
  EXPECT_EQ(QXChangeCurrentSetID(id_, set), 0);
  EXPECT_EQ(RQXChangeCurrentSetID(id_, -1), 0);
  EXPECT_EQ(QXGetCurrentSetID(id_), set);
}

TEST_F(SetsTest, CarryANameCutToItsBufferAndAnAttributeBlock) {
  const int set = table_.add_set({1});
  char name[256] = "before";
  EXPECT_EQ(RQXGetSetName(id_, set, name), 0);
  EXPECT_STREQ(name, "");
  EXPECT_STREQ(RQXGetSetNameR1(id_, set), "table");
  EXPECT_EQ(RQXSetSetName(id_, set, "adults, 18+"), 0);
  EXPECT_STREQ(RQXGetSetNameR1(id_, set), "adults, 18+");
  EXPECT_STREQ(RQXGetSetNameR1(id_, 99), "table");
  EXPECT_STREQ(RQXGetSetNameR1(99, set), "");
  EXPECT_EQ(QXSetSetName(id_, set, std::string(300, 'x').c_str()), 0);
  EXPECT_EQ(QXGetSetName(id_, set, name), 0);
  EXPECT_EQ(std::string(name), std::string(255, 'x'));

  std::array<unsigned char, 64> written;
  std::iota(written.begin(), written.end(), static_cast<unsigned char>(100));
  EXPECT_EQ(RQXSetSubsetAttr(id_, set, written.data()), 0);
  std::array<unsigned char, 64> read = {};
  EXPECT_EQ(RQXGetSubsetAttr(id_, set, read.data()), 0);
  EXPECT_EQ(read, written);
  void* live = nullptr;
  EXPECT_EQ(QXGetSubsetAttr(id_, set, &live), 0);
  EXPECT_EQ(memcmp(live, written.data(), written.size()), 0);
}

}  // namespace
}  // namespace qxe::test
