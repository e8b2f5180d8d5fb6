// Serial layer: scale and rounding of decimal columns.
#include <algorithm>

#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "storage/family.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr int kMaxScale = 38;

int check_decimal(const char* layer, const TFilter& column) {
  if (column.VL->GetDataType() == QX_DT_DECIMAL) return 0;
  return report(layer, QX_ERROR_NO_JOIN_FILTER, "Invalid Filter Type (Not NumericType)");
}

}  // namespace

int innerQXGetNumericInfo(int table, int filter, NumericInfo* info, char* name) {
  static constexpr char kLayer[] = "QXGetNumericInfo";
  return with_filter({.layer = kLayer}, table, filter, [&](TBaseTable& target, TFilter& column) {
    const int status = check_decimal(kLayer, column);
    if (status < 0) return status;
    *info = static_cast<const TNumericArray&>(*column.VL).GetDecimalInfo();
    char table_name[TBaseTable::kNameSize];
    return name == nullptr ? 0 : target.FilterID2Name(filter, table_name, name);
  });
}

namespace {

struct RescaledList {
  std::unique_ptr<TNumericArray> values;
  Block<int> renumbered;  // new value number of each old one
};

/// A value that does not fit at the new scale becomes NULL. Rounding keeps the order, so values
/// that become equal are neighbours.
RescaledList rescaled(const TNumericArray& old, const NumericInfo& info) {
  const int size = old.FArraySize;
  RescaledList result{nullptr, make_block<int>(size)};
  Block<Numeric> values = make_block<Numeric>(size);
  values[0] = Family<TNumericArray>::null();
  result.renumbered[0] = 0;
  int last = 0;
  for (int i = 1; i < size; ++i) {
    Numeric value;
    RQXNumericRescale(&old.values()[i], &old.GetDecimalInfo(), &info, &value);
    if (RQXNumericIsNan(&value) != 0) {
      result.renumbered[i] = 0;
      continue;
    }
    if (last == 0 || !Family<TNumericArray>::equal(values[last], value)) values[++last] = value;
    result.renumbered[i] = last;
  }
  result.values = std::make_unique<TNumericArray>(size, std::move(values));
  result.values->SetArraySize(last + 1);
  copy_type_info(old, *result.values);
  result.values->SetDecimalInfo(info);
  return result;
}

/// Gives a decimal column another scale and rounding mode and its values with them.
void innerQXNumericFltUpDate(TFilter& column, const NumericInfo& info) {
  column.Taint();
  column.MergeTVL(true);
  auto& values = static_cast<TNumericArray&>(*column.VL);
  if (values.GetScale() == info.scale) {
    values.SetDecimalInfo(info);
    return;
  }
  RescaledList list = rescaled(values, info);
  std::unique_ptr<TIntArray> rows(column.PVL->MppCopyArray());
  int* const numbers = rows->PIntAr();
  for (int row = 0; row < rows->FArraySize; ++row) numbers[row] = list.renumbered[numbers[row]];
  column.adopt({std::move(rows), std::move(list.values)});
}

}  // namespace

int check_numeric_info(const char* layer, const NumericInfo* info) {
  if (info == nullptr) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter (Ninfo is NULL)");
  }
  if (info->scale < 0 || info->scale > kMaxScale) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : scale(%d)", info->scale);
  }
  if (info->rounding < QX_ROUND_UP || info->rounding > QX_ROUND_HALFEVEN) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : rounding_mode(%d)",
                  info->rounding);
  }
  return 0;
}

int innerQXSetNumericInfo(int table, int filter, const NumericInfo* info) {
  static constexpr char kLayer[] = "QXSetNumericInfo";
  const int status = check_numeric_info(kLayer, info);
  if (status < 0) return status;
  return with_filter(
      {.layer = kLayer, .kind = TableKind::kReal, .access = Access::kEdit, .saved = &g_TFSaved},
      table, filter, [&](TBaseTable&, TFilter& column) {
        const int kind = check_decimal(kLayer, column);
        if (kind >= 0) innerQXNumericFltUpDate(column, *info);
        return kind;
      });
}

}  // namespace qxe
