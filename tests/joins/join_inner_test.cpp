// A parent that renumbers its values while a join stands on them, as a save makes it do; what a
// join makes at first need, when there is no memory for it.
#include "frame/base/memory.h"
#include "parallel/smpengine.h"
#include "support/engine_test.h"
#include "support/test_table.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe::test {
namespace {

class RenumberedParentTest : public EngineTest {};

TEST_F(RenumberedParentTest, LeavesTheJoinAsItIs) {
  const TestTable master(
      {{"key", strings({"x", "a", "c", "b", "c"})}, {"no", ints({1, 2, 3, 4, 5})}});
  const TestTable slave({{"key", strings({"y", "c", "b", "d"})}});
  RQXDeleteRealRows(master.id(), 1, 1);  // leaves a value that no row has
  RQXDeleteRealRows(slave.id(), 1, 1);
  int keys[] = {1, 0};
  char name[] = "join";
  const int join =
      require(RQXAddJoinTable(name, 0, master.id(), -1, keys, slave.id(), -1, keys), "AddJoin");
  for (const TestTable& parent : {master, slave}) {
    auto& table = static_cast<TRealTable&>(*ENG->collection()->GetTable(parent.id()));
    ASSERT_EQ(table.CondenseTable(), 0);
  }
  const TestTable reader = TestTable::existing(join);
  EXPECT_EQ(reader.texts("no"), (std::vector<std::string>{"3", "4", "5"}));
  EXPECT_EQ(reader.texts("key_#1"), (std::vector<std::string>{"c", "b", "c"}));
  const int sorted = reader.sort("key_#1");
  EXPECT_EQ(reader.texts("no", sorted), (std::vector<std::string>{"4", "3", "5"}));
}

class LateArraysTest : public EngineTest {
 protected:
  /// `ask(join)` of new joins: each allocation fails in turn, then none, and the join stays as it
  /// is.
  template <class Ask>
  static void walk_failures(Ask&& ask) {
    const TestTable master({{"key", ints({3, 1, kNullInt, 2})}, {"no", ints({1, 2, 3, 4})}});
    const TestTable slave({{"key", ints({2, 1, 4, kNullInt})}, {"no", ints({1, 2, 3, 4})}});
    const std::vector<std::string> pairs = {"2", "3", "4"};
    bool failed = true;
    for (int passed = 0; failed; ++passed) {
      int keys[] = {1, 0};
      char name[] = "join";
      const int join =
          require(RQXAddJoinTable(name, 0, master.id(), -1, keys, slave.id(), -1, keys), "AddJoin");
      fail_allocation_after(passed, false);
      failed = ask(join) < 0;
      fail_allocation_after(-1, false);
      EXPECT_EQ(TestTable::existing(join).texts("no"), pairs) << "allocation " << passed;
      EXPECT_GE(ask(join), 0);
      EXPECT_EQ(TestTable::existing(join).texts("no"), pairs);
      EXPECT_EQ(RQXDeleteTable(join), 0);
    }
  }
};

TEST_F(LateArraysTest, AreMadeOrNot) {
  walk_failures([](int join) {
    _TFilterInfo key{};
    return QXGetJoinKey(join, QX_JOIN_SLAVE, &key);
  });
  walk_failures([](int join) {
    int counts[2] = {};
    int* starts[2] = {};
    return QXGetJoinProjectionSets(join, 1, &counts[0], &starts[0], &counts[1], &starts[1]);
  });
}

}  // namespace
}  // namespace qxe::test
