// Copies of single filters, as they are or in another data type.
#include "storage/family.h"
#include "tables/converted_list.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

/// Whether the copy holds the values as they are.
bool is_plain_copy(const TFilter& source, int type, const NumericInfo* info) {
  if (source.data_type() != type) return false;
  if (type != QX_DT_DECIMAL || info == nullptr) return true;
  const NumericInfo& own = static_cast<const TNumericArray&>(*source.VL).GetDecimalInfo();
  return own.scale == info->scale && own.rounding == info->rounding;
}

Column converted_column(const TFilter& source, int type, const NumericInfo* info) {
  ConvertedList values =
      convert_list(*source.VL, type, info != nullptr ? *info : TNumericArray::kDefaultInfo, true);
  auto rows = converted_rows(*source.PVL, values);
  memset(rows->FUserArea, 0, sizeof rows->FUserArea);
  return {std::move(rows), std::move(values.list)};
}

}  // namespace

int TRealTable::duplicate_filter(const char* layer, int id, int type, const NumericInfo* info) {
  if (!has_room_for_filter()) {
    return report(layer, QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  }
  const int position = FilterID2Pos(id);
  if (position < 0) return report(layer, QX_ERROR_NO_MASTER_KEY, "No Such Filter: %d", id);
  if (!is_data_type(type)) {
    return report(layer, QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(%d)", type);
  }
  TFilter& source = *filter_at(position);
  source.MergeTVL(true);
  if (!is_plain_copy(source, type, info)) {
    return insert_filter(GetNFilter(), source.FFilterName, converted_column(source, type, info),
                         -1);
  }
  char name[kNameSize];
  const int status = GenFilterName(source.FFilterName, name);
  if (status < 0) return status;
  filters_.push_back(source.CopyFilter(MaxFilterIDs + 1, name));
  return ++MaxFilterIDs;
}

int TRealTable::DupFilter(int id) {
  const int position = FilterID2Pos(id);
  const int type = position < 0 ? QX_DT_INTEGER : filter_at(position)->data_type();
  return duplicate_filter("DupFilter", id, type, nullptr);
}

int TRealTable::DupFilterEx(int id, int type, const NumericInfo* info) {
  return duplicate_filter("DupFilterEx", id, type, info);
}

int TRealTable::MppDupFilterEx(int id, int type, const NumericInfo* info) {
  return duplicate_filter("MppDupFilterEx", id, type, info);
}

}  // namespace qxe
