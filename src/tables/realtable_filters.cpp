// Filters of a real table: finding, naming, adding, moving and dropping them.
#include <limits.h>

#include <algorithm>

#include "parallel/smpengine.h"
#include "search/compiler.h"
#include "storage/family.h"
#include "storage/strings.h"
#include "tables/free_name.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

int TRealTable::FilterID2Pos(int id) const {
  for (size_t i = 0; i < filters_.size(); ++i) {
    if (filters_[i]->FFilterID == id) return static_cast<int>(i);
  }
  return QX_ERROR_NO_FILTER;
}

int TRealTable::FilterName2Pos(const char* name) const {
  for (size_t i = 0; i < filters_.size(); ++i) {
    if (strcmp(filters_[i]->FFilterName, name) == 0) return static_cast<int>(i);
  }
  return QX_ERROR_NO_FILTER;
}

int TRealTable::FilterName2ID(const char* name) const {
  const int position = FilterName2Pos(name);
  return position < 0 ? position : filter_at(position)->FFilterID;
}

TFilter* TRealTable::GetFilter(int id) {
  const int position = FilterID2Pos(id);
  if (position >= 0) return filter_at(position);
  report("GetFilter", QX_ERROR_NO_FILTER, "No Such Filter: %d", id);
  return nullptr;
}

int TRealTable::GetFilterIDList(int* out) const {
  for (const auto& filter : filters_) *out++ = filter->FFilterID;
  return GetNFilter();
}

int TRealTable::FilterID2Name(int id, char* table, char* filter) {
  const int position = FilterID2Pos(id);
  qxe_strlcpy(table, position < 0 ? "" : name(), kNameSize);
  qxe_strlcpy(filter, position < 0 ? "" : filter_at(position)->FFilterName, kNameSize);
  return position < 0 ? position : 0;
}

int TRealTable::GetFilterIDFromName(const char* name, int) {
  const int id = FilterName2ID(name);
  return id < 0 ? report("GetFilterIDFromName", QX_ERROR_NO_FILTER, "No Filter") : id;
}

int TRealTable::GenFilterName(const char* seed, char* out) const {
  char base[kNameSize];
  if (!verifySeedName(seed, base)) {
    return report("GenFilterName", QX_ERROR_FILTER_NAME, "Invalid Parameter : SeedName(%s)", seed);
  }
  if (strcmp(base, "RecNo") == 0) qxe_strlcpy(base, "RECNO", kNameSize);
  char candidate[kFreeNameSize];
  first_free_name(
      base, GetNFilter(), [&](int i) { return filter_at(i)->FFilterName; }, candidate);
  if (strlen(candidate) >= kNameSize) {
    return report("GenFilterName", QX_ERROR_FILTER_NAME, "Invalid Parameter : GenName(%s)",
                  candidate);
  }
  qxe_strlcpy(out, candidate, kNameSize);
  return 0;
}

namespace {

bool is_valid_name(const char* name) {
  char cleaned[TBaseTable::kNameSize];
  return qxe_strlcpy(cleaned, name, sizeof cleaned) < sizeof cleaned && ToFileName(cleaned);
}

}  // namespace

bool TRealTable::has_room_for_filter() const {
  return GetNFilter() < kMaxFilters && MaxFilterIDs < INT_MAX;
}

int TRealTable::check_new_filter(const char* layer, const char* countText, const char* name) const {
  if (!has_room_for_filter()) {
    return report(layer, QX_ERROR_FILTER_COUNT, "%s", countText);
  }
  if (is_valid_name(name)) return 0;
  return report(layer, QX_ERROR_FILTER_NAME, "Invalid Parameter : FilterName(%s)", name);
}

int TRealTable::insert_filter(int pos, const char* name, Column column, int orgFilter) {
  char unique[kNameSize];
  const int status = GenFilterName(name, unique);
  if (status < 0) return status;
  auto filter = std::make_unique<TFilter>(MaxFilterIDs + 1, unique);
  filter->adopt(std::move(column));
  filter->FOrgFltID = orgFilter < 0 ? filter->FFilterID : orgFilter;
  const int place = std::clamp(pos, 0, GetNFilter());
  filters_.insert(filters_.begin() + place, std::move(filter));
  return ++MaxFilterIDs;
}

TFilter& TRealTable::add_blank_filter(const char* name) {
  raised(check_new_filter("AddFilter", "FilterCount overflow", name));
  char unique[kNameSize];
  qxe_strlcpy(unique, name, kNameSize);
  if (FilterName2Pos(name) >= 0) raised(GenFilterName(name, unique));
  filters_.push_back(std::make_unique<TFilter>(MaxFilterIDs + 1, unique));
  ++MaxFilterIDs;
  return *filters_.back();
}

