// What a client is told about joins, what joins forbid, and what cannot be joined.
#include <algorithm>
#include <cstring>
#include <functional>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

int add_join(const TestTable& master, std::vector<int> master_keys, const TestTable& slave,
             std::vector<int> slave_keys, int outer = 0, int set = -1) {
  char name[] = "join";
  master_keys.push_back(0);
  slave_keys.push_back(0);
  return RQXAddJoinTable(name, outer, master.id(), set, master_keys.data(), slave.id(), -1,
                         slave_keys.data());
}

class JoinTest : public EngineTest {
 protected:
  /// A pair as "master row slave row".
  std::vector<std::string> pairs(int join, int set = TestTable::kAllRows) const {
    const TestTable reader = TestTable::existing(join);
    const auto master = reader.texts("no", set);
    const auto slave = reader.texts("no_#1", set);
    std::vector<std::string> result;
    for (size_t i = 0; i < master.size(); ++i) result.push_back(master[i] + " " + slave[i]);
    return result;
  }

  TestTable sales_{{{"no", ints({1, 2, 3, 4, 5})},
                    {"city", strings({"B", "A", "", "C", "A"})},
                    {"amount", doubles({1.5, 2.5, 3.5, 4.5, 5.5})},
                    {"when", dates({"2024/03/01", "2024/03/02", "2024/03/01", "", ""})}},
                   "sales"};
  TestTable cities_{{{"no", ints({1, 2, 3, 4, 5})},
                     {"name", strings({"A", "D", "B", "A", ""})},
                     {"people", ints({10, 20, 30, 40, 50})}},
                    "cities"};
};

using Texts = std::vector<std::string>;

TEST_F(JoinTest, PairsComeInDrivingOrder) {
  const int join = add_join(sales_, {2}, cities_, {2});
  EXPECT_EQ(pairs(join), (Texts{"1 3", "2 1", "2 4", "3 5", "5 1", "5 4"}));
  const int sorted = TestTable::existing(join).sort("people", QX_SORT_DESC);
  EXPECT_EQ(pairs(join, sorted), (Texts{"3 5", "2 4", "5 4", "1 3", "2 1", "5 1"}));
  EXPECT_EQ(RQXGetJoinDir(join, sorted), QX_JOIN_SLAVE);
}

TEST_F(JoinTest, OuterJoinsShowRowsWithoutPartner) {
  const int join = add_join(sales_, {2}, cities_, {2}, 1);
  EXPECT_EQ(pairs(join), (Texts{"NULL 2", "1 3", "2 1", "2 4", "4 NULL", "5 1", "5 4"}));
  int table = 0;
  int set = 0;
  expect_failure(RQXReturnSet2SlaveTable(join, &table), QX_ERROR_NOT_INNER_JOIN,
                 "No Inner-Join Table");
  EXPECT_EQ(RQXPutJoinSetToParent(join, 0, 0, &table, &set), -1);
}

TEST_F(JoinTest, TellsWhatIsJoined) {
  const int set = sales_.add_set({5, 4, 2});
  const int join = add_join(sales_, {2, 1}, cities_, {2, 3}, 7, set);
  char name[256] = "";
  int ids[6] = {};
  int keys[2][QX_MAX_JOIN_KEYS];
  ASSERT_EQ(RQXGetJoinInfoEx(join, name, ids, ids + 1, ids + 2, ids + 3, ids + 4, ids + 5, keys[0],
                             keys[1]),
            0);
  EXPECT_STREQ(name, "join");
  EXPECT_EQ(std::vector<int>(ids, ids + 6),
            (std::vector<int>{sales_.id(), cities_.id(), set, 1, 1, 2}));
  EXPECT_EQ(std::vector<int>(keys[0], keys[0] + 3), (std::vector<int>{2, 1, 0}));
  EXPECT_EQ(std::vector<int>(keys[1], keys[1] + 3), (std::vector<int>{2, 3, 0}));
  int slave = 0;
  int slave_set = 0;
  ASSERT_EQ(RQXGetSlaveInfo(join, &slave, &slave_set), 0);
  EXPECT_EQ(slave, cities_.id());
  EXPECT_EQ(slave_set, 1);
  int side = 0;
  int table = 0;
  int filter = 0;
  ASSERT_EQ(RQXGetJoinSrcTblInfo(join, 6, &side, &table, &filter), 0);
  EXPECT_EQ((std::vector<int>{side, table, filter}), (std::vector<int>{1, cities_.id(), 2}));
  _TTableInfo info{};
  ASSERT_EQ(RQXGetTableProperty(join, &info), 0);
  EXPECT_EQ(info.kind, 2);
  EXPECT_EQ(info.filterCount, 7);
  EXPECT_EQ(RQXGetFilterIDFromName2(join, "no", QX_JOIN_MASTER), 1);
  EXPECT_EQ(RQXGetFilterIDFromName2(join, "no_#1", -1), 5);
  EXPECT_STREQ(RQXGetFilterNameR1(join, 5), "no_#1");
  expect_failure(RQXGetFilterIDFromName2(join, "no", QX_JOIN_SLAVE), QX_ERROR_NO_FILTER);
}

