// Files byte by byte: what is written, and what other machines and older versions have written.
#include "file_bytes.h"
#include "qxe.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

struct OriginCase {
  const char* name;
  Origin origin;
};

class FileLayoutTest : public EngineTest, public testing::WithParamInterface<OriginCase> {
 protected:
  /// Saves under another name and returns the file.
  std::string saved_database() {
    char dir[512] = "";
    require(RQXSaveDBAs(dir, "saved"), "RQXSaveDBAs");
    return read_file("saved.QXD");
  }
};

std::vector<StoredTable> two_tables() {
  return {table_of_all_types(1, "first"), table_of_all_types(2, "second")};
}

/// Two tables and their joins.
std::string joined_database(const Origin& origin = {}) {
  return database_file(two_tables(), origin, joins_by_integers(1, 2)).bytes;
}

TEST_P(FileLayoutTest, ADatabaseOfAnyOriginReadsTheSame) {
  const Origin& origin = GetParam().origin;
  write_file("present.QXD", joined_database());
  ASSERT_EQ(hex(RQXLoadDB("", "present")), hex(0));
  const std::string wanted = database_text();
  RQXClearDB();
  write_file("old.QXD", joined_database(origin));
  EXPECT_EQ(hex(RQXLoadDB("", "old.QXD")), hex(0));
  EXPECT_EQ(database_text(), wanted);
  EXPECT_EQ(saved_database(), joined_database());
}

