// Serial layer: database and table files.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "parallel/smpengine.h"
#include "persist/database_file.h"
#include "persist/file_info.h"
#include "persist/file_place.h"
#include "storage/charcode.h"

namespace qxe {

namespace {

/// A database as it lies in its file has nothing that is not saved.
int all_saved() {
  g_TFSaved = true;
  g_SETTINGSaved = true;
  g_TFSSaved = true;
  return 0;
}

bool FileVerson_ExistChack(int version) {
  return version == QX_DATA_VERSION_OLD;
}

bool DbCode_UsedChack() {
  char text[32];
  return getSystemInfoDBCharCode() == getOSCharCode(text);
}

}  // namespace

int innerQXLoadDB(const char* dir, const char* name) {
  return with_collection({.layer = "QXLoadDB"}, [&](TTableCollection&) {
    check_place("QXLoadDB", dir, name);
    ENG->renew_collection();  // first, so that there is room for the new one
    ENG->renew_collection(load_database(dir, name));
    return all_saved();
  });
}

int innerQXSaveDB() {
  return with_collection({.layer = "QXSaveDB"}, [](TTableCollection& tables) {
    tables.ReSave();
    return all_saved();
  });
}

int innerQXSaveDBAs(char* dir, const char* name) {
  return with_collection({.layer = "QXSaveDBAs"}, [&](TTableCollection& tables) {
    tables.set_old_version(false);
    tables.SaveDB(dir, name);
    return all_saved();
  });
}

int innerQXSavePossibleCheck(int table, int version) {
  static constexpr char kLayer[] = "innerQXSavePossibleCheck";
  if (!FileVerson_ExistChack(version)) {
    return report(kLayer, QX_ERROR_SAVE_CODE, "fileversion is not exist : %d", version);
  }
  const int status = collection().NumericUsedCheck(table);
  if (status < 0) return status;
  return DbCode_UsedChack() ? 0 : report(kLayer, QX_ERROR_SAVE_VERSION, "Invalid fileversion");
}

int innerQXSaveDBAsOldVer(char* dir, const char* name, int version) {
  return with_collection({.layer = "QXSaveDBAsOldVer"}, [&](TTableCollection& tables) {
    raised(innerQXSavePossibleCheck(0, version));
    tables.set_old_version(true);
    tables.SaveDB(dir, name);
    return all_saved();
  });
}

int innerQXGetPathName(char* dir, char* name) {
  return collection().GetPathName(dir, name);
}

int innerQXLoadRealTable(const char* dir, const char* file) {
  return with_collection({.layer = "QXLoadRealTable", .saved = &g_TFSaved},
                         [&](TTableCollection& tables) { return tables.LoadRealTable(dir, file); });
}

int innerQXLoadRealTable2(const char* path, long offset, int count, int* ids, long* end) {
  return with_collection({.layer = "QXLoadRealTable2", .saved = count > 0 ? &g_TFSaved : nullptr},
                         [&](TTableCollection& tables) {
                           return tables.LoadRealTable2(path, offset, count, ids, end);
                         });
}

int innerQXSaveRealTable(const char* dir, int table) {
  return with_collection({.layer = "QXSaveRealTable"}, [&](TTableCollection& tables) {
    tables.set_old_version(false);
    tables.SaveRealTable(dir, table);
    return 0;
  });
}

int innerQXSaveRealTableAs(const char* dir, const char* file, int table) {
  return with_collection({.layer = "QXSaveRealTableAs"}, [&](TTableCollection& tables) {
    tables.set_old_version(false);
    tables.SaveRealTableAs(dir, file, table);
    return 0;
  });
}

int innerQXSaveRealTable2(const char* path, long offset, const int* ids, long* end) {
  return with_collection({.layer = "QXSaveRealTable2"}, [&](TTableCollection& tables) {
    return tables.SaveRealTable2(path, offset, ids, end);
  });
}

int innerQXSaveRealTableOldVer(const char* dir, int table, int version) {
  return with_collection({.layer = "QXSaveRealTableOldVer"}, [&](TTableCollection& tables) {
    raised(innerQXSavePossibleCheck(table, version));
    tables.set_old_version(true);
    tables.SaveRealTable(dir, table);
    return 0;
  });
}

int innerQXSaveRealTableAsOldVer(const char* dir, const char* file, int table, int version) {
  return with_collection({.layer = "QXSaveRealTableAsOldVer"}, [&](TTableCollection& tables) {
    raised(innerQXSavePossibleCheck(table, version));
    tables.set_old_version(true);
    tables.SaveRealTableAs(dir, file, table);
    return 0;
  });
}

int innerQXGetQxeFileInfo(const char* dir, const char* file, const char* extension,
                          _QXFileInfo* out) {
  static constexpr char kLayer[] = "QXGetQxeFileInfo";
  const bool is_table = strcmp(extension, kTableExtension) == 0;
  if (!is_table && strcmp(extension, kDatabaseExtension) != 0) return -1;
  return guarded(kLayer, [&] {
    check_place(kLayer, dir, file);
    const std::string directory = absolute_directory(kLayer, "Invalid Parameter : DBPath", dir);
    *out = read_file_info(file_in(directory, with_extension(file, extension)), is_table);
    return 0;
  });
}

}  // namespace qxe
