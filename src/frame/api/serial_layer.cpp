#include "frame/api/serial_layer.h"

#include "parallel/smpengine.h"

namespace qxe {

bool g_TFSSaved = true;
bool g_TFSaved = true;
bool g_SETTINGSaved = true;

TTableCollection& collection() {
  return *ENG->collection();
}

namespace {

/// Deliberate: the entry says QX_ERROR_NO_TABLE, the call returns the narrower code.
int refuse(const LayerCall& call, int code, const char* words, int table) {
  report(call.layer, QX_ERROR_NO_TABLE, "%s: %d ", words, table);
  return code;
}

int check_access(const LayerCall& call, const TBaseTable& table) {
  if (call.access != Access::kRead && (table.shared() || table.isQXTShared())) {
    return report(call.layer, QX_ERROR_SHARED_READ_ONLY, "Invalid Shared memory read Oparation");
  }
  if (call.kind == TableKind::kReal && table.GetType() != TableKind::kReal) {
    return refuse(call, QX_ERROR_NOT_REAL, "Not RealTable", table.id());
  }
  if (call.kind == TableKind::kJoin && table.GetType() != TableKind::kJoin) {
    return refuse(call, QX_ERROR_NOT_JOIN, "Not JoinTable", table.id());
  }
  if (call.access == Access::kEdit && collection().IsReferred(table.id())) {
    return refuse(call, QX_ERROR_REFERRED, "Not Editable", table.id());
  }
  return 0;
}

}  // namespace

TBaseTable* admitted_table(const LayerCall& call, int table, int* status) {
  TBaseTable* const target = collection().GetTable(table);
  if (target == nullptr) {
    *status = report(call.layer, QX_ERROR_NO_TABLE, "No Such Table: %d", table);
    return nullptr;
  }
  *status = check_access(call, *target);
  return *status < 0 ? nullptr : target;
}

int check_size(const char* layer, long size) {
  return size >= 0 ? 0 : report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : size(%ld)", size);
}

int log_failure(const LayerCall& call, int status) {
  const char* text = "return of inner call";
  for (const FailureText& known : call.texts) {
    if (known.code == status) text = known.text;
  }
  PutErrorLog(call.layer, status, text);
  return status;
}

}  // namespace qxe
