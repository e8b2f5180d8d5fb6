// What a summary must tell, by loops over plain vectors: slow and plainly right.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/naive_model.h"

namespace qxe::test {

/// One dimension: its categories by value number.
struct ModelDimension {
  std::string column;
  std::vector<Cell> values;     // NULL first
  std::vector<int> categories;  // of each value; empty: the value's own number
  int count = 0;

  int category_of(const Cell& cell) const;
};

/// What is known of a cell with rows.
struct ModelCell {
  int count = 0;
  Cell max;
  Cell min;
  double sum = 0;
  Numeric decimal_sum{};
};

using Coordinates = std::vector<int>;

class SummaryModel {
 public:
  /// The values of the dimensions are those of `valueRows`.
  SummaryModel(const NaiveModel& table, const std::vector<std::string>& dimensions,
               const std::vector<int>& valueRows);

  std::vector<ModelDimension>& dimensions() { return dimensions_; }
  long cell_count() const;
  /// Coordinates of a cell by its number.
  Coordinates coordinates(long number) const;

  /// Computes all cells; an empty name for no measure.
  void run(const std::vector<int>& rows, const std::string& measure);
  /// The cell, or one without rows.
  const ModelCell& cell(const Coordinates& coordinates) const;
  /// A result as a cell of a table's column: QX_SUM_AVG too.
  Cell result(int sumType, const ModelCell& cell) const;
  /// An output that has all cells and averages leaves them in the place of the sums.
  void put_averages_for_sums();

  /// The type of a column of results.
  int type_of(int sumType) const;

 private:
  void add(ModelCell& cell, const Cell& value) const;

  const NaiveModel& table_;
  std::vector<ModelDimension> dimensions_;
  const Column* measure_ = nullptr;
  std::map<Coordinates, ModelCell> cells_;
};

}  // namespace qxe::test
