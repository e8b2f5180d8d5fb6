// Summaries of joins against summaries of the same join as a real table.
#include <gtest/gtest.h>
#include <math.h>

#include <algorithm>

#include "frame/base/memory.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/run_seeds.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Ids = std::vector<int>;

struct Request {
  Ids dimensions;
  Ids measures;
  Ids flags;
  Ids digits;
};

int sum(int table, int set, Request request) {
  request.digits.resize(request.measures.size(), -1);
  return RQXNonCubeSum(table, set, static_cast<int>(request.dimensions.size()),
                       request.dimensions.data(), static_cast<int>(request.measures.size()),
                       request.measures.data(), request.flags.data(), request.digits.data());
}

/// Sums depend on their order: those of doubles in their last digits, those of decimals in whether
/// they have left 38 digits on the way, which makes them NULL.
void expect_alike(const Column& got, const Column& wanted, const std::string& name) {
  ASSERT_EQ(got.type, wanted.type) << name;
  ASSERT_EQ(got.scale, wanted.scale) << name;
  ASSERT_EQ(got.cells.size(), wanted.cells.size()) << name;
  const bool is_sum = name.starts_with("SUM") || name.starts_with("AV");
  for (size_t i = 0; i < got.cells.size(); ++i) {
    if (is_sum && got.type == QX_DT_DECIMAL && is_null(got.cells[i]) != is_null(wanted.cells[i])) {
      continue;
    }
    const auto* const a = std::get_if<double>(&got.cells[i]);
    const auto* const b = std::get_if<double>(&wanted.cells[i]);
    if (is_sum && a != nullptr && b != nullptr) {
      if (fabs(*b) > 1e290) continue;
      EXPECT_NEAR(*a, *b, fabs(*b) * 1e-9 + 1e-6) << name << " " << i;
    } else if (!is_sum || got.type != QX_DT_DOUBLE) {
      EXPECT_EQ(got.cells[i], wanted.cells[i])
          << name << " " << i << ": " << to_text(got.cells[i], got.type) << " instead of "
          << to_text(wanted.cells[i], got.type);
    }
  }
}

/// Compares two output tables column by column; drops them.
void expect_same_tables(int got, int wanted) {
  ASSERT_GT(got, 0) << hex(got) << to_text(drain_ring());
  ASSERT_GT(wanted, 0) << hex(wanted);
  ASSERT_EQ(RQXGetNFilter(got), RQXGetNFilter(wanted));
  const TestTable a = TestTable::existing(got);
  const TestTable b = TestTable::existing(wanted);
  for (int filter = 1; filter <= RQXGetNFilter(got); ++filter) {
    char names[2][256];
    RQXGetFilterName(got, filter, names[0]);
    RQXGetFilterName(wanted, filter, names[1]);
    ASSERT_STREQ(names[0], names[1]);
    expect_alike(a.column(names[0]), b.column(names[1]), names[0]);
  }
  RQXDeleteTable(got);
  RQXDeleteTable(wanted);
}

/// How many rows of either side a key may have.
enum class Partners { kOneSlave, kOneMaster, kMany };

/// A random join and a set of it.
class JoinCase {
 public:
  explicit JoinCase(unsigned seed) : random_(seed) {
    const auto partners = static_cast<Partners>(random_.below(3));
    const int tables[] = {add_side("m", 60, partners == Partners::kOneMaster),
                          add_side("s", 40, partners == Partners::kOneSlave)};
    int sets[2];
    int keys[2][2];
    for (size_t side = 0; side < 2; ++side) {
      const TestTable table = TestTable::existing(tables[side]);
      sets[side] = random_.chance(50) ? table.set_id(TestTable::kAllRows)
                                      : table.add_set(random_.set_of(table.total_rows()));
      keys[side][0] = table.filter("key");
      keys[side][1] = 0;
    }
    char name[] = "join";
    join_ = require(RQXAddJoinTable(name, random_.chance(40), tables[0], sets[0], keys[0],
                                    tables[1], sets[1], keys[1]),
                    "RQXAddJoinTable");
    set_ = make_set();
  }

  void equals_a_summary_of_the_realized_join();
  void cells_equal_those_of_the_realized_join();

