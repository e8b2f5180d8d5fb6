// Files of one column: text files, one value a line, and binary files of strings. A log of faults
// is written into the file's directory.
#pragma once

#include "qxe.h"

namespace qxe {

class TFilter;
class TRealTable;

/// Adds a filter at display position `position` from a text file. At most `rows` lines count, and
/// no more than the table has rows; rows without a line are NULL. `info` is that of a decimal
/// column. Returns the filter's id. Throws QX_ERROR_FILE, QX_ERROR_INVALID_DATA for the first value
/// that does not convert, QX_ERROR_TEXT_FIELD for a line above 4095 bytes.
int addFilterFromFile(TRealTable& table, int position, const char* name, int type, int rows,
                      const char* directory, const char* file, const NumericInfo& info);

/// Writes `rows` rows of a file into a filter from row `position` on, as RowAppend does; those that
/// the file does not have are NULL. Strings come from a binary file, other values from a text file.
/// Returns `rows`. Throws as addFilterFromFile and RowAppend; QX_ERROR_CATALOG for a broken binary
/// file.
int appendFilterFromFile(TRealTable& table, TFilter& filter, int position, int rows,
                         const char* directory, const char* file);

}  // namespace qxe
