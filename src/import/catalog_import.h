// Imports as the public functions offer them: a catalog with its data file as a new table, and a
// text file of one column as a new filter. They throw the status of a failure with a text for the
// ring of failures.
#pragma once

#include "qxe.h"

namespace qxe {

class TRealTable;

/// Imports "SrcData.dat" of the catalog's directory; the table is named after the catalog. Returns
/// the new table's id; after a failure there is no table.
int add_catalog_file(const char* directory, const char* catalog);
/// The same with the data file and the table's name told.
int add_catalog_file_ex2(const char* catalogDir, const char* catalog, const char* dataDir,
                         const char* dataFile, const char* tableName);

/// Adds a filter at display position `position` from a text file, one value a line. At most `rows`
/// lines count, and no more than the table has rows; rows without a line are NULL. `info` is that
/// of a decimal column. Returns the filter's id.
int addFilterFromFile(TRealTable& table, int position, const char* name, int type, int rows,
                      const char* directory, const char* file, const NumericInfo& info);

}  // namespace qxe
