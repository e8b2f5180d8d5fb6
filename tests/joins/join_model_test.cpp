// Random joins and chains of operations on them against nested loops: every way to read a set, and
// every operation that makes one.
//
// QXE_JOIN_SECONDS=n in the environment makes each test run for n seconds, from seed QXE_JOIN_SEED
// on.
#include "join_model.h"

#include <algorithm>
#include <map>
#include <optional>

#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/run_seeds.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Pairs = std::vector<std::pair<int, int>>;

Column row_numbers(int rows) {
  std::vector<int> numbers;
  for (int row = 1; row <= rows; ++row) numbers.push_back(row);
  return ints(numbers);
}

/// A column that has most of its values in common with `other`.
Column like(RandomData& random, const Column& other, int rows) {
  Column column = random.column(other.type, rows);
  column.scale = other.scale;
  if (other.cells.empty()) return column;
  for (Cell& cell : column.cells) {
    if (random.chance(70)) {
      cell = other.cells[static_cast<size_t>(random.below(static_cast<int>(other.cells.size())))];
    }
  }
  return column;
}

/// Decimals with some digits more or fewer, most of them the same numbers where they fit.
void change_scale(RandomData& random, Column& column) {
  const int scale = std::max(column.scale + random.below(5) - 2, 0);
  for (Cell& cell : column.cells) {
    if (const auto* const number = std::get_if<Decimal>(&cell)) {
      const std::optional<Decimal> changed =
          random.chance(80) ? at_scale(*number, scale) : Decimal{scale, number->units};
      cell = changed ? Cell(*changed) : Cell();
    }
  }
  column.scale = scale;
}

/// The two zeros are one value of the engine.
Columns with_one_zero(Columns columns) {
  for (NamedColumn& named : columns) {
    for (Cell& cell : named.column.cells) {
      if (double* const number = std::get_if<double>(&cell)) *number += 0.0;
    }
  }
  return columns;
}

/// Both parents: a column of each type, of the slave with values of the master, and row numbers.
std::pair<Columns, Columns> random_parents(RandomData& random) {
  if (random.chance(15)) {  // one table joined with itself
    Columns both = with_one_zero(random.table(random.below(25)));
    both.push_back({"m", row_numbers(static_cast<int>(both[0].column.cells.size()))});
    return {both, both};
  }
  const int rows[] = {random.chance(5) ? 0 : random.below(25), random.chance(5) ? 0 : 30};
  Columns master = with_one_zero(random.table(rows[0]));
  Columns slave;
  for (const NamedColumn& named : master) {
    slave.push_back({named.name, like(random, named.column, rows[1])});
  }
  // Half of the slave's rows are rows of the master, so that several keys match too.
  for (size_t row = 0; rows[0] > 0 && row < static_cast<size_t>(rows[1]); row += 2) {
    const size_t source = static_cast<size_t>(random.below(rows[0]));
    for (size_t i = 0; i < slave.size(); ++i) {
      slave[i].column.cells[row] = master[i].column.cells[source];
    }
  }
  for (NamedColumn& named : slave) {
    if (named.column.type == QX_DT_DECIMAL && random.chance(50)) change_scale(random, named.column);
  }
  master.push_back({"m", row_numbers(rows[0])});
  slave.push_back({"s", row_numbers(rows[1])});
  return {master, with_one_zero(slave)};
}

class JoinCase {
 public:
  explicit JoinCase(unsigned seed)
      : random_(seed),
        columns_(random_parents(random_)),
        parents_{NaiveModel(columns_.first), NaiveModel(columns_.second)},
        tables_{TestTable(columns_.first, "master"), second_table()},
        outer_(random_.chance(40)),
        keys_(random_keys()),
        first_{{any_rows(0), any_rows(1)}, 0},
        model_(parents_[0], parents_[1], keys_, first_, outer_) {
    const int sets[] = {tables_[0].add_set(first_.side[0]), tables_[1].add_set(first_.side[1])};
    std::vector<int> ids[2];
    for (const auto& [master, slave] : keys_) {
      ids[0].push_back(tables_[0].filter(master));
      ids[1].push_back(tables_[1].filter(slave));
    }
    for (auto& list : ids) list.push_back(0);
    char name[] = "join";
    const auto add = random_.chance(50) ? RQXAddJoinTable : QXAddJoinTable;
    join_ = require(add(name, outer_, tables_[0].id(), sets[0], ids[0].data(), tables_[1].id(),
                        sets[1], ids[1].data()),
                    "AddJoinTable");
    sets_[1] = model_.joined(first_);
  }

