// Values of a real table: overwriting and filling.
#include <algorithm>

#include "search/compiler.h"
#include "storage/family.h"
#include "tables/realtables.h"

namespace qxe {

/// Values on their way into the rows of a set.
struct TRealTable::ValueEdit {
  const char* layer;
  int filter;
  int set;
  int start;  // position from 1
  int count;  // rows
  void* values;
  bool fill;  // one value for all rows
  bool mpp;
};

struct TRealTable::EditTarget {
  const TSetArray& set;
  TFilter& filter;
};

namespace {

/// Longer texts could not be read back whole by most calls.
bool has_long_text(char* const* texts, int count) {
  return std::any_of(texts, texts + count, [](const char* text) {
    return text != nullptr && strnlen(text, TStrArray::kMaxText + 1) > TStrArray::kMaxText;
  });
}

/// The way of large edits and small tables: the new values are compiled by themselves, the filter's
/// list takes them in, and the rows get their numbers.
void rewrite_rows(TFilter& filter, const int* rows, int count, const void* values, bool fill,
                  bool mpp) {
  const TBaseArray& list = *filter.VL;
  const int size = fill ? 1 : count;
  CompiledColumn news = mpp ? MppCompile(size, list.GetDataType(), ArrayUnitSize(list), values)
                            : Compile(size, list.GetDataType(), ArrayUnitSize(list), values);
  const Block<int> numbers = filter.numbers_of(std::move(news.value_list), news.unique, mpp);
  int* const pv = filter.PVL->PIntAr();
  // Position by position: a row that the set holds twice keeps the last value.
  for (int i = 0; i < count; ++i) pv[rows[i]] = numbers[news.row_pointers[fill ? 0 : i]];
}

}  // namespace

/// Finds set and filter and cuts the count to the set; nothing after logging, with the code in
/// `*status`.
std::optional<TRealTable::EditTarget> TRealTable::locate(ValueEdit& edit, int* status) const {
  const auto refuse = [&](const char* argument, int value) {
    *status = report(edit.layer, QX_ERROR_PARAMETER, "Invalid Parameter : %s(%d)", argument, value);
    return std::nullopt;
  };
  const int set_position = SetID2Pos(edit.set);
  if (set_position < 0) {
    *status = report(edit.layer, QX_ERROR_NO_SET_ID, "No Such Set: %d", edit.set);
    return std::nullopt;
  }
  const TSetArray& set = *sets_[static_cast<size_t>(set_position)];
  if (edit.values == nullptr) return refuse("PWData", 0);
  if (edit.start < 1 || edit.start > set.FArraySize) {
    return refuse("WriteStart", edit.start);
  }
  if (edit.count < 1) {
    return refuse("WriteCount", edit.count);
  }
  edit.count = std::min(edit.count, set.FArraySize - edit.start + 1);
  const int position = FilterID2Pos(edit.filter);
  if (position < 0) {
    *status = report(edit.layer, QX_ERROR_NO_FILTER, "No Such Filter: %d", edit.filter);
    return std::nullopt;
  }
  return EditTarget{set, *filter_at(position)};
}

int TRealTable::edit_values(ValueEdit edit) {
  int status = 0;
  const auto target = locate(edit, &status);
  if (!target) return status;
  TFilter& filter = target->filter;
  if (filter.VL->GetDataType() == QX_DT_STRING &&
      has_long_text(static_cast<char**>(edit.values), edit.fill ? 1 : edit.count)) {
    return report(edit.layer, QX_ERROR_STRING_SIZE, "StringSize overflow");
  }
  filter.check_changeable();
  const int start = edit.start - 1;
  if (filter.UseTVL(start, edit.count, edit.values, edit.fill, edit.mpp, this, target->set) == 0) {
    rewrite_rows(filter, target->set.PIntAr() + start, edit.count, edit.values, edit.fill,
                 edit.mpp);
  }
  filter.Taint();
  return edit.count;
}

int TRealTable::OverWriteEx(int filter, int set, int start, int count, void* data) {
  return edit_values({"OverWriteEx", filter, set, start, count, data, false, false});
}

int TRealTable::MppOverWriteEx(int filter, int set, int start, int count, void* data) {
  return edit_values({"OverWriteEx", filter, set, start, count, data, false, true});
}

int TRealTable::FillEx(int filter, int set, int start, int count, void* value) {
  return edit_values({"FillEx", filter, set, start, count, value, true, false});
}

int TRealTable::MppFillEx(int filter, int set, int start, int count, void* value) {
  return edit_values({"FillEx", filter, set, start, count, value, true, true});
}

namespace {

/// `count` decimals at another scale. QX_ERROR_PARAMETER for a bad `from`, QX_ERROR_DATA_SIZE when
/// one does not fit.
int rescale(const Numeric* values, int count, const NumericInfo& from, const NumericInfo& to,
            Numeric* out) {
  constexpr int kNull = 1;
  for (int i = 0; i < count; ++i) {
    const int result = RQXNumericRescale(values + i, &from, &to, out + i);
    if (result > kNull) return QX_ERROR_DATA_SIZE;
    if (result < 0) return QX_ERROR_PARAMETER;
  }
  return 0;
}

}  // namespace

int TRealTable::OverWriteExNumeric(int filter, int set, int start, int count, const Numeric* data,
                                   int scale, int rounding) {
  ValueEdit edit{"OverWriteExNumeric",       filter, set,  start, count,
                 const_cast<Numeric*>(data), false,  false};
  int status = 0;
  const auto target = locate(edit, &status);
  if (!target) return status;
  const TBaseArray& list = *target->filter.VL;
  if (list.GetDataType() != QX_DT_DECIMAL) {
    return report(edit.layer, QX_ERROR_TYPE_MISMATCH, "Illegal data type  : %d",
                  list.GetDataType());
  }
  const Block<Numeric> rescaled = make_block<Numeric>(edit.count);
  status = rescale(data, edit.count, {scale, rounding},
                   static_cast<const TNumericArray&>(list).GetDecimalInfo(), rescaled.get());
  if (status < 0) {
    return report(edit.layer, status, "Invalid Parameter : scale(%d)", scale);
  }
  edit.values = rescaled.get();
  return edit_values(edit);
}

}  // namespace qxe
