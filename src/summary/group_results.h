// From cells to arrays of results, and from a measure to the kind of cell that serves it.
#pragma once

#include "summary/grouping.h"
#include "summary/result_columns.h"

namespace qxe {

/// Arrays of results and the kind of cell that fills them.
template <class Cell>
class ResultRows {
 public:
  explicit ResultRows(int groups) {
    if constexpr (Cell::kHasExtremes) {
      reduced_.max = make_row_numbers(groups);
      reduced_.min = make_row_numbers(groups);
    }
    if constexpr (Cell::kHasSum) sums() = make_block<Result>(groups);
  }

  void put(long group, const Cell& cell, NullMinimum nulls) {
    if constexpr (Cell::kHasExtremes) {
      reduced_.max[group + 1] = cell.extremes.max();
      reduced_.min[group + 1] = cell.extremes.min(nulls);
    }
    if constexpr (Cell::kHasSum) sums()[group] = Cell::Values::result(cell.sum.value);
  }

  /// Moves `count` groups from place `from` to a place before it.
  void move_down(long from, long to, long count) {
    if constexpr (Cell::kHasExtremes) {
      std::copy_n(reduced_.max.get() + 1 + from, count, reduced_.max.get() + 1 + to);
      std::copy_n(reduced_.min.get() + 1 + from, count, reduced_.min.get() + 1 + to);
    }
    if constexpr (Cell::kHasSum) std::copy_n(sums().get() + from, count, sums().get() + to);
  }

  Reduced take() { return std::move(reduced_); }

 private:
  using Result = typename Cell::Values::Result;

  auto& sums() {
    if constexpr (std::is_same_v<Result, Numeric>) {
      return reduced_.decimal_sums;
    } else {
      return reduced_.sums;
    }
  }

  Reduced reduced_;
};

/// The values of a measure, or none, with the row pointers that name them.
template <class CellType>
struct MeasureOf {
  using Cell = CellType;

  const int* numbers;  // row pointers; null without a measure
  typename Cell::Values values;
  NullMinimum nulls;
};

/// Calls `body(measure)` with a MeasureOf the cell that serves what is wanted of so many rows.
template <class Body>
Reduced with_measure(const Wanted& wanted, int rows, NullMinimum nulls, const Body& body) {
  const int* const numbers =
      wanted.measure == nullptr ? nullptr : std::as_const(*wanted.measure->PVL).PIntAr();
  const auto call = [&]<class Values>(const Values& values) {
    if (wanted.extremes) {
      return body(MeasureOf<GroupCell<Values, true>>{numbers, values, nulls});
    }
    return body(MeasureOf<GroupCell<Values, false>>{numbers, values, nulls});
  };
  if (!wanted.sum) return call(NoValues{});
  return with_family(std::as_const(*wanted.measure->VL), [&]<class Array>(const Array& list) {
    if constexpr (std::is_same_v<Array, TIntArray>) {
      return call(IntValues{list.values()});
    } else if constexpr (std::is_same_v<Array, TDoubleArray>) {
      return call(DoubleValues{list.values()});
    } else if constexpr (std::is_same_v<Array, TNumericArray>) {
      if (SmallDecimalValues::serves(list, rows)) {
        return call(SmallDecimalValues{list.values()});
      }
      return call(DecimalValues{list.values()});
    } else {
      return call(NoValues{});  // texts have no sum
    }
  });
}

template <class Body>
Reduced with_measure(const Wanted& wanted, const GroupedRows& source, const Body& body) {
  return with_measure(wanted, source.rows(), source.null_minimum, body);
}

}  // namespace qxe
