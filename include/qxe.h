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

#if defined(QXE_BUILDING) || defined(__GNUC__)
#define QXE_API __attribute__((visibility("default")))
#else
#define QXE_API
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

/* Functions by family follow. */

#ifdef __cplusplus
}
#endif

#endif /* QXE_H */
