// The serial layer: one function per operation, named after the plain (QX) function. Every one
// catches all exceptions and logs failures under that name, so both families may call it as it is.
// What a call does, its arguments and its result stand in qxe.h.
#pragma once

#include "storage/array.h"
#include "tables/derived_tables.h"

namespace qxe {

struct ChainRequest;
struct JoinBlock;
struct JoinRequest;
struct TreeColumns;
struct DetailPosition;

/// Side of a join for names that may come from either.
constexpr int kBothSides = -1;

// Engine
int innerQXGetVersion(int** version, char** copyright);
int innerQXGetErrorLog(int* time, char* apiName, int* code, char* message);
int innerQXClearDB();
int innerQXGetEnvironment(_TREnvironment* out);
int innerQXGetSystemMemInfo(unsigned long* total, unsigned long* available);
int innerQXSetKanjiCode(int localeId);
int innerQXSetDBCharCode(const char* code);
int innerQXSetTailSpaceFlag(int flag);
int innerQXSetSavedFlag(int sets, int tables, int settings);
int innerQXGetSavedFlag(int* sets, int* tables, int* settings);
int innerQXStrToTime(const char* text, double* out);
int innerQXStrToInt(const char* text, int* out);
int innerQXStrToFloat(const char* text, double* out);
int innerQXFreeMem(void** memory);

// Tables
int innerQXGetNTable();
int innerQXGenerateTableName(const char* seed, char* out);
/// `*out` is a static buffer.
int innerQXGenTableName(const char* seed, char** out);
int innerQXAddRealTable(const char* name, int rows);
int innerQXDeleteTable(int table);
int innerQXGetTableIDList(int* out);
int innerQXGetTableName(int table, char* out);
int innerQXSetTableName(int table, const char* name);
int innerQXGetTableProperty(int table, _TTableInfo* out);
int innerQXGetTableIDFromName(const char* name);
/// `*out` is a static buffer of the referring tables' ids.
int innerQXTableCanEdit(int table, int** out);

// Database and table files
int innerQXLoadDB(const char* dir, const char* name);
int innerQXSaveDB();
int innerQXSaveDBAs(char* dir, const char* name);
int innerQXSaveDBAsOldVer(char* dir, const char* name, int version);
/// Whether a table, 0 for all, can be saved for this data version: 0 or a status.
int innerQXSavePossibleCheck(int table, int version);
int innerQXGetPathName(char* dir, char* name);
int innerQXLoadRealTable(const char* dir, const char* file);
int innerQXLoadRealTable2(const char* path, long offset, int count, int* ids, long* end);
int innerQXSaveRealTable(const char* dir, int table);
int innerQXSaveRealTableAs(const char* dir, const char* file, int table);
int innerQXSaveRealTable2(const char* path, long offset, const int* ids, long* end);
int innerQXSaveRealTableOldVer(const char* dir, int table, int version);
int innerQXSaveRealTableAsOldVer(const char* dir, const char* file, int table, int version);
/// `extension`: ".QXD" or ".QXT", else -1.
int innerQXGetQxeFileInfo(const char* dir, const char* file, const char* extension,
                          _QXFileInfo* out);

// Memory accounting
int innerQXGetTotalMemorySize(unsigned long* size);
int innerQXGetTotalMemorySizeWithShared(unsigned long* size);
int innerQXGetTableMemorySize(int table, unsigned long* size);
int innerQXGetFilterMemorySize(int table, int filter, unsigned long* size);
int innerQXGetSetMemorySize(int table, int set, unsigned long* size);

// Sets
int innerQXGetNSet(int table);
int innerQXGetTotalRows(int table);
int innerQXPurgeSubsets(int table);
int innerQXGetSetSize(int table, int set);
/// `*out` are the live elements.
int innerQXGetSet(int table, int set, int** out);
int innerQXCopySet(int table, int set, int* count, int max, int* out);
int innerQXGetSetIDList(int table, int max, int* out);
int innerQXAddSetReal(int table, int count, const int* rows);
int innerQXDeleteSet(int table, int set);
int innerQXGetCurrentSetID(int table);
int innerQXChangeCurrentSetID(int table, int set);
int innerQXResetSetID(int table, int next);
/// `*out` is the live attribute block.
int innerQXGetSubsetAttr(int table, int set, void** out);
int innerQXSetSubsetAttr(int table, int set, const void* in);
int innerQXSetSetName(int table, int set, const char* name);
int innerQXGetSetName(int table, int set, char* out);

// Set algebra
int innerQXSetOpeReal(int table, int op, int set1, int set2);
int innerQXSetNotReal(int table, int set);
int innerQXSetOpe2(int op, int totalRows, const _TSetDescript& a, const _TSetDescript& b,
                   _TSetDescript* result);

// Filters
int innerQXGetNFilter(int table);
int innerQXGetFilterIDList(int table, int* out);
int innerQXGetFilterWidth(int table, int filter);
int innerQXGetFilterType(int table, int filter);
int innerQXDeleteRealFilter(int table, int filter);
int innerQXMoveRealFilter(int table, int from, int to);
int innerQXSetFilterName(int table, int filter, const char* name);
int innerQXGetFilterName(int table, int filter, char* out);
int innerQXGetFilterIDFromName(int table, const char* name, int side);
int innerQXGetValCount(int table, int filter, int set, int* counts);

// What a filter is made of
int innerQXGetFilter(int table, int filter, _TFilterInfo* out);
int innerQXGetFilterInfo(int table, int filter, _TRFilterInfo* out);
int innerQXGetFilterBody(int table, int filter, const _TRFilterBody* body);
int innerQXGetAllFilterInfo(int table, int max, int* count, _TRFilterInfo* infos,
                            char (*names)[64]);
/// `*out` is the live attribute block.
int innerQXGetFilterAttr(int table, int filter, void** out, bool valueList);
int innerQXSetFilterAttr(int table, int filter, const void* in, bool valueList);

// New filters
int innerQXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                          const char* dir, const char* file);
int innerQXAddRealFilter2Numeric(int table, int pos, const char* name, int type, int rows,
                                 void* data, const char* dir, const char* file,
                                 const NumericInfo& info);

