// Serial layer: reading values, one at a time and in blocks of up to 128 rows.
#include <algorithm>

#include "frame/api/innerapi.h"
#include "frame/api/serial_layer.h"

namespace qxe {

namespace {

/// Position from 0 of one counted from 1.
int position_of(int pos) {
  return pos > 0 ? pos - 1 : -1;
}

int check_text_size(const char* layer, int size) {
  return size < 1 ? report(layer, QX_ERROR_PARAMETER, "Illegal Buffer size: %d", size) : 0;
}

const NumericInfo& info_of(TBaseTable& table, int filter) {
  return static_cast<const TNumericArray&>(*table.GetFilter(filter)->VL).GetDecimalInfo();
}

/// Moves a decimal up by the size of its info and puts the info in front.
void put_info_in_front(TBaseTable& table, int filter, void* out) {
  const NumericInfo& info = info_of(table, filter);
  auto* const bytes = static_cast<char*>(out);
  memmove(bytes + sizeof info, bytes, sizeof(Numeric));
  memcpy(bytes, &info, sizeof info);
}

/// Puts the info before what a read gave, if that is a decimal.
int with_info(TBaseTable& table, int filter, int status, const int* type, void* out) {
  if (status >= 0 && *type == QX_DT_DECIMAL) put_info_in_front(table, filter, out);
  return status;
}

/// One value by position from 0, a decimal behind its info.
int read_value(const char* layer, int table, int filter, int set, int pos, int* type, void* out) {
  return with_table({.layer = layer}, table, [&](TBaseTable& target) {
    const int status = target.ReadData(set, filter, pos, type, out);
    return with_info(target, filter, status, type, out);
  });
}

}  // namespace

int innerQXGetData(int table, int filter, int set, int pos, int* type, void* out) {
  return read_value("QXGetData", table, filter, set, pos, type, out);
}

int innerQXGetData1(int table, int filter, int set, int pos, int* type, void* out) {
  return read_value("QXGetData1", table, filter, set, position_of(pos), type, out);
}

int innerQXGetData1Ex(int table, int filter, int set, int pos, int* type, void* out, int size) {
  const int status = check_text_size("QXGetData1Ex", size);
  if (status < 0) return status;
  return with_table({.layer = "QXGetData1Ex"}, table, [&](TBaseTable& target) {
    const int read = target.ReadData(set, filter, position_of(pos), type, out, size);
    return with_info(target, filter, read, type, out);
  });
}

int innerQXGetData1ExPtr(int table, int filter, int set, int pos, int* type, long* out) {
  return with_table({.layer = "QXGetData1ExPtr"}, table, [&](TBaseTable& target) {
    return target.ReadData(set, filter, position_of(pos), type, out);
  });
}

// Row numbers

namespace {

int read_row_number(const char* layer, int table, int set, int pos, int* out) {
  return with_table({.layer = layer}, table, [&](TBaseTable& target) {
    int type = 0;
    return target.ReadData(set, QX_FLT_ROWNO, pos, &type, static_cast<void*>(out));
  });
}

}  // namespace

int innerQXGetRowNo(int table, int set, int pos, int* out) {
  return read_row_number("QXGetRowNo", table, set, pos, out);
}

int innerQXGetRowNo1(int table, int set, int pos, int* out) {
  return read_row_number("QXGetRowNo1", table, set, position_of(pos), out);
}

int innerQXGetRowNo1M(int table, int set, int first, int count, int* out) {
  if (count < 0) {
    return report("QXGetRowNo1M", QX_ERROR_PARAMETER, "Invalid Parameter : Count(%d)", count);
  }
  for (int i = 0; i < count; ++i) {
    const int status = innerQXGetRowNo1(table, set, first + i, out + i);
    if (status < 0) return i == 0 ? status : i;
  }
  return count;
}

int innerQXGetVNoList(int table, int filter, int set, int* out) {
  return with_table({.layer = "QXGetVNoList"}, table,
                    [&](TBaseTable& target) { return target.GetVNoList(set, filter, out); });
}

// Blocks

namespace {

constexpr int kBlockRows = 128;
constexpr int kBlockValueBytes = 1024;
constexpr int kBlockTextBytes = 4096;
constexpr int kBlockDecimals = 63;  // behind one info in the values' bytes

struct Block128 {
  int table;
  int filter;
  int set;
  int first;  // position from 1
  int* count;
};

/// Reads rows until `read(table, position)` fails or `put(table, i)` finds no room. The result is
/// that of the first read: running off the end of the set later is a normal stop, though it leaves
/// an entry.
template <class Read, class Put>
int read_block(const Block128& block, Read&& read, Put&& put) {
  static constexpr char kLayer[] = "QXGetData1";
  *block.count = 0;
  return with_table({.layer = kLayer}, block.table, [&](TBaseTable& target) {
    const int start = position_of(block.first);
    const int first = read(target, start);
    int status = first;
    while (status >= 0 && put(target, *block.count)) {
      if (++*block.count == kBlockRows) return first;
      status = read(target, start + *block.count);
    }
    if (status < 0 && *block.count > 0) log_failure({.layer = kLayer}, status);
    return first;
  });
}

/// The caller's buffers of a block, filled from one cell at a time.
class BlockBuffers {
 public:
  BlockBuffers(void* values, char* strings) : values_(values), strings_(strings) {
    memset(values, 0, kBlockValueBytes);
    memset(strings, 0, kBlockTextBytes);
  }

