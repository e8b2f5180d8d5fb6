// Every operation is walked through all the places where memory, files or threads can fail it: it
// tells by its status, changes nothing, and works again once the fault is gone.
#include "support/faults.h"

#include <string.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

constexpr int kRows = 60;

/// What an operation works on: a table with a column of each type, and files to read.
class Base {
 public:
  Base() : columns_(RandomData(7).table(kRows)), table_(columns_, "base") {
    table_.add_set({9, 8, 7, 3, 2, 1});
    table_.add_set({40});
    RQXChangeCurrentSetID(table_.id(), 1);
    for (const NamedColumn& named : columns_) values_.emplace_back(new RawValues(named.column));
    write_file("format.txt", "double\t2\tROUNDUP\ndecimal\t1\tROUNDHALFUP\n");
    write_file("values.txt", "1\n2\n\n4\n");
    write_file("texts.bin", std::string("\0\0\0\3new\0\0\0\0\0\0\0\1x", 16));
    write_rows();
    require(RQXSaveRealTableAs("", "stored", id()), "RQXSaveRealTableAs");
    write_file("inside.dat", std::string(100, ' '));
    const int tables[] = {id(), -1};
    long end = 0;
    require(RQXSaveRealTable2("inside.dat", 100, tables, &end), "RQXSaveRealTable2");
  }

  int id() const { return table_.id(); }
  const TestTable& table() const { return table_; }
  size_t columns() const { return columns_.size(); }
  const NamedColumn& column(size_t i) const { return columns_[i]; }
  int filter(size_t i) const { return static_cast<int>(i) + 1; }
  /// Values of column i as calls take them.
  RawValues& values(size_t i) const { return *values_[i]; }

 private:
  /// Rows to append, a few pages of them, and catalogs with the table's decimals and shorter ones.
  void write_rows() const {
    const std::string columns = "I\t1\ta\nF\t1\tb\nD\t1\tc\nT\t1\td\nA\t1\te\nE\t1\tf\nN\t1\tg\t";
    const int scale = columns_[6].column.scale;
    write_file("rows.cat", "//CSV\n" + columns + std::to_string(scale) + "\n");
    write_file("digits.cat", "//CSV\n" + columns + std::to_string(scale - 1) + "\n");
    std::string text;
    for (int i = 0; i < 30; ++i) {
      const std::string number = std::to_string(i % 20);
      text += number + "," + number + ".5,2024/3/1,12:00:" + number + "," + std::string(300, 'x') +
              number + ",2024/3/1 12:00:" + number + ",-" + number + ".1\n";
    }
    write_file("rows.csv", text);
  }

  const Columns columns_;
  const TestTable table_;
  std::vector<std::unique_ptr<RawValues>> values_;
};

struct Operation {
  const char* name;
  /// The call under test, with nothing around it that allocates.
  std::function<int(const Base&)> call;
  /// Whether it did its work; the text is compared with that of a run without a fault.
  std::function<std::string(const Base&, int result)> outcome;
  std::function<void(const Base&, int result)> undo;
  /// Status of a file that cannot be used, besides QX_ERROR_FILE.
  int file_status = QX_ERROR_FILE;
};

/// Calls `run(fault)` with every fault until it tells that the fault did not fire: each failure by
/// itself, and all from one on, in longer steps where there are many.
template <class Run>
void walk(Run&& run) {
  for (const FaultKind kind : {FaultKind::kAllocation, FaultKind::kFileCall, FaultKind::kThread}) {
    for (const bool persistent : {false, true}) {
      bool fired = true;
      for (long after = 0; fired && !testing::Test::HasFailure();
           after += persistent && after > 50 ? 7 : 1) {
        const Fault fault{kind, after, persistent};
        SCOPED_TRACE(to_text(fault));
        fired = run(fault);
      }
    }
  }
}

class FaultsTest : public EngineTest, public testing::WithParamInterface<Operation> {
 protected:
  FaultsTest() {
    RQXSetSavedFlag(1, 1, 1);
    drain_ring();
  }

