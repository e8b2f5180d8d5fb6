// Set algebra.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {
namespace {

int doubles_between(const char* column, double low, double high) {
  return require(
      RQXSearchByFieldDblR1(sales(), filter(column), root_set(), QX_OPE_BETWEEN, low, high));
}

/// The rows that T4, T5 and a search for one region find.
struct Found {
  int by_amount;
  int by_date;
  int in_north;
};

Found search_all() {
  char north[] = "North";
  const Found found{
      doubles_between("amount", 500, 720),
      doubles_between("sale_date", RQXStr2DateR1("2021/01/01"), RQXStr2DateR1("2021/03/31")),
      require(RQXSearchByField(sales(), filter("region"), root_set(), QX_OPE_EQ, north, north))};
  return found;
}

/// Keeps the rows of the first two that are not in the third; returns how many.
int combine(const Found& found) {
  const int table = sales();
  const int both = require(RQXSetOpeReal(table, QX_SET_AND, found.by_amount, found.by_date));
  const int kept = require(RQXSetOpeReal(table, QX_SET_ANDNOT, both, found.in_north));
  const int rows = RQXGetSetSize(table, kept);
  RQXDeleteSet(table, kept);
  RQXDeleteSet(table, both);
  return rows;
}

void drop(const Found& found) {
  for (const int set : {found.by_amount, found.by_date, found.in_north}) {
    RQXDeleteSet(sales(), set);
  }
}

void T8_three_searches_and_sets(benchmark::State& state) {
  sales();
  int kept = 0;
  for (auto _ : state) {
    const Found found = search_all();
    kept = combine(found);
    drop(found);
  }
  state.counters["hits"] = kept;
}
BENCHMARK(T8_three_searches_and_sets)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T8s_and_and_not(benchmark::State& state) {
  const Found found = search_all();
  int kept = 0;
  for (auto _ : state) kept = combine(found);
  state.counters["hits"] = kept;
  drop(found);
}
BENCHMARK(T8s_and_and_not)->Unit(benchmark::kMicrosecond)->UseRealTime();

std::vector<int> rows_of(int set) {
  int count = RQXGetSetSize(sales(), set);
  std::vector<int> list(static_cast<size_t>(count));
  RQXGetSet(sales(), set, &count, count, list.data());
  return list;
}

/// The same on one thread: a byte for each row, a pass over each list.
void kernel_T8s_marks(benchmark::State& state) {
  const Found found = search_all();
  const std::vector<int> a = rows_of(found.by_amount), b = rows_of(found.by_date),
                         c = rows_of(found.in_north);
  drop(found);
  std::vector<int> both(b.size() + 1), kept(b.size() + 1);
  for (auto _ : state) {
    const int count = rows_in(b.data(), static_cast<int>(b.size()), a, true, rows(), both.data());
    benchmark::DoNotOptimize(rows_in(both.data(), count, c, false, rows(), kept.data()));
  }
}
BENCHMARK(kernel_T8s_marks)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
}  // namespace qxe::bench
