// The task object's exports: the checks of a call, then the table's writers.
#include <string>

#include "frame/api/dbtask.h"
#include "frame/api/serial_layer.h"
#include "import/mtexport.h"
#include "import/output_path.h"

namespace qxe {

namespace {

constexpr char kComma = ',';
constexpr char kTab = '\t';
constexpr char kDataFile[] = "SrcData.dat";  // what a catalog's import reads by default

/// The data of one export.
struct ExportData {
  int table;
  int set;
  const int* filters;  // ended by -1
  int from;
  int to;
  char dateSeparator;
  const char* directory;
  const char* file;
  const char* formatFile;  // or null
};

/// Where the catalog of an export goes.
struct CatalogPlace {
  const char* directory;
  const char* file;
};

int check_file(const char* layer, const char* directory, const char* file) {
  if (directory == nullptr) {
    return report(layer, QX_ERROR_FILE, "Invalid Parameter : FilePath(%s)", "");
  }
  if (file == nullptr || *file == '\0') {
    return report(layer, QX_ERROR_FILE, "Invalid Parameter : FileName(%s)", "");
  }
  return 0;
}

int check_export(const char* layer, TBaseTable& table, const ExportData& data) {
  if (data.filters == nullptr) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : FltIDs");
  }
  if (data.dateSeparator != '-' && data.dateSeparator != '/') {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : Datesep(%d)", data.dateSeparator);
  }
  if (data.set < -1 || table.GetSet(data.set) == nullptr) {
    return report(layer, QX_ERROR_NO_SET, "No Such Set: %d ", data.set);
  }
  return check_file(layer, data.directory, data.file);
}

int export_data(const ExportData& data, char separator) {
  return MppCsvExport(data.table, data.set, data.filters, data.from, data.to, separator,
                      data.dateSeparator, data.directory, data.file, data.formatFile);
}

int export_rows(const char* layer, const ExportData& data, char separator) {
  return with_table({.layer = layer}, data.table, [&](TBaseTable& table) {
    const int status = check_export(layer, table, data);
    return status < 0 ? status : export_data(data, separator);
  });
}

/// Layer name of the two forms of an export.
const char* layer_of(char separator, const char* csv, const char* tab) {
  return separator == kTab ? tab : csv;
}

int check_catalog(const char* layer, const ExportData& data, int type, const CatalogPlace& place) {
  if (data.from < -1 || data.to < -1 || (data.from > data.to && data.to != -1)) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : RowFrom(%d) RowTo(%d)", data.from,
                  data.to);
  }
  if (type != QX_EXPORT_COMMA && type != QX_EXPORT_TAB) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : type(%d)", type);
  }
  return check_file(layer, place.directory, place.file);
}

/// A format file counts from the data's directory for both files.
int create_catalog(TBaseTable& table, const ExportData& data, char separator,
                   const CatalogPlace& place) {
  const bool formatted = data.formatFile != nullptr;
  const std::string format = formatted ? path_in(data.directory, data.formatFile) : "";
  return table.CreateCatalogFile(data.filters, separator, place.directory, place.file,
                                 formatted ? format.c_str() : nullptr);
}

int save_catalog(const char* layer, const ExportData& data, int type, const CatalogPlace& place) {
  return with_table({.layer = layer}, data.table, [&](TBaseTable& table) {
    int status = check_export(layer, table, data);
    if (status >= 0) status = check_catalog(layer, data, type, place);
    if (status < 0) return status;
    const char separator = type == QX_EXPORT_TAB ? kTab : kComma;
    status = create_catalog(table, data, separator, place);
    return status < 0 ? status : export_data(data, separator);
  });
}

}  // namespace

int CDBParallelTask::Export(int table, int set, const int* filters, int from, int to,
                            char separator, char dateSeparator, const char* directory,
                            const char* file) {
  return export_rows(layer_of(separator, "RQXExportAsCSV", "RQXExportAsTAB"),
                     {table, set, filters, from, to, dateSeparator, directory, file, nullptr},
                     separator);
}

int CDBParallelTask::ExportWithF(int table, int set, const int* filters, int from, int to,
                                 char separator, char dateSeparator, const char* directory,
                                 const char* file, const char* formatFile) {
  return export_rows(layer_of(separator, "RQXExportAsCSVwithF", "RQXExportAsTABwithF"),
                     {table, set, filters, from, to, dateSeparator, directory, file, formatFile},
                     separator);
}

int CDBParallelTask::SaveAsCatalog(int table, int set, const int* filters, int type, int from,
                                   int to, char dateSeparator, const char* directory,
                                   const char* file) {
  return save_catalog("RQXSaveAsCatalog",
                      {table, set, filters, from, to, dateSeparator, directory, kDataFile, nullptr},
                      type, {directory, file});
}

int CDBParallelTask::SaveAsCatalogEx(int table, int set, const int* filters, int type, int from,
                                     int to, char dateSeparator, const char* directory,
                                     const char* file, const char* catalogDirectory,
                                     const char* catalogFile) {
  return save_catalog("RQXSaveAsCatalogEx",
                      {table, set, filters, from, to, dateSeparator, directory, file, nullptr},
                      type, {catalogDirectory, catalogFile});
}

int CDBParallelTask::SaveAsCatalogwithF(int table, int set, const int* filters, int type, int from,
                                        int to, char dateSeparator, const char* directory,
                                        const char* file, const char* formatFile) {
  return save_catalog(
      "RQXSaveAsCatalogwithF",
      {table, set, filters, from, to, dateSeparator, directory, kDataFile, formatFile}, type,
      {directory, file});
}

int CDBParallelTask::SaveAsCatalogwithFEx(int table, int set, const int* filters, int type,
                                          int from, int to, char dateSeparator,
                                          const char* directory, const char* file,
                                          const char* catalogDirectory, const char* catalogFile,
                                          const char* formatFile) {
  return save_catalog("RQXSaveAsCatalogwithFEx",
                      {table, set, filters, from, to, dateSeparator, directory, file, formatFile},
                      type, {catalogDirectory, catalogFile});
}

}  // namespace qxe
