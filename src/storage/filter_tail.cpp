// The tail list of a filter: pending values of single rows, and their merge into the value list.
#include <algorithm>

#include "search/compiler.h"
#include "search/find_pos.h"
#include "storage/family.h"
#include "storage/filters.h"
#include "storage/setarray.h"
#include "storage/strings.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

// A tail above this makes the scan and the merge dear; a table of few rows is compiled faster anew.
constexpr int kMaxTail = 10000;
constexpr int kMinRows = 100;

}  // namespace

void TFilter::InitTVL() {
  FTVLAlloc = 0;
  FTVLUsed = 0;
  FTVLMax = kMaxTail;
  FTVLMinRows = kMinRows;
}

int TFilter::CalcTVLSize() const {
  const int size = std::min(FTVLMax, PVL->FArraySize - 1);
  return FTVLMinRows > size ? 0 : size;
}

int TFilter::CheckTVLUse(int count) const {
  if (PVL->FArraySize <= FTVLMinRows || FVLBorrowed) return 0;
  if (TVL == nullptr) return CalcTVLSize() < count ? 0 : 1;
  if (FTVLAlloc <= count) return 0;
  return count >= FTVLAlloc - FTVLUsed ? 2 : 1;
}

void TFilter::AllocTVL() {
  if (TVL != nullptr || VL == nullptr || CalcTVLSize() == 0) return;
  if (!is_data_type(VL->GetDataType())) {
    report("AllocTVL", QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(%d)",
           VL->GetDataType());
    throw CQXException(QX_ERROR_DATA_TYPE);
  }
  const int capacity = CalcTVLSize() + 1;
  std::unique_ptr<TBaseArray> tail = with_family(*VL, [&]<class Array>(Array&) {
    auto array = std::make_unique<Array>(capacity, true);
    if constexpr (std::is_same_v<Array, TStrArray>) {
      array->clear_pool();
    } else {
      array->values()[0] = Family<Array>::null();
    }
    return std::unique_ptr<TBaseArray>(std::move(array));
  });
  if (VL->GetDataType() == QX_DT_DOUBLE) SetArrayDataTypeEx(*tail, QX_DT_DOUBLE);
  TVLRow = new TIntArray(capacity, true);
  TVL = tail.release();
  FTVLAlloc = capacity;
  FTVLUsed = 0;
}

int TFilter::append_tail(const void* value, int row) {
  if (FTVLUsed >= FTVLAlloc) return -1;
  TVL->PutData(FTVLUsed + 1, value);
  ++FTVLUsed;
  PVL->PutInt(row, -FTVLUsed);
  TVLRow->PutInt(FTVLUsed, row);
  return FTVLUsed;
}

namespace {

/// What PutData takes: the text itself, or the address of the value.
const void* put_form(const char* const& text) {
  return text;
}
template <class Value>
const void* put_form(const Value& value) {
  return &value;
}

/// Bytes that a value takes in a pool of texts.
long text_size(const char* text) {
  return static_cast<long>(strlen(text)) + 1;
}
template <class Value>
long text_size(const Value&) {
  return 0;
}

/// A client's value ready to be looked up: tail blanks cut when asked for, NaN made NULL.
template <class Array>
typename Family<Array>::Value prepared(typename Family<Array>::Value* value) {
  if constexpr (std::is_same_v<Array, TStrArray>) {
    char* const text = const_cast<char*>(*value);  // the client's buffer may be cut in place
    if (text != nullptr && TTableCollection::m_nCutLastSpace != 0) DelLastSpc(text);
  }
  return Family<Array>::normalized(*value);
}

}  // namespace

/// Whether the tail has room for as many more entries; makes the tail and the room for their texts.
template <class Array>
bool TFilter::reserve_tail(long entries, [[maybe_unused]] long text_bytes) {
  if (entries == 0) return true;
  AllocTVL();
  if (entries >= FTVLAlloc - FTVLUsed) return false;
  if constexpr (std::is_same_v<Array, TStrArray>) {
    static_cast<TStrArray&>(*TVL).reserve_pool(text_bytes);
  }
  return true;
}

