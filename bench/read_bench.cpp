// Export and reading of single cells.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {
namespace {

void T18_export_csv(benchmark::State& state) {
  const int table = sales(), set = root_set();
  const int columns[] = {filter("sale_id"),
                         filter("sale_date"),
                         filter("customer_id"),
                         filter("amount"),
                         filter("region"),
                         filter("comment"),
                         -1};
  for (auto _ : state) {
    require(RQXExportAsCSV(table, set, columns, 1, 1000000, output_directory().c_str(),
                           "qxe-bench-export.csv", '/'));
  }
  const std::string path = output_directory() + "/qxe-bench-export.csv";
  state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path));
  std::filesystem::remove(path);
}
BENCHMARK(T18_export_csv)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Copies the bytes of that file in lines and writes them again.
void kernel_T18_copy_lines(benchmark::State& state) {
  const std::string path = output_directory() + "/qxe-bench-kernel.csv";
  const std::vector<std::string> lines = random_lines(1000000);
  for (auto _ : state) copy_lines(lines, path);
  std::filesystem::remove(path);
}
BENCHMARK(kernel_T18_copy_lines)->Unit(benchmark::kMillisecond)->UseRealTime();

void T21_read_cells(benchmark::State& state) {
  const int table = sales(), set = root_set();
  const int columns[] = {filter("amount"), filter("customer_id"), filter("city")};
  char value[4096];
  int type = 0;
  unsigned position = 0;
  int column = 0;
  for (auto _ : state) {
    position = position * 1664525u + 1013904223u;
    column = column == 2 ? 0 : column + 1;
    benchmark::DoNotOptimize(
        RQXGetData1(table, columns[column], set,
                    static_cast<int>(position % static_cast<unsigned>(rows())) + 1, &type, value));
  }
}
BENCHMARK(T21_read_cells)->Unit(benchmark::kNanosecond);

void kernel_T21_cells(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), 200000);
  const std::vector<double> values(200000, 1.0);
  for (auto _ : state) benchmark::DoNotOptimize(sum_of_cells(codes, values, 1000));
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(kernel_T21_cells)->Unit(benchmark::kMicrosecond);

/// The same when each cell's place depends on the value before, as it does where an operation ends
/// before the next begins.
void kernel_T21_cells_in_turn(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), 200000);
  const std::vector<double> values(200000, 1.0);
  for (auto _ : state) benchmark::DoNotOptimize(sum_of_cells_in_turn(codes, values, 1000));
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(kernel_T21_cells_in_turn)->Unit(benchmark::kMicrosecond);

/// A client's copy of a column.
struct ClientColumn {
  std::vector<int> numbers;
  std::vector<char> values;
  std::vector<char> pool;

  void fetch(const char* name) {
    _TRFilterInfo info;
    require(RQXGetFilterInfo(sales(), filter(name), &info));
    numbers.resize(static_cast<size_t>(rows()) + 1);
    values.resize(static_cast<size_t>(info.valueCount) * static_cast<size_t>(info.unitSize));
    pool.resize(static_cast<size_t>(info.poolSize));
    _TRFilterBody body{rows() + 1,    numbers.data(), info.valueCount,
                       values.data(), info.poolSize,  pool.data()};
    require(RQXGetFilterBody(sales(), filter(name), &body));
  }
  template <class Value>
  Value value(unsigned row) const {
    Value result;
    std::memcpy(&result, values.data() + static_cast<size_t>(numbers[row + 1]) * sizeof result,
                sizeof result);
    return result;
  }
};

void T21c_fetch_columns_and_read(benchmark::State& state) {
  ClientColumn amount, customer, city;
  sales();
  for (auto _ : state) {
    amount.fetch("amount");
    customer.fetch("customer_id");
    city.fetch("city");
    double sum = 0;
    unsigned position = 0;
    for (int i = 0; i < 1000000; i += 3) {
      const auto next_row = [&] {
        position = position * 1664525u + 1013904223u;
        return position % static_cast<unsigned>(rows());
      };
      sum += amount.value<double>(next_row());
      sum += customer.value<int>(next_row());
      sum += static_cast<double>(std::strlen(city.pool.data() + city.value<long>(next_row())));
    }
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(T21c_fetch_columns_and_read)->Unit(benchmark::kMillisecond)->UseRealTime();

void kernel_T21c_copy_codes(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), 200000);
  const std::vector<double> values(200000, 1.0);
  std::vector<int> copy(codes.size() * 3);
  for (auto _ : state) {
    for (size_t column = 0; column < 3; ++column) {
      std::memcpy(&copy[column * codes.size()], codes.data(), codes.size() * sizeof(int));
    }
    benchmark::DoNotOptimize(copy.data());
    benchmark::DoNotOptimize(sum_of_cells(codes, values, 1000000));
  }
}
BENCHMARK(kernel_T21c_copy_codes)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace qxe::bench
