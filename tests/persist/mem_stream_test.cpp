// The memory stream: its modes, where its pieces lie, tables between a client's own data, and areas
// that end too early.
#include <functional>

#include "image_block.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

struct Status {
  int mode = -1;
  long used = -1;
  long position = -1;
  void* area = nullptr;
};

Status status() {
  Status now;
  EXPECT_EQ(RQXMemStreamGetStatus(&now.mode, &now.used, &now.position, &now.area), 0);
  Status plain;
  EXPECT_EQ(QXMemStreamGetStatus(&plain.mode, &plain.used, &plain.position, &plain.area), 0);
  EXPECT_EQ(plain.position, now.position);
  return now;
}

void expect_status(int mode, long used, long position) {
  const Status now = status();
  EXPECT_EQ(now.mode, mode);
  EXPECT_EQ(now.used, used);
  EXPECT_EQ(now.position, position);
  EXPECT_EQ(now.area == nullptr, mode == QX_MEMSTREAM_CLOSED);
}

std::string written() {
  long size = -1;
  void* area = nullptr;
  EXPECT_EQ(RQXMemStreamGetWriteBuf(&size, &area), 0);
  EXPECT_EQ(area, status().area);
  return {static_cast<const char*>(area), static_cast<size_t>(size)};
}

void write(const std::string& data) {
  EXPECT_EQ(RQXMemStreamWrite(data.data(), static_cast<int>(data.size())),
            static_cast<int>(data.size()));
}

std::string read(int size) {
  std::string data(static_cast<size_t>(size), '?');
  const int got = RQXMemStreamRead(data.data(), size);
  EXPECT_GE(got, 0);
  return data.substr(0, static_cast<size_t>(std::max(got, 0)));
}

/// Opens the bytes for reading; they must stay.
void open(std::string& bytes) {
  EXPECT_EQ(RQXMemStreamOpenRead(static_cast<long>(bytes.size()), bytes.data()), 0);
}

class StreamTest : public EngineTest {
 protected:
  ~StreamTest() override { RQXMemStreamClose(); }
};

// Modes

struct ModeCase {
  const char* name;
  std::function<void()> open;
  bool reads, writes;
};

class StreamModeTest : public StreamTest, public testing::WithParamInterface<ModeCase> {};

char area[16];

