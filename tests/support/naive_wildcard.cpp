#include "support/naive_wildcard.h"

#include "qxe.h"

namespace qxe::test {

namespace {

bool lies_in(unsigned char byte, int first, int last) {
  return byte >= first && byte <= last;
}

PatternPart part_of(char byte) {
  if (byte == '*') return {PatternPart::kAnyRun};
  if (byte == '?') return {PatternPart::kAnyByte};
  return {PatternPart::kByte, byte};
}

}  // namespace

int character_bytes(int locale, unsigned char lead) {
  switch (locale) {
    case QX_LOCALE_SJIS:
    case QX_LOCALE_MS932: return lies_in(lead, 0x81, 0x9f) || lies_in(lead, 0xe0, 0xfc) ? 2 : 1;
    case QX_LOCALE_MS949: return lies_in(lead, 0x81, 0xfe) ? 2 : 1;
    case QX_LOCALE_EUC: return lead == 0x8f ? 3 : lead == 0x8e || lies_in(lead, 0xa1, 0xfe) ? 2 : 1;
    case QX_LOCALE_UTF8:
      if (lead < 0xc0 || lead > 0xfd) return 1;
      return lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : lead < 0xf8 ? 4 : lead < 0xfc ? 5 : 6;
    default: return 1;
  }
}

std::optional<std::vector<PatternPart>> pattern_parts(const std::string& pattern, int locale) {
  std::vector<PatternPart> parts;
  for (size_t i = 0; i < pattern.size();) {
    if (pattern[i] == '\\') {
      const char escaped = i + 1 < pattern.size() ? pattern[i + 1] : '\0';
      if (escaped != '*' && escaped != '?' && escaped != '\\') return std::nullopt;
      parts.push_back({PatternPart::kByte, escaped});
      i += 2;
      continue;
    }
    const int bytes = character_bytes(locale, static_cast<unsigned char>(pattern[i]));
    for (int j = 0; j < bytes && i < pattern.size(); ++j) parts.push_back(part_of(pattern[i++]));
  }
  return parts;
}

bool naive_match(const std::vector<PatternPart>& parts, const std::string& text) {
  // matches[j]: whether the parts so far match the first j bytes.
  std::vector<char> matches(text.size() + 1, 0);
  matches[0] = 1;
  for (const PatternPart& part : parts) {
    if (part.kind == PatternPart::kAnyRun) {
      for (size_t j = 1; j <= text.size(); ++j) matches[j] |= matches[j - 1];
      continue;
    }
    for (size_t j = text.size(); j > 0; --j) {
      const bool fits = part.kind == PatternPart::kAnyByte || part.byte == text[j - 1];
      matches[j] = fits ? matches[j - 1] : '\0';
    }
    matches[0] = 0;
  }
  return matches[text.size()] != 0;
}

}  // namespace qxe::test
