#include "summary/result_columns.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "search/compiler_steps.h"
#include "search/compiler_values.h"
#include "tables/value_use.h"

namespace qxe {

namespace {

// A table of slots pays up to so many slots, and up to so many a row.
constexpr long kFewSlots = 1 << 16;
constexpr long kSlotsPerRow = 2;

/// Whole numbers from `min` to `max`, both included; none when min is above max.
struct WholeRange {
  int64_t min = std::numeric_limits<int64_t>::max();
  int64_t max = std::numeric_limits<int64_t>::min();

  void add(int64_t value) {
    min = std::min(min, value);
    max = std::max(max, value);
  }
  void add(const WholeRange& other) {
    min = std::min(min, other.min);
    max = std::max(max, other.max);
  }
  bool is_empty() const { return min > max; }
};

/// Values of a family as whole numbers, as far as they are small ones.
template <class Array>
struct Whole;

// Beyond this nothing fits a table anyway; differences of two cannot overflow.
constexpr int64_t kWholeLimit = int64_t{1} << 40;

template <>
struct Whole<TIntArray> {
  static bool fits(int) { return true; }
  static int64_t number(int value) { return value; }
  static int value(int64_t number) { return static_cast<int>(number); }
};

template <>
struct Whole<TDoubleArray> {
  /// The number for those that fit; any for others, NaN included.
  static int64_t number(double value) {
    constexpr auto kLimit = static_cast<double>(kWholeLimit);
    return static_cast<int64_t>(std::min(std::max(-kLimit, value), kLimit));
  }
  static bool fits(double value) { return static_cast<double>(number(value)) == value; }
  static double value(int64_t number) { return static_cast<double>(number); }
};

template <>
struct Whole<TNumericArray> {
  static int64_t number(const Numeric& value) { return static_cast<int64_t>(value.lo); }
  static bool fits(const Numeric& value) {
    const int64_t low = number(value);
    return value.hi == low >> 63 && low >= -kWholeLimit && low <= kWholeLimit;
  }
  static Numeric value(int64_t number) {
    return {static_cast<unsigned long>(number), number < 0 ? -1L : 0L};
  }
};

template <class Array>
using ValueOf = typename Family<Array>::Value;

/// The range of the values that are not NULL, or nothing when one is no small whole number.
template <class Array>
std::optional<WholeRange> whole_range_of(const ValueOf<Array>* values, Slice rows) {
  constexpr long kStep = 4096;
  WholeRange range;
  for (long begin = rows.begin; begin < rows.end; begin += kStep) {
    bool all_fit = true;
    for (long i = begin; i < std::min(begin + kStep, rows.end); ++i) {
      if (Family<Array>::is_null(values[i])) continue;
      all_fit &= Whole<Array>::fits(values[i]);
      range.add(Whole<Array>::number(values[i]));
    }
    if (!all_fit) return std::nullopt;
  }
  return range;
}

template <class Array>
std::optional<WholeRange> whole_range(const ValueOf<Array>* values, long rows, int workers) {
  std::vector<std::optional<WholeRange>> parts(static_cast<size_t>(workers));
  run_compile_step(workers, [&](int worker) {
    parts[static_cast<size_t>(worker)] =
        whole_range_of<Array>(values, even_slice(rows, workers, worker));
  });
  WholeRange whole;
  for (const auto& part : parts) {
    if (!part.has_value()) return std::nullopt;
    whole.add(*part);
  }
  return whole;
}

/// Numbers the slots that are in use among `slots`; slot 0 always is. `slot_of(i)` is the slot of
/// row i, and row i gets the number of its slot in `numbers`, from which its slot may be read.
/// Returns the slots in use.
template <class SlotOf>
std::vector<int> rank_slots(long slots, long rows, int workers, const SlotOf& slot_of,
                            int* numbers) {
  std::vector<Block<char>> marks(static_cast<size_t>(workers));
  run_compile_step(workers, [&](int worker) {
    Block<char>& own = marks[static_cast<size_t>(worker)];
    own = make_cleared_block<char>(slots);
    const Slice slice = even_slice(rows, workers, worker);
    for (long i = slice.begin; i < slice.end; ++i) own[slot_of(i)] = 1;
  });
  marks[0][0] = 1;
  for (size_t worker = 1; worker < marks.size(); ++worker) {
    for (long slot = 0; slot < slots; ++slot) marks[0][slot] |= marks[worker][slot];
  }
  const Block<int> ranks = make_block<int>(slots);
  std::vector<int> used(static_cast<size_t>(slots));
  int count = 0;
  for (long slot = 0; slot < slots; ++slot) {  // no branch: the marks are not foreseeable
    used[static_cast<size_t>(count)] = static_cast<int>(slot);
    ranks[slot] = count;
    count += marks[0][slot];
  }
  used.resize(static_cast<size_t>(count));
  run_compile_step(workers, [&](int worker) {
    const Slice slice = even_slice(rows, workers, worker);
    for (long i = slice.begin; i < slice.end; ++i) numbers[i] = ranks[slot_of(i)];
  });
  return used;
}

bool table_pays(int64_t slots, long rows) {
  return slots <= std::max(kFewSlots, kSlotsPerRow * rows);
}

/// The value list of small whole numbers, NULL ahead, and their numbers; nothing when the values
/// are none or lie too far apart.
template <class Array>
std::optional<ValueList<Array>> rank_whole(const ValueOf<Array>* values, long rows, int workers,
                                           int* numbers) {
  const std::optional<WholeRange> range = whole_range<Array>(values, rows, workers);
  if (!range.has_value()) return std::nullopt;
  const int64_t first = range->is_empty() ? 0 : range->min;  // in slot 1
  const int64_t slots = range->is_empty() ? 1 : range->max - first + 2;
  if (!table_pays(slots, rows)) return std::nullopt;
  const auto slot_of = [=](long i) {
    const int64_t slot = Whole<Array>::number(values[i]) - first + 1;
    return Family<Array>::is_null(values[i]) ? 0 : slot;
  };
  const std::vector<int> used = rank_slots(slots, rows, workers, slot_of, numbers);
  ValueList<Array> list{make_block<ValueOf<Array>>(static_cast<long>(used.size())),
                        static_cast<int>(used.size())};
  list.values[0] = Family<Array>::null();
  for (int i = 1; i < list.size; ++i) {
    list.values[i] = Whole<Array>::value(used[static_cast<size_t>(i)] - 1 + first);
  }
  return list;
}

template <class Array>
Column column_of_values(const ValueOf<Array>* values, int rows) {
  const int workers = compile_workers(rows, true);
  Block<int> numbers = make_row_numbers(rows);
  numbers[0] = 0;
  auto list = rank_whole<Array>(values, rows, workers, numbers.get() + 1);
  if (!list.has_value()) {
    list = compile_values<Array>(values, rows, numbers.get() + 1, true, workers);
  }
  return {
      std::make_unique<TIntArray>(rows + 1, std::move(numbers)),
      make_value_array(Family<Array>::kDataType, list->size, as_bytes(std::move(list->values)))};
}

/// Takes away what a client may have noted in an attribute block.
void keep_type_alone(TBaseArray& values) {
  const int type = ArrayDataTypeEx(values);
  memset(values.FUserArea, 0, sizeof values.FUserArea);
  SetArrayDataTypeEx(values, type);
  if (type == QX_DT_DECIMAL) {
    auto& decimals = static_cast<TNumericArray&>(values);
    decimals.SetDecimalInfo(decimals.GetDecimalInfo());
  }
}

}  // namespace

Column extracted_values_column(const TBaseArray& list, Block<int> numbers, int rows) {
  const long count = static_cast<long>(rows) + 1;
  const int workers = compile_workers(rows, true);
  numbers[0] = 0;  // NULL comes first whether it is used or not
  std::unique_ptr<TBaseArray> values;
  if (table_pays(list.FArraySize, rows)) {
    int* const own = numbers.get();
    const std::vector<int> used = rank_slots(
        list.FArraySize, count, workers, [own](long i) { return own[i]; }, own);
    values = values_at(list, used.data(), static_cast<int>(used.size()));
  } else {
    const Block<int> old = std::move(numbers);
    numbers = make_row_numbers(rows);
    const auto used = compile_values<TIntArray>(old.get(), count, numbers.get(), false, workers);
    values = values_at(list, used.values.get(), used.size);
  }
  return {std::make_unique<TIntArray>(rows + 1, std::move(numbers)), std::move(values)};
}

Column used_values_column(const TBaseArray& list, Block<int> numbers, int rows) {
  Column column = extracted_values_column(list, std::move(numbers), rows);
  keep_type_alone(*column.vl);
  return column;
}

Column whole_list_column(TBaseArray& list, Block<int> numbers, int rows) {
  numbers[0] = 0;
  return {std::make_unique<TIntArray>(rows + 1, std::move(numbers)),
          std::unique_ptr<TBaseArray>(list.MppCopyArray())};
}

Column int_column(const int* values, int rows) {
  return column_of_values<TIntArray>(values, rows);
}

Column double_column(const double* values, int rows) {
  return column_of_values<TDoubleArray>(values, rows);
}

Column decimal_column(const Numeric* values, int rows, const NumericInfo& info) {
  Column column = column_of_values<TNumericArray>(values, rows);
  static_cast<TNumericArray&>(*column.vl).SetDecimalInfo(info);
  return column;
}

}  // namespace qxe