  /// One call with a fault. Returns whether it fired.
  bool run(const Fault& fault) {
    const Operation& operation = GetParam();
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = operation.call(base_);
      fired = armed.fired();
    }
    if (status >= 0 || !fired) {
      expect_success(status);
    } else {
      expect_failure_of(fault.kind, status);
      EXPECT_EQ(database_text(), before);
    }
    return fired;
  }

  void run_without_fault() {
    drain_ring();
    expect_success(GetParam().call(base_));
  }

  void learn_outcome() {
    wanted_status_ = GetParam().call(base_);
    if (wanted_status_ >= 0) wanted_ = GetParam().outcome(base_, wanted_status_);
    GetParam().undo(base_, wanted_status_);
  }

 private:
  void expect_success(int status) {
    if (wanted_status_ < 0) {
      EXPECT_EQ(hex(status), hex(wanted_status_));
    } else if (status < 0) {
      ADD_FAILURE() << "status " << hex(status) << "; " << to_text(drain_ring());
    } else {
      EXPECT_EQ(GetParam().outcome(base_, status), wanted_);
    }
    GetParam().undo(base_, status);
  }

  void expect_failure_of(FaultKind kind, int status) {
    const std::vector<RingEntry> entries = drain_ring();
    const bool promised =
        status == wanted_status_ ||
        (kind == FaultKind::kFileCall ? status == QX_ERROR_FILE || status == GetParam().file_status
                                      : status == QX_ERROR_OUT_OF_MEMORY);
    EXPECT_TRUE(promised) << "status " << hex(status) << "; " << to_text(entries);
    EXPECT_TRUE(std::any_of(entries.begin(), entries.end(),
                            [&](const RingEntry& entry) { return entry.code == status; }))
        << "no entry " << hex(status) << "; " << to_text(entries);
  }

  const Base base_;
  int wanted_status_ = 0;
  std::string wanted_;
};

TEST_P(FaultsTest, EveryFailureIsToldAndChangesNothing) {
  learn_outcome();
  walk([&](const Fault& fault) {
    const bool fired = run(fault);
    run_without_fault();
    return fired;
  });
}

// The operations

using Rows = std::vector<int>;

std::string nothing(const Base&, int) {
  return "";
}
void keep(const Base&, int) {}

// ... that add a set

std::string rows_of_set(const Base& base, int set) {
  std::string text;
  for (const int row : base.table().rows(set)) text += std::to_string(row) + " ";
  return text;
}

void delete_set(const Base& base, int set) {
  if (set >= 0) require(RQXDeleteSet(base.id(), set), "RQXDeleteSet");
  RQXChangeCurrentSetID(base.id(), 1);
}

Operation adding_set(const char* name, std::function<int(const Base&)> call) {
  return {name, std::move(call), rows_of_set, delete_set};
}

enum ColumnIndex : size_t { kInt, kDouble, kDate, kTime, kString, kDateTime, kDecimal };

auto search(size_t column, int ope) {
  return [column, ope](const Base& base) {
    RawValues& values = base.values(column);
    return RQXSearchByField(base.id(), base.filter(column), 1, ope, values.value(3),
                            values.value(8));
  };
}

auto search_n(size_t column) {
  return [column](const Base& base) {
    return RQXSearchByFieldNValues(base.id(), base.filter(column), 1, 20,
                                   base.values(column).data());
  };
}

auto sort(size_t column, int direction) {
  return [column, direction](const Base& base) {
    return RQXSortByField(base.id(), base.filter(column), 1, direction);
  };
}

int search_text(const Base& base, int ope) {
  char text[] = "a";
  return RQXSearchByField(base.id(), base.filter(kString), 1, ope, text, nullptr);
}

int sort_by_keys(const Base& base) {
  int filters[] = {base.filter(kInt), base.filter(kString), base.filter(kDecimal), 0};
  int directions[] = {QX_SORT_ASC, QX_SORT_DESC, QX_SORT_ASC, 0};
  return RQXIntegratedSortByField(base.id(), 1, filters, directions);
}

int search_by_flags(const Base& base) {
  static unsigned char flags[kRows + 1];
  std::fill_n(flags + 1, kRows / 2, 1);
  return QXSearch(base.id(), base.filter(kInt), 1, flags);
}

int extract_unique(const Base& base) {
  int filters[] = {base.filter(kInt), base.filter(kString), 0};
  return RQXExtractUniqueReal(base.id(), 1, filters);
}

template <int op>
int combine_sets(const Base& base) {
  return RQXSetOpeReal(base.id(), op, 1, 1);
}

int combine_unordered(const Base& base) {
  return RQXSetOpeReal(base.id(), QX_SET_ANDNOT, 1, 2);
}

template <size_t column>
int search_file(const Base& base) {
  return RQXSearchByFieldNValuesFromCSV(base.id(), base.filter(column), 1, "", "values.txt");
}

int add_set(const Base& base) {
  int rows[] = {5, 4, 3};
  return RQXAddSetReal(base.id(), 3, rows);
}