int TFilter::update_rows(int start, int count, void* values, bool fill, const TSetArray& set) {
  if (count <= 0) return 0;
  return with_family(*VL, [&]<class Array>(Array& list) {
    auto* const source = static_cast<typename Family<Array>::Value*>(values);
    const int distinct = fill ? 1 : count;
    constexpr int kNew = -1;
    int single = 0;
    const Block<int> several = distinct > 1 ? make_block<int>(distinct) : nullptr;
    int* const numbers = distinct > 1 ? several.get() : &single;
    long news = 0;
    long text_bytes = 0;
    for (int i = 0; i < distinct; ++i) {
      const auto value = prepared<Array>(source + i);
      bool found = false;
      const int position = find_pos(value, view_of(list), &found);
      numbers[i] = found ? position : kNew;
      if (found) continue;
      ++news;
      text_bytes += text_size(value);
    }
    const long times = fill ? count : 1;  // each row has an entry of its own
    if (!reserve_tail<Array>(news * times, text_bytes * times)) return -1;
    // Nothing fails from here on.
    for (int i = 0; i < count; ++i) {
      const int row = set.PIntAr()[start + i];
      const int which = fill ? 0 : i;
      if (numbers[which] != kNew) {
        PVL->PutInt(row, numbers[which]);
      } else {
        append_tail(put_form(Family<Array>::normalized(source[which])), row);
      }
    }
    return 0;
  });
}

int TFilter::UpdateTVL(int start, int count, void* values, const TSetArray& set) {
  return update_rows(start, count, values, false, set);
}

int TFilter::UpdateTVLFill(int start, int count, void* value, const TSetArray& set) {
  return update_rows(start, count, value, true, set);
}

int TFilter::UseTVL(int start, int count, void* values, bool fill, bool mpp,
                    [[maybe_unused]] TRealTable* table, const TSetArray& set) {
  const int need = CheckTVLUse(count);
  if (need != 1) {
    const int merged = MergeTVL(mpp);
    if (need != 2 || merged == 0) return 0;
  }
  return update_rows(start, count, values, fill, set) == 0 ? 1 : 0;
}

namespace {

/// The pending values 0 to `used` as compile input: texts as pointers, others as they lie.
template <class Array>
CompiledColumn compile_tail(const Array& tail, int used, bool mpp) {
  const auto compile = mpp ? MppCompile : [](int n, int type, int width, const void* data) {
    return Compile(n, type, width, data);
  };
  const int type = tail.GetDataType();
  const int width = ArrayUnitSize(tail);
  if constexpr (std::is_same_v<Array, TStrArray>) {
    Block<const char*> texts = make_block<const char*>(used + 1);
    for (int i = 0; i <= used; ++i) texts[i] = tail.GetPChar(i);
    return compile(used + 1, type, width, texts.get());
  } else {
    return compile(used + 1, type, width, tail.data());
  }
}

}  // namespace

int TFilter::MergeTVL(bool mpp) {
  const int used = FTVLUsed;
  if (used == 0) return 0;
  if (!is_data_type(TVL->GetDataType())) {
    report("MergeTVL", QX_ERROR_DATA_TYPE, "Illegal data type");
    throw CQXException(QX_ERROR_DATA_TYPE);
  }
  // A row that was written again with a known value has left its entry behind.
  int* const pv = PVL->PIntAr();
  std::vector<char> live(static_cast<size_t>(used) + 1, 0);
  for (int i = 1; i <= used; ++i)
    live[static_cast<size_t>(i)] = pv[TVLRow->GetInt(i)] == -i ? 1 : 0;

  CompiledColumn tail = with_family(*TVL, [&](auto& own) { return compile_tail(own, used, mpp); });
  const auto point_live_rows = [&](auto&& number_of) {
    for (int i = 1; i <= used; ++i) {
      if (live[static_cast<size_t>(i)]) pv[TVLRow->GetInt(i)] = number_of(i);
    }
  };
  point_live_rows([](int) { return 0; });  // out of the renumbering's way
  Block<int> numbers;
  try {
    numbers = numbers_of(std::move(tail.value_list), tail.unique, mpp);
  } catch (...) {
    point_live_rows([](int i) { return -i; });  // the values go on waiting
    throw;
  }
  point_live_rows([&](int i) { return numbers[tail.row_pointers[i]]; });
  FTVLUsed = 0;
  if (TVL->GetDataType() == QX_DT_STRING) static_cast<TStrArray*>(TVL)->clear_pool();
  return 1;
}

}  // namespace qxe
