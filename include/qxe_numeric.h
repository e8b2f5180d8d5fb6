/* Exact decimal numbers: the public interface of libqxenumeric.
 *
 * A Numeric is a signed 128-bit integer of at most 38 digits; it counts units of 10^-scale. The
 * scale does not travel with the number: it stands in a NumericInfo that the caller keeps, usually
 * one for a whole column. NaN stands for "no value" and sorts below every number.
 *
 * Common rules:
 * - No pointer may be null unless said otherwise. `result` may be the address of an operand.
 * - A function that returns a status stores NaN (or the "no value" told there) unless it succeeds.
 * - Results are exact; what the scale of the result cannot hold is rounded once, which is no fault.
 * - An info with a scale outside 0..38 or a rounding mode outside 0..6 gives
 *   QX_NUMERIC_BAD_ARGUMENT; this is tested before NaN.
 * - Functions keep no state and can be called from any thread.
 */
#ifndef QXE_NUMERIC_H
#define QXE_NUMERIC_H

#define QXE_NUMERIC_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* (hi * 2^64 + lo) / 10^scale in two's complement. Zero is 16 zero bytes; NaN is lo 0 and
 * hi 0x8000000000000000. */
typedef struct Numeric {
  unsigned long lo;
  long hi;
} Numeric;

typedef struct NumericInfo {
  int scale;    /* digits behind the point, 0..38 */
  int rounding; /* one of QX_ROUND_... */
} NumericInfo;

/* How digits are dropped. */
enum {
  QX_ROUND_UP = 0,       /* away from zero */
  QX_ROUND_DOWN = 1,     /* towards zero */
  QX_ROUND_CEILING = 2,  /* towards +infinity */
  QX_ROUND_FLOOR = 3,    /* towards -infinity */
  QX_ROUND_HALFUP = 4,   /* to the nearest, ties away from zero */
  QX_ROUND_HALFDOWN = 5, /* to the nearest, ties towards zero */
  QX_ROUND_HALFEVEN = 6  /* to the nearest, ties to the even digit */
};

/* Status codes. */
enum {
  QX_NUMERIC_DONE = 0,
  QX_NUMERIC_NAN = 1, /* an operand is NaN or NULL */
  QX_NUMERIC_DIVISION_BY_ZERO = 2,
  QX_NUMERIC_OVERFLOW = 3,     /* the result needs more than 38 digits at its scale */
  QX_NUMERIC_BAD_ARGUMENT = -1 /* bad info, text without a number, buffer too small */
};

/* ---- NaN and zero ---- */

/* Makes *value NaN. Always 0. */
QXE_NUMERIC_API int RQXNumericSetNan(Numeric* value);

/* 1 if *value is NaN, else 0. */
QXE_NUMERIC_API int RQXNumericIsNan(const Numeric* value);

/* Makes *value zero, at any scale. Always 0. */
QXE_NUMERIC_API int RQXNumericSetZero(Numeric* value);

/* 1 if *value is zero, else 0; NaN is not zero. */
QXE_NUMERIC_API int RQXNumericIsZero(const Numeric* value);

/* ---- Comparison: below 0, 0 or above 0 as a is below, equal to or above b ---- */

/* Compares two numbers of one scale. NaN equals NaN and is below every number. */
QXE_NUMERIC_API int RQXNumericCmp(const Numeric* a, const Numeric* b);

/* Compares across scales, exactly and without overflow. A number whose scale is outside 0..38
 * counts as NaN; the rounding modes are not read. */
QXE_NUMERIC_API int RQXNumericRescalingCmp(const NumericInfo* infoA, const NumericInfo* infoB,
                                           const Numeric* a, const Numeric* b);

/* ---- Arithmetic at one scale: status 0, 1, 2 or 3 ---- */

/* result = a + b, all three at one scale. */
QXE_NUMERIC_API int RQXNumericAdd(const Numeric* a, const Numeric* b, Numeric* result);

/* result = a - b, all three at one scale. */
QXE_NUMERIC_API int RQXNumericSub(const Numeric* a, const Numeric* b, Numeric* result);

/* result = a * b; b is a whole number at scale 0, the result is at a's scale. */
QXE_NUMERIC_API int RQXNumericMul(const Numeric* a, const Numeric* b, Numeric* result);

/* result = a / b; b is a whole number at scale 0, the result is at a's scale, rounded half-even. */
QXE_NUMERIC_API int RQXNumericDiv(const Numeric* a, const Numeric* b, Numeric* result);

/* ---- Arithmetic across scales: exact inside, rounded once to infoOut by infoOut's mode;
 *      status 0, 1, 2, 3 or -1 ---- */

