// Texts of single numbers, as exports write them. Each function writes at `out`, without a
// terminator, and returns the end of the text; up to kTextOverrun bytes of no meaning may follow
// it. The host's locale plays no part.
#pragma once

#include "qxe_numeric.h"

namespace qxe {

/// Longest texts. A double adds its decimals to the one below 1e18.
inline constexpr int kIntegerTextSize = 11;
inline constexpr int kDoubleTextSize = 24;
inline constexpr int kDecimalTextSize = 42;

inline constexpr int kTextOverrun = 32;

char* put_integer(int value, char* out);

/// As "%0.*f" prints it, and from 1e18 in magnitude on as "%0.13E".
char* put_double(double value, int decimals, char* out);

/// A decimal of `info` with `scale` digits behind the point, dropped ones rounded by `rounding`; -1
/// for either means the info's own. Nothing for NaN and for a number that does not fit.
char* put_decimal(const Numeric& value, const NumericInfo& info, int scale, int rounding,
                  char* out);

}  // namespace qxe
