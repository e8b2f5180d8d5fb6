// Any bytes as a database or table file. The first line of the input chooses: kind, workers, one
// byte each. What is loaded must be the same whoever has read it, must work, and must come back the
// same when it is saved and loaded again.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/call_outcome.h"
#include "fuzz/choices.h"
#include "fuzz/engine_state.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/import_check.h"
#include "joins/join_table.h"
#include "parallel/smpengine.h"
#include "qxe.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe::test {
namespace {

enum class Kind { kDatabase, kTable };

constexpr Choice<Kind> kKinds[] = {{'D', Kind::kDatabase}, {'T', Kind::kTable}};

struct FileInput {
  std::string bytes;
  Kind kind = Kind::kDatabase;
  WorkDivision division;
};

FileInput input_of(std::string_view bytes) {
  const size_t line_end = std::min(bytes.find('\n'), bytes.size());
  Chooser chooser(bytes.substr(0, line_end));
  FileInput input;
  input.bytes = bytes.substr(std::min(line_end + 1, bytes.size()));
  input.kind = chooser.from(kKinds).stands_for;
  input.division.workers = 2 + chooser.number() % 4;
  input.division.in_turn = shares_in_turn;
  return input;
}

const std::string& directory() {
  static const TempDir own;
  return own.path();
}

std::vector<int> table_ids() {
  std::vector<int> ids(static_cast<size_t>(RQXGetNTable()));
  if (!ids.empty()) RQXGetTableIDList(ids.data());
  return ids;
}

std::vector<int> set_ids(const TBaseTable& table) {
  std::vector<int> ids(static_cast<size_t>(table.set_count()));
  table.GetSetIDList(table.set_count(), ids.data());
  return ids;
}

void check_sets(int id) {
  const TRealTable& table = real_table(id);
  for (const int set : set_ids(table)) {
    const TSetArray& rows = *table.GetSet(set);
    for (int i = 0; i < rows.FArraySize; ++i) {
      const int row = rows.GetInt(i);
      if (row < 1 || row > table.TotalRecs()) finding("a set has a row beyond the table", "");
    }
  }
}

/// A table, its sets and marks.
std::string real_image(int id) {
  check_well_formed(id, false);
  check_sets(id);
  const TRealTable& table = real_table(id);
  std::string image = std::to_string(table.set_count()) + table_image(id);
  for (int i = 0; i < table.GetNFilter(); ++i) {
    const TFilter& filter = *table.filter_at(i);
    image += std::to_string(filter.FFilterID) + (filter.high_speed() ? "!" : " ");
    for (const int set : set_ids(table)) {  // in whatever order the marks were made
      const TSortedSetArray* const sorted = table.GetSet(set)->GetSortedSet(&filter);
      if (sorted == nullptr || sorted->set()->FArraySize == 0) continue;  // may be filled or not
      image += sorted->tainted() ? "tainted" : std::to_string(sorted->null_count());
    }
  }
  return image;
}

/// The pairs of all sets of a join, whose rows exist.
std::string join_image(const TJoinTable& join) {
  std::string image = join.name();
  for (const int id : set_ids(join)) {
    const JoinSet& set = *join.find_set(id);
    const JoinRows pairs = join.rows(set);
    image += " set " + std::to_string(id) + (set.direction == 0 ? ">" : "<");
    for (int side = 0; side < kSides; ++side) {
      std::vector<int> rows(static_cast<size_t>(pairs.count()));
      pairs.rows_of(side, 0, pairs.count(), rows.data());
      for (const int row : rows) {
        if (row < 0 || row > join.parent(side).TotalRecs()) {
          finding("a pair has a row beyond its table", std::to_string(row));
        }
        image += " " + std::to_string(row);
      }
    }
  }
  return image;
}

std::string database_image() {
  std::string image;
  for (const int id : table_ids()) {
    const TBaseTable& table = *ENG->collection()->find(id);
    image += table.GetType() == TableKind::kJoin ? join_image(static_cast<const TJoinTable&>(table))
                                                 : real_image(id);
  }
  return image;
}

Outcome load(const FileInput& input, const WorkDivision& division) {
  ENG->set_division(division);
  RQXClearDB();
  drained_ring();
  const bool database = input.kind == Kind::kDatabase;
  write_file(directory() + (database ? "/f.QXD" : "/f.QXT"), input.bytes);
  Outcome outcome;
  outcome.status =
      database ? RQXLoadDB(directory().c_str(), "f") : RQXLoadRealTable(directory().c_str(), "f");
  outcome.ring = drained_ring();
  outcome.table = database_image();
  if (outcome.status < 0 && outcome.ring.empty()) finding("a failure without a ring entry", "");
  if (outcome.status < 0 && RQXGetNTable() > 0) finding("a failed load has left a table", "");
  return outcome;
}

/// The calls that a client is likely to make with a table that it has loaded.
void use(int table) {
  int filters[TBaseTable::kMaxFilters + 1] = {};
  const int count = RQXGetFilterIDList(table, filters);
  filters[count] = -1;
  RQXExportAsCSV(table, 1, filters, -1, -1, directory().c_str(), "out.csv", '/');
  for (int i = 0; i < count; ++i) {
    RQXSortByField(table, filters[i], -1, QX_SORT_DESC);
    RQXSetNotReal(table, -1);
    char value[32] = "a";
    RQXSearchByField(table, filters[i], 1, QX_OPE_NEQ, value, value);
    RQXDupRealFilterEx(table, filters[i], QX_DT_STRING);
    RQXFillRealExIntR1(table, filters[i], 1, 1, 1, 7);  // one of these fits
    RQXFillRealExDblR1(table, filters[i], 1, 1, 1, 0.5);
    RQXFillRealExStrR1(table, filters[i], 1, 1, 1, value);
  }
  RQXInsertRealRows(table, 1, 2);
  RQXDeleteRealRows(table, 1, 1);
  RQXDeleteTable(RQXDuplicateRealTable("", table));
}

void use_join(int join) {
  int filters[TBaseTable::kMaxFilters + 1] = {};
  const int count = RQXGetFilterIDList(join, filters);
  filters[count] = 0;
  char name[] = "real";
  RQXDeleteTable(RQXConvertJoinToReal(name, join, -1, 1, 1, filters, 0));
  int ends[] = {filters[0], filters[std::max(count, 1) - 1]};
  int flags = QX_SUM_COUNT | QX_SUM_MAX;
  int digits = 2;
  RQXDeleteTable(RQXNonCubeSum(join, 1, std::min(count, 2), ends, 1, ends, &flags, &digits));
  RQXSetOpeReal(join, QX_SET_AND, 1, -1);
  int table = 0, set = 0;
  for (const int side : {QX_JOIN_MASTER, QX_JOIN_SLAVE}) {
    RQXPutJoinSetToParent(join, side, 1, &table, &set);
  }
  RQXReturnSet2SlaveTable(join, &table);
}

/// Saves the database and returns its file.
std::string saved() {
  char place[512] = "";
  directory().copy(place, sizeof place - 1);
  if (RQXSaveDBAs(place, "again") < 0) finding("a database cannot be saved", drained_ring());
  return read_file(directory() + "/again.QXD");
}

void reload() {
  if (RQXLoadDB(directory().c_str(), "again") < 0) {
    finding("a saved database is refused", drained_ring());
  }
}

/// Saved and loaded, the database is the same, and so is its next file.
void save_again() {
  saved();  // tidies up
  const std::string wanted = database_image();
  reload();
  if (database_image() != wanted) finding("a database has changed in its file", printable(wanted));
  const std::string file = saved();
  reload();
  if (saved() != file) finding("a file changes when it is loaded and saved", printable(wanted));
}

void check_file(const FileInput& input) {
  const Outcome serial = load(input, {1, 1, 1});
  const Outcome parallel = load(input, input.division);
  expect_same("the load", serial, parallel);
  if (parallel.status < 0) return;
  for (const int table : table_ids()) {
    const bool is_join = ENG->collection()->find(table)->GetType() == TableKind::kJoin;
    use(table);
    if (is_join) use_join(table);
  }
  database_image();
  save_again();
}

}  // namespace
}  // namespace qxe::test

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qxe::test::check_file(qxe::test::input_of({reinterpret_cast<const char*>(data), size}));
  return 0;
}
