// Every call tells a client's mistake by its status and by an entry in the ring.
#include <functional>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

char buffer[8192];  // stands for every output
int numbers[10001];
int filter_list[] = {1, 0};
int all_filters[] = {-1};
int directions[] = {0, 0};
char one[] = "\1\0\0";  // the integer 1
NumericInfo info = {2, QX_ROUND_HALFUP};
constexpr int kUnknown = 99;

struct Call {
  const char* name;
  std::function<int(int table, int filter, int set)> call;
  int code;
  const char* text = "";
  int logged = 0;  // code of the entry when it is another one
};

/// Calls on the integer filter 1 and the string filter 2 of a table of three rows.
class FailuresTest : public EngineTest, public testing::WithParamInterface<Call> {
 protected:
  FailuresTest() : table_({{"i", ints({1, 2, 3})}, {"s", strings({"a", "b", "c"})}}) {}

  static void expect(int status) {
    const Call& wanted = GetParam();
    expect_failure_logged_as(status, wanted.code, wanted.logged == 0 ? wanted.code : wanted.logged,
                             wanted.text);
  }

  const TestTable table_;
};

unsigned long* size_out() {
  return reinterpret_cast<unsigned long*>(buffer);
}
int* type_out() {
  return numbers;
}

// The calls of the interface by what they look up.

const std::vector<Call> kTableCalls = {
    {"DeleteTable", [](int table, int, int) { return RQXDeleteTable(table); }, 0},
    {"GetTableName", [](int table, int, int) { return RQXGetTableName(table, buffer); }, 0},
    {"SetTableName", [](int table, int, int) { return RQXSetTableName(table, "x"); }, 0},
    {"GetTableProperty",
     [](int table, int, int) {
       return RQXGetTableProperty(table, reinterpret_cast<_TTableInfo*>(buffer));
     },
     0},
    {"TableCanEdit", [](int table, int, int) { return RQXTableCanEdit(table, numbers); }, 0},
    {"GetTableMemorySize",
     [](int table, int, int) { return RQXGetTableMemorySize(table, size_out()); }, 0},
    {"GetNSet", [](int table, int, int) { return RQXGetNSet(table); }, 0},
    {"GetTotalRows", [](int table, int, int) { return RQXGetTotalRows(table); }, 0},
    {"PurgeSubsets", [](int table, int, int) { return RQXPurgeSubsets(table); }, 0},
    {"GetSetList", [](int table, int, int) { return RQXGetSetList(table, 1, numbers); }, 0},
    {"AddSetReal", [](int table, int, int) { return RQXAddSetReal(table, 0, nullptr); }, 0},
    {"GetCurrentSetID", [](int table, int, int) { return RQXGetCurrentSetID(table); }, 0},
    {"ResetSetID", [](int table, int, int) { return RQXResetSetID(table, 9); }, 0},
    {"GetNFilter", [](int table, int, int) { return RQXGetNFilter(table); }, 0},
    {"GetFilterIDList", [](int table, int, int) { return RQXGetFilterIDList(table, numbers); }, 0},
    {"GetAllFilterInfo",
     [](int table, int, int) { return RQXGetAllFilterInfo(table, 0, numbers, nullptr, nullptr); },
     0},
    {"DuplicateRealTable", [](int table, int, int) { return RQXDuplicateRealTable("x", table); },
     0},
    {"CombineRealTable",
     [](int table, int, int) {
       return RQXCombineRealTable(nullptr, table, 1, filter_list, table, 1, filter_list);
     },
     0},
    {"CondenseRealTable", [](int table, int, int) { return RQXCondenseRealTable(table); }, 0},
    {"CondensePlain", [](int table, int, int) { return QXCondenseRealTable(table); }, 0},
    {"MoveRealFilter", [](int table, int, int) { return RQXMoveRealFilter(table, 0, 0); }, 0},
    {"AddRealFilter2",
     [](int table, int, int) {
       return RQXAddRealFilter2(table, 0, "x", QX_DT_INTEGER, 0, nullptr, nullptr, nullptr);
     },
     0},
    {"AddRealFilter2Numeric",
     [](int table, int, int) {
       return RQXAddRealFilter2Numeric(table, 0, "x", QX_DT_DECIMAL, 0, nullptr, nullptr, nullptr,
                                       2, 4);
     },
     0},
    {"AppendCatalogFile",
     [](int table, int, int) { return RQXAppendCatalogFile(table, 1, 1, "", "x.cat"); }, 0},
    {"AppendCatalogFileEx2",
     [](int table, int, int) {
       return RQXAppendCatalogFileEx2(table, 1, 1, "", "x.cat", "", "x.dat");
     },
     0},
    {"GetFilterIDFromName", [](int table, int, int) { return RQXGetFilterIDFromName(table, "i"); },
     0},
};

