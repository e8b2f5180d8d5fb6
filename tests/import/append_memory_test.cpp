// Appends that run out of memory at any allocation.
#include "frame/base/memory.h"
#include "import/append_fixture.h"

namespace qxe::test {

namespace {

class AppendMemoryTest : public AppendTest {
 protected:
  template <class Append>
  static void fail_each_allocation(const TestTable& table, Append&& append) {
    const TableState before = state_of(table);
    int failures = 0;
    for (;; ++failures) {
      fail_allocation_after(failures, false);
      const int status = append();
      fail_allocation_after(-1, false);
      if (status >= 0) break;
      ASSERT_EQ(hex(status), hex(QX_ERROR_OUT_OF_MEMORY)) << "allocation " << failures;
      ASSERT_EQ(state_of(table), before) << "allocation " << failures;
      drain_ring();
    }
    EXPECT_GT(failures, 10);
  }
};

TEST_F(AppendMemoryTest, EachFailedAllocationLeavesTheTableAsItWas) {
  RandomData random(3);
  const TestTable table(random.table(60));
  table.add_set({5, 2});
  const Columns added = random.table(900);
  fail_each_allocation(table,
                       [&] { return append(table, 50, 900, catalog_of(added), lines_of(added)); });
  EXPECT_EQ(table.total_rows(), 949);
}

TEST_F(AppendMemoryTest, EachFailedAllocationOfABinaryFileLeavesTheTableAsItWas) {
  RandomData random(4);
  const TestTable table({{"a", ints({1, 2})}, {"s", strings({"b", "a"})}});
  write_file(directory() / "strings", one_column_file(random.column(QX_DT_STRING, 300)));
  fail_each_allocation(table, [&] {
    return RQXAppendRealFilter2(table.id(), table.filter("s"), QX_DT_STRING, -1, 300, "",
                                "strings");
  });
  EXPECT_EQ(table.total_rows(), 302);
}

}  // namespace

}  // namespace qxe::test
