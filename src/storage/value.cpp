#include "storage/value.h"

#include <assert.h>
#include <math.h>

#include <algorithm>
#include <functional>
#include <optional>

#include "storage/family.h"

namespace qxe {

namespace {

/// Status of the decimal library for a double that has no decimal form at the scale.
constexpr int kNoFit = 3;

}  // namespace

Value& Value::operator=(double value) {
  *this = Value(value);
  return *this;
}

Value& Value::operator=(const Numeric& value) {
  type_ = VALUE_QX_DT_DECIMAL;
  decimal_ = value;
  return *this;
}

Value& Value::operator=(const NumericInfo& info) {
  setDecimalInfo(info);
  return *this;
}

Value::operator double() const {
  assert(type_ == VALUE_QX_DT_DOUBLE);
  return double_;
}

Value::operator Numeric() const {
  assert(type_ == VALUE_QX_DT_DECIMAL);
  return decimal_;
}

void Value::setDecimalInfo(const NumericInfo& info) {
  assert(type_ == VALUE_QX_DT_DECIMAL);
  info_ = info;
}

const NumericInfo& Value::getDecimalInfo() const {
  assert(type_ == VALUE_QX_DT_DECIMAL);
  return info_;
}

double Value::as_double() const {
  if (type_ == VALUE_QX_DT_DOUBLE) return double_;
  double result = 0;
  return RQXNumericNum2Dbl(&decimal_, &info_, &result) == 0 ? result : kNullDouble;
}

namespace {

/// The one frame of the four operations.
template <class Doubles, class Decimals>
Value combined(const Value& left, const Value& right, double left_double, double right_double,
               Doubles doubles, Decimals decimals) {
  if (left.type() == VALUE_QX_DT_DOUBLE || right.type() == VALUE_QX_DT_DOUBLE) {
    return Value(doubles(left_double, right_double));
  }
  const NumericInfo& a = left.getDecimalInfo();
  const NumericInfo& b = right.getDecimalInfo();
  const NumericInfo out{std::max(a.scale, b.scale), QX_ROUND_HALFEVEN};
  const Numeric x(left);
  const Numeric y(right);
  Numeric result{};
  decimals(&a, &b, &out, &x, &y, &result);
  return Value(&result, &out);
}

}  // namespace

Value operator+(const Value& left, const Value& right) {
  return combined(left, right, left.as_double(), right.as_double(), std::plus<>(),
                  RQXNumericRescalingAdd);
}

Value operator-(const Value& left, const Value& right) {
  return combined(left, right, left.as_double(), right.as_double(), std::minus<>(),
                  RQXNumericRescalingSub);
}

Value operator*(const Value& left, const Value& right) {
  return combined(left, right, left.as_double(), right.as_double(), std::multiplies<>(),
                  RQXNumericRescalingMul);
}

Value operator/(const Value& left, const Value& right) {
  return combined(left, right, left.as_double(), right.as_double(), std::divides<>(),
                  RQXNumericRescalingDiv);
}

namespace {

Numeric whole_number(int value) {
  const NumericInfo whole{0, QX_ROUND_HALFEVEN};
  Numeric result{};
  RQXNumericInt2Num(&whole, &result, value);
  return result;
}

}  // namespace

Value& Value::operator*=(int factor) {
  if (type_ == VALUE_QX_DT_DOUBLE) {
    double_ *= factor;
  } else {
    const Numeric number = whole_number(factor);
    RQXNumericMul(&decimal_, &number, &decimal_);
  }
  return *this;
}

Value& Value::operator/=(int divisor) {
  if (type_ == VALUE_QX_DT_DOUBLE) {
    double_ /= divisor;
  } else {
    const Numeric number = whole_number(divisor);
    RQXNumericDiv(&decimal_, &number, &decimal_);
  }
  return *this;
}

std::optional<int> Value::order(const Value& other) const {
  if (type_ == VALUE_QX_DT_DOUBLE) {
    return Family<TDoubleArray>::compare(double_, other.as_double());
  }
  if (other.type_ == VALUE_QX_DT_DECIMAL) {
    return RQXNumericRescalingCmp(&info_, &other.info_, &decimal_, &other.decimal_);
  }
  Numeric converted{};
  if (RQXNumericDbl2Num(&info_, &converted, other.double_) == kNoFit) return {};
  return RQXNumericCmp(&decimal_, &converted);
}

bool operator==(const Value& left, const Value& right) {
  return left.order(right) == 0;
}

bool operator!=(const Value& left, const Value& right) {
  const auto order = left.order(right);
  return order.has_value() && *order != 0;
}

bool operator<(const Value& left, const Value& right) {
  return left.order(right).value_or(0) < 0;
}

bool operator<=(const Value& left, const Value& right) {
  return left.order(right).value_or(1) <= 0;
}

bool operator>(const Value& left, const Value& right) {
  return left.order(right).value_or(0) > 0;
}

bool operator>=(const Value& left, const Value& right) {
  return left.order(right).value_or(-1) >= 0;
}

namespace {

/// Applies one of the decimal library's three ways to a whole number.
template <class Round>
Value whole_decimal(const Numeric& value, const NumericInfo& info, Round round) {
  Numeric result{};
  round(&value, &info, &result);
  return Value(&result, &info);
}

}  // namespace

Value Value::vfloor() const {
  if (type_ == VALUE_QX_DT_DOUBLE) return Value(floor(double_));
  return whole_decimal(decimal_, info_, RQXNumericFloor);
}

Value Value::vceil() const {
  if (type_ == VALUE_QX_DT_DOUBLE) return Value(ceil(double_));
  return whole_decimal(decimal_, info_, RQXNumericCeil);
}

Value Value::vround() const {
  if (type_ == VALUE_QX_DT_DOUBLE) return Value(round(double_));
  return whole_decimal(decimal_, info_, RQXNumericRound);
}

}  // namespace qxe