  void reads_as_nested_loops_pair();
  void slave_columns_move_to_the_master();
  void operations_make_the_sets_that_nested_loops_make();

 private:
  TestTable second_table() {
    const bool one_table = columns_.second.back().name == "m";
    return one_table ? tables_[0] : TestTable(columns_.second, "slave");
  }

  std::vector<int> any_rows(int side) {
    return random_.chance(40) ? parents_[side].all_rows()
                              : random_.set_of(parents_[side].total_rows());
  }

  std::vector<std::pair<std::string, std::string>> random_keys() {
    std::vector<std::pair<std::string, std::string>> keys;
    // With 16 keys there are more combinations than 64 bits hold.
    constexpr int kCounts[] = {1, 1, 1, 1, 2, 3, 4, 6, 13, 16};
    for (int i = kCounts[random_.below(10)]; i > 0; --i) {
      const std::string column = columns_.first[static_cast<size_t>(random_.below(7))].name;
      keys.emplace_back(column, column);
      const bool is_serial = column == "date" || column == "time" || column == "datetime";
      if (is_serial && random_.chance(20)) keys.back().second = "double";
    }
    return keys;
  }

  /// Join filter ids of a side's columns: those of the master come first.
  int filter_of(int side, size_t column) const {
    return static_cast<int>((side == 0 ? 0 : columns_.first.size()) + column) + 1;
  }
  int any_filter(int* side, std::string* column) {
    *side = random_.below(2);
    const size_t i = static_cast<size_t>(random_.below(8));
    *column = columns_of(*side)[i].name;
    return filter_of(*side, i);
  }
  const Columns& columns_of(int side) const { return parents_[side].columns(); }

  void expect_set(int set, const JoinRowsOf& rows);
  void expect_column(int set, int side, size_t column, const Pairs& pairs);
  void expect_addressing(int set, const JoinRowsOf& rows, const Pairs& pairs);
  void expect_new_set(int set, const JoinRowsOf& rows);
  void operate();

  RandomData random_;
  std::pair<Columns, Columns> columns_;
  NaiveModel parents_[2];
  TestTable tables_[2];
  bool outer_;
  std::vector<std::pair<std::string, std::string>> keys_;
  JoinRowsOf first_;  // the rows that were joined
  JoinModel model_;
  int join_ = 0;
  std::map<int, JoinRowsOf> sets_;
};

std::vector<int> value_numbers(int table, int filter) {
  _TFilterInfo body{};
  require(QXGetFilter(table, filter, &body), "QXGetFilter");
  return {body.pv, body.pv + body.rowCount};
}

