// No step compares values or looks at a pair: rows are counted by value number, the counts of the
// two sides are brought together key by key, and the driven rows are sorted by counting.
#include "joins/join_build.h"

#include <limits>
#include <numeric>

#include "search/compiler_steps.h"
#include "search/scan.h"
#include "search/sort.h"
#include "tables/row_list.h"

namespace qxe {

int mpp_flag_set(void* block) {
  return run_pool_step(block);
}

int mpp_countup_step1(void* block) {
  return run_pool_step(block);
}

int mpp_join_setup_aggr(void* block) {
  return run_pool_step(block);
}

std::unique_ptr<TSetArray> SideRows::take() {
  if (own != nullptr) return std::move(own);
  return std::unique_ptr<TSetArray>(const_cast<TSetArray*>(rows)->MppCopyArray());  // changes none
}

namespace {

using Flag = unsigned char;

void take_attributes(const TSetArray& source, TSetArray& set) {
  memcpy(set.FUserArea, source.FUserArea, sizeof set.FUserArea);
  set.SetSetName(source.GetSetName());
}

// Rows by value

void note_value(int& counter) {
  ++counter;
}
void note_value(Flag& flag) {
  flag = 1;
}
int together(int a, int b) {
  return a + b;
}
Flag together(Flag a, Flag b) {
  return a | b;
}

template <class Counter>
void note_rows(const RowList& rows, const int* pv, Slice slice, Counter* counters) {
  if (rows.rows == nullptr) {
    for (long i = slice.begin; i < slice.end; ++i) note_value(counters[pv[i + 1]]);
  } else {
    for (long i = slice.begin; i < slice.end; ++i) note_value(counters[pv[rows.rows[i]]]);
  }
}

/// By value number: how many rows have the value, or with flags whether one has.
template <class Counter>
Block<Counter> note_values(const TSetArray& set, const KeyNumbers& key) {
  constexpr TaskId kTask = std::is_same_v<Counter, Flag> ? QX_MPP_FLAG_SET : QX_MPP_COUNTUP_STEP1;
  const RowList rows(set);
  const long values = key.values;
  // Each worker has counters of its own, so they should be fewer than its rows.
  const int workers = std::min(compile_workers(rows.count, true),
                               static_cast<int>(std::max(rows.count / values, 1L)));
  Block<Counter> counters = make_block<Counter>(workers * values);
  run_step(kTask, workers, [&](int worker) {
    Counter* const own = counters.get() + worker * values;
    std::fill_n(own, values, Counter{0});
    note_rows(rows, key.pv, even_slice(rows.count, workers, worker), own);
  });
  for (int worker = 1; worker < workers; ++worker) {
    const Counter* const other = counters.get() + worker * values;
    for (long v = 0; v < values; ++v) counters[v] = together(counters[v], other[v]);
  }
  return counters;
}

/// By key number: whether a row has it.
template <class Counter>
Block<Flag> keys_of(const Block<Counter>& counters, const KeyNumbers& key, int size) {
  Block<Flag> present = make_cleared_block<Flag>(size);
  for (int v = 0; v < key.values; ++v) present[key.of_value(v)] = counters[v] != 0;
  return present;
}

// Rows with and without partner

/// By value number: whether the key is one of the other side's, or with `wanted` 0 whether not.
Block<Flag> partner_flags(const KeyNumbers& key, const Block<Flag>& other_keys, Flag wanted) {
  Block<Flag> flags = make_block<Flag>(key.values);
  for (int v = 0; v < key.values; ++v) flags[v] = other_keys[key.of_value(v)] == wanted;
  return flags;
}

/// Whether a row's key is none of the other side's.
template <class Counter>
bool any_without_partner(const Block<Counter>& counters, const KeyNumbers& key,
                         const Block<Flag>& other_keys) {
  for (int v = 0; v < key.values; ++v) {
    if (counters[v] != 0 && other_keys[key.of_value(v)] == 0) return true;
  }
  return false;
}

std::unique_ptr<TSetArray> rows_with(const TSetArray& rows, const KeyNumbers& key,
                                     const Block<Flag>& flags) {
  auto found = MoveRecsForScan(rows, key.pv, TableTest{flags.get(), key.values});
  found->SetSetName(rows.GetSetName());
  return found;
}

/// Drops the rows that find no partner from a side and its counts; returns them.
template <class Counter>
std::unique_ptr<TSetArray> CutUnUsedJoinRec(SideRows& side, const KeyNumbers& key,
                                            Block<Counter>& counters,
                                            const Block<Flag>& other_keys) {
  if (!any_without_partner(counters, key, other_keys)) return std::make_unique<TSetArray>(0, false);
  auto unmatched = rows_with(*side.rows, key, partner_flags(key, other_keys, 0));
  side = SideRows(rows_with(*side.rows, key, partner_flags(key, other_keys, 1)));
  for (int v = 0; v < key.values; ++v) {
    if (other_keys[key.of_value(v)] == 0) counters[v] = 0;
  }
  return unmatched;
}

/// The rows of a side that find no partner; they stay in it.
std::unique_ptr<TSetArray> ExtractUnUsedJoinRec(const SideRows& side, const KeyNumbers& key,
                                                const Block<int>& counts,
                                                const Block<Flag>& other_keys) {
  if (!any_without_partner(counts, key, other_keys)) return std::make_unique<TSetArray>(0, false);
  return rows_with(*side.rows, key, partner_flags(key, other_keys, 0));
}

// The driven side

/// Whether the value numbers of the rows ascend.
bool ascends(const TSetArray& set, const int* pv) {
  constexpr long kStep = 4096;
  const RowList rows(set);
  const int workers = compile_workers(rows.count, true);
  std::vector<char> good(static_cast<size_t>(workers), 1);
  run_step(QX_MPP_FLAG_SET, workers, [&](int worker) {
    const Slice slice = even_slice(rows.count, workers, worker);
    const long first = std::max(slice.begin, 1L);
    int last = slice.size() > 0 ? pv[rows[static_cast<int>(first - 1)]] : 0;
    bool ascending = true;
    for (long begin = first; begin < slice.end && ascending; begin += kStep) {
      for (long i = begin; i < std::min(begin + kStep, slice.end); ++i) {
        const int value = pv[rows[static_cast<int>(i)]];
        ascending &= value >= last;
        last = value;
      }
    }
    good[static_cast<size_t>(worker)] = ascending;
  });
  return std::find(good.begin(), good.end(), 0) == good.end();
}

/// The rows in the order of their keys.
std::unique_ptr<TSetArray> sorted_by_key(SideRows& side, const KeyNumbers& key) {
  if (ascends(*side.rows, key.pv)) return side.take();
  auto sorted = set_like(*side.rows);
  MppCountingSort(QX_SORT_ASC, side.rows->FArraySize, std::as_const(*side.rows).PIntAr(),
                  sorted->PIntAr(), key.pv, key.values);
  return sorted;
}

/// Where each key number begins among rows that are counted by value, and the end.
std::unique_ptr<TSetArray> run_starts(const Block<int>& counts, const KeyNumbers& key, int size) {
  auto result = std::make_unique<TSetArray>(size + 1, false);
  int* const starts = result->PIntAr();
  int next = 0;
  int total = 0;
  for (int v = 0; v < key.values; ++v) {
    for (const int number = key.of_value(v); next <= number; ++next) starts[next] = total;
    total += counts[v];
  }
  std::fill(starts + next, starts + size + 1, total);
  return result;
}

// The driving side

/// Join row numbers of driving rows.
struct DrivingStarts {
  std::unique_ptr<TSetArray> index;
  int row_count;
};

int checked_row_count(long rows) {
  if (rows <= std::numeric_limits<int>::max()) return static_cast<int>(rows);
  throw CQXException(report("SetupMainN", QX_ERROR_JOIN_SIZE, "JoinTable size overflow"));
}

/// Writes to `starts` the join row at which each driving row begins, the first of them at `total`;
/// `partners` by value number. Returns the join rows in all, which may be more than an int holds.
long MppSetupMainN(const RowList& rows, const int* pv, const int* partners, long total,
                   int* starts) {
  const int workers = compile_workers(rows.count, true);
  std::vector<long> totals(static_cast<size_t>(workers));
  run_step(QX_MPP_JOIN_SETUP_AGGR, workers, [&](int worker) {
    const Slice slice = even_slice(rows.count, workers, worker);
    long sum = 0;
    for (long i = slice.begin; i < slice.end; ++i) {
      starts[i] = static_cast<int>(sum);
      sum += partners[pv[rows[static_cast<int>(i)]]];
    }
    totals[static_cast<size_t>(worker)] = sum;
  });
  for (long& sum : totals) sum = std::exchange(total, total + sum);
  if (total > std::numeric_limits<int>::max()) return total;
  run_step(QX_MPP_JOIN_SETUP_AGGR, workers, [&](int worker) {
    const Slice slice = even_slice(rows.count, workers, worker);
    const int before = static_cast<int>(totals[static_cast<size_t>(worker)]);
    if (before == 0) return;
    for (long i = slice.begin; i < slice.end; ++i) starts[i] += before;
  });
  return total;
}

/// Each driving row has one partner, so that it begins at its own position.
std::unique_ptr<TSetArray> positions(int count) {
  auto result = std::make_unique<TSetArray>(count, false);
  int* const out = result->PIntAr();
  const int workers = compile_workers(count, true);
  run_step(QX_MPP_JOIN_SETUP_AGGR, workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    std::iota(out + slice.begin, out + slice.end, static_cast<int>(slice.begin));
  });
  return result;
}

DrivingStarts inner_starts(const TSetArray& driving, const KeyNumbers& key,
                           const Block<Flag>& values, const int* run_starts) {
  Block<int> partners = make_block<int>(key.values);
  int most = 0;
  for (int v = 0; v < key.values; ++v) {
    const int number = key.of_value(v);
    partners[v] = run_starts[number + 1] - run_starts[number];
    if (values[v] != 0) most = std::max(most, partners[v]);
  }
  if (most <= 1) return {positions(driving.FArraySize), driving.FArraySize};
  auto index = std::make_unique<TSetArray>(driving.FArraySize, false);
  const long rows = MppSetupMainN(RowList(driving), key.pv, partners.get(), 0, index->PIntAr());
  return {std::move(index), checked_row_count(rows)};
}

}  // namespace

