#include "persist/section_carrier.h"

#include <algorithm>

namespace qxe {

unsigned largest_distance(const int* numbers, long n, int first) {
  const auto low = static_cast<unsigned>(first);
  unsigned largest = 0;
  for (long i = 0; i < n; ++i) {
    largest = std::max(largest, static_cast<unsigned>(numbers[i]) - low);
  }
  return largest;
}

}  // namespace qxe
