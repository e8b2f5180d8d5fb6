/*
 * The interface of QxeEngine, an in-memory, column-oriented analytic database engine.
 *
 * Every function takes table, filter (column) and set (row list) identifiers as int and returns a
 * 32-bit status: 0 or above is success, often a count or an identifier; below 0 is a failure, one
 * of the QX_ERROR_ codes. The engine is ready as soon as the library is loaded.
 */
#ifndef QXE_H
#define QXE_H

#include <stdbool.h>

#include "qxe_numeric.h"

#ifdef __GNUC__
#define QXE_API __attribute__((visibility("default")))
#define QXE_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define QXE_API
#define QXE_PRINTF(text, first)
#endif

/* Status codes. All failures have the form 0xe0000xxx and are negative as int. */
#define QX_ERROR_NEGATIVE_SIZE ((int)0xe0000001)
#define QX_ERROR_INNER_ENGINE ((int)0xe0000003)
#define QX_ERROR_PATH ((int)0xe0000004)
#define QX_ERROR_UNIT_SIZE ((int)0xe000000a)
#define QX_ERROR_NEGATIVE_ROWS ((int)0xe000000c)
#define QX_ERROR_ROW_SIZE ((int)0xe000000d)
#define QX_ERROR_ROW_POSITION ((int)0xe000000e)
#define QX_ERROR_FILTER_COUNT ((int)0xe0000011)
#define QX_ERROR_FILTER_INDEX ((int)0xe0000012)
#define QX_ERROR_DATA_SIZE ((int)0xe0000015)
#define QX_ERROR_STRING_SIZE ((int)0xe0000016)
#define QX_ERROR_OUT_OF_MEMORY ((int)0xe0000018)
#define QX_ERROR_CUBE_SIZE ((int)0xe0000019)
#define QX_ERROR_SUMMARY_PARAMETER ((int)0xe000001a)
#define QX_ERROR_DATA_TYPE ((int)0xe0000033)
#define QX_ERROR_OPERATION ((int)0xe0000034)
#define QX_ERROR_TABLE_NAME ((int)0xe0000035)
#define QX_ERROR_FILTER_NAME ((int)0xe0000036)
#define QX_ERROR_JOIN_SIDE ((int)0xe0000037)
#define QX_ERROR_SUMMARY_HANDLE ((int)0xe0000039)
#define QX_ERROR_TABLE_COUNT_LOAD ((int)0xe0000063)
#define QX_ERROR_TABLE_COUNT ((int)0xe0000064)
#define QX_ERROR_JOIN_SIZE ((int)0xe0000065)
#define QX_ERROR_SET_COUNT ((int)0xe0000066)
#define QX_ERROR_BLOCK_SIZE ((int)0xe0000067)
#define QX_ERROR_REALIZE ((int)0xe0000068)
#define QX_ERROR_NO_RECORD ((int)0xe0000069)
#define QX_ERROR_NO_FILTER ((int)0xe000006a)
#define QX_ERROR_NO_MASTER_KEY ((int)0xe000006b)
#define QX_ERROR_NO_SLAVE_KEY ((int)0xe000006c)
#define QX_ERROR_NO_TABLE ((int)0xe000006d)
#define QX_ERROR_NO_MASTER_TABLE ((int)0xe000006e)
#define QX_ERROR_NO_SLAVE_TABLE ((int)0xe000006f)
#define QX_ERROR_NOT_JOIN_SOURCE ((int)0xe0000070)
#define QX_ERROR_NO_SET ((int)0xe0000071)
#define QX_ERROR_NO_JOIN_SET ((int)0xe0000072)
#define QX_ERROR_NO_SLAVE_SET ((int)0xe0000073)
#define QX_ERROR_TYPE_MISMATCH ((int)0xe0000074)
#define QX_ERROR_TABLE_KIND ((int)0xe0000076)
#define QX_ERROR_EMPTY_BLOCK ((int)0xe0000077)
#define QX_ERROR_INDEX ((int)0xe0000079)
#define QX_ERROR_NO_SET_ID ((int)0xe000007a)
#define QX_ERROR_DATA_WIDTH ((int)0xe000007b)
#define QX_ERROR_MERGE_TYPE ((int)0xe000007c)
#define QX_ERROR_NOT_REAL_SOURCE ((int)0xe000007e)
#define QX_ERROR_UNIQUE_FILTERS ((int)0xe000007f)
#define QX_ERROR_APPEND_TYPE ((int)0xe0000080)
#define QX_ERROR_COMBINE_SET ((int)0xe0000081)
#define QX_ERROR_PARAMETER ((int)0xe0000082)
#define QX_ERROR_ROW_RANGE ((int)0xe0000083)
#define QX_ERROR_REALIZE_ROWS ((int)0xe0000085)
#define QX_ERROR_ROOT_SET ((int)0xe0000086)
#define QX_ERROR_REFERRED ((int)0xe0000087)
#define QX_ERROR_NO_JOIN_FILTER ((int)0xe0000088)
#define QX_ERROR_NOT_REAL ((int)0xe0000089)
#define QX_ERROR_NOT_JOIN ((int)0xe000008a)
#define QX_ERROR_CUT_SET ((int)0xe000008c)
#define QX_ERROR_FILE ((int)0xe000008d)
#define QX_ERROR_NOT_FOUND ((int)0xe000008e)
#define QX_ERROR_GEN_TABLE_NAME ((int)0xe000008f)
#define QX_ERROR_NOT_INNER_JOIN ((int)0xe0000090)
#define QX_ERROR_CHAIN_NAME ((int)0xe0000091)
#define QX_ERROR_NOT_CHAIN ((int)0xe0000092)
#define QX_ERROR_TREE ((int)0xe0000093)
#define QX_ERROR_UNIQUE ((int)0xe0000094)
#define QX_ERROR_EXISTS ((int)0xe0000095)
#define QX_ERROR_DELETE ((int)0xe0000096)
#define QX_ERROR_DIR_NOT_EMPTY ((int)0xe0000097)
#define QX_ERROR_ACCESS ((int)0xe0000098)
#define QX_ERROR_NO_SUMMARY ((int)0xe0000099)
#define QX_ERROR_SUMMARY_IN_USE ((int)0xe000009a)
#define QX_ERROR_SUMMARY_DONE ((int)0xe000009b)
#define QX_ERROR_DETAIL ((int)0xe000009c)
#define QX_ERROR_PROJECTION ((int)0xe00000ca)
#define QX_ERROR_JOIN_DATA_TYPE ((int)0xe00000cc)
#define QX_ERROR_FILE_NAME ((int)0xe00000cd)
#define QX_ERROR_FILE_FORMAT ((int)0xe00000ce)
#define QX_ERROR_MEM_STREAM ((int)0xe00000cf)
#define QX_ERROR_CATEGORY_TABLE ((int)0xe00000d0)
#define QX_ERROR_CATEGORY_ROWS ((int)0xe00000d1)
#define QX_ERROR_STREAM_CLOSED ((int)0xe00000d2)
#define QX_ERROR_FIND_CLOSED ((int)0xe00000dc)
#define QX_ERROR_FIND_ID ((int)0xe00000dd)
#define QX_ERROR_NOT_NUMBER ((int)0xe00000e7)
#define QX_ERROR_CALC_TOKEN ((int)0xe00000e8)
#define QX_ERROR_CALC_NAME ((int)0xe00000e9)
#define QX_ERROR_CALC_PROGRAM ((int)0xe00000ea)
#define QX_ERROR_CALC_SYNTAX ((int)0xe00000ee)
#define QX_ERROR_CALC_BUFFER ((int)0xe00000f0)
#define QX_ERROR_TREE_NODES ((int)0xe00000fa)
#define QX_ERROR_IC_ALLOC1 ((int)0xe0000104)
#define QX_ERROR_IC_ALLOC2 ((int)0xe0000105)
#define QX_ERROR_IC_SYNTAX ((int)0xe0000106)
#define QX_ERROR_SHARED_READ_ONLY ((int)0xe000010e)
#define QX_ERROR_SHARED_VERIFY ((int)0xe000010f)
#define QX_ERROR_SHARED_MAP ((int)0xe0000111)
#define QX_ERROR_CATALOG ((int)0xe0000112)
#define QX_ERROR_INVALID_DATA ((int)0xe0000113)
#define QX_ERROR_NOT_STRING ((int)0xe0000114)
#define QX_ERROR_TEXT_FIELD ((int)0xe0000115)
#define QX_ERROR_TEXT_ROWS ((int)0xe0000116)
#define QX_ERROR_TEXT_MEMORY ((int)0xe0000117)
#define QX_ERROR_SMCS_EXISTS ((int)0xe0000118)
#define QX_ERROR_CHAR_CODE ((int)0xe0000119)
#define QX_ERROR_LOCALE ((int)0xe000011a)
#define QX_ERROR_SAVE_VERSION ((int)0xe000011d)
#define QX_ERROR_SAVE_CODE ((int)0xe000011e)
#define QX_ERROR_SAVE_NOT_REAL ((int)0xe000011f)
#define QX_ERROR_ALIGNMENT ((int)0xe0000120)
#define QX_ERROR_MEM_IMAGE ((int)0xe0000121)
#define QX_ERROR_QUERY_INTERNAL ((int)0xe0000122)
#define QX_ERROR_QUERY_SYNTAX ((int)0xe0000123)
#define QX_ERROR_QUERY_SEMANTIC ((int)0xe0000124)
#define QX_ERROR_QUERY_VALUE ((int)0xe0000125)
#define QX_ERROR_TEXT_SIZE ((int)0xe0000126)
#define QX_ERROR_HIGH_SPEED_FILTER ((int)0xe0000136)
#define QX_ERROR_JOIN_SUM_ROWS ((int)0xe0000140)
#define QX_ERROR_JOIN_SUM_SIZE ((int)0xe0000141)
#define QX_ERROR_NOT_SUMMARY_TABLE ((int)0xe0000142)
#define QX_ERROR_NO_DIMENSION ((int)0xe0000143)
#define QX_ERROR_TOTAL_KIND1 ((int)0xe0000144)
#define QX_ERROR_TOTAL_KIND2 ((int)0xe0000145)
#define QX_ERROR_WORKER_LOST ((int)0xe000015e)
#define QX_ERROR_UNKNOWN ((int)0xe00001f4)
#define QX_ERROR_SMCS_LOCK1 ((int)0xe0000258)
#define QX_ERROR_SMCS_INTERRUPTED ((int)0xe0000259)
#define QX_ERROR_SHM_BUSY ((int)0xe000025a)
#define QX_ERROR_SMCS_ABSENT ((int)0xe000025b)
#define QX_ERROR_SMCS_READY ((int)0xe000025c)
#define QX_ERROR_SMCS_IN_USE ((int)0xe000025d)
#define QX_ERROR_SHM_CAPACITY ((int)0xe000025e)
#define QX_ERROR_SHM_NOT_SETUP ((int)0xe000025f)
#define QX_ERROR_SHM_NOT_LOADED ((int)0xe0000260)
#define QX_ERROR_SHM_LOADED ((int)0xe0000261)
#define QX_ERROR_SHM_ATTACHED ((int)0xe0000262)
#define QX_ERROR_SHM_TABLE_LOAD ((int)0xe0000263)
#define QX_ERROR_SEM_ABSENT ((int)0xe0000264)
#define QX_ERROR_SHM_LOCK ((int)0xe0000265)
#define QX_ERROR_SHM_INVALID ((int)0xe0000266)
#define QX_ERROR_CHECK_LOG ((int)0xe000032b)
#define QX_ERROR_SHM_NO_SEGMENT ((int)0xe0000267)

