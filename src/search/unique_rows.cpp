#include "search/unique_rows.h"

#include <algorithm>
#include <optional>

#include "search/compiler_steps.h"
#include "search/row_parts.h"
#include "search/scan_kernels.h"
#include "storage/family.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

/// A column as numbers by row, all below `size`.
struct NumberColumn {
  const int* numbers;
  uint64_t size;
};

/// Combinations must be below this to be counted in 64 bits.
constexpr uint64_t kMaxCombinations = uint64_t{1} << 63;

/// How many combinations `count` columns can have, or kMaxCombinations when there are more.
uint64_t combinations(const NumberColumn* columns, size_t count) {
  uint64_t product = 1;
  for (size_t i = 0; i < count; ++i) {
    if (product > (kMaxCombinations - 1) / columns[i].size) return kMaxCombinations;
    product *= columns[i].size;
  }
  return product;
}

/// The rows of a set and the number of each row's combination.
struct KeyedRows {
  const int* rows;  // null: row i + 1 is at position i
  int size;
  std::vector<NumberColumn> columns;

  static constexpr int kBatch = 256;

  /// Positions `begin` on, at most kBatch: their rows and keys. Returns how many.
  template <class Key>
  int read(long begin, long end, int* out_rows, Key* keys) const {
    const int count = static_cast<int>(std::min<long>(end - begin, kBatch));
    if (rows != nullptr) {
      std::copy_n(rows + begin, count, out_rows);
      read_keys(out_rows, count, keys);
      return count;
    }
    for (int i = 0; i < count; ++i) out_rows[i] = static_cast<int>(begin) + i + 1;
    combine(count, keys, [&](const int* numbers, int i) { return numbers[begin + 1 + i]; });
    return count;
  }

  template <class Key>
  void read_keys(const int* batch, int count, Key* keys) const {
    combine(count, keys, [&](const int* numbers, int i) { return numbers[batch[i]]; });
  }

 private:
  /// `number(numbers of a column, i)` is the number of element i of the batch.
  template <class Key, class Number>
  void combine(int count, Key* keys, const Number& number) const {
    for (int i = 0; i < count; ++i) keys[i] = static_cast<Key>(number(columns[0].numbers, i));
    for (size_t c = 1; c < columns.size(); ++c) {
      const NumberColumn column = columns[c];
      for (int i = 0; i < count; ++i) {
        keys[i] =
            keys[i] * static_cast<Key>(column.size) + static_cast<Key>(number(column.numbers, i));
      }
    }
  }
};

/// Keys seen so far, one bit for each that can be: 0 once it is seen.
class SeenBits {
 public:
  using Key = uint32_t;

  explicit SeenBits(uint64_t keys)
      : unseen_(make_block<uint32_t>(static_cast<long>(keys / 32 + 1))) {
    std::fill_n(unseen_.get(), keys / 32 + 1, ~uint32_t{0});
  }

  /// Adds the keys and copies the rows of the new ones; returns how many.
  int add(const Key* keys, const int* rows, int count, int* out) {
    return add_each(rows, count, out, [&](int i) { return keys[i]; });
  }
  /// The same for rows that have their keys in a column.
  int add_rows(const int* numbers, const int* rows, int count, int* out) {
    return add_each(rows, count, out, [&](int i) { return static_cast<Key>(numbers[rows[i]]); });
  }

  bool contains(Key key) const { return (unseen_[key / 32] >> (key % 32) & 1) == 0; }
  BitTest unseen() const { return {unseen_.get()}; }

  /// The lowest key that was not added.
  int first_missing() const {
    int word = 0;
    while (unseen_[word] == 0) ++word;
    return word * 32 + __builtin_ctz(unseen_[word]);
  }

 private:
  template <class KeyOf>
  int add_each(const int* rows, int count, int* out, const KeyOf& key_of) {
    int* next = out;
    for (int i = 0; i < count; ++i) {  // no branch: whether a key is new is not foreseeable
      const Key key = key_of(i);
      const uint32_t unseen = unseen_[key / 32];
      *next = rows[i];
      next += unseen >> (key % 32) & 1;
      unseen_[key / 32] = unseen & ~(uint32_t{1} << (key % 32));
    }
    return static_cast<int>(next - out);
  }

  Block<uint32_t> unseen_;  // the last one has a bit that is no key's
};

/// Keys seen so far, numbered in the order of their first use: a hash table with linear probing,
/// never more than half full.
class SeenKeys {
 public:
  using Key = uint64_t;

  explicit SeenKeys(uint64_t) { allocate(1024); }

