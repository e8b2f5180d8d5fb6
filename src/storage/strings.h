// String rules: bounded copies, numbers from text, name cleaning, blanks and letter case.
#pragma once

#include <stddef.h>

#include <string_view>

#include "qxe.h"

namespace qxe {

inline bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// White space of the plain locale.
inline bool is_white(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Copies at most `size - 1` bytes and always terminates. Returns the length of `source`.
size_t qxe_strlcpy(char* destination, const char* source, size_t size);

/// Integer of decimal text. Empty text is QX_NULL_INT and no fault. Not strict: the number the text
/// begins with behind white space, 0 when there is none, QX_NULL_INT beyond 32 bits. Strict: no
/// leading tab, a number within the 32-bit range (-2147483648 is NULL and so outside), nothing but
/// blanks behind; otherwise the result is QX_NULL_INT. `*bad` says whether the text broke these
/// rules; it may be null.
int Str2Int(std::string_view text, bool strict, bool* bad);

/// The same for doubles; NULL is negative infinity, and so is the result for a text that says
/// "nan"; a zero has no sign. Strict: the number is finite. A point separates the decimals whatever
/// the locale.
double Str2Double(std::string_view text, bool strict, bool* bad);

/// Cleans a numeric cell: skips leading blanks and commas and leaves the later commas out. The
/// result lies in `text`, or in `room` when commas had to go; `room` holds as many bytes as `text`
/// and may be the same memory.
std::string_view stripSpace(std::string_view text, char* room);

/// Turns a name into one that can form a file name, in place: blanks and most punctuation become
/// `_`, multi-byte characters of the database code stay whole. False for an empty name or one of
/// 256 bytes or more.
bool ToFileName(char* name);

/// Cleans a seed for a generated name into `out` (256 bytes): ToFileName, then cut at the first
/// `_#` from position 1 on unless the collection says otherwise, so that a generated suffix is not
/// repeated. False for a bad seed.
bool verifySeedName(const char* seed, char* out);

/// Cuts trailing blanks in place; true when it cut. Looks at the first 4096 bytes only.
bool DelLastSpc(char* text);

/// Cuts white space at both ends, in place.
void CutWhiteSpace(char* text);

/// Makes the letters a to z upper case, in place, and skips multi-byte characters of `code`.
void UpperCase(int code, char* text);
/// The same by the database code.
void AnsiUpperCase(char* text);

}  // namespace qxe
