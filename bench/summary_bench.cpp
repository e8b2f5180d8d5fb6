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

/// A summary in one call, its filters looked up.
class SummaryCall {
 public:
  explicit SummaryCall(const Summary& summary)
      : measure_(filter(summary.measure.c_str())), flags_(summary.flags) {
    for (const std::string& name : summary.dimensions) dims_.push_back(filter(name.c_str()));
  }

  int run(int set) {
    return require(RQXNonCubeSum(sales(), set, static_cast<int>(dims_.size()), dims_.data(), 1,
                                 &measure_, &flags_, &digits_));
  }

 private:
  std::vector<int> dims_;
  int measure_;
  int flags_;
  int digits_ = -1;
};

/// On the set of all rows, or with the benchmark's argument 1 on a hundredth of them.
void time_summary(benchmark::State& state, const Summary& summary) {
  const int set = state.range(0) == 0 ? root_set() : small_set();
  SummaryCall call(summary);
  int groups = 0;
  for (auto _ : state) {
    const int table = call.run(set);
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

/// A figure of /proc/self/status in megabytes.
double status_mb(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::atof(line.c_str() + name.size()) / 1024;
  }
  return 0;
}

/// How much memory a summary of a loaded database takes at most, the table it makes included. Has
/// to be run alone: blocks that earlier work has left free would hide it.
void peak_of(benchmark::State& state, const Summary& summary) {
  constexpr double kNoise = 64;  // of the process beside the engine's count, megabytes
  RQXLoadDB(output_directory().c_str(), ("bench" + std::to_string(rows())).c_str());
  SummaryCall call(summary);
  unsigned long size = 0;
  RQXGetTotalMemorySize(&size);
  const double before = status_mb("VmRSS:");
  if (before > static_cast<double>(size >> 20) + kNoise) {
    state.SkipWithError("run T20_load_database once, then this alone");
    return;
  }
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak begins anew
  for (auto _ : state) call.run(root_set());
  state.counters["peak_MB"] = status_mb("VmHWM:") - before;
  state.counters["kept_MB"] = -static_cast<double>(size >> 20);
  RQXGetTotalMemorySize(&size);
  state.counters["kept_MB"] += static_cast<double>(size >> 20);
}
BENCHMARK_CAPTURE(peak_of, way0_region, kByRegion)->Iterations(1);
BENCHMARK_CAPTURE(peak_of, way1_city_date, Summary{{"city", "sale_date"}, "amount", 31})
    ->Iterations(1);
BENCHMARK_CAPTURE(peak_of, way2_product_store, kByProductAndStore)->Iterations(1);
BENCHMARK_CAPTURE(peak_of, way4_customer_product,
                  Summary{{"customer_id", "product_id"}, "quantity", QX_SUM_SUM})
    ->Iterations(1);

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
