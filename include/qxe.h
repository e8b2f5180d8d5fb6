/*
 * The interface of QxeEngine, an in-memory, column-oriented analytic database engine.
 *
 * Start. The engine is ready as soon as the library is loaded; there is no open call. It reads two
 * text files of "KEY=value" lines in the working directory of that moment, both optional:
 * "3by1sysinfo.ini", section [SYSINFO], with RUNTHREADS (worker threads; otherwise one a
 * processor), L2_CACHESIZE and L2_LINESIZE (bytes); and "ZVK_Client.ini" with DATEFORMAT (YYYYMMDD,
 * MMDDYYYY or DDMMYYYY, the order of dates as text; otherwise year first).
 *
 * Tables, filters, sets. A column is called a filter: a sorted list of its distinct values (the
 * value list) and, for each row, the number of its value in that list (the value number). A set is
 * a list of row numbers in an order of its own. Searches and sorts never change their source; they
 * make new sets. Every table has a root set, which holds all rows and stays as long as the table.
 *
 * Identifiers are int, issued upward from 1 and not issued twice. Ids of sets and filters belong to
 * their table. A set id below 0 means the table's current set. Filter id 0 means the row number in
 * the calls that read values, and is unknown everywhere else.
 *
 * Rows are numbered from 1. A position is a place in a set; whether it counts from 0 or from 1 is
 * told with each call. Lists of ids that a caller passes end at the first entry below 1.
 *
 * Limits: 10,000 tables, 10,000 sets a table, 512 filters a table, 2147483647 rows, names of 255
 * bytes, strings of 4095 bytes in a single read, 64 bytes in an attribute block.
 *
 * Results. Calls that return int return a status: 0 or above is success, often a count or an id;
 * below 0 is a failure, one of the QX_ERROR_ codes. A call whose comment names no result returns 0.
 * Three failures belong to every call and are not repeated below: QX_ERROR_NO_TABLE for an unknown
 * table id, QX_ERROR_OUT_OF_MEMORY, and QX_ERROR_UNKNOWN for a failure without a code of its own. A
 * failed call leaves tables as they were, and its outputs undefined, unless its comment says
 * otherwise. A pointer may be null only where its comment says so.
 *
 * Error ring. The last eight failures stay in a ring that RQXGetErrorLog empties, oldest first. One
 * failure leaves an entry for each layer that notices it: the oldest is the nearest to the cause.
 *
 * Edits. The calls that add, change or delete filters or rows of a table check, in this order: the
 * table exists (QX_ERROR_NO_TABLE), does not lie in shared memory (QX_ERROR_SHARED_READ_ONLY) and
 * is a real table (QX_ERROR_NOT_REAL). "An edit" below means these checks.
 *
 * NULL is a value of its own in every type, below all others in the type's order: QX_NULL_INT for
 * integers, negative infinity for floats, dates, times and date-times, the empty string for
 * strings, and the NaN of RQXNumericSetNan for decimals. An IEEE NaN is stored as NULL.
 *
 * Values in memory are int, double (float, date, time, date-time), NUL-terminated text, and
 * Numeric. A date is the number of days since 30 December 1899, a time the fraction of a day since
 * midnight, a date-time their sum. Text is bytes in the database's character code (UTF-8 unless
 * set) and is never converted; it is ordered by unsigned bytes.
 *
 * Names of tables and filters are cleaned when they are stored: each of the characters
 *     space ! % & ( ) * + - . / : ; ? [ \ ]
 * becomes "_", what follows a "_#" is cut with it, and a name in use gets "_#1", "_#2" and so on
 * behind it. Look-ups compare with the stored name, byte for byte.
 *
 * Families. RQX functions are the main interface: they copy results into the caller's buffers, and
 * large operations run on the worker threads. QX functions are the plain interface: they run on one
 * thread, and some hand out pointers into the engine. Names that end in R1 are for callers that
 * cannot deal with out-parameters: they return the value itself.
 *
 * Threads. Any thread may call. One lock lets one call run at a time; others wait.
 * RQXReInitializeMS takes no lock: no other thread may be in the engine.
 *
 * Pointers into the engine are valid until a call changes or deletes what they point to; text in a
 * static buffer until the next call that uses it. The R1 functions that return text share one
 * buffer of 4096 bytes: the next R1 call of any thread overwrites it, so copy the text at once.
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

/* The status codes follow, by topic. All have the form 0xe0000xxx and are negative as int. */

/* Status codes: sizes and positions. */

/** A negative array size, usually from a damaged file. */
#define QX_ERROR_NEGATIVE_SIZE ((int)0xe0000001)
/** A state that should not arise, or a conversion that does not exist. */
#define QX_ERROR_INNER_ENGINE ((int)0xe0000003)
/** A directory that cannot be reached. */
#define QX_ERROR_PATH ((int)0xe0000004)
/** An array element size outside 2 to 256 bytes. */
#define QX_ERROR_UNIT_SIZE ((int)0xe000000a)
/** A negative row count for an array. */
#define QX_ERROR_NEGATIVE_ROWS ((int)0xe000000c)
/** A row count that is negative or above the limit. */
#define QX_ERROR_ROW_SIZE ((int)0xe000000d)
/** A row number outside the table. */
#define QX_ERROR_ROW_POSITION ((int)0xe000000e)
/** The table would have more than 512 filters. */
#define QX_ERROR_FILTER_COUNT ((int)0xe0000011)
/** A filter position or key filter that does not exist. */
#define QX_ERROR_FILTER_INDEX ((int)0xe0000012)
/** An array above 40,000,000,000 bytes; decimals without room for more digits. */
#define QX_ERROR_DATA_SIZE ((int)0xe0000015)
/** A string above 4095 bytes. */
#define QX_ERROR_STRING_SIZE ((int)0xe0000016)
/** Not enough memory, or a block too small for an image. */
#define QX_ERROR_OUT_OF_MEMORY ((int)0xe0000018)
/** A summary of more than 10,000,000 cells. */
#define QX_ERROR_CUBE_SIZE ((int)0xe0000019)
/** A dimension, category, row or start number, a count of such, or digits out of range. */
#define QX_ERROR_SUMMARY_PARAMETER ((int)0xe000001a)

/* Status codes: names, types and operators. */

/** A data type that the operation does not take. */
#define QX_ERROR_DATA_TYPE ((int)0xe0000033)
/** An unknown operator, or one that does not fit the filter's type. */
#define QX_ERROR_OPERATION ((int)0xe0000034)
/** A table name that is empty or too long. */
#define QX_ERROR_TABLE_NAME ((int)0xe0000035)
/** A filter name that is empty or too long. */
#define QX_ERROR_FILTER_NAME ((int)0xe0000036)
/** A join side that is neither master nor slave. */
#define QX_ERROR_JOIN_SIDE ((int)0xe0000037)
/** A summary handle outside 0 to 7, or a stale detail handle. */
#define QX_ERROR_SUMMARY_HANDLE ((int)0xe0000039)

/* Status codes: limits of the database. */

/** Loading would pass the limit of 10,000 tables. */
#define QX_ERROR_TABLE_COUNT_LOAD ((int)0xe0000063)
/** Adding would pass the limit of 10,000 tables. */
#define QX_ERROR_TABLE_COUNT ((int)0xe0000064)
/** A join of more than 2147483647 rows. */
#define QX_ERROR_JOIN_SIZE ((int)0xe0000065)
/** The table already has 10,000 sets. */
#define QX_ERROR_SET_COUNT ((int)0xe0000066)
/** A join block above 1,000,000 rows. */
#define QX_ERROR_BLOCK_SIZE ((int)0xe0000067)
/** Realising a join failed. */
#define QX_ERROR_REALIZE ((int)0xe0000068)

/* Status codes: things that do not exist, tables of the wrong kind. */

/** No such row, or no values to compile. */
#define QX_ERROR_NO_RECORD ((int)0xe0000069)
/** No such filter. */
#define QX_ERROR_NO_FILTER ((int)0xe000006a)
/** The key filter is missing in the master table, or no filter to duplicate. */
#define QX_ERROR_NO_MASTER_KEY ((int)0xe000006b)
/** The key filter is missing in the slave table. */
#define QX_ERROR_NO_SLAVE_KEY ((int)0xe000006c)
/** No such table. */
#define QX_ERROR_NO_TABLE ((int)0xe000006d)
/** The master table of a join does not exist. */
#define QX_ERROR_NO_MASTER_TABLE ((int)0xe000006e)
/** The slave table of a join does not exist. */
#define QX_ERROR_NO_SLAVE_TABLE ((int)0xe000006f)
/** A table of a chain that is not a join. */
#define QX_ERROR_NOT_JOIN_SOURCE ((int)0xe0000070)
/** No such set, or a position outside the set. */
#define QX_ERROR_NO_SET ((int)0xe0000071)
/** The set of the join, or of its master table, does not exist. */
#define QX_ERROR_NO_JOIN_SET ((int)0xe0000072)
/** The set of the slave table does not exist. */
#define QX_ERROR_NO_SLAVE_SET ((int)0xe0000073)
/** An unknown data type, or a filter of another type than the call needs. */
#define QX_ERROR_TYPE_MISMATCH ((int)0xe0000074)
/** A table that is neither real nor a join. */
#define QX_ERROR_TABLE_KIND ((int)0xe0000076)
/** Join block access without rows. */
#define QX_ERROR_EMPTY_BLOCK ((int)0xe0000077)
/** An array index out of range. */
#define QX_ERROR_INDEX ((int)0xe0000079)
/** No such set. */
#define QX_ERROR_NO_SET_ID ((int)0xe000007a)
/** An element size that does not fit the data type. */
#define QX_ERROR_DATA_WIDTH ((int)0xe000007b)
/** Two value lists, or a catalog column and a filter, of different types. */
#define QX_ERROR_MERGE_TYPE ((int)0xe000007c)
/** A source that is not a real table, or a file of another kind. */
#define QX_ERROR_NOT_REAL_SOURCE ((int)0xe000007e)
/** No filter, or more than 512, for a unique extraction. */
#define QX_ERROR_UNIQUE_FILTERS ((int)0xe000007f)
/** An appended or combined filter of another type. */
#define QX_ERROR_APPEND_TYPE ((int)0xe0000080)
/** No such set in a combine. */
#define QX_ERROR_COMBINE_SET ((int)0xe0000081)
/** Any other bad argument. */
#define QX_ERROR_PARAMETER ((int)0xe0000082)
/** A bad row range, or a sum type that was not computed. */
#define QX_ERROR_ROW_RANGE ((int)0xe0000083)
/** Realising a join gave a negative size. */
#define QX_ERROR_REALIZE_ROWS ((int)0xe0000085)
/** The root set cannot be deleted. */
#define QX_ERROR_ROOT_SET ((int)0xe0000086)
/** Another table refers to this table or filter. */
#define QX_ERROR_REFERRED ((int)0xe0000087)
/** No such filter in a join or an export list, or a filter that is not decimal. */
#define QX_ERROR_NO_JOIN_FILTER ((int)0xe0000088)
/** The call takes real tables only. */
#define QX_ERROR_NOT_REAL ((int)0xe0000089)
/** The call takes join tables only. */
#define QX_ERROR_NOT_JOIN ((int)0xe000008a)
/** A bad set to cut out. */
#define QX_ERROR_CUT_SET ((int)0xe000008c)
/** A file or path is missing, empty as a name, too long, or cannot be read or written. */
#define QX_ERROR_FILE ((int)0xe000008d)
/** A directory or file for the browser or a shared image was not found. */
#define QX_ERROR_NOT_FOUND ((int)0xe000008e)
/** No unique table name could be made. */
#define QX_ERROR_GEN_TABLE_NAME ((int)0xe000008f)
/** The call takes inner joins only. */
#define QX_ERROR_NOT_INNER_JOIN ((int)0xe0000090)
/** A bad name for the result of a chain or a combine. */
#define QX_ERROR_CHAIN_NAME ((int)0xe0000091)
/** The joins do not form a chain. */
#define QX_ERROR_NOT_CHAIN ((int)0xe0000092)
/** A join tree does not close. */
#define QX_ERROR_TREE ((int)0xe0000093)
/** A parallel unique extraction failed. */
#define QX_ERROR_UNIQUE ((int)0xe0000094)

/* Status codes: directories and files. */

/** The directory or file to create exists. */
#define QX_ERROR_EXISTS ((int)0xe0000095)
/** A file could not be deleted, or another file system call failed. */
#define QX_ERROR_DELETE ((int)0xe0000096)
/** The directory to delete is not empty. */
#define QX_ERROR_DIR_NOT_EMPTY ((int)0xe0000097)
/** The file system denied access. */
#define QX_ERROR_ACCESS ((int)0xe0000098)

/* Status codes: summaries and detail. */

/** The handle holds no summary. */
#define QX_ERROR_NO_SUMMARY ((int)0xe0000099)
/** The handle is taken. */
#define QX_ERROR_SUMMARY_IN_USE ((int)0xe000009a)
/** The summary has been executed already. */
#define QX_ERROR_SUMMARY_DONE ((int)0xe000009b)
/** No detail is open, or it could not be made. */
#define QX_ERROR_DETAIL ((int)0xe000009c)

/* Status codes: joins, files, streams and categories. */

/** The projection sets of a join are not available. */
#define QX_ERROR_PROJECTION ((int)0xe00000ca)
/** A join column of an unknown type. */
#define QX_ERROR_JOIN_DATA_TYPE ((int)0xe00000cc)
/** A database file name that is empty or bad. */
#define QX_ERROR_FILE_NAME ((int)0xe00000cd)
/** The file is damaged, of another kind, or of an unknown version. */
#define QX_ERROR_FILE_FORMAT ((int)0xe00000ce)
/** The memory stream is closed or open the other way. */
#define QX_ERROR_MEM_STREAM ((int)0xe00000cf)
/** A fault in a category definition table. */
#define QX_ERROR_CATEGORY_TABLE ((int)0xe00000d0)
/** The category's rows do not fit the table. */
#define QX_ERROR_CATEGORY_ROWS ((int)0xe00000d1)
/** The stream could not be opened. */
#define QX_ERROR_STREAM_CLOSED ((int)0xe00000d2)

/* Status codes: find cursors. */

/** No find cursor is open. */
#define QX_ERROR_FIND_CLOSED ((int)0xe00000dc)
/** The search id is not that of the open cursor. */
#define QX_ERROR_FIND_ID ((int)0xe00000dd)

/* Status codes: calculation. */

/** A filter that is neither integer nor double. */
#define QX_ERROR_NOT_NUMBER ((int)0xe00000e7)
/** A calculator token above 64 characters. */
#define QX_ERROR_CALC_TOKEN ((int)0xe00000e8)
/** A filter name above 64 characters in a formula. */
#define QX_ERROR_CALC_NAME ((int)0xe00000e9)
/** A formula of more than 256 commands. */
#define QX_ERROR_CALC_PROGRAM ((int)0xe00000ea)
/** A syntax error in a formula. */
#define QX_ERROR_CALC_SYNTAX ((int)0xe00000ee)
/** The output buffer of a calculation is too small. */
#define QX_ERROR_CALC_BUFFER ((int)0xe00000f0)
/** The depth filter is missing while deleting tree nodes. */
#define QX_ERROR_TREE_NODES ((int)0xe00000fa)
/** A formula needs more than 64 work slots of one kind. */
#define QX_ERROR_IC_ALLOC1 ((int)0xe0000104)
/** A formula needs more than 64 work slots of one kind. */
#define QX_ERROR_IC_ALLOC2 ((int)0xe0000105)
/** A formula passes the limit of 64 of its parser. */
#define QX_ERROR_IC_SYNTAX ((int)0xe0000106)

/* Status codes: shared data. */

/** The data lie in shared memory and cannot be changed. */
#define QX_ERROR_SHARED_READ_ONLY ((int)0xe000010e)
/** The check of a shared image failed. */
#define QX_ERROR_SHARED_VERIFY ((int)0xe000010f)
/** A shared segment could not be opened or attached. */
#define QX_ERROR_SHARED_MAP ((int)0xe0000111)

/* Status codes: import and text. */

/** A fault in a catalog, a format file or a line's field count. */
#define QX_ERROR_CATALOG ((int)0xe0000112)
/** A value that does not convert, or bad quoting. */
#define QX_ERROR_INVALID_DATA ((int)0xe0000113)
/** A filter that is not of strings, or an unknown type letter in a catalog. */
#define QX_ERROR_NOT_STRING ((int)0xe0000114)
/** A field in a text file is too long. */
#define QX_ERROR_TEXT_FIELD ((int)0xe0000115)
/** A row count in a text or data file that does not fit. */
#define QX_ERROR_TEXT_ROWS ((int)0xe0000116)
/** Not enough memory for a field; reported as QX_ERROR_OUT_OF_MEMORY. */
#define QX_ERROR_TEXT_MEMORY ((int)0xe0000117)

/* Status codes: settings, character codes and saved forms. */

/** An unknown database character code. */
#define QX_ERROR_CHAR_CODE ((int)0xe0000119)
/** A locale that is not the database's. */
#define QX_ERROR_LOCALE ((int)0xe000011a)
/** The data cannot be saved in the older version. */
#define QX_ERROR_SAVE_VERSION ((int)0xe000011d)
/** An unknown version number for an old-version save. */
#define QX_ERROR_SAVE_CODE ((int)0xe000011e)
/** Only real tables can be saved this way. */
#define QX_ERROR_SAVE_NOT_REAL ((int)0xe000011f)
/** An address that is not a multiple of 8. */
#define QX_ERROR_ALIGNMENT ((int)0xe0000120)
/** The header or the content of a memory image is bad. */
#define QX_ERROR_MEM_IMAGE ((int)0xe0000121)

/* Status codes: query language. */

/** A state of the query compiler that should not arise. */
#define QX_ERROR_QUERY_INTERNAL ((int)0xe0000122)
/** A syntax error in a query. */
#define QX_ERROR_QUERY_SYNTAX ((int)0xe0000123)
/** A query whose parts do not fit together. */
#define QX_ERROR_QUERY_SEMANTIC ((int)0xe0000124)
/** A constant in a query that does not fit its filter. */
#define QX_ERROR_QUERY_VALUE ((int)0xe0000125)
/** A query text that is too long. */
#define QX_ERROR_TEXT_SIZE ((int)0xe0000126)

/* Status codes: high-speed search, join summaries and totals. */

/** A filter enabled for high-speed search cannot be modified, nor its table gain or lose rows. */
#define QX_ERROR_HIGH_SPEED_FILTER ((int)0xe0000136)
/** A join summary above 2,000,000,000 rows. */
#define QX_ERROR_JOIN_SUM_ROWS ((int)0xe0000140)
/** A step of a join summary above 1,000,000,000. */
#define QX_ERROR_JOIN_SUM_SIZE ((int)0xe0000141)
/** The table is not the output of a summary. */
#define QX_ERROR_NOT_SUMMARY_TABLE ((int)0xe0000142)
/** No filter for the dimension number. */
#define QX_ERROR_NO_DIMENSION ((int)0xe0000143)
/** A total over a dimension column. */
#define QX_ERROR_TOTAL_KIND1 ((int)0xe0000144)
/** A total over a measure other than a count or a sum. */
#define QX_ERROR_TOTAL_KIND2 ((int)0xe0000145)

/* Status codes: engine. */

/** A worker thread died before it finished. */
#define QX_ERROR_WORKER_LOST ((int)0xe000015e)
/** Any failure without a code of its own. */
#define QX_ERROR_UNKNOWN ((int)0xe00001f4)

/* Status codes: shared memory segments and locks. */