 private:
  /// A table with a key of few values, or of one row each; a column of each type, most of few
  /// values, so that groups have several rows.
  int add_side(const std::string& name, int rows, bool unique) {
    Columns columns = random_.table(rows);
    for (NamedColumn& named : columns) {
      const int kinds = 1 + random_.below(6);
      for (size_t row = static_cast<size_t>(kinds); row < named.column.cells.size(); ++row) {
        named.column.cells[row] = named.column.cells[static_cast<size_t>(random_.below(kinds))];
      }
    }
    Ids key = random_.set_of(rows);
    for (int i = 1; static_cast<int>(key.size()) < rows; ++i) key.push_back(rows + i);
    if (!unique) {
      for (int& value : key) value = random_.chance(10) ? kNullInt : random_.below(12);
    }
    columns.push_back({"key", ints(key)});
    return TestTable(columns, name).id();
  }

  int any_filter() { return 1 + random_.below(16); }

  /// The first set, or one that a search or a sort makes of it.
  int make_set() {
    int set = 1;
    if (random_.chance(40)) set = require(RQXSortByField(join_, any_filter(), set, 0), "sort");
    if (random_.chance(40)) {
      set = require(RQXSearchByRowNo(join_, any_filter(), set, QX_OPE_GEQ, 1 + random_.below(9), 0),
                    "search");
    }
    return set;
  }

  int type_of(int filter) const {
    _TRFilterInfo info{};
    require(RQXGetFilterInfo(join_, filter, &info), "RQXGetFilterInfo");
    return info.type;
  }

  /// The master's dimensions come first, as they do in the order of the groups.
  Request random_request() {
    Request request;
    for (int i = random_.below(4); i > 0; --i) request.dimensions.push_back(any_filter());
    std::stable_sort(request.dimensions.begin(), request.dimensions.end(),
                     [](int a, int b) { return (a - 1) / 8 < (b - 1) / 8; });
    for (int i = random_.below(4); i > 0; --i) {
      request.measures.push_back(any_filter());
      const int all = type_of(request.measures.back()) == QX_DT_STRING ? 7 : 31;
      request.flags.push_back(random_.chance(50) ? all : 1 + random_.below(all));
    }
    return request;
  }

  RandomData random_;
  int join_ = 0;
  int set_ = 0;
};

void JoinCase::equals_a_summary_of_the_realized_join() {
  Ids all;
  for (int filter = 1; filter <= 16; ++filter) all.push_back(filter);
  all.push_back(0);
  char copy[] = "join";
  const int real = require(RQXConvertJoinToReal(copy, join_, set_, 0, 0, all.data(), 0), "convert");
  for (int round = 0; round < 10 && !testing::Test::HasFailure(); ++round) {
    const Request request = random_request();
    expect_same_tables(sum(join_, set_, request), sum(real, -1, request));
  }
  EXPECT_EQ(RQXGetNTable(), 4);
  // Value lists have what groups have, and NULL.
  const TestTable groups = TestTable::existing(sum(join_, set_, {{1}, {}, {}, {}}));
  _TRFilterInfo info{};
  RQXGetFilterInfo(groups.id(), 1, &info);
  EXPECT_LE(info.valueCount, groups.total_rows() + 1);
}

/// A summary by handle as a table of the cells with rows.
int cells_as_table(int table, int set, const Request& request, int mask) {
  constexpr int kHandle = 3;
  std::vector<_TRDimensionDef> dimensions(request.dimensions.size());
  for (size_t i = 0; i < dimensions.size(); ++i) {
    dimensions[i].FilterID = request.dimensions[i];
  }
  const int measure = request.measures.empty() ? 0 : request.measures[0];
  require(RQXSummaryOpen(kHandle, table, set, static_cast<int>(dimensions.size()),
                         dimensions.data(), measure),
          "RQXSummaryOpen");
  int done = 0;
  require(RQXSummaryExec(kHandle, mask, &done), "RQXSummaryExec");
  const int id = RQXSummaryIntoRealTable2(kHandle, mask, 1);
  RQXSummaryClose(kHandle);
  return id;
}

void JoinCase::cells_equal_those_of_the_realized_join() {
  Ids all;
  for (int filter = 1; filter <= 16; ++filter) all.push_back(filter);
  all.push_back(0);
  char copy[] = "join";
  const int real = require(RQXConvertJoinToReal(copy, join_, set_, 0, 0, all.data(), 0), "convert");
  for (int round = 0; round < 5 && !testing::Test::HasFailure(); ++round) {
    const Request request = random_request();
    const int mask = request.flags.empty() ? QX_SUM_COUNT : request.flags[0] | QX_SUM_COUNT;
    expect_same_tables(cells_as_table(join_, set_, request, mask),
                       cells_as_table(real, -1, request, mask));
  }
}

class JoinSumTest : public EngineTest {};

