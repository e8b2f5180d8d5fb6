// Appending by catalog.
#include <limits.h>

#include "import/column_files.h"
#include "import/import_fixture.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/random_data.h"

namespace qxe::test {

namespace {

using Texts = std::vector<std::string>;

class AppendTest : public ImportTest {
 protected:
  int append(const TestTable& table, int pos, int count, const std::string& catalog,
             const std::string& data) const {
    write_file(directory() / "append.cat", catalog);
    write_file(directory() / "SrcData.dat", data);
    return RQXAppendCatalogFile(table.id(), pos, count, directory().path().c_str(), "append.cat");
  }
};

TEST_F(AppendTest, LinesThatAreLeftOutAreMadeUpForByLaterOnes) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    RandomData random(seed);
    const int bad_share = random.below(3) * 45;
    std::vector<int> good;
    std::string data;
    std::vector<int> bad_lines;
    const int count = random.below(3000);
    for (int line = 1; line <= 6000; ++line) {
      const bool bad = random.chance(bad_share);
      if (bad && static_cast<int>(good.size()) < count) bad_lines.push_back(line);
      if (!bad) good.push_back(line);
      data += std::to_string(line) + (bad ? "x\n" : "\n");
    }
    good.resize(static_cast<size_t>(count), kNullInt);
    const TestTable table({{"a", ints({})}});
    ASSERT_EQ(append(table, -1, count, "//CSV\n//ERROR\tSKIPLINE\nI\t9\ta\n", data), count);
    ASSERT_EQ(table.texts("a"), to_texts(ints(good))) << "seed " << seed;
    ASSERT_EQ(logged_rows(), bad_lines) << "seed " << seed;
  }
}

// ---- Which rows and columns ---------------------------------------------------------------------

TEST_F(AppendTest, LinesBehindTheRowsAreNotLookedAt) {
  const TestTable table({{"a", ints({1, 2, 3})}});
  const std::string catalog = "//CSV\nI\t9\ta\n";
  EXPECT_EQ(append(table, 5, 3, catalog, "50\n"), 3);
  EXPECT_EQ(append(table, 1, 1, catalog, "10\nbad\nbad,\n\"\n"), 1);
  EXPECT_EQ(append(table, 9, 0, catalog, ""), 0);
  EXPECT_EQ(append(table, -1, 1, "//CSV\n//CUTTOP\nI\t9\ta\n", "title\n"), 1);
  EXPECT_EQ(table.texts("a"), (Texts{"10", "2", "3", "NULL", "50", "NULL", "NULL", "NULL"}));
  EXPECT_FALSE(has_log());
  EXPECT_EQ(table_count(), 1);
}

TEST_F(AppendTest, TheDataFileMayLieElsewhere) {
  const TestTable table({{"a", ints({1})}});
  const TempDir elsewhere;
  write_file(directory() / "c", "//CSV\nI\t9\ta\n//ERROR\tCONTINUE\n");
  write_file(elsewhere / "data.txt", "2\nx\n");
  EXPECT_EQ(
      RQXAppendCatalogFileEx2(table.id(), -1, 2, "", "c", elsewhere.path().c_str(), "data.txt"), 2);
  EXPECT_EQ(table.texts("a"), (Texts{"1", "2", "NULL"}));
  EXPECT_EQ(logged_rows(), (std::vector<int>{2}));
}

TEST_F(AppendTest, ColumnsGoToTheFiltersInDisplayOrder) {
  const TestTable table({{"a", ints({1})}, {"b", ints({2})}});
  ASSERT_EQ(RQXMoveRealFilter(table.id(), 0, 1), 0);
  EXPECT_EQ(append(table, -1, 1, "//CSV\nI\t9\ta\nA\t9\tx\tSKIP\nI\t9\tb\n", "3,text,4\n"), 1);
  EXPECT_EQ(table.texts("b"), (Texts{"2", "3"}));
  EXPECT_EQ(table.texts("a"), (Texts{"1", "4"}));
}

