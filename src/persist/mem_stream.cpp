#include "persist/mem_stream.h"

#include <string.h>

#include <algorithm>

#include "frame/base/error_ring.h"

namespace qxe {

namespace {

constexpr long kStep = 1'000'000;

}  // namespace

TMemStream MemStream;

void TMemStream::become(Mode mode, void* area, long end) {
  mode_ = mode;
  area_ = static_cast<char*>(area);
  end_ = end;
  position_ = 0;
}

void TMemStream::open_write() {
  close();
  own_ = make_block<char>(kStep);
  become(Mode::kWrite, own_.get(), kStep);
}

void TMemStream::open_read(void* area, long size) {
  if (area != own_.get()) own_.reset();
  become(Mode::kRead, area, size);
}

void TMemStream::close() {
  own_.reset();
  become(Mode::kClosed, nullptr, 0);
}

void TMemStream::Seek(long position) {
  position_ = std::min(position, nUsed());
}

void TMemStream::check_mode(Mode wanted) const {
  if (mode_ == wanted) return;
  throw CQXException(QX_ERROR_MEM_STREAM, "Invalid memstreem");
}

void TMemStream::skip_padding() {
  position_ = std::min(position_ + field_padding(position_), end_);
}

int TMemStream::readStream(void* data, int size) {
  if (size == 0) return 0;
  skip_padding();
  const long taken = std::min<long>(size, bytes_left());
  if (taken > 0) memcpy(data, area_ + position_, static_cast<size_t>(taken));
  position_ += taken;
  return static_cast<int>(taken);
}

void TMemStream::read_header() {
  skip_padding();
  try {
    if (!take_header()) description_ = describe_headerless_stream();
  } catch (const CQXException&) {
    close();
    throw;
  }
}

/// Grows by half, so that writing stays linear however long the stream gets.
void TMemStream::make_room(long bytes) {
  if (bytes <= bytes_left()) return;
  const long size = std::max(position_ + bytes + kStep, end_ + end_ / 2);
  try {
    char* const grown = static_cast<char*>(zvk_realloc(own_.get(), static_cast<size_t>(size)));
    (void)own_.release();  // moved to its new place
    own_.reset(grown);
  } catch (const CQXException&) {
    close();
    throw CQXException(QX_ERROR_OUT_OF_MEMORY, "Out of memory");
  }
  area_ = own_.get();
  end_ = size;
}

}  // namespace qxe
