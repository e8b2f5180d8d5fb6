// Sorting values into a value list. Each value becomes an entry of 16 bytes with an integer key of
// its first bytes. Entries are divided among groups of ascending values that fit a processor's
// cache, groups are sorted by workers, ties look at further bytes, and at the end every value is
// moved once.
#include <algorithm>
#include <array>
#include <vector>

#include "search/compiler_steps.h"
#include "search/value_list.h"
#include "search/value_list_key.h"

namespace qxe {

namespace {

struct Entry {
  static constexpr uint32_t kRepeat = uint32_t{1} << 31;

  uint64_t key;
  uint32_t position;  // in its source
  uint32_t source;    // and kRepeat when the value is that of the entry before
};

// How far ahead texts are asked for; their pointers are asked for twice as far.
constexpr long kAhead = 12;
// Up to here moving neighbours beats distributing.
constexpr long kInsertionMax = 24;
// Entries of a group: with the spare ones half a megabyte, which stays in a second level cache.
constexpr long kGroupTarget = 16384;
constexpr int kMaxDigitBits = 11;

void insertion_sort(Entry* data, long count) {
  for (long i = 1; i < count; ++i) {
    const Entry moved = data[i];
    long place = i;
    for (; place > 0 && data[place - 1].key > moved.key; --place) data[place] = data[place - 1];
    data[place] = moved;
  }
}

/// Sorts `data` by key, most significant digit first; a digit is cut from the range that the keys
/// really take. The result stands in `data` when `stay`, else in `other`.
void sort_by_key(Entry* data, Entry* other, long count, bool stay) {
  if (count <= kInsertionMax) {
    insertion_sort(data, count);
    if (!stay) std::copy_n(data, count, other);
    return;
  }
  uint64_t low = data[0].key;
  uint64_t high = low;
  for (long i = 1; i < count; ++i) {
    low = std::min(low, data[i].key);
    high = std::max(high, data[i].key);
  }
  if (low == high) {
    if (!stay) std::copy_n(data, count, other);
    return;
  }
  const int bits = std::min<int>(static_cast<int>(std::bit_width(static_cast<uint64_t>(count))) - 2,
                                 kMaxDigitBits);
  const int shift = std::max<int>(static_cast<int>(std::bit_width(high - low)) - bits, 0);
  const size_t digits = static_cast<size_t>((high - low) >> shift) + 1;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): cleared as far as it is used
  std::array<long, (size_t{1} << kMaxDigitBits) + 1> ends;
  std::fill_n(ends.begin(), digits + 1, 0);
  for (long i = 0; i < count; ++i) ++ends[((data[i].key - low) >> shift) + 1];
  for (size_t digit = 1; digit <= digits; ++digit) ends[digit] += ends[digit - 1];
  for (long i = 0; i < count; ++i) other[ends[(data[i].key - low) >> shift]++] = data[i];
  long begin = 0;
  for (size_t digit = 0; digit < digits; ++digit) {
    const long size = ends[digit] - begin;
    if (size > 0) sort_by_key(other + begin, data + begin, size, !stay);
    begin = ends[digit];
  }
}

/// Keys that cut the value range of a group into buckets: bucket 2i holds what lies between
/// splitters i - 1 and i, bucket 2i + 1 what equals splitter i, so that a value of many entries
/// does not burden its neighbours.
class Splitters {
 public:
  static constexpr int kMax = 255;
  static constexpr size_t kBuckets = size_t{2} * (kMax + 1);

