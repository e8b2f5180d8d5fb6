// The allocator: blocks of all sizes keep their bytes, and memory that runs out is told, the books
// of large blocks included.
#include "frame/base/memory.h"

#include <gtest/gtest.h>
#include <stdint.h>

#include <algorithm>
#include <vector>

#include "frame/base/exception.h"
#include "support/faults.h"

namespace qxe {
namespace {

using test::ArmedFault;
using test::FaultKind;

constexpr size_t kLarge = size_t{4} << 20;  // mapped by itself
constexpr size_t kSizes[] = {1, 1000, kLarge - 1, kLarge, 3 * kLarge + 5};

/// Puts a pattern into the first `size` bytes, or compares with it.
void fill(void* block, size_t size) {
  auto* const bytes = static_cast<unsigned char*>(block);
  for (size_t i = 0; i < size; i += 99) bytes[i] = static_cast<unsigned char>(i * 31);
}
bool is_filled(const void* block, size_t size) {
  const auto* const bytes = static_cast<const unsigned char*>(block);
  for (size_t i = 0; i < size; i += 99) {
    if (bytes[i] != static_cast<unsigned char>(i * 31)) return false;
  }
  return true;
}

TEST(MemoryTest, ResizedBlocksKeepTheirBytes) {
  for (const size_t from : kSizes) {
    for (const size_t to : kSizes) {
      void* block = zvk_malloc(from);
      fill(block, from);
      block = zvk_realloc(block, to);
      EXPECT_TRUE(is_filled(block, std::min(from, to))) << from << " to " << to;
      fill(block, to);
      zvk_free(block);
    }
  }
}

TEST(MemoryTest, SizeZeroFrees) {
  EXPECT_EQ(zvk_realloc(zvk_malloc(10), 0), nullptr);
  EXPECT_EQ(zvk_realloc(zvk_malloc(kLarge), 0), nullptr);
  zvk_free(nullptr);
}

TEST(MemoryTest, ImpossibleSizesAreOutOfMemory) {
  for (const size_t size : {size_t{1} << 50, SIZE_MAX - 1}) {
    try {
      zvk_malloc(size);
      FAIL() << size;
    } catch (const CQXException& failure) {
      EXPECT_EQ(failure.ErrorCode(), QX_ERROR_OUT_OF_MEMORY);
    }
  }
}

/// Runs `body` with each of its allocations failing in turn; it throws or is done.
template <class Body>
void fail_each_allocation(Body&& body) {
  bool done = false;
  for (long after = 0; !done; ++after) {
    release_free_blocks();
    const ArmedFault fault({FaultKind::kAllocation, after, false});
    try {
      body();
      done = !fault.fired();
    } catch (const CQXException& failure) {
      ASSERT_EQ(failure.ErrorCode(), QX_ERROR_OUT_OF_MEMORY);
    }
  }
}

TEST(MemoryTest, EveryFailureOfARequestIsTold) {
  for (const size_t size : kSizes) {
    fail_each_allocation([&] { make_block<char>(static_cast<long>(size)); });
  }
}

TEST(MemoryTest, AFailedResizeLeavesTheOldBlock) {
  for (const size_t from : kSizes) {
    for (const size_t to : kSizes) {
      void* block = zvk_malloc(from);
      fill(block, from);
      fail_each_allocation([&] { block = zvk_realloc(block, to); });
      EXPECT_TRUE(is_filled(block, std::min(from, to))) << from << " to " << to;
      zvk_free(block);
    }
  }
}

TEST(MemoryTest, FreeingNeedsNoMemory) {
  std::vector<void*> blocks;
  for (int i = 0; i < 20; ++i) blocks.push_back(zvk_malloc(kLarge));
  {
    const ArmedFault fault({FaultKind::kAllocation, 0, true});
    for (void* const block : blocks) zvk_free(block);
  }
  release_free_blocks();
}

}  // namespace
}  // namespace qxe
