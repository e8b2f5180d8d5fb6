// Any bytes as a file of one column: added as a filter, appended to it, and as a list of values to
// search for. The first line of the input chooses: type, workers, bytes worth a worker, bytes read
// at once, rows of the table, rows of the file that count, row to append at, one byte each.
#include <algorithm>
#include <string>
#include <string_view>

#include "fuzz/call_outcome.h"
#include "fuzz/choices.h"
#include "fuzz/engine_state.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/import_check.h"
#include "import/source_file.h"
#include "parallel/smpengine.h"
#include "qxe.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "tables/realtables.h"

namespace qxe::test {
namespace {

constexpr Choice<int> kTypes[] = {{'I', QX_DT_INTEGER}, {'F', QX_DT_DOUBLE}, {'D', QX_DT_DATE},
                                  {'T', QX_DT_TIME},    {'A', QX_DT_STRING}, {'E', QX_DT_DATETIME},
                                  {'N', QX_DT_DECIMAL}};

struct ColumnInput {
  std::string text;
  int type = QX_DT_INTEGER;
  WorkDivision division;
  int read_block = 1;
  int total_rows = 0;
  int rows = 0;
  int append_pos = 1;
};

ColumnInput input_of(std::string_view bytes) {
  const size_t line_end = std::min(bytes.find('\n'), bytes.size());
  Chooser chooser(bytes.substr(0, line_end));
  ColumnInput input;
  input.text = bytes.substr(std::min(line_end + 1, bytes.size()));
  input.type = chooser.from(kTypes).stands_for;
  input.division.workers = 2 + chooser.number() % 4;
  input.division.bytes_per_worker = 1 + chooser.number();
  input.division.in_turn = shares_in_turn;
  const int block = chooser.number();
  input.read_block = 1 + block * block;
  input.total_rows = chooser.number();
  input.rows = chooser.number();
  input.append_pos = 1 + chooser.number();
  return input;
}

struct Outcomes {
  Outcome add;
  Outcome append;
  Outcome search;
};

/// One of the calls; a failed one leaves the table as it was.
template <class Call>
Outcome outcome_of_call(int table, const std::string& directory, Call&& call) {
  const std::string before = table_image(table);
  Outcome outcome = outcome_of(call(), directory, "column");
  outcome.table = table_image(table);
  check_well_formed(table, false);
  if (outcome.status < 0 && outcome.table != before) {
    finding("a failed call has changed the table", before);
  }
  return outcome;
}

/// The rows that a search has found, in place of the table.
std::string rows_of(int table, int set) {
  const TSetArray& rows = *real_table(table).GetSet(set);
  return {reinterpret_cast<const char*>(rows.PIntAr()),
          static_cast<size_t>(rows.FArraySize) * sizeof(int)};
}

Outcomes run(const ColumnInput& input, const WorkDivision& division) {
  static const TempDir directory;
  const char* const path = directory.path().c_str();
  ENG->set_division(division);
  RQXClearDB();
  drained_ring();
  write_file(directory / "column", input.text);
  const int table = RQXAddRealTable("t", input.total_rows);
  Outcomes outcomes;
  outcomes.add = outcome_of_call(table, path, [&] {
    return RQXAddRealFilter2(table, 0, "c", input.type, input.rows, nullptr, path, "column");
  });
  // When the file cannot be a column of this type, one of NULLs takes the rest.
  const int filter = outcomes.add.status > 0 ? outcomes.add.status
                                             : RQXAddRealFilter2(table, 0, "c", input.type, 0,
                                                                 nullptr, nullptr, nullptr);
  outcomes.append = outcome_of_call(table, path, [&] {
    return RQXAppendRealFilter2(table, filter, input.type, input.append_pos, input.rows, path,
                                "column");
  });
  outcomes.search = outcome_of_call(table, path, [&] {
    return RQXSearchByFieldNValuesFromCSV(table, filter, RQXGetCurrentSetID(table), path, "column");
  });
  if (outcomes.search.status >= 0) outcomes.search.table = rows_of(table, outcomes.search.status);
  return outcomes;
}

void check_column(const ColumnInput& input) {
  constexpr long kWholeFile = 256 << 10;
  set_read_block(kWholeFile);
  const Outcomes serial = run(input, {1, 1, 1});
  set_read_block(input.read_block);
  const Outcomes parallel = run(input, input.division);
  expect_same("the filter from a file", serial.add, parallel.add);
  expect_same("the append to a filter", serial.append, parallel.append);
  expect_same("the search for values from a file", serial.search, parallel.search);
}

}  // namespace
}  // namespace qxe::test

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qxe::test::check_column(qxe::test::input_of({reinterpret_cast<const char*>(data), size}));
  return 0;
}
