#include "persist/file_carriers.h"

#include <errno.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "frame/base/error_ring.h"
#include "persist/bulk_write.h"
#include "search/compiler_steps.h"

namespace qxe {

namespace {

/// Below this the way through the buffer is as fast.
constexpr long kBulkBytes = 0x40000;
/// At once: what stays in the processor's cache until it has been looked at.
constexpr long kPieceBytes = 0x40000;

[[noreturn]] void fail() {
  throw CQXException(QX_ERROR_FILE);
}

}  // namespace

/// An array between file and memory: its elements, shared by the workers.
class BulkTransfer {
 public:
  BulkTransfer(size_t unit, long elements)
      : unit_(static_cast<long>(unit)),
        elements_(elements),
        workers_(ENG->n_threads_for_elements(bytes(), kBulkBytes)) {}

  long bytes() const { return unit_ * elements_; }
  int workers() const { return workers_; }

  /// `read(bytes)` reads a piece, `inspect(worker, elements)` sees it then.
  template <class Read, class Inspect>
  void run(const Read& read, const Inspect& inspect) const {
    run_step(QX_MPP_MEMCPY, workers_, [&](int worker) {
      const Slice own = even_slice(elements_, workers_, worker);
      const long step = kPieceBytes / unit_;
      for (long begin = own.begin; begin < own.end; begin += step) {
        const Slice piece{begin, std::min(begin + step, own.end)};
        read({piece.begin * unit_, piece.end * unit_});
        inspect(worker, piece);
      }
    });
  }

 private:
  long unit_;
  long elements_;
  int workers_;
};

namespace {

void nothing(int /*worker*/, Slice /*elements*/) {}

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
  if (!write_bulk_bytes(stream_.descriptor(), start, static_cast<const char*>(data), bytes)) fail();
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

bool FileReader::goes_past_buffer(long bytes) const {
  return bytes >= kBulkBytes && description().Endian == getSystemEndian();
}

template <class Inspect>
void FileReader::read_past_buffer(void* data, const BulkTransfer& bulk, const Inspect& inspect) {
  if (stream_.adjust_read_addr_alignment() != 0) fail();
  const long start = position();
  const auto read = [&, file = stream_.descriptor()](Slice bytes) {
    while (bytes.begin < bytes.end) {
      const ssize_t moved = pread(file, static_cast<char*>(data) + bytes.begin,
                                  static_cast<size_t>(bytes.size()), start + bytes.begin);
      if (moved < 0 && errno == EINTR) continue;
      if (moved <= 0) fail();
      bytes.begin += moved;
    }
  };
  bulk.run(read, inspect);
  seek(start + bulk.bytes());
}

void FileReader::read_bulk(void* data, size_t size, long n) {
  const BulkTransfer bulk(size, n);
  if (!goes_past_buffer(bulk.bytes())) return read(data, size, n);
  read_past_buffer(data, bulk, nothing);
}

unsigned FileReader::read_numbers(int* numbers, long n, int first) {
  const BulkTransfer bulk(sizeof *numbers, n);
  if (!goes_past_buffer(bulk.bytes())) return SectionReader::read_numbers(numbers, n, first);
  std::vector<unsigned> largest(static_cast<size_t>(bulk.workers()), 0);
  read_past_buffer(numbers, bulk, [&](int worker, Slice piece) {
    unsigned& own = largest[static_cast<size_t>(worker)];
    own = std::max(own, largest_distance(numbers + piece.begin, piece.size(), first));
  });
  return *std::max_element(largest.begin(), largest.end());
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
