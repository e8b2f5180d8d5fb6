// Faults in the data: what each error mode does with them, what the log says, and on which rows.
#include "import/import_fixture.h"
#include "support/case_name.h"

namespace qxe::test {

namespace {

/// Three lines, the middle one with a fault.
struct FaultyData {
  const char* columns;
  const char* data;
  const char* log;
};

const FaultyData kBadValue{"//CSV\nI\t9\ta\nA\t9\tb\n", "1,x\ny,y\n3,z\n",
                           "DATA ERROR \t\t----->\t[INTEGER] = \"y\"  \t@ Row = 2 , Col = 1 "};
const FaultyData kBadQuotes{"//CSV\nI\t9\ta\nA\t9\tb\n", "1,x\n2,\"y\" \n3,z\n",
                            "DATA PARSE ERROR \t\t @ Row = 2 "};
const FaultyData kOpenQuote{"//CSV\nI\t9\ta\nA\t9\tb\n", "1,x\n2,\"y\n3,z\n",
                            "DATA PARSE ERROR \t\t @ Row = 2 "};
const FaultyData kTooFew{"//CSV\nI\t9\ta\nA\t9\tb\n", "1,x\n2\n3,z\n",
                         "FILTER MISMATCH \t----->\tFilters - Items [2 - 1] \t@ Row = 2 "};
const FaultyData kTooMany{"//CSV\nI\t9\ta\nA\t9\tb\n", "1,x\n2,y,\n3,z\n",
                          "FILTER MISMATCH \t----->\tFilters - Items [2 - 3] \t@ Row = 2 "};
const FaultyData kEmptyLine{"//CSV\nI\t9\ta\nA\t9\tb\n", "1,x\n\n3,z\n",
                            "FILTER MISMATCH \t----->\tFilters - Items [2 - 1] \t@ Row = 2 "};
const FaultyData kLongLine{"//FIX\nI\t1\ta\nA\t2\tb\n", "1x \n2y 7\n3z \n",
                           "FILTER MISMATCH \t----->\tFilters != Items [2 - (> 2) ] \t@ Row = 2 "};
const FaultyData kShortField{
    "//FIX\nI\t1\ta\nA\t2\tb\n", "1x \n2y\n3z \n",
    "ITEM SIZE MISMATCH \t----->\t Field Length  != Item length [2 - 1] \t@ Row = 2 "};

enum class Outcome { kAll, kSkipped, kNullStored, kFails };

struct FaultCase {
  std::string name;
  FaultyData faulty;
  std::string mode;
  Outcome outcome;
  int status = 0;
  bool logged = true;
};

class ImportFaultsTest : public ImportTest, public testing::WithParamInterface<FaultCase> {};

TEST_P(ImportFaultsTest, FollowTheErrorMode) {
  const FaultCase& wanted = GetParam();
  const int id =
      import(wanted.faulty.columns + ("//ERROR\t" + wanted.mode) + "\n", wanted.faulty.data);
  if (wanted.outcome == Outcome::kFails) {
    EXPECT_EQ(hex(id), hex(wanted.status));
    EXPECT_EQ(table_count(), 0);
  } else {
    ASSERT_GT(id, 0) << hex(id);
    const Rows rows = rows_of(id);
    ASSERT_EQ(rows.size(), wanted.outcome == Outcome::kSkipped ? 2u : 3u);
    EXPECT_EQ(rows[0][0], "1");
    EXPECT_EQ(rows.back()[0], "3");
    if (wanted.outcome == Outcome::kNullStored) {
      EXPECT_EQ(rows[1][0], "NULL");
    }
  }
  EXPECT_EQ(log_lines(), wanted.logged ? std::vector<std::string>{wanted.faulty.log}
                                       : std::vector<std::string>{});
  EXPECT_EQ(has_log(), wanted.logged);
}

INSTANTIATE_TEST_SUITE_P(
    Value, ImportFaultsTest,
    testing::Values(FaultCase{"Stop", kBadValue, "STOP", Outcome::kFails, QX_ERROR_INVALID_DATA},
                    FaultCase{"UnknownModeIsNone", kBadValue, "?", Outcome::kFails,
                              QX_ERROR_INVALID_DATA},
                    FaultCase{"Continue", kBadValue, "CONTINUE", Outcome::kNullStored},
                    FaultCase{"None", kBadValue, "NONE", Outcome::kAll, 0, false},
                    FaultCase{"SkipLine", kBadValue, "SkipLine", Outcome::kSkipped}),
    case_name<FaultCase>);

std::vector<FaultCase> line_faults() {
  const std::vector<std::pair<std::string, FaultyData>> kinds = {{"BadQuotes", kBadQuotes},
                                                                 {"OpenQuote", kOpenQuote},
                                                                 {"TooFew", kTooFew},
                                                                 {"TooMany", kTooMany},
                                                                 {"EmptyLine", kEmptyLine}};
  std::vector<FaultCase> cases;
  for (const auto& [name, faulty] : kinds) {
    const int status =
        name.find("Quote") != std::string::npos ? QX_ERROR_INVALID_DATA : QX_ERROR_CATALOG;
    cases.push_back({name + "Stop", faulty, "STOP", Outcome::kFails, status});
    cases.push_back({name + "Continue", faulty, "CONTINUE", Outcome::kFails, status});
    cases.push_back({name + "None", faulty, "NONE", Outcome::kFails, status, false});
    cases.push_back({name + "SkipLine", faulty, "SKIPLINE", Outcome::kSkipped});
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(Line, ImportFaultsTest, testing::ValuesIn(line_faults()),
                         case_name<FaultCase>);

std::vector<FaultCase> fixed_width_faults() {
  std::vector<FaultCase> cases;
  for (const auto& [name, faulty] :
       {std::pair{std::string("Long"), kLongLine}, std::pair{std::string("Short"), kShortField}}) {
    cases.push_back({name + "Stop", faulty, "STOP", Outcome::kFails, QX_ERROR_CATALOG});
    cases.push_back({name + "Continue", faulty, "CONTINUE", Outcome::kSkipped});
    cases.push_back({name + "None", faulty, "NONE", Outcome::kSkipped, 0, false});
    cases.push_back({name + "SkipLine", faulty, "SKIPLINE", Outcome::kSkipped});
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(FixedWidth, ImportFaultsTest, testing::ValuesIn(fixed_width_faults()),
                         case_name<FaultCase>);

struct LongCellCase {
  std::string name;
  std::string cell;
};

class ImportLongCellsTest : public ImportTest, public testing::WithParamInterface<LongCellCase> {};

TEST_P(ImportLongCellsTest, EndTheImportInEveryMode) {
  for (const char* const mode : {"STOP", "CONTINUE", "NONE", "SKIPLINE"}) {
    const std::string catalog = "//CSV\nA\t9\ta\nA\t9\tb\n//ERROR\t" + std::string(mode) + "\n";
    const int status = import(catalog, "x,y\n" + GetParam().cell + ",z\n");
    expect_failure(status, QX_ERROR_TEXT_FIELD, "DataSize overflow");
    if (mode == std::string("NONE")) {
      EXPECT_FALSE(has_log());
    } else {
      EXPECT_EQ(log_lines(), std::vector<std::string>{
                                 "DATA OVERFLOW ERROR - MAX_STRING_SIZE EXCEED \t\t @  Row = 2 @ "
                                 "File = " +
                                 (directory() / "SrcData.dat") + " "});
    }
  }
  EXPECT_EQ(table_count(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Cells, ImportLongCellsTest,
    testing::Values(LongCellCase{"Unquoted", std::string(4096, 'x')},
                    LongCellCase{"UnquotedEndsWithCarriageReturn", std::string(4095, 'x') + "\r"},
                    LongCellCase{"Quoted", "\"" + std::string(4097, 'x') + "\""},
                    LongCellCase{"QuotedOfQuotes", "\"" + std::string(2 * 4097, '"') + "\""},
                    LongCellCase{"QuotedThatStaysOpen", "\"" + std::string(4097, 'x')}),
    case_name<LongCellCase>);

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

TEST_F(ImportTest, OnlyTheFirstFaultOfTheFileCountsWhenItEndsTheImport) {
  const std::string data = data_with_faults(4000, {1999, 2001, 3000, 4000});
  EXPECT_EQ(hex(import("//CSV\nI\t9\ta\nA\t9\tb\n", data)), hex(QX_ERROR_INVALID_DATA));
  EXPECT_EQ(logged_rows(), std::vector<int>{1999});
  EXPECT_EQ(table_count(), 0);
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

TEST_F(ImportTest, EachImportStartsANewLog) {
  const std::string catalog = "//CSV\n//ERROR\tCONTINUE\nI\t9\ta\n";
  ASSERT_GT(import(catalog, "1\nx\n"), 0);
  EXPECT_EQ(logged_rows(), std::vector<int>{2});
  ASSERT_GT(import(catalog, "y\n1\n"), 0);
  EXPECT_EQ(logged_rows(), std::vector<int>{1});
  ASSERT_GT(import(catalog, "1\n"), 0);
  EXPECT_FALSE(has_log());
}

}  // namespace

}  // namespace qxe::test
