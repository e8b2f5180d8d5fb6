// The one file stream of the engine, over a buffered system stream. It knows the stream header that
// begins every binary file, keeps binary fields at aligned positions, and translates values written
// by a machine of another byte order or word size.
#pragma once

#include <stddef.h>
#include <stdio.h>

#include <memory>

#include "frame/base/memory.h"

namespace qxe {

/// Bits of an open mode, and the three modes of binary files.
enum OpenMode {
  kModeRead = 1,
  kModeWrite = 2,  // creates or empties the file
  kModeAppend = 8,
  kModeBinary = 128,
  kModeUpdate = 256,  // reads and writes inside an existing file
  kBinaryRead = 161,
  kBinaryWrite = 130,
  kBinaryUpdate = 384
};

/// What the running engine writes into a stream header.
int getSystemELF();            // word class: 1 is 32-bit, 2 is 64-bit
int getSystemEndian();         // byte order: 4 little-endian, 8 big-endian
int getSystemAddrAlignment();  // bytes
int getSystemOSTYPE();

constexpr long kStreamHeaderSize = 256;

/// The machine that wrote a stream; all zero while it is not known.
struct StreamDescription {
  int ELF = 0;
  int Endian = 0;
  int AddrAlignment = 0;  // 0: fields are not aligned
  int OSTYPE = 0;
  int DBCharCode = 0;
};

/// Whether 256 bytes are a stream header, and what a header says.
bool is_stream_header(const unsigned char* header);
StreamDescription describe_stream(const unsigned char* header);
/// The running engine, as the description of a stream without a header: not aligned, no code.
StreamDescription describe_headerless_stream();

/// Reverses the bytes of one element in place.
void flip_endian(void* data, size_t size);
/// Reverses the bytes of each of `n` elements; single bytes have no order and stay.
void flip_elements(void* data, size_t size, long n);
/// Copies `n` elements into elements of another size: their low bytes, filled up with zeros. No
/// sign is extended.
void resize_elements(void* to, size_t toSize, const void* from, size_t fromSize, long n);

/// Bytes to put in front of a field at `position`. It adds the remainder instead of rounding up, so
/// only positions that are multiples of 4 reach alignment; all files are laid out like this.
constexpr long field_padding(long position) {
  return position & 7;
}
/// The same rule for an address.
char* adjust_addr_alignment(char* address);

/// Results are 0 for success and -1 for failure unless said otherwise; only readFileHeader throws.
class zvk_fstream : NonCopyable {
 public:
  zvk_fstream() = default;
  zvk_fstream(const char* name, int mode, bool noAlign) { open(name, mode, noAlign); }
  zvk_fstream(const char* name, const char* mode, bool noAlign) { open(name, mode, noAlign); }

  /// Opens by bits of OpenMode. `noAlign` is for text and foreign formats: fields lie back to back
  /// and are not translated.
  int open(const char* name, int mode, bool noAlign);
  /// Opens with a mode of the system library, at most 5 characters.
  int open(const char* name, const char* mode, bool noAlign);
  /// -1 also when an earlier write was lost, so that a full device is noticed here at the latest. A
  /// closed stream gives 0.
  int close();
  bool is_open() const { return file_ != nullptr; }
  /// The system's number of the open file, for what goes past the buffer.
  int descriptor() const { return fileno(file_.get()); }
  /// Hands what is buffered to the system.
  int flush();

  /// Bytes as they are, without alignment.
  int read(void* data, long n);
  /// `n` elements of `size` bytes from the next aligned place, in the byte order of this machine.
  int read(void* data, size_t size, long n);
  int write(const void* data, long n) { return write(data, 1, n); }
  /// `n` elements of `size` bytes to the next aligned place. No bytes are no field: the position
  /// stays. From 2 GiB on a failure shows when the stream is closed.
  int write(const void* data, size_t size, long n);

  /// One line of at most `n - 1` bytes with its line feed; null at the end.
  char* gets(char* line, int n);
  /// Full buffering in the caller's buffer, which must outlive the open stream.
  int set_vbuf(char* buffer, long n);
  int seekg(long offset, int whence);
  /// Position, -1 when closed.
  long tellg() const;
  bool eof() const;

  int adjust_write_addr_alignment();
  int adjust_read_addr_alignment();
  /// Moves to the place of the next field; a closed stream stays closed.
  int seek_addr_alignment();

  /// Reads the stream header at this position. A file without one is read from here, not aligned
  /// and in this machine's byte order. Throws QX_ERROR_FILE when nothing or only half a header is
  /// there, and with `checkCode` QX_ERROR_CHAR_CODE when the file's code is not the one in force;
  /// the stream is closed then.
  int readFileHeader(bool checkCode);
  int writeFileHeader();
  int writeFileHeader(const unsigned char* header);

  /// What readFileHeader found; stays when the stream is closed.
  const StreamDescription& description() const { return description_; }

 private:
  struct Close {
    void operator()(FILE* file) const noexcept { (void)fclose(file); }
  };

  void check_char_code();

  std::unique_ptr<FILE, Close> file_;
  bool no_align_ = false;
  StreamDescription description_;
};

/// The throwing forms, which the engine's readers and writers call. A failure closes the stream and
/// throws QX_ERROR_FILE.
void zvk_open(zvk_fstream& stream, const char* name, int mode, bool noAlign);
/// Does not put an entry into the ring.
void zvk_open(zvk_fstream& stream, const char* name, const char* mode, bool noAlign);
void zvk_read(zvk_fstream& stream, void* data, size_t size, long n);
/// Reads elements of `size` bytes and stores them as elements of `destSize` bytes.
void zvk_read(zvk_fstream& stream, void* data, size_t size, long n, size_t destSize);
void zvk_write(zvk_fstream& stream, const void* data, size_t size, long n);
int zvk_setvbuf(zvk_fstream& stream, char* buffer, long n);
char* zvk_gets(zvk_fstream& stream, char* line, int n);
void zvk_close(zvk_fstream& stream);

}  // namespace qxe