  int add(const Key* keys, const int* rows, int count, int* out) {
    int* next = out;
    for (int i = 0; i < count; ++i) __builtin_prefetch(&slots_[place_of(keys[i])]);
    for (int i = 0; i < count; ++i) {
      const int before = size_;
      number_of(keys[i]);
      *next = rows[i];
      next += size_ - before;
    }
    return static_cast<int>(next - out);
  }

  bool contains(Key key) const { return slots_[find(key)].number >= 0; }

  int number_of(Key key) {
    Slot& slot = slots_[find(key)];
    if (slot.number >= 0) return slot.number;
    slot = {key, size_};
    if (++size_ > static_cast<long>(mask_ / 2)) grow();
    return size_ - 1;
  }

  int size() const { return size_; }

 private:
  struct Slot {
    Key key;
    int number;  // below 0: free
  };

  size_t place_of(Key key) const { return mix_bits(key) & mask_; }

  size_t find(Key key) const {
    size_t place = place_of(key);
    while (slots_[place].number >= 0 && slots_[place].key != key) place = (place + 1) & mask_;
    return place;
  }

  void allocate(size_t slots) {
    slots_ = make_block<Slot>(static_cast<long>(slots));
    std::fill_n(slots_.get(), slots, Slot{0, -1});
    mask_ = slots - 1;
  }

  void grow() {
    const Block<Slot> old = std::move(slots_);
    const size_t slots = mask_ + 1;
    allocate(slots * 2);
    for (size_t i = 0; i < slots; ++i) {
      if (old[i].number >= 0) slots_[find(old[i].key)] = old[i];
    }
  }

  Block<Slot> slots_;
  size_t mask_ = 0;
  int size_ = 0;
};

/// Each worker keeps the first rows of its slice; then those that an earlier slice has go.
template <class Seen>
class FirstRows {
 public:
  FirstRows(const KeyedRows& source, uint64_t keys, int* room)
      : source_(source),
        keys_(keys),
        room_(room),
        slices_(
            static_cast<size_t>(ENG->n_threads_for_elements(source.size, ENG->rows_per_worker()))) {
  }

  std::vector<RowPart> parts() {
    const int workers = static_cast<int>(slices_.size());
    run_step(QX_MPP_EXTRACT_UNIQUE, workers, [&](int worker) {
      collect(even_slice(source_.size, workers, worker), slices_[static_cast<size_t>(worker)]);
    });
    if (workers > 1) {
      run_step(QX_MPP_EXTRACT_UNIQUE, workers,
               [&](int worker) { drop_repeated(static_cast<size_t>(worker)); });
    }
    std::vector<RowPart> parts;
    for (const SliceRows& slice : slices_) parts.push_back({slice.rows, slice.kept});
    return parts;
  }

 private:
  using Key = typename Seen::Key;

  struct SliceRows {
    std::optional<Seen> seen;
    int* rows = nullptr;
    int kept = 0;
  };

  void collect(Slice slice, SliceRows& own) const {
    own.seen.emplace(keys_);
    own.rows = room_ + slice.begin;
    if constexpr (std::is_same_v<Seen, SeenBits>) {
      if (source_.columns.size() == 1) return collect_values(slice, own);
    }
    int rows[KeyedRows::kBatch];
    Key keys[KeyedRows::kBatch];
    for (long begin = slice.begin; begin < slice.end; begin += KeyedRows::kBatch) {
      const int count = source_.read(begin, slice.end, rows, keys);
      own.kept += own.seen->add(keys, rows, count, own.rows + own.kept);
    }
  }

  /// Of one column: the rows of values not seen before a step are found first, many at a time.
  void collect_values(Slice slice, SliceRows& own) const {
    constexpr int kStep = 2048;
    const ScanRows rows{source_.columns[0].numbers, source_.rows};
    int unseen[kStep];
    for (long begin = slice.begin; begin < slice.end; begin += kStep) {
      if (static_cast<uint64_t>(own.kept) + 1 >= keys_) return find_last({begin, slice.end}, own);
      const long count = scan_kernels().in_bits(rows, begin, std::min(begin + kStep, slice.end),
                                                own.seen->unseen(), unseen);
      own.kept += own.seen->add_rows(rows.pv, unseen, static_cast<int>(count),
                                     own.rows + own.kept);
    }
  }

  /// All values but one were found, as in most columns without NULL: that one is searched for.
  void find_last(Slice slice, SliceRows& own) const {
    constexpr long kStep = 65536;
    const int last = own.seen->first_missing();
    if (static_cast<uint64_t>(last) >= keys_) return;
    const ScanRows rows{source_.columns[0].numbers, source_.rows};
    const RangeTest is_last{{last, last + 1}, {}};
    for (long begin = slice.begin; begin < slice.end; begin += kStep) {
      const long end = std::min(begin + kStep, slice.end);
      if (scan_kernels().in_ranges(rows, begin, end, is_last, own.rows + own.kept) == 0) continue;
      const uint32_t key[] = {static_cast<uint32_t>(last)};
      own.kept += own.seen->add(key, own.rows + own.kept, 1, own.rows + own.kept);
      return;
    }
  }

