#include "frame/base/memory.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <unordered_map>
#include <vector>

#include "frame/base/exception.h"

namespace qxe {

namespace {

constexpr size_t kHugePage = size_t{2} << 20;
// From here on a block is mapped by itself; below it the general allocator serves. The address
// sanitizer sees leaks and overruns in the general allocator only, so there everything goes to it.
#ifdef __SANITIZE_ADDRESS__
constexpr size_t kLargeBlock = SIZE_MAX;
#else
constexpr size_t kLargeBlock = kHugePage;
#endif
// The cache holds at most this much, so that a table that is dropped gives most of its memory back.
constexpr size_t kCacheLimit = size_t{512} << 20;

std::atomic<long> g_allocations_left{-1};
std::atomic<bool> g_fail_persistent{false};

bool fails_on_purpose() noexcept {
  if (g_allocations_left.load(std::memory_order_relaxed) < 0) return false;
  const long left = g_allocations_left.fetch_sub(1, std::memory_order_relaxed);
  if (left > 0) return false;
  if (g_fail_persistent.load(std::memory_order_relaxed)) g_allocations_left.store(0);
  return left == 0;
}

/// Blocks of whole huge pages, mapped by themselves; freed ones are kept for the next request.
class LargeBlocks {
 public:
  LargeBlocks() { cache_.reserve(kCacheLimit / kHugePage); }  // so that freeing allocates nothing

  void* allocate(size_t size) {
    if (size > PTRDIFF_MAX) return nullptr;
    const size_t capacity = rounded(size);
    {
      std::lock_guard<std::mutex> guard(lock_);
      if (void* block = take_cached(size, capacity)) return block;
    }
    void* block = map(capacity);
    if (block == nullptr) {
      release_cache(0);
      block = map(capacity);
    }
    if (block == nullptr) return nullptr;
    std::lock_guard<std::mutex> guard(lock_);
    if (noted([&] { used_.emplace(block, UsedBlock{size, capacity}); })) return block;
    munmap(block, capacity);
    return nullptr;
  }

  void free(void* block) noexcept {
    size_t capacity = 0;
    {
      std::lock_guard<std::mutex> guard(lock_);
      const auto place = used_.find(block);
      capacity = place->second.capacity;
      used_.erase(place);
      if (capacity <= kCacheLimit) {
        keep(block, capacity);
        return;
      }
    }
    munmap(block, capacity);
  }

  /// Capacity of `block`, or 0 when it is not one of these.
  size_t capacity(void* block) noexcept {
    std::lock_guard<std::mutex> guard(lock_);
    const auto place = used_.find(block);
    return place == used_.end() ? 0 : place->second.capacity;
  }

  /// Notes the size that a block has got within its capacity.
  void resize(void* block, size_t size) noexcept {
    std::lock_guard<std::mutex> guard(lock_);
    UsedBlock& used = used_.find(block)->second;
    used = {size, used.capacity};
  }

  void release_cache(size_t keep) noexcept {
    std::lock_guard<std::mutex> guard(lock_);
    drop_oldest_above(keep);
    for (auto& [block, used] : used_) trim(block, used);
  }

  size_t cached_bytes() noexcept {
    std::lock_guard<std::mutex> guard(lock_);
    return cached_bytes_;
  }

 private:
  struct FreeBlock {
    void* block;
    size_t capacity;
  };
  struct UsedBlock {
    size_t size;
    size_t capacity;
    bool trimmed = false;
  };

