// Choices that the first bytes of an input make. Each byte stands for one, so that any input is
// valid; those that a table names stand for their own, so that seeds can be read.
#pragma once

#include <stddef.h>

#include <string>
#include <string_view>

#include "qxe.h"

namespace qxe::test {

template <class Value>
struct Choice {
  char byte;
  Value stands_for;
};

/// Takes the choices from left to right; for those that are missing the first ones.
class Chooser {
 public:
  explicit Chooser(std::string_view bytes) : bytes_(bytes) {}

  bool at_end() const { return bytes_.empty(); }

  template <class Value, size_t N>
  const Choice<Value>& from(const Choice<Value> (&choices)[N]) {
    const char byte = next(choices[0].byte);
    for (const Choice<Value>& choice : choices) {
      if (choice.byte == byte) return choice;
    }
    return choices[static_cast<unsigned char>(byte) % N];
  }

  /// A number from 0 to 127: '0' and its followers are 0 and so on.
  int number() { return (next('0') - '0') & 0x7f; }

 private:
  char next(char missing) {
    if (bytes_.empty()) return missing;
    const char byte = bytes_.front();
    bytes_.remove_prefix(1);
    return byte;
  }

  std::string_view bytes_;
};

/// Which code the texts of an input are in.
constexpr Choice<int> kLocales[] = {
    {'S', QX_LOCALE_SJIS}, {'W', QX_LOCALE_MS932},  {'K', QX_LOCALE_MS949}, {'U', QX_LOCALE_UTF8},
    {'E', QX_LOCALE_EUC},  {'1', QX_LOCALE_CP1252}, {'C', QX_LOCALE_MS936}};

/// Takes the bytes up to a NUL or the end off `input`.
inline std::string next_string(std::string_view& input) {
  const size_t end = input.find('\0');
  std::string string(input.substr(0, end));
  input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  return string;
}

}  // namespace qxe::test
