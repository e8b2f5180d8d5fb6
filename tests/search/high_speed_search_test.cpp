// High-speed search: marked sets find what others find, in the filter's order; enabled filters are
// frozen.
#include <algorithm>
#include <functional>
#include <map>
#include <set>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Rows = std::vector<int>;

// Against the naive model

/// A table in random hands: marks, enabling, single writes and searches.
class MarkedTable {
 public:
  explicit MarkedTable(unsigned seed)
      : random_(seed),
        columns_(random_.table(random_.chance(10) ? 0 : 1 + random_.below(400))),
        table_(columns_) {
    const int rows = NaiveModel(columns_).total_rows();
    sets_[table_.set_id(TestTable::kAllRows)] = table_.rows();
    for (int i = 0; i < 3; ++i) {
      Rows members = random_.set_of(rows);
      if (!members.empty() && i == 0) members.push_back(members[0]);  // a row twice
      sets_[table_.add_set(members)] = members;
    }
  }

  void step() {
    const int choice = random_.below(100);
    if (choice < 15) return mark();
    if (choice < 25) return enable();
    if (choice < 40) return write();
    search();
  }

 private:
  struct Mark {
    bool filled = false;
  };

  int filter_id(size_t column) const { return static_cast<int>(column) + 1; }
  size_t any_column() {
    return static_cast<size_t>(random_.below(static_cast<int>(columns_.size())));
  }
  const std::pair<const int, Rows>& any_set() {
    return *std::next(sets_.begin(), random_.below(static_cast<int>(sets_.size())));
  }

  void mark() {
    const size_t column = any_column();
    const int set = any_set().first;
    const bool on = random_.chance(75);
    ASSERT_EQ(RQXHighSpeedSearchSetMark(table_.id(), set, filter_id(column), on), 0);
    if (on) {
      marks_.try_emplace({set, column}, Mark{enabled_.count(column) != 0});
    } else {
      marks_.erase({set, column});
    }
    ASSERT_EQ(RQXHighSpeedSearchHasMark(table_.id(), set, filter_id(column)), on ? 1 : 0);
  }

  void enable() {
    const bool on = random_.chance(50);
    const bool all = random_.chance(30);
    const size_t chosen = any_column();
    ASSERT_EQ(
        RQXHighSpeedSearchEnable(table_.id(), all ? -random_.below(2) : filter_id(chosen), on), 0);
    for (size_t column = 0; column < columns_.size(); ++column) {
      if (!all && column != chosen) continue;
      if (!on) enabled_.erase(column);
      if (on) enabled_.insert(column);
      for (auto& [pair, mark] : marks_) mark.filled |= on && pair.second == column;
    }
    for (size_t column = 0; column < columns_.size(); ++column) {
      ASSERT_EQ(RQXHighSpeedSearchIsEnabled(table_.id(), filter_id(column)),
                static_cast<int>(enabled_.count(column)));
    }
  }

  /// One value, which may stay pending.
  void write() {
    const size_t index = any_column();
    Column& column = columns_[index].column;
    const auto& [set, rows] = any_set();
    if (rows.empty()) return;
    const int position = 1 + random_.below(static_cast<int>(rows.size()));
    const Cell value = normal_form(random_.bound(column), column.type);
    RawValues raw(column.type, {value});
    const int status =
        RQXOverwriteRealEx(table_.id(), filter_id(index), set, position, 1, raw.data());
    if (enabled_.count(index) != 0) {
      ASSERT_EQ(status, QX_ERROR_HIGH_SPEED_FILTER);
      return;
    }
    ASSERT_EQ(status, 1);
    column.cells[static_cast<size_t>(rows[static_cast<size_t>(position) - 1]) - 1] = value;
    for (auto& [pair, mark] : marks_) mark.filled &= pair.second != index;
  }

