#include "frame/base/memory.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <new>
#include <unordered_map>

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

/// Blocks of whole huge pages, each mapped by itself; freed ones are kept for the next request.
class LargeBlocks {
 public:
  void* allocate(size_t size) {
    if (size > PTRDIFF_MAX) return nullptr;
    const size_t capacity = rounded(size);
    {
      std::lock_guard<std::mutex> guard(lock_);
      if (void* block = take_cached(capacity)) return block;
    }
    void* block = map(capacity);
    if (block == nullptr) {
      release_cache();
      block = map(capacity);
    }
    if (block == nullptr) return nullptr;
    std::lock_guard<std::mutex> guard(lock_);
    if (noted([&] { used_.emplace(block, capacity); })) return block;
    munmap(block, capacity);
    return nullptr;
  }

  void free(void* block) noexcept {
    size_t capacity = 0;
    {
      std::lock_guard<std::mutex> guard(lock_);
      const auto place = used_.find(block);
      capacity = place->second;
      used_.erase(place);
      if (cached_bytes_ + capacity <= kCacheLimit &&
          noted([&] { cache_.emplace(capacity, block); })) {
        cached_bytes_ += capacity;
        return;
      }
    }
    munmap(block, capacity);
  }

  /// Capacity of `block`, or 0 when it is not one of these.
  size_t capacity(void* block) noexcept {
    std::lock_guard<std::mutex> guard(lock_);
    const auto place = used_.find(block);
    return place == used_.end() ? 0 : place->second;
  }

  void release_cache() noexcept {
    std::lock_guard<std::mutex> guard(lock_);
    for (const auto& [capacity, block] : cache_) munmap(block, capacity);
    cache_.clear();
    cached_bytes_ = 0;
  }

 private:
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

  static size_t rounded(size_t size) { return (size + kHugePage - 1) & ~(kHugePage - 1); }

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

  /// The smallest cached block that fits without wasting more than a quarter.
  void* take_cached(size_t capacity) {
    const auto place = cache_.lower_bound(capacity);
    if (place == cache_.end() || place->first > capacity + capacity / 4) return nullptr;
    void* const block = place->second;
    if (!noted([&] { used_.emplace(block, place->first); })) return nullptr;
    cached_bytes_ -= place->first;
    cache_.erase(place);
    return block;
  }

  std::mutex lock_;
  std::unordered_map<void*, size_t> used_;
  std::multimap<size_t, void*> cache_;
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
  if (size <= capacity && size >= capacity / 2) return block;
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

void release_free_blocks() noexcept {
  large_blocks().release_cache();
}

void fail_allocation_after(long allocations, bool persistent) noexcept {
  g_fail_persistent.store(persistent);
  g_allocations_left.store(allocations);
}

}  // namespace qxe
