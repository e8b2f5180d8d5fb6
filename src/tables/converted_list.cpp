#include "tables/converted_list.h"

#include <algorithm>
#include <utility>

#include "calc/type_conversion.h"
#include "search/compiler_steps.h"
#include "search/compiler_values.h"
#include "storage/family.h"

namespace qxe {

namespace {

// A conversion costs about as much as a pass over so many rows.
constexpr long kRowsPerConversion = 16;

int conversion_workers(long values, bool mpp) {
  return compile_workers(values * kRowsPerConversion, mpp);
}

/// Most conversions between numbers keep the order; then equal values are neighbours.
template <class Array>
bool is_ascending(const typename Family<Array>::Value* values, int count) {
  if constexpr (std::is_same_v<Array, TDoubleArray>) {
    for (int i = 1; i < count; ++i) {
      if (!(values[i - 1] <= values[i])) return false;  // nor when one of them is a NaN
    }
  } else {
    for (int i = 1; i < count; ++i) {
      if (Family<Array>::compare(values[i - 1], values[i]) > 0) return false;
    }
  }
  return true;
}

template <class Array>
ValueList<Array> distinct_of_ascending(Block<typename Family<Array>::Value> values, int count,
                                       int* numbers) {
  int last = 0;
  numbers[0] = 0;
  for (int i = 1; i < count; ++i) {
    const auto value = Family<Array>::normalized(values[i]);
    if (!Family<Array>::equal(values[last], value)) values[++last] = value;
    numbers[i] = last;
  }
  if (last + 1 == count) return {std::move(values), count};
  auto exact = make_block<typename Family<Array>::Value>(last + 1);
  std::copy_n(values.get(), last + 1, exact.get());
  return {std::move(exact), last + 1};
}

template <class Array>
ValueList<Array> compile_converted(Block<typename Family<Array>::Value> values, int count,
                                   int* numbers, bool mpp) {
  if constexpr (!std::is_same_v<Array, TStrArray>) {
    if (is_ascending<Array>(values.get(), count)) {
      return distinct_of_ascending<Array>(std::move(values), count, numbers);
    }
  }
  return compile_values<Array>(values.get(), count, numbers, false, compile_workers(count, mpp));
}

}  // namespace

ConvertedList convert_list(const TBaseArray& list, int type, const NumericInfo& info, bool mpp) {
  return with_family_of(type, [&]<class Array>(std::type_identity<Array>) {
    using Value = typename Family<Array>::Value;
    const int count = list.FArraySize;
    const int slot = std::is_same_v<Array, TStrArray> ? conversion_text_slot(list) : 0;
    Block<Value> values = make_block<Value>(count);
    const Block<char> texts = make_block<char>(static_cast<long>(count) * slot);
    DoTypeConv(list, type, {values.get(), texts.get(), slot, info}, conversion_workers(count, mpp));

    ConvertedList result{nullptr, make_block<int>(count), false};
    auto compiled = compile_converted<Array>(std::move(values), count, result.numbers.get(), mpp);
    result.same_numbers = compiled.size == count &&
                          std::is_sorted(result.numbers.get(), result.numbers.get() + count);
    const auto make_values = mpp ? mpp_make_value_array : make_value_array;
    result.list = make_values(type, compiled.size, as_bytes(std::move(compiled.values)));
    if (type == QX_DT_DECIMAL) static_cast<TNumericArray&>(*result.list).SetDecimalInfo(info);
    return result;
  });
}

std::unique_ptr<TIntArray> converted_rows(TIntArray& rows, const ConvertedList& converted) {
  if (converted.same_numbers) return std::unique_ptr<TIntArray>(rows.MppCopyArray());
  const int count = rows.FArraySize;
  auto result = std::make_unique<TIntArray>(count, false);
  const int* const old = std::as_const(rows).PIntAr();
  int* const numbers = result->PIntAr();
  const int workers = compile_workers(count, true);
  run_step(QX_MPP_TYPECONV, workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    for (long i = slice.begin; i < slice.end; ++i) numbers[i] = converted.numbers[old[i]];
  });
  memcpy(result->FUserArea, rows.FUserArea, sizeof result->FUserArea);
  return result;
}

}  // namespace qxe
