// Images of tables and databases in memory: they come back as they were saved, fit where they are
// said to, and are refused when they are not whole.
#include <functional>

#include "image_block.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

constexpr long kTrailer = 16;

long size_for(int table) {
  long size = 0;
  EXPECT_EQ(RQXGetRealTableMemSize(table, &size), 0);
  return size;
}

/// Saves into a block of `size` bytes; returns the bytes used, or the status.
long save(int table, ImageBlock& block, long offset, long size) {
  void* end = nullptr;
  const int status = RQXSaveRealTable2Mem(table, size, block.at(offset), &end);
  EXPECT_EQ(status < 0, end == nullptr);
  return status < 0 ? status : block.offset_of(end) - offset;
}

std::string image_of(int table) {
  void* block = nullptr;
  long size = 0;
  EXPECT_EQ(RQXGetMemRealTable(table, &block, &size), 0);
  return {static_cast<const char*>(block), static_cast<size_t>(size)};
}

int load(const std::string& bytes) {
  ImageBlock block(bytes);
  return RQXLoadMemRealTable(block.at(0), block.size());
}

/// A table with a column of each type and a value that waits in a tail.
TestTable random_table(RandomData& random, int rows, const std::string& name) {
  TestTable table(random.table(rows), name);
  if (rows > 0) RQXFillRealExIntR1(table.id(), 1, -1, 1, 1, 123456789);
  return table;
}

class ImagesTest : public EngineTest {
 protected:
  ~ImagesTest() override { RQXFreeMemRealTable(); }
};

TEST_F(ImagesTest, TablesComeBackWithTheirRootSet) {
  RandomData random(1);
  for (const int rows : {0, 1, 2, 30, 150, 1000}) {
    SCOPED_TRACE(rows);
    RQXClearDB();
    const TestTable table = random_table(random, rows, "t");
    char attribute[64] = "the client's own";
    require(RQXSetFilterAttr(table.id(), 5, attribute, false), "RQXSetFilterAttr");
    require(RQXSetSubsetAttr(table.id(), 1, attribute), "RQXSetSubsetAttr");
    const std::string before = table_text(table.id());
    for (int i = 0; i < 3; ++i) table.add_set(random.set_of(rows));

    const std::string own = image_of(table.id());
    ImageBlock block(size_for(table.id()));
    const long used = save(table.id(), block, 0, block.size());
    EXPECT_EQ(block.bytes(used), own);
    require(RQXDeleteTable(table.id()), "RQXDeleteTable");

    void* end = nullptr;
    const int first = RQXLoadRealTableFromMem(block.at(0), &end);
    ASSERT_GT(first, table.id());
    EXPECT_EQ(table_text(first), before);
    EXPECT_EQ(RQXGetNSet(first), 1);
    EXPECT_EQ(RQXGetFilterType(first, 7), QX_DT_DECIMAL);
    char loaded[64] = "";
    RQXGetFilterAttr(first, 5, loaded, false);
    EXPECT_STREQ(loaded, attribute);
    RQXGetSubsetAttr(first, 1, loaded);
    EXPECT_STREQ(loaded, attribute);
    // The trailer tells the place that the loader has come to.
    const long bytes = block.offset_of(end);
    std::string trailer(static_cast<size_t>(bytes % 8), '\0');
    trailer.append("QXTFEND", 8);
    trailer.append((static_cast<size_t>(bytes) + trailer.size()) % 8, '\0');
    trailer.append(reinterpret_cast<const char*>(&bytes), 8);
    EXPECT_EQ(block.bytes(used).substr(static_cast<size_t>(bytes)), trailer);

    require(RQXSetTableName(first, "u"), "RQXSetTableName");
    const int second = load(own);
    ASSERT_GT(second, first);
    EXPECT_EQ(table_text(second), before);
  }
}

TEST_F(ImagesTest, ATakenNameIsMadeUnique) {
  const TestTable table({{"i", ints({1, 2})}}, "t");
  const std::string image = image_of(table.id());
  for (const char* const wanted : {"t_#1", "t_#2"}) {
    char name[256] = "";
    RQXSetSavedFlag(1, 1, 1);
    RQXGetTableName(load(image), name);
    EXPECT_STREQ(name, wanted);
    int flags[3] = {};
    RQXGetSavedFlag(flags, flags + 1, flags + 2);
    EXPECT_EQ(flags[1], 0);
  }
}

