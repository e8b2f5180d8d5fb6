// Import, search, sort, read and export over the sales table, through the public interface.
//
// QXE_BENCH_ROWS sets the number of rows (1,000,000 if unset); the files are made once below
// QXE_BENCH_DIR (/tmp/qxe-bench if unset).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "kernels.h"
#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {
namespace {

int rows() {
  static const int count = [] {
    const char* const text = std::getenv("QXE_BENCH_ROWS");
    return text == nullptr ? 1000000 : std::atoi(text);
  }();
  return count;
}

const std::string& directory() {
  static const std::string path = [] {
    const char* const base = std::getenv("QXE_BENCH_DIR");
    std::string made = base == nullptr ? "/tmp/qxe-bench" : base;
    made.append("/").append(std::to_string(rows()));
    std::filesystem::create_directories(made);
    write_sales(made, rows());
    write_products(made);
    write_customers(made);
    return made;
  }();
  return path;
}

/// A status of 0 or above, or an exception with the oldest entry of the ring.
int require(int status) {
  if (status >= 0) return status;
  int time = 0, code = 0;
  char name[63] = "", message[127] = "";
  RQXGetErrorLog(&time, name, &code, message);
  throw std::runtime_error(std::string(name) + ": " + message);
}

int import_table(const char* name) {
  const std::string& place = directory();
  return require(RQXAddCatalogFileEx2(place.c_str(), (std::string(name) + ".cat").c_str(),
                                      place.c_str(), (std::string(name) + ".csv").c_str(), name));
}

/// The sales table, imported by whoever needs it first.
int sales() {
  const int id = RQXGetTableIDFromName("sales");
  return id > 0 ? id : import_table("sales");
}

int filter(const char* name) {
  return require(RQXGetFilterIDFromName(sales(), name));
}

int root_set() {
  int id = 0;
  RQXGetSetList(sales(), 1, &id);
  return id;
}

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

/// Times one search and says how many rows it finds.
template <class Search>
void time_search(benchmark::State& state, Search&& search) {
  const int table = sales();
  int found = 0;
  for (auto _ : state) {
    const int set = require(search());
    found = RQXGetSetSize(table, set);
    RQXDeleteSet(table, set);
  }
  state.counters["hits"] = found;
}

void search_text(benchmark::State& state, const char* column, int ope, const char* value) {
  const int table = sales(), id = filter(column), set = root_set();
  std::string text = value;
  time_search(state,
              [&] { return RQXSearchByField(table, id, set, ope, text.data(), text.data()); });
}

void search_doubles(benchmark::State& state, const char* column, double low, double high) {
  const int table = sales(), id = filter(column), set = root_set();
  time_search(state,
              [&] { return RQXSearchByFieldDblR1(table, id, set, QX_OPE_BETWEEN, low, high); });
}

void T2_city_equal(benchmark::State& state) {
  search_text(state, "city", QX_OPE_EQ, "Kingsaton");
}
BENCHMARK(T2_city_equal)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T3_customer_equal(benchmark::State& state) {
  const int table = sales(), id = filter("customer_id"), set = root_set();
  time_search(state, [&] { return RQXSearchByFieldIntR1(table, id, set, QX_OPE_EQ, 777777, 0); });
}
BENCHMARK(T3_customer_equal)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T4_amount_between(benchmark::State& state) {
  search_doubles(state, "amount", 500, 720);
}
BENCHMARK(T4_amount_between)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T5_date_between(benchmark::State& state) {
  search_doubles(state, "sale_date", RQXStr2DateR1("2021/01/01"), RQXStr2DateR1("2021/03/31"));
}
BENCHMARK(T5_date_between)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T6_comment_contains(benchmark::State& state) {
  search_text(state, "comment", QX_OPE_CONTAINS, "late gift");
}
BENCHMARK(T6_comment_contains)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// A bare scan that keeps `wanted` of `values` codes, on as many threads as the benchmark's
/// argument says.
void time_scan(benchmark::State& state, int values, int wanted) {
  const std::vector<int> codes = random_codes(rows(), values);
  std::vector<int> out(codes.size());
  const int threads = static_cast<int>(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        scan_range(codes, values / 2, values / 2 + wanted, threads, out.data()));
  }
}

