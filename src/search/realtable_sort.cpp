// Sorts of a real table's sets. Each makes a new set, which becomes the current one; the source
// stays as it is.
#include <algorithm>
#include <vector>

#include "search/multi_key_sort.h"
#include "search/sort.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

using CountingSortFunction = void (*)(int, int, const int*, int*, const int*, int);

/// Sorts `set` by `filter` and registers the result.
int sort_by_field(TRealTable& table, int filter, int set, int dir, CountingSortFunction sort) {
  constexpr char kLayer[] = "SortByField";
  const TFilter* const column = table.GetFilter(filter);
  if (column == nullptr) {
    return report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", filter);
  }
  const TSetArray* const source = table.GetSet(set);
  if (source == nullptr) return report(kLayer, QX_ERROR_NO_SET, "No Such Set: %d", set);
  table.CheckMergeFilterTVL(true);
  auto sorted = set_like(*source);
  sort(dir, source->FArraySize, source->PIntAr(), sorted->PIntAr(), column->PVL->PIntAr(),
       column->VL->FArraySize);
  return table.AddSetWithoutCopy(std::move(sorted));
}

}  // namespace

int TRealTable::SortByField(int filter, int set, int dir) {
  return sort_by_field(*this, filter, set, dir, CountingSort);
}

int TRealTable::MppSortByField(int filter, int set, int dir) {
  return sort_by_field(*this, filter, set, dir, MppCountingSort);
}

int TRealTable::SortByRecNo(int, int set, int dir) {
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) return report("SortByRecNo", QX_ERROR_NO_SET, "No Such Set: %d", set);
  auto sorted = set_like(*source);
  const int kept =
      BitMapSort(dir, TotalRecs(), source->FArraySize, source->PIntAr(), sorted->PIntAr());
  if (kept < source->FArraySize) {
    sorted->SetArraySize(kept);
    sorted->AdjustMemArea();
  }
  return AddSetWithoutCopy(std::move(sorted));
}

int TRealTable::MppIntegratedSortByField(int set, const int* filters, const int* dirs) {
  std::vector<TFilter*> keys;
  for (int i = 0; i < QX_MAX_SORT_KEYS && filters[i] >= 1; ++i) {
    const int position = FilterID2Pos(filters[i]);
    if (position < 0) return QX_ERROR_NO_FILTER;
    keys.push_back(filter_at(position));
  }
  const int wanted = set < 0 ? GetCurrentSetID() : set;
  if (!std::binary_search(set_ids_.begin(), set_ids_.end(), wanted)) return QX_ERROR_NO_SET;
  const TSetArray& source = *GetSet(wanted);
  CheckMergeFilterTVL(true);
  auto sorted = set_like(source);
  SortForMultiItem(static_cast<int>(keys.size()), source.FArraySize, source.PIntAr(), keys.data(),
                   dirs, sorted->PIntAr());
  return AddSetWithoutCopy(std::move(sorted));
}

}  // namespace qxe
