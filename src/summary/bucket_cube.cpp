// A cube too large for a cache, in parts: rows are moved into buckets by the high part of their
// cell's address, each with the measure's value number beside the low part; then a worker sums up
// one bucket after the other in a cube of a bucket's size. Buckets, and rows within them, keep
// their order, so that each sum is formed in the same order whatever the number of workers.
#include <algorithm>
#include <vector>

#include "search/compiler_steps.h"
#include "summary/cell_addresses.h"
#include "summary/group_results.h"

namespace qxe {

int mpp_multi_halfsort_countup(void* block) {
  return run_pool_step(block);
}

int mpp_multi_halfsort_transfer(void* block) {
  return run_pool_step(block);
}

int mpp_fastcubesum_measure_step1(void* block) {
  return run_pool_step(block);
}

namespace {

constexpr int kMinCellBits = 8;
// More places to write to cost more than cells beyond the cache.
constexpr long kMaxBuckets = 2048;

int cell_bits_of_bucket(long cells) {
  int bits = kMinCellBits;
  while ((kUsualCellBytes << (bits + 1)) <= ENG->l2_size() / 2) ++bits;
  while ((cells - 1) >> bits >= kMaxBuckets) ++bits;
  return bits;
}

/// A row in its bucket.
struct BucketWord {
  static uint64_t pack(int cell, int number) {
    return static_cast<uint64_t>(cell) << 32 | static_cast<uint32_t>(number);
  }
  static uint32_t cell(uint64_t word) { return static_cast<uint32_t>(word >> 32); }
  static int number(uint64_t word) { return static_cast<int>(word & 0xffffffff); }
};

class BucketCube : public Grouping {
 public:
  explicit BucketCube(const GroupedRows& source)
      : source_(source),
        addresses_(source),
        cell_bits_(cell_bits_of_bucket(addresses_.cells())),
        buckets_(static_cast<int>((addresses_.cells() - 1) >> cell_bits_) + 1),
        workers_(compile_workers(source.rows(), true)) {}

  Reduced reduce(const Wanted& wanted) override {
    if (starts_.empty()) count_buckets();
    return with_measure(wanted, source_, [this](const auto& measure) { return sum_up(measure); });
  }

  Block<int> dimension(int d) const override {
    return addresses_.dimension(d, occupied_.get(), groups_);
  }

 private:
  /// What one worker makes of its buckets.
  struct Share {
    Slice buckets;
    long first_group;  // place in the arrays of results
    long groups;       // out
  };

  Slice rows_of(int worker) const { return even_slice(source_.rows(), workers_, worker); }

  long cells_of(long bucket) const {
    return std::min(1L << cell_bits_, addresses_.cells() - (bucket << cell_bits_));
  }

  long rows_in(long bucket) const {
    return bucket_starts_[static_cast<size_t>(bucket) + 1] -
           bucket_starts_[static_cast<size_t>(bucket)];
  }

  /// Where each worker's rows of each bucket begin: buckets in order, and in a bucket workers.
  void count_buckets() {
    std::vector<std::vector<int>> starts(static_cast<size_t>(workers_));
    run_step(QX_MPP_MULTI_HALFSORT_COUNTUP, workers_, [&](int worker) {
      std::vector<int>& counts = starts[static_cast<size_t>(worker)];
      counts.assign(static_cast<size_t>(buckets_), 0);
      int* const of_bucket = counts.data();
      int room[CellAddresses::kBlock];
      for_each_block(rows_of(worker), [&, bits = cell_bits_](long begin, int count) {
        addresses_.visit(begin, count, room, [&](const auto& address_at) {
          for (int i = 0; i < count; ++i) ++of_bucket[address_at(i) >> bits];
        });
      });
    });
    int rows = 0;
    for (size_t bucket = 0; bucket < static_cast<size_t>(buckets_); ++bucket) {
      bucket_starts_.push_back(rows);
      for (std::vector<int>& own : starts) rows += std::exchange(own[bucket], rows);
    }
    bucket_starts_.push_back(rows);
    starts_ = std::move(starts);
  }

  template <class Measure>
  Reduced sum_up(const Measure& measure) {
    const Block<uint64_t> words = make_block<uint64_t>(source_.rows());
    fill_buckets(measure, words.get());
    if (counts_ == nullptr) return find_groups(measure, words.get());
    ResultRows<typename Measure::Cell> results(groups_);
    run_step(QX_MPP_FAST_CUBESUM_MEASURE_STEP1, workers_, [&](int worker) {
      Share share = shares_[static_cast<size_t>(worker)];
      add_buckets(measure, words.get(), share, results, [](long, uint32_t, int) {});
    });
    return results.take();
  }

