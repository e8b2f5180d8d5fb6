#include "summary/grouping.h"

#include "parallel/smpengine.h"
#include "summary/group_results.h"

namespace qxe {

double GroupedRows::cells() const {
  double cells = 1;
  for (const TFilter* dimension : dimensions) cells *= dimension->VL->FArraySize;
  return cells;
}

namespace {

// Cells that a cube may have for each row: clearing and looking through them costs less than
// sorting.
constexpr long kCellsPerRow = 32;
// A cube that is a few times larger than the cache still beats moving all rows.
constexpr long kCacheSizes = 4;

/// Of a set without rows.
class NoGroups : public Grouping {
 public:
  explicit NoGroups(const GroupedRows& source) : source_(source) { counts_ = make_block<int>(0); }

  Reduced reduce(const Wanted& wanted) override {
    return with_measure(wanted, source_, []<class Cell>(const MeasureOf<Cell>&) {
      return ResultRows<Cell>(0).take();
    });
  }

  Block<int> dimension(int) const override { return make_row_numbers(0); }

 private:
  const GroupedRows& source_;
};

bool fits_cache(const GroupedRows& source) {
  return source.cells() * kUsualCellBytes <= static_cast<double>(kCacheSizes * ENG->l2_size()) &&
         source.cells() <= source.rows();
}

}  // namespace

std::unique_ptr<Grouping> make_grouping(SumMethod method, const GroupedRows& source) {
  if (source.rows() == 0) return std::make_unique<NoGroups>(source);
  if (method == SumMethod::kCube) return make_cube(source);
  const bool sort = method == SumMethod::kNonCube || method == SumMethod::kFastNonCubeByRow ||
                    source.cells() > static_cast<double>(kCellsPerRow * source.rows());
  if (sort) return make_sorted_groups(source);
  return fits_cache(source) ? make_cube(source) : make_bucket_cube(source);
}

}  // namespace qxe
