// The worker pool and the division of work.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "parallel/mpp_memory.h"
#include "parallel/sliced_task.h"

namespace qxe {
namespace {

TEST(PoolTest, HasOneWorkerPerRunThread) {
  EXPECT_EQ(ENG->run_threads(), ENG->created_threads());
  EXPECT_EQ(ENG->run_threads_task(0, QX_MPP_MEMSET), 0);
  EXPECT_EQ(ENG->get_wkthread_retcode(1000), QX_ERROR_UNKNOWN);
}

TEST(PoolTest, DividesElementsAmongAsManyWorkersAsTheyAreWorth) {
  const int threads = ENG->run_threads();
  EXPECT_EQ(ENG->n_threads_for_elements(0), 1);
  EXPECT_EQ(ENG->n_threads_for_elements(1), 1);
  EXPECT_EQ(ENG->n_threads_for_elements(1000), threads);
  EXPECT_EQ(ENG->n_threads_for_elements(10, 4), std::min(threads, 3));
  EXPECT_EQ(ENG->n_threads_for_elements(4L * threads, 4), threads);
}

TEST(PoolTest, AssignsCeilingShares) {
  const int threads = ENG->run_threads();
  const int busy = ENG->assign_elements_to_threads(10, 1);
  const int share = (10 + threads - 1) / threads;
  int left = 10;
  for (int i = 0; i < threads; ++i) {
    const int wanted = i == threads - 1 ? left : std::min(share, left);
    EXPECT_EQ(ENG->get_thread_param(i).elements, wanted) << i;
    left -= wanted;
  }
  EXPECT_EQ(busy, (10 + share - 1) / share);
  EXPECT_EQ(ENG->assign_elements_to_threads(-5, 1), 0);
}

TEST(PoolTest, SlicesCoverAllElementsOnce) {
  for (const long elements : {1L, 2L, 7L, 10L, 1000L}) {
    for (const int parts : {1, 2, 3, 8}) {
      long next = 0;
      for (int i = 0; i < parts; ++i) {
        const Slice slice = even_slice(elements, parts, i);
        EXPECT_EQ(slice.begin, next);
        next = slice.end;
      }
      EXPECT_EQ(next, elements);
    }
  }
  EXPECT_EQ(even_slice(10, 3, 2).size(), 4);
}

TEST(PoolTest, CopiesAndFillsOfEverySizeAreExact) {
  for (const size_t size :
       {size_t{0}, size_t{1}, size_t{1000}, size_t{0x100000}, size_t{0x300001}}) {
    std::vector<unsigned char> from(size + 1, 1);
    std::iota(from.begin(), from.end(), static_cast<unsigned char>(3));
    std::vector<unsigned char> to(size + 1, 99);
    MppMemCpy(to.data(), from.data(), size);
    EXPECT_TRUE(std::equal(to.begin(), to.end() - 1, from.begin()));
    EXPECT_EQ(to.back(), 99);
    MppMemSet(to.data(), 7, size);
    EXPECT_EQ(std::count(to.begin(), to.end(), 7), static_cast<long>(size));
  }
  std::vector<int> ints(10);
  std::iota(ints.begin(), ints.end(), 0);
  std::vector<int> copy(10);
  MppMemcpy(copy.data(), ints.data(), sizeof(int), 10, 3);
  EXPECT_EQ(copy, ints);
}

TEST(PoolTest, RoundsFollowEachOtherWithoutLosingOne) {
  std::vector<char> bytes(64);
  for (int round = 0; round < 2000; ++round) {
    const char value = static_cast<char>(round);
    MppMemcpy(bytes.data(), std::vector<char>(64, value).data(), 1, 64, ENG->run_threads());
    ASSERT_EQ(std::count(bytes.begin(), bytes.end(), value), 64);
  }
}

TEST(PoolTest, RunsAgainAfterReInitialize) {
  ENG->ReInitialize();
  std::vector<char> from(100, 5);
  std::vector<char> to(100);
  MppMemcpy(to.data(), from.data(), 1, 100, ENG->run_threads());
  EXPECT_EQ(to, from);
}

}  // namespace
}  // namespace qxe
