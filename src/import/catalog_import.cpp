#include "import/catalog_import.h"

#include <new>

#include "import/catalog_text.h"
#include "import/multithread_import.h"
#include "import/row_append.h"
#include "parallel/smpengine.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr const char* kDataFile = "SrcData.dat";

/// The directory from the root. Nothing is opened by a relative name, so the working directory of
/// the process stays.
std::string reached_directory(const char* directory, const char* argument) {
  std::string path = CnvRelativeToAbsolute(directory);
  if (!is_reachable_directory(path)) refuse_argument(argument);
  return path;
}

std::string name_from_catalog(const char* catalog) {
  std::string title = getTitleName(catalog);
  if (title.size() > CCatalogParser::kMaxNameSize) {
    LogMsg("ADD TABLE FAILED \t\t----->\t = %s\t QX_ERROR_ILLEGAL_TABLE_NAME", title.c_str());
    throw CQXException(QX_ERROR_TABLE_NAME, "Illegal table name  : %s", title.c_str());
  }
  return title;
}

const char* text_of_status(int status) {
  switch (status) {
    case QX_ERROR_INVALID_DATA: return "Invalid Data";
    case QX_ERROR_CATALOG: return "Failed to parse catalog";
    case QX_ERROR_TEXT_FIELD: return "DataSize overflow";
    case QX_ERROR_TEXT_ROWS: return "RowSize overflow";
    case QX_ERROR_OUT_OF_MEMORY: return "Out of memory";
    default: return "";
  }
}

/// Throws a failure on with a text, after a last line in the log when it has lines of this import.
[[noreturn]] void give_up(const CQXException& failure) {
  const int status = failure.ErrorCode();
  const bool log_is_open = !CErrorLog::isBegin;
  if (log_is_open && status == QX_ERROR_OUT_OF_MEMORY) {
    LogMsg("ADD CATALOG FAILURE  \t\t ErrorCode = QX_ERROR_OUT_OF_MEMORY");
  } else if (log_is_open) {
    LogMsg("ADD CATALOG FAILURE  \t\t ErrorCode = %d ", status);
  }
  const bool told = *failure.Message() != '\0';
  throw CQXException(status, "%s", told ? failure.Message() : text_of_status(status));
}

/// Runs an import and sees to the log when it fails.
template <class Import>
int logged_import(Import&& import) {
  const FreeBlocksKeeper keeper;
  try {
    return import();
  } catch (const CQXException& failure) {
    give_up(failure);
  } catch (const std::bad_alloc&) {
    give_up(CQXException(QX_ERROR_OUT_OF_MEMORY));
  }
}

/// An import of "SrcData.dat" beside its catalog: `import(parser, catalog path, data path)`.
template <class Import>
int import_beside(const char* directory, const char* catalog, Import&& import) {
  check_path(directory, "pchFilePath");
  check_file_name(catalog, "pchFileName");
  const std::string path = reached_directory(directory, "pchFilePath");
  CCatalogParser parser(path);
  parser.init();
  return logged_import([&] {
    return import(parser, build_AbsoluteName(path, catalog), build_AbsoluteName(path, kDataFile));
  });
}

/// The same with the data file told.
template <class Import>
int import_from(const char* catalogDir, const char* catalog, const char* dataDir,
                const char* dataFile, Import&& import) {
  check_path(catalogDir, "archPath");
  check_file_name(catalog, "archName");
  check_path(dataDir, "FilePath");
  check_file_name(dataFile, "FileName");
  const std::string path = reached_directory(catalogDir, "archPath");
  const std::string data_path = CnvRelativeToAbsolute(dataDir);
  CCatalogParser parser(path);
  parser.init();
  return logged_import([&] {
    if (!is_reachable_directory(data_path)) {
      LogMsg("PATH  [%s] MISSING", data_path.c_str());
      refuse_argument("FilePath");
    }
    return import(parser, build_AbsoluteName(path, catalog),
                  build_AbsoluteName(data_path, dataFile));
  });
}

int add_table(const CCatalogParser& parser, const std::string& data_file, const char* name) {
  return CCMultiThreadImport(parser.layout()).MppImport(data_file, name);
}

/// The import of an append.
auto append_to(TRealTable& table, RowAppend& append) {
  return [&](CCatalogParser& parser, const std::string& catalog, const std::string& data) {
    parser.readInfo(catalog);
    parser.verifyItems(table);
    return CCMultiThreadImport(parser.layout()).MppAppend(data, table, append);
  };
}

}  // namespace

int add_catalog_file(const char* directory, const char* catalog) {
  return import_beside(
      directory, catalog,
      [&](CCatalogParser& parser, const std::string& path, const std::string& data) {
        parser.readInfo(path);
        return add_table(parser, data, name_from_catalog(catalog).c_str());
      });
}

int add_catalog_file_ex2(const char* catalogDir, const char* catalog, const char* dataDir,
                         const char* dataFile, const char* tableName) {
  return import_from(
      catalogDir, catalog, dataDir, dataFile,
      [&](CCatalogParser& parser, const std::string& path, const std::string& data) {
        raised(ENG->collection()->CheckTableName(tableName == nullptr ? "" : tableName));
        parser.readInfo(path);
        return add_table(parser, data, tableName);
      });
}

int append_catalog_file(TRealTable& table, int rowPos, int rowCount, const char* directory,
                        const char* catalog) {
  RowAppend append(table, rowPos, rowCount);
  return import_beside(directory, catalog, append_to(table, append));
}

int append_catalog_file_ex2(TRealTable& table, int rowPos, int rowCount, const char* catalogDir,
                            const char* catalog, const char* dataDir, const char* dataFile) {
  RowAppend append(table, rowPos, rowCount);
  return import_from(catalogDir, catalog, dataDir, dataFile, append_to(table, append));
}

}  // namespace qxe
