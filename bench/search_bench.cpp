// Searches and distinct rows.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench_table.h"
#include "kernels.h"
#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {
namespace {

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

void T7_city_matches(benchmark::State& state) {
  const int table = sales(), id = filter("city"), set = root_set();
  time_search(state, [&] { return RQXSearchByFieldWildCard(table, id, set, "B*ton"); });
}
BENCHMARK(T7_city_matches)->Unit(benchmark::kMicrosecond)->UseRealTime();

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

void kernel_T7_scan_marked_codes(benchmark::State& state) {
  const std::vector<int> codes = random_codes(rows(), kCities);
  std::vector<int> out(codes.size());
  std::vector<unsigned char> hits(kCities);
  for (size_t i = 0; i < hits.size(); i += 77) hits[i] = 1;  // 1.3 %
  const int threads = static_cast<int>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(scan_hits(codes, hits, threads, out.data()));
}
BENCHMARK(kernel_T7_scan_marked_codes)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime()
    ->Arg(1)
    ->Arg(2);

// The same searches of a marked set, and what a mark costs.

/// A mark on the set of all rows that works while this lives.
class MarkedColumn {
 public:
  explicit MarkedColumn(const char* column) : filter_(filter(column)) {
    require(RQXHighSpeedSearchEnable(sales(), filter_, true));
    require(RQXHighSpeedSearchSetMark(sales(), root_set(), filter_, true));
  }
  ~MarkedColumn() {
    RQXHighSpeedSearchSetMark(sales(), root_set(), filter_, false);
    RQXHighSpeedSearchEnable(sales(), filter_, false);
  }
  MarkedColumn(const MarkedColumn&) = delete;
  MarkedColumn& operator=(const MarkedColumn&) = delete;

 private:
  int filter_;
};

void T2i_marked_city_equal(benchmark::State& state) {
  const MarkedColumn marked("city");
  T2_city_equal(state);
}
BENCHMARK(T2i_marked_city_equal)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T3i_marked_customer_equal(benchmark::State& state) {
  const MarkedColumn marked("customer_id");
  T3_customer_equal(state);
}
BENCHMARK(T3i_marked_customer_equal)->Unit(benchmark::kMicrosecond)->UseRealTime();

void T4i_marked_amount_between(benchmark::State& state) {
  const MarkedColumn marked("amount");
  T4_amount_between(state);
}
BENCHMARK(T4i_marked_amount_between)->Unit(benchmark::kMicrosecond)->UseRealTime();

void time_mark(benchmark::State& state, const char* column) {
  const int table = sales(), id = filter(column), set = root_set();
  require(RQXHighSpeedSearchEnable(table, id, true));
  for (auto _ : state) {
    require(RQXHighSpeedSearchSetMark(table, set, id, true));
    state.PauseTiming();
    RQXHighSpeedSearchSetMark(table, set, id, false);
    state.ResumeTiming();
  }
  RQXHighSpeedSearchEnable(table, id, false);
}

void T2x_mark_city(benchmark::State& state) {
  time_mark(state, "city");
}
BENCHMARK(T2x_mark_city)->Unit(benchmark::kMillisecond)->UseRealTime();

void T3x_mark_customer(benchmark::State& state) {
  time_mark(state, "customer_id");
}
BENCHMARK(T3x_mark_customer)->Unit(benchmark::kMillisecond)->UseRealTime();

void T4x_mark_amount(benchmark::State& state) {
  time_mark(state, "amount");
}
BENCHMARK(T4x_mark_amount)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Two bisections in rows ordered by `values` codes and a copy of the rows with `wanted` of them.
void time_ordered(benchmark::State& state, int values, int wanted) {
  const std::vector<int> codes = random_codes(rows(), values);
  const std::vector<int> ordered = rows_by_code(codes, values);
  std::vector<int> out(codes.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        copy_of_codes(codes, ordered, values / 2, values / 2 + wanted, out.data()));
  }
}

void kernel_T2i_bisect_cities(benchmark::State& state) {
  time_ordered(state, kCities, 1);
}
BENCHMARK(kernel_T2i_bisect_cities)->Unit(benchmark::kMicrosecond)->UseRealTime();

void kernel_T3i_bisect_customers(benchmark::State& state) {
  time_ordered(state, kCustomers, 1);
}
BENCHMARK(kernel_T3i_bisect_customers)->Unit(benchmark::kMicrosecond)->UseRealTime();

void kernel_T4i_copy_tenth(benchmark::State& state) {
  time_ordered(state, 200000, 20000);
}
BENCHMARK(kernel_T4i_copy_tenth)->Unit(benchmark::kMicrosecond)->UseRealTime();

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

}  // namespace
}  // namespace qxe::bench
