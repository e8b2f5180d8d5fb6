// Text files as their parsers see them: whole lines in memory, block by block. Blocks are read, not
// mapped: reading into a block that stays in the processor's cache costs no more than the faults of
// fresh mappings, memory does not grow with the file, and a file that another process cuts short
// meanwhile is a fault and no crash.
#pragma once

#include <string>

#include "frame/base/memory.h"

namespace qxe {

/// A whole file in memory.
struct FileText {
  Block<char> bytes;
  long size = 0;

  const char* begin() const { return bytes.get(); }
  const char* end() const { return bytes.get() + size; }
};

/// A regular file, as long as it is when it is opened.
class SourceFile : NonCopyable {
 public:
  /// Bytes behind a text that can be read, so that scanners may load whole blocks.
  static constexpr long kReadable = 64;

  /// Throws QX_ERROR_FILE when there is no such regular file or it cannot be opened.
  explicit SourceFile(const std::string& path);
  ~SourceFile();

  const std::string& path() const { return path_; }
  long size() const { return size_; }

  /// Reads `count` bytes that the file has from `offset` on. Throws QX_ERROR_FILE when it cannot be
  /// read or has become shorter.
  void read(long offset, long count, char* out) const;
  /// All of it; kReadable bytes of 0 follow.
  FileText read_all() const;
  /// Offset behind the first `count` lines from `begin` on, at most `end`.
  long behind_lines(long begin, long end, long count) const;

 private:
  const std::string path_;
  int handle_;
  long size_ = 0;
};

/// Walks a range of a file by blocks of whole lines. Only the last block may lack its line feed.
class LineBlocks : NonCopyable {
 public:
  LineBlocks(const SourceFile& file, long begin, long end);

  /// Reads the next block; false at the end of the range.
  bool next();
  /// The block; kReadable bytes follow. Replaced by the next one.
  const char* begin() const { return buffer_.get(); }
  const char* end() const { return buffer_.get() + size_; }
  /// Offset in the file of the block's end.
  long offset() const { return offset_; }

 private:
  long read_up_to(long filled, long capacity);

  const SourceFile& file_;
  long offset_;
  const long end_;
  Block<char> buffer_;
  long capacity_ = 0;
  long size_ = 0;
};

/// Bytes that are read at once; a longer line is read in steps that double. Test hook.
void set_read_block(long bytes) noexcept;

/// A missing file also gets its line in the log.
SourceFile open_logged(const std::string& path);

}  // namespace qxe
