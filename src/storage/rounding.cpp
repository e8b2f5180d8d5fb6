#include "storage/rounding.h"

#include <cmath>

namespace qxe {

namespace {

constexpr int kMaxDecimals = 308;  // more powers of ten than a double has

bool stays(double x, int digits) {
  return digits < 0 || digits > kMaxDecimals || !std::isfinite(x);
}

/// The decimals of `x`, cut to `digits` of them and one unit of the last one added if `up`.
double with_decimals(double x, int digits, bool up) {
  const double power = std::pow(10.0, digits);
  const double whole = std::trunc(x);
  return (std::trunc((x - whole) * power) + (up ? 1.0 : 0.0)) / power + whole;
}

/// The first decimal behind `digits` ones; zero or negative for a negative value.
int first_dropped(double x, int digits) {
  double whole = 0.0;
  return static_cast<int>(std::modf(x * std::pow(10.0, digits), &whole) * 10.0);
}

}  // namespace

double Trunc(double x, int digits) {
  return stays(x, digits) ? x : with_decimals(x, digits, false);
}

double Round(double x, int digits) {
  return stays(x, digits) ? x : with_decimals(x, digits, first_dropped(x, digits) >= 5);
}

double Round2(double x, int digits) {
  constexpr double kLift = 100.0;
  if (x >= 1.0 || x <= -kLift || stays(x, digits)) return Round(x, digits);
  return Round(x + kLift, digits) - kLift;
}

}  // namespace qxe
