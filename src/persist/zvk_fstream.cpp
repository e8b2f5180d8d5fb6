#include "persist/zvk_fstream.h"

#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <bit>

#include "frame/base/error_ring.h"
#include "storage/charcode.h"

namespace qxe {

namespace {

constexpr bool kBigEndian = std::endian::native == std::endian::big;
constexpr unsigned char kHeaderMarker = 0xff;
constexpr long kMaxAlignment = 64;
// Larger writes go out in pieces, as many systems refuse to write 2 GiB at once.
constexpr long kLargeWrite = 0x80000000;
constexpr long kPiece = 0x7fffffff;

struct ModeWords {
  int bit;
  const char* text;
  const char* binary;
};

// In the order in which the bits are looked at.
constexpr ModeWords kModes[] = {{kModeWrite, "w", "wb+"},
                                {kModeRead, "r", "rb"},
                                {kModeAppend, "a", "ab+"},
                                {kModeUpdate, "r+", "rb+"}};

bool write_all(FILE* file, const void* data, long n) {
  return fwrite(data, 1, static_cast<size_t>(n), file) == static_cast<size_t>(n);
}

void write_pieces(FILE* file, const char* data, long n) {
  for (long done = 0; done < n; done += kPiece)
    write_all(file, data + done, std::min(kPiece, n - done));
}

[[noreturn]] void close_and_throw(zvk_fstream& stream, int code) {
  stream.close();
  throw CQXException(code);
}

}  // namespace

int getSystemELF() {
  return sizeof(void*) == 8 ? 2 : 1;
}

int getSystemEndian() {
  return kBigEndian ? 8 : 4;
}

int getSystemAddrAlignment() {
  return 8;
}

int getSystemOSTYPE() {
  return 48;
}

bool is_stream_header(const unsigned char* header) {
  return header[0] == kHeaderMarker;
}

StreamDescription describe_stream(const unsigned char* header) {
  return {.ELF = header[1] & 0x03,
          .Endian = header[1] & 0x0c,
          .AddrAlignment = header[3],
          .OSTYPE = header[1] & 0xf0,
          .DBCharCode = header[4]};
}

StreamDescription describe_headerless_stream() {
  return {.ELF = getSystemELF(),
          .Endian = getSystemEndian(),
          .AddrAlignment = 0,
          .OSTYPE = getSystemOSTYPE(),
          .DBCharCode = 0};
}

void flip_endian(void* data, size_t size) {
  std::reverse(static_cast<char*>(data), static_cast<char*>(data) + size);
}

void flip_elements(void* data, size_t size, long n) {
  if (size == 1) return;
  char* element = static_cast<char*>(data);
  for (long i = 0; i < n; ++i, element += size) flip_endian(element, size);
}

void resize_elements(void* to, size_t toSize, const void* from, size_t fromSize, long n) {
  const size_t kept = std::min(toSize, fromSize);
  const size_t skipped = kBigEndian ? fromSize - kept : 0;
  const size_t filled = kBigEndian ? toSize - kept : 0;
  char* target = static_cast<char*>(to);
  const char* source = static_cast<const char*>(from);
  for (long i = 0; i < n; ++i, target += toSize, source += fromSize) {
    memset(target, 0, toSize);
    memcpy(target + filled, source + skipped, kept);
  }
}

char* adjust_addr_alignment(char* address) {
  return address + field_padding(static_cast<long>(reinterpret_cast<intptr_t>(address)));
}

int zvk_fstream::open(const char* name, int mode, bool noAlign) {
  file_.reset();
  no_align_ = noAlign;
  for (const ModeWords& words : kModes) {
    if ((mode & words.bit) == 0) continue;
    file_.reset(fopen(name, (mode & kModeBinary) != 0 ? words.binary : words.text));
  }
  return is_open() ? 0 : -1;
}

int zvk_fstream::open(const char* name, const char* mode, bool noAlign) {
  constexpr size_t kLongestMode = 5;
  file_.reset();
  no_align_ = noAlign;
  if (strlen(mode) <= kLongestMode) file_.reset(fopen(name, mode));
  return is_open() ? 0 : -1;
}

int zvk_fstream::close() {
  if (!is_open()) return 0;
  const bool lost = ferror(file_.get()) != 0;
  const bool failed = fclose(file_.release()) != 0;
  return lost || failed ? -1 : 0;
}

int zvk_fstream::flush() {
  return is_open() && fflush(file_.get()) == 0 ? 0 : -1;
}

int zvk_fstream::read(void* data, long n) {
  if (!is_open() || n < 0) return -1;
  const auto wanted = static_cast<size_t>(n);
  return fread(data, 1, wanted, file_.get()) == wanted ? 0 : -1;
}

int zvk_fstream::read(void* data, size_t size, long n) {
  if (!is_open() || n < 0) return -1;
  // A field of no bytes was written without padding, so it is read without.
  if (size == 0 || n == 0) return 0;
  if (!no_align_ && adjust_read_addr_alignment() != 0) return -1;
  if (read(data, static_cast<long>(size) * n) != 0) return -1;
  const bool foreign = description_.Endian != 0 && description_.Endian != getSystemEndian();
  if (foreign && !no_align_) flip_elements(data, size, n);
  return 0;
}

int zvk_fstream::write(const void* data, size_t size, long n) {
  if (size == 0 || n == 0) return 0;
  if (!is_open() || n < 0) return -1;
  if (!no_align_ && adjust_write_addr_alignment() != 0) return -1;
  const long bytes = static_cast<long>(size) * n;
  if (bytes < kLargeWrite) return write_all(file_.get(), data, bytes) ? 0 : -1;
  write_pieces(file_.get(), static_cast<const char*>(data), bytes);
  return 0;
}

char* zvk_fstream::gets(char* line, int n) {
  return is_open() ? fgets(line, n, file_.get()) : nullptr;
}

int zvk_fstream::set_vbuf(char* buffer, long n) {
  if (!is_open() || n < 0) return -1;
  return setvbuf(file_.get(), buffer, _IOFBF, static_cast<size_t>(n)) == 0 ? 0 : -1;
}

int zvk_fstream::seekg(long offset, int whence) {
  return is_open() && fseek(file_.get(), offset, whence) == 0 ? 0 : -1;
}

long zvk_fstream::tellg() const {
  return is_open() ? ftell(file_.get()) : -1;
}

bool zvk_fstream::eof() const {
  return !is_open() || feof(file_.get()) != 0;
}

int zvk_fstream::adjust_write_addr_alignment() {
  static constexpr char kZeros[8] = {};
  const long position = tellg();
  if (position < 0) return -1;
  return write_all(file_.get(), kZeros, field_padding(position)) ? 0 : -1;
}

int zvk_fstream::adjust_read_addr_alignment() {
  if (!is_open()) return -1;
  if (description_.AddrAlignment == 0) return 0;
  const long position = tellg();
  if (position < 0) return -1;
  char skipped[kMaxAlignment];
  return read(skipped, std::min(position % description_.AddrAlignment, kMaxAlignment));
}

int zvk_fstream::seek_addr_alignment() {
  if (!is_open()) return 0;
  const long position = tellg();
  return position < 0 ? -1 : seekg(field_padding(position), SEEK_CUR);
}

int zvk_fstream::readFileHeader(bool checkCode) {
  const long start = tellg();
  unsigned char header[kStreamHeaderSize] = {};
  const size_t got = is_open() ? fread(header, 1, sizeof header, file_.get()) : 0;
  if (got == 0) close_and_throw(*this, QX_ERROR_FILE);
  if (!is_stream_header(header)) {
    description_ = describe_headerless_stream();
    if (seekg(start, SEEK_SET) != 0) close_and_throw(*this, QX_ERROR_FILE);
    return 0;
  }
  if (got < sizeof header) close_and_throw(*this, QX_ERROR_FILE);
  description_ = describe_stream(header);
  if (checkCode) check_char_code();
  return 0;
}

void zvk_fstream::check_char_code() {
  char text[32];
  const int code = description_.DBCharCode != 0 ? description_.DBCharCode : getOSCharCode(text);
  if (code != getSystemInfoDBCharCode()) close_and_throw(*this, QX_ERROR_CHAR_CODE);
}

int zvk_fstream::writeFileHeader() {
  return writeFileHeader(QxeSysInfo);
}

int zvk_fstream::writeFileHeader(const unsigned char* header) {
  return write(header, kStreamHeaderSize);
}

void zvk_open(zvk_fstream& stream, const char* name, int mode, bool noAlign) {
  if (stream.open(name, mode, noAlign) == 0) return;
  throw CQXException(report("zvk_open", QX_ERROR_FILE, "Illegal FileName"));
}

void zvk_open(zvk_fstream& stream, const char* name, const char* mode, bool noAlign) {
  if (stream.open(name, mode, noAlign) != 0) throw CQXException(QX_ERROR_FILE);
}

void zvk_read(zvk_fstream& stream, void* data, size_t size, long n) {
  if (stream.read(data, size, n) != 0) close_and_throw(stream, QX_ERROR_FILE);
}

void zvk_read(zvk_fstream& stream, void* data, size_t size, long n, size_t destSize) {
  const Block<char> elements = make_block<char>(static_cast<long>(size) * std::max(n, 0L));
  zvk_read(stream, elements.get(), size, n);
  resize_elements(data, destSize, elements.get(), size, n);
}

void zvk_write(zvk_fstream& stream, const void* data, size_t size, long n) {
  if (stream.write(data, size, n) != 0) close_and_throw(stream, QX_ERROR_FILE);
}

int zvk_setvbuf(zvk_fstream& stream, char* buffer, long n) {
  return stream.set_vbuf(buffer, n);
}

char* zvk_gets(zvk_fstream& stream, char* line, int n) {
  return stream.gets(line, n);
}

void zvk_close(zvk_fstream& stream) {
  if (stream.close() != 0) throw CQXException(QX_ERROR_FILE);
}

}  // namespace qxe
