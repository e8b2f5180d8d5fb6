// Random databases: what a file gives back is what was saved, whatever its way into memory.
#include <filesystem>

#include "qxe.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class RandomDatabaseTest : public EngineTest, public testing::WithParamInterface<int> {
 protected:
  /// A table with what a client may have done to it: sets in any order, gaps between ids, pending
  /// and dead values, attributes.
  void add_table(const std::string& name) {
    const int rows = random_.chance(50) ? random_.below(40) : 90 + random_.below(200);
    const Columns columns = random_.table(rows);
    const TestTable table(columns, name);
    for (int i = random_.below(4); i > 0; --i) table.add_set(random_.set_of(rows));
    if (random_.chance(40) && RQXGetNSet(table.id()) > 2) RQXDeleteSet(table.id(), 2);
    if (random_.chance(40)) RQXDeleteRealFilter(table.id(), 1 + random_.below(7));
    if (random_.chance(40)) RQXMoveRealFilter(table.id(), 0, 3);
    if (random_.chance(40)) RQXResetSetID(table.id(), 50);
    for (int i = random_.below(5); i > 0 && rows > 0; --i) overwrite(table, columns, rows);
    if (random_.chance(30)) RQXInsertRealRows(table.id(), 1, 3);
    unsigned char area[64] = {};
    area[63] = static_cast<unsigned char>(random_.below(256));
    RQXSetFilterAttr(table.id(), 4, area, false);
    RQXSetSubsetAttr(table.id(), 1, area);
    if (random_.chance(50)) mark(table.id());
  }

  /// Marks for high-speed search; some filters have pending values, some are enabled.
  void mark(int table) {
    for (int i = random_.below(6); i >= 0; --i) {
      RQXHighSpeedSearchSetMark(table, 1 + random_.below(4), 1 + random_.below(7), true);
      if (random_.chance(30)) RQXHighSpeedSearchEnable(table, 1 + random_.below(7), true);
    }
  }

  /// A few cells of one column get values of another random column.
  void overwrite(const TestTable& table, const Columns& columns, int rows) {
    const int column = random_.below(7);
    const Column values = random_.column(columns[static_cast<size_t>(column)].column.type, rows);
    if (values.type == QX_DT_DECIMAL) return;  // of another scale
    const int start = 1 + random_.below(rows);
    RQXOverwriteRealEx(table.id(), column + 1, 1, start, random_.below(5) + 1,
                       RawValues(values).data());
  }

  /// Of the first `sets` sets.
  static std::string marks_of(int table, int sets) {
    std::string text = "marks";
    for (int filter = 1; filter <= 7; ++filter) {
      text += RQXHighSpeedSearchIsEnabled(table, filter) == 1 ? " +" : " -";
      for (int set = 1; set <= sets; ++set) {
        if (RQXHighSpeedSearchHasMark(table, set, filter) == 1) text += std::to_string(set);
      }
    }
    return text;
  }

  static std::string contents() {
    RQXSetSavedFlag(1, 1, 1);
    std::string text = database_text();
    for (int table = 1; table <= RQXGetNTable(); ++table) text += marks_of(table, 4) + "\n";
    return text;
  }

  RandomData random_{static_cast<unsigned>(GetParam())};
};

TEST_P(RandomDatabaseTest, ComesBackAndIsSavedTheSameAgain) {
  for (int i = random_.below(4); i >= 0; --i) add_table("t" + std::to_string(i));
  const std::string before = contents();
  char dir[512] = "";
  ASSERT_EQ(RQXSaveDBAs(dir, "first"), 0);
  EXPECT_EQ(contents(), before);
  ASSERT_EQ(hex(RQXLoadDB("", "first")), hex(0));
  EXPECT_EQ(contents(), before);
  ASSERT_EQ(RQXSaveDBAs(dir, "second"), 0);
  ASSERT_EQ(RQXLoadDB("", "second"), 0);
  EXPECT_EQ(contents(), before);
  ASSERT_EQ(RQXSaveDBAs(dir, "third"), 0);
  EXPECT_EQ(read_file("second.QXD"), read_file("third.QXD"));
}

TEST_P(RandomDatabaseTest, TablesComeBackOneByOne) {
  add_table("t");
  const std::string before = contents();
  char name[256] = "";
  RQXGetTableName(1, name);
  ASSERT_EQ(RQXSaveRealTable("", 1), 0);
  RQXClearDB();
  ASSERT_EQ(hex(RQXLoadRealTable("", name)), hex(1));
  EXPECT_EQ(contents(), before);
}

TEST_P(RandomDatabaseTest, ATableComesBackWithOneSetAndItsMarks) {
  add_table("t");
  const std::string before = table_text(1);
  const std::string marks = marks_of(1, 1);
  write_file("row", "");
  const int ids[] = {1, -1};
  long end = 0;
  ASSERT_EQ(RQXSaveRealTable2("row", 0, ids, &end), 0);
  EXPECT_EQ(marks_of(1, 1), marks);
  RQXDeleteTable(1);
  int id = 0;
  ASSERT_EQ(RQXLoadRealTable2("row", 0, 1, &id, &end), 2);
  EXPECT_EQ(table_text(2), before);
  EXPECT_EQ(marks_of(2, 4), marks);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomDatabaseTest, testing::Range(1, 60));

/// Large arrays go past the buffer of the stream, shared by the workers.
TEST(LargeDatabaseTest, ComesBack) {
  class Fixture : public EngineTest {
    void TestBody() override {}
  } fixture;
  constexpr int kRows = 300'000;
  std::vector<int> numbers(kRows);
  std::vector<std::string> texts(kRows);
  for (int i = 0; i < kRows; ++i) {
    numbers[static_cast<size_t>(i)] = i * 7 % 100'003;
    texts[static_cast<size_t>(i)] = "text " + std::to_string(i * 13 % kRows);
  }
  const TestTable table({{"n", ints(numbers)}, {"s", strings(texts)}}, "t");
  table.sort("n");
  const std::vector<int> sorted = table.rows(2);
  char dir[512] = "";
  ASSERT_EQ(RQXSaveDBAs(dir, "db"), 0);
  ASSERT_EQ(RQXLoadDB("", "db"), 0);
  const TestTable loaded = TestTable::existing(1);
  EXPECT_EQ(loaded.rows(2), sorted);
  EXPECT_EQ(loaded.texts("s"), texts);
  EXPECT_EQ(loaded.column("n").cells, ints(numbers).cells);
}

}  // namespace
}  // namespace qxe::test
