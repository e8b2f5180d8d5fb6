// High-speed search: the rows of a marked set stand in the order of a filter's values, so that the
// hits of a condition are one or two slices of them, found by bisection. Value numbers are ranks:
// no value is compared.
#include <algorithm>

#include "parallel/mpp_memory.h"
#include "parallel/sliced_task.h"
#include "search/scan_kernels.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

/// Rows in the order of their value numbers.
struct OrderedRows {
  const int* rows;
  const int* pv;

  int value_number(long position) const { return pv[rows[position]]; }
  /// The first position in `slice` whose value number is not below `number`.
  long lower_bound(Slice slice, int number) const {
    return std::partition_point(rows + slice.begin, rows + slice.end,
                                [&](int row) { return pv[row] < number; }) -
           rows;
  }
  Slice positions_of(ValueRange range, long size) const;
};

/// Where the value numbers of `range` stand. Both ends share the bisection until it meets one of
/// them, so few hits take little more than one.
Slice OrderedRows::positions_of(ValueRange range, long size) const {
  Slice left{0, size};
  while (left.begin < left.end) {
    const long middle = left.begin + left.size() / 2;
    const int number = value_number(middle);
    if (number < range.first) {
      left.begin = middle + 1;
    } else if (number >= range.end) {
      left.end = middle;
    } else {
      return {lower_bound({left.begin, middle}, range.first),
              lower_bound({middle + 1, left.end}, range.end)};
    }
  }
  return left;
}

size_t bytes_of(Slice slice) {
  return sizeof(int) * static_cast<size_t>(slice.size());
}

}  // namespace

std::unique_ptr<TSetArray> TSortedSetArray::SearchByValue(const RangeTest& test) const {
  const OrderedRows ordered{values(), filter_->PVL->PIntAr()};
  const Slice first = ordered.positions_of(test.a, FArraySize);
  const Slice second = ordered.positions_of(test.b, FArraySize);
  auto result = std::make_unique<TSetArray>(static_cast<int>(first.size() + second.size()), false);
  memcpy(result->FUserArea, set_->FUserArea, sizeof result->FUserArea);
  int* const out = result->PIntAr();
  MppMemCpy(out, ordered.rows + first.begin, bytes_of(first));
  MppMemCpy(out + first.size(), ordered.rows + second.begin, bytes_of(second));
  return result;
}

int TRealTable::HighSpeedSearchSetMark(int set, int filter, bool on) {
  TSetArray* const source = GetSet(set);
  if (source == nullptr) return QX_ERROR_NO_SET;
  TFilter* const column = GetFilter(filter);
  if (column == nullptr) return QX_ERROR_NO_FILTER;
  CheckMergeFilterTVL(true);
  if (!on) {
    source->RemoveSortedSet(column);
  } else if (source->GetSortedSet(column) == nullptr) {
    auto sorted = std::make_unique<TSortedSetArray>();
    sorted->initialize(source, column);
    if (column->high_speed()) sorted->Reclaim();
    (void)sorted.release();  // the set's from here on
  }
  return 0;
}

int TRealTable::HighSpeedSearchHasMark(int set, int filter) {
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) return QX_ERROR_NO_SET;
  const TFilter* const column = GetFilter(filter);
  if (column == nullptr) return QX_ERROR_NO_FILTER;
  return source->GetSortedSet(column) != nullptr ? 1 : 0;
}

namespace {

/// Fills the sorted sets of these filters that have no data. Unless all could be filled, none is.
void fill_sorted_sets(const std::vector<TFilter*>& filters) {
  std::vector<TSortedSetArray*> tainted;
  for (const TFilter* filter : filters) {
    std::copy_if(filter->sorted_sets().begin(), filter->sorted_sets().end(),
                 std::back_inserter(tainted),
                 [](const TSortedSetArray* sorted) { return sorted->tainted(); });
  }
  try {
    for (TSortedSetArray* sorted : tainted) sorted->Reclaim();
  } catch (...) {
    for (TSortedSetArray* sorted : tainted) sorted->Taint();
    throw;
  }
}

}  // namespace

int TRealTable::HighSpeedSearchEnable(int filter, bool on) {
  std::vector<TFilter*> wanted;
  if (filter >= 1) {
    wanted.push_back(GetFilter(filter));
    if (wanted[0] == nullptr) return QX_ERROR_NO_FILTER;
  } else {
    for (const auto& each : filters_) wanted.push_back(each.get());
  }
  if (on) {
    CheckMergeFilterTVL(true);
    fill_sorted_sets(wanted);
  }
  for (TFilter* each : wanted) each->HighSpeedSearchEnable(on);
  return 0;
}

}  // namespace qxe
