// Ways out of a join: what they refuse, limits, readers whose tables go, damaged files.
#include <algorithm>
#include <functional>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

char join_name[] = "join";
char new_name[] = "new";
char no_name[] = "";
int one[] = {1, 0};
int two[] = {2, 0};
int three[] = {3, 0};
int none[] = {0};
int chain_tables[QX_MAX_CHAIN + 1];
int chain_sets[2][QX_MAX_CHAIN];

int ignore_row(int, int, int, int, int, int, int, _TColumnBuf*) {
  return 0;
}
int ignore_unique(int, int, int, _TColumnBuf*) {
  return 0;
}

/// Tables 1 (emp) and 2 (city), their inner join 3 and outer join 4; set 2 of emp is empty.
class JoinExitTest : public EngineTest {
 protected:
  JoinExitTest() {
    emp_.add_set({});
    RQXChangeCurrentSetID(1, 1);
    add(0, 1, three, 2, two);
    add(1, 1, three, 2, two);
    drain_ring();
  }

  static int add(int outer, int master, int* master_keys, int slave, int* slave_keys) {
    return require(RQXAddJoinTable(join_name, outer, master, 1, master_keys, slave, 1, slave_keys),
                   "RQXAddJoinTable");
  }

  TestTable emp_{{{"no", ints({1, 2, 3, 4})},
                  {"boss", ints({kNullInt, 1, 1, 2})},
                  {"city", strings({"B", "A", "", "A"})}},
                 "emp"};
  TestTable city_{{{"no", ints({1, 1, 2})}, {"city", strings({"A", "B", "C"})}}, "city"};
};

// Refusals

struct RefusedCase {
  const char* name;
  int status;
  const char* text;
  std::function<int()> call;
};

class RefusedExitTest : public JoinExitTest, public testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedExitTest, LeavesAllAsItWas) {
  const RefusedCase& refused = GetParam();
  const std::string before = database_text();
  expect_failure(refused.call(), refused.status, refused.text);
  EXPECT_EQ(database_text(), before);
  int largest = 0;
  for (int slot = 0; slot < QXGetN_JBA(); ++slot) EXPECT_EQ(QXJBAStatus(slot, &largest), 0);
}

