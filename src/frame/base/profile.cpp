#include "frame/base/profile.h"

#include <stddef.h>

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "storage/strings.h"

namespace qxe {

namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kWhite = " \t\r\n\v\f";
  const size_t first = text.find_first_not_of(kWhite);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

bool is_section(std::string_view line) {
  return line.size() >= 2 && line.front() == '[' && line.back() == ']';
}

/// Value of the first `key` in `section`, or in any section when that is null.
std::optional<std::string> find_value(const char* file, const char* section, const char* key) {
  std::ifstream profile(file);
  bool inside = section == nullptr;
  for (std::string text; std::getline(profile, text);) {
    const std::string_view line = trimmed(text);
    if (is_section(line)) {
      inside = section == nullptr || trimmed(line.substr(1, line.size() - 2)) == section;
      continue;
    }
    const size_t equals = line.find('=');
    if (!inside || equals == std::string_view::npos) continue;
    if (trimmed(line.substr(0, equals)) == key)
      return std::string(trimmed(line.substr(equals + 1)));
  }
  return std::nullopt;
}

void copy_out(const char* text, char* buffer, int size) {
  if (size > 0) qxe_strlcpy(buffer, text, static_cast<size_t>(size));
}

}  // namespace

void getProfileString(const char* file, const char* key, char* buffer, int size) {
  copy_out(find_value(file, nullptr, key).value_or("").c_str(), buffer, size);
}

void getPrivateProfileString(const char* section, const char* key, const char* fallback,
                             char* buffer, int size, const char* file) {
  copy_out(find_value(file, section, key).value_or(fallback).c_str(), buffer, size);
}

}  // namespace qxe