INSTANTIATE_TEST_SUITE_P(
    Sets, FaultsTest,
    testing::Values(
        adding_set("SearchIntegers", search(kInt, QX_OPE_BETWEEN)),
        adding_set("SearchDoubles", search(kDouble, QX_OPE_GEQ)),
        adding_set("SearchStrings", search(kString, QX_OPE_LEQ)),
        adding_set("SearchDecimals", search(kDecimal, QX_OPE_NEQ)),
        adding_set("Contains", [](const Base& base) { return search_text(base, QX_OPE_CONTAINS); }),
        adding_set("Begins", [](const Base& base) { return search_text(base, QX_OPE_BEGINS); }),
        adding_set("WildCard",
                   [](const Base& base) {
                     return RQXSearchByFieldWildCard(base.id(), base.filter(kString), 1, "*a*?");
                   }),
        adding_set("Search2",
                   [](const Base& base) {
                     return RQXSearchByField2(base.id(), base.filter(kInt), 1, QX_OPE_GEQ,
                                              base.values(kInt).value(3), nullptr);
                   }),
        adding_set("ByRowNumber",
                   [](const Base& base) {
                     return RQXSearchByRowNo(base.id(), 0, 1, QX_OPE_BETWEEN, 5, 20);
                   }),
        adding_set("ByPosition",
                   [](const Base& base) {
                     return RQXSearchByDispRowNoReal(base.id(), 1, QX_OPE_GEQ, 5, 0);
                   }),
        adding_set("ByFlags", search_by_flags), adding_set("OfIntegers", search_n(kInt)),
        adding_set("OfDoubles", search_n(kDouble)), adding_set("OfStrings", search_n(kString)),
        adding_set("OfDecimals", search_n(kDecimal)),
        adding_set("SortIntegers", sort(kInt, QX_SORT_ASC)),
        adding_set("SortStrings", sort(kString, QX_SORT_DESC)),
        adding_set("SortDecimals", sort(kDecimal, QX_SORT_ASC)),
        adding_set("SortByRowNumber",
                   [](const Base& base) {
                     return RQXSortByRowNo(base.id(), base.filter(kInt), 2, QX_SORT_ASC);
                   }),
        adding_set("SortByKeys", sort_by_keys), adding_set("ExtractUnique", extract_unique),
        adding_set("And", combine_sets<QX_SET_AND>), adding_set("Or", combine_sets<QX_SET_OR>),
        adding_set("Unordered", combine_unordered),
        adding_set("Not", [](const Base& base) { return RQXSetNotReal(base.id(), 2); }),
        adding_set("OfIntegersInFile", search_file<kInt>),
        adding_set("OfStringsInFile", search_file<kString>), adding_set("AddSet", add_set)),
    case_name<Operation>);

// ... that open a find cursor

std::string hits_of_cursor(const Base& base, int search) {
  std::string text;
  int filter = 0;
  int position = 0;
  while (RQXGetNextHitReal(base.id(), search, 1, position, 0, &filter, &position) == 1) {
    text += std::to_string(position) + " ";
  }
  return text;
}

void close_cursor(const Base& base, int) {
  require(RQXCloseFindReal(base.id()), "RQXCloseFindReal");
}

Operation opening_find(const char* name, std::function<int(const Base&)> call) {
  return {name, std::move(call), hits_of_cursor, close_cursor};
}

INSTANTIATE_TEST_SUITE_P(Finds, FaultsTest,
                         testing::Values(opening_find("Integers",
                                                      [](const Base& base) {
                                                        return RQXOpenIntFindReal(
                                                            base.id(), base.filter(kInt),
                                                            QX_OPE_LEQ, 100, 0);
                                                      }),
                                         opening_find("Texts",
                                                      [](const Base& base) {
                                                        char text[] = "a";
                                                        return RQXOpenStrFindReal(
                                                            base.id(), base.filter(kString),
                                                            QX_OPE_CONTAINS, text, nullptr);
                                                      })),
                         case_name<Operation>);

// ... that add a filter

std::string values_of_filter(const Base& base, int filter) {
  char name[256] = "";
  require(RQXGetFilterName(base.id(), filter, name), "RQXGetFilterName");
  std::string text = name;
  for (const std::string& value : base.table().texts(name)) text += " " + value;
  return text;
}

void delete_filter(const Base& base, int filter) {
  if (filter >= 0) require(RQXDeleteRealFilter(base.id(), filter), "RQXDeleteRealFilter");
}

