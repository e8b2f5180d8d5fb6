// Rounding, once for all: every function splits its exact result into an integer and a tail and
// asks here whether the integer grows.
#pragma once

#include "representation.h"

namespace qxe {

/// What a rounding drops, measured against half a unit of the last digit kept.
enum class Tail { kNone, kBelowHalf, kHalf, kAboveHalf };

/// Whether dropping `tail` takes the magnitude up by one unit; `odd` is that of the integer kept.
inline bool rounds_away(int mode, bool negative, bool odd, Tail tail) {
  if (tail == Tail::kNone) return false;
  switch (mode) {
    case QX_ROUND_UP: return true;
    case QX_ROUND_DOWN: return false;
    case QX_ROUND_CEILING: return !negative;
    case QX_ROUND_FLOOR: return negative;
    case QX_ROUND_HALFUP: return tail >= Tail::kHalf;
    case QX_ROUND_HALFDOWN: return tail > Tail::kHalf;
    default: return tail > Tail::kHalf || (tail == Tail::kHalf && odd);
  }
}

/// The tail that `rest` is of a unit of `divisor`; 0 <= rest < divisor.
template <class Int>
Tail tail_of(const Int& rest, const Int& divisor) {
  if (rest == 0) return Tail::kNone;
  const Int gap = divisor - rest;
  if (rest == gap) return Tail::kHalf;
  return rest < gap ? Tail::kBelowHalf : Tail::kAboveHalf;
}

/// dividend / divisor, rounded by `mode`; divisor is not 0 and not the smallest Int.
template <class Int>
Int divide(const Int& dividend, const Int& divisor, int mode) {
  Int quotient = dividend / divisor;
  const Int rest = dividend - quotient * divisor;
  const bool negative = (dividend < 0) != (divisor < 0);
  const Tail tail = tail_of<Int>(rest < 0 ? -rest : rest, divisor < 0 ? -divisor : divisor);
  if (rounds_away(mode, negative, quotient % 2 != 0, tail)) quotient += negative ? -1 : 1;
  return quotient;
}

}  // namespace qxe
