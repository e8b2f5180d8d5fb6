// Any bytes as a catalog. What follows the first NUL is the data; without one they are a few lines
// that suit many catalogs.
#include <algorithm>
#include <string>
#include <string_view>

#include "fuzz/fuzz_input.h"
#include "fuzz/import_check.h"

namespace {

constexpr std::string_view kData =
    "1,2.5,2024/02/29,12:30:45,\"a\"\"b,\",2024/02/29 12:30:45,-1.25,x\n"
    ",,,,,,,\r\n"
    "12,3\n"
    "x\n"
    "2147483647\t1,234;\"open\n";

/// Whether a log may be named that lies in another directory: it would be deleted.
bool names_foreign_file(std::string catalog) {
  std::erase_if(catalog, [](char c) { return c == ' ' || c == '\r'; });
  std::transform(catalog.begin(), catalog.end(), catalog.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  constexpr std::string_view kDirective = "//errorlog\t";
  for (size_t place = catalog.find(kDirective); place != std::string::npos;
       place = catalog.find(kDirective, place + 1)) {
    const size_t end = std::min(catalog.find('\n', place), catalog.size());
    const std::string line = catalog.substr(place + kDirective.size(), end - place);
    if (line.find('/') != std::string::npos) return true;
  }
  return false;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const size_t split = input.find('\0');
  qxe::test::ImportInput import;
  import.catalog = input.substr(0, split);
  import.data = split == std::string_view::npos ? kData : input.substr(split + 1);
  if (!names_foreign_file(import.catalog)) qxe::test::check_import(import);
  return 0;
}
