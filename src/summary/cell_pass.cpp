#include "summary/cell_pass.h"

#include <algorithm>
#include <type_traits>

#include "storage/family.h"
#include "summary/group_cell.h"

namespace qxe {

void CellArrays::make(int mask, int type, long cells) {
  if (mask & QX_SUM_COUNT) count = make_cleared_block<int>(cells);
  if (mask & QX_SUM_MAX) max = make_cleared_block<int>(cells);
  if (mask & QX_SUM_MIN) {
    min = make_block<int>(cells);
    std::fill_n(min.get(), cells, kNoMinimum);
  }
  if (!(mask & QX_SUM_SUM)) return;
  if (type == QX_DT_DECIMAL) {
    decimal_sum = make_cleared_block<Numeric>(cells);
  } else {
    sum = make_cleared_block<double>(cells);
  }
}

namespace {

// Rows are taken in blocks that stay in the first-level cache from step to step, so that each step
// is a short loop without a test.
constexpr int kBlockRows = 2048;

/// One block of rows: their cells, and the value numbers of one column.
struct RowBlock {
  int count;
  int cells[kBlockRows];
  int numbers[kBlockRows];

  void gather(const PassColumn& column, int begin) {
    gather_rows(column.numbers, column.rows, begin, begin + count, numbers);
  }

  void add_dimension(const PassDimension& dimension, int begin) {
    gather(dimension.column, begin);
    if (dimension.categories == nullptr) {
      for (int i = 0; i < count; ++i) cells[i] += numbers[i] * dimension.multiplier;
    } else {
      for (int i = 0; i < count; ++i) {
        cells[i] += dimension.categories[numbers[i]] * dimension.multiplier;
      }
    }
  }

  /// Drops the rows whose value number is that of NULL.
  void drop_nulls() {
    int kept = 0;
    for (int i = 0; i < count; ++i) {  // no branch: where the NULLs are is not foreseeable
      cells[kept] = cells[i];
      numbers[kept] = numbers[i];
      kept += numbers[i] != 0;
    }
    count = kept;
  }
};

/// `body(block, begin)` for each block, its cells known.
template <class Body>
void for_each_block(const std::vector<PassDimension>& dimensions, int rows, Body&& body) {
  RowBlock block;
  for (int begin = 0; begin < rows;) {
    const int taken = std::min(kBlockRows, rows - begin);
    block.count = taken;
    std::fill_n(block.cells, taken, 0);
    for (const PassDimension& dimension : dimensions) block.add_dimension(dimension, begin);
    body(block, begin);
    begin += taken;
  }
}

void count_block(const RowBlock& block, int* counts) {
  for (int i = 0; i < block.count; ++i) ++counts[block.cells[i]];
}

void take_greater(const RowBlock& block, int* most) {
  for (int i = 0; i < block.count; ++i) {
    int& cell = most[block.cells[i]];
    cell = std::max(cell, block.numbers[i]);
  }
}

void take_smaller(const RowBlock& block, int* least) {
  for (int i = 0; i < block.count; ++i) {
    int& cell = least[block.cells[i]];
    cell = std::min(cell, block.numbers[i]);
  }
}

template <class Value>
void add_values(const RowBlock& block, const Value* values, double* sums) {
  for (int i = 0; i < block.count; ++i) {
    sums[block.cells[i]] += static_cast<double>(values[block.numbers[i]]);
  }
}

void add_values(const RowBlock& block, const Numeric* values, Numeric* sums) {
  for (int i = 0; i < block.count; ++i) {
    add_decimal(sums[block.cells[i]], values[block.numbers[i]]);
  }
}

template <class Array>
void sum_block(const RowBlock& block, const Array& list, CellArrays& cells) {
  if (cells.count != nullptr) count_block(block, cells.count.get());
  if (cells.max != nullptr) take_greater(block, cells.max.get());
  if (cells.min != nullptr) take_smaller(block, cells.min.get());
  if constexpr (std::is_same_v<Array, TNumericArray>) {
    if (cells.decimal_sum != nullptr) add_values(block, list.values(), cells.decimal_sum.get());
  } else if constexpr (!std::is_same_v<Array, TStrArray>) {
    if (cells.sum != nullptr) add_values(block, list.values(), cells.sum.get());
  }
}

}  // namespace

void count_rows(const std::vector<PassDimension>& dimensions, const RowList& rows,
                CellArrays& cells) {
  if (dimensions.empty()) {
    cells.count[0] = rows.count;
    return;
  }
  for_each_block(dimensions, rows.count,
                 [&](const RowBlock& block, int) { count_block(block, cells.count.get()); });
}

void sum_rows(const std::vector<PassDimension>& dimensions, const PassMeasure& measure,
              CellArrays& cells) {
  with_family(measure.values, [&]<class Array>(const Array& list) {
    for_each_block(dimensions, measure.column.rows.count, [&](RowBlock& block, int begin) {
      block.gather(measure.column, begin);
      if constexpr (!std::is_same_v<Array, TStrArray>) block.drop_nulls();
      sum_block(block, list, cells);
    });
  });
}

}  // namespace qxe