/* Data type codes of columns. */
enum {
  QX_DT_INTEGER = 2,
  QX_DT_DOUBLE = 3,
  QX_DT_DATE = 4,
  QX_DT_TIME = 5,
  QX_DT_STRING = 6,
  QX_DT_DATETIME = 7,
  QX_DT_DECIMAL = 8
};

/* Database character codes. */
enum {
  QX_CODE_NOTDEFINED = 0,
  QX_CODE_CP1252 = 17,
  QX_CODE_MS932 = 18,
  QX_CODE_MS949 = 19,
  QX_CODE_SJIS = 20,
  QX_CODE_UTF8 = 33,
  QX_CODE_EUC = 49,
  QX_CODE_MS936 = 65
};

/* Locale identifiers, one per character code. */
enum {
  QX_LOCALE_SJIS = 0,
  QX_LOCALE_MS932 = 1,
  QX_LOCALE_MS949 = 2,
  QX_LOCALE_UTF8 = 3,
  QX_LOCALE_EUC = 4,
  QX_LOCALE_CP1252 = 5,
  QX_LOCALE_MS936 = 6
};

/* Pseudo filter ids: QX_FLT_ROWNO reads the row number. */
enum { QX_FLT_ROWNO = 0, QX_FLT_TABLE_ID = 0xff00, QX_FLT_REC_NO = 0xfe00 };

