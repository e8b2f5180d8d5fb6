// A result set whose rows several workers wrote, each into a part of one large room.
#pragma once

#include <vector>

#include "storage/setarray.h"

namespace qxe {

/// Rows of one worker, in the order of the result.
struct RowPart {
  const int* rows;
  long count;
};

/// Makes one set, allocated exactly, with the attribute block and name of `room`, whose rows
/// `parts` lie in it. `room` was made for the most rows there could be and is touched only as far
/// as there are rows. Few rows move to a block of their own, so that the next operation finds
/// `room` in the allocator's cache; many stay where they are.
std::unique_ptr<TSetArray> packed_parts(std::unique_ptr<TSetArray> room,
                                        const std::vector<RowPart>& parts);

}  // namespace qxe