  /// Whether there was memory for an entry in the books.
  template <class Enter>
  static bool noted(Enter&& enter) noexcept {
    try {
      enter();
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  static size_t rounded(size_t size, size_t page = kHugePage) {
    return (size + page - 1) & ~(page - 1);
  }

  /// Gives back the end of the last huge page, which on average is half of it. It stays readable.
  static void trim(void* block, UsedBlock& used) noexcept {
    if (used.trimmed) return;
    const size_t kept = rounded(used.size, 4096);
    madvise(static_cast<char*>(block) + kept, used.capacity - kept, MADV_DONTNEED);
    used.trimmed = true;
  }

  static void* map(size_t capacity) {
    const size_t mapped = capacity + kHugePage;
    void* start = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) return nullptr;
    char* const begin = static_cast<char*>(start);
    char* const block =
        begin + (rounded(reinterpret_cast<size_t>(begin)) - reinterpret_cast<size_t>(begin));
    if (block > begin) munmap(begin, static_cast<size_t>(block - begin));
    char* const end = begin + mapped;
    if (end > block + capacity) {
      munmap(block + capacity, static_cast<size_t>(end - (block + capacity)));
    }
    madvise(block, capacity, MADV_HUGEPAGE);
    return block;
  }

  /// As much as is needed of the smallest free block that is large enough; its rest stays free.
  void* take_cached(size_t size, size_t capacity) {
    const auto fits_better = [&](const FreeBlock& left, const FreeBlock& right) {
      return left.capacity >= capacity &&
             (right.capacity < capacity || left.capacity < right.capacity);
    };
    const auto place = std::min_element(cache_.begin(), cache_.end(), fits_better);
    if (place == cache_.end() || place->capacity < capacity) return nullptr;
    void* const block = place->block;
    if (!noted([&] { used_.emplace(block, UsedBlock{size, capacity}); })) return nullptr;
    cached_bytes_ -= capacity;
    place->block = static_cast<char*>(block) + capacity;
    place->capacity -= capacity;
    if (place->capacity == 0) cache_.erase(place);
    return block;
  }

  /// Makes room for the block by giving up those that were free for the longest time, for example
  /// what an import left behind.
  void keep(void* block, size_t capacity) noexcept {
    drop_oldest_above(kCacheLimit - capacity);
    cache_.push_back({block, capacity});
    cached_bytes_ += capacity;
  }

  void drop_oldest_above(size_t bytes) noexcept {
    auto end = cache_.begin();
    for (; cached_bytes_ > bytes; ++end) {
      munmap(end->block, end->capacity);
      cached_bytes_ -= end->capacity;
    }
    cache_.erase(cache_.begin(), end);
  }

  std::mutex lock_;
  std::unordered_map<void*, UsedBlock> used_;
  std::vector<FreeBlock> cache_;  // the longest free first
  size_t cached_bytes_ = 0;
};

LargeBlocks& large_blocks() {
  static LargeBlocks* const blocks = new LargeBlocks;  // outlives every static that frees a block
  return *blocks;
}

/// Blocks of the general allocator never start on a huge page boundary: its header stands before.
bool may_be_large(void* block) {
  return reinterpret_cast<size_t>(block) % kHugePage == 0;
}

void* allocate(size_t size) {
  if (fails_on_purpose()) return nullptr;
  return size >= kLargeBlock ? large_blocks().allocate(size) : malloc(size);
}

void* resize_large(void* block, size_t capacity, size_t size) {
  if (size <= capacity && size >= capacity / 2) {
    large_blocks().resize(block, size);
    return block;
  }
  void* const moved = zvk_malloc(size);
  memcpy(moved, block, std::min(capacity, size));
  large_blocks().free(block);
  return moved;
}

}  // namespace

void* zvk_malloc(size_t size) {
  void* const block = allocate(size > 0 ? size : 1);
  if (block == nullptr) _heap_memory_exception(size);
  return block;
}

void* zvk_realloc(void* block, size_t size) {
  if (block == nullptr) return zvk_malloc(size);
  if (size == 0) {
    zvk_free(block);
    return nullptr;
  }
  if (may_be_large(block)) {
    if (const size_t capacity = large_blocks().capacity(block)) {
      return resize_large(block, capacity, size);
    }
  }
  void* const resized = fails_on_purpose() ? nullptr : realloc(block, size);
  if (resized == nullptr) _heap_memory_exception(size);
  return resized;
}

void zvk_free(void* block) noexcept {
  if (block == nullptr) return;
  if (may_be_large(block) && large_blocks().capacity(block) != 0) {
    large_blocks().free(block);
  } else {
    free(block);
  }
}

void _heap_memory_exception(size_t size) {
  throw CQXException(QX_ERROR_OUT_OF_MEMORY, "Memory allocation failed for %u bytes",
                     static_cast<unsigned>(size));
}

size_t free_block_bytes() noexcept {
  return large_blocks().cached_bytes();
}

void release_free_blocks(size_t keep) noexcept {
  large_blocks().release_cache(keep);
}

void fail_allocation_after(long allocations, bool persistent) noexcept {
  g_fail_persistent.store(persistent);
  g_allocations_left.store(allocations);
}

}  // namespace qxe
