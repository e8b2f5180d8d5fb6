// Workers that are lost in a task or that the system refuses fail the round, and the next one runs.
// A lost one is noticed after the pool's deadline of five seconds.
#include <gtest/gtest.h>

#include <vector>

#include "parallel/mpp_memory.h"
#include "parallel/smpengine.h"
#include "parallel/task_table.h"
#include "support/child_process.h"
#include "support/faults.h"

namespace qxe {
namespace {

using test::ArmedFault;
using test::FaultKind;

constexpr test::Fault kNoThreads{FaultKind::kThread, 0, true};

/// Status of `body`.
template <class Body>
int status_of(Body&& body) {
  try {
    body();
    return 0;
  } catch (const CQXException& failure) {
    return failure.ErrorCode();
  }
}

/// A round of all workers that works.
int copy() {
  const std::vector<char> from(1000, 5);
  std::vector<char> to(1000);
  const int status =
      status_of([&] { MppMemcpy(to.data(), from.data(), 1, 1000, ENG->run_threads()); });
  return status < 0 || to == from ? status : -1;
}

/// One that loses its workers: the task has no function, which throws.
int lose_workers() {
  return status_of([] { ENG->run_threads_task(ENG->run_threads(), QX_MPP_SORT_STEP1); });
}

TEST(LostWorkerTest, TheRoundFailsAndTheNextOneRuns) {
  EXPECT_EQ(lose_workers(), QX_ERROR_WORKER_LOST);
  EXPECT_EQ(copy(), 0);
}

TEST(LostWorkerTest, RoundsFailWhileItCannotBeReplaced) {
  {
    const ArmedFault fault(kNoThreads);
    EXPECT_EQ(lose_workers(), QX_ERROR_WORKER_LOST);
    EXPECT_EQ(copy(), QX_ERROR_OUT_OF_MEMORY);
    EXPECT_TRUE(fault.fired());
  }
  EXPECT_EQ(copy(), 0);
}

TEST(RefusedWorkerTest, AChildProcessTriesAgainWithTheNextRound) {
  EXPECT_EQ(test::exit_status_of_child([] {
              for (long after = 0; after < ENG->created_threads(); ++after) {
                const ArmedFault fault({FaultKind::kThread, after, false});
                if (copy() != QX_ERROR_OUT_OF_MEMORY) return 1;
              }
              return copy() == 0 ? 0 : 2;
            }),
            0);
}

}  // namespace
}  // namespace qxe
