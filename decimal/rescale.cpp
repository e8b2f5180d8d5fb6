// Change of scale, and rounding to whole numbers.
#include "exact.h"

namespace qxe {
namespace {

int round_to_whole(const Numeric* value, const NumericInfo* info, int mode, Numeric* result) {
  if (!is_valid(*info)) return fail(QX_NUMERIC_BAD_ARGUMENT, result);
  const Int128 integer = load(*value);
  if (integer == kNan) return fail(QX_NUMERIC_NAN, result);
  const Int128 unit = power_of_ten(info->scale);
  Int128 rounded;
  if (!try_multiply(divide(integer, unit, mode), unit, rounded)) {
    return fail(QX_NUMERIC_OVERFLOW, result);
  }
  return store(rounded, result);
}

}  // namespace
}  // namespace qxe

int RQXNumericRescale(const Numeric* value, const NumericInfo* oldInfo, const NumericInfo* newInfo,
                      Numeric* result) {
  if (!qxe::is_valid(*oldInfo) || !qxe::is_valid(*newInfo)) {
    return qxe::fail(QX_NUMERIC_BAD_ARGUMENT, result);
  }
  qxe::Int128 integer = qxe::load(*value);
  if (integer == qxe::kNan) return qxe::fail(QX_NUMERIC_NAN, result);
  if (!qxe::try_shift(integer, newInfo->scale - oldInfo->scale, newInfo->rounding)) {
    return qxe::fail(QX_NUMERIC_OVERFLOW, result);
  }
  return qxe::store(integer, result);
}

int RQXNumericRound(const Numeric* value, const NumericInfo* info, Numeric* result) {
  return qxe::round_to_whole(value, info, info->rounding, result);
}

int RQXNumericFloor(const Numeric* value, const NumericInfo* info, Numeric* result) {
  return qxe::round_to_whole(value, info, QX_ROUND_FLOOR, result);
}

int RQXNumericCeil(const Numeric* value, const NumericInfo* info, Numeric* result) {
  return qxe::round_to_whole(value, info, QX_ROUND_CEILING, result);
}
