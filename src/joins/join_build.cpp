#include "joins/join_build.h"

#include <limits>
#include <numeric>
#include <span>

#include "joins/join_match.h"
#include "parallel/mpp_memory.h"
#include "search/compiler_steps.h"
#include "search/scan.h"
#include "search/sort.h"

namespace qxe {

int mpp_join_cutunuse(void* block) {
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

void take_attributes(const TSetArray& source, TSetArray& set) {
  memcpy(set.FUserArea, source.FUserArea, sizeof set.FUserArea);
  set.SetSetName(source.GetSetName());
}

void copy_rows(const TSetArray& rows, int* out) {
  if (rows.FArraySize == 0) return;
  MppMemCpy(out, rows.PIntAr(), sizeof(int) * static_cast<size_t>(rows.FArraySize));
}

/// `body(v)` for all value numbers, in no order.
template <class Body>
void for_each_value(int values, const Body& body) {
  const int workers = compile_workers(values, true);
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const Slice slice = even_slice(values, workers, worker);
    for (int v = static_cast<int>(slice.begin); v < slice.end; ++v) body(v);
  });
}

// Rows with and without partner

/// The rows whose value is marked, or those whose value is not.
std::unique_ptr<TSetArray> rows_with(const TSetArray& rows, const KeyNumbers& key,
                                     const Block<Flag>& flags, bool wanted) {
  auto found = MoveRecsForScan(rows, key.pv, TableTest{flags.get(), key.values, wanted});
  found->SetSetName(rows.GetSetName());
  return found;
}

/// Writes the rows from `row` to before `end` that are not among the ascending `gaps`.
void write_runs(int row, int end, std::span<const int> gaps, int* out) {
  auto gap = std::lower_bound(gaps.begin(), gaps.end(), row);
  out -= gap - gaps.begin();
  for (; row < end; ++row) {
    const int stop = gap < gaps.end() ? std::min(*gap++, end) : end;
    std::iota(out, out + (stop - row), row);
    out += stop - row;
    row = stop;
  }
}

/// A set of all rows without a few of them: the runs between them, of which nothing need be read.
std::unique_ptr<TSetArray> rows_between(const TSetArray& all, const TSetArray& lost) {
  auto kept = std::make_unique<TSetArray>(all.FArraySize - lost.FArraySize, false);
  take_attributes(all, *kept);
  int* const out = kept->PIntAr();
  const std::span<const int> gaps(lost.PIntAr(), static_cast<size_t>(lost.FArraySize));
  const int workers = compile_workers(all.FArraySize, true);
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const Slice slice = even_slice(all.FArraySize, workers, worker);
    const int begin = static_cast<int>(slice.begin);
    write_runs(begin + 1, static_cast<int>(slice.end) + 1, gaps, out + begin);
  });
  return kept;
}

/// The rows of a side that find no partner, if there are such; they stay in it.
std::unique_ptr<TSetArray> ExtractUnUsedJoinRec(const SideRows& side, const KeyNumbers& key,
                                                const Block<Flag>& hits, bool lost) {
  return lost ? rows_with(*side.rows, key, hits, false) : std::make_unique<TSetArray>(0, false);
}

/// Leaves the rows of a side that find a partner. Returns the others, where they are asked for.
std::unique_ptr<TSetArray> CutUnUsedJoinRec(SideRows& side, const KeyNumbers& key,
                                            const Block<Flag>& hits, bool lost, bool asked) {
  constexpr int kFew = 16;  // of so many rows one
  auto unmatched = ExtractUnUsedJoinRec(side, key, hits, lost && asked);
  const bool for_nothing = asked && unmatched->FArraySize == 0;  // NULL was said to have a row
  if (!lost || for_nothing) return unmatched;
  const TSetArray& rows = *side.rows;
  const bool few = asked && unmatched->FArraySize < rows.FArraySize / kFew && rows.is_counted_up();
  side = SideRows(few ? rows_between(rows, *unmatched) : rows_with(rows, key, hits, true));
  return unmatched;
}

/// The rows in the order of their keys.
std::unique_ptr<TSetArray> sorted_by_key(SideRows& side, const KeyNumbers& key, bool in_order) {
  if (in_order) return side.take();
  auto sorted = set_like(*side.rows);
  MppCountingSort(QX_SORT_ASC, side.rows->FArraySize, std::as_const(*side.rows).PIntAr(),
                  sorted->PIntAr(), key.pv, key.values);
  return sorted;
}

// The driving side

