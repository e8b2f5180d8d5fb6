// Saving and loading a database, beside the plain writing and reading of the same bytes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench_table.h"
#include "qxe.h"

namespace qxe::bench {
namespace {

std::string database_name() {
  return "bench" + std::to_string(rows()) + ".QXD";
}

std::string database_path() {
  return output_directory() + "/" + database_name();
}

void save_database() {
  char directory[512] = "";
  output_directory().copy(directory, sizeof directory - 1);
  require(RQXSaveDBAs(directory, database_name().c_str()));
}

void import_all() {
  RQXClearDB();
  for (const char* const name : {"sales", "products", "customers"}) import_table(name);
}

void count_bytes(benchmark::State& state, long bytes) {
  state.SetBytesProcessed(static_cast<long>(state.iterations()) * bytes);
}

long file_size() {
  return static_cast<long>(std::filesystem::file_size(database_path()));
}

void T19_save_database(benchmark::State& state) {
  import_all();
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(database_path());
    state.ResumeTiming();
    save_database();
  }
  count_bytes(state, file_size());
}
BENCHMARK(T19_save_database)->Unit(benchmark::kMillisecond)->UseRealTime();

void make_file() {
  if (std::filesystem::exists(database_path())) return;
  import_all();
  save_database();
}

/// Times `work` on an empty engine. In a process that does nothing else this is the time of a fresh
/// process.
template <class Work>
void time_from_file(benchmark::State& state, const Work& work) {
  make_file();
  for (auto _ : state) {
    state.PauseTiming();
    RQXClearDB();
    state.ResumeTiming();
    work();
  }
  count_bytes(state, file_size());
}

void load_database() {
  require(RQXLoadDB(output_directory().c_str(), database_name().c_str()));
}

void T20_load_database(benchmark::State& state) {
  time_from_file(state, load_database);
}
BENCHMARK(T20_load_database)->Unit(benchmark::kMillisecond)->UseRealTime();

void T20o_load_and_sum_by_region(benchmark::State& state) {
  int groups = 0;
  time_from_file(state, [&] {
    load_database();
    const int table = require(RQXGetTableIDFromName("sales"));
    int region = require(RQXGetFilterIDFromName(table, "region"));
    int amount = require(RQXGetFilterIDFromName(table, "amount"));
    int flags = QX_SUM_SUM;
    int digits = -1;
    groups =
        RQXGetTotalRows(require(RQXNonCubeSum(table, -1, 1, &region, 1, &amount, &flags, &digits)));
  });
  state.counters["groups"] = groups;
}
BENCHMARK(T20o_load_and_sum_by_region)->Unit(benchmark::kMillisecond)->UseRealTime();

struct Free {
  void operator()(char* block) const { free(block); }
};
using Memory = std::unique_ptr<char, Free>;

/// Memory that nobody has touched, in huge pages where the system has them.
Memory fresh_memory(long bytes) {
  constexpr size_t kHugePage = 2 << 20;
  const size_t size = (static_cast<size_t>(bytes) + kHugePage - 1) / kHugePage * kHugePage;
  Memory memory(static_cast<char*>(aligned_alloc(kHugePage, size)));
  if (memory == nullptr) throw std::bad_alloc();
  madvise(memory.get(), size, MADV_HUGEPAGE);
  return memory;
}

/// Calls `move(begin, count)` for all of `bytes` on as many threads as the benchmark says.
template <class Move>
void on_threads(benchmark::State& state, long bytes, const Move& move) {
  constexpr long kPiece = 1 << 20;
  const long threads = state.range(0);
  std::vector<std::jthread> own;
  for (long i = 0; i < threads; ++i) {
    own.emplace_back([&, begin = bytes * i / threads, end = bytes * (i + 1) / threads] {
      for (long at = begin; at < end; at += kPiece) move(at, std::min(kPiece, end - at));
    });
  }
}

struct File {
  File(const std::string& path, int flags) : number(open(path.c_str(), flags, 0644)) {
    if (number < 0) throw std::runtime_error("cannot open " + path);
  }
  ~File() { close(number); }
  const int number;
};

void kernel_T19_write_bytes(benchmark::State& state) {
  const long bytes = file_size();
  const Memory memory = fresh_memory(bytes);
  memset(memory.get(), 1, static_cast<size_t>(bytes));
  const std::string path = output_directory() + "/plain.bin";
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(path);
    state.ResumeTiming();
    const File file(path, O_CREAT | O_WRONLY | O_TRUNC);
    on_threads(state, bytes, [&](long begin, long count) {
      benchmark::DoNotOptimize(
          pwrite(file.number, memory.get() + begin, static_cast<size_t>(count), begin));
    });
  }
  std::filesystem::remove(path);
  count_bytes(state, bytes);
}
BENCHMARK(kernel_T19_write_bytes)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

void kernel_T20_read_bytes(benchmark::State& state) {
  const long bytes = file_size();
  const File file(database_path(), O_RDONLY);
  for (auto _ : state) {
    const Memory memory = fresh_memory(bytes);
    on_threads(state, bytes, [&](long begin, long count) {
      benchmark::DoNotOptimize(
          pread(file.number, memory.get() + begin, static_cast<size_t>(count), begin));
    });
  }
  count_bytes(state, bytes);
}
BENCHMARK(kernel_T20_read_bytes)->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);

}  // namespace
}  // namespace qxe::bench
