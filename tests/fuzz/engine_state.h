// What an engine call leaves behind, as text that can be compared.
#pragma once

#include <string>

namespace qxe {
class TRealTable;
}

namespace qxe::test {

/// Ends the process, and so the fuzzing, with a report.
[[noreturn]] void finding(const std::string& what, const std::string& detail);

/// `text` with bytes that do not print as escapes.
std::string printable(const std::string& text);

TRealTable& real_table(int id);

/// The name, the columns with their value lists, and the row pointers; two equal texts mean that
/// the tables hold the same values in the same form.
std::string table_image(int id);

/// Fails unless each value list ascends from NULL on, each row's number is in it, and, in a table
/// that an import has just made, each value is in use.
void check_well_formed(int id, bool all_values_used);

/// Entries of the ring of failures, which is empty afterwards.
std::string drained_ring();

}  // namespace qxe::test
