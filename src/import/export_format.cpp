#include "import/export_format.h"

#include <string.h>

#include <algorithm>
#include <string>

#include "frame/base/error_ring.h"
#include "import/round_mode_names.h"
#include "persist/zvk_fstream.h"
#include "storage/strings.h"

namespace qxe {

namespace {

constexpr int kParts = 3;
constexpr int kMaxDecimals = 15;
constexpr int kMaxScale = 38;

/// The next line without its line feed, whatever its length. False at the end of the file.
bool read_line(zvk_fstream& stream, std::string* line) {
  char piece[1024];
  line->clear();
  while (stream.gets(piece, sizeof piece) != nullptr) {
    line->append(piece);
    if (line->back() == '\n') {
      line->pop_back();
      return true;
    }
  }
  return !line->empty();
}

/// Takes the comment and all spaces and carriage returns out of a line.
void clean(std::string* line) {
  const size_t comment = line->find("//");
  if (comment != std::string::npos) line->erase(comment);
  line->erase(
      std::remove_if(line->begin(), line->end(), [](char c) { return c == ' ' || c == '\r'; }),
      line->end());
}

/// Splits at tabs into exactly three parts that are not empty; tabs may follow.
bool DissolveLine2(std::string line, std::string (&parts)[kParts]) {
  while (!line.empty() && line.back() == '\t') line.pop_back();
  size_t begin = 0;
  for (int i = 0; i < kParts; ++i) {
    const size_t end = line.find('\t', begin);
    if ((end == std::string::npos) != (i == kParts - 1)) return false;
    parts[i] = line.substr(begin, end - begin);
    if (parts[i].empty()) return false;
    begin = end + 1;
  }
  return true;
}

bool parse_format(const std::string& line, EXPTFMT_t* format) {
  std::string parts[kParts];
  if (!DissolveLine2(line, parts)) return false;
  qxe_strlcpy(format->name, parts[0].c_str(), sizeof format->name);
  bool bad = false;
  format->decimals = Str2Int(parts[1].c_str(), true, &bad);
  format->rounding = TransNumericRoundType(parts[2].c_str());
  if (bad) return false;
  if (format->decimals >= 0) return format->rounding >= 0;
  format->decimals = -1;  // the column stays as it is, so no mode is needed
  format->rounding = -1;
  return true;
}

}  // namespace

int readFmtInfo(const char* path, ExportFormats* list) {
  zvk_fstream stream;
  if (stream.open(path, kModeRead, true) != 0) {
    return report("readFmtInfo", QX_ERROR_FILE, "Failed to open (%s)", path);
  }
  std::string line;
  while (read_line(stream, &line)) {
    clean(&line);
    if (line.empty()) continue;
    if (!parse_format(line, &list->emplace_back())) {
      return report("readFmtInfo", QX_ERROR_CATALOG, "Illegal format (%s)", line.c_str());
    }
  }
  if (!stream.eof()) return report("readFmtInfo", QX_ERROR_FILE, "Failed to read (%s)", path);
  return 0;
}

const EXPTFMT_t* find_format(const ExportFormats& list, const char* name) {
  const auto found = std::find_if(list.rbegin(), list.rend(), [&](const EXPTFMT_t& format) {
    return strcmp(format.name, name) == 0;
  });
  return found == list.rend() ? nullptr : &*found;
}

int exported_decimals(int own, const EXPTFMT_t* format) {
  if (format == nullptr || format->decimals < 0 || format->decimals > kMaxDecimals) return own;
  return format->decimals;
}

NumericInfo exported_info(const NumericInfo& own, const EXPTFMT_t* format) {
  if (format == nullptr || format->decimals < 0 || format->decimals > kMaxScale) return own;
  return {format->decimals, format->rounding};
}

}  // namespace qxe
