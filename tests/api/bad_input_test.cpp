// Input that no careful client gives: missing pointers, names of any length, directories that
// cannot be entered. Each call tells, and changes nothing.
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "support/case_name.h"
#include "support/credentials.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

// Pointers

int numbers[10];
double real = 0;
alignas(8) char buffer[8192];
unsigned long size = 0;
long place = 0;
void* end = nullptr;
int one = 1;
int* address = nullptr;
const int kFilters[] = {1, -1};
int keys[] = {1, 0};
Numeric decimal_out;
long offset = 0;
_QXFileInfo file_info;

struct PointerCase {
  const char* name;
  std::function<int(int table)> call;
};

class MissingPointerTest : public EngineTest, public testing::WithParamInterface<PointerCase> {};

TEST_P(MissingPointerTest, IsRefused) {
  const TestTable table({{"i", ints({1, 2, 3})}, {"s", strings({"a", "b", "c"})}});
  const std::string before = database_text();
  expect_failure(GetParam().call(table.id()), QX_ERROR_PARAMETER, "Invalid Parameter : ");
  EXPECT_EQ(database_text(), before);
}

#define QXE_CASE(name, ...)                               \
  PointerCase {                                           \
#name, [](int table) { (void)table; return __VA_ARGS__; } \
  }

INSTANTIATE_TEST_SUITE_P(
    Engine, MissingPointerTest,
    testing::Values(QXE_CASE(Version, RQXGetVersion(nullptr, buffer)),
                    QXE_CASE(VersionText, RQXGetVersion(numbers, nullptr)),
                    QXE_CASE(PlainVersion, QXGetVersion(&address, nullptr)),
                    QXE_CASE(ErrorTime, RQXGetErrorLog(nullptr, buffer, numbers, buffer)),
                    QXE_CASE(ErrorMessage, RQXGetErrorLog(numbers, buffer, numbers, nullptr)),
                    QXE_CASE(Environment, RQXGetEnvironment(nullptr)),
                    QXE_CASE(MemInfo, RQXGetSystemMemInfo(&size, nullptr)),
                    QXE_CASE(SavedFlag, RQXGetSavedFlag(numbers, nullptr, numbers)),
                    QXE_CASE(PlainSavedFlag, QXGetSavedFlag(nullptr, numbers, numbers)),
                    QXE_CASE(TimeText, RQXStrToTime(nullptr, &real)),
                    QXE_CASE(TimeOut, RQXStrToTime("1:00", nullptr)),
                    QXE_CASE(IntText, QXStrToInt(nullptr, numbers)),
                    QXE_CASE(FloatOut, QXStrToFloat("1", nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    Files, MissingPointerTest,
    testing::Values(QXE_CASE(PathName, RQXGetPathName(nullptr, buffer)),
                    QXE_CASE(PlainPathName, QXGetPathName(buffer, nullptr)),
                    QXE_CASE(DatabaseInfo, RQXGetQXDFileInfo("", "x", nullptr)),
                    QXE_CASE(TableInfo, RQXGetQXTFileInfo("", "x", nullptr)),
                    QXE_CASE(LoadedIds, RQXLoadRealTable2("x", 0, 1, nullptr, &offset)),
                    QXE_CASE(LoadedEnd, RQXLoadRealTable2("x", 0, 1, numbers, nullptr)),
                    QXE_CASE(SavedIds, RQXSaveRealTable2("x", 0, nullptr, &offset)),
                    QXE_CASE(SavedEnd, RQXSaveRealTable2("x", 0, kFilters, nullptr))),
    case_name<PointerCase>);

class MissingPlaceTest : public EngineTest, public testing::WithParamInterface<PointerCase> {};

TEST_P(MissingPlaceTest, IsNoFile) {
  const TestTable table({{"i", ints({1, 2, 3})}}, "t");
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  expect_failure(GetParam().call(table.id()), QX_ERROR_FILE, "Illegal FileName");
  EXPECT_EQ(database_text(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Files, MissingPlaceTest,
    testing::Values(QXE_CASE(LoadFrom, RQXLoadDB(nullptr, "x")),
                    QXE_CASE(LoadName, RQXHSLoadDB("", nullptr)),
                    QXE_CASE(LoadNoName, QXLoadDB("", "")),
                    QXE_CASE(SaveTo, RQXSaveDBAs(nullptr, "x")),
                    QXE_CASE(SaveName, QXSaveDBAs(buffer, nullptr)),
                    QXE_CASE(SaveNoName, RQXSaveDBAsOldVer(buffer, "", 24)),
                    QXE_CASE(LoadTableFrom, RQXLoadRealTable(nullptr, "x")),
                    QXE_CASE(LoadTableName, RQXHSLoadRealTable("", nullptr)),
                    QXE_CASE(LoadTables, RQXLoadRealTable2(nullptr, 0, 1, numbers, &offset)),
                    QXE_CASE(SaveTable, RQXSaveRealTable(nullptr, table)),
                    QXE_CASE(SaveTableAs, RQXSaveRealTableAs("", "", table)),
                    QXE_CASE(SaveTableOld, RQXSaveRealTableAsOldVer("", nullptr, table, 24)),
                    QXE_CASE(SaveTables, RQXSaveRealTable2(nullptr, 0, kFilters, &offset)),
                    QXE_CASE(InfoFrom, RQXGetQXDFileInfo(nullptr, "x", &file_info)),
                    QXE_CASE(InfoName, RQXGetQXTFileInfo("", nullptr, &file_info))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    Tables, MissingPointerTest,
    testing::Values(QXE_CASE(GenName, RQXGenTableName("a", nullptr)),
                    QXE_CASE(PlainGenName, QXGenTableName("a", nullptr)),
                    QXE_CASE(IdList, RQXGetTableIDList(nullptr)),
                    QXE_CASE(Name, RQXGetTableName(table, nullptr)),
                    QXE_CASE(Property, QXGetTableProperty(table, nullptr)),
                    QXE_CASE(CanEdit, RQXTableCanEdit(table, nullptr)),
                    QXE_CASE(PlainCanEdit, QXTableCanEdit(table, nullptr)),
                    QXE_CASE(TotalSize, RQXGetTotalMemorySize(nullptr)),
                    QXE_CASE(SharedSize, RQXGetTotalMemorySizeWithShared(nullptr)),
                    QXE_CASE(TableSize, QXGetTableMemorySize(table, nullptr)),
                    QXE_CASE(FilterSize, RQXGetFilterMemorySize(table, 1, nullptr)),
                    QXE_CASE(SetSize, RQXGetSetMemorySize(table, 1, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(Sets, MissingPointerTest,
                         testing::Values(QXE_CASE(Count, RQXGetSet(table, 1, nullptr, 10, numbers)),
                                         QXE_CASE(Rows, RQXGetSet(table, 1, numbers, 10, nullptr)),
                                         QXE_CASE(PlainRows, QXGetSet(table, 1, nullptr)),
                                         QXE_CASE(List, RQXGetSetList(table, 10, nullptr)),
                                         QXE_CASE(IdList, RQXGetSetIDList(table, 10, nullptr)),
                                         QXE_CASE(AttrOut, RQXGetSubsetAttr(table, 1, nullptr)),
                                         QXE_CASE(AttrIn, RQXSetSubsetAttr(table, 1, nullptr)),
                                         QXE_CASE(Name, QXGetSetName(table, 1, nullptr))),
                         case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    Joins, MissingPointerTest,
    testing::Values(
        QXE_CASE(MasterKeys, RQXAddJoinTable(buffer, 0, table, -1, nullptr, table, -1, keys)),
        QXE_CASE(SlaveKeys, QXAddJoinTable(buffer, 0, table, -1, keys, table, -1, nullptr)),
        QXE_CASE(InfoName, RQXGetJoinInfo(table, nullptr, numbers, numbers, numbers, numbers,
                                          numbers, numbers)),
        QXE_CASE(InfoKeys, QXGetJoinInfoEx(table, buffer, numbers, numbers, numbers, numbers,
                                           numbers, numbers, numbers, nullptr)),
        QXE_CASE(InfoOuter,
                 RQXGetJoinInfoR1(table, numbers, numbers, numbers, numbers, nullptr, numbers)),
        QXE_CASE(Parents, RQXGetJoinSrcTblIDs(table, numbers, nullptr)),
        QXE_CASE(Source, RQXGetJoinSrcTblInfo(table, 1, nullptr, numbers, numbers)),
        QXE_CASE(KeyInfo, RQXGetJoinKeyInfo(table, 0, nullptr)),
        QXE_CASE(KeyBody, RQXGetJoinKeyBody(table, 0, nullptr)),
        QXE_CASE(Key, QXGetJoinKey(table, 0, nullptr)),
        QXE_CASE(SlaveRows, RQXGetJoinSlaveSet(table, 1, numbers, 10, nullptr)),
        QXE_CASE(PlainSlaveRows, QXGetJoinSlaveSet(table, 1, nullptr)),
        QXE_CASE(Index,
                 RQXGetJoinProjectionSets(table, 1, numbers, 10, nullptr, numbers, 0, nullptr)),
        QXE_CASE(PlainIndex,
                 QXGetJoinProjectionSets(table, 1, numbers, &address, nullptr, &address)),
        QXE_CASE(SlaveInfo, RQXGetSlaveInfo(table, nullptr, numbers)),
        QXE_CASE(BackSet, RQXPutJoinSetToParent(table, 0, 0, numbers, nullptr)),
        QXE_CASE(ReturnedSet, RQXReturnSet2SlaveTable(table, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    Filters, MissingPointerTest,
    testing::Values(QXE_CASE(IdList, RQXGetFilterIDList(table, nullptr)),
                    QXE_CASE(Name, RQXGetFilterName(table, 1, nullptr)),
                    QXE_CASE(Info, RQXGetFilterInfo(table, 1, nullptr)),
                    QXE_CASE(Body, RQXGetFilterBody(table, 1, nullptr)),
                    QXE_CASE(Infos, RQXGetAllFilterInfo(table, 2, numbers, nullptr, nullptr)),
                    QXE_CASE(InfoCount, RQXGetAllFilterInfo(table, 0, nullptr, nullptr, nullptr)),
                    QXE_CASE(AttrOut, RQXGetFilterAttr(table, 1, nullptr, false)),
                    QXE_CASE(PlainAttrOut, QXGetFilterAttr(table, 1, nullptr, true)),
                    QXE_CASE(AttrIn, RQXSetFilterAttr(table, 1, nullptr, true)),
                    QXE_CASE(Live, QXGetFilter(table, 1, nullptr)),
                    QXE_CASE(DecimalInfo, RQXGetNumericInfo(table, 1, nullptr, buffer, false)),
                    QXE_CASE(DecimalInfoR1, RQXGetNumericInfoR1(table, 1, nullptr)),
                    QXE_CASE(ValueCounts, QXGetValCount(table, 1, 1, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    DerivedTables, MissingPointerTest,
    testing::Values(
        QXE_CASE(First, RQXCombineRealTable(buffer, table, 1, nullptr, table, 1, keys)),
        QXE_CASE(Second, RQXCombineRealTableEx(buffer, 1, 1, table, 1, keys, table, 1, nullptr)),
        QXE_CASE(Second2, RQXCombineRealTableEx2(buffer, 1, 1, table, 1, keys, table, 1, nullptr)),
        QXE_CASE(PlainFirst, QXCombineRealTable(buffer, table, 1, nullptr, table, 1, keys)),
        QXE_CASE(PlainSecond,
                 QXCombineRealTableEx(buffer, 1, 1, table, 1, keys, table, 1, nullptr)),
        QXE_CASE(Tables, RQXCombineTableList(buffer, nullptr, keys, keys, keys, keys, keys)),
        QXE_CASE(Sets, RQXCombineTableList(buffer, keys, nullptr, keys, keys, keys, keys)),
        QXE_CASE(PlainTables, QXCombineTableList(buffer, nullptr, keys, keys, keys, keys, keys))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    SumsInOneCall, MissingPointerTest,
    testing::Values(QXE_CASE(Dims, RQXNonCubeSum(table, 1, 1, nullptr, 1, keys, keys, keys)),
                    QXE_CASE(Msrs, RQXNonCubeSum(table, 1, 1, keys, 1, nullptr, keys, keys)),
                    QXE_CASE(Flags, RQXNonCubeSum(table, 1, 1, keys, 1, keys, nullptr, keys)),
                    QXE_CASE(Digits, RQXNonCubeSum(table, 1, 1, keys, 1, keys, keys, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    Rows, MissingPointerTest,
    testing::Values(
        QXE_CASE(Type, RQXGetData(table, 1, 1, 0, nullptr, buffer)),
        QXE_CASE(Value, RQXGetData1(table, 1, 1, 1, numbers, nullptr)),
        QXE_CASE(PlainValue, QXGetData1(table, 1, 1, 1, numbers, nullptr)),
        QXE_CASE(Text, RQXGetData1Str(table, 2, 1, 1, numbers, nullptr)),
        QXE_CASE(Sized, RQXGetData1Ex(table, 2, 1, 1, numbers, nullptr, 10)),
        QXE_CASE(Address, RQXGetData1ExPtr(table, 2, 1, 1, numbers, nullptr)),
        QXE_CASE(BlockType, RQXGetData1M(table, 1, 1, 1, nullptr, numbers, buffer, buffer)),
        QXE_CASE(BlockCount, RQXGetData1M(table, 1, 1, 1, numbers, nullptr, buffer, buffer)),
        QXE_CASE(BlockValues, RQXGetData1M(table, 1, 1, 1, numbers, numbers, nullptr, buffer)),
        QXE_CASE(BlockTexts, RQXGetData1MEx(table, 1, 1, 1, numbers, numbers, buffer, nullptr, 9)),
        QXE_CASE(BlockAddresses, RQXGetData1MExPtr(table, 1, 1, 1, numbers, numbers, nullptr)),
        QXE_CASE(RowNumber, RQXGetRowNo(table, 1, 0, nullptr)),
        QXE_CASE(RowNumbers, RQXGetRowNo1M(table, 1, 1, 2, nullptr)),
        QXE_CASE(ValueNumbers, RQXGetVNoList(table, 1, 1, nullptr)),
        QXE_CASE(IntBlock, RQXGetData1MIntR1(table, 1, 1, 1, nullptr, numbers)),
        QXE_CASE(IntBlockValues, RQXGetData1MIntR1(table, 1, 1, 1, numbers, nullptr)),
        QXE_CASE(DoubleBlock, RQXGetData1MDblR1(table, 1, 1, 1, numbers, nullptr)),
        QXE_CASE(DecimalBlock, RQXGetData1MNumericR1(table, 1, 1, 1, nullptr, &decimal_out)),
        QXE_CASE(TextBlock, RQXGetData1MStrR1(table, 2, 1, 1, numbers, nullptr, buffer)),
        QXE_CASE(Decimal, RQXGetData1NumericR1(table, 1, 1, 1, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    Edits, MissingPointerTest,
    testing::Values(QXE_CASE(Data, RQXOverwriteRealEx(table, 1, 1, 1, 1, nullptr)),
                    QXE_CASE(PlainData, QXOverwriteRealEx(table, 1, 1, 1, 1, nullptr)),
                    QXE_CASE(Texts, RQXOverwriteRealExStr(table, 2, 1, 1, 1, nullptr)),
                    QXE_CASE(Value, RQXFillRealEx(table, 1, 1, 1, 1, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    SearchesAndSorts, MissingPointerTest,
    testing::Values(
        QXE_CASE(Bound, RQXSearchByField(table, 1, 1, QX_OPE_EQ, nullptr, nullptr)),
        QXE_CASE(Values, RQXSearchByFieldNValues(table, 1, 1, 2, nullptr)),
        QXE_CASE(Pattern, RQXSearchByFieldWildCard(table, 2, 1, nullptr)),
        QXE_CASE(PlainPattern, QXSearchByFieldWildCard(table, 2, 1, nullptr)),
        QXE_CASE(Flags, QXSearch(table, 1, 1, nullptr)),
        QXE_CASE(Keys, RQXIntegratedSortByField(table, 1, nullptr, keys)),
        QXE_CASE(Directions, RQXIntegratedSortByField(table, 1, keys, nullptr)),
        QXE_CASE(SetResult, QXSetOpe2(QX_SET_OR, 1, {}, {}, nullptr)),
        QXE_CASE(UniqueKeys, RQXExtractUniqueReal(table, 1, nullptr)),
        QXE_CASE(Counts, QXServiceSortByN(2, nullptr, numbers, numbers, numbers)),
        QXE_CASE(NonZero, QXServiceSortByN(2, numbers, nullptr, numbers, numbers)),
        QXE_CASE(ExportFilters, RQXExportAsCSV(table, 1, nullptr, -1, -1, "", "out.csv", '/')),
        QXE_CASE(CatalogFilters,
                 RQXSaveAsCatalog(table, 1, nullptr, 0, -1, -1, '/', "", "out.cat")),
        QXE_CASE(CompileData, iCompileInt(2, 2, nullptr, &address, &address)),
        QXE_CASE(CompileNumbers, iCompileInt(2, 2, numbers, nullptr, &address)),
        QXE_CASE(CompileValues, iCompileNumeric(2, 2, &decimal_out, &address, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    Finds, MissingPointerTest,
    testing::Values(QXE_CASE(Low, RQXOpenStrFindReal(table, 2, QX_OPE_CONTAINS, nullptr, buffer)),
                    QXE_CASE(High, QXOpenStrFindReal(table, 2, QX_OPE_BETWEEN, buffer, nullptr)),
                    QXE_CASE(LowOfLocale,
                             RQXOpenStrFindRealLocale(table, 2, 0, nullptr, buffer, 99)),
                    QXE_CASE(Count, RQXGetFindStatus(table, nullptr, numbers)),
                    QXE_CASE(Filter, QXGetFindStatus(table, numbers, nullptr)),
                    QXE_CASE(HitFilter, RQXGetNextHitReal(table, 1, 1, 0, 0, nullptr, numbers)),
                    QXE_CASE(HitPosition, QXGetNextHitReal(table, 1, 1, 0, 0, numbers, nullptr))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    MemoryImages, MissingPointerTest,
    testing::Values(QXE_CASE(Size, RQXGetRealTableMemSize(table, nullptr)),
                    QXE_CASE(SaveBlock, RQXSaveRealTable2Mem(table, 10, nullptr, &end)),
                    QXE_CASE(SaveEnd, RQXSaveRealTable2Mem(table, 10, buffer, nullptr)),
                    QXE_CASE(LoadBlock, RQXLoadRealTableFromMem(nullptr, &end)),
                    QXE_CASE(LoadEnd, RQXLoadRealTableFromMem(buffer, nullptr)),
                    QXE_CASE(SaveAllBlock, RQXSaveDB2Mem(10, nullptr, &end)),
                    QXE_CASE(SaveAllEnd, RQXSaveDB2Mem(10, buffer, nullptr)),
                    QXE_CASE(LoadAllBlock, RQXLoadDBFromMem(nullptr, &end)),
                    QXE_CASE(LoadAllEnd, RQXLoadDBFromMem(buffer, nullptr)),
                    QXE_CASE(OwnBlock, RQXGetMemRealTable(table, nullptr, &place)),
                    QXE_CASE(OwnSize, RQXGetMemRealTable(table, &end, nullptr)),
                    QXE_CASE(SizedBlock, RQXLoadMemRealTable(nullptr, 10)),
                    QXE_CASE(StreamData, RQXMemStreamWrite(nullptr, 1)),
                    QXE_CASE(PlainStreamData, QXMemStreamWrite(nullptr, 1)),
                    QXE_CASE(StreamSize, RQXMemStreamGetWriteBuf(nullptr, &end)),
                    QXE_CASE(StreamArea, QXMemStreamGetWriteBuf(&place, nullptr)),
                    QXE_CASE(StreamToRead, RQXMemStreamOpenRead(0, nullptr)),
                    QXE_CASE(PlainStreamToRead, QXMemStreamOpenRead(0, nullptr)),
                    QXE_CASE(StreamOut, RQXMemStreamRead(nullptr, 1)),
                    QXE_CASE(PlainStreamOut, QXMemStreamRead(nullptr, 1)),
                    QXE_CASE(StreamMode, RQXMemStreamGetStatus(nullptr, &place, &place, &end)),
                    QXE_CASE(StreamPosition, QXMemStreamGetStatus(&one, &place, nullptr, &end))),
    case_name<PointerCase>);

INSTANTIATE_TEST_SUITE_P(
    FileBrowser, MissingPointerTest,
    testing::Values(
        QXE_CASE(Current, RQXBrowserGetCurrentDirectory(nullptr)),
        QXE_CASE(ListCount, RQXBrowserGetFileList("*", 0, nullptr, numbers, buffer, nullptr)),
        QXE_CASE(ListTotal, RQXBrowserGetFileList("*", 0, numbers, nullptr, buffer, nullptr)),
        QXE_CASE(ListFlags, RQXBrowserGetFileList("*", 0, &one, numbers, buffer, nullptr)),
        QXE_CASE(Position, RQXBrowserGetFile("f", nullptr, numbers, buffer)),
        QXE_CASE(Length, RQXBrowserGetFile64("f", &place, nullptr, buffer)),
        QXE_CASE(Remaining, RQXBrowserGetFileEx("f", 0, nullptr, numbers, buffer)),
        QXE_CASE(GetBuffer, RQXBrowserGetFileEx64("f", 0, &place, &one, nullptr)),
        QXE_CASE(PutBuffer, RQXBrowserPutFile("f", 1, nullptr)),
        QXE_CASE(AppendBuffer, RQXBrowserPutFileEx("f", 1, 1, nullptr))),
    case_name<PointerCase>);

_TRDimensionDef dimension = {1, ""};
_TDimensionDef definitions[QX_MAX_DIM];
int* const n = numbers;

INSTANTIATE_TEST_SUITE_P(
    Summaries, MissingPointerTest,
    testing::Values(QXE_CASE(Dimensions, RQXSummaryOpen(0, table, -1, 1, nullptr, 0)),
                    QXE_CASE(PlainDimensions, QXSummaryOpen(0, table, -1, 1, nullptr, 0)),
                    QXE_CASE(Done, RQXSummaryExec(0, 1, nullptr)),
                    QXE_CASE(PlainDone, QXSummaryExec(0, 1, nullptr)),
                    QXE_CASE(Coordinates, RQXSummaryOpen(0, table, -1, 1, &dimension, 0),
                             RQXSummaryExec(0, 1, n),
                             RQXSummaryRead(0, 1, nullptr, n, n, n, buffer)),
                    QXE_CASE(Value, RQXSummaryRead(0, 1, n, n, n, n, nullptr)),
                    QXE_CASE(PlainRows, QXSummaryRead(0, 1, n, n, n, nullptr, nullptr)),
                    QXE_CASE(Name, RQXCategoryRead(0, 0, 0, nullptr)),
                    QXE_CASE(PlainName, QXCategoryRead(0, 0, 0, nullptr)),
                    QXE_CASE(Status, RQXSummaryStatus(0, n, n, nullptr, n, n)),
                    QXE_CASE(PlainStatus, QXSummaryStatus(0, n, n, n, nullptr, n, n)),
                    QXE_CASE(PlainStatusDone, QXSummaryStatus(0, n, n, n, definitions, n, nullptr)),
                    QXE_CASE(RecordOut, RQXGetSumFilterAttr(table, 1, nullptr)),
                    QXE_CASE(RecordIn, RQXSetSumFilterAttr(table, 1, nullptr)),
                    QXE_CASE(Measures, RQXIsSummaryOutputTable(table, n, nullptr)),
                    QXE_CASE(Total, RQXCalcTotal(table, 1, 1, 1, nullptr)),
                    QXE_CASE(DetailCounts, RQXOpenDetailInfo(table, 1, 1, n, n, nullptr)),
                    QXE_CASE(DetailCount, RQXGetDetailCount(1, 0, 0, 0, 1, nullptr)),
                    QXE_CASE(DetailValue, RQXGetDetailValue(1, 0, 0, 0, 1, n, nullptr)),
                    QXE_CASE(DetailText, RQXGetDetailValueStr(1, 0, 0, 0, 1, n, nullptr))),
    case_name<PointerCase>);

int chain_sets[2][QX_MAX_CHAIN];
_TColumnBuf* blocks = nullptr;

INSTANTIATE_TEST_SUITE_P(
    JoinExits, MissingPointerTest,
    testing::Values(
        QXE_CASE(Chain, RQXRealizeJoinChain(buffer, nullptr, n, chain_sets)),
        QXE_CASE(ChainTables, RQXRealizeJoinChain(buffer, keys, nullptr, chain_sets)),
        QXE_CASE(PlainChainSets, QXRealizeJoinChain(buffer, keys, n, nullptr)),
        QXE_CASE(ChainFilters, RQXRealizeJoinChainEx(buffer, keys, 1, nullptr, n, chain_sets)),
        QXE_CASE(PlainChainFilters, QXRealizeJoinChainEx(buffer, keys, 1, nullptr, n, chain_sets)),
        QXE_CASE(TreeFilters, RQXQualifyTree(table, 0, table, nullptr, 0)),
        QXE_CASE(PlainTreeFilters, QXQualifyTree(table, 0, table, nullptr, 0)),
        QXE_CASE(BlockFilters, QXJBAOpen2(0, table, 1, nullptr)),
        QXE_CASE(BlockNumber, QXJBARead(0, nullptr, n, n, n, n, &address, n, &blocks)),
        QXE_CASE(BlockColumns, QXJBARead(0, n, n, n, n, n, &address, n, nullptr)),
        QXE_CASE(BlockSize, QXJBAStatus(0, nullptr))),
    case_name<PointerCase>);

#undef QXE_CASE

using PointerTest = EngineTest;

TEST_F(PointerTest, EmptyBuffersMayBeMissing) {
  const TestTable table({{"i", ints({1, 2, 3})}});
  EXPECT_EQ(RQXGetSet(table.id(), 1, numbers, 0, nullptr), 3);
  EXPECT_EQ(RQXGetSetList(table.id(), 0, nullptr), 1);
  EXPECT_EQ(RQXGetAllFilterInfo(table.id(), 0, numbers, nullptr, nullptr), 1);
  EXPECT_EQ(RQXGetRowNo1M(table.id(), 1, 1, 0, nullptr), 0);
  EXPECT_EQ(table.rows(RQXSearchByFieldNValues(table.id(), 1, 1, 0, nullptr)), std::vector<int>{});
  EXPECT_EQ(table.rows(RQXSearchByFieldNValues(table.id(), 1, 1, -5, nullptr)), std::vector<int>{});
  EXPECT_EQ(QXFreeMem(nullptr), 0);
  EXPECT_STREQ(RQXNumericNum2StrR1(nullptr, nullptr), "");
}

// Names

/// A call with a name. Names of 255 bytes are taken by it; what longer ones give is `code`, 0 for a
/// name that is cut or looked for in vain without harm.
struct NameCase {
  const char* name;
  std::function<int(int table, const char* name)> call;
  int code;
  int code_of_255 = 0;  // or the failure of a name that fits
};

class LongNameTest : public EngineTest, public testing::WithParamInterface<NameCase> {};

TEST_P(LongNameTest, IsTakenUpToItsLimit) {
  for (const size_t length : {255, 256, 511, 512, 10000}) {
    SCOPED_TRACE(length);
    RQXClearDB();
    const TestTable table({{"i", ints({1, 2, 3})}}, "t");
    RQXSetSavedFlag(1, 1, 1);
    drain_ring();
    const std::string before = database_text();
    const std::string name(length, 'n');
    const int status = GetParam().call(table.id(), name.c_str());
    const int wanted = length == 255 ? GetParam().code_of_255 : GetParam().code;
    if (wanted == 0) {
      EXPECT_GE(status, 0) << to_text(drain_ring());
    } else {
      EXPECT_EQ(hex(status), hex(wanted));
      EXPECT_FALSE(drain_ring().empty());
      EXPECT_EQ(database_text(), before);
    }
  }
}

int add_column(int table, const char* name) {
  return RQXAddRealFilter2(table, 0, name, QX_DT_INTEGER, 3, numbers, nullptr, nullptr);
}
int add_decimal(int table, const char* name) {
  return RQXAddRealFilter2Numeric(table, 0, name, QX_DT_DECIMAL, 0, nullptr, nullptr, nullptr, 2,
                                  4);
}
int combine_tables(int table, const char* name) {
  return RQXCombineRealTable(const_cast<char*>(name), table, 1, keys, table, 1, keys);
}
int combine_table_list(int table, const char* name) {
  int tables[] = {table, 0};
  int sets[] = {1};
  return RQXCombineTableList(const_cast<char*>(name), tables, sets, nullptr, nullptr, nullptr,
                             nullptr);
}
int import_file(const char* dir, const char* catalog, const char* data, const char* table) {
  write_file("c.cat", "//CSV\nI\t1\ta\n");
  write_file("d.csv", "1\n");
  return RQXAddCatalogFileEx2(dir, catalog, dir, data, table);
}
int export_file(int table, const char* dir, const char* file) {
  return RQXExportAsCSV(table, 1, kFilters, -1, -1, dir, file, '/');
}

INSTANTIATE_TEST_SUITE_P(
    Names, LongNameTest,
    testing::Values(
        NameCase{"AddTable", [](int, const char* name) { return RQXAddRealTable(name, 1); },
                 QX_ERROR_TABLE_NAME},
        NameCase{"SetTable",
                 [](int table, const char* name) { return RQXSetTableName(table, name); },
                 QX_ERROR_TABLE_NAME},
        NameCase{"GenTable", [](int, const char* name) { return RQXGenTableName(name, buffer); },
                 QX_ERROR_TABLE_NAME},
        NameCase{"DuplicateTable",
                 [](int table, const char* name) { return RQXDuplicateRealTable(name, table); },
                 QX_ERROR_TABLE_NAME},
        NameCase{"ExtractTable",
                 [](int table, const char* name) {
                   return RQXExtractRealTable(name, table, 1, nullptr);
                 },
                 QX_ERROR_TABLE_NAME},
        NameCase{"CombineTables", combine_tables, QX_ERROR_TABLE_NAME},
        NameCase{"CombineTableList", combine_table_list, QX_ERROR_CHAIN_NAME},
        NameCase{"FindTable", [](int, const char* name) { return RQXGetTableIDFromName(name); },
                 QX_ERROR_NO_TABLE, QX_ERROR_NO_TABLE},
        NameCase{"AddFilter", add_column, QX_ERROR_FILTER_NAME},
        NameCase{"AddDecimals", add_decimal, QX_ERROR_FILTER_NAME},
        NameCase{"SetFilter",
                 [](int table, const char* name) { return RQXSetFilterName(table, 1, name); },
                 QX_ERROR_FILTER_NAME},
        NameCase{"FindFilter",
                 [](int table, const char* name) { return RQXGetFilterIDFromName(table, name); },
                 QX_ERROR_NO_FILTER, QX_ERROR_NO_FILTER},
        NameCase{"SetSet",
                 [](int table, const char* name) { return RQXSetSetName(table, 1, name); }, 0},
        NameCase{"CharCode",
                 [](int, const char* name) { return RQXSetDBCharCode(const_cast<char*>(name)); },
                 QX_ERROR_CHAR_CODE, QX_ERROR_CHAR_CODE},
        NameCase{"LogFile", [](int, const char* name) { return RQXLogInit(3, name); }, 0},
        NameCase{"MessageFile",
                 [](int, const char* name) {
                   Log_message(name, "%s", "text");
                   return 0;
                 },
                 0},
        NameCase{"Number", [](int, const char* name) { return QXStrToInt(name, numbers); },
                 QX_ERROR_PARAMETER, QX_ERROR_PARAMETER},
        NameCase{"Time", [](int, const char* name) { return RQXStrToTime(name, &real); },
                 QX_ERROR_PARAMETER, QX_ERROR_PARAMETER}),
    case_name<NameCase>);

INSTANTIATE_TEST_SUITE_P(
    Files, LongNameTest,
    testing::Values(
        NameCase{"ImportTable",
                 [](int, const char* name) { return import_file("", "c.cat", "d.csv", name); },
                 QX_ERROR_TABLE_NAME},
        NameCase{"ImportDirectory",
                 [](int, const char* name) { return import_file(name, "c.cat", "d.csv", "x"); },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"Catalog",
                 [](int, const char* name) { return import_file("", name, "d.csv", "x"); },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"Data", [](int, const char* name) { return import_file("", "c.cat", name, "x"); },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"ColumnFile",
                 [](int table, const char* name) {
                   return RQXAddRealFilter2(table, 0, "x", 2, 3, nullptr, "", name);
                 },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"AppendedFile",
                 [](int table, const char* name) {
                   return RQXAppendRealFilter2(table, 1, 2, -1, 3, "", name);
                 },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"ValuesFile",
                 [](int table, const char* name) {
                   return RQXSearchByFieldNValuesFromCSV(table, 1, 1, "", name);
                 },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"TableFile", [](int, const char* name) { return RQXLoadRealTable("", name); },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"TableDirectory",
                 [](int, const char* name) { return RQXLoadRealTable(name, "x"); }, QX_ERROR_PATH,
                 QX_ERROR_PATH},
        NameCase{"SavedTable",
                 [](int table, const char* name) { return RQXSaveRealTableAs("", name, table); },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"FileInfo",
                 [](int, const char* name) { return RQXGetQXDFileInfo("", name, &file_info); },
                 QX_ERROR_FILE, QX_ERROR_FILE},
        NameCase{"Export", [](int table, const char* name) { return export_file(table, "", name); },
                 QX_ERROR_FILE},
        NameCase{"ExportDirectory",
                 [](int table, const char* name) { return export_file(table, name, "x.csv"); },
                 QX_ERROR_PATH, QX_ERROR_PATH},
        NameCase{"Format",
                 [](int table, const char* name) {
                   return RQXExportAsCSVwithF(table, 1, kFilters, -1, -1, "", "x.csv", '/', name);
                 },
                 QX_ERROR_FILE, QX_ERROR_FILE}),
    case_name<NameCase>);

using NameTest = EngineTest;

TEST_F(NameTest, TakenNamesWithoutRoomForANumberAreRefused) {
  const std::string name(255, 'n');
  const TestTable table({{name, ints({1})}, {"other", ints({1})}}, name);
  drain_ring();
  expect_failure(RQXAddRealTable(name.c_str(), 1), QX_ERROR_TABLE_NAME);
  expect_failure(add_column(table.id(), name.c_str()), QX_ERROR_FILTER_NAME);
  expect_failure(RQXDupRealFilter(table.id(), 1), QX_ERROR_FILTER_NAME);
  expect_failure(RQXDupRealFilterEx(table.id(), 1, QX_DT_DATE), QX_ERROR_FILTER_NAME);
  expect_failure(RQXDuplicateRealTable(name.c_str(), table.id()), QX_ERROR_TABLE_NAME);
  int twice[] = {1, 1, 0};
  expect_failure(RQXExtractRealTable("x", table.id(), 1, twice), QX_ERROR_FILTER_NAME);
  expect_failure(RQXSetFilterName(table.id(), 2, name.c_str()), QX_ERROR_FILTER_NAME);
  EXPECT_EQ(RQXGetNFilter(table.id()), 2);
  EXPECT_EQ(RQXGetNTable(), 1);
}

// Directories

class DirectoryTest : public EngineTest {
 protected:
  DirectoryTest() : table_({{"i", ints({1, 2})}}, "t") {
    std::filesystem::create_directories("locked/inside");
    for (const char* const directory : {"locked/", "locked/inside/", ""}) {
      write_file(std::string(directory) + "c.cat", "//CSV\nI\t1\ta\n");
      write_file(std::string(directory) + "SrcData.dat", "1\n");
    }
    drain_ring();
  }

  /// Every call on files in `dir` fails with the status of its family and changes nothing.
  void expect_all_fail(const char* dir) {
    const int id = table_.id();
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    expect_failure(RQXAddCatalogFile(dir, "c.cat"), QX_ERROR_FILE, "Invalid Parameter : ");
    expect_failure(RQXAddCatalogFileEx2(dir, "c.cat", dir, "SrcData.dat", "x"), QX_ERROR_FILE,
                   "Invalid Parameter : ");
    expect_failure(RQXAppendCatalogFile(id, -1, 1, dir, "c.cat"), QX_ERROR_FILE);
    expect_failure(RQXAddRealFilter2(id, 0, "x", 2, 1, nullptr, dir, "SrcData.dat"), QX_ERROR_FILE);
    expect_failure(RQXSearchByFieldNValuesFromCSV(id, 1, 1, dir, "SrcData.dat"), QX_ERROR_FILE);
    expect_failure(export_file(id, dir, "out.csv"), QX_ERROR_PATH, "Invalid Parameter : Path");
    expect_failure(RQXSaveRealTable(dir, id), QX_ERROR_PATH, "Invalid Parameter : TablePath(");
    expect_failure(RQXLoadRealTable(dir, "t"), QX_ERROR_PATH, "Invalid Parameter : TablePath(");
    char path[512] = "";
    strncpy(path, dir, sizeof path - 1);
    expect_failure(RQXSaveDBAs(path, "db"), QX_ERROR_PATH, "Invalid Parameter : DBPath(");
    expect_failure(RQXSaveAsCatalog(id, 1, kFilters, 0, -1, -1, '/', dir, "out.cat"), QX_ERROR_PATH,
                   "Invalid Parameter : Path");
    EXPECT_EQ(database_text(), before);
  }

  const TestTable table_;
};

TEST_F(DirectoryTest, ThatCannotBeEnteredIsRefused) {
  ASSERT_EQ(chmod(directory().path().c_str(), 0755), 0);
  ASSERT_EQ(chmod("locked", 0), 0);
  const WithoutRoot nobody;
  expect_all_fail("locked");
  expect_all_fail("locked/inside");
  expect_all_fail((directory() / "locked").c_str());
}

TEST_F(DirectoryTest, ThatCannotBeWrittenFailsExportsOnly) {
  ASSERT_EQ(chmod(directory().path().c_str(), 0555), 0);
  const WithoutRoot nobody;
  expect_failure(export_file(table_.id(), "", "out.csv"), QX_ERROR_FILE, "Illegal FileName");
  expect_failure(RQXSaveAsCatalog(table_.id(), 1, kFilters, 0, -1, -1, '/', "", "out.cat"),
                 QX_ERROR_FILE, "Illegal FileName");
  EXPECT_GT(RQXAddCatalogFile("", "c.cat"), 0);
}

TEST_F(DirectoryTest, ThatCannotBeWrittenFailsSaves) {
  char path[512] = "";
  ASSERT_EQ(RQXSaveDBAs(path, "db"), 0);
  ASSERT_EQ(chmod(directory().path().c_str(), 0555), 0);
  const WithoutRoot nobody;
  expect_failure(RQXSaveDBAs(path, "new"), QX_ERROR_FILE, "Illegal FileName");
  expect_failure(RQXSaveDB(), QX_ERROR_FILE, "Illegal FileName");
  expect_failure(RQXSaveRealTable("", table_.id()), QX_ERROR_FILE, "Illegal FileName");
  EXPECT_EQ(RQXLoadDB(path, "db"), 0);
}

TEST_F(DirectoryTest, FilesThatCannotBeReadAreRefused) {
  ASSERT_EQ(chmod("SrcData.dat", 0), 0);
  ASSERT_EQ(chmod(directory().path().c_str(), 0777), 0);
  RQXSetSavedFlag(1, 1, 1);
  const std::string before = database_text();
  const WithoutRoot nobody;
  expect_failure(RQXAddCatalogFile("", "c.cat"), QX_ERROR_FILE);
  expect_failure(RQXAddRealFilter2(table_.id(), 0, "x", 2, 1, nullptr, "", "SrcData.dat"),
                 QX_ERROR_FILE);
  ASSERT_EQ(database_text(), before);
}

TEST_F(DirectoryTest, ThatIsGoneIsNoPlaceForRelativePaths) {
  const std::string gone = directory() / "gone";
  std::filesystem::create_directory(gone);
  RQXSetSavedFlag(1, 1, 1);
  {
    const WorkingDirectory inside(gone);
    std::filesystem::remove(gone);
    const int id = table_.id();
    expect_failure(RQXAddCatalogFile("", "c.cat"), QX_ERROR_FILE, "Failed to get path");
    expect_failure(RQXAddCatalogFile("sub", "c.cat"), QX_ERROR_FILE, "Failed to get path");
    expect_failure(RQXAddRealFilter2(id, 0, "x", 2, 1, nullptr, "", "SrcData.dat"), QX_ERROR_FILE);
    expect_failure(export_file(id, "", "out.csv"), QX_ERROR_FILE);
    expect_failure(RQXSaveAsCatalogwithF(id, 1, kFilters, 0, -1, -1, '/', "", "out.cat", "f.txt"),
                   QX_ERROR_FILE, "Failed to get path");
    // Absolute paths need no working directory.
    EXPECT_GT(RQXAddCatalogFile(directory().path().c_str(), "c.cat"), 0);
    EXPECT_EQ(export_file(id, directory().path().c_str(), "out.csv"), 0);
  }
  EXPECT_EQ(read_file("out.csv"), "1\n2\n");
}

}  // namespace
}  // namespace qxe::test
