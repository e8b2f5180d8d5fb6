// The ring of the last eight failures, and who reports into it.
#include <algorithm>

#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class RingTest : public EngineTest {
 protected:
  /// A failure that leaves one entry, with `mark` in its text.
  static void fail_once(int mark) {
    int id = 0;
    RQXGetSet(1, 1, &id, -mark, &id);
  }
};

TEST_F(RingTest, LeavesTheOutputsAloneWhenEmpty) {
  int time = 7;
  int code = 7;
  char call[63] = "call";
  char message[127] = "message";
  EXPECT_EQ(RQXGetErrorLog(&time, call, &code, message), 0);
  char* call_at = call;
  char* message_at = message;
  EXPECT_EQ(QXGetErrorLog(&time, &call_at, &code, &message_at), 0);
  EXPECT_EQ(time, 7);
  EXPECT_EQ(code, 7);
  EXPECT_STREQ(call, "call");
  EXPECT_STREQ(message, "message");
}

TEST_F(RingTest, GivesTheOldestEntryFirst) {
  fail_once(1);
  fail_once(2);
  int time = -1;
  int code = 0;
  char call[63] = "";
  char message[127] = "";
  char* call_at = call;
  char* message_at = message;
  EXPECT_EQ(QXGetErrorLog(&time, &call_at, &code, &message_at), 1);
  EXPECT_EQ(code, QX_ERROR_PARAMETER);
  EXPECT_GE(time, 0);
  EXPECT_STREQ(call, "QXGetSet");
  EXPECT_STREQ(message, "Illegal Buffer size: -1");
  EXPECT_EQ(RQXGetErrorLog(&time, call, &code, message), 1);
  EXPECT_STREQ(message, "Illegal Buffer size: -2");
  EXPECT_EQ(RQXGetErrorLog(&time, call, &code, message), 0);
}

TEST_F(RingTest, KeepsTheLastEight) {
  for (int i = 1; i <= 9; ++i) fail_once(i);
  const std::vector<RingEntry> entries = ring();
  ASSERT_EQ(entries.size(), 8U);
  EXPECT_EQ(entries.front().message, "Illegal Buffer size: -2");
  EXPECT_EQ(entries.back().message, "Illegal Buffer size: -9");
}

TEST_F(RingTest, CutsLongTexts) {
  const TestTable table({{"a", ints({1})}});
  RQXSetFilterName(table.id(), 1, std::string(300, 'n').c_str());
  size_t longest = 0;
  for (const RingEntry& entry : ring()) longest = std::max(longest, entry.message.size());
  EXPECT_EQ(longest, 126U);
}

TEST_F(RingTest, NamesTheLayerOfASerialCall) {
  RQXGetTotalRows(99);
  const std::vector<RingEntry> entries = ring();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].call, "GetTable");
  EXPECT_EQ(entries[1].call, "QXGetTotalRows");
  EXPECT_EQ(entries[1].code, QX_ERROR_NO_TABLE);
}

TEST_F(RingTest, NamesTheExportedCallOfAParallelOne) {
  RQXSortByField(99, 1, 1, 0);
  RQXSearchByFieldNValues(99, 1, 1, 0, nullptr);
  RQXExportAsTAB(99, 1, nullptr, 1, 1, "", "f", '/');
  RQXSaveAsCatalog(99, 1, nullptr, 0, 1, 1, '/', "", "f");
  std::vector<std::string> calls;
  for (const RingEntry& entry : ring()) {
    if (entry.call != "GetTable") calls.push_back(entry.call);
  }
  EXPECT_EQ(calls, (std::vector<std::string>{"RQXSortByField", "RQXSearchByFieldNValues",
                                             "RQXExportAsTAB", "RQXSaveAsCatalog"}));
}

TEST_F(RingTest, GetsASecondEntryFromARaisingCall) {
  EXPECT_EQ(RQXPurgeSubsets(99), QX_ERROR_NO_TABLE);
  const std::vector<RingEntry> entries = ring();
  ASSERT_GE(entries.size(), 2U);
  EXPECT_EQ(entries.back().call, "RQXPurgeSubsets");
  EXPECT_EQ(entries.back().code, QX_ERROR_NO_TABLE);
  EXPECT_EQ(entries.back().message, "");
  QXPurgeSubsets(99);
  EXPECT_EQ(ring().back().call, "QXPurgeSubsets");
}

}  // namespace
}  // namespace qxe::test
