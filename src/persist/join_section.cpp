// The section of a join table, behind the head: what is joined, its sets side by side, the key's
// two filters, and which filters of the parents it shows.
#include <algorithm>

#include "joins/join_table.h"
#include "persist/data_version.h"
#include "persist/section_carrier.h"
#include "persist/section_check.h"
#include "persist/table_form.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr int kLists = kSides * TJoinTable::kMaxKeys;
/// Up to this version a list of keys has 8 places instead, and attributes of sets 100 places.
constexpr int kLastWithShortKeys = 23;
constexpr int kShortKeys = 8;
constexpr int kFixedSets = 100;
/// Up to this one a list of filters has 256 places instead of 512.
constexpr int kLastWithShortFilters = 20;
constexpr int kShortFilters = 256;

std::vector<int> read_ints(SectionReader& reader, int count) {
  reader.check_left(sizeof(int), count);
  std::vector<int> values(static_cast<size_t>(count));
  reader.read(values.data(), sizeof values[0], count);
  return values;
}

void write_ints(SectionWriter& writer, const std::vector<int>& values) {
  writer.write(values.data(), sizeof values[0], static_cast<long>(values.size()));
}

}  // namespace

// Saving

void JoinKey::SaveFilters(SectionWriter& writer) {
  for (int side = 0; side < kSides; ++side) {
    TFilter& own = filter(side);
    own.FFilterID = kFilterID + side;  // as the section numbers them
    own.SaveFilter(writer);
    own.FFilterID = kFilterID;
  }
}

void TJoinTable::SaveTable(SectionWriter& writer, const TableForm& form) {
  write_field(writer, GetTableKind());
  SaveBaseInfo(writer, {.id = form.id, .versions = form.versions});
  save_sources(writer);
  save_sets(writer);
  key_->SaveFilters(writer);
  save_filters(writer);
}

void TJoinTable::save_sources(SectionWriter& writer) const {
  write_field(writer, outer_ ? 1 : 0);
  write_field(writer, key_count());
  write_ints(writer, {parent(0).id(), parent(1).id()});
  std::vector<int> keys(kLists);
  for (int side = 0; side < kSides; ++side) {
    std::copy(key_ids(side).begin(), key_ids(side).end(), keys.begin() + side * kMaxKeys);
  }
  write_ints(writer, keys);
  write_ints(writer, {parent_set(0), parent_set(1)});
}

void TJoinTable::save_sets(SectionWriter& writer) {
  std::vector<int> counts;
  std::vector<int> directions;
  for (const JoinSet& set : sets_) {
    counts.push_back(set.row_count);
    directions.push_back(set.direction);
  }
  write_ints(writer, counts);
  write_ints(writer, directions);
  for (int side = 0; side < kSides; ++side) {
    for (JoinSet& set : sets_) {
      set.driving_index();  // files have it always
      for (auto* const arrays : {&set.rows, &set.index, &set.unmatched}) {
        (*arrays)[side]->SaveArray(writer);
      }
    }
  }
}

void TJoinTable::save_filters(SectionWriter& writer) const {
  std::vector<int> ids(static_cast<size_t>(kSides) * kMaxFilters);
  for (int side = 0; side < kSides; ++side) {
    const auto& filters = sides_[side].filters;
    std::transform(filters.begin(), filters.end(), ids.begin() + side * kMaxFilters,
                   [](const Filter& filter) { return filter.id; });
  }
  write_ints(writer, {static_cast<int>(sides_[0].filters.size()),
                      static_cast<int>(sides_[1].filters.size())});
  write_ints(writer, ids);
}

// Loading

TJoinTable::TJoinTable(SectionReader& reader, const TTableCollection& tables)
    : outer_(false), sides_{} {
  const int version = LoadBaseInfo(reader);
  load_sources(reader, tables, version);
  load_sets(reader, version);
  key_ = std::make_unique<JoinKey>(reader);
  load_filters(reader, version);
  LoadComplete();
}

void TJoinTable::load_sources(SectionReader& reader, const TTableCollection& tables, int version) {
  outer_ = read_field<int>(reader) != 0;
  const int count = read_field<int>(reader);
  const int places = version <= kLastWithShortKeys ? kShortKeys : kMaxKeys;
  check_format(count >= 1 && count <= places);
  const std::vector<int> parents = read_ints(reader, kSides);
  const std::vector<int> keys = read_ints(reader, kSides * places);
  const std::vector<int> sets = read_ints(reader, kSides);
  for (int side = 0; side < kSides; ++side) {
    const auto place = static_cast<size_t>(side);
    // Parents come before their joins, so they have been read.
    TBaseTable* const table = tables.find(parents[place]);
    check_format(table != nullptr && table->GetType() == TableKind::kReal);
    const auto first = keys.begin() + side * places;
    sides_[side] = {
        static_cast<TRealTable*>(table), sets[place], std::vector<int>(first, first + count), {}};
  }
}

void TJoinTable::load_sets(SectionReader& reader, int version) {
  const int places = version <= kLastWithShortKeys ? kFixedSets : set_count();
  check_format(set_count() <= places);
  const std::vector<int> counts = read_ints(reader, places);
  const std::vector<int> directions = read_ints(reader, places);
  sets_.resize(static_cast<size_t>(set_count()));
  for (size_t i = 0; i < sets_.size(); ++i) {
    check_format(counts[i] >= 0 && (directions[i] == 0 || directions[i] == 1));
    sets_[i].row_count = counts[i];
    sets_[i].direction = directions[i];
  }
  for (int side = 0; side < kSides; ++side) {
    for (JoinSet& set : sets_) {
      for (auto* const arrays : {&set.rows, &set.index, &set.unmatched}) {
        (*arrays)[side] = std::make_unique<TSetArray>();
        (*arrays)[side]->LoadArray(reader);
      }
    }
  }
}

