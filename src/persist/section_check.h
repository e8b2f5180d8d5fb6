// Checks of what a section says. Whatever was read is looked at before it is used to allocate, to
// count or to index: a damaged file is refused, and a table that was read is safe to work on.
#pragma once

#include "frame/base/exception.h"

namespace qxe {

class SectionReader;
class SectionWriter;
class TBaseArray;
class TIntArray;
class TSetArray;

/// Throws QX_ERROR_FILE_FORMAT unless the section keeps a rule.
inline void check_format(bool kept) {
  if (!kept) throw CQXException(QX_ERROR_FILE_FORMAT);
}

/// Name fields of 256 bytes; one that was read ends within them.
void read_name(SectionReader& reader, char* name);
void write_name(SectionWriter& writer, const char* name);

/// A value list: NULL first, the others ascending, no two equal.
void check_value_list(const TBaseArray& values);
/// Row pointers: none for row 0, the others in a value list of `values` values.
void check_row_pointers(const TIntArray& numbers, int values);
/// The set of all rows: 1, 2, 3, ...
void check_root_set(const TSetArray& rows);
/// Rows of a table of `total` rows.
void check_set(const TSetArray& rows, int total);

}  // namespace qxe
