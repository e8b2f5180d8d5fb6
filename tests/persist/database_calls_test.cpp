// The calls around database and table files: places, names, versions, saved flags, several tables
// in one file.
#include <string.h>
#include <unistd.h>

#include <filesystem>

#include "file_bytes.h"
#include "qxe.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class DatabaseCallsTest : public EngineTest {
 protected:
  DatabaseCallsTest() { drain_ring(); }

  static int save_as(const std::string& name, const std::string& directory = "") {
    char dir[512];
    strcpy(dir, directory.c_str());
    return RQXSaveDBAs(dir, name.c_str());
  }

  static int data_version(const std::string& file) {
    const std::string bytes = read_file(file);
    const size_t offset = file.ends_with(".QXD") ? 256 : 264;
    return bytes.at(offset + 4);
  }

  static std::string place() {
    char dir[512] = "?";
    char name[512] = "?";
    EXPECT_EQ(RQXGetPathName(dir, name), 0);
    EXPECT_EQ(std::string(RQXGetDBPathR1()), dir);
    EXPECT_EQ(std::string(RQXGetDBNameR1()), name);
    return std::string(dir) + " " + name;
  }

  const TestTable table_{{{"i", ints({1, kNullInt, 3})}, {"s", strings({"a", "", "c"})}}, "t"};
};

TEST_F(DatabaseCallsTest, ASaveTellsAndRemembersItsPlace) {
  EXPECT_EQ(place(), " ");
  expect_failure(RQXSaveDB(), QX_ERROR_FILE_NAME, "Illegal FileName");
  std::filesystem::create_directory("sub");
  char dir[512] = "sub/../sub";
  EXPECT_EQ(RQXSaveDBAs(dir, "db"), 0);
  EXPECT_EQ(dir, directory() / "sub");
  EXPECT_EQ(place(), directory() / "sub db.QXD");
  const std::string saved = read_file("sub/db.QXD");
  std::filesystem::remove("sub/db.QXD");
  EXPECT_EQ(RQXSaveDB(), 0);
  EXPECT_EQ(read_file("sub/db.QXD"), saved);
  expect_failure(save_as("db", "missing"), QX_ERROR_PATH, "Invalid Parameter : DBPath(missing)");
  EXPECT_EQ(place(), directory() / "sub db.QXD");
  EXPECT_EQ(RQXLoadDB("./sub", "db.QXD"), 0);
  EXPECT_EQ(place(), directory() / "sub db.QXD");
  RQXClearDB();
  EXPECT_EQ(place(), " ");
}

TEST_F(DatabaseCallsTest, ExtensionsAreAddedUnlessTheyAreThere) {
  for (const auto& [name, file] :
       std::vector<std::pair<std::string, std::string>>{{"a", "a.QXD"},
                                                        {"b.QXD", "b.QXD"},
                                                        {"c.qxd", "c.qxd.QXD"},
                                                        {".QXD", ".QXD.QXD"},
                                                        {"QXD", "QXD.QXD"}}) {
    EXPECT_EQ(save_as(name), 0);
    EXPECT_TRUE(std::filesystem::exists(file)) << file;
    EXPECT_EQ(RQXHSLoadDB("", name.c_str()), 0);
  }
}

TEST_F(DatabaseCallsTest, AFailedLoadLeavesAnEmptyDatabase) {
  ASSERT_EQ(save_as("db"), 0);
  const auto expect_empty = [&] {
    EXPECT_EQ(RQXGetNTable(), 0);
    EXPECT_EQ(place(), " ");
    EXPECT_EQ(RQXLoadDB("", "db"), 0);
    EXPECT_EQ(RQXGetNTable(), 1);
  };
  expect_failure(RQXLoadDB("missing", "db"), QX_ERROR_PATH, "Invalid Parameter : DBPath(missing)");
  expect_empty();
  expect_failure(RQXLoadDB("", "missing"), QX_ERROR_FILE, "Illegal FileName");
  expect_empty();
  expect_failure(RQXHSLoadDB("", "missing"), QX_ERROR_FILE);
  expect_empty();
  expect_failure(RQXLoadDB(nullptr, "db"), QX_ERROR_FILE);
  EXPECT_EQ(RQXGetNTable(), 1);
}