/** The control segment exists. */
#define QX_ERROR_SMCS_EXISTS ((int)0xe0000118)
/** The semaphore set of the control segment has been removed. */
#define QX_ERROR_SMCS_LOCK1 ((int)0xe0000258)
/** A call on the control segment was interrupted. */
#define QX_ERROR_SMCS_INTERRUPTED ((int)0xe0000259)
/** The table to attach is in use. */
#define QX_ERROR_SHM_BUSY ((int)0xe000025a)
/** The control segment does not exist. */
#define QX_ERROR_SMCS_ABSENT ((int)0xe000025b)
/** The control segment is ready and has no entries. */
#define QX_ERROR_SMCS_READY ((int)0xe000025c)
/** The control segment is ready and has entries. */
#define QX_ERROR_SMCS_IN_USE ((int)0xe000025d)
/** More than 20,000 table entries, or the entries are full. */
#define QX_ERROR_SHM_CAPACITY ((int)0xe000025e)
/** There is no control segment. */
#define QX_ERROR_SHM_NOT_SETUP ((int)0xe000025f)
/** The table is not offered. */
#define QX_ERROR_SHM_NOT_LOADED ((int)0xe0000260)
/** The table is offered and has no users. */
#define QX_ERROR_SHM_LOADED ((int)0xe0000261)
/** The table is offered and has users. */
#define QX_ERROR_SHM_ATTACHED ((int)0xe0000262)
/** A table could not be loaded from shared memory. */
#define QX_ERROR_SHM_TABLE_LOAD ((int)0xe0000263)
/** The semaphore of the control segment is missing. */
#define QX_ERROR_SEM_ABSENT ((int)0xe0000264)
/** An entry or a semaphore is locked. */
#define QX_ERROR_SHM_LOCK ((int)0xe0000265)
/** The system refused to create or map the shared memory. */
#define QX_ERROR_SHM_INVALID ((int)0xe0000266)
/** Nothing is attached and there is no control segment. */
#define QX_ERROR_SHM_NO_SEGMENT ((int)0xe0000267)

/* Status codes: catalog checker. */

/** The log buffer of the catalog checker is too small. */
#define QX_ERROR_CHECK_LOG ((int)0xe000032b)
/** Data type codes of filters. */
enum {
  QX_DT_INTEGER = 2,  /**< int, 4 bytes */
  QX_DT_DOUBLE = 3,   /**< double, 8 bytes */
  QX_DT_DATE = 4,     /**< double: days since 30 December 1899 */
  QX_DT_TIME = 5,     /**< double: fraction of a day since midnight */
  QX_DT_STRING = 6,   /**< NUL-terminated text */
  QX_DT_DATETIME = 7, /**< double: date and time added */
  QX_DT_DECIMAL = 8   /**< Numeric, 16 bytes, with a NumericInfo for the whole filter */
};

/** Character codes of the database. */
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

/** Locale identifiers, one for each character code. */
enum {
  QX_LOCALE_SJIS = 0,
  QX_LOCALE_MS932 = 1,
  QX_LOCALE_MS949 = 2,
  QX_LOCALE_UTF8 = 3,
  QX_LOCALE_EUC = 4,
  QX_LOCALE_CP1252 = 5,
  QX_LOCALE_MS936 = 6
};

/** Pseudo filter ids. QX_FLT_ROWNO reads the row number; the other two stand for the table id and
 * the row number in the column lists of derived tables. */
enum { QX_FLT_ROWNO = 0, QX_FLT_TABLE_ID = 0xff00, QX_FLT_REC_NO = 0xfe00 };

/** NULL of an integer filter. */
#define QX_NULL_INT ((int)0x80000000)

/** Search operators, for a value x of the filter. The code is in the low seven bits; QX_OPE_STRICT
 * may be added. */
enum {
  QX_OPE_EQ = 0,       /**< x equals value1 */
  QX_OPE_BETWEEN = 1,  /**< value1 <= x <= value2 */
  QX_OPE_LEQ = 2,      /**< x <= value1 */
  QX_OPE_GEQ = 3,      /**< x >= value1 */
  QX_OPE_NEQ = 4,      /**< x differs from value1 */
  QX_OPE_WITHIN = 5,   /**< value1 < x < value2 */
  QX_OPE_LES = 6,      /**< x < value1 */
  QX_OPE_GT = 7,       /**< x > value1 */
  QX_OPE_BEGINS = 8,   /**< the string begins with value1 */
  QX_OPE_CONTAINS = 9, /**< the string contains value1 */
  QX_OPE_ENDS = 10,    /**< the string ends with value1 */
  QX_OPE_ISNULL = 11,  /**< x is NULL; not for strings */
  QX_OPE_STRICT = 0x80 /**< added to a code: a NULL bound hits nothing */
};

/** Set operations: rows in both sets, in either, in the first alone. */
enum { QX_SET_AND = 0, QX_SET_OR = 1, QX_SET_ANDNOT = 2 };

/** Sort directions, and the most keys of one multi-key sort. */
enum { QX_SORT_ASC = 0, QX_SORT_DESC = 1, QX_MAX_SORT_KEYS = 512 };

/** Sides of a join: the table named as master when it was made, and the one named as slave. */
enum { QX_JOIN_MASTER = 0, QX_JOIN_SLAVE = 1, QX_MAX_JOIN_KEYS = 32 };

/** Pseudo filter ids of RQXConvertJoinToReal: row numbers in the master and in the slave. */
enum { QX_FLT_MRECNO = 0xFC00, QX_FLT_SRECNO = 0xF800 };

/** Limits of chains of joins. */
enum { QX_MAX_CHAIN = 510, QX_MAX_ASSOCIATION = 4 };

/** Readers of blocks: their number, and what QXJBAOpen returns besides status codes. */
enum { QX_N_JBA = 8, QX_JBA_EMPTY_SET = -9, QX_JBA_BUSY = -10, QX_JBA_BAD_SLOT = -11 };

/** Sum types; masks are unions of them. QX_SUM_AVG stands in output masks only. */
enum { QX_SUM_COUNT = 1, QX_SUM_MAX = 2, QX_SUM_MIN = 4, QX_SUM_SUM = 8, QX_SUM_AVG = 16 };

/** Limits of summaries: dimensions, measures of one call, handles. */
enum { QX_MAX_DIM = 32, QX_MAX_MSR = 32, QX_N_SUMMARY = 8 };

/** Roles of a column in a summary's output table. */
enum { QX_ROLE_NONE = 0, QX_ROLE_DIMENSION = 1, QX_ROLE_MEASURE = 2 };

/** Layouts of a catalog's data file: separated by tab, by comma, fixed width, separators named. */
enum { QX_CAT_TAB = 1, QX_CAT_CSV = 2, QX_CAT_FIX = 3, QX_CAT_USR = 4 };

/** What an import does about faults in the data; see Import. */
enum { QX_ERRMODE_NONE = 0, QX_ERRMODE_STOP = 1, QX_ERRMODE_CONTINUE = 2, QX_ERRMODE_SKIPLINE = 3 };

/** Separators of RQXSaveAsCatalog. */
enum { QX_EXPORT_COMMA = 0, QX_EXPORT_TAB = 1 };

/** Limits: threads that write one export, column lines of one catalog. */
enum { QX_EXPORT_MAX_THREADS = 16, QX_CATALOG_MAX_COLUMNS = 512 };

/** What the memory stream is open for. */
enum { QX_MEMSTREAM_CLOSED = 0, QX_MEMSTREAM_READ = 1, QX_MEMSTREAM_WRITE = 2 };

/** Bits of the flag byte of RQXBrowserGetFileList: kind of entry, what this process may do. */
enum { QX_FILE_DIR = 0x10, QX_FILE_WRITE = 0x20, QX_FILE_READ = 0x40, QX_FILE_EXEC = 0x80 };

/** What RQXBrowserPutFileEx does with an existing file. */
enum { QX_PUT_CREATE = 0, QX_PUT_APPEND = 1 };

/** Table kinds in database and table files. */
enum { QX_FILE_REAL = 0, QX_FILE_JOIN = 2 };

/** Data versions of database and table files: the present one, and the one before it, which files
 * can be saved for. */
enum { QX_DATA_VERSION = 25, QX_DATA_VERSION_OLD = 24 };

/** A table's key figures, filled by RQXGetTableProperty. */
typedef struct _TTableInfo {
  int id;
  int kind; /**< 0 real table, 2 join table */
  int filterCount;
  int setCount; /**< root set included */
  int totalRows;
  char name[256];
} _TTableInfo;

/** A filter's key figures, filled by RQXGetFilterInfo. */
typedef struct _TRFilterInfo {
  int id;
  int type;       /**< data type code */
  int unitSize;   /**< bytes of one value: 4, 8, 16; strings 8 (an offset into the pool) */
  int valueCount; /**< entries of the value list, entry 0 (NULL) included */
  int poolSize;   /**< bytes used in the string pool, 0 unless a string filter */
  char name[264];
} _TRFilterInfo;

/** A list of rows of QXSetOpe2. */
typedef struct _TSetDescript {
  int count; /**< rows; -1 in a failed result */
  int* rows;
} _TSetDescript;

/** The caller's buffers for RQXGetFilterBody and their capacities. A null buffer or a capacity of 0
 * skips the part. */
typedef struct _TRFilterBody {
  int pvCapacity;    /**< in: elements */
  int* pv;           /**< out: value numbers, index = row number from 0 (row 0 is no row) */
  int valueCapacity; /**< in: elements */
  void* values;     /**< out: int, double, 8-byte pool offsets, or a NumericInfo and then Numeric */
  int poolCapacity; /**< in: bytes */
  char* pool;       /**< out: the strings, each NUL-terminated */
} _TRFilterBody;

/** Pointers into a filter, filled by QXGetFilter and valid until the filter changes. */
typedef struct _TFilterInfo {
  int rowCount; /**< elements of pv: the table's rows + 1 */
  int* pv;      /**< value numbers, index = row number */
  int type;     /**< data type code */
  int unitSize; /**< bytes of one value: 4, 8, 16; strings 8 */
  int valueCount;
  void* values; /**< the value list; strings: 8-byte offsets into pool */
  char* pool;   /**< null unless a string filter */
  char name[264];
  int orgTableId;  /**< table this filter was copied from, 0 if it was built here */
  int orgFilterId; /**< filter it was copied from, its own id if it was built here */
} _TFilterInfo;

/** What a database or table file says of itself, filled by RQXGetQXDFileInfo and RQXGetQXTFileInfo.
 */
typedef struct _QXFileInfo {
  unsigned char osType; /**< operating system: 48 */
  unsigned char endian; /**< byte order: 4 little-endian, 8 big-endian */
  unsigned char elf;    /**< word class: 1 is 32-bit, 2 is 64-bit */
  char charCode[32];    /**< "Shift_JIS", whatever the file */
  int version[4];       /**< the file's version words, but version[1] is always 102 */
} _QXFileInfo;

/** One column of a block; see QXJBARead. */
typedef struct _TColumnBuf {
  unsigned char driving; /**< 1 the driving side, 0 the driven side */
  unsigned char type;    /**< data type */
  int filterId;
  int count;     /**< values: 1 of the driving side, else as many as there are driven rows */
  void** values; /**< pointers to int, double, Numeric, or text that ends with 0 */
} _TColumnBuf;

/** Called for a row of a block: with its number and positions as QXJBARead tells them, the driving
 * row, the number of driven rows and the current one, 0 of a real table. The first value of each
 * column is the row's; of the driven side those of the block's further rows follow. The callback
 * may call the engine, but what it changes it must not read on by these pointers. Result: 0 goes
 * on, another one ends the loop; for QXSearchCallBack another one takes the row. */
typedef int (*QXRowCallBack)(int blockNo, int firstRow, int lastRow, int masterRow, int slaveCount,
                             int slaveRow, int columnCount, _TColumnBuf* columns);

/** Called with the position of a row in the set, from 1, and its row number, of a join that of the
 * driving row; else as QXRowCallBack. */
typedef int (*QXUniqueCallBack)(int position, int row, int columnCount, _TColumnBuf* columns);

/** Tells the name of a category by *name, a text that stays valid until the next call. table, dimNo
 * and filter are the summary's table, the dimension's number from 0 and its filter. Called within
 * the engine: it must not call the engine itself. Result: 0; QX_ERROR_PARAMETER for a failure. */
typedef int (*QXCategoryNameFunc)(int handle, int table, int dimNo, int filter, int nCategory,
                                  int catNo, char** name);

/** One dimension of QXSummaryOpen. Without a map each entry of the filter's value list is a
 * category. Names come from one of the last two, at most; a map needs one of them, without a map
 * the text of the value is the name otherwise. */
typedef struct _TDimensionDef {
  int FilterID;
  int nCategory; /**< categories of the map, 1 or more; not read without one */
  int* piCatNo;  /**< category number, from 0, of each value number, that of NULL first; or null */
  char** ppCatName;              /**< a name for each category, or null */
  QXCategoryNameFunc pfnCatName; /**< or null */
} _TDimensionDef;

/** One dimension of RQXSummaryOpen. */
typedef struct _TRDimensionDef {
  int FilterID;        /**< the only field that is read */
  char reserved[2068]; /**< may hold anything */
} _TRDimensionDef;

/** What a column of a summary's output table is; see RQXSetSumFilterAttr. */
typedef struct _TSumFilterAttr {
  unsigned char sourceKind; /**< 1 real table, 2 join table */
  unsigned char role;       /**< QX_ROLE_...; 0 for an ordinary column */
  unsigned char sumType;    /**< QX_SUM_... of a measure column */
  unsigned char writer;     /**< 1 a summary by handle, 2 RQXNonCubeSum */
  unsigned char reserved4;
  unsigned char ordinal;   /**< of the column in its role, from 0 */
  unsigned char nDim;      /**< dimensions */
  unsigned char nMsrSoFar; /**< of a dimension column: measure columns so far */
  int sourceTable;
  int sourceSet;
  int sourceFilter;
  char reserved20[44];
} _TSumFilterAttr;

/** The machine and the engine's settings, filled by RQXGetEnvironment. */
typedef struct _TREnvironment {
  char hostName[256];
  int osType;         /**< 53 */
  int osMajor;        /**< first number of the system's release */
  int osMinor;        /**< second number */
  int hardwareKind;   /**< 6 */
  int processorCount; /**< processors online */
  int hardwareMinor;  /**< -1 */
  int endian;         /**< 4: little-endian */
  int wordSize;       /**< 64 */
  char reserved[32];  /**< zeros */
  char osCharCode[32];
  char dbCharCode[32]; /**< "UTF8" until another code is set */
} _TREnvironment;

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Engine, errors, log
 */

/** Copies the engine's versions and copyright text. version: out, four numbers; the second is the
 * data version of files, the last a build date as YYYYMMDD. copyright: out, 512 bytes. */
QXE_API int RQXGetVersion(int version[4], char* copyright);

/** RQXGetVersion without copies: both outputs point to static storage of the engine. */
QXE_API int QXGetVersion(int** version, char** copyright);

/** The copyright text, in the engine's static storage; never null. */
QXE_API const char* RQXGetCopyRightR1(void);

/** The four numbers of RQXGetVersion alone. */
QXE_API int RQXGetVersionR1(int version[4]);

/** Takes the oldest entry out of the error ring. time: out, processor time of the failure in
 * milliseconds. apiName: out, 63 bytes, the function that reported it. code: out, the status.
 * message: out, 127 bytes, may be empty. Result: 1 an entry was taken; 0 the ring is empty and the
 * outputs are untouched. */
QXE_API int RQXGetErrorLog(int* time, char* apiName, int* code, char* message);

/** RQXGetErrorLog; *apiName and *message are pointers to the caller's buffers of the same sizes. */
QXE_API int QXGetErrorLog(int* time, char** apiName, int* code, char** message);

/** Chooses where LOG_Create writes. option: 0 nowhere, 1 standard output, 2 standard error, 3 the
 * file "vemohist.log" in the working directory of library load; any other is silent. file: a name
 * that is kept with option 3 but not written to; may be null. Never fails. */
QXE_API int RQXLogInit(int option, const char* file);

/** As RQXLogInit. */
QXE_API int QXLogInit(int option, const char* file);

/** Deletes all tables, whatever refers to them, and forgets the database's path and name. The next
 * table id is 1. Character code, tail-space flag, date order, saved flags and error ring stay. */
QXE_API int RQXClearDB(void);

/** As RQXClearDB. */
QXE_API int QXClearDB(void);

/** Has no effect: the engine stops when the library is unloaded. */
QXE_API int RQXShutdown(void);

/** Restarts the engine: deletes all tables, ends the worker threads and starts as many again. The
 * database code is UTF-8 afterwards and the next table id is 1; date order, tail-space flag, saved
 * flags, log option and error ring stay. Takes no lock: no other thread may be in the engine. */
QXE_API int RQXReInitializeMS(void);

/** Reports the machine and the character codes. out: filled. */
QXE_API int RQXGetEnvironment(_TREnvironment* out);

/** Reports the machine's memory. total, available: out, bytes. Result: 0, or -1 when either is 0.
 * */
QXE_API int RQXGetSystemMemInfo(unsigned long* total, unsigned long* available);

/** Sets the database's character code by locale. localeId: QX_LOCALE_ value. Text already stored is
 * not converted. Failures, which change nothing: QX_ERROR_CHAR_CODE. */
QXE_API int RQXSetKanjiCode(int localeId);

/** As RQXSetKanjiCode. */
QXE_API int QXSetKanjiCode(int localeId);

/** Sets the database's character code by name. code: exactly "UTF8" or "UTF-8", "Shift_JIS",
 * "EUC_JP" or "EUC", "MS932", "MS936", "MS949", "Cp1252". Text already stored is not converted.
 * Failures, which change nothing: QX_ERROR_CHAR_CODE. */
QXE_API int RQXSetDBCharCode(char* code);

/** Switches the cutting of trailing blanks. flag: 0 off (at start), other on. When it is on,
 * strings that are stored in filters, from memory or from a file, lose their trailing blanks; those
 * from memory in the caller's buffer, which must be writable. Search values and names are not cut.
 * */
QXE_API int RQXSetTailSpaceFlag(int flag);

/** As RQXSetTailSpaceFlag. */
QXE_API int QXSetTailSpaceFlag(int flag);

/** Sets the three saved flags, each 1 (nothing changed since the last save; so at start) or 0. The
 * engine clears sets when a call adds, makes or deletes sets, and tables when a call changes
 * tables, filters or rows; RQXChangeCurrentSetID sets settings. */
QXE_API int RQXSetSavedFlag(int sets, int tables, int settings);

/** As RQXSetSavedFlag. */
QXE_API int QXSetSavedFlag(int sets, int tables, int settings);

/** Reads the three saved flags of RQXSetSavedFlag. sets, tables, settings: out, 0 or 1. */
QXE_API int RQXGetSavedFlag(int* sets, int* tables, int* settings);

/** As RQXGetSavedFlag. */
QXE_API int QXGetSavedFlag(int* sets, int* tables, int* settings);

/** Converts a time, "hour:minute", "hour:minute:second" or "hour:minute:second.millisecond". out:
 * the fraction of a day; 0.0 when a part is out of range (25:00); NULL for an empty text. Failures:
 * QX_ERROR_PARAMETER for any other text, out is NULL. */
QXE_API int RQXStrToTime(const char* text, double* out);

/** As RQXStrToTime. */
QXE_API int QXStrToTime(const char* text, double* out);

/** Converts a whole number; only blanks may follow it. out: the number; NULL for an empty text.
 * Failures: QX_ERROR_PARAMETER for any other text or a number beyond 32 bits, out is NULL. */
QXE_API int QXStrToInt(const char* text, int* out);

/** Converts a floating-point number; only blanks may follow it. out: the number; NULL for an empty
 * text. Failures: QX_ERROR_PARAMETER for any other text or a number out of range, out is NULL. */
QXE_API int QXStrToFloat(const char* text, double* out);

/** Frees a block that a call allocated for the caller, as its comment tells. memory: in/out,
 * address of the pointer, set to null; a null pointer, in either place, does nothing. Blocks of the
 * engine must not be passed. */
QXE_API int QXFreeMem(void** memory);

/** Writes one line to the log that RQXLogInit chose: format and arguments as printf, cut at 499
 * bytes. The log file is created afresh, with a header, on the first line of the process. Takes no
 * lock: one thread at a time. */
QXE_API void LOG_Create(const char* format, ...) QXE_PRINTF(1, 2);

/** Writes one line to a log file of the caller's: format and arguments as printf, cut at 4351
 * bytes. The first line of the process creates the file, with a header; later lines append. file:
 * its name; "" does nothing, null makes the next line create its file afresh. Takes no lock: one
 * thread at a time. */
QXE_API void Log_message(const char* file, const char* format, ...) QXE_PRINTF(2, 3);

/** Does nothing; kept for clients that call it. */
QXE_API int RQXConnect2ZVKServer(const char* server);

/** Does nothing; kept for clients that call it. */
QXE_API int RQXDisconnectFromZVKServer(void);

/** Does nothing; kept for clients that call it. out is untouched. */
QXE_API int RQXGetNamingServiceIdentity(char* out);

