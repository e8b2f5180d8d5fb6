#include <algorithm>

#include "parallel/mpp_memory.h"
#include "storage/array.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr long kFirstPoolSize = 1024;

}  // namespace

TStrArray::TStrArray(int rows, bool clear) {
  Block<char> pool = make_block<char>(kFirstPoolSize);
  InitArray(sizeof(long), rows, clear);
  pool[0] = '\0';
  pool_ = pool.release();
  pool_size_ = kFirstPoolSize;
}

TStrArray::TStrArray(int rows, Block<const char*> texts) {
  long total = 0;
  for (int i = 0; i < rows; ++i) total += static_cast<long>(strlen(texts[i])) + 1;
  Block<char> pool = make_block<char>(total);
  static_assert(sizeof(long) == sizeof(const char*));
  long* const offsets = reinterpret_cast<long*>(texts.get());
  long used = 0;
  for (int i = 0; i < rows; ++i) {
    const char* const text = texts[i];
    const size_t size = strlen(text) + 1;
    memcpy(pool.get() + used, text, size);
    offsets[i] = used;
    used += static_cast<long>(size);
  }
  adopt(sizeof(long), rows, texts.release());
  pool_ = pool.release();
  pool_size_ = FPCLast = used;
  swept_ = true;
}

TStrArray::TStrArray(int rows, Block<long> offsets, Block<char> pool, long poolUsed) {
  adopt(sizeof(long), rows, offsets.release());
  pool_ = pool.release();
  pool_size_ = FPCLast = poolUsed;
  swept_ = true;
}

TStrArray::~TStrArray() {
  if (!not_owned_) zvk_free(pool_);
}

TStrArray* TStrArray::copied(bool parallel) {
  Sweep();
  Block<char> pool = make_block<char>(pool_size_);
  if (parallel) {
    MppMemCpy(pool.get(), pool_, static_cast<unsigned long>(FPCLast));
  } else if (FPCLast > 0) {
    memcpy(pool.get(), pool_, static_cast<size_t>(FPCLast));
  }
  auto copy = std::make_unique<TStrArray>();
  copy->copy_block(*this, parallel);
  memset(copy->FUserArea, 0, sizeof copy->FUserArea);  // a copied text list starts unmarked
  copy->pool_ = pool.release();
  copy->pool_size_ = pool_size_;
  copy->FPCLast = FPCLast;
  copy->swept_ = true;
  return copy.release();
}

TStrArray* TStrArray::CopyArray() {
  return copied(false);
}

TStrArray* TStrArray::MppCopyArray() {
  return copied(true);
}

const char* TStrArray::GetPChar(int index) const {
  check_index("GetPChar", index);
  return pool_ + offsets()[index];
}

const char* TStrArray::GetPChar2(int index) const {
  check_index("GetPChar2", index);
  return pool_ + offsets()[index] + (index > 0 ? 1 : 0);
}

int TStrArray::GetData(int index, void* buffer) const {
  const size_t length = qxe_strlcpy(static_cast<char*>(buffer), GetPChar(index), kMaxText + 1);
  return static_cast<int>(std::min<size_t>(length, kMaxText));
}

void TStrArray::grow_pool(long bytes) {
  pool_ = static_cast<char*>(zvk_realloc(pool_, static_cast<size_t>(bytes)));
  pool_size_ = bytes;
}

void TStrArray::reserve_pool(long bytes) {
  if (FPCLast + bytes > pool_size_) grow_pool(CalcMargin2(FPCLast + bytes));
}

long TStrArray::add_text(const char* text) {
  SetDirty();
  const size_t size = strlen(text) + 1;
  const long offset = FPCLast;
  memcpy(pool_ + offset, text, size);
  FPCLast += static_cast<long>(size);
  return offset;
}