  Splitters(const Entry* data, long count) {
    const long wanted = std::clamp<long>(count / kGroupTarget, 1, kMax);
    constexpr long kSamplesPerSplitter = 8;
    std::vector<uint64_t> sample(static_cast<size_t>(wanted * kSamplesPerSplitter));
    const double stride = static_cast<double>(count) / static_cast<double>(sample.size());
    for (size_t i = 0; i < sample.size(); ++i) {
      sample[i] = data[static_cast<long>(static_cast<double>(i) * stride)].key;
    }
    std::sort(sample.begin(), sample.end());
    keys_.fill(~uint64_t{0});
    int used = 0;
    for (size_t i = kSamplesPerSplitter / 2; i < sample.size(); i += kSamplesPerSplitter) {
      if (used == 0 || sample[i] != keys_[static_cast<size_t>(used) - 1]) {
        keys_[static_cast<size_t>(used++)] = sample[i];
      }
    }
  }

  size_t bucket(uint64_t key) const {
    size_t below = 0;  // splitters below the key, found without a branch
#pragma GCC unroll 8
    for (size_t half = (kMax + 1) / 2; half > 0; half /= 2) {
      below += half * static_cast<size_t>(keys_[below + half - 1] < key);
    }
    return 2 * below + (keys_[below] == key ? 1 : 0);
  }

 private:
  std::array<uint64_t, kMax + 1> keys_{};  // padded with the highest key
};

struct Group {
  Entry* data;
  Entry* spare;
  long count;
  int depth;          // of the keys
  long distinct = 0;  // values, once sorted
};

/// Entries that agree up to `depth`.
struct Run {
  long begin;
  long count;
  int depth;
};

template <class Array>
class ValueSorter {
 public:
  using Value = typename Family<Array>::Value;
  using Key = SortKey<Array>;

  ValueSorter(std::span<const ValueSource<Array>> sources, int workers)
      : sources_(sources), workers_(workers) {
    for (const auto& source : sources) total_ += source.count;
    entries_ = make_block<Entry>(total_);
    spare_ = make_block<Entry>(total_);
  }

  ValueList<Array> run() {
    make_entries();
    divide(Group{entries_.get(), spare_.get(), total_, 0}, 0);
    run_compile_step(workers_, [&](int worker) {
      for (Group& group : share(worker)) sort_group(group);
    });
    return make_list();
  }

 private:
  Value value_of(const Entry& entry) const {
    const auto& source = sources_[entry.source & ~Entry::kRepeat];
    return Family<Array>::normalized(source.values[entry.position]);
  }

  void make_entries() {
    run_compile_step(workers_, [&](int worker) {
      long begin = 0;
      for (size_t s = 0; s < sources_.size(); ++s) {
        const Slice slice = even_slice(sources_[s].count, workers_, worker);
        const Value* const values = sources_[s].values;
        Entry* const out = entries_.get() + begin;
        for (long i = slice.begin; i < slice.end; ++i) {
          if constexpr (std::is_same_v<Array, TStrArray>) {
            if (i + kAhead < slice.end) __builtin_prefetch(values[i + kAhead]);
          }
          out[i] = {Key::key(Family<Array>::normalized(values[i]), 0), static_cast<uint32_t>(i),
                    static_cast<uint32_t>(s)};
        }
        begin += sources_[s].count;
      }
    });
  }

  /// Cuts a group into cache-sized ones of ascending values, or leaves it whole when it is small.
  void divide(const Group& group, int level) {
    constexpr int kMaxLevel = 32;  // ends a hunt through endless texts
    if (group.count < 2 * kGroupTarget || level > kMaxLevel) {
      groups_.push_back(group);
      return;
    }
    const std::array<long, Splitters::kBuckets> ends = scatter(group);
    long begin = 0;
    for (size_t bucket = 0; bucket < ends.size(); ++bucket) {
      const long size = ends[bucket] - begin;
      if (size > 0) {
        const bool one_key = bucket % 2 == 1;
        add_bucket({group.spare + begin, group.data + begin, size, group.depth}, one_key, level);
      }
      begin = ends[bucket];
    }
  }