TEST_F(DatabaseCallsTest, TheOldVersionStaysUntilAnotherPlainSave) {
  char dir[512] = "";
  ASSERT_EQ(RQXSaveDBAsOldVer(dir, "db", QX_DATA_VERSION_OLD), 0);
  EXPECT_EQ(data_version("db.QXD"), 24);
  EXPECT_EQ(read_file("db.QXD")[4], 0);
  EXPECT_EQ(RQXSaveDB(), 0);
  EXPECT_EQ(data_version("db.QXD"), 24);
  EXPECT_EQ(save_as("db"), 0);
  EXPECT_EQ(data_version("db.QXD"), 25);
  EXPECT_EQ(read_file("db.QXD")[4], 33);

  ASSERT_EQ(RQXSaveRealTableOldVer("", table_.id(), 24), 0);
  EXPECT_EQ(data_version("t.QXT"), 24);
  EXPECT_EQ(read_file("t.QXT")[4], 0);
  EXPECT_EQ(RQXSaveDB(), 0);
  EXPECT_EQ(data_version("db.QXD"), 24);
  ASSERT_EQ(RQXSaveRealTableAsOldVer("", "u", table_.id(), 24), 0);
  EXPECT_EQ(data_version("u.QXT"), 24);
  EXPECT_EQ(read_file("u.QXT")[4], 33);
  EXPECT_EQ(QXSaveRealTable("", table_.id()), 0);
  EXPECT_EQ(data_version("t.QXT"), 25);
  EXPECT_EQ(RQXSaveDB(), 0);
  EXPECT_EQ(data_version("db.QXD"), 25);
  ASSERT_EQ(RQXSaveDBAsOldVer(dir, "db", 24), 0);
  ASSERT_EQ(RQXLoadDB("", "db"), 0);
  EXPECT_EQ(RQXSaveDB(), 0);
  EXPECT_EQ(data_version("db.QXD"), 25);
}

TEST_F(DatabaseCallsTest, TheOldVersionTakesNeitherDecimalsNorOtherCodes) {
  char dir[512] = "";
  expect_failure(RQXSaveDBAsOldVer(dir, "db", 25), QX_ERROR_SAVE_CODE,
                 "fileversion is not exist : 25");
  expect_failure(RQXSaveRealTableOldVer("", 9, 24), QX_ERROR_NO_TABLE);
  RQXSetKanjiCode(QX_LOCALE_SJIS);
  expect_failure(RQXSaveRealTableAsOldVer("", "u", table_.id(), 24), QX_ERROR_SAVE_VERSION,
                 "Invalid fileversion");
  RQXSetKanjiCode(QX_LOCALE_UTF8);
  const TestTable decimal({{"n", decimals(2, {"1.25"})}}, "n");
  expect_failure(RQXSaveDBAsOldVer(dir, "db", 24), QX_ERROR_SAVE_VERSION);
  expect_failure(RQXSaveRealTableOldVer("", decimal.id(), 24), QX_ERROR_SAVE_VERSION);
  EXPECT_EQ(RQXSaveRealTableOldVer("", table_.id(), 24), 0);
  EXPECT_FALSE(std::filesystem::exists("db.QXD"));
}

TEST_F(DatabaseCallsTest, TableFilesHaveTheirOwnRefusals) {
  expect_failure(RQXSaveRealTable("missing", table_.id()), QX_ERROR_PATH,
                 "Invalid Parameter : TablePath(missing)");
  expect_failure(RQXSaveRealTable("", 9), QX_ERROR_NO_TABLE, "No Such Table: 9 ");
  expect_failure(RQXLoadRealTable("missing", "t"), QX_ERROR_PATH,
                 "Invalid Parameter : TablePath(missing)");
  expect_failure(RQXHSLoadRealTable("", "missing"), QX_ERROR_FILE, "Illegal FileName");
  std::filesystem::create_directory("dir.QXT");
  expect_failure(RQXLoadRealTable("", "dir"), QX_ERROR_FILE);
  expect_failure(RQXSaveRealTableAs("", "dir", table_.id()), QX_ERROR_FILE);
  write_file("empty.QXT", "");
  expect_failure(RQXLoadRealTable("", "empty"), QX_ERROR_FILE);
}

