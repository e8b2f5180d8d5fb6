// Filters from text files of one column.
#include "import/column_files.h"
#include "import/import_fixture.h"
#include "support/random_data.h"

namespace qxe::test {

namespace {

class OneColumnTest : public ImportTest {
 protected:
  int add(int type, const std::string& data, int rows) const {
    write_file(directory() / "column.txt", data);
    return RQXAddRealFilter2(table_.id(), 0, "new", type, rows, nullptr, directory().path().c_str(),
                             "column.txt");
  }

  TestTable table_{{{"old", ints({1, 2, 3, 4})}}};
};

using Texts = std::vector<std::string>;

TEST_F(OneColumnTest, EachLineIsAValue) {
  ASSERT_GT(add(QX_DT_STRING, "a,b\r\n\"c\"\n\nd\"e", 4), 0);
  EXPECT_EQ(table_.texts("new"), (Texts{"a,b", "c", "", "d\"e"}));
}

TEST_F(OneColumnTest, EachTypeIsReadAsInAnImport) {
  ASSERT_GT(add(QX_DT_INTEGER, "1,000\n-2\n\n4\n", 4), 0);
  EXPECT_EQ(table_.texts("new"), (Texts{"1000", "-2", "NULL", "4"}));
  ASSERT_GT(add(QX_DT_DATE, "2024/01/02\n\n", 4), 0);
  EXPECT_EQ(table_.texts("new_#1"), (Texts{"2024/01/02", "NULL", "NULL", "NULL"}));
  ASSERT_GT(add(QX_DT_DECIMAL, "1.5\n\"2\"\n", 2), 0);
  EXPECT_EQ(table_.texts("new_#2"), (Texts{"1.500000", "2.000000", "NULL", "NULL"}));
}

TEST_F(OneColumnTest, DecimalsTakeTheFormOfTheCall) {
  write_file(directory() / "column.txt", "1.25\n-1.25\n");
  const int filter =
      RQXAddRealFilter2Numeric(table_.id(), 0, "new", QX_DT_DECIMAL, 4, nullptr,
                               directory().path().c_str(), "column.txt", 1, QX_ROUND_DOWN);
  ASSERT_GT(filter, 0) << hex(filter);
  EXPECT_EQ(table_.texts("new"), (Texts{"1.2", "-1.2", "NULL", "NULL"}));
}

TEST_F(OneColumnTest, LinesBeyondTheRowsDoNotCount) {
  ASSERT_GT(add(QX_DT_INTEGER, "1\n2\nbad\n", 2), 0);
  EXPECT_EQ(table_.texts("new"), (Texts{"1", "2", "NULL", "NULL"}));
  ASSERT_GT(add(QX_DT_INTEGER, "1\n2\n3\n4\nbad\n", 100), 0);
  EXPECT_EQ(table_.texts("new_#1"), (Texts{"1", "2", "3", "4"}));
  ASSERT_GT(add(QX_DT_INTEGER, "1\n", 0), 0);
  EXPECT_EQ(table_.texts("new_#2"), (Texts{"NULL", "NULL", "NULL", "NULL"}));
}

TEST_F(OneColumnTest, RandomColumnsComeBackAsWritten) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomData random(seed);
    const int type = QX_DT_INTEGER + random.below(QX_DT_DECIMAL - QX_DT_INTEGER + 1);
    const int rows = random.chance(30) ? 5000 : random.below(30);
    Column column = random.column(type, rows);
    std::string lines;
    for (const Cell& cell : column.cells) {
      const std::string text = field_text(cell, type);
      lines += random.chance(20) ? "\"" + text + "\"\r\n" : text + "\n";
    }
    write_file(directory() / "column.txt", lines);
    const int wanted = random.chance(50) ? rows : random.below(rows + 1);
    const TestTable table = TestTable::existing(RQXAddRealTable("t", rows));
    const int filter = RQXAddRealFilter2Numeric(table.id(), 0, "c", type, wanted, nullptr, "",
                                                "column.txt", column.scale, QX_ROUND_HALFUP);
    if (type != QX_DT_DECIMAL) {
      expect_failure(filter, QX_ERROR_TYPE_MISMATCH);
      ASSERT_GT(RQXAddRealFilter2(table.id(), 0, "c", type, wanted, nullptr, "", "column.txt"), 0);
    }
    std::fill(column.cells.begin() + wanted, column.cells.end(), normal_form({}, type));
    ASSERT_EQ(table.texts("c"), cell_texts(column)) << "seed " << seed;
  }
}

TEST_F(OneColumnTest, TheFirstFaultOfALongFileCounts) {
  const TestTable table = TestTable::existing(RQXAddRealTable("t", 20000));
  std::string data;
  for (int line = 1; line <= 20000; ++line) data += line % 6007 == 0 ? "x\n" : "12345\n";
  write_file(directory() / "column.txt", data);
  const auto read = [&](int rows) {
    return RQXAddRealFilter2(table.id(), 0, "c", QX_DT_INTEGER, rows, nullptr, "", "column.txt");
  };
  expect_failure(read(20000), QX_ERROR_INVALID_DATA);
  EXPECT_EQ(logged_rows(), std::vector<int>{6007});
  EXPECT_GT(read(6006), 0);
}

TEST_F(OneColumnTest, FaultsLeaveTheTableAsItWas) {
  expect_failure(add(QX_DT_INTEGER, "1\nbad\n", 4), QX_ERROR_INVALID_DATA, "Illegal string data");
  EXPECT_EQ(log_lines(), Texts{"DATA ERROR \t\t----->\t[INTEGER] = \"bad\"  \t@ Row = 2 in " +
                               (directory() / "column.txt") + " "});
  expect_failure(add(QX_DT_STRING, std::string(4096, 'x'), 4), QX_ERROR_TEXT_FIELD,
                 "StringSize overflow");
  EXPECT_GT(add(QX_DT_STRING, "\"" + std::string(4095, 'x') + "\"", 4), 0);
  const int missing = RQXAddRealFilter2(table_.id(), 0, "new", QX_DT_INTEGER, 4, nullptr,
                                        directory().path().c_str(), "none.txt");
  expect_failure(missing, QX_ERROR_FILE);
  EXPECT_EQ(RQXGetNFilter(table_.id()), 2);
}

}  // namespace

}  // namespace qxe::test