  /// A bucket that is too big for one worker and whose values agree so far is divided by what
  /// follows.
  void add_bucket(Group bucket, bool one_key, int level) {
    const bool too_big = bucket.count > total_ / (4L * workers_);
    if (one_key && too_big && Key::more(bucket.data[0].key, bucket.depth)) {
      bucket.depth += Key::kStep;
      run_compile_step(workers_, [&](int worker) {
        const Slice slice = even_slice(bucket.count, workers_, worker);
        next_keys(bucket.data + slice.begin, slice.size(), bucket.depth);
      });
      divide(bucket, level + 1);
    } else {
      groups_.push_back(bucket);
    }
  }

  /// Distributes a group's entries into the buckets of its splitters, in its spare place; returns
  /// the buckets' ends.
  std::array<long, Splitters::kBuckets> scatter(const Group& group) {
    const Splitters splitters(group.data, group.count);
    using Counts = std::array<long, Splitters::kBuckets>;
    std::vector<Counts> places(static_cast<size_t>(workers_), Counts{});
    Block<uint16_t> buckets = make_block<uint16_t>(group.count);
    run_compile_step(workers_, [&](int worker) {
      const Slice slice = even_slice(group.count, workers_, worker);
      Counts& counts = places[static_cast<size_t>(worker)];
      for (long i = slice.begin; i < slice.end; ++i) {
        const size_t bucket = splitters.bucket(group.data[i].key);
        buckets[i] = static_cast<uint16_t>(bucket);
        ++counts[bucket];
      }
    });
    Counts ends{};
    long used = 0;
    for (size_t bucket = 0; bucket < ends.size(); ++bucket) {
      for (Counts& counts : places) used += std::exchange(counts[bucket], used);
      ends[bucket] = used;
    }
    run_compile_step(workers_, [&](int worker) {
      const Slice slice = even_slice(group.count, workers_, worker);
      Counts& next = places[static_cast<size_t>(worker)];
      for (long i = slice.begin; i < slice.end; ++i) {
        group.spare[next[buckets[i]]++] = group.data[i];
      }
    });
    return ends;
  }

  /// The groups of one worker: whole ones, about as many entries as the others get.
  std::span<Group> share(int worker) {
    const auto first_from = [&](long entry) {
      long begin = 0;
      size_t i = 0;
      while (i < groups_.size() && begin < entry) begin += groups_[i++].count;
      return i;
    };
    const Slice slice = even_slice(total_, workers_, worker);
    const size_t first = first_from(slice.begin);
    return std::span<Group>(groups_).subspan(first, first_from(slice.end) - first);
  }

  /// Has the values of the entries on the way to the cache before they are needed. Always inline:
  /// the compiler drops calls of a function that does nothing but prefetch.
  [[gnu::always_inline]] void prefetch(const Entry* entries, long i, long count, int depth) const {
    if constexpr (!kKeyIsValue<Array>) {
      const auto address = [&](const Entry& entry) {
        return sources_[entry.source & ~Entry::kRepeat].values + entry.position;
      };
      if (i + 2 * kAhead < count) __builtin_prefetch(address(entries[i + 2 * kAhead]));
      if constexpr (std::is_same_v<Array, TStrArray>) {
        if (i + kAhead < count) __builtin_prefetch(*address(entries[i + kAhead]) + depth);
      }
    }
  }

  void next_keys(Entry* entries, long count, int depth) const {
    for (long i = 0; i < count; ++i) {
      prefetch(entries, i, count, depth);
      entries[i].key = Key::key(value_of(entries[i]), depth);
    }
  }

  // A run whose pieces agree is done to its end before the next one, while its texts are in the
  // cache.
  void sort_group(Group& group) const {
    sort_by_key(group.data, group.spare, group.count, true);
    std::vector<Run> ties;
    mark_repeats(group.data, {0, group.count, group.depth}, ties);
    while (!ties.empty()) {
      const Run run = ties.back();
      ties.pop_back();
      resolve(group, run, ties);
    }
    group.distinct = std::count_if(group.data, group.data + group.count, [](const Entry& entry) {
      return (entry.source & Entry::kRepeat) == 0;
    });
  }