  template <class Measure>
  void fill_buckets(const Measure& measure, uint64_t* words) const {
    run_step(QX_MPP_MULTI_HALFSORT_TRANSFER, workers_, [&](int worker) {
      std::vector<int> places = starts_[static_cast<size_t>(worker)];
      int* const next = places.data();
      int address_room[CellAddresses::kBlock];
      int number_room[CellAddresses::kBlock];
      const int bits = cell_bits_;
      const int mask = (1 << bits) - 1;
      for_each_block(rows_of(worker), [&](long begin, int count) {
        const int* numbers = nullptr;
        if constexpr (Measure::Cell::kHasSum || Measure::Cell::kHasExtremes) {
          numbers = addresses_.read_numbers(measure.numbers, begin, count, number_room);
        }
        addresses_.visit(begin, count, address_room, [&](const auto& address_at) {
          for (int i = 0; i < count; ++i) {
            const int address = address_at(i);
            const int number = numbers == nullptr ? 0 : numbers[i];
            words[next[address >> bits]++] = BucketWord::pack(address & mask, number);
          }
        });
      });
    });
  }

  /// How many groups there are shows when all are found; until then each worker has room for as
  /// many as its buckets can have.
  template <class Measure>
  Reduced find_groups(const Measure& measure, const uint64_t* words) {
    const long room = divide_buckets();
    Block<int> occupied = make_block<int>(room);
    Block<int> counts = make_block<int>(room);
    ResultRows<typename Measure::Cell> results(static_cast<int>(room));
    run_step(QX_MPP_FAST_CUBESUM_MEASURE_STEP1, workers_, [&](int worker) {
      add_buckets(measure, words, shares_[static_cast<size_t>(worker)], results,
                  [&](long group, uint32_t address, int count) {
                    occupied[group] = static_cast<int>(address);
                    counts[group] = count;
                  });
    });
    long groups = 0;
    for (Share& share : shares_) {
      if (share.first_group != groups) {
        const auto move_down = [&](int* values) {
          std::copy_n(values + share.first_group, share.groups, values + groups);
        };
        move_down(occupied.get());
        move_down(counts.get());
        results.move_down(share.first_group, groups, share.groups);
      }
      share.first_group = groups;
      groups += share.groups;
    }
    groups_ = static_cast<int>(groups);
    occupied_ = std::move(occupied);
    counts_ = std::move(counts);
    return results.take();
  }

  /// Gives each worker the buckets that begin in its share of the rows. Returns how many groups
  /// there can be.
  long divide_buckets() {
    long room = 0;
    const auto first_from = [&](long row) {
      return std::lower_bound(bucket_starts_.begin(), bucket_starts_.end() - 1, row) -
             bucket_starts_.begin();
    };
    for (int worker = 0; worker < workers_; ++worker) {
      const Slice rows = rows_of(worker);
      Share share{{first_from(rows.begin), first_from(rows.end)}, room, 0};
      for (long bucket = share.buckets.begin; bucket < share.buckets.end; ++bucket) {
        room += std::min(rows_in(bucket), cells_of(bucket));
      }
      shares_.push_back(share);
    }
    return room;
  }

  /// Sums the rows of a share's buckets up and puts its groups, in order, to its place in
  /// `results`. `found(group, address, rows)` hears of each.
  template <class Measure, class Found>
  void add_buckets(const Measure& measure, const uint64_t* words, Share& share,
                   ResultRows<typename Measure::Cell>& results, const Found& found) const {
    using Cell = typename Measure::Cell;
    const Block<Cell> cells = make_cleared_block<Cell>(1L << cell_bits_);
    const Block<int> occupied = make_block<int>((1L << cell_bits_) + 1);
    long group = share.first_group;
    for (long bucket = share.buckets.begin; bucket < share.buckets.end; ++bucket) {
      if (rows_in(bucket) == 0) continue;
      add_words(measure, words + bucket_starts_[static_cast<size_t>(bucket)], rows_in(bucket),
                cells.get());
      const int count = find_occupied(cells.get(), cells_of(bucket), occupied.get());
      const auto base = static_cast<uint32_t>(bucket) << cell_bits_;
      for (int i = 0; i < count; ++i, ++group) {
        Cell& cell = cells[occupied[i]];
        found(group, base + static_cast<uint32_t>(occupied[i]), cell.count);
        results.put(group, cell, measure.nulls);
        cell = {};
      }
    }
    share.groups = group - share.first_group;
  }

  template <class Measure>
  static void add_words(const Measure& measure, const uint64_t* words, long count,
                        typename Measure::Cell* cells) {
    const auto values = measure.values;
    const NullMinimum nulls = measure.nulls;
    for (long i = 0; i < count; ++i) {
      cells[BucketWord::cell(words[i])].add(BucketWord::number(words[i]), values, nulls);
    }
  }

  template <class Cell>
  static int find_occupied(const Cell* cells, long count, int* occupied) {
    int found = 0;
    for (int i = 0; i < count; ++i) {  // no branch: which cells are in use is not foreseeable
      occupied[found] = i;
      found += cells[i].count != 0;
    }
    return found;
  }

  const GroupedRows& source_;
  const CellAddresses addresses_;
  const int cell_bits_;  // of an address: the cell in its bucket
  const int buckets_;
  const int workers_;
  std::vector<std::vector<int>> starts_;  // by worker and bucket
  std::vector<long> bucket_starts_;       // and the number of rows
  std::vector<Share> shares_;             // of the workers, once the groups are known
  Block<int> occupied_;                   // addresses of the groups
};

}  // namespace

std::unique_ptr<Grouping> make_bucket_cube(const GroupedRows& source) {
  return std::make_unique<BucketCube>(source);
}

}  // namespace qxe
