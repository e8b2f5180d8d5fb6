// Numbers of texts that are little more than digits: amounts, dates and times as most files write
// them. Such a text is an integer, one to one, and its number stands in a table by that integer; no
// hashing, no comparing of texts. All other texts are a dictionary's business.
#pragma once

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
  /// Forgets all texts and gives the memory back.
  void close();

 private:
  using Page = std::unique_ptr<int[], ZvkFree>;
  // A key is a layout, such as the number of decimals, above the digits as an integer.
  static constexpr int kDigitBits = 23;
  static constexpr unsigned kLayouts = 7;
  static constexpr unsigned kNoKey = kLayouts << kDigitBits;
  static constexpr int kPageBits = 12;
  static constexpr unsigned kPageSize = 1u << kPageBits;
  static int no_page_[kPageSize];  // zeros, where there is no page; never written
  // Sparse pages beyond these need some entries each.
  static constexpr long kFreePages = 64;
  static constexpr long kEntriesPerPage = 256;

  // Keys of texts of the shape, else kNoKey.
  static unsigned fixed_point_key(const Cell& cell);
  static unsigned date_key(const Cell& cell);
  static unsigned time_key(const Cell& cell);
  static unsigned key(int layout, int digits);
  unsigned key_of(const Cell& cell) const;
  template <class KeyOf>
  void find_all(std::span<const Cell> cells, int* numbers, KeyOf&& key_of) const;

  const DigitShape shape_;
  std::vector<Page> pages_;
  std::vector<int*> places_;  // of the pages, by key
  long entries_ = 0;
};

}  // namespace qxe
