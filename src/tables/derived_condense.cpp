// Value lists without the values that no row uses.
#include <algorithm>
#include <utility>
#include <vector>

#include "tables/column_claims.h"
#include "tables/realtables.h"
#include "tables/value_use.h"

namespace qxe {

int mpp_condense_realtable(void* block) {
  return run_pool_step(block);
}

namespace {

/// Pending values have been merged. Changes the filter or, when memory fails, nothing. The rows'
/// values and their order stay, so sorted sets do too.
void condense(TFilter& filter) {
  if (filter.condensed()) return;
  ValueUse use(filter.VL->FArraySize);
  const int* const numbers = std::as_const(*filter.PVL).PIntAr();
  const int count = filter.PVL->FArraySize;
  for (int begin = 0; begin < count && !use.all_used(); begin += kMarkedRows) {
    use.mark(numbers + begin, std::min(count - begin, kMarkedRows));
  }
  if (use.all_used()) return filter.set_condensed();
  UsedValues used = use.used_values(*filter.VL);
  int* const rows = filter.PVL->PIntAr();
  for (int i = 0; i < count; ++i) rows[i] = used.numbers[rows[i]];
  filter.adopt_values(std::move(used.list));
  filter.set_condensed();
}

}  // namespace

int TRealTable::CondenseFilter(int id) {
  const int position = FilterID2Pos(id);
  if (position < 0) {
    return report("CondenseFilter", QX_ERROR_NO_FILTER, "No Such Filter: %d", id);
  }
  filter_at(position)->MergeTVL(true);
  detach_dependents();
  condense(*filter_at(position));
  return 0;
}

int TRealTable::condense_filters(const char* layer) {
  CheckMergeFilterTVL(true);
  detach_dependents();
  std::vector<char> done(filters_.size(), 0);
  std::vector<long> costs;
  for (const auto& filter : filters_) {
    costs.push_back(filter->condensed() ? 0 : column_cost(TotalRecs(), filter.get()));
  }
  try {
    claim_columns(QX_MPP_CONDENSE_REALTABLE, costs, [&](int column) {
      condense(*filter_at(column));
      done[static_cast<size_t>(column)] = 1;
    });
  } catch (const CQXException& failure) {
    const auto failed = std::find(done.begin(), done.end(), 0) - done.begin();
    report(layer, failure.ErrorCode(), "Failed to condense: FilterID[%d]",
           filter_at(static_cast<int>(failed))->FFilterID);
    throw;
  }
  return 0;
}

int TRealTable::CondenseTable() {
  return condense_filters("CondenseTable");
}

int TRealTable::MppCondenseTable() {
  return condense_filters("MppCondenseTable");
}

}  // namespace qxe
