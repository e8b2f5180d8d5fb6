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
  if (PVL->FArraySize <= FTVLMinRows) return 0;
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

int TFilter::update_rows(int start, int count, void* values, bool fill, const TSetArray& set) {
  if (count <= 0) return 0;
  return with_family(*VL, [&]<class Array>(Array& list) {
    using Value = typename Family<Array>::Value;
    auto* const source = static_cast<Value*>(values);
    bool found = false;
    int position = 0;
    Value value = Family<Array>::null();
    for (int i = 0; i < count; ++i) {
      if (i == 0 || !fill) {
        value = prepared<Array>(source + i);
        position = find_pos(value, view_of(list), &found);
      }
      const int row = set.PIntAr()[start + i];
      if (found) {
        PVL->PutInt(row, position);
        continue;
      }
      AllocTVL();
      if (append_tail(put_form(value), row) < 1) return -1;
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
  for (int i = 1; i <= used; ++i) live[static_cast<size_t>(i)] = pv[TVLRow->GetInt(i)] == -i;

  CompiledColumn tail = with_family(*TVL, [&](auto& own) { return compile_tail(own, used, mpp); });
  auto tail_list = make_value_array(TVL->GetDataType(), tail.unique, std::move(tail.value_list));
  TIntArray positions(used + 1, std::move(tail.row_pointers));
  const auto point_live_rows = [&](auto&& number_of) {
    for (int i = 1; i <= used; ++i) {
      if (live[static_cast<size_t>(i)]) pv[TVLRow->GetInt(i)] = number_of(i);
    }
  };
  point_live_rows([](int) { return 0; });  // out of the renumbering's way
  std::unique_ptr<TBaseArray> merged;
  try {
    merged = (mpp ? MppAccommodationMain : AccommodationMain)(*PVL, *VL, positions, *tail_list);
  } catch (...) {
    point_live_rows([](int i) { return -i; });  // the values go on waiting
    throw;
  }
  if (merged != nullptr) {
    copy_type_info(*VL, *merged);
    delete VL;
    VL = merged.release();
  }
  point_live_rows([&](int i) { return positions.GetInt(i); });
  FTVLUsed = 0;
  if (TVL->GetDataType() == QX_DT_STRING) static_cast<TStrArray*>(TVL)->clear_pool();
  return 1;
}

}  // namespace qxe
