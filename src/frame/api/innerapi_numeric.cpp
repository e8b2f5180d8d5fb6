// Serial layer: scale and rounding of decimal columns.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "storage/family.h"
#include "tables/converted_list.h"

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

/// Gives a decimal column another scale and rounding mode and its values with them.
void innerQXNumericFltUpDate(TFilter& column, const NumericInfo& info) {
  column.check_changeable();
  column.MergeTVL(true);
  auto& values = static_cast<TNumericArray&>(*column.VL);
  if (values.GetScale() == info.scale) {
    values.SetDecimalInfo(info);
    return;
  }
  ConvertedList rescaled = convert_list(values, QX_DT_DECIMAL, info, true);
  auto& list = static_cast<TNumericArray&>(*rescaled.list);
  copy_type_info(values, list);
  list.SetDecimalInfo(info);
  auto rows = converted_rows(*column.PVL, rescaled);
  column.Taint();
  column.adopt({std::move(rows), std::move(rescaled.list)});
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
