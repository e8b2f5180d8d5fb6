#include "import/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "frame/base/exception.h"
#include "import/errlog.h"

namespace qxe {

namespace {

class FileHandle : NonCopyable {
 public:
  explicit FileHandle(const char* path) : handle_(open(path, O_RDONLY | O_CLOEXEC)) {}
  ~FileHandle() {
    if (handle_ >= 0) close(handle_);
  }
  int get() const { return handle_; }

 private:
  int handle_;
};

}  // namespace

MappedFile::MappedFile(const std::string& path) {
  const FileHandle file(path.c_str());
  struct stat info;
  if (file.get() < 0 || fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
    throw CQXException(QX_ERROR_FILE, "FILE  [%s] MISSING ", path.c_str());
  }
  size_ = info.st_size;
  // Anonymous pages first, the file over them: the ones left behind its end are the readable rest.
  mapped_ = static_cast<size_t>(size_ + kReadable);
  void* const area = mmap(nullptr, mapped_, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (area == MAP_FAILED) throw CQXException(QX_ERROR_OUT_OF_MEMORY);
  area_ = area;
  if (size_ == 0) return;
  if (mmap(area_, static_cast<size_t>(size_), PROT_READ, MAP_PRIVATE | MAP_FIXED, file.get(), 0) ==
      MAP_FAILED) {
    munmap(area_, mapped_);
    throw CQXException(QX_ERROR_FILE, "FILE  [%s] MISSING ", path.c_str());
  }
}

MappedFile::~MappedFile() {
  munmap(area_, mapped_);
}

MappedFile map_logged(const std::string& path) {
  try {
    return MappedFile(path);
  } catch (const CQXException& failure) {
    if (failure.ErrorCode() == QX_ERROR_FILE) LogMsg("FILE  [%s] MISSING ", path.c_str());
    throw;
  }
}

}  // namespace qxe