int realize(int table, int set, std::vector<int> filters) {
  filters.push_back(0);
  return RQXConvertJoinToReal(new_name, table, set, 0, 0, filters.data(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Realizing, RefusedExitTest,
    testing::Values(RefusedCase{"NoTable", QX_ERROR_NO_TABLE, "No Such Table",
                                [] { return realize(9, 1, {}); }},
                    RefusedCase{"RealTable", QX_ERROR_NOT_JOIN, "Illegal table type",
                                [] { return realize(1, 1, {}); }},
                    RefusedCase{"NoSet", QX_ERROR_NO_JOIN_SET, "No Such Set",
                                [] { return realize(3, 9, {1}); }},
                    RefusedCase{"NoFilter", QX_ERROR_NO_JOIN_FILTER, "No Such Filter: 6",
                                [] {
                                  return realize(3, 1, {1, 6});
                                }},
                    RefusedCase{"TooManyColumns", QX_ERROR_FILTER_COUNT, "FilterCount overflow",
                                [] { return realize(3, 1, std::vector<int>(513, 1)); }},
                    RefusedCase{"LongName", QX_ERROR_TABLE_NAME, "",
                                [] {
                                  std::string name(256, 'x');
                                  return RQXConvertJoinToReal(name.data(), 3, 1, 0, 0, one, 0);
                                }}),
    case_name<RefusedCase>);

INSTANTIATE_TEST_SUITE_P(
    SemiJoins, RefusedExitTest,
    testing::Values(RefusedCase{"NoTable", QX_ERROR_NO_TABLE, "",
                                [] { return RQXExtractJoinInOut(9, 1, 1, 2, 1, 1, 0); }},
                    RefusedCase{"NoOtherTable", QX_ERROR_NO_TABLE, "",
                                [] { return RQXExtractJoinInOut(1, 1, 1, 9, 1, 1, 0); }},
                    RefusedCase{"Join", QX_ERROR_NOT_REAL, "",
                                [] { return RQXExtractJoinInOut(3, 1, 1, 2, 1, 1, 0); }},
                    RefusedCase{"OtherJoin", QX_ERROR_NOT_REAL, "",
                                [] { return RQXExtractJoinInOut(1, 1, 1, 3, 1, 1, 0); }},
                    RefusedCase{"NoSet", QX_ERROR_NO_SET, "No Such Set: 9",
                                [] { return RQXExtractJoinInOut(1, 9, 1, 2, 1, 1, 0); }},
                    RefusedCase{"NoOtherSet", QX_ERROR_NO_SET, "No Such Set: 9",
                                [] { return RQXExtractJoinInOut(1, 1, 1, 2, 9, 1, 0); }},
                    RefusedCase{"NoFilter", QX_ERROR_NO_FILTER, "No Such Filter: 9",
                                [] { return RQXExtractJoinInOut(1, 1, 9, 2, 1, 1, 0); }},
                    RefusedCase{"Text", QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )",
                                [] { return RQXExtractJoinInOut(1, 1, 1, 2, 1, 2, 0); }}),
    case_name<RefusedCase>);

int chain(std::vector<int> joins, int associations = 0, int filter = 1, char* name = new_name) {
  int filters[3][QX_MAX_ASSOCIATION];
  for (auto& level : filters) std::fill(std::begin(level), std::end(level), filter);
  joins.push_back(0);
  return RQXRealizeJoinChainEx(name, joins.data(), associations, filters, chain_tables, chain_sets);
}

INSTANTIATE_TEST_SUITE_P(
    Chains, RefusedExitTest,
    testing::Values(
        RefusedCase{"NoName", QX_ERROR_CHAIN_NAME, "Invalid Parameter : ChainTblName()",
                    [] { return chain({3}, 0, 1, no_name); }},
        RefusedCase{"Associations", QX_ERROR_SUMMARY_PARAMETER,
                    "Invalid Parameter : nAssociation(5)", [] { return chain({3}, 5); }},
        RefusedCase{"NoJoins", QX_ERROR_NO_TABLE, "", [] { return chain({}); }},
        RefusedCase{"NoTable", QX_ERROR_NO_TABLE, "No Such JTableIDs[1]: 9",
                    [] {
                      return chain({3, 9});
                    }},
        RefusedCase{"RealTable", QX_ERROR_NOT_JOIN_SOURCE, "Illegal table type ( Not JOIN )",
                    [] { return chain({1}); }},
        RefusedCase{"Outer", QX_ERROR_NOT_INNER_JOIN, "Illegal table type ( Not INNER JOIN )",
                    [] { return chain({4}); }},
        RefusedCase{"NoChain", QX_ERROR_NOT_CHAIN, "Illegal chain type ( Not JOIN CHAIN )",
                    [] {
                      return chain({3, 3});
                    }},
        RefusedCase{"NoFilter", QX_ERROR_NO_FILTER, "No Such Filter: 9",
                    [] { return chain({3}, 1, 9); }},
        RefusedCase{"Text", QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )",
                    [] { return chain({3}, 1, 3); }},
        RefusedCase{"TreeIsJoin", QX_ERROR_NOT_REAL, "Illegal table type ( Not REAL )",
                    [] { return RQXQualifyTree(3, 0, 1, one, 0); }},
        RefusedCase{"NoTree", QX_ERROR_NO_TABLE, "No Such Table: 9",
                    [] { return RQXQualifyTree(9, 0, 1, one, 0); }},
        RefusedCase{"TreeOfTexts", QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )",
                    [] { return RQXQualifyTree(2, 0, 1, one, 0); }},
        RefusedCase{"NoSource", QX_ERROR_NO_TABLE, "No Such Table: 9",
                    [] { return RQXQualifyTree(1, 0, 9, one, 0); }},
        RefusedCase{"NoSourceFilter", QX_ERROR_NO_FILTER, "Invalid Parameter : SrcFltIDs",
                    [] { return RQXQualifyTree(1, 0, 2, none, 0); }}),
    case_name<RefusedCase>);