TEST_F(ImagesTest, ABlockIsTooSmallUpToTheTablesEnd) {
  for (const char* const text : {"even", "odd end", "", "longer"}) {
    SCOPED_TRACE(text);
    const TestTable table({{"s", strings({text})}});
    ImageBlock enough(size_for(table.id()));
    const long used = save(table.id(), enough, 0, enough.size());
    ASSERT_GT(used, 0);
    ASSERT_LE(used, enough.size());
    void* end = nullptr;
    ASSERT_GT(RQXLoadRealTableFromMem(enough.at(0), &end), 0);
    const long table_end = enough.offset_of(end);
    const std::string image = enough.bytes(table_end);
    for (long size = 0; size <= used; ++size) {
      ImageBlock block(size);
      const long wanted = size < table_end ? QX_ERROR_OUT_OF_MEMORY
                          : size < used    ? table_end
                                           : used;
      ASSERT_EQ(save(table.id(), block, 0, size), wanted) << size;
      if (wanted > 0) {
        ASSERT_EQ(block.bytes(table_end), image) << size;
      }
    }
  }
}

TEST_F(ImagesTest, FollowEachOtherInOneBlock) {
  RandomData random(2);
  std::vector<std::string> texts;
  std::vector<int> tables;
  long size = 0;
  for (int i = 0; i < 5; ++i) {
    tables.push_back(random_table(random, 10 * i, "t" + std::to_string(i)).id());
    texts.push_back(table_text(tables.back()));
    size += size_for(tables.back());
  }
  ImageBlock block(size);
  std::vector<long> places;
  long place = 0;
  for (const int table : tables) {
    places.push_back(place);
    const long used = save(table, block, place, block.size() - place);
    ASSERT_GT(used, kTrailer);
    place = (place + used + 7) & ~7L;
  }
  RQXClearDB();
  for (size_t i = 0; i < places.size(); ++i) {
    void* end = nullptr;
    const int loaded = RQXLoadRealTableFromMem(block.at(places[i]), &end);
    ASSERT_GT(loaded, 0);
    EXPECT_EQ(table_text(loaded), texts[i]);
  }
}

TEST_F(ImagesTest, OwnImageIsReplacedAndFreed) {
  EXPECT_EQ(RQXFreeMemRealTable(), 0);
  const TestTable first({{"i", ints({1})}});
  const TestTable second({{"s", strings({"text", "another"})}});
  EXPECT_NE(image_of(first.id()), image_of(second.id()));
  void* block = nullptr;
  long size = 0;
  ASSERT_EQ(RQXGetMemRealTable(second.id(), &block, &size), 0);
  expect_failure(RQXGetMemRealTable(99, &block, &size), QX_ERROR_NO_TABLE);
  EXPECT_GT(RQXLoadMemRealTable(block, size), 0);
  EXPECT_EQ(RQXFreeMemRealTable(), 0);
  EXPECT_EQ(RQXFreeMemRealTable(), 0);
  image_of(first.id());
  EXPECT_EQ(RQXReInitializeMS(), 0);  // frees it too
}

// Databases

std::string random_database(RandomData& random, int tables) {
  RQXClearDB();
  for (int i = 0; i < tables; ++i) {
    const TestTable table = random_table(random, random.below(200), "t" + std::to_string(i));
    for (int set = random.below(3); set > 0; --set) {
      table.add_set(random.set_of(table.total_rows()));
    }
  }
  RQXSetSavedFlag(1, 1, 1);
  return database_text();
}

TEST_F(ImagesTest, DatabasesComeBackWhole) {
  RandomData random(3);
  for (const int tables : {0, 1, 2, 7}) {
    SCOPED_TRACE(tables);
    const std::string before = random_database(random, tables);
    long size = 4096 + 512L * tables;
    for (int id = 1; id <= tables; ++id) size += size_for(id);
    ImageBlock block(size);
    void* end = nullptr;
    ASSERT_EQ(RQXSaveDB2Mem(size, block.at(0), &end), 0);
    EXPECT_EQ(database_text(), before);
    const void* const saved_end = end;
    RQXClearDB();
    const TestTable other({{"i", ints({1})}}, "other");
    RQXSetSavedFlag(0, 0, 0);
    ASSERT_EQ(RQXLoadDBFromMem(block.at(0), &end), 0);
    EXPECT_EQ(end, saved_end);
    EXPECT_EQ(database_text(), before);
    // Ids go on behind those of the image.
    EXPECT_EQ(RQXAddRealTable("next", 1), tables + 1);
  }
}

