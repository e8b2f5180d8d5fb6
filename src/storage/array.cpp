#include "storage/array.h"

#include <algorithm>

#include "parallel/mpp_memory.h"
#include "storage/strings.h"

namespace qxe {

long CalcMargin(long n) {
  if (n < 0) throw CQXException(QX_ERROR_NEGATIVE_SIZE);
  return n;
}

long CalcMargin2(long n) {
  return n + n / 8 + 10000;
}

TBaseArray::~TBaseArray() {
  if (!not_owned_) zvk_free(data_);
}

void TBaseArray::InitArray(int unit, int rows, bool clear) {
  if (unit < 2 || unit > 256) throw CQXException(QX_ERROR_UNIT_SIZE);
  if (rows < 0) throw CQXException(QX_ERROR_NEGATIVE_ROWS);
  const long bytes = static_cast<long>(unit) * rows;
  if (bytes > kMaxBytes) throw CQXException(QX_ERROR_DATA_SIZE);
  FUnitSize = unit;
  FArraySize = rows;
  FAllocSize = CalcMargin(rows);
  data_ = zvk_malloc(static_cast<size_t>(unit * FAllocSize));
  if (clear) memset(data_, 0, static_cast<size_t>(bytes));
}

void TBaseArray::adopt(int unit, int rows, void* block) {
  FUnitSize = unit;
  FArraySize = rows;
  FAllocSize = rows;
  data_ = block;
}

void TBaseArray::copy_block(const TBaseArray& source, bool parallel) {
  InitArray(source.FUnitSize, source.FArraySize, false);
  memcpy(FUserArea, source.FUserArea, sizeof FUserArea);
  const size_t bytes = static_cast<size_t>(FUnitSize) * static_cast<size_t>(FArraySize);
  if (parallel) {
    MppMemCpy(data_, source.data_, bytes);
  } else if (bytes > 0) {
    memcpy(data_, source.data_, bytes);
  }
}

void TBaseArray::check_index(const char* operation, int index) const {
  if (index >= 0 && index < FArraySize) return;
  throw CQXException(report(operation, QX_ERROR_INDEX, "Invalid Parameter : idx(%d)", index));
}

void TBaseArray::SetArraySize(int n) {
  if (n < 0) {
    throw CQXException(
        report("SetArraySize", QX_ERROR_ROW_SIZE, "Invalid Parameter : NewSize(%d)", n));
  }
  if (static_cast<long>(FUnitSize) * n > kMaxBytes) {
    throw CQXException(report("SetArraySize", QX_ERROR_DATA_SIZE,
                              "Invalid data size : NewSize * FUnitSize(%d)", FUnitSize));
  }
  if (n > FAllocSize) {
    data_ = zvk_realloc(data_, static_cast<size_t>(FUnitSize) * static_cast<size_t>(n));
    FAllocSize = n;
  }
  FArraySize = n;
}

void TBaseArray::SetAllocSize(long n) {
  if (n < 0) {
    throw CQXException(report("SetAllocSize", QX_ERROR_ROW_SIZE, "Illrgal row size : NewSize(%d)",
                              static_cast<int>(n)));
  }
  if (FUnitSize * n > kMaxBytes) {
    throw CQXException(report("SetAllocSize", QX_ERROR_DATA_SIZE, "DataSize overflow"));
  }
  if (n == 0) n = 1000;
  data_ = zvk_realloc(data_, static_cast<size_t>(FUnitSize * n));
  FAllocSize = n;
  FArraySize = static_cast<int>(std::min<long>(FArraySize, FAllocSize));
}

void TBaseArray::reserve(long n) {
  if (n > FAllocSize) SetAllocSize(CalcMargin2(n));
}

void TBaseArray::AdjustMemArea() {
  const long needed = CalcMargin(FArraySize);
  if (FAllocSize > needed) SetAllocSize(needed);
}

void TBaseArray::AppendData(const void* value) {
  if (FAllocSize == FArraySize) SetAllocSize(CalcMargin2(FArraySize));
  memcpy(static_cast<char*>(data_) + static_cast<long>(FArraySize) * FUnitSize, value,
         static_cast<size_t>(FUnitSize));
  ++FArraySize;
}

long TBaseArray::GetMemSize() const {
  return static_cast<long>(sizeof(TBaseArray)) + (not_owned_ ? 0 : FUnitSize * FAllocSize);
}

long TBaseArray::GetBorrowedSize() const {
  return not_owned_ ? FUnitSize * FAllocSize : 0;
}

// Integers

TIntArray* TIntArray::CopyArray() {
  auto copy = std::make_unique<TIntArray>();
  copy->copy_block(*this, false);
  copy->take_order_of(*this);
  copy->SetSetName(set_name_);
  return copy.release();
}

TIntArray* TIntArray::MppCopyArray() {
  auto copy = std::make_unique<TIntArray>();
  copy->copy_block(*this, true);
  copy->take_order_of(*this);
  copy->SetSetName(set_name_);
  return copy.release();
}

long TIntArray::GetMemSize() const {
  return TBaseArray::GetMemSize() + static_cast<long>(sizeof(TIntArray) - sizeof(TBaseArray));
}

int TIntArray::GetInt(int index) const {
  check_index("GetInt", index);
  return values()[index];
}

void TIntArray::PutInt(int index, int value) {
  check_index("PutInt", index);
  PutData(index, &value);
}

void TIntArray::PutData(int index, const void* value) {
  FixedArray::PutData(index, value);
  counted_up_ = std::min(counted_up_, index);
}

void TIntArray::AppendData(const void* value) {
  counted_up_ = std::min(counted_up_, FArraySize);
  FixedArray::AppendData(value);
}

void TIntArray::SetArraySize(int n) {
  counted_up_ = std::min({counted_up_, FArraySize, n});
  FixedArray::SetArraySize(n);
}

const int* TIntArray::GetIntPtr(int index) const {
  check_index("GetIntPtr", index);
  return values() + index;
}

void TIntArray::InitAsSet() {
  AdjustMemArea();
  const int known = std::min(counted_up_, FArraySize);
  MppFillUp(values() + known, known + 1, FArraySize - known);
  counted_up_ = FArraySize;
}

bool TIntArray::is_counted_up() const {
  constexpr int kStep = 1024;  // looked at together, without a branch
  const int* const rows = PIntAr();
  counted_up_ = std::min(counted_up_, FArraySize);
  while (counted_up_ < FArraySize) {
    const int end = std::min(counted_up_ + kStep, FArraySize);
    int misfits = 0;
    for (int i = counted_up_; i < end; ++i) misfits |= rows[i] ^ (i + 1);
    if (misfits != 0) return false;
    counted_up_ = end;
  }
  return true;
}

void TIntArray::Exclude0Rec() {
  int* const rows = values();
  FArraySize = static_cast<int>(
      std::remove_if(rows, rows + FArraySize, [](int row) { return row <= 0; }) - rows);
}

void TIntArray::SetSetName(const char* name) {
  qxe_strlcpy(set_name_, name, kNameSize);
}

// Doubles

void TDoubleArray::copy_display(const TDoubleArray& source) {
  display_scale_ = source.display_scale_;
  display_rounding_ = source.display_rounding_;
}

TDoubleArray* TDoubleArray::CopyArray() {
  auto copy = std::make_unique<TDoubleArray>();
  copy->copy_block(*this, false);
  copy->copy_display(*this);
  return copy.release();
}

TDoubleArray* TDoubleArray::MppCopyArray() {
  auto copy = std::make_unique<TDoubleArray>();
  copy->copy_block(*this, true);
  copy->copy_display(*this);
  return copy.release();
}

long TDoubleArray::GetMemSize() const {
  return TBaseArray::GetMemSize() + static_cast<long>(sizeof(TDoubleArray) - sizeof(TBaseArray));
}

double TDoubleArray::GetDouble(int index) const {
  check_index("GetDouble", index);
  return values()[index];
}

void TDoubleArray::PutDouble(int index, double value) {
  check_index("PutDouble", index);
  values()[index] = value;
}

const double* TDoubleArray::GetDoublePtr(int index) const {
  check_index("GetDoublePtr", index);
  return values() + index;
}

namespace {

bool is_double_type(int type) {
  return type == QX_DT_DOUBLE || type == QX_DT_DATE || type == QX_DT_TIME || type == QX_DT_DATETIME;
}

}  // namespace

int TDoubleArray::GetExtendType() {
  unsigned char& type = FUserArea[kAreaExtendType];
  if (type == 0) type = QX_DT_DOUBLE;
  if (!is_double_type(type)) throw CQXException(QX_ERROR_DATA_TYPE);
  return type;
}

void TDoubleArray::SetExtendType(int type) {
  if (type == 0) type = QX_DT_DOUBLE;
  if (!is_double_type(type)) {
    // Deliberate: logged as a type mismatch, thrown as an illegal type.
    report("SetExtendType", QX_ERROR_TYPE_MISMATCH, "Illegal data type  : %d", type);
    throw CQXException(QX_ERROR_DATA_TYPE);
  }
  FUserArea[kAreaExtendType] = static_cast<unsigned char>(type);
}

void TDoubleArray::SetDispType(int scale, int rounding) {
  display_scale_ = scale;
  display_rounding_ = rounding;
  FUserArea[kAreaScale] = static_cast<unsigned char>(scale);
  FUserArea[kAreaRounding] = static_cast<unsigned char>(rounding);
}

// Decimals

TNumericArray* TNumericArray::CopyArray() {
  auto copy = std::make_unique<TNumericArray>();
  copy->copy_block(*this, false);
  copy->info_ = info_;
  return copy.release();
}

TNumericArray* TNumericArray::MppCopyArray() {
  auto copy = std::make_unique<TNumericArray>();
  copy->copy_block(*this, true);
  copy->info_ = info_;
  return copy.release();
}

long TNumericArray::GetMemSize() const {
  return TBaseArray::GetMemSize() + static_cast<long>(sizeof(TNumericArray) - sizeof(TBaseArray));
}

Numeric TNumericArray::GetDecimal(int index) const {
  check_index("GetDecimal", index);
  return values()[index];
}

void TNumericArray::PutDecimal(int index, const Numeric& value) {
  check_index("PutDecimal", index);
  values()[index] = value;
}

void TNumericArray::SetDecimalInfo(const NumericInfo& info) {
  info_ = info;
  FUserArea[kAreaScale] = static_cast<unsigned char>(info.scale);
  FUserArea[kAreaRounding] = static_cast<unsigned char>(info.rounding);
}

// By type

int ArrayDataTypeEx(const TBaseArray& array) {
  switch (array.GetDataType()) {
    case QX_DT_INTEGER: return QX_DT_INTEGER;
    case QX_DT_STRING: return QX_DT_STRING;
    case QX_DT_DECIMAL: return QX_DT_DECIMAL;
    case QX_DT_DOUBLE: {
      const int extended = array.FUserArea[TBaseArray::kAreaExtendType];
      return extended == 0 ? static_cast<int>(QX_DT_DOUBLE) : extended;
    }
    default:
      throw CQXException(report("ArrayDataTypeEx", QX_ERROR_TYPE_MISMATCH, "Invalid data type"));
  }
}

int ArrayUnitSize(const TBaseArray& array) {
  switch (array.GetDataType()) {
    case QX_DT_INTEGER: return sizeof(int);
    case QX_DT_DOUBLE: return sizeof(double);
    case QX_DT_STRING: return sizeof(long);
    case QX_DT_DECIMAL: return sizeof(Numeric);
    default: throw CQXException(QX_ERROR_TYPE_MISMATCH);
  }
}

void SetArrayDataTypeEx(TBaseArray& array, int type) {
  if (array.GetDataType() == QX_DT_DOUBLE && is_double_type(type)) {
    static_cast<TDoubleArray&>(array).SetExtendType(type);
  } else if (array.GetDataType() != type || type == QX_DT_DOUBLE) {
    throw CQXException(QX_ERROR_TYPE_MISMATCH);
  }
}

}  // namespace qxe
