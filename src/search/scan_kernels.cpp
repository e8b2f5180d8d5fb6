// The vector instructions of searches are here. A step tests a few vectors and goes on at once
// when no row hits; otherwise it stores, for each vector, its hits packed to the front of a full
// vector and moves on by their number. What such a store writes beyond the hits lies before the
// place of the row that is looked at, so never behind the end of `out`.
#include "search/scan_kernels.h"

#include <immintrin.h>
#include <string.h>

#include <array>

#ifndef __clang__
// GCC's own header leaves values undefined on purpose and is warned about it here.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

namespace qxe {

namespace {

template <class Test>
long keep_plain(const ScanRows& rows, long begin, long end, const Test& test, int* out) {
  int* next = out;
  for (long i = begin; i < end; ++i) {
    const int row = rows.row(i);
    *next = row;
    next += test(rows.pv[row]);
  }
  return next - out;
}

const char* find_plain(const char* begin, const char* end, const char* pattern, size_t size) {
  return static_cast<const char*>(memmem(begin, static_cast<size_t>(end - begin), pattern, size));
}

int* put_rows_plain(const uint32_t* words, long count, int first_row, int* out, const int*) {
  for (long i = 0; i < count; ++i) {
    const int row = first_row + static_cast<int>(i) * 32;
    for (uint32_t bits = words[i]; bits != 0; bits &= bits - 1) *out++ = row + __builtin_ctz(bits);
  }
  return out;
}

/// The first of the places `at` + i, for the bits i of `places`, where the whole pattern stands.
template <class Bits>
const char* first_whole(const char* at, Bits places, const char* pattern, size_t size) {
  for (; places != 0; places &= places - 1) {
    const char* const place = at + __builtin_ctzll(places);
    if (memcmp(place, pattern, size) == 0) return place;
  }
  return nullptr;
}

constexpr int kVectorsPerStep = 4;

// AVX-512: 16 rows a vector.

#define QXE_AVX512 __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl,popcnt")))

struct InOrder512 {
  const int* pv;
  __m512i first;

  QXE_AVX512 explicit InOrder512(const ScanRows& rows)
      : pv(rows.pv),
        first(_mm512_setr_epi32(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16)) {}
  QXE_AVX512 __m512i rows_at(long i) const {
    return _mm512_add_epi32(first, _mm512_set1_epi32(static_cast<int>(i)));
  }
  QXE_AVX512 __m512i keys_at(long i) const { return _mm512_loadu_si512(pv + i + 1); }
};

struct Listed512 {
  const int* pv;
  const int* rows;

  QXE_AVX512 explicit Listed512(const ScanRows& source) : pv(source.pv), rows(source.rows) {}
  QXE_AVX512 __m512i rows_at(long i) const { return _mm512_loadu_si512(rows + i); }
  QXE_AVX512 __m512i keys_at(long i) const { return _mm512_i32gather_epi32(rows_at(i), pv, 4); }
};

struct Range512 {
  __m512i first;
  __m512i width;

  QXE_AVX512 explicit Range512(ValueRange range)
      : first(_mm512_set1_epi32(range.first)), width(_mm512_set1_epi32(range.end - range.first)) {}
  QXE_AVX512 unsigned operator()(__m512i keys) const {
    return _mm512_cmplt_epu32_mask(_mm512_sub_epi32(keys, first), width);
  }
};

struct Ranges512 {
  Range512 a;
  Range512 b;

  QXE_AVX512 explicit Ranges512(const RangeTest& test) : a(test.a), b(test.b) {}
  QXE_AVX512 unsigned operator()(__m512i keys) const { return a(keys) | b(keys); }
};

struct Bits512 {
  const uint32_t* words;