  void search() {
    static constexpr int kOperators[] = {
        QX_OPE_EQ,  QX_OPE_BETWEEN, QX_OPE_LEQ,    QX_OPE_GEQ,    QX_OPE_NEQ,      QX_OPE_WITHIN,
        QX_OPE_LES, QX_OPE_GT,      QX_OPE_ISNULL, QX_OPE_BEGINS, QX_OPE_CONTAINS, QX_OPE_ENDS};
    const size_t index = any_column();
    const auto& [name, column] = columns_[index];
    const bool text = column.type == QX_DT_STRING;
    int ope = kOperators[random_.below(text ? 12 : 9)];
    if (text && ope == QX_OPE_ISNULL) ope = QX_OPE_BEGINS;
    const bool by_bisection = ope != QX_OPE_CONTAINS && ope != QX_OPE_ENDS;
    if (random_.chance(20)) ope |= QX_OPE_STRICT;
    const auto& [set, rows] = any_set();
    const Cell low = random_.bound(column);
    const Cell high = random_.bound(column);
    const NaiveModel model(columns_);
    Rows wanted = model.search(name, ope, low, high, rows);
    const auto mark = marks_.find({set, index});
    const bool ordered = by_bisection && mark != marks_.end() && mark->second.filled;
    if (ordered) wanted = model.sort({{name, QX_SORT_ASC}}, wanted);
    const int found = table_.search(name, ope, low, high, set);
    ASSERT_EQ(table_.rows(found), wanted)
        << name << " operator " << ope << " low " << to_text(low, column.type) << " high "
        << to_text(high, column.type) << (ordered ? " ordered" : "") << "\n"
        << to_text(columns_);
    ASSERT_EQ(RQXHighSpeedSearchHasMark(table_.id(), found, filter_id(index)), 0);
    RQXDeleteSet(table_.id(), found);
    // Lists of values never come in the filter's order.
    const int listed = table_.search_values(name, {low, high}, set);
    ASSERT_EQ(table_.rows(listed), model.search_values(name, {low, high}, rows));
    RQXDeleteSet(table_.id(), listed);
  }

  RandomData random_;
  Columns columns_;
  TestTable table_;
  std::map<int, Rows> sets_;
  std::map<std::pair<int, size_t>, Mark> marks_;  // of set and column
  std::set<size_t> enabled_;
};

class RandomMarksTest : public EngineTest, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomMarksTest, FindWhatPlainSearchesFind) {
  MarkedTable table(GetParam());
  for (int step = 0; step < 300 && !HasFatalFailure(); ++step) table.step();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomMarksTest, testing::Range(1U, 25U));

// One table by hand: rows 1 to 6 hold 30, NULL, 10, 30, 20, NULL in "n".

class HighSpeedTest : public EngineTest {
 protected:
  HighSpeedTest()
      : table_({{"n", ints({30, kNullInt, 10, 30, 20, kNullInt})},
                {"s", strings({"b", "a", "", "c", "b", "a"})},
                {"x", doubles({1, 2, 3, 4, 5, 6})},
                {"d", decimals(2, {"1.25", "2.50", "", "0.75", "1.00", "9.99"})}},
               "t"),
        id_(table_.id()),
        part_(table_.add_set({6, 4, 2, 1})) {
    RQXChangeCurrentSetID(id_, 1);
    write_file("ints.txt", "7\n8\n");
    write_file("rows.cat", "//CSV\nI\t1\tn\nA\t1\ts\nF\t1\tx\nN\t1\td\t2\n");
    write_file("rows.csv", "1,a,1.5,0.5\n2,b,2.5,0.6\n");
  }

  /// Marks both sets for the four columns and enables them.
  void freeze() const {
    for (int filter = 1; filter <= 4; ++filter) {
      for (const int set : {1, part_}) {
        ASSERT_EQ(RQXHighSpeedSearchSetMark(id_, set, filter, true), 0);
      }
    }
    ASSERT_EQ(RQXHighSpeedSearchEnable(id_, 0, true), 0);
  }

  Rows found(const std::string& column, int ope, const Cell& value, int set = 1) const {
    return table_.rows(table_.search(column, ope, value, {}, set));
  }

  const TestTable table_;
  const int id_;
  const int part_;
};

