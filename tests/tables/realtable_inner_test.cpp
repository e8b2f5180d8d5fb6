// Tables from inside: value lists that another table borrows, tables that may not be edited, values
// of another scale, sorted sets, edits that fail while values wait.
#include <functional>

#include "frame/api/dbtask.h"
#include "frame/base/memory.h"
#include "parallel/smpengine.h"
#include "storage/setarray.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe::test {
namespace {

using Texts = std::vector<std::string>;

TRealTable& inner(const TestTable& table) {
  return static_cast<TRealTable&>(*ENG->collection()->find(table.id()));
}

int number = 5;
char* text = nullptr;

const std::function<int(int table)> kEdits[] = {
    [](int table) { return RQXInsertRealRows(table, 1, 1); },
    [](int table) { return RQXDeleteRealRows(table, 1, 1); },
    [](int table) { return RQXDeleteRealRowsEx(table, 1, 1, 1); },
    [](int table) { return RQXOverwriteRealEx(table, 1, 1, 1, 1, &number); },
    [](int table) { return QXOverwriteRealEx(table, 1, 1, 1, 1, &number); },
    [](int table) { return RQXOverwriteRealExStr(table, 1, 1, 1, 1, &text); },
    [](int table) { return RQXOverwriteRealExIntR1(table, 1, 1, 1, number); },
    [](int table) { return RQXFillRealEx(table, 1, 1, 1, 1, &number); },
    [](int table) { return RQXFillRealExIntR1(table, 1, 1, 1, 1, number); },
    [](int table) { return RQXCondenseRealTable(table); },
    [](int table) { return QXCondenseRealTable(table); },
};

using EditTest = EngineTest;

/// A second table whose filter reads the first one's value list.
class BorrowedTest : public EngineTest {
 protected:
  BorrowedTest() {
    TFilter& filter = *inner(borrower_).GetFilter(1);
    delete filter.VL;
    filter.VL = inner(lender_).GetFilter(1)->VL;
    filter.FVLBorrowed = true;
  }

