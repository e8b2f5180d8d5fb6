// Catalogs: directives and columns, faults in them, names of tables and filters, and what is
// missing.
#include "import/import_fixture.h"
#include "support/case_name.h"

namespace qxe::test {

namespace {

struct CatalogCase {
  std::string name;
  std::string catalog;
  int status;  // 0: one row "1", "2" in columns named a and b
  std::string log;
};

class CatalogTest : public ImportTest, public testing::WithParamInterface<CatalogCase> {
 protected:
  /// A log line's text with the path of the catalog in place of "%".
  std::string with_path(std::string text) const {
    const size_t place = text.find('%');
    if (place != std::string::npos) text.replace(place, 1, directory() / "table.cat");
    return text;
  }
};

TEST_P(CatalogTest, IsReadOrRefused) {
  const CatalogCase& wanted = GetParam();
  const int id = import(wanted.catalog, "1,2\n");
  if (wanted.status == 0) {
    ASSERT_GT(id, 0) << hex(id);
    const TestTable table = TestTable::existing(id);
    EXPECT_EQ(table.texts("a"), std::vector<std::string>{"1"});
    EXPECT_EQ(table.texts("b"), std::vector<std::string>{"2"});
    EXPECT_FALSE(has_log());
  } else {
    expect_failure(id, wanted.status, "Failed to parse catalog");
    EXPECT_EQ(log_lines(), std::vector<std::string>{with_path(wanted.log)});
    EXPECT_EQ(table_count(), 0);
  }
}

const std::string kColumns = "I\t9\ta\nI\t9\tb\n";

INSTANTIATE_TEST_SUITE_P(
    Good, CatalogTest,
    testing::Values(
        CatalogCase{"Plain", "//CSV\n" + kColumns, 0, ""},
        CatalogCase{"NoLineEndAtTheEnd", "//CSV\nI\t9\ta\nI\t9\tb", 0, ""},
        CatalogCase{"BlanksAndCase", "// c s v \r\ni nt\t9\t a \r\n\r\ninteger\t9\tb\r\n", 0, ""},
        CatalogCase{"TypeBehindTheColumns", kColumns + "//CSV\n", 0, ""},
        CatalogCase{"LastTypeHolds", "//TAB\n//FIX\n//CSV\n" + kColumns, 0, ""},
        CatalogCase{"Comments", "//CSVX\n//CSV\n//\n// FIXED\n//Any text\twith tabs\n" + kColumns,
                    0, ""},
        CatalogCase{"CodeNames", "//UTF-8\n//CSV\n//Shift_JIS\n" + kColumns, 0, ""},
        CatalogCase{"ErrorWithoutAWord", "//ERROR\n//ERRORLOG\n//CSV\n" + kColumns, 0, ""},
        CatalogCase{"WidthsDoNotCountWithoutFix", "//CSV\nI\tx\ta\nI\t5000\tb\n", 0, ""},
        CatalogCase{"MoreTokens", "//CSV\nI\t9\ta\t\tD1\tmore\nN\t9\tb\t0\t\t\n", 0, ""}),
    case_name<CatalogCase>);

std::string many_columns(int count) {
  std::string catalog = "//CSV\n";
  for (int i = 0; i < count; ++i) {
    catalog += "I\t9\tc" + std::to_string(i) + (i % 2 == 0 ? "" : "\tSKIP") + "\n";
  }
  return catalog;
}

const std::string kParseError = "QX_CATALOG_PARSE_ERROR\t----->\t in %\t\t@ Row = 2 ";

INSTANTIATE_TEST_SUITE_P(
    Faulty, CatalogTest,
    testing::Values(
        CatalogCase{"Empty", "", QX_ERROR_CATALOG, "NO FILE FORMAT IS SPECIFIED"},
        CatalogCase{"OnlyComments", "//a\n//b\n", QX_ERROR_CATALOG, "NO FILE FORMAT IS SPECIFIED"},
        CatalogCase{"NoColumn", "//CSV\n", QX_ERROR_CATALOG, "NO FILTER IS SPECIFIED"},
        CatalogCase{"OnlySkippedColumns", "//CSV\nI\t9\ta\tSKIP\n", QX_ERROR_CATALOG,
                    "NO FILTER IS SPECIFIED"},
        CatalogCase{"TwoTokens", "//CSV\nI\t9\n", QX_ERROR_CATALOG, kParseError},
        CatalogCase{"EmptyName", "//CSV\nI\t9\t\tx\n", QX_ERROR_CATALOG, kParseError},
        CatalogCase{"EmptyWidth", "//CSV\nI\t\ta\n", QX_ERROR_CATALOG, kParseError},
        CatalogCase{"EmptyType", "//CSV\n\t9\ta\n", QX_ERROR_CATALOG, kParseError},
        CatalogCase{"UnknownType", "//CSV\nBig\t9\ta\n", QX_ERROR_NOT_STRING,
                    "UNDEFINED FILTER TYPE\t----->\t[Big] in %\t\t@ Row = 2 "},
        CatalogCase{"UnknownTypeOfSkippedColumn", "//CSV\n9\t9\ta\tSKIP\n", QX_ERROR_NOT_STRING,
                    "UNDEFINED FILTER TYPE\t----->\t[9] in %\t\t@ Row = 2 "},
        CatalogCase{"Scale", "//CSV\n\nN\t9\ta\t39\n", QX_ERROR_CATALOG,
                    "QX_ERROR_INVALID_SCALE\t----->\t[39] in %\t\t@ Row = 3 "},
        CatalogCase{"ScaleNoNumber", "//CSV\n\nN\t9\ta\tx\n", QX_ERROR_CATALOG,
                    "QX_ERROR_INVALID_SCALE\t----->\t[x] in %\t\t@ Row = 3 "},
        CatalogCase{"Rounding", "//CSV\nN\t9\ta\t2\tUP\n", QX_ERROR_CATALOG,
                    "QX_ERROR_INVALID_ROUNDMODE\t----->\t[UP] in %\t\t@ Row = 2 "},
        CatalogCase{"LongName", "//CSV\nI\t9\t" + std::string(256, 'n') + "\n", QX_ERROR_CATALOG,
                    "FILTERS NAME SIZE EXCEED MAXIMUM LIMIT\t\t [ > 255] "},
        CatalogCase{"TooManyColumns", many_columns(513), QX_ERROR_CATALOG,
                    "FILTERS EXCEED MAXIMUM LIMIT\t\t [ > 512] "},
        CatalogCase{"Width0", "//FIX\nI\t0\ta\n", QX_ERROR_CATALOG,
                    "FILTER SIZE LIMIT EXCEEDED (>=4096) \t----->\t[0] in %\t\t@ Row = 2 "},
        CatalogCase{"Width4096", "I\t4096\ta\n//FIX\n", QX_ERROR_CATALOG,
                    "FILTER SIZE LIMIT EXCEEDED (>=4096) \t----->\t[4096] in %\t\t@ Row = 1 "},
        CatalogCase{"WidthNoNumber", "//FIX\nI\t9\ta\nI\t8x\tb\n", QX_ERROR_CATALOG,
                    "FILTER SIZE LIMIT EXCEEDED (>=4096) \t----->\t[8x] in %\t\t@ Row = 3 "}),
    case_name<CatalogCase>);

TEST_F(ImportTest, ColumnsGetValidAndUniqueNames) {
  const std::string longest(255, 'n');
  const int id = import("//CSV\nI\t9\ta.b\nI\t9\ta_b\nI\t9\ta-b\nI\t9\tCol 1\nI\t9\t" + longest,
                        "1,2,3,4,5\n");
  ASSERT_GT(id, 0) << hex(id);
  const TestTable table = TestTable::existing(id);
  const std::vector<std::string> names = {"a_b", "a_b_#1", "a_b_#2", "Col1", longest};
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(table.texts(names[i]), std::vector<std::string>{std::to_string(i + 1)}) << names[i];
  }
}

TEST_F(ImportTest, AllColumnsMayHaveOneName) {
  std::string catalog = "//CSV\n";
  std::string data;
  for (int i = 0; i < QX_CATALOG_MAX_COLUMNS; ++i) {
    catalog += "I\t9\tc\n";
    data += (i == 0 ? "" : ",") + std::to_string(i);
  }
  const int id = import(catalog, data);
  ASSERT_GT(id, 0) << hex(id);
  const TestTable table = TestTable::existing(id);
  EXPECT_EQ(table.texts("c"), std::vector<std::string>{"0"});
  EXPECT_EQ(table.texts("c_#511"), std::vector<std::string>{"511"});
}

TEST_F(ImportTest, ErrorLogMayHaveAnotherName) {
  write_file(directory() / "faults.txt", "left from before");
  const std::string catalog = "//CSV\n//ERROR\tCONTINUE\n//ERRORLOG\tfaults.txt\nI\t9\ta\n";
  ASSERT_GT(import(catalog, "1\n"), 0);
  EXPECT_FALSE(std::filesystem::exists(directory() / "faults.txt"));
  ASSERT_GT(import(catalog, "x\n"), 0);
  EXPECT_NE(read_file(directory() / "faults.txt").find("DATA ERROR"), std::string::npos);
  EXPECT_FALSE(has_log());
}

/// Name of a table.
std::string table_name(int id) {
  char name[256];
  require(RQXGetTableName(id, name), "RQXGetTableName");
  return name;
}

class CatalogFilesTest : public ImportTest {
 protected:
  CatalogFilesTest() {
    std::filesystem::create_directory(directory() / "catalogs");
    std::filesystem::create_directory(directory() / "data");
    write_file(directory() / "catalogs/my.sales.cat", "//CSV\nI\t9\ta\n");
    write_file(directory() / "catalogs/SrcData.dat", "1\n");
    write_file(directory() / "data/sales.csv", "2\n3\n");
  }
};

TEST_F(CatalogFilesTest, TableIsNamedAfterTheCatalog) {
  EXPECT_EQ(table_name(RQXAddCatalogFile("catalogs", "my.sales.cat")), "my_sales");
  EXPECT_EQ(table_name(RQXAddCatalogFile("catalogs/", "my.sales.cat")), "my_sales_#1");
  EXPECT_EQ(
      table_name(RQXAddCatalogFileEx2("catalogs", "my.sales.cat", "data", "sales.csv", "a-b")),
      "a_b");
  const std::string absolute = directory() / "catalogs";
  EXPECT_EQ(table_name(RQXAddCatalogFile(absolute.c_str(), "my.sales.cat")), "my_sales_#2");
}

TEST_F(CatalogFilesTest, DataFileOfOneCallDoesNotCountForTheNext) {
  const int other = RQXAddCatalogFileEx2("catalogs", "my.sales.cat", "data", "sales.csv", "t");
  EXPECT_EQ(rows_of(other), (Rows{{"2"}, {"3"}}));
  EXPECT_EQ(rows_of(RQXAddCatalogFile("catalogs", "my.sales.cat")), (Rows{{"1"}}));
}

TEST_F(CatalogFilesTest, EmptyDirectoryIsTheWorkingDirectoryAndThatStays) {
  write_file(directory() / "here.cat", "//CSV\nI\t9\ta\n");
  write_file(directory() / "SrcData.dat", "4\n");
  EXPECT_EQ(rows_of(RQXAddCatalogFile("", "here.cat")), (Rows{{"4"}}));
  EXPECT_EQ(rows_of(RQXAddCatalogFileEx2("", "here.cat", "data", "sales.csv", "t")),
            (Rows{{"2"}, {"3"}}));
  EXPECT_LT(RQXAddCatalogFile("catalogs", "missing.cat"), 0);
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::path(directory().path()));
}