TEST_F(HighSpeedTest, AMarkOrdersResultsWhileItWorks) {
  const auto search = [&] { return found("n", QX_OPE_GEQ, Cell{}, part_); };
  const Rows in_set_order = {6, 4, 2, 1};
  const Rows by_value = {6, 2, 4, 1};
  const int n = table_.filter("n");
  EXPECT_EQ(RQXHighSpeedSearchSetMark(id_, part_, n, true), 0);
  EXPECT_EQ(search(), in_set_order);
  EXPECT_EQ(RQXHighSpeedSearchEnable(id_, n, true), 0);
  EXPECT_EQ(search(), by_value);
  EXPECT_EQ(found("n", QX_OPE_GT, 10, 1), (Rows{1, 4, 5}));  // another set, without a mark
  EXPECT_EQ(RQXHighSpeedSearchEnable(id_, n, false), 0);
  EXPECT_EQ(search(), by_value);
  EXPECT_EQ(RQXFillRealExIntR1(id_, n, 1, 5, 1, 10), 1);
  EXPECT_EQ(search(), in_set_order);
  EXPECT_EQ(RQXHighSpeedSearchHasMark(id_, part_, n), 1);
  EXPECT_EQ(RQXHighSpeedSearchEnable(id_, n, true), 0);
  EXPECT_EQ(search(), by_value);
  EXPECT_EQ(RQXHighSpeedSearchSetMark(id_, part_, n, false), 0);
  EXPECT_EQ(search(), in_set_order);
  EXPECT_EQ(RQXHighSpeedSearchSetMark(id_, part_, n, true), 0);  // on an enabled filter
  EXPECT_EQ(search(), by_value);
}

TEST_F(HighSpeedTest, RowsThatMoveEndTheOrderUntilItIsMadeAnew) {
  freeze();
  ASSERT_EQ(RQXHighSpeedSearchEnable(id_, 0, false), 0);
  EXPECT_EQ(found("n", QX_OPE_GEQ, 20), (Rows{5, 1, 4}));
  EXPECT_EQ(RQXInsertRealRows(id_, 1, 1), 1);
  EXPECT_EQ(found("n", QX_OPE_GEQ, 20), (Rows{2, 5, 6}));
  EXPECT_EQ(found("n", QX_OPE_GEQ, 20, part_), (Rows{5, 2}));
  ASSERT_EQ(RQXHighSpeedSearchEnable(id_, 0, true), 0);
  EXPECT_EQ(found("n", QX_OPE_GEQ, 20), (Rows{6, 2, 5}));
  EXPECT_EQ(found("n", QX_OPE_ISNULL, {}, part_), (Rows{7, 3}));
}

TEST_F(HighSpeedTest, CopiesCarryNoMarks) {
  freeze();
  char block[64] = "kept";
  ASSERT_EQ(RQXSetSubsetAttr(id_, 1, block), 0);
  const int result = table_.search("n", QX_OPE_GEQ, 20, {}, 1);
  char copied[64] = "";
  EXPECT_EQ(RQXGetSubsetAttr(id_, result, copied), 0);
  EXPECT_STREQ(copied, "kept");
  const int sorted = table_.sort("s", QX_SORT_ASC, part_);
  for (const int set : {result, sorted, RQXSetOpeReal(id_, QX_SET_AND, 1, part_)}) {
    EXPECT_EQ(RQXHighSpeedSearchHasMark(id_, set, 1), 0);
  }
  EXPECT_EQ(RQXHighSpeedSearchIsEnabled(id_, RQXDupRealFilter(id_, 1)), 0);
  const int copy = RQXDuplicateRealTable("copy", id_);
  EXPECT_EQ(RQXHighSpeedSearchIsEnabled(copy, 1), 0);
  EXPECT_EQ(RQXHighSpeedSearchHasMark(copy, 1, 1), 0);
  EXPECT_EQ(RQXInsertRealRows(copy, 1, 1), 1);
}

