// Serial layer: readers of blocks.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "joins/block_access.h"

namespace qxe {

int innerQXJBAOpen(const char* layer, int slot, int table, int set, const int* filters) {
  auto* const place = block_access_place(slot);
  if (place == nullptr) return report(layer, QX_JBA_BAD_SLOT, "Invalid Parameter : Slot(%d)", slot);
  if (*place != nullptr) return report(layer, QX_JBA_BUSY, "Invalid Parameter : Slot(%d)", slot);
  return guarded(layer, [&] {
    return with_table({.layer = layer}, table, [&](TBaseTable& target) {
      *place = std::make_unique<TJoinBlockAccess>(slot, target, set, filters);
      return 0;
    });
  });
}

int innerQXJBARead(int slot, JoinBlock* block, int* columnCount, _TColumnBuf** columns) {
  static constexpr char kLayer[] = "QXJBARead";
  auto* const place = block_access_place(slot);
  if (place == nullptr)
    return report(kLayer, QX_JBA_BAD_SLOT, "Invalid Parameter : Slot(%d)", slot);
  if (*place == nullptr) {
    return report(kLayer, QX_ERROR_PARAMETER, "Invalid Parameter : Slot(%d)", slot);
  }
  return guarded(kLayer, [&] {
    TJoinBlockAccess& reader = **place;
    const int status = reader.ReadBlock(block);
    if (status < 0) return status;
    *columnCount = reader.column_count();
    *columns = reader.columns();
    return status;
  });
}

int innerQXJBAStatus(int slot, int* maxBlockSize) {
  *maxBlockSize = 0;
  auto* const place = block_access_place(slot);
  if (place == nullptr) {
    return report("QXJBAStatus", QX_JBA_BAD_SLOT, "Invalid Parameter : Slot(%d)", slot);
  }
  if (*place == nullptr) return 0;
  *maxBlockSize = (*place)->largest_block();
  return 1;
}

int innerQXJBAClose(int slot) {
  auto* const place = block_access_place(slot);
  if (place == nullptr) {
    return report("QXJBAClose", QX_JBA_BAD_SLOT, "Invalid Parameter : Slot(%d)", slot);
  }
  place->reset();
  return 0;
}

int innerQXCallBackSetSize(int table, int set) {
  static constexpr char kLayer[] = "QXSearchCallBack";
  return with_table({.layer = kLayer}, table, [&](TBaseTable& target) {
    if (target.GetType() == TableKind::kJoin) {
      return report(kLayer, QX_ERROR_NOT_REAL, "Join Table not allowed!:");
    }
    if (set < -1) return report(kLayer, QX_ERROR_NO_SET_ID, "GetSetSize failed!:");
    const TSetArray* const rows = target.GetSet(set);
    return rows == nullptr ? report(kLayer, QX_ERROR_NO_JOIN_SET, "GetSetSize failed!:")
                           : rows->FArraySize;
  });
}

}  // namespace qxe
