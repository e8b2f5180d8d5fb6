#include "file_bytes.h"

#include <string.h>

#include <algorithm>
#include <limits>
#include <numeric>

namespace qxe::test {

namespace {

constexpr size_t kNameSize = 256;
constexpr size_t kAreaSize = 64;
constexpr size_t kFixedSetIds = 100;

class SectionBytes {
 public:
  SectionBytes(const Origin& origin, std::string bytes) : origin_(origin) {
    file_.bytes = std::move(bytes);
  }

  StoredFile take() { return std::move(file_); }

  void header() {
    if (!origin_.header) return;
    std::string bytes(256, '\0');
    bytes[0] = '\xff';
    bytes[1] = static_cast<char>(0x30 | (origin_.big_endian ? 8 : 4) | (origin_.word == 8 ? 2 : 1));
    bytes[2] = bytes[3] = 8;
    bytes[4] = static_cast<char>(origin_.char_code);
    pad();
    append(bytes.data(), 1, bytes.size());
  }

  template <class Value>
  void field(const std::vector<Value>& elements) {
    if (elements.empty()) return;
    pad();
    append(elements.data(), sizeof(Value), elements.size());
  }
  void field(int value) { field(std::vector<int>{value}); }
  void text(const std::string& content, size_t size) {
    std::vector<char> bytes(content.begin(), content.end());
    bytes.resize(size);
    field(bytes);
  }
  void name(const std::string& content) { text(content, kNameSize); }
  /// A size or offset of the machine.
  void words(const std::vector<int64_t>& values) {
    if (origin_.word == 8) return field(values);
    field(std::vector<int>(values.begin(), values.end()));
  }

  const Origin& origin() const { return origin_; }

 private:
  /// Fields begin behind as many zeros as the position has over a multiple of 8.
  void pad() {
    if (origin_.header) file_.bytes.append(file_.bytes.size() % 8, '\0');
  }
  void append(const void* elements, size_t size, size_t count) {
    file_.fields.push_back({file_.bytes.size(), size, count});
    const char* const from = static_cast<const char*>(elements);
    for (size_t i = 0; i < count; ++i) {
      std::string element(from + i * size, size);
      if (origin_.big_endian) std::reverse(element.begin(), element.end());
      file_.bytes += element;
    }
  }

