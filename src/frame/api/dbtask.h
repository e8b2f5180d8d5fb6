// The task object: the operations that an exported function runs on the worker pool. It shares the
// serial layer's shape; its layer names are the exported ones.
#pragma once

#include "frame/base/memory.h"
#include "tables/derived_tables.h"

namespace qxe {

struct JoinRequest;
struct NonCubeRequest;

/// Virtual operations stand in the fixed order of the class; an operation joins at its place when
/// it is built.
class CDBTask : NonCopyable {
 public:
  virtual ~CDBTask() = default;

  virtual int AddJoinTable(const JoinRequest& request) = 0;
  virtual int ExtractRealTable(const char* name, int table, int set, const int* filters) = 0;
  virtual int ExtractRealTableEx(const char* name, int table, int set,
                                 const ExtractedColumns& columns) = 0;
  virtual int CombineRealTable(const char* name, const CombineIds& first,
                               const CombineIds& second) = 0;
  virtual int CombineRealTableEx(const char* name, CombinePseudo pseudo, const CombineIds& first,
                                 const CombineIds& second) = 0;
  virtual int SetNotReal(int table, int set) = 0;
  virtual int SetOpeReal(int table, int op, int set1, int set2) = 0;
  virtual int DuplicateRealTable(const char* name, int table) = 0;
  virtual int DupRealFilterEx(int table, int filter, int type) = 0;
  virtual int OverwriteRealEx(int table, int filter, int set, int start, int count, void* data) = 0;
  virtual int FillRealEx(int table, int filter, int set, int start, int count, void* value) = 0;
  virtual int SearchByField(int table, int filter, int set, int ope, const char* value1,
                            const char* value2) = 0;
  virtual int SearchByFieldWildCard(int table, int filter, int set, const char* pattern) = 0;
  virtual int ServiceSortByN(int n, const int* counts, int* nonZero, int* nonZeroIndex,
                             int* order) = 0;
  virtual int SortByField(int table, int filter, int set, int dir) = 0;
  virtual int Export(int table, int set, const int* filters, int from, int to, char separator,
                     char dateSeparator, const char* directory, const char* file) = 0;
  virtual int ExportWithF(int table, int set, const int* filters, int from, int to, char separator,
                          char dateSeparator, const char* directory, const char* file,
                          const char* formatFile) = 0;
  virtual int SaveAsCatalog(int table, int set, const int* filters, int type, int from, int to,
                            char dateSeparator, const char* directory, const char* file) = 0;
  virtual int SaveAsCatalogEx(int table, int set, const int* filters, int type, int from, int to,
                              char dateSeparator, const char* directory, const char* file,
                              const char* catalogDirectory, const char* catalogFile) = 0;
  virtual int SaveAsCatalogwithF(int table, int set, const int* filters, int type, int from, int to,
                                 char dateSeparator, const char* directory, const char* file,
                                 const char* formatFile) = 0;
  virtual int SaveAsCatalogwithFEx(int table, int set, const int* filters, int type, int from,
                                   int to, char dateSeparator, const char* directory,
                                   const char* file, const char* catalogDirectory,
                                   const char* catalogFile, const char* formatFile) = 0;
  virtual int AddCatalogFile(const char* directory, const char* catalog) = 0;
  virtual int AddCatalogFileEx2(const char* catalogDirectory, const char* catalog,
                                const char* dataDirectory, const char* dataFile,
                                const char* tableName) = 0;
  virtual int CondenseRealTable(int table) = 0;
  virtual int IntegratedSortByField(int table, int set, const int* filters, const int* dirs) = 0;
  virtual int AppendCatalogFile(int table, int rowPos, int rowCount, const char* directory,
                                const char* catalog) = 0;
  virtual int AppendCatalogFileEx2(int table, int rowPos, int rowCount,
                                   const char* catalogDirectory, const char* catalog,
                                   const char* dataDirectory, const char* dataFile) = 0;
  virtual int SearchByFieldNValues(int table, int filter, int set, int count,
                                   const void* values) = 0;
  virtual int NonCubeSum(int table, const NonCubeRequest& request) = 0;

