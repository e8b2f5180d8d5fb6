// Sorts.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {
namespace {

/// Times one sort, whose result becomes the current set.
template <class Sort>
void time_sort(benchmark::State& state, Sort&& sort) {
  const int table = sales();
  for (auto _ : state) {
    const int set = require(sort());
    state.PauseTiming();
    RQXDeleteSet(table, set);
    state.ResumeTiming();
  }
}

void T9_sort_by_amount(benchmark::State& state) {
  const int table = sales(), id = filter("amount"), set = root_set();
  time_sort(state, [&] { return RQXSortByField(table, id, set, QX_SORT_ASC); });
}
BENCHMARK(T9_sort_by_amount)->Unit(benchmark::kMillisecond)->UseRealTime();

void T10_sort_by_region_city_amount(benchmark::State& state) {
  const int table = sales(), set = root_set();
  int keys[] = {filter("amount"), filter("city"), filter("region"), 0};
  int directions[] = {QX_SORT_DESC, QX_SORT_ASC, QX_SORT_ASC};
  time_sort(state, [&] { return RQXIntegratedSortByField(table, set, keys, directions); });
}
BENCHMARK(T10_sort_by_region_city_amount)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Sorts rows by random keys of `bits` bits, on as many threads as the benchmark's argument says.
void time_kernel(benchmark::State& state, int bits) {
  const std::vector<uint64_t> keys = random_keys(rows(), bits);
  std::vector<int> out(keys.size());
  const int threads = static_cast<int>(state.range(0));
  KeySorter sorter(rows());
  for (auto _ : state) sorter.sort(keys, bits, threads, out.data());
}

void kernel_T9_sort_18_bits(benchmark::State& state) {
  time_kernel(state, 18);
}
BENCHMARK(kernel_T9_sort_18_bits)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void kernel_T3x_sort_20_bits(benchmark::State& state) {
  time_kernel(state, 20);
}
BENCHMARK(kernel_T3x_sort_20_bits)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void kernel_T10_sort_33_bits(benchmark::State& state) {
  time_kernel(state, 33);
}
BENCHMARK(kernel_T10_sort_33_bits)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

}  // namespace
}  // namespace qxe::bench
