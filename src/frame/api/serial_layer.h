// The shape of every operation behind the frame: find the table, check it, call it, log what comes
// back below 0, clear a saved flag. The serial functions and the task object share it.
#pragma once

#include <span>

#include "frame/api/call_frame.h"
#include "frame/base/error_ring.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

/// The saved flags. True after a load or a save; an operation that changes what they stand for
/// clears them.
extern bool g_TFSSaved;      // sets and joins
extern bool g_TFSaved;       // tables and filters
extern bool g_SETTINGSaved;  // settings

/// What an operation does with its table.
enum class Access {
  kRead,
  kChange,  // refused for a table in shared memory
  kEdit,    // and for one that another table refers to
};

struct FailureText {
  int code;
  const char* text;
};

struct LayerCall {
  const char* layer;                  // name of the ring entries
  TableKind kind = TableKind::kBase;  // kBase: any
  Access access = Access::kRead;
  bool* saved = nullptr;                    // cleared on success
  std::span<const FailureText> texts = {};  // entries of some failures instead of the usual words
};

TTableCollection& collection();

/// The table, or null with the reason in the ring and in `*status`.
TBaseTable* admitted_table(const LayerCall& call, int table, int* status);

/// Logs a negative result of an operation under the layer's name and hands it on.
int log_failure(const LayerCall& call, int status);

/// QX_ERROR_PARAMETER with an entry for a size in bytes below 0, else 0.
int check_size(const char* layer, long size);

inline int concluded(const LayerCall& call, int status) {
  if (status < 0) return log_failure(call, status);
  if (call.saved != nullptr) *call.saved = false;
  return status;
}

/// Copies up to `max` rows; returns how many there are, which also goes to `*count`.
int copy_rows(const TSetArray& rows, int* count, int max, int* out);

/// `body(collection)` for an operation that has no table yet or many.
template <class Body>
int with_collection(const LayerCall& call, Body&& body) {
  return guarded(call.layer, [&] { return concluded(call, body(collection())); });
}

/// `body(table)`.
template <class Body>
int with_table(const LayerCall& call, int table, Body&& body) {
  return guarded(call.layer, [&] {
    int status = 0;
    TBaseTable* const target = admitted_table(call, table, &status);
    return target == nullptr ? status : concluded(call, body(*target));
  });
}

/// `body(table)` for an operation of real tables alone.
template <class Body>
int with_real_table(LayerCall call, int table, Body&& body) {
  call.kind = TableKind::kReal;
  return with_table(call, table,
                    [&](TBaseTable& target) { return body(static_cast<TRealTable&>(target)); });
}

/// `body(table, filter)`.
template <class Body>
int with_filter(const LayerCall& call, int table, int filter, Body&& body) {
  return with_table(call, table, [&](TBaseTable& target) {
    TFilter* const column = target.GetFilter(filter);
    return column == nullptr ? target.missing_filter(filter) : body(target, *column);
  });
}

/// `body(set)`.
template <class Body>
int with_set(const LayerCall& call, int table, int set, Body&& body) {
  return with_table(call, table, [&](TBaseTable& target) {
    TSetArray* const rows = target.GetSet(set);
    return rows == nullptr ? QX_ERROR_NO_SET : body(*rows);
  });
}

}  // namespace qxe
