// Values as conversions to other types must give them, one by one and by plain means.
#pragma once

#include <optional>

#include "support/columns.h"

namespace qxe::test {

/// `scale` counts for decimals, which round half up. None for numbers with more digits than the
/// model reckons with.
std::optional<Cell> converted(const Cell& cell, int from, int to, int scale);

/// A decimal with other digits behind the point; NULL when it has no room for them.
Cell rescaled(const Cell& cell, int scale);

}  // namespace qxe::test
