// Exported functions: tables and memory accounting.
#include <algorithm>

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXGetNTable() {
  return pass_through_call(__func__, [] { return innerQXGetNTable(); });
}

int RQXGenerateTableName(const char* seed, char* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGenerateTableName(seed, out); });
}

int RQXGenTableName(const char* seed, char* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGenerateTableName(seed, out); });
}

int RQXAddRealTable(const char* name, int rows) {
  return pass_through_call(__func__, [&] { return innerQXAddRealTable(name, rows); });
}

int RQXDeleteTable(int table) {
  return pass_through_call(__func__, [&] { return innerQXDeleteTable(table); });
}

int RQXGetTableIDList(int* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetTableIDList(out); });
}

int RQXGetTableName(int table, char* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetTableName(table, out); });
}

int RQXSetTableName(int table, const char* name) {
  return pass_through_call(__func__, [&] { return innerQXSetTableName(table, name); });
}

int RQXGetTableProperty(int table, _TTableInfo* out) {
  return pass_through_call(__func__, {out}, [&] { return innerQXGetTableProperty(table, out); });
}

int RQXGetTableIDFromName(const char* name) {
  return pass_through_call(__func__, [&] { return innerQXGetTableIDFromName(name); });
}

int RQXTableCanEdit(int table, int* out) {
  return pass_through_call(__func__, {out}, [&] {
    int* referring = nullptr;
    const int count = innerQXTableCanEdit(table, &referring);
    std::copy_n(referring, std::max(count, 0), out);
    return count;
  });
}

// Memory accounting

int RQXGetTotalMemorySize(unsigned long* size) {
  return pass_through_call(__func__, {size}, [&] { return innerQXGetTotalMemorySize(size); });
}

int RQXGetTotalMemorySizeWithShared(unsigned long* size) {
  return pass_through_call(__func__, {size},
                           [&] { return innerQXGetTotalMemorySizeWithShared(size); });
}

int RQXGetTableMemorySize(int table, unsigned long* size) {
  return pass_through_call(__func__, {size},
                           [&] { return innerQXGetTableMemorySize(table, size); });
}

int RQXGetFilterMemorySize(int table, int filter, unsigned long* size) {
  return pass_through_call(__func__, {size},
                           [&] { return innerQXGetFilterMemorySize(table, filter, size); });
}

int RQXGetSetMemorySize(int table, int set, unsigned long* size) {
  return pass_through_call(__func__, {size},
                           [&] { return innerQXGetSetMemorySize(table, set, size); });
}
