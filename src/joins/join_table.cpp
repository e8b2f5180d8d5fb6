#include "joins/join_table.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include "storage/strings.h"
#include "tables/free_name.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr char kLayer[] = "AddJoinTable";

std::vector<int> key_list(const int* keys) {
  std::vector<int> list;
  while (static_cast<int>(list.size()) < TJoinTable::kMaxKeys && *keys >= 1) {
    list.push_back(*keys++);
  }
  return list;
}

/// Codes of what one side can lack.
struct SideCodes {
  const char* name;
  int no_table;
  int no_key;
  int no_set;
};

constexpr SideCodes kSideCodes[] = {
    {"Master", QX_ERROR_NO_MASTER_TABLE, QX_ERROR_NO_MASTER_KEY, QX_ERROR_NO_JOIN_SET},
    {"Slave", QX_ERROR_NO_SLAVE_TABLE, QX_ERROR_NO_SLAVE_KEY, QX_ERROR_NO_SLAVE_SET}};

}  // namespace

TJoinTable::TJoinTable(const TTableCollection& tables, int id, const JoinRequest& request)
    : outer_(request.outer) {
  char unique[kNameSize];
  if (tables.GenTableName(request.name, unique) < 0) {
    throw CQXException(
        report(kLayer, QX_ERROR_GEN_TABLE_NAME, "Invalid Parameter : TblName(%s)", request.name));
  }
  table_id_ = id;
  set_name(unique);
  std::vector<int> keys[] = {key_list(request.sides[0].keys), key_list(request.sides[1].keys)};
  if (keys[0].empty() || keys[0].size() != keys[1].size()) {
    throw CQXException(report(kLayer, QX_ERROR_FILTER_INDEX, "Illegal KeyCount (%zu, %zu)",
                              keys[0].size(), keys[1].size()));
  }
  for (int side = 0; side < kSides; ++side) {
    sides_[side] = SetupSide(tables, side, request.sides[side], std::move(keys[side]));
  }
  SetupJoinFilters();
  AssignJoinFilterNames();
}

TJoinTable::Side TJoinTable::SetupSide(const TTableCollection& tables, int side,
                                       const JoinRequest::Side& wanted,
                                       std::vector<int> keys) const {
  const SideCodes& codes = kSideCodes[side];
  TBaseTable* const table = tables.find(wanted.table);
  if (table == nullptr || table->GetType() != TableKind::kReal) {
    throw CQXException(
        report(kLayer, codes.no_table, "No Such Table(%s): %d", codes.name, wanted.table));
  }
  auto& real = static_cast<TRealTable&>(*table);
  for (const int key : keys) {
    if (real.FilterID2Pos(key) >= 0) continue;
    const int code = keys.size() == 1 ? codes.no_key : QX_ERROR_FILTER_INDEX;
    throw CQXException(report(kLayer, code, "No Such Filter(%s): %d", codes.name, key));
  }
  const int set = wanted.set < 0 ? real.GetCurrentSetID() : wanted.set;
  if (real.GetSet(set) == nullptr) {
    throw CQXException(report(kLayer, codes.no_set, "No Such Set(%s): %d", codes.name, set));
  }
  Side result{&real, set, std::move(keys), {}};
  for (int i = 0; i < real.GetNFilter(); ++i) {
    const TFilter& filter = *real.filter_at(i);
    result.filters.push_back({filter.FFilterID, filter.FFilterName});
  }
  return result;
}

std::vector<const TFilter*> TJoinTable::key_columns(int side) const {
  std::vector<const TFilter*> columns;
  for (const int key : key_ids(side)) columns.push_back(parent(side).GetFilter(key));
  return columns;
}

void TJoinTable::SetupJoinFilters() {
  KeySide keys[] = {{key_columns(0), parent(0).GetSet(parent_set(0))},
                    {key_columns(1), parent(1).GetSet(parent_set(1))}};
  for (size_t i = 0; i < keys[0].columns.size(); ++i) {
    if (keys[0].columns[i]->VL->GetDataType() == keys[1].columns[i]->VL->GetDataType()) continue;
    throw CQXException(report(kLayer, QX_ERROR_FILTER_INDEX, "Illegal data type"));
  }
  parent(0).CheckMergeFilterTVL(true);
  parent(1).CheckMergeFilterTVL(true);
  key_ = std::make_unique<JoinKey>(keys[0], keys[1]);
  RegNewSet({QX_JOIN_MASTER, {SideRows(*keys[0].rows), SideRows(*keys[1].rows)}});
}

JoinSet TJoinTable::MakeJoin(JoinSource source) const {
  return outer_ ? MakeOuterJoin(std::move(source), *key_) : MakeInnerJoin(std::move(source), *key_);
}

// Filters

