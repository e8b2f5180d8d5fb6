#include "support/memory_meter.h"

#include <malloc.h>
#include <stdlib.h>

#include <atomic>
#include <mutex>
#include <new>
#include <unordered_map>

namespace qxe::test {

namespace {

std::atomic<long> g_used{0};
std::atomic<long> g_peak{0};

void count(long bytes) {
  const long used = g_used.fetch_add(bytes) + bytes;
  for (long peak = g_peak; used > peak && !g_peak.compare_exchange_weak(peak, used);) {
  }
}

/// The engine's blocks by their sizes: how much the general allocator has given does not show for
/// blocks that are mapped.
class Blocks {
 public:
  void add(void* block, size_t size) {
    const std::lock_guard<std::mutex> guard(lock_);
    sizes_[block] = size;
    count(static_cast<long>(size));
  }

  void remove(void* block) {
    const std::lock_guard<std::mutex> guard(lock_);
    const auto place = sizes_.find(block);
    if (place == sizes_.end()) return;
    count(-static_cast<long>(place->second));
    sizes_.erase(place);
  }

 private:
  std::mutex lock_;
  std::unordered_map<void*, size_t> sizes_;
};

Blocks& blocks() {
  static auto* const all = new Blocks;  // outlives every static
  return *all;
}

}  // namespace

MemoryMeter::MemoryMeter() : before_(g_used) {
  g_peak = before_;
}

long MemoryMeter::growth() const {
  return g_used - before_;
}

long MemoryMeter::peak() const {
  return g_peak - before_;
}

}  // namespace qxe::test

using qxe::test::blocks;
using qxe::test::count;

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {

void* __real__ZN3qxe10zvk_mallocEm(size_t size);
void* __wrap__ZN3qxe10zvk_mallocEm(size_t size);
void* __wrap__ZN3qxe10zvk_mallocEm(size_t size) {
  void* const block = __real__ZN3qxe10zvk_mallocEm(size);
  blocks().add(block, size);
  return block;
}

void* __real__ZN3qxe11zvk_reallocEPvm(void* block, size_t size);
void* __wrap__ZN3qxe11zvk_reallocEPvm(void* block, size_t size);
void* __wrap__ZN3qxe11zvk_reallocEPvm(void* block, size_t size) {
  void* const moved = __real__ZN3qxe11zvk_reallocEPvm(block, size);
  blocks().remove(block);
  if (size > 0) blocks().add(moved, size);
  return moved;
}

void __real__ZN3qxe8zvk_freeEPv(void* block) noexcept;
void __wrap__ZN3qxe8zvk_freeEPv(void* block) noexcept;
void __wrap__ZN3qxe8zvk_freeEPv(void* block) noexcept {
  blocks().remove(block);
  __real__ZN3qxe8zvk_freeEPv(block);
}
}
// NOLINTEND(bugprone-reserved-identifier)

void* operator new(size_t size) {
  void* const block = malloc(size > 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  count(static_cast<long>(malloc_usable_size(block)));
  return block;
}

void operator delete(void* block) noexcept {
  if (block != nullptr) count(-static_cast<long>(malloc_usable_size(block)));
  free(block);
}

void operator delete(void* block, size_t) noexcept {
  operator delete(block);
}
