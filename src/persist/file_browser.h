// What the file browser knows about names, permissions and directories. Its calls stand in
// frame/api.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

namespace qxe {

/// A name cut at its last point; without one the extension is empty.
struct NameParts {
  std::string_view stem;
  std::string_view extension;
};
NameParts parseNameExtn(std::string_view name);

/// Whether a text equals the pattern. A star at an end of the pattern stands for any text; one
/// inside stands for itself.
bool isSearchMatch(std::string_view name, std::string_view pattern);
/// Whether both parts of a name match, so "*.*" takes every name and "*" those without an
/// extension.
bool findMatch(std::string_view name, std::string_view stem, std::string_view extension);

/// A pattern of names behind a path.
struct DirectorySearch {
  std::string directory;
  NameParts names;  // of the caller's text
};
/// Without a "/" the directory is the working directory; without a pattern all names are meant.
DirectorySearch parse_dir_searchstr(std::string_view path);

/// Adds the QX_FILE_ flags of a file with this mode and these owners: what this process may do.
void flag_build_unix(mode_t mode, uid_t uid, gid_t gid, unsigned char* flags);

/// Deletes a directory with all that is in it; links are deleted, not followed. 0, or -1 and errno.
int recursive_removeDir(const char* path);

}  // namespace qxe
