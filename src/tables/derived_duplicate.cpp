// Copies of whole tables.
#include "tables/column_claims.h"
#include "tables/realtables.h"

namespace qxe {

int mpp_duplicate_realtable(void* block) {
  return run_pool_step(block);
}

int TRealTable::DuplicateRealTable(TRealTable& source) {
  source.settle_values();
  raised(AddSetWithoutCopy(std::unique_ptr<TSetArray>(source.root_set().MppCopyArray())));
  std::vector<long> costs;
  for (const auto& filter : source.filters_) {
    add_blank_filter(filter->FFilterName);
    costs.push_back(column_cost(TotalRecs(), filter.get()));
  }
  claim_columns(QX_MPP_DUPLICATE_REALTABLE, costs, [&](int column) {
    const TFilter& from = *source.filter_at(column);
    Column copy;
    copy.vl.reset(from.VL->CopyArray());
    copy.pv.reset(from.PVL->CopyArray());
    filter_at(column)->adopt(std::move(copy));
  });
  return 0;
}

}  // namespace qxe
