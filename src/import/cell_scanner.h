// Scanning of delimited text in memory: where cells end, and what a quoted cell holds. Separators,
// quotes and line feeds are bytes; they are not looked for inside multi-byte characters.
#pragma once

#include <stdint.h>
#include <string.h>

#include <array>
#include <bit>
#include <string>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "import/source_file.h"
#include "qxe.h"

namespace qxe {

/// A cell's text. It is not terminated and, unless quotes had to be resolved, lies in the file.
struct Cell {
  const char* text;
  int size;
};

constexpr int kMaxUnquotedCell = 4095;  // longest cell without and with quotes, in bytes
constexpr int kMaxQuotedCell = 4096;

/// The bytes that end a cell: `N` separators of the user's choice, and the line feed.
template <int N>
using Delimiters = std::array<char, N + 1>;

template <size_t N>
bool is_delimiter(char byte, const std::array<char, N>& delimiters) {
  for (const char delimiter : delimiters) {
    if (byte == delimiter) return true;
  }
  return false;
}

#ifdef __SSE2__

/// Bit i says whether byte i of the 64 at `block` is a delimiter.
template <size_t N>
uint64_t delimiter_mask(const char* block, const std::array<char, N>& delimiters) {
  uint64_t mask = 0;
  for (int part = 0; part < 4; ++part) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block) + part);
    __m128i hits = _mm_setzero_si128();
    for (const char delimiter : delimiters) {
      hits = _mm_or_si128(hits, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(delimiter)));
    }
    mask |= static_cast<uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(hits))) << (16 * part);
  }
  return mask;
}

#else

template <size_t N>
uint64_t delimiter_mask(const char* block, const std::array<char, N>& delimiters) {
  uint64_t mask = 0;
  for (int i = 0; i < 64; ++i) {
    mask |= static_cast<uint64_t>(is_delimiter(block[i], delimiters)) << i;
  }
  return mask;
}

#endif

/// Place behind the first `count` lines, or the end. Takes the lines passed from `count`.
const char* behind_lines(const char* begin, const char* end, long& count);

/// Outcome of scanning a quoted cell.
struct QuotedCell {
  int status;        // 0, QX_ERROR_CATALOG for bad quoting, QX_ERROR_TEXT_FIELD for a long cell
  const char* stop;  // the delimiter behind the cell, or the end; of a fault a place in its line
  Cell cell;
  bool doubled;  // quotes inside are still doubled
};

/// Where the value that begins at `begin`, behind its opening quote, is closed.
QuotedCell find_closing_quote(const char* begin, const char* end);
/// `cell` with each pair of quotes made one.
std::string without_doubled_quotes(Cell cell);

/// Scans the cell whose opening quote stands before `begin`. Behind the closing quote only NULs and
/// a delimiter may follow. A line break inside the quotes is a fault.
template <size_t N>
QuotedCell scan_quoted(const char* begin, const char* end, const std::array<char, N>& delimiters) {
  QuotedCell found = find_closing_quote(begin, end);
  if (found.status < 0) return found;
  const char* place = found.stop;
  while (place < end && *place == '\0' && !is_delimiter('\0', delimiters)) ++place;
  if (place < end && *place == '\r' && (place + 1 == end || place[1] == '\n')) ++place;
  found.stop = place;
  if (place < end && !is_delimiter(*place, delimiters)) found.status = QX_ERROR_CATALOG;
  return found;
}

}  // namespace qxe
