#include "persist/file_browser.h"

#include <ftw.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "qxe.h"

namespace qxe {

namespace {

bool in_group(gid_t group) {
  if (group == getegid()) return true;
  std::vector<gid_t> groups(static_cast<size_t>(std::max(getgroups(0, nullptr), 0)));
  const int count = getgroups(static_cast<int>(groups.size()), groups.data());
  return std::find(groups.begin(), groups.begin() + std::max(count, 0), group) !=
         groups.begin() + std::max(count, 0);
}

/// The three permission bits that are this process's, as 4 read, 2 write, 1 execute.
mode_t own_permissions(mode_t mode, uid_t uid, gid_t gid) {
  constexpr uid_t kSuperUser = 0;
  constexpr mode_t kAnyExecute = S_IXUSR | S_IXGRP | S_IXOTH;
  if (geteuid() == kSuperUser) return (mode & kAnyExecute) != 0 ? 7 : 6;
  if (geteuid() == uid) return mode >> 6 & 7;
  return (in_group(gid) ? mode >> 3 : mode) & 7;
}

int remove_entry(const char* path, const struct stat*, int, FTW*) {
  return remove(path);
}

}  // namespace

NameParts parseNameExtn(std::string_view name) {
  const size_t point = name.rfind('.');
  if (point == std::string_view::npos) return {name, {}};
  return {name.substr(0, point), name.substr(point + 1)};
}

bool isSearchMatch(std::string_view name, std::string_view pattern) {
  if (name == pattern || pattern == "*") return true;
  const bool open_end = pattern.ends_with('*');
  if (open_end) pattern.remove_suffix(1);
  const bool open_start = pattern.starts_with('*');
  if (open_start) pattern.remove_prefix(1);
  if (open_start && open_end) return name.find(pattern) != std::string_view::npos;
  if (open_end) return name.starts_with(pattern);
  return open_start && name.ends_with(pattern);
}

bool findMatch(std::string_view name, std::string_view stem, std::string_view extension) {
  const NameParts parts = parseNameExtn(name);
  return isSearchMatch(parts.stem, stem) && isSearchMatch(parts.extension, extension);
}

DirectorySearch parse_dir_searchstr(std::string_view path) {
  const size_t slash = path.rfind('/');
  std::string directory = ".";
  if (slash != std::string_view::npos) {
    directory = path.substr(0, std::max<size_t>(slash, 1));  // the root keeps its slash
    path.remove_prefix(slash + 1);
  }
  return {std::move(directory), parseNameExtn(path.empty() ? "*.*" : path)};
}

void flag_build_unix(mode_t mode, uid_t uid, gid_t gid, unsigned char* flags) {
  const mode_t own = own_permissions(mode, uid, gid);
  unsigned built = *flags;
  if (S_ISDIR(mode)) built |= QX_FILE_DIR;
  if ((own & 4) != 0) built |= QX_FILE_READ;
  if ((own & 2) != 0) built |= QX_FILE_WRITE;
  if ((own & 1) != 0) built |= QX_FILE_EXEC;
  *flags = static_cast<unsigned char>(built);
}

int recursive_removeDir(const char* path) {
  constexpr int kOpenDirectories = 16;  // deeper trees are walked all the same
  return nftw(path, remove_entry, kOpenDirectories, FTW_DEPTH | FTW_PHYS);
}

}  // namespace qxe
