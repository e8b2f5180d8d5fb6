#include "summary/sum_attributes.h"

#include <utility>

#include "storage/family.h"
#include "tables/row_list.h"

namespace qxe {

_TSumFilterAttr sum_attributes(const TFilter& column) {
  _TSumFilterAttr attributes;
  static_assert(sizeof attributes == TBaseArray::kUserAreaSize);
  memcpy(&attributes, column.PVL->FUserArea, sizeof attributes);
  return attributes;
}

SummaryColumns summary_columns(const TRealTable& table) {
  SummaryColumns columns;
  for (int i = 0; i < table.GetNFilter(); ++i) {
    switch (sum_attributes(*table.filter_at(i)).role) {
      case QX_ROLE_NONE: break;
      case QX_ROLE_DIMENSION: ++columns.dimensions; break;
      case QX_ROLE_MEASURE: ++columns.measures; break;
      default: throw CQXException(QX_ERROR_NOT_SUMMARY_TABLE);
    }
  }
  return columns;
}

int DimNo2FilterID(const TRealTable& table, int role, int ordinal) {
  if (summary_columns(table).count() == 0) return 0;
  for (int i = 0; i < table.GetNFilter(); ++i) {
    const TFilter& column = *table.filter_at(i);
    const _TSumFilterAttr attributes = sum_attributes(column);
    const bool has_role =
        attributes.role == QX_ROLE_DIMENSION || attributes.role == QX_ROLE_MEASURE;
    if (has_role && attributes.role == role && attributes.ordinal == ordinal) {
      return column.FFilterID;
    }
  }
  return QX_ERROR_NO_DIMENSION;
}

namespace {

/// Only counts and sums may be totalled.
int check_record(const TFilter& column) {
  const _TSumFilterAttr attributes = sum_attributes(column);
  if (attributes.role == QX_ROLE_DIMENSION) return QX_ERROR_TOTAL_KIND1;
  if (attributes.role != QX_ROLE_MEASURE) return QX_ERROR_NOT_SUMMARY_TABLE;
  const bool additive = attributes.sumType == QX_SUM_COUNT || attributes.sumType == QX_SUM_SUM;
  return additive ? 0 : QX_ERROR_TOTAL_KIND2;
}

template <class Value>
double total_of(const Value* values, const int* numbers, const RowList& rows) {
  double total = 0;
  for (int i = 0; i < rows.count; ++i) {
    const int number = numbers[rows[i]];
    if (number > 0) total += static_cast<double>(values[number]);
  }
  return total;
}

}  // namespace

int CalcTotal(TRealTable& table, int set, int filter, int mode, double* total) {
  *total = kNullDouble;
  const TSetArray* const rows = table.GetSet(set);
  if (rows == nullptr) return QX_ERROR_NO_SET;
  TFilter* const column = table.GetFilter(filter);
  if (column == nullptr) return QX_ERROR_NO_FILTER;
  const int type = column->VL->GetDataType();
  if (type != QX_DT_INTEGER && type != QX_DT_DOUBLE) return QX_ERROR_NOT_NUMBER;
  if (mode != 0 && mode != 1) return QX_ERROR_PARAMETER;
  const int status = mode == 0 ? check_record(*column) : 0;
  if (status < 0) return status;
  column->MergeTVL(true);
  const int* const numbers = std::as_const(*column->PVL).PIntAr();
  *total = type == QX_DT_INTEGER ? total_of(static_cast<const TIntArray&>(*column->VL).values(),
                                            numbers, RowList(*rows))
                                 : total_of(static_cast<const TDoubleArray&>(*column->VL).values(),
                                            numbers, RowList(*rows));
  return 0;
}

}  // namespace qxe