TEST_F(JoinTest, ItsKeyHasTheValuesOfBothSides) {
  const int join = add_join(sales_, {2}, cities_, {2});
  for (const int side : {QX_JOIN_MASTER, QX_JOIN_SLAVE}) {
    _TRFilterInfo info{};
    ASSERT_EQ(RQXGetJoinKeyInfo(join, side, &info), 0);
    EXPECT_STREQ(info.name, side == 0 ? "#MASTER" : "#SLAVE");
    EXPECT_EQ(info.valueCount, 5);  // "", A, B, C, D
    int pv[6] = {};
    _TRFilterBody body{6, pv, 0, nullptr, 0, nullptr};
    ASSERT_EQ(RQXGetJoinKeyBody(join, side, &body), 0);
    EXPECT_EQ(std::vector<int>(pv, pv + 6), side == 0 ? (std::vector<int>{0, 2, 1, 0, 3, 1})
                                                      : (std::vector<int>{0, 1, 4, 2, 1, 0}));
  }
  EXPECT_EQ(pairs(join).size(), 6u);  // the join goes on with a key of its own
  const int several = add_join(sales_, {2, 1}, cities_, {2, 1});
  _TFilterInfo key{};
  ASSERT_EQ(QXGetJoinKey(several, 0, &key), 0);
  EXPECT_EQ(key.valueCount, 11);  // ten combinations, and 0 for rows of neither set
}

TEST_F(JoinTest, KeysOfOtherFormsMatchByValue) {
  const TestTable left({{"no", ints({1, 2, 3})},
                        {"d", decimals(2, {"1.50", "2.25", "3.00"})},
                        {"f", doubles({45352, 7, 8})}});
  const TestTable right({{"no", ints({1, 2, 3})},
                         {"d", decimals(4, {"3.0000", "1.5000", "1.5000"})},
                         {"f", dates({"2024/03/01", "2024/03/02", "2024/03/03"})}});
  EXPECT_EQ(pairs(add_join(left, {2}, right, {2})), (Texts{"1 2", "1 3", "3 1"}));
  EXPECT_EQ(pairs(add_join(right, {2}, left, {2})), (Texts{"1 3", "2 1", "3 1"}));
  EXPECT_EQ(pairs(add_join(left, {2, 1}, right, {2, 1})), Texts{});
  EXPECT_EQ(pairs(add_join(left, {3}, right, {3})), Texts{"1 1"});
  EXPECT_EQ(pairs(add_join(left, {1}, left, {1})), (Texts{"1 1", "2 2", "3 3"}));
}

TEST_F(JoinTest, DecimalsThatDoNotFitTheOtherScalePairWithNothing) {
  const std::string digits(37, '9');
  const TestTable left({{"no", ints({1, 2})}, {"d", decimals(3, {"1.000", ""})}});
  const TestTable right(
      {{"no", ints({1, 2, 3, 4})}, {"d", decimals(0, {digits, "1", "", digits})}});
  EXPECT_EQ(pairs(add_join(left, {2}, right, {2})), (Texts{"1 2", "2 3"}));
  EXPECT_EQ(pairs(add_join(left, {2}, right, {2}, 1)), (Texts{"NULL 1", "NULL 4", "1 2"}));
  const TestTable ones({{"no", ints({1, 1})}, {"d", decimals(0, {digits, ""})}});
  EXPECT_EQ(pairs(add_join(left, {2, 1}, ones, {2, 1})), Texts{});
}

// What joins forbid

