// The first row of each distinct combination of the values of some columns.
#pragma once

#include <vector>

#include "storage/filters.h"
#include "storage/setarray.h"

namespace qxe {

/// A new set of those rows of `source`, in its order, whose values in `columns` (at least one) no
/// row before them has. NULL is a value. The set gets the name and attribute block of `source`.
std::unique_ptr<TSetArray> unique_rows(const TSetArray& source,
                                       const std::vector<const TFilter*>& columns);

}  // namespace qxe
