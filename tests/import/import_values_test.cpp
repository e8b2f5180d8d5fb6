// What cells become in columns of each type, with and without checks.
#include "import/import_fixture.h"
#include "support/case_name.h"

namespace qxe::test {

namespace {

struct ValueCase {
  std::string name;
  std::string column;  // type letter and options
  std::vector<std::string> cells;
  std::vector<std::string> values;
  std::string directive = "";
};

std::string catalog_of(const std::string& column, const std::string& directive) {
  const size_t options = column.find('\t');
  const std::string rest = options == std::string::npos ? "" : column.substr(options);
  return "//TAB\n" + directive + "\n" + column.substr(0, options) + "\t9\tvalue" + rest + "\n";
}

std::string lines_of(const std::vector<std::string>& cells) {
  std::string data;
  for (const std::string& cell : cells) data += cell + "\n";
  return data;
}

class ImportValuesTest : public ImportTest, public testing::WithParamInterface<ValueCase> {};

TEST_P(ImportValuesTest, ConvertsCells) {
  const ValueCase& wanted = GetParam();
  const int id = import(catalog_of(wanted.column, wanted.directive), lines_of(wanted.cells));
  ASSERT_GT(id, 0) << hex(id);
  EXPECT_EQ(TestTable::existing(id).texts("value"), wanted.values);
  EXPECT_FALSE(has_log());
}

INSTANTIATE_TEST_SUITE_P(
    Checked, ImportValuesTest,
    testing::Values(
        ValueCase{"Integers",
                  "I",
                  {"0", "7", "12345678", "123456789", "-5", "+6", "2147483647", "-2147483647",
                   "00000012", "0000000012"},
                  {"0", "7", "12345678", "123456789", "-5", "6", "2147483647", "-2147483647", "12",
                   "12"}},
        ValueCase{"CleanedIntegers",
                  "Integer",
                  {"1,234", ",,1,2,", "  3", " , 4", "5  ", ""},
                  {"1234", "12", "3", "4", "5", "NULL"}},
        ValueCase{"OnlyNullIntegers", "I", {"", ""}, {"NULL", "NULL"}},
        ValueCase{"IntegersFarApart",
                  "I",
                  {"-2147483647", "", "2147483647", "5", "2147483647"},
                  {"-2147483647", "NULL", "2147483647", "5", "2147483647"}},
        ValueCase{"Doubles",
                  "F",
                  {"1.5", "-0.25", "1,234,567", " 2", "1e3", "", "1.50"},
                  {"1.5", "-0.25", "1234567", "2", "1000", "NULL", "1.5"}},
        ValueCase{"Dates",
                  "D",
                  {"2024/03/01", "2024-3-1", "0099/1/2", "", "2023/12/31"},
                  {"2024/03/01", "2024/03/01", "0099/01/02", "NULL", "2023/12/31"}},
        ValueCase{"DatesOfAFormat",
                  "D\tD3",
                  {"03/01/2024", "12/31/1999 and more", ""},
                  {"2024/03/01", "1999/12/31", "NULL"}},
        ValueCase{
            "DatesOfAShortYear", "d\td10", {"01.03.68", "01.03.69"}, {"2068/03/01", "1969/03/01"}},
        ValueCase{"UnknownFormatIsNone", "D\tD99", {"2024/03/01"}, {"2024/03/01"}},
        ValueCase{"Times",
                  "T",
                  {"12:30:45", "1:2", "7:", "23:59:59.250", ""},
                  {"12:30:45", "01:02:00", "07:00:00", "23:59:59.250", "NULL"}},
        ValueCase{"TimesOfAFormat", "T\tT3", {"24:00:00", "1:02:03"}, {"23:00:00", "00:02:03"}},
        ValueCase{"DateTimes",
                  "E",
                  {"2024/03/01 12:30:45", "2024/03/01", ""},
                  {"2024/03/01 12:30:45", "2024/03/01 00:00:00", "NULL"}},
        ValueCase{"DateTimesOfFormats", "E\tD3\tT2", {"03/01/2024 12:30"}, {"2024/03/01 12:30:00"}},
        ValueCase{"Decimals",
                  "N",
                  {"1.5", "-0.0000005", "1,234.25", "7 ", ""},
                  {"1.500000", "-0.000001", "1234.250000", "7.000000", "NULL"}},
        ValueCase{
            "DecimalsOfAScale", "N\t2", {"1.005", "1.004", "-1.005"}, {"1.01", "1.00", "-1.01"}},
        ValueCase{"DecimalsRoundedDown", "N\t1\trounddown", {"1.99", "-1.99"}, {"1.9", "-1.9"}},
        ValueCase{
            "EqualTextsAndValues", "N\t1", {"1", "1.0", "01", "1"}, {"1.0", "1.0", "1.0", "1.0"}},
        ValueCase{"Strings", "A", {"b", "a ", "", "b", "  "}, {"b", "a ", "", "b", "  "}}),
    case_name<ValueCase>);

INSTANTIATE_TEST_SUITE_P(
    Unchecked, ImportValuesTest,
    testing::Values(
        ValueCase{"Integers",
                  "I",
                  {"12x", "abc", "-", "99999999999", "3 4"},
                  {"12", "0", "0", "NULL", "3"},
                  "//ERROR\tNONE"},
        ValueCase{"Doubles", "F", {"1.5x", "abc", ""}, {"1.5", "0", "NULL"}, "//ERROR\tNONE"},
        ValueCase{"Dates",
                  "D",
                  {"2024/02/30", "x", "2024/02/29"},
                  {"NULL", "NULL", "2024/02/29"},
                  "//error\tnone"},
        ValueCase{
            "Times", "T", {"25", "::", "1:2:3"}, {"NULL", "NULL", "01:02:03"}, "//ERROR\tNONE"},
        ValueCase{
            "Decimals", "N\t1", {"1.5x", "x", "2.5"}, {"NULL", "NULL", "2.5"}, "//ERROR\tNONE"}),
    case_name<ValueCase>);

TEST_F(ImportTest, BadValuesEndTheImportAndAreLogged) {
  struct {
    const char *column, *cell, *type;
  } const cases[] = {{"I", "12x", "INTEGER"},           {"I", "1/2:3;4", "INTEGER"},
                     {"I", "2147483648", "INTEGER"},    {"I", "-2147483648", "INTEGER"},
                     {"I", " 1,2x", "INTEGER"},         {"F", "1.2.3", "DOUBLE"},
                     {"F", "1e999", "DOUBLE"},          {"D", "2023/02/29", "DATE"},
                     {"D\tD1", "1899/01/01", "DATE"},   {"T", "1:x", "TIME"},
                     {"E", "2024/01/01 x", "DATETIME"}, {"N", "1.5 x", "DECIMAL"},
                     {"N\t38", "1", "DECIMAL"}};
  for (const auto& [column, cell, type] : cases) {
    expect_failure(import(catalog_of(column, ""), "\n" + std::string(cell) + "\n"),
                   QX_ERROR_INVALID_DATA, "Invalid Data");
    EXPECT_EQ(log_lines(),
              std::vector<std::string>{"DATA ERROR \t\t----->\t[" + std::string(type) + "] = \"" +
                                       cell + "\"  \t@ Row = 2 , Col = 1 "});
  }
  EXPECT_EQ(table_count(), 0);
}

TEST_F(ImportTest, FiltersHaveTheTypesAndFormsOfTheCatalog) {
  const int id = import(
      "//CSV\nI\t9\ti\nF\t9\tf\nD\t9\td\nT\t9\tt\nA\t9\ta\nE\t9\te\nN\t9\tn\t3\tROUNDFLOOR\n", "");
  ASSERT_GT(id, 0) << hex(id);
  const TestTable table = TestTable::existing(id);
  const std::vector<std::string> names = {"i", "f", "d", "t", "a", "e", "n"};
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(RQXGetFilterType(id, table.filter(names[i])), QX_DT_INTEGER + static_cast<int>(i));
  }
  NumericInfo info{};
  EXPECT_EQ(RQXGetNumericInfoR1(id, table.filter("n"), &info), 0);
  EXPECT_EQ(info.scale, 3);
  EXPECT_EQ(info.rounding, QX_ROUND_FLOOR);
}

TEST_F(ImportTest, StringsLoseTrailingBlanksWhenTheEngineIsSetSo) {
  RQXSetTailSpaceFlag(1);
  const int id = import("//CSV\nA\t9\ta\n", "a \na\n  \n b \n");
  RQXSetTailSpaceFlag(0);
  ASSERT_GT(id, 0) << hex(id);
  const TestTable table = TestTable::existing(id);
  EXPECT_EQ(table.texts("a"), (std::vector<std::string>{"a", "a", "", " b"}));
  EXPECT_EQ(table.rows(table.search("a", QX_OPE_EQ, "a")), (std::vector<int>{1, 2}));
}

}  // namespace

}  // namespace qxe::test
