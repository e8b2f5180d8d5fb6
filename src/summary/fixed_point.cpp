#include "summary/fixed_point.h"

#include <cmath>

#include "storage/family.h"

namespace qxe {

namespace {

__extension__ using Int128 = __int128;

constexpr double kLimit = 9e18;  // of what a whole part of 64 bits holds

Numeric to_numeric(Int128 number) {
  return {static_cast<unsigned long>(number), static_cast<long>(number >> 64)};
}

Int128 to_int128(const Numeric& number) {
  return (static_cast<Int128>(number.hi) << 64) | number.lo;
}

/// The value with its fraction rounded, times `scale`.
Numeric FP2Int(double value, double scale) {
  double whole = 0;
  const double fraction = std::modf(value, &whole);
  return to_numeric(static_cast<Int128>(whole) * static_cast<Int128>(scale) +
                    static_cast<Int128>(std::floor(fraction * scale + 0.5)));
}

double Int2FP(const Numeric& number, double scale) {
  const Int128 whole = to_int128(number) / static_cast<Int128>(scale);
  const Int128 fraction = to_int128(number) % static_cast<Int128>(scale);
  return static_cast<double>(fraction) / scale + static_cast<double>(whole);
}

std::unique_ptr<TNumericArray> rounded_list(const TBaseArray& list, double scale) {
  auto decimals = std::make_unique<TNumericArray>(list.FArraySize, false);
  Numeric* const out = decimals->values();
  const auto fill = [&](const auto* values) {
    for (int i = 1; i < list.FArraySize; ++i) {
      out[i] = FP2Int(static_cast<double>(values[i]), scale);
    }
  };
  out[0] = Family<TNumericArray>::null();
  if (list.GetDataType() == QX_DT_INTEGER) {
    fill(static_cast<const TIntArray&>(list).values());
  } else {
    fill(static_cast<const TDoubleArray&>(list).values());
  }
  return decimals;
}

}  // namespace

bool FixedPointMeasure::serves(const TFilter& measure) {
  if (measure.VL->GetDataType() == QX_DT_INTEGER || measure.VL->FArraySize < 2) return true;
  const double* const values = static_cast<const TDoubleArray&>(*measure.VL).values();
  return values[1] > -kLimit && values[measure.VL->FArraySize - 1] < kLimit;
}

FixedPointMeasure::FixedPointMeasure(const TFilter& measure, int digits)
    : scale_(std::pow(10.0, digits)) {
  filter_.VL = rounded_list(*measure.VL, scale_).release();
  filter_.PVL = measure.PVL;
}

FixedPointMeasure::~FixedPointMeasure() {
  filter_.PVL = nullptr;
}

Block<double> FixedPointMeasure::sums(const Numeric* decimals, int count) const {
  Block<double> sums = make_block<double>(count);
  for (int i = 0; i < count; ++i) sums[i] = Int2FP(decimals[i], scale_);
  return sums;
}

}  // namespace qxe
