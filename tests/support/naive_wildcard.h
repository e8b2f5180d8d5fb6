// What a pattern with wildcards matches: by a table of all its parts and all of a text's bytes.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qxe::test {

/// What one part of a pattern stands for.
struct PatternPart {
  enum Kind { kByte, kAnyByte, kAnyRun } kind;
  char byte = '\0';
};

/// Bytes of the character that `lead` begins in the code of a locale (QX_LOCALE_...).
int character_bytes(int locale, unsigned char lead);

/// The parts of a pattern in that code; nothing when a backslash stands before what needs none.
std::optional<std::vector<PatternPart>> pattern_parts(const std::string& pattern, int locale);

/// Whether the whole text matches.
bool naive_match(const std::vector<PatternPart>& parts, const std::string& text);

}  // namespace qxe::test
