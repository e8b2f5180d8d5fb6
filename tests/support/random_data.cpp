#include "support/random_data.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace qxe::test {

namespace {

constexpr int kDecimalScale = 4;

template <class T, size_t count>
const T& pick(RandomData& random, const T (&choices)[count]) {
  return choices[random.below(static_cast<int>(count))];
}

int128 power_of_ten(int exponent) {
  int128 power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

std::vector<std::string> characters(int locale) {
  switch (locale) {
    case QX_LOCALE_SJIS:
    case QX_LOCALE_MS932: return {"a", "b", "\x83\x5c", "\x83\x61", "\x83\x83", "\xb1", "\x83"};
    case QX_LOCALE_MS949: return {"a", "\xb0\xa1", "\xa1\xb0", "\x81\x5c", "\x81\x61", "\xb0"};
    case QX_LOCALE_EUC: return {"a", "\xa4\xa2", "\xa2\xa4", "\x8e\xb1", "\x8f\xa2\xa4", "\x8f"};
    case QX_LOCALE_UTF8:
      return {"a", "b", "\xc3\xa9", "\xe6\x9d\xb1", "\xf0\x9f\x98\x80", "\xe6", "\x9d"};
    default: return {"a", "b", "\x83", "\x5c", "\xff"};
  }
}

}  // namespace

RandomData::RandomData(unsigned seed)
    : generator_(seed), characters_{"a",  "b",  "ab",   "B",      "0",      " ",
                                    "_%", "~!", "\x7F", "\u00e9", "\u6f22", "\U0001f600"} {}

RandomData::RandomData(unsigned seed, int locale)
    : generator_(seed), characters_(characters(locale)) {}

int RandomData::below(int limit) {
  // Not std::uniform_int_distribution, whose numbers depend on the library.
  return static_cast<int>(generator_() % static_cast<unsigned>(limit));
}

int RandomData::any_int() {
  using Limits = std::numeric_limits<int>;
  static constexpr int kExtremes[] = {
      Limits::max(), Limits::max() - 1, Limits::min() + 1, Limits::min() + 2, 0, -1, 1, 65535,
      65536};
  return chance(30) ? pick(*this, kExtremes) : below(2000) - 1000;
}

double RandomData::any_double() {
  using Limits = std::numeric_limits<double>;
  static constexpr double kExtremes[] = {
      Limits::max(), Limits::lowest(), Limits::denorm_min(), -Limits::min(), 0.0, -0.0, 0.1, 1e-300,
      -1e300};
  return chance(30) ? pick(*this, kExtremes) : (below(2000) - 1000) / 8.0;
}

std::string RandomData::any_string() {
  if (chance(2)) return std::string(1000, 'x') + std::to_string(below(3));
  std::string text;
  for (int pieces = below(5); pieces > 0; --pieces) text += any_of(characters_);
  return text;
}

Decimal RandomData::any_decimal(int scale) {
  const int128 largest = power_of_ten(38) - 1;
  const int128 extremes[] = {largest, -largest, 0, 1, -1, power_of_ten(20), -power_of_ten(20)};
  return {scale, chance(30) ? pick(*this, extremes) : int128{below(2000)} - 1000};
}

Cell RandomData::value(const Column& column) {
  constexpr int kDays = 80000;  // from 1900 to 2118
  constexpr int kSecondsPerDay = 86400;
  const auto time = [this] { return below(kSecondsPerDay) / double{kSecondsPerDay}; };
  switch (column.type) {
    case QX_DT_INTEGER: return any_int();
    case QX_DT_DOUBLE: return any_double();
    case QX_DT_DATE: return double(below(kDays) + 2);
    case QX_DT_TIME: return time();
    case QX_DT_DATETIME: return below(kDays) + 2 + time();
    case QX_DT_DECIMAL: return any_decimal(column.scale);
    default: return any_string();
  }
}

Column RandomData::column(int type, int rows) {
  Column column{type, {}, type == QX_DT_DECIMAL ? kDecimalScale : 0};
  const int distinct_limits[] = {1, 2, 5, 30, std::max(rows, 1)};
  static constexpr int kNullShares[] = {0, 10, 50, 100};
  std::vector<Cell> values(static_cast<size_t>(pick(*this, distinct_limits)));
  std::generate(values.begin(), values.end(), [&] { return value(column); });
  // A column of nothing but NULL is worth having, but rarely.
  const int null_share = chance(95) ? kNullShares[below(3)] : kNullShares[3];
  for (int row = 0; row < rows; ++row) {
    const Cell& chosen = values[static_cast<size_t>(below(static_cast<int>(values.size())))];
    column.cells.push_back(normal_form(chance(null_share) ? Cell{} : chosen, type));
  }
  return column;
}

Columns RandomData::table(int rows) {
  return {{"int", column(QX_DT_INTEGER, rows)},    {"double", column(QX_DT_DOUBLE, rows)},
          {"date", column(QX_DT_DATE, rows)},      {"time", column(QX_DT_TIME, rows)},
          {"string", column(QX_DT_STRING, rows)},  {"datetime", column(QX_DT_DATETIME, rows)},
          {"decimal", column(QX_DT_DECIMAL, rows)}};
}

std::vector<int> RandomData::set_of(int rows) {
  std::vector<int> all(static_cast<size_t>(rows));
  std::iota(all.begin(), all.end(), 1);
  static constexpr int kShares[] = {0, 3, 10, 50, 100};
  const int share = pick(*this, kShares);
  std::vector<int> set;
  std::copy_if(all.begin(), all.end(), std::back_inserter(set), [&](int) { return chance(share); });
  if (chance(50)) {
    for (size_t left = set.size(); left > 1; --left) {
      std::swap(set[left - 1], set[static_cast<size_t>(below(static_cast<int>(left)))]);
    }
  }
  return set;
}

Cell RandomData::bound(const Column& column) {
  if (chance(10)) return normal_form({}, column.type);
  if (column.cells.empty() || chance(20)) return value(column);
  return column.cells[static_cast<size_t>(below(static_cast<int>(column.cells.size())))];
}

}  // namespace qxe::test