int TRealTable::AddFilter(int pos, const char* name, Column column, int orgFilter) {
  const int status = check_new_filter("AddFilter", "FilterCount overflow", name);
  return status < 0 ? status : insert_filter(pos, name, std::move(column), orgFilter);
}

int TRealTable::AddFilter2(int pos, const char* name, int type, int rows, int unit,
                           const void* data, int orgFilter) {
  const int status = check_new_filter("AddFilter2", "FilterSize overflow", name);
  if (status < 0) return status;
  if (!is_data_type(type)) {
    return report("AddFilter2", QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(%d)", type);
  }
  const int width = with_family_of(type, []<class Array>(std::type_identity<Array>) {
    return static_cast<int>(sizeof(typename Family<Array>::Value));
  });
  if (unit != width) return report("AddFilter2", QX_ERROR_DATA_WIDTH, "Illegal data size");
  if (rows < 0) {
    return report("AddFilter2", QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(%d)", rows);
  }
  return insert_filter(pos, name,
                       compile_column(type, std::min(rows, TotalRecs()), TotalRecs(), data, true),
                       orgFilter);
}

int TRealTable::AddEmptyFilter(int pos, const char* name, int type, int orgFilter) {
  if (!has_room_for_filter()) {
    return report("AddEmptyFilter", QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  }
  if (!is_valid_name(name)) {
    return report("AddEmptyFilter", QX_ERROR_FILTER_NAME, "Illegal FilterName");
  }
  if (!is_data_type(type)) {
    return report("AddEmptyFilter", QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(%d)",
                  type);
  }
  return insert_filter(pos, name,
                       {std::make_unique<TIntArray>(TotalRecs() + 1, true), make_null_array(type)},
                       orgFilter);
}

int TRealTable::MoveFilter(int from, int to) {
  if (from < 0 || from >= GetNFilter()) {
    return report("MoveFilter", QX_ERROR_FILTER_INDEX, "Invalid Parameter : FromIndex");
  }
  if (to < 0 || to > GetNFilter()) {
    // Deliberate: a target out of range leaves an entry and means the nearer end.
    report("MoveFilter", QX_ERROR_FILTER_INDEX, "Invalid Parameter : ToIndex");
  }
  const auto first = filters_.begin();
  const int place = std::clamp(to, 0, GetNFilter() - 1);
  if (place > from) {
    std::rotate(first + from, first + from + 1, first + place + 1);
  } else {
    std::rotate(first + place, first + from, first + from + 1);
  }
  return 0;
}

const char* TRealTable::filter_name(int id) {
  const int position = FilterID2Pos(id);
  return position < 0 ? nullptr : filter_at(position)->FFilterName;
}

int TRealTable::DropFilter(int id) {
  const int position = FilterID2Pos(id);
  if (position < 0) {
    return report("DropFilter", QX_ERROR_NO_FILTER, "No Such Filter: %d", id);
  }
  const TTableCollection& tables = *ENG->collection();
  for (int i = 0; i < tables.count(); ++i) {
    if (tables.at(i).has_key(*this, id)) {
      return report("DropFilter", QX_ERROR_REFERRED, "Failed to refere table");
    }
  }
  if (find_cursor_.filter() == id) CloseFind();
  filters_.erase(filters_.begin() + position);
  return 0;
}

int TRealTable::SetFilterName(int id, const char* name) {
  const int position = FilterID2Pos(id);
  if (position < 0) {
    return report("SetFilterName", QX_ERROR_NO_FILTER, "No Such Filter: %d", id);
  }
  char cleaned[kNameSize];
  if (name == nullptr || qxe_strlcpy(cleaned, name, kNameSize) >= kNameSize ||
      !ToFileName(cleaned)) {
    return report("SetFilterName", QX_ERROR_FILTER_NAME, "Invalid Parameter : FilterName(%s)",
                  name == nullptr ? "" : name);
  }
  TFilter& filter = *filter_at(position);
  if (strcmp(filter.FFilterName, cleaned) == 0) return 0;
  char unique[kNameSize];
  const int status = GenFilterName(cleaned, unique);
  if (status >= 0) qxe_strlcpy(filter.FFilterName, unique, kNameSize);
  return status;
}

int TRealTable::CheckMergeFilterTVL(bool mpp) {
  int merged = 0;
  for (const auto& filter : filters_) merged |= filter->MergeTVL(mpp);
  return merged;
}

void TRealTable::settle_values() {
  CheckMergeFilterTVL(true);
  for (const auto& filter : filters_) {
    if (filter->VL->GetDataType() == QX_DT_STRING) static_cast<TStrArray*>(filter->VL)->Sweep();
  }
}

}  // namespace qxe