  QXE_AVX512 explicit Bits512(const BitTest& test) : words(test.words) {}
  QXE_AVX512 unsigned operator()(__m512i keys) const {
    const __m512i found = _mm512_i32gather_epi32(_mm512_srli_epi32(keys, 5), words, 4);
    return _mm512_test_epi32_mask(found, _mm512_rolv_epi32(_mm512_set1_epi32(1), keys));
  }
};

template <class Rows, class Hits, class Test>
QXE_AVX512 long keep_avx512(const ScanRows& source, long begin, long end, const Test& test,
                            int* out) {
  constexpr int kLanes = 16;
  const Rows rows(source);
  const Hits hits_of(test);
  int* next = out;
  long i = begin;
  for (; i + kLanes * kVectorsPerStep <= end; i += kLanes * kVectorsPerStep) {
    unsigned hits[kVectorsPerStep];
    for (int v = 0; v < kVectorsPerStep; ++v) hits[v] = hits_of(rows.keys_at(i + v * kLanes));
    if ((hits[0] | hits[1] | hits[2] | hits[3]) == 0) continue;
    for (int v = 0; v < kVectorsPerStep; ++v) {
      _mm512_storeu_si512(next, _mm512_maskz_compress_epi32(static_cast<__mmask16>(hits[v]),
                                                            rows.rows_at(i + v * kLanes)));
      next += __builtin_popcount(hits[v]);
    }
  }
  return next - out + keep_plain(source, i, end, test, next);
}

long ranges_avx512(const ScanRows& rows, long begin, long end, const RangeTest& test, int* out) {
  return rows.rows == nullptr ? keep_avx512<InOrder512, Ranges512>(rows, begin, end, test, out)
                              : keep_avx512<Listed512, Ranges512>(rows, begin, end, test, out);
}

// Listed rows would gather twice, which is slower than the plain loop.
long bits_avx512(const ScanRows& rows, long begin, long end, const BitTest& test, int* out) {
  return rows.rows == nullptr ? keep_avx512<InOrder512, Bits512>(rows, begin, end, test, out)
                              : keep_plain(rows, begin, end, test, out);
}

/// Compares the first and the last byte of the pattern at 64 places at a time.
QXE_AVX512 const char* find_avx512(const char* begin, const char* end, const char* pattern,
                                   size_t size) {
  const __m512i first = _mm512_set1_epi8(pattern[0]);
  const __m512i last = _mm512_set1_epi8(pattern[size - 1]);
  const char* at = begin;
  for (; end - at >= static_cast<long>(size) + 63; at += 64) {
    const __mmask64 firsts = _mm512_cmpeq_epi8_mask(_mm512_loadu_si512(at), first);
    const __mmask64 both =
        _mm512_mask_cmpeq_epi8_mask(firsts, _mm512_loadu_si512(at + size - 1), last);
    if (both == 0) continue;
    if (const char* const place = first_whole(at, both, pattern, size)) return place;
  }
  return find_plain(at, end, pattern, size);
}

QXE_AVX512 int* put_rows_avx512(const uint32_t* words, long count, int first_row, int* out,
                                const int* room_end) {
  const __m512i low = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  const __m512i high = _mm512_add_epi32(low, _mm512_set1_epi32(16));
  long i = 0;
  for (; i < count && room_end - out >= 32; ++i) {
    const uint32_t bits = words[i];
    if (bits == 0) continue;
    const __m512i row = _mm512_set1_epi32(first_row + static_cast<int>(i) * 32);
    _mm512_storeu_si512(
        out, _mm512_maskz_compress_epi32(static_cast<__mmask16>(bits), _mm512_add_epi32(row, low)));
    out += __builtin_popcount(bits & 0xffff);
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi32(static_cast<__mmask16>(bits >> 16),
                                                         _mm512_add_epi32(row, high)));
    out += __builtin_popcount(bits >> 16);
  }
  return put_rows_plain(words + i, count - i, first_row + static_cast<int>(i) * 32, out, room_end);
}

// AVX2: 8 rows a vector.

#define QXE_AVX2 __attribute__((target("avx2,popcnt")))

QXE_AVX2 inline __m256i load_256(const int* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

struct InOrder256 {
  const int* pv;
  __m256i first;

  QXE_AVX2 explicit InOrder256(const ScanRows& rows)
      : pv(rows.pv), first(_mm256_setr_epi32(1, 2, 3, 4, 5, 6, 7, 8)) {}
  QXE_AVX2 __m256i rows_at(long i) const {
    return _mm256_add_epi32(first, _mm256_set1_epi32(static_cast<int>(i)));
  }
  QXE_AVX2 __m256i keys_at(long i) const { return load_256(pv + i + 1); }
};

struct Listed256 {
  const int* pv;
  const int* rows;

  QXE_AVX2 explicit Listed256(const ScanRows& source) : pv(source.pv), rows(source.rows) {}
  QXE_AVX2 __m256i rows_at(long i) const { return load_256(rows + i); }
  QXE_AVX2 __m256i keys_at(long i) const { return _mm256_i32gather_epi32(pv, rows_at(i), 4); }
};

struct Range256 {
  __m256i first;
  __m256i width;

  // There is only a signed comparison: both sides are moved down by half of the numbers.
  QXE_AVX2 explicit Range256(ValueRange range)
      : first(moved(range.first)), width(moved(range.end - range.first)) {}
  QXE_AVX2 static __m256i moved(int number) {
    return _mm256_set1_epi32(static_cast<int>(static_cast<unsigned>(number) + 0x80000000u));
  }
  QXE_AVX2 __m256i operator()(__m256i keys) const {
    return _mm256_cmpgt_epi32(width, _mm256_sub_epi32(keys, first));
  }
};

QXE_AVX2 inline unsigned mask_of_signs(__m256i numbers) {
  return static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(numbers)));
}

