// Small text rules of imports: tokens and quotes, names of rounding modes, files and directories.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qxe {

/// Drops every space and carriage return: no name or value of a catalog can hold one.
std::string removeSpaceCR(std::string_view line);
/// The words between tabs; two tabs in a row give an empty one.
std::vector<std::string> get_TabSepToken(std::string_view line);
/// Text without the quotes that enclose the whole of it.
std::string_view removeQuotes(std::string_view text);
/// Comparison in any case of plain letters.
bool same_word(std::string_view left, std::string_view right);
/// Code of a rounding mode's name in any case, or QX_NULL_INT.
int TransNumericRoundType(std::string_view name);

/// File name without directory and last extension.
std::string getTitleName(std::string_view path);
/// The directory from the root; an empty one is the working directory.
std::string CnvRelativeToAbsolute(std::string_view directory);
/// Path of a file in a directory.
std::string build_AbsoluteName(std::string_view directory, std::string_view name);
/// Whether there is such a directory and it can be entered.
bool is_reachable_directory(const std::string& directory);

// The arguments of calls. A failure throws QX_ERROR_FILE and names the argument.
[[noreturn]] void refuse_argument(const char* argument);
/// A directory or file name of at most 511 bytes; null is none.
void check_path(const char* path, const char* argument);
/// A path that is not empty.
void check_file_name(const char* name, const char* argument);

}  // namespace qxe
