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

/// Each worker notes its rows in counters of its own, which are then added up.
template <class Counter>
Block<Counter> note_values(const RowList& rows, const KeyNumbers& key) {
  constexpr TaskId kTask = std::is_same_v<Counter, Flag> ? QX_MPP_FLAG_SET : QX_MPP_COUNTUP_STEP1;
  const long values = key.values;
  // Counters should be fewer than rows.
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

/// Whether the value numbers of the rows ascend.
bool ascends(const RowList& rows, const int* pv) {
  constexpr int kStep = 4096;
  const int workers = compile_workers(rows.count, true);
  std::vector<char> good(static_cast<size_t>(workers), 1);
  run_step(QX_MPP_FLAG_SET, workers, [&](int worker) {
    const Slice slice = even_slice(rows.count, workers, worker);
    const int end = static_cast<int>(slice.end);
    int i = std::max(static_cast<int>(slice.begin), 1);
    int last = slice.size() > 0 ? pv[rows[i - 1]] : 0;
    bool ascending = true;
    while (i < end && ascending) {
      for (const int stop = std::min(end - i, kStep) + i; i < stop; ++i) {
        const int value = pv[rows[i]];
        ascending &= value >= last;
        last = value;
      }
    }
    good[static_cast<size_t>(worker)] = ascending;
  });
  return std::find(good.begin(), good.end(), 0) == good.end();
}

/// The driven rows by value.
struct DrivenValues {
  Block<int> counts;  // by value number
  bool in_order;      // the rows stand by value already
};

/// Rows in the order of their values, so that workers whose shares begin where a value does count
/// into places of their own.
Block<int> count_runs(const RowList& rows, const KeyNumbers& key) {
  Block<int> counts = make_block<int>(key.values);
  const int workers = compile_workers(rows.count, true);
  const auto begin_of = [&](int worker) {
    int i = static_cast<int>(even_slice(rows.count, workers, worker).begin);
    while (i > 0 && i < rows.count && key.pv[rows[i]] == key.pv[rows[i - 1]]) ++i;
    return i;
  };
  const auto first_value = [&](int worker, int begin) {
    if (worker == 0) return 0;
    return begin < rows.count ? key.pv[rows[begin]] : key.values;
  };
  run_step(QX_MPP_COUNTUP_STEP1, workers, [&](int worker) {
    const bool last = worker == workers - 1;
    const int begin = begin_of(worker);
    const int end = last ? rows.count : begin_of(worker + 1);
    const int from = first_value(worker, begin);
    const int to = last ? key.values : first_value(worker + 1, end);
    std::fill(counts.get() + from, counts.get() + to, 0);
    note_rows(rows, key.pv, {begin, end}, counts.get());
  });
  return counts;
}

DrivenValues driven_values(const SideRows& driven, const KeyNumbers& key) {
  const RowList rows(*driven.rows);
  const bool in_order = ascends(rows, key.pv);
  return {in_order ? count_runs(rows, key) : note_values<int>(rows, key), in_order};
}

// Keys of both sides

/// What the values of one side are worth on the other.
struct KeyMatch {
  Block<Flag> driving_hits;           // by driving value number: driven rows have its key
  Block<Flag> driven_hits;            // by driven value number: driving rows have its key
  bool driving_lost = false;          // a driving row finds no partner
  bool driven_lost = false;           // nor does a driven one
  Block<int> partners;                // by driving value number: driven rows with its key
  std::unique_ptr<TSetArray> starts;  // by key number: where its driven rows begin; and their end
  int most = 0;                       // partners of one row
};

/// The value numbers of one side on a walk through the key numbers. Which keys a side has is not
/// foreseeable, so that the walk has no jumps: where it has none, `at` is a place that no value
/// has.
struct KeyCursor {
  KeyCursor(const KeyNumbers& key, int first_key, int no_value)
      : map(key.map), end(key.values), spare(no_value), value(first_key) {
    if (map != nullptr) value = static_cast<int>(std::lower_bound(map, map + end, first_key) - map);
  }

  /// Goes on to the next key; whether the side has a value with it.
  int step(int number) {
    const int here = map == nullptr || (value < end && map[value] == number);
    at = spare ^ ((spare ^ value) & -here);
    value += here;
    return here;
  }

  const int* map;
  int end;
  int spare;
  int value;
  int at = 0;
};

/// Rows of both sides by value number, and the key numbers of the values.
template <class Counter>
struct SideValues {
  const Counter* driving;
  const KeyNumbers& driving_key;
  const int* driven;
  const KeyNumbers& driven_key;
};

/// Part of a match: the keys of a slice.
struct MatchPart {
  int pairs = 0;  // driven rows with partners
  int most = 0;
  bool driving_lost = false;
  bool driven_lost = false;
};

/// The arrays of `match` have a spare place for each worker behind those of the values.
template <class Counter>
MatchPart match_slice(const SideValues<Counter>& sides, Slice keys, int worker,
                      const KeyMatch& match, int* starts) {
  const Counter* const driving_rows = sides.driving;
  const int* const driven_rows = sides.driven;
  Flag* const driving_hits = match.driving_hits.get();
  Flag* const driven_hits = match.driven_hits.get();
  int* const partners = match.partners.get();
  const int first = static_cast<int>(keys.begin);
  KeyCursor driving(sides.driving_key, first, sides.driving_key.values + worker);
  KeyCursor driven(sides.driven_key, first, sides.driven_key.values + worker);
  int pairs = 0;
  int most = 0;
  int driving_lost = 0;
  int driven_lost = 0;
  for (int number = first; number < keys.end; ++number) {
    const int in_driving = driving.step(number);
    const int in_driven = driven.step(number);
    const int drives = in_driving & static_cast<int>(driving_rows[driving.at & -in_driving] != 0);
    const int count = driven_rows[driven.at & -in_driven] & -in_driven;
    const int driven_any = count != 0;
    driving_hits[driving.at] = static_cast<Flag>(driven_any);
    driven_hits[driven.at] = static_cast<Flag>(drives);
    partners[driving.at] = count;
    driving_lost |= drives & (driven_any ^ 1);
    driven_lost |= driven_any & (drives ^ 1);
    starts[number] = pairs;
    pairs += count & -drives;
    most = std::max(most, count & -drives);
  }
  return {pairs, most, driving_lost != 0, driven_lost != 0};
}

template <class Counter>
KeyMatch match_keys(const SideValues<Counter>& sides, int size) {
  const int workers = compile_workers(size, true);
  KeyMatch match;
  match.driving_hits = make_block<Flag>(sides.driving_key.values + workers);
  match.driven_hits = make_block<Flag>(sides.driven_key.values + workers);
  match.partners = make_block<int>(sides.driving_key.values + workers);
  match.starts = std::make_unique<TSetArray>(size + 1, false);
  int* const starts = match.starts->PIntAr();
  std::vector<MatchPart> parts(static_cast<size_t>(workers));
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const Slice keys = even_slice(size, workers, worker);
    parts[static_cast<size_t>(worker)] = match_slice(sides, keys, worker, match, starts);
  });
  int total = 0;
  for (MatchPart& part : parts) {
    part.pairs = std::exchange(total, total + part.pairs);
    match.most = std::max(match.most, part.most);
    match.driving_lost |= part.driving_lost;
    match.driven_lost |= part.driven_lost;
  }
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const int before = parts[static_cast<size_t>(worker)].pairs;
    const Slice keys = even_slice(size, workers, worker);
    if (before == 0) return;
    for (long k = keys.begin; k < keys.end; ++k) starts[k] += before;
  });
  starts[size] = total;
  return match;
}

