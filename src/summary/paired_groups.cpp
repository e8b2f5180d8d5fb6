#include "summary/paired_groups.h"

#include <new>
#include <numeric>

#include "joins/combination_numbers.h"
#include "search/compiler_steps.h"
#include "summary/group_results.h"
#include "summary/sum_request.h"

namespace qxe {

int mpp_join_summary_measure(void* block) {
  return run_pool_step(block);
}

namespace {

constexpr long kMaxPairs = 2'000'000'000;
constexpr int kMaxGroups = 1'000'000'000;

/// Numbers, from 1, of the distinct combinations of columns by position, in their order.
class PositionNumbers : NonCopyable {
 public:
  explicit PositionNumbers(int count) : all_(count, false), combinations_(made_set(all_), none_) {}

  void add(const TIntArray& column, int size) {
    combinations_.add({column, nullptr}, {column, nullptr}, size);
  }
  /// The numbers by position, from 1; sets how many there are.
  std::unique_ptr<TIntArray> number(int* distinct) {
    auto numbers = std::make_unique<TIntArray>(all_.FArraySize + 1, false);
    TIntArray unused;
    *distinct = combinations_.number_rows(*numbers, unused);
    return numbers;
  }

 private:
  static const TSetArray& made_set(TSetArray& all) {
    all.InitAsSet();
    return all;
  }

