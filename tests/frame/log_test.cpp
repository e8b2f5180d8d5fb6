#include "frame/base/log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "parallel/smpengine.h"
#include "support/engine_test.h"
#include "support/files.h"

namespace qxe::test {

namespace {

int count(const std::string& text, const std::string& part) {
  int found = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

bool ends_with(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

class LogTest : public EngineTest {
 public:
  LogTest() {
    isLogFirst = true;
    Log_message(nullptr, "%s", "");
  }

  ~LogTest() override { innerQXLogInit(0, nullptr); }
};

TEST_F(LogTest, EngineLogBeginsWithAHeaderAndGrows) {
  ASSERT_NE(ENG, nullptr);
  const std::string path = ENG->archive_log_file();
  write_file(path, "left over");
  innerQXLogInit(3, "elsewhere.log");
  LOG_Create("first %d", 1);
  LOG_Create("second %s", std::string(600, 'x').c_str());
  const std::string log = read_file(path);
  std::filesystem::remove(path);
  EXPECT_EQ(log.rfind("/*", 0), 0U) << log;
  EXPECT_EQ(count(log, "LogFile for QxeEngine"), 1);
  EXPECT_EQ(count(log, "dated : "), 1);
  EXPECT_TRUE(ends_with(log, "*/\n\nfirst 1\nsecond " + std::string(499 - 7, 'x') + "\n")) << log;
  EXPECT_FALSE(std::filesystem::exists("elsewhere.log"));
}

TEST_F(LogTest, OptionChoosesWhereTheLineGoes) {
  struct {
    int option;
    const char* out;
    const char* err;
  } const cases[] = {
      {0, "", ""}, {1, "line 5\n", ""}, {2, "", "line 5\n"}, {4, "", ""}, {-1, "", ""}};
  for (const auto& wanted : cases) {
    EXPECT_EQ(innerQXLogInit(wanted.option, nullptr), 0);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    LOG_Create("line %d", 5);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), wanted.out) << wanted.option;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), wanted.err) << wanted.option;
  }
  EXPECT_TRUE(isLogFirst);
}

TEST_F(LogTest, LogInitKeepsTheOptionAndWithOptionThreeThePath) {
  innerQXLogInit(3, "a.log");
  EXPECT_EQ(logFile, directory().path() + "//a.log");
  innerQXLogInit(3, "/tmp//b.log");
  EXPECT_STREQ(logFile, "/tmp//b.log");
  innerQXLogInit(3, nullptr);
  innerQXLogInit(17, "c.log");
  EXPECT_STREQ(logFile, "/tmp//b.log");
  EXPECT_EQ(gLogOutOption, 17);
  innerQXLogInit(3, std::string(600, 'd').c_str());
  EXPECT_EQ(std::string(logFile).size(), sizeof logFile - 1);
}

TEST_F(LogTest, MessagesGoToANewFileAndThenBehindEachOther) {
  write_file("some.log", "left over\n");
  Log_message("some.log", "one %d", 1);
  Log_message("", "nowhere");
  Log_message("some.log", "%s", std::string(5000, 'x').c_str());
  std::string log = read_file("some.log");
  EXPECT_EQ(log.find("left over"), std::string::npos);
  EXPECT_EQ(count(log, "ErrorLog  some.log  \n"), 1);
  EXPECT_TRUE(ends_with(log, "one 1\n" + std::string(4351, 'x') + "\n"));

  Log_message(nullptr, "begin again");
  Log_message("some.log", "two");
  log = read_file("some.log");
  EXPECT_EQ(count(log, "one 1"), 0);
  EXPECT_TRUE(ends_with(log, "two\n"));
}

TEST_F(LogTest, MessageToAnUnwritableFileIsDropped) {
  Log_message("missing/some.log", "lost");
  Log_message("some.log", "kept");
  const std::string log = read_file("some.log");
  EXPECT_EQ(count(log, "ErrorLog  some.log"), 1);
  EXPECT_TRUE(ends_with(log, "kept\n"));
}

}  // namespace

}  // namespace qxe::test
