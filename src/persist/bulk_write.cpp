// A file takes one write at a time, whoever calls. So one worker writes, into room that has been
// reserved for the whole run; several would wait for each other.
//
// In a file system in memory the time goes into making pages. A mapping makes them beside the one
// write under way: one worker writes from the front, the others fill a mapping from the back, until
// they meet.
#include "persist/bulk_write.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

#include "frame/base/exception.h"
#include "search/compiler_steps.h"

namespace qxe {

namespace {

/// A worker is worth this many bytes, and takes about this many pieces of a run.
constexpr long kBytesPerWorker = 0x40000;
constexpr long kPiecesPerWorker = 32;
constexpr long kSmallestPiece = 0x10000;

struct Run {
  int file;
  long start;
  const char* data;
  long bytes;
};

bool write_all(const Run& run, Slice bytes) {
  while (bytes.begin < bytes.end) {
    const ssize_t moved = pwrite(run.file, run.data + bytes.begin,
                                 static_cast<size_t>(bytes.size()), run.start + bytes.begin);
    if (moved < 0 && errno == EINTR) continue;
    if (moved <= 0) return false;
    bytes.begin += moved;
  }
  return true;
}

bool is_in_memory(int file) {
  struct statfs info;
  return fstatfs(file, &info) == 0 && info.f_type == TMPFS_MAGIC;
}

/// The part of a file that a run goes to, as memory.
class MappedRun : NonCopyable {
 public:
  explicit MappedRun(const Run& run) : run_(run) {
    const long front = run.start % page_;
    if (!reaches(run.start + run.bytes)) return;
    size_ = static_cast<size_t>(front + run.bytes);
    area_ = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED, run.file, run.start - front);
    if (is_mapped()) place_ = static_cast<char*>(area_) + front;
  }
  ~MappedRun() {
    if (is_mapped()) munmap(area_, size_);
  }

  bool is_mapped() const { return area_ != MAP_FAILED; }

  /// Returns how many bytes got there, none where there is no room. The system copies: where the
  /// file has no page, it tells so instead of raising a signal.
  long put(Slice bytes) const {
    const auto size = static_cast<size_t>(bytes.size());
    const iovec from{const_cast<char*>(run_.data) + bytes.begin, size};
    const iovec to{place_ + bytes.begin, size};
    const ssize_t moved = process_vm_writev(getpid(), &from, 1, &to, 1, 0);
    leave(to);
    return std::max<long>(moved, 0);
  }

 private:
  bool reaches(long end) const {
    struct stat info;
    return fstat(run_.file, &info) == 0 && (info.st_size >= end || ftruncate(run_.file, end) == 0);
  }

  /// Takes pages out of the mapping, not out of the file, on the worker that filled them.
  void leave(const iovec& piece) const {
    const long front = (static_cast<char*>(piece.iov_base) - static_cast<char*>(area_)) % page_;
    madvise(static_cast<char*>(piece.iov_base) - front, piece.iov_len + static_cast<size_t>(front),
            MADV_DONTNEED);
  }

  const Run& run_;
  const long page_ = sysconf(_SC_PAGESIZE);
  size_t size_ = 0;
  void* area_ = MAP_FAILED;
  char* place_ = nullptr;
};

bool write_from_both_ends(const Run& run, const MappedRun& mapped, int workers) {
  const long piece = std::max(run.bytes / (kPiecesPerWorker * workers), kSmallestPiece);
  const long pieces = (run.bytes + piece - 1) / piece;
  std::atomic<long> left = pieces;
  std::atomic<long> behind = pieces;
  std::atomic<bool> written = true;
  run_step(QX_MPP_MEMCPY, workers, [&](int worker) {
    for (long front = 0; left.fetch_sub(1) > 0; ++front) {
      const long begin = (worker == 0 ? front : behind.fetch_sub(1) - 1) * piece;
      const Slice bytes{begin, std::min(begin + piece, run.bytes)};
      const long there = worker == 0 ? 0 : mapped.put(bytes);
      if (!write_all(run, {bytes.begin + there, bytes.end})) written = false;
    }
  });
  return written;
}

}  // namespace

bool write_bulk_bytes(int file, long start, const char* data, long bytes) {
  const Run run{file, start, data, bytes};
  if (!is_in_memory(file)) {
    // Where room cannot be reserved, or there is none, the writes will tell.
    (void)fallocate(file, 0, start, bytes);
    return write_all(run, {0, bytes});
  }
  const int workers = ENG->n_threads_for_elements(bytes, kBytesPerWorker);
  if (workers > 1) {
    const MappedRun mapped(run);
    if (mapped.is_mapped()) return write_from_both_ends(run, mapped, workers);
  }
  return write_all(run, {0, bytes});
}

}  // namespace qxe
