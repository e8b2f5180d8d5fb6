// One pass over rows that adds each row to its cell. Only value numbers are read for maximum and
// minimum: they order as their values do.
#pragma once

#include <vector>

#include "tables/row_list.h"

namespace qxe {

/// A column by the rows of a set.
struct PassColumn {
  const int* numbers;  // row pointers
  RowList rows;
};

struct PassDimension {
  PassColumn column;
  const int* categories;  // category of each value number; null: the value number itself
  int multiplier;         // of the category in the cell number
};

struct PassMeasure {
  PassColumn column;
  const TBaseArray& values;
};

/// What is added up, one element for each cell; null is not wanted.
struct CellArrays {
  static constexpr int kNoMinimum = 0x7fffffff;  // above every value number

  Block<int> count;
  Block<int> max;              // value numbers; 0 where there is none
  Block<int> min;              // value numbers
  Block<double> sum;           // of integers and floats
  Block<Numeric> decimal_sum;  // of decimals

  /// Makes those of a mask of sum types for so many cells; `type` is the measure's data type.
  void make(int mask, int type, long cells);
};

/// Counts the rows of each cell.
void count_rows(const std::vector<PassDimension>& dimensions, const RowList& rows,
                CellArrays& cells);
/// Adds the measure up. Rows where it is NULL are left out; strings have no NULL here.
void sum_rows(const std::vector<PassDimension>& dimensions, const PassMeasure& measure,
              CellArrays& cells);

}  // namespace qxe
