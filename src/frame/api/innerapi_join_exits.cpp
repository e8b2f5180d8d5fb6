// Serial layer: ways out of a join: real tables made of joins and chains of them, semi-joins.
#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"
#include "joins/join_chain.h"

namespace qxe {

int innerQXExtractJoinInOut(const InOutColumn& column, const InOutColumn& other, bool out) {
  static constexpr char kLayer[] = "QXExtractJoinInOut";
  return with_real_table(
      {.layer = kLayer, .saved = &g_TFSSaved}, column.table, [&](TRealTable& target) {
        int status = 0;
        TBaseTable* const source =
            admitted_table({.layer = kLayer, .kind = TableKind::kReal}, other.table, &status);
        if (source == nullptr) return status;
        return target.MppExtractJoinInOut(column.set, column.filter,
                                          static_cast<TRealTable&>(*source), other.set,
                                          other.filter, out);
      });
}

int innerQXConvertJoinToReal(const char* name, int table, int set, const RealizedColumns& columns) {
  return with_collection(
      {.layer = "QXConvertJoinToReal", .saved = &g_TFSaved},
      [&](TTableCollection& tables) { return tables.AddRealized(name, table, set, columns); });
}

int innerQXRealizeJoinChain(const char* layer, const char* name, const ChainRequest& request) {
  return with_collection({.layer = layer, .saved = &g_TFSaved}, [&](TTableCollection& tables) {
    return tables.RealizeJoinChain(name, request);
  });
}

int innerQXQualifyTree(int tree, const TreeColumns& columns) {
  return with_collection({.layer = "QXQualifyTree", .saved = &g_TFSaved},
                         [&](TTableCollection& tables) {
                           TBaseTable* const target = tables.find(tree);
                           if (target != nullptr && target->shared())
                             return QX_ERROR_SHARED_READ_ONLY;
                           return tables.Qualify(tree, columns);
                         });
}

int innerQXSetMaxJoinChain(int n) {
  return with_collection({.layer = "QXSetMaxJoinChain"},
                         [&](TTableCollection& tables) { return tables.SetMaxJoinChain(n); });
}

}  // namespace qxe
