// Random tables, sets and search values for comparing the engine with the naive model.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "support/columns.h"

namespace qxe::test {

/// The same seed gives the same data. Tables are rich in NULLs, duplicates, extremes and empty
/// strings; sets come empty, whole, sparse, dense, in order and out of it.
class RandomData {
 public:
  /// Strings are well-formed UTF-8.
  explicit RandomData(unsigned seed);
  /// Strings are made of characters of a locale's code (QX_LOCALE_...) that share bytes with each
  /// other, and of halves of such characters.
  RandomData(unsigned seed, int locale);

  /// A number from 0 to `limit` - 1.
  int below(int limit);
  bool chance(int percent) { return below(100) < percent; }
  template <class Item>
  Item& any_of(std::vector<Item>& items) {
    return items[static_cast<size_t>(below(static_cast<int>(items.size())))];
  }

  Column column(int type, int rows);
  /// One column of each type: "int", "double", "date", "time", "string", "datetime", "decimal".
  Columns table(int rows);
  /// Row numbers from 1 to `rows`, none twice.
  std::vector<int> set_of(int rows);
  /// A bound for searching the column: mostly a value in it, else NULL or any value of its type.
  Cell bound(const Column& column);

 private:
  Cell value(const Column& column);
  int any_int();
  double any_double();
  std::string any_string();
  Decimal any_decimal(int scale);

  std::mt19937 generator_;
  std::vector<std::string> characters_;
};

}  // namespace qxe::test
