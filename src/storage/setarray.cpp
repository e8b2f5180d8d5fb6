#include "storage/setarray.h"

#include <algorithm>

#include "search/sort.h"
#include "storage/filters.h"

namespace qxe {

TSetArray::~TSetArray() {
  while (!sorted_sets_.empty()) delete sorted_sets_.back();  // each unregisters itself
}

TSetArray* TSetArray::CopyArray() {
  auto copy = std::make_unique<TSetArray>();
  copy->copy_block(*this, false);
  copy->take_order_of(*this);
  copy->SetSetName(GetSetName());
  return copy.release();
}

TSetArray* TSetArray::MppCopyArray() {
  if (is_counted_up()) {  // nothing needs to be read
    auto copy = set_like(*this);
    copy->InitAsSet();
    return copy.release();
  }
  auto copy = std::make_unique<TSetArray>();
  copy->copy_block(*this, true);
  copy->take_order_of(*this);
  copy->SetSetName(GetSetName());
  return copy.release();
}

long TSetArray::GetMemSize() const {
  long size = TIntArray::GetMemSize() + static_cast<long>(sizeof(TSetArray) - sizeof(TIntArray)) +
              static_cast<long>(sorted_sets_.capacity() * sizeof(TSortedSetArray*));
  for (const TSortedSetArray* sorted : sorted_sets_) size += sorted->GetMemSize();
  return size;
}

std::unique_ptr<TSetArray> TSetArray::CopyWithout0() const {
  auto copy = std::make_unique<TSetArray>(FArraySize, false);
  if (FArraySize > 0)
    memcpy(copy->PIntAr(), PIntAr(), sizeof(int) * static_cast<size_t>(FArraySize));
  copy->Exclude0Rec();
  return copy;
}

std::unique_ptr<TSetArray> set_like(const TSetArray& source) {
  auto result = std::make_unique<TSetArray>(source.FArraySize, false);
  memcpy(result->FUserArea, source.FUserArea, sizeof result->FUserArea);
  result->SetSetName(source.GetSetName());
  return result;
}

void TSetArray::UnregisterSortedSet(TSortedSetArray* sorted) {
  sorted_sets_.erase(std::remove(sorted_sets_.begin(), sorted_sets_.end(), sorted),
                     sorted_sets_.end());
}

TSortedSetArray* TSetArray::GetSortedSet(const TFilter* filter) const {
  const auto place =
      std::find_if(sorted_sets_.begin(), sorted_sets_.end(),
                   [&](const TSortedSetArray* sorted) { return sorted->filter() == filter; });
  return place == sorted_sets_.end() ? nullptr : *place;
}

void TSetArray::RemoveSortedSet(const TFilter* filter) {
  delete GetSortedSet(filter);
}

TSortedSetArray::~TSortedSetArray() {
  if (set_ != nullptr) set_->UnregisterSortedSet(this);
  if (filter_ != nullptr) filter_->UnregisterSortedSet(this);
}

void TSortedSetArray::initialize(TSetArray* set, TFilter* filter) {
  set->RegisterSortedSet(this);
  set_ = set;
  filter->RegisterSortedSet(this);
  filter_ = filter;
}

void TSortedSetArray::Taint() {
  zvk_free(data_);
  data_ = nullptr;
  FArraySize = 0;
  FAllocSize = 0;
}

void TSortedSetArray::Reclaim() {
  if (!tainted()) return;
  const TSetArray& source = *set_;
  const int size = source.FArraySize;
  const int* const value_numbers = filter_->PVL->PIntAr();
  Block<int> rows = make_block<int>(size);
  MppCountingSort(QX_SORT_ASC, size, source.PIntAr(), rows.get(), value_numbers,
                  filter_->VL->FArraySize);
  adopt(sizeof(int), size, rows.release());
  null_count_ = 0;
  if (filter_->VL->GetDataType() == QX_DT_STRING) return;
  const int* const begin = values();
  null_count_ = static_cast<int>(
      std::partition_point(begin, begin + size, [&](int row) { return value_numbers[row] == 0; }) -
      begin);
}

long TSortedSetArray::GetMemSize() const {
  return TIntArray::GetMemSize() + static_cast<long>(sizeof(TSortedSetArray) - sizeof(TIntArray));
}

}  // namespace qxe