const std::vector<Call> kFilterCalls = {
    {"DupRealFilter", [](int table, int filter, int) { return RQXDupRealFilter(table, filter); },
     QX_ERROR_NO_MASTER_KEY},
    {"DupRealFilterEx",
     [](int table, int filter, int) { return RQXDupRealFilterEx(table, filter, QX_DT_DATE); },
     QX_ERROR_NO_MASTER_KEY},
    {"DupRealFilterExNumeric",
     [](int table, int filter, int) {
       return RQXDupRealFilterExNumeric(table, filter, QX_DT_DECIMAL, 2, 4);
     },
     QX_ERROR_NO_MASTER_KEY},
    {"AppendRealFilter2",
     [](int table, int filter, int) {
       return RQXAppendRealFilter2(table, filter, QX_DT_INTEGER, 1, 1, "", "x");
     },
     QX_ERROR_NO_FILTER},
    {"GetFilterMemorySize",
     [](int table, int filter, int) { return RQXGetFilterMemorySize(table, filter, size_out()); },
     QX_ERROR_NO_FILTER},
    {"GetFilterWidth", [](int table, int filter, int) { return RQXGetFilterWidth(table, filter); },
     QX_ERROR_NO_FILTER},
    {"GetFilterType", [](int table, int filter, int) { return RQXGetFilterType(table, filter); },
     QX_ERROR_NO_FILTER},
    {"GetFilterInfo",
     [](int table, int filter, int) {
       return RQXGetFilterInfo(table, filter, reinterpret_cast<_TRFilterInfo*>(buffer));
     },
     QX_ERROR_NO_FILTER},
    {"GetFilterBody",
     [](int table, int filter, int) {
       _TRFilterBody body = {};
       return RQXGetFilterBody(table, filter, &body);
     },
     QX_ERROR_NO_FILTER},
    {"GetFilter",
     [](int table, int filter, int) {
       return QXGetFilter(table, filter, reinterpret_cast<_TFilterInfo*>(buffer));
     },
     QX_ERROR_NO_FILTER},
    {"GetFilterAttr",
     [](int table, int filter, int) { return RQXGetFilterAttr(table, filter, buffer, false); },
     QX_ERROR_NO_FILTER},
    {"SetFilterAttr",
     [](int table, int filter, int) { return RQXSetFilterAttr(table, filter, buffer, false); },
     QX_ERROR_NO_FILTER},
    {"DeleteRealFilter",
     [](int table, int filter, int) { return RQXDeleteRealFilter(table, filter); },
     QX_ERROR_NO_FILTER},
    {"SetFilterName",
     [](int table, int filter, int) { return RQXSetFilterName(table, filter, "x"); },
     QX_ERROR_NO_FILTER},
    {"GetNumericInfo",
     [](int table, int filter, int) {
       NumericInfo out;
       return RQXGetNumericInfo(table, filter, &out, nullptr, false);
     },
     QX_ERROR_NO_FILTER},
    {"SetNumericInfo",
     [](int table, int filter, int) { return RQXSetNumericInfo(table, filter, &info, false); },
     QX_ERROR_NO_FILTER},
    {"GetVNoList",
     [](int table, int filter, int set) { return RQXGetVNoList(table, filter, set, numbers); },
     QX_ERROR_NO_FILTER},
    {"GetValCount",
     [](int table, int filter, int set) { return QXGetValCount(table, filter, set, numbers); },
     QX_ERROR_NO_FILTER},
    {"GetData",
     [](int table, int filter, int set) {
       return RQXGetData(table, filter, set, 0, type_out(), buffer);
     },
     QX_ERROR_NO_FILTER},
    {"GetData1M",
     [](int table, int filter, int set) {
       return RQXGetData1M(table, filter, set, 1, type_out(), numbers + 1, buffer, buffer + 1024);
     },
     QX_ERROR_NO_FILTER},
    {"SearchByField",
     [](int table, int filter, int set) {
       return RQXSearchByField(table, filter, set, QX_OPE_EQ, one, one);
     },
     QX_ERROR_NO_FILTER},
    {"SearchByField2",
     [](int table, int filter, int set) {
       return RQXSearchByField2(table, filter, set, QX_OPE_EQ, one, one);
     },
     QX_ERROR_NO_FILTER},
    {"SearchByFieldNValues",
     [](int table, int filter, int set) {
       return RQXSearchByFieldNValues(table, filter, set, 1, one);
     },
     QX_ERROR_NO_FILTER},
    {"SearchByFieldWildCard",
     [](int table, int filter, int set) {
       return RQXSearchByFieldWildCard(table, filter, set, "*");
     },
     QX_ERROR_NO_FILTER},
    {"Search",
     [](int table, int filter, int set) {
       return QXSearch(table, filter, set, reinterpret_cast<unsigned char*>(buffer));
     },
     QX_ERROR_NO_FILTER},
    {"SortByField",
     [](int table, int filter, int set) { return RQXSortByField(table, filter, set, 0); },
     QX_ERROR_NO_FILTER},
    {"IntegratedSortByField",
     [](int table, int filter, int set) {
       int filters[] = {filter, 0};
       return RQXIntegratedSortByField(table, set, filters, directions);
     },
     QX_ERROR_NO_FILTER},
    {"ExportAsCSV",
     [](int table, int filter, int set) {
       int filters[] = {filter, -1};
       return RQXExportAsCSV(table, set, filters, -1, -1, "", "out.csv", '/');
     },
     QX_ERROR_NO_JOIN_FILTER},
};

