// Every call tells a client's mistake by its status and by an entry in the ring, and changes
// nothing.
#include <limits.h>

#include <functional>

#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

// Outputs and inputs of the calls.
char buffer[8192];
char word[] = "a";
char one[] = "\1\0\0";  // the integer 1
int numbers[10001];
int out;
unsigned long size;
double real[128];
Numeric decimal_out[128];
unsigned char flags[8];
_TTableInfo table_info;
_TRFilterInfo filter_info;
_TRFilterBody filter_body;
_TFilterInfo live_filter;
NumericInfo form = {2, QX_ROUND_HALFUP};
NumericInfo bad_form = {2, -1};
NumericInfo form_out;
int keys[] = {1, 0};
int unknown_key[] = {99, 0};
int two_keys[] = {1, 2, 0};
int none[] = {0};
int directions[] = {0, 3};
int all_filters[] = {-1};
int unknown_filters[] = {1, 99, -1};
int row_zero[] = {1, 0};
int row_behind[] = {4};
constexpr int kUnknown = 99;

/// A call on filter 1, integers, of table t, and on set s.
struct Call {
  const char* text;
  std::function<int(int t, int f, int s)> call;
  int code = 0;
  const char* message = "";
};

#define QXE_DO(...)                                                                   \
  []([[maybe_unused]] int t, [[maybe_unused]] int f, [[maybe_unused]] int s) -> int { \
    return __VA_ARGS__;                                                               \
  }
#define QXE_CALL(...)                 \
  Call {                              \
#__VA_ARGS__, QXE_DO(__VA_ARGS__) \
  }
#define QXE_CASE(code, message, ...)                            \
  Call {                                                        \
#__VA_ARGS__, QXE_DO(__VA_ARGS__), QX_ERROR_##code, message \
  }

class FailuresTest : public EngineTest {
 protected:
  FailuresTest() {
    table_.add_set({3, 1});
    RQXChangeCurrentSetID(t_, 1);
    RQXSetSavedFlag(1, 1, 1);
    before_ = database_text();
    drain_ring();
  }

  void expect(const Call& wanted, int status, int code, const std::string& message) const {
    SCOPED_TRACE(wanted.text);
    expect_failure(status, code, message);
    ASSERT_EQ(database_text(), before_);
  }

  // Filter 1 are integers, 2 strings; set 1 are all three rows, set 2 two of them.
  const TestTable table_{{{"i", ints({1, 2, 3})}, {"s", strings({"a", "b", "c"})}}};
  const int t_ = table_.id();
  std::string before_;
};

// The calls of the interface by what they look up.

const Call kTableCalls[] = {
    QXE_CALL(RQXDeleteTable(t)),
    QXE_CALL(RQXGetTableName(t, buffer)),
    QXE_CALL(RQXSetTableName(t, "x")),
    QXE_CALL(RQXGetTableProperty(t, &table_info)),
    QXE_CALL(RQXTableCanEdit(t, numbers)),
    QXE_CALL(RQXGetTableMemorySize(t, &size)),
    QXE_CALL(RQXGetNSet(t)),
    QXE_CALL(RQXGetTotalRows(t)),
    QXE_CALL(RQXPurgeSubsets(t)),
    QXE_CALL(RQXGetSetList(t, 1, numbers)),
    QXE_CALL(RQXAddSetReal(t, 0, nullptr)),
    QXE_CALL(RQXGetCurrentSetID(t)),
    QXE_CALL(RQXResetSetID(t, 9)),
    QXE_CALL(RQXGetNFilter(t)),
    QXE_CALL(RQXGetFilterIDList(t, numbers)),
    QXE_CALL(RQXGetFilterIDFromName(t, "i")),
    QXE_CALL(RQXGetAllFilterInfo(t, 0, numbers, nullptr, nullptr)),
    QXE_CALL(RQXDuplicateRealTable("x", t)),
    QXE_CALL(RQXExtractRealTable("x", t, 1, nullptr)),
    QXE_CALL(RQXCombineRealTable(nullptr, t, 1, keys, t, 1, keys)),
    QXE_CALL(RQXCondenseRealTable(t)),
    QXE_CALL(QXCondenseRealTable(t)),
    QXE_CALL(RQXMoveRealFilter(t, 0, 0)),
    QXE_CALL(RQXInsertRealRows(t, 1, 1)),
    QXE_CALL(QXDeleteRealRows(t, 1, 1)),
    QXE_CALL(RQXAddRealFilter2(t, 0, "x", QX_DT_INTEGER, 0, nullptr, nullptr, nullptr)),
    QXE_CALL(
        RQXAddRealFilter2Numeric(t, 0, "x", QX_DT_DECIMAL, 0, nullptr, nullptr, nullptr, 2, 4)),
    QXE_CALL(RQXAppendCatalogFile(t, 1, 1, "", "x.cat")),
    QXE_CALL(RQXAppendCatalogFileEx2(t, 1, 1, "", "x.cat", "", "x.dat"))};

