// Random joins and their ways out, each against the join as it reads row by row: realised tables,
// blocks, callbacks, export, database files. Chains, trees and semi-joins against plain loops.
//
// QXE_JOIN_SECONDS=n in the environment makes each test run for n seconds, from seed QXE_JOIN_SEED
// on.
#include <algorithm>
#include <functional>
#include <map>
#include <set>

#include "support/engine_test.h"
#include "support/files.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/run_seeds.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Texts = std::vector<std::string>;

std::string name_of(int table, int filter) {
  char name[256];
  require(RQXGetFilterName(table, filter, name), "RQXGetFilterName");
  return name;
}

/// A set of a table, column by column.
std::map<std::string, Texts> columns_of(int table, int set) {
  int ids[1024];
  const int count = require(RQXGetFilterIDList(table, ids), "RQXGetFilterIDList");
  std::map<std::string, Texts> columns;
  for (int i = 0; i < count; ++i) {
    const std::string name = name_of(table, ids[i]);
    columns[name] = TestTable::existing(table).texts(name, set);
  }
  return columns;
}

class JoinExitsCase {
 public:
  explicit JoinExitsCase(unsigned seed) : random_(seed) {
    const TestTable master = random_parent("master");
    const TestTable slave = random_parent("slave");
    int keys[] = {1 + random_.below(2) * 4, 0};  // integers or texts
    char name[] = "join";
    outer_ = random_.chance(40);
    join_ = require(RQXAddJoinTable(name, outer_, master.id(), 1, keys, slave.id(), 1, keys),
                    "RQXAddJoinTable");
    const TestTable pairs = TestTable::existing(join_);
    sets_ = {1, pairs.sort("double_#1"), pairs.search("int", QX_OPE_GEQ, 1)};
  }

  void realized_tables_read_as_the_join();
  void exports_write_what_the_realized_tables_write();
  void blocks_and_callbacks_show_the_pairs();
  void unique_rows_are_the_first_of_their_values();
  void database_files_keep_joins();
  void semi_joins_keep_rows_whose_value_occurs();
  void chains_are_written_out_as_trees();

 private:
  /// A column of each type and, last, the row numbers. Few values, so that keys meet.
  TestTable random_parent(const std::string& name) {
    const int rows = random_.chance(10) ? 0 : random_.below(30);
    Columns columns = random_.table(rows);
    std::vector<int> numbers;
    for (size_t row = 0; row < static_cast<size_t>(rows); ++row) {
      columns[0].column.cells[row] = random_.chance(20) ? Cell() : Cell(random_.below(6));
      columns[4].column.cells[row] = std::string(1, static_cast<char>('a' + random_.below(5)));
      numbers.push_back(static_cast<int>(row) + 1);
    }
    columns.push_back({"no", ints(numbers)});
    return TestTable(columns, name);
  }

  int realized(int set, std::vector<int> filters, bool rows = false) {
    filters.push_back(0);
    char name[] = "real";
    const auto convert = random_.chance(50) ? RQXConvertJoinToReal : QXConvertJoinToReal;
    return require(convert(name, join_, set, rows, rows, filters.data(), 0), "ConvertJoinToReal");
  }

  std::vector<int> all_filters() const {
    std::vector<int> ids(16);
    require(RQXGetFilterIDList(join_, ids.data()), "RQXGetFilterIDList");
    return ids;
  }

  TempDir directory_;
  RandomData random_;
  bool outer_ = false;
  int join_ = 0;
  std::vector<int> sets_;
};

/// Row numbers as they read: a missing row has none.
Texts with_zeros(Texts numbers) {
  std::replace(numbers.begin(), numbers.end(), std::string("NULL"), std::string("0"));
  return numbers;
}

