// Exported functions: join tables.

#include "frame/api/call_frame.h"
#include "frame/api/dbtask.h"
#include "frame/api/innerapi.h"
#include "joins/join_table.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXAddJoinTable(char* name, int outer, int masterTable, int masterSet, int* masterKeys,
                    int slaveTable, int slaveSet, int* slaveKeys) {
  return guarded_call(__func__, {masterKeys, slaveKeys}, [&] {
    return DBTASK()->AddJoinTable(
        {name,
         outer != 0,
         {{masterTable, masterSet, masterKeys}, {slaveTable, slaveSet, slaveKeys}}});
  });
}

int RQXGetJoinInfo(int joinTable, char* name, int* masterTable, int* slaveTable, int* masterSet,
                   int* slaveSet, int* outer, int* nKey) {
  return pass_through_call(__func__,
                           {name, masterTable, slaveTable, masterSet, slaveSet, outer, nKey}, [&] {
                             return innerQXGetJoinInfo(
                                 "QXGetJoinInfo", joinTable,
                                 {masterTable, slaveTable, masterSet, slaveSet, outer, nKey, name});
                           });
}

int RQXGetJoinInfoEx(int joinTable, char* name, int* masterTable, int* slaveTable, int* masterSet,
                     int* slaveSet, int* outer, int* nKey, int* masterKeys, int* slaveKeys) {
  return pass_through_call(
      __func__,
      {name, masterTable, slaveTable, masterSet, slaveSet, outer, nKey, masterKeys, slaveKeys},
      [&] {
        return innerQXGetJoinInfo("QXGetJoinInfoEx", joinTable,
                                  {masterTable, slaveTable, masterSet, slaveSet, outer, nKey, name,
                                   masterKeys, slaveKeys});
      });
}

int RQXGetJoinInfoR1(int joinTable, int* masterTable, int* slaveTable, int* masterSet,
                     int* slaveSet, int* outer, int* nKey) {
  char name[TBaseTable::kNameSize];
  return RQXGetJoinInfo(joinTable, name, masterTable, slaveTable, masterSet, slaveSet, outer, nKey);
}

int RQXGetJoinInfoExR1(int joinTable, int* masterTable, int* slaveTable, int* masterSet,
                       int* slaveSet, int* outer, int* nKey, int* masterKeys, int* slaveKeys) {
  char name[TBaseTable::kNameSize];
  return RQXGetJoinInfoEx(joinTable, name, masterTable, slaveTable, masterSet, slaveSet, outer,
                          nKey, masterKeys, slaveKeys);
}

int RQXGetJoinSrcTblIDs(int joinTable, int* masterTable, int* slaveTable) {
  return pass_through_call(__func__, {masterTable, slaveTable}, [&] {
    return innerQXGetJoinInfo("QXGetJoinSrcTblIDs", joinTable, {masterTable, slaveTable});
  });
}

int RQXGetJoinSrcTblInfo(int joinTable, int joinFilter, int* side, int* srcTable, int* srcFilter) {
  return pass_through_call(__func__, {side, srcTable, srcFilter}, [&] {
    return innerQXGetJoinSrcTblInfo(joinTable, joinFilter, side, srcTable, srcFilter);
  });
}

int RQXGetJoinKeyInfo(int joinTable, int side, _TRFilterInfo* out) {
  return pass_through_call(__func__, {out},
                           [&] { return innerQXGetJoinKeyInfo(joinTable, side, out); });
}

int RQXGetJoinKeyBody(int joinTable, int side, _TRFilterBody* body) {
  return pass_through_call(__func__, {body},
                           [&] { return innerQXGetJoinKeyBody(joinTable, side, body); });
}

int RQXGetJoinDir(int joinTable, int set) {
  return pass_through_call(__func__, [&] { return innerQXGetJoinDir(joinTable, set); });
}

int RQXGetJoinSlaveSet(int joinTable, int set, int* count, int max, int* out) {
  return pass_through_call(__func__, {count, if_any(max, out)}, [&] {
    return innerQXCopyJoinSlaveSet(joinTable, set, count, max, out);
  });
}

int RQXGetJoinProjectionSets(int joinTable, int set, int* drivingCount, int drivingMax,
                             int* drivingOut, int* drivenCount, int drivenMax, int* drivenOut) {
  return pass_through_call(
      __func__,
      {drivingCount, drivenCount, if_any(drivingMax, drivingOut), if_any(drivenMax, drivenOut)},
      [&] {
        return innerQXCopyJoinProjectionSets(joinTable, set, drivingCount, drivingMax, drivingOut,
                                             drivenCount, drivenMax, drivenOut);
      });
}

int RQXGetSlaveInfo(int joinTable, int* slaveTable, int* slaveSet) {
  return pass_through_call(__func__, {slaveTable, slaveSet},
                           [&] { return innerQXGetSlaveInfo(joinTable, slaveTable, slaveSet); });
}

int RQXPutJoinSetToParent(int joinTable, int side, int unmatched, int* tableId, int* setId) {
  return pass_through_call(__func__, {tableId, setId}, [&] {
    return innerQXPutJoinSetToParent(joinTable, side, unmatched != 0, tableId, setId);
  });
}

int RQXReturnSet2SlaveTable(int joinTable, int* tableId) {
  return pass_through_call(__func__, {tableId},
                           [&] { return innerQXReturnSet2SlaveTable(joinTable, tableId); });
}

int RQXMoveSlaveFlt2Master(int joinTable, int joinFilter) {
  return pass_through_call(__func__,
                           [&] { return innerQXMoveSlaveFlt2Master(joinTable, joinFilter); });
}
