// The file browser: names and patterns, permissions, files in pieces, and what the system refuses.
#include <fcntl.h>
#include <limits.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "qxe.h"
#include "support/case_name.h"
#include "support/credentials.h"
#include "support/engine_test.h"
#include "support/files.h"

namespace qxe::test {
namespace {

/// Names and flags that match, all of them.
std::map<std::string, int> list(const std::string& pattern) {
  int count = 1000;
  int total = -1;
  std::string names(256 * static_cast<size_t>(count), '?');
  std::vector<unsigned char> flags(static_cast<size_t>(count), 0xff);
  EXPECT_EQ(RQXBrowserGetFileList(pattern.c_str(), 0, &count, &total, names.data(), flags.data()),
            0);
  EXPECT_EQ(total, count);
  std::map<std::string, int> entries;
  for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
    entries[names.data() + 256 * i] = flags[i];
  }
  EXPECT_EQ(entries.size(), static_cast<size_t>(count));
  return entries;
}

std::string matching(const std::string& pattern) {
  std::string text;
  for (const auto& [name, flags] : list(pattern)) text += name + " ";
  return text;
}

// Names

struct PatternCase {
  const char* name;
  const char* pattern;
  const char* matching;
};

class PatternTest : public EngineTest, public testing::WithParamInterface<PatternCase> {
 protected:
  PatternTest() {
    for (const char* const name :
         {"a", "ab", "b.txt", "ab.txt", "A.TXT", "x.tar.gz", ".hidden", "end.", "st*r.c"}) {
      write_file(name, "");
    }
    std::filesystem::create_directory("d");
    write_file("d/ab.txt", "");
  }
};

TEST_P(PatternTest, TakesTheNames) {
  EXPECT_EQ(matching(GetParam().pattern), GetParam().matching);
  const std::string here = directory().path() + "/";
  EXPECT_EQ(matching(here + GetParam().pattern), GetParam().matching);
}

INSTANTIATE_TEST_SUITE_P(
    All, PatternTest,
    testing::Values(
        PatternCase{"AllNames", "*.*",
                    ". .. .hidden A.TXT a ab ab.txt b.txt d end. st*r.c x.tar.gz "},
        PatternCase{"Empty", "", ". .. .hidden A.TXT a ab ab.txt b.txt d end. st*r.c x.tar.gz "},
        PatternCase{"WithoutExtension", "*", ". .. a ab d end. "},
        PatternCase{"Extension", "*.txt", "ab.txt b.txt "},
        PatternCase{"CaseCounts", "*.TXT", "A.TXT "}, PatternCase{"Exact", "ab.txt", "ab.txt "},
        PatternCase{"Begins", "a*.t*", "ab.txt "}, PatternCase{"Ends", "*b.*t", "ab.txt b.txt "},
        PatternCase{"Contains", "*tar*.*", "x.tar.gz "},
        PatternCase{"TwoStars", "**", ". .. a ab d end. "}, PatternCase{"LastPoint", "x.*", ""},
        PatternCase{"LastPointOfTwo", "x.tar.*", "x.tar.gz "},
        PatternCase{"StarInside", "st*r.c", "st*r.c "},
        PatternCase{"StarInsideIsPlain", "s*r.c", ""}, PatternCase{"NoStem", ".*", ". .hidden "},
        PatternCase{"Nothing", "nothing", ""}, PatternCase{"QuestionMarkIsPlain", "?.txt", ""}),
    case_name<PatternCase>);

using ListTest = EngineTest;

TEST_F(ListTest, LooksIntoTheDirectoryOfThePattern) {
  std::filesystem::create_directory("d");
  write_file("d/x.txt", "");
  EXPECT_EQ(matching("d/*.txt"), "x.txt ");
  EXPECT_EQ(matching("d/"), ". .. x.txt ");
  EXPECT_EQ(matching("d//*.txt"), "x.txt ");
  EXPECT_EQ(list("/tmp").count("tmp"), 1u);
  EXPECT_EQ(list("/tmp")["tmp"] & QX_FILE_DIR, QX_FILE_DIR);
}

TEST_F(ListTest, StopsAtItsCapacityAndCountsOn) {
  for (int i = 0; i < 5; ++i) write_file("f" + std::to_string(i) + ".x", "");
  for (const int capacity : {0, 2, 5, 6}) {
    SCOPED_TRACE(capacity);
    int count = capacity;
    int total = -1;
    std::string names(256 * 7, '?');
    unsigned char flags[7] = {};
    ASSERT_EQ(RQXBrowserGetFileList("*.x", 0, &count, &total, names.data(), flags), 0);
    EXPECT_EQ(count, std::min(capacity, 5));
    EXPECT_EQ(total, 5);
    EXPECT_EQ(names.find_first_not_of('?', 256 * static_cast<size_t>(count)), std::string::npos);
  }
  int count = 7;
  int total = -1;
  EXPECT_EQ(RQXBrowserGetFileList("*.x", 0, &count, &total, nullptr, nullptr), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(total, 5);
}

TEST_F(ListTest, LongestNamesFit) {
  const std::string name(255, 'n');
  write_file(name, "");
  EXPECT_EQ(matching("n*"), name + " ");
}

TEST_F(ListTest, TellsWhatALinkLeadsTo) {
  write_file("file.x", "");
  std::filesystem::create_directory("d.x");
  ASSERT_EQ(symlink("file.x", "to_file.x"), 0);
  ASSERT_EQ(symlink("d.x", "to_d.x"), 0);
  ASSERT_EQ(symlink("nowhere", "to_nothing.x"), 0);
  auto entries = list("*.x");
  EXPECT_EQ(entries["to_file.x"], entries["file.x"]);
  EXPECT_EQ(entries["to_d.x"], entries["d.x"]);
  EXPECT_EQ(entries["to_nothing.x"], 0);
  EXPECT_EQ(entries["d.x"], QX_FILE_DIR | QX_FILE_READ | QX_FILE_WRITE | QX_FILE_EXEC);
}

TEST_F(ListTest, MissingDirectoriesAreTold) {
  int count = 0;
  int total = 0;
  write_file("file", "");
  const auto refused = [&](const char* pattern, int code) {
    expect_failure(RQXBrowserGetFileList(pattern, 0, &count, &total, nullptr, nullptr), code);
  };
  refused("missing/*.*", QX_ERROR_NOT_FOUND);
  refused("file/*.*", QX_ERROR_NOT_FOUND);
  refused((std::string(5000, 'd') + "/*").c_str(), QX_ERROR_NOT_FOUND);
  refused(nullptr, QX_ERROR_FILE);
  count = -1;
  refused("*.*", QX_ERROR_PARAMETER);
}

/// Flags of a file by what the system lets this process do.
int allowed(const char* name) {
  int flags = 0;
  for (const auto& [right, flag] :
       {std::pair<int, int>{R_OK, QX_FILE_READ}, {W_OK, QX_FILE_WRITE}, {X_OK, QX_FILE_EXEC}}) {
    if (faccessat(AT_FDCWD, name, right, AT_EACCESS) == 0) flags |= flag;
  }
  return flags;
}

/// The flags of a file in many modes are what the system allows `user`.
void expect_rights(uid_t user) {
  for (mode_t mode = 0; mode < 01000; mode += 7) {
    ASSERT_EQ(chmod("file.x", mode), 0);
    const WithoutRoot rights(user);
    ASSERT_EQ(list("*.x")["file.x"], allowed("file.x")) << std::oct << mode;
  }
}

TEST_F(ListTest, FlagsAreTheRightsOfThisProcess) {
  write_file("file.x", "");
  expect_rights(geteuid());
}

TEST_F(ListTest, FlagsAreTheRightsOfOwnerGroupAndOthers) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  constexpr uid_t kUser = 65534;
  ASSERT_EQ(chmod(directory().path().c_str(), 0755), 0);
  write_file("file.x", "");
  const gid_t others = getegid() + 1;
  for (const auto& [owner, group] :
       {std::pair<uid_t, gid_t>{kUser, others}, {kUser, getegid()}, {0, getegid()}, {0, others}}) {
    SCOPED_TRACE(testing::Message() << owner << " " << group);
    ASSERT_EQ(chown("file.x", owner, group), 0);
    expect_rights(kUser);
  }
}

// Directories

class BrowserDirectoryTest : public EngineTest {
 protected:
  static std::string current() {
    std::string path(4096, '?');
    EXPECT_EQ(RQXBrowserGetCurrentDirectory(path.data()), 0);
    return path.c_str();
  }
};

TEST_F(BrowserDirectoryTest, CurrentOneFollowsTheProcess) {
  const std::string start = directory().path();
  EXPECT_EQ(current(), start);
  EXPECT_EQ(RQXBrowserMakeDirectory("d"), 0);
  EXPECT_EQ(RQXBrowserSetCurrentDirectory("d"), 0);
  EXPECT_EQ(current(), start + "/d");
  EXPECT_EQ(std::filesystem::current_path(), start + "/d");
  EXPECT_EQ(RQXBrowserSetCurrentDirectory(""), 0);
  expect_failure(RQXBrowserSetCurrentDirectory("missing"), QX_ERROR_DELETE);
  expect_failure(RQXBrowserSetCurrentDirectory(nullptr), QX_ERROR_FILE);
  EXPECT_EQ(current(), start + "/d");
  EXPECT_EQ(RQXBrowserSetCurrentDirectory(start.c_str()), 0);
  EXPECT_EQ(current(), start);
}

TEST_F(BrowserDirectoryTest, DeletedCurrentOneIsTold) {
  RQXBrowserMakeDirectory("d");
  RQXBrowserSetCurrentDirectory("d");
  EXPECT_EQ(RQXBrowserDelDirectory("../d", 0), 0);
  char path[4096];
  expect_failure(RQXBrowserGetCurrentDirectory(path), QX_ERROR_DELETE);
}

TEST_F(BrowserDirectoryTest, RightsCount) {
  ASSERT_EQ(chmod(directory().path().c_str(), 0755), 0);
  std::filesystem::create_directory("locked");
  ASSERT_EQ(chmod("locked", 0), 0);
  const WithoutRoot nobody;
  expect_failure(RQXBrowserSetCurrentDirectory("locked"), QX_ERROR_ACCESS);
  expect_failure(RQXBrowserMakeDirectory("locked/d"), QX_ERROR_DELETE, "Failed to make directory");
  expect_failure(RQXBrowserDelDirectory("locked/d", 1), QX_ERROR_DELETE);
  expect_failure(RQXBrowserPutFile("locked/f", 0, nullptr), QX_ERROR_FILE, "Failed to open file");
  int count = 0;
  int total = 0;
  expect_failure(RQXBrowserGetFileList("locked/", 0, &count, &total, nullptr, nullptr),
                 QX_ERROR_NOT_FOUND);
}

TEST_F(BrowserDirectoryTest, AreMadeOnce) {
  EXPECT_EQ(RQXBrowserMakeDirectory("d"), 0);
  expect_failure(RQXBrowserMakeDirectory("d"), QX_ERROR_EXISTS, "Failed to make directory");
  write_file("file", "");
  expect_failure(RQXBrowserMakeDirectory("file"), QX_ERROR_EXISTS);
  for (const char* const path : {"missing/d", "file/d", ""}) {
    expect_failure(RQXBrowserMakeDirectory(path), QX_ERROR_DELETE, "Failed to make directory");
  }
  expect_failure(RQXBrowserMakeDirectory(nullptr), QX_ERROR_FILE);
}

TEST_F(BrowserDirectoryTest, EmptyOnesAreDeleted) {
  std::filesystem::create_directories("d/e");
  expect_failure(RQXBrowserDelDirectory("d", 0), QX_ERROR_DIR_NOT_EMPTY,
                 "Failed to delete directory");
  EXPECT_EQ(RQXBrowserDelDirectory("d/e", 0), 0);
  EXPECT_EQ(RQXBrowserDelDirectory("d", 1), 0);
  write_file("file", "");
  for (const char* const path : {"d", "file", "", "."}) {
    expect_failure(RQXBrowserDelDirectory(path, 1), QX_ERROR_DELETE, "Failed to delete directory");
  }
  expect_failure(RQXBrowserDelDirectory(nullptr, 1), QX_ERROR_FILE);
  EXPECT_TRUE(std::filesystem::exists("file"));
}

TEST_F(BrowserDirectoryTest, WholeTreesAreDeletedWithoutWhatLinksLeadTo) {
  std::filesystem::create_directory("kept");
  write_file("kept/file", "");
  std::string deep = "d";
  for (int i = 0; i < 100; ++i) {
    deep += "/e";
    std::filesystem::create_directories(deep);
    write_file(deep + "/file", "x");
  }
  std::filesystem::create_directory_symlink(directory() / "kept", "d/link");
  EXPECT_EQ(RQXBrowserDelDirectory("d", 1), 0);
  EXPECT_FALSE(std::filesystem::exists("d"));
  EXPECT_TRUE(std::filesystem::exists("kept/file"));

  std::filesystem::create_directory_symlink(directory() / "kept", "link");
  expect_failure(RQXBrowserDelDirectory("link", 1), QX_ERROR_DELETE);
  RQXBrowserSetCurrentDirectory("kept");
  expect_failure(RQXBrowserDelDirectory("..", 1), QX_ERROR_DIR_NOT_EMPTY);
  expect_failure(RQXBrowserDelDirectory("../kept/..//", 1), QX_ERROR_DIR_NOT_EMPTY);
  EXPECT_TRUE(std::filesystem::exists("file"));
}

TEST_F(BrowserDirectoryTest, FilesAndDirectoriesAreMoved) {
  std::filesystem::create_directory("d");
  write_file("d/a", "new");
  write_file("b", "old");
  EXPECT_EQ(RQXBrowserMove("d", "e"), 0);
  EXPECT_EQ(RQXBrowserMove("e/a", "b"), 0);
  EXPECT_EQ(read_file("b"), "new");
  expect_failure(RQXBrowserMove("missing", "b"), QX_ERROR_DELETE,
                 "Failed to move file ( or directory )");
  expect_failure(RQXBrowserMove("b", "e"), QX_ERROR_DELETE);
  expect_failure(RQXBrowserMove(nullptr, "b"), QX_ERROR_FILE);
  expect_failure(RQXBrowserMove("b", nullptr), QX_ERROR_FILE);
  EXPECT_EQ(RQXBrowserDelFile("b"), 0);
  for (const char* const path : {"b", "e", ""}) {
    expect_failure(RQXBrowserDelFile(path), QX_ERROR_DELETE, "Failed to delete file");
  }
  expect_failure(RQXBrowserDelFile(nullptr), QX_ERROR_FILE);
}

// Files

using BrowserFileTest = EngineTest;

/// What the four forms of reading say about one part; positions behind 32 bits for the 64 forms.
void expect_part(long position, int length, const std::string& bytes, long remaining) {
  SCOPED_TRACE(testing::Message() << position << " " << length);
  const auto expect = [&](auto&& call) {
    std::string buffer(static_cast<size_t>(length) + 1, '?');
    int got = length;
    EXPECT_EQ(call(&got, buffer.data()), 0);
    EXPECT_EQ(buffer.substr(0, static_cast<size_t>(got)), bytes);
    EXPECT_EQ(buffer.find_first_not_of('?', bytes.size()), std::string::npos);
  };
  long place = position;
  long rest = -1;
  expect([&](int* got, void* out) { return RQXBrowserGetFile64("file", &place, got, out); });
  EXPECT_EQ(place, position + static_cast<long>(bytes.size()));
  expect([&](int* got, void* out) {
    return RQXBrowserGetFileEx64("file", position, &rest, got, out);
  });
  EXPECT_EQ(rest, remaining);
  if (position > INT_MAX) return;
  int short_place = static_cast<int>(position);
  int short_rest = -1;
  expect([&](int* got, void* out) { return RQXBrowserGetFile("file", &short_place, got, out); });
  EXPECT_EQ(short_place, place);
  expect([&](int* got, void* out) {
    return RQXBrowserGetFileEx("file", static_cast<int>(position), &short_rest, got, out);
  });
  EXPECT_EQ(short_rest, std::min<long>(remaining, INT_MAX));
}

TEST_F(BrowserFileTest, AreReadInPieces) {
  write_file("file", "0123456789");
  EXPECT_EQ(RQXBrowserGetFileSize("file"), 10);
  expect_part(0, 10, "0123456789", 0);
  expect_part(0, 4, "0123", 6);
  expect_part(4, 4, "4567", 2);
  expect_part(8, 4, "89", 0);
  expect_part(10, 4, "", 0);
  expect_part(1000, 4, "", 0);
  expect_part(3, 0, "", 7);
  write_file("file", "");
  expect_part(0, 4, "", 0);
  EXPECT_EQ(RQXBrowserGetFileSize("file"), 0);
}

TEST_F(BrowserFileTest, MayBeLong) {
  write_file("file", "begin");
  constexpr long kEnd = 5'000'000'000;
  ASSERT_EQ(truncate("file", kEnd), 0);
  EXPECT_EQ(RQXBrowserGetFileSize("file"), INT_MAX);
  expect_part(0, 5, "begin", kEnd - 5);
  expect_part(kEnd - 3, 5, std::string(3, '\0'), 0);
  // The 32-bit position ends before the file does.
  int position = INT_MAX - 2;
  int length = 5;
  char buffer[5];
  EXPECT_EQ(RQXBrowserGetFile("file", &position, &length, buffer), 0);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(position, INT_MAX);
  length = 5;
  expect_failure(RQXBrowserGetFile("file", &position, &length, buffer), QX_ERROR_FILE,
                 "Failed to seek file");
  EXPECT_EQ(length, 5);
}

struct BadPartCase {
  const char* name;
  const char* path;
  int position, length;
  int code;
  const char* text;
};

class BadPartTest : public EngineTest, public testing::WithParamInterface<BadPartCase> {};

TEST_P(BadPartTest, IsRefusedByAllForms) {
  write_file("file", "0123456789");
  std::filesystem::create_directory("d");
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const BadPartCase& part = GetParam();
  char buffer[100];
  int length = part.length;
  int rest = -7;
  long long_rest = -7;
  int place = part.position;
  long long_place = part.position;
  const auto refused = [&](int status) { expect_failure(status, part.code, part.text); };
  refused(RQXBrowserGetFile(part.path, &place, &length, buffer));
  refused(RQXBrowserGetFile64(part.path, &long_place, &length, buffer));
  refused(RQXBrowserGetFileEx(part.path, part.position, &rest, &length, buffer));
  refused(RQXBrowserGetFileEx64(part.path, part.position, &long_rest, &length, buffer));
  EXPECT_EQ(length, part.length);
  EXPECT_EQ(place, part.position);
  EXPECT_EQ(long_place, part.position);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadPartTest,
    testing::Values(
        BadPartCase{"Missing", "missing", 0, 4, QX_ERROR_FILE, "Failed to get filesize"},
        BadPartCase{"Null", nullptr, 0, 4, QX_ERROR_FILE, ""},
        BadPartCase{"Empty", "", 0, 4, QX_ERROR_FILE, "Failed to get filesize"},
        BadPartCase{"Directory", "d", 0, 4, QX_ERROR_FILE, "Failed to read file"},
        BadPartCase{"Pipe", "pipe", 0, 4, QX_ERROR_FILE, "Failed to read file"},
        BadPartCase{"NegativePosition", "file", -1, 4, QX_ERROR_FILE, "Failed to seek file"},
        BadPartCase{"LowestPosition", "file", INT_MIN, 4, QX_ERROR_FILE, "Failed to seek file"},
        BadPartCase{"NegativeLength", "file", 0, -1, QX_ERROR_PARAMETER, "Invalid Parameter : "}),
    case_name<BadPartCase>);

TEST_F(BrowserFileTest, AreWrittenInPieces) {
  const std::string first("a\0b", 3);
  EXPECT_EQ(RQXBrowserPutFileEx("file", QX_PUT_CREATE, 3, first.data()), 0);
  EXPECT_EQ(RQXBrowserPutFileEx("file", QX_PUT_APPEND, 4, "cdef"), 0);
  EXPECT_EQ(RQXBrowserPutFileEx("file", -5, 0, nullptr), 0);
  EXPECT_EQ(read_file("file"), first + "cdef");
  EXPECT_EQ(RQXBrowserPutFile("file", 2, "xy"), 0);
  EXPECT_EQ(read_file("file"), "xy");
  EXPECT_EQ(RQXBrowserPutFileEx("file", 0, 0, nullptr), 0);
  EXPECT_EQ(read_file("file"), "");
  EXPECT_EQ(RQXBrowserPutFileEx("new", 1, 1, "z"), 0);
  EXPECT_EQ(read_file("new"), "z");
}

TEST_F(BrowserFileTest, RefusedWritesAreTold) {
  write_file("file", "kept");
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  for (const int mode : {QX_PUT_CREATE, QX_PUT_APPEND}) {
    expect_failure(RQXBrowserPutFileEx("file", mode, -1, "x"), QX_ERROR_PARAMETER,
                   "Invalid Parameter : put_len(-1)");
    expect_failure(RQXBrowserPutFileEx(nullptr, mode, 1, "x"), QX_ERROR_FILE);
    for (const char* const path : {"", ".", "missing/file", "file/file", "pipe"}) {
      expect_failure(RQXBrowserPutFileEx(path, mode, 1, "x"), QX_ERROR_FILE, "Failed to open file");
    }
    expect_failure(RQXBrowserPutFileEx("/dev/full", mode, 1, "x"), QX_ERROR_FILE,
                   "Failed to write file");
  }
  expect_failure(RQXBrowserPutFile("file", -1, nullptr), QX_ERROR_PARAMETER);
  expect_failure(RQXBrowserGetFileSize("missing"), QX_ERROR_FILE, "Failed to get filesize ");
  expect_failure(RQXBrowserGetFileSize(nullptr), QX_ERROR_FILE);
  EXPECT_EQ(read_file("file"), "kept");
}

}  // namespace
}  // namespace qxe::test
