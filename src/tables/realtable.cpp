#include <algorithm>

#include "parallel/smpengine.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

TRealTable::TRealTable(int id, const char* name) {
  table_id_ = id;
  set_name(name);
}

TRealTable::TRealTable(int id, const char* name, int rows) : TRealTable(id, name) {
  add_root_set(rows);
}

void TRealTable::add_root_set(int rows) {
  auto root = std::make_unique<TSetArray>(rows, false);
  root->InitAsSet();
  raised(AddSetWithoutCopy(std::move(root)));
}

TRealTable::~TRealTable() = default;

long TRealTable::GetMemSize() const {
  long size = static_cast<long>(sizeof(TRealTable));
  size += static_cast<long>(set_ids_.capacity() * sizeof(int));
  size += static_cast<long>(sets_.capacity() * sizeof(TSetArray*));
  size += static_cast<long>(filters_.capacity() * sizeof(TFilter*));
  for (const auto& set : sets_) size += set->GetMemSize();
  for (const auto& filter : filters_) {
    size += filter->GetMemSize();
    // The sets have counted them.
    for (const TSortedSetArray* sorted : filter->sorted_sets()) size -= sorted->GetMemSize();
  }
  return size + find_cursor_.GetMemSize();
}

long TRealTable::set_memory(int set) const {
  return sets_[static_cast<size_t>(SetID2Pos(set))]->GetMemSize();
}

bool TRealTable::refers_to(const TRealTable& target) const {
  const auto borrows = [&](const auto& own) {
    return std::any_of(target.filters_.begin(), target.filters_.end(),
                       [&](const auto& filter) { return filter->VL == own->VL; });
  };
  return std::any_of(filters_.begin(), filters_.end(), borrows);
}

void TRealTable::detach_dependents() {
  TTableCollection& tables = *ENG->collection();
  for (int i = 0; i < tables.count(); ++i) tables.at(i).detach_from(*this);
}

long TRealTable::GetBorrowedSize() const {
  long size = 0;
  for (const auto& set : sets_) size += set->GetBorrowedSize();
  for (const auto& filter : filters_) size += filter->GetBorrowedSize();
  return size;
}

}  // namespace qxe
