// The way back from a join to its parents. All works on the join's first set, in which the master
// drives.
#include <vector>

#include "joins/join_table.h"
#include "tables/realtables.h"
#include "tables/value_use.h"

namespace qxe {

int TJoinTable::PutJoinSetToParent(int side, bool unmatched, int* tableId, int* setId) {
  constexpr int kMostSets = 9999;  // one fewer than a table may have
  *tableId = *setId = -1;
  if (outer_) return -1;
  OppositeSide(side);  // throws for what is no side
  TRealTable& table = parent(side);
  if (table.set_count() >= kMostSets) {
    return report("PutJoinSetToParent", QX_ERROR_SET_COUNT, "SetCount overflow");
  }
  TSetArray& rows = *(unmatched ? sets_[0].unmatched : sets_[0].rows)[side];
  *setId = raised(table.AddSet(rows));
  *tableId = table.id();
  return 0;
}

int TJoinTable::ReturnSet2SlaveTable(int* tableId) {
  constexpr char kLayer[] = "ReturnSet2SlaveTable";
  if (outer_) return report(kLayer, QX_ERROR_NOT_INNER_JOIN, "No Inner-Join Table");
  const JoinSet& set = sets_[0];
  const KeyNumbers& keys = key_->side(QX_JOIN_MASTER);
  const int* const starts = std::as_const(*set.index[QX_JOIN_SLAVE]).PIntAr();
  const int* const partners = std::as_const(*set.rows[QX_JOIN_SLAVE]).PIntAr();
  const int* const rows = std::as_const(*set.rows[QX_JOIN_MASTER]).PIntAr();
  std::vector<bool> done(static_cast<size_t>(key_->size()));
  std::vector<int> first_partners;
  for (int i = 0; i < set.rows[QX_JOIN_MASTER]->FArraySize; ++i) {
    const int number = keys(rows[i]);
    if (done[static_cast<size_t>(number)]) continue;
    done[static_cast<size_t>(number)] = true;
    first_partners.push_back(partners[starts[number]]);
  }
  auto result = std::make_unique<TSetArray>(static_cast<int>(first_partners.size()), false);
  std::copy(first_partners.begin(), first_partners.end(), result->PIntAr());
  const int id = raised(parent(QX_JOIN_SLAVE).AddSetWithoutCopy(std::move(result)));
  *tableId = parent(QX_JOIN_SLAVE).id();
  return id;
}

int TJoinTable::MoveSlaveFlt2Master(int filter) {
  constexpr char kLayer[] = "MoveSlaveFlt2Master";
  int status = 0;
  const Column column = find_column(kLayer, filter, &status);
  if (column.filter == nullptr) return status;
  if (column.side != QX_JOIN_SLAVE) {
    return report(kLayer, QX_ERROR_JOIN_SIDE, "Illegal target ( Not Master or Slave )");
  }
  TRealTable& master = parent(QX_JOIN_MASTER);
  char name[kNameSize];
  if (master.GenFilterName(column.filter->FFilterName, name) < 0) {
    return report(kLayer, QX_ERROR_FILTER_NAME,
                  "Failed to get FilterName ( GenFilterName module )");
  }
  const JoinSet& set = sets_[0];
  const KeyNumbers& keys = key_->side(QX_JOIN_MASTER);
  const int* const starts = std::as_const(*set.index[QX_JOIN_SLAVE]).PIntAr();
  const int* const partners = std::as_const(*set.rows[QX_JOIN_SLAVE]).PIntAr();
  const int* const rows = std::as_const(*set.rows[QX_JOIN_MASTER]).PIntAr();
  const int* const source = std::as_const(*column.filter->PVL).PIntAr();
  auto numbers = std::make_unique<TIntArray>(master.TotalRecs() + 1, true);
  int* const out = numbers->PIntAr();
  for (int i = 0; i < set.rows[QX_JOIN_MASTER]->FArraySize; ++i) {
    if (rows[i] != 0) out[rows[i]] = source[partners[starts[keys(rows[i])]]];
  }
  return master.AddFilter(master.GetNFilter(), name,
                          {std::move(numbers), copied_values(*column.filter->VL)});
}

}  // namespace qxe