TEST_F(AppendTest, ContinueDropsColumnsThatHaveNoFilter) {
  const TestTable table({{"a", ints({1, 2})}});
  EXPECT_EQ(append(table, 2, 2, "//CSV\n//ERROR\tCONTINUE\nI\t9\ta\nI\t9\tb\n", "3,bad\n4,5\n"), 2);
  EXPECT_EQ(table.texts("a"), (Texts{"1", "3", "4"}));
  EXPECT_EQ(log_lines(), Texts{"FILTER MISMATCH \t----->\tFilters - Items [1 - 2] "});
}

TEST_F(AppendTest, ContinueLeavesFiltersThatHaveNoColumn) {
  const TestTable table({{"a", ints({1, 2})}, {"b", ints({7, 8})}});
  EXPECT_EQ(append(table, 2, 2, "//CSV\n//ERROR\tCONTINUE\nI\t9\ta\n", "3\n4\n"), 2);
  EXPECT_EQ(table.texts("a"), (Texts{"1", "3", "4"}));
  EXPECT_EQ(table.texts("b"), (Texts{"7", "8", "NULL"}));
}

// ---- Types --------------------------------------------------------------------------------------

NumericInfo info_of(const TestTable& table, const std::string& column) {
  NumericInfo info = {};
  require(RQXGetNumericInfo(table.id(), table.filter(column), &info, nullptr, false), "info");
  return info;
}

TEST_F(AppendTest, AHigherScaleRaisesThatOfTheFilter) {
  const TestTable table({{"n", decimals(2, {"1.25", "", "-3.00"})}});
  EXPECT_EQ(append(table, 3, 2, "//CSV\nN\t9\tn\t4\tROUNDDOWN\n", "1.25\n-0.00019\n"), 2);
  EXPECT_EQ(table.texts("n"), (Texts{"1.2500", "NULL", "1.2500", "-0.0001"}));
  EXPECT_EQ(info_of(table, "n").scale, 4);
  EXPECT_EQ(info_of(table, "n").rounding, QX_ROUND_DOWN);
  EXPECT_EQ(table.rows(table.search("n", QX_OPE_EQ, decimal(4, "1.2500"))),
            (std::vector<int>{1, 3}));
}

TEST_F(AppendTest, ALowerScaleIsRaisedToThatOfTheFilter) {
  const TestTable table({{"n", decimals(4, {"1.2500"})}});
  EXPECT_EQ(append(table, -1, 2, "//CSV\nN\t9\tn\t1\tROUNDDOWN\n", "1.25\n7\n"), 2);
  EXPECT_EQ(table.texts("n"), (Texts{"1.2500", "1.2000", "7.0000"}));
  EXPECT_EQ(info_of(table, "n").scale, 4);
  EXPECT_EQ(info_of(table, "n").rounding, QX_ROUND_HALFUP);
}

TEST_F(AppendTest, DateFormatsOfTheCatalogCount) {
  const TestTable table({{"d", dates({"2024/03/01"})}});
  EXPECT_EQ(append(table, -1, 2, "//CSV\nD\t9\td\tD5\n", "31/12/2023\n01/03/2024\n"), 2);
  EXPECT_EQ(table.texts("d"), (Texts{"2024/03/01", "2023/12/31", "2024/03/01"}));
  EXPECT_EQ(RQXGetFilterType(table.id(), table.filter("d")), QX_DT_DATE);
}

TEST_F(AppendTest, AttributesOfTheFilterStay) {
  const TestTable table({{"a", ints({1})}});
  char area[64] = "client";
  ASSERT_EQ(RQXSetFilterAttr(table.id(), table.filter("a"), area, true), 0);
  ASSERT_EQ(RQXSetFilterAttr(table.id(), table.filter("a"), area, false), 0);
  EXPECT_EQ(append(table, -1, 1, "//CSV\nI\t9\ta\n", "2\n"), 1);
  for (const bool list : {false, true}) {
    char read[64] = "";
    ASSERT_EQ(RQXGetFilterAttr(table.id(), table.filter("a"), read, list), 0);
    EXPECT_STREQ(read, "client");
  }
}

// ---- Failures -----------------------------------------------------------------------------------

