// Exported functions: import and export.

#include "frame/api/call_frame.h"
#include "frame/api/dbtask.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXAddCatalogFile(const char* dir, const char* catalog) {
  return guarded_call(__func__, [&] { return DBTASK()->AddCatalogFile(dir, catalog); });
}

int RQXAddCatalogFileEx2(const char* catalogDir, const char* catalog, const char* dataDir,
                         const char* dataFile, const char* tableName) {
  return guarded_call(__func__, [&] {
    return DBTASK()->AddCatalogFileEx2(catalogDir, catalog, dataDir, dataFile, tableName);
  });
}

int RQXAppendCatalogFile(int table, int rowPos, int rowCount, const char* dir,
                         const char* catalog) {
  return guarded_call(
      __func__, [&] { return DBTASK()->AppendCatalogFile(table, rowPos, rowCount, dir, catalog); });
}

int RQXAppendCatalogFileEx2(int table, int rowPos, int rowCount, const char* catalogDir,
                            const char* catalog, const char* dataDir, const char* dataFile) {
  return guarded_call(__func__, [&] {
    return DBTASK()->AppendCatalogFileEx2(table, rowPos, rowCount, catalogDir, catalog, dataDir,
                                          dataFile);
  });
}

int RQXExportAsCSV(int table, int set, const int* filters, int rowFrom, int rowTo, const char* dir,
                   const char* file, char dateSep) {
  return guarded_call(__func__, [&] {
    return DBTASK()->Export(table, set, filters, rowFrom, rowTo, ',', dateSep, dir, file);
  });
}

int RQXExportAsTAB(int table, int set, const int* filters, int rowFrom, int rowTo, const char* dir,
                   const char* file, char dateSep) {
  return guarded_call(__func__, [&] {
    return DBTASK()->Export(table, set, filters, rowFrom, rowTo, '\t', dateSep, dir, file);
  });
}

int RQXExportAsCSVwithF(int table, int set, const int* filters, int rowFrom, int rowTo,
                        const char* dir, const char* file, char dateSep, const char* fmtFile) {
  return guarded_call(__func__, [&] {
    return DBTASK()->ExportWithF(table, set, filters, rowFrom, rowTo, ',', dateSep, dir, file,
                                 fmtFile);
  });
}

int RQXExportAsTABwithF(int table, int set, const int* filters, int rowFrom, int rowTo,
                        const char* dir, const char* file, char dateSep, const char* fmtFile) {
  return guarded_call(__func__, [&] {
    return DBTASK()->ExportWithF(table, set, filters, rowFrom, rowTo, '\t', dateSep, dir, file,
                                 fmtFile);
  });
}

int RQXSaveAsCatalog(int table, int set, const int* filters, int type, int rowFrom, int rowTo,
                     char dateSep, const char* dir, const char* file) {
  return guarded_call(__func__, [&] {
    return DBTASK()->SaveAsCatalog(table, set, filters, type, rowFrom, rowTo, dateSep, dir, file);
  });
}

int RQXSaveAsCatalogEx(int table, int set, const int* filters, int type, int rowFrom, int rowTo,
                       char dateSep, const char* dir, const char* file, const char* catalogDir,
                       const char* catalogFile) {
  return guarded_call(__func__, [&] {
    return DBTASK()->SaveAsCatalogEx(table, set, filters, type, rowFrom, rowTo, dateSep, dir, file,
                                     catalogDir, catalogFile);
  });
}

int RQXSaveAsCatalogwithF(int table, int set, const int* filters, int type, int rowFrom, int rowTo,
                          char dateSep, const char* dir, const char* file, const char* fmtFile) {
  return guarded_call(__func__, [&] {
    return DBTASK()->SaveAsCatalogwithF(table, set, filters, type, rowFrom, rowTo, dateSep, dir,
                                        file, fmtFile);
  });
}

int RQXSaveAsCatalogwithFEx(int table, int set, const int* filters, int type, int rowFrom,
                            int rowTo, char dateSep, const char* dir, const char* file,
                            const char* catalogDir, const char* catalogFile, const char* fmtFile) {
  return guarded_call(__func__, [&] {
    return DBTASK()->SaveAsCatalogwithFEx(table, set, filters, type, rowFrom, rowTo, dateSep, dir,
                                          file, catalogDir, catalogFile, fmtFile);
  });
}
