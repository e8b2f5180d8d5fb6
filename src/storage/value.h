// The small tagged number of calculators and summaries: one code path for doubles and decimals.
#pragma once

#include <optional>

#include "qxe.h"

namespace qxe {

enum ValueType : int { VALUE_QX_DT_DOUBLE = 0, VALUE_QX_DT_DECIMAL = 1 };

class Value {
 public:
  Value() = default;
  explicit Value(double value) : double_(value) {}
  /// A decimal of scale 0, rounded half to even.
  explicit Value(const Numeric* value) : Value(value, &kBareInfo) {}
  Value(const Numeric* value, const NumericInfo* info)
      : type_(VALUE_QX_DT_DECIMAL), decimal_(*value), info_(*info) {}

  Value& operator=(double value);
  Value& operator=(const Numeric& value);
  Value& operator=(const NumericInfo& info);

  ValueType type() const { return type_; }
  /// Asserts that this is a double.
  explicit operator double() const;
  /// Asserts that this is a decimal.
  explicit operator Numeric() const;
  /// Both assert that this is a decimal.
  void setDecimalInfo(const NumericInfo& info);
  const NumericInfo& getDecimalInfo() const;

  /// Two doubles give a double; two decimals a decimal of the larger scale, rounded half to even;
  /// one of each a double, a decimal without a double form counting as negative infinity.
  friend Value operator+(const Value& left, const Value& right);
  friend Value operator-(const Value& left, const Value& right);
  friend Value operator*(const Value& left, const Value& right);
  friend Value operator/(const Value& left, const Value& right);
  Value& operator*=(int factor);
  Value& operator/=(int divisor);

  /// A decimal on the left converts a double on the right to its own scale; one that does not fit
  /// makes every comparison false.
  friend bool operator==(const Value& left, const Value& right);
  friend bool operator!=(const Value& left, const Value& right);
  friend bool operator<(const Value& left, const Value& right);
  friend bool operator<=(const Value& left, const Value& right);
  friend bool operator>(const Value& left, const Value& right);
  friend bool operator>=(const Value& left, const Value& right);

  /// The next whole number down, up, or by the decimal's rounding mode (a double: half away).
  Value vfloor() const;
  Value vceil() const;
  Value vround() const;

 private:
  static constexpr NumericInfo kBareInfo{0, QX_ROUND_HALFEVEN};

  double as_double() const;
  /// Below 0, 0, above 0; nothing when the other does not fit this one's scale.
  std::optional<int> order(const Value& other) const;

  ValueType type_ = VALUE_QX_DT_DOUBLE;
  double double_ = 0;
  Numeric decimal_{};
  NumericInfo info_ = kBareInfo;
};

}  // namespace qxe
