#include "joins/join_key.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "joins/combination_numbers.h"
#include "search/compiler.h"
#include "storage/family.h"
#include "tables/converted_list.h"

namespace qxe {

JoinKey::JoinKey(const KeySide& master, const KeySide& slave) {
  if (master.columns.size() == 1) {
    number_values(*master.columns[0], *slave.columns[0]);
  } else {
    number_combinations(master, slave);
  }
}

namespace {

const NumericInfo* decimal_info(const TBaseArray& list) {
  if (list.GetDataType() != QX_DT_DECIMAL) return nullptr;
  return &static_cast<const TNumericArray&>(list).GetDecimalInfo();
}

/// Row pointers without their column's attribute block.
std::unique_ptr<TIntArray> copied_rows(const TFilter& column) {
  std::unique_ptr<TIntArray> rows(column.PVL->MppCopyArray());
  memset(rows->FUserArea, 0, sizeof rows->FUserArea);
  return rows;
}

/// Values that have become NULL, as they do not fit the scale, get a number above all others: they
/// pair with nothing, and not with NULL either.
void set_apart_lost_values(ConvertedList& converted, int old_values) {
  int* const numbers = converted.numbers.get();
  if (std::find(numbers + 1, numbers + old_values, 0) == numbers + old_values) return;
  const Numeric above_all = {std::numeric_limits<unsigned long>::max(),
                             std::numeric_limits<long>::max()};  // more digits than a decimal has
  std::replace(numbers + 1, numbers + old_values, 0, converted.list->FArraySize);
  converted.list->AppendData(&above_all);
  converted.same_numbers = false;
}

/// The value list of a slave's column at its master's scale, where that is another one.
ConvertedList rescaled(const TFilter& master, const TFilter& slave) {
  const NumericInfo* const wanted = decimal_info(*master.VL);
  if (wanted == nullptr || wanted->scale == decimal_info(*slave.VL)->scale) return {};
  ConvertedList converted = convert_list(*slave.VL, QX_DT_DECIMAL, *wanted, true);
  set_apart_lost_values(converted, slave.VL->FArraySize);
  return converted;
}

}  // namespace

void JoinKey::number_values(const TFilter& master, const TFilter& slave) {
  const ConvertedList list = rescaled(master, slave);
  if (list.list != nullptr) {  // which can have made values equal, so the rows are numbered anew
    std::unique_ptr<TIntArray> pv[] = {copied_rows(master), converted_rows(*slave.PVL, list)};
    memset(pv[1]->FUserArea, 0, sizeof pv[1]->FUserArea);
    return merge_columns(pv, *master.VL, *list.list);
  }
  MatchedLists matched = MppMatchLists(*master.VL, *slave.VL);
  size_ = matched.size;
  maps_[0] = std::move(matched.map1);
  maps_[1] = std::move(matched.map2);
  sources_[0] = &master;
  sources_[1] = &slave;
  for (int side = 0; side < kSides; ++side) {
    const TFilter& source = *sources_[side];
    numbers_[side] = {std::as_const(*source.PVL).PIntAr(), maps_[side].get(), source.VL->FArraySize,
                      source.PVL->FArraySize - 1, source.condensed()};
  }
}

namespace {

/// Numbers of a rescaled list's old values: its own, and behind them those of `map` (null: none).
Block<int> composed(const ConvertedList& list, int old_values, const int* map) {
  Block<int> numbers = make_block<int>(old_values);
  for (int i = 0; i < old_values; ++i) {
    numbers[i] = map == nullptr ? list.numbers[i] : map[list.numbers[i]];
  }
  return numbers;
}

}  // namespace

void JoinKey::number_combinations(const KeySide& master, const KeySide& slave) {
  std::unique_ptr<TIntArray> pv[kSides];
  for (int side = 0; side < kSides; ++side) {
    const TFilter& any = *(side == 0 ? master : slave).columns[0];
    pv[side] = std::make_unique<TIntArray>(any.PVL->FArraySize, true);
  }
  CombinationNumbers combinations(*master.rows, *slave.rows);
  for (size_t i = 0; i < master.columns.size(); ++i) {
    const TFilter& first = *master.columns[i];
    const TFilter& second = *slave.columns[i];
    const ConvertedList list = rescaled(first, second);
    const TBaseArray& values = list.list == nullptr ? *second.VL : *list.list;
    MatchedLists matched = MppMatchLists(*first.VL, values);
    if (list.list != nullptr) {
      matched.map2 = composed(list, second.VL->FArraySize, matched.map2.get());
    }
    combinations.add({*first.PVL, matched.map1.get()}, {*second.PVL, matched.map2.get()},
                     matched.size);
  }
  const int groups = combinations.number_rows(*pv[0], *pv[1]);
  auto values = std::make_unique<TIntArray>(groups + 1, false);
  std::iota(values->PIntAr(), values->PIntAr() + groups + 1, 0);  // 0: a row of neither set
  adopt(pv, std::move(values));
}

void JoinKey::merge_columns(std::unique_ptr<TIntArray> (&pv)[kSides], TBaseArray& values0,
                            TBaseArray& values1) {
  auto merged = MppAccommodationMain(*pv[0], values0, *pv[1], values1);
  if (merged == nullptr) merged.reset(values0.MppCopyArray());
  adopt(pv, std::move(merged));
}

void JoinKey::adopt(std::unique_ptr<TIntArray> (&pv)[kSides], std::unique_ptr<TBaseArray> values) {
  std::unique_ptr<TFilter> filters[] = {std::make_unique<TFilter>(kFilterID, "#MASTER"),
                                        std::make_unique<TFilter>(kFilterID, "#SLAVE")};
  size_ = values->FArraySize;
  filters[1]->VL = values.get();
  filters[1]->FVLBorrowed = true;
  filters[1]->PVL = pv[1].release();
  filters[0]->adopt({std::move(pv[0]), std::move(values)});
  for (int side = 0; side < kSides; ++side) {
    filters_[side] = std::move(filters[side]);
    const TIntArray& own = *filters_[side]->PVL;
    numbers_[side] = {own.PIntAr(), nullptr, size_, own.FArraySize - 1, false};
    maps_[side].reset();
    sources_[side] = nullptr;
  }
}

void JoinKey::own_filters() {
  if (sources_[0] == nullptr) return;
  std::unique_ptr<TIntArray> pv[] = {copied_rows(*sources_[0]), copied_rows(*sources_[1])};
  merge_columns(pv, *sources_[0]->VL, *sources_[1]->VL);
}

TFilter& JoinKey::filter(int side) {
  OppositeSide(side);  // throws for what is no side
  own_filters();
  return *filters_[side];
}

long JoinKey::GetMemSize() const {
  long size = 0;
  for (int side = 0; side < kSides; ++side) {
    if (filters_[side] != nullptr) size += filters_[side]->GetMemSize();
    if (maps_[side] != nullptr) size += static_cast<long>(sizeof(int)) * numbers_[side].values;
  }
  return size;
}

}  // namespace qxe
