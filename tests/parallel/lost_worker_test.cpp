// A worker that is lost in a task fails the round and is replaced. The case waits for the pool's
// deadline of five seconds.
#include <gtest/gtest.h>

#include <vector>

#include "parallel/mpp_memory.h"
#include "parallel/smpengine.h"
#include "parallel/task_table.h"

namespace qxe {
namespace {

void expect_pool_works() {
  std::vector<char> from(1000, 5);
  std::vector<char> to(1000);
  MppMemcpy(to.data(), from.data(), 1, 1000, ENG->run_threads());
  EXPECT_EQ(to, from);
}

TEST(LostWorkerTest, TheRoundFailsAndTheNextOneRuns) {
  try {
    ENG->run_threads_task(ENG->run_threads(), QX_MPP_SORT_STEP1);  // has no function: throws
    FAIL() << "a round with lost workers must fail";
  } catch (const CQXException& failure) {
    EXPECT_EQ(failure.ErrorCode(), QX_ERROR_WORKER_LOST);
  }
  expect_pool_works();
}

}  // namespace
}  // namespace qxe