  Origin origin_;
  StoredFile file_;
};

std::string area_bytes(const UserArea& area) {
  std::string bytes(kAreaSize, '\0');
  bytes[0] = static_cast<char>(area.type);
  bytes[6] = static_cast<char>(area.scale);
  bytes[7] = static_cast<char>(area.rounding);
  bytes[kAreaSize - 1] = static_cast<char>(area.last);
  return bytes;
}

void array_head(SectionBytes& out, int type, const UserArea& area, int unit, size_t count) {
  out.field(type);
  out.text(area_bytes(area), kAreaSize);
  out.field(unit);
  out.field(static_cast<int>(count));
  out.words({static_cast<int64_t>(count)});  // allocated
}

void array(SectionBytes& out, const std::vector<int>& values, const UserArea& area = {}) {
  array_head(out, 2, area, 4, values.size());
  out.field(values);
}

void array(SectionBytes& out, const std::vector<double>& values, const UserArea& area) {
  array_head(out, 3, area, 8, values.size());
  out.field(values);
}

void array(SectionBytes& out, const std::vector<Decimal128>& values, const UserArea& area) {
  array_head(out, 8, area, 16, values.size());
  out.field(values);
}

void array(SectionBytes& out, const std::vector<std::string>& values, const UserArea& area) {
  array_head(out, 6, area, out.origin().word, values.size());
  std::vector<int64_t> offsets;
  std::vector<char> pool;
  for (const std::string& value : values) {
    offsets.push_back(static_cast<int64_t>(pool.size()));
    pool.insert(pool.end(), value.c_str(), value.c_str() + value.size() + 1);
  }
  out.words(offsets);
  out.words({static_cast<int64_t>(pool.size())});
  out.field(pool);
}

void filter_section(SectionBytes& out, const StoredFilter& filter) {
  static constexpr int kTypes[] = {2, 3, 6, 8};
  out.field(filter.id);
  out.name(filter.name);
  out.field(filter.org_table);
  out.field(filter.org_filter);
  array(out, filter.pv, filter.pv_area);
  out.field(filter.vl_type != 0 ? filter.vl_type : kTypes[filter.vl.index()]);
  std::visit([&](const auto& values) { array(out, values, filter.vl_area); }, filter.vl);
}

void versions(SectionBytes& out) {
  out.field(std::vector<int>{16782850, out.origin().data_version, 1, 20170503});
}

/// One number for each set, or always a hundred.
void for_sets(SectionBytes& out, std::vector<int> numbers) {
  if (out.origin().data_version <= 23) numbers.resize(kFixedSetIds);
  out.field(numbers);
}

template <class Table>
void table_head(SectionBytes& out, int type, const Table& table) {
  out.field(type);
  versions(out);
  out.field(table.id);
  out.name(table.name);
  out.field(static_cast<int>(table.set_ids.size()));
  for_sets(out, table.set_ids);
  out.field(table.last_set);
  out.field(table.current_set);
}

void table_section(SectionBytes& out, const StoredTable& table) {
  table_head(out, table.type, table);
  for (const std::vector<int>& set : table.sets) array(out, set);
  out.field(static_cast<int>(table.filters.size()));
  out.field(table.last_filter);
  const bool marked = out.origin().data_version >= 23;
  for (const StoredFilter& filter : table.filters) {
    out.field(filter.id);
    filter_section(out, filter);
    if (marked) out.field(filter.high_speed);
  }
  if (!marked) return;
  out.field(static_cast<int>(table.marks.size()));
  for (const StoredMark& mark : table.marks) {
    out.field(mark.set);
    out.field(mark.filter);
    array(out, mark.rows);
    out.field(mark.nulls);
  }
}

/// Two lists, one behind the other, of `places` numbers each.
void both_lists(SectionBytes& out, std::vector<int> first, const std::vector<int>& second,
                size_t places) {
  first.resize(places);
  first.insert(first.end(), second.begin(), second.end());
  first.resize(2 * places);
  out.field(first);
}

void join_section(SectionBytes& out, const StoredJoin& join) {
  const int version = out.origin().data_version;
  table_head(out, 2, join);
  out.field(join.outer ? 1 : 0);
  out.field(1);  // columns of the key
  out.field(join.parents);
  both_lists(out, {join.keys[0]}, {join.keys[1]}, version <= 23 ? 8 : 32);
  out.field(std::vector<int>{1, 1});  // sets of the parents
  std::vector<int> counts, driving;
  for (const StoredJoinSet& set : join.sets) {
    counts.push_back(set.count);
    driving.push_back(set.driving);
  }
  for_sets(out, counts);
  for_sets(out, driving);
  for (const int side : {0, 1}) {
    for (const StoredJoinSet& set : join.sets) {
      array(out, set.sides[side].rows);
      array(out, set.sides[side].index);
      array(out, set.sides[side].unmatched);
    }
  }
  for (const StoredFilter& key : join.key_filters) filter_section(out, key);
  out.field(std::vector<int>{static_cast<int>(join.filters[0].size()),
                             static_cast<int>(join.filters[1].size())});
  both_lists(out, join.filters[0], join.filters[1], version <= 20 ? 256 : 512);
}

}  // namespace

StoredFile database_file(const std::vector<StoredTable>& tables, const Origin& origin,
                         const std::vector<StoredJoin>& joins) {
  SectionBytes out(origin, "");
  out.header();
  versions(out);
  out.field(!joins.empty() ? joins.back().id : !tables.empty() ? tables.back().id : 0);
  out.field(static_cast<int>(tables.size() + joins.size()));
  for (const StoredTable& table : tables) out.name(table.name);
  for (const StoredJoin& join : joins) out.name(join.name);
  for (const StoredTable& table : tables) table_section(out, table);
  for (const StoredJoin& join : joins) join_section(out, join);
  return out.take();
}

StoredFile table_file(const StoredTable& table, const Origin& origin) {
  return table_behind("", table, origin);
}

StoredFile table_behind(const std::string& bytes, const StoredTable& table, const Origin& origin) {
  SectionBytes out(origin, bytes);
  out.header();
  table_section(out, table);
  return out.take();
}

StoredTable table_of_all_types(int id, const std::string& name) {
  const double null = -std::numeric_limits<double>::infinity();
  const Decimal128 nan{0, std::numeric_limits<int64_t>::min()};
  return {.id = id,
          .name = name,
          .sets = {{1, 2, 3}, {3, 1}},
          .filters = {{1, "int", {0, 2, 0, 1}, std::vector<int>{INT32_MIN, -7, 2147483647}},
                      {2, "double", {0, 1, 1, 2}, std::vector<double>{null, -0.5, 1e300}},
                      {3, "date", {0, 0, 1, 0}, std::vector<double>{null, 45000}, {.type = 4}},
                      {5, "time", {0, 1, 2, 0}, std::vector<double>{null, 0.25, 0.5}, {.type = 5}},
                      {6,
                       "string",
                       {0, 2, 0, 1},
                       std::vector<std::string>{"", "a", "\xe3\x81\x82 long text"},
                       {.last = 9}},
                      {7, "moment", {0, 1, 0, 1}, std::vector<double>{null, 45000.75}, {.type = 7}},
                      {9,
                       "decimal",
                       {0, 2, 1, 0},
                       std::vector<Decimal128>{nan, {static_cast<uint64_t>(-125), -1}, {250, 0}},
                       {.scale = 2, .rounding = 4},
                       0,
                       {.last = 7},
                       4,
                       2}},
          .set_ids = {1, 4},
          .last_set = 6,
          .current_set = 4,
          .last_filter = 12};
}

std::vector<StoredJoin> joins_by_integers(int master, int slave) {
  const std::vector<int> values = {INT32_MIN, -7, 2147483647};
  const std::vector<int> numbers = {0, 2, 0, 1};
  const std::vector<int> filters = {1, 2, 3, 5, 6, 7, 9};
  StoredJoin inner{
      .id = slave + 1,
      .name = "inner",
      .outer = false,
      .parents = {master, slave},
      .keys = {1, 1},
      .sets = {},
      .key_filters =
          {{10000, "#MASTER", numbers, values},
           {.id = 10001, .name = "#SLAVE", .pv = numbers, .vl = values, .org_filter = 10000}},
      .filters = {filters, filters}};
  StoredJoin outer = inner;
  const StoredJoinSet::Side driven{{2, 3, 1}, {0, 1, 2, 3}};
  inner.sets = {{3, 0, {{{1, 2, 3}, {0, 1, 2}}, driven}}, {3, 0, {{{1, 3, 2}, {0, 1, 2}}, driven}}};
  inner.set_ids = {1, 2};
  inner.last_set = inner.current_set = 2;
  outer.id = slave + 2;
  outer.name = "outer";
  outer.outer = true;
  outer.sets = {{2, 0, {{{1, 3}, {0, 1}}, {{3, 1}, {0, 0, 1, 2}}}}};  // without NULL
  return {inner, outer};
}

}  // namespace qxe::test