TEST_F(HighSpeedTest, MarksGoWithTheirSetsAndFilters) {
  freeze();
  EXPECT_EQ(RQXDeleteSet(id_, part_), 0);
  EXPECT_EQ(RQXDeleteRealFilter(id_, 1), 0);
  expect_failure(RQXHighSpeedSearchHasMark(id_, part_, 2), QX_ERROR_NO_SET, "No Such Set: 2");
  EXPECT_EQ(found("s", QX_OPE_GEQ, std::string("b")), (Rows{1, 5, 4}));
  EXPECT_EQ(RQXPurgeSubsets(id_), 0);
  EXPECT_EQ(RQXHighSpeedSearchHasMark(id_, 1, 2), 1);
  EXPECT_EQ(RQXDeleteTable(id_), 0);
}

TEST_F(HighSpeedTest, ReportsWhatDoesNotExist) {
  struct Case {
    std::function<int(int table, int set, int filter)> call;
    bool with_set;
  };
  const Case cases[] = {
      {[](int t, int s, int f) { return RQXHighSpeedSearchSetMark(t, s, f, true); }, true},
      {[](int t, int s, int f) { return RQXHighSpeedSearchSetMark(t, s, f, false); }, true},
      {RQXHighSpeedSearchHasMark, true},
      {[](int t, int, int f) { return RQXHighSpeedSearchEnable(t, f, true); }, false},
      {[](int t, int, int f) { return RQXHighSpeedSearchIsEnabled(t, f); }, false}};
  for (const auto& [call, with_set] : cases) {
    for (const int none : {99, -1, 0x7FFFFFFF}) {
      expect_failure(call(none, 1, 1), QX_ERROR_NO_TABLE, "No Such Table: " + std::to_string(none));
    }
    for (const int none : {99, 0x7FFFFFFF}) {
      expect_failure(call(id_, 1, none), QX_ERROR_NO_FILTER,
                     "No Such Filter: " + std::to_string(none));
      if (with_set) {
        expect_failure(call(id_, none, 1), QX_ERROR_NO_SET, "No Such Set: " + std::to_string(none));
      }
    }
  }
  for (const int below : {0, -1, -0x7FFFFFFF}) {
    expect_failure(RQXHighSpeedSearchSetMark(id_, 1, below, true), QX_ERROR_NO_FILTER);
    expect_failure(RQXHighSpeedSearchIsEnabled(id_, below), QX_ERROR_NO_FILTER);
    EXPECT_EQ(RQXHighSpeedSearchEnable(id_, below, true), 0);
  }
  EXPECT_EQ(RQXHighSpeedSearchSetMark(id_, -1, 1, true), 0);  // the current set
  EXPECT_EQ(RQXHighSpeedSearchHasMark(id_, 1, 1), 1);
}

TEST_F(HighSpeedTest, LargeSetsAndWhatTheyCost) {
  constexpr int kRows = 600'000;
  std::vector<int> values(kRows);
  for (int row = 1; row <= kRows; ++row) values[static_cast<size_t>(row) - 1] = row % 1000;
  const TestTable table({{"a", ints(values)}});
  unsigned long before = 0;
  unsigned long after = 0;
  ASSERT_EQ(RQXGetTableMemorySize(table.id(), &before), 0);
  ASSERT_EQ(RQXHighSpeedSearchSetMark(table.id(), 1, 1, true), 0);
  ASSERT_EQ(RQXHighSpeedSearchEnable(table.id(), 1, true), 0);
  ASSERT_EQ(RQXGetTableMemorySize(table.id(), &after), 0);
  EXPECT_GE(after - before, kRows * sizeof(int));
  EXPECT_LT(after - before, 2 * kRows * sizeof(int));
  Rows wanted;
  for (int value = 0; value < 1000; ++value) {
    for (int row = value == 0 ? 1000 : value; row <= kRows && value != 500; row += 1000) {
      wanted.push_back(row);
    }
  }
  EXPECT_EQ(table.rows(table.search("a", QX_OPE_NEQ, 500)), wanted);
  ASSERT_EQ(RQXHighSpeedSearchSetMark(table.id(), 1, 1, false), 0);
  ASSERT_EQ(RQXPurgeSubsets(table.id()), 0);
  ASSERT_EQ(RQXGetTableMemorySize(table.id(), &after), 0);
  EXPECT_LT(after, before + 1000);
}

