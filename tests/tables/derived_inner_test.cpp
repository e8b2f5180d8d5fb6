// Derived tables from inside: the task object's forms, pending values, value lists that belong to
// another table.
#include "frame/api/dbtask.h"
#include "parallel/smpengine.h"
#include "storage/setarray.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/test_table.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe::test {
namespace {

using Texts = std::vector<std::string>;

TRealTable& inner_table(const TestTable& table) {
  return static_cast<TRealTable&>(*ENG->collection()->find(table.id()));
}

class TaskFormTest : public EngineTest {
 protected:
  TaskFormTest() : table_(RandomData(5).table(150), "t") { table_.add_set({7, 3, 150, 3}); }

  /// Both must be tables of equal content; the second one's name ends in "_#1".
  static void expect_same(int serial, int parallel) {
    ASSERT_GT(serial, 0) << to_text(drain_ring());
    ASSERT_GT(parallel, 0) << to_text(drain_ring());
    const std::string text = table_text(serial);
    const std::string other = table_text(parallel);
    EXPECT_EQ(other.substr(other.find('\n')), text.substr(text.find('\n')));
  }

  const TestTable table_;
};

TEST_F(TaskFormTest, MakesTheSameTables) {
  int all[] = {1, 2, 3, 4, 5, 6, 7, 0};
  const CombineIds first{table_.id(), 2, all};
  const CombineIds second{table_.id(), 1, all};
  char name[] = "n";
  expect_same(RQXDuplicateRealTable(name, table_.id()),
              DBTASK()->DuplicateRealTable(name, table_.id()));
  expect_same(RQXExtractRealTable(name, table_.id(), 2, all),
              DBTASK()->ExtractRealTable(name, table_.id(), 2, all));
  expect_same(RQXExtractRealTableEx(name, table_.id(), 2, 1, 1, nullptr),
              DBTASK()->ExtractRealTableEx(name, table_.id(), 2, {nullptr, true, true}));
  expect_same(RQXCombineRealTable(name, table_.id(), 2, all, table_.id(), 1, all),
              DBTASK()->CombineRealTable(name, first, second));
  expect_same(RQXCombineRealTableEx(name, 1, 1, table_.id(), 2, all, table_.id(), 1, all),
              DBTASK()->CombineRealTableEx(name, {true, true}, first, second));
  EXPECT_EQ(RQXDupRealFilterEx(table_.id(), 1, QX_DT_STRING), 8);
  EXPECT_EQ(DBTASK()->DupRealFilterEx(table_.id(), 1, QX_DT_STRING), 9);
  EXPECT_EQ(table_.texts("int_#1"), table_.texts("int_#2"));
}

TEST_F(TaskFormTest, FailuresTellWhichFormFailed) {
  drain_ring();
  DBTASK()->ExtractRealTable("n", table_.id(), 9, nullptr);
  const std::vector<RingEntry> entries = drain_ring();
  ASSERT_FALSE(entries.empty());
  EXPECT_EQ(entries.back().call, "RQXExtractRealTable");
}

/// A table whose filter has values that wait in the tail.
class PendingTest : public EngineTest {
 protected:
  PendingTest() : table_({{"a", ints(std::vector<int>(200, 5))}}, "t") {
    TRealTable& table = inner_table(table_);
    TSetArray rows(2, false);
    rows.PutInt(0, 10);
    rows.PutInt(1, 20);
    int values[] = {9, 1};
    EXPECT_EQ(table.GetFilter(1)->UseTVL(0, 2, values, false, true, &table, rows), 1);
    EXPECT_EQ(table.GetFilter(1)->pending(), 2);
  }

  static void expect_values(int table, const std::string& name) {
    ASSERT_GT(table, 0) << to_text(drain_ring());
    const TestTable reader = TestTable::existing(table);
    EXPECT_EQ(reader.text(name, 10), "9");
    EXPECT_EQ(reader.text(name, 20), "1");
    EXPECT_EQ(reader.text(name, 30), "5");
  }

