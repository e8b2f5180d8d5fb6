// Sum, difference, product and quotient, at one scale and across scales.
#include <algorithm>

#include "exact.h"

namespace qxe {
namespace {

/// Checks two numbers of one scale and lets `compute` store the result of their integers.
template <class Compute>
int at_one_scale(const Numeric* a, const Numeric* b, Numeric* result, const Compute& compute) {
  const Int128 left = load(*a);
  const Int128 right = load(*b);
  if (left == kNan || right == kNan) return fail(QX_NUMERIC_NAN, result);
  return compute(left, right);
}

int store_sum(Int128 left, Int128 right, Numeric* result) {
  Int128 sum;
  if (!try_add(left, right, sum)) return fail(QX_NUMERIC_OVERFLOW, result);
  return store(sum, result);
}

struct Operand {
  Int128 integer;
  int scale;
};

/// Checks two numbers of any scales and lets `compute` store the result of the operands.
template <class Compute>
int across_scales(const NumericInfo* infoA, const NumericInfo* infoB, const NumericInfo* infoOut,
                  const Numeric* a, const Numeric* b, Numeric* result, const Compute& compute) {
  if (!is_valid(*infoA) || !is_valid(*infoB) || !is_valid(*infoOut)) {
    return fail(QX_NUMERIC_BAD_ARGUMENT, result);
  }
  const Operand left{load(*a), infoA->scale};
  const Operand right{load(*b), infoB->scale};
  if (left.integer == kNan || right.integer == kNan) return fail(QX_NUMERIC_NAN, result);
  return compute(left, right);
}

/// Stores what `formula(Int& out)` yields: in 128 bits, and where those do not do, in 512.
template <class Formula>
int store_exact(Numeric* result, const Formula& formula) {
  Int128 narrow;
  if (formula(narrow)) return store(narrow, result);
  Int512 wide;
  (void)formula(wide);  // holds every intermediate
  return store(wide, result);
}

int store_sum(const Operand& a, const Operand& b, const NumericInfo& info, Numeric* result) {
  const int scale = std::max(a.scale, b.scale);
  return store_exact(result, [&]<class Int>(Int& out) {
    Int left(a.integer);
    Int right(b.integer);
    return try_scale_up(left, scale - a.scale) && try_scale_up(right, scale - b.scale) &&
           try_add(left, right, out) && try_shift(out, info.scale - scale, info.rounding);
  });
}

int store_product(const Operand& a, const Operand& b, const NumericInfo& info, Numeric* result) {
  return store_exact(result, [&]<class Int>(Int& out) {
    return try_multiply(Int(a.integer), Int(b.integer), out) &&
           try_shift(out, info.scale - a.scale - b.scale, info.rounding);
  });
}

int store_quotient(const Operand& a, const Operand& b, const NumericInfo& info, Numeric* result) {
  const int digits = info.scale + b.scale - a.scale;
  return store_exact(result, [&]<class Int>(Int& out) {
    Int dividend(a.integer);
    Int divisor(b.integer);
    if (!try_scale_up(dividend, std::max(digits, 0)) ||
        !try_scale_up(divisor, std::max(-digits, 0))) {
      return false;
    }
    out = divide(dividend, divisor, info.rounding);
    return true;
  });
}

}  // namespace
}  // namespace qxe

using qxe::Int128;
using qxe::Operand;

int RQXNumericAdd(const Numeric* a, const Numeric* b, Numeric* result) {
  return qxe::at_one_scale(
      a, b, result, [&](Int128 left, Int128 right) { return qxe::store_sum(left, right, result); });
}

int RQXNumericSub(const Numeric* a, const Numeric* b, Numeric* result) {
  return qxe::at_one_scale(a, b, result, [&](Int128 left, Int128 right) {
    return qxe::store_sum(left, -right, result);
  });
}

int RQXNumericMul(const Numeric* a, const Numeric* b, Numeric* result) {
  return qxe::at_one_scale(a, b, result, [&](Int128 left, Int128 right) {
    Int128 product;
    if (!qxe::try_multiply(left, right, product)) return qxe::fail(QX_NUMERIC_OVERFLOW, result);
    return qxe::store(product, result);
  });
}

int RQXNumericDiv(const Numeric* a, const Numeric* b, Numeric* result) {
  return qxe::at_one_scale(a, b, result, [&](Int128 left, Int128 right) {
    if (right == 0) return qxe::fail(QX_NUMERIC_DIVISION_BY_ZERO, result);
    return qxe::store(qxe::divide(left, right, QX_ROUND_HALFEVEN), result);
  });
}

int RQXNumericRescalingAdd(const NumericInfo* infoA, const NumericInfo* infoB,
                           const NumericInfo* infoOut, const Numeric* a, const Numeric* b,
                           Numeric* result) {
  return qxe::across_scales(infoA, infoB, infoOut, a, b, result,
                            [&](const Operand& left, const Operand& right) {
                              return qxe::store_sum(left, right, *infoOut, result);
                            });
}

int RQXNumericRescalingSub(const NumericInfo* infoA, const NumericInfo* infoB,
                           const NumericInfo* infoOut, const Numeric* a, const Numeric* b,
                           Numeric* result) {
  return qxe::across_scales(infoA, infoB, infoOut, a, b, result,
                            [&](const Operand& left, const Operand& right) {
                              const Operand negated{-right.integer, right.scale};
                              return qxe::store_sum(left, negated, *infoOut, result);
                            });
}

int RQXNumericRescalingMul(const NumericInfo* infoA, const NumericInfo* infoB,
                           const NumericInfo* infoOut, const Numeric* a, const Numeric* b,
                           Numeric* result) {
  return qxe::across_scales(infoA, infoB, infoOut, a, b, result,
                            [&](const Operand& left, const Operand& right) {
                              return qxe::store_product(left, right, *infoOut, result);
                            });
}

int RQXNumericRescalingDiv(const NumericInfo* infoA, const NumericInfo* infoB,
                           const NumericInfo* infoOut, const Numeric* a, const Numeric* b,
                           Numeric* result) {
  return qxe::across_scales(infoA, infoB, infoOut, a, b, result,
                            [&](const Operand& left, const Operand& right) {
                              if (right.integer == 0) {
                                return qxe::fail(QX_NUMERIC_DIVISION_BY_ZERO, result);
                              }
                              return qxe::store_quotient(left, right, *infoOut, result);
                            });
}