/** Writes an empty string; kept for clients that call it. out: 1 byte. */
QXE_API int RQXGetServerIPAddress(char* out);

/** Does nothing; kept for clients that call it. */
QXE_API int RQXSetJoinCheckFlag(int flag);

/*
 * Tables
 */

/** Result: the number of tables. */
QXE_API int RQXGetNTable(void);

/** As RQXGetNTable. */
QXE_API int QXGetNTable(void);

/** Makes a free table name from seed, as described above for names in use; the name is not
 * reserved. seed: 1 to 255 bytes. out: 256 bytes. Failures: QX_ERROR_TABLE_NAME when seed is null,
 * empty or too long, or the result would be. */
QXE_API int RQXGenerateTableName(const char* seed, char* out);

/** As RQXGenerateTableName. */
QXE_API int RQXGenTableName(const char* seed, char* out);

/** As RQXGenerateTableName. */
QXE_API int QXGenerateTableName(const char* seed, char* out);

/** RQXGenerateTableName without a buffer. out: set to static storage, overwritten by the next call.
 * */
QXE_API int QXGenTableName(const char* seed, char** out);

/** RQXGenerateTableName as text in the shared R1 buffer; "" on a failure. */
QXE_API const char* RQXGenerateTableNameR1(const char* seed);

/** As RQXGenerateTableNameR1. */
QXE_API const char* RQXGenTableNameR1(const char* seed);

/** Adds a real table without filters; its root set, which is current, holds the rows 1 to rows in
 * order. name: cleaned and made unique; null or "" gives "realtbl", the date and time, and "_1".
 * rows: 0 or more. Result: the table id. Failures: QX_ERROR_TABLE_COUNT with 10,000 tables,
 * QX_ERROR_ROW_SIZE, QX_ERROR_TABLE_NAME above 255 bytes, or if the unique name would be longer. */
QXE_API int RQXAddRealTable(const char* name, int rows);

/** As RQXAddRealTable. */
QXE_API int QXAddRealTable(const char* name, int rows);

/** Deletes a table with its filters and sets. Failures: QX_ERROR_REFERRED while another table
 * refers to it (RQXTableCanEdit lists them). */
QXE_API int RQXDeleteTable(int table);

/** As RQXDeleteTable. */
QXE_API int QXDeleteTable(int table);

/** Lists the tables, oldest first, in ascending order of their ids. out: one int for each table
 * (RQXGetNTable, at most 10,000). Result: their number. */
QXE_API int RQXGetTableIDList(int* out);

/** As RQXGetTableIDList. */
QXE_API int QXGetTableIDList(int* out);

/** Copies a table's stored name. out: 256 bytes. */
QXE_API int RQXGetTableName(int table, char* out);

/** As RQXGetTableName. */
QXE_API int QXGetTableName(int table, char* out);

/** A table's stored name, in the engine until the table is renamed or deleted; "" if the table is
 * unknown. */
QXE_API const char* RQXGetTableNameR1(int table);

/** Renames a table. name: 1 to 255 bytes, cleaned and made unique; its own name changes nothing.
 * Failures: QX_ERROR_SHARED_READ_ONLY, QX_ERROR_TABLE_NAME when the name is empty or too long. */
QXE_API int RQXSetTableName(int table, const char* name);

/** As RQXSetTableName. */
QXE_API int QXSetTableName(int table, const char* name);

/** Reports a table's kind, counts and name. out: filled. */
QXE_API int RQXGetTableProperty(int table, _TTableInfo* out);

/** As RQXGetTableProperty. */
QXE_API int QXGetTableProperty(int table, _TTableInfo* out);

/** Finds a table by its stored name. Result: the table id. Failures: QX_ERROR_NO_TABLE. */
QXE_API int RQXGetTableIDFromName(const char* name);

/** As RQXGetTableIDFromName. */
QXE_API int QXGetTableIDFromName(const char* name);

/** Lists the tables that refer to a table and so keep its rows from being edited. out: one int for
 * each table there is (at most 10,000). Result: their number; 0 means that the table can be edited.
 * Failures: QX_ERROR_SHARED_READ_ONLY, QX_ERROR_NOT_REAL. */
QXE_API int RQXTableCanEdit(int table, int* out);

/** RQXTableCanEdit without a buffer. out: set to static storage of 10,000 ints, overwritten by the
 * next call. */
QXE_API int QXTableCanEdit(int table, int** out);

/** The directory of the database's file, in the engine until the database is loaded, saved or
 * cleared; "" without one, never null. */
QXE_API const char* RQXGetDBPathR1(void);

/** The name of the database's file, as RQXGetDBPathR1. */
QXE_API const char* RQXGetDBNameR1(void);

/*
 * Memory accounting. Sizes are bytes and include the engine's own bookkeeping.
 */

/** size: out, memory of the whole database. */
QXE_API int RQXGetTotalMemorySize(unsigned long* size);

/** RQXGetTotalMemorySize plus the data that shared tables read in place. */
QXE_API int RQXGetTotalMemorySizeWithShared(unsigned long* size);

/** size: out, memory of a table with its filters and sets. */
QXE_API int RQXGetTableMemorySize(int table, unsigned long* size);

/** size: out, memory of a filter. Failures: QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterMemorySize(int table, int filter, unsigned long* size);

/** size: out, memory of a set. Failures: QX_ERROR_NO_SET. */
QXE_API int RQXGetSetMemorySize(int table, int set, unsigned long* size);

/** As RQXGetTotalMemorySize. */
QXE_API int QXGetTotalMemorySize(unsigned long* size);

/** As RQXGetTableMemorySize. */
QXE_API int QXGetTableMemorySize(int table, unsigned long* size);

/** As RQXGetFilterMemorySize. */
QXE_API int QXGetFilterMemorySize(int table, int filter, unsigned long* size);

/** As RQXGetSetMemorySize. */
QXE_API int QXGetSetMemorySize(int table, int set, unsigned long* size);

/*
 * Sets
 */

/** Result: the number of sets of a table, the root set included. */
QXE_API int RQXGetNSet(int table);

/** As RQXGetNSet. */
QXE_API int QXGetNSet(int table);

/** Result: the number of rows of a table, the size of its root set. */
QXE_API int RQXGetTotalRows(int table);

/** As RQXGetTotalRows. */
QXE_API int QXGetTotalRows(int table);

/** Deletes all sets but the root set, which becomes current. The next set id goes on where it was.
 * */
QXE_API int RQXPurgeSubsets(int table);

/** As RQXPurgeSubsets. */
QXE_API int QXPurgeSubsets(int table);

/** Result: the number of rows in a set. Failures: QX_ERROR_NO_SET. */
QXE_API int RQXGetSetSize(int table, int set);

/** As RQXGetSetSize. */
QXE_API int QXGetSetSize(int table, int set);

/** Copies the row numbers of a set, in set order. count: out, the set's full size. max: the most to
 * copy, 0 or more. out: max ints. Result: the set's full size. Failures: QX_ERROR_PARAMETER for a
 * negative max, QX_ERROR_NO_SET; count is 0. */
QXE_API int RQXGetSet(int table, int set, int* count, int max, int* out);

/** RQXGetSet without a copy. out: set to the row numbers in the engine, valid until the set is
 * deleted or the table's rows change. Result: the set's size. */
QXE_API int QXGetSet(int table, int set, int** out);

/** Lists the sets of a table, ascending; the root set comes first. max: the most to copy, 0 or
 * more. out: max ints. Result: the number of sets in all. Failures: QX_ERROR_PARAMETER for a
 * negative max. */
QXE_API int RQXGetSetList(int table, int max, int* out);

/** As RQXGetSetList. */
QXE_API int RQXGetSetIDList(int table, int max, int* out);

/** As RQXGetSetList. */
QXE_API int QXGetSetList(int table, int max, int* out);

/** Adds a set of given rows and makes it current. count: 0 or more. rows: count row numbers from 1
 * to the table's rows, in any order; copied; a row that stands twice is kept twice; null with count
 * 0. Result: the set id. Failures: QX_ERROR_NOT_REAL, QX_ERROR_ROW_SIZE for a negative count,
 * QX_ERROR_ROW_POSITION for a row outside the table, QX_ERROR_SET_COUNT with 10,000 sets. */
QXE_API int RQXAddSetReal(int table, int count, int* rows);

/** As RQXAddSetReal. */
QXE_API int QXAddSetReal(int table, int count, int* rows);

/** Deletes a set; if it is current, the root set becomes current. Failures: QX_ERROR_NO_SET,
 * QX_ERROR_ROOT_SET. */
QXE_API int RQXDeleteSet(int table, int set);

/** As RQXDeleteSet. */
QXE_API int QXDeleteSet(int table, int set);

/** Result: the id of the table's current set. */
QXE_API int RQXGetCurrentSetID(int table);

/** As RQXGetCurrentSetID. */
QXE_API int QXGetCurrentSetID(int table);

/** Makes a set current; a negative id changes nothing. Failures: QX_ERROR_NO_SET_ID. */
QXE_API int RQXChangeCurrentSetID(int table, int set);

/** As RQXChangeCurrentSetID. */
QXE_API int QXChangeCurrentSetID(int table, int set);

/** Sets the id that the table's next set gets. next: above the ids of all its sets. Failures:
 * QX_ERROR_NO_SET_ID. */
QXE_API int RQXResetSetID(int table, int next);

/** Copies a set's attribute block, which is free for the client and zero in a new set. A search or
 * a sort copies the block of its source set. out: 64 bytes. Failures: QX_ERROR_NO_SET. */
QXE_API int RQXGetSubsetAttr(int table, int set, void* out);

/** RQXGetSubsetAttr without a copy. out: set to the block itself, which the caller may write. */
QXE_API int QXGetSubsetAttr(int table, int set, void** out);

/** Writes a set's attribute block. in: 64 bytes. Failures: QX_ERROR_NO_SET,
 * QX_ERROR_SHARED_READ_ONLY. */
QXE_API int RQXSetSubsetAttr(int table, int set, const void* in);

/** Names a set. name: stored as it is, cut at 255 bytes; "" takes the name away. Failures:
 * QX_ERROR_NO_SET. */
QXE_API int RQXSetSetName(int table, int set, const char* name);

/** As RQXSetSetName. */
QXE_API int QXSetSetName(int table, int set, const char* name);

/** Copies a set's name. out: 256 bytes, "" if the set has none. Failures: QX_ERROR_NO_SET. */
QXE_API int RQXGetSetName(int table, int set, char* out);

/** As RQXGetSetName. */
QXE_API int QXGetSetName(int table, int set, char* out);

/** A set's name, in the engine; the table's name if the set is unnamed or unknown; "" if the table
 * is unknown. */
QXE_API const char* RQXGetSetNameR1(int table, int set);

/*
 * Set algebra. Results are in row order, whatever the order of the operands, and have each row
 * once. A new set becomes current and has neither name nor attribute block. Join tables are taken
 * too.
 */

/** Combines two sets. op: QX_SET_AND, rows in both; QX_SET_OR, rows in either; QX_SET_ANDNOT, rows
 * in set1 and not in set2. Result: the new set's id. Failures: QX_ERROR_NO_TABLE, QX_ERROR_NO_SET,
 * QX_ERROR_OPERATION for another op, QX_ERROR_SET_COUNT with 10,000 sets. */
QXE_API int RQXSetOpeReal(int table, int op, int set1, int set2);

/** As RQXSetOpeReal. */
QXE_API int QXSetOpeReal(int table, int op, int set1, int set2);

/** All rows of the table that are not in a set. Result: the new set's id. Failures: as
 * RQXSetOpeReal. */
QXE_API int RQXSetNotReal(int table, int set);

/** As RQXSetNotReal. */
QXE_API int QXSetNotReal(int table, int set);

/** Combines two lists of rows without a table. op: as in RQXSetOpeReal. totalRows: 0 or more; the
 * rows of both lists lie between 1 and it. a, b: in, any order; a count of 0 needs no rows. result:
 * out, the caller frees its rows, which are never null, with QXFreeMem; after a failure its count
 * is -1 and its rows are null. Result: the number of rows. Failures: QX_ERROR_OPERATION,
 * QX_ERROR_ROW_SIZE for a negative totalRows or count, QX_ERROR_ROW_POSITION for missing rows or a
 * row outside the range. */
QXE_API int QXSetOpe2(int op, int totalRows, _TSetDescript a, _TSetDescript b,
                      _TSetDescript* result);

/*
 * Filters. The display position of a filter counts from 0.
 */

/** Result: the number of filters of a table. */
QXE_API int RQXGetNFilter(int table);

/** As RQXGetNFilter. */
QXE_API int QXGetNFilter(int table);

/** Lists the filters of a table in display order. out: one int for each (RQXGetNFilter, at most
 * 512, of a join table 1024). Result: their number. */
QXE_API int RQXGetFilterIDList(int table, int* out);

/** As RQXGetFilterIDList. */
QXE_API int QXGetFilterIDList(int table, int* out);

/** Result: the bytes of a value: 4, 8 or 16; of a string filter the longest string without its
 * terminator, 0 if there is none. Failures: QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterWidth(int table, int filter);

/** As RQXGetFilterWidth. */
QXE_API int QXGetFilterWidth(int table, int filter);

/** Result: the data type code of a filter. Failures: QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterType(int table, int filter);

/** As RQXGetFilterType. */
QXE_API int QXGetFilterType(int table, int filter);

/** Reports a filter's type, sizes and name. out: filled. Failures: QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterInfo(int table, int filter, _TRFilterInfo* out);

/** Copies a filter's value numbers and value list, each as far as its buffer reaches. Entry 0 of
 * the value list is NULL, the others ascend. RQXGetFilterInfo tells the sizes; a decimal value
 * buffer needs 8 bytes and 16 for each value. body: in/out, see _TRFilterBody. Failures:
 * QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterBody(int table, int filter, _TRFilterBody* body);

/** Reports all filters of a table in display order. max: the most to report, 0 or more. count: out,
 * the filters in all. infos: out, max records. names: out, max names cut to 63 bytes; may be null.
 * Result: the filters in all. Failures: QX_ERROR_PARAMETER for a negative max. */
QXE_API int RQXGetAllFilterInfo(int table, int max, int* count, _TRFilterInfo* infos,
                                char (*names)[64]);

/** Copies an attribute block of a filter. out: 64 bytes. valueList: false the block of the rows,
 * free for the client; true the block of the value list, in which bytes 0, 6 and 7 of a float,
 * date, time, date-time or decimal filter belong to the engine (type, digits behind the point,
 * rounding mode) and the others to the client. Failures: QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterAttr(int table, int filter, void* out, bool valueList);

/** RQXGetFilterAttr without a copy. out: set to the block itself. */
QXE_API int QXGetFilterAttr(int table, int filter, void** out, bool valueList);

/** Writes an attribute block of a filter. in: 64 bytes; write the engine's bytes back as they were
 * read. valueList: as in RQXGetFilterAttr. Failures: QX_ERROR_NO_FILTER, QX_ERROR_SHARED_READ_ONLY.
 * */
QXE_API int RQXSetFilterAttr(int table, int filter, const void* in, bool valueList);

/** Deletes a filter: an edit. Failures: also QX_ERROR_NO_FILTER, QX_ERROR_REFERRED for the key of a
 * join. */
QXE_API int RQXDeleteRealFilter(int table, int filter);

/** As RQXDeleteRealFilter. */
QXE_API int QXDeleteRealFilter(int table, int filter);

/** Moves a filter in the display order: an edit. from: its position from 0. to: its new position; a
 * position out of range is taken as the nearest end, success with an entry in the error ring.
 * Failures: also QX_ERROR_FILTER_INDEX for from. */
QXE_API int RQXMoveRealFilter(int table, int from, int to);

/** As RQXMoveRealFilter. */
QXE_API int QXMoveRealFilter(int table, int from, int to);

/** Adds a copy of a filter at the end of the display order: an edit. Its name is made unique, so
 * the copy of "a" is "a_#1". Pending values go into the value list of both. Result: the id of the
 * copy. Failures: also QX_ERROR_FILTER_COUNT with 512 filters, QX_ERROR_NO_MASTER_KEY for an
 * unknown filter, QX_ERROR_FILTER_NAME when the copy's name would be too long. */
QXE_API int RQXDupRealFilter(int table, int filter);

/** As RQXDupRealFilter. */
QXE_API int QXDupRealFilter(int table, int filter);

/** RQXDupRealFilter into another data type. type: data type code; the filter's own gives a plain
 * copy. Decimals have 6 digits behind the point and round half up. A value that the other type
 * cannot hold becomes NULL:
 *   - Integers are dates as YYYYMMDD of the years 1900 to 2099 and have the time 0; a date becomes
 *     such an integer in the engine's date order.
 *   - Floats and decimals are read as serials. To integers they are cut towards zero.
 *   - A date has the time 0; a time has no date, so NULL, and is the integer 0.
 *   - Texts are written as "12", "  1.500000", "2024/03/01" in the engine's date order, "12:30:00",
 *     both with a blank between, or decimals with all their digits.
 *   - A text that begins with "YYYY/M/D" or is "H:M" or "H:M:S" is read as that date and time (an
 *     integer as YYYYMMDD, or 0 for a time); otherwise it must be a number and nothing else, which
 *     dates read as YYYYMMDD. A time read from a text is a hundredth of a second later.
 * Failures: also QX_ERROR_TYPE_MISMATCH for an unknown type. */
QXE_API int RQXDupRealFilterEx(int table, int filter, int type);

/** As RQXDupRealFilterEx. */
QXE_API int QXDupRealFilterEx(int table, int filter, int type);

/** RQXDupRealFilterEx for decimals of another form. scale: digits behind the point, 0 to 38.
 * rounding: QX_ROUND_ value. Both are ignored unless type is QX_DT_DECIMAL; they also rescale a
 * filter that is decimal already. Failures: also QX_ERROR_PARAMETER for scale or rounding. */
QXE_API int RQXDupRealFilterExNumeric(int table, int filter, int type, int scale, int rounding);

/** Adds a filter: an edit. pos: display position from 0, clamped to the number of filters (1024: at
 * the end). name: cleaned and made unique ("RecNo" becomes "RECNO"); null or "" gives "filter", the
 * date and time, and "_1". type: data type code; decimals have 6 digits behind the point and round
 * half up. rows: values given, for the rows from 1 on; more than the table has are ignored, rows
 * without a value are NULL. data: rows values (int, double, char*, Numeric; a null char* is NULL),
 * copied. dir, file: when data is null and file neither null nor "", a text file with one value a
 * line, read as an import in stop mode reads a column. With neither all rows are NULL. Result: the
 * filter id. Failures: also QX_ERROR_FILTER_COUNT with 512 filters, QX_ERROR_FILTER_NAME above 255
 * bytes, QX_ERROR_TYPE_MISMATCH for an unknown type, QX_ERROR_ROW_SIZE for negative rows,
 * QX_ERROR_FILE, QX_ERROR_INVALID_DATA for a line that does not convert, QX_ERROR_TEXT_FIELD for a
 * line above 4095 bytes. */
QXE_API int RQXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                              const char* dir, const char* file);

/** As RQXAddRealFilter2. */
QXE_API int QXAddRealFilter2(int table, int pos, const char* name, int type, int rows, void* data,
                             const char* dir, const char* file);

/** RQXAddRealFilter2 for decimals of another form. type: QX_DT_DECIMAL. scale: digits behind the
 * point, 0 to 38, also of the values in data. rounding: QX_ROUND_ value. Failures: also
 * QX_ERROR_TYPE_MISMATCH for another type, QX_ERROR_PARAMETER for scale or rounding. */
QXE_API int RQXAddRealFilter2Numeric(int table, int pos, const char* name, int type, int rows,
                                     void* data, const char* dir, const char* file, int scale,
                                     int rounding);

/** Writes rows of a one-column file into a filter: an edit, refused for a referred table
 * (QX_ERROR_REFERRED). The rows of the other filters stay, and are NULL where the table grows; so
 * do the sets, the first one excepted, which has all rows. type: that of the filter. pos, rows: as
 * rowPos and rowCount of RQXAppendCatalogFile. dir, file: for a filter of strings a binary file:
 * for each string its length in bytes as 4 bytes with the highest first, then its bytes, which end
 * at the first NUL; for other types a text file with one value a line, read as an import in stop
 * mode reads a column; decimals get the filter's own digits and rounding. Result: rows. A failed
 * call leaves the table as it was. Failures: also QX_ERROR_NO_FILTER, QX_ERROR_APPEND_TYPE for
 * another type, QX_ERROR_PARAMETER for pos 0 or negative rows, QX_ERROR_ROW_SIZE above 2147483646
 * rows, QX_ERROR_FILE, QX_ERROR_INVALID_DATA for a line that does not convert, QX_ERROR_TEXT_FIELD
 * for a line above 4095 bytes, QX_ERROR_CATALOG for a binary file that ends inside a string or,
 * with rows above 0, is empty, QX_ERROR_HIGH_SPEED_FILTER. */
