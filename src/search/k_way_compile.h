// Compilation by merging up to `k` runs at a time.
#pragma once

#include <algorithm>
#include <vector>

#include "storage/family.h"

namespace qxe {

constexpr int kMinFanIn = 2;
constexpr int kMaxFanIn = 1024;

/// Works on the runs of one column. A run is a stretch of rows whose distinct values stand sorted
/// at the place of its rows, and whose rows have the numbers of their values.
template <class Array>
class KWayCompiler {
 public:
  using Value = typename Family<Array>::Value;

  KWayCompiler(int n, const Value* data)
      : values_(make_block<Value>(n)),
        merged_(make_block<Value>(n)),
        numbers_(make_cleared_block<int>(n)),
        translation_(make_block<int>(n)) {
    for (int i = 0; i < n; ++i) {
      values_[i] = Family<Array>::normalized(data[i]);
      runs_.push_back({i, i + 1, i + 1});
    }
  }

  /// Merges groups of up to `k` runs until one is left.
  void run(int k) {
    while (runs_.size() > 1) {
      std::vector<Run> longer;
      for (size_t first = 0; first < runs_.size(); first += static_cast<size_t>(k)) {
        const size_t last = std::min(runs_.size(), first + static_cast<size_t>(k));
        longer.push_back(merge(first, last));
      }
      runs_ = std::move(longer);
      std::swap(values_, merged_);
    }
  }

  int size() const { return runs_[0].values_end; }
  Block<int> take_numbers() { return std::move(numbers_); }
  Block<Value> values() const {
    Block<Value> list = make_block<Value>(size());
    std::copy_n(values_.get(), size(), list.get());
    return list;
  }

 private:
  struct Run {
    int begin;  // of its rows and values
    int end;    // of its rows
    int values_end;
  };
  struct Head {
    int next;  // value to be merged next
    int end;
  };

  Run merge(size_t first, size_t last) {
    const int begin = runs_[first].begin;
    std::vector<Head> heads;
    for (size_t i = first; i < last; ++i) heads.push_back({runs_[i].begin, runs_[i].values_end});
    int used = begin;
    std::vector<size_t> ties;
    while (heads.size() > 1) {
      lowest(heads, ties);
      merged_[used] = values_[heads[ties.front()].next];
      for (const size_t tie : ties) translation_[heads[tie].next++] = used - begin;
      ++used;
      std::erase_if(heads, [](const Head& head) { return head.next == head.end; });
    }
    for (const Head& rest : heads) {
      for (int i = rest.next; i < rest.end; ++i, ++used) {
        merged_[used] = values_[i];
        translation_[i] = used - begin;
      }
    }
    for (size_t i = first; i < last; ++i) renumber(runs_[i]);
    return {begin, runs_[last - 1].end, used};
  }

  /// The heads that hold the lowest value.
  void lowest(const std::vector<Head>& heads, std::vector<size_t>& ties) const {
    ties.assign(1, 0);
    for (size_t i = 1; i < heads.size(); ++i) {
      const int order =
          Family<Array>::compare(values_[heads[i].next], values_[heads[ties.front()].next]);
      if (order < 0) ties.clear();
      if (order <= 0) ties.push_back(i);
    }
  }

  void renumber(const Run& run) {
    for (int row = run.begin; row < run.end; ++row) {
      numbers_[row] = translation_[run.begin + numbers_[row]];
    }
  }

  std::vector<Run> runs_;
  Block<Value> values_;
  Block<Value> merged_;
  Block<int> numbers_;
  Block<int> translation_;  // number in the merged run, by the place of a value in its own run
};

/// Sorted distinct values of `n` raw ones into `*vl` and the number of each value into `*pv`, both
/// from zvk_malloc and the caller's; texts stay the input's. Returns the number of distinct values,
/// -1 for `n` below 1, -2 for a fan-in `k` outside 2 to 1024; the outputs are untouched then.
template <class Array>
int k_way_compile(int n, int k, const typename Family<Array>::Value* data, int** pv,
                  typename Family<Array>::Value** vl) {
  if (n < 1) return -1;
  if (k < kMinFanIn || k > kMaxFanIn) return -2;
  KWayCompiler<Array> compiler(n, data);
  compiler.run(k);
  auto list = compiler.values();
  *pv = compiler.take_numbers().release();
  *vl = list.release();
  return compiler.size();
}

}  // namespace qxe