JoinSet MakeInnerJoin(JoinSource source, const JoinKey& key) {
  JoinSet set;
  set.direction = source.direction;
  const int master = set.direction;
  const int slave = set.driven();
  SideRows& driving = source.sides[master];
  SideRows& driven = source.sides[slave];
  Block<Flag> driving_values = note_values<Flag>(*driving.rows, key.side(master));
  Block<int> driven_counts = note_values<int>(*driven.rows, key.side(slave));
  const Block<Flag> driving_keys = keys_of(driving_values, key.side(master), key.size());
  const Block<Flag> driven_keys = keys_of(driven_counts, key.side(slave), key.size());
  set.unmatched[master] = CutUnUsedJoinRec(driving, key.side(master), driving_values, driven_keys);
  set.unmatched[slave] = CutUnUsedJoinRec(driven, key.side(slave), driven_counts, driving_keys);
  set.index[slave] = run_starts(driven_counts, key.side(slave), key.size());
  DrivingStarts starts = inner_starts(*driving.rows, key.side(master), driving_values,
                                      std::as_const(*set.index[slave]).PIntAr());
  set.row_count = starts.row_count;
  set.index[master] = std::move(starts.index);
  set.rows[slave] = sorted_by_key(driven, key.side(slave));
  set.rows[master] = driving.take();
  return set;
}