INSTANTIATE_TEST_SUITE_P(
    Blocks, RefusedExitTest,
    testing::Values(
        RefusedCase{"HighSlot", QX_JBA_BAD_SLOT, "", [] { return QXJBAOpen(8, 1, 1); }},
        RefusedCase{"LowSlot", QX_JBA_BAD_SLOT, "", [] { return QXJBAOpen(-1, 1, 1); }},
        RefusedCase{"Empty", QX_JBA_EMPTY_SET, "", [] { return QXJBAOpen(0, 1, 2); }},
        RefusedCase{"NoTable", QX_ERROR_NO_TABLE, "", [] { return QXJBAOpen(0, 9, 1); }},
        RefusedCase{"NoSet", QX_ERROR_NO_JOIN_SET, "", [] { return QXJBAOpen(0, 3, 9); }},
        RefusedCase{"NegativeSet", QX_ERROR_NO_SET_ID, "", [] { return QXJBAOpen(0, 1, -2); }},
        RefusedCase{"NoFilter", QX_ERROR_NO_FILTER, "",
                    [] {
                      int filters[] = {1, 9, 0};
                      return QXJBAOpen2(0, 3, 1, filters);
                    }},
        RefusedCase{"NoCallback", QX_ERROR_PARAMETER, "CallBack Function pointer Bug",
                    [] { return QXRowInfoCallBack(1, 0, 1, one, nullptr); }},
        RefusedCase{"NoSearch", QX_ERROR_PARAMETER, "CallBack Function pointer Bug",
                    [] { return QXSearchCallBack(1, 0, 1, one, nullptr); }},
        RefusedCase{"NoUnique", QX_ERROR_PARAMETER, "CallBack Function pointer Bug",
                    [] { return QXUniqueRowCallBack(1, 0, 1, one, nullptr); }},
        RefusedCase{"SearchOfJoin", QX_ERROR_NOT_REAL, "Join Table not allowed!:",
                    [] { return QXSearchCallBack(3, 0, 1, one, ignore_row); }},
        RefusedCase{"SearchOfNoSet", QX_ERROR_NO_JOIN_SET, "GetSetSize failed!:",
                    [] { return QXSearchCallBack(1, 0, 9, one, ignore_row); }},
        RefusedCase{"UniqueSlot", QX_JBA_BAD_SLOT, "",
                    [] { return QXUniqueRowCallBack(1, 9, 1, one, ignore_unique); }}),
    case_name<RefusedCase>);

// Realising

TEST_F(JoinExitTest, RealizedTablesStandAlone) {
  const int real = RQXConvertJoinToReal(no_name, 4, -1, 1, 1, one, 0);
  ASSERT_GT(real, 0);
  char name[256];
  ASSERT_GE(RQXGetTableName(real, name), 0);
  EXPECT_EQ(std::string(name).substr(0, 9), "createtbl");
  EXPECT_EQ(RQXInsertRealRows(real, 1, 1), 1);
  EXPECT_EQ(RQXDeleteTable(3), 0);
  EXPECT_EQ(RQXDeleteTable(4), 0);
  EXPECT_EQ(RQXDeleteTable(2), 0);
  const TestTable pairs = TestTable::existing(real);
  EXPECT_EQ(pairs.texts("no"), (std::vector<std::string>{"NULL", "NULL", "1", "2", "4"}));
  EXPECT_EQ(pairs.texts("SRecNo"), (std::vector<std::string>{"NULL", "3", "2", "1", "1"}));
}

TEST_F(JoinExitTest, AFilterThatItsTableHasNoMoreCannotBeRealized) {
  ASSERT_EQ(RQXDeleteRealFilter(1, 2), 0);
  drain_ring();
  expect_failure(realize(3, 1, {1, 2}), QX_ERROR_NO_FILTER, "No Such Filter: 2");
}

// Chains