/// Join row numbers of driving rows.
struct DrivingIndex {
  std::unique_ptr<TSetArray> index;  // null: 0, 1, 2, ...
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

DrivingIndex inner_index(const TSetArray& driving, const KeyNumbers& key, const KeyMatch& match) {
  if (match.most <= 1) return {nullptr, driving.FArraySize};
  auto index = std::make_unique<TSetArray>(driving.FArraySize, false);
  const long rows =
      MppSetupMainN(RowList(driving), key.pv, match.partners.get(), 0, index->PIntAr());
  return {std::move(index), checked_row_count(rows)};
}

}  // namespace

namespace {

/// Whether a driven row has the key that stands for NULL.
bool has_null_key(const DrivenValues& values, const KeyNumbers& key) {
  return key.values > 0 && key.of_value(0) == 0 && values.counts[0] > 0;
}

/// Which values rows have that were joined before.
Block<Flag> flags_of_runs(const KeyNumbers& key, const TSetArray& key_runs) {
  Block<Flag> flags = make_block<Flag>(key.values);
  const int* const runs = key_runs.PIntAr();
  for_each_value(key.values, [&](int v) {
    const int number = key.of_value(v);
    flags[v] = runs[number] < runs[number + 1];
  });
  return flags;
}

/// Which values the driving rows have. All rows together are known to have each value of the list,
/// only NULL may be there without a row: then its flag does no harm as long as no driven row asks.
Block<Flag> driving_flags(const SideRows& driving, const KeyNumbers& key,
                          const DrivenValues& values, const KeyNumbers& driven_key) {
  const RowList rows(*driving.rows);
  if (driving.runs != nullptr && rows.count > key.values) return flags_of_runs(key, *driving.runs);
  const bool all_values = key.condensed && rows.rows == nullptr && rows.count == key.rows;
  if (!all_values || has_null_key(values, driven_key)) return note_values<Flag>(rows, key);
  Block<Flag> flags = make_block<Flag>(key.values);
  std::fill_n(flags.get(), key.values, Flag{1});
  return flags;
}

}  // namespace

JoinSet MakeInnerJoin(JoinSource source, const JoinKey& key) {
  JoinSet set;
  set.direction = source.direction;
  const int master = set.direction;
  const int slave = set.driven();
  const KeyNumbers& driving_key = key.side(master);
  const KeyNumbers& driven_key = key.side(slave);
  SideRows& driving = source.sides[master];
  SideRows& driven = source.sides[slave];
  const DrivenValues values = driven_values(RowList(*driven.rows), driven_key);
  const Block<Flag> driving_values = driving_flags(driving, driving_key, values, driven_key);
  KeyMatch match = match_keys<Flag>(
      {driving_values.get(), driving_key, values.counts.get(), driven_key}, key.size());
  set.unmatched[master] =
      CutUnUsedJoinRec(driving, driving_key, match.driving_hits, match.driving_lost, source.first);
  set.unmatched[slave] =
      CutUnUsedJoinRec(driven, driven_key, match.driven_hits, match.driven_lost, source.first);
  DrivingIndex index = inner_index(*driving.rows, driving_key, match);
  set.row_count = index.row_count;
  set.index[master] = std::move(index.index);
  set.index[slave] = std::move(match.starts);
  set.rows[slave] = sorted_by_key(driven, driven_key, values.in_order);
  set.rows[master] = driving.take();
  return set;
}

namespace {

/// One side of an outer join.
struct OuterSide {
  OuterSide(SideRows& side, const KeyNumbers& numbers)
      : rows(side), key(numbers), counts(note_values<int>(RowList(*side.rows), numbers)) {}

  /// Drops the rows with key number 0.
  void drop_null_keys() {
    if (counts[0] == 0) return;
    auto kept = MoveRecsForScan(*rows.rows, key.pv, RangeTest{{1, key.values}, {}});
    kept->SetSetName(rows.rows->GetSetName());
    rows = SideRows(std::move(kept));
    counts[0] = 0;
  }

  /// Rows with a value, if they have partners.
  int pairs_of(int value) const { return hits[value] != 0 ? counts[value] : 0; }