namespace {

/// Drops the rows with key number 0.
void drop_null_keys(SideRows& side, const KeyNumbers& key, Block<int>& counts) {
  if (counts[0] == 0) return;
  auto kept = MoveRecsForScan(*side.rows, key.pv, RangeTest{{1, key.values}, {}});
  kept->SetSetName(side.rows->GetSetName());
  side = SideRows(std::move(kept));
  counts[0] = 0;
}

/// The driven rows of an outer join as they are put in order.
struct OuterRuns {
  std::unique_ptr<TSetArray> misses;  // rows without partner
  Block<int> slots;                   // places of each key number; those without partner have 0
};

OuterRuns outer_runs(const SideRows& driven, const KeyNumbers& key, const Block<int>& driven_counts,
                     const Block<Flag>& driving_keys, const KeyNumbers& driving_key,
                     const Block<int>& driving_counts, int size) {
  OuterRuns runs{rows_with(*driven.rows, key, partner_flags(key, driving_keys, 0)),
                 make_cleared_block<int>(size)};
  // A driving row without partner takes a place of its own.
  for (int v = 0; v < driving_key.values; ++v) {
    runs.slots[driving_key.of_value(v)] = driving_counts[v];
  }
  for (int v = 0; v < key.values; ++v) {
    const int number = key.of_value(v);
    if (driving_keys[number] != 0 && driven_counts[v] > 0) runs.slots[number] = driven_counts[v];
  }
  runs.slots[0] = runs.misses->FArraySize;
  return runs;
}

/// Misses first, then key by key the partners, or row 0 for each driving row without one.
std::unique_ptr<TSetArray> outer_driven_rows(SideRows& driven, const KeyNumbers& key,
                                             const Block<int>& counts, const OuterRuns& runs,
                                             const Block<Flag>& driving_keys, const int* starts,
                                             int size) {
  auto result = std::make_unique<TSetArray>(size, true);
  take_attributes(*driven.rows, *result);
  int* const out = result->PIntAr();
  std::copy_n(std::as_const(*runs.misses).PIntAr(), runs.misses->FArraySize, out);
  driven = SideRows(rows_with(*driven.rows, key, partner_flags(key, driving_keys, 1)));
  const auto hits = sorted_by_key(driven, key);
  const int* next = std::as_const(*hits).PIntAr();
  for (int v = 0; v < key.values; ++v) {
    const int number = key.of_value(v);
    if (counts[v] == 0 || driving_keys[number] == 0) continue;
    std::copy_n(next, counts[v], out + starts[number]);
    next += counts[v];
  }
  return result;
}

/// Row 0 for the misses, then the driving rows; and where each begins.
void set_outer_driving(const SideRows& driving, const KeyNumbers& key, const OuterRuns& runs,
                       const Block<Flag>& driven_keys, JoinSet& set) {
  Block<int> partners = make_block<int>(key.values);
  for (int v = 0; v < key.values; ++v) {
    const int number = key.of_value(v);
    partners[v] = driven_keys[number] != 0 ? runs.slots[number] : 1;
  }
  const int misses = runs.misses->FArraySize;
  const int placeholder = misses > 0 ? 1 : 0;
  const int count = driving.rows->FArraySize;
  auto rows = std::make_unique<TSetArray>(count + placeholder, false);
  auto index = std::make_unique<TSetArray>(count + placeholder, false);
  if (placeholder != 0) rows->PIntAr()[0] = index->PIntAr()[0] = 0;
  take_attributes(*driving.rows, *rows);
  std::copy_n(std::as_const(*driving.rows).PIntAr(), count, rows->PIntAr() + placeholder);
  set.row_count = checked_row_count(MppSetupMainN(RowList(*driving.rows), key.pv, partners.get(),
                                                  misses, index->PIntAr() + placeholder));
  set.rows[set.direction] = std::move(rows);
  set.index[set.direction] = std::move(index);
}

}  // namespace

