// Small string helpers: bounded copies, number conversions, name cleaning, trailing blanks.
#pragma once

#include <stddef.h>

#include "qxe.h"

namespace qxe {

/// Copies at most `size - 1` bytes and always terminates. Returns the length of `source`.
size_t qxe_strlcpy(char* destination, const char* source, size_t size);

/// Integer of decimal text. Empty text is QX_NULL_INT and no fault. Not strict: whatever the system
/// conversion makes of it, beyond 32 bits QX_NULL_INT. Strict: no leading tab, within the 32-bit
/// range, nothing but blanks behind; otherwise `*bad` is set and the result is QX_NULL_INT.
int Str2Int(const char* text, bool strict, bool* bad);

/// The same for doubles; NULL is negative infinity.
double Str2Double(const char* text, bool strict, bool* bad);

/// Turns a name into one that can form a file name, in place: blanks and most punctuation become
/// `_`, multi-byte characters of the database code stay whole. False for an empty name or one of
/// 256 bytes or more.
bool ToFileName(char* name);

/// Cuts trailing blanks in place; true when it cut. Looks at the first 4096 bytes only.
bool DelLastSpc(char* text);

/// Cleans a seed for a generated name into `out` (256 bytes): ToFileName, then cut at the first
/// `_#` from position 1 on unless the collection says otherwise. False for a bad seed.
bool verifySeedName(const char* seed, char* out);

}  // namespace qxe
