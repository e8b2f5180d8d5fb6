// Every operation is walked through all the places where memory, files or threads can fail it: it
// tells by its status, changes nothing, and works again once the fault is gone. Here: operations on
// sets, filters, settings and logs.
#include "faults_fixture.h"

namespace qxe::test {

TEST_P(FaultsTest, EveryFailureIsToldAndChangesNothing) {
  learn_outcome();
  walk([&](const Fault& fault) {
    const bool fired = run(fault);
    run_without_fault();
    return fired;
  });
}

namespace {

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

}  // namespace
}  // namespace qxe::test
