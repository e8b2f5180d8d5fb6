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

/// The first value number from `value` on whose key number is not below `number`.
int first_value(const KeyNumbers& key, int value, int number) {
  if (key.map == nullptr) return std::min(number, key.values);
  return static_cast<int>(std::lower_bound(key.map + value, key.map + key.values, number) -
                          key.map);
}

/// Part of a match: the keys of a slice.
struct MatchPart {
  int pairs = 0;  // driven rows with partners
  int most = 0;
  bool driving_lost = false;
  bool driven_lost = false;
};

/// Matches keys block by block, so that what is noted by key stays in the nearest cache. Which keys
/// a side has is not foreseeable, so that no loop has jumps.
template <class Counter>
class KeyMatcher {
 public:
  KeyMatcher(const SideValues<Counter>& sides, const KeyMatch& match)
      : sides_(sides), match_(match), starts_(match.starts->PIntAr()) {}

  MatchPart run(Slice keys) {
    const int first = static_cast<int>(keys.begin);
    int driving = first_value(sides_.driving_key, 0, first);
    int driven = first_value(sides_.driven_key, 0, first);
    for (int block = first; block < keys.end; block += kBlock) {
      const int end = std::min<int>(block + kBlock, static_cast<int>(keys.end));
      const int driving_end = first_value(sides_.driving_key, driving, end);
      const int driven_end = first_value(sides_.driven_key, driven, end);
      std::fill_n(counts_, end - block, 0);
      std::fill_n(drives_, end - block, 0);
      note_driven(block, driven, driven_end);
      match_driving(block, driving, driving_end);
      match_driven(block, driven, driven_end);
      set_starts(block, end);
      driving = driving_end;
      driven = driven_end;
    }
    return part_;
  }

 private:
  static constexpr int kBlock = 2048;

  void note_driven(int first_key, int begin, int end) {
    const int* const rows = sides_.driven;
    const KeyNumbers key = sides_.driven_key;
    for (int v = begin; v < end; ++v) counts_[key.of_value(v) - first_key] = rows[v];
  }

  void match_driving(int first_key, int begin, int end) {
    const Counter* const rows = sides_.driving;
    const KeyNumbers key = sides_.driving_key;
    int* const partners = match_.partners.get();
    Flag* const hits = match_.driving_hits.get();
    int lost = 0;
    int most = part_.most;
    for (int v = begin; v < end; ++v) {
      const int place = key.of_value(v) - first_key;
      const int count = counts_[place];
      const int drives = static_cast<int>(rows[v] != 0);
      const int any = static_cast<int>(count != 0);
      drives_[place] = drives;
      partners[v] = count;
      hits[v] = static_cast<Flag>(any);
      lost |= drives & (any ^ 1);
      most = std::max(most, count & -drives);
    }
    part_.driving_lost |= lost != 0;
    part_.most = most;
  }

  void match_driven(int first_key, int begin, int end) {
    const int* const rows = sides_.driven;
    const KeyNumbers key = sides_.driven_key;
    Flag* const hits = match_.driven_hits.get();
    int lost = 0;
    for (int v = begin; v < end; ++v) {
      const int drives = drives_[key.of_value(v) - first_key];
      hits[v] = static_cast<Flag>(drives);
      lost |= static_cast<int>(rows[v] != 0) & (drives ^ 1);
    }
    part_.driven_lost |= lost != 0;
  }

  void set_starts(int begin, int end) {
    int pairs = part_.pairs;
    for (int i = 0; i < end - begin; ++i) {
      starts_[begin + i] = pairs;
      pairs += counts_[i] & -drives_[i];
    }
    part_.pairs = pairs;
  }

  const SideValues<Counter>& sides_;
  const KeyMatch& match_;
  int* const starts_;
  // By key of the block
  int counts_[kBlock];  // driven rows
  int drives_[kBlock];  // 1: driving rows have it
  MatchPart part_;
};

}  // namespace

template <class Counter>
KeyMatch match_keys(const SideValues<Counter>& sides, int keys) {
  const int workers = compile_workers(keys, true);
  KeyMatch match;
  match.driving_hits = make_block<Flag>(sides.driving_key.values);
  match.driven_hits = make_block<Flag>(sides.driven_key.values);
  match.partners = make_block<int>(sides.driving_key.values);
  match.starts = std::make_unique<TSetArray>(keys + 1, false);
  int* const starts = match.starts->PIntAr();
  std::vector<MatchPart> parts(static_cast<size_t>(workers));
  run_step(QX_MPP_JOIN_CUTUNUSE, workers, [&](int worker) {
    const Slice slice = even_slice(keys, workers, worker);
    parts[static_cast<size_t>(worker)] = KeyMatcher<Counter>(sides, match).run(slice);
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