const Call kFilterCalls[] = {
    QXE_CASE(NO_MASTER_KEY, "No Such Filter: 99", RQXDupRealFilter(t, f)),
    QXE_CASE(NO_MASTER_KEY, "No Such Filter: 99", RQXDupRealFilterEx(t, f, QX_DT_DATE)),
    QXE_CASE(NO_MASTER_KEY, "No Such Filter: 99",
             RQXDupRealFilterExNumeric(t, f, QX_DT_DECIMAL, 2, 4)),
    QXE_CASE(NO_FILTER, "", RQXAppendRealFilter2(t, f, QX_DT_INTEGER, 1, 1, "", "x")),
    QXE_CASE(NO_FILTER, "", RQXGetFilterMemorySize(t, f, &size)),
    QXE_CASE(NO_FILTER, "", RQXGetFilterWidth(t, f)),
    QXE_CASE(NO_FILTER, "", RQXGetFilterType(t, f)),
    QXE_CASE(NO_FILTER, "", RQXGetFilterInfo(t, f, &filter_info)),
    QXE_CASE(NO_FILTER, "", RQXGetFilterBody(t, f, &filter_body)),
    QXE_CASE(NO_FILTER, "", QXGetFilter(t, f, &live_filter)),
    QXE_CASE(NO_FILTER, "", RQXGetFilterAttr(t, f, buffer, false)),
    QXE_CASE(NO_FILTER, "", RQXSetFilterAttr(t, f, buffer, false)),
    QXE_CASE(NO_FILTER, "", RQXDeleteRealFilter(t, f)),
    QXE_CASE(NO_FILTER, "", RQXSetFilterName(t, f, "x")),
    QXE_CASE(NO_FILTER, "", RQXGetNumericInfo(t, f, &form_out, nullptr, false)),
    QXE_CASE(NO_FILTER, "", RQXSetNumericInfo(t, f, &form, false)),
    QXE_CASE(NO_FILTER, "", RQXGetVNoList(t, f, s, numbers)),
    QXE_CASE(NO_FILTER, "", QXGetValCount(t, f, s, numbers)),
    QXE_CASE(NO_FILTER, "", RQXGetData(t, f, s, 0, &out, buffer)),
    QXE_CASE(NO_FILTER, "", RQXGetData1M(t, f, s, 1, &out, numbers, buffer, buffer + 1024)),
    QXE_CASE(NO_FILTER, "No Such Filter: 99", RQXSearchByField(t, f, s, QX_OPE_EQ, one, one)),
    QXE_CASE(NO_FILTER, "", RQXSearchByField2(t, f, s, QX_OPE_EQ, one, one)),
    QXE_CASE(NO_FILTER, "", RQXSearchByFieldNValues(t, f, s, 1, one)),
    QXE_CASE(NO_FILTER, "", RQXSearchByFieldNValuesFromCSV(t, f, s, "", "v")),
    QXE_CASE(NO_FILTER, "", RQXSearchByFieldWildCard(t, f, s, "*")),
    QXE_CASE(NO_FILTER, "", QXSearch(t, f, s, flags)),
    QXE_CASE(NO_FILTER, "No Such Filter: 99", RQXSortByField(t, f, s, 0)),
    QXE_CASE(NO_FILTER, "",
             RQXIntegratedSortByField(t, s, f == kUnknown ? unknown_key : keys, none)),
    QXE_CASE(NO_FILTER, "", RQXExtractUniqueReal(t, s, f == kUnknown ? unknown_key : keys)),
    QXE_CASE(NO_FILTER, "No Such Filter: 99", RQXOverwriteRealEx(t, f, 1, 1, 1, numbers)),
    QXE_CASE(NO_FILTER, "", RQXFillRealEx(t, f, 1, 1, 1, numbers))};

