// A parent that renumbers its values while a join stands on them, as a save makes it do.
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

}  // namespace
}  // namespace qxe::test
