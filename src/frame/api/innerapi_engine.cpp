// Serial layer: the engine itself, its settings and the conversions that need no table.
#include <stdio.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>

#include "frame/api/dbtask.h"
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "parallel/smpengine.h"
#include "storage/charcode.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr char kCopyright[] = "Copyright (c) 2026 The QxeEngine developers";

int VersionAr[4];
char CRbuffer[512];

}  // namespace

int innerQXGetVersion(int** version, char** copyright) {
  std::copy_n(QxeVersions, 4, VersionAr);
  qxe_strlcpy(CRbuffer, kCopyright, sizeof CRbuffer);
  *version = VersionAr;
  *copyright = CRbuffer;
  return 0;
}

int innerQXGetErrorLog(int* time, char* apiName, int* code, char* message) {
  return DBTASK()->GetErrorLog(time, apiName, code, message);
}

int innerQXClearDB() {
  return with_collection({.layer = "QXClearDB"}, [](TTableCollection&) {
    ENG->renew_collection();
    return 0;
  });
}

namespace {

constexpr int kEnvironmentOS = 53;
constexpr int kEnvironmentHardware = 6;
constexpr int kLittleEndian = 4;  // as in the header of binary files

void get_release(_TREnvironment* out) {
  utsname system{};
  uname(&system);
  sscanf(system.release, "%d.%d", &out->osMajor, &out->osMinor);
}

void get_char_codes(_TREnvironment* out) {
  getOSCharCode(out->osCharCode);
  getDBCharCode(out->dbCharCode, false);
  if (strcmp(out->dbCharCode, "NotDefined") != 0) return;
  setDBCharCode(QX_CODE_UTF8);
  getDBCharCode(out->dbCharCode, false);
}

}  // namespace

int innerQXGetEnvironment(_TREnvironment* out) {
  *out = {};
  gethostname(out->hostName, sizeof out->hostName - 1);
  out->osType = kEnvironmentOS;
  get_release(out);
  out->hardwareKind = kEnvironmentHardware;
  out->processorCount = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
  out->hardwareMinor = -1;
  out->endian = kLittleEndian;
  out->wordSize = 64;
  get_char_codes(out);
  return 0;
}

int innerQXGetSystemMemInfo(unsigned long* total, unsigned long* available) {
  const auto page = static_cast<unsigned long>(sysconf(_SC_PAGESIZE));
  *total = page * static_cast<unsigned long>(sysconf(_SC_PHYS_PAGES));
  *available = page * static_cast<unsigned long>(sysconf(_SC_AVPHYS_PAGES));
  return *total == 0 || *available == 0 ? -1 : 0;
}

int innerQXSetKanjiCode(int localeId) {
  const int code = convertLocaleID2DBCharCode(localeId);
  if (code == QX_CODE_NOTDEFINED) {
    return report("QXSetKanjiCode", QX_ERROR_CHAR_CODE, "Invalid Parameter : LocaleID(%d)",
                  localeId);
  }
  setDBCharCode(code);
  return 0;
}

int innerQXSetDBCharCode(const char* text) {
  const int code = text == nullptr ? QX_CODE_NOTDEFINED : convertDBStringCode2DBCharCode(text);
  if (code == QX_CODE_NOTDEFINED) {
    return report("QXSetDBCharCode", QX_ERROR_CHAR_CODE, "Invalid Parameter : DBCharCode(%s)",
                  text == nullptr ? "" : text);
  }
  setDBCharCode(code);
  return 0;
}

int innerQXSetTailSpaceFlag(int flag) {
  TTableCollection::m_nCutLastSpace = flag;
  return 0;
}

int innerQXSetSavedFlag(int sets, int tables, int settings) {
  g_TFSSaved = sets != 0;
  g_TFSaved = tables != 0;
  g_SETTINGSaved = settings != 0;
  return 0;
}

int innerQXGetSavedFlag(int* sets, int* tables, int* settings) {
  *sets = g_TFSSaved;
  *tables = g_TFSaved;
  *settings = g_SETTINGSaved;
  return 0;
}

namespace {

int converted(const char* layer, const char* text, bool bad) {
  return bad ? report(layer, QX_ERROR_PARAMETER, "NOT A NUMBER: %s", text) : 0;
}

}  // namespace

int innerQXStrToTime(const char* text, double* out) {
  return DBTASK()->StrToTime(text, out);
}

int innerQXStrToInt(const char* text, int* out) {
  bool bad = false;
  *out = Str2Int(text, true, &bad);
  return converted("QXStrToInt", text, bad);
}

int innerQXStrToFloat(const char* text, double* out) {
  bool bad = false;
  *out = Str2Double(text, true, &bad);
  return converted("QXStrToFloat", text, bad);
}

int innerQXFreeMem(void** memory) {
  if (memory == nullptr) return 0;
  zvk_free(*memory);
  *memory = nullptr;
  return 0;
}

}  // namespace qxe
