#include "import/cell_scanner.h"

#include <algorithm>

namespace qxe {

namespace {

/// The first quote or line feed.
const char* find_quote_or_line_end(const char* begin, const char* end) {
  for (const char* block = begin; block < end; block += 64) {
    const uint64_t mask = delimiter_mask(block, std::array{'"', '\n'});
    if (mask != 0) return std::min(block + std::countr_zero(mask), end);
  }
  return end;
}

}  // namespace

const char* behind_lines(const char* begin, const char* end, long& count) {
  for (const char* block = begin; block < end && count > 0; block += 64) {
    uint64_t mask = delimiter_mask(block, std::array{'\n'});
    if (end - block < 64) mask &= (uint64_t{1} << (end - block)) - 1;
    const int found = std::popcount(mask);
    if (found < count) {
      count -= found;
      continue;
    }
    while (--count > 0) mask &= mask - 1;
    return block + std::countr_zero(mask) + 1;
  }
  return end;
}

QuotedCell find_closing_quote(const char* begin, const char* end) {
  QuotedCell found{0, begin, {begin, 0}, false};
  long pairs = 0;
  for (const char* place = begin;; place += 2, ++pairs) {
    place = find_quote_or_line_end(place, end);
    const bool closed = place < end && *place == '"';
    const bool line_end_pair = !closed && place > begin && place[-1] == '\r';
    const long size = place - begin - pairs - (line_end_pair ? 1 : 0);
    found.stop = place;
    if (size > kMaxQuotedCell) {
      found.status = QX_ERROR_TEXT_FIELD;
    } else if (!closed) {
      found.status = QX_ERROR_CATALOG;
    } else if (place + 1 < end && place[1] == '"') {
      continue;
    } else {
      found.stop = place + 1;
      found.doubled = pairs > 0;
      found.cell.size = static_cast<int>(place - begin);
    }
    return found;
  }
}

std::string without_doubled_quotes(Cell cell) {
  std::string text;
  text.reserve(static_cast<size_t>(cell.size));
  for (int i = 0; i < cell.size; ++i) {
    text.push_back(cell.text[i]);
    if (cell.text[i] == '"') ++i;
  }
  return text;
}

}  // namespace qxe
