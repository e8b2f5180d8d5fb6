// Serial layer: images of tables and databases in memory.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "parallel/smpengine.h"
#include "persist/memory_carrier.h"
#include "persist/memory_images.h"

namespace qxe {

namespace {

int load_image(const char* layer, void* block, long size, void** end) {
  return with_collection({.layer = layer, .saved = &g_TFSaved}, [&](TTableCollection& tables) {
    return load_table_image(tables, block, size, end);
  });
}

}  // namespace

int innerQXGetRealTableMemSize(int table, long* size) {
  return with_real_table({.layer = "QXGetRealTableMemSize"}, table, [&](TRealTable& target) {
    *size = image_size(target);
    return 0;
  });
}

int innerQXSaveRealTable2Mem(int table, long size, void* block, void** end) {
  static constexpr char kLayer[] = "QXSaveRealTable2Mem";
  return with_real_table({.layer = kLayer}, table, [&](TRealTable& target) {
    const int status = check_size(kLayer, size);
    if (status == 0) *end = save_table_image(target, block, size);
    return status;
  });
}

int innerQXLoadRealTableFromMem(void* block, void** end) {
  return load_image("QXLoadRealTableFromMem", block, CMemFile::kUnbounded, end);
}

int innerQXLoadMemRealTable(void* block, long size) {
  static constexpr char kLayer[] = "QXLoadMemRealTable";
  const int status = check_size(kLayer, size);
  return status < 0 ? status : load_image(kLayer, block, size, nullptr);
}

int innerQXGetMemRealTable(int table, void** block, long* size) {
  return with_real_table({.layer = "QXGetMemRealTable"}, table, [&](TRealTable& target) {
    MemRealTable = make_table_image(target);
    *block = MemRealTable.bytes.get();
    *size = MemRealTable.size;
    return 0;
  });
}

int innerQXFreeMemRealTable() {
  MemRealTable = {};
  return 0;
}

int innerQXSaveDB2Mem(long size, void* block, void** end) {
  static constexpr char kLayer[] = "QXSaveDB2Mem";
  return with_collection({.layer = kLayer}, [&](TTableCollection& tables) {
    const int status = check_size(kLayer, size);
    if (status == 0) *end = save_database_image(tables, block, size);
    return status;
  });
}

int innerQXLoadDBFromMem(void* block, void** end) {
  return guarded("QXLoadDBFromMem", [&] {
    ENG->renew_collection();  // the old tables make room, and are gone if the image is bad
    CMemFile image(block, CMemFile::kUnbounded);
    image.read_header();
    ENG->renew_collection(std::make_unique<TTableCollection>(image));
    g_TFSSaved = g_TFSaved = g_SETTINGSaved = true;
    *end = image.end();
    return 0;
  });
}

}  // namespace qxe
