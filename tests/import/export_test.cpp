// Exports compared byte by byte with lines that a plain loop makes of the same cells, and catalogs
// that bring an export back as a table.
#include <gtest/gtest.h>
#include <stdio.h>

#include <cmath>
#include <filesystem>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "support/engine_test.h"
#include "support/files.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

const std::vector<int> kAllFilters = {-1};

std::string double_field(double value) {
  char text[64];
  snprintf(text, sizeof text, std::fabs(value) < 1e18 ? "%0.*f" : "%0.*E",
           std::fabs(value) < 1e18 ? 3 : 13, value);
  return text;
}

std::string field(const Cell& cell, int type, char date_separator) {
  if (is_null(cell)) return "";
  if (type == QX_DT_DOUBLE) return double_field(std::get<double>(cell));
  std::string text = to_text(cell, type);
  if (type == QX_DT_DATE || type == QX_DT_DATETIME) {
    std::replace(text.begin(), text.end(), '/', date_separator);
  }
  return text;
}

std::string lines(const Columns& columns, const std::vector<int>& rows, char separator,
                  char date_separator) {
  std::string text;
  for (const int row : rows) {
    std::string line;
    for (const NamedColumn& named : columns) {
      line += field(named.column.cells[static_cast<size_t>(row - 1)], named.column.type,
                    date_separator);
      line += separator;
    }
    line.back() = '\n';
    text += line;
  }
  return text;
}

std::vector<int> all_rows(const Columns& columns) {
  return NaiveModel(columns).all_rows();
}

class ExportTest : public EngineTest {
 protected:
  /// Exports rows of a set as comma separated values to "out.csv".
  int export_csv(const TestTable& table, const std::vector<int>& filters = kAllFilters,
                 int from = -1, int to = -1, int set = TestTable::kAllRows) const {
    return RQXExportAsCSV(table.id(), table.set_id(set), filters.data(), from, to,
                          directory().path().c_str(), "out.csv", '/');
  }
  int export_with_format(const TestTable& table, const std::string& format) const {
    write_file(directory() / "format", format);
    return RQXExportAsCSVwithF(table.id(), -1, kAllFilters.data(), -1, -1,
                               directory().path().c_str(), "out.csv", '/', "format");
  }
  std::string output(const std::string& name = "out.csv") const {
    return read_file(directory() / name);
  }
  std::string exported(const Columns& columns) const {
    EXPECT_EQ(export_csv(TestTable(columns)), 0);
    return output();
  }
  std::set<std::string> files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory().path())) {
      names.insert(entry.path().filename());
    }
    return names;
  }
};

TEST_F(ExportTest, RandomTablesSetsAndRangesEqualThePlainLoop) {
  for (unsigned seed = 1; seed <= 150; ++seed) {
    RandomData random(seed);
    const int rows = random.below(60);
    const Columns columns = random.table(rows);
    const TestTable table(columns);
    const std::vector<int> set_rows = random.set_of(rows);
    const int set = table.add_set(set_rows);
    const int from = random.below(rows + 2) + 1;
    const int to = random.chance(20) ? -1 : random.below(rows + 2) + 1;
    const bool tabs = random.chance(50);
    const char date_separator = random.chance(50) ? '-' : '/';
    const auto write = tabs ? RQXExportAsTAB : RQXExportAsCSV;
    ASSERT_EQ(write(table.id(), set, kAllFilters.data(), from, to, "", "out", date_separator), 0);

    const int last = to == -1 ? rows : std::min(to, static_cast<int>(set_rows.size()));
    std::vector<int> wanted;
    for (int i = from; i <= std::min(last, static_cast<int>(set_rows.size())); ++i) {
      wanted.push_back(set_rows[static_cast<size_t>(i - 1)]);
    }
    ASSERT_EQ(output("out"), lines(columns, wanted, tabs ? '\t' : ',', date_separator))
        << "seed " << seed << "\n"
        << to_text(columns);
  }
}