/* NULL of an integer column. The double family uses negative infinity, strings the empty string,
 * decimals the NaN of RQXNumericSetNan. */
#define QX_NULL_INT ((int)0x80000000)

/* Search operators: a code in the low seven bits, QX_OPE_STRICT may be added. */
enum {
  QX_OPE_EQ = 0,
  QX_OPE_BETWEEN = 1,
  QX_OPE_LEQ = 2,
  QX_OPE_GEQ = 3,
  QX_OPE_NEQ = 4,
  QX_OPE_WITHIN = 5,
  QX_OPE_LES = 6,
  QX_OPE_GT = 7,
  QX_OPE_BEGINS = 8,
  QX_OPE_CONTAINS = 9,
  QX_OPE_ENDS = 10,
  QX_OPE_ISNULL = 11,
  QX_OPE_STRICT = 0x80
};

/* Sort directions; most keys of one multi-key sort. */
enum { QX_SORT_ASC = 0, QX_SORT_DESC = 1, QX_MAX_SORT_KEYS = 512 };

/* Catalog file types and error modes. */
enum { QX_CAT_TAB = 1, QX_CAT_CSV = 2, QX_CAT_FIX = 3, QX_CAT_USR = 4 };
enum { QX_ERRMODE_NONE = 0, QX_ERRMODE_STOP = 1, QX_ERRMODE_CONTINUE = 2, QX_ERRMODE_SKIPLINE = 3 };

