// Editing rows and deriving tables. Each works on a copy of the sales table.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"

namespace qxe::bench {
namespace {

constexpr int kColumns = 12;

int copy_of_sales() {
  return require(RQXDuplicateRealTable("copy", sales()));
}

/// About every tenth row of the table, in ascending order.
std::vector<int> tenth_of_rows() {
  std::mt19937 random(7);
  std::vector<int> chosen;
  for (int row = 1; row <= rows(); ++row) {
    if (random() % 10 == 0) chosen.push_back(row);
  }
  return chosen;
}

int add_set(int table, std::vector<int>& chosen) {
  return require(RQXAddSetReal(table, static_cast<int>(chosen.size()), chosen.data()));
}

unsigned next_random(unsigned& position) {
  position = position * 1664525u + 1013904223u;
  return position >> 4;
}

/// One cell a time, a million in all; merges of pending values are among them. The values are
/// `value(random number)`.
template <class Overwrite>
void overwrite_cells(benchmark::State& state, Overwrite&& overwrite) {
  const int table = copy_of_sales();
  unsigned position = 0;
  for (auto _ : state) {
    const auto row = static_cast<int>(next_random(position) % static_cast<unsigned>(rows())) + 1;
    overwrite(table, row, next_random(position));
  }
  RQXDeleteTable(table);
}

void overwrite_with_known_amounts(benchmark::State& state) {
  const int id = filter("amount");
  overwrite_cells(state, [&](int table, int row, unsigned number) {
    RQXOverwriteRealExDblR1(table, id, 1, row, static_cast<double>(number % 100000) / 100);
  });
}
BENCHMARK(overwrite_with_known_amounts)->Unit(benchmark::kNanosecond)->Iterations(1000000);

void overwrite_with_new_customers(benchmark::State& state) {
  const int id = filter("customer_id");
  overwrite_cells(state, [&](int table, int row, unsigned number) {
    RQXOverwriteRealExIntR1(table, id, 1, row, 2000000 + static_cast<int>(number % 10000000));
  });
}
BENCHMARK(overwrite_with_new_customers)->Unit(benchmark::kNanosecond)->Iterations(1000000);

void kernel_bisection(benchmark::State& state) {
  std::vector<double> values;
  for (int i = 0; i < 200000; ++i) values.push_back(i / 100.0);
  std::vector<int> codes(static_cast<size_t>(rows()));
  unsigned position = 0;
  for (auto _ : state) {
    const size_t row = next_random(position) % codes.size();
    const double value = static_cast<double>(next_random(position) % 100000) / 100;
    codes[row] =
        static_cast<int>(std::lower_bound(values.begin(), values.end(), value) - values.begin());
  }
}
BENCHMARK(kernel_bisection)->Unit(benchmark::kNanosecond)->Iterations(1000000);

void delete_tenth(benchmark::State& state) {
  std::vector<int> chosen = tenth_of_rows();
  for (auto _ : state) {
    state.PauseTiming();
    const int table = copy_of_sales();
    const int set = add_set(table, chosen);
    state.ResumeTiming();
    require(RQXDeleteRealRowsEx(table, set, 1, static_cast<int>(chosen.size())));
    state.PauseTiming();
    RQXDeleteTable(table);
    state.ResumeTiming();
  }
}
BENCHMARK(delete_tenth)->Unit(benchmark::kMillisecond)->UseRealTime();

void kernel_close_up_codes(benchmark::State& state) {
  const std::vector<char> kept = kept_flags(rows());
  std::vector<std::vector<int>> columns(kColumns, random_codes(rows(), 2000));
  for (auto _ : state) close_up(columns, kept, static_cast<int>(state.range(0)));
}
BENCHMARK(kernel_close_up_codes)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void extract_tenth(benchmark::State& state) {
  std::vector<int> chosen = tenth_of_rows();
  const int set = add_set(sales(), chosen);
  for (auto _ : state) {
    const int table = require(RQXExtractRealTable("part", sales(), set, nullptr));
    state.PauseTiming();
    RQXDeleteTable(table);
    state.ResumeTiming();
  }
  RQXDeleteSet(sales(), set);
}
BENCHMARK(extract_tenth)->Unit(benchmark::kMillisecond)->UseRealTime();

void kernel_gather_tenth(benchmark::State& state) {
  const std::vector<int> chosen = tenth_of_rows();
  const std::vector<std::vector<int>> columns(kColumns, random_codes(rows(), 2000));
  std::vector<std::vector<int>> out(kColumns, std::vector<int>(chosen.size()));
  for (auto _ : state) gather(columns, chosen, out, static_cast<int>(state.range(0)));
}
BENCHMARK(kernel_gather_tenth)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void duplicate_table(benchmark::State& state) {
  for (auto _ : state) {
    const int table = copy_of_sales();
    state.PauseTiming();
    RQXDeleteTable(table);
    state.ResumeTiming();
  }
  unsigned long size = 0;
  RQXGetTotalMemorySize(&size);
  state.SetBytesProcessed(state.iterations() * static_cast<long>(size));
}
BENCHMARK(duplicate_table)->Unit(benchmark::kMillisecond)->UseRealTime();

void kernel_copy_bytes(benchmark::State& state) {
  sales();
  unsigned long size = 0;
  RQXGetTotalMemorySize(&size);
  const std::vector<char> from(size, 1);
  for (auto _ : state) copy_to_fresh_memory(from, static_cast<int>(state.range(0)));
  state.SetBytesProcessed(state.iterations() * static_cast<long>(size));
}
BENCHMARK(kernel_copy_bytes)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void condense_table(benchmark::State& state) {
  std::vector<int> chosen = tenth_of_rows();
  for (auto _ : state) {
    state.PauseTiming();
    const int table = copy_of_sales();
    const int set = add_set(table, chosen);
    require(RQXDeleteRealRowsEx(table, set, 1, static_cast<int>(chosen.size())));
    state.ResumeTiming();
    require(RQXCondenseRealTable(table));
    state.PauseTiming();
    RQXDeleteTable(table);
    state.ResumeTiming();
  }
}
BENCHMARK(condense_table)->Unit(benchmark::kMillisecond)->UseRealTime();

void kernel_renumber_codes(benchmark::State& state) {
  std::vector<std::vector<int>> columns(kColumns, random_codes(rows(), 200000));
  for (auto _ : state) renumber(columns, 200000, static_cast<int>(state.range(0)));
}
BENCHMARK(kernel_renumber_codes)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

/// As many new doubles become a column: about what a calculated column costs.
void T17c_add_doubles(benchmark::State& state) {
  std::mt19937_64 random(7);
  std::vector<double> values(static_cast<size_t>(rows()));
  for (double& value : values) value = static_cast<double>(random() % 2000000000) / 100;
  const int table = sales();
  for (auto _ : state) {
    const int id = require(
        RQXAddRealFilter2(table, 0, "made", QX_DT_DOUBLE, rows(), values.data(), nullptr, nullptr));
    state.PauseTiming();
    RQXDeleteRealFilter(table, id);
    state.ResumeTiming();
  }
}
BENCHMARK(T17c_add_doubles)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace qxe::bench
