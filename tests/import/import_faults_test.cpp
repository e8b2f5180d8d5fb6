// Faults in the data: what each error mode does with them, what the log says, and on which rows.
#include "import/import_fixture.h"
#include "support/case_name.h"

namespace qxe::test {

namespace {

/// Three lines, the middle one with a fault, and what comes of it in each error mode: a status, or
/// how many rows are kept.
struct FaultyData {
  const char* name;
  const char* columns;
  const char* data;
  const char* log;
  int stop, go_on, none;
};

const char* const kCsv = "//CSV\nI\t9\ta\nA\t9\tb\n";
const char* const kFix = "//FIX\nI\t1\ta\nA\t2\tb\n";
constexpr int kData = QX_ERROR_INVALID_DATA;
constexpr int kShape = QX_ERROR_CATALOG;

class ImportFaultsTest : public ImportTest, public testing::WithParamInterface<FaultyData> {
 protected:
  void expect(const char* mode, int outcome, bool logged = true) const {
    SCOPED_TRACE(mode);
    const FaultyData& faulty = GetParam();
    const int id = import(faulty.columns + std::string("//ERROR\t") + mode + "\n", faulty.data);
    EXPECT_EQ(log_lines(),
              logged ? std::vector<std::string>{faulty.log} : std::vector<std::string>{});
    EXPECT_EQ(has_log(), logged);
    if (outcome < 0) {
      EXPECT_EQ(hex(id), hex(outcome));
      return;
    }
    ASSERT_GT(id, 0) << hex(id);
    const Rows rows = rows_of(id);
    ASSERT_EQ(rows.size(), static_cast<size_t>(outcome));
    EXPECT_EQ(rows.front()[0] + rows.back()[0], "13");
    if (outcome == 3 && logged) {
      EXPECT_EQ(rows[1][0], "NULL");
    }
  }
};

TEST_P(ImportFaultsTest, FollowTheErrorMode) {
  expect("STOP", GetParam().stop);
  expect("?", GetParam().stop);
  EXPECT_EQ(table_count(), 0);
  expect("CONTINUE", GetParam().go_on);
  expect("NONE", GetParam().none, false);
  expect("SkipLine", 2);
}

using F = FaultyData;

INSTANTIATE_TEST_SUITE_P(
    Kinds, ImportFaultsTest,
    testing::Values(
        F{"Value", kCsv, "1,x\ny,y\n3,z\n",
          "DATA ERROR \t\t----->\t[INTEGER] = \"y\"  \t@ Row = 2 , Col = 1 ", kData, 3, 3},
        F{"BadQuotes", kCsv, "1,x\n2,\"y\" \n3,z\n", "DATA PARSE ERROR \t\t @ Row = 2 ", kData,
          kData, kData},
        F{"OpenQuote", kCsv, "1,x\n2,\"y\n3,z\n", "DATA PARSE ERROR \t\t @ Row = 2 ", kData, kData,
          kData},
        F{"TooFew", kCsv, "1,x\n2\n3,z\n",
          "FILTER MISMATCH \t----->\tFilters - Items [2 - 1] \t@ Row = 2 ", kShape, kShape, kShape},
        F{"TooMany", kCsv, "1,x\n2,y,\n3,z\n",
          "FILTER MISMATCH \t----->\tFilters - Items [2 - 3] \t@ Row = 2 ", kShape, kShape, kShape},
        F{"EmptyLine", kCsv, "1,x\n\n3,z\n",
          "FILTER MISMATCH \t----->\tFilters - Items [2 - 1] \t@ Row = 2 ", kShape, kShape, kShape},
        F{"LongLine", kFix, "1x \n2y 7\n3z \n",
          "FILTER MISMATCH \t----->\tFilters != Items [2 - (> 2) ] \t@ Row = 2 ", kShape, 2, 2},
        F{"ShortField", kFix, "1x \n2y\n3z \n",
          "ITEM SIZE MISMATCH \t----->\t Field Length  != Item length [2 - 1] \t@ Row = 2 ", kShape,
          2, 2}),
    case_name<F>);

TEST_F(ImportTest, LongCellsEndTheImportInEveryMode) {
  for (const std::string& cell :
       {std::string(4096, 'x'), std::string(4095, 'x') + "\r", "\"" + std::string(4097, 'x') + "\"",
        "\"" + std::string(2 * 4097, '"') + "\"", "\"" + std::string(4097, 'x')}) {
    for (const char* const mode : {"STOP", "CONTINUE", "NONE", "SKIPLINE"}) {
      const std::string catalog = "//CSV\nA\t9\ta\nA\t9\tb\n//ERROR\t" + std::string(mode) + "\n";
      expect_failure(import(catalog, "x,y\n" + cell + ",z\n"), QX_ERROR_TEXT_FIELD,
                     "DataSize overflow");
      const std::string line =
          "DATA OVERFLOW ERROR - MAX_STRING_SIZE EXCEED \t\t @  Row = 2 @ File = " +
          (directory() / "SrcData.dat") + " ";
      EXPECT_EQ(log_lines(), mode == std::string("NONE") ? std::vector<std::string>{}
                                                         : std::vector<std::string>{line});
    }
  }
  EXPECT_EQ(table_count(), 0);
}

TEST_F(ImportTest, QuotedCellThatStaysOpenWithinTheLimitIsBadQuoting) {
  const int status = import("//CSV\nA\t9\ta\n", "\"" + std::string(4096, 'x') + "\r\n");
  expect_failure(status, QX_ERROR_INVALID_DATA, "Invalid Data");
}

TEST_F(ImportTest, FaultsOfOneLineComeInTheOrderOfColumns) {
  const std::string columns = "//CSV\nI\t9\ta\nA\t9\tb\nF\t9\tc\n";
  const std::string data = "1,x,1\n?,y,!\n3,z,3\n";
  ASSERT_GT(import(columns + "//ERROR\tCONTINUE\n", data), 0);
  EXPECT_EQ(log_lines(), (std::vector<std::string>{
                             "DATA ERROR \t\t----->\t[INTEGER] = \"?\"  \t@ Row = 2 , Col = 1 ",
                             "DATA ERROR \t\t----->\t[DOUBLE] = \"!\"  \t@ Row = 2 , Col = 3 "}));
  ASSERT_GT(import(columns + "//ERROR\tSKIPLINE\n", data), 0);
  EXPECT_EQ(logged_rows(), std::vector<int>{2});  // one line, one entry
}

TEST_F(ImportTest, ColumnsOfFaultsCountWithoutSkippedOnesAndFieldCountsWithThem) {
  const std::string columns = "//CSV\n//ERROR\tSKIPLINE\nA\t9\ta\tSKIP\nI\t9\tb\n";
  ASSERT_GT(import(columns, "x,?\nx,1,2\n"), 0);
  EXPECT_EQ(log_lines(), (std::vector<std::string>{
                             "DATA ERROR \t\t----->\t[INTEGER] = \"?\"  \t@ Row = 1 , Col = 1 ",
                             "FILTER MISMATCH \t----->\tFilters - Items [2 - 3] \t@ Row = 2 "}));
}

TEST_F(ImportTest, ValuesOfSkippedLinesLeaveNoTrace) {
  std::string data;
  for (int i = 0; i < 2000; ++i) {
    const std::string number = std::to_string(i);
    data += (i % 3 == 0 ? "bad" : number) + ",text" + number + "," + number + ".5\n";
  }
  const int id = import("//CSV\n//ERROR\tSKIPLINE\nI\t9\ta\nA\t9\tb\nF\t9\tc\n", data);
  ASSERT_GT(id, 0) << hex(id);
  const TestTable table = TestTable::existing(id);
  constexpr int kKept = 1333;
  EXPECT_EQ(table.total_rows(), kKept);
  for (const char* const column : {"a", "b", "c"}) {
    _TRFilterInfo info{};
    ASSERT_EQ(RQXGetFilterInfo(id, table.filter(column), &info), 0);
    EXPECT_EQ(info.valueCount, kKept + 1) << column;  // and NULL
  }
}

/// A file large enough for several workers, with a bad number in each of these lines.
std::string data_with_faults(int lines, const std::vector<int>& faulty) {
  std::vector<bool> is_faulty(static_cast<size_t>(lines) + 1);
  for (const int line : faulty) is_faulty[static_cast<size_t>(line)] = true;
  std::string data;
  for (int line = 1; line <= lines; ++line) {
    data += (is_faulty[static_cast<size_t>(line)] ? "bad" : std::to_string(line)) + ",some text\n";
  }
  return data;
}

TEST_F(ImportTest, RowNumbersInTheLogCountFromTheStartOfTheFile) {
  const std::vector<int> faulty = {1, 2, 999, 1500, 2500, 3999, 4000};
  const std::string data = "title,line\n" + data_with_faults(4000, faulty);
  for (const char* const mode : {"CONTINUE", "SKIPLINE"}) {
    const int id = import("//CSV\n//CUTTOP\nI\t9\ta\nA\t9\tb\n//ERROR\t" + std::string(mode), data);
    ASSERT_GT(id, 0) << hex(id);
    const int refused = mode == std::string("CONTINUE") ? 0 : static_cast<int>(faulty.size());
    EXPECT_EQ(TestTable::existing(id).total_rows(), 4000 - refused);
    EXPECT_EQ(logged_rows(), faulty) << mode;
  }
}

TEST_F(ImportTest, FaultsInFrontOfTheOneThatEndsTheImportAreLogged) {
  std::string data = data_with_faults(4000, {10, 1999, 3500, 3999});
  data += "one field\n5,x\nbad,x\n";
  EXPECT_EQ(hex(import("//CSV\n//ERROR\tCONTINUE\nI\t9\ta\nA\t9\tb\n", data)),
            hex(QX_ERROR_CATALOG));
  EXPECT_EQ(logged_rows(), (std::vector<int>{10, 1999, 3500, 3999, 4001}));
  EXPECT_NE(read_file(log_path()).find("ADD CATALOG FAILURE  \t\t ErrorCode = "),
            std::string::npos);
}

}  // namespace

}  // namespace qxe::test
