// The whole database as text, read through the public interface.
#pragma once

#include <string>

namespace qxe::test {

/// Tables, filters and their values, sets and their rows, the saved flags and the working
/// directory. Two equal texts mean that nothing a client can see has changed.
std::string database_text();
/// One table without ids.
std::string table_text(int table);

}  // namespace qxe::test