TEST_P(FileLayoutTest, ATableOfAnyOriginReadsTheSame) {
  const Origin& origin = GetParam().origin;
  write_file("present.QXT", table_file(table_of_all_types(5, "t")).bytes);
  write_file("old.QXT", table_file(table_of_all_types(5, "t"), origin).bytes);
  ASSERT_EQ(hex(RQXLoadRealTable("", "present")), hex(1));
  const std::string wanted = database_text();
  RQXClearDB();
  ASSERT_EQ(hex(RQXLoadRealTable("", "old")), hex(1));
  EXPECT_EQ(database_text(), wanted);
  EXPECT_EQ(RQXSaveRealTable("", 1), 0);
  EXPECT_EQ(read_file("t.QXT"), table_file(table_of_all_types(1, "t")).bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Origins, FileLayoutTest,
    testing::Values(OriginCase{"Present", {}}, OriginCase{"Newest", {.data_version = 102}},
                    OriginCase{"Version24", {.data_version = 24, .char_code = 0}},
                    OriginCase{"Version23", {.data_version = 23}},
                    OriginCase{"Version22", {.data_version = 22}},
                    OriginCase{"Version21", {.data_version = 21}},
                    OriginCase{"Version20", {.data_version = 20}},
                    OriginCase{"Version16", {.data_version = 16, .header = false}},
                    OriginCase{"Version15", {.data_version = 15}},
                    OriginCase{"Headerless", {.header = false}}, OriginCase{"Narrow", {.word = 4}},
                    OriginCase{"OtherOrder", {.big_endian = true}},
                    OriginCase{"OldNarrowOtherOrder",
                               {.data_version = 20, .word = 4, .big_endian = true}}),
    case_name<OriginCase>);

class StoredFileTest : public EngineTest {
 protected:
  int load(const StoredTable& table, const Origin& origin = {}) {
    write_file("t.QXT", table_file(table, origin).bytes);
    return RQXLoadRealTable("", "t");
  }
};

TEST_F(StoredFileTest, OtherVersionsAreRefused) {
  for (const int version : {0, 14, 17, 18, 19, 26, 101, 103}) {
    expect_failure(load(table_of_all_types(1, "t"), {.data_version = version}),
                   QX_ERROR_FILE_FORMAT, "Unspported DataVersion DataVer[1] = ------> ");
  }
  EXPECT_EQ(RQXGetNTable(), 0);
}

TEST_F(StoredFileTest, AValueListOfAnotherDoubleTypeIsWrittenAsDouble) {
  StoredTable table = table_of_all_types(1, "t");
  table.filters[1].vl_type = 5;
  ASSERT_EQ(load(table), 1);
  EXPECT_EQ(RQXGetFilterType(1, 2), QX_DT_DOUBLE);
  EXPECT_EQ(RQXSaveRealTable("", 1), 0);
  table.filters[1].vl_type = 3;
  EXPECT_EQ(read_file("t.QXT"), table_file(table).bytes);
  for (const int type : {-1, 0, 1, 9}) {
    table.filters[1].vl_type = type;
    if (type != 0) expect_failure(load(table), QX_ERROR_DATA_TYPE);
  }
}

TEST_F(StoredFileTest, AnEmptyDatabaseHasItsHeadAlone) {
  char dir[512] = "";
  EXPECT_EQ(RQXSaveDBAs(dir, "empty"), 0);
  const std::string bytes = read_file("empty.QXD");
  EXPECT_EQ(bytes, database_file({}).bytes);
  EXPECT_EQ(bytes.size(), 284u);
  EXPECT_EQ(RQXLoadDB("", "empty"), 0);
  EXPECT_EQ(RQXGetNTable(), 0);
}

TEST_F(StoredFileTest, JoinsAreWrittenAsTold) {
  write_file("tables.QXD", database_file(two_tables()).bytes);
  ASSERT_EQ(RQXLoadDB("", "tables"), 0);
  int keys[] = {1, -1};
  std::string names[] = {"inner", "outer"};
  for (const int outer : {0, 1}) {
    ASSERT_EQ(RQXAddJoinTable(names[outer].data(), outer, 1, 1, keys, 2, 1, keys), 3 + outer);
  }
  ASSERT_EQ(RQXSortByField(3, 1, 1, QX_SORT_DESC), 2);
  char dir[512] = "";
  ASSERT_EQ(RQXSaveDBAs(dir, "joined"), 0);
  EXPECT_EQ(read_file("joined.QXD"), joined_database());
}

TEST_F(StoredFileTest, TablesAreNumberedAnewWithoutJoins) {
  for (int i = 0; i < 4; ++i) RQXAddRealTable(("t" + std::to_string(i)).c_str(), i);
  RQXDeleteTable(1);
  RQXDeleteTable(3);
  char dir[512] = "";
  ASSERT_EQ(RQXSaveDBAs(dir, "db"), 0);
  EXPECT_EQ(RQXGetTableIDFromName("t3"), 4);  // in memory they stay
  ASSERT_EQ(RQXLoadDB(dir, "db"), 0);
  EXPECT_EQ(RQXGetTableIDFromName("t1"), 1);
  EXPECT_EQ(RQXGetTableIDFromName("t3"), 2);
  EXPECT_EQ(RQXAddRealTable("next", 0), 3);
}

TEST_F(StoredFileTest, ATableKeepsItsIdInAFileOfItsOwn) {
  RQXAddRealTable("gone", 0);
  RQXDeleteTable(1);
  RQXAddRealTable("kept", 2);
  ASSERT_EQ(RQXSaveRealTableAs("", "x.QXT", 2), 0);
  EXPECT_EQ(read_file("x.QXT"), table_file({.id = 2, .name = "kept", .sets = {{1, 2}}}).bytes);
}

TEST_F(StoredFileTest, NamesInTheListOfADatabaseHold) {
  std::string bytes = database_file({table_of_all_types(1, "inner")}).bytes;
  bytes.replace(288, 5, "outer");
  write_file("db.QXD", bytes);
  ASSERT_EQ(RQXLoadDB("", "db"), 0);
  EXPECT_EQ(RQXGetTableIDFromName("outer"), 1);
}

TEST_F(StoredFileTest, ALoadedTableGetsAFreeName) {
  ASSERT_EQ(load(table_of_all_types(7, "a")), 1);
  ASSERT_EQ(load(table_of_all_types(7, "a")), 2);
  EXPECT_EQ(RQXGetTableIDFromName("a_#1"), 2);
  expect_failure(load(table_of_all_types(7, "")), QX_ERROR_GEN_TABLE_NAME);
  EXPECT_EQ(RQXGetNTable(), 2);
}

TEST_F(StoredFileTest, SpareMemoryIsNotKept) {
  StoredTable table = table_of_all_types(1, "t");
  StoredFile file = table_file(table);
  // The allocation of the first set stands behind its size, which stands behind its width.
  const auto size = std::find_if(file.fields.begin(), file.fields.end(),
                                 [](const StoredField& f) { return f.size == 8 && f.count == 1; });
  ASSERT_EQ(file.bytes[size->offset], 3);
  file.bytes[size->offset] = 100;
  write_file("t.QXT", file.bytes);
  ASSERT_EQ(RQXLoadRealTable("", "t"), 1);
  ASSERT_EQ(RQXSaveRealTable("", 1), 0);
  EXPECT_EQ(read_file("t.QXT"), table_file(table).bytes);
}

TEST_F(StoredFileTest, AMarkWithoutItsSetOrFilterIsDropped) {
  StoredTable table = table_of_all_types(1, "t");
  const StoredTable plain = table;
  table.marks = {{2, 0, {1, 2}, 0}, {0, 7, {1, 2, 3}, 0}, {-1, 0, {}, 0}};
  ASSERT_EQ(load(table), 1);
  ASSERT_EQ(RQXSaveRealTable("", 1), 0);
  EXPECT_EQ(read_file("t.QXT"), table_file(plain).bytes);
}

TEST_F(StoredFileTest, MarksAndFlagsComeBack) {
  StoredTable table = table_of_all_types(1, "t");
  table.filters[0].high_speed = 1;
  // In the order of the integers, NULL in row 2 first; of the strings; one that is not filled.
  table.marks = {{0, 0, {2, 3, 1}, 1}, {0, 4, {2, 3, 1}, 0}, {1, 0, {}, 0}};
  ASSERT_EQ(load(table), 1);
  ASSERT_EQ(RQXSaveRealTable("", 1), 0);
  EXPECT_EQ(read_file("t.QXT"), table_file(table).bytes);
  int value = 5;
  expect_failure(RQXOverwriteRealEx(1, 1, 1, 1, 1, &value), QX_ERROR_HIGH_SPEED_FILTER);
}

TEST_F(StoredFileTest, KindsMixedUpAreRefused) {
  const StoredTable table = table_of_all_types(1, "t");
  write_file("db.QXT", database_file({table}).bytes);
  write_file("t.QXD", table_file(table).bytes);
  expect_failure(RQXLoadRealTable("", "db"), QX_ERROR_NOT_REAL_SOURCE);
  expect_failure(RQXLoadDB("", "t"), QX_ERROR_FILE_FORMAT);
  StoredTable unknown = table;
  unknown.type = 1;
  write_file("db.QXD", database_file({unknown}).bytes);
  expect_failure(RQXLoadDB("", "db"), QX_ERROR_TABLE_KIND);
}

}  // namespace
}  // namespace qxe::test
