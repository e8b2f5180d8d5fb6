// Walks through failures of what makes tables of others, sums up and joins.
#include "faults_fixture.h"

namespace qxe::test {
namespace {

int combine_tables(const Base& base) {
  char name[] = "both";
  return RQXCombineRealTableEx(name, 1, 1, base.id(), 1, own_columns, base.id(), 2, own_columns);
}

int combine_list(const Base& base) {
  int tables[] = {base.id(), base.id(), 0};
  int sets[] = {2, 1};
  int filters[] = {base.filter(kInt), 0};
  char name[] = "list";
  return RQXCombineTableList(name, tables, sets, filters, nullptr, nullptr, filters);
}

/// A summary from open to close. With one row in the set it works on a table of its own.
template <size_t measure, int set>
int summary_table(const Base& base) {
  _TRDimensionDef dims[2] = {{base.filter(kInt), ""}, {base.filter(kString), ""}};
  int done = 0;
  int status = RQXSummaryOpen(0, base.id(), set, 2, dims, base.filter(measure));
  if (status >= 0) status = RQXSummaryExec(0, 15, &done);
  if (status >= 0) status = RQXSummaryIntoRealTable(0, set == 1 ? 1 : 0);
  RQXSummaryClose(0);
  return status;
}

/// A summary's table, which gets the columns once more.
int appended_summary(const Base& base) {
  _TRDimensionDef dims[1] = {{base.filter(kInt), ""}};
  int done = 0;
  int status = RQXSummaryOpen(0, base.id(), 1, 1, dims, base.filter(kDecimal));
  if (status >= 0) status = RQXSummaryExec(0, 15, &done);
  if (status >= 0) status = RQXSummaryIntoRealTable2(0, QX_SUM_COUNT, 1);
  const int table = status;
  if (status >= 0) status = RQXAppendSummaryToRealTable(0, table, 31, 1);
  RQXSummaryClose(0);
  if (status >= 0) return table;
  if (table >= 0) RQXDeleteTable(table);
  RQXSetSavedFlag(1, 1, 1);  // as if the table had never been
  return status;
}

int named_summary_table(const Base& base) {
  static int map[kRows + 1];  // of all values to the first category
  static char name[] = "all";
  static char* names[] = {name, name, name};
  _TDimensionDef dims[1] = {{base.filter(kInt), 3, map, names, nullptr}};
  int done = 0;
  int status = QXSummaryOpen(0, base.id(), 1, 1, dims, 0);
  if (status >= 0) status = QXSummaryExec(0, 1, &done);
  if (status >= 0) status = QXSummaryIntoRealTable(0, 0);
  QXSummaryClose(0);
  return status;
}

template <int set>
int open_detail(const Base& base) {
  int type = 0, values = 0, distinct = 0;
  const int handle =
      RQXOpenDetailInfo(base.id(), set, base.filter(kString), &type, &values, &distinct);
  RQXCloseDetailInfo(-1);
  return handle < 0 ? handle : distinct;
}

std::string number(const Base&, int result) {
  return std::to_string(result);
}

INSTANTIATE_TEST_SUITE_P(
    Summaries, FaultsTest,
    testing::Values(Operation{"OfDoubles", summary_table<kDouble, 1>, imported, delete_table},
                    Operation{"Appended", appended_summary, imported, delete_table},
                    Operation{"OfDecimals", summary_table<kDecimal, 2>, imported, delete_table},
                    Operation{"OfStrings", summary_table<kString, 2>, imported, delete_table},
                    Operation{"Sparse", summary_table<kInt, 3>, imported, delete_table},
                    Operation{"Named", named_summary_table, imported, delete_table},
                    Operation{"Detail", open_detail<1>, number, keep},
                    Operation{"SparseDetail", open_detail<3>, number, keep}),
    case_name<Operation>);

INSTANTIATE_TEST_SUITE_P(
    DerivedTables, FaultsTest,
    testing::Values(Operation{"Duplicate",
                              [](const Base& base) {
                                return RQXDuplicateRealTable("new", base.id());
                              },
                              imported, delete_table},
                    Operation{"Extract",
                              [](const Base& base) {
                                return RQXExtractRealTable("new", base.id(), 2, all_columns);
                              },
                              imported, delete_table},
                    Operation{"Combine", combine_tables, imported, delete_table},
                    Operation{"CombineList", combine_list, imported, delete_table}),
    case_name<Operation>);

/// All columns together are too many for a cube.
template <int dimensions>
int sum_up(const Base& base) {
  int flags[] = {31, 31, 7, 31};
  int digits[] = {-1, -1, -1, -1};
  int measures[] = {base.filter(kInt), base.filter(kDate), base.filter(kString),
                    base.filter(kDecimal)};
  return RQXNonCubeSum(base.id(), 2, dimensions, own_columns, 4, measures, flags, digits);
}

INSTANTIATE_TEST_SUITE_P(OneCallSummaries, FaultsTest,
                         testing::Values(Operation{"SumCube", sum_up<1>, imported, delete_table},
                                         Operation{"SumSortedRows", sum_up<7>, imported,
                                                   delete_table}),
                         case_name<Operation>);

// Condensing works on a table that has more values than its rows use.

std::string condensed(const Base& base, int table) {
  std::string text = table_text(table);
  for (size_t i = 0; i < base.columns(); ++i) {
    _TRFilterInfo info = {};
    require(RQXGetFilterInfo(table, base.filter(i), &info), "RQXGetFilterInfo");
    text += std::to_string(info.valueCount) + " ";
  }
  return text;
}

using CondenseFaultsTest = EngineTest;

TEST_F(CondenseFaultsTest, RowsKeepTheirValues) {
  const Base base;
  int none[8] = {};
  char name[] = "sparse";
  std::string wanted;
  walk([&](const Fault& fault) {
    // Six rows and the values of all.
    const int table = require(
        RQXCombineRealTable(name, base.id(), 2, own_columns, base.id(), 2, none), "Combine");
    const std::string before = table_text(table);
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = RQXCondenseRealTable(table);
      fired = armed.fired();
    }
    EXPECT_EQ(table_text(table), before);
    if (status < 0) {
      expect_failure(status, QX_ERROR_OUT_OF_MEMORY);
      EXPECT_EQ(RQXCondenseRealTable(table), 0);
    }
    if (wanted.empty()) wanted = condensed(base, table);
    EXPECT_EQ(condensed(base, table), wanted);
    require(RQXDeleteTable(table), "RQXDeleteTable");
    return fired;
  });
}

// A failure leaves marked sets as they were, in the filter's order or not.

struct MarkCase {
  const char* name;
  bool marked;
  bool filled;
  bool enabled;
  std::function<int(int table)> call;
  bool ordered_after;
};

class MarkFaultsTest : public EngineTest, public testing::WithParamInterface<MarkCase> {
 protected:
  /// All rows of a set as a search by the first filter gives them.
  static Rows rows(const Base& base, int set) {
    const int found = RQXSearchByFieldIntR1(base.id(), 1, set, QX_OPE_GEQ, QX_NULL_INT, 0);
    Rows rows = base.table().rows(found);
    RQXDeleteSet(base.id(), found);
    return rows;
  }