TEST_F(JoinSumTest, EqualsASummaryOfTheRealizedJoin) {
  run_cases("JOIN", 60, &JoinCase::equals_a_summary_of_the_realized_join);
}

TEST_F(JoinSumTest, CellsEqualThoseOfTheRealizedJoin) {
  run_cases("JOIN", 60, &JoinCase::cells_equal_those_of_the_realized_join);
}

/// Joins two tables by their columns "k".
int join_of(const TestTable& master, const TestTable& slave, bool outer = false) {
  char name[] = "join";
  int keys[2][2] = {{master.filter("k"), 0}, {slave.filter("k"), 0}};
  return require(RQXAddJoinTable(name, outer, master.id(), -1, keys[0], slave.id(), -1, keys[1]),
                 "join");
}

// Filters 1 and 2 are the master's, 3 and 4 the slave's.
TEST_F(JoinSumTest, DigitsMakeSumsExact) {
  const TestTable master(
      {{"k", ints(std::vector<int>(10, 1))}, {"v", doubles(std::vector<double>(10, 0.1))}}, "m");
  const TestTable slave({{"k", ints({1, 1, 1})}, {"w", doubles({-0.25, 1e15, 0.124})}}, "s");
  const int join = join_of(master, slave);
  struct Case {
    int measure;
    int digits;
    double sum;
    double average;
  };
  // Of 30 pairs.
  for (const Case& c : {Case{2, 2, 3.0, 0.1}, Case{4, 2, 1e16 - 1.3, (1e16 - 1.3) / 30},
                        Case{4, 0, 1e16, 1e16 / 30}, Case{2, 0, 0, 0}, Case{3, 1, 30, 1}}) {
    const int id = sum(join, -1, {{1}, {c.measure}, {QX_SUM_SUM | QX_SUM_AVG}, {c.digits}});
    ASSERT_GT(id, 0) << hex(id);
    int type = 0;
    double value = 0;
    ASSERT_GE(RQXGetData1(id, 2, -1, 1, &type, &value), 0);
    EXPECT_EQ(value, c.sum) << "digits " << c.digits;
    ASSERT_GE(RQXGetData1(id, 3, -1, 1, &type, &value), 0);
    EXPECT_DOUBLE_EQ(value, c.average);
  }
}

TEST_F(JoinSumTest, ColumnsStandInTheOrderAskedFor) {
  const TestTable master({{"k", ints({1, 2, 2})}, {"a", strings({"x", "y", "x"})}}, "m");
  const TestTable slave({{"k", ints({2, 2, 3})}, {"a", strings({"q", "p", "r"})}}, "s");
  const int join = join_of(master, slave, true);
  const TestTable plain = TestTable::existing(sum(join, -1, {{4, 2}, {}, {}, {}}));
  using Texts = std::vector<std::string>;
  // Rows are in the order of the master's dimension first.
  EXPECT_EQ(plain.texts("a_#1"), (Texts{"r", "", "p", "q", "p", "q"}));
  EXPECT_EQ(plain.texts("a"), (Texts{"", "x", "x", "x", "y", "y"}));
  EXPECT_EQ(plain.texts("N"), (Texts{"1", "1", "1", "1", "1", "1"}));
  EXPECT_EQ(RQXGetNFilter(plain.id()), 3);
  const TestTable total = TestTable::existing(sum(join, -1, {{}, {3}, {31}, {}}));
  EXPECT_EQ(total.texts("N<k_#1>"), Texts{"6"});
  EXPECT_EQ(total.texts("MIN<k_#1>"), Texts{"NULL"});
  EXPECT_EQ(total.texts("SUM<k_#1>"), Texts{"11"});
  char name[256];
  RQXGetTableName(total.id(), name);
  EXPECT_STREQ(name, "XTBL_join_#1");
}

