// Where database and table files lie. Paths are built instead of changing the working directory,
// which belongs to the whole host process; what a client sees is the same.
#pragma once

#include <string>

namespace qxe {

constexpr char kDatabaseExtension[] = ".QXD";
constexpr char kTableExtension[] = ".QXT";

/// Throws QX_ERROR_FILE for a directory that is null, and for a file name that is null, empty or
/// of 512 bytes or more.
void check_place(const char* layer, const char* directory, const char* name);

bool has_working_directory();

/// A directory under its absolute name. One that cannot be entered leaves an entry under `layer`
/// whose text has `words` and the name, and throws QX_ERROR_PATH. One whose absolute name takes 512
/// bytes or more throws QX_ERROR_FILE, and so does any while the working directory is gone.
std::string absolute_directory(const char* layer, const char* words, const char* directory);

/// `name` with `extension` behind it, unless it is longer than that and ends so.
std::string with_extension(const char* name, const char* extension);

/// An absolute name stands for itself.
std::string file_in(const std::string& directory, const std::string& name);

}  // namespace qxe
