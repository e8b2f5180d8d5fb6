// Imports that run out of memory at any allocation.
#include "frame/base/memory.h"
#include "import/import_fixture.h"

namespace qxe::test {

namespace {

TEST_F(ImportTest, EachFailedAllocationEndsTheImportWithoutATable) {
  std::string data;
  for (int i = 0; i < 2000; ++i) {
    const std::string number = std::to_string(i);
    data += number + "," + std::to_string(i * 1000000) + ",text " + number + "," + number + ".5\n";
  }
  const std::string catalog = "//CSV\nI\t9\ta\nI\t9\tb\nA\t9\tc\nN\t9\td\n";
  int failures = 0;
  for (;; ++failures) {
    fail_allocation_after(failures, false);
    const int id = import(catalog, data);
    fail_allocation_after(-1, false);
    if (id > 0) {
      EXPECT_EQ(rows_of(id).size(), 2000u);
      break;
    }
    ASSERT_EQ(hex(id), hex(QX_ERROR_OUT_OF_MEMORY)) << "allocation " << failures;
    ASSERT_EQ(table_count(), 0);
    drain_ring();
  }
  EXPECT_GT(failures, 20);
}

}  // namespace

}  // namespace qxe::test