const Call kSetCalls[] = {
    QXE_CASE(NO_SET, "", RQXGetSetMemorySize(t, s, &size)),
    QXE_CASE(NO_SET, "", RQXGetSetSize(t, s)),
    QXE_CASE(NO_SET, "", RQXGetSet(t, s, numbers, 1, numbers + 1)),
    QXE_CASE(NO_SET, "", RQXDeleteSet(t, s)),
    QXE_CASE(NO_SET_ID, "No Such Set: 99", RQXChangeCurrentSetID(t, s)),
    QXE_CASE(NO_SET, "", RQXGetSubsetAttr(t, s, buffer)),
    QXE_CASE(NO_SET, "", RQXSetSubsetAttr(t, s, buffer)),
    QXE_CASE(NO_SET, "", RQXSetSetName(t, s, "x")),
    QXE_CASE(NO_SET, "", RQXGetSetName(t, s, buffer)),
    QXE_CASE(NO_SET, "", RQXGetVNoList(t, f, s, numbers)),
    QXE_CASE(NO_SET, "", QXGetValCount(t, f, s, numbers)),
    QXE_CASE(NO_SET, "", RQXGetData1(t, f, s, 1, &out, buffer)),
    QXE_CASE(NO_SET, "", RQXGetRowNo1(t, s, 1, numbers)),
    QXE_CASE(NO_SET_ID, "No Such Set: 99", RQXSearchByField(t, f, s, QX_OPE_EQ, one, one)),
    QXE_CASE(NO_SET_ID, "", RQXSearchByRowNo(t, f, s, 0, 1, 1)),
    QXE_CASE(NO_SET_ID, "", RQXSearchByDispRowNoReal(t, s, 0, 1, 1)),
    QXE_CASE(NO_SET_ID, "", RQXSearchByFieldWildCard(t, 2, s, "*")),
    QXE_CASE(NO_SET, "No Such Set: 99", RQXSortByField(t, f, s, 0)),
    QXE_CASE(NO_SET, "No Such Set: 99", RQXSortByRowNo(t, f, s, 0)),
    QXE_CASE(NO_SET, "", RQXIntegratedSortByField(t, s, keys, none)),
    QXE_CASE(NO_SET, "No Such Set: 99", QXExtractUniqueReal(t, s, keys)),
    QXE_CASE(NO_SET, "No Such Set: 99", RQXSetOpeReal(t, QX_SET_AND, s, 1)),
    QXE_CASE(NO_SET, "No Such Set: 99", QXSetOpeReal(t, QX_SET_AND, 1, s)),
    QXE_CASE(NO_SET, "No Such Set: 99", RQXSetNotReal(t, s)),
    QXE_CASE(NO_SET_ID, "No Such Set: 99", RQXDeleteRealRowsEx(t, s, 1, 1)),
    QXE_CASE(NO_SET_ID, "No Such Set: 99", RQXOverwriteRealEx(t, f, s, 1, 1, numbers)),
    QXE_CASE(NO_SET, "", RQXExportAsTAB(t, s, all_filters, -1, -1, "", "out.tab", '/')),
    QXE_CASE(NO_SET, "", RQXSaveAsCatalog(t, s, all_filters, 0, -1, -1, '/', "", "out.cat"))};

TEST_F(FailuresTest, UnknownTables) {
  const auto refuse = [&](const auto& calls) {
    for (const Call& call : calls) {
      expect(call, call.call(kUnknown, 1, 1), QX_ERROR_NO_TABLE, "No Such Table: 99");
    }
  };
  refuse(kTableCalls);
  refuse(kFilterCalls);
  refuse(kSetCalls);
}

TEST_F(FailuresTest, UnknownFiltersAndSets) {
  for (const Call& call : kFilterCalls) {
    expect(call, call.call(t_, kUnknown, 1), call.code, call.message);
  }
  for (const Call& call : kSetCalls) {
    expect(call, call.call(t_, 1, kUnknown), call.code, call.message);
  }
}