  /// Searches for the values in a text file.
  int SearchByFieldNValuesFromCSV(int table, int filter, int set, const char* directory,
                                  const char* file);
  /// Takes the oldest failure out of the ring: 1, or 0 when there is none.
  int GetErrorLog(int* time, char* apiName, int* code, char* message);
  /// Fraction of the day of a text that must be a time as a whole.
  int StrToTime(const char* text, double* out);
};

class CDBParallelTask : public CDBTask {
 public:
  static CDBParallelTask& Instance();

  int AddJoinTable(const JoinRequest& request) override;
  int ExtractRealTable(const char* name, int table, int set, const int* filters) override;
  int ExtractRealTableEx(const char* name, int table, int set,
                         const ExtractedColumns& columns) override;
  int CombineRealTable(const char* name, const CombineIds& first,
                       const CombineIds& second) override;
  int CombineRealTableEx(const char* name, CombinePseudo pseudo, const CombineIds& first,
                         const CombineIds& second) override;
  int SetNotReal(int table, int set) override;
  int SetOpeReal(int table, int op, int set1, int set2) override;
  int DuplicateRealTable(const char* name, int table) override;
  int DupRealFilterEx(int table, int filter, int type) override;
  int OverwriteRealEx(int table, int filter, int set, int start, int count, void* data) override;
  int FillRealEx(int table, int filter, int set, int start, int count, void* value) override;
  int SearchByField(int table, int filter, int set, int ope, const char* value1,
                    const char* value2) override;
  int SearchByFieldWildCard(int table, int filter, int set, const char* pattern) override;
  int ServiceSortByN(int n, const int* counts, int* nonZero, int* nonZeroIndex,
                     int* order) override;
  int SortByField(int table, int filter, int set, int dir) override;
  int Export(int table, int set, const int* filters, int from, int to, char separator,
             char dateSeparator, const char* directory, const char* file) override;
  int ExportWithF(int table, int set, const int* filters, int from, int to, char separator,
                  char dateSeparator, const char* directory, const char* file,
                  const char* formatFile) override;
  int SaveAsCatalog(int table, int set, const int* filters, int type, int from, int to,
                    char dateSeparator, const char* directory, const char* file) override;
  int SaveAsCatalogEx(int table, int set, const int* filters, int type, int from, int to,
                      char dateSeparator, const char* directory, const char* file,
                      const char* catalogDirectory, const char* catalogFile) override;
  int SaveAsCatalogwithF(int table, int set, const int* filters, int type, int from, int to,
                         char dateSeparator, const char* directory, const char* file,
                         const char* formatFile) override;
  int SaveAsCatalogwithFEx(int table, int set, const int* filters, int type, int from, int to,
                           char dateSeparator, const char* directory, const char* file,
                           const char* catalogDirectory, const char* catalogFile,
                           const char* formatFile) override;
  int AddCatalogFile(const char* directory, const char* catalog) override;
  int AddCatalogFileEx2(const char* catalogDirectory, const char* catalog,
                        const char* dataDirectory, const char* dataFile,
                        const char* tableName) override;
  int CondenseRealTable(int table) override;
  int IntegratedSortByField(int table, int set, const int* filters, const int* dirs) override;
  int AppendCatalogFile(int table, int rowPos, int rowCount, const char* directory,
                        const char* catalog) override;
  int AppendCatalogFileEx2(int table, int rowPos, int rowCount, const char* catalogDirectory,
                           const char* catalog, const char* dataDirectory,
                           const char* dataFile) override;
  int SearchByFieldNValues(int table, int filter, int set, int count, const void* values) override;
  int NonCubeSum(int table, const NonCubeRequest& request) override;

 private:
  CDBParallelTask() = default;
};

/// Set while the library loads.
extern CDBParallelTask* MPTask;

inline CDBTask* DBTASK() {
  return MPTask;
}

}  // namespace qxe
