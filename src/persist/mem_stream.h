// The memory stream: tables and a client's own data, one behind the other, in memory of the engine
// that grows, or in a client's area to read.
#pragma once

#include "persist/memory_carrier.h"

namespace qxe {

class TMemStream : public MemoryCarrier {
 public:
  enum class Mode { kClosed, kRead, kWrite };

  /// Empty and open for writing, in place of what was open before.
  void open_write();
  /// Reads the caller's area, which must outlive the open stream. The area that was written before
  /// may be read like this, and belongs to the stream until it is closed.
  void open_read(void* area, long size);
  void close();

  Mode OpenMode() const { return mode_; }
  /// Bytes written or to be read, padding included.
  long nUsed() const { return mode_ == Mode::kWrite ? position_ : end_; }
  long Pos() const { return position_; }
  void* pArea() const { return area_; }
  /// Goes to a place within what is used; a place behind it is its end.
  void Seek(long position);
  bool at_end() const { return position_ >= nUsed(); }

  /// Throws QX_ERROR_MEM_STREAM unless the stream is open like this.
  void check_mode(Mode wanted) const;
  /// A client's bytes, padded like a field.
  void writeStream(const void* data, int size) { write(data, 1, size); }
  /// Takes at most `size` bytes behind the padding; returns how many.
  int readStream(void* data, int size);
  /// Reads the header of a table; without one the table is not aligned. Half a header closes the
  /// stream and throws QX_ERROR_MEM_IMAGE.
  void read_header();

 protected:
  /// When there is no memory the stream is closed; throws QX_ERROR_OUT_OF_MEMORY.
  void make_room(long bytes) override;

 private:
  void become(Mode mode, void* area, long end);
  void skip_padding();

  Mode mode_ = Mode::kClosed;
  Block<char> own_;  // what was written; null for a client's area
};

/// The one stream of the engine.
extern TMemStream MemStream;

}  // namespace qxe