/* Separator of RQXSaveAsCatalog. */
enum { QX_EXPORT_COMMA = 0, QX_EXPORT_TAB = 1 };

/* Limits. */
enum { QX_EXPORT_MAX_THREADS = 16, QX_CATALOG_MAX_COLUMNS = 512 };

typedef struct _TTableInfo {
  int id;
  int kind; /* 0 real table, 2 join table */
  int filterCount;
  int setCount;
  int totalRows;
  char name[256];
} _TTableInfo;

typedef struct _TRFilterInfo {
  int id;
  int type;       /* data type code */
  int unitSize;   /* bytes of one value: 4, 8, 8 (string offset), 16 */
  int valueCount; /* distinct values, entry 0 (NULL) included */
  int poolSize;   /* bytes used in the string pool, 0 when not a string column */
  char name[264];
} _TRFilterInfo;

/* Buffers of RQXGetFilterBody with their capacities; a null buffer or capacity 0 skips the part. */
typedef struct _TRFilterBody {
  int pvCapacity;    /* elements */
  int* pv;           /* value numbers from row 0 on */
  int valueCapacity; /* elements */
  void* values;      /* int / double / Numeric (NumericInfo first) / 8-byte pool offsets */
  int poolCapacity;  /* bytes */
  char* pool;
} _TRFilterBody;

/* Pointers into the engine, valid until the column changes. */
typedef struct _TFilterInfo {
  int rowCount; /* elements of pv: total rows + 1 */
  int* pv;      /* value numbers, index = row number */
  int type;
  int unitSize;
  int valueCount;
  void* values; /* strings: 8-byte offsets into pool */
  char* pool;   /* null unless string */
  char name[264];
  int orgTableId;
  int orgFilterId;
} _TFilterInfo;

typedef struct _TREnvironment {
  char hostName[256];
  int osType;
  int osMajor;
  int osMinor;
  int hardwareKind;
  int processorCount;
  int hardwareMinor;
  int endian;
  int wordSize;
  char reserved[32];
  char osCharCode[32];
  char dbCharCode[32];
} _TREnvironment;