const std::vector<Call> kSetCalls = {
    {"GetSetMemorySize",
     [](int table, int, int set) { return RQXGetSetMemorySize(table, set, size_out()); },
     QX_ERROR_NO_SET},
    {"GetSetSize", [](int table, int, int set) { return RQXGetSetSize(table, set); },
     QX_ERROR_NO_SET},
    {"GetSet",
     [](int table, int, int set) { return RQXGetSet(table, set, numbers, 1, numbers + 1); },
     QX_ERROR_NO_SET},
    {"DeleteSet", [](int table, int, int set) { return RQXDeleteSet(table, set); },
     QX_ERROR_NO_SET},
    {"ChangeCurrentSetID",
     [](int table, int, int set) { return RQXChangeCurrentSetID(table, set); }, QX_ERROR_NO_SET_ID},
    {"GetSubsetAttr", [](int table, int, int set) { return RQXGetSubsetAttr(table, set, buffer); },
     QX_ERROR_NO_SET},
    {"SetSubsetAttr", [](int table, int, int set) { return RQXSetSubsetAttr(table, set, buffer); },
     QX_ERROR_NO_SET},
    {"SetSetName", [](int table, int, int set) { return RQXSetSetName(table, set, "x"); },
     QX_ERROR_NO_SET},
    {"GetSetName", [](int table, int, int set) { return RQXGetSetName(table, set, buffer); },
     QX_ERROR_NO_SET},
    {"GetVNoList",
     [](int table, int filter, int set) { return RQXGetVNoList(table, filter, set, numbers); },
     QX_ERROR_NO_SET},
    {"GetValCount",
     [](int table, int filter, int set) { return QXGetValCount(table, filter, set, numbers); },
     QX_ERROR_NO_SET},
    {"GetData1",
     [](int table, int filter, int set) {
       return RQXGetData1(table, filter, set, 1, type_out(), buffer);
     },
     QX_ERROR_NO_SET},
    {"GetRowNo1", [](int table, int, int set) { return RQXGetRowNo1(table, set, 1, numbers); },
     QX_ERROR_NO_SET},
    {"SearchByField",
     [](int table, int filter, int set) {
       return RQXSearchByField(table, filter, set, QX_OPE_EQ, one, one);
     },
     QX_ERROR_NO_SET_ID},
    {"SearchByRowNo",
     [](int table, int filter, int set) { return RQXSearchByRowNo(table, filter, set, 0, 1, 1); },
     QX_ERROR_NO_SET_ID},
    {"SearchByDispRowNoReal",
     [](int table, int, int set) { return RQXSearchByDispRowNoReal(table, set, 0, 1, 1); },
     QX_ERROR_NO_SET_ID},
    {"SortByField",
     [](int table, int filter, int set) { return RQXSortByField(table, filter, set, 0); },
     QX_ERROR_NO_SET},
    {"SortByRowNo",
     [](int table, int filter, int set) { return RQXSortByRowNo(table, filter, set, 0); },
     QX_ERROR_NO_SET},
    {"IntegratedSortByField",
     [](int table, int, int set) {
       return RQXIntegratedSortByField(table, set, filter_list, directions);
     },
     QX_ERROR_NO_SET},
    {"ExportAsTAB",
     [](int table, int, int set) {
       return RQXExportAsTAB(table, set, all_filters, -1, -1, "", "out.tab", '/');
     },
     QX_ERROR_NO_SET},
    {"SaveAsCatalog",
     [](int table, int, int set) {
       return RQXSaveAsCatalog(table, set, all_filters, 0, -1, -1, '/', "", "out.cat");
     },
     QX_ERROR_NO_SET},
};

