// Row editing from inside: tables that may not be edited, decimals of another scale, failures while
// values wait.
#include <gtest/gtest.h>

#include <functional>

#include "frame/base/memory.h"
#include "parallel/smpengine.h"
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

TRealTable& inner(const TestTable& table) {
  return static_cast<TRealTable&>(*ENG->collection()->find(table.id()));
}

using Edit = std::function<int(int table)>;

int number = 5;

const std::vector<Edit> kEdits = {
    [](int table) { return RQXInsertRealRows(table, 1, 1); },
    [](int table) { return RQXDeleteRealRows(table, 1, 1); },
    [](int table) { return RQXDeleteRealRowsEx(table, 1, 1, 1); },
    [](int table) { return RQXOverwriteRealEx(table, 1, 1, 1, 1, &number); },
    [](int table) { return QXOverwriteRealEx(table, 1, 1, 1, 1, &number); },
    [](int table) { return RQXOverwriteRealExStr(table, 1, 1, 1, 1, nullptr); },
    [](int table) { return RQXOverwriteRealExIntR1(table, 1, 1, 1, number); },
    [](int table) { return RQXFillRealEx(table, 1, 1, 1, 1, &number); },
    [](int table) { return RQXFillRealExIntR1(table, 1, 1, 1, 1, number); },
};

using EditableTest = EngineTest;

TEST_F(EditableTest, ATableThatAnotherOneRefersToIsNot) {
  const TestTable table({{"a", ints({1, 2})}});
  const TestTable referring({{"a", ints({1, 2})}});
  TFilter& borrower = *inner(referring).GetFilter(1);
  delete borrower.VL;
  borrower.VL = inner(table).GetFilter(1)->VL;
  borrower.FVLBorrowed = true;
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  for (const Edit& edit : kEdits) {
    expect_failure_logged_as(edit(table.id()), QX_ERROR_REFERRED, QX_ERROR_NO_TABLE,
                             "Not Editable: " + std::to_string(table.id()));
  }
  EXPECT_EQ(database_text(), before);
  // The one that refers is, and leaves the other's values alone.
  EXPECT_EQ(RQXOverwriteRealExIntR1(referring.id(), 1, 1, 1, number), 1);
  EXPECT_EQ(referring.texts("a"), (std::vector<std::string>{"5", "2"}));
  EXPECT_EQ(table.texts("a"), (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(RQXDeleteRealRows(table.id(), 1, 1), 1);
}

class SharedTable : public TRealTable {
 public:
  using TRealTable::TRealTable;
  bool isQXTShared() const override { return true; }
};

TEST_F(EditableTest, ATableInSharedMemoryIsNot) {
  TTableCollection& collection = *ENG->collection();
  const int id =
      collection.adopt_table(std::make_unique<SharedTable>(collection.issue_table_id(), "s", 2));
  for (const Edit& edit : kEdits) {
    expect_failure(edit(id), QX_ERROR_SHARED_READ_ONLY, "Invalid Shared memory read Oparation");
  }
  EXPECT_EQ(RQXGetTotalRows(id), 2);
}

class OtherScaleTest : public EngineTest {
 protected:
  int overwrite(int count, const char* value, int scale) {
    const Numeric values[] = {to_numeric(decimal(scale, value)), to_numeric({})};
    return inner(table_).OverWriteExNumeric(1, 1, 1, count, values, scale, QX_ROUND_DOWN);
  }

  const TestTable table_{{{"n", decimals(2, {"1.00", "2.00", "3.00"})}, {"i", ints({1, 2, 3})}}};
};

TEST_F(OtherScaleTest, IsChangedAsTheFilterRounds) {
  EXPECT_EQ(overwrite(2, "7.125", 3), 2);
  EXPECT_EQ(table_.texts("n"), (std::vector<std::string>{"7.13", "NULL", "3.00"}));
  EXPECT_EQ(overwrite(1, "7", 0), 1);
  EXPECT_EQ(table_.text("n", 1), "7.00");
}

TEST_F(OtherScaleTest, RefusesWhatDoesNotFit) {
  const std::string before = database_text();
  expect_failure(overwrite(2, std::string(38, '9').c_str(), 0), QX_ERROR_DATA_SIZE,
                 "Invalid Parameter : scale(0)");
  const Numeric value = {};
  expect_failure(inner(table_).OverWriteExNumeric(1, 1, 1, 1, &value, 39, 0), QX_ERROR_PARAMETER,
                 "Invalid Parameter : scale(39)");
  expect_failure(inner(table_).OverWriteExNumeric(2, 1, 1, 1, &value, 0, 0), QX_ERROR_TYPE_MISMATCH,
                 "Illegal data type");
  expect_failure(inner(table_).OverWriteExNumeric(9, 1, 1, 1, &value, 0, 0), QX_ERROR_NO_FILTER);
  expect_failure(inner(table_).OverWriteExNumeric(1, 9, 1, 1, &value, 0, 0), QX_ERROR_NO_SET_ID);
  EXPECT_EQ(database_text(), before);
}

// Failures

constexpr int kRows = 150;

/// A table with a column of each type, values that wait in all of them, and values to write.
struct PendingTable {
  PendingTable()
      : columns(RandomData(3).table(kRows)), table(columns, "t"), news(RandomData(4).table(40)) {
    for (const NamedColumn& named : news) {
      values.push_back(std::make_unique<RawValues>(named.column));
      require(RQXOverwriteRealEx(table.id(), table.filter(named.name), 1, 20, 10,
                                 values.back()->data()),
              "RQXOverwriteRealEx");
    }
  }
  int id() const { return table.id(); }

  Columns columns;
  TestTable table;
  Columns news;
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

/// The first values of a column into the first rows.
FailingEdit overwrite_column(const char* name, size_t column, int count) {
  return {name, [=](const PendingTable& base) {
            return RQXOverwriteRealEx(base.id(), base.table.filter(base.columns[column].name), 1, 1,
                                      count, base.values[column]->data());
          }};
}

INSTANTIATE_TEST_SUITE_P(
    All, FailingEditTest,
    testing::Values(
        FailingEdit{"Insert",
                    [](const PendingTable& base) { return RQXInsertRealRows(base.id(), 25, 9); }},
        FailingEdit{"Delete",
                    [](const PendingTable& base) { return RQXDeleteRealRows(base.id(), 25, 80); }},
        overwrite_column("Integer", 0, 1), overwrite_column("Integers", 0, 40),
        overwrite_column("Doubles", 1, 40), overwrite_column("String", 4, 1),
        overwrite_column("Strings", 4, 40), overwrite_column("Decimals", 6, 40),
        FailingEdit{"FillAll",
                    [](const PendingTable& base) {
                      char text[] = "a text that no row has";
                      return RQXFillRealExStrR1(base.id(), base.table.filter("string"), 1, 1, kRows,
                                                text);
                    }}),
    case_name<FailingEdit>);

}  // namespace
}  // namespace qxe::test
