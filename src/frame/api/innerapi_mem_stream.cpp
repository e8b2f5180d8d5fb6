// Serial layer: the memory stream.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "persist/mem_stream.h"
#include "persist/table_form.h"

namespace qxe {

namespace {

/// `body()` for a stream that is open like this.
template <class Body>
int with_stream(const char* layer, TMemStream::Mode mode, Body&& body) {
  return guarded(layer, [&] {
    MemStream.check_mode(mode);
    return body();
  });
}

/// Where the stream goes back to unless all went well. A stream that was closed stays closed.
class StreamPlace : NonCopyable {
 public:
  ~StreamPlace() {
    if (!kept_) MemStream.Seek(place_);
  }
  void leave() { kept_ = true; }

 private:
  const long place_ = MemStream.Pos();
  bool kept_ = false;
};

}  // namespace

int innerQXMemStreamOpenWrite() {
  return guarded("QXMemStreamOpenWrite", [] {
    MemStream.open_write();
    return 0;
  });
}

int innerQXMemStreamWrite(const void* data, int size) {
  static constexpr char kLayer[] = "QXMemStreamWrite";
  return with_stream(kLayer, TMemStream::Mode::kWrite, [&] {
    const int status = check_size(kLayer, size);
    if (status < 0) return status;
    MemStream.writeStream(data, size);
    return size;
  });
}

int innerQXMemStreamGetWriteBuf(long* size, void** area) {
  return with_stream("QXMemStreamGetWriteBuf", TMemStream::Mode::kWrite, [&] {
    *size = MemStream.nUsed();
    *area = MemStream.pArea();
    return 0;
  });
}

int innerQXMemStreamOpenRead(long size, void* area) {
  const int status = check_size("QXMemStreamOpenRead", size);
  if (status == 0) MemStream.open_read(area, size);
  return status;
}

int innerQXMemStreamRead(void* data, int size) {
  static constexpr char kLayer[] = "QXMemStreamRead";
  return with_stream(kLayer, TMemStream::Mode::kRead, [&] {
    const int status = check_size(kLayer, size);
    return status < 0 ? status : MemStream.readStream(data, size);
  });
}

int innerQXMemStreamGetStatus(int* mode, long* used, long* position, void** area) {
  *mode = static_cast<int>(MemStream.OpenMode());
  *used = MemStream.nUsed();
  *position = MemStream.Pos();
  *area = MemStream.pArea();
  return 0;
}

int innerQXMemStreamClose() {
  MemStream.close();
  return 0;
}

int innerQXSaveRealTableMem(int table, bool one_set) {
  static constexpr char kLayer[] = "QXSaveRealTableMem";
  return with_stream(kLayer, TMemStream::Mode::kWrite, [&] {
    return with_real_table({.layer = kLayer}, table, [&](TRealTable& target) {
      StreamPlace place;
      MemStream.write_header();
      target.SaveTable(MemStream, {.id = table, .one_set = one_set});
      place.leave();
      return 0;
    });
  });
}

int innerQXLoadRealTableMem() {
  static constexpr char kLayer[] = "QXLoadRealTableMem";
  return with_stream(kLayer, TMemStream::Mode::kRead, [&] {
    if (MemStream.at_end()) return 0;
    return with_collection({.layer = kLayer, .saved = &g_TFSaved}, [](TTableCollection& tables) {
      StreamPlace place;
      MemStream.read_header();
      const int id = tables.load_section(MemStream);
      place.leave();
      return id;
    });
  });
}

}  // namespace qxe
