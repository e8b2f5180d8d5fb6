// The semi-join: rows of one table whose value occurs in another one, or does not.
#include <algorithm>
#include <vector>

#include "search/compiler_steps.h"
#include "search/scan.h"
#include "storage/family.h"
#include "tables/realtables.h"
#include "tables/row_list.h"

namespace qxe {

int mpp_join_inout(void* block) {
  return run_pool_step(block);
}

namespace {

constexpr char kLayer[] = "ExtractJoinInOut";

using Flag = unsigned char;

/// A set and an integer filter of one table.
struct InOutSide {
  const TSetArray& rows;
  const int* pv;
  const TIntArray& values;
};

InOutSide in_out_side(TRealTable& table, int set, int filter) {
  const TSetArray* const rows = table.GetSet(set);
  if (rows == nullptr) throw CQXException(report(kLayer, QX_ERROR_NO_SET, "No Such Set: %d", set));
  const TFilter* const column = table.GetFilter(filter);
  if (column == nullptr) {
    throw CQXException(report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", filter));
  }
  if (column->VL->GetDataType() != QX_DT_INTEGER) {
    throw CQXException(report(kLayer, QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )"));
  }
  table.CheckMergeFilterTVL(true);
  return {*rows, std::as_const(*column->PVL).PIntAr(), static_cast<const TIntArray&>(*column->VL)};
}

/// Value numbers that the rows have, ascending, when there are few rows for the value list.
std::vector<int> sorted_numbers(const InOutSide& side) {
  std::vector<int> numbers(static_cast<size_t>(side.rows.FArraySize));
  gather_rows(side.pv, RowList(side.rows), 0, side.rows.FArraySize, numbers.data());
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

/// The same by marks. Each worker marks on a table of its own, so no more of them take part than
/// keep these smaller than the rows.
std::vector<int> marked_numbers(const InOutSide& side) {
  const RowList rows(side.rows);
  const int size = side.values.FArraySize;
  const int workers = std::clamp(rows.count / size, 1, compile_workers(rows.count, true));
  std::vector<Block<Flag>> marks;
  for (int i = 0; i < workers; ++i) marks.push_back(make_cleared_block<Flag>(size));
  run_step(QX_MPP_JOIN_INOUT, workers, [&](int worker) {
    Flag* const own = marks[static_cast<size_t>(worker)].get();
    const Slice slice = even_slice(rows.count, workers, worker);
    for (long i = slice.begin; i < slice.end; ++i) own[side.pv[rows[static_cast<int>(i)]]] = 1;
  });
  std::vector<int> numbers;
  for (int v = 0; v < size; ++v) {
    if (std::any_of(marks.begin(), marks.end(), [v](const auto& own) { return own[v] != 0; })) {
      numbers.push_back(v);
    }
  }
  return numbers;
}

std::vector<int> numbers_met(const InOutSide& side) {
  constexpr long kNarrowShare = 8;
  return side.rows.FArraySize * kNarrowShare > side.values.FArraySize ? marked_numbers(side)
                                                                      : sorted_numbers(side);
}

/// First place from `at` on in ascending values whose value is not below `wanted`, by steps that
/// double: near places cost little, however long the list is.
int first_not_below(const int* values, int size, int at, int wanted) {
  long step = 1;
  while (at + step < size && values[at + step] < wanted) step *= 2;
  const int* const end = values + std::min<long>(at + step, size);
  return static_cast<int>(std::lower_bound(values + at + step / 2, end, wanted) - values);
}

/// For each value of `side` `hit` if it is one of the other side's, else the opposite. Values are
/// compared as integers, so the sides need no common list.
Block<Flag> value_flags(const InOutSide& side, const InOutSide& other, Flag hit) {
  const int size = side.values.FArraySize;
  Block<Flag> flags = make_block<Flag>(size);
  std::fill_n(flags.get(), size, static_cast<Flag>(1 - hit));
  const int* const values = side.values.values();
  int at = 0;
  for (const int number : numbers_met(other)) {
    const int wanted = other.values.values()[number];
    at = first_not_below(values, size, at, wanted);
    if (at == size) break;
    if (values[at] == wanted) flags[at] = hit;
  }
  return flags;
}

}  // namespace

int TRealTable::MppExtractJoinInOut(int set, int filter, TRealTable& other, int otherSet,
                                    int otherFilter, bool out) {
  const InOutSide own = in_out_side(*this, set, filter);
  const InOutSide others = in_out_side(other, otherSet, otherFilter);
  if (set_count() >= kMaxSets) return report(kLayer, QX_ERROR_SET_COUNT, "SetCount overflow");
  const Block<Flag> flags = value_flags(own, others, static_cast<Flag>(out ? 0 : 1));
  auto kept = MoveRecsForScan(own.rows, own.pv, TableTest{flags.get(), own.values.FArraySize});
  kept->SetSetName(own.rows.GetSetName());
  return AddSetWithoutCopy(std::move(kept));
}

}  // namespace qxe
