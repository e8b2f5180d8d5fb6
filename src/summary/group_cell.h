// What a summary keeps of a group of rows: their count, the sum of a measure and its highest and
// lowest value number. Value lists are sorted, so extremes are never found by comparing values.
//
// A cell of zero bytes is that of no rows.
#pragma once

#include <stdint.h>

#include <algorithm>

#include "storage/family.h"

namespace qxe {

/// Adds to a decimal sum; a sum that does not fit becomes NaN and stays it.
inline void add_decimal(Numeric& sum, const Numeric& value) {
  constexpr auto is_far_from_limit = [](const Numeric& number) {
    constexpr long kQuarter = 1L << 61;  // two such numbers and their sum are below 38 digits
    return number.hi > -kQuarter && number.hi < kQuarter;
  };
  if (is_far_from_limit(sum) && is_far_from_limit(value)) {
    const unsigned long low = sum.lo + value.lo;
    sum.hi += value.hi + (low < value.lo ? 1 : 0);
    sum.lo = low;
  } else {
    RQXNumericAdd(&sum, &value, &sum);
  }
}

// The values of a measure by number, and how they add up. Number 0, NULL, adds nothing.

struct NoValues {
  struct Sum {};
  using Result = Sum;

  Sum plus(Sum sum, int) const { return sum; }
  static Sum merged(Sum sum, Sum) { return sum; }
  static Sum times(Sum sum, int) { return sum; }
};

template <class Value>
struct PlainValues {
  using Sum = double;
  using Result = double;

  const Value* values;

  void prefetch(int number) const { __builtin_prefetch(values + number); }
  Sum plus(Sum sum, int number) const {
    const auto value = static_cast<double>(values[number]);
    return sum + (number != 0 ? value : 0.0);
  }
  static Sum merged(Sum sum, Sum other) { return sum + other; }
  static Sum times(Sum sum, int count) { return sum * count; }
  static Result result(Sum sum) { return sum; }
};

using IntValues = PlainValues<int>;
using DoubleValues = PlainValues<double>;

struct DecimalValues {
  using Sum = Numeric;
  using Result = Numeric;

  const Numeric* values;

  void prefetch(int number) const { __builtin_prefetch(values + number); }
  Sum plus(Sum sum, int number) const {
    if (number != 0) add_decimal(sum, values[number]);
    return sum;
  }
  static Sum merged(Sum sum, Sum other) {
    add_decimal(sum, other);
    return sum;
  }
  static Sum times(Sum sum, int count) {
    const Numeric factor{static_cast<unsigned long>(count), 0};
    RQXNumericMul(&sum, &factor, &sum);
    return sum;
  }
  static Result result(Sum sum) { return sum; }
};

/// Decimals that are so small that 64 bits hold the sum of all rows.
struct SmallDecimalValues {
  using Sum = int64_t;
  using Result = Numeric;

  const Numeric* values;

  /// Whether this does for `rows` values of a list.
  static bool serves(const TNumericArray& list, int rows) {
    const auto is_small = [&](const Numeric& value) {
      const int64_t low = static_cast<int64_t>(value.lo);
      const int64_t most = std::numeric_limits<int64_t>::max() / std::max(rows, 1);
      return value.hi == low >> 63 && low >= -most && low <= most;
    };
    const auto values = view_of(list);
    return values.size < 2 || (is_small(values[1]) && is_small(values[values.size - 1]));
  }

  void prefetch(int number) const { __builtin_prefetch(values + number); }
  Sum plus(Sum sum, int number) const {
    const auto value = static_cast<int64_t>(values[number].lo);
    return sum + (number != 0 ? value : 0);
  }
  static Sum merged(Sum sum, Sum other) { return sum + other; }
  static Sum times(Sum sum, int count) { return sum * count; }
  static Result result(Sum sum) {
    return {static_cast<unsigned long>(sum), static_cast<long>(sum >> 63)};
  }
};

/// Whether NULL can be the minimum of a group, as the lowest of all values.
enum class NullMinimum : uint32_t { kNever = 0, kAlways = ~uint32_t{0} };

/// The highest and the lowest value number. The lowest is kept as its distance below a number that
/// makes zero bytes, and with kNever also NULL, lose against everything.
struct Extremes {
  uint32_t high;
  uint32_t low;

  void add(int number, NullMinimum nulls) {
    high = std::max(high, static_cast<uint32_t>(number));
    low = std::max(low, static_cast<uint32_t>(nulls) - static_cast<uint32_t>(number));
  }
  /// The same for cells of many rows, whose extremes hardly ever change: a branch that goes the
  /// same way each time costs less than stores that the next row in the cell waits for.
  void add_to_many(int number, NullMinimum nulls) {
    const auto distance = static_cast<uint32_t>(nulls) - static_cast<uint32_t>(number);
    if (static_cast<uint32_t>(number) > high) [[unlikely]]
      high = static_cast<uint32_t>(number);
    if (distance > low) [[unlikely]]
      low = distance;
  }
  void merge(const Extremes& other) {
    high = std::max(high, other.high);
    low = std::max(low, other.low);
  }
  int max() const { return static_cast<int>(high); }
  int min(NullMinimum nulls) const { return static_cast<int>(static_cast<uint32_t>(nulls) - low); }
};

struct NoExtremes {
  void add(int, NullMinimum) {}
  void add_to_many(int, NullMinimum) {}
  void merge(const NoExtremes&) {}
};

/// A sum that lies at any multiple of 4 bytes, so that the count behind it leaves no gap: the more
/// cells fit a cache, the better.
template <class Sum>
struct [[gnu::packed, gnu::aligned(4)]] CloseSum {
  [[no_unique_address]] Sum value;
};

template <class ValuesOfMeasure, bool kExtremes>
struct GroupCell {
  using Values = ValuesOfMeasure;
  static constexpr bool kHasExtremes = kExtremes;
  static constexpr bool kHasSum = !std::is_same_v<Values, NoValues>;

  [[no_unique_address]] CloseSum<typename Values::Sum> sum;
  int count;
  [[no_unique_address]] std::conditional_t<kExtremes, Extremes, NoExtremes> extremes;

  void add(int number, const Values& values, NullMinimum nulls) {
    ++count;
    extremes.add(number, nulls);
    sum.value = values.plus(sum.value, number);
  }
  void add_to_many(int number, const Values& values, NullMinimum nulls) {
    ++count;
    extremes.add_to_many(number, nulls);
    sum.value = values.plus(sum.value, number);
  }
  void merge(const GroupCell& other) {
    sum.value = Values::merged(sum.value, other.sum.value);
    count += other.count;
    extremes.merge(other.extremes);
  }
  /// As many times as each row of the other cell has partners.
  void merge(const GroupCell& other, int times) {
    sum.value = Values::merged(sum.value, Values::times(other.sum.value, times));
    count += other.count * times;
    extremes.merge(other.extremes);
  }
};

/// Bytes of most cells: a sum and a count. That of large decimals takes 8 more, extremes 8.
constexpr long kUsualCellBytes = sizeof(GroupCell<DoubleValues, false>);
static_assert(kUsualCellBytes == 12 && sizeof(GroupCell<NoValues, false>) == 4 &&
              sizeof(GroupCell<DoubleValues, true>) == 20);

}  // namespace qxe
