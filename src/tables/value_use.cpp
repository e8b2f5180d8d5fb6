#include "tables/value_use.h"

#include <string.h>

#include "storage/family.h"

namespace qxe {

ValueUse::ValueUse(int values) : size_(values), marks_(make_cleared_block<char>(values)) {
  marks_[0] = 1;
}

void ValueUse::mark(const int* numbers, int count) {
  char* const marks = marks_.get();
  for (int i = 0; i < count; ++i) marks[numbers[i]] = 1;
}

bool ValueUse::all_used() {
  const void* const unused =
      memchr(marks_.get() + first_unused_, 0, static_cast<size_t>(size_ - first_unused_));
  first_unused_ =
      unused == nullptr ? size_ : static_cast<int>(static_cast<const char*>(unused) - marks_.get());
  return unused == nullptr;
}

UsedValues ValueUse::used_values(const TBaseArray& list) const {
  Block<int> used = make_block<int>(size_);
  Block<int> numbers = make_block<int>(size_);
  int count = 0;
  for (int i = 0; i < size_; ++i) {  // no branch: which values are used is not foreseeable
    used[count] = i;
    numbers[i] = count;
    count += marks_[i];
  }
  return {values_at(list, used.get(), count), std::move(numbers)};
}

namespace {

template <class Array>
std::unique_ptr<TBaseArray> fixed_values_at(const Array& list, const int* numbers, int count) {
  using Value = typename Family<Array>::Value;
  Block<Value> values = make_block<Value>(count);
  const Value* const old = list.values();
  for (int i = 0; i < count; ++i) values[i] = old[numbers[i]];
  return std::make_unique<Array>(count, std::move(values));
}

std::unique_ptr<TBaseArray> texts_at(const TStrArray& list, const int* numbers, int count) {
  const auto texts = view_of(list);
  Block<long> offsets = make_block<long>(static_cast<long>(count) + 1);
  offsets[0] = 0;
  for (int i = 0; i < count; ++i) {
    offsets[i + 1] = offsets[i] + static_cast<long>(strlen(texts[numbers[i]])) + 1;
  }
  const long bytes = offsets[count];
  Block<char> pool = make_block<char>(bytes);
  for (int i = 0; i < count; ++i) {
    memcpy(pool.get() + offsets[i], texts[numbers[i]],
           static_cast<size_t>(offsets[i + 1] - offsets[i]));
  }
  return std::make_unique<TStrArray>(count, std::move(offsets), std::move(pool), bytes);
}

}  // namespace

std::unique_ptr<TBaseArray> values_at(const TBaseArray& list, const int* numbers, int count) {
  auto values = with_family(list, [&]<class Array>(const Array& own) {
    if constexpr (std::is_same_v<Array, TStrArray>) {
      return texts_at(own, numbers, count);
    } else {
      return fixed_values_at(own, numbers, count);
    }
  });
  copy_type_info(list, *values);
  return values;
}

std::unique_ptr<TBaseArray> copied_values(TBaseArray& list) {
  std::unique_ptr<TBaseArray> copy(list.CopyArray());
  copy_type_info(list, *copy);
  return copy;
}

}  // namespace qxe
