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

int join(int master, int slave, const char* key) {
  char name[] = "join";
  int master_keys[] = {require(RQXGetFilterIDFromName(master, key)), 0};
  int slave_keys[] = {require(RQXGetFilterIDFromName(slave, key)), 0};
  return require(RQXAddJoinTable(name, 0, master, -1, master_keys, slave, -1, slave_keys));
}

/// Joins and drops the join again, as a query would.
void time_join(benchmark::State& state, int master, int slave, const char* key) {
  int pairs = 0;
  for (auto _ : state) {
    const int id = join(master, slave, key);
    pairs = RQXGetSetSize(id, 1);
    RQXDeleteTable(id);
  }
  state.counters["pairs"] = pairs;
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