// Arguments

int add_filter(int t, int type, int rows) {
  return RQXAddRealFilter2(t, 0, "x", type, rows, numbers, nullptr, nullptr);
}
int add_decimal(int t, int type, int scale, int rounding) {
  return RQXAddRealFilter2Numeric(t, 0, "x", type, 0, nullptr, nullptr, nullptr, scale, rounding);
}
int save(int t, int type, int from, int to, char separator = '/') {
  return RQXSaveAsCatalog(t, 1, all_filters, type, from, to, separator, "", "out.cat");
}
int export_csv(int t, int set, const char* dir, const char* file, char separator = '/') {
  return RQXExportAsCSV(t, set, all_filters, -1, -1, dir, file, separator);
}
int search_locale(int t, int locale) {
  return RQXSearchByFieldLocale(t, 2, 1, QX_OPE_EQ, one, nullptr, locale);
}
/// One filter as 513 keys.
int unique_of_many(int t) {
  std::vector<int> many(513, 1);
  many.push_back(0);
  return RQXExtractUniqueReal(t, 1, many.data());
}

const Call kTableArguments[] = {
    QXE_CASE(ROW_SIZE, "Invalid Parameter : RowCount(-1)", RQXAddRealTable("x", -1)),
    QXE_CASE(TABLE_NAME, "Invalid Parameter : TableName()", RQXSetTableName(t, "")),
    QXE_CASE(TABLE_NAME, "Invalid Parameter : SeedName", RQXGenTableName("", buffer)),
    QXE_CASE(TABLE_NAME, "Invalid Parameter : SeedName", RQXGenerateTableName(nullptr, buffer)),
    QXE_CASE(NO_TABLE, "No Table", RQXGetTableIDFromName(nullptr)),
    QXE_CASE(PARAMETER, "Illegal Buffer size: -1", RQXGetSet(t, s, numbers, -1, numbers)),
    QXE_CASE(PARAMETER, "Illegal Buffer size: -1", RQXGetSetIDList(t, -1, numbers)),
    QXE_CASE(ROW_SIZE, "Invalid Parameter : RowCount(-1)", RQXAddSetReal(t, -1, numbers)),
    QXE_CASE(ROW_POSITION, "Invalid Parameter : PSetArray", RQXAddSetReal(t, 2, row_zero)),
    QXE_CASE(ROW_POSITION, "Invalid Parameter : PSetArray", QXAddSetReal(t, 1, row_behind)),
    QXE_CASE(ROW_POSITION, "Invalid Parameter : PSetArray", RQXAddSetReal(t, 1, nullptr)),
    QXE_CASE(ROOT_SET, "Illegal SetPos", QXDeleteSet(t, 1)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpCode", RQXSetOpeReal(t, -1, 1, 1)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpCode", QXSetOpeReal(t, 3, 1, 1)),
    QXE_CASE(TYPE_MISMATCH, "Invalid Parameter : DataType(9)", add_filter(t, 9, 0)),
    QXE_CASE(TYPE_MISMATCH, "Invalid Parameter : DataType(1)", add_filter(t, 1, 0)),
    QXE_CASE(ROW_SIZE, "Invalid Parameter : RowCount(-1)", add_filter(t, 2, -1)),
    QXE_CASE(FILTER_NAME, "Invalid Parameter : FilterName", RQXSetFilterName(t, f, "")),
    QXE_CASE(FILTER_INDEX, "Invalid Parameter : FromIndex", RQXMoveRealFilter(t, 2, 0)),
    QXE_CASE(TYPE_MISMATCH, "Invalid Parameter : DataType(3)", add_decimal(t, 3, 2, 4)),
    QXE_CASE(PARAMETER, "Invalid Parameter : scale(39)", add_decimal(t, 8, 39, 4)),
    QXE_CASE(PARAMETER, "Invalid Parameter : rounding_mode(7)", add_decimal(t, 8, 2, 7)),
    QXE_CASE(PARAMETER, "Invalid Parameter (Ninfo is NULL)", RQXSetNumericInfo(t, f, nullptr, 0)),
    QXE_CASE(PARAMETER, "Invalid Parameter : rounding_mode(-1)",
             RQXSetNumericInfo(t, f, &bad_form, 0)),
    QXE_CASE(NO_JOIN_FILTER, "Invalid Filter Type (Not NumericType)",
             RQXSetNumericInfo(t, f, &form, 0)),
    QXE_CASE(PARAMETER, "Illegal Buffer size: -1",
             RQXGetAllFilterInfo(t, -1, numbers, nullptr, nullptr)),
    QXE_CASE(NO_FILTER, "No Such Filter: 0", RQXGetFilterType(t, 0))};