// What an enabled filter forbids and what it allows. Filters: 1 integers, 2 strings, 3 doubles,
// 4 decimals.

char text[] = "z";
char* texts[] = {text};
int one = 1;
Numeric decimal = {};
NumericInfo finer = {3, QX_ROUND_HALFUP};
NumericInfo mode = {2, QX_ROUND_UP};

struct CallCase {
  const char* name;
  std::function<int(int table)> call;
};

#define QXE_CASE(name, call)              \
  CallCase {                              \
#name, [](int table) { return call; } \
  }

class FrozenTest : public HighSpeedTest, public testing::WithParamInterface<CallCase> {};

using ForbiddenTest = FrozenTest;

TEST_P(ForbiddenTest, ChangesNothingWhileAFilterIsEnabled) {
  freeze();
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  expect_failure(GetParam().call(id_), QX_ERROR_HIGH_SPEED_FILTER,
                 "Cannot modify high speed search filter: ");
  EXPECT_EQ(database_text(), before);
  EXPECT_EQ(found("n", QX_OPE_GEQ, Cell{}), (Rows{2, 6, 3, 5, 1, 4}));
  ASSERT_EQ(RQXHighSpeedSearchEnable(id_, 0, false), 0);
  EXPECT_GE(GetParam().call(id_), 0) << to_text(ring());
}

INSTANTIATE_TEST_SUITE_P(
    Writes, ForbiddenTest,
    testing::Values(QXE_CASE(Overwrite, RQXOverwriteRealEx(table, 1, 1, 1, 1, &one)),
                    QXE_CASE(OverwritePlain, QXOverwriteRealEx(table, 1, 1, 1, 1, &one)),
                    QXE_CASE(OverwriteTexts, RQXOverwriteRealExStr(table, 2, 1, 1, 1, texts)),
                    QXE_CASE(OverwriteInt, RQXOverwriteRealExIntR1(table, 1, 1, 1, 1)),
                    QXE_CASE(OverwriteDouble, RQXOverwriteRealExDblR1(table, 3, 1, 1, 1)),
                    QXE_CASE(OverwriteDecimal,
                             RQXOverwriteRealExNumericR1(table, 4, 1, 1, &decimal)),
                    QXE_CASE(OverwriteText, RQXOverwriteRealExStrR1(table, 2, 1, 1, text)),
                    QXE_CASE(Fill, RQXFillRealEx(table, 1, 1, 1, 6, &one)),
                    QXE_CASE(FillInt, RQXFillRealExIntR1(table, 1, 1, 1, 2, 1)),
                    QXE_CASE(FillDouble, RQXFillRealExDblR1(table, 3, 1, 1, 2, 1)),
                    QXE_CASE(FillDecimal, RQXFillRealExNumericR1(table, 4, 1, 1, 2, &decimal)),
                    QXE_CASE(FillText, RQXFillRealExStrR1(table, 2, 1, 1, 2, text)),
                    QXE_CASE(Rescale, RQXSetNumericInfo(table, 4, &finer, false)),
                    QXE_CASE(RoundingMode, RQXSetNumericInfo(table, 4, &mode, false))),
    case_name<CallCase>);

INSTANTIATE_TEST_SUITE_P(
    RowChanges, ForbiddenTest,
    testing::Values(
        QXE_CASE(Insert, RQXInsertRealRows(table, 1, 2)),
        QXE_CASE(InsertAtTheEnd, QXInsertRealRows(table, 100, 2)),
        QXE_CASE(Delete, RQXDeleteRealRows(table, 1, 2)),
        QXE_CASE(DeletePlain, QXDeleteRealRows(table, 1, 2)),
        QXE_CASE(DeleteOfSet, RQXDeleteRealRowsEx(table, 2, 1, 2)),
        QXE_CASE(AppendColumn, RQXAppendRealFilter2(table, 1, 2, -1, 2, "", "ints.txt")),
        QXE_CASE(OverwriteColumn, RQXAppendRealFilter2(table, 1, 2, 2, 2, "", "ints.txt")),
        QXE_CASE(Append, RQXAppendCatalogFileEx2(table, -1, 2, "", "rows.cat", "", "rows.csv")),
        QXE_CASE(Replace, RQXAppendCatalogFileEx2(table, 2, 2, "", "rows.cat", "", "rows.csv"))),
    case_name<CallCase>);