void TStrArray::AppendData(const void* value) {
  const char* const text = static_cast<const char*>(value);
  const long size = static_cast<long>(strlen(text)) + 1;
  SetDirty();
  if (FAllocSize == FArraySize) SetAllocSize(CalcMargin2(FArraySize));
  if (FPCLast + size >= pool_size_) grow_pool(CalcMargin2(FPCLast + size));
  offsets()[FArraySize] = add_text(text);
  ++FArraySize;
}

void TStrArray::PutPChar(int index, const char* text) {
  SetDirty();  // before the checks: a refused write leaves the mark
  check_index("PutPChar", index);
  const size_t length = strlen(text);
  if (length > kMaxText) throw CQXException(QX_ERROR_STRING_SIZE);
  const long size = static_cast<long>(length) + 1;
  if (FPCLast + size > pool_size_) grow_pool(CalcMargin(FPCLast + size));
  offsets()[index] = add_text(text);
}

void TStrArray::Sweep() {
  if (swept_ || not_owned_) return;
  // A text that several elements share gets a copy for each, so the sum of all lengths counts.
  long total = 0;
  for (int i = 0; i < FArraySize; ++i) total += static_cast<long>(strlen(GetPChar(i))) + 1;
  const long new_size = std::max(total, pool_size_);
  Block<char> pool = make_block<char>(new_size);
  Block<long> offsets = make_block<long>(FAllocSize);
  long used = 0;
  for (int i = 0; i < FArraySize; ++i) {
    const char* const text = GetPChar(i);
    const size_t size = strlen(text) + 1;
    memcpy(pool.get() + used, text, size);
    offsets[i] = used;
    used += static_cast<long>(size);
  }
  zvk_free(data_);
  zvk_free(pool_);
  data_ = offsets.release();
  pool_ = pool.release();
  pool_size_ = new_size;
  FPCLast = used;
  swept_ = true;
}

void TStrArray::clear_pool() {
  SetDirty();
  if (pool_size_ == 0) grow_pool(kFirstPoolSize);
  memset(pool_, 0, static_cast<size_t>(pool_size_));
  memset(data_, 0, static_cast<size_t>(FUnitSize) * static_cast<size_t>(FArraySize));
  FPCLast = 1;
}

void TStrArray::AdjustMemArea() {
  TBaseArray::AdjustMemArea();
  const long needed = FPCLast == 0 ? kFirstPoolSize : CalcMargin(FPCLast);
  if (FPCLast == 0 || pool_size_ > needed) grow_pool(needed);
}

long TStrArray::GetMemSize() const {
  return TBaseArray::GetMemSize() + static_cast<long>(sizeof(TStrArray) - sizeof(TBaseArray)) +
         (not_owned_ ? 0 : pool_size_);
}

long TStrArray::GetBorrowedSize() const {
  return TBaseArray::GetBorrowedSize() + (not_owned_ ? pool_size_ : 0);
}

bool CompareStrArray(TBaseArray& left, TBaseArray& right) {
  if (left.GetDataType() != QX_DT_STRING || right.GetDataType() != QX_DT_STRING) return false;
  auto& a = static_cast<TStrArray&>(left);
  auto& b = static_cast<TStrArray&>(right);
  if (a.FArraySize != b.FArraySize) return false;
  a.Sweep();
  b.Sweep();
  const size_t bytes = sizeof(long) * static_cast<size_t>(a.FArraySize);
  return a.pool_used() == b.pool_used() && memcmp(a.data(), b.data(), bytes) == 0 &&
         memcmp(a.pool(), b.pool(), static_cast<size_t>(a.pool_used())) == 0;
}

bool CheckSame(TBaseArray& left, TBaseArray& right) {
  if (left.GetDataType() != right.GetDataType() || left.FArraySize != right.FArraySize ||
      left.FUnitSize != right.FUnitSize) {
    return false;
  }
  if (left.GetDataType() == QX_DT_STRING) return CompareStrArray(left, right);
  const size_t bytes = static_cast<size_t>(left.FUnitSize) * static_cast<size_t>(left.FArraySize);
  return bytes == 0 || memcmp(left.data(), right.data(), bytes) == 0;
}

}  // namespace qxe
