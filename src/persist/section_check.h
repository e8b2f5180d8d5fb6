// Checks of what a section says. Whatever was read is looked at before it is used to allocate, to
// count or to index: a damaged file is refused, and a table that was read is safe to work on.
#pragma once

#include "frame/base/exception.h"

namespace qxe {

class SectionReader;
class SectionWriter;
class TBaseArray;
class TSetArray;
class TStrArray;

/// Throws QX_ERROR_FILE_FORMAT unless the section keeps a rule.
inline void check_format(bool kept) {
  if (!kept) throw CQXException(QX_ERROR_FILE_FORMAT);
}

/// Name fields of 256 bytes; one that was read ends within them.
void read_name(SectionReader& reader, char* name);
void write_name(SectionWriter& writer, const char* name);

/// A value list: ascending, no two equal, NULL first if it has to be.
void check_value_list(const TBaseArray& list, bool null_first);
/// The set of all rows: 1, 2, 3, ...
void check_root_set(const TSetArray& rows);
/// Whether a pool holds exactly the texts of its elements, in their order.
bool is_swept(const TStrArray& texts);
/// Texts end within the pool and do not overlap, so that together they are not longer than it.
void check_texts(const TStrArray& texts);

}  // namespace qxe