Operation adding_filter(const char* name, size_t column) {
  const auto call = [column](const Base& base) {
    const int type = base.column(column).column.type;
    void* const values = base.values(column).data();
    return type == QX_DT_DECIMAL
               ? RQXAddRealFilter2Numeric(base.id(), 2, "new", type, kRows - 1, values, nullptr,
                                          nullptr, base.column(column).column.scale,
                                          QX_ROUND_HALFUP)
               : RQXAddRealFilter2(base.id(), 2, "new", type, kRows - 1, values, nullptr, nullptr);
  };
  return {name, call, values_of_filter, delete_filter};
}

template <int type>
int add_filter_from_file(const Base& base) {
  return RQXAddRealFilter2(base.id(), 0, "new", type, kRows, nullptr, "", "values.txt");
}

int add_empty_filter(const Base& base) {
  return RQXAddRealFilter2(base.id(), 0, "", QX_DT_STRING, kRows, nullptr, nullptr, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Filters, FaultsTest,
    testing::Values(adding_filter("AddIntegers", kInt), adding_filter("AddDoubles", kDouble),
                    adding_filter("AddDates", kDate), adding_filter("AddTimes", kTime),
                    adding_filter("AddStrings", kString), adding_filter("AddDateTimes", kDateTime),
                    adding_filter("AddDecimals", kDecimal),
                    Operation{"IntegersFromFile", add_filter_from_file<QX_DT_INTEGER>,
                              values_of_filter, delete_filter},
                    Operation{"StringsFromFile", add_filter_from_file<QX_DT_STRING>,
                              values_of_filter, delete_filter},
                    Operation{"AddNulls", add_empty_filter,
                              [](const Base& base, int filter) {
                                return std::to_string(RQXGetFilterType(base.id(), filter));
                              },
                              delete_filter}),
    case_name<Operation>);

// ... that copy a filter

int dup_filter(const Base& base) {
  return RQXDupRealFilter(base.id(), base.filter(kString));
}

auto convert_filter(size_t column, int type) {
  return [column, type](const Base& base) {
    return RQXDupRealFilterEx(base.id(), base.filter(column), type);
  };
}

int rescale_copy(const Base& base) {
  return RQXDupRealFilterExNumeric(base.id(), base.filter(kDecimal), QX_DT_DECIMAL, 1, 4);
}

INSTANTIATE_TEST_SUITE_P(
    Copies, FaultsTest,
    testing::Values(Operation{"Plain", dup_filter, values_of_filter, delete_filter},
                    Operation{"IntegersAsTexts", convert_filter(kInt, QX_DT_STRING),
                              values_of_filter, delete_filter},
                    Operation{"TextsAsDoubles", convert_filter(kString, QX_DT_DOUBLE),
                              values_of_filter, delete_filter},
                    Operation{"DateTimesAsDates", convert_filter(kDateTime, QX_DT_DATE),
                              values_of_filter, delete_filter},
                    Operation{"Rescaled", rescale_copy, values_of_filter, delete_filter}),
    case_name<Operation>);

// ... that import

std::string imported(const Base&, int table) {
  return table_text(table);
}
void delete_table(const Base&, int table) {
  if (table >= 0) require(RQXDeleteTable(table), "RQXDeleteTable");
}

// ... and that make a table of others

/// All columns, and the pseudo columns.
int all_columns[] = {1, 2, 3, 4, 5, 6, 7, QX_FLT_TABLE_ID, QX_FLT_REC_NO, 0};
int own_columns[] = {1, 2, 3, 4, 5, 6, 7, 0};

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

/// Lines for several workers: each range has a page at least. Every 20th is as `bad`.
std::string lines_of_data(const std::string& bad) {
  const std::string long_text(100, 'x');
  std::string text;
  for (int i = 0; i < 100; ++i) {
    const std::string number = std::to_string(i % 30);
    text += number + ",1." + number + ",2024/3/" + std::to_string(1 + i % 28) + ",12:00:" + number;
    text += i % 10 == 0 ? ",\"a \"\"" + number + "\"\"\"," : "," + long_text + number + ",";
    text += "2024/1/1 1:2:" + number + ",-" + number + ".25\n";
    if (i % 20 == 19) text += bad;
  }
  return text;
}

/// `bad` is a line in the wrong form; it ends with a line feed.
Operation importing(const char* name, const std::string& mode, const std::string& bad) {
  const auto call = [](const Base&) { return RQXAddCatalogFileEx2("", "c.cat", "", "c.csv", "t"); };
  return {name,
          [=, written = false](const Base& base) mutable {
            if (!written) {
              write_file("c.cat", "//CSV\n//ERROR\t" + mode +
                                      "\nI\t1\ti\nF\t1\tf\nD\t1\td\nT\t1\tt\nA\t1\ta\n"
                                      "E\t1\te\nN\t1\tn\t2\n");
              write_file("c.csv", lines_of_data(bad));
            }
            written = true;
            return call(base);
          },
          imported, delete_table};
}

constexpr const char* kBadValue = "x,y,z,12:00:00,name,2024/1/1 1:2:3,0\n";
constexpr const char* kBadCount = "1,2\n";

int import_default_file(const Base&) {
  return RQXAddCatalogFile("", "c.cat");
}

INSTANTIATE_TEST_SUITE_P(
    Imports, FaultsTest,
    testing::Values(importing("Clean", "STOP", ""), importing("StoppedByValue", "STOP", kBadValue),
                    importing("StoppedByCount", "CONTINUE", kBadCount),
                    importing("BadValuesAreNull", "CONTINUE", kBadValue),
                    importing("BadValuesUnchecked", "NONE", kBadValue),
                    importing("BadLinesSkipped", "SKIPLINE",
                              std::string(kBadValue) + kBadCount + "\"open\n"),
                    Operation{"WithoutFiles", import_default_file, imported, delete_table}),
    case_name<Operation>);

// ... that write files

const int kAllFilters[] = {-1};

std::string written_files(const Base&, int) {
  std::string text;
  for (const char* const name : {"out.csv", "out.cat", "SrcData.dat"}) {
    if (std::filesystem::exists(name)) text += name + (":\n" + read_file(name));
  }
  return text;
}

void remove_files(const Base&, int) {
  for (const char* const name : {"out.csv", "out.cat", "SrcData.dat"}) {
    std::filesystem::remove(name);
  }
}

Operation exporting(const char* name, std::function<int(const Base&)> call) {
  return {name, std::move(call), written_files, remove_files, QX_ERROR_PATH};
}

INSTANTIATE_TEST_SUITE_P(
    Exports, FaultsTest,
    testing::Values(exporting("Csv",
                              [](const Base& base) {
                                return RQXExportAsCSV(base.id(), 1, kAllFilters, -1, -1, "",
                                                      "out.csv", '/');
                              }),
                    exporting("TabWithFormat",
                              [](const Base& base) {
                                return RQXExportAsTABwithF(base.id(), 2, kAllFilters, 2, 4, "",
                                                           "out.csv", '-', "format.txt");
                              }),
                    exporting("Catalog",
                              [](const Base& base) {
                                return RQXSaveAsCatalog(base.id(), 1, kAllFilters, QX_EXPORT_COMMA,
                                                        -1, -1, '/', "", "out.cat");
                              }),
                    exporting("CatalogWithFormat",
                              [](const Base& base) {
                                return RQXSaveAsCatalogwithFEx(
                                    base.id(), 1, kAllFilters, QX_EXPORT_TAB, -1, -1, '/', ".",
                                    "out.csv", "", "out.cat", "format.txt");
                              })),
    case_name<Operation>);

// ... on table files; those of databases have walks of their own

std::string saved_table(const Base&, int) {
  return read_file("out.QXT");
}
void remove_table_file(const Base&, int) {
  std::filesystem::remove("out.QXT");
}

int save_table(const Base& base) {
  return RQXSaveRealTableAs("", "out", base.id());
}
int save_table_inside(const Base& base) {
  const int tables[] = {base.id(), -1};
  long end = 0;
  return RQXSaveRealTable2("inside.dat", 100, tables, &end);
}
int load_table_inside(const Base&) {
  int table = 0;
  long end = 0;
  return RQXLoadRealTable2("inside.dat", 100, 1, &table, &end);
}
int file_info(const Base&) {
  _QXFileInfo info;
  return RQXGetQXTFileInfo("", "stored", &info);
}

INSTANTIATE_TEST_SUITE_P(
    TableFiles, FaultsTest,
    testing::Values(Operation{"Save", save_table, saved_table, remove_table_file, QX_ERROR_PATH},
                    Operation{"SaveInside", save_table_inside, nothing, keep},
                    Operation{"Load", [](const Base&) { return RQXLoadRealTable("", "stored"); },
                              imported, delete_table, QX_ERROR_PATH},
                    Operation{"LoadInside", load_table_inside, imported, delete_table},
                    Operation{"Info", file_info, nothing, keep, QX_ERROR_PATH}),
    case_name<Operation>);

// ... on tables, settings and logs

int add_table(const Base&) {
  return RQXAddRealTable("new", 10);
}

int write_logs(const Base&) {
  RQXLogInit(3, "own.log");
  LOG_Create("%d", 1);
  Log_message("other.log", "%d", 2);
  RQXLogInit(0, nullptr);
  return 0;
}

int convert(const Base& base) {
  RQXStr2DateR1("2024/3/1");
  RQXStr2TimeR1("12:00:00");
  RQXStr2DateTimeR1("2024/3/1 12:00:00");
  RQXDouble2DateStrR1(40000.5);
  RQXDouble2DateTimeStrR1(40000.5);
  double time = 0;
  int number = 0;
  QXStrToInt("12", &number);
  QXStrToFloat("1.5", &time);
  for (size_t i = 0; i < base.columns(); ++i) {
    RQXGetData1Cnv2StrR1(base.id(), base.filter(i), 1, 1);
  }
  return RQXStrToTime("12:30:00", &time);
}

int describe_filters(const Base& base) {
  static _TRFilterInfo infos[16];
  int count = 0;
  return RQXGetAllFilterInfo(base.id(), 16, &count, infos, nullptr);
}

int rename_table(const Base& base) {
  return RQXSetTableName(base.id(), "other");
}

INSTANTIATE_TEST_SUITE_P(
    Others, FaultsTest,
    testing::Values(Operation{"AddTable", add_table, imported, delete_table},
                    Operation{"RenameTable", rename_table,
                              [](const Base& base, int) { return table_text(base.id()); },
                              [](const Base& base, int) { RQXSetTableName(base.id(), "base"); }},
                    Operation{"DescribeFilters", describe_filters, nothing, keep},
                    Operation{"Logs", write_logs, nothing, keep},
                    Operation{"Convert", convert, nothing, keep}),
    case_name<Operation>);

// Column compilation fills arrays for its caller to free.

template <class Value, class Compile>
Operation compiling(const char* name, size_t column, Compile* compile) {
  struct Result {
    int* pv = nullptr;
    Value* vl = nullptr;
  };
  auto result = std::make_shared<Result>();
  return {name,
          [=](const Base& base) {
            return compile(kRows, 4, static_cast<Value*>(base.values(column).data()), &result->pv,
                           &result->vl);
          },
          [=](const Base&, int) {
            std::string text;
            for (int i = 0; i < kRows; ++i) text += std::to_string(result->pv[i]) + " ";
            return text;
          },
          [=](const Base&, int) {
            QXFreeMem(reinterpret_cast<void**>(&result->pv));
            QXFreeMem(reinterpret_cast<void**>(&result->vl));
          }};
}

int compile_texts(int n, int k, char** data, int** pv, char*** vl) {
  return iCompileString(n, k, data, pv, reinterpret_cast<long**>(vl));
}

INSTANTIATE_TEST_SUITE_P(Compilation, FaultsTest,
                         testing::Values(compiling<int>("Integers", kInt, iCompileInt),
                                         compiling<double>("Doubles", kDouble, iCompileFloat),
                                         compiling<char*>("Texts", kString, compile_texts),
                                         compiling<Numeric>("Decimals", kDecimal, iCompileNumeric)),
                         case_name<Operation>);

// Calls that change what is there: each works on a fresh database. A fault leaves all as it was.

class ChangesTest : public EngineTest, public testing::WithParamInterface<Operation> {
 protected:
  /// What a call makes of a fresh database.
  std::string outcome(const Base& base, int status) {
    EXPECT_GE(status, 0) << hex(status) << "; " << to_text(drain_ring());
    return GetParam().outcome(base, status);
  }

  /// One call with a fault, and one without when it has failed. Returns whether the fault fired.
  bool run(const Fault& fault, const std::string& wanted) {
    RQXClearDB();
    const Base base;
    const int cursor = RQXOpenIntFindReal(base.id(), base.filter(kInt), QX_OPE_GEQ, 0, 0);
    RQXSetSavedFlag(1, 1, 1);
    drain_ring();
    const std::string before = database_text();
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = GetParam().call(base);
      fired = armed.fired();
    }
    if (status < 0) {
      expect_failure(status,
                     fault.kind == FaultKind::kFileCall ? QX_ERROR_FILE : QX_ERROR_OUT_OF_MEMORY);
      EXPECT_EQ(database_text(), before);
      int count = 0, filter = 0;
      EXPECT_EQ(RQXGetFindStatus(base.id(), &count, &filter), cursor);
      status = GetParam().call(base);
    }
    EXPECT_EQ(outcome(base, status), wanted);
    return fired;
  }
};

