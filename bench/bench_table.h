// The table that all benchmarks share.
//
// QXE_BENCH_ROWS sets the number of rows (1,000,000 if unset); the files are made once below
// QXE_BENCH_DIR (/tmp/qxe-bench if unset).
#pragma once

#include <string>

namespace qxe::bench {

int rows();
/// Where the text files and catalogs are.
const std::string& directory();
/// Where exports go: a file system in memory when there is one.
const std::string& output_directory();

/// A status of 0 or above, or an exception with the oldest entry of the ring.
int require(int status);
/// Imports a table by its name; returns its id.
int import_table(const char* name);

/// The sales table, imported by whoever needs it first.
int sales();
int filter(const char* name);
int root_set();

}  // namespace qxe::bench
