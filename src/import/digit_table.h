// Numbers of texts that are little more than digits: amounts, dates and times as most files write
// them. Such a text is an integer, one to one, and its number stands in a table by that integer; no
// hashing, no comparing of texts. All other texts are a dictionary's business.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "import/cell_scanner.h"

namespace qxe {

enum class DigitShape {
  kNone,
  kFixedPoint,  // 0, 17, 12.50
  kDate,        // 2024/03/01, also with '-' or '.'
  kTime         // 12:30:00
};

class DigitTable : NonCopyable {
 public:
  explicit DigitTable(DigitShape shape) : shape_(shape) {}

  /// Numbers of up to TextTable::kMaxCells cells, 0 for texts that have none here.
  void find(std::span<const Cell> cells, int* numbers) const;
  /// Gives a text its number, above 0, if it is of the shape and the table remains dense.
  void add(const Cell& cell, int number);

 private:
  // Texts of one layout, such as a number of decimals, have a table by themselves.
  static constexpr int kLayouts = 8;
  static constexpr int kPageBits = 12;
  // Sparse pages beyond these need some entries each.
  static constexpr long kFreePages = 64;
  static constexpr long kEntriesPerPage = 256;

  struct Key {
    int layout;  // below 0: the text is not of the shape
    int digits;
  };
  using Page = Block<int>;

  static Key fixed_point_key(const Cell& cell);
  static Key date_key(const Cell& cell);
  static Key time_key(const Cell& cell);
  Key key_of(const Cell& cell) const;
  const int* place_of(Key key) const;
  template <class KeyOf>
  void find_all(std::span<const Cell> cells, int* numbers, KeyOf&& key_of) const;

  const DigitShape shape_;
  std::array<std::vector<Page>, kLayouts> pages_;
  long page_count_ = 0;
  long entries_ = 0;
};

}  // namespace qxe
