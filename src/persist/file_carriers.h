// Sections in files. Small fields go through the stream's buffer; the elements of large arrays past
// it, straight between memory and file.
#pragma once

#include <string>

#include "persist/section_carrier.h"

namespace qxe {

class BulkTransfer;

class FileWriter final : public SectionWriter {
 public:
  /// Opens by bits of OpenMode. A failure leaves an entry and throws QX_ERROR_FILE.
  FileWriter(const std::string& path, int mode) { zvk_open(stream_, path.c_str(), mode, false); }

  void write(const void* data, size_t size, long n) override { zvk_write(stream_, data, size, n); }
  void write_bulk(const void* data, size_t size, long n) override;

  void seek(long offset);
  long position() const;
  /// To be called when all is written: a failure that shows only now throws too.
  void close() { zvk_close(stream_); }

 private:
  zvk_fstream stream_;
};

class FileReader final : public SectionReader {
 public:
  explicit FileReader(const std::string& path);

  void read(void* data, size_t size, long n) override { zvk_read(stream_, data, size, n); }
  void read_bulk(void* data, size_t size, long n) override;
  unsigned read_numbers(int* numbers, long n, int first) override;
  const StreamDescription& description() const override { return stream_.description(); }
  long bytes_left() const override { return size_ - stream_.tellg(); }
  int status_at_end() const override { return QX_ERROR_FILE; }

  /// The stream header at the next aligned place, to be read before any section.
  void read_header();
  void seek(long offset);
  long position() const;

 private:
  bool goes_past_buffer(long bytes) const;
  template <class Inspect>
  void read_past_buffer(void* data, const BulkTransfer& bulk, const Inspect& inspect);

  zvk_fstream stream_;
  long size_ = 0;
};

}  // namespace qxe