  static void prepare(int table) {
    for (const int set : {1, 2}) RQXHighSpeedSearchSetMark(table, set, 1, GetParam().marked);
    RQXHighSpeedSearchEnable(table, 1, GetParam().filled);
    RQXHighSpeedSearchEnable(table, 1, GetParam().enabled);
  }

  static void clear(int table) {
    RQXHighSpeedSearchEnable(table, 1, false);
    for (const int set : {1, 2}) RQXHighSpeedSearchSetMark(table, set, 1, false);
  }
};

TEST_P(MarkFaultsTest, MarksStayAsTheyWere) {
  const Base base;
  const int table = base.id();
  const Rows plain = rows(base, 1);
  walk([&](const Fault& fault) {
    prepare(table);
    const Rows before[] = {rows(base, 1), rows(base, 2)};
    EXPECT_EQ(before[0] != plain, GetParam().filled);
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = GetParam().call(table);
      fired = armed.fired();
    }
    if (status < 0) {
      expect_failure(status, QX_ERROR_OUT_OF_MEMORY);
      EXPECT_EQ(RQXHighSpeedSearchHasMark(table, 1, 1), GetParam().marked ? 1 : 0);
      EXPECT_EQ(RQXHighSpeedSearchIsEnabled(table, 1), GetParam().enabled ? 1 : 0);
      EXPECT_EQ(rows(base, 1), before[0]);
      EXPECT_EQ(rows(base, 2), before[1]);
    } else {
      EXPECT_EQ(rows(base, 1) != plain, GetParam().ordered_after);
    }
    clear(table);
    return fired;
  });
}