JoinKey::JoinKey(SectionReader& reader) {
  for (int side = 0; side < kSides; ++side) {
    filters_[side] = std::make_unique<TFilter>(reader, kFilterID + side, true);
    filters_[side]->FFilterID = kFilterID;
  }
  size_ = filters_[0]->VL->FArraySize;
  check_format(filters_[1]->VL->FArraySize <= size_);
  delete filters_[1]->VL;
  filters_[1]->VL = filters_[0]->VL;
  filters_[1]->FVLBorrowed = true;
  for (int side = 0; side < kSides; ++side) {
    const TIntArray& own = *filters_[side]->PVL;
    numbers_[side] = {own.PIntAr(), nullptr, size_, own.FArraySize - 1, false};
  }
}

void TJoinTable::load_filters(SectionReader& reader, int version) {
  constexpr char kDropped[] = "#DROPPED";  // the name it had is not in the file
  const int places = version <= kLastWithShortFilters ? kShortFilters : kMaxFilters;
  const std::vector<int> counts = read_ints(reader, kSides);
  const std::vector<int> ids = read_ints(reader, kSides * places);
  for (int side = 0; side < kSides; ++side) {
    const int count = counts[static_cast<size_t>(side)];
    check_format(count >= 0 && count <= places);
    for (int i = 0; i < count; ++i) {
      const int id = ids[static_cast<size_t>(side * places + i)];
      check_format(id > 0);
      const bool exists = parent(side).FilterID2Pos(id) >= 0;
      sides_[side].filters.push_back(
          {id, exists ? parent(side).GetFilter(id)->FFilterName : kDropped});
    }
  }
}

// What was read fits together: no number of it leads out of an array.

namespace {

const int* numbers(const TSetArray& array) {
  return array.PIntAr();
}

void check_rows(const TSetArray& rows, int lowest, int highest) {
  const int* const row = numbers(rows);
  check_format(std::all_of(row, row + rows.FArraySize,
                           [=](int value) { return value >= lowest && value <= highest; }));
}

/// Starts of driving rows: from 0 upward, each with a join row at least.
void check_driving(const JoinSet& set) {
  const TSetArray& index = *set.index[set.direction];
  const int count = set.rows[set.direction]->FArraySize;
  check_format(index.FArraySize == count);
  check_format((count == 0) == (set.row_count == 0));
  if (count == 0) return;
  const int* const starts = numbers(index);
  check_format(starts[0] == 0 && starts[count - 1] < set.row_count);
  check_format(std::adjacent_find(starts, starts + count, std::greater_equal<>()) ==
               starts + count);
}

/// Starts of keys: from 0 up to the number of driven rows.
void check_driven(const JoinSet& set, int keys) {
  const TSetArray& index = *set.index[set.driven()];
  check_format(index.FArraySize == keys + 1L);
  const int* const starts = numbers(index);
  check_format(starts[0] == 0 && starts[keys] == set.rows[set.driven()]->FArraySize);
  check_format(std::is_sorted(starts, starts + keys + 1));
}

/// Each driving row has the join rows of its key's run. In a run that stands for rows without
/// partner they have one each.
void check_pairs(const JoinSet& set, const KeyNumbers& key) {
  const TSetArray& driving = *set.rows[set.direction];
  const int* const rows = numbers(driving);
  const int* const starts = numbers(*set.index[set.direction]);
  const int* const runs = numbers(*set.index[set.driven()]);
  const int* const driven = numbers(*set.rows[set.driven()]);
  for (int i = 0; i < driving.FArraySize; ++i) {
    const int end = i + 1 < driving.FArraySize ? starts[i + 1] : set.row_count;
    const int number = key(rows[i]);
    const int size = runs[number + 1] - runs[number];
    const bool alone = size > 0 && driven[runs[number]] == 0;
    check_format(end - starts[i] == (alone ? 1 : size));
  }
}

/// A run stands for rows without partner as a whole or not at all, and then has a place for each
/// driving row.
void check_missing(const JoinSet& set, const KeyNumbers& key, int keys) {
  const TSetArray& driving = *set.rows[set.direction];
  const int* const rows = numbers(driving);
  const int* const runs = numbers(*set.index[set.driven()]);
  const int* const driven = numbers(*set.rows[set.driven()]);
  const Block<int> uses = make_cleared_block<int>(keys);
  for (int i = 0; i < driving.FArraySize; ++i) ++uses[key(rows[i])];
  for (int number = 0; number < keys; ++number) {
    const long missing = std::count(driven + runs[number], driven + runs[number + 1], 0);
    check_format(missing == 0 || (missing == runs[number + 1] - runs[number] &&
                                  missing == uses[number] && number > 0));
  }
}

}  // namespace

void TJoinTable::LoadComplete() {
  const int lowest = outer_ ? 0 : 1;
  for (int side = 0; side < kSides; ++side) {
    check_format(key_->filter(side).PVL->FArraySize == parent(side).TotalRecs() + 1L);
  }
  for (const JoinSet& set : sets_) {
    for (int side = 0; side < kSides; ++side) {
      check_rows(*set.rows[side], lowest, parent(side).TotalRecs());
      check_rows(*set.unmatched[side], 1, parent(side).TotalRecs());
    }
    const KeyNumbers& key = key_->side(set.direction);
    check_driving(set);
    check_driven(set, key_->size());
    check_pairs(set, key);
    if (outer_) check_missing(set, key, key_->size());
  }
  AssignJoinFilterNames();
}

}  // namespace qxe