constexpr const char* kCatalog = "my.sales.cat";

TEST_F(CatalogFilesTest, BadArgumentsAreReportedAndLeaveNoTable) {
  struct {
    std::vector<const char*> arguments;  // two or five
    const char* text;                    // in the ring
    int status = QX_ERROR_FILE;
  } const cases[] = {
      {{nullptr, kCatalog}, "Invalid Parameter : pchFilePath"},
      {{"none", kCatalog}, "Invalid Parameter : pchFilePath"},
      {{"data/sales.csv", kCatalog}, "Invalid Parameter"},
      {{"catalogs", nullptr}, "Invalid Parameter : pchFileName"},
      {{"catalogs", ""}, "Invalid Parameter : pchFileName"},
      {{"catalogs", "none.cat"}, ""},
      {{".", "catalogs"}, ""},
      {{"data", "../catalogs/my.sales.cat"}, ""},
      {{"none", kCatalog, "data", "sales.csv", "t"}, ""},
      {{"catalogs", "", "data", "sales.csv", "t"}, "Invalid Parameter : archName"},
      {{"catalogs", kCatalog, "none", "sales.csv", "t"}, "Invalid Parameter : FilePath"},
      {{"catalogs", kCatalog, nullptr, "sales.csv", "t"}, ""},
      {{"catalogs", kCatalog, ".", "data", "t"}, ""},
      {{"catalogs", kCatalog, "data", "", "t"}, "Invalid Parameter : FileName"},
      {{"catalogs", kCatalog, "data", "sales.csv", nullptr},
       "Illegal table name",
       QX_ERROR_TABLE_NAME},
      {{"catalogs", kCatalog, "data", "sales.csv", ""}, "Illegal table name", QX_ERROR_TABLE_NAME}};
  for (const auto& [a, text, status] : cases) {
    expect_failure(a.size() == 2 ? RQXAddCatalogFile(a[0], a[1])
                                 : RQXAddCatalogFileEx2(a[0], a[1], a[2], a[3], a[4]),
                   status, text);
  }
  EXPECT_EQ(table_count(), 0);
}

TEST_F(CatalogFilesTest, MissingFilesAreNamedInTheLog) {
  EXPECT_LT(RQXAddCatalogFile("catalogs", "none.cat"), 0);
  EXPECT_NE(read_file("catalogs/catalog_err_log.txt")
                .find("FILE  [" + (directory() / "catalogs/none.cat") + "] MISSING "),
            std::string::npos);
  EXPECT_LT(RQXAddCatalogFileEx2("catalogs", kCatalog, "data", "none.csv", "t"), 0);
  EXPECT_NE(read_file("catalogs/catalog_err_log.txt")
                .find("FILE  [" + (directory() / "data/none.csv") + "] MISSING "),
            std::string::npos);
}

}  // namespace

}  // namespace qxe::test