  const TestTable table_;
};

TEST_F(PendingTest, ComesAlongWithADuplicate) {
  expect_values(RQXDuplicateRealTable("n", table_.id()), "a");
}
TEST_F(PendingTest, ComesAlongWithAnExtract) {
  expect_values(RQXExtractRealTable("n", table_.id(), 1, nullptr), "a");
}
TEST_F(PendingTest, ComesAlongWithACombination) {
  int list[] = {1, 0};
  expect_values(QXCombineRealTable(nullptr, table_.id(), 1, list, table_.id(), 1, list), "a");
}
TEST_F(PendingTest, ComesAlongWithAListOfTables) {
  int tables[] = {table_.id(), 0};
  int sets[] = {1};
  int filters[] = {1};
  char name[] = "n";
  expect_values(RQXCombineTableList(name, tables, sets, filters, nullptr, nullptr, nullptr), "a");
}
TEST_F(PendingTest, ComesAlongWithCopiesOfTheFilter) {
  EXPECT_EQ(RQXDupRealFilter(table_.id(), 1), 2);
  expect_values(table_.id(), "a_#1");
}
TEST_F(PendingTest, IsConverted) {
  EXPECT_EQ(RQXDupRealFilterEx(table_.id(), 1, QX_DT_STRING), 2);
  expect_values(table_.id(), "a_#1");
}
TEST_F(PendingTest, StaysWhenTheTableIsCondensed) {
  EXPECT_EQ(inner_table(table_).CondenseFilter(1), 0);
  expect_values(table_.id(), "a");
  EXPECT_EQ(inner_table(table_).CondenseFilter(2), QX_ERROR_NO_FILTER);
}

TEST_F(PendingTest, SortedSetsOutliveTheCondensing) {
  TRealTable& table = inner_table(table_);
  table.CheckMergeFilterTVL(true);
  int five = 5;
  ASSERT_EQ(table.FillEx(1, 1, 20, 1, &five), 1);  // no row has the value 1 any more
  TFilter& filter = *table.GetFilter(1);
  auto* const sorted = new TSortedSetArray;  // the set owns it
  sorted->initialize(table.GetSet(1), &filter);
  sorted->Reclaim();
  ASSERT_EQ(RQXCondenseRealTable(table.id()), 0);
  EXPECT_EQ(filter.VL->FArraySize, 3);
  EXPECT_EQ(sorted->FArraySize, 200);
}

/// A second table whose filter reads the first one's value list.
class BorrowedTest : public EngineTest {
 protected:
  BorrowedTest()
      : lender_({{"a", strings({"x", "y", "z"})}}, "lender"),
        borrower_({{"b", strings({"x", "y", "x"})}}, "borrower") {
    TFilter& filter = *inner_table(borrower_).GetFilter(1);
    delete filter.VL;
    filter.VL = inner_table(lender_).GetFilter(1)->VL;
    filter.FVLBorrowed = true;
    filter.Taint();
  }

  const TestTable lender_;
  const TestTable borrower_;
};

TEST_F(BorrowedTest, TheLenderIsNotCondensed) {
  EXPECT_FALSE(ENG->collection()->IsEditable(lender_.id()));
  expect_failure_logged_as(RQXCondenseRealTable(lender_.id()), QX_ERROR_REFERRED, QX_ERROR_NO_TABLE,
                           "Not Editable");
  expect_failure_logged_as(QXCondenseRealTable(lender_.id()), QX_ERROR_REFERRED, QX_ERROR_NO_TABLE,
                           "Not Editable");
  EXPECT_GT(RQXDupRealFilter(lender_.id(), 1), 0);
}

TEST_F(BorrowedTest, ACondensedBorrowerHasAListOfItsOwn) {
  EXPECT_EQ(RQXCondenseRealTable(borrower_.id()), 0);
  EXPECT_EQ(borrower_.texts("b"), (Texts{"x", "y", "x"}));
  EXPECT_EQ(inner_table(borrower_).GetFilter(1)->VL->FArraySize, 3);
  EXPECT_EQ(lender_.texts("a"), (Texts{"x", "y", "z"}));
  EXPECT_TRUE(ENG->collection()->IsEditable(lender_.id()));
  EXPECT_EQ(RQXDeleteTable(lender_.id()), 0);
  EXPECT_EQ(borrower_.texts("b"), (Texts{"x", "y", "x"}));
}

TEST_F(BorrowedTest, DerivedTablesDependOnNothing) {
  int list[] = {1, 0};
  const TestTable copies[] = {
      TestTable::existing(RQXDuplicateRealTable("n", borrower_.id())),
      TestTable::existing(RQXExtractRealTable("n", borrower_.id(), 1, nullptr)),
      TestTable::existing(
          QXCombineRealTable(nullptr, borrower_.id(), 1, list, lender_.id(), 1, list))};
  RQXDeleteTable(borrower_.id());
  EXPECT_EQ(RQXDeleteTable(lender_.id()), 0);
  for (const TestTable& copy : copies) {
    EXPECT_EQ(copy.text("b", 1) + copy.text("b", 2) + copy.text("b", 3), "xyx");
  }
}

}  // namespace
}  // namespace qxe::test