TEST_P(ChangesTest, AreWholeOrNotAtAll) {
  std::string wanted;
  {
    const Base base;
    wanted = outcome(base, GetParam().call(base));
  }
  walk([&](const Fault& fault) { return run(fault, wanted); });
}

std::string whole_base(const Base& base, int) {
  return table_text(base.id()) + rows_of_set(base, 1) + rows_of_set(base, 2);
}
std::string table_count(const Base&, int) {
  return std::to_string(RQXGetNTable());
}

template <int type>
int append_to_filter(const Base& base) {
  const int filter = base.filter(type == QX_DT_INTEGER ? kInt : kString);
  return RQXAppendRealFilter2(base.id(), filter, type, -1, 4, "",
                              type == QX_DT_INTEGER ? "values.txt" : "texts.bin");
}

int append_rows(const Base& base, int position, const char* catalog) {
  return RQXAppendCatalogFileEx2(base.id(), position, 70, "", catalog, "", "rows.csv");
}

int rescale(const Base& base) {
  NumericInfo info = {base.column(kDecimal).column.scale - 1, QX_ROUND_HALFUP};
  return RQXSetNumericInfo(base.id(), base.filter(kDecimal), &info, false);
}

/// The values of the first rows into later ones.
template <size_t column>
int overwrite(const Base& base) {
  return RQXOverwriteRealEx(base.id(), base.filter(column), 1, 31, 20, base.values(column).data());
}