QXE_API int RQXAppendRealFilter2(int table, int filter, int type, int pos, int rows,
                                 const char* dir, const char* file);

/** Renames a filter: an edit. name: 1 to 255 bytes, cleaned and made unique; its own name changes
 * nothing. Failures: also QX_ERROR_NO_FILTER, QX_ERROR_FILTER_NAME. */
QXE_API int RQXSetFilterName(int table, int filter, const char* name);

/** As RQXSetFilterName. */
QXE_API int QXSetFilterName(int table, int filter, const char* name);

/** Copies a filter's stored name. out: 256 bytes. Failures: QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterName(int table, int filter, char* out);

/** As RQXGetFilterName. */
QXE_API int QXGetFilterName(int table, int filter, char* out);

/** A filter's stored name, in the engine until the filter is renamed or deleted; "" if it is
 * unknown. */
QXE_API const char* RQXGetFilterNameR1(int table, int filter);

/** Finds a filter by its stored name. Result: the filter id. Failures: QX_ERROR_NO_FILTER. */
QXE_API int RQXGetFilterIDFromName(int table, const char* name);

/** As RQXGetFilterIDFromName. */
QXE_API int QXGetFilterIDFromName(int table, const char* name);

/** RQXGetFilterIDFromName within one side of a join table. side: 0 or 1, below 0 both; ignored for
 * a real table. */
QXE_API int RQXGetFilterIDFromName2(int table, const char* name, int side);

/** Changes the form of a decimal filter: an edit. info: in, digits behind the point and rounding
 * mode. Values are rounded by the new mode; one that no longer fits 38 digits becomes NULL. A
 * change of the mode alone changes no value. unused: ignored. Failures: also QX_ERROR_REFERRED
 * while another table refers to this one, QX_ERROR_NO_FILTER, QX_ERROR_PARAMETER for info null or
 * out of range, QX_ERROR_NO_JOIN_FILTER for a filter that is not decimal. */
QXE_API int RQXSetNumericInfo(int table, int filter, NumericInfo* info, bool unused);

/** Reads the form of a decimal filter. info: out. name: out, 256 bytes, the filter's name; may be
 * null. unused: ignored. Failures: QX_ERROR_NO_FILTER, QX_ERROR_NO_JOIN_FILTER for a filter that is
 * not decimal. */
QXE_API int RQXGetNumericInfo(int table, int filter, NumericInfo* info, char* name, bool unused);

/** RQXGetNumericInfo without the name; a failure may come back as -1, with its code in the error
 * ring. */
QXE_API int RQXGetNumericInfoR1(int table, int filter, NumericInfo* info);

/** Points into a filter without copying it. out: filled, see _TFilterInfo; valid until the filter
 * changes. Failures: QX_ERROR_NO_FILTER. */
QXE_API int QXGetFilter(int table, int filter, _TFilterInfo* out);

/** Counts the rows of a set by value. counts: out, one int for each entry of the value list
 * (valueCount of RQXGetFilterInfo), index = value number. Failures: QX_ERROR_NO_FILTER,
 * QX_ERROR_NO_SET. */
QXE_API int QXGetValCount(int table, int filter, int set, int* counts);

/*
 * Reading rows
 *
 * A read goes through a set: pos is the position in the set, from 0 in calls named ...Data and
 * ...RowNo, from 1 in calls with a 1. type: out, the data type code of the value. Filter 0 reads
 * the row number, as an integer. Result of a read: the bytes of the value, 4, 8, 16 or the length
 * of the string without its terminator; so 0 for NULL of a string filter. Failures of every read:
 * QX_ERROR_NO_SET for an unknown set and for a position outside it, QX_ERROR_NO_FILTER; in a join
 * table QX_ERROR_NO_RECORD and QX_ERROR_NO_JOIN_FILTER. A failure leaves an entry in the error
 * ring.
 *
 * Block reads start at a position and go on until the set ends, a buffer is full or 128 rows are
 * read. count: out, the rows read. values and strings: out, 1024 and 4096 bytes, cleared first.
 * values gets int, double, or for strings the int offset of each string in strings, where they
 * stand NUL-terminated one behind the other; of decimals, at most 63, a NumericInfo and then the
 * Numeric values. Result: that of the first row; later rows that fail end the block without a
 * failure.
 */

/** Reads one value. pos: from 0. out: 4096 bytes: int, double, NUL-terminated text cut at 4095
 * bytes, or for a decimal a NumericInfo (8 bytes) and then the Numeric (16), although the result is
 * 16. */
QXE_API int RQXGetData(int table, int filter, int set, int pos, int* type, void* out);

/** As RQXGetData. */
QXE_API int QXGetData(int table, int filter, int set, int pos, int* type, void* out);

/** RQXGetData with pos from 1. */
QXE_API int RQXGetData1(int table, int filter, int set, int pos, int* type, void* out);

/** As RQXGetData1. */
QXE_API int QXGetData1(int table, int filter, int set, int pos, int* type, void* out);

/** RQXGetData1 with another limit for strings. size: bytes of out for a string, at least 1; strings
 * are cut to size - 1 bytes. Failures: also QX_ERROR_PARAMETER for size. */
QXE_API int RQXGetData1Ex(int table, int filter, int set, int pos, int* type, void* out, int size);

/** RQXGetData1 without a copy. out: set to the address of the value in the engine, for a string of
 * its whole text; valid until the filter changes. Decimals have no such form: QX_ERROR_NO_SET. */
QXE_API int RQXGetData1ExPtr(int table, int filter, int set, int pos, int* type, long* out);

/** As RQXGetData1, for string filters; values of other types are written as there, not as text. */
QXE_API int RQXGetData1Str(int table, int filter, int set, int pos, int* type, char* out);

/** Reads a block of rows. first: position from 1. */
QXE_API int RQXGetData1M(int table, int filter, int set, int first, int* type, int* count,
                         void* values, char* strings);

/** RQXGetData1M with another limit for strings. size: at least 1; each string is cut to size - 1
 * bytes. Failures: also QX_ERROR_PARAMETER for size. */
QXE_API int RQXGetData1MEx(int table, int filter, int set, int first, int* type, int* count,
                           void* values, char* strings, int size);

/** RQXGetData1ExPtr for a block of rows. values: out, 128 addresses. */
QXE_API int RQXGetData1MExPtr(int table, int filter, int set, int first, int* type, int* count,
                              long* values);

/** Reads a row number. pos: from 0. out: the row at that position. Result: 4. */
QXE_API int RQXGetRowNo(int table, int set, int pos, int* out);

/** As RQXGetRowNo. */
QXE_API int QXGetRowNo(int table, int set, int pos, int* out);

/** RQXGetRowNo with pos from 1. */
QXE_API int RQXGetRowNo1(int table, int set, int pos, int* out);

/** As RQXGetRowNo1. */
QXE_API int QXGetRowNo1(int table, int set, int pos, int* out);

/** Reads row numbers. first: position from 1. count: how many are wanted. out: count ints. Result:
 * the number written, less than count at the end of the set. */
QXE_API int RQXGetRowNo1M(int table, int set, int first, int count, int* out);

/** Reads the value numbers of a whole set, in set order. out: one int for each row of the set; 0 is
 * NULL, above 0 an index into the value list, below 0 a value written since the list was last put
 * in order (RQXGetFilterInfo puts it in order). Result: the number written. Failures:
 * QX_ERROR_NO_SET, QX_ERROR_NO_FILTER, also for filter 0. */
QXE_API int RQXGetVNoList(int table, int filter, int set, int* out);

/** The integer at pos (from 0); QX_NULL_INT on a failure or another type, the error ring tells. */
QXE_API int RQXGetDataIntR1(int table, int filter, int set, int pos);

/** RQXGetDataIntR1 with pos from 1. */
QXE_API int RQXGetData1IntR1(int table, int filter, int set, int pos);

/** The float, date, time or date-time at pos (from 0); negative infinity on a failure or another
 * type. */
QXE_API double RQXGetDataDblR1(int table, int filter, int set, int pos);

/** RQXGetDataDblR1 with pos from 1. */
QXE_API double RQXGetData1DblR1(int table, int filter, int set, int pos);

/** The string at pos (from 0), cut at 4095 bytes, in the shared R1 buffer; "" on a failure or
 * another type. */
QXE_API const char* RQXGetDataStrR1(int table, int filter, int set, int pos);

/** RQXGetDataStrR1 with pos from 1. */
QXE_API const char* RQXGetData1StrR1(int table, int filter, int set, int pos);

/** Reads one decimal. pos: from 0. out: the Numeric, without its NumericInfo; untouched if the
 * filter is not decimal. Result: -1 after a successful read. After a failed one the engine stays
 * locked and the next call never returns: pass only a filter, a set and a position that exist. An
 * unknown table fails without harm. */
QXE_API int RQXGetDataNumericR1(int table, int filter, int set, int pos, Numeric* out);

/** RQXGetDataNumericR1 with pos from 1 and the read's own result: 16 for a decimal. */
QXE_API int RQXGetData1NumericR1(int table, int filter, int set, int pos, Numeric* out);

/** Reads a block of integers. first: position from 1. values: out, 128 ints. Failures: also
 * QX_ERROR_TYPE_MISMATCH. */
QXE_API int RQXGetData1MIntR1(int table, int filter, int set, int first, int* count, int* values);

/** Reads a block of floats, dates, times or date-times. first: position from 1. values: out, 128
 * doubles. Failures: also QX_ERROR_TYPE_MISMATCH. */
QXE_API int RQXGetData1MDblR1(int table, int filter, int set, int first, int* count,
                              double* values);

/** Reads a block of decimals. first: position from 1. values: out, 128 Numeric (2048 bytes),
 * without NumericInfo. Failures: also QX_ERROR_TYPE_MISMATCH. */
QXE_API int RQXGetData1MNumericR1(int table, int filter, int set, int first, int* count,
                                  Numeric* values);

/** Reads a block of strings. first: position from 1. offsets: out, 128 ints, each string's place in
 * strings. strings: out, 4096 bytes. Failures: also QX_ERROR_TYPE_MISMATCH. */
QXE_API int RQXGetData1MStrR1(int table, int filter, int set, int first, int* count, int* offsets,
                              char* strings);

/** The value at pos (from 1) as text in the shared R1 buffer: integers "%d", floats "%f", dates,
 * times and date-times as RQXDouble2DateTimeStrR1 and its kin write them, decimals with their
 * digits behind the point. NULL of a date, time, date-time or decimal and a failure are "". */
QXE_API const char* RQXGetData1Cnv2StrR1(int table, int filter, int set, int pos);

/*
 * Column compilation: sorts an array's distinct values into a list and numbers the elements by it.
 * These four work on the caller's arrays alone and need no table.
 */

/** Compiles integers. n: elements, at least 1. k: runs merged at a time, 2 to 1024; it changes the
 * speed, not the result. data: n values. pv: out, n ints, for each element the index (from 0) of
 * its value in vl. vl: out, the distinct values, ascending. Result: their number; -1 for a bad n,
 * -2 for a bad k, outputs untouched. The caller frees *pv and *vl with QXFreeMem. */
QXE_API int iCompileInt(int n, int k, int* data, int** pv, int** vl);

/** iCompileInt for doubles. */
QXE_API int iCompileFloat(int n, int k, double* data, int** pv, double** vl);

/** iCompileInt for strings, in byte order. vl: out, the addresses of the distinct strings as long,
 * pointing into the input, which must outlive them. */
QXE_API int iCompileString(int n, int k, char** data, int** pv, long** vl);

/** iCompileInt for decimals of one scale. */
QXE_API int iCompileNumeric(int n, int k, Numeric* data, int** pv, Numeric** vl);

/*
 * Row editing
 *
 * Each call is an edit, refused for a referred table as well (QX_ERROR_REFERRED). What can fail is
 * checked before anything changes.
 *
 * Rows. A row change moves the rows behind it, in all filters and sets; sets keep their order. It
 * merges the pending values of all filters when it deletes. Failures: also
 * QX_ERROR_HIGH_SPEED_FILTER for a table with a filter that is frozen for high-speed search.
 *
 * Values. They go into a filter through a set: start is a position in the set, from 1. count: rows,
 * 1 or more, cut to what the set has from start on. Values are those of the filter's type: int,
 * double, Numeric at the filter's own scale, or char* (null is NULL), whose trailing blanks are cut
 * in the caller's buffer while the tail-space setting is on; they must not lie in the engine's own
 * memory. A row that the set holds more than once keeps the last value. Result: the rows written.
 * New values of up to 10,000 rows of a table of 100 rows or more wait, unsorted, until the next
 * call that needs the filter's sorted value list. Failures: also QX_ERROR_NO_SET_ID for an unknown
 * set, QX_ERROR_PARAMETER for start outside the set, a count below 1, or null data or value,
 * QX_ERROR_NO_FILTER, QX_ERROR_STRING_SIZE for a string above 4095 bytes,
 * QX_ERROR_HIGH_SPEED_FILTER.
 */

/** Inserts rows of NULLs. They belong to no set but the first. pos: number of the first new row; 0
 * means 1, and a row behind the last one the end. count: 1 or more. Result: count. Failures: also
 * QX_ERROR_ROW_POSITION for a negative pos, QX_ERROR_PARAMETER for a count below 1,
 * QX_ERROR_ROW_SIZE above 2147483646 rows. */
QXE_API int RQXInsertRealRows(int table, int pos, int count);

/** As RQXInsertRealRows. */
QXE_API int QXInsertRealRows(int table, int pos, int count);

/** Deletes rows by their numbers. start: the first one. count: 1 or more; what goes beyond the last
 * row is ignored. Result: the rows deleted. Values that no row has any more stay in the value
 * lists. Failures: also QX_ERROR_ROW_POSITION for a start that is no row, QX_ERROR_PARAMETER for a
 * count below 1. */
QXE_API int RQXDeleteRealRows(int table, int start, int count);

/** As RQXDeleteRealRows. */
QXE_API int QXDeleteRealRows(int table, int start, int count);

/** Deletes the rows at some positions of a set. start: from 1. count: 1 or more, within the set.
 * Result: the rows deleted; one that the set holds more than once counts once. Failures: also
 * QX_ERROR_NO_SET_ID for an unknown set, QX_ERROR_ROW_POSITION for start outside the set,
 * QX_ERROR_PARAMETER for a count below 1 or beyond the set. */
QXE_API int RQXDeleteRealRowsEx(int table, int set, int start, int count);

/** As RQXDeleteRealRowsEx. */
QXE_API int QXDeleteRealRowsEx(int table, int set, int start, int count);

/** Writes values to the rows at some positions of a set. data: an array of count values. */
QXE_API int RQXOverwriteRealEx(int table, int filter, int set, int start, int count, void* data);

/** As RQXOverwriteRealEx. */
QXE_API int QXOverwriteRealEx(int table, int filter, int set, int start, int count, void* data);

/** RQXOverwriteRealEx for filters of strings alone. Failures: also QX_ERROR_TYPE_MISMATCH for
 * another type. */
QXE_API int RQXOverwriteRealExStr(int table, int filter, int set, int start, int count,
                                  char** data);

/** RQXOverwriteRealEx of one integer. Failures: also QX_ERROR_TYPE_MISMATCH for another type. */
QXE_API int RQXOverwriteRealExIntR1(int table, int filter, int set, int start, int value);

/** The same of one float, date, time or date-time. */
QXE_API int RQXOverwriteRealExDblR1(int table, int filter, int set, int start, double value);

/** The same of one decimal. */
QXE_API int RQXOverwriteRealExNumericR1(int table, int filter, int set, int start,
                                        const Numeric* value);

/** The same of one string; null is NULL. */
QXE_API int RQXOverwriteRealExStrR1(int table, int filter, int set, int start, char* value);

/** Writes one value to the rows at some positions of a set. value: address of the value; of a
 * string the address of its char*. */
QXE_API int RQXFillRealEx(int table, int filter, int set, int start, int count, void* value);

/** RQXFillRealEx with an integer. Failures: also QX_ERROR_TYPE_MISMATCH for another type. */
QXE_API int RQXFillRealExIntR1(int table, int filter, int set, int start, int count, int value);

/** The same with a float, date, time or date-time. */
QXE_API int RQXFillRealExDblR1(int table, int filter, int set, int start, int count, double value);

/** The same with a decimal. */
QXE_API int RQXFillRealExNumericR1(int table, int filter, int set, int start, int count,
                                   const Numeric* value);

/** The same with a string; null is NULL. */
QXE_API int RQXFillRealExStrR1(int table, int filter, int set, int start, int count, char* value);

/*
 * Search by value
 *
 * A search makes a new set of the rows of a set that meet a condition, in the set's order, or by a
 * mark for high-speed search (see there) in the filter's. ope: a QX_OPE_ code. value1, value2: in,
 * addresses of an int, a double, a Numeric at the filter's scale, or the text itself; value2 is
 * read by BETWEEN and WITHIN only, neither by ISNULL, and what is not read may be null. Nothing is
 * written to them. Result: the new set's id.
 *
 * NULL rows are hit only when NULL is asked for: by ISNULL, by EQ and GEQ with a NULL value1, and
 * by BETWEEN from NULL; with QX_OPE_STRICT a NULL bound gives an empty set. In string filters the
 * empty string is a value like others, but LEQ and LES with "" give an empty set (LEQ with
 * QX_OPE_STRICT the rows that hold ""), and BEGINS with "" hits every row.
 *
 * On a real table RQXSearchByField, its Str, SJIS, Locale, R1 and NValues forms leave the current
 * set as it was; other searches make their result current. The new set gets the attribute block of
 * its source, one that becomes current also its name.
 *
 * Failures of every search: QX_ERROR_NO_FILTER (in a join table QX_ERROR_NO_JOIN_FILTER),
 * QX_ERROR_NO_SET_ID (in a join table QX_ERROR_NO_SET), QX_ERROR_SET_COUNT with 10,000 sets, and
 * QX_ERROR_OPERATION for an unknown code, for BEGINS, CONTAINS and ENDS on a filter that is not of
 * strings, and for ISNULL on a filter that is.
 */

/** Searches a filter by value. */
QXE_API int RQXSearchByField(int table, int filter, int set, int ope, char* value1, char* value2);

/** As RQXSearchByField. */
QXE_API int QXSearchByField(int table, int filter, int set, int ope, char* value1, char* value2);

/** As RQXSearchByField. */
QXE_API int RQXSearchByFieldStr(int table, int filter, int set, int ope, char* value1,
                                char* value2);

/** RQXSearchByField for string filters whose values all begin with one byte that is not to be
 * compared: it is skipped, value1 and value2 are given without it, and rows that hold "" are never
 * hit. Codes EQ to ENDS, without QX_OPE_STRICT, else QX_ERROR_OPERATION. The result becomes
 * current. Any other filter is searched as by RQXSearchByField. */
QXE_API int RQXSearchByField2(int table, int filter, int set, int ope, char* value1, char* value2);

/** As RQXSearchByField2. */
QXE_API int QXSearchByField2(int table, int filter, int set, int ope, char* value1, char* value2);

/** RQXSearchByField with values in Shift_JIS. Failures: also QX_ERROR_LOCALE unless that is the
 * database's code. */
QXE_API int RQXSearchByFieldSJIS(int table, int filter, int set, int ope, char* value1,
                                 char* value2);

/** RQXSearchByField with values in the code of a locale. localeId: QX_LOCALE_ value, or 99 for no
 * check. Failures: also QX_ERROR_LOCALE unless it is the database's. */
QXE_API int RQXSearchByFieldLocale(int table, int filter, int set, int ope, char* value1,
                                   char* value2, int localeId);

/** Searches rows whose value equals any of a list. count: values in the list; below 1 gives an
 * empty set. values: in, an array of int, double, Numeric at the filter's scale, or char*. A NULL
 * in the list hits NULL rows. */