TEST_P(StreamModeTest, DecidesWhatMayBeDone) {
  const TestTable table({{"i", ints({1})}});
  const int id = table.id();
  long size = 0;
  void* place = nullptr;
  GetParam().open();
  const Status before = status();
  const auto refused_unless = [&](bool allowed, int status) {
    if (!allowed) return expect_failure(status, QX_ERROR_MEM_STREAM, "Invalid memstreem");
    EXPECT_GE(status, 0);
  };
  refused_unless(GetParam().writes, RQXMemStreamWrite(area, 0));
  refused_unless(GetParam().writes, QXMemStreamWrite(area, 0));
  refused_unless(GetParam().writes, RQXMemStreamGetWriteBuf(&size, &place));
  refused_unless(GetParam().writes, QXMemStreamGetWriteBuf(&size, &place));
  refused_unless(GetParam().reads, RQXMemStreamRead(area, 0));
  refused_unless(GetParam().reads, QXMemStreamRead(area, 0));
  refused_unless(GetParam().reads, RQXLoadRealTableMem());
  refused_unless(GetParam().reads, QXLoadRealTableMem());
  EXPECT_EQ(status().position, before.position);
  refused_unless(GetParam().writes, RQXSaveRealTableMem(id, 0));
  refused_unless(GetParam().writes, QXSaveRealTableMem(id, 1));
  EXPECT_EQ(status().mode, before.mode);
  EXPECT_EQ(RQXGetNTable(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    All, StreamModeTest,
    testing::Values(ModeCase{"Closed", [] { RQXMemStreamClose(); }, false, false},
                    ModeCase{"Write", [] { RQXMemStreamOpenWrite(); }, false, true},
                    ModeCase{"PlainWrite", [] { QXMemStreamOpenWrite(); }, false, true},
                    ModeCase{"ReadOfNothing", [] { RQXMemStreamOpenRead(0, area); }, true, false},
                    ModeCase{"PlainRead", [] { QXMemStreamOpenRead(0, area); }, true, false},
                    ModeCase{"ClosedAgain",
                             [] {
                               RQXMemStreamOpenWrite();
                               QXMemStreamClose();
                               RQXMemStreamClose();
                             },
                             false, false}),
    case_name<ModeCase>);

TEST_F(StreamTest, OpeningClosesWhatWasOpen) {
  expect_status(QX_MEMSTREAM_CLOSED, 0, 0);
  RQXMemStreamOpenWrite();
  write("first");
  expect_status(QX_MEMSTREAM_WRITE, 5, 5);
  RQXMemStreamOpenWrite();
  expect_status(QX_MEMSTREAM_WRITE, 0, 0);
  write("second");
  std::string bytes = written();
  open(bytes);
  expect_status(QX_MEMSTREAM_READ, 6, 0);
  EXPECT_EQ(status().area, bytes.data());
  EXPECT_EQ(read(3), "sec");
  open(bytes);
  expect_status(QX_MEMSTREAM_READ, 6, 0);
  // What is refused leaves the open stream alone.
  expect_failure(RQXMemStreamOpenRead(-1, bytes.data()), QX_ERROR_PARAMETER);
  expect_failure(RQXMemStreamOpenRead(6, nullptr), QX_ERROR_PARAMETER);
  expect_status(QX_MEMSTREAM_READ, 6, 0);
  EXPECT_EQ(RQXReInitializeMS(), 0);
  expect_status(QX_MEMSTREAM_CLOSED, 0, 0);
}

TEST_F(StreamTest, WhatWasWrittenMayBeReadInPlace) {
  RQXMemStreamOpenWrite();
  write("written");
  long size = 0;
  void* place = nullptr;
  RQXMemStreamGetWriteBuf(&size, &place);
  EXPECT_EQ(RQXMemStreamOpenRead(size, place), 0);
  EXPECT_EQ(read(7), "written");
}

// A client's data

TEST_F(StreamTest, PiecesAddTheRemainderOfThePosition) {
  RQXMemStreamOpenWrite();
  write("abc");       // 0
  write("def");       // 3 + 3
  write("");          // nothing
  write("0123");      // 9 + 1
  write("01234567");  // 14 + 6
  const std::string wanted(
      "abc\0\0\0def\0"
      "0123\0\0\0\0\0\0"
      "01234567",
      28);
  EXPECT_EQ(written(), wanted);
  expect_status(QX_MEMSTREAM_WRITE, 28, 28);
  expect_failure(RQXMemStreamWrite("x", -1), QX_ERROR_PARAMETER);
  EXPECT_EQ(written(), wanted);

  std::string bytes = wanted;
  open(bytes);
  EXPECT_EQ(read(0), "");
  EXPECT_EQ(read(3), "abc");
  EXPECT_EQ(read(3), "def");
  EXPECT_EQ(read(0), "");
  expect_status(QX_MEMSTREAM_READ, 28, 9);
  char one = '?';
  expect_failure(RQXMemStreamRead(&one, -1), QX_ERROR_PARAMETER);
  EXPECT_EQ(read(4), "0123");
  EXPECT_EQ(read(100), "01234567");
  EXPECT_EQ(read(1), "");
  expect_status(QX_MEMSTREAM_READ, 28, 28);
  EXPECT_EQ(RQXLoadRealTableMem(), 0);
}

TEST_F(StreamTest, PaddingBehindTheEndIsTheEnd) {
  std::string bytes = "1234567";
  open(bytes);
  EXPECT_EQ(read(6), "123456");
  EXPECT_EQ(read(1), "");
  expect_status(QX_MEMSTREAM_READ, 7, 7);
}

TEST_F(StreamTest, GrowsWithoutLosingAByte) {
  RandomData random(1);
  RQXMemStreamOpenWrite();
  std::string wanted;
  while (wanted.size() < 5'000'000) {
    std::string piece(static_cast<size_t>(random.below(random.chance(10) ? 700'000 : 3000)),
                      static_cast<char>(random.below(256)));
    if (piece.empty()) continue;
    write(piece);
    wanted.append(wanted.size() % 8, '\0').append(piece);
    ASSERT_EQ(status().used, static_cast<long>(wanted.size()));
  }
  EXPECT_EQ(written(), wanted);
  // The first area has 1,000,000 bytes.
  for (int size = 999'990; size < 1'000'010; ++size) {
    RQXMemStreamOpenWrite();
    const std::string piece(static_cast<size_t>(size), 'x');
    write(piece);
    write("end");
    EXPECT_EQ(written(), piece + std::string(static_cast<size_t>(size) % 8, '\0') + "end");
  }
}

// Tables

/// A table with all types, further sets and another current set.
TestTable random_table(RandomData& random, int rows, const std::string& name) {
  TestTable table(random.table(rows), name);
  for (int i = random.below(4); i > 0; --i) {
    RQXChangeCurrentSetID(table.id(), table.add_set(random.set_of(rows)));
  }
  return table;
}

TEST_F(StreamTest, TablesComeBackBetweenTheClientsData) {
  RandomData random(2);
  for (const int one_set : {0, 1, -1}) {
    SCOPED_TRACE(one_set);
    RQXClearDB();
    RQXMemStreamOpenWrite();
    std::vector<std::string> texts;
    for (int i = 0; i < 4; ++i) {
      const TestTable table = random_table(random, 40 * i, "t" + std::to_string(i));
      texts.push_back(table_text(table.id()));
      write(std::string(static_cast<size_t>(1 + 3 * i), 'c'));
      EXPECT_EQ(i % 2 == 0 ? RQXSaveRealTableMem(table.id(), one_set)
                           : QXSaveRealTableMem(table.id(), one_set),
                0);
      // All sets, or the set of all rows alone as the only one.
      if (one_set != 0) RQXPurgeSubsets(table.id());
      if (one_set != 0) RQXChangeCurrentSetID(table.id(), 1);
    }
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    std::string bytes = written();
    RQXClearDB();
    open(bytes);
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(read(1 + 3 * i), std::string(static_cast<size_t>(1 + 3 * i), 'c'));
      EXPECT_EQ(i % 2 == 0 ? RQXLoadRealTableMem() : QXLoadRealTableMem(), i + 1);
    }
    int flags[3] = {};
    RQXGetSavedFlag(flags, flags + 1, flags + 2);
    EXPECT_EQ(flags[1], 0);
    RQXSetSavedFlag(1, 1, 1);
    EXPECT_EQ(RQXLoadRealTableMem(), 0);
    EXPECT_EQ(database_text(), before);  // and the flags are still set
  }
}

TEST_F(StreamTest, AnImageIsATableOfAStream) {
  RandomData random(3);
  const TestTable table = random_table(random, 50, "t");
  const std::string text = table_text(table.id());
  void* block = nullptr;
  long size = 0;
  RQXGetMemRealTable(table.id(), &block, &size);
  RQXMemStreamOpenWrite();
  RQXSaveRealTableMem(table.id(), 1);
  const std::string bytes = written();
  EXPECT_EQ(bytes, std::string(static_cast<const char*>(block), bytes.size()));
  require(RQXDeleteTable(table.id()), "RQXDeleteTable");
  ImageBlock from_stream(bytes);
  const int loaded = RQXLoadMemRealTable(from_stream.at(0), from_stream.size());
  ASSERT_GT(loaded, 0);
  EXPECT_EQ(table_text(loaded), text);
  require(RQXDeleteTable(loaded), "RQXDeleteTable");
  RQXMemStreamOpenRead(size, block);
  const int streamed = RQXLoadRealTableMem();
  ASSERT_GT(streamed, 0);
  EXPECT_EQ(table_text(streamed), text);
  RQXMemStreamClose();
  RQXFreeMemRealTable();
}

TEST_F(StreamTest, ARefusedTableLeavesTheStreamAlone) {
  RQXMemStreamOpenWrite();
  write("data");
  expect_failure(RQXSaveRealTableMem(99, 0), QX_ERROR_NO_TABLE, "No Such Table: 99");
  expect_failure(QXSaveRealTableMem(99, 0), QX_ERROR_NO_TABLE);
  EXPECT_EQ(written(), "data");
}

TEST_F(StreamTest, CutTablesAreRefusedAndTheStreamStaysThere) {
  RandomData random(4);
  const TestTable table = random_table(random, 3, "t");
  RQXMemStreamOpenWrite();
  write("abc");
  RQXSaveRealTableMem(table.id(), 0);
  const std::string bytes = written();
  for (size_t size = 3; size < bytes.size(); ++size) {
    std::string cut = bytes.substr(0, size);
    cut.shrink_to_fit();
    open(cut);
    ASSERT_EQ(read(3), "abc");
    const int status = RQXLoadRealTableMem();
    ASSERT_EQ(hex(status), hex(size == 3 ? 0 : QX_ERROR_MEM_IMAGE)) << size;
    const bool half_a_header = size > 6 && size < 6 + 256;
    if (half_a_header) {
      expect_status(QX_MEMSTREAM_CLOSED, 0, 0);
    } else {
      expect_status(QX_MEMSTREAM_READ, static_cast<long>(size), 3);
    }
  }
  EXPECT_EQ(RQXGetNTable(), 1);
}

TEST_F(StreamTest, DamagedBytesAreRefusedOrHarmless) {
  RandomData random(5);
  const TestTable table = random_table(random, 5, "t");
  RQXMemStreamOpenWrite();
  RQXSaveRealTableMem(table.id(), 0);
  RQXSaveRealTableMem(table.id(), 1);
  const std::string bytes = written();
  for (int i = 0; i < 300; ++i) {
    std::string damaged = bytes;
    damaged[static_cast<size_t>(random.below(static_cast<int>(bytes.size())))] =
        static_cast<char>(random.below(256));
    open(damaged);
    int loaded = 0;
    while ((loaded = RQXLoadRealTableMem()) > 0) {
      table_text(loaded);
      require(RQXDeleteTable(loaded), "RQXDeleteTable");
    }
  }
  EXPECT_EQ(RQXGetNTable(), 1);
}

}  // namespace
}  // namespace qxe::test