TEST_F(DatabaseCallsTest, TablesLieInARowInsideAFile) {
  const TestTable other({{"n", decimals(2, {"1.25", "-3.00"})}}, "other");
  table_.add_set({3, 1});
  const std::string front = "thirteen byte";
  write_file("row", front);
  const int both[] = {table_.id(), other.id(), -1};
  long end = 0;
  ASSERT_EQ(RQXSaveRealTable2("row", 13, both, &end), 0);
  const std::string bytes = read_file("row");
  EXPECT_EQ(bytes.substr(0, 13), front);
  EXPECT_EQ(end, static_cast<long>(bytes.size()));
  const std::string wanted[] = {table_text(table_.id()), table_text(other.id())};
  RQXClearDB();
  int ids[2] = {};
  long reached = 0;
  ASSERT_EQ(RQXLoadRealTable2("row", 13, 2, ids, &reached), 2);
  EXPECT_EQ(reached, end);
  EXPECT_EQ(table_text(ids[0]), wanted[0]);
  EXPECT_EQ(table_text(ids[1]), wanted[1]);
  EXPECT_EQ(RQXGetNSet(ids[0]), 1);
  EXPECT_EQ(RQXLoadRealTable2("row", 13, 0, ids, &reached), 2);
  EXPECT_EQ(reached, 13);

  const int partly[] = {ids[0], 77, ids[1], -1};
  end = 0;
  expect_failure(RQXSaveRealTable2("row", 0, partly, &end), QX_ERROR_NO_TABLE,
                 "No Such Table: TblIDList[1]77 ");
  expect_failure(RQXLoadRealTable2("row", 0, 1, ids, &reached), 3);
  EXPECT_EQ(reached, end);
  const int none[] = {-1};
  EXPECT_EQ(RQXSaveRealTable2("row", 40, none, &end), 0);
  EXPECT_EQ(end, 40);
  expect_failure(RQXSaveRealTable2("missing", 0, none, &end), QX_ERROR_FILE, "Illegal FileName");
  expect_failure(RQXSaveRealTable2("row", -1, none, &end), QX_ERROR_FILE, "File IO error");
  expect_failure(RQXLoadRealTable2("row", -1, 1, ids, &end), QX_ERROR_FILE, "File IO error");
  expect_failure(RQXLoadRealTable2("row", 0, -1, ids, &end), QX_ERROR_NO_TABLE,
                 "Invalid Parameter : TblCnt");
  expect_failure(RQXLoadRealTable2("row", 1 << 20, 1, ids, &end), QX_ERROR_FILE);
  write_file("row", bytes);
  RQXSetSavedFlag(1, 1, 1);
  const int tables = RQXGetNTable();
  int many[9] = {};
  expect_failure(RQXLoadRealTable2("row", 13, 9, many, &end), QX_ERROR_FILE);
  EXPECT_EQ(RQXGetNTable(), tables + 2);  // those in front stay
  int flags[3] = {};
  RQXGetSavedFlag(flags, flags + 1, flags + 2);
  EXPECT_EQ(flags[1], 0);
}

TEST_F(DatabaseCallsTest, AFileTellsWhatItIs) {
  const StoredTable table = table_of_all_types(1, "t");
  const Origin other{.data_version = 22, .word = 4, .big_endian = true};
  write_file("a.QXD", database_file({table}).bytes);
  write_file("b.QXT", table_file(table, other).bytes);
  _QXFileInfo info;
  ASSERT_EQ(RQXGetQXDFileInfo("", "a", &info), 0);
  EXPECT_EQ(std::vector<int>({info.osType, info.endian, info.elf}), std::vector<int>({48, 4, 2}));
  EXPECT_STREQ(info.charCode, "Shift_JIS");
  EXPECT_EQ(std::vector<int>(info.version, info.version + 4),
            std::vector<int>({16782850, 102, 1, 20170503}));
  ASSERT_EQ(RQXGetQXTFileInfo(".", "b.QXT", &info), 0);
  EXPECT_EQ(std::vector<int>({info.osType, info.endian, info.elf}), std::vector<int>({48, 8, 1}));
  EXPECT_EQ(info.version[3], 20170503);
  expect_failure(RQXGetQXDFileInfo("missing", "a", &info), QX_ERROR_PATH,
                 "Invalid Parameter : DBPath(missing)");
  expect_failure(RQXGetQXDFileInfo("", "b", &info), QX_ERROR_FILE);
}

TEST_F(DatabaseCallsTest, WithoutAWorkingDirectoryASaveDoesNothing) {
  const std::string home = directory().path();
  std::filesystem::create_directory("gone");
  ASSERT_EQ(chdir("gone"), 0);
  std::filesystem::remove(home + "/gone");
  EXPECT_EQ(save_as("db", home), 0);
  EXPECT_FALSE(std::filesystem::exists(home + "/db.QXD"));
  expect_failure(RQXSaveRealTable(home.c_str(), table_.id()), QX_ERROR_FILE,
                 "Failed to get path ( getcwd module )");
  ASSERT_EQ(chdir(home.c_str()), 0);
}

}  // namespace
}  // namespace qxe::test
