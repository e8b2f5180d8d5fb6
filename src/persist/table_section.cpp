// The table section: a head that every kind of table has; of a real table its sets, its filters and
// the sorted sets of high-speed search.
#include <algorithm>

#include "persist/data_version.h"
#include "persist/section_carrier.h"
#include "persist/section_check.h"
#include "persist/table_form.h"
#include "tables/realtables.h"

namespace qxe {

// Head

void TBaseTable::SaveBaseInfo(SectionWriter& writer, const TableForm& form) const {
  constexpr int kFirstSet = 1;
  writer.write(form.versions, sizeof form.versions[0], 4);
  write_field(writer, form.id);
  write_name(writer, table_name_);
  const int sets = form.one_set ? 1 : set_count();
  write_field(writer, sets);
  writer.write(set_ids_.data(), sizeof set_ids_[0], sets);
  write_field(writer, form.one_set ? kFirstSet : MaxSetID);
  write_field(writer, form.one_set ? kFirstSet : current_set_id_);
}

namespace {

std::vector<int> read_set_ids(SectionReader& reader, int version, int count) {
  const int stored = version <= kLastWithFixedSetIds ? kFixedSetIds : count;
  check_format(count <= stored);
  reader.check_left(sizeof(int), stored);
  std::vector<int> ids(static_cast<size_t>(stored));
  reader.read(ids.data(), sizeof ids[0], stored);
  ids.resize(static_cast<size_t>(count));
  return ids;
}

/// Ids are issued upward from 1.
bool are_issued(const std::vector<int>& ids, int last_issued) {
  const auto out_of_order = [](int left, int right) { return left >= right; };
  return ids.front() > 0 && ids.back() <= last_issued &&
         std::adjacent_find(ids.begin(), ids.end(), out_of_order) == ids.end();
}

}  // namespace

int TBaseTable::LoadBaseInfo(SectionReader& reader) {
  const int version = read_versions(reader, "LoadBaseInfo");
  table_id_ = read_field<int>(reader);
  read_name(reader, table_name_);
  const int sets = read_field<int>(reader);
  check_format(sets >= 1 && sets <= kMaxSets);
  set_ids_ = read_set_ids(reader, version, sets);
  MaxSetID = read_field<int>(reader);
  current_set_id_ = read_field<int>(reader);
  check_format(table_id_ > 0 && are_issued(set_ids_, MaxSetID));
  check_format(std::binary_search(set_ids_.begin(), set_ids_.end(), current_set_id_));
  return version;
}

// Real table

void TRealTable::SaveTable(SectionWriter& writer, const TableForm& form) {
  MppCondenseTable();
  write_field(writer, GetTableKind());
  SaveBaseInfo(writer, form);
  save_sets(writer, form.one_set);
  save_filters(writer);
  save_sorted_sets(writer);
}

void TRealTable::save_sets(SectionWriter& writer, bool one_set) {
  const size_t sets = one_set ? 1 : sets_.size();
  for (size_t i = 0; i < sets; ++i) sets_[i]->SaveArray(writer);
}

void TRealTable::save_filters(SectionWriter& writer) {
  write_field(writer, GetNFilter());
  write_field(writer, MaxFilterIDs);
  for (const auto& filter : filters_) {
    write_field(writer, filter->FFilterID);
    filter->SaveFilter(writer);
    write_field(writer, static_cast<int>(filter->high_speed()));
  }
}

TRealTable::TRealTable(SectionReader& reader) {
  const int version = LoadBaseInfo(reader);
  load_sets(reader);
  load_filters(reader, version);
  if (version >= kFirstWithSortedSets) load_sorted_sets(reader);
}

void TRealTable::load_sets(SectionReader& reader) {
  for (int i = 0; i < set_count(); ++i) {
    sets_.push_back(std::make_unique<TSetArray>());
    TSetArray& rows = *sets_.back();
    const unsigned highest = rows.LoadNumbers(reader, 1);
    check_format(rows.FArraySize == 0 || highest < static_cast<unsigned>(TotalRecs()));
  }
  check_root_set(root_set());
}

void TRealTable::load_filters(SectionReader& reader, int version) {
  const int count = read_field<int>(reader);
  check_format(count >= 0 && count <= kMaxFilters);
  MaxFilterIDs = read_field<int>(reader);
  for (int i = 0; i < count; ++i) {
    const int id = read_field<int>(reader);
    check_format(id > 0 && id <= MaxFilterIDs && FilterID2Pos(id) < 0);
    filters_.push_back(std::make_unique<TFilter>(reader, id));
    TFilter& filter = *filters_.back();
    check_format(filter.PVL->FArraySize == TotalRecs() + 1L);
    if (version >= kFirstWithSortedSets) {
      filter.HighSpeedSearchEnable(read_field<int>(reader) != 0);
    }
  }
}

}  // namespace qxe
