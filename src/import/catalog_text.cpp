#include "import/catalog_text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "frame/base/exception.h"

namespace qxe {

std::string removeSpaceCR(std::string_view line) {
  std::string kept(line);
  std::erase_if(kept, [](char c) { return c == ' ' || c == '\r'; });
  return kept;
}

std::vector<std::string> get_TabSepToken(std::string_view line) {
  std::vector<std::string> tokens;
  for (size_t begin = 0; begin <= line.size();) {
    const size_t end = std::min(line.find('\t', begin), line.size());
    tokens.emplace_back(line.substr(begin, end - begin));
    begin = end + 1;
  }
  return tokens;
}

std::string_view removeQuotes(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

bool same_word(std::string_view left, std::string_view right) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : +c; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return upper(a) == upper(b); });
}

int TransNumericRoundType(std::string_view name) {
  static constexpr std::string_view kNames[] = {"ROUNDUP",      "ROUNDDOWN",   "ROUNDCEILING",
                                                "ROUNDFLOOR",   "ROUNDHALFUP", "ROUNDHALFDOWN",
                                                "ROUNDHALFEVEN"};
  static_assert(QX_ROUND_UP == 0 && QX_ROUND_HALFEVEN == std::size(kNames) - 1);
  int code = 0;
  for (const std::string_view known : kNames) {
    if (same_word(name, known)) return code;
    ++code;
  }
  return QX_NULL_INT;
}

std::string getTitleName(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  return std::string(name.substr(0, name.rfind('.')));
}

std::string CnvRelativeToAbsolute(std::string_view directory) {
  if (directory.starts_with('/')) return std::string(directory);
  std::error_code fault;
  const std::string current = std::filesystem::current_path(fault);
  if (fault) throw CQXException(QX_ERROR_FILE, "Failed to get path ( result getcwd )");
  return directory.empty() ? current : build_AbsoluteName(current, directory);
}

std::string build_AbsoluteName(std::string_view directory, std::string_view name) {
  std::string path(directory);
  if (!path.ends_with('/')) path += '/';
  return path.append(name);
}

bool is_reachable_directory(const std::string& directory) {
  struct stat info;
  return stat(directory.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
         faccessat(AT_FDCWD, directory.c_str(), X_OK, AT_EACCESS) == 0;
}

void refuse_argument(const char* argument) {
  throw CQXException(QX_ERROR_FILE, "Invalid Parameter : %s", argument);
}

void check_path(const char* path, const char* argument) {
  constexpr size_t kMaxPath = 511;
  if (path == nullptr || strlen(path) > kMaxPath) refuse_argument(argument);
}

void check_file_name(const char* name, const char* argument) {
  check_path(name, argument);
  if (*name == '\0') refuse_argument(argument);
}

}  // namespace qxe