struct Ranges256 {
  Range256 a;
  Range256 b;

  QXE_AVX2 explicit Ranges256(const RangeTest& test) : a(test.a), b(test.b) {}
  QXE_AVX2 unsigned operator()(__m256i keys) const {
    return mask_of_signs(_mm256_or_si256(a(keys), b(keys)));
  }
};

struct Bits256 {
  const int* words;

  QXE_AVX2 explicit Bits256(const BitTest& test)
      : words(reinterpret_cast<const int*>(test.words)) {}
  QXE_AVX2 unsigned operator()(__m256i keys) const {
    const __m256i found = _mm256_i32gather_epi32(words, _mm256_srli_epi32(keys, 5), 4);
    // Bit number 31 - n is bit n of the complement; shifted up by that it becomes the sign.
    const __m256i up = _mm256_andnot_si256(keys, _mm256_set1_epi32(31));
    return mask_of_signs(_mm256_sllv_epi32(found, up));
  }
};

/// For each mask of 8 lanes the lanes that are set, to the front.
constexpr std::array<std::array<uint8_t, 8>, 256> make_pack_orders() {
  std::array<std::array<uint8_t, 8>, 256> orders{};
  for (size_t mask = 0; mask < orders.size(); ++mask) {
    size_t next = 0;
    for (uint8_t lane = 0; lane < 8; ++lane) {
      if (mask >> lane & 1) orders[mask][next++] = lane;
    }
  }
  return orders;
}

constexpr auto kPackOrders = make_pack_orders();

QXE_AVX2 inline __m256i packed(__m256i rows, unsigned hits) {
  const auto* const order = reinterpret_cast<const __m128i*>(kPackOrders[hits].data());
  return _mm256_permutevar8x32_epi32(rows, _mm256_cvtepu8_epi32(_mm_loadl_epi64(order)));
}

template <class Rows, class Hits, class Test>
QXE_AVX2 long keep_avx2(const ScanRows& source, long begin, long end, const Test& test, int* out) {
  constexpr int kLanes = 8;
  const Rows rows(source);
  const Hits hits_of(test);
  int* next = out;
  long i = begin;
  for (; i + kLanes * kVectorsPerStep <= end; i += kLanes * kVectorsPerStep) {
    unsigned hits[kVectorsPerStep];
    for (int v = 0; v < kVectorsPerStep; ++v) hits[v] = hits_of(rows.keys_at(i + v * kLanes));
    if ((hits[0] | hits[1] | hits[2] | hits[3]) == 0) continue;
    for (int v = 0; v < kVectorsPerStep; ++v) {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(next),
                          packed(rows.rows_at(i + v * kLanes), hits[v]));
      next += __builtin_popcount(hits[v]);
    }
  }
  return next - out + keep_plain(source, i, end, test, next);
}

