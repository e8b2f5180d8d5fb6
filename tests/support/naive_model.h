// What searches and sorts must find, by loops over plain vectors: slow and plainly right.
#pragma once

#include <string>
#include <vector>

#include "support/columns.h"

namespace qxe::test {

/// Whether a value of a column of this type is a hit. The rules beyond plain comparison:
/// - NULL is below every value. It never matches LEQ, LES or NEQ; EQ, GEQ and BETWEEN with a NULL
///   bound do find it.
/// - QX_OPE_STRICT with a NULL bound finds nothing.
/// - The empty string is an ordinary string, except that LEQ "" without QX_OPE_STRICT finds
/// nothing.
/// - Text is found where a character begins; no value begins with a text that ends in 0xFF.
/// Text operators on other types, QX_OPE_ISNULL on strings and unknown operators throw.
bool is_hit(int type, const Cell& value, int ope, const Cell& bound1, const Cell& bound2,
            int locale = QX_LOCALE_UTF8);
/// The same for a find cursor: NULL is the lowest value and there are no further rules.
bool is_find_hit(int type, const Cell& value, int ope, const Cell& bound1, const Cell& bound2,
                 int locale = QX_LOCALE_UTF8);

/// Whether a character begins at a position of a text in the code of a locale (QX_LOCALE_...), as
/// far as the bytes in front tell; the end counts as one.
bool begins_character(const std::string& text, size_t position, int locale);

/// A table beside the engine's. Rows are numbered from 1, sets are lists of row numbers.
class NaiveModel {
 public:
  explicit NaiveModel(Columns columns, int locale = QX_LOCALE_UTF8)
      : columns_(std::move(columns)), locale_(locale) {}

  const Columns& columns() const { return columns_; }
  int total_rows() const;
  std::vector<int> all_rows() const;
  const Column& column(const std::string& name) const;
  const Cell& cell(const std::string& column, int row) const;

  std::vector<int> search(const std::string& column, int ope, const Cell& bound1,
                          const Cell& bound2, const std::vector<int>& rows) const;
  /// Rows with any of the values, NULL being one like the others.
  std::vector<int> search_values(const std::string& column, const std::vector<Cell>& values,
                                 const std::vector<int>& rows) const;
  /// Stable, NULL lowest; the first key is the least significant one.
  std::vector<int> sort(const std::vector<SortKey>& keys, std::vector<int> rows) const;

 private:
  Columns columns_;
  int locale_;
};

}  // namespace qxe::test