int fill_strings(const Base& base) {
  char text[] = "quite another text";
  return RQXFillRealExStrR1(base.id(), base.filter(kString), 2, 2, 4, text);
}

INSTANTIATE_TEST_SUITE_P(
    Edits, ChangesTest,
    testing::Values(
        Operation{"InsertRows", [](const Base& base) { return RQXInsertRealRows(base.id(), 7, 9); },
                  whole_base, keep},
        Operation{"DeleteRows",
                  [](const Base& base) { return RQXDeleteRealRows(base.id(), 2, 40); }, whole_base,
                  keep},
        Operation{"DeleteRowsOfASet",
                  [](const Base& base) { return RQXDeleteRealRowsEx(base.id(), 2, 2, 4); },
                  whole_base, keep},
        Operation{"OverwriteIntegers", overwrite<kInt>, whole_base, keep},
        Operation{"OverwriteDates", overwrite<kDate>, whole_base, keep},
        Operation{"OverwriteStrings", overwrite<kString>, whole_base, keep},
        Operation{"OverwriteDecimals", overwrite<kDecimal>, whole_base, keep},
        Operation{"FillIntegers",
                  [](const Base& base) {
                    return RQXFillRealExIntR1(base.id(), base.filter(kInt), 1, 1, 50, 4711);
                  },
                  whole_base, keep},
        Operation{"FillStrings", fill_strings, whole_base, keep}),
    case_name<Operation>);