/// All ways to read a column.
void JoinCase::expect_column(int set, int side, size_t column, const Pairs& pairs) {
  const int filter = filter_of(side, column);
  const Column& wanted = columns_of(side)[column].column;
  SCOPED_TRACE("filter " + std::to_string(filter));
  const auto row_of = [&](const std::pair<int, int>& pair) {
    return side == 0 ? pair.first : pair.second;
  };
  char name[256];
  ASSERT_GE(RQXGetFilterName(join_, filter, name), 0);
  const TestTable reader = TestTable::existing(join_);
  const std::vector<std::string> texts = reader.texts(name, set);
  std::vector<int> numbers(pairs.size() + 1);
  ASSERT_EQ(RQXGetVNoList(join_, filter, set, numbers.data()), static_cast<int>(pairs.size()));
  const std::vector<int> pv = value_numbers(join_, filter);
  std::vector<int> counts(pv.size() + 2);
  std::vector<int> wanted_counts(counts.size());
  ASSERT_EQ(QXGetValCount(join_, filter, set, counts.data()), 0);
  ASSERT_EQ(texts.size(), pairs.size());
  for (size_t i = 0; i < pairs.size(); ++i) {
    const int row = row_of(pairs[i]);
    const Cell cell =
        row == 0 ? normal_form({}, wanted.type) : wanted.cells[static_cast<size_t>(row) - 1];
    ASSERT_EQ(texts[i], to_text(cell, wanted.type)) << "pair " << i;
    ASSERT_EQ(numbers[i], pv[static_cast<size_t>(row)]) << "pair " << i;
    ++wanted_counts[static_cast<size_t>(numbers[i])];
  }
  EXPECT_EQ(counts, wanted_counts);
  int type = 0, values = 0, distinct = 0;
  const int detail = RQXOpenDetailInfo(join_, set, filter, &type, &values, &distinct);
  ASSERT_GT(detail, 0);
  for (int value = 1; value <= values; ++value) {
    int rows = 0;
    ASSERT_EQ(RQXGetDetailCount(detail, 0, 0, 0, value, &rows), 0);
    EXPECT_EQ(rows, wanted_counts[static_cast<size_t>(value) - 1]);
  }
  if (wanted.type != QX_DT_INTEGER) return;
  int block[128] = {};
  int count = 0;
  const int status = RQXGetData1MIntR1(join_, filter, set, 1, &count, block);
  ASSERT_EQ(status >= 0, !pairs.empty());
  ASSERT_EQ(count, std::min<int>(static_cast<int>(pairs.size()), 128));
  for (int i = 0; i < count; ++i) {
    EXPECT_EQ(block[i], RQXGetData1IntR1(join_, filter, set, i + 1)) << "pair " << i;
  }
}

/// The arrays behind the pairs tell the same.
void JoinCase::expect_addressing(int set, const JoinRowsOf& rows, const Pairs& pairs) {
  const int direction = rows.direction;
  ASSERT_EQ(RQXGetJoinDir(join_, set), direction);
  int* driving = nullptr;
  int* driven = nullptr;
  int* starts = nullptr;
  int* runs = nullptr;
  int counts[2] = {};
  const int driving_count = QXGetSet(join_, set, &driving);
  const int driven_count = QXGetJoinSlaveSet(join_, set, &driven);
  ASSERT_EQ(QXGetJoinProjectionSets(join_, set, &counts[0], &starts, &counts[1], &runs), 0);
  ASSERT_EQ(counts[0], driving_count);
  if (!outer_) {
    EXPECT_EQ(std::vector<int>(driving, driving + driving_count), rows.side[direction]);
    EXPECT_EQ(std::vector<int>(driven, driven + driven_count), rows.side[1 - direction]);
  }
  _TFilterInfo key{};
  ASSERT_EQ(QXGetJoinKey(join_, direction, &key), 0);
  ASSERT_EQ(counts[1], key.valueCount + 1);
  size_t pair = 0;
  for (int i = 0; i < driving_count; ++i) {
    const int end = i + 1 < driving_count ? starts[i + 1] : static_cast<int>(pairs.size());
    for (int p = starts[i]; p < end; ++p, ++pair) {
      const int other = driven[runs[key.pv[driving[i]]] + p - starts[i]];
      const auto found =
          direction == 0 ? std::pair(driving[i], other) : std::pair(other, driving[i]);
      ASSERT_EQ(found, pairs[pair]) << "pair " << pair;
    }
  }
  EXPECT_EQ(pair, pairs.size());
}

void JoinCase::expect_set(int set, const JoinRowsOf& rows) {
  SCOPED_TRACE("set " + std::to_string(set));
  const Pairs pairs = model_.pairs(rows);
  ASSERT_EQ(RQXGetSetSize(join_, set), static_cast<int>(pairs.size()));
  expect_addressing(set, rows, pairs);
  for (int side = 0; side < 2; ++side) {
    for (size_t column = 0; column < 8; ++column) expect_column(set, side, column, pairs);
  }
  std::vector<int> positions(pairs.size() + 1);
  ASSERT_EQ(RQXGetRowNo1M(join_, set, 1, static_cast<int>(pairs.size()), positions.data()),
            static_cast<int>(pairs.size()));
  for (size_t i = 0; i < pairs.size(); ++i) EXPECT_EQ(positions[i], static_cast<int>(i) + 1);
  int value = 0;
  int type = 0;
  EXPECT_EQ(RQXGetData(join_, 1, set, static_cast<int>(pairs.size()), &type, &value),
            QX_ERROR_NO_RECORD);
}

