// The text logs a client may write through the engine. No engine operation depends on them, and a
// log that cannot be written changes no result.
#pragma once

#include <mutex>

#include "qxe.h"

namespace qxe {

/// Held while a line is written: clients may log from any thread, outside the engine lock.
extern std::mutex log_lock;

/// Where LOG_Create writes: 0 nowhere, 1 standard output, 2 standard error, 3 the engine's log file
/// ("vemohist.log" in the working directory at load). Anything else writes nowhere too.
extern int gLogOutOption;
/// Whether the next line creates the engine's log file instead of going to its end.
extern bool isLogFirst;
/// The path last given to innerQXLogInit with option 3. It is kept, but LOG_Create does not use it.
extern char logFile[512];

/// Sets gLogOutOption and with option 3 and a name also logFile: a name with "//" as it is, any
/// other behind the working directory and "//". Always 0.
int innerQXLogInit(int option, const char* file);

}  // namespace qxe
