/* The header compiles as C11, and its types have the layout that files and clients rely on. */
#include <stddef.h>

#include "qxe_numeric.h"

_Static_assert(sizeof(Numeric) == 16 && _Alignof(Numeric) == 8, "a value of 16 bytes");
_Static_assert(offsetof(Numeric, lo) == 0 && offsetof(Numeric, hi) == 8, "low half first");
_Static_assert(sizeof(NumericInfo) == 8 && offsetof(NumericInfo, rounding) == 4, "two integers");

/* 7 / 2 half-even, through C linkage; called by the tests in C++. */
long divide_seven_by_two_in_c(void);
long divide_seven_by_two_in_c(void) {
  const Numeric seven = {7, 0};
  const Numeric two = {2, 0};
  Numeric result;
  return RQXNumericDiv(&seven, &two, &result) == QX_NUMERIC_DONE ? (long)result.lo : -1;
}
