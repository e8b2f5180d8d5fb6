// Reading single cells and the names of categories.
#include <algorithm>

#include "calc/datetime.h"
#include "storage/family.h"
#include "summary/summary.h"

namespace qxe {

namespace {

constexpr char kReadLayer[] = "SummaryRead";

bool is_sum_type(int type) {
  return type == QX_SUM_COUNT || type == QX_SUM_MAX || type == QX_SUM_MIN || type == QX_SUM_SUM;
}

}  // namespace

long TSummary::cell_at(const int* coords) const {
  long cell = 0;
  for (const SummaryDimension& dimension : dims_) {
    const int category = *coords++;
    if (category < 0 || category >= dimension.category_count) return -1;
    cell += static_cast<long>(category) * dimension.multiplier;
  }
  return cell;
}

/// The value list that numbers of MAX and MIN belong to.
const TBaseArray& TSummary::measure_values() const {
  const TFilter& column = filter(measure_);
  if (column.list_version() != measure_version_) {
    throw CQXException(report(kReadLayer, QX_ERROR_ROW_RANGE, "Invalid Parameter : SumHandle"));
  }
  return *column.VL;
}

SummaryValue TSummary::SummaryRead2(int type, const int* coords) const {
  if (!is_sum_type(type)) {
    throw CQXException(
        report(kReadLayer, QX_ERROR_PARAMETER, "Invalid Parameter : SumType(%d)", type));
  }
  if ((type & done_) == 0) {
    throw CQXException(
        report(kReadLayer, QX_ERROR_ROW_RANGE, "Invalid Parameter : SumType(%d)", type));
  }
  const long cell = cell_at(coords);
  if (cell < 0) {
    // Deliberate: the number in the text is the low half of the array's address.
    throw CQXException(report(kReadLayer, QX_ERROR_SUMMARY_PARAMETER,
                              "Invalid Parameter : Dims(%d)",
                              static_cast<int>(reinterpret_cast<intptr_t>(coords))));
  }
  return value_of(type, cell);
}

SummaryValue TSummary::value_of(int type, long cell) const {
  SummaryValue result{measure_type_, QX_DT_INTEGER, cells_.count[cell], nullptr, measure_info_};
  const void* value = &cells_.count[cell];
  switch (type) {
    case QX_SUM_MAX:
    case QX_SUM_MIN: {
      const Block<int>& numbers = type == QX_SUM_MAX ? cells_.max : cells_.min;
      value = measure_values().GetAddress(numbers[cell]);
      result.value_type = measure_type_;
      break;
    }
    case QX_SUM_SUM:
      if (measure_type_ == QX_DT_DECIMAL) {
        value = &cells_.decimal_sum[cell];
        result.value_type = QX_DT_DECIMAL;
      } else {
        value = &cells_.sum[cell];
        result.value_type = QX_DT_DOUBLE;
      }
      break;
    default: break;
  }
  if (measure_ == 0 || result.rows > 0) result.value = value;
  return result;
}

SummaryValue TSummary::SummaryRead(int type, const int* coords) const {
  SummaryValue value = SummaryRead2(type, coords);
  // Deliberate: the older form knows no decimals.
  if (type == QX_SUM_SUM) value.value_type = QX_DT_DOUBLE;
  return value;
}

// Names of categories

namespace {

constexpr int kNameBuffer = 256;

std::string decimal_text(const TNumericArray& values, int number) {
  char text[kNameBuffer];
  const Numeric value = values.GetDecimal(number);
  const int status = RQXNumericNum2Str(&value, &values.GetDecimalInfo(), -1, -1, text, sizeof text);
  return status == QX_NUMERIC_DONE ? text : "####";
}

std::string double_text(const TDoubleArray& values, int number) {
  constexpr int kFurtherDigits = 3;
  char text[kNameBuffer];
  const double value = values.GetDouble(number);
  switch (ArrayDataTypeEx(values)) {
    case QX_DT_DATE: Double2DateStrNoValidation(value, text); break;
    case QX_DT_TIME: Double2TimeStrNoValidation(value, text); break;
    case QX_DT_DATETIME: Double2DateTimeStrNoValidation(value, text); break;
    default: snprintf(text, sizeof text, "%10.*f", values.display_scale() + kFurtherDigits, value);
  }
  return text;
}

}  // namespace

std::string DefaultDimName(const TBaseArray& values, int number) {
  switch (values.GetDataType()) {
    case QX_DT_INTEGER: return std::to_string(static_cast<const TIntArray&>(values).GetInt(number));
    case QX_DT_DOUBLE: return double_text(static_cast<const TDoubleArray&>(values), number);
    case QX_DT_STRING: return static_cast<const TStrArray&>(values).GetPChar(number);
    case QX_DT_DECIMAL: return decimal_text(static_cast<const TNumericArray&>(values), number);
    default:
      throw CQXException(report("DefaultDimName", QX_ERROR_PARAMETER, "Invalid Parameter : DimVL"));
  }
}

std::string TSummary::category_name(int dimNo, int catNo, int table) const {
  const SummaryDimension& dimension = this->dimension(dimNo);
  if (!dimension.names.empty()) return dimension.names[static_cast<size_t>(catNo)];
  if (dimension.name_of == nullptr) return DefaultDimName(*filter(dimension.filter).VL, catNo);
  char* name = nullptr;
  const int status = dimension.name_of(handle_, table, dimNo, dimension.filter,
                                       dimension.category_count, catNo, &name);
  if (status == QX_ERROR_PARAMETER) {
    throw CQXException(
        report("CategoryRead", QX_ERROR_PARAMETER, "Invalid Parameter : CallBackRet"));
  }
  return name == nullptr ? "" : name;
}

const char* TSummary::CategoryRead(int dimNo, int catNo) {
  if (dimNo < 0 || dimNo >= dimension_count()) {
    throw CQXException(
        report("CategoryRead", QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : DimNo"));
  }
  follow_lists();
  if (catNo < 0 || catNo >= dimension(dimNo).category_count) {
    throw CQXException(
        report("CategoryRead", QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : CatNo"));
  }
  name_ = category_name(dimNo, catNo, table_->id());
  return name_.c_str();
}

}  // namespace qxe
