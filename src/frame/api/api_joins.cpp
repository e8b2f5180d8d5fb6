// Plain functions: join tables.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "joins/join_table.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXAddJoinTable(char* name, int outer, int masterTable, int masterSet, int* masterKeys,
                   int slaveTable, int slaveSet, int* slaveKeys) {
  return plain_call(__func__, {masterKeys, slaveKeys}, [&] {
    return innerQXAddJoinTable(
        {name,
         outer != 0,
         {{masterTable, masterSet, masterKeys}, {slaveTable, slaveSet, slaveKeys}}});
  });
}

int QXGetJoinInfo(int joinTable, char* name, int* masterTable, int* slaveTable, int* masterSet,
                  int* slaveSet, int* outer, int* nKey) {
  return plain_call(__func__, {name, masterTable, slaveTable, masterSet, slaveSet, outer, nKey},
                    [&] {
                      return innerQXGetJoinInfo(
                          "QXGetJoinInfo", joinTable,
                          {masterTable, slaveTable, masterSet, slaveSet, outer, nKey, name});
                    });
}

int QXGetJoinInfoEx(int joinTable, char* name, int* masterTable, int* slaveTable, int* masterSet,
                    int* slaveSet, int* outer, int* nKey, int* masterKeys, int* slaveKeys) {
  return plain_call(
      __func__,
      {name, masterTable, slaveTable, masterSet, slaveSet, outer, nKey, masterKeys, slaveKeys},
      [&] {
        return innerQXGetJoinInfo("QXGetJoinInfoEx", joinTable,
                                  {masterTable, slaveTable, masterSet, slaveSet, outer, nKey, name,
                                   masterKeys, slaveKeys});
      });
}

int QXGetJoinSrcTblIDs(int joinTable, int* masterTable, int* slaveTable) {
  return plain_call(__func__, {masterTable, slaveTable}, [&] {
    return innerQXGetJoinInfo("QXGetJoinSrcTblIDs", joinTable, {masterTable, slaveTable});
  });
}

int QXGetJoinSrcTblInfo(int joinTable, int joinFilter, int* side, int* srcTable, int* srcFilter) {
  return plain_call(__func__, {side, srcTable, srcFilter}, [&] {
    return innerQXGetJoinSrcTblInfo(joinTable, joinFilter, side, srcTable, srcFilter);
  });
}

int QXGetJoinKey(int joinTable, int side, _TFilterInfo* out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetJoinKey(joinTable, side, out); });
}

int QXGetJoinDir(int joinTable, int set) {
  return plain_call([&] { return innerQXGetJoinDir(joinTable, set); });
}

int QXGetJoinSlaveSet(int joinTable, int set, int** out) {
  return plain_call(__func__, {out}, [&] { return innerQXGetJoinSlaveSet(joinTable, set, out); });
}

int QXGetJoinProjectionSets(int joinTable, int set, int* drivingCount, int** driving,
                            int* drivenCount, int** driven) {
  return plain_call(__func__, {drivingCount, driving, drivenCount, driven}, [&] {
    return innerQXGetJoinProjectionSets(joinTable, set, drivingCount, driving, drivenCount, driven);
  });
}

int QXGetSlaveInfo(int joinTable, int* slaveTable, int* slaveSet) {
  return plain_call(__func__, {slaveTable, slaveSet},
                    [&] { return innerQXGetSlaveInfo(joinTable, slaveTable, slaveSet); });
}

int QXPutJoinSetToParent(int joinTable, int side, int unmatched, int* tableId, int* setId) {
  return plain_call(__func__, {tableId, setId}, [&] {
    return innerQXPutJoinSetToParent(joinTable, side, unmatched != 0, tableId, setId);
  });
}

int QXReturnSet2SlaveTable(int joinTable, int* tableId) {
  return plain_call(__func__, {tableId},
                    [&] { return innerQXReturnSet2SlaveTable(joinTable, tableId); });
}

int QXMoveSlaveFlt2Master(int joinTable, int joinFilter) {
  return plain_call([&] { return innerQXMoveSlaveFlt2Master(joinTable, joinFilter); });
}
