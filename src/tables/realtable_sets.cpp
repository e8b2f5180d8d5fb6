// Sets of a real table: the list of ids, the current set, adding and deleting.
#include <limits.h>

#include "tables/realtables.h"

namespace qxe {

int TRealTable::TotalRecs() const {
  return sets_.empty() ? 0 : sets_[0]->FArraySize;
}

void TRealTable::SetCurrentSetID(int id) {
  if (id < 0) return;  // the current set stays the current set
  if (SetID2Pos(id) >= 0) current_set_id_ = id;
}

TSetArray* TRealTable::GetSet(int id) const {
  const int position = SetID2Pos(id);
  if (position >= 0) return sets_[static_cast<size_t>(position)].get();
  report("GetSet", QX_ERROR_NO_SET, "No Such Set: %d ", id);
  return nullptr;
}

int TRealTable::GetSetSize(int id) const {
  const int position = SetID2Pos(id);
  if (position >= 0) return sets_[static_cast<size_t>(position)]->FArraySize;
  return report("GetSetSize", QX_ERROR_NO_SET, "No Such Set: %d ", id);
}

int TRealTable::register_set(std::unique_ptr<TSetArray> set) {
  if (set_count() >= kMaxSets || MaxSetID == INT_MAX) {
    return report("AddSetWithoutCopy", QX_ERROR_SET_COUNT, "SetCount overflow");
  }
  set_ids_.reserve(set_ids_.size() + 1);
  sets_.push_back(std::move(set));
  set_ids_.push_back(++MaxSetID);
  return MaxSetID;
}

int TRealTable::AddSetWithoutCopy(std::unique_ptr<TSetArray> set) {
  const int id = register_set(std::move(set));
  if (id >= 0) SetCurrentSetID(id);
  return id;
}

int TRealTable::AddSet(TSetArray& set) {
  if (set_count() >= kMaxSets) return report("AddSet", QX_ERROR_SET_COUNT, "SetCount overflow");
  return AddSetWithoutCopy(copy_of(set));
}

int TRealTable::MppAddSet(TSetArray& set) {
  if (set_count() >= kMaxSets) return QX_ERROR_SET_COUNT;
  return AddSetWithoutCopy(std::unique_ptr<TSetArray>(set.MppCopyArray()));
}

int TRealTable::DelSet(int id) {
  const int position = SetID2Pos(id);
  if (position < 0) return position;
  const auto index = static_cast<size_t>(position);
  if (sets_[index]->not_owned()) return QX_ERROR_SHARED_READ_ONLY;
  if (position == 0) return report("DelSet", QX_ERROR_ROOT_SET, "Illegal SetPos");
  if (set_ids_[index] == current_set_id_) current_set_id_ = set_ids_[0];
  sets_.erase(sets_.begin() + position);
  set_ids_.erase(set_ids_.begin() + position);
  return 0;
}

void TRealTable::PurgeSubSets() {
  sets_.resize(1);
  set_ids_.resize(1);
  current_set_id_ = set_ids_[0];
}

int TRealTable::ResetSetID(int next) {
  if (next < 1 || next <= set_ids_.back()) return QX_ERROR_NO_SET_ID;
  MaxSetID = next - 1;
  return 0;
}

}  // namespace qxe
