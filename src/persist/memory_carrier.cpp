#include "persist/memory_carrier.h"

#include <stdint.h>
#include <string.h>

#include "parallel/mpp_memory.h"
#include "storage/charcode.h"

namespace qxe {

namespace {

constexpr long kMaxPadding = 7;

}  // namespace

void MemoryCarrier::write(const void* data, size_t size, long n) {
  if (size == 0 || n == 0) return;
  const long padding = field_padding(position_);
  const long bytes = static_cast<long>(size) * n;
  make_room(padding + bytes);
  memset(area_ + position_, 0, static_cast<size_t>(padding));
  MppMemCpy(area_ + position_ + padding, data, static_cast<unsigned long>(bytes));
  position_ += padding + bytes;
}

void MemoryCarrier::read(void* data, size_t size, long n) {
  if (size == 0 || n == 0) return;
  const long padding = description_.AddrAlignment == 0 ? 0 : field_padding(position_);
  const long left = bytes_left() - padding;
  if (left < 0 || n < 0 || n > left / static_cast<long>(size)) {
    throw CQXException(QX_ERROR_MEM_IMAGE);
  }
  const long bytes = static_cast<long>(size) * n;
  MppMemCpy(data, area_ + position_ + padding, static_cast<unsigned long>(bytes));
  position_ += padding + bytes;
  if (is_foreign(description_)) flip_elements(data, size, n);
}

void MemoryCarrier::write_header() {
  write(QxeSysInfo, 1, kStreamHeaderSize);
}

bool MemoryCarrier::take_header() {
  const auto* const header = reinterpret_cast<const unsigned char*>(area_) + position_;
  if (bytes_left() < 1 || !is_stream_header(header)) return false;
  if (bytes_left() < kStreamHeaderSize) throw CQXException(QX_ERROR_MEM_IMAGE);
  description_ = describe_stream(header);
  position_ += kStreamHeaderSize;
  return true;
}

CMemFile::CMemFile(void* block, long size) : MemoryCarrier(block, size) {
  if (field_padding(static_cast<long>(reinterpret_cast<intptr_t>(block))) != 0) {
    throw CQXException(QX_ERROR_ALIGNMENT);
  }
}

void CMemFile::read_header() {
  if (!take_header()) throw CQXException(QX_ERROR_MEM_IMAGE);
}

void CMemFile::write_trailer() {
  constexpr char kMark[8] = "QXTFEND";
  const long size = position_;
  const long behind_mark = position_ + field_padding(position_) + static_cast<long>(sizeof kMark);
  const long trailer = behind_mark + field_padding(behind_mark) + static_cast<long>(sizeof size);
  if (trailer > end_) return;
  write(kMark, 1, sizeof kMark);
  write(&size, sizeof size, 1);
}

void CMemFile::make_room(long bytes) {
  if (bytes > bytes_left()) throw CQXException(QX_ERROR_OUT_OF_MEMORY);
}

void ImageSize::write(const void*, size_t size, long n) {
  if (size == 0 || n == 0) return;
  bytes_ += static_cast<long>(size) * n + kMaxPadding + 1;
}

}  // namespace qxe