long ranges_avx2(const ScanRows& rows, long begin, long end, const RangeTest& test, int* out) {
  return rows.rows == nullptr ? keep_avx2<InOrder256, Ranges256>(rows, begin, end, test, out)
                              : keep_avx2<Listed256, Ranges256>(rows, begin, end, test, out);
}

long bits_avx2(const ScanRows& rows, long begin, long end, const BitTest& test, int* out) {
  return rows.rows == nullptr ? keep_avx2<InOrder256, Bits256>(rows, begin, end, test, out)
                              : keep_plain(rows, begin, end, test, out);
}

QXE_AVX2 int* put_rows_avx2(const uint32_t* words, long count, int first_row, int* out,
                            const int* room_end) {
  const __m256i lanes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  long i = 0;
  for (; i < count && room_end - out >= 32; ++i) {
    int row = first_row + static_cast<int>(i) * 32;
    for (uint32_t bits = words[i]; bits != 0; bits >>= 8, row += 8) {
      const __m256i rows = _mm256_add_epi32(_mm256_set1_epi32(row), lanes);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), packed(rows, bits & 0xff));
      out += __builtin_popcount(bits & 0xff);
    }
  }
  return put_rows_plain(words + i, count - i, first_row + static_cast<int>(i) * 32, out, room_end);
}

QXE_AVX2 inline unsigned mask_of_equal(const char* bytes, __m256i byte) {
  const __m256i loaded = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
  return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(loaded, byte)));
}

QXE_AVX2 const char* find_avx2(const char* begin, const char* end, const char* pattern,
                               size_t size) {
  const __m256i first = _mm256_set1_epi8(pattern[0]);
  const __m256i last = _mm256_set1_epi8(pattern[size - 1]);
  const char* at = begin;
  for (; end - at >= static_cast<long>(size) + 31; at += 32) {
    const unsigned both = mask_of_equal(at, first) & mask_of_equal(at + size - 1, last);
    if (both == 0) continue;
    if (const char* const place = first_whole(at, both, pattern, size)) return place;
  }
  return find_plain(at, end, pattern, size);
}

/// Bit i: whether byte i of 16 is 0.
uint32_t mask_of_zeros(const unsigned char* bytes) {
  const __m128i loaded = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  return static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(loaded, _mm_setzero_si128())));
}

}  // namespace

void pack_hits(const unsigned char* hits, int count, uint32_t* words) {
  int i = 0;
  for (; i + 32 <= count; i += 32) {
    words[i / 32] = ~(mask_of_zeros(hits + i) | mask_of_zeros(hits + i + 16) << 16);
  }
  if (i == count) return;
  uint32_t rest = 0;
  for (int bit = 0; bit < count - i; ++bit) rest |= uint32_t{hits[i + bit] != 0} << bit;
  words[i / 32] = rest;
}

bool has_vector_unit(VectorUnit unit) {
  switch (unit) {
    case VectorUnit::kAvx512:
      return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
             __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    case VectorUnit::kAvx2: return __builtin_cpu_supports("avx2");
    default: return true;
  }
}

const ScanKernels& scan_kernels(VectorUnit unit) {
  static constexpr ScanKernels kPlain{keep_plain<RangeTest>, keep_plain<BitTest>, find_plain,
                                      put_rows_plain};
  static constexpr ScanKernels kAvx2{ranges_avx2, bits_avx2, find_avx2, put_rows_avx2};
  static constexpr ScanKernels kAvx512{ranges_avx512, bits_avx512, find_avx512, put_rows_avx512};
  switch (unit) {
    case VectorUnit::kAvx512: return kAvx512;
    case VectorUnit::kAvx2: return kAvx2;
    default: return kPlain;
  }
}

const ScanKernels& scan_kernels() {
  static const ScanKernels& fastest =
      scan_kernels(has_vector_unit(VectorUnit::kAvx512) ? VectorUnit::kAvx512
                   : has_vector_unit(VectorUnit::kAvx2) ? VectorUnit::kAvx2
                                                        : VectorUnit::kNone);
  return fastest;
}

}  // namespace qxe
