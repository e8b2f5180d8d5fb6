#include "storage/charcode.h"

#include <string.h>

#include <string_view>

#include "qxe.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr size_t kCodeTextSize = 32;

// Places in the system header, and what this platform writes there.
constexpr int kMarkerByte = 0;
constexpr int kSystemByte = 1;
constexpr int kAlignmentCopyByte = 2;
constexpr int kAlignmentByte = 3;
constexpr int kCharCodeByte = 4;
constexpr unsigned char kMarker = 0xff;
constexpr unsigned char kSystem = 0x30 | 4 | 2;  // operating system, little-endian, 64 bits
constexpr unsigned char kAlignment = 8;

struct CharCode {
  int code;
  int locale;  // -1: no locale has it
  std::string_view text;
  std::string_view other_text;  // also understood
};

constexpr CharCode kCharCodes[] = {
    {QX_CODE_NOTDEFINED, -1, "NotDefined", ""},
    {QX_CODE_CP1252, QX_LOCALE_CP1252, "Cp1252", ""},
    {QX_CODE_MS932, QX_LOCALE_MS932, "MS932", ""},
    {QX_CODE_MS949, QX_LOCALE_MS949, "MS949", ""},
    {QX_CODE_SJIS, QX_LOCALE_SJIS, "Shift_JIS", ""},
    {QX_CODE_UTF8, QX_LOCALE_UTF8, "UTF8", "UTF-8"},
    {QX_CODE_EUC, QX_LOCALE_EUC, "EUC_JP", "EUC"},
    {QX_CODE_MS936, QX_LOCALE_MS936, "MS936", ""},
};

using LengthFunction = int (*)(unsigned char lead);

/// Null for a code whose characters are single bytes to the engine.
LengthFunction length_function(int code) {
  switch (code) {
    case QX_CODE_MS932:
    case QX_CODE_SJIS: return sjis_bytes;
    case QX_CODE_MS949: return ms949_bytes;
    case QX_CODE_UTF8: return utf8_bytes;
    case QX_CODE_EUC: return euc_bytes;
    default: return nullptr;
  }
}

/// A run of lead bytes before `position` pairs up from its left end, so an even run leaves the
/// position on a first byte.
bool on_boundary(const char* start, const char* position, LengthFunction length) {
  if (*position == '\0') return true;
  const char* before = position;
  while (before > start && length(static_cast<unsigned char>(before[-1])) > 1) --before;
  return (position - before) % 2 == 0;
}

}  // namespace

unsigned char QxeSysInfo[256];
const int QxeVersions[4] = {16782850, 25, 1, 20170503};

void buildSystemHeader() {
  QxeSysInfo[kMarkerByte] = kMarker;
  QxeSysInfo[kSystemByte] = kSystem;
  QxeSysInfo[kAlignmentCopyByte] = kAlignment;
  QxeSysInfo[kAlignmentByte] = kAlignment;
  setSystemInfoDBCharCode(QX_CODE_UTF8);
}

int getSystemInfoDBCharCode() {
  return QxeSysInfo[kCharCodeByte];
}

void setSystemInfoDBCharCode(int code) {
  QxeSysInfo[kCharCodeByte] = static_cast<unsigned char>(code);
}

int getOSCharCode(char* text) {
  qxe_strlcpy(text, "UTF8", kCodeTextSize);
  return QX_CODE_UTF8;
}

int getDBCharCode(char* text, bool hyphenated) {
  const int code = getSystemInfoDBCharCode();
  if (text == nullptr) return code;
  if (hyphenated && code == QX_CODE_UTF8) {
    qxe_strlcpy(text, "UTF-8", kCodeTextSize);
  } else {
    convertDBCharCode2DBStringCode(code, text);
  }
  return code;
}

void setDBCharCode(int code) {
  setSystemInfoDBCharCode(code);
}

int convertLocaleID2DBCharCode(int locale) {
  for (const CharCode& entry : kCharCodes) {
    if (entry.locale == locale) return entry.code;
  }
  return QX_CODE_NOTDEFINED;
}

int convertDBStringCode2DBCharCode(const char* text) {
  const std::string_view wanted = text;
  for (const CharCode& entry : kCharCodes) {
    if (entry.text == wanted || (!wanted.empty() && entry.other_text == wanted)) return entry.code;
  }
  return QX_CODE_NOTDEFINED;
}

int convertDBCharCode2DBStringCode(int code, char* text) {
  for (const CharCode& entry : kCharCodes) {
    if (entry.code == code) {
      qxe_strlcpy(text, entry.text.data(), kCodeTextSize);
      return 0;
    }
  }
  qxe_strlcpy(text, kCharCodes[0].text.data(), kCodeTextSize);
  return -1;
}

int sjis_bytes(unsigned char lead) {
  return (lead >= 0x81 && lead <= 0x9f) || (lead >= 0xe0 && lead <= 0xfc) ? 2 : 1;
}

int ms949_bytes(unsigned char lead) {
  return lead >= 0x81 && lead <= 0xfe ? 2 : 1;
}

int euc_bytes(unsigned char lead) {
  if (lead == 0x8f) return 3;
  return lead == 0x8e || (lead >= 0xa1 && lead <= 0xfe) ? 2 : 1;
}

int utf8_bytes(unsigned char lead) {
  if (lead < 0xc0 || lead > 0xfd) return 1;
  if (lead < 0xe0) return 2;
  if (lead < 0xf0) return 3;
  if (lead < 0xf8) return 4;
  return lead < 0xfc ? 5 : 6;
}

int countMultiBytes(int code, unsigned char lead) {
  const LengthFunction length = length_function(code);
  return length == nullptr ? 1 : length(lead);
}

bool ismbsptr_sjis(const char* start, const char* position) {
  return on_boundary(start, position, sjis_bytes);
}

bool ismbsptr_locale(const char* start, const char* position) {
  const LengthFunction length = length_function(getSystemInfoDBCharCode());
  return length == nullptr || on_boundary(start, position, length);
}

const char* mbsstr_locale(const char* text, const char* pattern) {
  const size_t size = strlen(pattern);
  if (size == 0) return text;
  const char* const end = text + strlen(text);
  const char* hit = memmem_locale(text, static_cast<size_t>(end - text), pattern, size);
  while (hit != nullptr && !ismbsptr_locale(text, hit)) {
    hit = memmem_locale(hit + 1, static_cast<size_t>(end - hit - 1), pattern, size);
  }
  return hit;
}

const char* qxembsstr(const char* text, const char* pattern) {
  return mbsstr_locale(text, pattern);
}

const char* memmem_locale(const char* text, size_t textSize, const char* pattern, size_t size) {
  return static_cast<const char*>(memmem(text, textSize, pattern, size));
}

}  // namespace qxe
