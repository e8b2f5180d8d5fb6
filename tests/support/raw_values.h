// Values in the form the interface takes them: arrays of int, double, Numeric or char*.
#pragma once

#include <string>
#include <vector>

#include "support/columns.h"

namespace qxe::test {

/// Memory of a column's values, writable because the engine may cut trailing blanks in place.
class RawValues {
 public:
  RawValues(int type, const std::vector<Cell>& cells);
  explicit RawValues(const Column& column) : RawValues(column.type, column.cells) {}
  RawValues(const RawValues&) = delete;
  RawValues& operator=(const RawValues&) = delete;

  /// The array, as adding, overwriting and the search for several values take it.
  void* data();
  /// The value at `index` as a search takes it: its address, or the text itself.
  char* value(size_t index);

 private:
  int type_;
  std::vector<int> ints_;
  std::vector<double> doubles_;
  std::vector<Numeric> decimals_;
  std::vector<std::string> texts_;
  std::vector<char*> pointers_;  // to the texts
};

Numeric to_numeric(const Cell& cell);
Cell from_numeric(const Numeric& number, int scale);

}  // namespace qxe::test