using ForbiddenByAnotherTest = FrozenTest;

TEST_P(ForbiddenByAnotherTest, RowChangesOfTheWholeTable) {
  ASSERT_EQ(RQXHighSpeedSearchEnable(id_, 2, true), 0);
  const std::string before = database_text();
  expect_failure(GetParam().call(id_), QX_ERROR_HIGH_SPEED_FILTER,
                 "Cannot modify high speed search filter: s");
  EXPECT_EQ(database_text(), before);
}

INSTANTIATE_TEST_SUITE_P(
    All, ForbiddenByAnotherTest,
    testing::Values(
        QXE_CASE(Insert, RQXInsertRealRows(table, 1, 2)),
        QXE_CASE(Delete, RQXDeleteRealRows(table, 1, 2)),
        QXE_CASE(DeleteOfSet, RQXDeleteRealRowsEx(table, 2, 1, 2)),
        QXE_CASE(AppendColumn, RQXAppendRealFilter2(table, 1, 2, -1, 2, "", "ints.txt")),
        QXE_CASE(Append, RQXAppendCatalogFileEx2(table, 6, 2, "", "rows.cat", "", "rows.csv"))),
    case_name<CallCase>);

using AllowedTest = FrozenTest;

TEST_P(AllowedTest, LeavesTheMarksAtWork) {
  ASSERT_EQ(RQXHighSpeedSearchSetMark(id_, 1, 1, true), 0);
  ASSERT_EQ(RQXHighSpeedSearchEnable(id_, 1, true), 0);
  EXPECT_GE(GetParam().call(id_), 0) << to_text(ring());
  EXPECT_EQ(RQXHighSpeedSearchIsEnabled(id_, 1), 1);
  EXPECT_EQ(table_.rows(RQXSearchByFieldIntR1(id_, 1, 1, QX_OPE_GEQ, kNullInt, 0)),
            (Rows{2, 6, 3, 5, 1, 4}));
}

INSTANTIATE_TEST_SUITE_P(
    All, AllowedTest,
    testing::Values(QXE_CASE(WritingToAnother, RQXFillRealExStrR1(table, 2, 1, 1, 6, text)),
                    QXE_CASE(RowsOfAnotherFromAFile,
                             RQXAppendRealFilter2(table, 3, QX_DT_DOUBLE, 1, 2, "", "ints.txt")),
                    QXE_CASE(Condensing, RQXCondenseRealTable(table)),
                    QXE_CASE(Renaming, RQXSetFilterName(table, 1, "other")),
                    QXE_CASE(Moving, RQXMoveRealFilter(table, 0, 3)),
                    QXE_CASE(DeletingAnother, RQXDeleteRealFilter(table, 2)),
                    QXE_CASE(AddingAFilter,
                             RQXAddRealFilter2(table, 0, "new", 2, 0, nullptr, nullptr, nullptr)),
                    QXE_CASE(Converting, RQXDupRealFilterEx(table, 1, QX_DT_STRING)),
                    QXE_CASE(Extracting, RQXExtractRealTable("new", table, 1, nullptr)),
                    QXE_CASE(Sorting, RQXSortByField(table, 1, 1, QX_SORT_DESC)),
                    QXE_CASE(MarkingAgain, RQXHighSpeedSearchSetMark(table, 1, 1, true)),
                    QXE_CASE(EnablingAgain, RQXHighSpeedSearchEnable(table, 1, true)),
                    QXE_CASE(UnmarkingAnother, RQXHighSpeedSearchSetMark(table, 2, 1, false))),
    case_name<CallCase>);

#undef QXE_CASE

}  // namespace
}  // namespace qxe::test