  const TestTable lender_{{{"a", ints({1, 2, 3})}}, "lender"};
  // Long enough for values to wait, if the list were its own.
  const TestTable borrower_{{{"b", ints(std::vector<int>(150, 1))}}, "borrower"};
};

TEST_F(BorrowedTest, TheLenderIsNotEdited) {
  EXPECT_FALSE(ENG->collection()->IsEditable(lender_.id()));
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  for (const auto& edit : kEdits) {
    expect_failure_logged_as(edit(lender_.id()), QX_ERROR_REFERRED, QX_ERROR_NO_TABLE,
                             "Not Editable");
  }
  EXPECT_EQ(database_text(), before);
  EXPECT_GT(RQXDupRealFilter(lender_.id(), 1), 0);
}

TEST_F(BorrowedTest, AnEditedOrCondensedBorrowerHasAListOfItsOwn) {
  for (const auto& edit : {kEdits[6], kEdits[9]}) {
    EXPECT_GE(edit(borrower_.id()), 0);
    EXPECT_EQ(lender_.texts("a"), (Texts{"1", "2", "3"}));
  }
  EXPECT_EQ(borrower_.text("b", 1) + borrower_.text("b", 2), "51");
  EXPECT_TRUE(ENG->collection()->IsEditable(lender_.id()));
  EXPECT_EQ(RQXDeleteTable(lender_.id()), 0);
  EXPECT_EQ(borrower_.text("b", 1) + borrower_.text("b", 2), "51");
}

TEST_F(BorrowedTest, DerivedTablesDependOnNothing) {
  int list[] = {1, 0};
  const int copies[] = {
      RQXDuplicateRealTable("n", borrower_.id()),
      RQXExtractRealTable("n", borrower_.id(), 1, nullptr),
      QXCombineRealTable(nullptr, borrower_.id(), 1, list, borrower_.id(), 1, list)};
  RQXDeleteTable(borrower_.id());
  EXPECT_EQ(RQXDeleteTable(lender_.id()), 0);
  for (const int copy : copies) EXPECT_EQ(TestTable::existing(copy).text("b", 2), "1");
}

class SharedTable : public TRealTable {
 public:
  using TRealTable::TRealTable;
  bool isQXTShared() const override { return true; }
};

TEST_F(EditTest, ATableInSharedMemoryIsRefused) {
  TTableCollection& collection = *ENG->collection();
  const int id =
      collection.adopt_table(std::make_unique<SharedTable>(collection.issue_table_id(), "s", 2));
  for (size_t i = 0; i < 9; ++i) {
    expect_failure(kEdits[i](id), QX_ERROR_SHARED_READ_ONLY,
                   "Invalid Shared memory read Oparation");
  }
  EXPECT_EQ(RQXGetTotalRows(id), 2);
}

TEST_F(EditTest, ValuesOfAnotherScaleAreChangedAsTheFilterRounds) {
  const TestTable table({{"n", decimals(2, {"1.00", "2.00", "3.00"})}, {"i", ints({1, 2, 3})}});
  const auto overwrite = [&](int filter, int set, const Numeric& first, int scale) {
    const Numeric values[] = {first, to_numeric({})};
    return inner(table).OverWriteExNumeric(filter, set, 1, 2, values, scale, QX_ROUND_DOWN);
  };
  EXPECT_EQ(overwrite(1, 1, to_numeric(decimal(0, "7")), 0), 2);
  EXPECT_EQ(table.text("n", 1), "7.00");
  EXPECT_EQ(overwrite(1, 1, to_numeric(decimal(3, "7.125")), 3), 2);
  EXPECT_EQ(table.texts("n"), (Texts{"7.13", "NULL", "3.00"}));
  const std::string before = database_text();
  expect_failure(overwrite(1, 1, to_numeric(decimal(0, std::string(38, '9'))), 0),
                 QX_ERROR_DATA_SIZE, "Invalid Parameter : scale(0)");
  expect_failure(overwrite(1, 1, {}, 39), QX_ERROR_PARAMETER, "Invalid Parameter : scale(39)");
  expect_failure(overwrite(2, 1, {}, 0), QX_ERROR_TYPE_MISMATCH, "Illegal data type");
  expect_failure(overwrite(9, 1, {}, 0), QX_ERROR_NO_FILTER);
  expect_failure(overwrite(1, 9, {}, 0), QX_ERROR_NO_SET_ID);
  EXPECT_EQ(database_text(), before);
}

TEST_F(EditTest, MakesTheTablesThatTheSerialLayerMakes) {
  const TestTable table(RandomData(5).table(150), "t");
  const int id = table.id();
  const int set = table.add_set({7, 3, 150, 3});
  int all[] = {1, 2, 3, 4, 5, 6, 7, 0};
  const CombineIds first{id, set, all};
  const CombineIds second{id, 1, all};
  char name[] = "n";
  const std::pair<int, int> tables[] = {
      {RQXDuplicateRealTable(name, id), DBTASK()->DuplicateRealTable(name, id)},
      {RQXExtractRealTable(name, id, set, all), DBTASK()->ExtractRealTable(name, id, set, all)},
      {RQXExtractRealTableEx(name, id, set, 1, 1, nullptr),
       DBTASK()->ExtractRealTableEx(name, id, set, {nullptr, true, true})},
      {RQXCombineRealTable(name, id, set, all, id, 1, all),
       DBTASK()->CombineRealTable(name, first, second)},
      {RQXCombineRealTableEx(name, 1, 1, id, set, all, id, 1, all),
       DBTASK()->CombineRealTableEx(name, {true, true}, first, second)}};
  for (const auto& [serial, parallel] : tables) {  // but for the name in the first line
    const std::string wanted = table_text(require(serial, "serial"));
    const std::string text_made = table_text(require(parallel, "parallel"));
    EXPECT_EQ(text_made.substr(text_made.find('\n')), wanted.substr(wanted.find('\n')));
  }
  EXPECT_EQ(RQXDupRealFilterEx(id, 1, QX_DT_STRING), 8);
  EXPECT_EQ(DBTASK()->DupRealFilterEx(id, 1, QX_DT_STRING), 9);
  EXPECT_EQ(table.texts("int_#1"), table.texts("int_#2"));
  EXPECT_EQ(inner(table).CondenseFilter(1), 0);
  EXPECT_EQ(inner(table).CondenseFilter(99), QX_ERROR_NO_FILTER);
  drain_ring();
  DBTASK()->ExtractRealTable("n", id, 99, nullptr);
  EXPECT_EQ(drain_ring().back().call, "RQXExtractRealTable");
}

TEST_F(EditTest, ASortedSetFollowsItsFilterAndItsSet) {
  const TestTable owner({{"a", ints({30, kNullInt, 10, 30})}});
  TRealTable& table = inner(owner);
  TFilter& filter = *table.GetFilter(1);
  TSetArray& set = *table.GetSet(1);
  auto* const sorted = new TSortedSetArray;  // the set owns it
  sorted->initialize(&set, &filter);
  sorted->Reclaim();
  EXPECT_EQ(std::vector<int>(sorted->PIntAr(), sorted->PIntAr() + 4),
            (std::vector<int>{2, 3, 1, 4}));
  EXPECT_EQ(sorted->null_count(), 1);
  EXPECT_EQ(set.GetSortedSet(&filter), sorted);
  EXPECT_EQ(copy_of(set)->GetSortedSet(&filter), nullptr);
  filter.Taint();
  EXPECT_EQ(sorted->FArraySize, 0);
  sorted->Reclaim();
  filter.PVL->PIntAr()[3] = 2;  // no row has the value 10 any more
  ASSERT_EQ(RQXCondenseRealTable(owner.id()), 0);
  EXPECT_EQ(filter.VL->FArraySize, 2);
  EXPECT_EQ(sorted->FArraySize, 4);
  ASSERT_EQ(RQXDeleteRealFilter(owner.id(), 1), 0);  // and its sorted set, which leaves the set
  EXPECT_EQ(set.GetSortedSet(nullptr), nullptr);
}

// Failures

constexpr int kRows = 150;

/// A table with a column of each type, values that wait in all of them, and values to write.
struct PendingTable {
  PendingTable() {
    for (const NamedColumn& named : news) {
      values.push_back(std::make_unique<RawValues>(named.column));
      require(RQXOverwriteRealEx(table.id(), table.filter(named.name), 1, 20, 10,
                                 values.back()->data()),
              "RQXOverwriteRealEx");
    }
  }
  int id() const { return table.id(); }
  /// The first values of a column into the first rows.
  int overwrite(size_t column, int count) const {
    return RQXOverwriteRealEx(id(), static_cast<int>(column) + 1, 1, 1, count,
                              values[column]->data());
  }

