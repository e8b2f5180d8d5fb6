// An array of plain values that grows, on blocks of the engine's allocator.
#pragma once

#include <utility>

#include "frame/base/memory.h"

namespace qxe {

template <class T>
class GrowingBlock {
 public:
  long size() const { return size_; }
  T* data() { return block_.get(); }
  const T* data() const { return block_.get(); }
  T& operator[](long i) { return block_[static_cast<size_t>(i)]; }
  const T& operator[](long i) const { return block_[static_cast<size_t>(i)]; }

  /// Room for `capacity` elements in all.
  void reserve(long capacity) {
    if (capacity <= capacity_) return;
    Block<T> grown = make_block<T>(capacity);
    if (size_ > 0) memcpy(grown.get(), block_.get(), sizeof(T) * static_cast<size_t>(size_));
    block_ = std::move(grown);
    capacity_ = capacity;
  }

  /// Adds `count` elements, not set, and returns the first.
  T* extend(long count) {
    if (size_ + count > capacity_) reserve(size_ + count + size_ / 2 + 16);
    T* const added = data() + size_;
    size_ += count;
    return added;
  }
  void push_back(const T& value) { *extend(1) = value; }
  void shrink(long size) { size_ = size; }

  /// Hands the block over and is empty from then on.
  Block<T> take() {
    size_ = capacity_ = 0;
    return std::move(block_);
  }

 private:
  static_assert(std::is_trivially_copyable_v<T>);

  Block<T> block_;
  long size_ = 0;
  long capacity_ = 0;
};

}  // namespace qxe