struct FailingAppend {
  const char* name;
  int pos;
  int count;
  std::string catalog;
  std::string data;
  int status;
  const char* message = "";
  Texts log = {};
};

class FailingAppendTest : public AppendTest, public testing::WithParamInterface<FailingAppend> {};

TEST_P(FailingAppendTest, LeavesTheTableAsItWas) {
  const FailingAppend& wanted = GetParam();
  const TestTable table({{"a", ints({1, 2, 3})}, {"n", decimals(2, {"1.00", "", "2.50"})}});
  table.add_set({2});
  const std::string before = table_text(table.id());
  const int status = append(table, wanted.pos, wanted.count, wanted.catalog, wanted.data);
  expect_failure(status, wanted.status, wanted.message);
  EXPECT_EQ(table_text(table.id()), before);
  EXPECT_EQ(table_count(), 1);
  EXPECT_EQ(log_lines(), wanted.log);
}

const std::string kCatalog = "//CSV\nI\t9\ta\nN\t9\tn\t2\n";
const std::string kData = "4,4.00\n5,5.00\n";

INSTANTIATE_TEST_SUITE_P(
    All, FailingAppendTest,
    testing::Values(
        FailingAppend{"RowZero", 0, 2, kCatalog, kData, QX_ERROR_PARAMETER,
                      "Invalid Parameter : AppendPos(0)"},
        FailingAppend{"NegativeCount", -1, -1, kCatalog, kData, QX_ERROR_PARAMETER,
                      "Invalid Parameter : nRows(-1)"},
        FailingAppend{"TooManyRows", INT_MAX, 1, kCatalog, kData, QX_ERROR_ROW_SIZE,
                      "RowSize overflow"},
        FailingAppend{"TooManyRowsBehindTheLast", -1, INT_MAX - 3, kCatalog, kData,
                      QX_ERROR_ROW_SIZE},
        FailingAppend{"Catalog",
                      -1,
                      2,
                      "I\t9\ta\nN\t9\tn\t2\n",
                      kData,
                      QX_ERROR_CATALOG,
                      "",
                      {"NO FILE FORMAT IS SPECIFIED"}},
        FailingAppend{"TooFewColumns",
                      -1,
                      2,
                      "//CSV\nI\t9\ta\n",
                      "4\n",
                      QX_ERROR_CATALOG,
                      "FILTER MISMATCH",
                      {"FILTER MISMATCH \t----->\tFilters - Items [2 - 1] "}},
        FailingAppend{"TooManyColumns",
                      -1,
                      2,
                      "//CSV\n//ERROR\tSKIPLINE\nI\t9\ta\nI\t9\tb\nI\t9\tc\n",
                      "4,4,4\n",
                      QX_ERROR_CATALOG,
                      "FILTER MISMATCH",
                      {"FILTER MISMATCH \t----->\tFilters - Items [2 - 3] "}},
        FailingAppend{"OtherType", -1, 2, "//CSV\n//ERROR\tCONTINUE\nF\t9\ta\nN\t9\tn\t2\n", kData,
                      QX_ERROR_MERGE_TYPE, "Illegal data type"},
        FailingAppend{"Value",
                      1,
                      2,
                      kCatalog,
                      "4,4.00\n5,x\n",
                      QX_ERROR_INVALID_DATA,
                      "Invalid Data",
                      {"DATA ERROR \t\t----->\t[DECIMAL] = \"x\"  \t@ Row = 2 , Col = 2 "}},
        FailingAppend{"FieldCount",
                      -1,
                      2,
                      kCatalog,
                      "4,4.00\n5\n",
                      QX_ERROR_CATALOG,
                      "",
                      {"FILTER MISMATCH \t----->\tFilters - Items [2 - 1] \t@ Row = 2 "}},
        FailingAppend{"Quoting",
                      -1,
                      2,
                      kCatalog,
                      "\"4,4.00\n",
                      QX_ERROR_INVALID_DATA,
                      "",
                      {"DATA PARSE ERROR \t\t @ Row = 1 "}},
        FailingAppend{"NoRoomForDigits", -1, 1, "//CSV\nI\t9\ta\nN\t9\tn\t38\n", "4,\n",
                      QX_ERROR_DATA_SIZE, "DataSize overflow"},
        FailingAppend{"NoRoomForNewDigits", 2, 1, "//CSV\nI\t9\ta\nN\t9\tn\t0\n",
                      "4,12345678901234567890123456789012345678\n", QX_ERROR_DATA_SIZE,
                      "DataSize overflow"}),
    case_name<FailingAppend>);

