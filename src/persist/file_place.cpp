#include "persist/file_place.h"

#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "frame/base/error_ring.h"

namespace qxe {

namespace {

constexpr size_t kPathSize = 512;  // with the terminator

bool can_be_entered(const char* directory) {
  struct stat info;
  return stat(directory, &info) == 0 && S_ISDIR(info.st_mode) &&
         faccessat(AT_FDCWD, directory, X_OK, AT_EACCESS) == 0;
}

[[noreturn]] void fail_path(const char* layer) {
  throw CQXException(report(layer, QX_ERROR_FILE, "Failed to get path ( getcwd module )"));
}

}  // namespace

void check_place(const char* layer, const char* directory, const char* name) {
  if (directory != nullptr && name != nullptr && *name != '\0' && strlen(name) < kPathSize) return;
  throw CQXException(report(layer, QX_ERROR_FILE, "Illegal FileName"));
}

bool has_working_directory() {
  char directory[PATH_MAX];
  return getcwd(directory, sizeof directory) != nullptr;
}

std::string absolute_directory(const char* layer, const char* words, const char* directory) {
  if (!has_working_directory()) fail_path(layer);
  char absolute[PATH_MAX];
  const bool found = realpath(*directory == '\0' ? "." : directory, absolute) != nullptr;
  if (!found || !can_be_entered(absolute)) {
    throw CQXException(report(layer, QX_ERROR_PATH, "%s(%s)", words, directory));
  }
  if (strlen(absolute) >= kPathSize) fail_path(layer);
  return absolute;
}

std::string with_extension(const char* name, const char* extension) {
  const std::string_view own(name);
  const std::string_view wanted(extension);
  std::string result(own);
  if (own.size() <= wanted.size() || !own.ends_with(wanted)) result += wanted;
  return result;
}

std::string file_in(const std::string& directory, const std::string& name) {
  return name.starts_with('/') ? name : directory + "/" + name;
}

}  // namespace qxe
