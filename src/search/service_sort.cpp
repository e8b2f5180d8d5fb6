// Positions by the size of a count.
#include <algorithm>
#include <numeric>

#include "search/sort.h"
#include "search/sort_steps.h"

namespace qxe {

int service_sort_by_n(int n, const int* counts, int* nonZero, int* nonZeroIndex, int* order) {
  if (order == nullptr) {
    return report("QXServiceSortByN", QX_ERROR_UNKNOWN, "Output area not reserved");
  }
  *nonZero = 0;
  if (n < 1) return 0;
  for (int i = 0; i < n; ++i) {
    if (counts[i] != 0) nonZeroIndex[(*nonZero)++] = i;
  }
  const Block<int> positions = make_block<int>(n);
  std::iota(positions.get(), positions.get() + n, 0);
  // The key counts down from the largest count, so that it is never negative.
  const auto [least, most] = std::minmax_element(counts, counts + n);
  SortKey largest_first;
  largest_first.digits = {{counts, -1}};
  largest_first.base = static_cast<uint64_t>(*most);
  largest_first.limit = static_cast<uint64_t>(static_cast<long>(*most) - *least + 1);
  sort_by_key(largest_first, n, positions.get(), order);
  return 0;
}

}  // namespace qxe
