// Walks through failures of imports, exports, table files, images and the file browser.
#include "faults_fixture.h"

namespace qxe::test {
namespace {

/// Lines for several workers: each range has a page at least. Every 20th is as `bad`.
std::string lines_of_data(const std::string& bad) {
  const std::string long_text(100, 'x');
  std::string text;
  for (int i = 0; i < 100; ++i) {
    const std::string number = std::to_string(i % 30);
    text += number + ",1." + number + ",2024/3/" + std::to_string(1 + i % 28) + ",12:00:" + number;
    text += i % 10 == 0 ? ",\"a \"\"" + number + "\"\"\"," : "," + long_text + number + ",";
    text += "2024/1/1 1:2:" + number + ",-" + number + ".25\n";
    if (i % 20 == 19) text += bad;
  }
  return text;
}

/// `bad` is a line in the wrong form; it ends with a line feed.
Operation importing(const char* name, const std::string& mode, const std::string& bad) {
  const auto call = [](const Base&) { return RQXAddCatalogFileEx2("", "c.cat", "", "c.csv", "t"); };
  return {name,
          [=, written = false](const Base& base) mutable {
            if (!written) {
              write_file("c.cat", "//CSV\n//ERROR\t" + mode +
                                      "\nI\t1\ti\nF\t1\tf\nD\t1\td\nT\t1\tt\nA\t1\ta\n"
                                      "E\t1\te\nN\t1\tn\t2\n");
              write_file("c.csv", lines_of_data(bad));
            }
            written = true;
            return call(base);
          },
          imported, delete_table};
}

constexpr const char* kBadValue = "x,y,z,12:00:00,name,2024/1/1 1:2:3,0\n";
constexpr const char* kBadCount = "1,2\n";

int import_default_file(const Base&) {
  return RQXAddCatalogFile("", "c.cat");
}

INSTANTIATE_TEST_SUITE_P(
    Imports, FaultsTest,
    testing::Values(importing("Clean", "STOP", ""), importing("StoppedByValue", "STOP", kBadValue),
                    importing("StoppedByCount", "CONTINUE", kBadCount),
                    importing("BadValuesAreNull", "CONTINUE", kBadValue),
                    importing("BadValuesUnchecked", "NONE", kBadValue),
                    importing("BadLinesSkipped", "SKIPLINE",
                              std::string(kBadValue) + kBadCount + "\"open\n"),
                    Operation{"WithoutFiles", import_default_file, imported, delete_table}),
    case_name<Operation>);

// ... that write files

const int kAllFilters[] = {-1};

std::string written_files(const Base&, int) {
  std::string text;
  for (const char* const name : {"out.csv", "out.cat", "SrcData.dat"}) {
    if (std::filesystem::exists(name)) text += name + (":\n" + read_file(name));
  }
  return text;
}

void remove_files(const Base&, int) {
  for (const char* const name : {"out.csv", "out.cat", "SrcData.dat"}) {
    std::filesystem::remove(name);
  }
}

Operation exporting(const char* name, std::function<int(const Base&)> call) {
  return {name, std::move(call), written_files, remove_files, QX_ERROR_PATH};
}

INSTANTIATE_TEST_SUITE_P(
    Exports, FaultsTest,
    testing::Values(exporting("Csv",
                              [](const Base& base) {
                                return RQXExportAsCSV(base.id(), 1, kAllFilters, -1, -1, "",
                                                      "out.csv", '/');
                              }),
                    exporting("TabWithFormat",
                              [](const Base& base) {
                                return RQXExportAsTABwithF(base.id(), 2, kAllFilters, 2, 4, "",
                                                           "out.csv", '-', "format.txt");
                              }),
                    exporting("Catalog",
                              [](const Base& base) {
                                return RQXSaveAsCatalog(base.id(), 1, kAllFilters, QX_EXPORT_COMMA,
                                                        -1, -1, '/', "", "out.cat");
                              }),
                    exporting("CatalogWithFormat",
                              [](const Base& base) {
                                return RQXSaveAsCatalogwithFEx(
                                    base.id(), 1, kAllFilters, QX_EXPORT_TAB, -1, -1, '/', ".",
                                    "out.csv", "", "out.cat", "format.txt");
                              })),
    case_name<Operation>);

// ... on table files; those of databases have walks of their own

std::string saved_table(const Base&, int) {
  return read_file("out.QXT");
}
void remove_table_file(const Base&, int) {
  std::filesystem::remove("out.QXT");
}

int save_table(const Base& base) {
  return RQXSaveRealTableAs("", "out", base.id());
}
int save_table_inside(const Base& base) {
  const int tables[] = {base.id(), -1};
  long end = 0;
  return RQXSaveRealTable2("inside.dat", 100, tables, &end);
}
int load_table_inside(const Base&) {
  int table = 0;
  long end = 0;
  return RQXLoadRealTable2("inside.dat", 100, 1, &table, &end);
}
int file_info(const Base&) {
  _QXFileInfo info;
  return RQXGetQXTFileInfo("", "stored", &info);
}

INSTANTIATE_TEST_SUITE_P(
    TableFiles, FaultsTest,
    testing::Values(Operation{"Save", save_table, saved_table, remove_table_file, QX_ERROR_PATH},
                    Operation{"SaveInside", save_table_inside, nothing, keep},
                    Operation{"Load", [](const Base&) { return RQXLoadRealTable("", "stored"); },
                              imported, delete_table, QX_ERROR_PATH},
                    Operation{"LoadInside", load_table_inside, imported, delete_table},
                    Operation{"Info", file_info, nothing, keep, QX_ERROR_PATH}),
    case_name<Operation>);

// Images and the stream

/// A block of a client, and what the last call has put into it.
struct ImageArea {
  long words[30000];
  void* end;

