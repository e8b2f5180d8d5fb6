// Character codes: which code the database's strings are in, and how to walk them without cutting a
// character. Nothing here converts a string.
#pragma once

#include <stddef.h>

namespace qxe {

/// Header of every binary file of this process; byte 4 is the database character code.
extern unsigned char QxeSysInfo[256];
/// Four words: release, data version, revision, build date.
extern const int QxeVersions[4];

/// Fills QxeSysInfo; the database code becomes UTF-8.
void buildSystemHeader();

int getSystemInfoDBCharCode();
void setSystemInfoDBCharCode(int code);
/// Code of the operating system, always UTF-8; writes its text into `text` (32 bytes).
int getOSCharCode(char* text);
/// Code in force; writes its text into `text` (32 bytes, may be null). `hyphenated`: "UTF-8" for
/// code 33 instead of "UTF8".
int getDBCharCode(char* text, bool hyphenated);
void setDBCharCode(int code);

/// QX_CODE_NOTDEFINED for a locale id outside 0 to 6.
int convertLocaleID2DBCharCode(int locale);
/// QX_CODE_NOTDEFINED for an unknown text.
int convertDBStringCode2DBCharCode(const char* text);
/// 0, or -1 with "NotDefined" for an unknown code. `text` holds 32 bytes.
int convertDBCharCode2DBStringCode(int code, char* text);

/// Length of the character that starts with byte `lead`.
int sjis_bytes(unsigned char lead);
int euc_bytes(unsigned char lead);
int utf8_bytes(unsigned char lead);
int ms949_bytes(unsigned char lead);
/// The same by character code; 1 for single-byte codes.
int countMultiBytes(int code, unsigned char lead);

/// Whether `position` in the string at `start` is a character's first byte, by the bytes before it;
/// the terminator is one. The bytes of a UTF-8 character from the third on pass too. Under a
/// single-byte code every byte is a character.
bool ismbsptr_sjis(const char* start, const char* position);
bool ismbsptr_locale(const char* start, const char* position);

/// First place of `pattern` in `text` on a character boundary, or null; an empty pattern is found
/// at once.
const char* mbsstr_locale(const char* text, const char* pattern);
const char* qxembsstr(const char* text, const char* pattern);
/// First place of the bytes of `pattern`, boundary or not.
const char* memmem_locale(const char* text, size_t textSize, const char* pattern, size_t size);

}  // namespace qxe
