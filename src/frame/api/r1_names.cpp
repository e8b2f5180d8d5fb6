// Convenience forms: version, names and infos.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "frame/api/r1_buffer.h"
#include "frame/api/serial_layer.h"
#include "storage/strings.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

const char* RQXGetCopyRightR1() {
  return plain_call([]() -> const char* {
    int* numbers = nullptr;
    char* text = nullptr;
    innerQXGetVersion(&numbers, &text);
    return text;
  });
}

int RQXGetVersionR1(int version[4]) {
  char copyright[512];
  return RQXGetVersion(version, copyright);
}

const char* RQXGetDBPathR1() {
  return plain_call([] { return collection().database_path(); });
}

const char* RQXGetDBNameR1() {
  return plain_call([] { return collection().database_name(); });
}

const char* RQXGenerateTableNameR1(const char* seed) {
  *gBuf = '\0';
  RQXGenerateTableName(seed, gBuf);
  return gBuf;
}

const char* RQXGenTableNameR1(const char* seed) {
  *gBuf = '\0';
  RQXGenTableName(seed, gBuf);
  return gBuf;
}

const char* RQXGetTableNameR1(int table) {
  return plain_call([&] {
    const TBaseTable* const target = collection().GetTable(table);
    return target == nullptr ? "" : target->name();
  });
}

const char* RQXGetFilterNameR1(int table, int filter) {
  return plain_call([&]() -> const char* {
    const char* name = "";
    with_filter({.layer = "QXGetFilterName"}, table, filter, [&](TBaseTable& target, TFilter&) {
      name = target.filter_name(filter);
      return 0;
    });
    return name;
  });
}

const char* RQXGetSetNameR1(int table, int set) {
  return plain_call([&]() -> const char* {
    const char* name = "";
    with_table({.layer = "QXGetSetName"}, table, [&](TBaseTable& target) {
      const TSetArray* const rows = target.GetSet(set);
      name = rows == nullptr || *rows->GetSetName() == '\0' ? target.name() : rows->GetSetName();
      return 0;
    });
    return name;
  });
}

const char* RQXCategoryReadR1(int handle, int dimNo, int catNo) {
  return plain_call([&]() -> const char* {
    char* name = nullptr;
    if (innerQXCategoryRead(handle, dimNo, catNo, &name) < 0) return "";
    qxe_strlcpy(gBuf, name, sizeof gBuf);
    return gBuf;
  });
}

int RQXGetNumericInfoR1(int table, int filter, NumericInfo* info) {
  return plain_call(__func__, {info},
                    [&] { return innerQXGetNumericInfo(table, filter, info, nullptr); });
}
