// What RQXNonCubeSum needs beside the table it makes stays within the estimate that chose the way.
#include <gtest/gtest.h>
#include <unistd.h>

#include "parallel/smpengine.h"
#include "qxe.h"
#include "summary/sum_method.h"
#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/memory_meter.h"
#include "support/random_data.h"

static bool g_no_free_memory = false;

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {
long __real_sysconf(int name);
long __wrap_sysconf(int name);
long __wrap_sysconf(int name) {
  return name == _SC_AVPHYS_PAGES && g_no_free_memory ? 0 : __real_sysconf(name);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace qxe::test {
namespace {

constexpr int kRows = 100000;
// Sums that are no whole numbers are sorted into a value list, which may come to more than what the
// rows have needed before: bytes for each group.
constexpr long kSortedBytes = 24;

struct MemoryCase {
  const char* name;
  std::vector<int> lists;  // values of each dimension, NULL included
  SumMethod method;
  bool no_free_memory = false;
};

class SummaryMemoryTest : public EngineTest, public testing::WithParamInterface<MemoryCase> {
 protected:
  SummaryMemoryTest() {
    for (const int list : GetParam().lists) dims_.push_back(add_numbers(list));
    msrs_[0] = add_doubles();
    msrs_[1] = add_numbers(50);
    g_no_free_memory = GetParam().no_free_memory;
  }
  ~SummaryMemoryTest() override { g_no_free_memory = false; }

  SumWork work(int measures, int flags) const {
    SumWork work;
    for (const int list : GetParam().lists) work.add_dimension(list);
    work.flags = measures > 0 ? flags : 0;
    work.rows = kRows;
    work.measures = measures;
    work.workers = ENG->run_threads();
    work.l2_size = ENG->l2_size();
    work.available_memory = g_no_free_memory ? 0 : 1UL << 40;
    return work;
  }

  /// A bucket's cells for each worker, and what does not grow with the work.
  static double small_change() { return 2.0 * ENG->run_threads() * ENG->l2_size() + (64 << 10); }

  int sum(int measures, int flags) {
    int all_flags[] = {flags, flags};
    int digits[] = {-1, -1};
    return RQXNonCubeSum(table_, -1, static_cast<int>(dims_.size()), dims_.data(), measures, msrs_,
                         all_flags, digits);
  }

 private:
  /// A column of so many different values, NULL included, that no row has.
  int add_numbers(int values) {
    std::vector<int> numbers;
    for (int i = 0; i < kRows; ++i) numbers.push_back(random_.below(values - 1));
    for (int i = 0; i < values - 1; ++i) numbers[static_cast<size_t>(i)] = i;
    return add(QX_DT_INTEGER, numbers.data());
  }

  int add_doubles() {
    std::vector<double> values;
    for (int i = 0; i < kRows; ++i) values.push_back(random_.below(1000000) / 1024.0);
    return add(QX_DT_DOUBLE, values.data());
  }

  int add(int type, void* values) const {
    return RQXAddRealFilter2(table_, 100, "c", type, kRows, values, nullptr, nullptr);
  }

  RandomData random_{1};
  const int table_ = RQXAddRealTable("t", kRows);
  std::vector<int> dims_;
  int msrs_[2];
};

TEST_P(SummaryMemoryTest, StaysWithinTheEstimateAndTheResult) {
  for (const int measures : {0, 1, 2}) {
    for (const int flags : {+QX_SUM_SUM, QX_SUM_COUNT | QX_SUM_MAX, 31}) {
      const SumWork asked = work(measures, flags);
      ASSERT_EQ(GetSuitableSumMethod(asked), GetParam().method);
      const MemoryMeter meter;
      const int output = sum(measures, flags);
      const long peak = meter.peak();
      ASSERT_GT(output, 0);
      const long sorting = kSortedBytes * RQXGetTotalRows(output);
      EXPECT_LT(static_cast<double>(peak - meter.growth() - sorting),
                estimated_bytes(asked, GetParam().method) + small_change())
          << measures << " measures, flags " << flags;
      RQXDeleteTable(output);
    }
  }
}

using M = SumMethod;
INSTANTIATE_TEST_SUITE_P(Ways, SummaryMemoryTest,
                         testing::Values(MemoryCase{"Cube", {100}, M::kCube},
                                         MemoryCase{"FastCube", {100, 100}, M::kFastCube},
                                         MemoryCase{"Buckets", {2000, 1000}, M::kFastNonCube},
                                         MemoryCase{"Sorted", {30000, 30000}, M::kFastNonCube},
                                         MemoryCase{
                                             "ByRow", {2000, 1000}, M::kFastNonCubeByRow, true},
                                         MemoryCase{"Wide", {2000, 2000, 2000}, M::kNonCube}),
                         case_name<MemoryCase>);

}  // namespace
}  // namespace qxe::test
