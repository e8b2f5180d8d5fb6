// Any bytes as the image of a table, or as a memory stream of tables. The first byte chooses which
// of the two, and how many bytes of the stream are a client's own piece before each table. What is
// refused changes nothing; what is loaded is well formed, can be worked on, and comes back from an
// image of its own as it is.
#include <string.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "fuzz/engine_state.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/import_check.h"
#include "parallel/smpengine.h"
#include "support/engine_test.h"
#include "tables/realtables.h"

namespace qxe::test {
namespace {

/// Statuses by which an image may be refused.
constexpr int kRefusals[] = {QX_ERROR_MEM_IMAGE, QX_ERROR_FILE_FORMAT,     QX_ERROR_NEGATIVE_SIZE,
                             QX_ERROR_DATA_TYPE, QX_ERROR_NOT_REAL_SOURCE, QX_ERROR_GEN_TABLE_NAME};

void expect_ok(int status, const char* call) {
  if (status < 0) finding(std::string(call) + " fails with " + hex(status), drained_ring());
}

/// An image may say that the last id has been issued.
void expect_done(int status, const char* call) {
  if (status != QX_ERROR_SET_COUNT && status != QX_ERROR_FILTER_COUNT) expect_ok(status, call);
  drained_ring();
}

void expect_refusal(int status, int tables) {
  const std::string ring = drained_ring();
  if (std::find(std::begin(kRefusals), std::end(kRefusals), status) == std::end(kRefusals)) {
    finding("another failure: " + hex(status), ring);
  }
  if (ring.find(hex(status)) == std::string::npos) finding("no entry in the ring", hex(status));
  if (RQXGetNTable() != tables) finding("a refused table is there", ring);
}

std::vector<std::span<const int>> sets_of(int id) {
  std::vector<int> ids(static_cast<size_t>(RQXGetNSet(id)));
  RQXGetSetList(id, static_cast<int>(ids.size()), ids.data());
  std::vector<std::span<const int>> sets;
  for (const int set : ids) {
    const TSetArray& rows = *real_table(id).GetSet(set);
    sets.emplace_back(rows.PIntAr(), static_cast<size_t>(rows.FArraySize));
  }
  return sets;
}

/// All that a table holds but its name, which has to be unique.
std::string content(int id) {
  std::string text = table_image(id).substr(strlen(real_table(id).name()));
  for (const std::span<const int> set : sets_of(id)) {
    text.append(reinterpret_cast<const char*>(set.data()), set.size_bytes());
  }
  return text;
}

void check_sets(int id) {
  const int rows = real_table(id).TotalRecs();
  for (const std::span<const int> set : sets_of(id)) {
    for (const int row : set) {
      if (row < 1 || row > rows) finding("a set holds a row that is not there", "");
    }
  }
}

/// Calls that read, sort and edit all columns.
void work_on(int id) {
  for (int i = 0; i < real_table(id).GetNFilter(); ++i) {
    const int filter = real_table(id).filter_at(i)->FFilterID;
    expect_done(RQXSortByField(id, filter, -1, QX_SORT_DESC), "RQXSortByField");
  }
  expect_done(RQXDuplicateRealTable("copy", id), "RQXDuplicateRealTable");
  if (RQXGetNFilter(id) > 0) {
    expect_done(RQXExtractRealTable("part", id, -1, nullptr), "RQXExtractRealTable");
  }
  expect_done(RQXHighSpeedSearchEnable(id, 0, false), "RQXHighSpeedSearchEnable");
  expect_done(RQXInsertRealRows(id, 1, 2), "RQXInsertRealRows");
}

/// The table and its copy from a stream with all sets.
void check_copy(int id) {
  RQXMemStreamOpenWrite();
  expect_ok(RQXSaveRealTableMem(id, 0), "RQXSaveRealTableMem");
  const std::string before = content(id);
  long size = 0;
  void* area = nullptr;
  expect_ok(RQXMemStreamGetWriteBuf(&size, &area), "RQXMemStreamGetWriteBuf");
  expect_ok(RQXMemStreamOpenRead(size, area), "RQXMemStreamOpenRead");
  const int copy = RQXLoadRealTableMem();
  expect_ok(copy, "RQXLoadRealTableMem");
  if (content(copy) != before) finding("a saved table comes back otherwise", printable(before));
}

void check_loaded(int id) {
  check_well_formed(id, false);
  check_sets(id);
}

/// Loads what is there; returns the id of the last table, 0 for none.
int load_image(char* bytes, long size) {
  const int id = RQXLoadMemRealTable(bytes, size);
  if (id < 0) expect_refusal(id, 0);
  return std::max(id, 0);
}

int load_stream(char* bytes, long size, int piece) {
  expect_ok(RQXMemStreamOpenRead(size, bytes), "RQXMemStreamOpenRead");
  int last = 0;
  char own[8];
  for (int tables = 0;; ++tables) {
    expect_ok(RQXMemStreamRead(own, piece), "RQXMemStreamRead");
    const int id = RQXLoadRealTableMem();
    if (id < 0) expect_refusal(id, tables);
    if (id <= 0) break;
    check_loaded(id);
    last = id;
  }
  RQXMemStreamClose();
  return last;
}

void check(std::string_view input) {
  const int choice = input.empty() ? 0 : static_cast<unsigned char>(input.front());
  input.remove_prefix(input.empty() ? 0 : 1);
  // As long as the input, so that a read behind it is seen.
  const std::unique_ptr<char[]> bytes(new char[input.size()]);
  memcpy(bytes.get(), input.data(), input.size());
  const auto size = static_cast<long>(input.size());
  ENG->set_division({.workers = 3, .in_turn = shares_in_turn});
  const int id = choice % 2 == 0 ? load_image(bytes.get(), size)
                                 : load_stream(bytes.get(), size, choice / 2 % 8);
  if (id > 0) {
    check_loaded(id);
    check_copy(id);
    work_on(id);
  }
  RQXClearDB();
  RQXMemStreamClose();
  drained_ring();
}

}  // namespace
}  // namespace qxe::test

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qxe::test::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
