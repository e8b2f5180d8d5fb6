// NaN, zero and order.
#include "representation.h"

using qxe::Int128;

namespace {

int sign_of_difference(Int128 left, Int128 right) {
  return (left > right) - (left < right);
}

/// The order of `fine` and `coarse * 10^digits`.
int compare_scaled(Int128 fine, Int128 coarse, int digits) {
  Int128 scaled;
  if (__builtin_mul_overflow(coarse, qxe::power_of_ten(digits), &scaled)) {
    return coarse > 0 ? -1 : 1;  // beyond 128 bits is beyond every number
  }
  return sign_of_difference(fine, scaled);
}

Int128 load_if_scaled(const Numeric* value, const NumericInfo* info) {
  return qxe::is_scale(info->scale) ? qxe::load(*value) : qxe::kNan;
}

}  // namespace

int RQXNumericSetNan(Numeric* value) {
  qxe::write(qxe::kNan, value);
  return QX_NUMERIC_DONE;
}

int RQXNumericIsNan(const Numeric* value) {
  return qxe::load(*value) == qxe::kNan;
}

int RQXNumericSetZero(Numeric* value) {
  qxe::write(0, value);
  return QX_NUMERIC_DONE;
}

int RQXNumericIsZero(const Numeric* value) {
  return qxe::load(*value) == 0;
}

int RQXNumericCmp(const Numeric* a, const Numeric* b) {
  return sign_of_difference(qxe::load(*a), qxe::load(*b));
}

int RQXNumericRescalingCmp(const NumericInfo* infoA, const NumericInfo* infoB, const Numeric* a,
                           const Numeric* b) {
  const Int128 left = load_if_scaled(a, infoA);
  const Int128 right = load_if_scaled(b, infoB);
  const int digits = infoA->scale - infoB->scale;
  if (digits == 0 || left == qxe::kNan || right == qxe::kNan) {
    return sign_of_difference(left, right);
  }
  return digits > 0 ? compare_scaled(left, right, digits) : -compare_scaled(right, left, -digits);
}