TEST_F(JoinTest, ParentsCannotChangeWhileItExists) {
  const int join = add_join(sales_, {2}, cities_, {2});
  int referring[10];
  EXPECT_EQ(RQXTableCanEdit(sales_.id(), referring), 1);
  EXPECT_EQ(referring[0], join);
  const std::string before = database_text();
  expect_failure(RQXDeleteTable(cities_.id()), QX_ERROR_REFERRED);
  expect_failure(RQXDeleteRealRows(sales_.id(), 1, 1), QX_ERROR_REFERRED);
  expect_failure(RQXDeleteRealFilter(cities_.id(), 2), QX_ERROR_REFERRED, "Failed to refere table");
  expect_failure(RQXCondenseRealTable(sales_.id()), QX_ERROR_REFERRED);
  int value = 9;
  expect_failure(RQXOverwriteRealExIntR1(sales_.id(), 1, 1, 1, value), QX_ERROR_REFERRED);
  EXPECT_EQ(database_text(), before);
  const int second = add_join(cities_, {1}, sales_, {1});
  EXPECT_EQ(RQXDeleteTable(join), 0);
  expect_failure(RQXDeleteTable(cities_.id()), QX_ERROR_REFERRED);
  EXPECT_EQ(RQXDeleteTable(second), 0);
  EXPECT_EQ(RQXDeleteRealRows(sales_.id(), 1, 1), 1);
  EXPECT_EQ(RQXDeleteTable(cities_.id()), 0);
}

TEST_F(JoinTest, SetsAndOtherFiltersOfParentsMayGo) {
  const int set = sales_.add_set({2, 5});
  const int join = add_join(sales_, {2}, cities_, {2}, 0, set);
  EXPECT_EQ(RQXDeleteSet(sales_.id(), set), 0);
  EXPECT_EQ(RQXDeleteRealFilter(cities_.id(), 3), 0);
  EXPECT_EQ(RQXDeleteRealFilter(sales_.id(), 3), 0);
  EXPECT_EQ(pairs(join), (Texts{"2 1", "2 4", "5 1", "5 4"}));
  char cell[4096];
  int type = 0;
  expect_failure(RQXGetData1(join, 7, 1, 1, &type, cell), QX_ERROR_NO_FILTER);
  expect_failure(RQXSortByField(join, 3, 1, 0), QX_ERROR_NO_FILTER);
  _TRFilterInfo infos[7];
  int count = 0;
  expect_failure(RQXGetAllFilterInfo(join, 7, &count, infos, nullptr), QX_ERROR_NO_FILTER);
  const int all[] = {-1};
  expect_failure(RQXExportAsCSV(join, 1, all, -1, -1, ".", "out.csv", '/'), QX_ERROR_NO_FILTER);
}

TEST_F(JoinTest, ItsSetsComeAndGoLikeOthers) {
  const int join = add_join(sales_, {2}, cities_, {2});
  const TestTable table = TestTable::existing(join);
  unsigned long sizes[3] = {};
  ASSERT_EQ(RQXGetTableMemorySize(join, &sizes[0]), 0);
  const int found = table.search("city", QX_OPE_EQ, std::string("A"));
  ASSERT_EQ(RQXSetSetName(join, found, "of A"), 0);
  const int sorted = table.sort("people", QX_SORT_ASC, found);
  EXPECT_STREQ(RQXGetSetNameR1(join, sorted), "of A");
  const int again = table.search("people", QX_OPE_GEQ, 0, {}, sorted);
  EXPECT_STREQ(RQXGetSetNameR1(join, again), "join");  // none of its own
  ASSERT_EQ(RQXGetTableMemorySize(join, &sizes[1]), 0);
  ASSERT_EQ(RQXGetSetMemorySize(join, sorted, &sizes[2]), 0);
  EXPECT_GT(sizes[1], sizes[0] + sizes[2]);
  EXPECT_EQ(RQXDeleteSet(join, again), 0);
  EXPECT_EQ(RQXGetCurrentSetID(join), 1);
  expect_failure(RQXDeleteSet(join, 1), QX_ERROR_ROOT_SET);
  expect_failure(RQXDeleteSet(join, again), QX_ERROR_NO_SET);
  expect_failure(RQXChangeCurrentSetID(join, again), QX_ERROR_NO_SET_ID);
  expect_failure(RQXGetSetSize(join, again), QX_ERROR_NO_SET_ID, "No Such Set: ");
  EXPECT_EQ(RQXPurgeSubsets(join), 0);
  EXPECT_EQ(RQXGetNSet(join), 1);
  EXPECT_EQ(table.sort("city"), again + 1);
  EXPECT_EQ(RQXClearDB(), 0);
  EXPECT_EQ(RQXGetNTable(), 0);
}

TEST_F(JoinTest, ExportsItsRows) {
  const int join = add_join(sales_, {2}, cities_, {2}, 1);
  const int filters[] = {5, 2, 7, -1};
  ASSERT_EQ(RQXExportAsCSV(join, 1, filters, 1, 5, ".", "out.csv", '/'), 0);
  EXPECT_EQ(read_file("out.csv"), "2,,20\n3,B,30\n1,A,10\n4,A,40\n,C,\n");
}

