// Decimal rounding of doubles to a number of decimals. A negative number of decimals, and a value
// that is not finite, change nothing.
#pragma once

namespace qxe {

/// Cuts the decimals behind the first `digits` ones.
double Trunc(double x, int digits);

/// Rounds half up by the first dropped decimal alone; a negative value never rounds away from zero.
double Round(double x, int digits);

/// As Round, but a value between -100 and 1 rounds as if 100 were added, so that it rounds upward
/// like a positive number.
double Round2(double x, int digits);

}  // namespace qxe