  const TestTable table{RandomData(3).table(kRows), "t"};
  const Columns news = RandomData(4).table(40);
  std::vector<std::unique_ptr<RawValues>> values;
};

struct FailingEdit {
  const char* name;
  std::function<int(const PendingTable&)> edit;
};

class FailingEditTest : public EngineTest, public testing::WithParamInterface<FailingEdit> {};

TEST_P(FailingEditTest, LeavesTheTableAsItWas) {
  std::string wanted;
  {
    const PendingTable base;
    EXPECT_GT(GetParam().edit(base), 0);
    wanted = table_text(base.id());
  }
  bool done = false;
  for (int failures = 0; !done && !HasFailure(); ++failures) {
    RQXClearDB();
    const PendingTable base;
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    fail_allocation_after(failures, false);
    const int status = GetParam().edit(base);
    fail_allocation_after(-1, false);
    done = status >= 0;
    if (!done) {
      expect_failure(status, QX_ERROR_OUT_OF_MEMORY);
      EXPECT_EQ(database_text(), before);
      EXPECT_GT(GetParam().edit(base), 0) << "once there is memory again";
    }
    EXPECT_EQ(table_text(base.id()), wanted);
  }
}

using Base = const PendingTable&;

int fill_all(Base base) {
  char words[] = "a text that no row has";
  return RQXFillRealExStrR1(base.id(), base.table.filter("string"), 1, 1, kRows, words);
}

INSTANTIATE_TEST_SUITE_P(
    All, FailingEditTest,
    testing::Values(FailingEdit{"Insert", [](Base b) { return RQXInsertRealRows(b.id(), 25, 9); }},
                    FailingEdit{"Delete", [](Base b) { return RQXDeleteRealRows(b.id(), 25, 80); }},
                    FailingEdit{"Integer", [](Base b) { return b.overwrite(0, 1); }},
                    FailingEdit{"Integers", [](Base b) { return b.overwrite(0, 40); }},
                    FailingEdit{"Strings", [](Base b) { return b.overwrite(4, 40); }},
                    FailingEdit{"Decimals", [](Base b) { return b.overwrite(6, 40); }},
                    FailingEdit{"FillAll", fill_all}),
    case_name<FailingEdit>);

}  // namespace
}  // namespace qxe::test
