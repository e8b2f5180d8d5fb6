#include "bench_table.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "qxe.h"
#include "sales_data.h"

namespace qxe::bench {

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

const std::string& output_directory() {
  static const std::string path =
      std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : directory();
  return path;
}

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

}  // namespace qxe::bench

BENCHMARK_MAIN();
