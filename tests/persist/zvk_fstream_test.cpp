#include "persist/zvk_fstream.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "frame/base/exception.h"
#include "storage/charcode.h"
#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/files.h"

namespace qxe::test {

namespace {

constexpr const char* kName = "some.bin";

int status_of(const std::function<void()>& body) {
  try {
    body();
    return 0;
  } catch (const CQXException& failure) {
    return failure.ErrorCode();
  }
}

/// A stream header with the given system byte, alignment and character code.
std::string header(int system, int alignment, int code) {
  std::string bytes(kStreamHeaderSize, '\0');
  bytes[0] = static_cast<char>(0xff);
  bytes[1] = static_cast<char>(system);
  bytes[2] = bytes[3] = static_cast<char>(alignment);
  bytes[4] = static_cast<char>(code);
  return bytes;
}

constexpr int kThisSystem = 48 | 4 | 2;
constexpr int kBigEndian32 = 48 | 8 | 1;

class StreamTest : public EngineTest {
 public:
  StreamTest() { buildSystemHeader(); }
  ~StreamTest() override { buildSystemHeader(); }
};

TEST_F(StreamTest, HeaderNamesThisMachineAndTheCodeInForce) {
  setSystemInfoDBCharCode(20);
  zvk_fstream stream(kName, kBinaryWrite, false);
  EXPECT_EQ(stream.writeFileHeader(), 0);
  EXPECT_EQ(stream.close(), 0);
  EXPECT_EQ(read_file(kName), header(0x36, 8, 20));

  stream.open(kName, kBinaryRead, false);
  EXPECT_EQ(stream.readFileHeader(false), 0);
  EXPECT_EQ(stream.tellg(), kStreamHeaderSize);
  EXPECT_EQ(stream.description().ELF, getSystemELF());
  EXPECT_EQ(stream.description().Endian, getSystemEndian());
  EXPECT_EQ(stream.description().AddrAlignment, getSystemAddrAlignment());
  EXPECT_EQ(stream.description().OSTYPE, getSystemOSTYPE());
  EXPECT_EQ(stream.description().DBCharCode, 20);
}

TEST_F(StreamTest, EachFieldIsPaddedByTheRemainderOfItsPosition) {
  struct {
    long from;    // bytes in front
    size_t size;  // of the field
    long elements;
    long end;  // position behind the field
  } const cases[] = {{256, 4, 1, 260}, {260, 4, 1, 268}, {268, 4, 1, 276},
                     {260, 8, 3, 288}, {3, 1, 4, 10},    {7, 1, 1, 15},
                     {5, 16, 1, 26},   {260, 4, 0, 260}, {260, 0, 5, 260}};
  for (const auto& wanted : cases) {
    const std::string front(static_cast<size_t>(wanted.from), 'f');
    const std::vector<char> field(wanted.size * static_cast<size_t>(wanted.elements), 'x');
    write_file(kName, front);
    zvk_fstream stream(kName, kBinaryUpdate, false);
    stream.seekg(0, SEEK_END);
    EXPECT_EQ(stream.write(field.data(), wanted.size, wanted.elements), 0);
    EXPECT_EQ(stream.tellg(), wanted.end);
    stream.close();
    const size_t padding = static_cast<size_t>(wanted.end - wanted.from) - field.size();
    EXPECT_EQ(read_file(kName),
              front + std::string(padding, '\0') + std::string(field.begin(), field.end()));
  }
}

/// Fields of random sizes, empty ones included.
std::vector<std::pair<size_t, std::string>> random_fields(unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::pair<size_t, std::string>> fields;
  for (int i = 0; i < 40; ++i) {
    constexpr size_t kSizes[] = {1, 1, 2, 4, 8, 16, 48};
    const size_t size = kSizes[random() % std::size(kSizes)];
    std::string bytes(size * (random() % 5), '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    fields.emplace_back(size, bytes);
  }
  return fields;
}

TEST_F(StreamTest, ReaderFindsWhatTheWriterPlaced) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const auto fields = random_fields(seed);
    zvk_fstream stream(kName, kBinaryWrite, false);
    stream.writeFileHeader();
    for (const auto& [size, bytes] : fields) {
      zvk_write(stream, bytes.data(), size, static_cast<long>(bytes.size() / size));
    }
    zvk_close(stream);
    zvk_open(stream, kName, kBinaryRead, false);
    stream.readFileHeader(false);
    for (const auto& [size, bytes] : fields) {
      std::string read(bytes.size(), '\0');
      zvk_read(stream, read.data(), size, static_cast<long>(bytes.size() / size));
      ASSERT_EQ(read, bytes) << "seed " << seed;
    }
    char more = 0;
    EXPECT_EQ(stream.read(&more, 1L), -1);
  }
}

struct ForeignCase {
  const char* name;
  std::string front;  // in front of the field bytes
  bool no_align;
  size_t size;
  std::string bytes;
  std::string wanted;
};

class ForeignFileTest : public StreamTest, public testing::WithParamInterface<ForeignCase> {};

TEST_P(ForeignFileTest, FieldComesInTheByteOrderOfThisMachine) {
  const ForeignCase& given = GetParam();
  write_file(kName, given.front + given.bytes);
  zvk_fstream stream(kName, kBinaryRead, given.no_align);
  stream.readFileHeader(false);
  std::string read(given.wanted.size(), '\0');
  EXPECT_EQ(stream.read(read.data(), given.size, static_cast<long>(read.size() / given.size)), 0);
  EXPECT_EQ(read, given.wanted);
}

INSTANTIATE_TEST_SUITE_P(
    Headers, ForeignFileTest,
    testing::Values(
        ForeignCase{"SameOrder", header(kThisSystem, 8, 33), false, 4, "12345678", "12345678"},
        ForeignCase{"OtherOrder", header(kBigEndian32, 4, 33), false, 4, "12345678", "43218765"},
        ForeignCase{"SingleBytes", header(kBigEndian32, 4, 33), false, 1, "12345678", "12345678"},
        ForeignCase{"Decimal", header(kBigEndian32, 4, 33), false, 16, "0123456789abcdef",
                    "fedcba9876543210"},
        ForeignCase{"NotAligned", header(kBigEndian32, 4, 33), true, 4, "12345678", "12345678"},
        ForeignCase{"NoHeader", "", false, 4, "12345678", "12345678"}),
    case_name<ForeignCase>);

TEST_F(StreamTest, ReadingSkipsByTheAlignmentOfTheFile) {
  struct {
    std::string front;
    long position;
  } const cases[] = {{header(kThisSystem, 8, 33), 256 + 4 + 4},
                     {header(kThisSystem, 4, 33), 256 + 4},
                     {header(kThisSystem, 0, 33), 256 + 4},
                     {"", 4}};
  for (const auto& wanted : cases) {
    write_file(kName, wanted.front + std::string(64, 'x'));
    zvk_fstream stream(kName, kBinaryRead, false);
    stream.readFileHeader(false);
    char field[4];
    EXPECT_EQ(stream.read(field, 4, 1), 0);
    EXPECT_EQ(stream.read(field, 4, 0), 0);
    EXPECT_EQ(stream.read(field, 1, 1), 0);
    EXPECT_EQ(stream.tellg(), wanted.position + 1);
  }
}

TEST_F(StreamTest, FileWithoutHeaderIsReadFromWhereItsHeaderWouldBe) {
  for (const long at : {0L, 5L}) {
    write_file(kName, "01234abc");
    zvk_fstream stream(kName, kBinaryRead, false);
    stream.seekg(at, SEEK_SET);
    EXPECT_EQ(stream.readFileHeader(true), 0);
    EXPECT_EQ(stream.tellg(), at);
    EXPECT_FALSE(stream.eof());
    EXPECT_EQ(stream.description().ELF, getSystemELF());
    EXPECT_EQ(stream.description().Endian, getSystemEndian());
    EXPECT_EQ(stream.description().AddrAlignment, 0);
    EXPECT_EQ(stream.description().DBCharCode, 0);
  }
}

TEST_F(StreamTest, BrokenHeaderClosesTheStream) {
  const std::string whole = header(kThisSystem, 8, 33);
  for (const size_t length : {size_t{0}, size_t{1}, whole.size() - 1}) {
    write_file(kName, whole.substr(0, length));
    zvk_fstream stream(kName, kBinaryRead, false);
    EXPECT_EQ(status_of([&] { stream.readFileHeader(false); }), QX_ERROR_FILE) << length;
    EXPECT_FALSE(stream.is_open());
  }
}

TEST_F(StreamTest, CharacterCodeIsComparedOnlyOnRequest) {
  struct {
    int in_force, in_file;
    bool check;
    int status;
  } const cases[] = {{33, 20, false, 0}, {33, 20, true, QX_ERROR_CHAR_CODE},
                     {33, 33, true, 0},  {33, 0, true, 0},
                     {20, 20, true, 0},  {20, 0, true, QX_ERROR_CHAR_CODE}};
  for (const auto& wanted : cases) {
    setSystemInfoDBCharCode(wanted.in_force);
    write_file(kName, header(kThisSystem, 8, wanted.in_file));
    zvk_fstream stream(kName, kBinaryRead, false);
    EXPECT_EQ(status_of([&] { stream.readFileHeader(wanted.check); }), wanted.status);
    EXPECT_EQ(stream.is_open(), wanted.status == 0);
    EXPECT_EQ(stream.description().DBCharCode, wanted.in_file);
  }
}

TEST_F(StreamTest, ElementsAreWidenedAndNarrowedOnReading) {
  struct {
    size_t size, dest;
    std::string bytes, wanted;
  } const cases[] = {{4, 8,
                      "\xff\xff\xff\xff"
                      "abcd",
                      std::string("\xff\xff\xff\xff\0\0\0\0abcd\0\0\0\0", 16)},
                     {8, 4, "abcdefgh12345678", "abcd1234"},
                     {4, 4, "abcd1234", "abcd1234"}};
  for (const auto& wanted : cases) {
    write_file(kName, header(kThisSystem, 8, 33) + wanted.bytes);
    zvk_fstream stream(kName, kBinaryRead, false);
    stream.readFileHeader(false);
    std::string read(wanted.wanted.size(), '\0');
    zvk_read(stream, read.data(), wanted.size, 2, wanted.dest);
    EXPECT_EQ(read, wanted.wanted);
    EXPECT_EQ(status_of([&] { zvk_read(stream, read.data(), wanted.size, 2, wanted.dest); }),
              QX_ERROR_FILE);
  }
}

TEST_F(StreamTest, ElementsOfTheOtherWordClassAndOrderAreReversedFirst) {
  write_file(kName, header(kBigEndian32, 4, 33) + std::string("\0\0\1\2", 4));
  zvk_fstream stream(kName, kBinaryRead, false);
  stream.readFileHeader(false);
  long value = -1;
  zvk_read(stream, &value, 4, 1, sizeof value);
  EXPECT_EQ(value, 0x102);
}

TEST_F(StreamTest, ModeDecidesWhatHappensToTheFile) {
  struct {
    int mode;
    const char* after;  // "old" and a write of "N"; null: does not open a missing file
    bool writes;
  } const cases[] = {{kModeWrite, "N", true},
                     {kModeAppend, "oldN", true},
                     {kModeUpdate, "Nld", true},
                     {kModeRead, "old", false},
                     {kBinaryWrite, "N", true},
                     {kBinaryUpdate, "Nld", true},
                     {kBinaryRead, "old", false},
                     {kModeBinary | kModeAppend, "oldN", true},
                     {kModeWrite | kModeAppend, "N", true}};
  for (const auto& wanted : cases) {
    write_file(kName, "old");
    zvk_fstream stream(kName, wanted.mode, true);
    EXPECT_EQ(stream.write("N", 1L), wanted.writes ? 0 : -1) << wanted.mode;
    stream.close();
    EXPECT_EQ(read_file(kName), wanted.after) << wanted.mode;
  }
}

TEST_F(StreamTest, ModeWithoutAKnownBitOpensNothing) {
  write_file(kName, "old");
  zvk_fstream stream;
  EXPECT_EQ(stream.open(kName, kModeBinary, true), -1);
  EXPECT_EQ(stream.open(kName, "rb+,ccs", true), -1);
  EXPECT_EQ(stream.open(kName, "rb", true), 0);
}

TEST_F(StreamTest, ClosedStreamRefusesAndClosesQuietly) {
  zvk_fstream stream;
  char buffer[8] = {};
  EXPECT_EQ(stream.read(buffer, 1L), -1);
  EXPECT_EQ(stream.read(buffer, 4, 1), -1);
  EXPECT_EQ(stream.write(buffer, 4, 1), -1);
  EXPECT_EQ(stream.write(buffer, 4, 0), 0);
  EXPECT_EQ(stream.gets(buffer, sizeof buffer), nullptr);
  EXPECT_EQ(stream.seekg(0, SEEK_SET), -1);
  EXPECT_EQ(stream.tellg(), -1);
  EXPECT_EQ(stream.seek_addr_alignment(), 0);
  EXPECT_TRUE(stream.eof());
  EXPECT_EQ(stream.close(), 0);
}

TEST_F(StreamTest, ThrowingFormsCloseTheStream) {
  zvk_fstream stream;
  EXPECT_EQ(status_of([&] { zvk_open(stream, "missing", kBinaryRead, false); }), QX_ERROR_FILE);
  EXPECT_EQ(status_of([&] { zvk_open(stream, "missing", "rb", false); }), QX_ERROR_FILE);
  write_file(kName, "abc");
  zvk_open(stream, kName, kBinaryRead, false);
  int value = 0;
  EXPECT_EQ(status_of([&] { zvk_read(stream, &value, 4, 1); }), QX_ERROR_FILE);
  EXPECT_FALSE(stream.is_open());
  zvk_open(stream, kName, kBinaryRead, false);
  EXPECT_EQ(status_of([&] { zvk_write(stream, &value, 4, 1); }), QX_ERROR_FILE);
  EXPECT_FALSE(stream.is_open());
  EXPECT_EQ(status_of([&] { zvk_close(stream); }), 0);
}

TEST_F(StreamTest, FullDeviceIsNoticedWhenTheStreamIsClosed) {
  const std::string small(100, 'x');
  zvk_fstream stream("/dev/full", kModeUpdate, true);
  ASSERT_TRUE(stream.is_open());
  EXPECT_EQ(stream.write(small.data(), 100L), 0);
  EXPECT_EQ(status_of([&] { zvk_close(stream); }), QX_ERROR_FILE);
  EXPECT_EQ(stream.close(), 0);
}

TEST_F(StreamTest, LostPieceOfALargeWriteIsNoticedWhenTheStreamIsClosed) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the sanitizer's notes on 2 GiB take several times as much memory";
#endif
  constexpr size_t kSize = 0x80000000;
  void* large = mmap(nullptr, kSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(large, MAP_FAILED);
  zvk_fstream stream("/dev/full", kModeUpdate, true);
  EXPECT_EQ(stream.write(large, 8, static_cast<long>(kSize / 8)), 0);
  EXPECT_EQ(stream.close(), -1);
  zvk_fstream sink("/dev/null", kModeUpdate, true);
  EXPECT_EQ(sink.write(large, 8, static_cast<long>(kSize / 8)), 0);
  EXPECT_EQ(sink.close(), 0);
  munmap(large, kSize);
}

TEST_F(StreamTest, LinesAreReadThroughTheGivenBuffer) {
  write_file(kName, "one\ntwo three\nend");
  char buffer[4096];
  zvk_fstream stream(kName, kModeRead, true);
  EXPECT_EQ(zvk_setvbuf(stream, buffer, sizeof buffer), 0);
  char line[8];
  std::vector<std::string> lines;
  while (zvk_gets(stream, line, sizeof line) != nullptr) lines.emplace_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"one\n", "two thr", "ee\n", "end"}));
  EXPECT_TRUE(stream.eof());
}

}  // namespace

}  // namespace qxe::test
