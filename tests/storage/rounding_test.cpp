#include "storage/rounding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace qxe {
namespace {

struct RoundingCase {
  double (*function)(double x, int digits);
  double x;
  int digits;
  double wanted;
};

TEST(RoundingTest, RoundsByTheFirstDroppedDecimal) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const RoundingCase cases[] = {
      {Trunc, 2.679, 2, 2.67},   {Trunc, -2.679, 2, -2.67},    {Trunc, 7.9, 0, 7.0},
      {Trunc, 1.5, -1, 1.5},     {Trunc, 1e300, 2, 1e300},     {Trunc, -kInfinity, 2, -kInfinity},
      {Round, 2.675, 2, 2.68},   {Round, 2.674, 2, 2.67},      {Round, 0.5, 0, 1.0},
      {Round, -1.55, 1, -1.5},   {Round, -1.99, 0, -1.0},      {Round, 1.5, -1, 1.5},
      {Round, 1e300, 20, 1e300}, {Round, 0.25, 400, 0.25},     {Round, kInfinity, 2, kInfinity},
      {Round2, 2.5, 0, 3.0},     {Round2, -1.5, 0, -1.0},      {Round2, -1.75, 0, -2.0},
      {Round2, 0.125, 2, 0.13},  {Round2, -100.75, 0, -100.0}, {Round2, -99.75, 0, -100.0},
  };
  for (const RoundingCase& wanted : cases) {
    SCOPED_TRACE(testing::Message() << wanted.x << " to " << wanted.digits);
    const double rounded = wanted.function(wanted.x, wanted.digits);
    EXPECT_TRUE(rounded == wanted.wanted || std::fabs(rounded - wanted.wanted) < 1e-11) << rounded;
  }
}

}  // namespace
}  // namespace qxe
