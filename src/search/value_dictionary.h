// A hash dictionary that grows while values come in: each distinct value has a code, dense from 0
// in the order of first appearance.
#pragma once

#include <string_view>

#include "search/value_list.h"

namespace qxe {

/// A place in the table of a dictionary. Numbers stand in their slot; of other values the slot has
/// hash bits, so that nearly every look at the value itself is a hit.
template <class Array>
struct DictionarySlot {
  uint32_t tag;
  uint32_t used;  // code + 1, 0 for an empty slot
};
template <>
struct DictionarySlot<TIntArray> {
  int value;
  uint32_t used;
};
template <>
struct DictionarySlot<TDoubleArray> {
  double value;
  uint32_t used;
};

template <class Array>
class ValueDictionary : NonCopyable {
 public:
  using Value = typename Family<Array>::Value;

  ValueDictionary() : slots_(make_cleared_block<Slot>(kFirstSlots)) {}

  int size() const { return size_; }
  /// The values by code. Moves when the dictionary grows.
  const Value* values() const { return values_.get(); }
  ValueSource<Array> source(int* numbers) const { return {values(), size(), numbers}; }

  /// Code of `value`, which is normalized and, if a text, outlives the dictionary.
  int code_of(Value value) {
    return find_or_add(tag_of(value), value, [&] { return value; });
  }

  /// Code of a text that need not be terminated or stay; no zero byte stands in it. For a new one
  /// `store()` gives the terminated copy to keep. `tag` is tag_of(text).
  template <class Store>
  int code_of(uint32_t tag, std::string_view text, Store&& store) {
    return find_or_add(tag, text, store);
  }

  /// Codes of `count` raw values, the memory's latency overlapped.
  void codes_of(const Value* raw, long count, int* codes) {
    for (long begin = 0; begin < count; begin += kBatch) {
      const long size = std::min(kBatch, count - begin);
      if constexpr (std::is_same_v<Array, TStrArray>) {
        const long next = std::min(kBatch, count - begin - size);
        for (long i = 0; i < next; ++i) __builtin_prefetch(raw[begin + size + i]);
      }
      code_batch(raw + begin, size, codes + begin);
    }
  }

  static uint32_t tag_of(const Value& value) {
    return static_cast<uint32_t>(Family<Array>::hash(value));
  }
  static uint32_t tag_of(std::string_view text) requires std::is_same_v<Array, TStrArray> {
    return static_cast<uint32_t>(Family<Array>::hash(text.data(), text.size()));
  }
  // Both prefetches are always inline: the compiler drops calls of a function that does nothing
  // else.
  /// Starts loading the slot that code_of will look at.
  [[gnu::always_inline]] void prefetch(uint32_t tag) const {
    __builtin_prefetch(&slots_[tag & mask_]);
  }

 private:
  using Slot = DictionarySlot<Array>;
  static constexpr bool kValueInSlot = requires(Slot slot) { slot.value; };
  static constexpr size_t kFirstSlots = 1024;
  static constexpr long kBatch = 32;

  static bool matches(const Value& stored, const Value& value) {
    return Family<Array>::equal(stored, value);
  }
  static bool matches(const char* stored,
                      std::string_view text) requires std::is_same_v<Array, TStrArray> {
    return strncmp(stored, text.data(), text.size()) == 0 && stored[text.size()] == '\0';
  }

  template <class Wanted>
  bool holds(const Slot& slot, uint32_t tag, const Wanted& wanted) const {
    if constexpr (kValueInSlot) {
      return slot.value == wanted;
    } else {
      return slot.tag == tag && matches(values_[slot.used - 1], wanted);
    }
  }

  template <class Wanted, class Store>
  int find_or_add(uint32_t tag, const Wanted& wanted, Store&& store) {
    size_t place = tag & mask_;
    for (; slots_[place].used != 0; place = (place + 1) & mask_) {
      if (holds(slots_[place], tag, wanted)) return static_cast<int>(slots_[place].used) - 1;
    }
    return add(tag, place, store());
  }

  int add(uint32_t tag, size_t place, const Value& value) {
    if (size_ == capacity_) {
      grow();
      place = empty_place(tag);
    }
    values_[size_] = value;
    ++size_;
    if constexpr (kValueInSlot) {
      slots_[place] = {value, static_cast<uint32_t>(size_)};
    } else {
      slots_[place] = {tag, static_cast<uint32_t>(size_)};
    }
    return size_ - 1;
  }

  size_t empty_place(uint32_t tag) const {
    size_t place = tag & mask_;
    while (slots_[place].used != 0) place = (place + 1) & mask_;
    return place;
  }

  /// Doubles the table, which is kept half empty at least; the first values make room for
  /// themselves only.
  void grow() {
    const size_t old_slots = values_ == nullptr ? 0 : mask_ + 1;
    const size_t new_slots = values_ == nullptr ? kFirstSlots : 2 * old_slots;
    Block<Value> values = make_block<Value>(static_cast<long>(new_slots / 2));
    if (size_ > 0) memcpy(values.get(), values_.get(), sizeof(Value) * static_cast<size_t>(size_));
    if (old_slots > 0) {
      Block<Slot> old =
          std::exchange(slots_, make_cleared_block<Slot>(static_cast<long>(new_slots)));
      mask_ = new_slots - 1;
      for (size_t i = 0; i < old_slots; ++i) {
        if (old[i].used != 0) slots_[empty_place(tag_in(old[i]))] = old[i];
      }
    }
    values_ = std::move(values);
    capacity_ = static_cast<long>(new_slots / 2);
  }

  static uint32_t tag_in(const Slot& slot) {
    if constexpr (kValueInSlot) {
      return tag_of(slot.value);
    } else {
      return slot.tag;
    }
  }

  void code_batch(const Value* raw, long count, int* codes) {
    Value values[kBatch];
    uint32_t tags[kBatch];
    for (long i = 0; i < count; ++i) {
      values[i] = Family<Array>::normalized(raw[i]);
      tags[i] = tag_of(values[i]);
      prefetch(tags[i]);
    }
    if constexpr (!kValueInSlot) prefetch_matches(tags, count);
    for (long i = 0; i < count; ++i) {
      codes[i] = find_or_add(tags[i], values[i], [&] { return values[i]; });
    }
  }

  /// Starts loading the stored values that are likely to be compared.
  [[gnu::always_inline]] void prefetch_matches(const uint32_t* tags, long count) const {
    const Value* likely[kBatch];
    for (long i = 0; i < count; ++i) {
      const Slot& slot = slots_[tags[i] & mask_];
      likely[i] = slot.used != 0 && slot.tag == tags[i] ? &values_[slot.used - 1] : nullptr;
      __builtin_prefetch(likely[i]);
    }
    if constexpr (std::is_same_v<Array, TStrArray>) {
      for (long i = 0; i < count; ++i) {
        if (likely[i] != nullptr) __builtin_prefetch(*likely[i]);
      }
    }
  }

  Block<Slot> slots_;
  size_t mask_ = kFirstSlots - 1;
  Block<Value> values_;
  int size_ = 0;
  long capacity_ = 0;
};

}  // namespace qxe
