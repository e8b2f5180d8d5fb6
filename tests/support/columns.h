// Columns as tests write them down: `ints({30, kNullInt, 10})`, `strings({"a", ""})`. A table is a
// list of named columns; TestTable puts it into the engine, NaiveModel works on it directly.
#pragma once

#include <compare>
#include <limits>
#include <string>
#include <variant>
#include <vector>

#include "qxe.h"

namespace qxe::test {

__extension__ using int128 = __int128;

constexpr int kNullInt = QX_NULL_INT;
constexpr double kNullDouble = -std::numeric_limits<double>::infinity();

/// units / 10^scale.
struct Decimal {
  int scale;
  int128 units;

  // NOLINTNEXTLINE(modernize-use-nullptr): about the 0 in the comparison that the compiler makes
  auto operator<=>(const Decimal&) const = default;
};

/// One value of a column. NULL is the first alternative, except that strings have none: theirs is
/// the empty string. So the order of the cells of one column, with `<`, is the engine's order.
using Cell = std::variant<std::monostate, int, double, std::string, Decimal>;

inline bool is_null(const Cell& cell) {
  return std::holds_alternative<std::monostate>(cell);
}

struct Column {
  int type = QX_DT_INTEGER;  // one of QX_DT_...
  std::vector<Cell> cells;   // of row 1, 2, ...
  int scale = 0;             // of decimals
};

struct NamedColumn {
  std::string name;
  Column column;
};

using Columns = std::vector<NamedColumn>;

/// One key of a sort; `direction` is QX_SORT_ASC or QX_SORT_DESC.
struct SortKey {
  std::string column;
  int direction = QX_SORT_ASC;
};

// Columns from values; kNullInt, kNullDouble and "" stand for NULL.
Column ints(const std::vector<int>& values);
Column doubles(const std::vector<double>& values);
Column strings(const std::vector<std::string>& values);
Column dates(const std::vector<std::string>& values);                // "2024/03/01"
Column times(const std::vector<std::string>& values);                // "12:30:45" or "12:30:45.250"
Column datetimes(const std::vector<std::string>& values);            // both with a blank between
Column decimals(int scale, const std::vector<std::string>& values);  // "-1.25"
/// Serials as a column of dates, times or both.
Column serials(int type, const std::vector<double>& values);

// Single values from the same texts.
Cell date(const std::string& text);
Cell time_of_day(const std::string& text);
Cell datetime(const std::string& text);
Cell decimal(int scale, const std::string& text);

/// The cell as a column of this type holds it: kNullInt and kNullDouble become NULL, NULL among
/// strings the empty string.
Cell normal_form(const Cell& cell, int type);

/// Text of one value in the form the makers above take; "NULL" for NULL.
std::string to_text(const Cell& cell, int type);
std::vector<std::string> to_texts(const Column& column);
/// The whole table for a failure's message; long columns are cut.
std::string to_text(const Columns& columns);

}  // namespace qxe::test