void JoinCase::reads_as_nested_loops_pair() {
  expect_set(1, sets_[1]);
  EXPECT_EQ(RQXGetTotalRows(join_), RQXGetSetSize(join_, 1));
  if (outer_) return;
  for (int side = 0; side < 2; ++side) {
    int table = 0;
    int set = 0;
    ASSERT_EQ(RQXPutJoinSetToParent(join_, side, 1, &table, &set), 0);
    EXPECT_EQ(tables_[side].rows(set), model_.unmatched(first_, side));
    ASSERT_EQ(RQXPutJoinSetToParent(join_, side, 0, &table, &set), 0);
    EXPECT_EQ(tables_[side].rows(set), sets_[1].side[side]);
    EXPECT_EQ(table, tables_[side].id());
  }
  const Pairs pairs = model_.pairs(sets_[1]);
  int table = 0;
  std::vector<int> wanted;
  for (const int row : sets_[1].side[0]) {
    const int first = std::find_if(pairs.begin(), pairs.end(), [&](const auto& pair) {
                        return pair.first == row;
                      })->second;
    if (std::find(wanted.begin(), wanted.end(), first) == wanted.end()) wanted.push_back(first);
  }
  const int set = RQXReturnSet2SlaveTable(join_, &table);
  EXPECT_EQ(tables_[1].rows(set), wanted);
}

void JoinCase::slave_columns_move_to_the_master() {
  const Pairs pairs = model_.pairs(sets_[1]);
  for (size_t column = 0; column < 7; ++column) {
    const Column& source = columns_of(1)[column].column;
    Column wanted{source.type, std::vector<Cell>(static_cast<size_t>(parents_[0].total_rows())), 0};
    for (auto pair = pairs.rbegin(); pair != pairs.rend(); ++pair) {
      if (pair->first == 0) continue;
      wanted.cells[static_cast<size_t>(pair->first) - 1] =
          pair->second == 0 ? Cell() : source.cells[static_cast<size_t>(pair->second) - 1];
    }
    for (Cell& cell : wanted.cells) cell = normal_form(cell, wanted.type);
    const int moved = require(RQXMoveSlaveFlt2Master(join_, filter_of(1, column)), "Move");
    char name[256];
    require(RQXGetFilterName(tables_[0].id(), moved, name), "RQXGetFilterName");
    EXPECT_EQ(tables_[0].texts(name), to_texts(wanted));
  }
}

void JoinCase::expect_new_set(int set, const JoinRowsOf& rows) {
  ASSERT_GT(set, 0) << hex(set);
  EXPECT_EQ(RQXGetCurrentSetID(join_), set);
  sets_[set] = model_.joined(rows);
  expect_set(set, sets_[set]);
}

std::vector<int> combined(int op, std::vector<int> a, std::vector<int> b) {
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  std::vector<int> out;
  const auto to = std::back_inserter(out);
  if (op == QX_SET_AND) std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), to);
  if (op == QX_SET_OR) std::set_union(a.begin(), a.end(), b.begin(), b.end(), to);
  if (op == QX_SET_ANDNOT) std::set_difference(a.begin(), a.end(), b.begin(), b.end(), to);
  return out;
}

