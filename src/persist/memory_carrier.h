// Sections in memory: in a block of a client, in the stream, or only counted.
#pragma once

#include <limits.h>

#include "persist/section_carrier.h"

namespace qxe {

/// Sections in one run of memory, from its first byte on. It is written or read, not both.
class MemoryCarrier : public SectionWriter, public SectionReader {
 public:
  void write(const void* data, size_t size, long n) override;
  void read(void* data, size_t size, long n) override;
  void write_header();

  const StreamDescription& description() const override { return description_; }
  long bytes_left() const override { return end_ - position_; }
  int status_at_end() const override { return QX_ERROR_MEM_IMAGE; }

 protected:
  MemoryCarrier() = default;
  MemoryCarrier(void* area, long end) : area_(static_cast<char*>(area)), end_(end) {}

  /// Makes room for `bytes` more, or throws.
  virtual void make_room(long bytes) = 0;
  /// Whether a stream header stands here, which is read then.
  bool take_header();

  char* area_ = nullptr;
  long end_ = 0;  // bytes of the area
  long position_ = 0;
  StreamDescription description_;
};

/// A block of a client that begins with an image.
class CMemFile : public MemoryCarrier {
 public:
  /// Size of a block to read whose end is not known: what the image says is trusted.
  static constexpr long kUnbounded = LONG_MAX;

  /// Throws QX_ERROR_ALIGNMENT for a block that does not lie on a multiple of 8.
  CMemFile(void* block, long size);

  /// Throws QX_ERROR_MEM_IMAGE when there is none.
  void read_header();
  /// Closes a table image with a trailer: a mark and the bytes before it. Left out where there is
  /// no room.
  void write_trailer();
  /// Place reached.
  void* end() const { return area_ + position_; }
  long used() const { return position_; }

 protected:
  /// Throws QX_ERROR_OUT_OF_MEMORY.
  void make_room(long bytes) override;
};

/// Counts what an image would take. The sum is not too small and mostly too large: for each field
/// it has room for any padding.
class ImageSize : public SectionWriter {
 public:
  /// A mark and a size. What padding they need is spare in the fields before.
  static constexpr long kTrailer = 16;

  void write(const void*, size_t size, long n) override;
  long bytes() const { return bytes_; }

 private:
  long bytes_ = kStreamHeaderSize;
};

}  // namespace qxe