/* result = a + b */
QXE_NUMERIC_API int RQXNumericRescalingAdd(const NumericInfo* infoA, const NumericInfo* infoB,
                                           const NumericInfo* infoOut, const Numeric* a,
                                           const Numeric* b, Numeric* result);

/* result = a - b */
QXE_NUMERIC_API int RQXNumericRescalingSub(const NumericInfo* infoA, const NumericInfo* infoB,
                                           const NumericInfo* infoOut, const Numeric* a,
                                           const Numeric* b, Numeric* result);

/* result = a * b */
QXE_NUMERIC_API int RQXNumericRescalingMul(const NumericInfo* infoA, const NumericInfo* infoB,
                                           const NumericInfo* infoOut, const Numeric* a,
                                           const Numeric* b, Numeric* result);

/* result = a / b */
QXE_NUMERIC_API int RQXNumericRescalingDiv(const NumericInfo* infoA, const NumericInfo* infoB,
                                           const NumericInfo* infoOut, const Numeric* a,
                                           const Numeric* b, Numeric* result);

/* ---- Scale and rounding: status 0, 1, 3 or -1 ---- */

/* result = value at newInfo's scale; dropped digits are rounded by newInfo's mode. */
QXE_NUMERIC_API int RQXNumericRescale(const Numeric* value, const NumericInfo* oldInfo,
                                      const NumericInfo* newInfo, Numeric* result);

/* result = value rounded to a whole number by info's mode, still at info's scale. */
QXE_NUMERIC_API int RQXNumericRound(const Numeric* value, const NumericInfo* info, Numeric* result);

/* result = the greatest whole number not above value, still at info's scale. */
QXE_NUMERIC_API int RQXNumericFloor(const Numeric* value, const NumericInfo* info, Numeric* result);

/* result = the smallest whole number not below value, still at info's scale. */
QXE_NUMERIC_API int RQXNumericCeil(const Numeric* value, const NumericInfo* info, Numeric* result);

/* ---- Conversions ---- */

/* result = x at info's scale. x counts as the shortest decimal text that reads back as x (0.1 is
 * exactly 0.1), rounded by info's mode. 1: x is -infinity (the NULL double) or an IEEE NaN.
 * 3: +infinity, or too large for the scale. */
QXE_NUMERIC_API int RQXNumericDbl2Num(const NumericInfo* info, Numeric* result, double x);

/* *out = the double nearest to value, ties to even. Always 0 for a number. NaN, and a number with a
 * bad info: -infinity (the NULL double) and 1. */
QXE_NUMERIC_API int RQXNumericNum2Dbl(const Numeric* value, const NumericInfo* info, double* out);

/* *value (an output) = x at info's scale. 1: x is INT_MIN, the NULL integer. 3: too large for the
 * scale. */
QXE_NUMERIC_API int RQXNumericInt2Num(const NumericInfo* info, Numeric* value, int x);

/* *out = value rounded to a whole number by info's mode. Every failure stores INT_MIN, the NULL
 * integer. 1: NaN. 3: outside -2147483647..2147483647. */
QXE_NUMERIC_API int RQXNumericNum2Int(const NumericInfo* info, const Numeric* value, int* out);

/* Reads a number at the start of text, of any length: blanks and tabs, sign, digits, "." and
 * digits, "e" or "E" with sign and digits; all optional but one digit. Digits beyond info's scale
 * are rounded by its mode. *rest (rest may be null) is the first byte not read: "12x" is 12 with
 * the rest "x", "1e" is 1 with the rest "e". Empty or blank text is NaN with status 0, all read.
 * 3: too large for the scale, the number is read. -1: text has no number at its start or info is
 * bad, nothing is read. */
QXE_NUMERIC_API int RQXNumericStr2Num(const char* text, const NumericInfo* info, Numeric* result,
                                      char** rest);

/* Writes value (of info) into buffer as text with exactly `scale` digits behind the point, rounded
 * by `rounding`; -1 for either means info's own. Form: "-" (never before a zero), whole part with
 * at least "0", and for a scale above 0 "." and the digits. size is the buffer's bytes with the
 * terminator; 42 hold every number. Every failure writes "" (nothing when size is below 1).
 * 1: NaN. 3: more than 38 digits at that scale. -1: bad info, scale or rounding, or buffer too
 * small. */
QXE_NUMERIC_API int RQXNumericNum2Str(const Numeric* value, const NumericInfo* info, int scale,
                                      int rounding, char* buffer, int size);

#ifdef __cplusplus
}
#endif

#endif /* QXE_NUMERIC_H */
