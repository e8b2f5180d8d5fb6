#include "kernels.h"

#include <immintrin.h>

#include <numeric>
#include <random>
#include <thread>

namespace qxe::bench {

std::vector<int> random_codes(int rows, int values) {
  std::mt19937 random(7);
  std::vector<int> codes(static_cast<size_t>(rows));
  for (int& code : codes) code = static_cast<int>(random() % static_cast<unsigned>(values));
  return codes;
}

namespace {

/// `body(begin, end)` on even parts of `n` elements, each on a thread of its own but the first;
/// returns the sum of what they return.
template <class Body>
int in_parts(long n, int threads, const Body& body) {
  std::vector<int> results(static_cast<size_t>(threads));
  const auto run = [&](int part) {
    results[static_cast<size_t>(part)] = body(n * part / threads, n * (part + 1) / threads);
  };
  std::vector<std::thread> others;
  for (int part = 1; part < threads; ++part) others.emplace_back(run, part);
  run(0);
  for (std::thread& other : others) other.join();
  return std::accumulate(results.begin(), results.end(), 0);
}

int scan_plain(const int* codes, long begin, long end, int first, int last, int* out) {
  const auto width = static_cast<unsigned>(last - first);
  int* next = out;
  for (long i = begin; i < end; ++i) {
    *next = static_cast<int>(i) + 1;
    next += static_cast<unsigned>(codes[i] - first) < width;
  }
  return static_cast<int>(next - out);
}

__attribute__((target("avx512f,popcnt"))) int scan_avx512(const int* codes, long begin, long end,
                                                          int first, int last, int* out) {
  const __m512i low = _mm512_set1_epi32(first);
  const __m512i width = _mm512_set1_epi32(last - first);
  const __m512i places = _mm512_setr_epi32(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
  int* next = out;
  long i = begin;
  for (; i + 64 <= end; i += 64) {
    __mmask16 hits[4];
    for (int v = 0; v < 4; ++v) {
      const __m512i loaded = _mm512_loadu_si512(codes + i + v * 16);
      hits[v] = _mm512_cmplt_epu32_mask(_mm512_sub_epi32(loaded, low), width);
    }
    if ((hits[0] | hits[1] | hits[2] | hits[3]) == 0) continue;
    for (int v = 0; v < 4; ++v) {
      const __m512i rows =
          _mm512_add_epi32(places, _mm512_set1_epi32(static_cast<int>(i) + v * 16));
      _mm512_storeu_si512(next, _mm512_maskz_compress_epi32(hits[v], rows));
      next += __builtin_popcount(hits[v]);
    }
  }
  return static_cast<int>(next - out) + scan_plain(codes, i, end, first, last, next);
}

}  // namespace

int scan_range(const std::vector<int>& codes, int first, int end, int threads, int* out) {
  const bool vectors = __builtin_cpu_supports("avx512f");
  return in_parts(static_cast<long>(codes.size()), threads, [&](long from, long to) {
    return (vectors ? scan_avx512 : scan_plain)(codes.data(), from, to, first, end, out + from);
  });
}

int first_uses(const std::vector<int>& codes, int values, int threads, int* out) {
  return in_parts(static_cast<long>(codes.size()), threads, [&](long from, long to) {
    std::vector<unsigned char> seen(static_cast<size_t>(values));
    int* next = out + from;
    for (long i = from; i < to; ++i) {
      unsigned char& used = seen[static_cast<size_t>(codes[static_cast<size_t>(i)])];
      *next = static_cast<int>(i) + 1;
      next += used == 0;
      used = 1;
    }
    return static_cast<int>(next - (out + from));
  });
}

double sum_of_cells(const std::vector<int>& codes, const std::vector<double>& values, int count) {
  double sum = 0;
  unsigned position = 0;
  for (int i = 0; i < count; ++i) {
    position = position * 1664525u + 1013904223u;
    sum += values[static_cast<size_t>(codes[position % codes.size()])];
  }
  return sum;
}

void sort_codes(const std::vector<int>& codes, int values, int* out) {
  int half = 0;
  while ((1 << (2 * half)) < values) ++half;
  const uint64_t mask = (uint64_t{1} << half) - 1;
  const size_t n = codes.size();
  static std::vector<uint64_t> from, to;
  from.resize(n);
  to.resize(n);
  std::vector<size_t> low(mask + 2), high(mask + 2);
  for (size_t i = 0; i < n; ++i) {
    const auto code = static_cast<uint64_t>(codes[i]);
    from[i] = code << 32 | (i + 1);
    ++low[(code & mask) + 1];
    ++high[(code >> half) + 1];
  }
  for (size_t b = 1; b < low.size(); ++b) low[b] += low[b - 1], high[b] += high[b - 1];
  for (size_t i = 0; i < n; ++i) to[low[from[i] >> 32 & mask]++] = from[i];
  for (size_t i = 0; i < n; ++i) {
    out[high[to[i] >> (32 + half)]++] = static_cast<int>(static_cast<uint32_t>(to[i]));
  }
}

}  // namespace qxe::bench