void JoinExitsCase::realized_tables_read_as_the_join() {
  for (const int set : sets_) {
    SCOPED_TRACE(set);
    const auto wanted = columns_of(join_, set);
    auto found = columns_of(realized(set, all_filters(), true), 1);
    EXPECT_EQ(found["MRecNo"], with_zeros(wanted.at("no")));
    EXPECT_EQ(found["SRecNo"], with_zeros(wanted.at("no_#1")));
    found.erase("MRecNo");
    found.erase("SRecNo");
    EXPECT_EQ(found, wanted);

    const int filters[] = {3, QX_FLT_SRECNO, 16};
    const int some = realized(set, {filters, filters + 3});
    EXPECT_EQ(columns_of(some, 1),
              (std::map<std::string, Texts>{{name_of(join_, 3), wanted.at(name_of(join_, 3))},
                                            {"SRecNo", with_zeros(wanted.at("no_#1"))},
                                            {name_of(join_, 16), wanted.at("no_#1")}}));
    EXPECT_EQ(name_of(some, 2), "SRecNo");
  }
}

void JoinExitsCase::exports_write_what_the_realized_tables_write() {
  std::vector<int> ids = all_filters();
  ids.push_back(-1);
  for (const int set : sets_) {
    SCOPED_TRACE(set);
    const int real = realized(set, all_filters());
    const int from = 1 + random_.below(3);
    std::string texts[2];
    for (const bool is_real : {false, true}) {
      const int table = is_real ? real : join_;
      const int own_set = is_real ? 1 : set;
      const auto path = directory_.path().c_str();
      require(RQXExportAsCSV(table, own_set, ids.data(), -1, -1, path, "t.csv", '/'), "Export");
      require(RQXSaveAsCatalog(table, own_set, ids.data(), 1, from, -1, '-', path, "t.cat"),
              "RQXSaveAsCatalog");
      for (const char* const file : {"t.csv", "t.cat", "SrcData.dat"}) {
        texts[is_real] += read_file(directory_ / file) + "--";
      }
    }
    EXPECT_EQ(texts[0], texts[1]);
  }
}

/// The value of column `i`, place `k`.
std::string text_of(const _TColumnBuf* columns, int i, int k) {
  const _TColumnBuf& column = columns[i];
  const void* const value = column.values[k];
  switch (column.type) {
    case QX_DT_INTEGER:
      return to_text(normal_form(*static_cast<const int*>(value), column.type), column.type);
    case QX_DT_STRING: return to_text(std::string(static_cast<const char*>(value)), column.type);
    case QX_DT_DECIMAL: return "decimal";
    default:
      return to_text(normal_form(*static_cast<const double*>(value), column.type), column.type);
  }
}

/// Reads all blocks into columns like columns_of, decimals left out.
std::map<std::string, Texts> read_blocks(int table, int set) {
  std::map<std::string, Texts> found;
  int block = 0, first = 0, last = 0, master = 0, slaves = 0, count = 0;
  int* slave_rows = nullptr;
  _TColumnBuf* columns = nullptr;
  int largest = 0;
  EXPECT_EQ(QXJBAStatus(3, &largest), 1);
  int rows = 0;
  int widest = 0;
  int more = 1;
  for (int wanted = 1; more == 1; ++wanted) {
    more = QXJBARead(3, &block, &first, &last, &master, &slaves, &slave_rows, &count, &columns);
    EXPECT_GE(more, 0) << hex(more);
    if (more < 0) return found;
    EXPECT_EQ(std::vector<int>({block, first, last}),
              std::vector<int>({wanted, rows + 1, rows + slaves}));
    widest = std::max(widest, slaves);
    for (int k = 0; k < slaves; ++k, ++rows) {
      for (int i = 0; i < count; ++i) {
        EXPECT_EQ(columns[i].count, columns[i].driving ? 1 : slaves);
        found[name_of(table, columns[i].filterId)].push_back(
            text_of(columns, i, columns[i].driving ? 0 : k));
      }
    }
  }
  EXPECT_EQ(more, 0);
  EXPECT_EQ(widest, largest);
  EXPECT_EQ(rows, RQXGetSetSize(table, set));
  EXPECT_EQ(QXJBARead(3, &block, &first, &last, &master, &slaves, &slave_rows, &count, &columns),
            -1);
  EXPECT_EQ(QXJBAClose(3), 0);
  return found;
}

/// What the rows are that a callback has seen.
struct Visits {
  Texts rows;
  int limit = -1;  // calls until it stops
};
Visits visits;