// Rows from a file
int innerQXAppendRealFilter2(int table, int filter, int type, int pos, int rows, const char* dir,
                             const char* file);

// Row editing. Positions count from 1.
int innerQXInsertRealRows(int table, int pos, int count);
int innerQXDeleteRealRows(int table, int start, int count);
int innerQXDeleteRealRowsEx(int table, int set, int start, int count);
int innerQXOverwriteRealEx(int table, int filter, int set, int start, int count, void* data);
int innerQXOverwriteRealExStr(int table, int filter, int set, int start, int count, char** data);
/// One value of the family of data type `type` by the parallel form; QX_ERROR_TYPE_MISMATCH for a
/// column of another family.
int overwrite_with(const char* layer, int type, int table, int filter, int set, int start,
                   void* value);
int fill_with(const char* layer, int type, int table, int filter, int set, int start, int count,
              void* value);

// Scale and rounding of decimals
/// 0, or QX_ERROR_PARAMETER after logging under `layer`.
int check_numeric_info(const char* layer, const NumericInfo* info);
int innerQXGetNumericInfo(int table, int filter, NumericInfo* info, char* name);
int innerQXSetNumericInfo(int table, int filter, const NumericInfo* info);

// Reading rows. Positions count from 0 here, from 1 in the ...1 forms.
int innerQXGetData(int table, int filter, int set, int pos, int* type, void* out);
int innerQXGetData1(int table, int filter, int set, int pos, int* type, void* out);
int innerQXGetData1Ex(int table, int filter, int set, int pos, int* type, void* out, int size);
int innerQXGetData1ExPtr(int table, int filter, int set, int pos, int* type, long* out);
int innerQXGetRowNo(int table, int set, int pos, int* out);
int innerQXGetRowNo1(int table, int set, int pos, int* out);
int innerQXGetRowNo1M(int table, int set, int first, int count, int* out);
int innerQXGetVNoList(int table, int filter, int set, int* out);

// Reading blocks of up to 128 rows
int innerQXGetData1M(int table, int filter, int set, int first, int* type, int* count, void* values,
                     char* strings);
int innerQXGetData1MEx(int table, int filter, int set, int first, int* type, int* count,
                       void* values, char* strings, int size);
int innerQXGetData1MExPtr(int table, int filter, int set, int first, int* type, int* count,
                          long* values);
/// Decimals alone, without their info.
int innerQXGetData1MNumeric(int table, int filter, int set, int first, int* count, Numeric* values);

// Searches
int innerQXSearchByField(int table, int filter, int set, int ope, const char* value1,
                         const char* value2);
int innerQXSearchByField2(int table, int filter, int set, int ope, const char* value1,
                          const char* value2);
int innerQXSearchByFieldSJIS(int table, int filter, int set, int ope, const char* value1,
                             const char* value2);
int innerQXSearchByFieldLocale(int table, int filter, int set, int ope, const char* value1,
                               const char* value2, int localeId);
int innerQXSearchByFieldWildCard(int table, int filter, int set, const char* pattern);
int innerQXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2);
int innerQXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2);
int innerQXSearch(int table, int filter, int set, const unsigned char* flags);

// High-speed search
int innerQXHighSpeedSearchSetMark(int table, int set, int filter, bool on);
int innerQXHighSpeedSearchHasMark(int table, int set, int filter);
int innerQXHighSpeedSearchEnable(int table, int filter, bool on);
int innerQXHighSpeedSearchIsEnabled(int table, int filter);

