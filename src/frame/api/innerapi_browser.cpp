// Serial layer: the file browser, a thin layer over the file calls of the system.
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <utility>

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "frame/base/error_ring.h"
#include "persist/file_browser.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr size_t kNameSlot = 256;
constexpr size_t kPathSize = 4096;

/// What a reason of the system means to a client.
struct KnownReason {
  int reason;
  int code;
};

/// Logs the failure of the system call before.
int system_failure(const char* layer, const char* text, int code,
                   std::initializer_list<KnownReason> known = {}) {
  const int reason = errno;
  for (const KnownReason& entry : known) {
    if (entry.reason == reason) code = entry.code;
  }
  return report(layer, reason == ENOMEM ? QX_ERROR_OUT_OF_MEMORY : code, "%s", text);
}

int missing_path(const char* layer) {
  return report(layer, QX_ERROR_FILE, "Illegal FileName");
}

/// A file by its handle, closed at the end.
class OpenFile : NonCopyable {
 public:
  /// Does not wait for the other end of a pipe.
  OpenFile(const char* path, int flags)
      : handle_(open(path, flags | O_CLOEXEC | O_NONBLOCK, 0666)) {}
  ~OpenFile() { close_now(); }

  bool is_open() const { return handle_ >= 0; }
  bool is_pipe() const {
    struct stat info;
    return fstat(handle_, &info) == 0 && S_ISFIFO(info.st_mode);
  }

  /// Bytes read, fewer at the file's end only; -1 for a failure.
  int read(long position, int length, char* out) const {
    int done = 0;
    while (done < length) {
      const ssize_t got =
          pread(handle_, out + done, static_cast<size_t>(length - done), position + done);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return -1;
      if (got == 0) break;
      done += static_cast<int>(got);
    }
    return done;
  }

  bool write_and_close(const char* data, int length) {
    while (length > 0) {
      const ssize_t put = write(handle_, data, static_cast<size_t>(length));
      if (put < 0 && errno == EINTR) continue;
      if (put <= 0) return false;
      data += put;
      length -= static_cast<int>(put);
    }
    return close_now();
  }

 private:
  bool close_now() {
    const int handle = std::exchange(handle_, -1);
    return handle < 0 || close(handle) == 0;
  }

  int handle_;
};

}  // namespace

// Directories

int innerRQXBrowserGetCurrentDirectory(char* path) {
  if (getcwd(path, kPathSize) != nullptr) return 0;
  return system_failure("RQXBrowserGetCurrentDirectory", "Failed to get current directory",
                        QX_ERROR_DELETE);
}

int innerRQXBrowserSetCurrentDirectory(const char* path) {
  static constexpr char kLayer[] = "RQXBrowserSetCurrentDirectory";
  if (path == nullptr) return missing_path(kLayer);
  if (*path == '\0' || chdir(path) == 0) return 0;
  return system_failure(kLayer, "Failed to set current directory", QX_ERROR_DELETE,
                        {{EACCES, QX_ERROR_ACCESS}});
}

int innerRQXBrowserMakeDirectory(const char* path) {
  static constexpr char kLayer[] = "RQXBrowserMakeDirectory";
  constexpr mode_t kMode = 0766;
  if (path == nullptr) return missing_path(kLayer);
  if (mkdir(path, kMode) == 0) return 0;
  return system_failure(kLayer, "Failed to make directory", QX_ERROR_DELETE,
                        {{EEXIST, QX_ERROR_EXISTS}, {EIO, QX_ERROR_ACCESS}});
}

namespace {

/// "..": its content holds the place where the path begins, so it is not deleted with all in it.
bool names_parent(const char* path) {
  std::string_view rest = path;
  while (rest.ends_with('/')) rest.remove_suffix(1);
  return rest == ".." || rest.ends_with("/..");
}

bool remove_directory(const char* path, bool recursive) {
  if (rmdir(path) == 0) return true;
  const bool not_empty = errno == ENOTEMPTY || errno == EEXIST;
  return not_empty && recursive && !names_parent(path) && recursive_removeDir(path) == 0;
}

}  // namespace

int innerRQXBrowserDelDirectory(const char* path, int recursive) {
  static constexpr char kLayer[] = "RQXBrowserDelDirectory";
  if (path == nullptr) return missing_path(kLayer);
  if (remove_directory(path, recursive != 0)) return 0;
  return system_failure(kLayer, "Failed to delete directory", QX_ERROR_DELETE,
                        {{ENOTEMPTY, QX_ERROR_DIR_NOT_EMPTY},
                         {EEXIST, QX_ERROR_DIR_NOT_EMPTY},
                         {EIO, QX_ERROR_ACCESS}});
}

int innerRQXBrowserMove(const char* from, const char* to) {
  static constexpr char kLayer[] = "RQXBrowserMove";
  if (from == nullptr || to == nullptr) return missing_path(kLayer);
  if (rename(from, to) == 0) return 0;
  return system_failure(kLayer, "Failed to move file ( or directory )", QX_ERROR_DELETE);
}

// The list

namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const noexcept { (void)closedir(directory); }
};

/// The caller's lists and what has come into them.
struct FileList {
  int capacity;
  char* names;
  unsigned char* flags;
  int stored = 0;
  int total = 0;

  void add(DIR* directory, const char* name) {
    ++total;
    if (stored >= capacity) return;
    qxe_strlcpy(names + kNameSlot * static_cast<size_t>(stored), name, kNameSlot);
    flags[stored] = 0;
    struct stat info;
    if (fstatat(dirfd(directory), name, &info, 0) == 0) {
      flag_build_unix(info.st_mode, info.st_uid, info.st_gid, &flags[stored]);
    }
    ++stored;
  }
};