#ifdef __cplusplus
extern "C" {
#endif

/* Engine, errors, log */

QXE_API int RQXGetVersion(int version[4], char* copyright);
QXE_API int QXGetVersion(int** version, char** copyright);
QXE_API const char* RQXGetCopyRightR1(void);
QXE_API int RQXGetVersionR1(int version[4]);
QXE_API int RQXGetErrorLog(int* time, char* apiName, int* code, char* message);
QXE_API int QXGetErrorLog(int* time, char** apiName, int* code, char** message);
QXE_API int RQXLogInit(int option, const char* file);
QXE_API int QXLogInit(int option, const char* file);
QXE_API int RQXClearDB(void);
QXE_API int QXClearDB(void);
QXE_API int RQXShutdown(void);
QXE_API int RQXReInitializeMS(void);
QXE_API int RQXGetEnvironment(_TREnvironment* out);
QXE_API int RQXGetSystemMemInfo(unsigned long* total, unsigned long* available);
QXE_API int RQXSetKanjiCode(int localeId);
QXE_API int QXSetKanjiCode(int localeId);
QXE_API int RQXSetDBCharCode(char* code);
QXE_API int RQXSetTailSpaceFlag(int flag);
QXE_API int QXSetTailSpaceFlag(int flag);
QXE_API int RQXSetSavedFlag(int sets, int tables, int settings);
QXE_API int QXSetSavedFlag(int sets, int tables, int settings);
QXE_API int RQXGetSavedFlag(int* sets, int* tables, int* settings);
QXE_API int QXGetSavedFlag(int* sets, int* tables, int* settings);
QXE_API int RQXStrToTime(const char* text, double* out);
QXE_API int QXStrToTime(const char* text, double* out);
QXE_API int QXStrToInt(const char* text, int* out);
QXE_API int QXStrToFloat(const char* text, double* out);
QXE_API int QXFreeMem(void** memory);
QXE_API void LOG_Create(const char* format, ...) QXE_PRINTF(1, 2);
QXE_API void Log_message(const char* file, const char* format, ...) QXE_PRINTF(2, 3);
QXE_API int RQXConnect2ZVKServer(const char* server);
QXE_API int RQXDisconnectFromZVKServer(void);
QXE_API int RQXGetNamingServiceIdentity(char* out);
QXE_API int RQXGetServerIPAddress(char* out);
QXE_API int RQXSetJoinCheckFlag(int flag);

/* Tables */

QXE_API int RQXGetNTable(void);
QXE_API int RQXGenerateTableName(const char* seed, char* out);
QXE_API int RQXGenTableName(const char* seed, char* out);
QXE_API int QXGetNTable(void);
QXE_API int QXGenerateTableName(const char* seed, char* out);
QXE_API int QXGenTableName(const char* seed, char** out);
QXE_API const char* RQXGenerateTableNameR1(const char* seed);
QXE_API const char* RQXGenTableNameR1(const char* seed);
QXE_API int RQXAddRealTable(const char* name, int rows);
QXE_API int QXAddRealTable(const char* name, int rows);
QXE_API int RQXDeleteTable(int table);
QXE_API int QXDeleteTable(int table);
QXE_API int RQXGetTableIDList(int* out);
QXE_API int QXGetTableIDList(int* out);
QXE_API int RQXGetTableName(int table, char* out);
QXE_API int QXGetTableName(int table, char* out);
QXE_API const char* RQXGetTableNameR1(int table);
QXE_API int RQXSetTableName(int table, const char* name);
QXE_API int QXSetTableName(int table, const char* name);
QXE_API int RQXGetTableProperty(int table, _TTableInfo* out);
QXE_API int QXGetTableProperty(int table, _TTableInfo* out);
QXE_API int RQXGetTableIDFromName(const char* name);
QXE_API int QXGetTableIDFromName(const char* name);
QXE_API int RQXTableCanEdit(int table, int* out);
QXE_API int QXTableCanEdit(int table, int** out);
QXE_API const char* RQXGetDBPathR1(void);
QXE_API const char* RQXGetDBNameR1(void);

/* Memory accounting */

QXE_API int RQXGetTotalMemorySize(unsigned long* size);
QXE_API int RQXGetTotalMemorySizeWithShared(unsigned long* size);
QXE_API int RQXGetTableMemorySize(int table, unsigned long* size);
QXE_API int RQXGetFilterMemorySize(int table, int filter, unsigned long* size);
QXE_API int RQXGetSetMemorySize(int table, int set, unsigned long* size);
QXE_API int QXGetTotalMemorySize(unsigned long* size);
QXE_API int QXGetTableMemorySize(int table, unsigned long* size);
QXE_API int QXGetFilterMemorySize(int table, int filter, unsigned long* size);
QXE_API int QXGetSetMemorySize(int table, int set, unsigned long* size);

/* Sets */

QXE_API int RQXGetNSet(int table);
QXE_API int RQXGetTotalRows(int table);
QXE_API int RQXPurgeSubsets(int table);
QXE_API int RQXGetSetSize(int table, int set);
QXE_API int RQXGetSet(int table, int set, int* count, int max, int* out);
QXE_API int RQXGetSetList(int table, int max, int* out);
QXE_API int RQXGetSetIDList(int table, int max, int* out);
QXE_API int RQXAddSetReal(int table, int count, int* rows);
QXE_API int RQXDeleteSet(int table, int set);
QXE_API int RQXGetCurrentSetID(int table);
QXE_API int RQXChangeCurrentSetID(int table, int set);
QXE_API int RQXResetSetID(int table, int next);
QXE_API int RQXGetSubsetAttr(int table, int set, void* out);
QXE_API int RQXSetSubsetAttr(int table, int set, const void* in);
QXE_API int RQXSetSetName(int table, int set, const char* name);
QXE_API int RQXGetSetName(int table, int set, char* out);
QXE_API const char* RQXGetSetNameR1(int table, int set);
QXE_API int QXGetNSet(int table);
QXE_API int QXGetTotalRows(int table);
QXE_API int QXPurgeSubsets(int table);
QXE_API int QXGetSetSize(int table, int set);
QXE_API int QXGetSet(int table, int set, int** out);
QXE_API int QXGetSetList(int table, int max, int* out);
QXE_API int QXAddSetReal(int table, int count, int* rows);
QXE_API int QXDeleteSet(int table, int set);
QXE_API int QXGetCurrentSetID(int table);
QXE_API int QXChangeCurrentSetID(int table, int set);
QXE_API int QXGetSubsetAttr(int table, int set, void** out);
QXE_API int QXSetSetName(int table, int set, const char* name);
QXE_API int QXGetSetName(int table, int set, char* out);

/* Filters */

QXE_API int RQXGetNFilter(int table);
QXE_API int RQXGetFilterIDList(int table, int* out);
QXE_API int RQXGetFilterWidth(int table, int filter);
QXE_API int RQXGetFilterType(int table, int filter);
QXE_API int RQXGetFilterInfo(int table, int filter, _TRFilterInfo* out);
QXE_API int RQXGetFilterBody(int table, int filter, _TRFilterBody* body);
QXE_API int RQXGetAllFilterInfo(int table, int max, int* count, _TRFilterInfo* infos,
                                char (*names)[64]);
QXE_API int RQXGetFilterAttr(int table, int filter, void* out, bool valueList);
QXE_API int RQXSetFilterAttr(int table, int filter, const void* in, bool valueList);
QXE_API int RQXDeleteRealFilter(int table, int filter);
QXE_API int RQXMoveRealFilter(int table, int from, int to);
QXE_API int RQXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                              const char* dir, const char* file);
QXE_API int RQXAddRealFilter2Numeric(int table, int pos, const char* name, int type, int rows,
                                     void* data, const char* dir, const char* file, int scale,
                                     int rounding);
