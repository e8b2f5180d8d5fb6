// Serial layer: what a filter is made of, as records, copies or pointers into the engine. A column
// shows in a join under the join's own id and name.
#include <algorithm>
#include <limits>
#include <vector>

#include "frame/api/filter_record.h"
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "parallel/mpp_memory.h"
#include "storage/strings.h"

namespace qxe {

namespace {

const TStrArray* text_list(const TFilter& column) {
  return column.VL->GetDataType() == QX_DT_STRING ? static_cast<const TStrArray*>(column.VL)
                                                  : nullptr;
}

/// The record's count has 32 bits, a pool may be larger.
int pool_bytes(const TFilter& column) {
  const TStrArray* const texts = text_list(column);
  if (texts == nullptr) return 0;
  return static_cast<int>(std::min<long>(texts->pool_used(), std::numeric_limits<int>::max()));
}

}  // namespace

void describe(TFilter& column, int id, const char* name, _TRFilterInfo* out) {
  column.MergeTVL(true);
  *out = {.id = id,
          .type = column.data_type(),
          .unitSize = column.VL->FUnitSize,
          .valueCount = column.VL->FArraySize,
          .poolSize = pool_bytes(column),
          .name = {}};
  qxe_strlcpy(out->name, name, sizeof out->name);
}

void point_into(TFilter& column, const char* name, _TFilterInfo* out) {
  column.MergeTVL(true);
  const TStrArray* const texts = text_list(column);
  *out = {.rowCount = column.PVL->FArraySize,
          .pv = column.PVL->PIntAr(),
          .type = column.data_type(),
          .unitSize = column.VL->FUnitSize,
          .valueCount = column.VL->FArraySize,
          .values = const_cast<void*>(column.VL->data()),
          .pool = texts == nullptr ? nullptr : const_cast<char*>(texts->pool()),
          .name = {},
          .orgTableId = column.FOrgTblID,
          .orgFilterId = column.FOrgFltID};
  qxe_strlcpy(out->name, name, sizeof out->name);
}

int innerQXGetFilter(int table, int filter, _TFilterInfo* out) {
  return with_filter({.layer = "QXGetFilter"}, table, filter,
                     [&](TBaseTable& target, TFilter& column) {
                       point_into(column, target.filter_name(filter), out);
                       return 0;
                     });
}

int innerQXGetFilterInfo(int table, int filter, _TRFilterInfo* out) {
  return with_filter({.layer = "QXGetFilterInfo"}, table, filter,
                     [&](TBaseTable& target, TFilter& column) {
                       describe(column, filter, target.filter_name(filter), out);
                       return 0;
                     });
}

namespace {

/// Copies elements up to a client's capacity; a null buffer skips the part.
void copy_part(void* out, const void* source, int elements, int capacity, int unit) {
  const int count = std::min(elements, capacity);
  if (out == nullptr || count <= 0) return;
  MppMemCpy(out, source, static_cast<size_t>(count) * static_cast<size_t>(unit));
}

void copy_values(const TBaseArray& values, const _TRFilterBody& body) {
  auto* out = static_cast<char*>(body.values);
  if (values.GetDataType() == QX_DT_DECIMAL && out != nullptr && body.valueCapacity > 0) {
    const NumericInfo& info = static_cast<const TNumericArray&>(values).GetDecimalInfo();
    memcpy(out, &info, sizeof info);
    out += sizeof info;
  }
  copy_part(out, values.data(), values.FArraySize, body.valueCapacity, values.FUnitSize);
}

}  // namespace

void copy_body(TFilter& column, const _TRFilterBody& body) {
  column.MergeTVL(true);
  copy_part(body.pv, column.PVL->data(), column.PVL->FArraySize, body.pvCapacity, sizeof(int));
  copy_values(*column.VL, body);
  if (const TStrArray* const texts = text_list(column)) {
    copy_part(body.pool, texts->pool(), pool_bytes(column), body.poolCapacity, 1);
  }
}

int innerQXGetFilterBody(int table, int filter, const _TRFilterBody* body) {
  return with_filter({.layer = "QXGetFilterBody"}, table, filter,
                     [&](TBaseTable&, TFilter& column) {
                       copy_body(column, *body);
                       return 0;
                     });
}

int innerQXGetAllFilterInfo(int table, int max, int* count, _TRFilterInfo* infos,
                            char (*names)[64]) {
  *count = 0;
  if (max < 0) {
    return report("QXGetAllFilterInfo", QX_ERROR_PARAMETER, "Illegal Buffer size: %d", max);
  }
  return with_table({.layer = "QXGetAllFilterInfo"}, table, [&](TBaseTable& target) {
    std::vector<int> ids(static_cast<size_t>(target.GetNFilter()));
    *count = target.GetFilterIDList(ids.data());
    ids.resize(static_cast<size_t>(std::min(*count, max)));
    for (const int id : ids) {
      TFilter* const column = target.GetFilter(id);
      if (column == nullptr) return target.missing_filter(id);
      describe(*column, id, target.filter_name(id), infos);
      if (names != nullptr) qxe_strlcpy(*names++, infos->name, sizeof *names);
      ++infos;
    }
    return *count;
  });
}

// Attribute blocks

namespace {

TBaseArray& list_of(TFilter& column, bool valueList) {
  return valueList ? *column.VL : *column.PVL;
}

/// The engine's own bytes in a value list's block: the extended type must stay one of the double
/// family, scale and rounding of decimals change with their values only.
int set_value_list_area(TBaseArray& values, const unsigned char* in) {
  const unsigned char type = in[TBaseArray::kAreaExtendType];
  if (values.GetDataType() == QX_DT_DOUBLE && type != 0 &&
      (type < QX_DT_DOUBLE || type > QX_DT_DATETIME || type == QX_DT_STRING)) {
    return report("QXSetFilterAttr", QX_ERROR_PARAMETER, "Invalid Parameter : DataType(%d)", type);
  }
  memcpy(values.FUserArea, in, sizeof values.FUserArea);
  if (values.GetDataType() == QX_DT_DECIMAL) {
    auto& decimals = static_cast<TNumericArray&>(values);
    decimals.SetDecimalInfo(decimals.GetDecimalInfo());
  }
  return 0;
}

}  // namespace

int innerQXGetFilterAttr(int table, int filter, void** out, bool valueList) {
  return with_filter({.layer = "QXGetFilterAttr"}, table, filter,
                     [&](TBaseTable&, TFilter& column) {
                       *out = list_of(column, valueList).FUserArea;
                       return 0;
                     });
}

int innerQXSetFilterAttr(int table, int filter, const void* in, bool valueList) {
  return with_filter({.layer = "QXSetFilterAttr", .access = Access::kChange, .saved = &g_TFSaved},
                     table, filter, [&](TBaseTable&, TFilter& column) {
                       if (valueList) {
                         return set_value_list_area(*column.VL,
                                                    static_cast<const unsigned char*>(in));
                       }
                       memcpy(column.PVL->FUserArea, in, sizeof column.PVL->FUserArea);
                       return 0;
                     });
}

}  // namespace qxe
