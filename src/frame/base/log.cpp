#include "frame/base/log.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include <new>
#include <string>

#include "parallel/smpengine.h"
#include "persist/zvk_fstream.h"
#include "storage/strings.h"

namespace qxe {

std::mutex log_lock;
int gLogOutOption = 0;
bool isLogFirst = true;
char logFile[512] = "";

namespace {

bool is_message_first = true;  // the next Log_message creates its file

/// "Wed Jun 30 1993   21:49:08"
std::string date_and_time() {
  const time_t now = time(nullptr);
  char text[64];  // "Wed Jun 30 21:49:08 1993\n"
  ctime_r(&now, text);
  return std::string(text, 11) + std::string(text + 20, 4) + "   " + std::string(text + 11, 8);
}

std::string engine_log_header(const char* /*file*/) {
  return "/********************************************************** \t\t\t\t\t\t\t \n"
         "\tLogFile for QxeEngine\n"
         "\tdated : " +
         date_and_time() +
         " \t\t\t\t\t\t\t \n"
         "***********************************************************/\n\n";
}

std::string message_log_header(const char* file) {
  return "/*********************************************************************************** "
         "\t\t\t\t\t\t\t \n"
         "\t\t\tErrorLog  " +
         std::string(file) +
         "  \n"
         "\t\t\tdated : " +
         date_and_time() +
         " \t\t\t\t\t\t\t \n"
         "************************************************************************************/"
         "\n\n";
}

/// Writes a line behind what `file` holds, or a header and the line to a new file when `first`. A
/// log that cannot be written changes no result.
void write_line(const char* file, bool& first, std::string (*header)(const char*),
                const char* line) {
  try {
    zvk_fstream stream;
    if (stream.open(file, first ? kModeWrite : kModeAppend, true) != 0) return;
    const std::string text = (first ? header(file) : "") + line + '\n';
    stream.write(text.data(), static_cast<long>(text.size()));
    if (stream.close() == 0) first = false;
  } catch (const std::bad_alloc&) {
    return;
  }
}

void write_engine_log(const char* line) {
  if (ENG != nullptr) write_line(ENG->archive_log_file(), isLogFirst, engine_log_header, line);
}

}  // namespace

int innerQXLogInit(int option, const char* file) {
  std::lock_guard<std::mutex> guard(log_lock);
  gLogOutOption = option;
  if (option != 3 || file == nullptr) return 0;
  const auto append = [](const char* text) {
    const size_t used = strlen(logFile);
    qxe_strlcpy(logFile + used, text, sizeof logFile - used);
  };
  if (strstr(file, "//") != nullptr || getcwd(logFile, sizeof logFile) == nullptr) {
    *logFile = '\0';
  } else {
    append("//");
  }
  append(file);
  return 0;
}

}  // namespace qxe

void LOG_Create(const char* format, ...) {
  std::lock_guard<std::mutex> guard(qxe::log_lock);
  if (qxe::gLogOutOption == 0) return;
  char line[500];
  va_list args;
  va_start(args, format);
  vsnprintf(line, sizeof line, format, args);
  va_end(args);
  switch (qxe::gLogOutOption) {
    case 1: puts(line); break;
    case 2: fprintf(stderr, "%s\n", line); break;
    case 3: qxe::write_engine_log(line); break;
    default: break;
  }
}

void Log_message(const char* file, const char* format, ...) {
  std::lock_guard<std::mutex> guard(qxe::log_lock);
  if (file == nullptr) qxe::is_message_first = true;
  if (file == nullptr || *file == '\0') return;
  char line[4352];
  va_list args;
  va_start(args, format);
  vsnprintf(line, sizeof line, format, args);
  va_end(args);
  qxe::write_line(file, qxe::is_message_first, qxe::message_log_header, line);
}