void TJoinTable::AssignJoinFilterNames() {
  std::vector<Filter*> filters;
  for (Side& side : sides_) {
    for (Filter& filter : side.filters) filters.push_back(&filter);
  }
  std::unordered_set<std::string_view> taken;
  for (size_t i = 0; i < filters.size(); ++i) {
    std::string& name = filters[i]->name;
    if (taken.contains(name)) {
      char base[kNameSize];
      char unique[kFreeNameSize];
      if (!verifySeedName(name.c_str(), base)) throw CQXException(QX_ERROR_FILTER_NAME);
      first_free_name(
          base, static_cast<int>(i), [&](int j) { return filters[static_cast<size_t>(j)]->name; },
          unique);
      if (strlen(unique) >= kNameSize) {
        throw CQXException(report("GenFilterName", QX_ERROR_FILTER_NAME,
                                  "Invalid Parameter : GenName(%s)", unique));
      }
      name = unique;
    }
    taken.insert(name);
  }
}

int TJoinTable::GetNFilter() const {
  return static_cast<int>(sides_[0].filters.size() + sides_[1].filters.size());
}

int TJoinTable::missing_filter(int id) const {
  return id < 1 || id > GetNFilter() ? QX_ERROR_NO_JOIN_FILTER : QX_ERROR_NO_FILTER;
}

int TJoinTable::JFilterID2Pos(int id, int* side) const {
  if (id < 1 || id > GetNFilter()) {
    return report("JFilterID2Pos", QX_ERROR_NO_JOIN_FILTER, "No Such Filter: %d", id);
  }
  const int first = static_cast<int>(sides_[0].filters.size());
  *side = id <= first ? QX_JOIN_MASTER : QX_JOIN_SLAVE;
  return *side == QX_JOIN_MASTER ? id - 1 : id - 1 - first;
}

int TJoinTable::GetJoinSrcFltID(int id, int* side) const {
  const int position = JFilterID2Pos(id, side);
  return position < 0 ? position : sides_[*side].filters[static_cast<size_t>(position)].id;
}

TFilter* TJoinTable::GetFilter(int id) {
  int side = 0;
  const int source = GetJoinSrcFltID(id, &side);
  return source < 0 ? nullptr : parent(side).GetFilter(source);
}

const char* TJoinTable::GetJoinFilterName(int id) const {
  int side = 0;
  const int position = JFilterID2Pos(id, &side);
  if (position < 0) return nullptr;
  return sides_[side].filters[static_cast<size_t>(position)].name.c_str();
}

int TJoinTable::GetFilterIDList(int* out) const {
  for (int id = 1; id <= GetNFilter(); ++id) *out++ = id;
  return GetNFilter();
}

int TJoinTable::FilterID2Name(int id, char* table, char* filter) {
  const char* const own_name = GetJoinFilterName(id);
  snprintf(table, kNameSize, "%s", own_name == nullptr ? "" : name());
  snprintf(filter, kNameSize, "%s", own_name == nullptr ? "" : own_name);
  return own_name == nullptr ? QX_ERROR_NO_JOIN_FILTER : 0;
}

int TJoinTable::GetFilterIDFromName(const char* name, int side) {
  if (side > QX_JOIN_SLAVE) OppositeSide(side);  // throws
  int id = 0;
  for (int own = 0; own < kSides; ++own) {
    for (const Filter& filter : sides_[own].filters) {
      ++id;
      if ((side < 0 || side == own) && filter.name == name) return id;
    }
  }
  return report("GetFilterIDFromName", QX_ERROR_NO_FILTER, "No Filter");
}

// Its parents

bool TJoinTable::isQXTShared() const {
  const auto is_shared = [](const Side& side) {
    return side.table->shared() || side.table->isQXTShared();
  };
  return is_shared(sides_[0]) || is_shared(sides_[1]);
}

bool TJoinTable::refers_to(const TRealTable& target) const {
  return sides_[0].table == &target || sides_[1].table == &target;
}

bool TJoinTable::has_key(const TRealTable& target, int filter) const {
  return std::any_of(std::begin(sides_), std::end(sides_), [&](const Side& side) {
    return side.table == &target &&
           std::find(side.keys.begin(), side.keys.end(), filter) != side.keys.end();
  });
}

void TJoinTable::detach_from(const TRealTable& target) {
  if (refers_to(target)) key_->own_filters();
}

long TJoinTable::GetMemSize() const {
  long size = static_cast<long>(sizeof(TJoinTable) + sizeof(JoinKey)) + key_->GetMemSize();
  size += static_cast<long>(set_ids_.capacity() * sizeof(int));
  for (const JoinSet& set : sets_) size += set.GetMemSize();
  for (const Side& side : sides_) {
    size += static_cast<long>(side.filters.capacity() * sizeof(Filter));
    size += static_cast<long>(side.keys.capacity() * sizeof(int));
  }
  return size;
}

}  // namespace qxe
