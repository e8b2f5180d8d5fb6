// A text file as memory, for parsers that scan it in place.
#pragma once

#include <string>

#include "frame/base/memory.h"

namespace qxe {

/// A regular file mapped read-only and private. What another process writes meanwhile may show; a
/// file that it cuts short ends the process, as with every mapped file.
class MappedFile : NonCopyable {
 public:
  /// Bytes behind the end that can be read, so that scanners may load whole blocks.
  static constexpr long kReadable = 64;

  /// Throws QX_ERROR_FILE when there is no such regular file or it cannot be read.
  explicit MappedFile(const std::string& path);
  ~MappedFile();

  const char* begin() const { return static_cast<const char*>(area_); }
  const char* end() const { return begin() + size_; }
  long size() const { return size_; }

 private:
  void* area_ = nullptr;
  size_t mapped_ = 0;
  long size_ = 0;
};

/// A missing file also gets its line in the log.
MappedFile map_logged(const std::string& path);

}  // namespace qxe
