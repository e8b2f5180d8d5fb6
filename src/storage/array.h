// Typed arrays: every column value, row number and set is held in one of four classes over a common
// base. An array knows its element width, its allocation and how to copy and measure itself; what
// its values mean is the business of the filter and the set.
#pragma once

#include <string.h>

#include <memory>
#include <utility>

#include "frame/base/error_ring.h"
#include "frame/base/memory.h"

namespace qxe {

class SectionReader;
class SectionWriter;

/// A new array is allocated exactly: `n` itself. Throws QX_ERROR_NEGATIVE_SIZE.
long CalcMargin(long n);
/// Room for `n` elements that will go on growing: n + n / 8 + 10000.
long CalcMargin2(long n);

class TBaseArray : NonCopyable {
 public:
  static constexpr long kMaxBytes = 40'000'000'000;
  static constexpr int kUserAreaSize = 64;
  // Bytes of the attribute block with a meaning of their own; the others are the client's.
  static constexpr int kAreaExtendType = 0;
  static constexpr int kAreaScale = 6;
  static constexpr int kAreaRounding = 7;

  TBaseArray() = default;
  virtual ~TBaseArray();

  /// Deep copy, allocated exactly; the caller owns it.
  virtual TBaseArray* CopyArray() { return this; }
  /// The same with the block copied by the worker pool.
  virtual TBaseArray* MppCopyArray() { return this; }
  /// Copies one element into `buffer`, returns its width; a string at most 4095 characters and a
  /// terminator, returning its length.
  virtual int GetData(int, void*) const { return 0; }
  /// Address of one element; of a string its text.
  virtual const void* GetAddress(int) const { return ""; }
  virtual void PutData(int, const void*) {}
  virtual void AppendData(const void* value);
  /// Gives back what is allocated beyond the elements in use.
  virtual void AdjustMemArea();
  /// Writes the array section: what the array is, its elements, a text list's pool.
  virtual void SaveArray(SectionWriter& writer);
  /// Makes this new array what the section says. A failure leaves it fit for nothing but deletion.
  virtual void LoadArray(SectionReader& reader);
  /// Data type code of the class: 2, 3, 6, 8; 0 for the base.
  virtual int GetDataType() const { return 0; }
  /// Bytes of the object and, unless borrowed, its blocks.
  virtual long GetMemSize() const;
  /// Bytes of its blocks that belong to a shared memory image, which GetMemSize leaves out.
  virtual long GetBorrowedSize() const;

  /// Sets the number of elements in use; grows the allocation to exactly `n` when it is short.
  void SetArraySize(int n);
  /// Allocates room for `n` elements in all, and more for those that will follow.
  void reserve(long n);
  /// Reallocates to `n` elements; 0 is taken as 1000, an empty allocation is never made.
  void SetAllocSize(long n);

  const void* data() const { return data_; }
  bool not_owned() const { return not_owned_; }

  int FUnitSize = 0;    // bytes per element
  int FArraySize = 0;   // elements in use
  long FAllocSize = 0;  // elements allocated
  unsigned char FUserArea[kUserAreaSize] = {};

 protected:
  void InitArray(int unit, int rows, bool clear);
  void adopt(int unit, int rows, void* block);
  /// Makes this array's block and attribute block a copy of `source`'s; copies with the pool when
  /// `parallel`.
  void copy_block(const TBaseArray& source, bool parallel);
  void check_index(const char* operation, int index) const;
  size_t load_head(SectionReader& reader);

  void* data_ = nullptr;
  bool not_owned_ = false;  // the blocks belong to a shared memory image
};

/// The part that integers, doubles and decimals have in common.
template <class V>
class FixedArray : public TBaseArray {
 public:
  using Value = V;

  FixedArray() { FUnitSize = sizeof(V); }
  FixedArray(int rows, bool clear) { InitArray(sizeof(V), rows, clear); }
  FixedArray(int rows, Block<V> block) { adopt(sizeof(V), rows, block.release()); }

  int GetData(int index, void* buffer) const override {
    check_index("GetData", index);
    memcpy(buffer, values() + index, sizeof(V));
    return sizeof(V);
  }
  const void* GetAddress(int index) const override {
    check_index("GetAddress", index);
    return values() + index;
  }
  void PutData(int index, const void* value) override {
    check_index("PutData", index);
    memcpy(values() + index, value, sizeof(V));
  }