int search_and_delete(int table) {
  const int found = RQXSearchByFieldIntR1(table, 1, 1, QX_OPE_NEQ, 1, 0);
  return found < 0 ? found : RQXDeleteSet(table, found);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, MarkFaultsTest,
    testing::Values(
        MarkCase{"Mark", false, false, true,
                 [](int table) { return RQXHighSpeedSearchSetMark(table, 1, 1, true); }, true},
        MarkCase{"Enable", true, false, false,
                 [](int table) { return RQXHighSpeedSearchEnable(table, 0, true); }, true},
        MarkCase{"Search", true, true, true, search_and_delete, true},
        MarkCase{"Overwrite", true, true, false,
                 [](int table) { return RQXOverwriteRealExIntR1(table, 1, 1, 1, 4711); }, false}),
    case_name<MarkCase>);

// ... on joins, of the table with itself

constexpr char kJoinName[] = "joined";

int add_join(const Base& base, int outer, std::initializer_list<size_t> columns) {
  char name[] = "joined";
  int keys[QX_MAX_JOIN_KEYS] = {};
  std::transform(columns.begin(), columns.end(), keys,
                 [&](size_t column) { return base.filter(column); });
  return RQXAddJoinTable(name, outer, base.id(), 2, keys, base.id(), 1, keys);
}

std::string pairs_of(int join, int set) {
  const TestTable reader = TestTable::existing(join);
  std::string text;
  for (const char* column : {"int", "int_#1"}) {
    for (const std::string& value : reader.texts(column, set)) text += value + " ";
  }
  return text;
}

Operation adding_join(const char* name, int outer, std::initializer_list<size_t> columns) {
  return {name,
          [outer, keys = std::vector<size_t>(columns)](const Base& base) {
            return keys.size() == 1
                       ? add_join(base, outer, {keys[0]})
                       : add_join(base, outer, {keys[0], keys[1], keys[2], keys[3], keys[4]});
          },
          [](const Base&, int join) { return pairs_of(join, 1); },
          [](const Base&, int join) { RQXDeleteTable(join); }};
}

/// A join for the operations below; the first call, which meets no fault, makes it.
int the_join(const Base& base) {
  const int join = RQXGetTableIDFromName(kJoinName);
  return join > 0 ? join : require(add_join(base, 1, {kString}), "RQXAddJoinTable");
}

Operation adding_join_set(const char* name, std::function<int(const Base&, int join)> call) {
  return {name, [call](const Base& base) { return call(base, the_join(base)); },
          [](const Base& base, int set) { return pairs_of(the_join(base), set); },
          [](const Base& base, int set) {
            if (set >= 0) require(RQXDeleteSet(the_join(base), set), "RQXDeleteSet");
          }};
}

