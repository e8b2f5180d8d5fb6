// The text log of data faults met by an import: the log file itself, and the collector in which a
// worker keeps its faults until the rows in front of its share are counted.
#pragma once

#include <atomic>
#include <deque>
#include <mutex>
#include <string>

#include "frame/base/memory.h"
#include "persist/zvk_fstream.h"

namespace qxe {

/// Rows of CatalogErrTable; behind each the arguments of its text.
enum CatalogErr {
  kErrMaxRows,        // limit
  kErrStringSize,     // row, file
  kErrOutOfMemory,    // row
  kErrParse,          // row
  kErrData,           // type name, text, row, column
  kErrFieldCount,     // filters, items, row
  kErrMemory,         // none
  kErrSurplusFields,  // filters, items, row
  kErrFieldWidth,     // field length, item length, row
  kErrPlainData       // type name, text, row, file
};

/// printf formats, by CatalogErr.
constexpr const char* CatalogErrTable[] = {
    "MAX ROWSIZE EXCEEDED > %d ",
    "DATA OVERFLOW ERROR - MAX_STRING_SIZE EXCEED \t\t @  Row = %d @ File = %s ",
    "OUT_OF_MEMORY  ERROR \t\t @  Row = %d ",
    "DATA PARSE ERROR \t\t @ Row = %d ",
    "DATA ERROR \t\t----->\t[%s] = \"%s\"  \t@ Row = %d , Col = %d ",
    "FILTER MISMATCH \t----->\tFilters - Items [%d - %d] \t@ Row = %d ",
    "QX_ERROR_OUT_OF_MEMORY",
    "FILTER MISMATCH \t----->\tFilters != Items [%d - (> %d) ] \t@ Row = %d ",
    "ITEM SIZE MISMATCH \t----->\t Field Length  != Item length [%d - %d] \t@ Row = %d ",
    "DATA ERROR \t\t----->\t[%s] = \"%s\"  \t@ Row = %d in %s "};

/// The log file. It is opened for each write or batch, comes into being with the first, and is
/// passed over in silence when it cannot be written.
class CErrorLog : NonCopyable {
 public:
  static constexpr const char* kDefaultName = "catalog_err_log.txt";

  static CErrorLog& Instance();

  void setFileName(const char* name);

  /// Writes one line.
  void recordMesg(const char* text);

  /// A batch of lines that no other thread's lines mix with: fopen locks the log until fclose.
  void fopen();
  void recordMesg2(const char* text);
  void fclose();

  /// The next line begins a new section, with a banner. Every import sets it.
  static std::atomic<bool> isBegin;

 private:
  CErrorLog() = default;

  std::mutex lock_;
  std::string name_ = kDefaultName;
  zvk_fstream stream_;  // open during a batch
};

extern CErrorLog& LOGOBJ;

/// Formats a line and writes it, on its own or within a batch.
void LogMsg(const char* format, ...) __attribute__((format(printf, 1, 2)));
void LogMsg2(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// The faults of one worker, in file order, with row numbers counted from the start of its share.
/// Belongs to that worker, so it takes no lock. Recording throws QX_ERROR_OUT_OF_MEMORY.
class CatalogErrorInfo : NonCopyable {
 public:
  void SetLogMsg(CatalogErr kind);
  void SetLogMsg(CatalogErr kind, int value);
  void SetLogMsg(CatalogErr kind, int row, const char* text);
  void SetLogMsg(CatalogErr kind, int first, int second, int row);
  void SetLogMsg(CatalogErr kind, const char* type, const char* text, int row, int column);
  void SetLogMsg(CatalogErr kind, const char* type, const char* text, int row, const char* file);

  /// Prints all faults as one batch, `rowOffset` rows further on; nothing when there are none.
  void AllLogMsgPrint(long rowOffset) const;

 private:
  struct Record {
    CatalogErr kind;
    int row;  // or the limit of kErrMaxRows
    int first;
    int second;
    std::string type;
    std::string text;
    std::string file;
  };

  void add(CatalogErr kind, int row, int first, int second, const char* type, const char* text,
           const char* file = "");
  static void LogMsgPrint(const Record& record, long rowOffset);

  std::deque<Record> records_;
};

}  // namespace qxe
