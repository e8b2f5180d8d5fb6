// How the lines of a data file are divided into cells, for each file type.
#include "import/import_fixture.h"
#include "support/case_name.h"

namespace qxe::test {

namespace {

struct CellCase {
  std::string name;
  std::string catalog;
  std::string data;
  Rows rows;
};

const std::string kCsv1 = "//CSV\nA\t9\ta\n";
const std::string kCsv2 = "//CSV\nA\t9\ta\nA\t9\tb\n";
const std::string kUser3 = "A\t9\ta\nA\t9\tb\nA\t9\tc\n";
const std::string kFix23 = "//FIX\nA\t2\ta\nA\t3\tb\n";

/// A text with zero bytes in it.
template <size_t N>
std::string bytes(const char (&text)[N]) {
  return std::string(text, N - 1);
}

class ImportCellsTest : public ImportTest, public testing::WithParamInterface<CellCase> {};

TEST_P(ImportCellsTest, DividesLines) {
  const int id = import(GetParam().catalog, GetParam().data);
  ASSERT_GT(id, 0) << hex(id);
  EXPECT_EQ(rows_of(id), GetParam().rows);
  EXPECT_FALSE(has_log());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ImportCellsTest,
    testing::Values(
        CellCase{"TwoLines", kCsv2, "a,b\nc,d\n", {{"a", "b"}, {"c", "d"}}},
        CellCase{"NoLineEndAtTheEnd", kCsv2, "a,b\nc,d", {{"a", "b"}, {"c", "d"}}},
        CellCase{"CarriageReturns", kCsv2, "a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
        CellCase{"LoneCarriageReturnIsText", kCsv2, "a\rb,\rc\n", {{"a\rb", "\rc"}}},
        CellCase{"CarriageReturnBeforeSeparator", kCsv2, "a\r,b\n", {{"a\r", "b"}}},
        CellCase{"OnlyOneCarriageReturnGoes", kCsv2, "a,b\r\r\n", {{"a", "b\r"}}},
        CellCase{"CarriageReturnEndsTheData", kCsv2, "a,b\r", {{"a", "b"}}},
        CellCase{"EmptyCells", kCsv2, ",\n,x\ny,\n", {{"", ""}, {"", "x"}, {"y", ""}}},
        CellCase{"SeparatorAtTheEnd", kCsv2, "a,", {{"a", ""}}},
        CellCase{
            "EmptyLinesOfOneColumn", kCsv1, "a\n\n\r\nb\n\n", {{"a"}, {""}, {""}, {"b"}, {""}}},
        CellCase{"LastLineOfACarriageReturn", kCsv1, "a\n\r", {{"a"}, {""}}},
        CellCase{"BlanksStay", kCsv2, " a ,  \n", {{" a ", "  "}}},
        CellCase{"HighBytes", kCsv2, "\xe6\x97\xa5,\xff\xfe\n", {{"\xe6\x97\xa5", "\xff\xfe"}}},
        CellCase{"TextEndsAtZero",
                 kCsv2,
                 bytes("a\0b,a\n0123456789\0x,\0\n"),
                 {{"a", "a"}, {"0123456789", ""}}},
        CellCase{"TitleLine", "//CUTTOP\n" + kCsv2, "x,y,z\na,b\n", {{"a", "b"}}},
        CellCase{"TitleLineAlone", "//CUTTOP\n" + kCsv2, "x,y\n", {}},
        CellCase{"TitleLineWithoutLineEnd", "//CUTTOP\n" + kCsv2, "x,y", {}},
        CellCase{"EmptyFile", kCsv2, "", {}},
        CellCase{"EmptyFileWithoutItsTitle", "//CUTTOP\n" + kCsv2, "", {}},
        CellCase{"SkippedColumn",
                 "//CSV\nA\t9\ta\nI\t9\tx\tskip\nA\t9\tb\n",
                 "a,no number,b\n",
                 {{"a", "b"}}}),
    case_name<CellCase>);

INSTANTIATE_TEST_SUITE_P(
    Quotes, ImportCellsTest,
    testing::Values(CellCase{"SeparatorInside", kCsv2, "\"a,b\",\"c\"\n", {{"a,b", "c"}}},
                    CellCase{"DoubledQuote", kCsv2, "\"a\"\"b\",c\n", {{"a\"b", "c"}}},
                    CellCase{"NothingButQuotes", kCsv2, "\"\",\"\"\"\"\n", {{"", "\""}}},
                    CellCase{
                        "ManyQuotes", kCsv2, "\"\"\"\"\"\",\"\"\"x\"\"\"\n", {{"\"\"", "\"x\""}}},
                    CellCase{"QuoteInsideUnquoted", kCsv2, "a\"b,c\"\"\n", {{"a\"b", "c\"\""}}},
                    CellCase{"BlankBeforeQuoteIsText", kCsv2, " \"a\",b\n", {{" \"a\"", "b"}}},
                    CellCase{"AtLineEnds",
                             kCsv2,
                             "\"a\",\"b\"\r\n\"c\",\"d\"\n\"e\",\"f\"",
                             {{"a", "b"}, {"c", "d"}, {"e", "f"}}},
                    CellCase{"CarriageReturnInside", kCsv2, "\"a\rb\",\"c\"\r", {{"a\rb", "c"}}},
                    CellCase{"ZeroBehindQuote", kCsv2, bytes("\"a\"\0,\"b\"\0\n"), {{"a", "b"}}},
                    CellCase{"DoubledInShortAndLongTexts",
                             kCsv2,
                             "\"\"\"\",\"0123456789\"\"0123456789\"\n",
                             {{"\"", "0123456789\"0123456789"}}}),
    case_name<CellCase>);

INSTANTIATE_TEST_SUITE_P(
    Separators, ImportCellsTest,
    testing::Values(
        CellCase{"Tab", "//TAB\nA\t9\ta\nA\t9\tb\n", "a,b\tc\n", {{"a,b", "c"}}},
        CellCase{"OneOfTheUser", "//USR\t;\n" + kUser3, "a;\"b;c\";d,e\n", {{"a", "b;c", "d,e"}}},
        CellCase{"TabAndLetter", "//USR\t\\t\tx\n" + kUser3, "1\t2x3\n", {{"1", "2", "3"}}},
        CellCase{"FiveOfTheUser",
                 "//USR\t;\t|\t:\t#\t!\n" + kUser3,
                 "a;b|c\nd:e#f\ng!h;i\n",
                 {{"a", "b", "c"}, {"d", "e", "f"}, {"g", "h", "i"}}},
        CellCase{"NoneOfTheUserIsComma", "//USR\n" + kUser3, "a,b,c\n", {{"a", "b", "c"}}},
        CellCase{"LongTokensAreNone", "//USR\tab\t\t;\n" + kUser3, "a;b;c\n", {{"a", "b", "c"}}},
        CellCase{"UnusedOnesMatchZero",
                 "//USR\t;\n" + kUser3,
                 bytes("a\0b;c\n\"d\"\0e\0f\n"),
                 {{"a", "b", "c"}, {"d", "e", "f"}}}),
    case_name<CellCase>);

INSTANTIATE_TEST_SUITE_P(
    FixedWidth, ImportCellsTest,
    testing::Values(
        CellCase{"Lines", kFix23, "abcde\r\n12,\"4\n", {{"ab", "cde"}, {"12", ",\"4"}}},
        CellCase{"BlanksStay", kFix23, "a b  \n", {{"a ", "b  "}}},
        CellCase{
            "SkippedColumn", "//FIX\nA\t1\ta\nA\t2\tx\tSKIP\nA\t1\tb\n", "abbc\n", {{"a", "c"}}},
        CellCase{"ShortLastFieldAtTheEnd", kFix23, "abcde\nabc", {{"ab", "cde"}, {"ab", "c"}}},
        CellCase{"TypeBehindTheColumns", "A\t1\ta\nA\t1\tb\n//FIX\n", "ab\n", {{"a", "b"}}}),
    case_name<CellCase>);

std::string repeated(char c, int count) {
  return std::string(static_cast<size_t>(count), c);
}

TEST_F(ImportCellsTest, CellsMayFillTheirLimits) {
  const std::string unquoted = repeated('x', 4095);
  const std::string quoted = "\"" + repeated('y', 4095) + "\"\"\"";  // 4096 bytes
  const int id = import(kCsv2, unquoted + "," + quoted + "\r\n" + quoted + "," + unquoted);
  ASSERT_GT(id, 0) << hex(id);
  const Rows rows = rows_of(id);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0][0], unquoted);
  EXPECT_EQ(rows[0][1], repeated('y', 4095));  // reading stops at 4095 bytes
  EXPECT_EQ(rows[1][1], unquoted);
}

TEST_F(ImportCellsTest, LinesMayBeLongerThanAnyBlock) {
  std::string catalog = "//CSV\n";
  std::string line;
  for (int i = 0; i < QX_CATALOG_MAX_COLUMNS; ++i) {
    catalog += "A\t9\tc" + std::to_string(i) + "\n";
    line += (i == 0 ? "" : ",") + repeated('z', 1000) + std::to_string(i);
  }
  const int id = import(catalog, line + "\n" + line);
  ASSERT_GT(id, 0) << hex(id);
  const Rows rows = rows_of(id);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[1].back(), repeated('z', 1000) + "511");
  EXPECT_EQ(rows[0], rows[1]);
}

}  // namespace

}  // namespace qxe::test