  /// Whether value `i` of the block, of type `type` and `size` bytes, still fitted.
  bool put(int i, int type, const char* cell, int size) {
    switch (type) {
      case QX_DT_INTEGER:
      case QX_DT_DOUBLE:
      case QX_DT_DATE:
      case QX_DT_TIME:
      case QX_DT_DATETIME: append(cell, size); return true;
      case QX_DT_STRING: return put_text(cell, size);
      case QX_DT_DECIMAL:
        if (i == kBlockDecimals) return false;
        append(cell, size);
        return true;
      default:
        throw CQXException(report("RQXGetData1M", QX_ERROR_INNER_ENGINE, "Error (Inner Engine)"));
    }
  }

  void append(const void* bytes, int size) {
    memcpy(static_cast<char*>(values_) + value_bytes_, bytes, static_cast<size_t>(size));
    value_bytes_ += size;
  }

 private:
  bool put_text(const char* text, int length) {
    if (text_bytes_ + length + 1 > kBlockTextBytes) return false;
    append(&text_bytes_, sizeof text_bytes_);
    memcpy(strings_ + text_bytes_, text, static_cast<size_t>(length));
    text_bytes_ += length + 1;
    return true;
  }

  void* values_;
  char* strings_;
  int value_bytes_ = 0;
  int text_bytes_ = 0;
};

/// A block whose texts are cut to `textSize` - 1 characters before they are packed.
int read_values(const Block128& block, int* type, void* values, char* strings, int textSize) {
  BlockBuffers buffers(values, strings);
  char cell[kBlockTextBytes + 1];  // room to see that a text does not fit
  int size = 0;
  return read_block(
      block,
      [&](TBaseTable& target, int pos) {
        size = target.ReadData(block.set, block.filter, pos, type, cell, textSize);
        return size;
      },
      [&](TBaseTable& target, int i) {
        if (i == 0 && *type == QX_DT_DECIMAL)
          buffers.append(&info_of(target, block.filter), sizeof(NumericInfo));
        return buffers.put(i, *type, cell, size);
      });
}

}  // namespace

int innerQXGetData1M(int table, int filter, int set, int first, int* type, int* count, void* values,
                     char* strings) {
  return read_values({table, filter, set, first, count}, type, values, strings,
                     TStrArray::kMaxText + 1);
}

int innerQXGetData1MEx(int table, int filter, int set, int first, int* type, int* count,
                       void* values, char* strings, int size) {
  const int status = check_text_size("QXGetData1MEx", size);
  if (status < 0) return status;
  return read_values({table, filter, set, first, count}, type, values, strings,
                     std::min(size, kBlockTextBytes + 1));
}

int innerQXGetData1MExPtr(int table, int filter, int set, int first, int* type, int* count,
                          long* values) {
  long address = 0;
  return read_block(
      {table, filter, set, first, count},
      [&](TBaseTable& target, int pos) {
        return target.ReadData(set, filter, pos, type, &address);
      },
      [&](TBaseTable&, int i) {
        values[i] = address;
        return true;
      });
}

int innerQXGetData1MNumeric(int table, int filter, int set, int first, int* count,
                            Numeric* values) {
  int type = 0;
  Numeric value{};
  return read_block(
      {table, filter, set, first, count},
      [&](TBaseTable& target, int pos) {
        return target.ReadData(set, filter, pos, &type, static_cast<void*>(&value));
      },
      [&](TBaseTable&, int i) {
        values[i] = value;
        return true;
      });
}

}  // namespace qxe