  SideRows& rows;
  const KeyNumbers& key;
  Block<int> counts;  // by value number
  Block<Flag> hits;   // by value number: the other side has the key
};

/// Places of each key number among the driven rows: one for each of them, or for each driving row
/// that has no partner. The first are those of the driven rows without partner.
Block<int> outer_slots(const OuterSide& driving, const OuterSide& driven, int misses, int size) {
  Block<int> slots = make_cleared_block<int>(size);
  for_each_value(driving.key.values, [&](int v) {
    if (driving.hits[v] == 0) slots[driving.key.of_value(v)] = driving.counts[v];
  });
  for_each_value(driven.key.values, [&](int v) {
    const int pairs = driven.pairs_of(v);
    if (pairs > 0) slots[driven.key.of_value(v)] = pairs;
  });
  slots[0] = misses;
  return slots;
}

/// Row 0 for the misses, then the driving rows; and where each begins.
void set_outer_driving(const OuterSide& driving, const Block<int>& slots, JoinSet& set) {
  Block<int> partners = make_block<int>(driving.key.values);
  for_each_value(driving.key.values, [&](int v) {
    partners[v] = driving.hits[v] != 0 ? slots[driving.key.of_value(v)] : 1;
  });
  const TSetArray& source = *driving.rows.rows;
  const int placeholder = slots[0] > 0 ? 1 : 0;
  const int count = source.FArraySize;
  auto rows = std::make_unique<TSetArray>(count + placeholder, false);
  auto index = std::make_unique<TSetArray>(count + placeholder, false);
  if (placeholder != 0) rows->PIntAr()[0] = index->PIntAr()[0] = 0;
  take_attributes(source, *rows);
  copy_rows(source, rows->PIntAr() + placeholder);
  set.row_count = checked_row_count(MppSetupMainN(RowList(source), driving.key.pv, partners.get(),
                                                  slots[0], index->PIntAr() + placeholder));
  set.rows[set.direction] = std::move(rows);
  set.index[set.direction] = std::move(index);
}

/// Copies the rows of each value, which stand one behind the other in `sorted`, to the place where
/// their key begins.
void place_runs(const OuterSide& driven, const TSetArray& sorted, const int* starts, int* out) {
  const int values = driven.key.values;
  const int workers = compile_workers(sorted.FArraySize, true);
  std::vector<long> next(static_cast<size_t>(workers));
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const Slice slice = even_slice(values, workers, worker);
    long rows = 0;
    for (long v = slice.begin; v < slice.end; ++v) rows += driven.pairs_of(static_cast<int>(v));
    next[static_cast<size_t>(worker)] = rows;
  });
  std::exclusive_scan(next.begin(), next.end(), next.begin(), 0L);
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const Slice slice = even_slice(values, workers, worker);
    const int* from = sorted.PIntAr() + next[static_cast<size_t>(worker)];
    for (int v = static_cast<int>(slice.begin); v < slice.end; ++v) {
      const int rows = driven.pairs_of(v);
      if (rows == 0) continue;
      std::copy_n(from, rows, out + starts[driven.key.of_value(v)]);
      from += rows;
    }
  });
}

/// Misses first, then key by key the partners, or row 0 in the places of driving rows without one.
std::unique_ptr<TSetArray> outer_driven_rows(OuterSide& driven, const TSetArray& misses,
                                             const int* starts, int size) {
  auto result = std::make_unique<TSetArray>(size, false);
  take_attributes(*driven.rows.rows, *result);
  int* const out = result->PIntAr();
  MppMemSet(out, 0, sizeof(int) * static_cast<size_t>(size));
  copy_rows(misses, out);
  driven.rows = SideRows(rows_with(*driven.rows.rows, driven.key, driven.hits, true));
  const bool in_order = ascends(RowList(*driven.rows.rows), driven.key.pv);
  place_runs(driven, *sorted_by_key(driven.rows, driven.key, in_order), starts, out);
  return result;
}

}  // namespace

JoinSet MakeOuterJoin(JoinSource source, const JoinKey& key) {
  JoinSet set;
  set.direction = source.direction;
  const int master = set.direction;
  const int slave = set.driven();
  OuterSide driving(source.sides[master], key.side(master));
  OuterSide driven(source.sides[slave], key.side(slave));
  KeyMatch match = match_keys<int>(
      {driving.counts.get(), driving.key, driven.counts.get(), driven.key}, key.size());
  driving.hits = std::move(match.driving_hits);
  driven.hits = std::move(match.driven_hits);
  set.unmatched[master] = ExtractUnUsedJoinRec(driving.rows, driving.key, driving.hits,
                                               match.driving_lost && source.first);
  set.unmatched[slave] =
      ExtractUnUsedJoinRec(driven.rows, driven.key, driven.hits, match.driven_lost && source.first);
  driving.drop_null_keys();
  driven.drop_null_keys();

  const auto misses = rows_with(*driven.rows.rows, driven.key, driven.hits, false);
  const Block<int> slots = outer_slots(driving, driven, misses->FArraySize, key.size());
  set_outer_driving(driving, slots, set);
  int* const starts = match.starts->PIntAr();
  std::partial_sum(slots.get(), slots.get() + key.size(), starts + 1);
  set.rows[slave] = outer_driven_rows(driven, *misses, starts, starts[key.size()]);
  set.index[slave] = std::move(match.starts);
  return set;
}

}  // namespace qxe
