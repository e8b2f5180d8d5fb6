// Text files of one column as new filters.
#pragma once

#include "qxe.h"

namespace qxe {

class TRealTable;

/// Adds a filter at display position `position` from a text file, one value a line. At most `rows`
/// lines count, and no more than the table has rows; rows without a line are NULL. `info` is that
/// of a decimal column. Returns the filter's id. Throws QX_ERROR_FILE, QX_ERROR_INVALID_DATA for
/// the first value that does not convert, QX_ERROR_TEXT_FIELD for a line above 4095 bytes.
int addFilterFromFile(TRealTable& table, int position, const char* name, int type, int rows,
                      const char* directory, const char* file, const NumericInfo& info);

}  // namespace qxe
