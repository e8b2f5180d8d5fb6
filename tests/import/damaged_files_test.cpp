// Files that are cut, changed or no text at all: an import takes them or refuses them, and what it
// takes is a table that can be read; nothing else changes.
#include <functional>
#include <random>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

const std::string kColumns =
    "I\t4\ti\nF\t4\tf\nD\t10\td\tD1\nT\t8\tt\tT1\nA\t6\ta\nE\t19\te\tD1\tT1\nN\t5\tn\t2\tROUNDUP\n"
    "A\t1\tx\tSKIP\n";
const std::string kDelimited =
    "12,1.5,2024/02/29,12:30:45,\"a\"\"b,\",2024/02/29 12:30:45,-1.25,x\n"
    ",,,,,,,\r\n"
    "2147483647,\"1,234\",2024/1/1,1:2:3,\xe3\x81\x82,2024/1/1 1:2:3,99.999,\n";
const std::string kFixed =
    "  12 1.52024/02/2912:30:45abc   2024/02/29 12:30:45-1.25x\n"
    "   1 2.52024/01/0101:02:03 b c  2024/01/01 01:02:03 1.25y\n";

struct FileCase {
  const char* name;
  std::string catalog;
  std::string data;
};

class DamagedFilesTest : public EngineTest, public testing::WithParamInterface<FileCase> {
 protected:
  /// Every call that reads text files, on this catalog and data.
  void import(const std::string& catalog, const std::string& data) {
    write_file("c.cat", catalog);
    write_file("c.csv", data);
    expect_whole([] { return RQXAddCatalogFileEx2("", "c.cat", "", "c.csv", "new"); });
    expect_whole([&] {
      return RQXAddRealFilter2(table_.id(), 0, "new", QX_DT_STRING, 3, nullptr, "", "c.csv");
    });
    expect_whole([&] {
      return RQXAddRealFilter2(table_.id(), 0, "new", QX_DT_DATE, 3, nullptr, "", "c.csv");
    });
    expect_whole(
        [&] { return RQXSearchByFieldNValuesFromCSV(table_.id(), text_, 1, "", "c.csv"); });
    expect_whole([&] {
      const int all[] = {-1};
      return RQXExportAsCSVwithF(table_.id(), 1, all, -1, -1, "", "out.csv", '/', "c.cat");
    });
    RQXPurgeSubsets(table_.id());
    while (RQXGetNFilter(table_.id()) > 2) delete_first_filter();
    delete_new_table();
  }

  /// The database can be read, and is as before after a failure.
  void expect_whole(const std::function<int()>& call) {
    RQXSetSavedFlag(1, 1, 1);
    drain_ring();
    const std::string before = database_text();
    const int status = call();
    const std::string after = database_text();
    if (status >= 0) return;
    EXPECT_EQ(after, before);
    EXPECT_FALSE(drain_ring().empty()) << hex(status);
  }

 private:
  void delete_first_filter() {
    int ids[8] = {};
    RQXGetFilterIDList(table_.id(), ids);
    require(RQXDeleteRealFilter(table_.id(), ids[0]), "RQXDeleteRealFilter");
  }
  static void delete_new_table() {
    const int id = RQXGetTableIDFromName("new");
    if (id >= 0) require(RQXDeleteTable(id), "RQXDeleteTable");
  }

  const TestTable table_{{{"i", ints({1, 2, 3})}, {"s", strings({"a", "b", "c"})}}, "base"};
  const int text_ = table_.filter("s");
};

TEST_P(DamagedFilesTest, CutAtEachLength) {
  const auto& [name, catalog, data] = GetParam();
  for (size_t length = 0; length <= catalog.size() && !HasFailure(); ++length) {
    SCOPED_TRACE(length);
    import(catalog.substr(0, length), data);
  }
  for (size_t length = 0; length <= data.size() && !HasFailure(); ++length) {
    SCOPED_TRACE(length);
    import(catalog, data.substr(0, length));
  }
}

TEST_P(DamagedFilesTest, WithBytesChanged) {
  const auto& [name, catalog, data] = GetParam();
  std::mt19937 random(5);
  for (int round = 0; round < 100 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    std::string files[] = {catalog, data};
    for (std::string& file : files) {
      for (int i = 0; i < 3; ++i) file[random() % file.size()] = static_cast<char>(random());
    }
    import(files[0], files[1]);
  }
}

TEST_P(DamagedFilesTest, NoTextOrOneLine) {
  const auto& [name, catalog, data] = GetParam();
  for (const char* const piece : {"\"", ",", "1,", "\n", "\"\"\"a\","}) {
    std::string line;
    while (line.size() < 300'000) line += piece;
    import(catalog, data + line);
    import(line + "\n" + catalog, data);
  }
  import(catalog, std::string(20000, '\0'));
}

INSTANTIATE_TEST_SUITE_P(
    Modes, DamagedFilesTest,
    testing::Values(FileCase{"Stop", "//CSV\n//ERROR\tSTOP\n" + kColumns, kDelimited},
                    FileCase{"Continue", "//CSV\n//ERROR\tCONTINUE\n" + kColumns, kDelimited},
                    FileCase{"SkipLine", "//ERROR\tSKIPLINE\n//USR\t,\t;\n" + kColumns, kDelimited},
                    FileCase{"None", "//CUTTOP\n//ERROR\tNONE\n//CSV\n" + kColumns,
                             "title\n" + kDelimited},
                    FileCase{"Fixed", "//FIX\n//ERROR\tCONTINUE\n" + kColumns, kFixed}),
    case_name<FileCase>);

}  // namespace
}  // namespace qxe::test
