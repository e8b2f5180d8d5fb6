#include "kernels.h"

#include <random>

namespace qxe::bench {

std::vector<int> random_codes(int rows, int values) {
  std::mt19937 random(7);
  std::vector<int> codes(static_cast<size_t>(rows));
  for (int& code : codes) code = static_cast<int>(random() % static_cast<unsigned>(values));
  return codes;
}

int scan_range(const std::vector<int>& codes, int first, int end, int* out) {
  const auto width = static_cast<unsigned>(end - first);
  int* next = out;
  for (size_t i = 0; i < codes.size(); ++i) {
    *next = static_cast<int>(i) + 1;
    next += static_cast<unsigned>(codes[i] - first) < width;
  }
  return static_cast<int>(next - out);
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
