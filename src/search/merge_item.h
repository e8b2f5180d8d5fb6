// The merge of two value lists: which number each entry gets in the common list, found without
// moving a value; then every value moves once.
#pragma once

#include <algorithm>
#include <vector>

#include "search/compiler_steps.h"
#include "storage/family.h"

namespace qxe {

/// One side of a merge.
template <class Array>
struct CMergeItem {
  explicit CMergeItem(const Array& array)
      : list(view_of(array)), map(make_block<int>(array.FArraySize)) {}

  /// Divides the list evenly.
  void set_threads_range(int workers) {
    for (int i = 0; i < workers; ++i) ranges.push_back(even_slice(list.size, workers, i));
  }

  /// Divides the list where the other side's slices begin, so that no value is split: a slice ends
  /// before the first entry that is not below the first one of the other side's next slice.
  void set_threads_range(const CMergeItem& other) {
    long begin = 0;
    for (size_t i = 1; i < other.ranges.size(); ++i) {
      const long end = lower_bound(begin, other.list[static_cast<int>(other.ranges[i].begin)]);
      ranges.push_back({begin, end});
      begin = end;
    }
    ranges.push_back({begin, list.size});
  }

  template <class Value>
  void updateDest(Slice range, int before, Value* merged) {
    for (int i = static_cast<int>(range.begin); i < range.end; ++i) {
      map[i] += before;
      merged[map[i]] = list[i];
    }
  }

  void shift(Slice range, int before) {
    for (int i = static_cast<int>(range.begin); i < range.end; ++i) map[i] += before;
  }

  ValueView<Array> list;
  Block<int> map;             // for each entry its number in the merged list
  std::vector<Slice> ranges;  // of each worker

 private:
  template <class Value>
  long lower_bound(long low, const Value& value) const {
    long high = list.size;
    while (low < high) {
      const long middle = low + (high - low) / 2;
      if (Family<Array>::compare(list[static_cast<int>(middle)], value) < 0) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }
};

/// Two lists on the way to becoming one.
template <class Array>
class ListMerge {
 public:
  using Value = typename Family<Array>::Value;

  ListMerge(const Array& first, const Array& second, int workers)
      : first_(first), second_(second), before_(static_cast<size_t>(workers) + 1, 0) {
    // Even slices of the longer list balance the work better.
    if (first.FArraySize >= second.FArraySize) {
      first_.set_threads_range(workers);
      second_.set_threads_range(first_);
    } else {
      second_.set_threads_range(workers);
      first_.set_threads_range(second_);
    }
    run_step(QX_MPP_MERGE_LIST, workers, [&](int worker) {
      before_[static_cast<size_t>(worker) + 1] = number_slice(static_cast<size_t>(worker));
    });
    for (size_t i = 1; i < before_.size(); ++i) before_[i] += before_[i - 1];
    if (before_.back() > std::numeric_limits<int>::max()) {
      throw CQXException(report("DoMppMerge", QX_ERROR_ROW_SIZE, "Illrgal row size : nUnique(%d)",
                                static_cast<int>(before_.back())));
    }
  }

  int size() const { return static_cast<int>(before_.back()); }
  /// Both lists have the same values.
  bool same() const { return size() == first_.list.size && size() == second_.list.size; }

  /// The merged values; the maps are final from then on.
  Block<Value> move_values() {
    Block<Value> merged = make_block<Value>(size());
    run_step(QX_MPP_MERGE_LIST, static_cast<int>(before_.size()) - 1, [&](int worker) {
      const auto slice = static_cast<size_t>(worker);
      const int before = static_cast<int>(before_[slice]);
      second_.updateDest(second_.ranges[slice], before, merged.get());
      first_.updateDest(first_.ranges[slice], before, merged.get());
    });
    return merged;
  }

  /// Makes the maps final without moving a value.
  void finish_maps() {
    run_step(QX_MPP_MERGE_LIST, static_cast<int>(before_.size()) - 1, [&](int worker) {
      const auto slice = static_cast<size_t>(worker);
      const int before = static_cast<int>(before_[slice]);
      if (before == 0) return;
      second_.shift(second_.ranges[slice], before);
      first_.shift(first_.ranges[slice], before);
    });
  }

  Block<int> take_map1() { return std::move(first_.map); }
  Block<int> take_map2() { return std::move(second_.map); }

 private:
  /// Numbers the entries of a slice of both lists from 0; returns how many values there are.
  long number_slice(size_t slice) {
    int i = static_cast<int>(first_.ranges[slice].begin);
    int j = static_cast<int>(second_.ranges[slice].begin);
    const int end1 = static_cast<int>(first_.ranges[slice].end);
    const int end2 = static_cast<int>(second_.ranges[slice].end);
    long number = 0;
    for (; i < end1 && j < end2; ++number) {
      // An entry that is not passed now is numbered again in a later turn.
      const int order = Family<Array>::compare(first_.list[i], second_.list[j]);
      first_.map[i] = static_cast<int>(number);
      second_.map[j] = static_cast<int>(number);
      i += order <= 0;
      j += order >= 0;
    }
    for (; i < end1; ++i) first_.map[i] = static_cast<int>(number++);
    for (; j < end2; ++j) second_.map[j] = static_cast<int>(number++);
    return number;
  }

  CMergeItem<Array> first_;
  CMergeItem<Array> second_;
  std::vector<long> before_;  // values in all slices before; the last entry is their total
};

}  // namespace qxe