  TSetArray all_;
  const TSetArray none_;
  CombinationNumbers combinations_;
};

/// Pairs that memory does not hold are refused before the system has to end the process.
void check_pairs(long pairs) {
  constexpr unsigned long kPairBytes = 32;
  if (pairs > kMaxPairs) throw CQXException(QX_ERROR_JOIN_SUM_ROWS);
  if (static_cast<unsigned long>(pairs) * kPairBytes > available_memory()) throw std::bad_alloc();
}

int list_size(const PositionColumn& column) {
  return column.filter().VL->FArraySize;
}

}  // namespace

PairedGroups::PairedGroups(const std::array<const SidePositions*, kSides>& sides, int keys,
                           int rows, std::vector<PairedDimension> dimensions)
    : rows_(rows), dimensions_(std::move(dimensions)) {
  for (int side = 0; side < kSides; ++side) {
    runs_[side] = find_runs(*sides[static_cast<size_t>(side)], side, keys);
  }
  check_pairs(count_pairs(keys));
  pair_runs(keys);
  number_groups();
}

PairedGroups::Runs PairedGroups::find_runs(const SidePositions& positions, int side,
                                           int keys) const {
  const int count = positions.count();
  const int* const position_keys = positions.keys().values();
  PositionNumbers by_key(count);
  PositionNumbers by_group(count);
  by_key.add(positions.keys(), keys);
  for (const PairedDimension& dimension : dimensions_) {
    if (dimension.side != side) continue;
    const TIntArray& column = *dimension.column->filter().PVL;
    by_key.add(column, list_size(*dimension.column));
    by_group.add(column, list_size(*dimension.column));
  }
  Runs runs;
  int groups = 0;
  const auto run_column = by_key.number(&runs.count);
  const auto group_column = by_group.number(&groups);
  runs.of_position.resize(static_cast<size_t>(count));
  runs.rows.assign(static_cast<size_t>(runs.count), 0);
  runs.groups.resize(static_cast<size_t>(runs.count));
  runs.key_starts.assign(static_cast<size_t>(keys) + 1, 0);
  runs.group_rows.assign(static_cast<size_t>(groups) + 1, 0);
  for (int i = count; i >= 1; --i) {
    const auto run = static_cast<size_t>(run_column->values()[i] - 1);
    const int group = group_column->values()[i];
    runs.of_position[static_cast<size_t>(i) - 1] = static_cast<int>(run);
    if (runs.rows[run]++ == 0) ++runs.key_starts[static_cast<size_t>(position_keys[i]) + 1];
    runs.groups[run] = group;
    runs.group_rows[static_cast<size_t>(group)] = i;
  }
  std::partial_sum(runs.key_starts.begin(), runs.key_starts.end(), runs.key_starts.begin());
  return runs;
}

long PairedGroups::count_pairs(int keys) const {
  long pairs = 0;
  for (size_t key = 0; key < static_cast<size_t>(keys); ++key) {
    const auto runs_of = [&](const Runs& runs) {
      return long{runs.key_starts[key + 1]} - runs.key_starts[key];
    };
    pairs += runs_of(runs_[0]) * runs_of(runs_[1]);
  }
  return pairs;
}

void PairedGroups::pair_runs(int keys) {
  const auto count = static_cast<size_t>(count_pairs(keys));
  for (auto& runs : pairs_) runs.reserve(count);
  for (size_t key = 0; key < static_cast<size_t>(keys); ++key) {
    for (int main = runs_[0].key_starts[key]; main < runs_[0].key_starts[key + 1]; ++main) {
      for (int sub = runs_[1].key_starts[key]; sub < runs_[1].key_starts[key + 1]; ++sub) {
        pairs_[0].push_back(main);
        pairs_[1].push_back(sub);
      }
    }
  }
}

void PairedGroups::number_groups() {
  const auto count = static_cast<int>(pairs_[0].size());
  PositionNumbers numbers(count);
  for (int side = 0; side < kSides; ++side) {
    TIntArray column(count + 1, false);
    for (int i = 0; i < count; ++i) {
      const auto run = static_cast<size_t>(pairs_[side][static_cast<size_t>(i)]);
      column.values()[i + 1] = runs_[side].groups[run];
    }
    numbers.add(column, static_cast<int>(runs_[side].group_rows.size()));
  }
  const auto groups = numbers.number(&groups_);
  if (groups_ > kMaxGroups) throw CQXException(QX_ERROR_JOIN_SUM_SIZE);
  counts_ = make_cleared_block<int>(groups_);
  first_pair_.resize(static_cast<size_t>(groups_));
  group_of_.resize(static_cast<size_t>(count));
  for (int i = count - 1; i >= 0; --i) {
    const auto pair = static_cast<size_t>(i);
    const int group = groups->values()[i + 1] - 1;
    group_of_[pair] = group;
    first_pair_[static_cast<size_t>(group)] = i;
    counts_[group] += runs_[0].rows[static_cast<size_t>(pairs_[0][pair])] *
                      runs_[1].rows[static_cast<size_t>(pairs_[1][pair])];
  }
}

Block<int> PairedGroups::dimension(int d) const {
  const PairedDimension& dimension = dimensions_[static_cast<size_t>(d)];
  const Runs& runs = runs_[dimension.side];
  const int* const numbers = std::as_const(*dimension.column->filter().PVL).PIntAr();
  Block<int> result = make_row_numbers(groups_);
  for (int i = 0; i < groups_; ++i) {
    const auto pair = static_cast<size_t>(first_pair_[static_cast<size_t>(i)]);
    const auto run = static_cast<size_t>(pairs_[dimension.side][pair]);
    result[i + 1] = numbers[runs.group_rows[static_cast<size_t>(runs.groups[run])]];
  }
  return result;
}

Reduced PairedGroups::reduce(const Wanted& wanted) {
  return with_measure(wanted, rows_, NullMinimum::kAlways,
                      [this](const auto& measure) { return sum_up(measure); });
}

/// The cell of each run, then those of all pairs into the groups' cells.
template <class Measure>
Reduced PairedGroups::sum_up(const Measure& measure) const {
  using Cell = typename Measure::Cell;
  ResultRows<Cell> results(groups_);
  if constexpr (Cell::kHasSum || Cell::kHasExtremes) {
    const Runs& own = runs_[measure_side_];
    const Runs& other = runs_[OppositeSide(measure_side_)];
    std::vector<Cell> cells(static_cast<size_t>(own.count), Cell{});
    for (size_t i = 0; i < own.of_position.size(); ++i) {
      const auto run = static_cast<size_t>(own.of_position[i]);
      cells[run].add(measure.numbers[i + 1], measure.values, measure.nulls);
    }
    std::vector<Cell> groups(static_cast<size_t>(groups_), Cell{});
    for (size_t pair = 0; pair < group_of_.size(); ++pair) {
      const auto run = static_cast<size_t>(pairs_[measure_side_][pair]);
      const auto partner = static_cast<size_t>(pairs_[OppositeSide(measure_side_)][pair]);
      groups[static_cast<size_t>(group_of_[pair])].merge(cells[run], other.rows[partner]);
    }
    for (int i = 0; i < groups_; ++i) {
      results.put(i, groups[static_cast<size_t>(i)], measure.nulls);
    }
  }
  return results.take();
}

}  // namespace qxe