// Find cursors
int innerQXOpenStrFindReal(int table, int filter, int ope, const char* v1, const char* v2);
int innerQXOpenStrFindRealSJIS(int table, int filter, int ope, const char* v1, const char* v2);
int innerQXOpenStrFindRealLocale(int table, int filter, int ope, const char* v1, const char* v2,
                                 int localeId);
int innerQXOpenIntFindReal(int table, int filter, int ope, int v1, int v2);
int innerQXOpenFloatFindReal(int table, int filter, int ope, double v1, double v2);
int innerQXOpenNumericFindReal(int table, int filter, int ope, const Numeric& v1,
                               const Numeric& v2);
int innerQXGetFindStatus(int table, int* hitCount, int* filterId);
int innerQXGetNextHitReal(int table, int searchId, int set, int position, int backward,
                          int* filterId, int* hitPosition);
int innerQXCloseFindReal(int table);
int innerQXFindRecNoReal(int table, int set, int row);

// Derived tables and filters
int innerQXDuplicateRealTable(const char* name, int table);
int innerQXExtractRealTable(const char* name, int table, int set, const int* filters);
int innerQXExtractRealTableEx(const char* name, int table, int set,
                              const ExtractedColumns& columns);
int innerQXCombineRealTableEx(const char* name, CombinePseudo pseudo, const CombineIds& first,
                              const CombineIds& second);
int innerQXCombineTableList(const char* name, const CombineListIds& ids);
int innerQXCondenseRealTable(int table);
int innerQXDupRealFilter(int table, int filter);
int innerQXDupRealFilterEx(int table, int filter, int type);
int innerQXDupRealFilterExNumeric(int table, int filter, int type, const NumericInfo& info);

// Join tables
struct JoinInfo {  // outputs; null ones are not wanted
  int* masterTable;
  int* slaveTable;
  int* masterSet = nullptr;
  int* slaveSet = nullptr;
  int* outer = nullptr;
  int* nKey = nullptr;
  char* name = nullptr;
  int* masterKeys = nullptr;  // 32 of each, 0 behind the last
  int* slaveKeys = nullptr;
};

int innerQXAddJoinTable(const JoinRequest& request);
int innerQXGetJoinInfo(const char* layer, int table, const JoinInfo& out);
int innerQXGetJoinSrcTblInfo(int table, int filter, int* side, int* srcTable, int* srcFilter);
int innerQXGetJoinKeyInfo(int table, int side, _TRFilterInfo* out);
int innerQXGetJoinKeyBody(int table, int side, const _TRFilterBody* body);
int innerQXGetJoinKey(int table, int side, _TFilterInfo* out);
int innerQXGetJoinDir(int table, int set);
/// `*out` are the live elements.
int innerQXGetJoinSlaveSet(int table, int set, int** out);
int innerQXCopyJoinSlaveSet(int table, int set, int* count, int max, int* out);
int innerQXGetJoinProjectionSets(int table, int set, int* drivingCount, int** driving,
                                 int* drivenCount, int** driven);
int innerQXCopyJoinProjectionSets(int table, int set, int* drivingCount, int drivingMax,
                                  int* drivingOut, int* drivenCount, int drivenMax, int* drivenOut);
int innerQXGetSlaveInfo(int table, int* slaveTable, int* slaveSet);
int innerQXPutJoinSetToParent(int table, int side, bool unmatched, int* tableId, int* setId);
int innerQXReturnSet2SlaveTable(int table, int* tableId);
int innerQXMoveSlaveFlt2Master(int table, int filter);

// Ways out of a join
struct InOutColumn {
  int table;
  int set;
  int filter;
};

int innerQXExtractJoinInOut(const InOutColumn& column, const InOutColumn& other, bool out);
int innerQXConvertJoinToReal(const char* name, int table, int set, const RealizedColumns& columns);
int innerQXRealizeJoinChain(const char* layer, const char* name, const ChainRequest& request);
int innerQXQualifyTree(int tree, const TreeColumns& columns);
int innerQXSetMaxJoinChain(int n);

// Readers of blocks
int innerQXJBAOpen(const char* layer, int slot, int table, int set, const int* filters);
int innerQXJBARead(int slot, JoinBlock* block, int* columnCount, _TColumnBuf** columns);
int innerQXJBAStatus(int slot, int* maxBlockSize);
int innerQXJBAClose(int slot);
/// Rows of the set that QXSearchCallBack loops over.
int innerQXCallBackSetSize(int table, int set);

// Summaries
int innerQXSummaryOpen(int handle, int table, int set, int nDim, const _TDimensionDef* dims,
                       int measure);
