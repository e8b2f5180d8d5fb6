// Searches for the values in a text file.
#include "import/append_fixture.h"
#include "support/case_name.h"

namespace qxe::test {

namespace {

class NValuesFileTest : public ImportTest {
 protected:
  int search(const TestTable& table, const std::string& column, const std::string& values,
             int set = -1) const {
    write_file(directory() / "values.csv", values);
    return RQXSearchByFieldNValuesFromCSV(table.id(), table.filter(column), set,
                                          directory().path().c_str(), "values.csv");
  }
};

struct ValuesCase {
  const char* name;
  std::string file;
  std::vector<int> rows;
};

class IntegerValuesTest : public NValuesFileTest, public testing::WithParamInterface<ValuesCase> {};

TEST_P(IntegerValuesTest, HitTheirRows) {
  const TestTable table({{"a", ints({10, 20, kNullInt, 0, 1234, 20})}});
  const int found = search(table, "a", GetParam().file);
  ASSERT_GT(found, 0) << hex(found);
  EXPECT_EQ(table.rows(found), GetParam().rows);
}

INSTANTIATE_TEST_SUITE_P(
    All, IntegerValuesTest,
    testing::Values(
        ValuesCase{"NoValues", "", {}}, ValuesCase{"One", "20", {2, 6}},
        ValuesCase{"Commas", "10,20", {1, 2, 6}},
        ValuesCase{"LineEnds", "10\n0\r\n20\r\n", {1, 2, 4, 6}},
        ValuesCase{"CarriageReturnAtTheEnd", "10,20\r", {1, 2, 6}},
        ValuesCase{"EmptyValue", "10,,20", {1, 2, 3, 6}}, ValuesCase{"EmptyLine", "10\n\n", {1, 3}},
        ValuesCase{"LineEndAlone", "\n", {3}}, ValuesCase{"FirstEmpty", ",10", {1, 3}},
        ValuesCase{"LastEmpty", "10,", {1, 3}}, ValuesCase{"LastLineEmpty", "10,\n", {1, 3}},
        ValuesCase{"Repeated", "10,10,10", {1}}, ValuesCase{"Unknown", "11,12", {}},
        ValuesCase{"NotANumber", "abc", {4}}, ValuesCase{"NumberInFront", "20x", {2, 6}},
        ValuesCase{"Beyond32Bits", "99999999999", {3}},
        ValuesCase{"Quoted", "\"1,234\",\"10\"", {1, 5}},
        ValuesCase{"BadQuoting", "\"10\"x,20", {2, 6}},
        ValuesCase{"OpenQuote", "10,\"20,0\n1234", {1, 5}},
        ValuesCase{"TooLong", std::string(4096, '1') + ",20", {2, 6}},
        ValuesCase{"TooLongAtTheEnd", "10," + std::string(5000, '1'), {1}},
        ValuesCase{"EndMark", "10\n\xff,20\n20", {1}}),
    case_name<ValuesCase>);

TEST_F(NValuesFileTest, RandomListsEqualThePlainLoop) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    RandomData random(seed);
    const int rows = random.below(60);
    const TestTable table(random.table(rows));
    Columns columns;
    for (const char* name : {"int", "double", "date", "string"}) {
      columns.push_back({name, table.column(name)});
    }
    const NaiveModel model(columns);
    const std::vector<int> set_rows = random.set_of(rows);
    const int set = table.add_set(set_rows);
    for (const auto& [name, column] : columns) {
      std::vector<Cell> values(static_cast<size_t>(random.below(40) + 1));
      std::string file;
      for (Cell& value : values) {
        value = normal_form(random.bound(column), column.type);
        file += field_text(value, column.type) + (random.chance(50) ? "," : "\n");
      }
      file.back() = '\n';
      const int found = search(table, name, file, set);
      ASSERT_EQ(table.rows(found), model.search_values(name, values, set_rows))
          << "seed " << seed << " " << name << "\n"
          << file << to_text(columns);
    }
  }
}

TEST_F(NValuesFileTest, TimesAndUnreadableDates) {
  const TestTable table({{"t", times({"12:30:00", "", "01:02:03"})},
                         {"d", dates({"2024/03/01", "", "2024/03/02"})},
                         {"e", datetimes({"2024/03/01 12:00:00", "", "2024/03/02 00:00:00"})}});
  EXPECT_EQ(table.rows(search(table, "t", "1:2:3,12:30")), (std::vector<int>{1, 3}));
  EXPECT_EQ(table.rows(search(table, "d", "2024/3/2,never")), (std::vector<int>{2, 3}));
  EXPECT_EQ(table.rows(search(table, "e", "2024/3/2,2024-03-01 12:00")), (std::vector<int>{1, 3}));
}

TEST_F(NValuesFileTest, TheResultIsANewSetOfTheCurrentOne) {
  const TestTable table({{"a", ints({1, 2, 1, 3})}});
  const int set = table.add_set({3, 4, 1});
  EXPECT_EQ(search(table, "a", "1,2"), set + 1);
  EXPECT_EQ(table.rows(set + 1), (std::vector<int>{3, 1}));
}

TEST_F(NValuesFileTest, TrailingBlanksAreCutWhenTheEngineIsSetSo) {
  const TestTable table({{"s", strings({"a", "b"})}});
  EXPECT_EQ(table.rows(search(table, "s", "a  ")), (std::vector<int>{}));
  RQXSetTailSpaceFlag(1);
  EXPECT_EQ(table.rows(search(table, "s", "a  ")), (std::vector<int>{1}));
}

TEST_F(NValuesFileTest, BadArgumentsAreRefused) {
  const TestTable table({{"a", ints({1})}, {"n", decimals(2, {"1.00"})}});
  const auto from_file = [&](int id, int filter, int set, const char* dir, const char* file) {
    return RQXSearchByFieldNValuesFromCSV(id, filter, set, dir, file);
  };
  write_file(directory() / "v", "1");
  expect_failure(from_file(99, 1, 1, "", "v"), QX_ERROR_NO_TABLE, "No Such Table: 99");
  expect_failure(from_file(table.id(), 9, 1, "", "v"), QX_ERROR_NO_FILTER, "No Such Filter: 9");
  expect_failure(from_file(table.id(), 1, 9, "", "v"), QX_ERROR_NO_SET_ID, "No Such Set: 9");
  expect_failure(from_file(table.id(), 1, 1, nullptr, "v"), QX_ERROR_FILE,
                 "Invalid Parameter : pchFilePath");
  expect_failure(from_file(table.id(), 1, 1, "", ""), QX_ERROR_FILE,
                 "Invalid Parameter : pchFileName");
  expect_failure(from_file(table.id(), 1, 1, "", std::string(512, 'v').c_str()), QX_ERROR_FILE,
                 "Invalid Parameter : pchFileName");
  expect_failure(from_file(table.id(), 1, 1, "nowhere", "v"), QX_ERROR_FILE, "FILE  [");
  expect_failure(from_file(table.id(), 2, 1, "", "v"), QX_ERROR_DATA_TYPE,
                 "Illegal data type  : 8");
  EXPECT_EQ(RQXGetNSet(table.id()), 1);
  EXPECT_FALSE(has_log());
}

}  // namespace

}  // namespace qxe::test
