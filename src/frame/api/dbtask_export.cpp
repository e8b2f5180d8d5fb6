// The task object's exports: rows to a text file, with or without a catalog beside it.
#include "frame/api/dbtask.h"
#include "frame/api/serial_layer.h"
#include "import/catalog_text.h"
#include "import/mtexport.h"
#include "import/output_path.h"

namespace qxe {

namespace {

constexpr char kComma = ',';
constexpr char kTab = '\t';
constexpr char kDataFile[] = "SrcData.dat";  // what the import of a catalog reads by default

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

int export_data(const ExportData& data, char separator) {
  return MppCsvExport(data.table, data.set, data.filters, data.from, data.to, separator,
                      data.dateSeparator, data.directory, data.file, data.formatFile);
}

/// `csv` and `tab` are the layer names of the two forms.
int export_rows(const char* csv, const char* tab, const ExportData& data, char separator) {
  return with_table({.layer = separator == kTab ? tab : csv}, data.table,
                    [&](TBaseTable&) { return export_data(data, separator); });
}

int check_catalog(const char* layer, TBaseTable& table, const ExportData& data, int type) {
  if (data.from < -1 || data.to < -1 || (data.from > data.to && data.to != -1)) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : RowFrom(%d) RowTo(%d)", data.from,
                  data.to);
  }
  if (data.set < -1 || table.GetSet(data.set) == nullptr) {
    return report(layer, QX_ERROR_NO_SET, "No Such Set: %d ", data.set);
  }
  if (type != QX_EXPORT_COMMA && type != QX_EXPORT_TAB) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : type(%d)", type);
  }
  return check_output(layer, data.directory, data.file);
}

/// Writes the catalog. A relative format file counts from the data's directory here too.
int write_catalog(TBaseTable& table, const ExportData& data, char separator,
                  const CatalogPlace& place) {
  std::string format;
  if (data.formatFile != nullptr) {
    format = CnvRelativeToAbsolute(path_in(data.directory, data.formatFile));
  }
  return table.CreateCatalogFile(data.filters, separator, place.directory, place.file,
                                 data.formatFile == nullptr ? nullptr : format.c_str());
}

int save_catalog(const char* layer, const ExportData& data, int type, const CatalogPlace& place) {
  return with_table({.layer = layer}, data.table, [&](TBaseTable& table) {
    int status = check_catalog(layer, table, data, type);
    if (status < 0) return status;
    const char separator = type == QX_EXPORT_TAB ? kTab : kComma;
    status = write_catalog(table, data, separator, place);
    return status < 0 ? status : export_data(data, separator);
  });
}

}  // namespace

int CDBParallelTask::Export(int table, int set, const int* filters, int from, int to,
                            char separator, char dateSeparator, const char* directory,
                            const char* file) {
  return export_rows("RQXExportAsCSV", "RQXExportAsTAB",
                     {table, set, filters, from, to, dateSeparator, directory, file, nullptr},
                     separator);
}

int CDBParallelTask::ExportWithF(int table, int set, const int* filters, int from, int to,
                                 char separator, char dateSeparator, const char* directory,
                                 const char* file, const char* formatFile) {
  return export_rows("RQXExportAsCSVwithF", "RQXExportAsTABwithF",
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
