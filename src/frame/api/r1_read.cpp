// Convenience forms: reading rows. A failed read gives the NULL of the type asked for.
#include <algorithm>

#include "frame/api/innerapi.h"
#include "frame/api/r1_buffer.h"
#include "frame/api/serial_layer.h"
#include "storage/family.h"

namespace qxe {

char gBuf[4096] = "";

namespace {

using ReadFunction = int(int table, int filter, int set, int pos, int* type, void* out);

int read_int(ReadFunction read, int table, int filter, int set, int pos) {
  char cell[4096];
  int type = 0;
  int value = QX_NULL_INT;
  if (read(table, filter, set, pos, &type, cell) >= 0 && type == QX_DT_INTEGER) {
    memcpy(&value, cell, sizeof value);
  }
  return value;
}

bool is_double_type(int type) {
  return type == QX_DT_DOUBLE || type == QX_DT_DATE || type == QX_DT_TIME || type == QX_DT_DATETIME;
}

double read_double(ReadFunction read, int table, int filter, int set, int pos) {
  char cell[4096];
  int type = 0;
  double value = kNullDouble;
  if (read(table, filter, set, pos, &type, cell) >= 0 && is_double_type(type)) {
    memcpy(&value, cell, sizeof value);
  }
  return value;
}

const char* read_text(ReadFunction read, int table, int filter, int set, int pos) {
  int type = 0;
  const int status = read(table, filter, set, pos, &type, gBuf);
  return status >= 0 && type == QX_DT_STRING ? gBuf : "";
}

/// A decimal without its info; anything else leaves `out` alone.
/// Deliberate: a read that fails returns with the engine still locked.
int read_decimal(const char* layer, int table, int filter, int set, int pos, Numeric* out) {
  mutex_lock();
  const int missing = check_required(layer, {out});
  if (missing < 0) {
    mutex_unlock();
    return missing;
  }
  TBaseTable* const target = collection().GetTable(table);
  if (target == nullptr) {
    const int status = report(layer, QX_ERROR_NO_TABLE, "No Such Table: %d", table);
    mutex_unlock();
    return status;
  }
  char cell[4096];
  int type = 0;
  const int status = guarded(
      layer, [&] { return target->ReadData(set, filter, pos, &type, static_cast<void*>(cell)); });
  if (status < 0) {
    leave_locked();
    return status;
  }
  if (type == QX_DT_DECIMAL) memcpy(out, cell, sizeof *out);
  mutex_unlock();
  return status;
}

// Blocks

/// 0 for a column whose type `fits`, else its status or QX_ERROR_TYPE_MISMATCH. Clears the count of
/// the block's rows first.
int begin_block(const char* name, Required pointers, int* count, int table, int filter,
                bool (*fits)(int)) {
  return plain_call(name, pointers, [&] {
    *count = 0;
    const int type = filter == QX_FLT_ROWNO ? QX_DT_INTEGER : innerQXGetFilterType(table, filter);
    if (type < 0 || fits(type)) return std::min(type, 0);
    return report(name, QX_ERROR_TYPE_MISMATCH, "Illegal data type  : %d", type);
  });
}

/// A block of numbers, of which the caller's buffer has room for 128 and no more.
template <class Value>
int read_numbers(int table, int filter, int set, int first, int* count, Value* values) {
  Value block[1024 / sizeof(Value)];
  char strings[4096];
  int type = 0;
  const int status = RQXGetData1M(table, filter, set, first, &type, count, block, strings);
  std::copy_n(block, *count, values);
  return status;
}

}  // namespace

}  // namespace qxe

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXGetDataIntR1(int table, int filter, int set, int pos) {
  return read_int(RQXGetData, table, filter, set, pos);
}

int RQXGetData1IntR1(int table, int filter, int set, int pos) {
  return read_int(RQXGetData1, table, filter, set, pos);
}

double RQXGetDataDblR1(int table, int filter, int set, int pos) {
  return read_double(RQXGetData, table, filter, set, pos);
}

double RQXGetData1DblR1(int table, int filter, int set, int pos) {
  return read_double(RQXGetData1, table, filter, set, pos);
}

const char* RQXGetDataStrR1(int table, int filter, int set, int pos) {
  return read_text(RQXGetData, table, filter, set, pos);
}

const char* RQXGetData1StrR1(int table, int filter, int set, int pos) {
  return read_text(RQXGetData1, table, filter, set, pos);
}

int RQXGetDataNumericR1(int table, int filter, int set, int pos, Numeric* out) {
  const int status = read_decimal("QXGetData", table, filter, set, pos, out);
  // Deliberate: -1 tells success.
  return status < 0 ? status : -1;
}

int RQXGetData1NumericR1(int table, int filter, int set, int pos, Numeric* out) {
  return read_decimal("QXGetData1", table, filter, set, pos > 0 ? pos - 1 : -1, out);
}

int RQXGetData1MIntR1(int table, int filter, int set, int first, int* count, int* values) {
  const int status = begin_block(__func__, {count, values}, count, table, filter,
                                 [](int type) { return type == QX_DT_INTEGER; });
  return status < 0 ? status : read_numbers(table, filter, set, first, count, values);
}

int RQXGetData1MDblR1(int table, int filter, int set, int first, int* count, double* values) {
  const int status = begin_block(__func__, {count, values}, count, table, filter, is_double_type);
  return status < 0 ? status : read_numbers(table, filter, set, first, count, values);
}

int RQXGetData1MNumericR1(int table, int filter, int set, int first, int* count, Numeric* values) {
  const int status = begin_block(__func__, {count, values}, count, table, filter,
                                 [](int type) { return type == QX_DT_DECIMAL; });
  if (status < 0) return status;
  return plain_call(
      [&] { return innerQXGetData1MNumeric(table, filter, set, first, count, values); });
}

int RQXGetData1MStrR1(int table, int filter, int set, int first, int* count, int* offsets,
                      char* strings) {
  const int status = begin_block(__func__, {count, offsets, strings}, count, table, filter,
                                 [](int type) { return type == QX_DT_STRING; });
  if (status < 0) return status;
  int block[256];
  int type = 0;
  const int read = RQXGetData1M(table, filter, set, first, &type, count, block, strings);
  std::copy_n(block, *count, offsets);
  return read;
}
