// Plain functions: engine, errors, settings, conversions.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "frame/base/log.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXGetVersion(int** version, char** copyright) {
  return plain_call(__func__, {version, copyright},
                    [&] { return innerQXGetVersion(version, copyright); });
}

int QXGetErrorLog(int* time, char** apiName, int* code, char** message) {
  return plain_call(__func__, {time, apiName, code, message}, [&] {
    const int status = check_required("QXGetErrorLog", {*apiName, *message});
    return status < 0 ? status : innerQXGetErrorLog(time, *apiName, code, *message);
  });
}

int QXLogInit(int option, const char* file) {
  return plain_call([&] { return innerQXLogInit(option, file); });
}

int QXClearDB() {
  return plain_call([] { return innerQXClearDB(); });
}

int QXSetKanjiCode(int localeId) {
  return plain_call([&] { return innerQXSetKanjiCode(localeId); });
}

int QXSetTailSpaceFlag(int flag) {
  return plain_call([&] { return innerQXSetTailSpaceFlag(flag); });
}

int QXSetSavedFlag(int sets, int tables, int settings) {
  return plain_call([&] { return innerQXSetSavedFlag(sets, tables, settings); });
}

int QXGetSavedFlag(int* sets, int* tables, int* settings) {
  return plain_call(__func__, {sets, tables, settings},
                    [&] { return innerQXGetSavedFlag(sets, tables, settings); });
}

int QXStrToTime(const char* text, double* out) {
  return plain_call(__func__, {text, out}, [&] { return innerQXStrToTime(text, out); });
}

int QXStrToInt(const char* text, int* out) {
  return plain_call(__func__, {text, out}, [&] { return innerQXStrToInt(text, out); });
}

int QXStrToFloat(const char* text, double* out) {
  return plain_call(__func__, {text, out}, [&] { return innerQXStrToFloat(text, out); });
}

int QXFreeMem(void** memory) {
  return plain_call([&] { return innerQXFreeMem(memory); });
}
