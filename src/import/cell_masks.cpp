#include "import/cell_masks.h"

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace qxe {

namespace {

#ifdef __SSE2__

uint64_t equal_bytes(const char* block, char byte) {
  uint64_t mask = 0;
  for (int part = 0; part < 4; ++part) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block) + part);
    const int hits = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte)));
    mask |= static_cast<uint64_t>(static_cast<unsigned>(hits)) << (16 * part);
  }
  return mask;
}

#define QXE_AVX512 __attribute__((target("avx512f,avx512bw")))

QXE_AVX512 void masks_avx512(const char* text, int blocks, std::span<const char> separators,
                             CellMasks* out) {
  const __m512i line_feed = _mm512_set1_epi8('\n');
  const __m512i quote = _mm512_set1_epi8('"');
  for (int i = 0; i < blocks; ++i, text += kMaskBlock) {
    const __m512i bytes = _mm512_loadu_si512(text);
    const uint64_t line_feeds = _mm512_cmpeq_epi8_mask(bytes, line_feed);
    uint64_t stops = line_feeds;
    for (const char separator : separators) {
      stops |= _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(separator));
    }
    out[i] = {stops, line_feeds, _mm512_cmpeq_epi8_mask(bytes, quote)};
  }
}

bool has_avx512() {
  return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw");
}

#else

uint64_t equal_bytes(const char* block, char byte) {
  uint64_t mask = 0;
  for (int i = 0; i < kMaskBlock; ++i) mask |= static_cast<uint64_t>(block[i] == byte) << i;
  return mask;
}

#endif

void masks_plain(const char* text, int blocks, std::span<const char> separators, CellMasks* out) {
  for (int i = 0; i < blocks; ++i, text += kMaskBlock) {
    const uint64_t line_feeds = equal_bytes(text, '\n');
    uint64_t stops = line_feeds;
    for (const char separator : separators) stops |= equal_bytes(text, separator);
    out[i] = {stops, line_feeds, equal_bytes(text, '"')};
  }
}

}  // namespace

void find_cell_masks(const char* text, int blocks, std::span<const char> separators,
                     CellMasks* out) {
#ifdef __SSE2__
  static const auto masks = has_avx512() ? masks_avx512 : masks_plain;
#else
  constexpr auto masks = masks_plain;
#endif
  masks(text, blocks, separators, out);
}

}  // namespace qxe
