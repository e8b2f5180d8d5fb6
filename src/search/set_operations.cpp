#include "search/set_operations.h"

#include <algorithm>

#include "search/bitmaps.h"

namespace qxe {

namespace {

constexpr long kEmptyCapacity = 10;  // an empty set is never without a block

bool is_operation(int op) {
  return op == QX_SET_AND || op == QX_SET_OR || op == QX_SET_ANDNOT;
}

std::unique_ptr<TSetArray> with_capacity(std::unique_ptr<TSetArray> set) {
  if (set->FArraySize == 0) set->SetAllocSize(kEmptyCapacity);
  return set;
}

/// A copy in row order, each row once.
std::vector<int> ordered_copy(RowSpan rows) {
  std::vector<int> copy(rows.begin(), rows.end());
  std::sort(copy.begin(), copy.end());
  copy.erase(std::unique(copy.begin(), copy.end()), copy.end());
  return copy;
}

/// Whether sorting so many rows costs less than a bitmap over the table.
bool worth_sorting(size_t rows, int totalRows) {
  return rows < static_cast<size_t>(totalRows) / 1024;
}

Block<uint32_t> bitmap_of(RowSpan rows, int totalRows) {
  const int words = bitmap_words(totalRows);
  Block<uint32_t> bitmap = make_block<uint32_t>(words);
  MppToBitMap(rows, words, bitmap.get());
  return bitmap;
}

std::unique_ptr<TSetArray> set_of(const uint32_t* bitmap, int totalRows) {
  const int words = bitmap_words(totalRows);
  auto set = std::make_unique<TSetArray>(count_bits(words, bitmap), false);
  BM2Array(words, bitmap, {set->PIntAr(), static_cast<size_t>(set->FArraySize)});
  return set;
}

std::unique_ptr<TSetArray> combine_by_bitmaps(int op, int totalRows, RowSpan a, RowSpan b) {
  const Block<uint32_t> first = bitmap_of(a, totalRows);
  const Block<uint32_t> second = bitmap_of(b, totalRows);
  if (op == QX_SET_ANDNOT) NegateBitMap(totalRows, second.get());
  const auto apply = op == QX_SET_OR ? ORBitMap : ANDBitMap;
  apply(totalRows, first.get(), second.get(), first.get());
  return set_of(first.get(), totalRows);
}

std::unique_ptr<TSetArray> complement_by_bitmap(int totalRows, RowSpan rows) {
  const Block<uint32_t> bitmap = bitmap_of(rows, totalRows);
  NegateBitMap(totalRows, bitmap.get());
  return set_of(bitmap.get(), totalRows);
}

}  // namespace

std::unique_ptr<TSetArray> MppSetOpeCommon(int op, int totalRows, RowSpan a, RowSpan b) {
  if (!is_operation(op)) throw CQXException(QX_ERROR_OPERATION);
  auto result = combine_ordered(op, totalRows, a, b);
  if (result == nullptr && worth_sorting(a.size() + b.size(), totalRows)) {
    result = combine_ordered(op, totalRows, ordered_copy(a), ordered_copy(b));
  }
  if (result == nullptr) result = combine_by_bitmaps(op, totalRows, a, b);
  return with_capacity(std::move(result));
}

std::unique_ptr<TSetArray> SetOpeCommon(int op, int totalRows, RowSpan a, RowSpan b) {
  if (!is_operation(op)) report("SetOpeCommon", QX_ERROR_OPERATION, "Invalid Parameter : OpCode");
  return MppSetOpeCommon(op, totalRows, a, b);
}

std::unique_ptr<TSetArray> MppSetOpeNot(int totalRows, RowSpan rows) {
  auto result = complement_ordered(totalRows, rows);
  if (result == nullptr) result = complement_by_bitmap(totalRows, rows);
  return with_capacity(std::move(result));
}

std::unique_ptr<TSetArray> SetOpeNot(int totalRows, RowSpan rows) {
  return MppSetOpeNot(totalRows, rows);
}

std::unique_ptr<TIntArray> SieveOpe(int totalRows, const TIntArray& a, const TIntArray& b) {
  const int* const rows = a.PIntAr();
  const Block<uint32_t> bitmap =
      bitmap_of({b.PIntAr(), static_cast<size_t>(b.FArraySize)}, totalRows);
  auto result = std::make_unique<TIntArray>(a.FArraySize, false);
  int* const out = result->PIntAr();
  int kept = 0;
  for (int i = 0; i < a.FArraySize; ++i) {
    out[kept] = rows[i];
    kept += static_cast<int>(bitmap[rows[i] >> 5] >> (rows[i] & 31) & 1);
  }
  result->SetArraySize(kept);
  // A row that `a` holds twice may stand in the result more often than in `b`.
  result->SetAllocSize(std::max(kept, std::min(a.FArraySize, b.FArraySize)));
  return result;
}

}  // namespace qxe