/// A random operation on a random set.
void JoinCase::operate() {
  const auto any_set = [&] {
    return std::next(sets_.begin(), random_.below(static_cast<int>(sets_.size())));
  };
  const auto source = any_set();
  const int set = source->first;
  JoinRowsOf rows = source->second;
  int side = 0;
  std::string column;
  const int filter = any_filter(&side, &column);
  std::vector<int>& own = rows.side[side];
  const Column& values = parents_[side].column(column);
  const int direction = random_.below(2);
  const int operation = random_.below(8);
  SCOPED_TRACE("operation " + std::to_string(operation) + " on set " + std::to_string(set) +
               ", column " + column + " of side " + std::to_string(side));
  switch (operation) {
    case 0: {
      constexpr int kOpes[] = {QX_OPE_EQ, QX_OPE_BETWEEN, QX_OPE_LEQ, QX_OPE_GEQ, QX_OPE_NEQ};
      const int ope = kOpes[random_.below(5)];
      const Cell bounds[] = {random_.bound(values), random_.bound(values)};
      RawValues raw(values.type, {bounds[0], bounds[1]});
      own = parents_[side].search(column, ope, bounds[0], bounds[1], own);
      return expect_new_set(RQXSearchByField(join_, filter, set, ope, raw.value(0), raw.value(1)),
                            rows);
    }
    case 1: {
      const std::vector<Cell> cells = {random_.bound(values), random_.bound(values)};
      RawValues raw(values.type, cells);
      own = parents_[side].search_values(column, cells, own);
      return expect_new_set(RQXSearchByFieldNValues(join_, filter, set, 2, raw.data()), rows);
    }
    case 2:
      own = parents_[side].sort({{column, direction}}, own);
      rows.direction = side;
      return expect_new_set(random_.chance(50) ? RQXSortByField(join_, filter, set, direction)
                                               : QXSortByField(join_, filter, set, direction),
                            rows);
    case 3: {
      const std::string second = columns_of(side)[0].name;
      int filters[] = {filter, filter_of(side, 0), 0};
      int dirs[] = {direction, 1 - direction, 0};
      own = parents_[side].sort({{column, direction}, {second, 1 - direction}}, own);
      rows.direction = side;
      return expect_new_set(RQXIntegratedSortByField(join_, set, filters, dirs), rows);
    }
    case 4: {
      const int n = random_.below(20);
      own.erase(std::remove_if(own.begin(), own.end(), [&](int row) { return row > n; }),
                own.end());
      return expect_new_set(RQXSearchByRowNo(join_, filter, set, QX_OPE_LEQ, n, 0), rows);
    }
    case 5:
      std::sort(own.begin(), own.end());
      if (direction == QX_SORT_DESC) std::reverse(own.begin(), own.end());
      rows.direction = side;
      return expect_new_set(RQXSortByRowNo(join_, filter, set, direction), rows);
    case 6: {
      const auto other = any_set();
      const int op = random_.below(3);
      JoinRowsOf result;
      result.side[0] = combined(op, rows.side[0], other->second.side[0]);
      result.side[1] =
          op == QX_SET_ANDNOT ? rows.side[1] : combined(op, rows.side[1], other->second.side[1]);
      return expect_new_set(RQXSetOpeReal(join_, op, set, other->first), result);
    }
    default: {
      JoinRowsOf result;
      result.side[0] = combined(QX_SET_ANDNOT, parents_[0].all_rows(), rows.side[0]);
      result.side[1] = rows.side[1];
      return expect_new_set(RQXSetNotReal(join_, set), result);
    }
  }
}

void JoinCase::operations_make_the_sets_that_nested_loops_make() {
  for (int i = 0; i < 6 && !testing::Test::HasFailure(); ++i) operate();
  for (const auto& [set, rows] : sets_) {  // none has changed another
    expect_addressing(set, rows, model_.pairs(rows));
  }
}

class JoinModelTest : public EngineTest {};

TEST_F(JoinModelTest, ReadsAsNestedLoopsPair) {
  run_cases("JOIN", 25, &JoinCase::reads_as_nested_loops_pair);
}

TEST_F(JoinModelTest, SlaveColumnsMoveToTheMaster) {
  run_cases("JOIN", 25, &JoinCase::slave_columns_move_to_the_master);
}

TEST_F(JoinModelTest, OperationsMakeTheSetsThatNestedLoopsMake) {
  run_cases("JOIN", 25, &JoinCase::operations_make_the_sets_that_nested_loops_make);
}

}  // namespace
}  // namespace qxe::test
