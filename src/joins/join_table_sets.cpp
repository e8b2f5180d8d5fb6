// Sets of a join table: finding, adding and deleting them.
#include <limits.h>

#include "joins/join_table.h"

namespace qxe {

int TJoinTable::RegNewSet(JoinSource source) {
  if (set_count() >= kMaxSets || MaxSetID == INT_MAX) {
    throw CQXException(report("RegNewSet", QX_ERROR_SET_COUNT, "SetCount overflow"));
  }
  source.first = sets_.empty();
  JoinSet set = MakeJoin(std::move(source));
  set_ids_.reserve(set_ids_.size() + 1);
  sets_.push_back(std::move(set));
  set_ids_.push_back(++MaxSetID);
  current_set_id_ = MaxSetID;
  return MaxSetID;
}

SideRows TJoinTable::side_rows(const JoinSet& set, int side) const {
  const TSetArray& rows = *set.rows[side];
  if (!outer_) return SideRows(rows, set.index[set.driven()].get());
  auto existing = rows.CopyWithout0();
  memcpy(existing->FUserArea, rows.FUserArea, sizeof existing->FUserArea);
  existing->SetSetName(rows.GetSetName());
  return SideRows(std::move(existing));
}

void TJoinTable::SetCurrentSetID(int id) {
  if (id < 0) return;  // the current set stays the current set
  if (SetID2Pos(id) >= 0) current_set_id_ = id;
}

const JoinSet* TJoinTable::find_set(int id) const {
  const int position = SetID2Pos(id);
  return position < 0 ? nullptr : &set_at(position);
}

TSetArray* TJoinTable::GetSet(int id) const {
  const JoinSet* const set = find_set(id);
  if (set != nullptr) return set->rows[set->direction].get();
  report("GetSet", QX_ERROR_NO_SET, "No Such Set: %d ", id);
  return nullptr;
}

TSetArray* TJoinTable::GetSlaveSet(int id) const {
  const JoinSet* const set = find_set(id);
  if (set != nullptr) return set->rows[set->driven()].get();
  report("GetSlaveSet", QX_ERROR_NO_SET, "No Such Set: %d ", id);
  return nullptr;
}

void TJoinTable::GetProjectionSets(int id, TSetArray** master, TSetArray** slave) {
  const int position = SetID2Pos(id);
  JoinSet* const set = position < 0 ? nullptr : &sets_[static_cast<size_t>(position)];
  if (set == nullptr) report("GetProjectionSets", QX_ERROR_NO_SET, "No Such Set: %d ", id);
  *master = set == nullptr ? nullptr : &set->driving_index();
  *slave = set == nullptr ? nullptr : set->index[set->driven()].get();
}

int TJoinTable::GetJoinDir(int id) const {
  const JoinSet* const set = find_set(id);
  if (set != nullptr) return set->direction;
  return report("GetJoinDir", QX_ERROR_NO_SET_ID, "No Such Set: %d ", id);
}

int TJoinTable::GetSetSize(int id) const {
  const JoinSet* const set = find_set(id);
  if (set != nullptr) return set->row_count;
  return report("GetSetSize", QX_ERROR_NO_SET_ID, "No Such Set: %d ", id);
}

long TJoinTable::set_memory(int set) const {
  return find_set(set)->GetMemSize();
}

int TJoinTable::DelSet(int id) {
  const int position = SetID2Pos(id);
  if (position < 0) return position;
  if (position == 0) return report("DelSet", QX_ERROR_ROOT_SET, "Illegal SetPos");
  if (set_ids_[static_cast<size_t>(position)] == current_set_id_) current_set_id_ = set_ids_[0];
  sets_.erase(sets_.begin() + position);
  set_ids_.erase(set_ids_.begin() + position);
  return 0;
}

void TJoinTable::PurgeSubSets() {
  sets_.resize(1);
  set_ids_.resize(1);
  current_set_id_ = set_ids_[0];
}

}  // namespace qxe
