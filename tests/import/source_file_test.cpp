// Files read by blocks of whole lines.
#include "import/source_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <vector>

#include "frame/base/exception.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace qxe {
namespace {

using test::TempDir;
using test::write_file;

constexpr long kUsualBlock = 256 << 10;

/// Reads `block` bytes at once while it lives.
class SmallBlocks {
 public:
  explicit SmallBlocks(long block) { set_read_block(block); }
  ~SmallBlocks() { set_read_block(kUsualBlock); }
};

/// Lines of 0 to 99 bytes with commas and some quotes; the last may lack its end.
std::string random_text(unsigned seed, int lines) {
  std::mt19937 random(seed);
  std::string text;
  for (int i = 0; i < lines; ++i) {
    const auto size = static_cast<unsigned>(random() % 100);
    for (unsigned j = 0; j < size; ++j) text += "abc,\"\r\t,,x"[random() % 10];
    text += '\n';
  }
  if (seed % 2 == 1 && !text.empty()) text.pop_back();
  return text;
}

class LineBlocksTest : public testing::TestWithParam<long> {};

TEST_P(LineBlocksTest, AreWholeLinesOfTheRange) {
  const TempDir directory;
  const SmallBlocks small(GetParam());
  for (unsigned seed = 0; seed < 20; ++seed) {
    const std::string text = random_text(seed, 50);
    write_file(directory / "text", text);
    const SourceFile file(directory / "text");
    const auto begin = static_cast<long>(text.find('\n')) + 1;
    std::string read;
    for (LineBlocks blocks(file, begin, file.size()); blocks.next();) {
      ASSERT_LT(blocks.begin(), blocks.end());
      read.append(blocks.begin(), blocks.end());
      EXPECT_EQ(blocks.offset(), begin + static_cast<long>(read.size()));
      EXPECT_TRUE(read.back() == '\n' || blocks.offset() == file.size());
    }
    EXPECT_EQ(read, text.substr(static_cast<size_t>(begin)));
  }
}

INSTANTIATE_TEST_SUITE_P(Bytes, LineBlocksTest, testing::Values(1, 7, 64, 1000, kUsualBlock));

TEST(SourceFileTest, LinesAreCountedAcrossBlocks) {
  const TempDir directory;
  const SmallBlocks small(16);
  write_file(directory / "text", "a\n\nbc\n" + std::string(100, 'x') + "\nlast");
  const SourceFile file(directory / "text");
  const std::vector<long> wanted = {0, 2, 3, 6, 107, 111, 111};
  for (size_t lines = 0; lines < wanted.size(); ++lines) {
    EXPECT_EQ(file.behind_lines(0, file.size(), static_cast<long>(lines)), wanted[lines]) << lines;
  }
  EXPECT_EQ(file.behind_lines(3, 5, 1), 5);
}

TEST(SourceFileTest, AFileThatHasBecomeShorterIsAFault) {
  const TempDir directory;
  write_file(directory / "text", "one\ntwo\nthree\n");
  const SourceFile file(directory / "text");
  std::filesystem::resize_file(directory / "text", 5);
  LineBlocks blocks(file, 0, file.size());
  try {
    blocks.next();
    FAIL() << "lines were read that are no more";
  } catch (const CQXException& failure) {
    EXPECT_EQ(failure.ErrorCode(), QX_ERROR_FILE);
  }
}

}  // namespace
}  // namespace qxe
