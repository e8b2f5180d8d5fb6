// Sums to a number of decimal places: values are rounded to them one by one and added exactly.
#pragma once

#include <memory>

#include "storage/filters.h"
#include "summary/grouping.h"

namespace qxe {

/// A measure of integers or doubles as decimals of `digits` places. Refers to the filter.
class FixedPointMeasure : NonCopyable {
 public:
  /// Whether all values can be decimals.
  static bool serves(const TFilter& measure);

  FixedPointMeasure(const TFilter& measure, int digits);
  ~FixedPointMeasure();

  /// In place of the measure, with the same value numbers.
  const TFilter& filter() const { return filter_; }
  /// Sums of it as doubles.
  Block<double> sums(const Numeric* decimals, int count) const;

 private:
  const double scale_;
  TFilter filter_;
};

}  // namespace qxe
