#include "import/source_file.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

#include "frame/base/exception.h"
#include "import/cell_scanner.h"
#include "import/errlog.h"

namespace qxe {

namespace {

// A quarter of a second level cache, so that the parser finds the block there.
std::atomic<long> g_read_block{256 << 10};

[[noreturn]] void fail_missing(const std::string& path) {
  throw CQXException(QX_ERROR_FILE, "FILE  [%s] MISSING ", path.c_str());
}

}  // namespace

void set_read_block(long bytes) noexcept {
  g_read_block.store(bytes);
}

SourceFile::SourceFile(const std::string& path)
    : path_(path), handle_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (handle_ < 0) fail_missing(path_);
  struct stat info;
  if (fstat(handle_, &info) == 0 && S_ISREG(info.st_mode)) {
    size_ = info.st_size;
    return;
  }
  close(handle_);
  fail_missing(path_);
}

SourceFile::~SourceFile() {
  close(handle_);
}

void SourceFile::read(long offset, long count, char* out) const {
  while (count > 0) {
    const ssize_t got = pread(handle_, out, static_cast<size_t>(count), offset);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      throw CQXException(QX_ERROR_FILE, "FILE  [%s] CANNOT BE READ ", path_.c_str());
    }
    offset += got;
    count -= got;
    out += got;
  }
}

FileText SourceFile::read_all() const {
  FileText text{make_block<char>(size_ + kReadable), size_};
  read(0, size_, text.bytes.get());
  std::fill_n(text.bytes.get() + size_, kReadable, '\0');
  return text;
}

long SourceFile::behind_lines(long begin, long end, long count) const {
  LineBlocks blocks(*this, begin, end);
  while (count > 0 && blocks.next()) {
    const char* const place = qxe::behind_lines(blocks.begin(), blocks.end(), count);
    if (count == 0) return blocks.offset() - (blocks.end() - place);
  }
  return blocks.offset();
}

LineBlocks::LineBlocks(const SourceFile& file, long begin, long end)
    : file_(file), offset_(begin), end_(end) {}

// What is left of a last line is read again as the beginning of the next block.
bool LineBlocks::next() {
  const long left = end_ - offset_;
  if (left <= 0) return false;
  long filled = 0;
  for (long wanted = g_read_block.load();; wanted *= 2) {
    filled = read_up_to(filled, std::min(wanted, left));
    if (filled == left) break;
    const void* const last = memrchr(buffer_.get(), '\n', static_cast<size_t>(filled));
    if (last == nullptr) continue;
    filled = static_cast<const char*>(last) + 1 - buffer_.get();
    break;
  }
  size_ = filled;
  offset_ += filled;
  return true;
}

long LineBlocks::read_up_to(long filled, long capacity) {
  if (capacity > capacity_) {
    Block<char> larger = make_block<char>(capacity + SourceFile::kReadable);
    std::copy_n(buffer_.get(), filled, larger.get());
    std::fill_n(larger.get() + capacity, SourceFile::kReadable, '\0');
    buffer_ = std::move(larger);
    capacity_ = capacity;
  }
  file_.read(offset_ + filled, capacity - filled, buffer_.get() + filled);
  return capacity;
}

SourceFile open_logged(const std::string& path) {
  try {
    return SourceFile(path);
  } catch (const CQXException& failure) {
    if (failure.ErrorCode() == QX_ERROR_FILE) LogMsg("FILE  [%s] MISSING ", path.c_str());
    throw;
  }
}

}  // namespace qxe