TEST_F(JoinTest, MoreRowsThanAnIntNumbersAreRefused) {
  constexpr int kRows = 50000;
  const TestTable large({{"one", ints(std::vector<int>(kRows, 1))}});
  const int before = RQXGetNTable();
  for (const int outer : {0, 1}) {
    expect_failure(add_join(large, {1}, large, {1}, outer), QX_ERROR_JOIN_SIZE,
                   "JoinTable size overflow");
  }
  EXPECT_EQ(RQXGetNTable(), before);
  EXPECT_EQ(RQXDeleteRealRows(large.id(), 1, 5000), 5000);  // nothing refers to it
  EXPECT_EQ(RQXGetTotalRows(add_join(large, {1}, large, {1})), 45000 * 45000);
}

/// Many driven rows out of order, many keys: what small tables do not reach.
TEST_F(JoinTest, LargeSidesPairBothWays) {
  constexpr int kRows = 200000;
  constexpr int kKeys = 70000;
  std::vector<int> many;
  std::vector<int> unique;
  for (int i = 0; i < kRows; ++i) many.push_back(static_cast<int>(i * 7919L % kKeys));
  for (int i = 0; i < kKeys - 100; ++i) unique.push_back((i * 31) % (kKeys - 100));
  const TestTable left({{"key", ints(many)}});
  const TestTable right({{"key", ints(unique)}});
  const auto expect_all = [&](int join, int wanted) {
    const int size = RQXGetTotalRows(join);
    ASSERT_EQ(size, wanted);
    std::vector<int> numbers[2];
    for (size_t side = 0; side < 2; ++side) {
      numbers[side].resize(static_cast<size_t>(size));
      ASSERT_EQ(RQXGetVNoList(join, static_cast<int>(side) + 1, 1, numbers[side].data()), size);
    }
    // The lists differ by the keys above all of the other's, so equal values have equal numbers.
    EXPECT_EQ(numbers[0], numbers[1]);
  };
  const int wanted = static_cast<int>(
      std::count_if(many.begin(), many.end(), [](int key) { return key < kKeys - 100; }));
  expect_all(add_join(left, {1}, right, {1}), wanted);
  expect_all(add_join(right, {1}, left, {1}), wanted);
}

// What cannot be done

struct RefusedCase {
  const char* name;
  std::function<int(const TestTable& sales, const TestTable& cities, int join)> call;
  int code;
};

class RefusedJoinTest : public JoinTest, public testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedJoinTest, ChangesNothing) {
  const int join = add_join(sales_, {2}, cities_, {2});
  const std::string before = database_text();
  drain_ring();
  EXPECT_EQ(hex(GetParam().call(sales_, cities_, join)), hex(GetParam().code));
  EXPECT_FALSE(ring().empty());
  EXPECT_EQ(database_text(), before);
}

int value = 0;
int type = 0;
char cell[8192];

#define QXE_CASE(name, code, ...)                                                             \
  RefusedCase {                                                                               \
#name, [](const TestTable& sales, const TestTable& cities, int join) {                      \
      (void)sales, (void)cities, (void)join;                                              \
      return __VA_ARGS__;                                                                 \
    },                                                                                    \
        code \
  }

INSTANTIATE_TEST_SUITE_P(
    Making, RefusedJoinTest,
    testing::Values(
        QXE_CASE(NoKeys, QX_ERROR_FILTER_INDEX, add_join(sales, {}, cities, {})),
        QXE_CASE(MoreMasterKeys, QX_ERROR_FILTER_INDEX, add_join(sales, {1, 2}, cities, {1})),
        QXE_CASE(OtherTypes, QX_ERROR_FILTER_INDEX, add_join(sales, {1}, cities, {2})),
        QXE_CASE(OtherTypesBehind, QX_ERROR_FILTER_INDEX, add_join(sales, {1, 1}, cities, {1, 2})),
        QXE_CASE(NoMasterKey, QX_ERROR_NO_MASTER_KEY, add_join(sales, {9}, cities, {2})),
        QXE_CASE(NoSlaveKey, QX_ERROR_NO_SLAVE_KEY, add_join(sales, {2}, cities, {9})),
        QXE_CASE(NoKeyOfSeveral, QX_ERROR_FILTER_INDEX, add_join(sales, {2, 1}, cities, {2, 9})),
        QXE_CASE(JoinAsMaster, QX_ERROR_NO_MASTER_TABLE,
                 add_join(TestTable::existing(join), {1}, cities, {1})),
        QXE_CASE(NoSlaveTable, QX_ERROR_NO_SLAVE_TABLE,
                 add_join(sales, {1}, TestTable::existing(99), {1})),
        QXE_CASE(NoMasterSet, QX_ERROR_NO_JOIN_SET, add_join(sales, {1}, cities, {1}, 0, 77)),
        QXE_CASE(LongName, QX_ERROR_GEN_TABLE_NAME,
                 [&] {
                   int keys[] = {1, 0};
                   std::string name(256, 'x');
                   return RQXAddJoinTable(name.data(), 0, sales.id(), -1, keys, cities.id(), -1,
                                          keys);
                 }())),
    case_name<RefusedCase>);

