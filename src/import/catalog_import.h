// Imports as the public functions offer them: a catalog with its data file becomes a new table, or
// rows of one. They throw the status of a failure with a text for the ring of failures.
#pragma once

namespace qxe {

class TRealTable;

/// Imports "SrcData.dat" of the catalog's directory; the table is named after the catalog. Returns
/// the new table's id; after a failure there is no table.
int add_catalog_file(const char* directory, const char* catalog);
/// The same with the data file and the table's name told.
int add_catalog_file_ex2(const char* catalogDir, const char* catalog, const char* dataDir,
                         const char* dataFile, const char* tableName);

/// Writes `rowCount` rows of "SrcData.dat" of the catalog's directory into `table` from row
/// `rowPos` on, see RowAppend. Returns `rowCount`; after a failure the table is as it was.
int append_catalog_file(TRealTable& table, int rowPos, int rowCount, const char* directory,
                        const char* catalog);
/// The same with the data file told.
int append_catalog_file_ex2(TRealTable& table, int rowPos, int rowCount, const char* catalogDir,
                            const char* catalog, const char* dataDir, const char* dataFile);

}  // namespace qxe