QXE_API int RQXSearchByFieldNValues(int table, int filter, int set, int count, void* values);

/** Searches rows whose value equals any of those in a text file. dir, fileName: the file, each name
 * below 512 bytes. Commas and line ends separate the values, quotes as in an import's data; an
 * empty value, also behind a last comma, is NULL and hits NULL rows, a line end at the end of the
 * file adds none. Values are not checked: a number is the one at the front of the text, or 0; an
 * unreadable date or time is NULL; one with bad quoting or above 4095 bytes is left out. An empty
 * file gives an empty set. Failures: also QX_ERROR_FILE, QX_ERROR_DATA_TYPE for a filter of
 * decimals. */
QXE_API int RQXSearchByFieldNValuesFromCSV(int table, int filter, int set, const char* dir,
                                           const char* fileName);

/** Searches a string filter of a real table by a pattern, for rows whose whole string matches it.
 * In the pattern
 *
 *   *    stands for any run of bytes, also for none
 *   ?    stands for exactly one byte; a character of three bytes needs ???
 *   \    makes a *, ? or \ behind it stand for itself
 *
 * and every other byte for itself, upper and lower case told apart: "B*ton" hits "Boston", "*50\*"
 * what ends with "50*". The pattern is read by characters of the database's code, so that a
 * trailing byte of one is no backslash. Rows that hold "" are never hit, not even by "*"; the
 * pattern "" gives an empty set. The result becomes current. pattern: in, at most 4095 bytes.
 * Failures: also QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL, QX_ERROR_PARAMETER for a pattern that is
 * null or too long or has a \ at its end or before any other byte, QX_ERROR_TYPE_MISMATCH for a
 * filter that is not of strings. */
QXE_API int RQXSearchByFieldWildCard(int table, int filter, int set, const char* pattern);

/** As RQXSearchByFieldWildCard. */
QXE_API int QXSearchByFieldWildCard(int table, int filter, int set, const char* pattern);

/** Searches by row number. filter: ignored; in a join table it picks the side. ope: EQ to GT
 * without QX_OPE_STRICT. n1, n2: row numbers. The result becomes current. */
QXE_API int RQXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2);

/** As RQXSearchByRowNo. */
QXE_API int QXSearchByRowNo(int table, int filter, int set, int ope, int n1, int n2);

/** Searches a real table by position in the set. ope: EQ to GT without QX_OPE_STRICT. n1, n2:
 * positions from 1; those outside the set are no fault. The result becomes current. Failures: also
 * QX_ERROR_NOT_REAL. */
QXE_API int RQXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2);

/** As RQXSearchByDispRowNoReal. */
QXE_API int QXSearchByDispRowNoReal(int table, int set, int ope, int n1, int n2);

/** Searches rows by value number. flags: in, one byte for each entry of the value list (valueCount
 * of RQXGetFilterInfo): 1 hits the rows with that value, 0 does not. The result becomes current. */
QXE_API int QXSearch(int table, int filter, int set, unsigned char* flags);

/** As RQXSearchByFieldStr. */
QXE_API int RQXSearchByFieldStrR1(int table, int filter, int set, int ope, char* value1,
                                  char* value2);

/** As RQXSearchByField; value1 and value2 are addresses of Numeric. */
QXE_API int RQXSearchByFieldNumericR1(int table, int filter, int set, int ope, char* value1,
                                      char* value2);

/** As RQXSearchByFieldSJIS. */
QXE_API int RQXSearchByFieldSJISR1(int table, int filter, int set, int ope, char* value1,
                                   char* value2);

/** As RQXSearchByFieldLocale. */
QXE_API int RQXSearchByFieldLocaleR1(int table, int filter, int set, int ope, char* value1,
                                     char* value2, int localeId);

/** RQXSearchByField for integer filters, with the values themselves. */
QXE_API int RQXSearchByFieldIntR1(int table, int filter, int set, int ope, int value1, int value2);

/** RQXSearchByField for float, date, time and date-time filters, with the values themselves. */
QXE_API int RQXSearchByFieldDblR1(int table, int filter, int set, int ope, double value1,
                                  double value2);

/*
 * High-speed search
 *
 * For a set that is searched again and again by one filter of a real table: a mark on the pair
 * keeps the rows of the set in the filter's order as well, 4 bytes each, and a search of the set by
 * the filter becomes a bisection and a copy of what it finds. It finds the rows that it finds
 * without a mark, in the filter's order instead of the set's: ascending by value, rows with equal
 * values in the set's order, whatever the operator. CONTAINS, ENDS, lists of values, patterns and
 * row numbers make no use of marks.
 *
 * A mark works while the filter is enabled, and an enabled filter is frozen: to write to it, to
 * change its scale or rounding mode, to insert rows into its table or delete some fails with
 * QX_ERROR_HIGH_SPEED_FILTER before anything is changed. Deleting the filter is allowed. Once it is
 * no longer enabled, its marks work until the first change of the filter or of the table's rows and
 * again after the next RQXHighSpeedSearchEnable. Deleting the set or the filter takes the mark
 * away. Copies of sets, filters and tables have no marks and are not enabled.
 *
 * Failures of all: QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL, QX_ERROR_NO_SET, QX_ERROR_NO_FILTER.
 */

/** Marks a set for high-speed search by a filter (on true), or takes the mark away. Note the order
 * of set and filter. With an enabled filter the mark works at once, else from
 * RQXHighSpeedSearchEnable on. Nothing to do is no failure. Result: 0. */
QXE_API int RQXHighSpeedSearchSetMark(int table, int set, int filter, bool on);

/** Whether a set is marked for a filter, at work or not. Result: 1 or 0. */
QXE_API int RQXHighSpeedSearchHasMark(int table, int set, int filter);

/** Sorts the marked sets of a filter and freezes it (on true), or allows changes again. filter:
 * below 1 for all filters of the table. Result: 0. */
QXE_API int RQXHighSpeedSearchEnable(int table, int filter, bool on);

/** Whether a filter is enabled. Result: 1 or 0. */
QXE_API int RQXHighSpeedSearchIsEnabled(int table, int filter);

/*
 * Find cursors
 *
 * A find cursor is for browsing: it marks all rows of a real table that meet a condition, without
 * making a set, and RQXGetNextHitReal then steps from hit to hit within any set of the table. A
 * table has one cursor at most. Opening closes the one before, also when it fails. A cursor also
 * closes when rows are inserted or deleted, or would be but for a high-speed filter, and when its
 * filter is deleted; one whose rows are overwritten keeps its marks as they are.
 *
 * ope: a QX_OPE_ code, EQ to GT, in string filters to ENDS, without QX_OPE_STRICT. v1, v2: the
 * bounds; v2 is read by BETWEEN and WITHIN only. Here NULL is the lowest value and nothing more:
 * LEQ, LES and NEQ hit NULL rows.
 *
 * Result of the opening calls: the cursor's search id, above 0, which no cursor of the table had
 * before. Failures: QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL, QX_ERROR_FILTER_INDEX for an unknown
 * filter, QX_ERROR_TYPE_MISMATCH for one of another type, QX_ERROR_OPERATION for ope,
 * QX_ERROR_PARAMETER for a null v1 or v2 that would be read.
 */

/** Opens a cursor on a string filter. v1, v2: in. */
QXE_API int RQXOpenStrFindReal(int table, int filter, int ope, char* v1, char* v2);

/** As RQXOpenStrFindReal. */
QXE_API int QXOpenStrFindReal(int table, int filter, int ope, char* v1, char* v2);

/** RQXOpenStrFindReal with values in Shift_JIS. Failures: also QX_ERROR_LOCALE unless that is the
 * database's code. */
QXE_API int RQXOpenStrFindRealSJIS(int table, int filter, int ope, char* v1, char* v2);

/** RQXOpenStrFindReal with values in the code of a locale. localeId: QX_LOCALE_ value, or 99 for no
 * check. Failures: also QX_ERROR_LOCALE unless it is the database's. */
QXE_API int RQXOpenStrFindRealLocale(int table, int filter, int ope, char* v1, char* v2,
                                     int localeId);

/** Opens a cursor on an integer filter. */
QXE_API int RQXOpenIntFindReal(int table, int filter, int ope, int v1, int v2);

/** As RQXOpenIntFindReal. */
QXE_API int QXOpenIntFindReal(int table, int filter, int ope, int v1, int v2);

/** Opens a cursor on a filter of floats, dates, times or date-times. */
QXE_API int RQXOpenFloatFindReal(int table, int filter, int ope, double v1, double v2);

/** As RQXOpenFloatFindReal. */
QXE_API int QXOpenFloatFindReal(int table, int filter, int ope, double v1, double v2);

/** Opens a cursor on a decimal filter; v1, v2 at the filter's scale. */
QXE_API int RQXOpenNumericFindReal(int table, int filter, int ope, Numeric v1, Numeric v2);

/** Tells about the open cursor. hitCount: out, rows hit in the whole table, one more when the
 * condition holds for NULL. filterId: out, its filter. Result: its search id; 0 when none is open,
 * outputs untouched. Failures: QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL. */
QXE_API int RQXGetFindStatus(int table, int* hitCount, int* filterId);

/** As RQXGetFindStatus. */
QXE_API int QXGetFindStatus(int table, int* hitCount, int* filterId);

/** Finds the next hit in a set. searchId: of the open cursor. position: from 1, the place behind
 * which (or, with backward not 0, before which) the search begins: 0 for the first hit, the set's
 * size + 1 backward for the last; what lies outside the set means its nearer end. filterId: out,
 * the cursor's filter. hitPosition: out, the hit's position in the set. Result: 1; at the end 0,
 * hitPosition untouched. Failures: QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL, QX_ERROR_FIND_CLOSED when
 * no cursor is open, QX_ERROR_FIND_ID for another searchId, QX_ERROR_NO_SET. */
QXE_API int RQXGetNextHitReal(int table, int searchId, int set, int position, int backward,
                              int* filterId, int* hitPosition);

/** As RQXGetNextHitReal. */
QXE_API int QXGetNextHitReal(int table, int searchId, int set, int position, int backward,
                             int* filterId, int* hitPosition);

/** Closes the cursor. Result: 0, also when none is open. Failures: QX_ERROR_NO_TABLE,
 * QX_ERROR_NOT_REAL. */
QXE_API int RQXCloseFindReal(int table);

/** As RQXCloseFindReal. */
QXE_API int QXCloseFindReal(int table);

/** Looks a row up in a set of a real table. row: its number. Result: the position (from 1) of its
 * first occurrence, 0 when the set has it not. Failures: QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL,
 * QX_ERROR_NO_SET. */
QXE_API int RQXFindRecNoReal(int table, int set, int row);

/** As RQXFindRecNoReal. */
QXE_API int QXFindRecNoReal(int table, int set, int row);

/*
 * Sorting
 *
 * A sort makes a new set with the rows of a set in sorted order and makes it current. Rows with
 * equal keys keep the order of the source, in both directions. NULL comes first ascending, last
 * descending. dir: QX_SORT_ASC or QX_SORT_DESC. The new set gets name and attribute block of its
 * source. Result: its id. Failures of every sort: QX_ERROR_NO_FILTER (in a join table
 * QX_ERROR_NO_JOIN_FILTER), QX_ERROR_NO_SET, QX_ERROR_PARAMETER for dir, QX_ERROR_SET_COUNT with
 * 10,000 sets.
 */

/** Sorts a set by one filter. */
QXE_API int RQXSortByField(int table, int filter, int set, int dir);

/** As RQXSortByField. */
QXE_API int QXSortByField(int table, int filter, int set, int dir);

/** Sorts a set by row number. filter: ignored; in a join table it picks the side. A row that stands
 * in the source more than once may come out once. */
QXE_API int RQXSortByRowNo(int table, int filter, int set, int dir);

/** As RQXSortByRowNo. */
QXE_API int QXSortByRowNo(int table, int filter, int set, int dir);

/** Sorts a set by several filters. filters: in, filter ids, ends at the first entry below 1 or
 * after QX_MAX_SORT_KEYS; the LAST is the most significant key. dirs: in, one direction for each.
 * Without a key the result is a copy in source order. In a join table all keys come from one side.
 * */
QXE_API int RQXIntegratedSortByField(int table, int set, int* filters, int* dirs);

/** Keeps the first row, in the set's order, of each distinct combination of the values of some
 * filters, and makes the new set current; it has name and attribute block of its source. NULL is a
 * value like others. Real tables only. filters: in, 1 to 512 filter ids, ends at the first entry
 * below 1. Result: the new set's id. Failures: QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL,
 * QX_ERROR_UNIQUE_FILTERS for an empty or too long list, QX_ERROR_NO_FILTER, QX_ERROR_NO_SET,
 * QX_ERROR_SET_COUNT with 10,000 sets. */
QXE_API int RQXExtractUniqueReal(int table, int set, int* filters);

/** As RQXExtractUniqueReal. */
QXE_API int QXExtractUniqueReal(int table, int set, int* filters);

/** Orders the positions of an array by descending count; equal counts keep their order. n:
 * elements. counts: in, n counts. nonZero: out, how many counts are not 0. nonZeroIndex: out, room
 * for n ints, the positions (from 0) of those, ascending. order: out, n ints, all positions by
 * descending count. Failures: QX_ERROR_UNKNOWN when order is null. */
QXE_API int QXServiceSortByN(int n, int* counts, int* nonZero, int* nonZeroIndex, int* order);

/*
 * Derived tables
 *
 * These calls make a new real table of others, which stay as they are and must be real too. The new
 * table has a root set and no other; its filters have the ids 1, 2, 3 and so on, their sources'
 * names ("_#1" and so on behind a name that is taken) and no attributes of row pointers. name: the
 * new table's, cleaned and made unique; null or "" gives "realtbl", the date and time, and "_1".
 * Result: the id of the new table. Failures of all: QX_ERROR_TABLE_COUNT with 10,000 tables,
 * QX_ERROR_TABLE_NAME above 255 bytes, or if the unique name would be longer, QX_ERROR_NOT_REAL,
 * QX_ERROR_FILTER_NAME if the unique name of a filter would be too long. A failure leaves no table,
 * but its id may be used up.
 */

/** Copies a table with all rows and filters, the attributes of both blocks (not those of the value
 * lists of strings) and the root set's name and attributes. Other sets do not come along. */
QXE_API int RQXDuplicateRealTable(const char* name, int table);

/** As RQXDuplicateRealTable. */
QXE_API int QXDuplicateRealTable(const char* name, int table);

/** Makes a table of the rows of a set, in set order. Its value lists hold the values of these rows
 * only. filters: ids, ended below 1, in the order of the new columns; an id may come twice; null
 * for all filters. The pseudo filters QX_FLT_TABLE_ID and QX_FLT_REC_NO give the integer columns
 * "#TABLE_ID" (the source table's id in every row) and "#REC_NO" (the source row numbers).
 * Failures: also QX_ERROR_NO_SET, QX_ERROR_NO_FILTER for an unknown filter or an empty list,
 * QX_ERROR_FILTER_COUNT above 512. */
QXE_API int RQXExtractRealTable(const char* name, int table, int set, int* filters);

/** As RQXExtractRealTable. */
QXE_API int QXExtractRealTable(const char* name, int table, int set, int* filters);

/** RQXExtractRealTable with the pseudo filters by flags. addTableId, addRecNo: not 0 puts
 * "#TABLE_ID", and behind it "#REC_NO", in front of the columns of the list. */
QXE_API int RQXExtractRealTableEx(const char* name, int table, int set, int addTableId,
                                  int addRecNo, int* filters);

/** As RQXExtractRealTableEx. */
QXE_API int QXExtractRealTableEx(const char* name, int table, int set, int addTableId, int addRecNo,
                                 int* filters);

/** Makes a table of the rows of two sets, those of the first in front, each in set order. table1
 * and table2 may be the same. filters1, filters2: filter ids that are walked in step; the position
 * at which both are below 1 ends them, so both need an entry there. Each position makes a column of
 * the two filters, which must have the same type, under the first one's name. Where one entry is 0
 * the column is the other table's alone and NULL in the rows of this one. Decimals get the form of
 * the first filter. Failures: also QX_ERROR_COMBINE_SET for an unknown set, QX_ERROR_NO_FILTER for
 * an unknown filter or no column at all, QX_ERROR_APPEND_TYPE for different types,
 * QX_ERROR_NO_JOIN_FILTER for an entry below 0 beside a filter, QX_ERROR_FILTER_COUNT above 512
 * columns, QX_ERROR_ROW_SIZE. */
QXE_API int RQXCombineRealTable(char* name, int table1, int set1, int* filters1, int table2,
                                int set2, int* filters2);

/** As RQXCombineRealTable. */
QXE_API int QXCombineRealTable(char* name, int table1, int set1, int* filters1, int table2,
                               int set2, int* filters2);

/** RQXCombineRealTable with columns that tell where a row comes from. addTableId, addRowNumber: not
 * 0 puts the integer columns "TableID" (table1 or table2) and behind it "RecNo" (the row number in
 * that table) in front. */
QXE_API int RQXCombineRealTableEx(char* name, int addTableId, int addRowNumber, int table1,
                                  int set1, int* filters1, int table2, int set2, int* filters2);

/** As RQXCombineRealTableEx. */
QXE_API int QXCombineRealTableEx(char* name, int addTableId, int addRowNumber, int table1, int set1,
                                 int* filters1, int table2, int set2, int* filters2);

/** As RQXCombineRealTableEx. */
QXE_API int RQXCombineRealTableEx2(char* name, int addTableId, int addRowNumber, int table1,
                                   int set1, int* filters1, int table2, int set2, int* filters2);

/** Makes a table of the rows of sets of up to 64 tables, in list order and each in set order.
 * tableIds: ids, ended below 1; an id may come twice. setIds: a set id for each. filters1 to
 * filters4: null, or the id of an integer filter for each table, below 1 for NULL in its rows. The
 * result has the integer columns "TableID" and "RecNo" as RQXCombineRealTableEx has them, and one
 * for each list that is not null, named after its first filter. name: must not be null or empty.
 * Failures: also QX_ERROR_NO_TABLE for an unknown or unreal table or an empty list,
 * QX_ERROR_NO_SET, QX_ERROR_PARAMETER above 64 tables, QX_ERROR_NO_FILTER, QX_ERROR_DATA_TYPE for a
 * filter of another type, QX_ERROR_CHAIN_NAME (instead of QX_ERROR_TABLE_NAME), QX_ERROR_ROW_SIZE.
 */
QXE_API int RQXCombineTableList(char* name, int* tableIds, int* setIds, int* filters1,
                                int* filters2, int* filters3, int* filters4);

/** As RQXCombineTableList. */
QXE_API int QXCombineTableList(char* name, int* tableIds, int* setIds, int* filters1, int* filters2,
                               int* filters3, int* filters4);

/** Drops the values that no row uses from the value lists of a table: an edit, which changes value
 * numbers but no row's value. Failures: also QX_ERROR_REFERRED while another table refers to this
 * one. */
QXE_API int RQXCondenseRealTable(int table);

/** As RQXCondenseRealTable. */
QXE_API int QXCondenseRealTable(int table);

/*
 * Summaries
 *
 * A summary groups the rows of a set by up to 32 dimension filters. Each combination of categories,
 * one of each dimension, is a cell; for each cell it tells the number of rows and, of one measure
 * filter, maximum, minimum and sum. RQXSummaryOpen names table, set, dimensions and measure;
 * RQXSummaryExec computes; then any number of reads and outputs may follow; RQXSummaryClose frees
 * the handle. handle: 0 to 7, chosen by the caller.
 *
 * Categories are numbered from 0. Unless a map is given, the category number is the value number,
 * so category 0 is NULL. Dimensions and coordinates count from 0 too. A set that has far fewer rows
 * than a dimension filter has values (a 20th or less) is worked on as a table of its own, which
 * exists until the summary is closed: then the categories are the values of the set only.
 *
 * Rows whose measure is NULL are left out, also of the count; of strings, where NULL is the empty
 * string, they are not. Without a measure the count is that of all rows. There is no sum of
 * strings. Sums of integers, floats, dates and times are doubles, sums of decimals are exact, and
 * NaN beyond 38 digits.
 *
 * A summary is closed when its table is deleted, and with all tables by RQXClearDB and
 * RQXReInitializeMS. If values of its table are changed while it is open, one that has been
 * executed keeps its counts and sums; what needs a value list that has changed since fails with
 * QX_ERROR_ROW_RANGE.
 *
 * Failures of all calls with a handle: QX_ERROR_SUMMARY_HANDLE outside 0 to 7, QX_ERROR_NO_SUMMARY
 * for a free handle.
 */