TEST_F(JoinSumTest, RefusesWhatIsNotThere) {
  const TestTable master({{"k", ints({1})}, {"a", strings({"x"})}}, "m");
  const int join = join_of(master, master);
  const int tables = RQXGetNTable();
  expect_failure(sum(join, 99, {{1}, {}, {}, {}}), QX_ERROR_NO_SET, "Failed to create NonCubeSum");
  for (const int id : {0, -1, 5}) {
    expect_failure(sum(join, -1, {{id}, {}, {}, {}}), QX_ERROR_NO_FILTER);
    expect_failure(sum(join, -1, {{}, {id}, {1}, {}}), QX_ERROR_NO_FILTER);
  }
  for (const int flags : {0, 32, -1}) {
    expect_failure(sum(join, -1, {{}, {1}, {flags}, {}}), QX_ERROR_PARAMETER,
                   "Invalid Parameter : flags(");
  }
  expect_failure(sum(join, -1, {{}, {2}, {QX_SUM_SUM}, {}}), QX_ERROR_PARAMETER);
  expect_failure(sum(join, -1, {{}, {1}, {1}, {11}}), QX_ERROR_SUMMARY_PARAMETER,
                 "Invalid Parameter : digits(11)");
  expect_failure(sum(join, -1, {Ids(33, 1), {}, {}, {}}), QX_ERROR_SUMMARY_PARAMETER);
  EXPECT_EQ(RQXGetNTable(), tables);
}

// A caller's categories of both sides, read by their coordinates.
TEST_F(JoinSumTest, CategoriesOfTheCallersOwn) {
  const TestTable master({{"k", ints({1, 2, 2, 9})}, {"a", ints({10, 20, 30, 40})}}, "m");
  const TestTable slave({{"k", ints({2, 2, 3, 1})}, {"b", doubles({1.5, 2, 4, kNullDouble})}}, "s");
  const int join = join_of(master, slave);
  int categories[] = {0, 1, 1, 0, 1};  // NULL, 10, 20, 30, 40
  char* names[] = {const_cast<char*>("even"), const_cast<char*>("odd")};
  _TDimensionDef dimension{2, 2, categories, names, nullptr};
  ASSERT_EQ(QXSummaryOpen(0, join, -1, 1, &dimension, 4), 0);
  int done = 0;
  ASSERT_EQ(RQXSummaryExec(0, 15, &done), 0);
  EXPECT_EQ(done, 15);
  for (int category = 0; category < 2;
       ++category) {  // 30 with 1.5 and 2, 20 the same, 10 with NULL
    int type = 0, rows = 0;
    double sum = 0;
    ASSERT_EQ(RQXSummaryRead(0, QX_SUM_SUM, &category, &type, &type, &rows, &sum), 0);
    EXPECT_EQ(rows, 2);
    EXPECT_EQ(sum, 3.5);
    EXPECT_STREQ(RQXCategoryReadR1(0, 0, category), names[category]);
  }
  RQXDeleteTable(join);  // which closes the summary
  int category = 0, type = 0, rows = 0;
  double sum = 0;
  expect_failure(RQXSummaryRead(0, QX_SUM_SUM, &category, &type, &type, &rows, &sum),
                 QX_ERROR_NO_SUMMARY);
}

// Runs of 20,000 groups on both sides of one key would be 400,000,000 pairs; of 50,000 too many.
TEST_F(JoinSumTest, TooManyPairsAreRefused) {
  constexpr int kRows = 45'000;
  std::vector<int> numbers;
  for (int i = 0; i < kRows; ++i) numbers.push_back(i);
  const TestTable table({{"k", ints(std::vector<int>(kRows, 7))}, {"a", ints(numbers)}}, "t");
  const int join = join_of(table, table);
  expect_failure(sum(join, -1, {{2, 4}, {}, {}, {}}), QX_ERROR_JOIN_SUM_ROWS);
  const TestTable one_side = TestTable::existing(sum(join, -1, {{2}, {4}, {QX_SUM_MAX}, {}}));
  EXPECT_EQ(one_side.total_rows(), kRows);
  EXPECT_EQ(one_side.text("MAX<a_#1>", 1), std::to_string(kRows - 1));
}

TEST_F(JoinSumTest, EachFailedAllocationEndsTheCallWithoutATable) {
  RandomData random(5);
  Columns columns = random.table(60);
  columns.push_back({"k", ints({})});
  for (int row = 0; row < 60; ++row) columns.back().column.cells.emplace_back(row % 9);
  const TestTable table(columns, "t");
  const int join = join_of(table, table);
  const int tables = RQXGetNTable();
  const Request request{{1, 12}, {2, 7, 8}, {31, 31, 31}, {2, -1, -1}};
  int failures = 0;
  for (int id = 0; id <= 0; ++failures) {
    fail_allocation_after(failures, false);
    id = sum(join, -1, request);
    fail_allocation_after(-1, false);
    if (id > 0) break;
    ASSERT_EQ(hex(id), hex(QX_ERROR_OUT_OF_MEMORY)) << "allocation " << failures;
    ASSERT_EQ(RQXGetNTable(), tables);
  }
  EXPECT_GT(failures, 10);
}

}  // namespace
}  // namespace qxe::test
