// Groups as runs of sorted rows. A worker sums up whole groups, so that each sum is formed in the
// order of the set whatever the number of workers.
#include <algorithm>
#include <vector>

#include "search/compiler_steps.h"
#include "search/multi_key_sort.h"
#include "summary/cell_addresses.h"
#include "summary/group_results.h"

namespace qxe {

int mpp_renumber_vlord(void* block) {
  return run_pool_step(block);
}

int mpp_noncube_measure(void* block) {
  return run_pool_step(block);
}

namespace {

class SortedGroups : public Grouping {
 public:
  explicit SortedGroups(const GroupedRows& source)
      : source_(source),
        workers_(compile_workers(source.rows(), true)),
        rows_(make_block<int>(source.rows())) {
    sort_rows();
    find_groups();
  }

  Reduced reduce(const Wanted& wanted) override {
    return with_measure(wanted, source_, [this](const auto& measure) { return sum_up(measure); });
  }

  Block<int> dimension(int d) const override {
    const int* const numbers =
        std::as_const(*source_.dimensions[static_cast<size_t>(d)]->PVL).PIntAr();
    Block<int> result = make_row_numbers(groups_);
    const int workers = compile_workers(groups_, true);
    run_step(QX_MPP_RENUMBER_VLORD, workers, [&](int worker) {
      const Slice slice = even_slice(groups_, workers, worker);
      for (long i = slice.begin; i < slice.end; ++i) result[i + 1] = numbers[rows_[starts_[i]]];
    });
    return result;
  }

 private:
  void sort_rows() {
    std::vector<TFilter*> keys(source_.dimensions.rbegin(), source_.dimensions.rend());
    const std::vector<int> directions(keys.size(), QX_SORT_ASC);
    SortForMultiItem(static_cast<int>(keys.size()), source_.rows(), source_.set.PIntAr(),
                     keys.data(), directions.data(), rows_.get());
  }

  /// Marks the first row of each group, then lists where they are.
  void find_groups() {
    const Block<char> firsts = make_block<char>(source_.rows());
    std::vector<int> sizes(static_cast<size_t>(workers_));
    run_step(QX_MPP_RENUMBER_VLORD, workers_, [&](int worker) {
      const Slice slice = even_slice(source_.rows(), workers_, worker);
      mark_firsts(slice, firsts.get());
      sizes[static_cast<size_t>(worker)] = static_cast<int>(
          std::count(firsts.get() + slice.begin, firsts.get() + slice.end, char{1}));
    });
    int groups = 0;
    for (int& size : sizes) groups += std::exchange(size, groups);
    starts_ = make_block<int>(groups + 2L);
    run_step(QX_MPP_RENUMBER_VLORD, workers_, [&](int worker) {
      const Slice slice = even_slice(source_.rows(), workers_, worker);
      int group = sizes[static_cast<size_t>(worker)];
      for (long i = slice.begin; i < slice.end; ++i) {
        if (firsts[i] != 0) starts_[group++] = static_cast<int>(i);
      }
    });
    starts_[groups] = starts_[groups + 1] = source_.rows();
    counts_ = make_block<int>(groups);
    for (int i = 0; i < groups; ++i) counts_[i] = starts_[i + 1] - starts_[i];
    groups_ = groups;
  }

  void mark_firsts(Slice slice, char* firsts) const {
    int room[CellAddresses::kBlock];
    for_each_block(slice, [&](long begin, int count) {
      std::fill_n(firsts + begin, count, char{0});
      for (const TFilter* dimension : source_.dimensions) {
        const int* const numbers = gather(*dimension, begin, count, room);
        int before = begin == 0 ? -1 : row_pointers(*dimension)[rows_[begin - 1]];
        for (int i = 0; i < count; ++i) {
          firsts[begin + i] |= static_cast<char>(numbers[i] != before);
          before = numbers[i];
        }
      }
      if (begin == 0) firsts[0] = 1;
    });
  }

  static const int* row_pointers(const TFilter& filter) {
    return std::as_const(*filter.PVL).PIntAr();
  }

  const int* gather(const TFilter& filter, long begin, int count, int* room) const {
    const int* const numbers = row_pointers(filter);
    for (int i = 0; i < count; ++i) room[i] = numbers[rows_[begin + i]];
    return room;
  }

  template <class Measure>
  Reduced sum_up(const Measure& measure) const {
    ResultRows<typename Measure::Cell> results(groups_);
    if constexpr (Measure::Cell::kHasSum || Measure::Cell::kHasExtremes) {
      run_step(QX_MPP_NONCUBE_MEASURE, workers_, [&](int worker) {
        const Slice rows = even_slice(source_.rows(), workers_, worker);
        add_groups(measure, first_group_from(rows.begin), first_group_from(rows.end), results);
      });
    }
    return results.take();
  }

  int first_group_from(long row) const {
    const int* const starts = starts_.get();
    return static_cast<int>(std::lower_bound(starts, starts + groups_, row) - starts);
  }

  /// Row pointers are read by blocks, so that many reads of memory are under way at a time.
  template <class Measure>
  void add_groups(const Measure& measure, int first, int last,
                  ResultRows<typename Measure::Cell>& results) const {
    int room[CellAddresses::kBlock];
    const auto values = measure.values;
    typename Measure::Cell cell{};
    int group = first;
    long group_end = starts_[group + 1];
    for_each_block({starts_[first], starts_[last]}, [&](long begin, int count) {
      for (int i = 0; i < count; ++i) room[i] = measure.numbers[rows_[begin + i]];
      for (long i = begin; i < begin + count;) {
        const long end = std::min(group_end, begin + count);
        for (; i < end; ++i) cell.add(room[i - begin], values, measure.nulls);
        if (i == group_end) {
          results.put(group++, cell, measure.nulls);
          cell = {};
          group_end = starts_[group + 1];
        }
      }
    });
  }

  const GroupedRows& source_;
  const int workers_;
  Block<int> rows_;    // sorted
  Block<int> starts_;  // of each group in them; then their number, twice
};

}  // namespace

std::unique_ptr<Grouping> make_sorted_groups(const GroupedRows& source) {
  return std::make_unique<SortedGroups>(source);
}

}  // namespace qxe