/** Opens a summary of a real table or a join on a free handle. Value lists of a real table's
 * dimension filters lose the values that no row uses. set: below 0 for the current set. nDim: 0
 * to 32. dims: in, nDim records; may be null for 0. measure: filter id, 0 for none. Failures:
 * QX_ERROR_SUMMARY_PARAMETER for nDim, QX_ERROR_SUMMARY_IN_USE, QX_ERROR_NO_SET,
 * QX_ERROR_NO_FILTER, QX_ERROR_CUBE_SIZE above 10,000,000 cells. */
QXE_API int RQXSummaryOpen(int handle, int table, int set, int nDim, _TRDimensionDef* dims,
                           int measure);

/** RQXSummaryOpen with categories of the caller's. dims: in, nDim records, copied with maps and
 * names. Failures: also QX_ERROR_PARAMETER for nDim and for a bad definition. */
QXE_API int QXSummaryOpen(int handle, int table, int set, int nDim, _TDimensionDef* dims,
                          int measure);

/** Computes a summary, once. sumMask: QX_SUM_COUNT, QX_SUM_MAX, QX_SUM_MIN, QX_SUM_SUM; others are
 * ignored, and so is QX_SUM_SUM of strings. Without a measure it is taken as QX_SUM_COUNT; else the
 * count is always added. doneMask: out, what has been computed; 0 when nothing was left to compute.
 * A failure of the computation itself closes the summary. Failures: QX_ERROR_SUMMARY_DONE. */
QXE_API int RQXSummaryExec(int handle, int sumMask, int* doneMask);

/** As RQXSummaryExec. */
QXE_API int QXSummaryExec(int handle, int sumMask, int* doneMask);

/** Reads one result of one cell. sumType: one that has been computed. coords: in, a category number
 * for each dimension. measureType: out, data type of the measure, 0 without one. valueType: out,
 * QX_DT_INTEGER for a count, the measure's type for maximum and minimum, QX_DT_DOUBLE or
 * QX_DT_DECIMAL for a sum. rows: out, the cell's count. value: out, 4096 bytes; a decimal as a
 * Numeric with its NumericInfo BEHIND it; untouched when rows is 0, except that without a measure
 * the count is written in any case. Failures: QX_ERROR_PARAMETER for sumType, QX_ERROR_ROW_RANGE if
 * it was not computed, QX_ERROR_SUMMARY_PARAMETER for coords. */
QXE_API int RQXSummaryRead(int handle, int sumType, int* coords, int* measureType, int* valueType,
                           int* rows, void* value);

/** RQXSummaryRead without a copy. *value: out, address of the value in the engine, or null when
 * there is none. A sum of decimals says QX_DT_DOUBLE, though *value is a Numeric. */
QXE_API int QXSummaryRead(int handle, int sumType, int* coords, int* measureType, int* valueType,
                          int* rows, void** value);

/** Gets the name of a category. name: out, 128 bytes; longer names are cut. Without names of the
 * caller's it is the value as text: floats with 3 digits behind the point in at least 10
 * characters, dates with "/", "####" for a decimal without a text. Failures:
 * QX_ERROR_SUMMARY_PARAMETER for a number out of range, QX_ERROR_PARAMETER when the caller's
 * function fails. */
QXE_API int RQXCategoryRead(int handle, int dimNo, int catNo, char* name);

/** RQXCategoryRead without a copy or a cut. *name: out, valid until the next call with the handle.
 */
QXE_API int QXCategoryRead(int handle, int dimNo, int catNo, char** name);

/** The whole name of a category in the shared R1 buffer; "" after a failure. */
QXE_API const char* RQXCategoryReadR1(int handle, int dimNo, int catNo);

/** Tells what a handle holds. table, set, nDim, measure: out, as they are worked with, see above;
 * untouched when the handle is free. doneMask: out, 0 before RQXSummaryExec. Result: 1, or 0 for a
 * free handle. */
QXE_API int RQXSummaryStatus(int handle, int* table, int* set, int* nDim, int* measure,
                             int* doneMask);

/** RQXSummaryStatus with the dimensions. dims: out, 32 records, those without a dimension zeroed; a
 * map and names are given as pointers into the summary, null where the caller gave none. */
QXE_API int QXSummaryStatus(int handle, int* table, int* set, int* nDim, _TDimensionDef* dims,
                            int* measure, int* doneMask);

/** RQXSummaryIntoRealTable2 with all columns. */
QXE_API int RQXSummaryIntoRealTable(int handle, int nonEmptyOnly);

/** As RQXSummaryIntoRealTable. */
QXE_API int QXSummaryIntoRealTable(int handle, int nonEmptyOnly);

/** Makes a table of an executed summary: "XTBL_" and the source table's name, made unique. It has a
 * column for each dimension under its filter's name and then, if asked for and computed, COUNT,
 * MAX, MIN, SUM and AVERAGE. A dimension with a map of the caller's becomes strings of category
 * number, ":" and name. Rows are the cells, the last coordinate running fastest. mask: QX_SUM_...
 * types; the average needs count and sum. nonEmptyOnly: not 0 leaves the empty cells out; otherwise
 * they have count 0 and else NULL. When an output has all cells, and its averages were asked for,
 * these take the place of the sums in the summary from then on. Result: the table's id. Failures:
 * QX_ERROR_ROW_RANGE for a summary that was not executed, QX_ERROR_TABLE_COUNT,
 * QX_ERROR_TABLE_NAME, QX_ERROR_PARAMETER when a function for names fails. */
QXE_API int RQXSummaryIntoRealTable2(int handle, int mask, int nonEmptyOnly);

/** Adds the columns behind the dimensions of RQXSummaryIntoRealTable2 to a real table of as many
 * rows, under names made unique. If one fails the ones before it stay. Failures:
 * QX_ERROR_ROW_RANGE, QX_ERROR_NOT_REAL, QX_ERROR_SHARED_READ_ONLY, QX_ERROR_ROW_SIZE for another
 * number of rows, QX_ERROR_FILTER_COUNT. */
QXE_API int RQXAppendSummaryToRealTable(int handle, int table, int mask, int nonEmptyOnly);

/** Closes a summary. No fault for a free handle. */
QXE_API int RQXSummaryClose(int handle);

/** As RQXSummaryClose. */
QXE_API int QXSummaryClose(int handle);

/** Result: 8, the number of handles. */
QXE_API int RQXGetN_Summary(void);

/** As RQXGetN_Summary. */
QXE_API int QXGetN_Summary(void);

/*
 * Detail
 *
 * The distinct values of a filter within a set, NULL being one, with their rows. One detail is open
 * at a time, on one handle; it is closed when its table is deleted, and by RQXClearDB and
 * RQXReInitializeMS.
 *
 * A position counts from 1 in one of four lists. orderKind: 0 by value, else by descending count,
 * ties by value. listKind: 0 all values of the filter, else those that rows of the set have. When
 * the filter has more than eight times as many values as the set has rows, both lists hold those
 * that rows have. direction: 0 counts from the front, else from the end.
 *
 * Failures of all calls but open: QX_ERROR_DETAIL when none is open, QX_ERROR_SUMMARY_HANDLE for
 * another handle than the open one, QX_ERROR_SUMMARY_PARAMETER for a position outside the list.
 */

/** Closes the open detail and opens one. dataType, valueCount, distinctCount: out, the filter's
 * data type and number of values, NULL included, and the number of values in the set. Result: the
 * handle, above 0. Failures: QX_ERROR_NO_SET, QX_ERROR_NO_FILTER. */
QXE_API int RQXOpenDetailInfo(int table, int set, int filter, int* dataType, int* valueCount,
                              int* distinctCount);

/** Gets the number of rows with a value. count: out. */
QXE_API int RQXGetDetailCount(int handle, int orderKind, int direction, int listKind, int position,
                              int* count);

/** Gets a value. type: out, its data type. value: out, 4096 bytes; a decimal as a NumericInfo and
 * then a Numeric. QX_ERROR_DETAIL also when values of the filter have changed since the detail was
 * opened. */
QXE_API int RQXGetDetailValue(int handle, int orderKind, int direction, int listKind, int position,
                              int* type, void* value);

/** RQXGetDetailValue as text, as RQXGetData1Cnv2StrR1 writes it. text: out, 4096 bytes. */
QXE_API int RQXGetDetailValueStr(int handle, int orderKind, int direction, int listKind,
                                 int position, int* type, char* text);

/** Closes a detail. handle: below 0 for whatever is open. No fault when none is open. */
QXE_API int RQXCloseDetailInfo(int handle);

/*
 * Summaries in one call
 */

/** Groups the rows of a set by the values of some dimension filters, NULL being one of them, and
 * makes a table of the groups: a row for each, in the order of their values, the first dimension
 * first; of a join the first one of the master. set: below 0 for the current set. nDim: 0 to
 * QX_MAX_DIM; without one all rows are one group. dims: in, nDim filter ids. nMsr: 0 to QX_MAX_MSR.
 * msrs: in, nMsr ids of measure filters. flags: in, for each measure the QX_SUM_ bits of its
 * columns. digits: in, for each measure the decimal places, 0 to 10, to which its values are
 * rounded before they are added, exactly; below 0 for none. Has no effect on a real table, nor on
 * decimals. Arrays of no entries may be null.
 *
 * The new table is named XTBL_ and the source's name. It has a column for each dimension, named
 * after it, and for a measure m, as far as its flags say: N<m>, the rows of the group, those
 * without a value included; MAX<m> and MIN<m>, of m's type; SUM<m> of the rows with a value, 0
 * without any, and AVG<m>, the sum divided by the rows of the group: float, or decimal of m's scale
 * for decimals. A string has no sum. Without measures the one column beside the dimensions is N,
 * the rows of the group.
 *
 * Large work takes one of several ways, which differ in corners. How many combinations of values
 * the dimensions can have decides, together with the number of rows and workers, L2_CACHESIZE and
 * free memory: docs/summaries.md tells how. A group with a NULL in m has MIN<m> NULL, except where
 * combinations are so few that a cube of them fits a cache. Combinations beyond 30 bits bring a
 * further column N at the end, value lists of the dimensions without the values that no group has,
 * QX_ERROR_PARAMETER for flags that are 0 or not the measure's (above 7 for strings, above 31), and
 * QX_ERROR_SUMMARY_PARAMETER for digits above 10 of a measure that is neither string nor decimal.
 *
 * A join is summed up as if its rows were those of a real table, but they are never made. Checks of
 * flags and digits, value lists and minima are those of combinations beyond 30 bits; there is no
 * further column N. QX_ERROR_JOIN_SUM_ROWS tells that keys with several rows on both sides make
 * more than 2,000,000,000 pairs of combinations, QX_ERROR_JOIN_SUM_SIZE that there are more than
 * 1,000,000,000 groups.
 *
 * Result: the new table's id. Failures: also QX_ERROR_SUMMARY_PARAMETER for nDim and nMsr,
 * QX_ERROR_NO_SET, QX_ERROR_NO_FILTER, QX_ERROR_FILTER_NAME and QX_ERROR_TABLE_NAME for names that
 * become too long, QX_ERROR_TABLE_COUNT with 10,000 tables. */
QXE_API int RQXNonCubeSum(int table, int set, int nDim, int* dims, int nMsr, int* msrs, int* flags,
                          int* digits);

/*
 * Dates, times and decimals as text
 */

/** Converts a date, "year/month/day" or with "-", whatever the engine's date order. Result: days
 * since 30 December 1899; NULL for "" and for text that is no date of the years 1 to 9999. */
QXE_API double RQXStr2DateR1(const char* text);

/** Converts a time, "hour:minute", "hour:minute:second" or with ".millisecond". Result: the
 * fraction of a day; 0.0 when a part is out of range (25:00); NULL for "" and for any other text.
 * */
QXE_API double RQXStr2TimeR1(const char* text);

/** Converts a date and a time with a blank between. A part that is missing or unreadable counts as
 * 0. Result: days and fraction; NULL for "". */
QXE_API double RQXStr2DateTimeR1(const char* text);

/** A date as text in the shared R1 buffer, in the engine's date order with "/"; "" for NULL. */
QXE_API const char* RQXDouble2DateStrR1(double serial);

/** A time as text in the shared R1 buffer: "hh:mm:ss", and ".mmm" if the milliseconds are not 0; ""
 * for NULL. */
QXE_API const char* RQXDouble2TimeStrR1(double serial);

/** A date-time as text in the shared R1 buffer: date, blank, time; "" for NULL. */
QXE_API const char* RQXDouble2DateTimeStrR1(double serial);

/** A decimal as text in the shared R1 buffer, with all digits behind the point; "" for NaN. info:
 * in, the value's own form. */
QXE_API const char* RQXNumericNum2StrR1(const Numeric* value, const NumericInfo* info);

/*
 * Import
 *
 * A catalog is a text file that describes a data file. Spaces in it are ignored, tabs separate the
 * words of a line, words are taken in any case. A line that begins with // is a directive, or else
 * a comment:
 *
 *     //CSV, //TAB, //FIX      fields separated by comma or tab, or of fixed width: one is required
 *     //USR and 1 to 5 words   fields separated by any of these characters (\t is a tab)
 *     //CUTTOP                 the first line of the data is a title and dropped
 *     //ERROR and a word       STOP (unless told), CONTINUE, NONE or SKIPLINE
 *     //ERRORLOG and a name    the log file, in place of "catalog_err_log.txt"
 *     //UTF8, //SHIFT-JIS ...  the character code of the catalog and its data
 *
 * Any other line is a column: type letter, width, name, and options. The name has at most 255 bytes
 * and is cleaned and made unique. The letter is I integer, F float, D date, T time, A string, E
 * date-time, N decimal. The width counts for //FIX only, 1 to 4095 bytes, but must be there.
 * Options: a date format D1 to D14 for D, a time format T1 to T4 for T, both for E, digits behind
 * the point (0 to 38; 6 unless told) and a rounding mode (ROUNDUP, ROUNDDOWN, ROUNDCEILING,
 * ROUNDFLOOR, ROUNDHALFUP, ROUNDHALFDOWN, ROUNDHALFEVEN; ROUNDHALFUP unless told) for N, and SKIP
 * as fourth or later word for a field that is read and dropped. A catalog has at most
 * QX_CATALOG_MAX_COLUMNS column lines.
 *
 * Date formats, Y with four digits, y with two, from D1 on: Y/m/d, Y-m-d, m/d/Y, m.d.Y, d/m/Y,
 * d.m.Y, m/d/y, m.d.y, d/m/y, d.m.y, and without a year (then the year of library load) m/d, m.d,
 * d/m, d.m. Without one dates have the engine's date order with "/" or "-". Time formats from T1
 * on: H:M:S and H:M with hours from 0 to 23, H:M:S and H:M with hours from 1 to 24.
 *
 * In the data a field may stand in double quotes, with a quote inside doubled; a line break inside
 * quotes is a fault. An empty field is NULL. Commas in numbers are ignored.
 *
 * A fault in the data ends the import in STOP mode. CONTINUE stores NULL for a value that does not
 * convert and logs it. NONE does not check values: it takes the number at the front of the text, or
 * 0, and NULL for an unreadable date, time or decimal, without a log. SKIPLINE leaves the line out
 * and logs it. Bad quoting and a wrong number of fields end the import in every mode but SKIPLINE,
 * a field above 4095 bytes (4096 in quotes) in every mode.
 *
 * The log is a text file in the catalog's directory. It is deleted when the import starts and
 * exists afterwards only if there was something to log. A failed import leaves no table.
 *
 * Failures of all calls: QX_ERROR_FILE for a directory or file that is missing, unnamed or has a
 * name of 512 bytes or more; QX_ERROR_CATALOG for a fault in the catalog or a wrong number of
 * fields; QX_ERROR_NOT_STRING for an unknown type letter; QX_ERROR_INVALID_DATA for a value that
 * does not convert or bad quoting; QX_ERROR_TEXT_FIELD; QX_ERROR_TEXT_ROWS above 2147483647 rows.
 * Failures of calls that make a table: also QX_ERROR_TABLE_NAME; QX_ERROR_TABLE_COUNT with 10,000
 * tables.
 */

/** Imports a data file as a new table. dir: directory of the catalog and of the data, which stand
 * in "SrcData.dat". catalog: its file name; without its last extension it is the table's name,
 * cleaned and made unique. Result: the table id. */
QXE_API int RQXAddCatalogFile(const char* dir, const char* catalog);

/** RQXAddCatalogFile with the data file and the table's name given. catalogDir, catalog: the
 * catalog. dataDir, dataFile: the data. tableName: 1 to 255 bytes, cleaned and made unique. */
QXE_API int RQXAddCatalogFileEx2(const char* catalogDir, const char* catalog, const char* dataDir,
                                 const char* dataFile, const char* tableName);

/** Writes rows of a data file into a real table: an edit, refused for a referred table
 * (QX_ERROR_REFERRED). The catalog's columns go to the filters in display order and must have their
 * types; in CONTINUE mode there may be more columns, which are dropped, or more filters, which are
 * NULL in rows that are new. Decimals whose digits behind the point differ make both have the
 * higher number. rowPos: the first row to write, from 1; below 0 means behind the last row. Rows
 * that exist are overwritten; between the last row and a further rowPos come rows of NULLs.
 * rowCount: rows to write, 0 or more: the first ones of the file, and NULLs when it has fewer. Sets
 * stay, the first one excepted, which has all rows. dir, catalog: as in RQXAddCatalogFile. Result:
 * rowCount. A failed call leaves the table as it was. Failures: also QX_ERROR_PARAMETER for row 0
 * or a negative rowCount, QX_ERROR_ROW_SIZE above 2147483646 rows, QX_ERROR_CATALOG for another
 * number of columns, QX_ERROR_MERGE_TYPE for another type, QX_ERROR_DATA_SIZE for a decimal without
 * room for the higher number of digits, QX_ERROR_HIGH_SPEED_FILTER. */
QXE_API int RQXAppendCatalogFile(int table, int rowPos, int rowCount, const char* dir,
                                 const char* catalog);

/** RQXAppendCatalogFile with the data file given. catalogDir, catalog: the catalog. dataDir,
 * dataFile: the data. */
QXE_API int RQXAppendCatalogFileEx2(int table, int rowPos, int rowCount, const char* catalogDir,
                                    const char* catalog, const char* dataDir, const char* dataFile);

/*
 * Export
 *
 * Writes rows of a set to a text file: one line for each row, ended by a line feed, fields
 * separated by comma or tab, without quotes: strings that hold separators or line breaks do not
 * come back. NULL is an empty field. Integers are plain; floats have 3 digits behind the point and
 * from 1e18 on an exponent; dates have the engine's date order; times show milliseconds only when
 * not 0; decimals have all their digits. An existing file is overwritten; a failed export may leave
 * part of one.
 *
 * set: -1 for the current set. filters: in, ids in the order of the columns, ends at -1; a filter
 * may stand twice; -1 as the first entry means all. rowFrom, rowTo: positions in the set, from 1;
 * -1 means the first and the last; rowTo is cut to the set's size, and rowFrom above it gives an
 * empty file. dateSep: '-' or '/', between the parts of dates. dir, file: directory and name of the
 * output.
 *
 * fmtFile: a text file that sets the digits of float and decimal columns; a relative name counts
 * from dir. Each line holds, separated by tabs, filter name, digits behind the point (0 to 15 for
 * floats) and a rounding mode as in catalogs; negative digits leave the column as it is, unknown
 * names are ignored, // begins a comment.
 *
 * Failures of every export: QX_ERROR_NO_SET, also for a set below -1; QX_ERROR_NO_JOIN_FILTER for
 * an unknown filter; QX_ERROR_PARAMETER for a bad date separator, or a rowFrom of 0 or below -1;
 * QX_ERROR_PATH for a directory that cannot be reached; QX_ERROR_FILE for a file that cannot be
 * opened or written; QX_ERROR_CATALOG for a bad line in a format file.
 */

/** Exports with commas. */
QXE_API int RQXExportAsCSV(int table, int set, const int* filters, int rowFrom, int rowTo,
                           const char* dir, const char* file, char dateSep);

/** Exports with tabs. */
QXE_API int RQXExportAsTAB(int table, int set, const int* filters, int rowFrom, int rowTo,
                           const char* dir, const char* file, char dateSep);

