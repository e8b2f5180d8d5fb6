// Workers that are lost in a task or that the system refuses fail the round, and the next one runs.
// A lost one is noticed after the pool's deadline of five seconds.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "parallel/mpp_memory.h"
#include "parallel/smpengine.h"
#include "parallel/task_table.h"
#include "support/faults.h"

namespace qxe {
namespace {

using test::ArmedFault;
using test::FaultKind;

constexpr test::Fault kNoThreads{FaultKind::kThread, 0, true};

bool pool_works() {
  std::vector<char> from(1000, 5);
  std::vector<char> to(1000);
  MppMemcpy(to.data(), from.data(), 1, 1000, ENG->run_threads());
  return to == from;
}

/// Status of a round of `task`.
int round(int task) {
  try {
    return ENG->run_threads_task(ENG->run_threads(), task);
  } catch (const CQXException& failure) {
    return failure.ErrorCode();
  }
}

constexpr int kThrowing = QX_MPP_SORT_STEP1;  // has no function

TEST(LostWorkerTest, TheRoundFailsAndTheNextOneRuns) {
  EXPECT_EQ(round(kThrowing), QX_ERROR_WORKER_LOST);
  EXPECT_TRUE(pool_works());
}

TEST(LostWorkerTest, RoundsFailWhileItCannotBeReplaced) {
  {
    const ArmedFault fault(kNoThreads);
    EXPECT_EQ(round(kThrowing), QX_ERROR_WORKER_LOST);
    EXPECT_EQ(round(QX_MPP_MEMCPY), QX_ERROR_OUT_OF_MEMORY);
    EXPECT_TRUE(fault.fired());
  }
  EXPECT_TRUE(pool_works());
}

TEST(RefusedWorkerTest, AChildProcessTriesAgainWithTheNextRound) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(30);
    for (long after = 0; after < ENG->created_threads(); ++after) {
      const ArmedFault fault({FaultKind::kThread, after, false});
      if (round(QX_MPP_MEMCPY) != QX_ERROR_OUT_OF_MEMORY) _exit(1);
    }
    exit(pool_works() ? 0 : 2);  // NOLINT(concurrency-mt-unsafe): the end is part of the test
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace qxe