std::string pair_text(const std::string& master, const std::string& slave) {
  return master + " " + slave;
}

int note_row(int /*block*/, int first, int last, int /*master*/, int slaves, int /*slave*/,
             int count, _TColumnBuf* columns) {
  EXPECT_EQ(last - first + 1, slaves);
  visits.rows.push_back(pair_text(text_of(columns, 0, 0), text_of(columns, count - 1, 0)));
  RQXGetNTable();  // the engine can be called
  return static_cast<int>(visits.rows.size()) == visits.limit ? 1 : 0;
}

Texts zipped(const Texts& left, const Texts& right) {
  Texts result;
  for (size_t i = 0; i < left.size(); ++i) result.push_back(pair_text(left[i], right[i]));
  return result;
}

void JoinExitsCase::blocks_and_callbacks_show_the_pairs() {
  for (const int set : sets_) {
    SCOPED_TRACE(set);
    auto wanted = columns_of(join_, set);
    if (RQXGetSetSize(join_, set) == 0) {
      EXPECT_EQ(QXJBAOpen(3, join_, set), QX_JBA_EMPTY_SET);
      continue;
    }
    ASSERT_EQ(QXJBAOpen(3, join_, set), 0);
    auto found = read_blocks(join_, set);
    for (const char* const name : {"decimal", "decimal_#1"}) {
      wanted.erase(name);
      found.erase(name);
    }
    EXPECT_EQ(found, wanted);

    int filters[] = {8, 1, 16, 0};
    const Texts rows = zipped(wanted.at("no"), wanted.at("no_#1"));
    visits = {};
    EXPECT_EQ(QXRowInfoCallBack(join_, 3, set, filters, note_row), 0);
    EXPECT_EQ(visits.rows, rows);
    visits = {{}, 1 + random_.below(static_cast<int>(rows.size()))};
    EXPECT_EQ(QXRowInfoCallBack(join_, 3, set, filters, note_row), 0);
    EXPECT_EQ(visits.rows, Texts(rows.begin(), rows.begin() + visits.limit));
  }
}

std::vector<int> positions;

int note_position(int position, int /*row*/, int /*count*/, _TColumnBuf* /*columns*/) {
  positions.push_back(position);
  return 0;
}

void JoinExitsCase::unique_rows_are_the_first_of_their_values() {
  for (const int set : sets_) {
    if (RQXGetSetSize(join_, set) == 0) continue;
    int filters[] = {1 + random_.below(16), 1 + random_.below(16), 0};
    const TestTable reader = TestTable::existing(join_);
    const Texts rows = zipped(reader.texts(name_of(join_, filters[0]), set),
                              reader.texts(name_of(join_, filters[1]), set));
    std::vector<int> wanted;
    std::set<std::string> seen;
    for (size_t i = 0; i < rows.size(); ++i) {
      if (seen.insert(rows[i]).second) wanted.push_back(static_cast<int>(i) + 1);
    }
    positions.clear();
    EXPECT_EQ(QXUniqueRowCallBack(join_, 0, set, filters, note_position), 0);
    EXPECT_EQ(positions, wanted);
  }
}

void JoinExitsCase::database_files_keep_joins() {
  std::vector<std::map<std::string, Texts>> before;
  for (const int set : sets_) before.push_back(columns_of(join_, set));
  char path[512];
  snprintf(path, sizeof path, "%s", directory_.path().c_str());
  require(RQXDeleteTable(TestTable({{"a", ints({1})}}, "gap").id()), "RQXDeleteTable");
  require(RQXSaveDBAs(path, "joins"), "RQXSaveDBAs");
  require(RQXLoadDB(directory_.path().c_str(), "joins"), "RQXLoadDB");
  for (size_t i = 0; i < sets_.size(); ++i) EXPECT_EQ(columns_of(join_, sets_[i]), before[i]);
  EXPECT_EQ(RQXGetCurrentSetID(join_), sets_.back());
  const TestTable pairs = TestTable::existing(join_);
  EXPECT_EQ(pairs.texts("no", pairs.sort("double_#1", QX_SORT_ASC, 1)), before[1].at("no"));
  EXPECT_EQ(pairs.texts("no", pairs.search("int", QX_OPE_GEQ, 1, {}, 1)), before[2].at("no"));
  int master = 0;
  int slave = 0;
  ASSERT_EQ(RQXGetJoinSrcTblIDs(join_, &master, &slave), 0);
  EXPECT_EQ(RQXDeleteTable(slave), QX_ERROR_REFERRED);
}