INSTANTIATE_TEST_SUITE_P(
    Using, RefusedJoinTest,
    testing::Values(
        QXE_CASE(RealTable, QX_ERROR_NOT_JOIN, RQXGetJoinDir(sales.id(), 1)),
        QXE_CASE(NoTable, QX_ERROR_NO_TABLE, RQXGetJoinDir(99, 1)),
        QXE_CASE(NoSetDirection, QX_ERROR_NO_SET_ID, RQXGetJoinDir(join, 9)),
        QXE_CASE(NoSlaveRows, QX_ERROR_NO_SET, RQXGetJoinSlaveSet(join, 9, &value, 0, nullptr)),
        QXE_CASE(NoIndex, QX_ERROR_NO_SET,
                 RQXGetJoinProjectionSets(join, 9, &value, 0, nullptr, &type, 0, nullptr)),
        QXE_CASE(KeySide, QX_ERROR_JOIN_SIDE,
                 RQXGetJoinKeyInfo(join, 2, reinterpret_cast<_TRFilterInfo*>(cell))),
        QXE_CASE(Filter, QX_ERROR_NO_JOIN_FILTER, RQXGetFilterType(join, 8)),
        QXE_CASE(FilterOfSearch, QX_ERROR_NO_JOIN_FILTER,
                 RQXSearchByFieldIntR1(join, 8, 1, QX_OPE_EQ, 1, 1)),
        QXE_CASE(SetOfSearch, QX_ERROR_NO_SET, RQXSearchByFieldIntR1(join, 1, 9, QX_OPE_EQ, 1, 1)),
        QXE_CASE(Operator, QX_ERROR_OPERATION, RQXSearchByFieldIntR1(join, 1, 1, 99, 1, 1)),
        QXE_CASE(FilterOfSort, QX_ERROR_NO_JOIN_FILTER, RQXSortByField(join, 0, 1, 0)),
        QXE_CASE(SetOfSort, QX_ERROR_NO_SET, RQXSortByField(join, 1, 9, 0)),
        QXE_CASE(SortByBothSides, QX_ERROR_JOIN_SIDE,
                 [&] {
                   int filters[] = {1, 5, 0};
                   int dirs[] = {0, 0, 0};
                   return RQXIntegratedSortByField(join, 1, filters, dirs);
                 }()),
        QXE_CASE(SetOfComplement, QX_ERROR_NO_SET, RQXSetNotReal(join, 9)),
        QXE_CASE(SetOperation, QX_ERROR_OPERATION, RQXSetOpeReal(join, 3, 1, 1)),
        QXE_CASE(Wildcard, QX_ERROR_NOT_REAL, RQXSearchByFieldWildCard(join, 2, 1, cell)),
        QXE_CASE(PositionBelow, QX_ERROR_NO_RECORD, RQXGetData1(join, 1, 1, 0, &type, cell)),
        QXE_CASE(PositionAbove, QX_ERROR_NO_RECORD, RQXGetData1(join, 0, 1, 7, &type, cell)),
        QXE_CASE(SetOfRead, QX_ERROR_NO_SET, RQXGetData1(join, 1, 9, 1, &type, cell)),
        QXE_CASE(FilterOfRead, QX_ERROR_NO_JOIN_FILTER, RQXGetData1(join, 8, 1, 1, &type, cell)),
        QXE_CASE(Edit, QX_ERROR_NOT_REAL, RQXDeleteRealRows(join, 1, 1)),
        QXE_CASE(BackSide, QX_ERROR_JOIN_SIDE, RQXPutJoinSetToParent(join, 2, 0, &value, &type)),
        QXE_CASE(MovedMasterFilter, QX_ERROR_JOIN_SIDE, RQXMoveSlaveFlt2Master(join, 1)),
        QXE_CASE(MovedNoFilter, QX_ERROR_NO_JOIN_FILTER, RQXMoveSlaveFlt2Master(join, 8))),
    case_name<RefusedCase>);

}  // namespace
}  // namespace qxe::test