  std::string bytes() const {
    const char* const begin = reinterpret_cast<const char*>(words);
    return {begin, static_cast<const char*>(end)};
  }
} area;

std::string image_bytes(const Base&, int) {
  return area.bytes();
}
std::string own_image_bytes(const Base&, int) {
  return {static_cast<const char*>(area.end), sizeof(Numeric)};
}

int save_image(const Base& base) {
  return RQXSaveRealTable2Mem(base.id(), sizeof area.words, area.words, &area.end);
}
int get_own_image(const Base& base) {
  long size = 0;
  return RQXGetMemRealTable(base.id(), &area.end, &size);
}
int save_all(const Base&) {
  return RQXSaveDB2Mem(sizeof area.words, area.words, &area.end);
}
int load_image(const Base& base) {
  if (area.words[0] == 0) save_image(base);
  return RQXLoadMemRealTable(area.words, sizeof area.words);
}
int load_streamed(const Base& base) {
  if (area.words[0] == 0) save_image(base);
  RQXMemStreamOpenRead(sizeof area.words, area.words);
  return RQXLoadRealTableMem();
}
int save_streamed(const Base& base) {
  static char data[1'100'000];  // more than the stream has at first
  if (const int status = RQXMemStreamOpenWrite(); status < 0) return status;
  if (const int status = RQXMemStreamWrite(data, sizeof data); status < 0) return status;
  return RQXSaveRealTableMem(base.id(), 0);
}
std::string streamed_bytes(const Base&, int) {
  long size = 0;
  void* bytes = nullptr;
  require(RQXMemStreamGetWriteBuf(&size, &bytes), "RQXMemStreamGetWriteBuf");
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}
void forget_images(const Base&, int) {
  area.words[0] = 0;
  RQXFreeMemRealTable();
  RQXMemStreamClose();
}
void forget_loaded(const Base& base, int table) {
  delete_table(base, table);
  RQXMemStreamClose();
}

INSTANTIATE_TEST_SUITE_P(
    Images, FaultsTest,
    testing::Values(Operation{"Save", save_image, image_bytes, forget_images},
                    Operation{"Own", get_own_image, own_image_bytes, forget_images},
                    Operation{"SaveAll", save_all, image_bytes, forget_images},
                    Operation{"Load", load_image, imported, forget_loaded},
                    Operation{"LoadStreamed", load_streamed, imported, forget_loaded},
                    Operation{"SaveStreamed", save_streamed, streamed_bytes, forget_images}),
    case_name<Operation>);

using DatabaseImageFaultsTest = EngineTest;

TEST_F(DatabaseImageFaultsTest, LeaveTheDatabaseWholeOrEmpty) {
  const Base base;
  require(save_all(base), "RQXSaveDB2Mem");
  RQXSetSavedFlag(1, 1, 1);
  const std::string wanted = database_text();
  walk([&](const Fault& fault) {
    int status = 0;
    bool fired = false;
    void* end = nullptr;
    {
      const ArmedFault armed(fault);
      status = RQXLoadDBFromMem(area.words, &end);
      fired = armed.fired();
    }
    if (status < 0) {
      expect_failure(status, QX_ERROR_OUT_OF_MEMORY);
      EXPECT_LE(RQXGetNTable(), 1);
      EXPECT_EQ(RQXLoadDBFromMem(area.words, &end), 0);
    }
    EXPECT_EQ(database_text(), wanted);
    return fired;
  });
  forget_images(base, 0);
}

// The file browser

int listed = 0;
char piece[100];
int piece_size = 0;

int list_files(const Base&) {
  static char names[100 * 256];
  static unsigned char flags[100];
  int stored = 100;
  return RQXBrowserGetFileList("*.*", 0, &stored, &listed, names, flags);
}
int get_piece(const Base&) {
  int position = 3;
  piece_size = 50;
  return RQXBrowserGetFile("rows.csv", &position, &piece_size, piece);
}
int put_piece(const Base&) {
  return RQXBrowserPutFile("new", 9, "new bytes");
}

INSTANTIATE_TEST_SUITE_P(
    FileBrowser, FaultsTest,
    testing::Values(Operation{"List", list_files,
                              [](const Base&, int) { return std::to_string(listed); }, keep,
                              QX_ERROR_NOT_FOUND},
                    Operation{"Get", get_piece,
                              [](const Base&, int) {
                                return std::string(piece, static_cast<size_t>(piece_size));
                              },
                              keep},
                    Operation{"Put", put_piece, [](const Base&, int) { return read_file("new"); },
                              [](const Base&, int) { RQXBrowserDelFile("new"); }}),
    case_name<Operation>);

}  // namespace
}  // namespace qxe::test