QXE_API int RQXSetFilterName(int table, int filter, const char* name);
QXE_API int RQXGetFilterName(int table, int filter, char* out);
QXE_API const char* RQXGetFilterNameR1(int table, int filter);
QXE_API int RQXGetFilterIDFromName(int table, const char* name);
QXE_API int RQXGetFilterIDFromName2(int table, const char* name, int side);
QXE_API int RQXSetNumericInfo(int table, int filter, NumericInfo* info, bool unused);
QXE_API int RQXGetNumericInfo(int table, int filter, NumericInfo* info, char* name, bool unused);
QXE_API int RQXGetNumericInfoR1(int table, int filter, NumericInfo* info);
QXE_API int QXGetNFilter(int table);
QXE_API int QXGetFilterIDList(int table, int* out);
QXE_API int QXGetFilterWidth(int table, int filter);
QXE_API int QXGetFilterType(int table, int filter);
QXE_API int QXGetFilter(int table, int filter, _TFilterInfo* out);
QXE_API int QXGetFilterAttr(int table, int filter, void** out, bool valueList);
QXE_API int QXDeleteRealFilter(int table, int filter);
QXE_API int QXMoveRealFilter(int table, int from, int to);
QXE_API int QXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                             const char* dir, const char* file);
QXE_API int QXSetFilterName(int table, int filter, const char* name);
QXE_API int QXGetFilterName(int table, int filter, char* out);
QXE_API int QXGetFilterIDFromName(int table, const char* name);
QXE_API int QXGetValCount(int table, int filter, int set, int* counts);

