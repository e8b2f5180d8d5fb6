#include "summary/sum_method.h"

#include <algorithm>

#include "qxe.h"
#include "search/radix_info.h"

namespace qxe {

namespace {

// A packed cell address must fit a positive int.
constexpr int kMaxBits = 30;
constexpr double kMaxCells = 1073741824.0;
// A plain cube beyond this never fits a cache.
constexpr double kMaxCubeCells = 1e7;

/// Bytes of a count, a sum and of the numbers of maximum and minimum, as far as they are asked for.
struct Widths {
  double sum;
  double extremes;

  explicit Widths(int flags)
      : sum((flags & (QX_SUM_SUM | QX_SUM_AVG)) != 0 ? 8 : 0),
        extremes(((flags & QX_SUM_MAX) != 0 ? 4 : 0) + ((flags & QX_SUM_MIN) != 0 ? 4 : 0)) {}
};

}  // namespace

void SumWork::add_dimension(int list_length) {
  bits += ConvertFromVLtoBitsize(static_cast<uint64_t>(list_length));
  cells *= list_length;
}

double estimated_bytes(const SumWork& work, SumMethod method) {
  const Widths widths(work.flags);
  const double rows = work.rows;
  const double cubes = work.cells * work.workers * (4 + widths.sum + widths.extremes);
  const double row_side = 4 * rows + 4 * rows * work.measures + 4 * rows * (work.measures + 2);
  switch (method) {
    case SumMethod::kCube: return cubes;
    case SumMethod::kFastCube: return cubes + row_side;
    default: return row_side + 4 * rows + rows * (widths.sum + widths.extremes);
  }
}

SumMethod GetSuitableSumMethod(const SumWork& work) {
  if (work.bits > kMaxBits || work.cells > kMaxCells) return SumMethod::kNonCube;
  const bool fits_cache = 0.5 * work.l2_size > estimated_bytes(work, SumMethod::kCube);
  if (fits_cache && work.cells < kMaxCubeCells) return SumMethod::kCube;
  const double fast_cube = estimated_bytes(work, SumMethod::kFastCube);
  const double non_cube = estimated_bytes(work, SumMethod::kFastNonCube);
  const auto half_memory = static_cast<double>(work.available_memory >> 1);
  if (std::min(fast_cube, non_cube) > half_memory) return SumMethod::kFastNonCubeByRow;
  return fast_cube <= non_cube ? SumMethod::kFastCube : SumMethod::kFastNonCube;
}

}  // namespace qxe
