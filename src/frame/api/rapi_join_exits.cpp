// Exported functions: ways out of a join.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "joins/join_chain.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXConvertJoinToReal(char* name, int table, int set, int withMasterRecNo, int withSlaveRecNo,
                         int* filters, int /*flag*/) {
  return pass_through_call(__func__, [&] {
    return innerQXConvertJoinToReal(name, table, set,
                                    {filters, withMasterRecNo != 0, withSlaveRecNo != 0});
  });
}

int RQXExtractJoinInOut(int table, int set, int filter, int otherTable, int otherSet,
                        int otherFilter, int out) {
  return pass_through_call(__func__, [&] {
    return innerQXExtractJoinInOut({table, set, filter}, {otherTable, otherSet, otherFilter},
                                   out != 0);
  });
}

int RQXRealizeJoinChain(char* name, int* joinTableIds, int* tableIds, int (*setIds)[510]) {
  return pass_through_call(__func__, {joinTableIds, tableIds, setIds}, [&] {
    return innerQXRealizeJoinChain("QXRealizeJoinChain", name,
                                   {joinTableIds, 0, nullptr, tableIds, setIds});
  });
}

int RQXRealizeJoinChainEx(char* name, int* joinTableIds, int nAssociation, int (*filters)[4],
                          int* tableIds, int (*setIds)[510]) {
  return pass_through_call(
      __func__, {joinTableIds, if_any(nAssociation, filters), tableIds, setIds}, [&] {
        return innerQXRealizeJoinChain("QXRealizeJoinChainEx", name,
                                       {joinTableIds, nAssociation, filters, tableIds, setIds});
      });
}

int RQXQualifyTree(int treeTable, int level, int sourceTable, int* sourceFilters, int mode) {
  return pass_through_call(__func__, {sourceFilters}, [&] {
    return innerQXQualifyTree(treeTable, {level, sourceTable, sourceFilters, mode != 0});
  });
}

int RQXSetMaxJoinChain(int n) {
  return pass_through_call(__func__, [&] { return innerQXSetMaxJoinChain(n); });
}
