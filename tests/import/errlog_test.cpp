#include "import/errlog.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/engine_test.h"
#include "support/files.h"

namespace qxe::test {

namespace {

constexpr const char* kBannerEnd = "*/\n\n";

/// What the log holds behind its first banner; all of it when there is none.
std::string lines_of(const std::string& name) {
  const std::string log = read_file(name);
  const size_t end = log.find(kBannerEnd);
  return end == std::string::npos ? log : log.substr(end + 4);
}

class ErrorLogTest : public EngineTest {
 public:
  ErrorLogTest() { CErrorLog::isBegin = true; }
  ~ErrorLogTest() override { LOGOBJ.setFileName(CErrorLog::kDefaultName); }
};

// The others show in imports.
TEST_F(ErrorLogTest, RowsCountFromTheStartOfTheFile) {
  CatalogErrorInfo faults;
  faults.SetLogMsg(kErrMaxRows, 7);
  faults.SetLogMsg(kErrOutOfMemory, 7);
  faults.SetLogMsg(kErrMemory);
  faults.SetLogMsg(kErrData, "INTEGER", "12%s", 7, 3);
  faults.AllLogMsgPrint(100);
  EXPECT_EQ(lines_of("catalog_err_log.txt"),
            "MAX ROWSIZE EXCEEDED > 7 \nOUT_OF_MEMORY  ERROR \t\t @  Row = 107 \n"
            "QX_ERROR_OUT_OF_MEMORY\n"
            "DATA ERROR \t\t----->\t[INTEGER] = \"12%s\"  \t@ Row = 107 , Col = 3 \n");
}

TEST_F(ErrorLogTest, ManyLongFaultsStayInOrder) {
  CatalogErrorInfo faults;
  std::string wanted;
  for (int row = 1; row <= 50; ++row) {
    const std::string text(static_cast<size_t>(row * 80), 'x');
    faults.SetLogMsg(kErrData, "DATE", text.c_str(), row, 1);
    wanted += "DATA ERROR \t\t----->\t[DATE] = \"" + text + "\"  \t@ Row = " + std::to_string(row) +
              " , Col = 1 \n";
  }
  faults.AllLogMsgPrint(0);
  EXPECT_EQ(lines_of("catalog_err_log.txt"), wanted);
}

TEST_F(ErrorLogTest, EachSectionBeginsWithABanner) {
  LOGOBJ.setFileName("some.log");
  LogMsg("PATH  [%s] MISSING", "a");
  LogMsg("%d", 2);
  const std::string first = read_file("some.log");
  EXPECT_EQ(first.rfind("/" + std::string(83, '*'), 0), 0U) << first;
  EXPECT_NE(first.find("\n\tLogFile for QxeEngine\n\tdated : "), std::string::npos) << first;
  EXPECT_EQ(lines_of("some.log"), "PATH  [a] MISSING\n2\n");

  CErrorLog::isBegin = true;
  LogMsg("three");
  const std::string second = read_file("some.log").substr(first.size());
  EXPECT_EQ(second.rfind("/*", 0), 0U) << second;
  EXPECT_EQ(second.substr(second.size() - 10), "*/\n\nthree\n");
}

TEST_F(ErrorLogTest, UnwritableLogIsPassedOver) {
  LOGOBJ.setFileName("missing/some.log");
  LogMsg("lost");
  CatalogErrorInfo faults;
  faults.SetLogMsg(kErrMemory);
  faults.AllLogMsgPrint(0);
  LOGOBJ.setFileName("some.log");
  LogMsg("kept");
  EXPECT_EQ(lines_of("some.log"), "kept\n");
}

TEST_F(ErrorLogTest, VeryLongMessageIsCut) {
  CErrorLog::isBegin = false;
  LogMsg("%s", std::string(0x202000, 'x').c_str());
  EXPECT_EQ(read_file("catalog_err_log.txt").size(), 0x201000U);
}

TEST_F(ErrorLogTest, BatchesOfSeveralThreadsDoNotMix) {
  constexpr int kFaults = 40;
  CErrorLog::isBegin = false;
  std::vector<std::thread> threads;
  for (int thread = 1; thread <= 4; ++thread) {
    threads.emplace_back([thread] {
      CatalogErrorInfo faults;
      for (int i = 0; i < kFaults; ++i) faults.SetLogMsg(kErrMaxRows, thread);
      faults.AllLogMsgPrint(0);
    });
  }
  for (std::thread& thread : threads) thread.join();
  const std::string log = read_file("catalog_err_log.txt");
  const size_t batch = log.size() / 4;
  for (size_t start = 0; start < log.size(); start += batch) {
    const std::string line = log.substr(start, batch / kFaults);
    std::string wanted;
    for (int i = 0; i < kFaults; ++i) wanted += line;
    EXPECT_EQ(log.substr(start, batch), wanted);
  }
}

}  // namespace

}  // namespace qxe::test
