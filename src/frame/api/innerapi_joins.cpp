// Serial layer: join tables.
#include <algorithm>

#include "frame/api/dbtask.h"
#include "frame/api/filter_record.h"
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "joins/join_table.h"
#include "storage/strings.h"

namespace qxe {

namespace {

/// Both forms of RQXAddJoinTable, each with its operation of the collection.
int add_join(const char* layer, JoinRequest request,
             int (TTableCollection::*add)(const JoinRequest&)) {
  return with_collection({.layer = layer, .saved = &g_TFSSaved}, [&](TTableCollection& tables) {
    char name[TBaseTable::kNameSize];
    if (ValidateNames(request.name, TTableCollection::GeneratedName::kJoinTable, name) < 0) {
      return report(layer, QX_ERROR_GEN_TABLE_NAME, "Invalid Parameter : TblName(%s)",
                    request.name);
    }
    request.name = name;
    const int id = (tables.*add)(request);
    if (id >= 0) g_TFSaved = false;  // a join is a table as well as a set of rows
    return id;
  });
}

/// `body(join)` for an operation of join tables alone.
template <class Body>
int with_join_table(LayerCall call, int table, Body&& body) {
  call.kind = TableKind::kJoin;
  return with_table(call, table,
                    [&](TBaseTable& target) { return body(static_cast<TJoinTable&>(target)); });
}

}  // namespace

int innerQXAddJoinTable(const JoinRequest& request) {
  return add_join("QXAddJoinTable", request, &TTableCollection::AddJoinTable);
}

int CDBParallelTask::AddJoinTable(const JoinRequest& request) {
  return add_join("RQXAddJoinTable", request, &TTableCollection::MppAddJoinTable);
}

// What is joined

namespace {

template <class Value>
void put(Value* out, Value value) {
  if (out != nullptr) *out = value;
}

void put_keys(int* out, const std::vector<int>& keys) {
  if (out == nullptr) return;
  std::fill(std::copy(keys.begin(), keys.end(), out), out + TJoinTable::kMaxKeys, 0);
}

}  // namespace

int innerQXGetJoinInfo(const char* layer, int table, const JoinInfo& out) {
  return with_join_table({.layer = layer}, table, [&](TJoinTable& join) {
    put(out.masterTable, join.parent(QX_JOIN_MASTER).id());
    put(out.slaveTable, join.parent(QX_JOIN_SLAVE).id());
    put(out.masterSet, join.parent_set(QX_JOIN_MASTER));
    put(out.slaveSet, join.parent_set(QX_JOIN_SLAVE));
    put(out.outer, join.is_outer() ? 1 : 0);
    put(out.nKey, join.key_count());
    if (out.name != nullptr) qxe_strlcpy(out.name, join.name(), TBaseTable::kNameSize);
    put_keys(out.masterKeys, join.key_ids(QX_JOIN_MASTER));
    put_keys(out.slaveKeys, join.key_ids(QX_JOIN_SLAVE));
    return 0;
  });
}

int innerQXGetJoinSrcTblInfo(int table, int filter, int* side, int* srcTable, int* srcFilter) {
  return with_join_table({.layer = "QXGetJoinSrcTblInfo"}, table, [&](TJoinTable& join) {
    const int source = join.GetJoinSrcFltID(filter, side);
    if (source < 0) return source;
    *srcTable = join.parent(*side).id();
    *srcFilter = source;
    return 0;
  });
}

// Its key

int innerQXGetJoinKeyInfo(int table, int side, _TRFilterInfo* out) {
  return with_join_table({.layer = "QXGetJoinKeyInfo"}, table, [&](TJoinTable& join) {
    TFilter& key = join.key().filter(side);
    describe(key, key.FFilterID, key.FFilterName, out);
    return 0;
  });
}

int innerQXGetJoinKeyBody(int table, int side, const _TRFilterBody* body) {
  return with_join_table({.layer = "QXGetJoinKeyBody"}, table, [&](TJoinTable& join) {
    copy_body(join.key().filter(side), *body);
    return 0;
  });
}

int innerQXGetJoinKey(int table, int side, _TFilterInfo* out) {
  return with_join_table({.layer = "QXGetJoinKey"}, table, [&](TJoinTable& join) {
    TFilter& key = join.key().filter(side);
    point_into(key, key.FFilterName, out);
    return 0;
  });
}

// Its sets

int innerQXGetJoinDir(int table, int set) {
  return with_join_table({.layer = "QXGetJoinDir"}, table,
                         [&](TJoinTable& join) { return join.GetJoinDir(set); });
}

namespace {

/// `body(rows)` for the driven rows of a set.
template <class Body>
int with_slave_set(int table, int set, Body&& body) {
  return with_join_table({.layer = "QXGetJoinSlaveSet"}, table, [&](TJoinTable& join) {
    TSetArray* const rows = join.GetSlaveSet(set);
    return rows == nullptr ? QX_ERROR_NO_SET : body(*rows);
  });
}

/// `body(driving, driven)` for the index arrays of a set.
template <class Body>
int with_projection_sets(int table, int set, Body&& body) {
  return with_join_table({.layer = "QXGetJoinProjectionSets"}, table, [&](TJoinTable& join) {
    TSetArray* driving = nullptr;
    TSetArray* driven = nullptr;
    join.GetProjectionSets(set, &driving, &driven);
    return driving == nullptr ? QX_ERROR_NO_SET : body(*driving, *driven);
  });
}

int check_capacity(const char* layer, int max) {
  return max < 0 ? report(layer, QX_ERROR_PARAMETER, "Illegal Buffer size: %d", max) : 0;
}

}  // namespace

int innerQXGetJoinSlaveSet(int table, int set, int** out) {
  return with_slave_set(table, set, [&](TSetArray& rows) {
    *out = rows.PIntAr();
    return rows.FArraySize;
  });
}

int innerQXCopyJoinSlaveSet(int table, int set, int* count, int max, int* out) {
  *count = 0;
  const int status = check_capacity("QXGetJoinSlaveSet", max);
  if (status < 0) return status;
  return with_slave_set(table, set,
                        [&](const TSetArray& rows) { return copy_rows(rows, count, max, out); });
}

int innerQXGetJoinProjectionSets(int table, int set, int* drivingCount, int** driving,
                                 int* drivenCount, int** driven) {
  return with_projection_sets(table, set, [&](TSetArray& master, TSetArray& slave) {
    *drivingCount = master.FArraySize;
    *driving = master.PIntAr();
    *drivenCount = slave.FArraySize;
    *driven = slave.PIntAr();
    return 0;
  });
}

int innerQXCopyJoinProjectionSets(int table, int set, int* drivingCount, int drivingMax,
                                  int* drivingOut, int* drivenCount, int drivenMax,
                                  int* drivenOut) {
  *drivingCount = *drivenCount = 0;
  const int status = check_capacity("QXGetJoinProjectionSets", std::min(drivingMax, drivenMax));
  if (status < 0) return status;
  return with_projection_sets(table, set, [&](const TSetArray& master, const TSetArray& slave) {
    copy_rows(master, drivingCount, drivingMax, drivingOut);
    copy_rows(slave, drivenCount, drivenMax, drivenOut);
    return 0;
  });
}

int innerQXGetSlaveInfo(int table, int* slaveTable, int* slaveSet) {
  return innerQXGetJoinInfo(
      "QXGetSlaveInfo", table,
      {.masterTable = nullptr, .slaveTable = slaveTable, .slaveSet = slaveSet});
}

// Back to the parents

int innerQXPutJoinSetToParent(int table, int side, bool unmatched, int* tableId, int* setId) {
  *tableId = *setId = -1;
  return with_join_table(
      {.layer = "QXPutJoinSetToParent", .saved = &g_TFSSaved}, table,
      [&](TJoinTable& join) { return join.PutJoinSetToParent(side, unmatched, tableId, setId); });
}

int innerQXReturnSet2SlaveTable(int table, int* tableId) {
  return with_join_table({.layer = "QXReturnSet2SlaveTable", .saved = &g_TFSSaved}, table,
                         [&](TJoinTable& join) { return join.ReturnSet2SlaveTable(tableId); });
}

int innerQXMoveSlaveFlt2Master(int table, int filter) {
  return with_join_table({.layer = "QXMoveSlaveFlt2Master", .saved = &g_TFSaved}, table,
                         [&](TJoinTable& join) { return join.MoveSlaveFlt2Master(filter); });
}

}  // namespace qxe
