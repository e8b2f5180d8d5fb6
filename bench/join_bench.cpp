// Join tables.
#include <benchmark/benchmark.h>

#include <numeric>
#include <vector>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {
namespace {

int table(const char* name) {
  const int id = RQXGetTableIDFromName(name);
  return id > 0 ? id : import_table(name);
}

int join(int master, int slave, const char* key, int outer = 0) {
  char name[] = "join";
  int master_keys[] = {require(RQXGetFilterIDFromName(master, key)), 0};
  int slave_keys[] = {require(RQXGetFilterIDFromName(slave, key)), 0};
  return require(RQXAddJoinTable(name, outer, master, -1, master_keys, slave, -1, slave_keys));
}

/// Bytes that the engine's tables hold.
unsigned long memory_held() {
  unsigned long bytes = 0;
  require(RQXGetTotalMemorySize(&bytes));
  return bytes;
}

/// Joins and drops the join again, as a query would. Counts the pairs and the megabytes by which
/// the engine's memory has grown.
void time_join(benchmark::State& state, int master, int slave, const char* key, int outer = 0) {
  int pairs = 0;
  for (auto _ : state) {
    const int id = join(master, slave, key, outer);
    pairs = RQXGetSetSize(id, 1);
    RQXDeleteTable(id);
  }
  const unsigned long before = memory_held();
  const int id = join(master, slave, key, outer);
  state.counters["pairs"] = pairs;
  state.counters["MB"] = static_cast<double>(memory_held() - before) / 1e6;
  RQXDeleteTable(id);
}

void T16_join_customers(benchmark::State& state) {
  time_join(state, sales(), table("customers"), "customer_id");
}
BENCHMARK(T16_join_customers)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// The large table is the one that is sorted by key.
void T16_join_from_customers(benchmark::State& state) {
  time_join(state, table("customers"), sales(), "customer_id");
}
BENCHMARK(T16_join_from_customers)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T16_outer_join_customers(benchmark::State& state) {
  time_join(state, sales(), table("customers"), "customer_id", 1);
}
BENCHMARK(T16_outer_join_customers)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T16_outer_join_from_customers(benchmark::State& state) {
  time_join(state, table("customers"), sales(), "customer_id", 1);
}
BENCHMARK(T16_outer_join_from_customers)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T15_join_products(benchmark::State& state) {
  time_join(state, sales(), table("products"), "product_id");
}
BENCHMARK(T15_join_products)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// The join and a summary over it: category of the slave, amount of the master.
void T15_amount_by_category(benchmark::State& state) {
  int groups = 0;
  for (auto _ : state) {
    const int id = join(sales(), table("products"), "product_id");
    int category = require(RQXGetFilterIDFromName(id, "category"));
    int amount = require(RQXGetFilterIDFromName(id, "amount"));
    int flags = QX_SUM_SUM;
    int digits = -1;
    const int sums = require(RQXNonCubeSum(id, -1, 1, &category, 1, &amount, &flags, &digits));
    groups = RQXGetTotalRows(sums);
    RQXDeleteTable(sums);
    RQXDeleteTable(id);
  }
  state.counters["groups"] = groups;
}
BENCHMARK(T15_amount_by_category)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// A search on the joined columns and the new join set.
void T16_search_joined(benchmark::State& state) {
  const int id = join(sales(), table("customers"), "customer_id");
  const int segment = require(RQXGetFilterIDFromName(id, "segment"));
  char first[128];
  int type = 0;
  require(RQXGetData1(id, segment, 1, 1, &type, first));
  int pairs = 0;
  for (auto _ : state) {
    const int found = require(RQXSearchByField(id, segment, 1, QX_OPE_EQ, first, first));
    pairs = RQXGetSetSize(id, found);
    RQXDeleteSet(id, found);
  }
  state.counters["pairs"] = pairs;
  RQXDeleteTable(id);
}
BENCHMARK(T16_search_joined)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// All pairs of all products and themselves by brand: far more join rows than rows on either side.
void T16_join_many_pairs(benchmark::State& state) {
  const int products = table("products");
  time_join(state, products, products, "category");
}
BENCHMARK(T16_join_many_pairs)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// The join, and the sum of sale_id over its pairs. A sale has one customer or none, and its row
/// number is its id: the driving rows are the sales of the pairs.
void T16m_sum_of_sales(benchmark::State& state) {
  const int master = sales();
  const int slave = table("customers");
  long sum = 0;
  for (auto _ : state) {
    const int id = join(master, slave, "customer_id");
    int* driving = nullptr;
    const int count = require(QXGetSet(id, 1, &driving));
    sum = std::accumulate(driving, driving + count, 0L);
    RQXDeleteTable(id);
  }
  state.counters["sum"] = static_cast<double>(sum);
}
BENCHMARK(T16m_sum_of_sales)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// A join that exists, written out: `columns` of the join, or the row numbers of both sides.
void realize(benchmark::State& state, const std::vector<const char*>& columns) {
  const int id = join(sales(), table("customers"), "customer_id");
  std::vector<int> filters;
  for (const char* const column : columns) {
    filters.push_back(require(RQXGetFilterIDFromName(id, column)));
  }
  filters.push_back(0);
  const int with_rows = columns.empty() ? 1 : 0;
  char name[] = "pairs";
  for (auto _ : state) {
    RQXDeleteTable(
        require(RQXConvertJoinToReal(name, id, 1, with_rows, with_rows, filters.data(), 0)));
  }
  RQXDeleteTable(id);
}

void T16m_realize_rows(benchmark::State& state) {
  realize(state, {});
}
BENCHMARK(T16m_realize_rows)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T16m_realize_columns(benchmark::State& state) {
  realize(state, {"store_id", "amount", "segment", "home_city"});
}
BENCHMARK(T16m_realize_columns)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// Two code columns of either side through two lists of row numbers.
void kernel_T16m_realize(benchmark::State& state) {
  const auto count = static_cast<size_t>(rows());
  const Columns left_columns(2, random_codes(rows(), kCities));
  const Columns right_columns(2, random_codes(kCustomers, kCities));
  std::vector<int> left(count);
  std::iota(left.begin(), left.end(), 1);
  std::vector<int> right = random_codes(rows(), kCustomers);
  for (int& row : right) ++row;
  Columns out(4, std::vector<int>(count));
  for (auto _ : state) {
    gather_pairs(left_columns, left, right_columns, right, 2, out);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(kernel_T16m_realize)->Unit(benchmark::kMicrosecond)->UseRealTime();

void kernel_T16m_pairs(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), kCustomers);
  std::vector<int> row_of(kCustomers), left(codes.size()), right(codes.size());
  std::iota(row_of.begin(), row_of.end(), 1);
  for (auto _ : state) {
    pair_rows(codes, row_of, 2, left.data(), right.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(kernel_T16m_pairs)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
}  // namespace qxe::bench
