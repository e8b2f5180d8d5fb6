#include "calc/type_conversion.h"

#include <cmath>

#include "calc/datetime.h"
#include "calc/type_conversion_values.h"
#include "search/compiler_steps.h"
#include "storage/family.h"

namespace qxe {

namespace {

/// The array class whose lists hold such values.
template <class Value>
struct ArrayHolding;
template <>
struct ArrayHolding<int> {
  using Array = TIntArray;
};
template <>
struct ArrayHolding<double> {
  using Array = TDoubleArray;
};
template <>
struct ArrayHolding<const char*> {
  using Array = TStrArray;
};
template <>
struct ArrayHolding<Numeric> {
  using Array = TNumericArray;
};

NumericInfo decimal_info(const TBaseArray& list) {
  if (list.GetDataType() != QX_DT_DECIMAL) return TNumericArray::kDefaultInfo;
  return static_cast<const TNumericArray&>(list).GetDecimalInfo();
}

template <class Target, class Source, Target (*convert)(Source, const Context&)>
void convert_slice(const TBaseArray& source, const ConversionTarget& target, long start, long end) {
  const auto list = view_of(static_cast<const typename ArrayHolding<Source>::Array&>(source));
  auto* const values = static_cast<Target*>(target.values);
  Context context{decimal_info(source), target.info, date_order(), nullptr};
  long i = start;
  if (i == 0 && i < end) values[i++] = Family<typename ArrayHolding<Target>::Array>::null();
  for (; i < end; ++i) {
    if constexpr (std::is_same_v<Target, const char*>) {
      context.text = target.text_area + i * target.text_slot;
    }
    values[i] = convert(list[static_cast<int>(i)], context);
  }
}

template <auto convert>
struct Of;
template <class Target, class Source, Target (*convert)(Source, const Context&)>
struct Of<convert> {
  static constexpr SliceConversion Conv = convert_slice<Target, Source, convert>;
};

constexpr int kTypes = QX_DT_DECIMAL - QX_DT_INTEGER + 1;

// One row for each source type, in the order of the type codes, as the targets in a row.
constexpr SliceConversion kConversions[kTypes][kTypes] = {
    {nullptr, Of<intVL2dblVL>::Conv, Of<intVL2dateVL>::Conv, Of<intVL2timeVL>::Conv,
     Of<intVL2strVL>::Conv, Of<intVL2datetimeVL>::Conv, Of<intVL2decVL>::Conv},
    {Of<dblVL2intVL>::Conv, nullptr, Of<dblVL2dateVL>::Conv, Of<dblVL2timeVL>::Conv,
     Of<dblVL2strVL>::Conv, Of<dblVL2datetimeVL>::Conv, Of<dblVL2decVL>::Conv},
    {Of<dateVL2intVL>::Conv, Of<dateVL2dblVL>::Conv, nullptr, Of<dateVL2timeVL>::Conv,
     Of<dateVL2strVL>::Conv, Of<dateVL2datetimeVL>::Conv, Of<dateVL2decVL>::Conv},
    {Of<timeVL2intVL>::Conv, Of<timeVL2dblVL>::Conv, Of<timeVL2dateVL>::Conv, nullptr,
     Of<timeVL2strVL>::Conv, Of<timeVL2datetimeVL>::Conv, Of<timeVL2decVL>::Conv},
    {Of<strVL2intVL>::Conv, Of<strVL2dblVL>::Conv, Of<strVL2dateVL>::Conv, Of<strVL2timeVL>::Conv,
     nullptr, Of<strVL2datetimeVL>::Conv, Of<strVL2decVL>::Conv},
    {Of<datetimeVL2intVL>::Conv, Of<datetimeVL2dblVL>::Conv, Of<datetimeVL2dateVL>::Conv,
     Of<datetimeVL2timeVL>::Conv, Of<datetimeVL2strVL>::Conv, nullptr, Of<datetimeVL2decVL>::Conv},
    {Of<decVL2intVL>::Conv, Of<decVL2dblVL>::Conv, Of<decVL2dateVL>::Conv, Of<decVL2timeVL>::Conv,
     Of<decVL2strVL>::Conv, Of<decVL2datetimeVL>::Conv, Of<decVL2decVL>::Conv},
};

/// Digits in front of the point, sign and six digits behind it. The list ascends, so its ends have
/// the longest texts; most lists need far less than the longest of all.
int double_text_slot(const TDoubleArray& list) {
  char text[kDoubleTextSlot];
  const Context context{{}, {}, 0, text};
  size_t longest = 0;
  for (const int i : {1, list.FArraySize - 1}) {
    if (i < 1 || i >= list.FArraySize) continue;
    if (!std::isfinite(list.values()[i])) return kDoubleTextSlot;
    longest = std::max(longest, strlen(dblVL2strVL(list.values()[i], context)));
  }
  return static_cast<int>(longest) + 1;
}

}  // namespace

SliceConversion slice_conversion(int sourceType, int targetType) {
  if (!is_data_type(sourceType) || !is_data_type(targetType)) return nullptr;
  return kConversions[sourceType - QX_DT_INTEGER][targetType - QX_DT_INTEGER];
}

int conversion_text_slot(const TBaseArray& source) {
  switch (ArrayDataTypeEx(source)) {
    case QX_DT_DOUBLE: return double_text_slot(static_cast<const TDoubleArray&>(source));
    case QX_DT_DATETIME: return kDateTimeTextSlot;
    case QX_DT_DECIMAL: return kDecimalTextSlot;
    default: return kNumberTextSlot;
  }
}

int mpp_type_conversion(void* block) {
  return run_pool_step(block);
}

void DoTypeConv(const TBaseArray& source, int targetType, const ConversionTarget& target,
                int workers) {
  const SliceConversion convert = slice_conversion(ArrayDataTypeEx(source), targetType);
  if (convert == nullptr) return;
  run_step(QX_MPP_TYPECONV, workers, [&](int worker) {
    const Slice slice = even_slice(source.FArraySize, workers, worker);
    convert(source, target, slice.begin, slice.end);
  });
}

}  // namespace qxe
