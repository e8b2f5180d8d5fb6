#include "summary/join_sum.h"

#include "parallel/smpengine.h"
#include "summary/measure_columns.h"
#include "summary/output_table.h"
#include "summary/result_columns.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

TJoinSum::TJoinSum(TJoinTable& join, const NonCubeRequest& request)
    : join_(join), set_(join.find_set(request.set)) {
  check_counts(request);
  if (set_ == nullptr) throw CQXException(QX_ERROR_NO_SET);
  for (int side = 0; side < kSides; ++side) join_.parent(side).CheckMergeFilterTVL(true);
  for (int i = 0; i < request.nDim; ++i) {
    dimensions_.push_back(find_join_column(join, request.dims[i]));
  }
  for (int i = 0; i < request.nMsr; ++i) {
    measures_.push_back(find_join_column(join, request.msrs[i]));
    asked_.push_back({measures_.back().source, request.flags[i], request.digits[i]});
    asked_.back().check();
  }
}

int TJoinSum::MppRun() {
  const UntrimmedNames untrimmed;
  const size_t dimensions = dimensions_.size();
  const size_t measures = measures_.size();
  JoinGroups groups(join_, *set_, std::move(dimensions_), std::move(measures_), std::move(asked_));
  std::unique_ptr<TRealTable> output = new_output_table(join_, groups.groups());
  for (size_t i = 0; i < dimensions; ++i) {
    const TFilter& column = groups.dimension(i);
    raised(output->AddFilter(
        output->GetNFilter(), column.FFilterName,
        extracted_values_column(*column.VL, groups.dimension_numbers(i), groups.groups())));
  }
  MeasureColumns columns(*output, groups.grouping());
  for (size_t i = 0; i < measures; ++i) {
    columns.add_measure(groups.measure(i), groups.asked(i).flags, groups.take_reduced(i));
  }
  if (measures == 0) columns.add_counts("N");
  return ENG->collection()->adopt_table(std::move(output));
}

}  // namespace qxe
