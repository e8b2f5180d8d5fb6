// The engine's allocator. Array blocks and blocks that a client releases come from here.
//
// Fresh pages are the dearest resource of a column store: the first touch of a 4 KiB page costs
// more than the work on it. So large blocks lie on 2 MiB boundaries, are advised as huge pages, and
// go to a cache when freed instead of back to the system.
#pragma once

#include <stddef.h>
#include <string.h>

#include <memory>
#include <new>
#include <type_traits>

namespace qxe {

/// `size` bytes, not cleared. Throws QX_ERROR_OUT_OF_MEMORY.
void* zvk_malloc(size_t size);
/// Resizes a block of zvk_malloc or makes one from null; the old block stays on failure, which
/// throws QX_ERROR_OUT_OF_MEMORY. Size 0 frees the block and gives null.
void* zvk_realloc(void* block, size_t size);
/// Frees a block of zvk_malloc; null is nothing.
void zvk_free(void* block) noexcept;

/// Throws QX_ERROR_OUT_OF_MEMORY with "Memory allocation failed for %u bytes".
[[noreturn]] void _heap_memory_exception(size_t size);

/// Bytes of the cached free blocks.
size_t free_block_bytes() noexcept;
/// Gives cached free blocks back to the system until at most `keep` bytes are left, and the ends of
/// used blocks that go to waste because memory comes in huge pages.
void release_free_blocks(size_t keep = 0) noexcept;

/// Leaves no more free blocks cached than there were: for work that needs far more memory than what
/// it makes.
class FreeBlocksKeeper {
 public:
  FreeBlocksKeeper() : before_(free_block_bytes()) {}
  ~FreeBlocksKeeper() { release_free_blocks(before_); }
  FreeBlocksKeeper(const FreeBlocksKeeper&) = delete;
  FreeBlocksKeeper& operator=(const FreeBlocksKeeper&) = delete;

 private:
  const size_t before_;
};

/// Test hook: lets `allocations` further allocations pass, fails the next one, and all after it
/// when `persistent`. A negative count switches it off.
void fail_allocation_after(long allocations, bool persistent) noexcept;

struct ZvkFree {
  void operator()(void* block) const noexcept { zvk_free(block); }
};

/// A block that frees itself until it is released to a new owner.
template <class T>
using Block = std::unique_ptr<T[], ZvkFree>;

/// A block of `count` elements, not cleared. At least one byte, so never null.
template <class T>
Block<T> make_block(long count) {
  static_assert(std::is_trivially_copyable_v<T>);
  const size_t bytes = sizeof(T) * static_cast<size_t>(count);
  return Block<T>(static_cast<T*>(zvk_malloc(bytes > 0 ? bytes : 1)));
}

/// A block of `count` elements of zero bytes.
template <class T>
Block<T> make_cleared_block(long count) {
  Block<T> block = make_block<T>(count);
  memset(static_cast<void*>(block.get()), 0, sizeof(T) * static_cast<size_t>(count));
  return block;
}

class NonCopyable {
 protected:
  NonCopyable() = default;
  ~NonCopyable() = default;

 public:
  NonCopyable(const NonCopyable&) = delete;
  NonCopyable& operator=(const NonCopyable&) = delete;
};

}  // namespace qxe