/* Reading rows */

QXE_API int RQXGetData(int table, int filter, int set, int pos, int* type, void* out);
QXE_API int RQXGetData1(int table, int filter, int set, int pos, int* type, void* out);
QXE_API int RQXGetData1Ex(int table, int filter, int set, int pos, int* type, void* out, int size);
QXE_API int RQXGetData1ExPtr(int table, int filter, int set, int pos, int* type, long* out);
QXE_API int RQXGetData1Str(int table, int filter, int set, int pos, int* type, char* out);
QXE_API int RQXGetData1M(int table, int filter, int set, int first, int* type, int* count,
                         void* values, char* strings);
QXE_API int RQXGetData1MEx(int table, int filter, int set, int first, int* type, int* count,
                           void* values, char* strings, int size);
QXE_API int RQXGetData1MExPtr(int table, int filter, int set, int first, int* type, int* count,
                              long* values);
QXE_API int RQXGetRowNo(int table, int set, int pos, int* out);
QXE_API int RQXGetRowNo1(int table, int set, int pos, int* out);
QXE_API int RQXGetRowNo1M(int table, int set, int first, int count, int* out);
QXE_API int RQXGetVNoList(int table, int filter, int set, int* out);
QXE_API int QXGetData(int table, int filter, int set, int pos, int* type, void* out);
QXE_API int QXGetData1(int table, int filter, int set, int pos, int* type, void* out);
QXE_API int QXGetRowNo(int table, int set, int pos, int* out);
QXE_API int QXGetRowNo1(int table, int set, int pos, int* out);
QXE_API int RQXGetDataIntR1(int table, int filter, int set, int pos);
QXE_API int RQXGetData1IntR1(int table, int filter, int set, int pos);
QXE_API double RQXGetDataDblR1(int table, int filter, int set, int pos);
QXE_API double RQXGetData1DblR1(int table, int filter, int set, int pos);
QXE_API const char* RQXGetDataStrR1(int table, int filter, int set, int pos);
QXE_API const char* RQXGetData1StrR1(int table, int filter, int set, int pos);
QXE_API int RQXGetDataNumericR1(int table, int filter, int set, int pos, Numeric* out);
QXE_API int RQXGetData1NumericR1(int table, int filter, int set, int pos, Numeric* out);
QXE_API int RQXGetData1MIntR1(int table, int filter, int set, int first, int* count, int* values);
QXE_API int RQXGetData1MDblR1(int table, int filter, int set, int first, int* count,
                              double* values);
QXE_API int RQXGetData1MNumericR1(int table, int filter, int set, int first, int* count,
                                  Numeric* values);
QXE_API int RQXGetData1MStrR1(int table, int filter, int set, int first, int* count, int* offsets,
                              char* strings);
QXE_API const char* RQXGetData1Cnv2StrR1(int table, int filter, int set, int pos);

/* Column compilation */

QXE_API int iCompileInt(int n, int k, int* data, int** pv, int** vl);
QXE_API int iCompileFloat(int n, int k, double* data, int** pv, double** vl);
QXE_API int iCompileString(int n, int k, char** data, int** pv, long** vl);
QXE_API int iCompileNumeric(int n, int k, Numeric* data, int** pv, Numeric** vl);

/* Search by value */

QXE_API int RQXSearchByField(int table, int filter, int set, int ope, char* value1, char* value2);
QXE_API int RQXSearchByFieldStr(int table, int filter, int set, int ope, char* value1,
                                char* value2);
QXE_API int RQXSearchByField2(int table, int filter, int set, int ope, char* value1, char* value2);
QXE_API int RQXSearchByFieldSJIS(int table, int filter, int set, int ope, char* value1,
                                 char* value2);
QXE_API int RQXSearchByFieldLocale(int table, int filter, int set, int ope, char* value1,
                                   char* value2, int localeId);
