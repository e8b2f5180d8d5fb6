// Blocks of memory for images: aligned, and with a guard behind that shows an overrun.
#pragma once

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "qxe.h"

namespace qxe::test {

class ImageBlock {
 public:
  explicit ImageBlock(long size) : size_(size), words_(static_cast<size_t>(size) / 8 + 9) {
    memset(words_.data(), kGuard, words_.size() * 8);
  }
  explicit ImageBlock(const std::string& bytes) : ImageBlock(static_cast<long>(bytes.size())) {
    memcpy(words_.data(), bytes.data(), bytes.size());
  }
  ImageBlock(const ImageBlock&) = delete;
  ImageBlock& operator=(const ImageBlock&) = delete;
  ~ImageBlock() {
    for (long i = size_; i < static_cast<long>(words_.size()) * 8; ++i) {
      EXPECT_EQ(at(0)[i], static_cast<char>(kGuard)) << "written behind the block";
    }
  }

  char* at(long offset) { return reinterpret_cast<char*>(words_.data()) + offset; }
  long offset_of(const void* place) { return static_cast<const char*>(place) - at(0); }
  long size() const { return size_; }
  std::string bytes(long count) { return {at(0), static_cast<size_t>(count)}; }

 private:
  static constexpr int kGuard = 0x5a;

  long size_;
  std::vector<long> words_;
};

}  // namespace qxe::test
