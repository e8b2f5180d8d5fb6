// Sort by several columns.
#pragma once

#include "storage/filters.h"

namespace qxe {

/// Sorts `nRows` rows by `nKeys` filters into `out`, on the worker pool. The first key is the least
/// significant one; rows with equal keys keep the source's order. Throws QX_ERROR_PARAMETER for a
/// direction that is neither 0 nor 1.
void SortForMultiItem(int nKeys, int nRows, const int* rows, TFilter* const* filters,
                      const int* dirs, int* out);

}  // namespace qxe
