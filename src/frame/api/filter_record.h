// A filter as the records that clients get. Pending values are merged first, so that a client
// always sees a whole value list.
#pragma once

#include "storage/filters.h"

namespace qxe {

void describe(TFilter& column, int id, const char* name, _TRFilterInfo* out);
/// The record's pointers go into the filter.
void point_into(TFilter& column, const char* name, _TFilterInfo* out);
/// Copies as much as the record has room for.
void copy_body(TFilter& column, const _TRFilterBody& body);

}  // namespace qxe