void kernel_T2_T3_scan_one_code(benchmark::State& state) {
  time_scan(state, kCities, 1);
}
BENCHMARK(kernel_T2_T3_scan_one_code)->Unit(benchmark::kMicrosecond)->UseRealTime()->Arg(1)->Arg(2);

void kernel_T4_scan_tenth(benchmark::State& state) {
  time_scan(state, 200000, 20000);
}
BENCHMARK(kernel_T4_scan_tenth)->Unit(benchmark::kMicrosecond)->UseRealTime()->Arg(1)->Arg(2);

void kernel_T5_scan_90_days(benchmark::State& state) {
  time_scan(state, 2000, 90);
}
BENCHMARK(kernel_T5_scan_90_days)->Unit(benchmark::kMicrosecond)->UseRealTime()->Arg(1)->Arg(2);

void T11_distinct_customers(benchmark::State& state) {
  const int table = sales(), set = root_set();
  int filters[] = {filter("customer_id"), 0};
  time_search(state, [&] { return RQXExtractUniqueReal(table, set, filters); });
}
BENCHMARK(T11_distinct_customers)->Unit(benchmark::kMicrosecond)->UseRealTime();

void kernel_T11_first_uses(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), kCustomers);
  std::vector<int> out(codes.size() + 1);
  const int threads = static_cast<int>(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(first_uses(codes, kCustomers, threads, out.data()));
  }
}
BENCHMARK(kernel_T11_first_uses)->Unit(benchmark::kMicrosecond)->UseRealTime()->Arg(1)->Arg(2);

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

void kernel_sort_200000_values(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), 200000);
  std::vector<int> out(codes.size());
  for (auto _ : state) sort_codes(codes, 200000, out.data());
}
BENCHMARK(kernel_sort_200000_values)->Unit(benchmark::kMillisecond)->UseRealTime();

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
    require(
        RQXExportAsCSV(table, set, columns, 1, 1000000, directory().c_str(), "export.out", '/'));
  }
  state.counters["bytes"] =
      static_cast<double>(std::filesystem::file_size(directory() + "/export.out"));
}
BENCHMARK(T18_export_csv)->Unit(benchmark::kMillisecond)->UseRealTime();

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

void kernel_T21_thousand_cells(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), 200000);
  const std::vector<double> values(200000, 1.0);
  for (auto _ : state) benchmark::DoNotOptimize(sum_of_cells(codes, values, 1000));
}
BENCHMARK(kernel_T21_thousand_cells)->Unit(benchmark::kMicrosecond);

void T22_search_small_table(benchmark::State& state) {
  std::vector<std::string> texts;
  std::vector<char*> regions;
  for (int i = 0; i < 10000; ++i) {
    texts.emplace_back("Region");
    texts.back() += std::to_string(i % 11);
    if (i % 10 == 0) texts.back() = "Islands";
  }
  for (std::string& text : texts) regions.push_back(text.data());
  const int table = require(RQXAddRealTable("small", 10000));
  const int id = require(
      RQXAddRealFilter2(table, 0, "region", QX_DT_STRING, 10000, regions.data(), nullptr, nullptr));
  char value[] = "Islands";
  for (auto _ : state) {
    const int set = require(RQXSearchByField(table, id, 1, QX_OPE_EQ, value, value));
    RQXDeleteSet(table, set);
  }
  RQXDeleteTable(table);
}
BENCHMARK(T22_search_small_table)->Unit(benchmark::kMicrosecond)->UseRealTime();

void kernel_T22_scan_small_table(benchmark::State& state) {
  const std::vector<int> codes = random_codes(10000, 10);
  std::vector<int> out(codes.size());
  for (auto _ : state) benchmark::DoNotOptimize(scan_range(codes, 5, 6, 1, out.data()));
}
BENCHMARK(kernel_T22_scan_small_table)->Unit(benchmark::kMicrosecond)->UseRealTime();

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

BENCHMARK_MAIN();
