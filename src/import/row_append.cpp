#include "import/row_append.h"

#include <limits.h>

#include <algorithm>

#include "parallel/mpp_memory.h"
#include "storage/family.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

int checked_position(int pos, const TRealTable& table) {
  if (pos == 0) {
    throw CQXException(
        report("AppendRows", QX_ERROR_PARAMETER, "Invalid Parameter : AppendPos(%d)", pos));
  }
  return pos < 0 ? table.TotalRecs() + 1 : pos;
}

int checked_count(int count) {
  if (count >= 0) return count;
  throw CQXException(
      report("AppendRows", QX_ERROR_PARAMETER, "Invalid Parameter : nRows(%d)", count));
}

/// A list of decimals with more digits behind the point. The order of its values stays.
std::unique_ptr<TBaseArray> with_higher_scale(const TNumericArray& list, const NumericInfo& info) {
  auto raised_list = std::make_unique<TNumericArray>(list.FArraySize, false);
  Numeric* const values = raised_list->values();
  values[0] = Family<TNumericArray>::null();
  for (int i = 1; i < list.FArraySize; ++i) {
    if (RQXNumericRescale(&list.values()[i], &list.GetDecimalInfo(), &info, &values[i]) != 0) {
      throw CQXException(QX_ERROR_DATA_SIZE, "DataSize overflow");
    }
  }
  copy_type_info(list, *raised_list);
  raised_list->SetDecimalInfo(info);
  return raised_list;
}

/// Merges two lists of decimals at the higher one of their scales.
MergedLists merge_decimals(const TNumericArray& old_list, const TNumericArray& new_list) {
  const int higher = old_list.GetScale() - new_list.GetScale();
  if (higher > 0) {
    return MppMergeLists(old_list, *with_higher_scale(new_list, old_list.GetDecimalInfo()));
  }
  if (higher == 0) return MppMergeLists(old_list, new_list);
  auto raised_list = with_higher_scale(old_list, new_list.GetDecimalInfo());
  MergedLists merged = MppMergeLists(*raised_list, new_list);
  if (merged.list == nullptr) merged.list = std::move(raised_list);  // the same numbers
  return merged;
}

MergedLists merge(const TBaseArray& old_list, const TBaseArray& new_list) {
  if (old_list.GetDataType() != QX_DT_DECIMAL) return MppMergeLists(old_list, new_list);
  return merge_decimals(static_cast<const TNumericArray&>(old_list),
                        static_cast<const TNumericArray&>(new_list));
}

}  // namespace

RowAppend::RowAppend(TRealTable& table, int pos, int count)
    : table_(table), first_row_(checked_position(pos, table)), count_(checked_count(count)) {
  const long last_row = static_cast<long>(first_row_) + count - 1;
  if (last_row >= INT_MAX) {
    throw CQXException(report("AppendRows", QX_ERROR_ROW_SIZE, "RowSize overflow"));
  }
  if (count > 0) growth_ = static_cast<int>(std::max(last_row - table.TotalRecs(), 0L));
  if (growth_ > 0) table.check_rows_changeable();
  table.CheckMergeFilterTVL(true);
}

void RowAppend::set_column(TFilter& filter, Column rows) {
  filter.check_changeable();
  if (count_ == 0) return;
  MergedLists merged = merge(*filter.VL, *rows.vl);
  if (merged.map2 != nullptr) DoMppRenumber(*rows.pv, merged.map2.get(), rows.vl->FArraySize);
  parts_.push_back({&filter, std::move(merged), std::move(rows.pv)});
}

int RowAppend::commit() {
  if (growth_ > 0) raised(table_.InsRows(table_.TotalRecs() + 1, growth_));
  for (Part& part : parts_) write(part);
  return count_;
}

void RowAppend::write(Part& part) const {
  TFilter& filter = *part.filter;
  filter.Taint();
  if (part.merged.list != nullptr) {
    if (part.merged.map1 != nullptr) {
      DoMppRenumber(*filter.PVL, part.merged.map1.get(), filter.VL->FArraySize);
    }
    filter.adopt_values(std::move(part.merged.list));
  }
  MppMemCpy(filter.PVL->PIntAr() + first_row_, part.pv->PIntAr() + 1,
            sizeof(int) * static_cast<size_t>(count_));
}

}  // namespace qxe
