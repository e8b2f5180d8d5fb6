#include "joins/combination_numbers.h"

#include <bit>
#include <limits>

#include "search/compiler_steps.h"
#include "search/value_list.h"
#include "tables/row_list.h"

namespace qxe {

int mpp_join_unique(void* block) {
  return run_pool_step(block);
}

namespace {

/// Calls `body(position)` for all positions of a set, shared out among the workers.
template <class Body>
void for_positions(int count, const Body& body) {
  const int workers = compile_workers(count, true);
  run_step(QX_MPP_JOIN_UNIQUE, workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    for (long i = slice.begin; i < slice.end; ++i) body(static_cast<int>(i));
  });
}

void add_numbers(const TSetArray& set, const NumberedColumn& column, uint64_t size,
                 uint64_t* keys) {
  const RowList rows(set);
  const int* const pv = column.pv.PIntAr();
  const int* const map = column.map;
  for_positions(set.FArraySize, [=](int i) {
    const int value = pv[rows[i]];
    keys[i] = keys[i] * size + static_cast<uint64_t>(map == nullptr ? value : map[value]);
  });
}

}  // namespace

CombinationNumbers::CombinationNumbers(const TSetArray& rows0, const TSetArray& rows1)
    : sides_{{rows0, make_cleared_block<uint64_t>(rows0.FArraySize)},
             {rows1, make_cleared_block<uint64_t>(rows1.FArraySize)}} {}

void CombinationNumbers::add(NumberedColumn column0, NumberedColumn column1, int size) {
  constexpr uint64_t kMostKeys = uint64_t{1} << 63;
  const auto numbers = static_cast<uint64_t>(size);
  if (limit_ > kMostKeys / numbers) make_dense();  // leaves as many as there are positions at most
  add_numbers(sides_[0].rows, column0, numbers, sides_[0].keys.get());
  add_numbers(sides_[1].rows, column1, numbers, sides_[1].keys.get());
  limit_ *= numbers;
}

int CombinationNumbers::number_rows(TIntArray& pv0, TIntArray& pv1) {
  if (positions() == 0) return 0;
  make_dense();
  TIntArray* const out[] = {&pv0, &pv1};
  for (int side = 0; side < 2; ++side) {
    const RowList rows(sides_[side].rows);
    const uint64_t* const keys = sides_[side].keys.get();
    int* const numbers = out[side]->PIntAr();
    for_positions(rows.count, [=](int i) {  // a row that the set has twice is written twice
      __atomic_store_n(numbers + rows[i], static_cast<int>(keys[i]) + 1, __ATOMIC_RELAXED);
    });
  }
  return static_cast<int>(limit_);
}

void CombinationNumbers::make_dense() {
  constexpr uint64_t kExactDoubles = uint64_t{1} << 53;
  constexpr uint64_t kAlwaysBits = 1 << 20;
  if (positions() == 0) return;
  // A bit for each possible combination, if that takes no more memory than the keys.
  if (limit_ <= kAlwaysBits + 64 * static_cast<uint64_t>(positions())) return rank_by_bits();
  if (limit_ <= kExactDoubles) return rank_by_sorting<TDoubleArray>();
  rank_by_sorting<TNumericArray>();
}

namespace {

/// Bits of the keys that occur.
class KeyBits {
 public:
  explicit KeyBits(uint64_t limit)
      : words_(static_cast<long>(limit / 64 + 1)), bits_(make_cleared_block<uint64_t>(words_)) {}

  void add(const uint64_t* keys, int count) {
    // Each worker has bits of its own, so they should be few beside its keys.
    const int workers = std::min(compile_workers(count, true),
                                 static_cast<int>(std::max(long{count} / words_, 1L)));
    const Block<uint64_t> others = make_cleared_block<uint64_t>((workers - 1) * words_);
    const auto bits_of = [&](int worker) {
      return worker == 0 ? bits_.get() : others.get() + (worker - 1) * words_;
    };
    run_step(QX_MPP_JOIN_UNIQUE, workers, [&](int worker) {
      uint64_t* const bits = bits_of(worker);
      const Slice slice = even_slice(count, workers, worker);
      for (long i = slice.begin; i < slice.end; ++i) bits[keys[i] / 64] |= bit(keys[i]);
    });
    for (int worker = 1; worker < workers; ++worker) {
      const uint64_t* const bits = bits_of(worker);
      for (long word = 0; word < words_; ++word) bits_[word] |= bits[word];
    }
  }

  /// Counts the keys; from then on rank() tells how many are below one.
  int count_keys() {
    before_ = make_block<int>(words_);
    int count = 0;
    for (long word = 0; word < words_; ++word) {
      before_[word] = count;
      count += std::popcount(bits_[word]);
    }
    return count;
  }
  uint64_t rank(uint64_t key) const {
    const uint64_t below = bits_[key / 64] & (bit(key) - 1);
    return static_cast<uint64_t>(before_[key / 64] + std::popcount(below));
  }

 private:
  static uint64_t bit(uint64_t key) { return uint64_t{1} << (key % 64); }

  long words_;
  Block<uint64_t> bits_;
  Block<int> before_;
};

}  // namespace

void CombinationNumbers::rank_by_bits() {
  KeyBits seen(limit_);
  for (const Side& side : sides_) seen.add(side.keys.get(), side.rows.FArraySize);
  limit_ = static_cast<uint64_t>(seen.count_keys());
  for (const Side& side : sides_) {
    uint64_t* const keys = side.keys.get();
    for_positions(side.rows.FArraySize, [&](int i) { keys[i] = seen.rank(keys[i]); });
  }
}

namespace {

void put_key(uint64_t key, double* out) {
  *out = static_cast<double>(key);
}
void put_key(uint64_t key, Numeric* out) {
  *out = {key, 0};
}

}  // namespace

/// The keys are compiled like a column, as values that can hold them exactly.
template <class Array>
void CombinationNumbers::rank_by_sorting() {
  using Value = typename Family<Array>::Value;
  Block<Value> values[2];
  Block<int> numbers[2];
  std::vector<ValueSource<Array>> sources;
  for (size_t i = 0; i < 2; ++i) {
    const int count = sides_[i].rows.FArraySize;
    values[i] = make_block<Value>(count);
    numbers[i] = make_block<int>(count);
    const uint64_t* const keys = sides_[i].keys.get();
    Value* const out = values[i].get();
    for_positions(count, [=](int position) { put_key(keys[position], out + position); });
    if (count > 0) sources.push_back({values[i].get(), count, numbers[i].get()});
  }
  const int workers = compile_workers(positions(), true);
  limit_ = static_cast<uint64_t>(sort_distinct<Array>(sources, workers).size);
  for (size_t i = 0; i < 2; ++i) {
    uint64_t* const keys = sides_[i].keys.get();
    const int* const ranks = numbers[i].get();
    for_positions(sides_[i].rows.FArraySize,
                  [=](int position) { keys[position] = static_cast<uint64_t>(ranks[position]); });
  }
}

}  // namespace qxe