/** Exports with commas and a format file. */
QXE_API int RQXExportAsCSVwithF(int table, int set, const int* filters, int rowFrom, int rowTo,
                                const char* dir, const char* file, char dateSep,
                                const char* fmtFile);

/** Exports with tabs and a format file. */
QXE_API int RQXExportAsTABwithF(int table, int set, const int* filters, int rowFrom, int rowTo,
                                const char* dir, const char* file, char dateSep,
                                const char* fmtFile);

/** Exports with a catalog, so that RQXAddCatalogFile(dir, file) reads the rows back. type:
 * QX_EXPORT_COMMA or QX_EXPORT_TAB. dir, file: the catalog; the data go to "SrcData.dat" in dir.
 * Failures: also QX_ERROR_PARAMETER for another type, for rowFrom or rowTo below -1, and for
 * rowFrom above a rowTo other than -1. */
QXE_API int RQXSaveAsCatalog(int table, int set, const int* filters, int type, int rowFrom,
                             int rowTo, char dateSep, const char* dir, const char* file);

/** RQXSaveAsCatalog with the catalog elsewhere. dir, file: the data. catalogDir, catalogFile: the
 * catalog; RQXAddCatalogFileEx2 reads both. */
QXE_API int RQXSaveAsCatalogEx(int table, int set, const int* filters, int type, int rowFrom,
                               int rowTo, char dateSep, const char* dir, const char* file,
                               const char* catalogDir, const char* catalogFile);

/** RQXSaveAsCatalog with a format file, whose digits and rounding modes of decimals also go into
 * the catalog. */
QXE_API int RQXSaveAsCatalogwithF(int table, int set, const int* filters, int type, int rowFrom,
                                  int rowTo, char dateSep, const char* dir, const char* file,
                                  const char* fmtFile);

/** RQXSaveAsCatalogEx with a format file. */
QXE_API int RQXSaveAsCatalogwithFEx(int table, int set, const int* filters, int type, int rowFrom,
                                    int rowTo, char dateSep, const char* dir, const char* file,
                                    const char* catalogDir, const char* catalogFile,
                                    const char* fmtFile);

/*
 * Join tables
 *
 * A join table shows the pairs of rows of two real tables, its parents, whose key columns have
 * equal values: side 0 is the parent named as master, side 1 the slave. It takes most calls that
 * take a table: reads, searches, sorts, set operations, export. It stores neither columns nor
 * pairs, so it takes little memory and time however many pairs there are.
 *
 * Filters have ids of their own, from 1: first those of the master in display order, then those of
 * the slave. Each has the parent's name, with "_#1" and so on behind it where the join has that
 * name already. A filter that its parent has no more fails with QX_ERROR_NO_FILTER, an unknown id
 * with QX_ERROR_NO_JOIN_FILTER.
 *
 * Rows of a set are numbered by position and come driving row by driving row: one side drives the
 * set, and each of its rows, in the set's order, is followed through its partners of the other,
 * driven side. Side 0 drives until a sort by a filter of side 1; then side 1 drives that set.
 * Filter 0 reads the position from 1. RQXGetSetSize counts pairs, RQXGetSet lists driving rows.
 *
 * Inner joins have matching pairs alone; NULL matches NULL. Outer joins are full outer joins: the
 * rows of the driven side without partner come first, then those of the driving side, each once if
 * it has no partner. The missing row is 0, and its values read NULL. Rows whose only key is NULL
 * are left out. With several key columns NULL matches NULL here too.
 *
 * A search looks at one side's rows and joins those it finds with the set's rows of the other side;
 * in an outer join these all stay. Set operations work side by side: AND of two sets joins the rows
 * that both have on side 0 with those that both have on side 1; AND NOT and the complement choose
 * on side 0 alone. Every new set of a join becomes its current set. Searches by wildcard do not
 * take join tables.
 *
 * While a join exists its parents can be neither edited nor deleted, nor can filters of its key be
 * dropped (QX_ERROR_REFERRED). Filters and sets may come and go; the join does not change.
 *
 * Failures of all calls of this part: QX_ERROR_NO_TABLE, QX_ERROR_NOT_JOIN for a real table.
 */

/** Joins two real tables. name: as in RQXAddRealTable, null or "" gives "jointbl", the date and
 * time, and "_1". outer: 0 inner join, else full outer join. masterSet, slaveSet: the sets to join,
 * below 0 the current ones; they are copied. masterKeys, slaveKeys: in, 1 to QX_MAX_JOIN_KEYS
 * filter ids each, as many and of the same types, ends at the first entry below 1. Dates, times and
 * floats are one type here; decimals match whatever their scales. Result: the new table's id.
 * Failures: QX_ERROR_TABLE_COUNT with 10,000 tables, QX_ERROR_GEN_TABLE_NAME for a bad name,
 * QX_ERROR_FILTER_INDEX for key lists that do not fit each other, QX_ERROR_NO_MASTER_TABLE and
 * QX_ERROR_NO_SLAVE_TABLE also for a table that is not real, QX_ERROR_NO_MASTER_KEY and
 * QX_ERROR_NO_SLAVE_KEY (QX_ERROR_FILTER_INDEX with several keys), QX_ERROR_NO_JOIN_SET and
 * QX_ERROR_NO_SLAVE_SET, QX_ERROR_JOIN_SIZE for more than 2147483647 pairs. A failure leaves no
 * table, but its id may be used up. */
QXE_API int RQXAddJoinTable(char* name, int outer, int masterTable, int masterSet, int* masterKeys,
                            int slaveTable, int slaveSet, int* slaveKeys);

/** As RQXAddJoinTable. */
QXE_API int QXAddJoinTable(char* name, int outer, int masterTable, int masterSet, int* masterKeys,
                           int slaveTable, int slaveSet, int* slaveKeys);

/** Tells what was joined. All out; name: 256 bytes; outer: 0 or 1; nKey: the number of keys. */
QXE_API int RQXGetJoinInfo(int joinTable, char* name, int* masterTable, int* slaveTable,
                           int* masterSet, int* slaveSet, int* outer, int* nKey);

/** As RQXGetJoinInfo. */
QXE_API int QXGetJoinInfo(int joinTable, char* name, int* masterTable, int* slaveTable,
                          int* masterSet, int* slaveSet, int* outer, int* nKey);

/** RQXGetJoinInfo without the name. */
QXE_API int RQXGetJoinInfoR1(int joinTable, int* masterTable, int* slaveTable, int* masterSet,
                             int* slaveSet, int* outer, int* nKey);

/** RQXGetJoinInfo with the keys. masterKeys, slaveKeys: out, QX_MAX_JOIN_KEYS ints each, 0 behind
 * the last filter id. */
QXE_API int RQXGetJoinInfoEx(int joinTable, char* name, int* masterTable, int* slaveTable,
                             int* masterSet, int* slaveSet, int* outer, int* nKey, int* masterKeys,
                             int* slaveKeys);

/** As RQXGetJoinInfoEx. */
QXE_API int QXGetJoinInfoEx(int joinTable, char* name, int* masterTable, int* slaveTable,
                            int* masterSet, int* slaveSet, int* outer, int* nKey, int* masterKeys,
                            int* slaveKeys);

/** RQXGetJoinInfoEx without the name. */
QXE_API int RQXGetJoinInfoExR1(int joinTable, int* masterTable, int* slaveTable, int* masterSet,
                               int* slaveSet, int* outer, int* nKey, int* masterKeys,
                               int* slaveKeys);

/** Tells the parents. Both out. */
QXE_API int RQXGetJoinSrcTblIDs(int joinTable, int* masterTable, int* slaveTable);

/** As RQXGetJoinSrcTblIDs. */
QXE_API int QXGetJoinSrcTblIDs(int joinTable, int* masterTable, int* slaveTable);

/** Tells where a filter of the join comes from. side, srcTable, srcFilter: out. Failures:
 * QX_ERROR_NO_JOIN_FILTER. */
QXE_API int RQXGetJoinSrcTblInfo(int joinTable, int joinFilter, int* side, int* srcTable,
                                 int* srcFilter);

/** As RQXGetJoinSrcTblInfo. */
QXE_API int QXGetJoinSrcTblInfo(int joinTable, int joinFilter, int* side, int* srcTable,
                                int* srcFilter);

/** RQXGetFilterInfo for the key of one side, which is no filter of the join: its value list is that
 * of both sides together, of several columns the numbers of their combinations from 1. The first
 * call takes the memory of a copy of both key columns. side: QX_JOIN_MASTER or QX_JOIN_SLAVE.
 * Failures: QX_ERROR_JOIN_SIDE. */
QXE_API int RQXGetJoinKeyInfo(int joinTable, int side, _TRFilterInfo* out);

/** RQXGetFilterBody for the key of one side; see RQXGetJoinKeyInfo. Rows match when they have the
 * same value number. */
QXE_API int RQXGetJoinKeyBody(int joinTable, int side, _TRFilterBody* body);

/** QXGetFilter for the key of one side; see RQXGetJoinKeyInfo. */
QXE_API int QXGetJoinKey(int joinTable, int side, _TFilterInfo* out);

/** Result: the side that drives a set. Failures: QX_ERROR_NO_SET_ID. */
QXE_API int RQXGetJoinDir(int joinTable, int set);

/** As RQXGetJoinDir. */
QXE_API int QXGetJoinDir(int joinTable, int set);

/** Copies the driven rows of a set, which are in the order of their keys; arguments and result as
 * in RQXGetSet, which copies the driving ones. */
QXE_API int RQXGetJoinSlaveSet(int joinTable, int set, int* count, int max, int* out);

/** Points at the driven rows of a set. out: out, valid until the set goes. Result: their number.
 * Failures: QX_ERROR_NO_SET. */
QXE_API int QXGetJoinSlaveSet(int joinTable, int set, int** out);

/** Copies the two index arrays of a set. Driving: for each driving row the position, from 0, of its
 * first pair. Driven: for each key number the place, from 0, of its first row among the driven
 * rows, and behind the last key the number of driven rows. Pair p of driving row i, whose key
 * number is k, has driven row number driven[k] + p - driving[i]. Counts: out, the sizes of both;
 * max: elements that each buffer holds. Failures: QX_ERROR_NO_SET, QX_ERROR_PARAMETER for a
 * negative max. */
QXE_API int RQXGetJoinProjectionSets(int joinTable, int set, int* drivingCount, int drivingMax,
                                     int* drivingOut, int* drivenCount, int drivenMax,
                                     int* drivenOut);

/** The same arrays without copying them, valid until the set goes. All out. */
QXE_API int QXGetJoinProjectionSets(int joinTable, int set, int* drivingCount, int** driving,
                                    int* drivenCount, int** driven);

/** Tells the slave table and the set of it that was joined. Both out. */
QXE_API int RQXGetSlaveInfo(int joinTable, int* slaveTable, int* slaveSet);

/** As RQXGetSlaveInfo. */
QXE_API int QXGetSlaveInfo(int joinTable, int* slaveTable, int* slaveSet);

/** Adds rows of one side of an inner join, as in its first set, to the parent as a set of its own,
 * the current one from then on. side: QX_JOIN_MASTER or QX_JOIN_SLAVE. unmatched: 0 the rows that
 * have a partner, else those that have none. tableId, setId: out, the parent and its new set, -1
 * after a failure. Result: 0; -1 for an outer join. Failures: QX_ERROR_JOIN_SIDE,
 * QX_ERROR_SET_COUNT with 9,999 sets in the parent. */
QXE_API int RQXPutJoinSetToParent(int joinTable, int side, int unmatched, int* tableId, int* setId);

/** As RQXPutJoinSetToParent. */
QXE_API int QXPutJoinSetToParent(int joinTable, int side, int unmatched, int* tableId, int* setId);

/** Adds to the slave table a set with one row for each distinct key of an inner join's first set:
 * the first partner of each, in the order of the master's rows. The set becomes the current one.
 * tableId: out, the slave table. Result: the set's id. Failures: QX_ERROR_NOT_INNER_JOIN,
 * QX_ERROR_SET_COUNT with 10,000 sets in the slave table. */
QXE_API int RQXReturnSet2SlaveTable(int joinTable, int* tableId);

/** As RQXReturnSet2SlaveTable. */
QXE_API int QXReturnSet2SlaveTable(int joinTable, int* tableId);

/** Copies a column of the slave into the master table, as its last filter: each row that the join's
 * first set has takes the value of its first partner, all others NULL. joinFilter: a filter of the
 * join, of side 1. Result: the new filter's id. Failures: QX_ERROR_NO_JOIN_FILTER,
 * QX_ERROR_JOIN_SIDE for a filter of side 0, QX_ERROR_FILTER_COUNT with 512 filters. */
QXE_API int RQXMoveSlaveFlt2Master(int joinTable, int joinFilter);

/** As RQXMoveSlaveFlt2Master. */
QXE_API int QXMoveSlaveFlt2Master(int joinTable, int joinFilter);

/*
 * Ways out of a join: real tables, semi-joins, chains
 *
 * Failures of all calls of this part: QX_ERROR_NO_TABLE; QX_ERROR_TABLE_COUNT with 10,000 tables
 * for those that make one. A failure leaves no table, but its id may be used up.
 */

/** Makes a real table of the pairs of a join's set, in their order. It has no tie to the join.
 * name: as in RQXAddRealTable, null or "" gives "createtbl", the date and time, and "_1". set:
 * below 0 the current one. filters: in, filter ids of the join in the order of the new columns,
 * ends below 1; null: none. QX_FLT_MRECNO and QX_FLT_SRECNO stand for integer columns "MRecNo" and
 * "SRecNo" with the row numbers in the master and the slave, 0 for a missing row; withMasterRecNo
 * and withSlaveRecNo put these columns in front. At most 512 columns. The others have the join's
 * filter names and the whole value lists of their sources; RQXCondenseRealTable drops what no row
 * uses. flag: 0, without effect. Result: the new table's id. Failures: also QX_ERROR_NOT_JOIN,
 * QX_ERROR_NO_JOIN_SET, QX_ERROR_NO_JOIN_FILTER, QX_ERROR_NO_FILTER for a filter its table has no
 * more, QX_ERROR_FILTER_COUNT, QX_ERROR_TABLE_NAME, QX_ERROR_REALIZE for 2147483647 pairs. */
QXE_API int RQXConvertJoinToReal(char* name, int table, int set, int withMasterRecNo,
                                 int withSlaveRecNo, int* filters, int flag);

/** As RQXConvertJoinToReal. */
QXE_API int QXConvertJoinToReal(char* name, int table, int set, int withMasterRecNo,
                                int withSlaveRecNo, int* filters, int flag);

/** Adds the rows of a set of a real table whose value occurs in a set of another one, or does not,
 * as a new set, the current one from then on. Rows keep their order. filter, otherFilter: integer
 * filters; NULL is a value like others. set, otherSet: below 0 the current ones. out: 0 keeps rows
 * whose value occurs, else those whose value does not. Result: the new set's id. Failures: also
 * QX_ERROR_NOT_REAL, QX_ERROR_NO_SET, QX_ERROR_NO_FILTER, QX_ERROR_DATA_TYPE for a filter that is
 * not of integers, QX_ERROR_SET_COUNT with 10,000 sets. */
QXE_API int RQXExtractJoinInOut(int table, int set, int filter, int otherTable, int otherSet,
                                int otherFilter, int out);

/** As RQXExtractJoinInOut. */
QXE_API int QXExtractJoinInOut(int table, int set, int filter, int otherTable, int otherSet,
                               int otherFilter, int out);

/** Writes out the hierarchy that a chain of inner joins describes as a real table: a row for each
 * node, parents before their children, the roots in the order of the first join's master set, with
 * the integer filters "depth" (1; roots have 0) and "RECNO" (2; the row number of the node in its
 * level's table). A node's children are its partners in the next join, as its first set pairs them.
 * A join may stand in the chain more than once. name: in, must not be empty. joinTableIds: in, the
 * slave of each the master of the next; ends below 1 or at the limit of RQXSetMaxJoinChain, behind
 * which ids are ignored. tableIds: out, the table of each level, one more than there are joins.
 * setIds: out, int[2][510]; [0] the master set and [1] the slave set of each join. Result: the new
 * table's id. Failures: also QX_ERROR_CHAIN_NAME, QX_ERROR_NO_TABLE also for an empty list,
 * QX_ERROR_NOT_JOIN_SOURCE for a real table, QX_ERROR_NOT_INNER_JOIN, QX_ERROR_NOT_CHAIN,
 * QX_ERROR_NO_JOIN_SET and QX_ERROR_NO_SLAVE_SET for a joined set that is gone, QX_ERROR_ROW_SIZE
 * for 2147483647 nodes or more. */
QXE_API int RQXRealizeJoinChain(char* name, int* joinTableIds, int* tableIds, int (*setIds)[510]);

/** As RQXRealizeJoinChain. */
QXE_API int QXRealizeJoinChain(char* name, int* joinTableIds, int* tableIds, int (*setIds)[510]);

/** RQXRealizeJoinChain with up to four further integer filters, "data_0" and so on. nAssociation:
 * their number. filters: in, for each level, one more than there are joins, the integer filters of
 * its table whose values the nodes take; not read for 0. Failures: also QX_ERROR_NO_FILTER,
 * QX_ERROR_DATA_TYPE for another type, QX_ERROR_SUMMARY_PARAMETER for nAssociation. */
QXE_API int RQXRealizeJoinChainEx(char* name, int* joinTableIds, int nAssociation,
                                  int (*filters)[4], int* tableIds, int (*setIds)[510]);

/** As RQXRealizeJoinChainEx. */
QXE_API int QXRealizeJoinChainEx(char* name, int* joinTableIds, int nAssociation, int (*filters)[4],
                                 int* tableIds, int (*setIds)[510]);

/** Adds columns to a tree, as its last filters: for each node the values of a source table in the
 * row that the node stands for. Filters 1 and 2 of the tree are the depth and the row number.
 * level: below 0 all nodes but the roots take values. Else those of that depth do, and with mode
 * not 0 so do the nodes below them, as their ancestor; others read NULL. sourceFilters: in, ends
 * below 1, at the first id that does not exist, or at the limit of RQXSetMaxJoinChain. Result: 0.
 * Failures: also QX_ERROR_NOT_REAL, QX_ERROR_NO_FILTER also for a list without a filter,
 * QX_ERROR_DATA_TYPE for a tree whose first two filters are not of integers, QX_ERROR_FILTER_COUNT
 * above 512. */
QXE_API int RQXQualifyTree(int treeTable, int level, int sourceTable, int* sourceFilters, int mode);

/** As RQXQualifyTree. */
QXE_API int QXQualifyTree(int treeTable, int level, int sourceTable, int* sourceFilters, int mode);

/** Sets the most joins of a chain and the most filters of RQXQualifyTree, 16 at start. n: 16 to
 * 510. Result: 0. Failures: QX_ERROR_PARAMETER; both limits are 510 then. */
QXE_API int RQXSetMaxJoinChain(int n);

/** As RQXSetMaxJoinChain. */
QXE_API int QXSetMaxJoinChain(int n);

/*
 * Reading by blocks
 *
 * A block is a driving row of a join with all its partners; of a real table it is a row. A reader
 * is opened in a slot, 0 to QX_N_JBA - 1, read to its end and closed. What it hands out points into
 * the engine and is valid until the next read or a change of the table; clients only read it.
 * Deleting the table, clearing and loading the database close its readers.
 *
 * Results of all calls of this part: QX_JBA_BAD_SLOT for a slot out of range.
 */

/** Result: the number of slots. */
QXE_API int QXGetN_JBA(void);

/** Opens a reader of all filters. set: -1 the current one. Result: 0. Failures: QX_JBA_BUSY for a
 * slot in use, QX_JBA_EMPTY_SET, QX_ERROR_NO_TABLE, QX_ERROR_NO_JOIN_SET, QX_ERROR_NO_SET_ID for
 * another negative set, QX_ERROR_BLOCK_SIZE for a block of more than a million pairs. */
QXE_API int QXJBAOpen(int slot, int table, int set);

/** QXJBAOpen with a list of filters, 1,024 at most; it ends below 1. Failures: also
 * QX_ERROR_NO_FILTER. */
QXE_API int QXJBAOpen2(int slot, int table, int set, int* filters);