class UnknownTableTest : public FailuresTest {};
TEST_P(UnknownTableTest, IsRefused) {
  expect_failure(GetParam().call(kUnknown, 1, 1), QX_ERROR_NO_TABLE, "No Such Table: 99");
}
INSTANTIATE_TEST_SUITE_P(Tables, UnknownTableTest, testing::ValuesIn(kTableCalls), case_name<Call>);
INSTANTIATE_TEST_SUITE_P(Filters, UnknownTableTest, testing::ValuesIn(kFilterCalls),
                         case_name<Call>);
INSTANTIATE_TEST_SUITE_P(Sets, UnknownTableTest, testing::ValuesIn(kSetCalls), case_name<Call>);

class UnknownFilterTest : public FailuresTest {};
TEST_P(UnknownFilterTest, IsRefused) {
  expect(GetParam().call(table_.id(), kUnknown, 1));
}
INSTANTIATE_TEST_SUITE_P(All, UnknownFilterTest, testing::ValuesIn(kFilterCalls), case_name<Call>);

class UnknownSetTest : public FailuresTest {};
TEST_P(UnknownSetTest, IsRefused) {
  expect(GetParam().call(table_.id(), 1, kUnknown));
}
INSTANTIATE_TEST_SUITE_P(All, UnknownSetTest, testing::ValuesIn(kSetCalls), case_name<Call>);

class BadArgumentTest : public FailuresTest {};
TEST_P(BadArgumentTest, IsRefusedAndChangesNothing) {
  expect(GetParam().call(table_.id(), 1, 1));
  EXPECT_EQ(RQXGetNTable(), 1);
  EXPECT_EQ(RQXGetNFilter(table_.id()), 2);
  EXPECT_EQ(RQXGetNSet(table_.id()), 1);
  EXPECT_EQ(table_.texts("i"), (std::vector<std::string>{"1", "2", "3"}));
}

const std::string kLongName(256, 'n');

int add_filter(int table, const char* name, int type, int rows) {
  return RQXAddRealFilter2(table, 0, name, type, rows, numbers, nullptr, nullptr);
}
int add_decimal(int table, int type, int scale, int rounding) {
  return RQXAddRealFilter2Numeric(table, 0, "x", type, 0, nullptr, nullptr, nullptr, scale,
                                  rounding);
}
int set_info(int table, int filter, NumericInfo wanted) {
  return RQXSetNumericInfo(table, filter, &wanted, false);
}
int save_catalog(int table, int type, int from, int to, char separator = '/') {
  return RQXSaveAsCatalog(table, 1, all_filters, type, from, to, separator, "", "out.cat");
}

