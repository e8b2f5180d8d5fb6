// Where an export and its catalog go. Paths are built instead of changing the working directory,
// which belongs to the whole host process.
#pragma once

#include <string>

namespace qxe {

/// Path of `name` in `directory`; an empty directory is the working directory, and an absolute name
/// stands for itself.
std::string path_in(const char* directory, const char* name);

/// Logs under `layer` and returns QX_ERROR_FILE for a null directory or a file name that is null,
/// empty or of 512 bytes or more, and QX_ERROR_PATH for a directory that cannot be entered.
int check_output(const char* layer, const char* directory, const char* file);

}  // namespace qxe
