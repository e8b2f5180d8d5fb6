// Summaries in one call against loops over plain vectors, on every way they can take.
#include <gtest/gtest.h>
#include <math.h>
#include <unistd.h>

#include <map>
#include <set>

#include "frame/base/memory.h"
#include "parallel/smpengine.h"
#include "summary/sum_method.h"
#include "support/engine_test.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace {

long g_free_pages = -1;  // that the system reports; below 0: the truth

}  // namespace

// The linker sends each call of sysconf here; __real_sysconf is the system's.
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {
long __real_sysconf(int name);
long __wrap_sysconf(int name);
long __wrap_sysconf(int name) {
  return name == _SC_AVPHYS_PAGES && g_free_pages >= 0 ? g_free_pages : __real_sysconf(name);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace qxe::test {
namespace {

using Names = std::vector<std::string>;
using Rows = std::vector<int>;

struct Request {
  Names dimensions;
  Names measures;
  std::vector<int> flags;
  int set = TestTable::kAllRows;
};

int non_cube_sum(const TestTable& table, Request request) {
  std::vector<int> dims, msrs;
  for (const std::string& name : request.dimensions) dims.push_back(table.filter(name));
  for (const std::string& name : request.measures) msrs.push_back(table.filter(name));
  std::vector<int> digits(msrs.size(), -1);
  return RQXNonCubeSum(table.id(), table.set_id(request.set), static_cast<int>(dims.size()),
                       dims.data(), static_cast<int>(msrs.size()), msrs.data(),
                       request.flags.data(), digits.data());
}

int value_count(int table, int filter) {
  _TRFilterInfo info{};
  require(RQXGetFilterInfo(table, filter, &info), "RQXGetFilterInfo");
  return info.valueCount;
}

/// The way that a request takes, told by the engine's own choice.
SumMethod method_of(const TestTable& table, const Request& request) {
  SumWork work;
  for (const std::string& name : request.dimensions) {
    work.add_dimension(value_count(table.id(), table.filter(name)));
  }
  for (const int flags : request.flags) work.flags |= flags;
  work.rows = static_cast<int>(table.rows(request.set).size());
  work.measures = static_cast<int>(request.measures.size());
  work.workers = ENG->run_threads();
  work.l2_size = ENG->l2_size();
  work.available_memory = g_free_pages < 0 ? 1UL << 40 : 0;
  return GetSuitableSumMethod(work);
}

/// What a column of the output is to hold. Sums of doubles are right within `tolerance`; a cell
/// below 0 there is not compared.
struct Wanted {
  std::string name;
  Column column;
  std::vector<double> tolerance;
};

class NaiveSum {
 public:
  NaiveSum(const NaiveModel& model, const Request& request, const Rows& rows, SumMethod method)
      : model_(model), method_(method) {
    for (const int row : rows) {
      std::vector<Cell> key;
      for (const std::string& name : request.dimensions) key.push_back(model.cell(name, row));
      groups_[key].push_back(row);
    }
    for (size_t d = 0; d < request.dimensions.size(); ++d) add_dimension(request.dimensions[d], d);
    for (size_t m = 0; m < request.measures.size(); ++m) {
      add_measure(request.measures[m], request.flags[m]);
    }
    if (request.measures.empty() || method == SumMethod::kNonCube) add_counts("N");
  }

  const std::vector<Wanted>& columns() const { return columns_; }
  int groups() const { return static_cast<int>(groups_.size()); }

 private:
  Wanted& add(const std::string& base, int type, int scale = 0) {
    std::string name = base;
    for (int i = 1; names_.count(name) != 0; ++i) name = base + "_#" + std::to_string(i);
    names_.insert(name);
    columns_.push_back({name, {type, {}, scale}, {}});
    return columns_.back();
  }

  void add_dimension(const std::string& name, size_t d) {
    Wanted& wanted = add(name, model_.column(name).type, model_.column(name).scale);
    for (const auto& [key, rows] : groups_) wanted.column.cells.push_back(key[d]);
  }

  void add_counts(const std::string& name) {
    Wanted& wanted = add(name, QX_DT_INTEGER);
    for (const auto& [key, rows] : groups_) {
      wanted.column.cells.push_back(static_cast<int>(rows.size()));
    }
  }

  void add_measure(const std::string& name, int flags) {
    const Column& measure = model_.column(name);
    const std::string suffix = "<" + name + ">";
    if ((flags & QX_SUM_COUNT) != 0) add_counts("N" + suffix);
    if ((flags & QX_SUM_MAX) != 0) add_extremes("MAX" + suffix, name, true);
    if ((flags & QX_SUM_MIN) != 0) add_extremes("MIN" + suffix, name, false);
    if (measure.type == QX_DT_STRING) return;
    if ((flags & QX_SUM_SUM) != 0) add_sums("SUM" + suffix, name, false);
    if ((flags & QX_SUM_AVG) != 0) add_sums("AVG" + suffix, name, true);
  }

  void add_extremes(const std::string& column, const std::string& name, bool highest) {
    const Column& measure = model_.column(name);
    const Cell null = normal_form({}, measure.type);
    Wanted& wanted = add(column, measure.type, measure.scale);
    for (const auto& [key, rows] : groups_) {
      std::set<Cell> values;
      for (const int row : rows) values.insert(model_.cell(name, row));
      if (!highest && method_ == SumMethod::kCube) values.erase(null);
      wanted.column.cells.push_back(values.empty() ? null
                                    : highest      ? *values.rbegin()
                                                   : *values.begin());
    }
  }

  void add_sums(const std::string& column, const std::string& name, bool average) {
    const Column& measure = model_.column(name);
    const bool decimal = measure.type == QX_DT_DECIMAL;
    Wanted& wanted = add(column, decimal ? QX_DT_DECIMAL : QX_DT_DOUBLE, measure.scale);
    for (const auto& [key, rows] : groups_) {
      const auto count = static_cast<int>(rows.size());
      if (decimal) {
        add_decimal_sum(wanted, name, rows, average ? count : 1);
      } else {
        add_double_sum(wanted, name, rows, average ? count : 1);
      }
    }
  }

  void add_double_sum(Wanted& wanted, const std::string& name, const Rows& rows, int divisor) {
    double sum = 0, size = 0;
    for (const int row : rows) {
      const Cell& cell = model_.cell(name, row);
      if (is_null(cell)) continue;
      const double value = cell.index() == 1 ? std::get<int>(cell) : std::get<double>(cell);
      sum += value;
      size += fabs(value);
    }
    wanted.column.cells.push_back(sum / divisor);
    wanted.tolerance.push_back(size > 1e300 ? -1 : size * 1e-13);
  }

  void add_decimal_sum(Wanted& wanted, const std::string& name, const Rows& rows, int divisor) {
    const double limit = 9e37;
    int128 sum = 0;
    double size = 0;
    for (const int row : rows) {
      const Cell& cell = model_.cell(name, row);
      if (is_null(cell)) continue;
      const int128 units = std::get<Decimal>(cell).units;
      size += fabs(static_cast<double>(units));
      if (size < limit) sum += units;
    }
    const int128 whole = sum / divisor;
    const int128 rest = (sum < 0 ? -(sum % divisor) : sum % divisor) * 2;
    const bool away = rest > divisor || (rest == divisor && whole % 2 != 0);
    wanted.column.cells.push_back(
        Decimal{wanted.column.scale, whole + (away ? (sum < 0 ? -1 : 1) : 0)});
    wanted.tolerance.push_back(size < limit ? 0 : -1);
  }

  const NaiveModel& model_;
  SumMethod method_;
  std::map<std::vector<Cell>, Rows> groups_;
  std::set<std::string> names_;
  std::vector<Wanted> columns_;
};

class NonCubeSumTest : public EngineTest {
 protected:
  ~NonCubeSumTest() override { g_free_pages = -1; }

  static void expect_cells(const Column& got, const Wanted& wanted) {
    ASSERT_EQ(got.type, wanted.column.type) << wanted.name;
    ASSERT_EQ(got.scale, wanted.column.scale) << wanted.name;
    ASSERT_EQ(got.cells.size(), wanted.column.cells.size()) << wanted.name;
    for (size_t i = 0; i < got.cells.size(); ++i) {
      const double tolerance = wanted.tolerance.empty() ? 0 : wanted.tolerance[i];
      if (tolerance < 0) continue;
      if (tolerance > 0 && got.cells[i].index() == 2) {
        ASSERT_NEAR(std::get<double>(got.cells[i]), std::get<double>(wanted.column.cells[i]),
                    tolerance)
            << wanted.name << ", group " << i;
      } else {
        ASSERT_EQ(got.cells[i], wanted.column.cells[i])
            << wanted.name << ", group " << i << ": " << to_text(got.cells[i], got.type)
            << " instead of " << to_text(wanted.column.cells[i], got.type);
      }
    }
  }

  /// Of the dimensions; those of a sort by columns are extracted ones.
  static void expect_value_lists(const TestTable& table, const TestTable& output,
                                 const Request& request, const NaiveSum& wanted, SumMethod method) {
    for (size_t d = 0; d < request.dimensions.size(); ++d) {
      const Column& column = wanted.columns()[d].column;
      std::set<Cell> used(column.cells.begin(), column.cells.end());
      used.insert(normal_form({}, column.type));
      const int whole = value_count(table.id(), table.filter(request.dimensions[d]));
      EXPECT_EQ(value_count(output.id(), static_cast<int>(d) + 1),
                method == SumMethod::kNonCube ? static_cast<int>(used.size()) : whole);
    }
  }

  /// Runs a request, compares its table with the naive one and drops it.
  static void expect_summary(const TestTable& table, const NaiveModel& model,
                             const Request& request) {
    const SumMethod method = method_of(table, request);
    SCOPED_TRACE(testing::Message() << "method " << static_cast<int>(method));
    const int id = non_cube_sum(table, request);
    ASSERT_GT(id, 0) << to_text(drain_ring());
    const NaiveSum wanted(model, request, table.rows(request.set), method);
    const TestTable output = TestTable::existing(id);
    ASSERT_EQ(RQXGetNFilter(id), static_cast<int>(wanted.columns().size()));
    ASSERT_EQ(output.total_rows(), wanted.groups());
    for (size_t i = 0; i < wanted.columns().size(); ++i) {
      const Wanted& column = wanted.columns()[i];
      char name[256];
      RQXGetFilterName(id, static_cast<int>(i) + 1, name);
      ASSERT_EQ(name, column.name);
      expect_cells(output.column(name), column);
    }
    expect_value_lists(table, output, request, wanted, method);
    RQXDeleteTable(id);
  }

  /// Up to 3 dimensions and 3 measures, sometimes 32, sometimes one filter several times.
  static Request random_request(RandomData& random, const Columns& columns) {
    const auto name = [&] { return columns[static_cast<size_t>(random.below(7))].name; };
    Request request;
    for (int i = random.chance(5) ? QX_MAX_DIM : random.below(4); i > 0; --i) {
      request.dimensions.push_back(name());
    }
    for (int i = random.chance(5) ? QX_MAX_MSR : random.below(4); i > 0; --i) {
      request.measures.push_back(name());
      const int all = request.measures.back() == "string" ? 7 : 31;
      request.flags.push_back(random.chance(30) ? all : 1 + random.below(all));
    }
    return request;
  }

  /// A new value in one row, which waits to be merged into its value list.
  static void overwrite_row(RandomData& random, const TestTable& table, Columns& columns) {
    const size_t rows = columns[0].column.cells.size();
    if (rows == 0) return;
    NamedColumn& named = columns[static_cast<size_t>(random.below(7))];
    const Column other = random.column(named.column.type, 1);
    if (other.scale != named.column.scale) return;
    const int row = 1 + random.below(static_cast<int>(rows));
    RawValues value(other);
    ASSERT_GE(RQXOverwriteRealEx(table.id(), table.filter(named.name), table.set_id(0), row, 1,
                                 value.data()),
              0);
    named.column.cells[static_cast<size_t>(row) - 1] = other.cells[0];
  }
};

class RandomNonCubeSumTest : public NonCubeSumTest, public testing::WithParamInterface<int> {};

TEST_P(RandomNonCubeSumTest, EqualsTheNaiveModel) {
  RandomData random(static_cast<unsigned>(GetParam()));
  Columns columns = random.table(random.chance(10) ? 0 : 1 + random.below(400));
  const TestTable table(columns, "t");
  for (int round = 0; round < 12; ++round) {
    overwrite_row(random, table, columns);
    Request request = random_request(random, columns);
    if (random.chance(70)) {
      const Rows rows = random.set_of(static_cast<int>(columns[0].column.cells.size()));
      request.set = table.add_set(rows);
    }
    g_free_pages = random.chance(20) ? 0 : -1;
    expect_summary(table, NaiveModel(columns), request);
    ASSERT_FALSE(HasFailure()) << "seed " << GetParam() << ", round " << round << "\n"
                               << to_text(columns);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomNonCubeSumTest, testing::Range(1, 41));

// Cubes of more cells than fit a cache, with enough rows for them, and many buckets.
TEST_F(NonCubeSumTest, SumsUpLargeCubes) {
  RandomData random(3);
  constexpr int kRows = 20000;
  std::vector<int> a, b, c;
  std::vector<double> v;
  for (int i = 0; i < kRows; ++i) {
    a.push_back(random.below(300));
    b.push_back(random.chance(5) ? kNullInt : random.below(random.chance(50) ? 3 : 300));
    c.push_back(random.below(40));
    v.push_back(random.chance(10) ? kNullDouble : random.below(1000) / 8.0);
  }
  const Columns columns{{"a", ints(a)}, {"b", ints(b)}, {"c", ints(c)}, {"v", doubles(v)}};
  const TestTable table(columns, "t");
  const NaiveModel model(columns);
  for (const long free_pages : {-1, 0}) {
    g_free_pages = free_pages;
    expect_summary(table, model, {{"a", "b"}, {"v", "c"}, {31, 31}});
    expect_summary(table, model, {{"b", "a", "c"}, {"v", "c"}, {31, 31}});
    expect_summary(table, model, {{"c", "b"}, {"v"}, {QX_SUM_MIN}});
    expect_summary(table, model, {{"c", "a"}, {}, {}});
  }
}

/// 33 bits, so that the rows are sorted by the dimensions themselves.
class WideTest : public NonCubeSumTest {
 protected:
  WideTest() {
    for (int i = 0; i < 2000; ++i) serial_.push_back(i);
  }

  std::vector<int> serial_;
};

TEST_F(WideTest, FlagsAndDigitsAreChecked) {
  std::vector<std::string> texts;
  for (const int i : serial_) texts.push_back(std::to_string(i % 7));
  const TestTable table({{"a", ints(serial_)}, {"s", strings(texts)}}, "t");
  const auto sum = [&](int dimensions, int measure, int flags, int digits) {
    int dims[] = {1, 1, 1};
    return RQXNonCubeSum(table.id(), -1, dimensions, dims, 1, &measure, &flags, &digits);
  };
  const int tables = RQXGetNTable();
  for (const int flags : {0, 32, -1}) {
    expect_failure(sum(3, 1, flags, -1), QX_ERROR_PARAMETER, "Invalid Parameter : flags(");
    expect_failure(sum(3, 1, flags, -1), QX_ERROR_PARAMETER, "Failed to create NonCubeSum");
  }
  expect_failure(sum(3, 2, 8, -1), QX_ERROR_PARAMETER);
  expect_failure(sum(3, 1, 8, 11), QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : digits(11)");
  EXPECT_EQ(RQXGetNTable(), tables);
  for (const auto& [flags, digits, measure] :
       {std::array{31, 10, 1}, std::array{7, 11, 2}, std::array{31, -5, 1}}) {
    EXPECT_GT(sum(3, measure, flags, digits), 0);
  }
  // Smaller work leaves out what a measure has not.
  for (const int flags : {0, 32, 24}) EXPECT_GT(sum(1, 2, flags, 11), 0);
}

TEST_F(WideTest, AttributeBlocksOfDimensionsTravelAndTheSourceIsLeftAlone) {
  const TestTable table({{"a", ints(serial_)}}, "t");
  char block[64] = "";
  block[30] = 'x';
  ASSERT_EQ(RQXSetFilterAttr(table.id(), 1, block, true), 0);
  const int set = table.add_set({5, 1});
  const int narrow = non_cube_sum(table, {{"a"}, {"a"}, {QX_SUM_MAX}, set});
  const int wide = non_cube_sum(table, {{"a", "a", "a"}, {"a"}, {QX_SUM_MAX}, set});
  for (const int output : {narrow, wide}) {
    char copy[64] = "";
    ASSERT_EQ(RQXGetFilterAttr(output, 1, copy, true), 0);
    EXPECT_EQ(copy[30], 'x');
    const int maximum = TestTable::existing(output).filter("MAX<a>");
    ASSERT_EQ(RQXGetFilterAttr(output, maximum, copy, true), 0);
    EXPECT_EQ(copy[30], 0);
  }
  EXPECT_EQ(RQXGetNSet(table.id()), 2);
  EXPECT_EQ(RQXGetCurrentSetID(table.id()), set);
  EXPECT_EQ(TestTable::existing(wide).texts("a_#2"), (Names{"0", "4"}));
}

// A value list of 32768 needs a bit more, the 31st. The counts that only way 4 adds tell it.
TEST_F(NonCubeSumTest, ThirtyBitsNumberCombinations) {
  for (const int values : {32766, 32767}) {
    std::vector<int> a, b;
    for (int i = 0; i < values; ++i) {
      a.push_back(i);
      b.push_back(i % 16383);
    }
    const TestTable table({{"a", ints(a)}, {"b", ints(b)}});
    const int output = non_cube_sum(table, {{"a", "b"}, {"a"}, {QX_SUM_SUM}});
    const bool wide = values == 32767;
    EXPECT_EQ(RQXGetNFilter(output), wide ? 4 : 3);
    const TestTable sums = TestTable::existing(output);
    ASSERT_EQ(sums.total_rows(), values);
    EXPECT_EQ(sums.column("SUM<a>").cells[static_cast<size_t>(values) - 1], Cell(values - 1.0));
    RQXClearDB();
  }
}

// What fails half-way leaves nothing behind.
TEST_F(NonCubeSumTest, EachFailedAllocationEndsTheCallWithoutATable) {
  RandomData random(11);
  Columns columns = random.table(150);
  for (int row = 1; row <= 150; ++row) columns[0].column.cells[row - 1U] = row % 40;
  const TestTable table(columns, "t");
  const NaiveModel model(columns);
  const Request requests[] = {{{"string"}, {"int", "decimal"}, {31, 31}},
                              {{"int", "string"}, {"double", "decimal"}, {31, 31}},
                              {{"int", "int", "int", "int", "int", "int"}, {"int"}, {31}}};
  for (const Request& request : requests) {
    int failures = 0;
    for (int id = 0; id <= 0; ++failures) {
      fail_allocation_after(failures, false);
      id = non_cube_sum(table, request);
      fail_allocation_after(-1, false);
      if (id > 0) break;
      ASSERT_EQ(hex(id), hex(QX_ERROR_OUT_OF_MEMORY)) << "allocation " << failures;
      ASSERT_EQ(RQXGetNTable(), 1);
    }
    EXPECT_GT(failures, 10);
    RQXDeleteTable(RQXGetTableIDFromName("XTBL_t"));
    expect_summary(table, model, request);
  }
}

TEST_F(NonCubeSumTest, NamesRepeatWhatTheirSourcesEndIn) {
  const TestTable table({{"a_#1", ints({1})}, {"a", ints({2})}}, "t_#3");
  // The import of names cuts them; only a rename within a table makes a number.
  EXPECT_GT(non_cube_sum(table, {{"a", "a"}, {"a", "a"}, {31, 1}}), 0);
  const int again = non_cube_sum(table, {{}, {}, {}});
  char name[256];
  ASSERT_EQ(RQXGetTableName(again, name), 0);
  EXPECT_STREQ(name, "XTBL_t_#1");
}

TEST_F(NonCubeSumTest, RefusesWhatIsNotThere) {
  const TestTable table({{"a", ints({1, 2})}}, "t");
  const int t = table.id();
  int ids[QX_MAX_DIM + 1], flags[QX_MAX_MSR + 1], digits[QX_MAX_MSR + 1];
  std::fill_n(ids, QX_MAX_DIM + 1, 1);
  std::fill_n(flags, QX_MAX_MSR + 1, 1);
  std::fill_n(digits, QX_MAX_MSR + 1, -1);
  const auto sum = [&](int id, int set, int dims, int msrs) {
    return RQXNonCubeSum(id, set, dims, ids, msrs, ids, flags, digits);
  };
  expect_failure(sum(99, -1, 1, 1), QX_ERROR_NO_TABLE, "No Such Table: 99");
  for (const int count : {-1, 33}) {
    const std::string text = "(" + std::to_string(count) + ")";
    expect_failure(sum(t, -1, count, 1), QX_ERROR_SUMMARY_PARAMETER,
                   "Invalid Parameter : nDim" + text);
    expect_failure(sum(t, -1, 1, count), QX_ERROR_SUMMARY_PARAMETER,
                   "Invalid Parameter : nMsr" + text);
  }
  expect_failure(sum(t, 99, 1, 1), QX_ERROR_NO_SET, "No Such Set: 99");
  for (const int id : {0, -1, 99}) {
    ids[0] = id;
    expect_failure(sum(t, -1, 1, 0), QX_ERROR_NO_FILTER, "No Such Filter: " + std::to_string(id));
    expect_failure(sum(t, -1, 0, 1), QX_ERROR_NO_FILTER, "Failed to create NonCubeSum");
  }
  EXPECT_EQ(RQXGetNTable(), 1);
  // A name that has no room for what comes around it: the table begun is gone.
  const TestTable long_names({{std::string(253, 'x'), ints({1})}}, "u");
  ids[0] = 1;
  expect_failure(sum(long_names.id(), -1, 1, 1), QX_ERROR_FILTER_NAME);
  EXPECT_EQ(RQXGetNTable(), 2);
  EXPECT_GT(sum(long_names.id(), -1, 1, 0), 0);
}

}  // namespace
}  // namespace qxe::test
