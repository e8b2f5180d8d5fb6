// Plain functions: ways out of a join.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "joins/join_chain.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXConvertJoinToReal(char* name, int table, int set, int withMasterRecNo, int withSlaveRecNo,
                        int* filters, int /*flag*/) {
  return plain_call([&] {
    return innerQXConvertJoinToReal(name, table, set,
                                    {filters, withMasterRecNo != 0, withSlaveRecNo != 0});
  });
}

int QXExtractJoinInOut(int table, int set, int filter, int otherTable, int otherSet,
                       int otherFilter, int out) {
  return plain_call([&] {
    return innerQXExtractJoinInOut({table, set, filter}, {otherTable, otherSet, otherFilter},
                                   out != 0);
  });
}

int QXRealizeJoinChain(char* name, int* joinTableIds, int* tableIds, int (*setIds)[510]) {
  return plain_call(__func__, {joinTableIds, tableIds, setIds}, [&] {
    return innerQXRealizeJoinChain("QXRealizeJoinChain", name,
                                   {joinTableIds, 0, nullptr, tableIds, setIds});
  });
}

int QXRealizeJoinChainEx(char* name, int* joinTableIds, int nAssociation, int (*filters)[4],
                         int* tableIds, int (*setIds)[510]) {
  return plain_call(__func__, {joinTableIds, if_any(nAssociation, filters), tableIds, setIds}, [&] {
    return innerQXRealizeJoinChain("QXRealizeJoinChainEx", name,
                                   {joinTableIds, nAssociation, filters, tableIds, setIds});
  });
}

int QXQualifyTree(int treeTable, int level, int sourceTable, int* sourceFilters, int mode) {
  return plain_call(__func__, {sourceFilters}, [&] {
    return innerQXQualifyTree(treeTable, {level, sourceTable, sourceFilters, mode != 0});
  });
}

int QXSetMaxJoinChain(int n) {
  return plain_call([&] { return innerQXSetMaxJoinChain(n); });
}
