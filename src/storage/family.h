// What differs between the four value families, and the only switch over them. Algorithms are
// templates over the array class.
#pragma once

#include <stdint.h>

#include <bit>
#include <limits>
#include <type_traits>
#include <utility>

#include "storage/array.h"

namespace qxe {

/// The empty string that every NULL text points at.
extern const char QX_NULL_STR[2];

constexpr double kNullDouble = -std::numeric_limits<double>::infinity();
// The engine's double NULL test: anything below the lowest finite value.
inline bool is_null_double(double value) {
  return value < -std::numeric_limits<double>::max();
}

inline uint64_t mix_bits(uint64_t x) {
  x ^= x >> 32;
  x *= 0xd6e8feb86659fd93;
  x ^= x >> 32;
  x *= 0xd6e8feb86659fd93;
  return x ^ (x >> 32);
}

template <class Array>
struct Family;

template <>
struct Family<TIntArray> {
  using Array = TIntArray;
  using Value = int;
  static constexpr int kDataType = QX_DT_INTEGER;
  static Value null() { return QX_NULL_INT; }
  static bool is_null(Value value) { return value == QX_NULL_INT; }
  static int compare(Value left, Value right) { return (left > right) - (left < right); }
  static bool equal(Value left, Value right) { return left == right; }
  static uint64_t hash(Value value) { return mix_bits(static_cast<uint32_t>(value)); }
  static Value normalized(Value value) { return value; }
};

template <>
struct Family<TDoubleArray> {
  using Array = TDoubleArray;
  using Value = double;
  static constexpr int kDataType = QX_DT_DOUBLE;
  static Value null() { return kNullDouble; }
  static bool is_null(Value value) { return is_null_double(value); }
  static int compare(Value left, Value right) { return (left > right) - (left < right); }
  static bool equal(Value left, Value right) { return left == right; }
  static uint64_t hash(Value value) { return mix_bits(std::bit_cast<uint64_t>(value)); }
  /// A client's NaN is NULL; the two zeros are one.
  static Value normalized(Value value) { return value != value ? kNullDouble : value + 0.0; }
};

template <>
struct Family<TStrArray> {
  using Array = TStrArray;
  using Value = const char*;
  static constexpr int kDataType = QX_DT_STRING;
  static Value null() { return QX_NULL_STR; }
  static bool is_null(Value value) { return *value == '\0'; }
  static int compare(Value left, Value right) { return strcmp(left, right); }
  static bool equal(Value left, Value right) { return strcmp(left, right) == 0; }
  static uint64_t hash(Value value) { return hash(value, strlen(value)); }
  static uint64_t hash(const char* text, size_t length);
  static Value normalized(Value value) { return value == nullptr ? QX_NULL_STR : value; }
};

template <>
struct Family<TNumericArray> {
  using Array = TNumericArray;
  using Value = Numeric;
  static constexpr int kDataType = QX_DT_DECIMAL;
  static Value null() { return Numeric{0, std::numeric_limits<long>::min()}; }
  static bool is_null(const Value& value) { return equal(value, null()); }
  /// Signed 128-bit order; NaN is the lowest pattern and so comes first.
  static int compare(const Value& left, const Value& right) {
    if (left.hi != right.hi) return left.hi < right.hi ? -1 : 1;
    return (left.lo > right.lo) - (left.lo < right.lo);
  }
  static bool equal(const Value& left, const Value& right) {
    return left.hi == right.hi && left.lo == right.lo;
  }
  static uint64_t hash(const Value& value) {
    return mix_bits(value.lo ^ mix_bits(static_cast<uint64_t>(value.hi)));
  }
  static Value normalized(const Value& value) { return value; }
};

/// Calls `body` with the array as its own class.
template <class Body>
decltype(auto) with_family(TBaseArray& array, Body&& body) {
  switch (array.GetDataType()) {
    case QX_DT_INTEGER: return body(static_cast<TIntArray&>(array));
    case QX_DT_DOUBLE: return body(static_cast<TDoubleArray&>(array));
    case QX_DT_STRING: return body(static_cast<TStrArray&>(array));
    case QX_DT_DECIMAL: return body(static_cast<TNumericArray&>(array));
    default: throw CQXException(QX_ERROR_TYPE_MISMATCH);
  }
}

template <class Body>
decltype(auto) with_family(const TBaseArray& array, Body&& body) {
  return with_family(const_cast<TBaseArray&>(array),
                     [&](auto& own) -> decltype(auto) { return body(std::as_const(own)); });
}

/// Calls `body` with `std::type_identity` of the array class that holds data type `type` (2 to 8).
template <class Body>
decltype(auto) with_family_of(int type, Body&& body) {
  switch (type) {
    case QX_DT_INTEGER: return body(std::type_identity<TIntArray>{});
    case QX_DT_DOUBLE:
    case QX_DT_DATE:
    case QX_DT_TIME:
    case QX_DT_DATETIME: return body(std::type_identity<TDoubleArray>{});
    case QX_DT_STRING: return body(std::type_identity<TStrArray>{});
    case QX_DT_DECIMAL: return body(std::type_identity<TNumericArray>{});
    default: throw CQXException(QX_ERROR_TYPE_MISMATCH);
  }
}

inline bool is_data_type(int type) {
  return type >= QX_DT_INTEGER && type <= QX_DT_DECIMAL;
}

/// The values of an array by index, without checks: `view[i]`, `view.size`.
template <class Array>
struct ValueView {
  using FamilyOf = Family<Array>;

  explicit ValueView(const Array& array) : values(array.values()), size(array.FArraySize) {}
  const typename Family<Array>::Value& operator[](int i) const { return values[i]; }

  const typename Family<Array>::Value* values;
  int size;
};

template <>
struct ValueView<TStrArray> {
  using FamilyOf = Family<TStrArray>;

  explicit ValueView(const TStrArray& array)
      : offsets(array.offsets()), pool(array.pool()), size(array.FArraySize) {}
  const char* operator[](int i) const { return pool + offsets[i]; }

  const long* offsets;
  const char* pool;
  int size;
};

template <class Array>
ValueView<Array> view_of(const Array& array) {
  return ValueView<Array>(array);
}

/// An array of `type` around a ready list of `count` values, the extended type set. A text list
/// copies the texts that its pointers name.
std::unique_ptr<TBaseArray> make_value_array(int type, int count, Block<char> values);
/// Gives `target`, of the same class, the attribute block, extended type and decimal info of
/// `source`.
void copy_type_info(const TBaseArray& source, TBaseArray& target);
/// An array of `type` whose only element is NULL.
std::unique_ptr<TBaseArray> make_null_array(int type);

}  // namespace qxe
