#include "joins/join_match.h"

#include "search/compiler_steps.h"

namespace qxe {

int mpp_flag_set(void* block) {
  return run_pool_step(block);
}

int mpp_countup_step1(void* block) {
  return run_pool_step(block);
}

namespace {

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

}  // namespace

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

template Block<int> note_values(const RowList& rows, const KeyNumbers& key);
template Block<Flag> note_values(const RowList& rows, const KeyNumbers& key);

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

namespace {

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

}  // namespace

DrivenValues driven_values(const RowList& rows, const KeyNumbers& key) {
  const bool in_order = ascends(rows, key.pv);
  return {in_order ? count_runs(rows, key) : note_values<int>(rows, key), in_order};
}

// Keys of both sides

namespace {

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

}  // namespace

template <class Counter>
KeyMatch match_keys(const SideValues<Counter>& sides, int keys) {
  const int workers = compile_workers(keys, true);
  KeyMatch match;
  match.driving_hits = make_block<Flag>(sides.driving_key.values + workers);
  match.driven_hits = make_block<Flag>(sides.driven_key.values + workers);
  match.partners = make_block<int>(sides.driving_key.values + workers);
  match.starts = std::make_unique<TSetArray>(keys + 1, false);
  int* const starts = match.starts->PIntAr();
  std::vector<MatchPart> parts(static_cast<size_t>(workers));
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const Slice slice = even_slice(keys, workers, worker);
    parts[static_cast<size_t>(worker)] = match_slice(sides, slice, worker, match, starts);
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
    const Slice slice = even_slice(keys, workers, worker);
    if (before == 0) return;
    for (long k = slice.begin; k < slice.end; ++k) starts[k] += before;
  });
  starts[keys] = total;
  return match;
}

template KeyMatch match_keys(const SideValues<int>& sides, int keys);
template KeyMatch match_keys(const SideValues<Flag>& sides, int keys);

}  // namespace qxe