const Call kReadArguments[] = {
    QXE_CASE(NO_SET, "No Such Record: -1", RQXGetData1(t, f, s, 0, &out, buffer)),
    QXE_CASE(NO_SET, "No Such Record: -7", RQXGetRowNo(t, s, -7, numbers)),
    QXE_CASE(NO_SET, "return of inner call", QXGetData(t, f, s, 3, &out, buffer)),
    QXE_CASE(NO_SET, "return of inner call", RQXGetRowNo1M(t, s, 4, 2, numbers)),
    QXE_CASE(PARAMETER, "Invalid Parameter : Count(-1)", RQXGetRowNo1M(t, s, 1, -1, numbers)),
    QXE_CASE(PARAMETER, "Illegal Buffer size: 0", RQXGetData1Ex(t, f, s, 1, &out, buffer, 0)),
    QXE_CASE(NO_FILTER, "No Such Filter: 0", RQXGetVNoList(t, 0, s, numbers)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type", RQXGetData1MIntR1(t, 2, s, 1, &out, numbers)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type", RQXGetData1MDblR1(t, f, s, 1, &out, real)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type",
             RQXGetData1MNumericR1(t, f, s, 1, &out, decimal_out)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type",
             RQXGetData1MStrR1(t, f, s, 1, &out, numbers, buffer))};