// Semi-joins

void JoinExitsCase::semi_joins_keep_rows_whose_value_occurs() {
  const TestTable left = random_parent("left");
  const TestTable right = random_parent("right");
  const auto any_set = [&](const TestTable& table) {
    return random_.chance(30) ? 1 : table.add_set(random_.set_of(table.total_rows()));
  };
  for (int i = 0; i < 4; ++i) {
    const int sets[] = {any_set(left), any_set(right)};
    const Texts others = right.texts("int", sets[1]);
    const Texts own = left.texts("int", sets[0]);
    const std::vector<int> rows = left.rows(sets[0]);
    for (const bool out : {false, true}) {
      std::vector<int> wanted;
      for (size_t row = 0; row < own.size(); ++row) {
        const bool met = std::find(others.begin(), others.end(), own[row]) != others.end();
        if (met != out) wanted.push_back(rows[row]);
      }
      const auto extract = random_.chance(50) ? RQXExtractJoinInOut : QXExtractJoinInOut;
      const int set = extract(left.id(), sets[0], 1, right.id(), sets[1], 1, out);
      ASSERT_GT(set, 0) << hex(set);
      EXPECT_EQ(left.rows(set), wanted);
      EXPECT_EQ(RQXGetCurrentSetID(left.id()), set);
    }
  }
}

// Chains

struct Node {
  int depth;
  int row;
};

/// Levels of a hierarchy: a child has the number of its parent's value.
class Hierarchy {
 public:
  Hierarchy(RandomData& random, int levels) {
    for (int level = 0; level < levels; ++level) {
      const int rows = random.below(7);
      std::vector<int> up;
      std::vector<int> down;
      for (int row = 0; row < rows; ++row) {
        up.push_back(random.chance(10) ? kNullInt : random.below(4));
        down.push_back(random.chance(10) ? kNullInt : random.below(4));
      }
      ups_.push_back(up);
      downs_.push_back(down);
      tables_.emplace_back(Columns{{"up", ints(up)}, {"down", ints(down)}});
    }
    for (size_t i = 0; i + 1 < tables_.size(); ++i) {
      char name[] = "link";
      int down[] = {2, 0};
      int up[] = {1, 0};
      joins_.push_back(
          require(RQXAddJoinTable(name, 0, tables_[i].id(), 1, down, tables_[i + 1].id(), 1, up),
                  "RQXAddJoinTable"));
    }
    joins_.push_back(0);
  }

  const std::vector<int>& up(size_t level) const { return ups_[level]; }
  const TestTable& table(size_t level) const { return tables_[level]; }
  int* joins() { return joins_.data(); }

  std::vector<Node> nodes() const {
    std::vector<Node> found;
    for (size_t row = 0; row < ups_[0].size(); ++row) walk(0, row, &found);
    return found;
  }

 private:
  void walk(size_t level, size_t row, std::vector<Node>* found) const {
    found->push_back({static_cast<int>(level), static_cast<int>(row) + 1});
    if (level + 1 == ups_.size()) return;
    for (size_t child = 0; child < ups_[level + 1].size(); ++child) {
      if (ups_[level + 1][child] == downs_[level][row]) walk(level + 1, child, found);
    }
  }

  std::vector<std::vector<int>> ups_;
  std::vector<std::vector<int>> downs_;
  std::vector<TestTable> tables_;
  std::vector<int> joins_;
};

Texts texts_of(const std::vector<int>& values) {
  return to_texts(ints(values));
}