/// Enough rows for several parts of each worker, value lists longer than what is rendered in
/// advance, and lists short enough for that.
TEST_F(ExportTest, ManyPartsComeOutInOrder) {
  RandomData random(7);
  constexpr int kRows = 50000;
  Columns columns = random.table(kRows);
  Column number = ints({});
  Column text = strings({});
  Column amount = doubles({});
  for (int row = 0; row < kRows; ++row) {
    number.cells.emplace_back(row * 37 % kRows);
    text.cells.emplace_back("text " + std::to_string(random.below(40000)) + std::string(25, '.'));
    amount.cells.emplace_back(random.below(30000) / 8.0);
  }
  columns.push_back({"number", number});
  columns.push_back({"text", text});
  columns.push_back({"amount", amount});
  const bool equal = exported(columns) == lines(columns, all_rows(columns), ',', '/');
  EXPECT_TRUE(equal);  // without printing megabytes
}

TEST_F(ExportTest, LongStringsAreWrittenWhole) {
  const std::string longer_than_a_read(5000, 'x');
  const std::string longer_than_a_buffer(3'000'000, 'y');
  const Columns columns = {
      {"text", strings({longer_than_a_buffer, "", longer_than_a_read, "a", longer_than_a_buffer})},
      {"number", ints({1, 2, 3, 4, 5})}};
  const bool equal = exported(columns) == lines(columns, all_rows(columns), ',', '/');
  EXPECT_TRUE(equal);
}

TEST_F(ExportTest, ValuesAreWrittenInTheirForm) {
  const std::pair<Column, std::string> cases[] = {
      {doubles({1.5, -0.0004, 1e17, 1e18, -2.5e300, 0.0005, kNullDouble}),
       "1.500\n-0.000\n100000000000000000.000\n1.0000000000000E+18\n"
       "-2.5000000000000E+300\n0.001\n\n"},
      {dates({"2024/02/29", "", "0999/12/31"}), "2024/02/29\n\n0999/12/31\n"},
      {times({"12:30:45.250", "00:00:00", ""}), "12:30:45.250\n00:00:00\n\n"},
      {datetimes({"2024/03/01 12:30:45", "2024/03/01 00:00:00.007"}),
       "2024/03/01 12:30:45\n2024/03/01 00:00:00.007\n"},
      {strings({"a,b", "\"q", "", " x ", "two\nlines"}), "a,b\n\"q\n\n x \ntwo\nlines\n"},
      {decimals(3, {"-0.001", "0", "", "12345678901234567890123456789012345"}),
       "-0.001\n0.000\n\n12345678901234567890123456789012345.000\n"},
      {decimals(0, {"-7", "9999999999999999999"}), "-7\n9999999999999999999\n"}};
  for (const auto& [column, text] : cases) EXPECT_EQ(exported({{"column", column}}), text);
}

TEST_F(ExportTest, ValuesThatWaitAreWrittenLikeMergedOnes) {
  RandomData random(11);
  const TestTable table(random.table(200));
  const Columns news = random.table(20);
  for (const NamedColumn& column : news) {
    RawValues values(column.column);
    ASSERT_EQ(RQXOverwriteRealEx(table.id(), table.filter(column.name), 1, 1, 20, values.data()),
              20);
  }
  ASSERT_EQ(export_csv(table), 0);
  const std::string waiting = output();
  for (const NamedColumn& column : news) table.sort(column.name);  // which merges
  ASSERT_EQ(export_csv(table, kAllFilters, -1, -1, TestTable::kAllRows), 0);
  EXPECT_EQ(output(), waiting);
}

TEST_F(ExportTest, FiltersComeInTheOrderOfTheListAndMayRepeat) {
  const TestTable table({{"a", ints({1, 2})}, {"b", strings({"x", "y"})}});
  const int a = table.filter("a");
  const int b = table.filter("b");
  EXPECT_EQ(export_csv(table, {b, a, b, -1}), 0);
  EXPECT_EQ(output(), "x,1,x\ny,2,y\n");
}

TEST_F(ExportTest, ATableWithoutFiltersGivesAnEmptyFile) {
  const int table = RQXAddRealTable("bare", 5);
  write_file(directory() / "out.csv", "old content");
  EXPECT_EQ(RQXExportAsCSV(table, -1, kAllFilters.data(), -1, -1, "", "out.csv", '/'), 0);
  EXPECT_EQ(output(), "");
}