TEST_F(AppendTest, AFaultFarBehindIsLoggedByItsLine) {
  std::string data;
  for (int line = 1; line <= 9000; ++line)
    data += line == 7531 ? "x\n" : std::to_string(line) + "\n";
  const TestTable table({{"a", ints({1})}});
  expect_failure(append(table, 1, 9000, "//CSV\nI\t9\ta\n", data), QX_ERROR_INVALID_DATA);
  EXPECT_EQ(logged_rows(), (std::vector<int>{7531}));
  EXPECT_EQ(table.texts("a"), Texts{"1"});
  EXPECT_EQ(append(table, 1, 7530, "//CSV\nI\t9\ta\n", data), 7530);
  EXPECT_FALSE(has_log());
  EXPECT_EQ(append(table, -1, 9000, "//CSV\n//ERROR\tCONTINUE\nI\t9\ta\n", data), 9000);
  EXPECT_EQ(table.total_rows(), 16530);
  EXPECT_EQ(table.texts("a")[7530 + 7530], "NULL");
}

TEST_F(AppendTest, MissingTablesAndFilesAreRefusedInOrder) {
  const TestTable table({{"a", ints({1})}});
  const std::string dir = directory().path();
  write_file(directory() / "c", "//CSV\nI\t9\ta\n");
  const auto append = [&](int id, int pos, const char* catalog_dir, const char* catalog,
                          const char* data_dir, const char* data) {
    return RQXAppendCatalogFileEx2(id, pos, 1, catalog_dir, catalog, data_dir, data);
  };
  expect_failure(append(99, 0, nullptr, nullptr, nullptr, nullptr), QX_ERROR_NO_TABLE,
                 "No Such Table: 99");
  expect_failure(append(table.id(), 0, nullptr, nullptr, nullptr, nullptr), QX_ERROR_PARAMETER);
  expect_failure(append(table.id(), 1, nullptr, "c", "", "d"), QX_ERROR_FILE,
                 "Invalid Parameter : archPath");
  expect_failure(append(table.id(), 1, "", "", "", "d"), QX_ERROR_FILE,
                 "Invalid Parameter : archName");
  expect_failure(append(table.id(), 1, "", "c", "nowhere", "d"), QX_ERROR_FILE,
                 "Invalid Parameter : FilePath");
  expect_failure(append(table.id(), 1, "", "none", "", "d"), QX_ERROR_FILE, "FILE  [");
  EXPECT_EQ(log_lines(), Texts{"FILE  [" + dir + "/none] MISSING "});
  expect_failure(append(table.id(), 1, "", "c", "", "none"), QX_ERROR_FILE, "FILE  [");
  EXPECT_EQ(log_lines(), Texts{"FILE  [" + dir + "/none] MISSING "});
  expect_failure(RQXAppendCatalogFile(table.id(), 1, 1, "", "c"), QX_ERROR_FILE);
  expect_failure(RQXAppendCatalogFile(table.id(), 1, 1, "", ""), QX_ERROR_FILE,
                 "Invalid Parameter : pchFileName");
  EXPECT_EQ(table.texts("a"), Texts{"1"});
}

TEST_F(AppendTest, ATableWithoutFiltersTakesNoColumns) {
  const TestTable table = TestTable::existing(RQXAddRealTable("bare", 2));
  expect_failure(append(table, -1, 1, "//CSV\nI\t9\ta\n", "1\n"), QX_ERROR_CATALOG);
  expect_failure(append(table, -1, 1, "//CSV\n//ERROR\tCONTINUE\nI\t9\ta\n", "1\n"),
                 QX_ERROR_PARAMETER);
  EXPECT_EQ(table.total_rows(), 2);
}

}  // namespace

}  // namespace qxe::test
