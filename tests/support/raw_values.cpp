#include "support/raw_values.h"

#include <limits>

namespace qxe::test {

namespace {

constexpr Numeric kNullNumeric = {0, std::numeric_limits<long>::min()};

/// The value, or `null` for NULL. A cell of another type is the test's mistake and throws.
template <class T>
T value_or(const Cell& cell, const T& null) {
  return is_null(cell) ? null : std::get<T>(cell);
}

}  // namespace

Numeric to_numeric(const Cell& cell) {
  if (is_null(cell)) return kNullNumeric;
  const int128 units = std::get<Decimal>(cell).units;
  return {static_cast<unsigned long>(units), static_cast<long>(units >> 64)};
}

Cell from_numeric(const Numeric& number, int scale) {
  if (number.lo == kNullNumeric.lo && number.hi == kNullNumeric.hi) return {};
  return Decimal{scale, (static_cast<int128>(number.hi) << 64) | static_cast<int128>(number.lo)};
}

RawValues::RawValues(int type, const std::vector<Cell>& cells) : type_(type) {
  for (const Cell& cell : cells) {
    switch (type) {
      case QX_DT_INTEGER: ints_.push_back(value_or(cell, kNullInt)); break;
      case QX_DT_STRING: texts_.push_back(value_or(cell, std::string())); break;
      case QX_DT_DECIMAL: decimals_.push_back(to_numeric(cell)); break;
      default: doubles_.push_back(value_or(cell, kNullDouble)); break;
    }
  }
  for (std::string& text : texts_) pointers_.push_back(text.data());
}

void* RawValues::data() {
  switch (type_) {
    case QX_DT_INTEGER: return ints_.data();
    case QX_DT_STRING: return pointers_.data();
    case QX_DT_DECIMAL: return decimals_.data();
    default: return doubles_.data();
  }
}

char* RawValues::value(size_t index) {
  switch (type_) {
    case QX_DT_INTEGER: return reinterpret_cast<char*>(&ints_.at(index));
    case QX_DT_STRING: return pointers_.at(index);
    case QX_DT_DECIMAL: return reinterpret_cast<char*>(&decimals_.at(index));
    default: return reinterpret_cast<char*>(&doubles_.at(index));
  }
}

}  // namespace qxe::test