TEST_F(JoinExitTest, AJoinOfATableWithItselfCanBeTheWholeChain) {
  const int boss_of = add(0, 1, one, 1, two);  // no = boss
  std::vector<int> joins(3, boss_of);
  joins.push_back(0);
  const int tree = RQXRealizeJoinChain(new_name, joins.data(), chain_tables, chain_sets);
  const TestTable reader = TestTable::existing(tree);
  EXPECT_EQ(reader.texts("RECNO"),
            (std::vector<std::string>{"1", "2", "4", "3", "2", "4", "3", "4"}));
  EXPECT_EQ(reader.texts("depth"),
            (std::vector<std::string>{"0", "1", "2", "1", "0", "1", "0", "0"}));
}

TEST_F(JoinExitTest, TheLimitCutsChainsAndCanBeSetFree) {
  const TestTable loop({{"a", ints({1})}});
  const int join = add(0, loop.id(), one, loop.id(), one);
  std::vector<int> joins(600, join);
  joins.push_back(0);
  const auto rows = [&] {
    return RQXGetTotalRows(RQXRealizeJoinChain(new_name, joins.data(), chain_tables, chain_sets));
  };
  EXPECT_EQ(rows(), 17);
  expect_failure(RQXSetMaxJoinChain(8), QX_ERROR_PARAMETER, "Invalid Parameter : MaxJoinChain(8)");
  EXPECT_EQ(rows(), 511);
  EXPECT_EQ(QXSetMaxJoinChain(16), 0);
  EXPECT_EQ(rows(), 17);
}

TEST_F(JoinExitTest, TreesOfTooManyNodesAreRefusedAtOnce) {
  const TestTable same({{"a", ints(std::vector<int>(20, 7))}});
  const int join = add(0, same.id(), one, same.id(), one);
  EXPECT_EQ(RQXGetTotalRows(chain({join, join})), 8420);
  expect_failure(chain(std::vector<int>(16, join), 0), QX_ERROR_ROW_SIZE, "RowSize overflow");
}

// Readers

int read(int slot) {
  int numbers[6];
  int* rows = nullptr;
  _TColumnBuf* columns = nullptr;
  return QXJBARead(slot, numbers, numbers + 1, numbers + 2, numbers + 3, numbers + 4, &rows,
                   numbers + 5, &columns);
}

TEST_F(JoinExitTest, ReadersCloseWithTheirTable) {
  int largest = 0;
  const auto is_open = [&](int slot) { return QXJBAStatus(slot, &largest); };
  ASSERT_EQ(QXJBAOpen(0, 3, 1), 0);
  ASSERT_EQ(QXJBAOpen(7, 1, 1), 0);
  EXPECT_EQ(QXJBAOpen(0, 1, 2), QX_JBA_BUSY);
  EXPECT_EQ(RQXDeleteTable(3), 0);
  EXPECT_EQ(is_open(0), 0);
  EXPECT_EQ(is_open(7), 1);
  EXPECT_EQ(read(7), 1);
  EXPECT_EQ(RQXClearDB(), 0);
  EXPECT_EQ(is_open(7), 0);
  drain_ring();
  expect_failure(read(7), QX_ERROR_PARAMETER, "Invalid Parameter : Slot(7)");
}

TEST_F(JoinExitTest, ReadersGoOnWithWhatIsThere) {
  int filters[] = {1, 2, 0};
  const int set = emp_.add_set({4, 3, 2});
  ASSERT_EQ(QXJBAOpen2(0, 1, set, filters), 0);
  EXPECT_EQ(read(0), 1);
  EXPECT_EQ(RQXAddRealFilter2(1, 0, "first", QX_DT_INTEGER, 0, nullptr, nullptr, nullptr), 4);
  EXPECT_EQ(read(0), 1);
  EXPECT_EQ(RQXDeleteRealFilter(1, 2), 0);
  drain_ring();
  expect_failure(read(0), QX_ERROR_NO_FILTER);
  EXPECT_EQ(QXJBAClose(0), 0);
  EXPECT_EQ(QXJBAClose(0), 0);
}

