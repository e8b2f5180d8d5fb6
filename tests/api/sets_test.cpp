// Sets: rows, ids, the current set, names and attribute blocks.
#include <string.h>

#include <algorithm>
#include <array>
#include <numeric>

#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class SetsTest : public EngineTest {
 protected:
  std::vector<int> ids() const {
    std::vector<int> list(10001);
    const int count = RQXGetSetList(table_.id(), 10001, list.data());
    list.resize(static_cast<size_t>(count));
    return list;
  }

  const TestTable table_{{{"a", ints({5, 4, 3, 2, 1})}}, "table"};
  const int id_ = table_.id();
};

TEST_F(SetsTest, BeginWithTheRootSet) {
  EXPECT_EQ(ids(), (std::vector<int>{1}));
  EXPECT_EQ(RQXGetCurrentSetID(id_), 1);
  EXPECT_EQ(RQXGetTotalRows(id_), 5);
  EXPECT_EQ(table_.rows(1), (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST_F(SetsTest, KeepRowsInTheirOrderAndLeaveTheCallersAlone) {
  std::vector<int> rows = {4, 1, 4};
  const int set = RQXAddSetReal(id_, 3, rows.data());
  EXPECT_EQ(set, 2);
  EXPECT_EQ(rows, (std::vector<int>{4, 1, 4}));
  rows[0] = 5;
  EXPECT_EQ(table_.rows(set), (std::vector<int>{4, 1, 4}));
  EXPECT_EQ(RQXGetCurrentSetID(id_), set);
  EXPECT_EQ(RQXGetSetSize(id_, -1), 3);
  int* live = nullptr;
  EXPECT_EQ(QXGetSet(id_, set, &live), 3);
  EXPECT_EQ(std::vector<int>(live, live + 3), (std::vector<int>{4, 1, 4}));
}

TEST_F(SetsTest, MayBeEmpty) {
  const int set = RQXAddSetReal(id_, 0, nullptr);
  int count = 7;
  EXPECT_EQ(RQXGetSet(id_, set, &count, 0, nullptr), 0);
  EXPECT_EQ(count, 0);
}

TEST_F(SetsTest, TellTheirSizeToAShortBuffer) {
  std::array<int, 3> rows = {7, 7, 7};
  int count = 0;
  EXPECT_EQ(RQXGetSet(id_, 1, &count, 2, rows.data()), 5);
  EXPECT_EQ(count, 5);
  EXPECT_EQ(rows, (std::array<int, 3>{1, 2, 7}));
  table_.add_set({1});
  EXPECT_EQ(RQXGetSetIDList(id_, 1, rows.data()), 2);
  EXPECT_EQ(rows, (std::array<int, 3>{1, 2, 7}));
}

TEST_F(SetsTest, AreDeletedWithoutGivingTheirIdsBack) {
  table_.add_set({1});
  const int current = table_.add_set({2});
  EXPECT_EQ(RQXDeleteSet(id_, -1), 0);
  EXPECT_EQ(RQXGetCurrentSetID(id_), 1);
  EXPECT_EQ(ids(), (std::vector<int>{1, 2}));
  EXPECT_EQ(table_.add_set({3}), current + 1);
  EXPECT_EQ(RQXPurgeSubsets(id_), 0);
  EXPECT_EQ(ids(), (std::vector<int>{1}));
  EXPECT_EQ(table_.add_set({3}), current + 2);
  expect_failure(RQXDeleteSet(id_, 1), QX_ERROR_ROOT_SET, "Root set cannot be deleted");
}

TEST_F(SetsTest, GetTheIdThatWasAskedFor) {
  table_.add_set({1});
  EXPECT_EQ(RQXResetSetID(id_, 10), 0);
  EXPECT_EQ(table_.add_set({1}), 10);
  RQXDeleteSet(id_, 10);
  EXPECT_EQ(RQXResetSetID(id_, 3), 0);
  EXPECT_EQ(table_.add_set({1}), 3);
  expect_failure(RQXResetSetID(id_, 3), QX_ERROR_NO_SET_ID, "return of inner call");
  expect_failure(RQXResetSetID(id_, 0), QX_ERROR_NO_SET_ID, "return of inner call");
}

TEST_F(SetsTest, BecomeCurrentOnRequest) {
  const int set = table_.add_set({1});
  EXPECT_EQ(RQXChangeCurrentSetID(id_, 1), 0);
  EXPECT_EQ(RQXGetCurrentSetID(id_), 1);
  EXPECT_EQ(QXChangeCurrentSetID(id_, set), 0);
  EXPECT_EQ(RQXChangeCurrentSetID(id_, -1), 0);
  EXPECT_EQ(QXGetCurrentSetID(id_), set);
  expect_failure(RQXChangeCurrentSetID(id_, 99), QX_ERROR_NO_SET_ID, "No Such Set: 99");
  EXPECT_EQ(QXGetCurrentSetID(id_), set);
}

TEST_F(SetsTest, NumberTenThousandAtMost) {
  for (int i = 2; i <= 10000; ++i) table_.add_set({1});
  int row = 1;
  expect_failure(RQXAddSetReal(id_, 1, &row), QX_ERROR_SET_COUNT, "SetCount overflow");
  EXPECT_EQ(RQXGetNSet(id_), 10000);
}

TEST_F(SetsTest, CarryANameCutToItsBuffer) {
  const int set = table_.add_set({1});
  char name[256] = "before";
  EXPECT_EQ(RQXGetSetName(id_, set, name), 0);
  EXPECT_STREQ(name, "");
  EXPECT_STREQ(RQXGetSetNameR1(id_, set), "table");
  EXPECT_EQ(RQXSetSetName(id_, set, "adults, 18+"), 0);
  EXPECT_STREQ(RQXGetSetNameR1(id_, set), "adults, 18+");
  EXPECT_STREQ(RQXGetSetNameR1(id_, 99), "table");
  EXPECT_STREQ(RQXGetSetNameR1(99, set), "");
  EXPECT_EQ(QXSetSetName(id_, set, std::string(300, 'x').c_str()), 0);
  EXPECT_EQ(QXGetSetName(id_, set, name), 0);
  EXPECT_EQ(std::string(name), std::string(255, 'x'));
}

TEST_F(SetsTest, CarryAnAttributeBlock) {
  const int set = table_.add_set({1});
  std::array<unsigned char, 64> written;
  std::iota(written.begin(), written.end(), static_cast<unsigned char>(100));
  EXPECT_EQ(RQXSetSubsetAttr(id_, set, written.data()), 0);
  std::array<unsigned char, 64> read = {};
  EXPECT_EQ(RQXGetSubsetAttr(id_, set, read.data()), 0);
  EXPECT_EQ(read, written);
  void* live = nullptr;
  EXPECT_EQ(QXGetSubsetAttr(id_, set, &live), 0);
  EXPECT_EQ(memcmp(live, written.data(), written.size()), 0);
}

}  // namespace
}  // namespace qxe::test