TEST_F(ExportTest, ARangeIsCutToTheSet) {
  struct {
    int from, to, status;
    const char* text;
  } const cases[] = {{-1, -1, 0, "40\n20\n10\n"},
                     {2, 2, 0, "20\n"},
                     {2, 100, 0, "20\n10\n"},
                     {3, 2, 0, ""},
                     {4, -1, 0, ""},
                     {0, 2, QX_ERROR_PARAMETER, "old content"},
                     {-5, -1, QX_ERROR_PARAMETER, "old content"},
                     {-1, 0, 0, ""}};
  const TestTable table({{"a", ints({10, 20, 30, 40})}});
  const int set = table.add_set({4, 2, 1});
  for (const auto& [from, to, status, text] : cases) {
    write_file(directory() / "out.csv", "old content");
    EXPECT_EQ(export_csv(table, kAllFilters, from, to, set), status);
    EXPECT_EQ(output(), text) << from << " " << to;
  }
  EXPECT_EQ(export_csv(table, kAllFilters, 0, 5, table.add_set({})), 0);
  EXPECT_EQ(output(), "");
}

TEST_F(ExportTest, AFormatSetsDigitsAndRounding) {
  const TestTable table(
      {{"f", doubles({2.5, -1.0})}, {"n", decimals(2, {"1.25", "-1.35"})}, {"i", ints({7, 8})}});
  const std::string unchanged = "2.500,1.25,7\n-1.000,-1.35,8\n";
  const std::pair<const char*, std::string> cases[] = {
      {"", unchanged},
      {"f\t0\tROUNDUP\nn\t1\tROUNDHALFEVEN\n", "2,1.2,7\n-1,-1.4,8\n"},
      {"f\t15\tROUNDUP\nn\t4\tROUNDUP\n",
       "2.500000000000000,1.2500,7\n-1.000000000000000,-1.3500,8\n"},
      {"n\t1\troundceiling\n", "2.500,1.3,7\n-1.000,-1.3,8\n"},
      {"// head\r\n\r\n f \t 1 \t ROUNDUP // tail\r\n\n", "2.5,1.25,7\n-1.0,-1.35,8\n"},
      {"f\t-3\twhatever\nn\t-1\tROUNDUP", unchanged},
      {"f\t16\tROUNDUP\nn\t39\tROUNDUP", unchanged},
      {"x\t1\tROUNDUP\ni\t2\tROUNDUP\n", unchanged}};
  for (const auto& [format, text] : cases) {
    EXPECT_EQ(export_with_format(table, format), 0);
    EXPECT_EQ(output(), text) << format;
  }
}

TEST_F(ExportTest, ABadFormatIsRefusedBeforeTheFileIsTouched) {
  write_file(directory() / "out.csv", "old content");
  const TestTable table({{"f", doubles({2.5})}});
  for (const char* const format : {"f\t1\n", "f\t1\tROUNDUP\tx\n", "\t1\tROUNDUP\n",
                                   "f\t\tROUNDUP\n", "f\tone\tROUNDUP\n", "f\t1\tROUND\n"}) {
    expect_failure(export_with_format(table, format), QX_ERROR_CATALOG);
    EXPECT_EQ(output(), "old content") << format;
  }
}

TEST_F(ExportTest, AMissingFormatFileFails) {
  const TestTable table({{"f", doubles({2.5})}});
  expect_failure(
      RQXExportAsTABwithF(table.id(), -1, kAllFilters.data(), -1, -1, "", "out", '/', "nowhere"),
      QX_ERROR_FILE);
}

TEST_F(ExportTest, FormatFilesOfAnySizeAreRead) {
  std::string format;
  for (int i = 0; i < 2000; ++i) format += "x" + std::to_string(i) + "\t1\tROUNDUP\n";
  format += "f\t1\tROUNDUP" + std::string(5000, ' ') + "// far";
  EXPECT_EQ(export_with_format(TestTable({{"f", doubles({2.5})}}), format), 0);
  EXPECT_EQ(output(), "2.5\n");
}

TEST_F(ExportTest, LeavesNothingButItsFileAndStaysInItsDirectory) {
  const auto before = std::filesystem::current_path();
  std::filesystem::create_directory("sub");
  const TestTable table({{"a", ints(std::vector<int>(3000, 5))}});
  EXPECT_EQ(RQXExportAsCSV(table.id(), -1, kAllFilters.data(), -1, -1, "sub", "out.csv", '/'), 0);
  expect_failure(RQXExportAsCSV(table.id(), -1, kAllFilters.data(), -1, -1, "sub", "no/out", '/'),
                 QX_ERROR_FILE, "Illegal FileName");
  EXPECT_EQ(std::filesystem::current_path(), before);
  EXPECT_EQ(files(), std::set<std::string>{"sub"});
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("sub"), {}), 1);
}