/// False, and errno, when the directory cannot be read.
bool list_directory(const DirectorySearch& search, FileList& list) {
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(search.directory.c_str()));
  if (directory == nullptr) return false;
  while (true) {
    errno = 0;
    const dirent* const entry = readdir(directory.get());
    if (entry == nullptr) return errno == 0;
    if (!findMatch(entry->d_name, search.names.stem, search.names.extension)) continue;
    list.add(directory.get(), entry->d_name);
  }
}

}  // namespace

int innerRQXBrowserGetFileList(const char* pattern, int* count, int* total, char* names,
                               unsigned char* flags) {
  static constexpr char kLayer[] = "RQXBrowserGetFileList";
  if (pattern == nullptr) return missing_path(kLayer);
  if (*count < 0)
    return report(kLayer, QX_ERROR_PARAMETER, "Invalid Parameter : count(%d)", *count);
  return guarded(kLayer, [&] {
    FileList list{names == nullptr ? 0 : *count, names, flags};
    if (!list_directory(parse_dir_searchstr(pattern), list)) {
      return system_failure(kLayer, "Failed to read directory", QX_ERROR_NOT_FOUND);
    }
    *count = list.stored;
    *total = list.total;
    return 0;
  });
}

// Files

namespace {

constexpr long kLargestInt = INT_MAX;

int no_file(const char* layer, const char* text) {
  return system_failure(layer, text, QX_ERROR_FILE);
}

int narrowed(long value) {
  return static_cast<int>(std::min(value, kLargestInt));
}

/// Reads part of a file; `*length` becomes the bytes read, `*remaining` those behind them.
int get_part(const char* layer, const char* path, long position, long* remaining, int* length,
             void* buffer) {
  if (path == nullptr) return missing_path(layer);
  if (*length < 0) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : get_len(%d)", *length);
  }
  struct stat info;
  if (stat(path, &info) != 0) return no_file(layer, "Failed to get filesize");
  const OpenFile file(path, O_RDONLY);
  if (!file.is_open()) return no_file(layer, "Failed to open file");
  if (position < 0) return report(layer, QX_ERROR_FILE, "Failed to seek file");
  const int got = file.read(position, *length, static_cast<char*>(buffer));
  if (got < 0) return no_file(layer, "Failed to read file");
  *length = got;
  *remaining = std::max(info.st_size - position - got, 0L);
  return 0;
}

}  // namespace

int innerRQXBrowserGetFileSize(const char* path) {
  static constexpr char kLayer[] = "RQXBrowserGetFileSize";
  if (path == nullptr) return missing_path(kLayer);
  struct stat info;
  if (stat(path, &info) != 0) return no_file(kLayer, "Failed to get filesize ");
  return narrowed(info.st_size);
}

int innerRQXBrowserGetFile(const char* path, int* position, int* length, void* buffer) {
  static constexpr char kLayer[] = "RQXBrowserGetFile";
  // The position has to stay within 32 bits; what lies behind is out of reach and not the end.
  int wanted = *position < 0 ? *length : std::min(*length, INT_MAX - *position);
  long remaining = 0;
  const int status = get_part(kLayer, path, *position, &remaining, &wanted, buffer);
  if (status < 0) return status;
  if (*length > 0 && *position == INT_MAX && remaining > 0) {
    return report(kLayer, QX_ERROR_FILE, "Failed to seek file");
  }
  *position += wanted;
  *length = wanted;
  return 0;
}

int innerRQXBrowserGetFile64(const char* path, long* position, int* length, void* buffer) {
  long remaining = 0;
  const int status = get_part("RQXBrowserGetFile64", path, *position, &remaining, length, buffer);
  if (status < 0) return status;
  *position += *length;
  return 0;
}

int innerRQXBrowserGetFileEx(const char* path, int position, int* remaining, int* length,
                             void* buffer) {
  long behind = 0;
  const int status = get_part("RQXBrowserGetFileEx", path, position, &behind, length, buffer);
  if (status < 0) return status;
  *remaining = narrowed(behind);
  return 0;
}

int innerRQXBrowserGetFileEx64(const char* path, long position, long* remaining, int* length,
                               void* buffer) {
  return get_part("RQXBrowserGetFileEx64", path, position, remaining, length, buffer);
}

namespace {

int put_file(const char* layer, const char* path, bool append, int length, const void* buffer) {
  if (path == nullptr) return missing_path(layer);
  if (length < 0) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : put_len(%d)", length);
  }
  OpenFile file(path, O_WRONLY | O_CREAT | (append ? O_APPEND : O_TRUNC));
  if (!file.is_open()) return no_file(layer, "Failed to open file");
  if (file.is_pipe()) return report(layer, QX_ERROR_FILE, "Failed to open file");
  if (file.write_and_close(static_cast<const char*>(buffer), length)) return 0;
  return no_file(layer, "Failed to write file");
}

}  // namespace

int innerRQXBrowserPutFile(const char* path, int length, const void* buffer) {
  return put_file("RQXBrowserPutFile", path, false, length, buffer);
}

int innerRQXBrowserPutFileEx(const char* path, int mode, int length, const void* buffer) {
  return put_file("RQXBrowserPutFileEx", path, mode != QX_PUT_CREATE, length, buffer);
}

int innerRQXBrowserDelFile(const char* path) {
  static constexpr char kLayer[] = "RQXBrowserDelFile";
  if (path == nullptr) return missing_path(kLayer);
  if (unlink(path) == 0) return 0;
  return system_failure(kLayer, "Failed to delete file", QX_ERROR_DELETE);
}

}  // namespace qxe