TEST_F(ImagesTest, DatabasesAreRenumbered) {
  const TestTable first({{"i", ints({1})}}, "first");
  const TestTable second({{"i", ints({2})}}, "second");
  require(RQXDeleteTable(first.id()), "RQXDeleteTable");
  ImageBlock block(10000);
  void* end = nullptr;
  ASSERT_EQ(RQXSaveDB2Mem(block.size(), block.at(0), &end), 0);
  ASSERT_EQ(RQXLoadDBFromMem(block.at(0), &end), 0);
  EXPECT_EQ(RQXGetTableIDFromName("second"), 1);
  EXPECT_EQ(TestTable::existing(1).texts("i"), std::vector<std::string>{"2"});
}

TEST_F(ImagesTest, ADatabaseNeedsItsRoom) {
  RandomData random(4);
  random_database(random, 2);
  ImageBlock enough(100000);
  void* end = nullptr;
  ASSERT_EQ(RQXSaveDB2Mem(enough.size(), enough.at(0), &end), 0);
  const long used = enough.offset_of(end);
  for (long size = 0; size < used; size += 1 + size / 50) {
    ImageBlock block(size);
    void* unchanged = &size;
    expect_failure(RQXSaveDB2Mem(size, block.at(0), &unchanged), QX_ERROR_OUT_OF_MEMORY);
    EXPECT_EQ(unchanged, &size);
  }
  ImageBlock exact(used);
  EXPECT_EQ(RQXSaveDB2Mem(used, exact.at(0), &end), 0);
  EXPECT_EQ(exact.bytes(used), enough.bytes(used));
}

// What is refused

TEST_F(ImagesTest, BlocksLieOnAMultipleOfEight) {
  const TestTable table({{"i", ints({1})}});
  ImageBlock block(10000);
  for (long offset = 1; offset < 8; ++offset) {
    void* end = nullptr;
    expect_failure(RQXSaveRealTable2Mem(table.id(), 9000, block.at(offset), &end),
                   QX_ERROR_ALIGNMENT);
    expect_failure(RQXSaveDB2Mem(9000, block.at(offset), &end), QX_ERROR_ALIGNMENT);
    expect_failure(RQXLoadRealTableFromMem(block.at(offset), &end), QX_ERROR_ALIGNMENT);
    expect_failure(RQXLoadMemRealTable(block.at(offset), 9000), QX_ERROR_ALIGNMENT);
    EXPECT_EQ(end, nullptr);
  }
  EXPECT_EQ(RQXGetNTable(), 1);
  void* end = nullptr;
  expect_failure(RQXLoadDBFromMem(block.at(1), &end), QX_ERROR_ALIGNMENT);
  EXPECT_EQ(RQXGetNTable(), 0);
}

TEST_F(ImagesTest, TablesThatDoNotExistAndNegativeSizesAreRefused) {
  const TestTable table({{"i", ints({1})}});
  ImageBlock block(10000);
  void* end = nullptr;
  long size = 0;
  expect_failure(RQXGetRealTableMemSize(99, &size), QX_ERROR_NO_TABLE, "No Such Table: 99");
  expect_failure(RQXSaveRealTable2Mem(99, 10000, block.at(0), &end), QX_ERROR_NO_TABLE);
  expect_failure(RQXSaveRealTable2Mem(table.id(), -1, block.at(0), &end), QX_ERROR_PARAMETER);
  expect_failure(RQXSaveDB2Mem(-1, block.at(0), &end), QX_ERROR_PARAMETER);
  expect_failure(RQXLoadMemRealTable(block.at(0), -1), QX_ERROR_PARAMETER);
}

struct DamageCase {
  const char* name;
  std::function<void(std::string& image)> damage;
  int code;
};

class DamagedImageTest : public EngineTest, public testing::WithParamInterface<DamageCase> {};