/// A device that is full shows it at a write, or for a small file only when it is closed.
TEST_F(ExportTest, AFullDeviceIsReported) {
  for (const int rows : {1, 300000}) {
    const TestTable table({{"a", ints(std::vector<int>(static_cast<size_t>(rows), 123456))}});
    expect_failure(RQXExportAsCSV(table.id(), -1, kAllFilters.data(), -1, -1, "/dev", "full", '/'),
                   QX_ERROR_FILE, "Failed to write (/dev/full)");
    expect_failure(RQXSaveAsCatalogEx(table.id(), -1, kAllFilters.data(), QX_EXPORT_TAB, -1, -1,
                                      '/', directory().path().c_str(), "data", "/dev", "full"),
                   QX_ERROR_FILE, "Failed to write (/dev/full)");
  }
}

TEST_F(ExportTest, ACatalogDescribesTheColumns) {
  const TestTable table({{"i", ints({1})},
                         {"f", doubles({1})},
                         {"d", dates({"2024/01/02"})},
                         {"t", times({"01:02:03"})},
                         {"s", strings({"x"})},
                         {"e", datetimes({"2024/01/02 01:02:03"})},
                         {"n", decimals(5, {"1"})}});
  EXPECT_EQ(RQXSaveAsCatalog(table.id(), -1, kAllFilters.data(), QX_EXPORT_COMMA, -1, -1, '-', "",
                             "out.cat"),
            0);
  EXPECT_EQ(output("out.cat"),
            "//CSV\n//UTF8\nI\t01\ti\nF\t01\tf\nD\t01\td\nT\t01\tt\nA\t01\ts\nE\t01\te\n"
            "N\t01\tn\t5\tROUNDHALFUP\n");
  EXPECT_EQ(output("SrcData.dat"), "1,1.000,2024-01-02,01:02:03,x,2024-01-02 01:02:03,1.00000\n");
}

TEST_F(ExportTest, ACatalogTakesDigitsAndRoundingFromTheFormatFileBesideTheData) {
  std::filesystem::create_directory("data");
  std::filesystem::create_directory("catalog");
  write_file("data/format", "n\t1\tROUNDDOWN\nm\t-1\tx\n");
  const TestTable table({{"n", decimals(3, {"1.19"})}, {"m", decimals(2, {"1"})}});
  const int filters[] = {table.filter("m"), table.filter("n"), -1};
  EXPECT_EQ(RQXSaveAsCatalogwithFEx(table.id(), -1, filters, QX_EXPORT_TAB, -1, -1, '/', "data",
                                    "rows", "catalog", "cat", "format"),
            0);
  EXPECT_EQ(read_file("catalog/cat"),
            "//TAB\n//UTF8\nN\t01\tm\t2\tROUNDHALFUP\nN\t01\tn\t1\tROUNDDOWN\n");
  EXPECT_EQ(read_file("data/rows"), "1.00\t1.1\n");
}

TEST_F(ExportTest, TablesComeBackThroughTheirCatalogs) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    RandomData random(seed);
    Columns columns = random.table(random.below(40) + 1);
    const TestTable table(columns, "source");
    const int type = random.chance(50) ? QX_EXPORT_TAB : QX_EXPORT_COMMA;
    ASSERT_EQ(RQXSaveAsCatalog(table.id(), -1, kAllFilters.data(), type, -1, -1,
                               random.chance(50) ? '-' : '/', "", "back.cat"),
              0);
    const int back = RQXAddCatalogFile("", "back.cat");
    ASSERT_GT(back, 0) << hex(back) << " seed " << seed << "\n" << to_text(columns);
    for (const NamedColumn& named : columns) {
      Column wanted = named.column;
      for (Cell& cell : wanted.cells) {
        if (const double* value = std::get_if<double>(&cell);
            wanted.type == QX_DT_DOUBLE && value) {
          cell = std::stod(double_field(*value)) + 0.0;
        }
      }
      const Column found = TestTable::existing(back).column(named.name);
      ASSERT_EQ(found.type, wanted.type);
      ASSERT_EQ(found.scale, wanted.scale);
      ASSERT_EQ(to_texts(found), to_texts(wanted)) << "seed " << seed << " column " << named.name;
    }
    RQXClearDB();
  }
}

}  // namespace
}  // namespace qxe::test
