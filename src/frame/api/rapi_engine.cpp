// Exported functions: engine, errors, settings.
#include <algorithm>

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "frame/base/log.h"
#include "parallel/smpengine.h"
#include "storage/strings.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXGetVersion(int version[4], char* copyright) {
  return guarded_call(__func__, {version, copyright}, [&] {
    int* numbers = nullptr;
    char* text = nullptr;
    const int status = innerQXGetVersion(&numbers, &text);
    std::copy_n(numbers, 4, version);
    qxe_strlcpy(copyright, text, 512);
    return status;
  });
}

int RQXGetErrorLog(int* time, char* apiName, int* code, char* message) {
  return pass_through_call(__func__, {time, apiName, code, message},
                           [&] { return innerQXGetErrorLog(time, apiName, code, message); });
}

int RQXLogInit(int option, const char* file) {
  return pass_through_call(__func__, [&] { return innerQXLogInit(option, file); });
}

int RQXClearDB() {
  return guarded_call(__func__, [] { return innerQXClearDB(); });
}

int RQXShutdown() {
  return pass_through_call(__func__, [] { return 0; });
}

// Deliberate: a restart takes no lock, so that it also frees one that stayed held. No other thread
// may be in the engine.
int RQXReInitializeMS() {
  record_call_name(__func__);
  return guarded(__func__, [] {
    ENG->ReInitialize();
    mutex_initialize();
    return 0;
  });
}

int RQXGetEnvironment(_TREnvironment* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetEnvironment(out); });
}

int RQXGetSystemMemInfo(unsigned long* total, unsigned long* available) {
  return pass_through_call(__func__, {total, available},
                           [&] { return innerQXGetSystemMemInfo(total, available); });
}

int RQXSetKanjiCode(int localeId) {
  return pass_through_call(__func__, [&] { return innerQXSetKanjiCode(localeId); });
}

int RQXSetDBCharCode(char* code) {
  return pass_through_call(__func__, [&] { return innerQXSetDBCharCode(code); });
}

int RQXSetTailSpaceFlag(int flag) {
  return pass_through_call(__func__, [&] { return innerQXSetTailSpaceFlag(flag); });
}

int RQXSetSavedFlag(int sets, int tables, int settings) {
  return pass_through_call(__func__, [&] { return innerQXSetSavedFlag(sets, tables, settings); });
}

int RQXGetSavedFlag(int* sets, int* tables, int* settings) {
  return pass_through_call(__func__, {sets, tables, settings},
                           [&] { return innerQXGetSavedFlag(sets, tables, settings); });
}

int RQXStrToTime(const char* text, double* out) {
  return pass_through_call(__func__, {text, out}, [&] { return innerQXStrToTime(text, out); });
}

// Deliberate: services that a client may ask for and the engine does not have. No lock, no effect.

int RQXConnect2ZVKServer(const char* /*server*/) {
  return 0;
}

int RQXDisconnectFromZVKServer() {
  return 0;
}

int RQXGetNamingServiceIdentity(char* /*out*/) {
  return 0;
}

int RQXGetServerIPAddress(char* out) {
  if (out != nullptr) *out = '\0';
  return 0;
}

int RQXSetJoinCheckFlag(int /*flag*/) {
  return 0;
}
