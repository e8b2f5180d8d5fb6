#include "import/binary_strings.h"

#include <algorithm>

#include "import/source_file.h"
#include "search/compiler.h"

namespace qxe {

namespace {

constexpr long kLengthSize = 4;

long text_length(const char* record) {
  uint32_t length;
  memcpy(&length, record, sizeof length);
  return __builtin_bswap32(length);
}

/// Terminates the texts, the last one behind the bytes, of up to `rows` records in place and stores
/// where they begin; returns their number.
int find_texts(char* bytes, long size, int rows, const char** texts) {
  long place = 0;
  int count = 0;
  for (; count < rows && (place < size || count == 0); ++count) {
    const bool has_length = size - place >= kLengthSize;
    const long length = has_length ? text_length(bytes + place) : 0;
    if (!has_length || length > size - place - kLengthSize) {
      throw CQXException(QX_ERROR_CATALOG, "Failed to parse catalog");
    }
    bytes[place] = '\0';  // ends the text of the record before
    texts[count] = bytes + place + kLengthSize;
    place += kLengthSize + length;
  }
  bytes[place] = '\0';
  return count;
}

}  // namespace

Column parse_bin(const std::string& file, int rows) {
  const FileText text = open_logged(file).read_all();
  const long most = std::min<long>(rows, text.size / kLengthSize);
  const Block<const char*> texts = make_block<const char*>(most);
  const int count = find_texts(text.bytes.get(), text.size, rows, texts.get());
  return compile_column(QX_DT_STRING, count, rows, texts.get(), true);
}

}  // namespace qxe