/** Reads the next block. All out. blockNo, firstRow, lastRow: the block and its first and last
 * position in the set, from 1. masterRow: the driving row; in an outer join 0 for the driven rows
 * without partner. slaveCount, slaveRows: the driven rows, 0 for a missing one; of a real table 1
 * and null. columns: a record for each filter, with one value of the driving row or slaveCount
 * values of the driven ones. Result: 1 when more blocks follow, 0 for the last one, -1 behind it
 * (QX_ERROR_NO_SET in the ring). Failures: QX_ERROR_PARAMETER for a slot without reader,
 * QX_ERROR_NO_JOIN_SET and QX_ERROR_NO_FILTER when they are gone. */
QXE_API int QXJBARead(int slot, int* blockNo, int* firstRow, int* lastRow, int* masterRow,
                      int* slaveCount, int** slaveRows, int* columnCount, _TColumnBuf** columns);

/** Tells the most pairs that a block of a reader has. maxBlockSize: out. Result: 1 for a slot in
 * use, 0 for a free one. */
QXE_API int QXJBAStatus(int slot, int* maxBlockSize);

/** Closes a reader. Result: 0, also for a free slot. */
QXE_API int QXJBAClose(int slot);

/** Calls `callback` for each row of a set, by a reader in `slot`, which must be free and is free
 * again afterwards. filters: as in QXJBAOpen2; null: all. Result: 0, also when the callback ends
 * the loop. Failures: as of QXJBAOpen2 and QXJBARead; QX_ERROR_PARAMETER without a callback. */
QXE_API int QXRowInfoCallBack(int table, int slot, int set, int* filters, QXRowCallBack callback);

/** The same for a real table; the rows that the callback takes become a set, the current one from
 * then on. Result: its id. Failures: also QX_ERROR_NOT_REAL, QX_ERROR_SET_COUNT. */
QXE_API int QXSearchCallBack(int table, int slot, int set, int* filters, QXRowCallBack callback);

/** The same for the first row of each combination of values that the filters have. */
QXE_API int QXUniqueRowCallBack(int table, int slot, int set, int* filters,
                                QXUniqueCallBack callback);

/*
 * Database and table files
 *
 * A database file (.QXD) holds all tables, a table file (.QXT) one; docs/file-format.md tells their
 * layout. Files of older data versions, of 32-bit machines and of the other byte order can be read.
 *
 * A file name may come with or without its extension, which is in upper case. dir is a directory,
 * "" the working directory, which stays what it is. Saving replaces a file that exists, merges
 * pending values and drops values that no row uses; row values, sets and ids read as before. A save
 * that fails leaves a part of the file behind.
 *
 * Failures of all calls: QX_ERROR_PATH for a directory that cannot be entered; QX_ERROR_FILE for a
 * null directory, a name that is null, empty or of 512 bytes or more, a file that is missing,
 * cannot be read or written, or ends too early. Loads refuse what does not fit together, so that a
 * table that was loaded is safe to use: QX_ERROR_FILE_FORMAT, and for unknown kinds
 * QX_ERROR_TABLE_KIND, QX_ERROR_NOT_REAL_SOURCE, QX_ERROR_DATA_TYPE, QX_ERROR_NEGATIVE_SIZE.
 */

/** Replaces the database, all handles included, by the one in a file. A failure leaves an empty
 * database, for null arguments and bad names the old one. The saved flags become 1. */
QXE_API int RQXLoadDB(const char* dir, const char* name);

/** RQXLoadDB under another name. */
QXE_API int RQXHSLoadDB(const char* dir, const char* name);

/** RQXLoadDB. */
QXE_API int QXLoadDB(const char* dir, const char* name);

/** Saves the database where it was last loaded from or saved to, for the same data version. The
 * saved flags become 1. Failures: also QX_ERROR_FILE_NAME when there was no such place. */
QXE_API int RQXSaveDB(void);

/** RQXSaveDB. */
QXE_API int QXSaveDB(void);

/** Saves the database. dir: in and out, 512 bytes, becomes the absolute name of the directory. The
 * saved flags become 1. Without a working directory nothing happens, and the result is 0. */
QXE_API int RQXSaveDBAs(char* dir, const char* name);

/** RQXSaveDBAs. */
QXE_API int QXSaveDBAs(char* dir, const char* name);

/** RQXSaveDBAs for the data version before the present one; later RQXSaveDB and RQXSaveRealTable2
 * write that version too. version: QX_DATA_VERSION_OLD. Failures: also QX_ERROR_SAVE_CODE for
 * another version, QX_ERROR_SAVE_VERSION for a decimal filter or a database character code other
 * than UTF-8. */
QXE_API int RQXSaveDBAsOldVer(char* dir, const char* name, int version);

/** Where the database was last loaded from or saved to. dir, name: out, 512 bytes each, both empty
 * when there was no such place; name has its extension. */
QXE_API int RQXGetPathName(char* dir, char* name);

/** RQXGetPathName. */
QXE_API int QXGetPathName(char* dir, char* name);

/** What a database file says of itself. info: out. */
QXE_API int RQXGetQXDFileInfo(const char* dir, const char* file, _QXFileInfo* info);

/** What a table file says of itself. info: out. */
QXE_API int RQXGetQXTFileInfo(const char* dir, const char* file, _QXFileInfo* info);

/** Adds the table in a file, under the name that it has there, made unique. Names of sets are not
 * kept in files. Result: the new table's id. A failure changes nothing. Failures: also
 * QX_ERROR_TABLE_COUNT_LOAD with 10,000 tables, QX_ERROR_GEN_TABLE_NAME. */
QXE_API int RQXLoadRealTable(const char* dir, const char* file);

/** RQXLoadRealTable under another name. */
QXE_API int RQXHSLoadRealTable(const char* dir, const char* file);

/** RQXLoadRealTable. */
QXE_API int QXLoadRealTable(const char* dir, const char* file);

/** Adds count tables that RQXSaveRealTable2 has written. path: the whole name of the file. offset:
 * bytes in front of the first table. tableIds: out, count ids. endOffset: out, behind the last
 * table. Result: the last table id issued, 0 without one. Tables in front of one that fails stay.
 * Failures: as RQXLoadRealTable; also QX_ERROR_NO_TABLE for a count below 0. */
QXE_API int RQXLoadRealTable2(const char* path, long offset, int count, int* tableIds,
                              long* endOffset);

/** Saves a real table in a file named after it. Failures: also QX_ERROR_SAVE_NOT_REAL. */
QXE_API int RQXSaveRealTable(const char* dir, int tableId);

/** RQXSaveRealTable. */
QXE_API int QXSaveRealTable(const char* dir, int tableId);

/** RQXSaveRealTable in a file of this name. */
QXE_API int RQXSaveRealTableAs(const char* dir, const char* file, int tableId);

/** Writes real tables into a file that exists, one behind the other, each with the set of all rows
 * alone. path: the whole name of the file. offset: where to begin. tableIds: ends with -1.
 * endOffset: out, behind the last table written. A table that does not exist or is not real
 * (QX_ERROR_NOT_REAL) ends the call; those in front of it are written. */
QXE_API int RQXSaveRealTable2(const char* path, long offset, const int* tableIds, long* endOffset);

/** RQXSaveRealTable for another data version, as RQXSaveDBAsOldVer. */
QXE_API int RQXSaveRealTableOldVer(const char* dir, int tableId, int version);

/** RQXSaveRealTableAs for another data version, as RQXSaveDBAsOldVer. */
QXE_API int RQXSaveRealTableAsOldVer(const char* dir, const char* file, int tableId, int version);

/*
 * Memory images
 *
 * An image is what a file holds, in memory: a table in the form of a table file and a trailer, or
 * all tables in the form of a database file. Blocks are the caller's unless told otherwise and lie
 * on a multiple of 8 bytes (QX_ERROR_ALIGNMENT). A loaded table is as one from a file: it gets the
 * next id and the name it was saved under, made unique. docs/memory-images.md tells more.
 *
 * Failures of calls that load: QX_ERROR_MEM_IMAGE for memory that does not begin with an image or
 * ends too early, QX_ERROR_FILE_FORMAT for one that does not fit together or is of an unknown
 * version, QX_ERROR_DATA_TYPE for a column of an unknown type, QX_ERROR_NEGATIVE_SIZE,
 * QX_ERROR_NOT_REAL_SOURCE for one of something else than a real table, QX_ERROR_TABLE_COUNT_LOAD
 * with 10,000 tables. Only a call that is told the size can notice the end: the others take an
 * image that is whole.
 */

/** size: out, bytes that suffice for an image of a table in any form; more than it will take.
 * Failures: QX_ERROR_NOT_REAL. */
QXE_API int RQXGetRealTableMemSize(int table, long* size);

/** Writes an image of a real table with its root set alone. size: bytes of the block. block: out.
 * end: out, the place behind the image; rounded up to a multiple of 8 it may begin the next one.
 * The trailer is left out when there is no room for it. Failures: also QX_ERROR_OUT_OF_MEMORY if
 * the block is too small; its content is undefined then and end unchanged. */
QXE_API int RQXSaveRealTable2Mem(int table, long size, void* block, void** end);

/** Loads a table from an image. end: out, the place behind the table and before its trailer.
 * Result: the table id. */
QXE_API int RQXLoadRealTableFromMem(void* block, void** end);

/** Writes an image of the database. For a database of real tables the sum of their sizes by
 * RQXGetRealTableMemSize, 4096 bytes and 512 for each table suffice. size, block, end: as in
 * RQXSaveRealTable2Mem, without a trailer. Failures: QX_ERROR_OUT_OF_MEMORY if the block is too
 * small. */
QXE_API int RQXSaveDB2Mem(long size, void* block, void** end);

/** Loads the database from an image in place of all tables; a failure leaves none. The saved flags
 * are set, the remembered directory and name are empty. end: out, the place behind the image.
 * Failures: also QX_ERROR_TABLE_KIND for a table of an unknown kind. */
QXE_API int RQXLoadDBFromMem(void* block, void** end);

/** Makes an image of a real table with its root set alone in memory of the engine. block: out,
 * valid until the next call of this function, RQXFreeMemRealTable or RQXReInitializeMS. size: out,
 * bytes, trailer included. Failures: QX_ERROR_NOT_REAL. */
QXE_API int RQXGetMemRealTable(int table, void** block, long* size);

/** Loads a table from an image of known size, which may come from anywhere: it is loaded or
 * refused. size: bytes of the block. Result: the table id. Failures: also QX_ERROR_PARAMETER for a
 * negative size. */
QXE_API int RQXLoadMemRealTable(void* block, long size);

/** Frees the image of RQXGetMemRealTable, if there is one. */
QXE_API int RQXFreeMemRealTable(void);

/*
 * Memory stream
 *
 * The engine has one stream in memory. Open for writing it takes tables and any bytes of the
 * client, one behind the other; open for reading it gives them back from the same bytes in the same
 * pieces. A piece begins at a multiple of 8, or further on if the one before has an odd length; the
 * padding counts as used. Failures of all: QX_ERROR_MEM_STREAM for a stream that is closed or open
 * the other way, QX_ERROR_PARAMETER for a negative size.
 */

/** Opens the stream, empty, for writing; one that is open is closed before. */
QXE_API int RQXMemStreamOpenWrite(void);

/** Writes a piece. data: in, not in the stream itself. Result: size, padding not counted. Failures:
 * also QX_ERROR_OUT_OF_MEMORY, which closes the stream. */
QXE_API int RQXMemStreamWrite(const void* data, int size);

/** size: out, bytes used, padding included. area: out, the bytes, in memory of the engine; valid
 * until something is written or the stream is closed or opened. */
QXE_API int RQXMemStreamGetWriteBuf(long* size, void** area);

/** Opens the stream for reading; one that is open is closed before. area: in, size bytes, which
 * must stay until the stream is closed; the area that was just written may be read like this. */
QXE_API int RQXMemStreamOpenRead(long size, void* area);

/** Reads a piece. data: out, size bytes. Result: bytes read, fewer than size only at the end and 0
 * behind it. */
QXE_API int RQXMemStreamRead(void* data, int size);

/** mode: out, a QX_MEMSTREAM_ word. used: out, bytes written, or to be read, padding included.
 * position: out, where the next piece goes or comes from. area: out, the bytes. A closed stream has
 * 0, 0 and null. */
QXE_API int RQXMemStreamGetStatus(int* mode, long* used, long* position, void** area);

/** Closes the stream and frees what was written; a closed one stays closed. */
QXE_API int RQXMemStreamClose(void);

/** Writes a real table into the stream. oneSet: 0 for all sets, else the root set alone. A failure
 * leaves the stream as it was. Failures: also QX_ERROR_NOT_REAL; QX_ERROR_OUT_OF_MEMORY, which may
 * close the stream. */
QXE_API int RQXSaveRealTableMem(int table, int oneSet);

/** Loads the next table from the stream, which may come from anywhere. Result: the table id, 0 at
 * the stream's end. A failure leaves the stream where it was; only the end within a header closes
 * it. Failures: also those of images. */
QXE_API int RQXLoadRealTableMem(void);

/** As RQXMemStreamOpenWrite. */
QXE_API int QXMemStreamOpenWrite(void);

/** As RQXMemStreamWrite. */
QXE_API int QXMemStreamWrite(const void* data, int size);

/** As RQXMemStreamGetWriteBuf. */
QXE_API int QXMemStreamGetWriteBuf(long* size, void** area);

/** As RQXMemStreamOpenRead. */
QXE_API int QXMemStreamOpenRead(long size, void* area);

/** As RQXMemStreamRead. */
QXE_API int QXMemStreamRead(void* data, int size);

/** As RQXMemStreamGetStatus. */
QXE_API int QXMemStreamGetStatus(int* mode, long* used, long* position, void** area);

/** As RQXMemStreamClose. */
QXE_API int QXMemStreamClose(void);

/** As RQXSaveRealTableMem. */
QXE_API int QXSaveRealTableMem(int table, int oneSet);

/** As RQXLoadRealTableMem. */
QXE_API int QXLoadRealTableMem(void);

/*
 * File browser
 *
 * Directories and files of the machine that the engine runs on. Paths are of any kind; relative
 * ones count from the working directory, which belongs to the whole process. None of these calls
 * changes the database. Failures of all: QX_ERROR_FILE for a null path; QX_ERROR_DELETE if no other
 * is named.
 */

/** path: out, 4096 bytes, the working directory. */
QXE_API int RQXBrowserGetCurrentDirectory(char* path);

/** Makes a directory the working directory of the process. "" changes nothing. Failures: also
 * QX_ERROR_ACCESS for a directory that may not be entered. */
QXE_API int RQXBrowserSetCurrentDirectory(const char* path);

/** Makes a directory in one that exists. Failures: also QX_ERROR_EXISTS if there is something of
 * this name, QX_ERROR_ACCESS for a fault of the device. */
QXE_API int RQXBrowserMakeDirectory(const char* path);

/** Deletes a directory. recursive: 0 for an empty one only, else with all that is in it; links in
 * it are deleted, what they lead to stays. A failure may leave part of it. Failures: also
 * QX_ERROR_DIR_NOT_EMPTY, QX_ERROR_ACCESS for a fault of the device. */
QXE_API int RQXBrowserDelDirectory(const char* path, int recursive);

/** Renames a file or directory, within one file system. A file named `to` is replaced. */
QXE_API int RQXBrowserMove(const char* from, const char* to);

/** Lists the entries of a directory that match a pattern, in the directory's own order. pattern: a
 * directory, "/" and a pattern of names; without a "/" the working directory is listed. The pattern
 * and each name are cut at their last point, and both parts must match: a star at the start or end
 * of a part stands for any text, anything else for itself, in this case. So "*.*" and "" match all
 * names, "." and ".." among them, "*.txt" those that end in ".txt", "*" those without a point.
 * flags: 0. count: in, capacity of the lists, out, entries stored. total: out, entries that match.
 * names: out, 256 bytes for each; null or a count of 0 for the total only. nameFlags: out, a byte
 * of QX_FILE_ bits for each; 0 for a link that leads nowhere. Failures: QX_ERROR_NOT_FOUND for a
 * directory that does not exist or cannot be read, QX_ERROR_PARAMETER for a negative count. */
QXE_API int RQXBrowserGetFileList(const char* pattern, int flags, int* count, int* total,
                                  char* names, unsigned char* nameFlags);

/** Result: bytes of a file, at most 2147483647. Failures: QX_ERROR_FILE. */
QXE_API int RQXBrowserGetFileSize(const char* path);

/** Reads the next part of a file. position: in, where it begins, from 0; out, moved on by the bytes
 * read. length: in, bytes wanted; out, bytes read, fewer at the end only and 0 behind it. buffer:
 * out. Failures: QX_ERROR_FILE, also for a negative position and for one that has come to
 * 2147483647 in a longer file; QX_ERROR_PARAMETER for a negative length. position and length then
 * stay. */
QXE_API int RQXBrowserGetFile(const char* path, int* position, int* length, void* buffer);

/** RQXBrowserGetFile for files of any size. */
QXE_API int RQXBrowserGetFile64(const char* path, long* position, int* length, void* buffer);

/** RQXBrowserGetFile with a position that stays. remaining: out, bytes behind those read, at most
 * 2147483647. */
QXE_API int RQXBrowserGetFileEx(const char* path, int position, int* remaining, int* length,
                                void* buffer);

/** RQXBrowserGetFileEx for files of any size. */
QXE_API int RQXBrowserGetFileEx64(const char* path, long position, long* remaining, int* length,
                                  void* buffer);

/** Writes a new file, or a file of the name anew. buffer: in, length bytes. Failures: QX_ERROR_FILE
 * for a file that cannot be opened or written; it may hold a part. QX_ERROR_PARAMETER for a
 * negative length. */
QXE_API int RQXBrowserPutFile(const char* path, int length, const void* buffer);

/** RQXBrowserPutFile piece by piece. mode: QX_PUT_CREATE as RQXBrowserPutFile, else the bytes go
 * behind those that the file has. */
QXE_API int RQXBrowserPutFileEx(const char* path, int mode, int length, const void* buffer);

/** Deletes a file; of a link the link itself. */
QXE_API int RQXBrowserDelFile(const char* path);

#ifdef __cplusplus
}

/*
 * Columns of summary tables, in C++
 *
 * These have C++ linkage. A record in a filter's attribute block tells which column of a summary a
 * filter is. No call but RQXSetSumFilterAttr writes it; it travels with saved filters. Failures of
 * all: QX_ERROR_NO_TABLE, QX_ERROR_NOT_REAL, QX_ERROR_NO_FILTER.
 */

/** Gets the record of a filter. attr: out, 64 bytes, a _TSumFilterAttr. */
QXE_API int RQXGetSumFilterAttr(int table, int filter, void* attr);

/** Sets the record of a filter, the block that RQXSetFilterAttr sets for rows. attr: in, 64 bytes,
 * which are not checked. Failures: also QX_ERROR_SHARED_READ_ONLY. */
QXE_API int RQXSetSumFilterAttr(int table, int filter, void* attr);

/** Counts the columns with the role of a dimension or a measure. nDim, nMsr: out. Result: 0 for a
 * table without such columns, or a join; 1 for one that has no others; 2 for one that has.
 * Failures: QX_ERROR_NOT_SUMMARY_TABLE for a record with an unknown role. */
QXE_API int RQXIsSummaryOutputTable(int table, int* nDim, int* nMsr);

/** Finds the filter with a role and an ordinal. role: QX_ROLE_DIMENSION or QX_ROLE_MEASURE. Result:
 * its id; 0 for a table without such columns. Failures: also QX_ERROR_NO_DIMENSION,
 * QX_ERROR_NOT_SUMMARY_TABLE. */
QXE_API int RQXDimNo2FilterID(int table, int role, int ordinal);

/** Adds up the values of a set's rows, without NULL. filter: of integers, floats, dates or times.
 * mode: 0 only for columns whose record says a count or a sum of a summary, 1 for any. total: out,
 * NULL after a failure. Failures: also QX_ERROR_NO_SET, QX_ERROR_NOT_NUMBER, QX_ERROR_PARAMETER for
 * mode, and for mode 0 QX_ERROR_TOTAL_KIND1 for a dimension, QX_ERROR_TOTAL_KIND2 for another sum
 * type, QX_ERROR_NOT_SUMMARY_TABLE without a record. */
QXE_API int RQXCalcTotal(int table, int set, int filter, int mode, double* total);
#endif

#endif /* QXE_H */
