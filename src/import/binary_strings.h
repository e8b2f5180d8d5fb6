// Binary files of strings. A record is a length in bytes, 32 bits with the highest byte first, and
// then the text.
#pragma once

#include <string>

#include "storage/filters.h"

namespace qxe {

/// The first `rows` records of the file as a column of `rows` rows; the rows without a record are
/// NULL. A text ends at its first NUL. Throws QX_ERROR_FILE when the file is missing,
/// QX_ERROR_CATALOG when it ends inside a record or, `rows` being above 0, is empty.
Column parse_bin(const std::string& file, int rows);

}  // namespace qxe
