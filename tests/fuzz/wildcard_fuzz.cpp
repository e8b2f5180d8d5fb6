// Any bytes as a pattern with wildcards and texts. The first byte chooses the character code; the
// pattern and the texts end at a NUL each.
#include <optional>
#include <string>
#include <string_view>

#include "frame/base/exception.h"
#include "fuzz/choices.h"
#include "fuzz/engine_state.h"
#include "fuzz/fuzz_input.h"
#include "qxe.h"
#include "search/wildcard.h"
#include "storage/charcode.h"
#include "support/naive_wildcard.h"

namespace qxe::test {
namespace {

std::optional<WildCard> wildcard_of(const std::string& pattern) {
  try {
    return WildCard(pattern.c_str(), getSystemInfoDBCharCode() != QX_CODE_CP1252);
  } catch (const CQXException& refused) {
    if (refused.ErrorCode() != QX_ERROR_PARAMETER) finding("another failure", printable(pattern));
    drained_ring();
    return std::nullopt;
  }
}

void check_text(const WildCard& wildcard, const std::vector<PatternPart>& parts,
                const std::string& pattern, const std::string& text) {
  const bool wanted = naive_match(parts, text);
  if (wildcard.match(text.c_str()) != wanted) {
    finding(wanted ? "a text that matches is missed" : "a text is hit that does not match",
            printable(pattern) + "\n" + printable(text));
  }
  if (wanted && (text.find(wildcard.longest_piece()) == std::string::npos ||
                 !text.starts_with(wildcard.prefix()))) {
    finding("a text matches without the known bytes", printable(pattern) + "\n" + printable(text));
  }
}

void check(std::string_view input) {
  const int locale = Chooser(input.substr(0, 1)).from(kLocales).stands_for;
  input.remove_prefix(input.empty() ? 0 : 1);
  setDBCharCode(convertLocaleID2DBCharCode(locale));
  const std::string pattern = next_string(input);
  const auto parts = pattern_parts(pattern, locale);
  const auto wildcard = wildcard_of(pattern);
  if (parts.has_value() != wildcard.has_value()) {
    finding(parts ? "a good pattern is refused" : "a bad pattern is taken", printable(pattern));
  }
  if (!parts) return;
  check_text(*wildcard, *parts, pattern, "");
  while (!input.empty()) check_text(*wildcard, *parts, pattern, next_string(input));
}

}  // namespace
}  // namespace qxe::test

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qxe::test::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