const Call kSearchAndSortArguments[] = {
    QXE_CASE(NO_FILTER, "", RQXSearchByField(t, 0, s, QX_OPE_EQ, one, one)),
    QXE_CASE(PARAMETER, "Invalid Parameter : Value",
             RQXSearchByField(t, f, s, QX_OPE_BETWEEN, one, nullptr)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpeNo", RQXSearchByField(t, f, s, 12, one, one)),
    QXE_CASE(OPERATION, "String operation for Integer column is not allowed.",
             RQXSearchByField(t, f, s, QX_OPE_BEGINS, word, word)),
    QXE_CASE(OPERATION, "String operation for Integer column is not allowed.",
             RQXSearchByField(t, f, s, QX_OPE_ENDS, word, word)),
    QXE_CASE(OPERATION, "'IS NULL' operation for String column is not allowd.",
             RQXSearchByField(t, 2, s, QX_OPE_ISNULL, word, word)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpeNo",
             RQXSearchByField2(t, 2, s, QX_OPE_ISNULL, word, word)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpeNo",
             RQXSearchByField2(t, 2, s, QX_OPE_STRICT, word, word)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpeNo", RQXSearchByRowNo(t, 0, s, -1, 1, 1)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpeNo", RQXSearchByRowNo(t, 0, s, 8, 1, 1)),
    QXE_CASE(OPERATION, "Invalid Parameter : OpeNo",
             RQXSearchByDispRowNoReal(t, s, QX_OPE_STRICT, 1, 1)),
    QXE_CASE(LOCALE, "Not equal to WS DBCharCode",
             RQXSearchByFieldSJIS(t, 2, s, QX_OPE_EQ, one, nullptr)),
    QXE_CASE(LOCALE, "Invalid Parameter : LocaleID", search_locale(t, QX_LOCALE_EUC)),
    QXE_CASE(LOCALE, "Invalid Parameter : LocaleID", search_locale(t, 98)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type ( Not STRING )",
             RQXSearchByFieldWildCard(t, f, kUnknown, "*")),
    QXE_CASE(PARAMETER, "Invalid Parameter : Pattern", RQXSearchByFieldWildCard(t, f, s, "\\x")),
    QXE_CASE(PARAMETER, "Invalid Parameter : SortDir(2)", RQXSortByField(t, f, s, 2)),
    QXE_CASE(PARAMETER, "Invalid Parameter : Dir", RQXSortByRowNo(t, f, s, -1)),
    QXE_CASE(PARAMETER, "Invalid Parameter : SortDir(3)",
             RQXIntegratedSortByField(t, s, two_keys, directions)),
    QXE_CASE(UNIQUE_FILTERS, "No Filter or FilterCount Overflow", RQXExtractUniqueReal(t, s, none)),
    QXE_CASE(UNIQUE_FILTERS, "", unique_of_many(t)),
    QXE_CASE(UNKNOWN, "Output area not reserved",
             QXServiceSortByN(1, numbers, numbers, numbers, nullptr))};

const Call kEditArguments[] = {
    QXE_CASE(ROW_POSITION, "Invalid Parameter : InsPos(-1)", RQXInsertRealRows(t, -1, 1)),
    QXE_CASE(PARAMETER, "Invalid Parameter : InsCount(0)", QXInsertRealRows(t, 1, 0)),
    QXE_CASE(ROW_SIZE, "RowSize overflow", RQXInsertRealRows(t, 1, INT_MAX - 3)),
    QXE_CASE(ROW_POSITION, "Invalid Parameter : DelStart(0)", RQXDeleteRealRows(t, 0, 1)),
    QXE_CASE(ROW_POSITION, "Invalid Parameter : DelStart(4)", RQXDeleteRealRows(t, 4, 1)),
    QXE_CASE(PARAMETER, "Invalid Parameter : DelCount(0)", RQXDeleteRealRows(t, 1, 0)),
    QXE_CASE(ROW_POSITION, "Invalid Parameter : DelStart", RQXDeleteRealRowsEx(t, 2, 0, 1)),
    QXE_CASE(ROW_POSITION, "Invalid Parameter : DelStart", RQXDeleteRealRowsEx(t, 2, 3, 1)),
    QXE_CASE(PARAMETER, "Invalid Parameter : DelCount", QXDeleteRealRowsEx(t, 2, 2, 2)),
    QXE_CASE(PARAMETER, "Invalid Parameter : DelCount", RQXDeleteRealRowsEx(t, 2, 2, INT_MAX)),
    QXE_CASE(PARAMETER, "Invalid Parameter : DelCount", RQXDeleteRealRowsEx(t, 2, 1, -1)),
    QXE_CASE(PARAMETER, "Invalid Parameter : PWData(0)", QXOverwriteRealEx(t, 1, 1, 1, 1, nullptr)),
    QXE_CASE(PARAMETER, "Invalid Parameter : WriteStart(0)",
             RQXOverwriteRealEx(t, 1, 1, 0, 1, numbers)),
    QXE_CASE(PARAMETER, "Invalid Parameter : WriteStart(3)",
             RQXOverwriteRealEx(t, 1, 2, 3, 1, numbers)),
    QXE_CASE(PARAMETER, "Invalid Parameter : WriteCount(0)",
             RQXOverwriteRealEx(t, 1, 1, 1, 0, numbers)),
    QXE_CASE(NO_FILTER, "No Such Filter: 0", RQXOverwriteRealExIntR1(t, 0, 1, 1, 5)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type",
             RQXOverwriteRealExStr(t, 1, 1, 1, 1, reinterpret_cast<char**>(numbers))),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type", RQXOverwriteRealExIntR1(t, 2, 1, 1, 5)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type", RQXOverwriteRealExDblR1(t, 1, 1, 1, 5)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type",
             RQXOverwriteRealExNumericR1(t, 1, 1, 1, decimal_out)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type", RQXOverwriteRealExStrR1(t, 1, 1, 1, word)),
    QXE_CASE(PARAMETER, "Invalid Parameter : WriteCount(-1)",
             RQXFillRealExIntR1(t, 1, 1, 1, -1, 5)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type", RQXFillRealExStrR1(t, 1, 1, 1, 1, word)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type", RQXFillRealExDblR1(t, 2, 1, 1, 1, 0.5)),
    QXE_CASE(TYPE_MISMATCH, "Illegal data type",
             RQXFillRealExNumericR1(t, 2, 1, 1, 1, decimal_out))};

const Call kExportArguments[] = {
    QXE_CASE(NO_SET, "No Such Set: -2", export_csv(t, -2, "", "out.csv")),
    QXE_CASE(PARAMETER, "Invalid Parameter : Datesep(46)", export_csv(t, s, "", "out.csv", '.')),
    QXE_CASE(PARAMETER, "Invalid Parameter : Datesep(44)", save(t, 0, -1, -1, ',')),
    QXE_CASE(FILE, "Illegal FileName", export_csv(t, s, nullptr, "out.csv")),
    QXE_CASE(FILE, "Illegal FileName",
             RQXExportAsCSVwithF(t, s, all_filters, -1, -1, "", "", '/', "f")),
    QXE_CASE(PATH, "Invalid Parameter : Path(nowhere)", export_csv(t, s, "nowhere", "out.csv")),
    QXE_CASE(PATH, "Invalid Parameter : Path(plain)", export_csv(t, s, "plain", "out.csv")),
    QXE_CASE(PARAMETER, "Invalid Parameter : RowFrom(-2) RowTo(-1)", save(t, 0, -2, -1)),
    QXE_CASE(PARAMETER, "Invalid Parameter : RowFrom(3) RowTo(2)", save(t, 0, 3, 2)),
    QXE_CASE(PARAMETER, "Invalid Parameter : type(2)", save(t, 2, -1, -1)),
    QXE_CASE(PARAMETER, "Invalid Parameter : type(-1)", save(t, -1, -1, -1))};

TEST_F(FailuresTest, BadArguments) {
  write_file("plain", "");
  const auto refuse = [&](const auto& calls) {
    for (const Call& call : calls) {
      expect(call, call.call(t_, 1, 1), call.code, call.message);
    }
  };
  refuse(kTableArguments);
  refuse(kReadArguments);
  refuse(kSearchAndSortArguments);
  refuse(kEditArguments);
  refuse(kExportArguments);
}

#undef QXE_CASE
#undef QXE_CALL
#undef QXE_DO

TEST_F(FailuresTest, OtherCodesAreReturnedThanLogged) {
  expect_failure_logged_as(RQXExportAsCSV(t_, 1, unknown_filters, -1, -1, "", "out.csv", '/'),
                           QX_ERROR_NO_JOIN_FILTER, QX_ERROR_NO_SET,
                           "Invalid Parameter : IDList[1] (99)");
  EXPECT_EQ(RQXIntegratedSortByField(t_, 1, unknown_key, none), QX_ERROR_NO_FILTER);
  for (const RingEntry& entry : ring()) EXPECT_EQ(entry.message.find("No Such"), std::string::npos);
}

// The first table, filter or set that is one too many.
TEST_F(FailuresTest, FullTablesAndDatabases) {
  while (RQXGetNSet(t_) < 10000) table_.add_set({1});
  for (const int status :
       {RQXAddSetReal(t_, 1, keys), RQXSearchByField(t_, 1, 1, QX_OPE_EQ, one, one),
        RQXSetOpeReal(t_, QX_SET_OR, 1, 1), RQXSetNotReal(t_, 1), RQXSortByField(t_, 1, 1, 0),
        RQXExtractUniqueReal(t_, 1, keys)}) {
    EXPECT_EQ(hex(status), hex(QX_ERROR_SET_COUNT));
  }
  EXPECT_EQ(RQXGetNSet(t_), 10000);
  write_file("c.cat", "//CSV\nI\t9\ta\n");
  write_file("SrcData.dat", "1\n");
  for (int i = 2; i <= 10000; ++i) require(RQXAddRealTable(std::to_string(i).c_str(), 0), "add");
  for (const int status :
       {RQXAddRealTable("one_more", 0), RQXDuplicateRealTable("n", t_),
        RQXExtractRealTable("n", t_, 1, nullptr),
        QXCombineRealTable(nullptr, t_, 1, keys, t_, 1, keys),
        RQXCombineTableList(word, keys, keys, nullptr, nullptr, nullptr, nullptr),
        RQXAddCatalogFile("", "c.cat")}) {
    EXPECT_EQ(hex(status), hex(QX_ERROR_TABLE_COUNT));
  }
  EXPECT_EQ(RQXGetNTable(), 10000);
  EXPECT_EQ(RQXGetTableIDFromName("9999"), 9999);
}

}  // namespace
}  // namespace qxe::test