QXE_API int RQXSearchByFieldNValues(int table, int filter, int set, int count, void* values);
QXE_API int RQXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2);
QXE_API int RQXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2);
QXE_API int QXSearchByField(int table, int filter, int set, int ope, char* value1, char* value2);
QXE_API int QXSearchByField2(int table, int filter, int set, int ope, char* value1, char* value2);
QXE_API int QXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2);
QXE_API int QXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2);
QXE_API int QXSearch(int table, int filter, int set, unsigned char* flags);
QXE_API int RQXSearchByFieldStrR1(int table, int filter, int set, int ope, char* value1,
                                  char* value2);
QXE_API int RQXSearchByFieldNumericR1(int table, int filter, int set, int ope, char* value1,
                                      char* value2);
QXE_API int RQXSearchByFieldSJISR1(int table, int filter, int set, int ope, char* value1,
                                   char* value2);
QXE_API int RQXSearchByFieldLocaleR1(int table, int filter, int set, int ope, char* value1,
                                     char* value2, int localeId);
QXE_API int RQXSearchByFieldIntR1(int table, int filter, int set, int ope, int value1, int value2);
QXE_API int RQXSearchByFieldDblR1(int table, int filter, int set, int ope, double value1,
                                  double value2);

/* Sorting */

QXE_API int RQXSortByField(int table, int filter, int set, int dir);
QXE_API int RQXSortByRowNo(int table, int filter, int set, int dir);
QXE_API int RQXIntegratedSortByField(int table, int set, int* filters, int* dirs);
QXE_API int QXSortByField(int table, int filter, int set, int dir);
QXE_API int QXSortByRowNo(int table, int filter, int set, int dir);
QXE_API int QXServiceSortByN(int n, int* counts, int* nonZero, int* nonZeroIndex, int* order);

/* Dates and times */

QXE_API double RQXStr2DateR1(const char* text);
QXE_API double RQXStr2TimeR1(const char* text);
QXE_API double RQXStr2DateTimeR1(const char* text);
QXE_API const char* RQXDouble2DateStrR1(double serial);
QXE_API const char* RQXDouble2TimeStrR1(double serial);
QXE_API const char* RQXDouble2DateTimeStrR1(double serial);
QXE_API const char* RQXNumericNum2StrR1(const Numeric* value, const NumericInfo* info);

/* Import */

QXE_API int RQXAddCatalogFile(const char* dir, const char* catalog);
QXE_API int RQXAddCatalogFileEx2(const char* catalogDir, const char* catalog, const char* dataDir,
                                 const char* dataFile, const char* tableName);

/* Export */

QXE_API int RQXExportAsCSV(int tableId, int setId, const int* filterIds, int rowFrom, int rowTo,
                           const char* dir, const char* file, char dateSep);
QXE_API int RQXExportAsTAB(int tableId, int setId, const int* filterIds, int rowFrom, int rowTo,
                           const char* dir, const char* file, char dateSep);
QXE_API int RQXExportAsCSVwithF(int tableId, int setId, const int* filterIds, int rowFrom,
                                int rowTo, const char* dir, const char* file, char dateSep,
                                const char* fmtFile);
QXE_API int RQXExportAsTABwithF(int tableId, int setId, const int* filterIds, int rowFrom,
                                int rowTo, const char* dir, const char* file, char dateSep,
                                const char* fmtFile);
QXE_API int RQXSaveAsCatalog(int tableId, int setId, const int* filterIds, int type, int rowFrom,
                             int rowTo, char dateSep, const char* dir, const char* file);
QXE_API int RQXSaveAsCatalogEx(int tableId, int setId, const int* filterIds, int type, int rowFrom,
                               int rowTo, char dateSep, const char* dir, const char* file,
                               const char* catalogDir, const char* catalogFile);
QXE_API int RQXSaveAsCatalogwithF(int tableId, int setId, const int* filterIds, int type,
                                  int rowFrom, int rowTo, char dateSep, const char* dir,
                                  const char* file, const char* fmtFile);
QXE_API int RQXSaveAsCatalogwithFEx(int tableId, int setId, const int* filterIds, int type,
                                    int rowFrom, int rowTo, char dateSep, const char* dir,
                                    const char* file, const char* catalogDir,
                                    const char* catalogFile, const char* fmtFile);
#ifdef __cplusplus
}
#endif

#endif /* QXE_H */
