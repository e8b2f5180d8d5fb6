#include "search/compiler_int.h"

#include <algorithm>
#include <vector>

#include "frame/base/bits.h"
#include "search/compiler_steps.h"

namespace qxe {

namespace {

constexpr long kMaxSpan = 0x7FFFFFFF;
constexpr long kBits = 64;

/// Slots of values in ascending order: NULL, when there is one, takes slot 0.
struct Addressing {
  uint32_t min;
  uint32_t first;  // slot of `min`

  uint32_t slot(int value) const {
    return value == QX_NULL_INT ? 0 : static_cast<uint32_t>(value) - min + first;
  }
  int value(uint32_t slot) const {
    return slot < first ? QX_NULL_INT : static_cast<int>(slot - first + min);
  }
};

/// A bit for each slot that occurs, and for each word the number of bits before it.
struct SlotMap {
  Block<uint64_t> bits;
  Block<int> before;
  long words;
  int total;

  int number(uint32_t slot) const {
    const uint64_t below = (uint64_t{1} << (slot % kBits)) - 1;
    return before[slot / kBits] + bit_count(bits[slot / kBits] & below);
  }
};

void mark_slots(const int* data, Slice rows, const Addressing& addressing, uint64_t* bits) {
  for (long i = rows.begin; i < rows.end; ++i) {
    const uint32_t slot = addressing.slot(data[i]);
    const uint64_t bit = uint64_t{1} << (slot % kBits);
    if ((bits[slot / kBits] & bit) == 0) bits[slot / kBits] |= bit;
  }
}

SlotMap map_slots(const int* data, long count, const Addressing& addressing, long span,
                  int workers) {
  const long words = (span + kBits - 1) / kBits;
  std::vector<Block<uint64_t>> marked(static_cast<size_t>(workers));
  run_compile_step(workers, [&](int worker) {
    auto& bits = marked[static_cast<size_t>(worker)];
    bits = make_cleared_block<uint64_t>(words);
    mark_slots(data, even_slice(count, workers, worker), addressing, bits.get());
  });
  SlotMap map{std::move(marked[0]), make_block<int>(words), words, 0};
  if (addressing.first > 0) map.bits[0] |= 1;
  for (long word = 0; word < words; ++word) {
    for (size_t i = 1; i < marked.size(); ++i) map.bits[word] |= marked[i][word];
    map.before[word] = map.total;
    map.total += bit_count(map.bits[word]);
  }
  return map;
}

}  // namespace

bool addressable(long count, const _RawIntArrayRangeInfo& range) {
  const long present = count - range.nulls;
  const long span = address_span(range);
  return present >= 1 && present * 8 + 1000 > span && span <= kMaxSpan;
}

_RawIntArrayRangeInfo int_range(const int* data, long count, int workers) {
  std::vector<_RawIntArrayRangeInfo> parts(static_cast<size_t>(workers));
  run_compile_step(workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    parts[static_cast<size_t>(worker)] =
        GetIntRange(static_cast<int>(slice.size()), data + slice.begin);
  });
  _RawIntArrayRangeInfo whole;
  for (const auto& part : parts) {
    whole.nulls += part.nulls;
    whole.min = std::min(whole.min, part.min);
    whole.max = std::max(whole.max, part.max);
  }
  return whole;
}

ValueList<TIntArray> compile_by_address(const int* data, long count, int* numbers,
                                        const _RawIntArrayRangeInfo& range, bool null_ahead,
                                        int workers) {
  const Addressing addressing{static_cast<uint32_t>(range.min),
                              range.nulls > 0 || null_ahead ? 1u : 0u};
  const SlotMap map = map_slots(data, count, addressing, address_span(range), workers);
  run_compile_step(workers, [&](int worker) {
    const Slice rows = even_slice(count, workers, worker);
    for (long i = rows.begin; i < rows.end; ++i) {
      numbers[i] = map.number(addressing.slot(data[i]));
    }
  });
  ValueList<TIntArray> list{make_block<int>(map.total), map.total};
  int* next = list.values.get();
  for (long word = 0; word < map.words; ++word) {
    for (uint64_t rest = map.bits[word]; rest != 0; rest &= rest - 1) {
      *next++ = addressing.value(static_cast<uint32_t>(word * kBits + std::countr_zero(rest)));
    }
  }
  return list;
}

}  // namespace qxe