INSTANTIATE_TEST_SUITE_P(
    Tables, BadArgumentTest,
    testing::Values(
        Call{"NegativeRows", [](int, int, int) { return RQXAddRealTable("x", -1); },
             QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(-1)"},
        Call{"LongName", [](int, int, int) { return RQXAddRealTable(kLongName.c_str(), 1); },
             QX_ERROR_TABLE_NAME, "return of inner call"},
        Call{"LongNewName",
             [](int table, int, int) { return RQXSetTableName(table, kLongName.c_str()); },
             QX_ERROR_TABLE_NAME, "Invalid Parameter : TableName len(256)"},
        Call{"EmptyNewName", [](int table, int, int) { return RQXSetTableName(table, ""); },
             QX_ERROR_TABLE_NAME, "Invalid Parameter : TableName()"},
        Call{"EmptySeed", [](int, int, int) { return RQXGenTableName("", buffer); },
             QX_ERROR_TABLE_NAME, "Invalid Parameter : SeedName"},
        Call{"NullSeed", [](int, int, int) { return RQXGenerateTableName(nullptr, buffer); },
             QX_ERROR_TABLE_NAME, "Invalid Parameter : SeedName"},
        Call{"NullName", [](int, int, int) { return RQXGetTableIDFromName(nullptr); },
             QX_ERROR_NO_TABLE, "No Table"}),
    case_name<Call>);

INSTANTIATE_TEST_SUITE_P(
    Sets, BadArgumentTest,
    testing::Values(
        Call{"NegativeBuffer",
             [](int table, int, int set) { return RQXGetSet(table, set, numbers, -1, numbers); },
             QX_ERROR_PARAMETER, "Illegal Buffer size: -1"},
        Call{"NegativeList",
             [](int table, int, int) { return RQXGetSetIDList(table, -1, numbers); },
             QX_ERROR_PARAMETER, "Illegal Buffer size: -1"},
        Call{"NegativeCount", [](int table, int, int) { return RQXAddSetReal(table, -1, numbers); },
             QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(-1)"},
        Call{"RowZero",
             [](int table, int, int) {
               int rows[] = {1, 0};
               return RQXAddSetReal(table, 2, rows);
             },
             QX_ERROR_ROW_POSITION, "Invalid Parameter : PSetArray"},
        Call{"RowBehindTheLast",
             [](int table, int, int) {
               int rows[] = {4};
               return QXAddSetReal(table, 1, rows);
             },
             QX_ERROR_ROW_POSITION, "Invalid Parameter : PSetArray"},
        Call{"NullRows", [](int table, int, int) { return RQXAddSetReal(table, 1, nullptr); },
             QX_ERROR_ROW_POSITION, "Invalid Parameter : PSetArray"},
        Call{"RootSetDeleted", [](int table, int, int) { return QXDeleteSet(table, 1); },
             QX_ERROR_ROOT_SET, "Illegal SetPos"}),
    case_name<Call>);

INSTANTIATE_TEST_SUITE_P(
    Filters, BadArgumentTest,
    testing::Values(
        Call{"UnknownType", [](int table, int, int) { return add_filter(table, "x", 9, 0); },
             QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(9)"},
        Call{"TypeOfNoFamily", [](int table, int, int) { return add_filter(table, "x", 1, 0); },
             QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(1)"},
        Call{"NegativeRows", [](int table, int, int) { return add_filter(table, "x", 2, -1); },
             QX_ERROR_ROW_SIZE, "Invalid Parameter : RowCount(-1)"},
        Call{"LongName",
             [](int table, int, int) { return add_filter(table, kLongName.c_str(), 2, 0); },
             QX_ERROR_FILTER_NAME, "return of inner call"},
        Call{"LongNewName",
             [](int table, int filter, int) {
               return RQXSetFilterName(table, filter, kLongName.c_str());
             },
             QX_ERROR_FILTER_NAME, "Invalid Parameter : FilterName"},
        Call{"EmptyNewName",
             [](int table, int filter, int) { return RQXSetFilterName(table, filter, ""); },
             QX_ERROR_FILTER_NAME, "Invalid Parameter : FilterName"},
        Call{"MoveFromNowhere", [](int table, int, int) { return RQXMoveRealFilter(table, 2, 0); },
             QX_ERROR_FILTER_INDEX, "Invalid Parameter : FromIndex"},
        Call{"DecimalOfAnotherType",
             [](int table, int, int) { return add_decimal(table, 3, 2, 4); },
             QX_ERROR_TYPE_MISMATCH, "Invalid Parameter : DataType(3)"},
        Call{"DecimalScale", [](int table, int, int) { return add_decimal(table, 8, 39, 4); },
             QX_ERROR_PARAMETER, "Invalid Parameter : scale(39)"},
        Call{"DecimalRounding", [](int table, int, int) { return add_decimal(table, 8, 2, 7); },
             QX_ERROR_PARAMETER, "Invalid Parameter : rounding_mode(7)"},
        Call{"InfoMissing",
             [](int table, int filter, int) {
               return RQXSetNumericInfo(table, filter, nullptr, false);
             },
             QX_ERROR_PARAMETER, "Invalid Parameter (Ninfo is NULL)"},
        Call{"InfoRounding",
             [](int table, int filter, int) {
               return set_info(table, filter, {2, -1});
             },
             QX_ERROR_PARAMETER, "Invalid Parameter : rounding_mode(-1)"},
        Call{"InfoOfAnInteger",
             [](int table, int filter, int) {
               return set_info(table, filter, {2, 4});
             },
             QX_ERROR_NO_JOIN_FILTER, "Invalid Filter Type (Not NumericType)"},
        Call{"InfoListNegative",
             [](int table, int, int) {
               return RQXGetAllFilterInfo(table, -1, numbers, nullptr, nullptr);
             },
             QX_ERROR_PARAMETER, "Illegal Buffer size: -1"},
        Call{"RowNumberHasNoType", [](int table, int, int) { return RQXGetFilterType(table, 0); },
             QX_ERROR_NO_FILTER, "No Such Filter: 0"}),
    case_name<Call>);

INSTANTIATE_TEST_SUITE_P(
    Reads, BadArgumentTest,
    testing::Values(
        Call{"PositionZero",
             [](int table, int filter, int set) {
               return RQXGetData1(table, filter, set, 0, type_out(), buffer);
             },
             QX_ERROR_NO_SET, "No Such Record: -1"},
        Call{"PositionBelowZero",
             [](int table, int, int set) { return RQXGetRowNo(table, set, -7, numbers); },
             QX_ERROR_NO_SET, "No Such Record: -7"},
        Call{"PositionBehindTheLast",
             [](int table, int filter, int set) {
               return QXGetData(table, filter, set, 3, type_out(), buffer);
             },
             QX_ERROR_NO_SET, "return of inner call"},
        Call{"RowsBehindTheLast",
             [](int table, int, int set) { return RQXGetRowNo1M(table, set, 4, 2, numbers); },
             QX_ERROR_NO_SET, "return of inner call"},
        Call{"NegativeRowCount",
             [](int table, int, int set) { return RQXGetRowNo1M(table, set, 1, -1, numbers); },
             QX_ERROR_PARAMETER, "Invalid Parameter : Count(-1)"},
        Call{"NoRoom",
             [](int table, int filter, int set) {
               return RQXGetData1Ex(table, filter, set, 1, type_out(), buffer, 0);
             },
             QX_ERROR_PARAMETER, "Illegal Buffer size: 0"},
        Call{"RowNumbersHaveNoValueNumbers",
             [](int table, int, int set) { return RQXGetVNoList(table, 0, set, numbers); },
             QX_ERROR_NO_FILTER, "No Such Filter: 0"},
        Call{"IntegerBlockOfStrings",
             [](int table, int, int set) {
               return RQXGetData1MIntR1(table, 2, set, 1, numbers, numbers + 1);
             },
             QX_ERROR_TYPE_MISMATCH, "Illegal data type"},
        Call{"DoubleBlockOfIntegers",
             [](int table, int filter, int set) {
               return RQXGetData1MDblR1(table, filter, set, 1, numbers,
                                        reinterpret_cast<double*>(buffer));
             },
             QX_ERROR_TYPE_MISMATCH, "Illegal data type"},
        Call{"DecimalBlockOfIntegers",
             [](int table, int filter, int set) {
               return RQXGetData1MNumericR1(table, filter, set, 1, numbers,
                                            reinterpret_cast<Numeric*>(buffer));
             },
             QX_ERROR_TYPE_MISMATCH, "Illegal data type"},
        Call{"StringBlockOfIntegers",
             [](int table, int filter, int set) {
               return RQXGetData1MStrR1(table, filter, set, 1, numbers, numbers + 1, buffer);
             },
             QX_ERROR_TYPE_MISMATCH, "Illegal data type"}),
    case_name<Call>);

INSTANTIATE_TEST_SUITE_P(
    SearchesAndSorts, BadArgumentTest,
    testing::Values(
        Call{"NoBound",
             [](int table, int filter, int set) {
               return RQXSearchByField(table, filter, set, QX_OPE_BETWEEN, one, nullptr);
             },
             QX_ERROR_PARAMETER, "Invalid Parameter : Value"},
        Call{"OtherCharacterCode",
             [](int table, int, int set) {
               return RQXSearchByFieldSJIS(table, 2, set, QX_OPE_EQ, one, nullptr);
             },
             QX_ERROR_LOCALE, "Not equal to WS DBCharCode"},
        Call{"OtherLocale",
             [](int table, int, int set) {
               return RQXSearchByFieldLocale(table, 2, set, QX_OPE_EQ, one, nullptr, QX_LOCALE_EUC);
             },
             QX_ERROR_LOCALE, "Invalid Parameter : LocaleID"},
        Call{"UnknownLocale",
             [](int table, int, int set) {
               return RQXSearchByFieldLocaleR1(table, 2, set, QX_OPE_EQ, one, nullptr, 98);
             },
             QX_ERROR_LOCALE, "Invalid Parameter : LocaleID"},
        Call{"Direction",
             [](int table, int filter, int set) { return RQXSortByField(table, filter, set, 2); },
             QX_ERROR_PARAMETER, "Invalid Parameter : SortDir(2)"},
        Call{"DirectionByRow",
             [](int table, int filter, int set) { return RQXSortByRowNo(table, filter, set, -1); },
             QX_ERROR_PARAMETER, "Invalid Parameter : Dir"},
        Call{"DirectionOfAKey",
             [](int table, int filter, int set) {
               int filters[] = {filter, 2, 0};
               int dirs[] = {0, 3};
               return RQXIntegratedSortByField(table, set, filters, dirs);
             },
             QX_ERROR_PARAMETER, "Invalid Parameter : SortDir(3)"},
        Call{"NoOrder",
             [](int, int, int) { return QXServiceSortByN(1, numbers, numbers, numbers, nullptr); },
             QX_ERROR_UNKNOWN, "Output area not reserved"}),
    case_name<Call>);

INSTANTIATE_TEST_SUITE_P(
    Exports, BadArgumentTest,
    testing::Values(
        Call{"SetBelowTheCurrentOne",
             [](int table, int, int) {
               return RQXExportAsCSV(table, -2, all_filters, -1, -1, "", "out.csv", '/');
             },
             QX_ERROR_NO_SET, "No Such Set: -2"},
        Call{"DateSeparator",
             [](int table, int, int set) {
               return RQXExportAsTAB(table, set, all_filters, -1, -1, "", "out.tab", '.');
             },
             QX_ERROR_PARAMETER, "Invalid Parameter : Datesep(46)"},
        Call{"CatalogDateSeparator",
             [](int table, int, int) { return save_catalog(table, 0, -1, -1, ','); },
             QX_ERROR_PARAMETER, "Invalid Parameter : Datesep(44)"},
        Call{"NoDirectory",
             [](int table, int, int set) {
               return RQXExportAsCSV(table, set, all_filters, -1, -1, nullptr, "out.csv", '/');
             },
             QX_ERROR_FILE, "Illegal FileName"},
        Call{"NoFile",
             [](int table, int, int set) {
               return RQXExportAsCSVwithF(table, set, all_filters, -1, -1, "", "", '/', "f");
             },
             QX_ERROR_FILE, "Illegal FileName"},
        Call{"RowsBelowTheAllowed",
             [](int table, int, int) { return save_catalog(table, 0, -2, -1); }, QX_ERROR_PARAMETER,
             "Invalid Parameter : RowFrom(-2) RowTo(-1)"},
        Call{"RowsBackward", [](int table, int, int) { return save_catalog(table, 0, 3, 2); },
             QX_ERROR_PARAMETER, "Invalid Parameter : RowFrom(3) RowTo(2)"},
        Call{"CatalogType", [](int table, int, int) { return save_catalog(table, 2, -1, -1); },
             QX_ERROR_PARAMETER, "Invalid Parameter : type(2)"},
        Call{"CatalogTypeBelowZero",
             [](int table, int, int) { return save_catalog(table, -1, -1, -1); },
             QX_ERROR_PARAMETER, "Invalid Parameter : type(-1)"},
        Call{"UnknownDirectory",
             [](int table, int, int set) {
               return RQXExportAsCSV(table, set, all_filters, -1, -1, "nowhere", "out.csv", '/');
             },
             QX_ERROR_PATH, "Invalid Parameter : Path"}),
    case_name<Call>);

}  // namespace
}  // namespace qxe::test
