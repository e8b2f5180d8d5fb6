#include "storage/filters.h"

#include <algorithm>

#include "storage/setarray.h"
#include "storage/strings.h"

namespace qxe {

TFilter::TFilter(int id, const char* name) : FFilterID(id), FOrgFltID(id) {
  InitTVL();
  if (qxe_strlcpy(FFilterName, name, kNameSize) >= kNameSize || !ToFileName(FFilterName)) {
    throw CQXException(QX_ERROR_FILTER_NAME);
  }
}

namespace {

/// Arrays sweep themselves before a copy, so copying counts as use, not as change.
template <class Array>
Array* copied(const Array* array) {
  return array == nullptr ? nullptr : static_cast<Array*>(const_cast<Array*>(array)->CopyArray());
}

}  // namespace

TFilter::TFilter(const TFilter* other) {
  if (other == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  InitTVL();
  FFilterID = other->FFilterID;
  qxe_strlcpy(FFilterName, other->FFilterName, kNameSize);
  FOrgTblID = other->FOrgTblID;
  FOrgFltID = other->FOrgFltID;
  std::unique_ptr<TIntArray> pv(copied(other->PVL));
  VL = copied(other->VL);
  PVL = pv.release();
}

TFilter::~TFilter() {
  while (!sorted_sets_.empty()) delete sorted_sets_.back();  // each unregisters itself
  delete PVL;
  if (FVLBorrowed) return;
  delete VL;
  delete TVL;
  delete TVLRow;
}

std::unique_ptr<TFilter> TFilter::CopyFilter(int id, const char* name) const {
  char cleaned[kNameSize];
  if (qxe_strlcpy(cleaned, name, kNameSize) >= kNameSize || !ToFileName(cleaned)) {
    throw CQXException(report("CopyFilter", QX_ERROR_FILTER_NAME, "Illegal FilterName"));
  }
  auto copy = std::make_unique<TFilter>(this);
  copy->FFilterID = id;
  qxe_strlcpy(copy->FFilterName, cleaned, kNameSize);
  memset(copy->PVL->FUserArea, 0, sizeof copy->PVL->FUserArea);
  return copy;
}

void TFilter::adopt(Column column) {
  delete PVL;
  PVL = column.pv.release();
  adopt_values(std::move(column.vl));
  condensed_ = column.condensed;
}

void TFilter::adopt_values(std::unique_ptr<TBaseArray> vl) {
  if (!FVLBorrowed) delete VL;
  FVLBorrowed = false;
  condensed_ = false;
  VL = vl.release();
  ++list_version_;
}

void TFilter::check_changeable() const {
  if (!high_speed_) return;
  throw CQXException(QX_ERROR_HIGH_SPEED_FILTER, "Cannot modify high speed search filter: %s",
                     FFilterName);
}

void TFilter::Taint() {
  check_changeable();
  condensed_ = false;
  for (TSortedSetArray* sorted : sorted_sets_) sorted->Taint();
}

void TFilter::reserve_rows(int rows) {
  const long elements = static_cast<long>(rows) + 1;
  if (PVL->FAllocSize < elements) PVL->SetAllocSize(elements);
}

void TFilter::insert_rows(int at, int count) {
  const int size = PVL->FArraySize;
  PVL->SetArraySize(size + count);
  int* const gap = PVL->PIntAr() + at;
  std::copy_backward(gap, PVL->PIntAr() + size, PVL->PIntAr() + size + count);
  std::fill_n(gap, count, 0);
  for (int i = 1; i <= FTVLUsed; ++i) {
    const int row = TVLRow->GetInt(i);
    if (row >= at) TVLRow->PutInt(i, row + count);
  }
}

void TFilter::UnregisterSortedSet(TSortedSetArray* sorted) {
  sorted_sets_.erase(std::remove(sorted_sets_.begin(), sorted_sets_.end(), sorted),
                     sorted_sets_.end());
}

namespace {

template <class Measure>
long sum_over(std::initializer_list<const TBaseArray*> arrays, Measure&& measure) {
  long size = 0;
  for (const TBaseArray* array : arrays) {
    if (array != nullptr) size += measure(*array);
  }
  return size;
}

}  // namespace

long TFilter::GetMemSize() const {
  const auto size_of = [](const TBaseArray& array) { return array.GetMemSize(); };
  long size = static_cast<long>(sizeof(TFilter)) +
              static_cast<long>(sorted_sets_.capacity() * sizeof(TSortedSetArray*));
  size += sum_over({PVL}, size_of);
  if (!FVLBorrowed) size += sum_over({VL, TVL, TVLRow}, size_of);
  for (const TSortedSetArray* sorted : sorted_sets_) size += sorted->GetMemSize();
  return size;
}

long TFilter::GetBorrowedSize() const {
  return sum_over({PVL, VL, TVL, TVLRow},
                  [](const TBaseArray& array) { return array.GetBorrowedSize(); });
}

}  // namespace qxe
