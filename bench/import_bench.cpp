// Import, and the memory that it leaves in use.
#include <benchmark/benchmark.h>

#include <fstream>
#include <string>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {
namespace {

void T1_import_sales(benchmark::State& state) {
  directory();
  for (auto _ : state) {
    state.PauseTiming();
    RQXClearDB();
    state.ResumeTiming();
    import_table("sales");
  }
}
BENCHMARK(T1_import_sales)->Unit(benchmark::kMillisecond)->UseRealTime();

void T1b_import_products_customers(benchmark::State& state) {
  directory();
  for (auto _ : state) {
    state.PauseTiming();
    RQXClearDB();
    state.ResumeTiming();
    import_table("products");
    import_table("customers");
  }
}
BENCHMARK(T1b_import_products_customers)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Runs a kernel over a file's text on as many threads as the benchmark's argument says.
void time_cells(benchmark::State& state, const char* file) {
  const FileText text(directory() + "/" + file);
  const int threads = static_cast<int>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(hash_cells(text, threads));
}

void kernel_T1_hash_cells(benchmark::State& state) {
  time_cells(state, "sales.csv");
}
BENCHMARK(kernel_T1_hash_cells)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void kernel_T1b_hash_cells(benchmark::State& state) {
  time_cells(state, "customers.csv");
}
BENCHMARK(kernel_T1b_hash_cells)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

double resident_megabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::atof(line.c_str() + 6) / 1024;
  }
  return 0;
}

void T23_memory(benchmark::State& state) {
  RQXClearDB();
  sales();
  unsigned long size = 0;
  for (auto _ : state) RQXGetTotalMemorySize(&size);
  state.counters["engine_MB"] = static_cast<double>(size) / 1e6;
  state.counters["resident_MB"] = resident_megabytes();
}
BENCHMARK(T23_memory)->Unit(benchmark::kMicrosecond)->Iterations(1);

}  // namespace
}  // namespace qxe::bench
