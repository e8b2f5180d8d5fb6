// What a file says of itself.
#pragma once

#include <string>

#include "qxe.h"

namespace qxe {

/// Reads the head of a database or table file. A failure throws.
_QXFileInfo read_file_info(const std::string& path, bool is_table);

}  // namespace qxe