TEST_P(DamagedImageTest, IsRefusedByAllLoaders) {
  const TestTable table({{"i", ints({1, 2})}}, "t");
  std::string image = image_of(table.id());
  GetParam().damage(image);
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  expect_failure(load(image), GetParam().code);
  if (image.size() >= 1000) {  // the loader without a size would read on behind the block
    ImageBlock block(image);
    void* end = nullptr;
    expect_failure(RQXLoadRealTableFromMem(block.at(0), &end), GetParam().code);
    EXPECT_EQ(end, nullptr);
  }
  EXPECT_EQ(database_text(), before);
}

void put_int(std::string& image, size_t offset, int value) {
  memcpy(image.data() + offset, &value, sizeof value);
}

/// Offsets of a table image: header, type, versions.
constexpr size_t kType = 256;
constexpr size_t kVersion = 268;

INSTANTIATE_TEST_SUITE_P(
    All, DamagedImageTest,
    testing::Values(
        DamageCase{"NoHeader", [](std::string& image) { image[0] = '\xfe'; }, QX_ERROR_MEM_IMAGE},
        DamageCase{"Empty", [](std::string& image) { image.clear(); }, QX_ERROR_MEM_IMAGE},
        DamageCase{"HalfAHeader", [](std::string& image) { image.resize(255); },
                   QX_ERROR_MEM_IMAGE},
        DamageCase{"HeaderAlone", [](std::string& image) { image.resize(256); },
                   QX_ERROR_MEM_IMAGE},
        DamageCase{"OfAJoin", [](std::string& image) { put_int(image, kType, 2); },
                   QX_ERROR_NOT_REAL_SOURCE},
        DamageCase{"OfAnUnknownKind", [](std::string& image) { put_int(image, kType, -1); },
                   QX_ERROR_NOT_REAL_SOURCE},
        DamageCase{"TooNew", [](std::string& image) { put_int(image, kVersion, 26); },
                   QX_ERROR_FILE_FORMAT},
        DamageCase{"NoVersion", [](std::string& image) { put_int(image, kVersion, 0); },
                   QX_ERROR_FILE_FORMAT}),
    case_name<DamageCase>);

TEST_F(ImagesTest, ATableImageIsNoDatabase) {
  const TestTable table({{"i", ints({1, 2})}}, "t");
  ImageBlock block(image_of(table.id()));
  void* end = nullptr;
  expect_failure(RQXLoadDBFromMem(block.at(0), &end), QX_ERROR_FILE_FORMAT);
  EXPECT_EQ(end, nullptr);
  EXPECT_EQ(RQXGetNTable(), 0);
}

TEST_F(ImagesTest, CutImagesAreRefusedAtEachLength) {
  RandomData random(5);
  const TestTable table = random_table(random, 3, "t");
  const std::string image = image_of(table.id());
  ImageBlock whole(image);
  void* end = nullptr;
  require(RQXLoadRealTableFromMem(whole.at(0), &end), "RQXLoadRealTableFromMem");
  const auto needed = static_cast<size_t>(whole.offset_of(end));
  for (size_t size = 0; size < needed; ++size) {
    EXPECT_EQ(hex(load(image.substr(0, size))), hex(QX_ERROR_MEM_IMAGE)) << size;
  }
  EXPECT_EQ(RQXGetNTable(), 2);
  EXPECT_GT(load(image.substr(0, needed)), 0);
}

TEST_F(ImagesTest, DamagedBytesAreRefusedOrHarmless) {
  RandomData random(6);
  const TestTable table = random_table(random, 5, "t");
  const std::string image = image_of(table.id());
  for (int i = 0; i < 300; ++i) {
    std::string damaged = image;
    damaged[static_cast<size_t>(random.below(static_cast<int>(image.size())))] =
        static_cast<char>(random.chance(50) ? random.below(256) : 0xff * random.below(2));
    const int loaded = load(damaged);
    if (loaded < 0) continue;
    table_text(loaded);
    for (int filter = 1; filter <= 7; ++filter) {
      RQXSortByField(loaded, filter, -1, QX_SORT_ASC);
    }
    require(RQXDeleteTable(loaded), "RQXDeleteTable");
  }
  EXPECT_EQ(RQXGetNTable(), 1);
}

}  // namespace
}  // namespace qxe::test
