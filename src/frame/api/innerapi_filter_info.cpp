// Serial layer: what a filter is made of, as records, copies or pointers into the engine. Pending
// values are merged first, so that a client always sees a whole value list.
#include <algorithm>
#include <limits>
#include <vector>

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

/// A column shows in a join under the join's own id and name.
void describe(TBaseTable& table, int filter, TFilter& column, _TRFilterInfo* out) {
  column.MergeTVL(true);
  *out = {.id = filter,
          .type = column.data_type(),
          .unitSize = column.VL->FUnitSize,
          .valueCount = column.VL->FArraySize,
          .poolSize = pool_bytes(column),
          .name = {}};
  char table_name[TBaseTable::kNameSize];
  table.FilterID2Name(filter, table_name, out->name);
}

}  // namespace

int innerQXGetFilter(int table, int filter, _TFilterInfo* out) {
  return with_filter(
      {.layer = "QXGetFilter"}, table, filter, [&](TBaseTable& target, TFilter& column) {
        _TRFilterInfo info;
        describe(target, filter, column, &info);
        const TStrArray* const texts = text_list(column);
        *out = {.rowCount = column.PVL->FArraySize,
                .pv = column.PVL->PIntAr(),
                .type = info.type,
                .unitSize = info.unitSize,
                .valueCount = info.valueCount,
                .values = const_cast<void*>(column.VL->data()),
                .pool = texts == nullptr ? nullptr : const_cast<char*>(texts->pool()),
                .name = {},
                .orgTableId = column.FOrgTblID,
                .orgFilterId = column.FOrgFltID};
        memcpy(out->name, info.name, sizeof out->name);
        return 0;
      });
}

int innerQXGetFilterInfo(int table, int filter, _TRFilterInfo* out) {
  return with_filter({.layer = "QXGetFilterInfo"}, table, filter,
                     [&](TBaseTable& target, TFilter& column) {
                       describe(target, filter, column, out);
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

int innerQXGetFilterBody(int table, int filter, const _TRFilterBody* body) {
  return with_filter(
      {.layer = "QXGetFilterBody"}, table, filter, [&](TBaseTable&, TFilter& column) {
        column.MergeTVL(true);
        copy_part(body->pv, column.PVL->data(), column.PVL->FArraySize, body->pvCapacity,
                  sizeof(int));
        copy_values(*column.VL, *body);
        if (const TStrArray* const texts = text_list(column)) {
          copy_part(body->pool, texts->pool(), pool_bytes(column), body->poolCapacity, 1);
        }
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
      describe(target, id, *target.GetFilter(id), infos);
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
