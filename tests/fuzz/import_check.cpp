#include "fuzz/import_check.h"

#include <algorithm>
#include <vector>

#include "fuzz/call_outcome.h"
#include "fuzz/engine_state.h"
#include "import/source_file.h"
#include "parallel/smpengine.h"
#include "qxe.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "tables/realtables.h"

namespace qxe::test {

namespace {

/// The files of one import: a directory for the catalog and the log, another for the data.
class Files {
 public:
  void write_data(const std::string& data) const {
    write_file(data_ / "d.dat", data);
    write_file(data_ / "none.dat", "");
  }

  /// The catalog is written for each call, because it may name itself as the log.
  int import(const std::string& catalog, const char* data) const {
    write_file(catalogs_ / "c.cat", catalog);
    return RQXAddCatalogFileEx2(catalogs_.path().c_str(), "c.cat", data_.path().c_str(), data, "t");
  }

  int append(const std::string& catalog, int table, int pos, int rows) const {
    write_file(catalogs_ / "c.cat", catalog);
    return RQXAppendCatalogFileEx2(table, pos, rows, catalogs_.path().c_str(), "c.cat",
                                   data_.path().c_str(), "d.dat");
  }

  /// Outcome of the last call.
  Outcome outcome(int status) const { return outcome_of(status, catalogs_.path(), "c.cat"); }

 private:
  TempDir catalogs_;
  TempDir data_;
};

const Files& files() {
  static const Files files;
  return files;
}

/// All that is done with an input, in one form of the engine.
struct Outcomes {
  Outcome import;
  Outcome append;       // of all lines to a table without rows
  Outcome part_append;  // of some rows, to the imported table if there is one
};

long count_lines(const ImportInput& input) {
  const std::string& data = input.data;
  const auto feeds = std::count(data.begin(), data.end(), '\n');
  return feeds + (data.empty() || data.back() == '\n' ? 0 : 1);
}

bool tells_mismatch(const std::string& log, size_t line) {
  return log.compare(line, 16, "FILTER MISMATCH ") == 0 ||
         log.compare(line, 19, "ITEM SIZE MISMATCH ") == 0;
}

/// Each line of the data is a row or was refused.
void check_lines(const ImportInput& input, int table, const std::string& log) {
  if (input.refused == Refused::kAny) return;
  const long lines = std::max(count_lines(input) - (input.title_line ? 1 : 0), 0L);
  long refused = 0;
  for (size_t begin = 0; begin < log.size(); begin = log.find('\n', begin) + 1) {
    refused += input.refused == Refused::kLogged || tells_mismatch(log, begin) ? 1 : 0;
  }
  const int rows = real_table(table).TotalRecs();
  if (rows + refused != lines) {
    finding("lines are neither stored nor refused", std::to_string(lines) + " lines, " +
                                                        std::to_string(rows) + " rows, log\n" +
                                                        printable(log));
  }
}

/// A table's row pointers, column by column.
std::vector<std::vector<int>> numbers_of(int table) {
  const TRealTable& real = real_table(table);
  std::vector<std::vector<int>> numbers;
  for (int i = 0; i < real.GetNFilter(); ++i) {
    const int* const own = real.filter_at(i)->PVL->PIntAr();
    numbers.emplace_back(own, own + real.TotalRecs() + 1);
  }
  return numbers;
}

/// Writes `count` rows of `source`, NULLs behind its last one, to row `pos` of `target` and on.
void write_numbers(std::vector<int>& target, const std::vector<int>& source, int pos, int count) {
  if (count == 0) return;
  const auto before = static_cast<size_t>(pos) - 1;
  const auto rows = static_cast<size_t>(count);
  target.resize(std::max(target.size(), before + rows + 1), 0);
  for (size_t i = 1; i <= rows; ++i) target[before + i] = i < source.size() ? source[i] : 0;
}

/// An append of `lines` rows to a table without rows stores what the import into `imported` has
/// stored, and NULLs for lines left out.
void check_appended(int table, const std::vector<std::vector<int>>& imported, size_t lines) {
  auto wanted = imported;
  for (auto& numbers : wanted) numbers.resize(lines + 1, 0);
  if (numbers_of(table) != wanted) finding("an append differs from the import", table_image(table));
}

/// An append of all lines finds what the import has found. A title counts as a line here, so no
/// line is left over.
Outcome append_all(const ImportInput& input, const Outcome& import, int imported) {
  const int table = files().import(input.catalog, "none.dat");
  Outcome made = files().outcome(table);
  if (table < 0) return made;
  const std::string before = table_image(table);
  const int lines = static_cast<int>(count_lines(input));
  Outcome outcome = files().outcome(files().append(input.catalog, table, -1, lines));
  outcome.table = table_image(table);
  check_well_formed(table, outcome.status >= 0);
  const int status = imported < 0 ? import.status : lines;
  if (outcome.status != status || outcome.log != import.log) {
    finding("an append ends otherwise than the import", to_text(outcome) + to_text(import));
  }
  if (imported >= 0) {
    check_appended(table, numbers_of(imported), static_cast<size_t>(lines));
  } else if (outcome.table != before) {
    finding("a failed append has changed the table", before);
  }
  return outcome;
}

/// An append of some rows to the imported table itself, over its rows or behind them. All values
/// are there already, so numbers are the same as before.
Outcome append_part(const ImportInput& input, int table) {
  const auto before = numbers_of(table);
  const int pos = 1 + input.append_pos % (real_table(table).TotalRecs() + 3);
  Outcome outcome = files().outcome(files().append(input.catalog, table, pos, input.append_rows));
  if (outcome.status != input.append_rows) finding("an append fails", to_text(outcome));
  auto wanted = before;
  for (size_t i = 0; i < wanted.size(); ++i) {
    write_numbers(wanted[i], before[i], pos, input.append_rows);
  }
  if (numbers_of(table) != wanted) finding("appended rows are others", to_text(outcome));
  return outcome;
}

/// The same to a table without rows, where a fault may stand behind the rows wanted.
Outcome append_part_of_bad(const ImportInput& input) {
  const int table = files().import(input.catalog, "none.dat");
  if (table < 0) return files().outcome(table);
  Outcome outcome = files().outcome(files().append(input.catalog, table, -1, input.append_rows));
  outcome.table = table_image(table);
  check_well_formed(table, outcome.status >= 0);
  return outcome;
}

Outcomes run(const ImportInput& input, const WorkDivision& division) {
  ENG->set_division(division);
  RQXClearDB();
  drained_ring();
  files().write_data(input.data);
  const int id = files().import(input.catalog, "d.dat");
  Outcomes outcomes{files().outcome(std::min(id, 0)), {}, {}};
  if (id >= 0) {
    check_well_formed(id, true);
    check_lines(input, id, outcomes.import.log);
    outcomes.import.table = table_image(id);
  }
  outcomes.append = append_all(input, outcomes.import, id);
  outcomes.part_append = id >= 0 ? append_part(input, id) : append_part_of_bad(input);
  return outcomes;
}

}  // namespace

bool shares_in_turn = false;

void check_import(const ImportInput& input) {
  constexpr long kWholeFile = 256 << 10;
  set_read_block(kWholeFile);
  const Outcomes serial = run(input, {1, 1, 1});
  set_read_block(input.read_block);
  const Outcomes parallel = run(input, {input.workers, 1, input.bytes_per_worker, shares_in_turn});
  expect_same("the import", serial.import, parallel.import);
  expect_same("the append of all lines", serial.append, parallel.append);
  expect_same("the append of some rows", serial.part_append, parallel.part_append);
}

}  // namespace qxe::test
