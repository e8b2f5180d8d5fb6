// Exports of rows whose values wait in a filter's tail.
#include <gtest/gtest.h>

#include "parallel/smpengine.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"
#include "tables/table_collection.h"

namespace qxe::test {
namespace {

class PendingExportTest : public EngineTest {};

TEST_F(PendingExportTest, PendingValuesAreWrittenLikeMergedOnes) {
  constexpr int kRows = 200;
  constexpr int kChanged = 20;  // from the first row on
  RandomData random(11);
  const TestTable table(random.table(kRows), "pending");
  const Columns news = random.table(kChanged);
  TBaseTable& inner = *ENG->collection()->find(table.id());
  for (const NamedColumn& column : news) {
    RawValues values(column.column);
    TFilter* const filter = inner.GetFilter(table.filter(column.name));
    ASSERT_EQ(filter->UseTVL(0, kChanged, values.data(), false, false, nullptr, *inner.GetSet(-1)),
              1);
    ASSERT_GT(filter->pending(), 0) << column.name;
  }
  const int all = -1;
  ASSERT_EQ(RQXExportAsCSV(table.id(), -1, &all, -1, -1, "", "pending.csv", '/'), 0);
  for (const NamedColumn& column : news) {
    inner.GetFilter(table.filter(column.name))->MergeTVL(false);
  }
  ASSERT_EQ(RQXExportAsCSV(table.id(), -1, &all, -1, -1, "", "merged.csv", '/'), 0);
  EXPECT_EQ(read_file(directory() / "pending.csv"), read_file(directory() / "merged.csv"));
}

}  // namespace
}  // namespace qxe::test