INSTANTIATE_TEST_SUITE_P(
    All, ChangesTest,
    testing::Values(
        Operation{"ClearDB", [](const Base&) { return RQXClearDB(); }, table_count, keep},
        Operation{"DeleteTable", [](const Base& base) { return RQXDeleteTable(base.id()); },
                  table_count, keep},
        Operation{"ReInitialize", [](const Base&) { return RQXReInitializeMS(); }, table_count,
                  keep},
        Operation{"Rescale", rescale, whole_base, keep},
        Operation{"AppendIntegers", append_to_filter<QX_DT_INTEGER>, whole_base, keep},
        Operation{"AppendStrings", append_to_filter<QX_DT_STRING>, whole_base, keep},
        Operation{"AppendRows", [](const Base& base) { return append_rows(base, -1, "rows.cat"); },
                  whole_base, keep},
        Operation{"OverwriteRows",
                  [](const Base& base) { return append_rows(base, 5, "rows.cat"); }, whole_base,
                  keep},
        Operation{"AppendDecimalsOfFewerDigits",
                  [](const Base& base) { return append_rows(base, 100, "digits.cat"); }, whole_base,
                  keep}),
    case_name<Operation>);

// Images and the stream

/// A block of a client, and what the last call has put into it.
struct ImageArea {
  long words[30000];
  void* end;

  std::string bytes() const {
    const char* const begin = reinterpret_cast<const char*>(words);
    return {begin, static_cast<const char*>(end)};
  }
} area;

