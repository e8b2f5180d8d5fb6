// What sections of files and images are written to and read from: a file, a client's block, the
// memory stream, or a counter. A layout is told once, against these two classes.
#pragma once

#include <stddef.h>

#include "frame/base/exception.h"
#include "frame/base/memory.h"
#include "persist/zvk_fstream.h"

namespace qxe {

/// How far the numbers, as unsigned ones, lie above `first` at most.
unsigned largest_distance(const int* numbers, long n, int first);

/// Every write is one field of the layout: padding by the rule of field_padding(), then `n`
/// elements of `size` bytes; no bytes are no field. A failure throws the carrier's status.
class SectionWriter : NonCopyable {
 public:
  virtual ~SectionWriter() = default;
  virtual void write(const void* data, size_t size, long n) = 0;
  /// The same bytes, for the elements of an array: may use the workers.
  virtual void write_bulk(const void* data, size_t size, long n) { write(data, size, n); }
};

/// Every read is one field. Its elements arrive in this machine's byte order; a short read throws
/// the carrier's status.
class SectionReader : NonCopyable {
 public:
  virtual ~SectionReader() = default;
  virtual void read(void* data, size_t size, long n) = 0;
  /// The same, for the elements of an array: may use the workers.
  virtual void read_bulk(void* data, size_t size, long n) { read(data, size, n); }
  /// The same for integers, and the largest distance above `first`, taken as unsigned; `n` is not
  /// 0.
  virtual unsigned read_numbers(int* numbers, long n, int first) {
    read_bulk(numbers, sizeof *numbers, n);
    return largest_distance(numbers, n, first);
  }
  /// The machine that wrote the sections.
  virtual const StreamDescription& description() const = 0;
  /// No field can be longer than this; nothing is allocated for one that claims to be. The longest
  /// long for a block whose end is not known.
  virtual long bytes_left() const = 0;
  /// What a read beyond the end throws.
  virtual int status_at_end() const = 0;

  /// Throws that status when `n` elements of `size` bytes cannot be left.
  void check_left(size_t size, long n) const {
    if (n > bytes_left() / static_cast<long>(size)) throw CQXException(status_at_end());
  }
};

/// A field of one value.
template <class Value>
void write_field(SectionWriter& writer, const Value& value) {
  writer.write(&value, sizeof value, 1);
}

template <class Value>
Value read_field(SectionReader& reader) {
  Value value{};
  reader.read(&value, sizeof value, 1);
  return value;
}

}  // namespace qxe