  /// Gives the block away; the array is empty then.
  Block<V> release_block() {
    FArraySize = 0;
    FAllocSize = 0;
    return Block<V>(static_cast<V*>(std::exchange(data_, nullptr)));
  }

  V* values() { return static_cast<V*>(data_); }
  const V* values() const { return static_cast<const V*>(data_); }
};

class TIntArray : public FixedArray<int> {
 public:
  static constexpr int kNameSize = 256;

  using FixedArray::FixedArray;
  TIntArray* CopyArray() override;
  TIntArray* MppCopyArray() override;
  /// LoadArray that also tells the largest distance above `first`, taken as unsigned: when it is
  /// below n, all elements lie within n numbers from `first` on.
  unsigned LoadNumbers(SectionReader& reader, int first);
  int GetDataType() const override { return QX_DT_INTEGER; }
  long GetMemSize() const override;

  void PutData(int index, const void* value) override;
  void AppendData(const void* value) override;
  void SetArraySize(int n);

  int GetInt(int index) const;
  void PutInt(int index, int value);
  const int* GetIntPtr(int index) const;
  /// The raw elements, for loops that have checked their range. Who only reads them takes the
  /// constant form: it leaves what is known about their order.
  int* PIntAr() { return values(); }
  const int* PIntAr() const { return values(); }
  int* values() {
    if (counted_up_ != 0) counted_up_ = 0;  // no store for row pointers, which workers share
    return FixedArray::values();
  }
  const int* values() const { return FixedArray::values(); }

  /// Makes the elements 1, 2, 3, ... FArraySize.
  void InitAsSet();
  /// Whether the elements are 1, 2, 3, ... FArraySize: a set of all rows in their first order,
  /// whose elements a loop need not read. Looks at the elements only after a change and at those
  /// before the first misfit. Whoever keeps the address of PIntAr() must not write to it after this
  /// call.
  bool is_counted_up() const;
  /// Element `index`, not read where it is known to be `index` + 1: a single read of a column waits
  /// for one access to memory less.
  int element(int index) const { return index < counted_up_ ? index + 1 : values()[index]; }
  /// Drops the elements that are not above 0, keeping order.
  void Exclude0Rec();

 protected:
  /// For a fresh copy of `source`: what is known about the elements holds for it too.
  void take_order_of(const TIntArray& source) { counted_up_ = source.counted_up_; }

 public:
  const char* GetSetName() const { return set_name_; }
  void SetSetName(const char* name);

 private:
  char set_name_[kNameSize] = "";
  mutable int counted_up_ = 0;  // elements known to be 1, 2, 3, ...; every way to write lowers it
};

/// Floats, dates, times, dates with times: which of them stands in the attribute block.
class TDoubleArray : public FixedArray<double> {
 public:
  using FixedArray::FixedArray;
  TDoubleArray* CopyArray() override;
  TDoubleArray* MppCopyArray() override;
  void LoadArray(SectionReader& reader) override;
  int GetDataType() const override { return QX_DT_DOUBLE; }
  long GetMemSize() const override;

  double GetDouble(int index) const;
  void PutDouble(int index, double value);
  const double* GetDoublePtr(int index) const;

  /// 3, 4, 5 or 7; an unset type becomes 3.
  int GetExtendType();
  void SetExtendType(int type);
  void SetDispType(int scale, int rounding);
  int display_scale() const { return display_scale_; }
  void copy_display(const TDoubleArray& source);

 private:
  int display_scale_ = 0;
  int display_rounding_ = 0;
};

class TNumericArray : public FixedArray<Numeric> {
 public:
  static constexpr NumericInfo kDefaultInfo{6, QX_ROUND_HALFUP};

  TNumericArray() { SetDefaultDecimalInfo(); }
  TNumericArray(int rows, bool clear) : FixedArray(rows, clear) { SetDefaultDecimalInfo(); }
  TNumericArray(int rows, Block<Numeric> block) : FixedArray(rows, std::move(block)) {
    SetDefaultDecimalInfo();
  }
  TNumericArray* CopyArray() override;
  TNumericArray* MppCopyArray() override;
  void LoadArray(SectionReader& reader) override;
  int GetDataType() const override { return QX_DT_DECIMAL; }
  long GetMemSize() const override;