/// With the bare filter ids of the exported records.
int innerRQXSummaryOpen(int handle, int table, int set, int nDim, const _TRDimensionDef* dims,
                        int measure);
int innerQXSummaryExec(int handle, int sumMask, int* doneMask);
/// `*value` is the live value.
int innerQXSummaryRead(int handle, int sumType, const int* coords, int* measureType, int* valueType,
                       int* rows, void** value);
int innerQXSummaryRead2(int handle, int sumType, const int* coords, int* measureType,
                        int* valueType, int* rows, void* value);
int innerQXCategoryRead(int handle, int dimNo, int catNo, char** name);
/// `dims` may be null.
int innerQXSummaryStatus(int handle, int* table, int* set, int* nDim, _TDimensionDef* dims,
                         int* measure, int* doneMask);
int innerQXSummaryIntoRealTable(int handle, int nonEmptyOnly);
int innerQXSummaryIntoRealTable2(int handle, int mask, int nonEmptyOnly);
int innerQXAppendSummaryToRealTable(int handle, int table, int mask, int nonEmptyOnly);
int innerQXSummaryClose(int handle);

// Columns of summary tables
int innerQXGetSumFilterAttr(int table, int filter, void* attr);
int innerQXSetSumFilterAttr(int table, int filter, const void* attr);
int innerQXIsSummaryOutputTable(int table, int* nDim, int* nMsr);
int innerQXDimNo2FilterID(int table, int role, int ordinal);
int innerQXCalcTotal(int table, int set, int filter, int mode, double* total);

// Detail
int innerQXOpenDetailInfo(int table, int set, int filter, int* dataType, int* valueCount,
                          int* distinctCount);
int innerQXGetDetailCount(int handle, const DetailPosition& place, int* count);
int innerQXGetDetailValue(int handle, const DetailPosition& place, int* type, void* value);
int innerQXGetDetailValueStr(int handle, const DetailPosition& place, int* type, char* text);
int innerQXCloseDetailInfo(int handle);

// Sorts
int innerQXSortByField(int table, int filter, int set, int dir);
int innerQXSortByRowNo(int table, int filter, int set, int dir);
int innerQXExtractUniqueReal(int table, int set, const int* filters);
int innerQXServiceSortByN(int n, const int* counts, int* nonZero, int* nonZeroIndex, int* order);

// Memory images
int innerQXGetRealTableMemSize(int table, long* size);
int innerQXSaveRealTable2Mem(int table, long size, void* block, void** end);
int innerQXLoadRealTableFromMem(void* block, void** end);
int innerQXLoadMemRealTable(void* block, long size);
int innerQXGetMemRealTable(int table, void** block, long* size);
int innerQXFreeMemRealTable();
int innerQXSaveDB2Mem(long size, void* block, void** end);
int innerQXLoadDBFromMem(void* block, void** end);

// Memory stream
int innerQXMemStreamOpenWrite();
int innerQXMemStreamWrite(const void* data, int size);
int innerQXMemStreamGetWriteBuf(long* size, void** area);
int innerQXMemStreamOpenRead(long size, void* area);
int innerQXMemStreamRead(void* data, int size);
int innerQXMemStreamGetStatus(int* mode, long* used, long* position, void** area);
int innerQXMemStreamClose();
int innerQXSaveRealTableMem(int table, bool one_set);
int innerQXLoadRealTableMem();

// File browser
int innerRQXBrowserGetCurrentDirectory(char* path);
int innerRQXBrowserSetCurrentDirectory(const char* path);
int innerRQXBrowserMakeDirectory(const char* path);
int innerRQXBrowserDelDirectory(const char* path, int recursive);
int innerRQXBrowserMove(const char* from, const char* to);
int innerRQXBrowserGetFileList(const char* pattern, int* count, int* total, char* names,
                               unsigned char* flags);
int innerRQXBrowserGetFileSize(const char* path);
int innerRQXBrowserGetFile(const char* path, int* position, int* length, void* buffer);
int innerRQXBrowserGetFile64(const char* path, long* position, int* length, void* buffer);
int innerRQXBrowserGetFileEx(const char* path, int position, int* remaining, int* length,
                             void* buffer);
int innerRQXBrowserGetFileEx64(const char* path, long position, long* remaining, int* length,
                               void* buffer);
int innerRQXBrowserPutFile(const char* path, int length, const void* buffer);
int innerRQXBrowserPutFileEx(const char* path, int mode, int length, const void* buffer);
int innerRQXBrowserDelFile(const char* path);

/// Copies the attribute block whose address `get(&area)` finds.
template <class Get>
int copy_area(void* out, Get&& get) {
  void* area = nullptr;
  const int status = get(&area);
  if (status >= 0) memcpy(out, area, TBaseArray::kUserAreaSize);
  return status;
}

}  // namespace qxe