  /// Marks the entries of a sorted run that repeat the value before; those that may still differ
  /// become runs of `ties`.
  void mark_repeats(Entry* data, Run run, std::vector<Run>& ties) const {
    const long end = run.begin + run.count;
    for (long begin = run.begin; begin < end;) {
      long next = begin + 1;
      while (next < end && data[next].key == data[begin].key) ++next;
      if (next - begin > 1) {
        if (Key::more(data[begin].key, run.depth)) {
          ties.push_back({begin, next - begin, run.depth + Key::kStep});
        } else {
          for (long i = begin + 1; i < next; ++i) data[i].source |= Entry::kRepeat;
        }
      }
      begin = next;
    }
  }

  /// Orders the entries of a run by what follows; those that agree again go to `ties`.
  void resolve(Group& group, Run run, std::vector<Run>& ties) const {
    if constexpr (!kKeyIsValue<Array>) {
      constexpr long kFewEntries = 4;
      if (run.count <= kFewEntries) return compare_few(group, run);
      Entry* const entries = group.data + run.begin;
      next_keys(entries, run.count, run.depth);
      sort_by_key(entries, group.spare + run.begin, run.count, true);
      mark_repeats(group.data, run, ties);
    }
  }

  /// Orders a few entries by comparing the values themselves.
  void compare_few(Group& group, Run run) const {
    Entry* const entries = group.data + run.begin;
    for (long i = 1; i < run.count; ++i) {
      Entry moved = entries[i];
      const Value value = value_of(moved);
      long place = i;
      int order = 1;
      while (place > 0 &&
             (order = Key::compare_from(value, value_of(entries[place - 1]), run.depth)) < 0) {
        entries[place] = entries[place - 1];
        --place;
      }
      // Behind an equal entry the value repeats; what it moved ahead of keeps its own mark.
      if (order == 0) moved.source |= Entry::kRepeat;
      entries[place] = moved;
    }
  }

  ValueList<Array> make_list() {
    long size = 0;
    std::vector<int> first_numbers;
    for (const Group& group : groups_) {
      first_numbers.push_back(static_cast<int>(size));
      size += group.distinct;
    }
    ValueList<Array> list{make_block<Value>(size), static_cast<int>(size)};
    run_compile_step(workers_, [&](int worker) {
      for (const Group& group : share(worker)) {
        const auto index = static_cast<size_t>(&group - groups_.data());
        number_values(group, first_numbers[index], list.values.get());
      }
    });
    return list;
  }

  /// Gives each value of a sorted group its number, and the list the distinct ones.
  void number_values(const Group& group, int first, Value* list) const {
    int number = first - 1;
    for (long i = 0; i < group.count; ++i) {
      const Entry& entry = group.data[i];
      const bool repeat = (entry.source & Entry::kRepeat) != 0;
      if (!repeat) {
        ++number;
        if constexpr (kKeyIsValue<Array>) {
          list[number] = value_of_key(entry.key, std::type_identity<Array>{});
        } else {
          list[number] = value_of(entry);
        }
      }
      sources_[entry.source & ~Entry::kRepeat].numbers[entry.position] = number;
    }
  }

  std::span<const ValueSource<Array>> sources_;
  int workers_;
  long total_ = 0;
  Block<Entry> entries_;
  Block<Entry> spare_;
  std::vector<Group> groups_;  // in the order of their values
};

}  // namespace

template <class Array>
ValueList<Array> sort_distinct(std::span<const ValueSource<Array>> sources, int workers) {
  return ValueSorter<Array>(sources, workers).run();
}

template ValueList<TIntArray> sort_distinct(std::span<const ValueSource<TIntArray>>, int);
template ValueList<TDoubleArray> sort_distinct(std::span<const ValueSource<TDoubleArray>>, int);
template ValueList<TStrArray> sort_distinct(std::span<const ValueSource<TStrArray>>, int);
template ValueList<TNumericArray> sort_distinct(std::span<const ValueSource<TNumericArray>>, int);

}  // namespace qxe