  bool is_repeated(Key key, size_t worker) const {
    return std::any_of(slices_.begin(), slices_.begin() + static_cast<long>(worker),
                       [&](const SliceRows& earlier) { return earlier.seen->contains(key); });
  }

  void drop_repeated(size_t worker) {
    SliceRows& own = slices_[worker];
    Key keys[KeyedRows::kBatch];
    int kept = 0;
    for (int begin = 0; begin < own.kept; begin += KeyedRows::kBatch) {
      const int count = std::min(own.kept - begin, KeyedRows::kBatch);
      source_.read_keys(own.rows + begin, count, keys);
      for (int i = 0; i < count; ++i) {
        if (!is_repeated(keys[i], worker)) own.rows[kept++] = own.rows[begin + i];
      }
    }
    own.kept = kept;
  }

  const KeyedRows& source_;
  uint64_t keys_;  // that there can be
  int* room_;
  std::vector<SliceRows> slices_;
};

/// Replaces the first columns, as many as 64 bits hold, by one that numbers their combinations in
/// the rows of the set. `numbers` becomes its block.
void number_first_columns(KeyedRows& source, long total_rows, Block<int>& numbers) {
  size_t first = 1;
  while (combinations(source.columns.data(), first + 1) < kMaxCombinations) ++first;
  KeyedRows head{source.rows,
                 source.size,
                 {source.columns.begin(), source.columns.begin() + static_cast<long>(first)}};
  Block<int> numbered = make_block<int>(total_rows + 1);
  SeenKeys seen(0);
  int rows[KeyedRows::kBatch];
  uint64_t keys[KeyedRows::kBatch];
  for (long begin = 0; begin < source.size; begin += KeyedRows::kBatch) {
    const int count = head.read(begin, source.size, rows, keys);
    for (int i = 0; i < count; ++i) numbered[rows[i]] = seen.number_of(keys[i]);
  }
  numbers = std::move(numbered);
  source.columns.erase(source.columns.begin() + 1,
                       source.columns.begin() + static_cast<long>(first));
  source.columns[0] = {numbers.get(), static_cast<uint64_t>(std::max(seen.size(), 1))};
}

/// Whether a bit for every combination costs less than a hash table of the rows' own.
bool fits_bits(uint64_t keys, int rows) {
  constexpr uint64_t kAlways = 1 << 20;
  return keys <= std::min(kAlways + 16 * static_cast<uint64_t>(rows), uint64_t{UINT32_MAX});
}

}  // namespace

int mpp_extract_unique(void* block) {
  return run_pool_step(block);
}

std::unique_ptr<TSetArray> unique_rows(const TSetArray& source,
                                       const std::vector<const TFilter*>& columns) {
  KeyedRows rows{source.is_counted_up() ? nullptr : source.PIntAr(), source.FArraySize, {}};
  for (const TFilter* column : columns) {
    rows.columns.push_back({column->PVL->PIntAr(), static_cast<uint64_t>(column->VL->FArraySize)});
  }
  Block<int> numbers;
  while (combinations(rows.columns.data(), rows.columns.size()) == kMaxCombinations) {
    number_first_columns(rows, columns[0]->PVL->FArraySize, numbers);
  }
  const uint64_t keys = combinations(rows.columns.data(), rows.columns.size());
  auto room = set_like(source);
  const std::vector<RowPart> parts = fits_bits(keys, rows.size)
                                         ? FirstRows<SeenBits>(rows, keys, room->PIntAr()).parts()
                                         : FirstRows<SeenKeys>(rows, keys, room->PIntAr()).parts();
  return packed_parts(std::move(room), parts);
}

int TRealTable::MppExtractUniqueReal(int set, const int* filters) {
  constexpr char kLayer[] = "ExtractUniqueReal";
  std::vector<const TFilter*> columns;
  for (; *filters >= 1; ++filters) {
    if (static_cast<int>(columns.size()) == QX_MAX_SORT_KEYS) {
      columns.clear();
      break;
    }
    const int position = FilterID2Pos(*filters);
    if (position < 0) {
      return report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", *filters);
    }
    columns.push_back(filter_at(position));
  }
  if (columns.empty()) {
    return report(kLayer, QX_ERROR_UNIQUE_FILTERS, "No Filter or FilterCount Overflow");
  }
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) return report(kLayer, QX_ERROR_NO_SET, "No Such Set: %d", set);
  CheckMergeFilterTVL(true);
  return AddSetWithoutCopy(unique_rows(*source, columns));
}

}  // namespace qxe
