// Set algebra of a real table. Each operation makes a new set, which becomes the current one and
// has neither name nor attribute block of its operands.
#include "search/set_operations.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

RowSpan rows_of(const TSetArray& set) {
  return {set.PIntAr(), static_cast<size_t>(set.FArraySize)};
}

/// The root set and its like, whose rows need not be read.
bool has_all_rows(const TRealTable& table, const TSetArray& set) {
  return set.FArraySize == table.TotalRecs() && set.is_counted_up();
}

using Combine = std::unique_ptr<TSetArray> (*)(int op, int totalRows, RowSpan a, RowSpan b);

std::unique_ptr<TSetArray> combined(const TRealTable& table, Combine combine, int op, int set1,
                                    int set2) {
  const TSetArray& a = *table.GetSet(set1);
  const TSetArray& b = *table.GetSet(set2);
  const int total = table.TotalRecs();
  if (op == QX_SET_ANDNOT && has_all_rows(table, a)) return SetOpeNot(total, rows_of(b));
  // What is left of the other operand is its rows in order.
  if (op == QX_SET_AND && has_all_rows(table, a)) return combine(QX_SET_OR, total, rows_of(b), {});
  if (op == QX_SET_AND && has_all_rows(table, b)) return combine(QX_SET_OR, total, rows_of(a), {});
  return combine(op, total, rows_of(a), rows_of(b));
}

/// `make()` registered with the table, unless it has too many sets or lacks one of `sets`.
template <class Make>
int add_result(TRealTable& table, const char* layer, std::initializer_list<int> sets, Make&& make) {
  if (table.set_count() >= TRealTable::kMaxSets) {
    return report(layer, QX_ERROR_SET_COUNT, "SetCount overflow");
  }
  for (const int set : sets) {
    if (table.GetSet(set) == nullptr) {
      return report(layer, QX_ERROR_NO_SET, "No Such Set: %d", set);
    }
  }
  return table.AddSetWithoutCopy(make());
}

}  // namespace

int TRealTable::SetOpe(int op, int set1, int set2) {
  return add_result(*this, "SetOpe", {set1, set2},
                    [&] { return combined(*this, SetOpeCommon, op, set1, set2); });
}

int TRealTable::MppSetOpe(int op, int set1, int set2) {
  return add_result(*this, "MppSetOpe", {set1, set2},
                    [&] { return combined(*this, MppSetOpeCommon, op, set1, set2); });
}

int TRealTable::SetNot(int set) {
  return add_result(*this, "SetNot", {set},
                    [&] { return SetOpeNot(TotalRecs(), rows_of(*GetSet(set))); });
}

int TRealTable::MppSetNot(int set) {
  return add_result(*this, "MppSetNot", {set},
                    [&] { return MppSetOpeNot(TotalRecs(), rows_of(*GetSet(set))); });
}

}  // namespace qxe
