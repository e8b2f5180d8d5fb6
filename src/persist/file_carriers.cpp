#include "persist/file_carriers.h"

#include <errno.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "frame/base/error_ring.h"
#include "search/compiler_steps.h"

namespace qxe {

namespace {

/// Below this the way through the buffer is as fast.
constexpr long kBulkBytes = 0x40000;
/// At once: the system may be asked to stop in between.
constexpr long kPiece = 0x400000;

[[noreturn]] void fail() {
  throw CQXException(QX_ERROR_FILE);
}

/// Calls `transfer(begin, count)`, which returns the bytes moved, until all of `slice` is done.
template <class Transfer>
void transfer_all(Slice slice, const Transfer& transfer) {
  while (slice.begin < slice.end) {
    const long moved = transfer(slice.begin, std::min(slice.size(), kPiece));
    if (moved < 0 && errno == EINTR) continue;
    if (moved <= 0) fail();
    slice.begin += moved;
  }
}

/// The same for `bytes` bytes, shared by the workers.
template <class Transfer>
void transfer_bulk(long bytes, const Transfer& transfer) {
  const int workers = ENG->n_threads_for_elements(bytes, kBulkBytes);
  run_step(QX_MPP_MEMCPY, workers,
           [&](int worker) { transfer_all(even_slice(bytes, workers, worker), transfer); });
}

void seek_to(zvk_fstream& stream, long offset) {
  if (stream.seekg(offset, SEEK_SET) == 0) return;
  stream.close();
  throw CQXException(report("zvk_fstream", QX_ERROR_FILE, "File IO error"));
}

long position_of(const zvk_fstream& stream) {
  const long position = stream.tellg();
  if (position < 0) fail();
  return position;
}

}  // namespace

void FileWriter::write_bulk(const void* data, size_t size, long n) {
  const long bytes = static_cast<long>(size) * n;
  if (bytes < kBulkBytes) return write(data, size, n);
  if (stream_.adjust_write_addr_alignment() != 0 || stream_.flush() != 0) fail();
  const long start = position();
  const char* const from = static_cast<const char*>(data);
  transfer_bulk(bytes, [&, file = stream_.descriptor()](long begin, long count) {
    return pwrite(file, from + begin, static_cast<size_t>(count), start + begin);
  });
  seek(start + bytes);
}

void FileWriter::seek(long offset) {
  seek_to(stream_, offset);
}

long FileWriter::position() const {
  return position_of(stream_);
}

FileReader::FileReader(const std::string& path) {
  zvk_open(stream_, path.c_str(), kBinaryRead, false);
  struct stat info;
  if (fstat(stream_.descriptor(), &info) != 0 || !S_ISREG(info.st_mode)) fail();
  size_ = info.st_size;
}

void FileReader::read_bulk(void* data, size_t size, long n) {
  const long bytes = static_cast<long>(size) * n;
  if (bytes < kBulkBytes || description().Endian != getSystemEndian()) return read(data, size, n);
  if (stream_.adjust_read_addr_alignment() != 0) fail();
  const long start = position();
  char* const to = static_cast<char*>(data);
  transfer_bulk(bytes, [&, file = stream_.descriptor()](long begin, long count) {
    return pread(file, to + begin, static_cast<size_t>(count), start + begin);
  });
  seek(start + bytes);
}

void FileReader::read_header() {
  if (stream_.seek_addr_alignment() != 0) fail();
  stream_.readFileHeader(false);
}

void FileReader::seek(long offset) {
  seek_to(stream_, offset);
}

long FileReader::position() const {
  return position_of(stream_);
}

}  // namespace qxe
