#include "import/errlog.h"

#include <stdarg.h>
#include <stdio.h>
#include <time.h>

#include <algorithm>
#include <new>

#include "frame/base/exception.h"

namespace qxe {

std::atomic<bool> CErrorLog::isBegin{true};
CErrorLog& LOGOBJ = CErrorLog::Instance();

namespace {

constexpr size_t kLongestMessage = 0x201000;  // with the terminator

std::string banner() {
  const time_t now = time(nullptr);
  char moment[64];  // ends with a line feed
  ctime_r(&now, moment);
  const std::string stars(83, '*');
  return "/" + stars + " \t\t\t\t\t\t\t \n\tLogFile for QxeEngine\n\tdated : " +
         std::string(moment).substr(0, 24) + "    \t\t\t\t\t\t\t \n" + stars + "/\n\n";
}

std::string formatted(const char* format, va_list args) {
  va_list again;
  va_copy(again, args);
  const int length = vsnprintf(nullptr, 0, format, again);
  va_end(again);
  if (length < 0) return {};
  std::string text(std::min(static_cast<size_t>(length), kLongestMessage - 1), '\0');
  vsnprintf(text.data(), text.size() + 1, format, args);
  return text;
}

/// A batch on the log, closed on every way out.
class LogBatch : NonCopyable {
 public:
  LogBatch() { LOGOBJ.fopen(); }
  ~LogBatch() { LOGOBJ.fclose(); }
};

}  // namespace

CErrorLog& CErrorLog::Instance() {
  static CErrorLog log;
  return log;
}

void CErrorLog::setFileName(const char* name) {
  std::lock_guard<std::mutex> guard(lock_);
  name_ = name;
}

void CErrorLog::fopen() {
  lock_.lock();
  stream_.open(name_.c_str(), kModeAppend, true);
}

void CErrorLog::recordMesg2(const char* text) {
  if (!stream_.is_open()) return;
  const std::string line = (isBegin.exchange(false) ? banner() : "") + text + '\n';
  stream_.write(line.data(), static_cast<long>(line.size()));
}

void CErrorLog::fclose() {
  stream_.close();
  lock_.unlock();
}

void CErrorLog::recordMesg(const char* text) {
  LogBatch batch;
  recordMesg2(text);
}

void LogMsg(const char* format, ...) {
  va_list args;
  va_start(args, format);
  const std::string text = formatted(format, args);
  va_end(args);
  LOGOBJ.recordMesg(text.c_str());
}

void LogMsg2(const char* format, ...) {
  va_list args;
  va_start(args, format);
  const std::string text = formatted(format, args);
  va_end(args);
  LOGOBJ.recordMesg2(text.c_str());
}

void CatalogErrorInfo::add(CatalogErr kind, int row, int first, int second, const char* type,
                           const char* text, const char* file) {
  try {
    records_.push_back({kind, row, first, second, type, text, file});
  } catch (const std::bad_alloc&) {
    throw CQXException(QX_ERROR_OUT_OF_MEMORY);
  }
}

void CatalogErrorInfo::SetLogMsg(CatalogErr kind) {
  add(kind, 0, 0, 0, "", "");
}

void CatalogErrorInfo::SetLogMsg(CatalogErr kind, int value) {
  add(kind, value, 0, 0, "", "");
}

void CatalogErrorInfo::SetLogMsg(CatalogErr kind, int row, const char* text) {
  add(kind, row, 0, 0, "", text);
}

void CatalogErrorInfo::SetLogMsg(CatalogErr kind, int first, int second, int row) {
  add(kind, row, first, second, "", "");
}

void CatalogErrorInfo::SetLogMsg(CatalogErr kind, const char* type, const char* text, int row,
                                 int column) {
  add(kind, row, column, 0, type, text);
}

void CatalogErrorInfo::SetLogMsg(CatalogErr kind, const char* type, const char* text, int row,
                                 const char* file) {
  add(kind, row, 0, 0, type, text, file);
}

void CatalogErrorInfo::AllLogMsgPrint(long rowOffset) const {
  if (records_.empty()) return;
  LogBatch batch;
  for (const Record& record : records_) LogMsgPrint(record, rowOffset);
}

void CatalogErrorInfo::LogMsgPrint(const Record& record, long rowOffset) {
  const int row = static_cast<int>(rowOffset + record.row);
  switch (record.kind) {
    case kErrMaxRows: LogMsg2(CatalogErrTable[kErrMaxRows], record.row); break;
    case kErrStringSize: LogMsg2(CatalogErrTable[kErrStringSize], row, record.text.c_str()); break;
    case kErrOutOfMemory: LogMsg2(CatalogErrTable[kErrOutOfMemory], row); break;
    case kErrParse: LogMsg2(CatalogErrTable[kErrParse], row); break;
    case kErrData:
      LogMsg2(CatalogErrTable[kErrData], record.type.c_str(), record.text.c_str(), row,
              record.first);
      break;
    case kErrPlainData:
      LogMsg2(CatalogErrTable[kErrPlainData], record.type.c_str(), record.text.c_str(), row,
              record.file.c_str());
      break;
    case kErrFieldCount:
      LogMsg2(CatalogErrTable[kErrFieldCount], record.first, record.second, row);
      break;
    case kErrMemory: LogMsg2("%s", CatalogErrTable[kErrMemory]); break;
    case kErrSurplusFields:
      LogMsg2(CatalogErrTable[kErrSurplusFields], record.first, record.second, row);
      break;
    case kErrFieldWidth:
      LogMsg2(CatalogErrTable[kErrFieldWidth], record.first, record.second, row);
      break;
  }
}

}  // namespace qxe