JoinSet MakeOuterJoin(JoinSource source, const JoinKey& key) {
  JoinSet set;
  set.direction = source.direction;
  const int master = set.direction;
  const int slave = set.driven();
  SideRows& driving = source.sides[master];
  SideRows& driven = source.sides[slave];
  const KeyNumbers& driving_key = key.side(master);
  const KeyNumbers& driven_key = key.side(slave);
  Block<int> driving_counts = note_values<int>(*driving.rows, driving_key);
  Block<int> driven_counts = note_values<int>(*driven.rows, driven_key);
  const Block<Flag> driving_keys = keys_of(driving_counts, driving_key, key.size());
  const Block<Flag> driven_keys = keys_of(driven_counts, driven_key, key.size());
  set.unmatched[master] = ExtractUnUsedJoinRec(driving, driving_key, driving_counts, driven_keys);
  set.unmatched[slave] = ExtractUnUsedJoinRec(driven, driven_key, driven_counts, driving_keys);
  drop_null_keys(driving, driving_key, driving_counts);
  drop_null_keys(driven, driven_key, driven_counts);

  const OuterRuns runs = outer_runs(driven, driven_key, driven_counts, driving_keys, driving_key,
                                    driving_counts, key.size());
  set_outer_driving(driving, driving_key, runs, driven_keys, set);
  auto starts = std::make_unique<TSetArray>(key.size() + 1, false);
  int* const start_of = starts->PIntAr();
  start_of[0] = 0;
  std::partial_sum(runs.slots.get(), runs.slots.get() + key.size(), start_of + 1);
  set.rows[slave] = outer_driven_rows(driven, driven_key, driven_counts, runs, driving_keys,
                                      start_of, start_of[key.size()]);
  set.index[slave] = std::move(starts);
  return set;
}

}  // namespace qxe
