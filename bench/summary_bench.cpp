// Summaries in one call.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"

namespace qxe::bench {
namespace {

using Names = std::vector<std::string>;

/// The months of the sales' dates as a column of integers, while this lives.
class MonthColumn {
 public:
  MonthColumn() {
    const int dates = filter("sale_date");
    _TFilterInfo info{};
    require(QXGetFilter(sales(), dates, &info));
    std::vector<int> month_of(static_cast<size_t>(info.valueCount));
    for (int i = 1; i < info.valueCount; ++i) {
      int year = 0, month = 0;
      const char* const text = RQXDouble2DateStrR1(static_cast<const double*>(info.values)[i]);
      std::sscanf(text, "%d/%d", &year, &month);
      month_of[static_cast<size_t>(i)] = year * 100 + month;
    }
    std::vector<int> months;
    for (int row = 1; row <= rows(); ++row) {
      months.push_back(month_of[static_cast<size_t>(info.pv[row])]);
    }
    id_ = require(RQXAddRealFilter2(sales(), 100, "month", QX_DT_INTEGER, rows(), months.data(),
                                    nullptr, nullptr));
  }
  ~MonthColumn() { RQXDeleteRealFilter(sales(), id_); }
  MonthColumn(const MonthColumn&) = delete;
  MonthColumn& operator=(const MonthColumn&) = delete;

 private:
  int id_;
};

/// Every hundredth row.
int small_set() {
  std::vector<int> list;
  for (int row = 50; row <= rows(); row += 100) list.push_back(row);
  return require(RQXAddSetReal(sales(), static_cast<int>(list.size()), list.data()));
}

struct Summary {
  Names dimensions;
  std::string measure;
  int flags;
};

const Summary kByRegion{{"region"}, "amount", 31};
const Summary kByCityAndMonth{{"city", "month"}, "amount", QX_SUM_COUNT | QX_SUM_SUM};
const Summary kByProductAndStore{{"product_id", "store_id"}, "quantity", QX_SUM_SUM};

/// A figure of /proc/self/status in megabytes.
double status_mb(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::atof(line.c_str() + name.size()) / 1024;
  }
  return 0;
}

/// Runs `call` and tells by how much memory has grown meanwhile. Blocks that earlier work has left
/// free do not count, so the figure is right in a process that has not done any.
template <class Call>
double peak_growth_mb(const Call& call) {
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak begins anew
  const double before = status_mb("VmRSS:");
  call();
  return status_mb("VmHWM:") - before;
}

/// On the set of all rows, or with the benchmark's argument 1 on a hundredth of them.
void time_summary(benchmark::State& state, const Summary& summary) {
  std::vector<int> dims;
  for (const std::string& name : summary.dimensions) dims.push_back(filter(name.c_str()));
  int measure = filter(summary.measure.c_str());
  int flags = summary.flags;
  int digits = -1;
  const int set = state.range(0) == 0 ? root_set() : small_set();
  const auto run = [&] {
    return require(RQXNonCubeSum(sales(), set, static_cast<int>(dims.size()), dims.data(), 1,
                                 &measure, &flags, &digits));
  };
  state.counters["peak_MB"] = peak_growth_mb([&] { RQXDeleteTable(run()); });
  int groups = 0;
  for (auto _ : state) {
    const int table = run();
    state.PauseTiming();
    groups = RQXGetTotalRows(table);
    RQXDeleteTable(table);
    state.ResumeTiming();
  }
  state.counters["groups"] = groups;
  if (state.range(0) != 0) RQXDeleteSet(sales(), set);
}

void T12_amount_by_region(benchmark::State& state) {
  time_summary(state, kByRegion);
}
BENCHMARK(T12_amount_by_region)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(0)->Arg(1);

void T13_amount_by_city_and_month(benchmark::State& state) {
  const MonthColumn months;
  time_summary(state, kByCityAndMonth);
}
BENCHMARK(T13_amount_by_city_and_month)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Arg(0)
    ->Arg(1);

void T14_quantity_by_product_and_store(benchmark::State& state) {
  time_summary(state, kByProductAndStore);
}
BENCHMARK(T14_quantity_by_product_and_store)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Arg(0)
    ->Arg(1);

/// The value numbers of a column.
std::vector<int> codes(const std::string& name, int* values) {
  _TFilterInfo info{};
  require(QXGetFilter(sales(), filter(name.c_str()), &info));
  *values = info.valueCount;
  return {info.pv + 1, info.pv + 1 + rows()};
}

std::vector<double> values_of(const std::string& name) {
  _TFilterInfo info{};
  require(QXGetFilter(sales(), filter(name.c_str()), &info));
  std::vector<double> values(static_cast<size_t>(info.valueCount));
  for (size_t i = 1; i < values.size(); ++i) {
    values[i] = info.type == QX_DT_INTEGER ? static_cast<const int*>(info.values)[i]
                                           : static_cast<const double*>(info.values)[i];
  }
  return values;
}

void time_kernel(benchmark::State& state, const Summary& summary, bool extremes) {
  int cells = 1;
  std::vector<std::vector<int>> dimensions;
  std::vector<int> sizes;
  for (const std::string& name : summary.dimensions) {
    dimensions.push_back(codes(name, &sizes.emplace_back()));
    cells *= sizes.back();
  }
  int measure_values = 0;
  const std::vector<int> measure = codes(summary.measure, &measure_values);
  const std::vector<double> values = values_of(summary.measure);
  const int threads = static_cast<int>(state.range(0));
  CellSummer summer(cells, threads, extremes);
  for (auto _ : state) {
    state.counters["groups"] = summer.sum(dimensions, sizes.back(), measure, values);
  }
}

void kernel_T12_cells_of_region(benchmark::State& state) {
  time_kernel(state, kByRegion, true);
}
BENCHMARK(kernel_T12_cells_of_region)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void kernel_T13_cells_of_city_and_month(benchmark::State& state) {
  const MonthColumn months;
  time_kernel(state, kByCityAndMonth, false);
}
BENCHMARK(kernel_T13_cells_of_city_and_month)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Arg(1)
    ->Arg(2);

void kernel_T14_cells_of_product_and_store(benchmark::State& state) {
  time_kernel(state, kByProductAndStore, false);
}
BENCHMARK(kernel_T14_cells_of_product_and_store)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Arg(1)
    ->Arg(2);

}  // namespace
}  // namespace qxe::bench