  Numeric GetDecimal(int index) const;
  void PutDecimal(int index, const Numeric& value);
  void SetDefaultDecimalInfo() { SetDecimalInfo(kDefaultInfo); }
  void SetDecimalInfo(const NumericInfo& info);
  void SetDecimalInfo(int scale, int rounding) { SetDecimalInfo(NumericInfo{scale, rounding}); }
  const NumericInfo& GetDecimalInfo() const { return info_; }
  int GetScale() const { return info_.scale; }
  int GetRoundingMode() const { return info_.rounding; }

 private:
  NumericInfo info_{};
};

/// Strings: elements are 8-byte offsets into a pool of terminated texts. The pool only grows; a
/// text that was overwritten stays in it until a sweep.
class TStrArray : public TBaseArray {
 public:
  static constexpr int kMaxText = 4095;  // longest text of a single write or read

  TStrArray() { FUnitSize = sizeof(long); }
  TStrArray(int rows, bool clear);
  /// Takes over a block of pointers and copies their texts, in order, into a pool of exact size.
  TStrArray(int rows, Block<const char*> texts);
  /// Takes over ready offsets and the pool they point into.
  TStrArray(int rows, Block<long> offsets, Block<char> pool, long poolUsed);
  ~TStrArray() override;

  TStrArray* CopyArray() override;
  TStrArray* MppCopyArray() override;
  int GetData(int index, void* buffer) const override;
  const void* GetAddress(int index) const override { return GetPChar(index); }
  void PutData(int index, const void* value) override {
    PutPChar(index, static_cast<const char*>(value));
  }
  void AppendData(const void* value) override;
  void AdjustMemArea() override;
  void SaveArray(SectionWriter& writer) override;
  void LoadArray(SectionReader& reader) override;
  int GetDataType() const override { return QX_DT_STRING; }
  long GetMemSize() const override;
  long GetBorrowedSize() const override;

  const char* GetPChar(int index) const;
  /// As GetPChar, past one leading byte of every element but element 0.
  const char* GetPChar2(int index) const;
  /// Throws QX_ERROR_STRING_SIZE above 4095 characters.
  void PutPChar(int index, const char* text);
  void SetDirty() { swept_ = false; }
  /// Makes the pool hold exactly the present texts, once each, in element order.
  void Sweep();
  /// Empties the pool but for the empty text at offset 0, which every element then reads.
  void clear_pool();
  /// Room for `bytes` more bytes of texts in the pool, terminators included.
  void reserve_pool(long bytes);
  /// Puts a text behind the others in the pool, which has room for it. Its offset, for an element
  /// yet to be written.
  long add_text(const char* text);

  long* offsets() { return static_cast<long*>(data_); }
  const long* offsets() const { return static_cast<const long*>(data_); }
  const char* pool() const { return pool_; }
  long pool_used() const { return FPCLast; }

 private:
  void grow_pool(long bytes);
  TStrArray* copied(bool parallel);

  char* pool_ = nullptr;
  long pool_size_ = 0;
  long FPCLast = 0;  // bytes of the pool in use
  bool swept_ = false;
};

inline int ArrayDataType(const TBaseArray& array) {
  return array.GetDataType();
}
/// Data type as a client sees it: 2 to 8. Throws QX_ERROR_TYPE_MISMATCH for the bare base class.
int ArrayDataTypeEx(const TBaseArray& array);
int ArrayUnitSize(const TBaseArray& array);
/// Accepts the class's own code, and 3, 4, 5 or 7 for a double array.
void SetArrayDataTypeEx(TBaseArray& array, int type);
/// Equal sizes, offsets and swept pools.
bool CompareStrArray(TBaseArray& left, TBaseArray& right);
/// Equal data types, sizes, element widths and elements.
bool CheckSame(TBaseArray& left, TBaseArray& right);

/// A deep copy that frees itself.
template <class Array>
std::unique_ptr<Array> copy_of(Array& array) {
  return std::unique_ptr<Array>(static_cast<Array*>(array.CopyArray()));
}

}  // namespace qxe