std::string image_bytes(const Base&, int) {
  return area.bytes();
}
std::string own_image_bytes(const Base&, int) {
  return {static_cast<const char*>(area.end), sizeof(Numeric)};
}

int save_image(const Base& base) {
  return RQXSaveRealTable2Mem(base.id(), sizeof area.words, area.words, &area.end);
}
int get_own_image(const Base& base) {
  long size = 0;
  return RQXGetMemRealTable(base.id(), &area.end, &size);
}
int save_all(const Base&) {
  return RQXSaveDB2Mem(sizeof area.words, area.words, &area.end);
}
int load_image(const Base& base) {
  if (area.words[0] == 0) save_image(base);
  return RQXLoadMemRealTable(area.words, sizeof area.words);
}
int load_streamed(const Base& base) {
  if (area.words[0] == 0) save_image(base);
  RQXMemStreamOpenRead(sizeof area.words, area.words);
  return RQXLoadRealTableMem();
}
int save_streamed(const Base& base) {
  static char data[1'100'000];  // more than the stream has at first
  if (const int status = RQXMemStreamOpenWrite(); status < 0) return status;
  if (const int status = RQXMemStreamWrite(data, sizeof data); status < 0) return status;
  return RQXSaveRealTableMem(base.id(), 0);
}
std::string streamed_bytes(const Base&, int) {
  long size = 0;
  void* bytes = nullptr;
  require(RQXMemStreamGetWriteBuf(&size, &bytes), "RQXMemStreamGetWriteBuf");
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}
void forget_images(const Base&, int) {
  area.words[0] = 0;
  RQXFreeMemRealTable();
  RQXMemStreamClose();
}
void forget_loaded(const Base& base, int table) {
  delete_table(base, table);
  RQXMemStreamClose();
}

INSTANTIATE_TEST_SUITE_P(
    Images, FaultsTest,
    testing::Values(Operation{"Save", save_image, image_bytes, forget_images},
                    Operation{"Own", get_own_image, own_image_bytes, forget_images},
                    Operation{"SaveAll", save_all, image_bytes, forget_images},
                    Operation{"Load", load_image, imported, forget_loaded},
                    Operation{"LoadStreamed", load_streamed, imported, forget_loaded},
                    Operation{"SaveStreamed", save_streamed, streamed_bytes, forget_images}),
    case_name<Operation>);

using DatabaseImageFaultsTest = EngineTest;

TEST_F(DatabaseImageFaultsTest, LeaveTheDatabaseWholeOrEmpty) {
  const Base base;
  require(save_all(base), "RQXSaveDB2Mem");
  RQXSetSavedFlag(1, 1, 1);
  const std::string wanted = database_text();
  walk([&](const Fault& fault) {
    int status = 0;
    bool fired = false;
    void* end = nullptr;
    {
      const ArmedFault armed(fault);
      status = RQXLoadDBFromMem(area.words, &end);
      fired = armed.fired();
    }
    if (status < 0) {
      expect_failure(status, QX_ERROR_OUT_OF_MEMORY);
      EXPECT_LE(RQXGetNTable(), 1);
      EXPECT_EQ(RQXLoadDBFromMem(area.words, &end), 0);
    }
    EXPECT_EQ(database_text(), wanted);
    return fired;
  });
  forget_images(base, 0);
}

// The file browser

int listed = 0;
char piece[100];
int piece_size = 0;

int list_files(const Base&) {
  static char names[100 * 256];
  static unsigned char flags[100];
  int stored = 100;
  return RQXBrowserGetFileList("*.*", 0, &stored, &listed, names, flags);
}
int get_piece(const Base&) {
  int position = 3;
  piece_size = 50;
  return RQXBrowserGetFile("rows.csv", &position, &piece_size, piece);
}
int put_piece(const Base&) {
  return RQXBrowserPutFile("new", 9, "new bytes");
}

INSTANTIATE_TEST_SUITE_P(
    FileBrowser, FaultsTest,
    testing::Values(Operation{"List", list_files,
                              [](const Base&, int) { return std::to_string(listed); }, keep,
                              QX_ERROR_NOT_FOUND},
                    Operation{"Get", get_piece,
                              [](const Base&, int) {
                                return std::string(piece, static_cast<size_t>(piece_size));
                              },
                              keep},
                    Operation{"Put", put_piece, [](const Base&, int) { return read_file("new"); },
                              [](const Base&, int) { RQXBrowserDelFile("new"); }}),
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