void JoinExitsCase::chains_are_written_out_as_trees() {
  Hierarchy hierarchy(random_, 2 + random_.below(4));
  const std::vector<Node> nodes = hierarchy.nodes();
  int tables[QX_MAX_CHAIN + 1] = {};
  int sets[2][QX_MAX_CHAIN] = {};
  int filters[QX_MAX_CHAIN + 1][QX_MAX_ASSOCIATION];
  for (auto& level : filters) std::fill(std::begin(level), std::end(level), 1);
  char name[] = "tree";
  const int tree = RQXRealizeJoinChainEx(name, hierarchy.joins(), 2, filters, tables, sets);
  ASSERT_GT(tree, 0) << hex(tree);
  std::vector<int> depths;
  std::vector<int> rows;
  std::vector<int> ups;
  for (const Node& node : nodes) {
    depths.push_back(node.depth);
    rows.push_back(node.row);
    ups.push_back(hierarchy.up(static_cast<size_t>(node.depth))[static_cast<size_t>(node.row) - 1]);
  }
  const TestTable reader = TestTable::existing(tree);
  EXPECT_EQ(reader.texts("depth"), texts_of(depths));
  EXPECT_EQ(reader.texts("RECNO"), texts_of(rows));
  EXPECT_EQ(reader.texts("data_0"), texts_of(ups));
  EXPECT_EQ(reader.texts("data_1"), texts_of(ups));
  EXPECT_EQ(tables[1], hierarchy.table(1).id());
  EXPECT_EQ(sets[0][0], 1);
  EXPECT_EQ(sets[1][0], 1);

  // Columns of level 1.
  for (const bool inherited : {false, true}) {
    int source[] = {1, 99, 2, 0};
    ASSERT_EQ(RQXQualifyTree(tree, 1, tables[1], source, inherited), 0);
    std::vector<int> wanted;
    int last = kNullInt;
    for (size_t i = 0; i < nodes.size(); ++i) {
      if (nodes[i].depth == 1) last = ups[i];
      const bool below = inherited && nodes[i].depth > 1;
      wanted.push_back(nodes[i].depth == 1 || below ? last : kNullInt);
    }
    EXPECT_EQ(reader.texts(inherited ? "up_#1" : "up"), texts_of(wanted));
  }
  // All but the roots, by the row numbers of a table that has enough of them.
  std::vector<int> numbers;
  for (int i = 1; i <= 7; ++i) numbers.push_back(i * 10);
  const TestTable tens({{"ten", ints(numbers)}});
  int ten[] = {1, 0};
  ASSERT_EQ(QXQualifyTree(tree, -1, tens.id(), ten, 0), 0);
  std::vector<int> wanted;
  for (const Node& node : nodes) wanted.push_back(node.depth == 0 ? kNullInt : node.row * 10);
  EXPECT_EQ(reader.texts("ten"), texts_of(wanted));
}

class JoinExitsTest : public EngineTest {};

TEST_F(JoinExitsTest, RealizedTablesReadAsTheJoin) {
  run_cases("JOIN", 30, &JoinExitsCase::realized_tables_read_as_the_join);
}

TEST_F(JoinExitsTest, ExportsWriteWhatTheRealizedTablesWrite) {
  run_cases("JOIN", 30, &JoinExitsCase::exports_write_what_the_realized_tables_write);
}

TEST_F(JoinExitsTest, BlocksAndCallbacksShowThePairs) {
  run_cases("JOIN", 30, &JoinExitsCase::blocks_and_callbacks_show_the_pairs);
}

TEST_F(JoinExitsTest, UniqueRowsAreTheFirstOfTheirValues) {
  run_cases("JOIN", 30, &JoinExitsCase::unique_rows_are_the_first_of_their_values);
}

TEST_F(JoinExitsTest, DatabaseFilesKeepJoins) {
  run_cases("JOIN", 30, &JoinExitsCase::database_files_keep_joins);
}

TEST_F(JoinExitsTest, SemiJoinsKeepRowsWhoseValueOccurs) {
  run_cases("JOIN", 30, &JoinExitsCase::semi_joins_keep_rows_whose_value_occurs);
}

TEST_F(JoinExitsTest, ChainsAreWrittenOutAsTrees) {
  run_cases("JOIN", 30, &JoinExitsCase::chains_are_written_out_as_trees);
}

}  // namespace
}  // namespace qxe::test
