// Images of other machines and older versions, and images beside files: one layout for both.
#include "file_bytes.h"
#include "image_block.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

struct OriginCase {
  const char* name;
  Origin origin;
};

class ForeignImageTest : public EngineTest, public testing::WithParamInterface<OriginCase> {
 protected:
  ForeignImageTest() {
    // What a file of this machine says is what all of them have to say.
    write_file("t.QXT", table_file(table_of_all_types(5, "t")).bytes);
    own_ = text_of(RQXLoadRealTable("", "t"));
  }
  ~ForeignImageTest() override { RQXMemStreamClose(); }

  /// The table as text; it is deleted.
  static std::string text_of(int table) {
    if (table <= 0) return hex(table);
    std::string text = table_text(table);
    for (const int set : {1, 4}) {
      for (const int row : TestTable::existing(table).rows(set)) text += std::to_string(row) + " ";
    }
    require(RQXDeleteTable(table), "RQXDeleteTable");
    return text;
  }

  std::string own_;
};

TEST_P(ForeignImageTest, IsReadByAllLoaders) {
  const StoredTable table = table_of_all_types(5, "t");
  std::string stream = table_behind("abc", table, GetParam().origin).bytes;
  const std::string image = table_file(table, GetParam().origin).bytes;
  if (GetParam().origin.header) {
    ImageBlock block(image);
    void* end = nullptr;
    EXPECT_EQ(text_of(RQXLoadMemRealTable(block.at(0), block.size())), own_);
    EXPECT_EQ(text_of(RQXLoadRealTableFromMem(block.at(0), &end)), own_);
    EXPECT_EQ(block.offset_of(end), block.size());
    // Two tables of one stream, behind other data.
    char data[4] = "";
    stream = table_behind(stream, table, GetParam().origin).bytes;
    RQXMemStreamOpenRead(static_cast<long>(stream.size()), stream.data());
    EXPECT_EQ(RQXMemStreamRead(data, 3), 3);
    EXPECT_STREQ(data, "abc");
    EXPECT_EQ(text_of(RQXLoadRealTableMem()), own_);
  } else {
    stream = image;
    RQXMemStreamOpenRead(static_cast<long>(stream.size()), stream.data());
  }
  EXPECT_EQ(text_of(RQXLoadRealTableMem()), own_);
  EXPECT_EQ(RQXLoadRealTableMem(), 0);
}

TEST_P(ForeignImageTest, OfADatabaseIsRead) {
  if (!GetParam().origin.header) return;
  const std::vector<StoredTable> tables = {table_of_all_types(5, "t"), table_of_all_types(8, "u")};
  ImageBlock block(database_file(tables, GetParam().origin, joins_by_integers(5, 8)).bytes);
  void* end = nullptr;
  ASSERT_EQ(hex(RQXLoadDBFromMem(block.at(0), &end)), hex(0));
  EXPECT_EQ(block.offset_of(end), block.size());
  EXPECT_EQ(RQXGetTableIDFromName("u"), 8);
  EXPECT_EQ(TestTable::existing(9).rows(2), std::vector<int>({1, 3, 2}));
  RQXDeleteTable(10);
  RQXDeleteTable(9);
  EXPECT_EQ(text_of(5), own_);
}

INSTANTIATE_TEST_SUITE_P(
    All, ForeignImageTest,
    testing::Values(OriginCase{"Own", {}}, OriginCase{"OtherByteOrder", {.big_endian = true}},
                    OriginCase{"SmallWords", {.word = 4}},
                    OriginCase{"SmallWordsInOtherOrder", {.word = 4, .big_endian = true}},
                    OriginCase{"Oldest", {.data_version = 15}},
                    OriginCase{"OldInOtherOrder", {.data_version = 22, .big_endian = true}},
                    OriginCase{"Newest", {.data_version = 102}},
                    OriginCase{"OtherCode", {.char_code = 20}},
                    OriginCase{"NoHeader", {.header = false}}),
    case_name<OriginCase>);

using ImageAndFileTest = EngineTest;

TEST_F(ImageAndFileTest, HoldTheSameBytes) {
  RandomData random(1);
  for (const int rows : {0, 1, 40}) {
    const TestTable table(random.table(rows), "t" + std::to_string(rows));
    table.add_set(random.set_of(rows));
    ImageBlock block(100000);
    void* end = nullptr;

    write_file("one_set", "");
    const int ids[] = {table.id(), -1};
    long file_end = 0;
    ASSERT_EQ(RQXSaveRealTable2("one_set", 0, ids, &file_end), 0);
    ASSERT_EQ(RQXSaveRealTable2Mem(table.id(), 100000, block.at(0), &end), 0);
    EXPECT_EQ(block.bytes(file_end), read_file("one_set"));

    ASSERT_EQ(RQXSaveRealTableAs("", "all_sets", table.id()), 0);
    RQXMemStreamOpenWrite();
    ASSERT_EQ(RQXSaveRealTableMem(table.id(), 0), 0);
    long size = 0;
    void* area = nullptr;
    RQXMemStreamGetWriteBuf(&size, &area);
    EXPECT_EQ(std::string(static_cast<char*>(area), static_cast<size_t>(size)),
              read_file("all_sets.QXT"));
    RQXMemStreamClose();

    // From the second round on with a join of the tables.
    int keys[] = {1, -1};
    char name[256] = "join";
    if (table.id() > 1) require(RQXAddJoinTable(name, 1, 1, 1, keys, table.id(), 1, keys), "join");
    char directory[512] = "";
    ASSERT_EQ(RQXSaveDBAs(directory, "db"), 0);
    ASSERT_EQ(RQXSaveDB2Mem(100000, block.at(0), &end), 0);
    EXPECT_EQ(block.bytes(block.offset_of(end)), read_file("db.QXD"));
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    ASSERT_EQ(RQXLoadDBFromMem(block.at(0), &end), 0);
    EXPECT_EQ(database_text(), before);
  }
}

TEST_F(ImageAndFileTest, ADatabaseFromMemoryHasNoPlace) {
  const TestTable table({{"i", ints({1})}});
  char path[512] = "";
  char name[512] = "";
  ASSERT_EQ(RQXSaveDBAs(path, "db"), 0);
  ImageBlock block(read_file("db.QXD"));
  void* end = nullptr;
  ASSERT_EQ(RQXLoadDBFromMem(block.at(0), &end), 0);
  EXPECT_EQ(RQXGetPathName(path, name), 0);
  EXPECT_STREQ(path, "");
  EXPECT_STREQ(name, "");
  expect_failure(RQXSaveDB(), QX_ERROR_FILE_NAME);
}

}  // namespace
}  // namespace qxe::test
