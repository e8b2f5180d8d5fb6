// Set algebra of a real table. Each operation makes a new set, which becomes the current one and
// has neither name nor attribute block of its operands.
#include "search/set_operations.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

RowSpan rows_of(const TSetArray& set) {
  return {set.PIntAr(), static_cast<size_t>(set.FArraySize)};
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
  return add_result(*this, "SetOpe", {set1, set2}, [&] {
    return SetOpeCommon(op, TotalRecs(), rows_of(*GetSet(set1)), rows_of(*GetSet(set2)));
  });
}

int TRealTable::MppSetOpe(int op, int set1, int set2) {
  return add_result(*this, "MppSetOpe", {set1, set2}, [&] {
    return MppSetOpeCommon(op, TotalRecs(), rows_of(*GetSet(set1)), rows_of(*GetSet(set2)));
  });
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