// Callbacks

int take_even(int /*block*/, int /*first*/, int /*last*/, int row, int /*slaves*/, int slave,
              int /*count*/, _TColumnBuf* columns) {
  EXPECT_EQ(slave, 0);
  EXPECT_EQ(*static_cast<int*>(columns[0].values[0]), row);
  return row % 2 == 0 ? 1 : 0;
}

TEST_F(JoinExitTest, SearchesTakeTheRowsTheCallbackWants) {
  const int set = QXSearchCallBack(1, 0, emp_.add_set({4, 3, 2}), nullptr, take_even);
  EXPECT_EQ(emp_.rows(set), (std::vector<int>{4, 2}));
  EXPECT_EQ(RQXGetCurrentSetID(1), set);
  EXPECT_TRUE(emp_.rows(QXSearchCallBack(1, 0, 2, nullptr, take_even)).empty());
}

int delete_join(int, int, int, int, int, int, int, _TColumnBuf*) {
  return RQXDeleteTable(3);
}

TEST_F(JoinExitTest, ACallbackMayDeleteTheTable) {
  expect_failure(QXRowInfoCallBack(3, 0, 1, nullptr, delete_join), QX_ERROR_PARAMETER,
                 "QXJBAead failed!");
  EXPECT_EQ(RQXGetNTable(), 3);
}

// Damaged files

/// Work that looks at every number of a join's section.
void use(int table) {
  int filters[1024] = {};
  const int count = RQXGetFilterIDList(table, filters);
  for (int i = 0; i < count; ++i) {
    const int set = RQXSortByField(table, filters[i], -1, QX_SORT_DESC);
    RQXSetNotReal(table, set);
    std::vector<int> numbers(static_cast<size_t>(std::max(RQXGetSetSize(table, -1), 0)) + 1);
    RQXGetVNoList(table, filters[i], -1, numbers.data());
    std::vector<int> counts(1000);
    QXGetValCount(table, filters[i], -1, counts.data());
  }
  char name[] = "used";
  RQXConvertJoinToReal(name, table, -1, 1, 1, filters, 0);
}

TEST_F(JoinExitTest, DamagedSectionsAreRefusedOrWork) {
  char path[512] = "";
  ASSERT_EQ(RQXSaveDBAs(path, "db"), 0);
  const std::string bytes = read_file("db.QXD");
  int loaded = 0;
  size_t begin = 0;  // of the first join's section: two names in the list of tables come before
  for (int i = 0; i < 3; ++i) begin = bytes.find("join", begin + 1);
  ASSERT_NE(begin, std::string::npos);
  for (size_t place = begin; place < bytes.size(); place += place - begin < 600 ? 8 : 44) {
    for (const char damage : {'\1', '\x7f'}) {
      std::string damaged = bytes;
      damaged[place] = static_cast<char>(damaged[place] ^ damage);
      write_file("damaged.QXD", damaged);
      if (RQXLoadDB("", "damaged") >= 0) ++loaded;
      for (const int table : {3, 4}) use(table);
    }
  }
  EXPECT_GT(loaded, 0);
  for (size_t size = begin; size < bytes.size(); size += 101) {
    write_file("cut.QXD", bytes.substr(0, size));
    EXPECT_LT(RQXLoadDB("", "cut"), 0) << size;
  }
}

TEST_F(JoinExitTest, AJoinWithoutItsParentIsRefused) {
  char path[512] = "";
  ASSERT_EQ(RQXSaveDBAs(path, "db"), 0);
  std::string bytes = read_file("db.QXD");
  const int parents[] = {1, 2};
  const std::string field(reinterpret_cast<const char*>(parents), sizeof parents);
  const size_t place = bytes.find(field, bytes.rfind("join"));
  ASSERT_NE(place, std::string::npos);
  bytes[place] = 3;
  write_file("db.QXD", bytes);
  expect_failure(RQXLoadDB("", "db"), QX_ERROR_FILE_FORMAT);
}

}  // namespace
}  // namespace qxe::test