INSTANTIATE_TEST_SUITE_P(
    Joins, FaultsTest,
    testing::Values(
        adding_join("Inner", 0, {kInt}), adding_join("Outer", 1, {kString}),
        adding_join("SeveralKeys", 0, {kInt, kString, kDouble, kDecimal, kDate}),
        adding_join_set("SearchJoin",
                        [](const Base& base, int join) {
                          return RQXSearchByField(join, 1, 1, QX_OPE_GEQ,
                                                  base.values(kInt).value(3), nullptr);
                        }),
        adding_join_set("SortJoin",
                        [](const Base&, int join) { return RQXSortByField(join, 8, 1, 1); }),
        adding_join_set("JoinSets",
                        [](const Base&, int join) { return RQXSetOpeReal(join, 1, 1, 1); }),
        adding_join_set("JoinComplement",
                        [](const Base&, int join) { return RQXSetNotReal(join, 1); }),
        Operation{"MovedColumn",
                  [](const Base& base) { return RQXMoveSlaveFlt2Master(the_join(base), 12); },
                  values_of_filter, delete_filter}),
    case_name<Operation>);

// ... on the ways out of joins

constexpr char kInnerName[] = "inner";

/// An inner join of the table with itself.
int the_inner_join(const Base& base) {
  const int known = RQXGetTableIDFromName(kInnerName);
  if (known > 0) return known;
  const int join = require(add_join(base, 0, {kInt}), "RQXAddJoinTable");
  require(RQXSetTableName(join, kInnerName), "RQXSetTableName");
  return join;
}

int realize_join(const Base& base) {
  char name[] = "real";
  int filters[] = {1, 5, 14, 0};
  return RQXConvertJoinToReal(name, the_join(base), 1, 1, 1, filters, 0);
}

int write_tree(const Base& base) {
  static int tables[QX_MAX_CHAIN + 1];
  static int sets[2][QX_MAX_CHAIN];
  char name[] = "tree";
  int joins[] = {the_inner_join(base), 0};
  int filters[2][QX_MAX_ASSOCIATION] = {{1}, {1}};
  return RQXRealizeJoinChainEx(name, joins, 1, filters, tables, sets);
}

/// A tree whose columns come and go.
int the_tree(const Base& base) {
  const int known = RQXGetTableIDFromName("tree");
  return known > 0 ? known : require(write_tree(base), "RQXRealizeJoinChainEx");
}

int qualify_tree(const Base& base) {
  int filters[] = {base.filter(kString), base.filter(kDecimal), 0};
  return RQXQualifyTree(the_tree(base), 1, base.id(), filters, 0);
}

INSTANTIATE_TEST_SUITE_P(
    JoinExits, FaultsTest,
    testing::Values(
        adding_set("SemiJoin",
                   [](const Base& base) {
                     return RQXExtractJoinInOut(base.id(), 1, 1, base.id(), 2, 1, 1);
                   }),
        Operation{"Realize", realize_join, imported, delete_table},
        Operation{"Tree", write_tree, imported, delete_table},
        Operation{"Qualify", qualify_tree,
                  [](const Base& base, int) { return table_text(the_tree(base)); },
                  [](const Base& base, int status) {
                    for (int id = 5; status >= 0 && id > 3; --id) {
                      RQXDeleteRealFilter(
                          the_tree(base),
                          RQXGetFilterIDFromName(the_tree(base), id == 5 ? "decimal" : "string"));
                    }
                  }},
        Operation{"OpenBlocks", [](const Base& base) { return QXJBAOpen(0, the_join(base), 1); },
                  nothing, [](const Base&, int) { QXJBAClose(0); }},
        Operation{"Callbacks",
                  [](const Base& base) {
                    return QXUniqueRowCallBack(the_join(base), 0, 1, nullptr,
                                               [](int, int, int, _TColumnBuf*) { return 0; });
                  },
                  nothing, keep}),
    case_name<Operation>);

}  // namespace
}  // namespace qxe::test