// Rows with and without partner

/// The rows whose value is marked with `wanted`.
std::unique_ptr<TSetArray> rows_with(const TSetArray& rows, const KeyNumbers& key,
                                     const Block<Flag>& flags, Flag wanted) {
  Block<Flag> inverted;
  if (wanted == 0) {
    inverted = make_block<Flag>(key.values);
    for (int v = 0; v < key.values; ++v) inverted[v] = flags[v] ^ 1;
  }
  const Flag* const hits = wanted == 0 ? inverted.get() : flags.get();
  auto found = MoveRecsForScan(rows, key.pv, TableTest{hits, key.values});
  found->SetSetName(rows.GetSetName());
  return found;
}

/// The rows of a side that find no partner, if there are such; they stay in it.
std::unique_ptr<TSetArray> ExtractUnUsedJoinRec(const SideRows& side, const KeyNumbers& key,
                                                const Block<Flag>& hits, bool lost) {
  return lost ? rows_with(*side.rows, key, hits, 0) : std::make_unique<TSetArray>(0, false);
}

/// The same, but they leave the side.
std::unique_ptr<TSetArray> CutUnUsedJoinRec(SideRows& side, const KeyNumbers& key,
                                            const Block<Flag>& hits, bool lost) {
  auto unmatched = ExtractUnUsedJoinRec(side, key, hits, lost);
  if (lost) side = SideRows(rows_with(*side.rows, key, hits, 1));
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

DrivingStarts inner_starts(const TSetArray& driving, const KeyNumbers& key, const KeyMatch& match) {
  if (match.most <= 1) return {positions(driving.FArraySize), driving.FArraySize};
  auto index = std::make_unique<TSetArray>(driving.FArraySize, false);
  const long rows =
      MppSetupMainN(RowList(driving), key.pv, match.partners.get(), 0, index->PIntAr());
  return {std::move(index), checked_row_count(rows)};
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
  const Block<Flag> driving_values = note_values<Flag>(RowList(*driving.rows), driving_key);
  const DrivenValues values = driven_values(driven, driven_key);
  KeyMatch match = match_keys<Flag>(
      {driving_values.get(), driving_key, values.counts.get(), driven_key}, key.size());
  set.unmatched[master] =
      CutUnUsedJoinRec(driving, driving_key, match.driving_hits, match.driving_lost);
  set.unmatched[slave] = CutUnUsedJoinRec(driven, driven_key, match.driven_hits, match.driven_lost);
  DrivingStarts starts = inner_starts(*driving.rows, driving_key, match);
  set.row_count = starts.row_count;
  set.index[master] = std::move(starts.index);
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

  SideRows& rows;
  const KeyNumbers& key;
  Block<int> counts;  // by value number
  Block<Flag> hits;   // by value number: the other side has the key
};

/// Places of each key number among the driven rows: one for each of them, or for each driving row
/// that has no partner. The first are those of the driven rows without partner.
Block<int> outer_slots(const OuterSide& driving, const OuterSide& driven, int misses, int size) {
  Block<int> slots = make_cleared_block<int>(size);
  for (int v = 0; v < driving.key.values; ++v) {
    if (driving.hits[v] == 0) slots[driving.key.of_value(v)] = driving.counts[v];
  }
  for (int v = 0; v < driven.key.values; ++v) {
    const bool pairs = driven.hits[v] != 0 && driven.counts[v] > 0;
    if (pairs) slots[driven.key.of_value(v)] = driven.counts[v];
  }
  slots[0] = misses;
  return slots;
}

/// Row 0 for the misses, then the driving rows; and where each begins.
void set_outer_driving(const OuterSide& driving, const Block<int>& slots, JoinSet& set) {
  Block<int> partners = make_block<int>(driving.key.values);
  for (int v = 0; v < driving.key.values; ++v) {
    partners[v] = driving.hits[v] != 0 ? slots[driving.key.of_value(v)] : 1;
  }
  const TSetArray& source = *driving.rows.rows;
  const int placeholder = slots[0] > 0 ? 1 : 0;
  const int count = source.FArraySize;
  auto rows = std::make_unique<TSetArray>(count + placeholder, false);
  auto index = std::make_unique<TSetArray>(count + placeholder, false);
  if (placeholder != 0) rows->PIntAr()[0] = index->PIntAr()[0] = 0;
  take_attributes(source, *rows);
  std::copy_n(source.PIntAr(), count, rows->PIntAr() + placeholder);
  set.row_count = checked_row_count(MppSetupMainN(RowList(source), driving.key.pv, partners.get(),
                                                  slots[0], index->PIntAr() + placeholder));
  set.rows[set.direction] = std::move(rows);
  set.index[set.direction] = std::move(index);
}

/// Misses first, then key by key the partners, or row 0 in the places of driving rows without one.
std::unique_ptr<TSetArray> outer_driven_rows(OuterSide& driven, const TSetArray& misses,
                                             const int* starts, int size) {
  auto result = std::make_unique<TSetArray>(size, true);
  take_attributes(*driven.rows.rows, *result);
  int* const out = result->PIntAr();
  std::copy_n(misses.PIntAr(), misses.FArraySize, out);
  driven.rows = SideRows(rows_with(*driven.rows.rows, driven.key, driven.hits, 1));
  const bool in_order = ascends(RowList(*driven.rows.rows), driven.key.pv);
  const auto hits = sorted_by_key(driven.rows, driven.key, in_order);
  const int* next = std::as_const(*hits).PIntAr();
  for (int v = 0; v < driven.key.values; ++v) {
    if (driven.counts[v] == 0 || driven.hits[v] == 0) continue;
    std::copy_n(next, driven.counts[v], out + starts[driven.key.of_value(v)]);
    next += driven.counts[v];
  }
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
  set.unmatched[master] =
      ExtractUnUsedJoinRec(driving.rows, driving.key, driving.hits, match.driving_lost);
  set.unmatched[slave] =
      ExtractUnUsedJoinRec(driven.rows, driven.key, driven.hits, match.driven_lost);
  driving.drop_null_keys();
  driven.drop_null_keys();

  const auto misses = rows_with(*driven.rows.rows, driven.key, driven.hits, 0);
  const Block<int> slots = outer_slots(driving, driven, misses->FArraySize, key.size());
  set_outer_driving(driving, slots, set);
  int* const starts = match.starts->PIntAr();
  std::partial_sum(slots.get(), slots.get() + key.size(), starts + 1);
  set.rows[slave] = outer_driven_rows(driven, *misses, starts, starts[key.size()]);
  set.index[slave] = std::move(match.starts);
  return set;
}

}  // namespace qxe
