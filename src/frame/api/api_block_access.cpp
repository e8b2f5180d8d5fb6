// Plain functions: readers of blocks and the loops over them. A callback runs without the engine
// lock, so that it may call the engine; the loop looks its reader up again for each block.
#include <string>
#include <unordered_set>
#include <vector>

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"
#include "frame/base/error_ring.h"
#include "joins/block_access.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int QXGetN_JBA() {
  return plain_call([] { return QX_N_JBA; });
}

int QXJBAOpen(int slot, int table, int set) {
  return plain_call([&] { return innerQXJBAOpen("QXJBAOpen", slot, table, set, nullptr); });
}

int QXJBAOpen2(int slot, int table, int set, int* filters) {
  return plain_call(__func__, {filters},
                    [&] { return innerQXJBAOpen("QXJBAOpen2", slot, table, set, filters); });
}

int QXJBARead(int slot, int* blockNo, int* firstRow, int* lastRow, int* masterRow, int* slaveCount,
              int** slaveRows, int* columnCount, _TColumnBuf** columns) {
  return plain_call(
      __func__,
      {blockNo, firstRow, lastRow, masterRow, slaveCount, slaveRows, columnCount, columns}, [&] {
        JoinBlock block{};
        const int status = innerQXJBARead(slot, &block, columnCount, columns);
        if (status < 0) return status;
        *blockNo = block.number;
        *firstRow = block.first_row;
        *lastRow = block.last_row;
        *masterRow = block.master_row;
        *slaveCount = block.slave_count;
        *slaveRows = block.slave_rows;
        return status;
      });
}

int QXJBAStatus(int slot, int* maxBlockSize) {
  return plain_call(__func__, {maxBlockSize}, [&] { return innerQXJBAStatus(slot, maxBlockSize); });
}

int QXJBAClose(int slot) {
  return plain_call([&] { return innerQXJBAClose(slot); });
}

// Callbacks

namespace {

/// One row of a block, whose values are the first ones of the columns.
struct VisitedRow {
  const JoinBlock& block;
  int position;   // in the set, from 1
  int slave_row;  // 0 of a real table
  std::vector<_TColumnBuf>& columns;
};

/// The reader of a loop, closed with it if a callback has not done so.
class LoopReader : NonCopyable {
 public:
  LoopReader(const char* name, int slot, int table, int set, const int* filters)
      : name_(name), slot_(slot) {
    status_ = plain_call([&] {
      const int status = innerQXJBAOpen(name, slot, table, set, filters);
      if (status >= 0) reader_ = JBAs[slot].get();
      return status;
    });
  }
  ~LoopReader() {
    plain_call([&] { return is_open() ? innerQXJBAClose(slot_) : 0; });
  }

  int status() const { return status_; }

  /// Calls `visit(row)` for each row until it tells to stop; 0 or a failure to read.
  template <class Visit>
  int for_each_row(const char* failure, const Visit& visit) {
    std::vector<_TColumnBuf> columns;
    for (int more = 1; more > 0;) {
      JoinBlock block{};
      more = plain_call([&] { return read(failure, &block, &columns); });
      if (more < 0) return more;
      if (!visit_block(block, columns, visit)) return 0;
    }
    return 0;
  }

 private:
  bool is_open() const { return reader_ != nullptr && JBAs[slot_].get() == reader_; }

  int read(const char* failure, JoinBlock* block, std::vector<_TColumnBuf>* columns) {
    if (!is_open()) return report(name_, QX_ERROR_PARAMETER, "%s", failure);
    int count = 0;
    _TColumnBuf* first = nullptr;
    const int status = innerQXJBARead(slot_, block, &count, &first);
    if (status < 0) return report(name_, status, "%s", failure);
    columns->assign(first, first + count);
    const int rows = block->slave_rows == nullptr ? 0 : block->slave_count;
    slave_rows_.assign(block->slave_rows, block->slave_rows + rows);
    return status;
  }

  /// Whether to go on.
  template <class Visit>
  bool visit_block(const JoinBlock& block, std::vector<_TColumnBuf>& columns, const Visit& visit) {
    for (int i = 0; i < block.slave_count; ++i) {
      const int slave_row = slave_rows_.empty() ? 0 : slave_rows_[static_cast<size_t>(i)];
      if (visit(VisitedRow{block, block.first_row + i, slave_row, columns}) != 0) return false;
      if (!plain_call([&] { return is_open(); })) return true;  // the next read says so
      for (_TColumnBuf& column : columns) {
        if (column.driving != 0) continue;
        ++column.values;
        --column.count;
      }
    }
    return true;
  }

  const char* name_;
  int slot_;
  int status_ = 0;
  const TJoinBlockAccess* reader_ = nullptr;
  std::vector<int> slave_rows_;  // of the block
};

/// Turns every exception of `body`, which runs without the engine lock, into a status.
template <class Body>
int guarded_loop(const char* name, const Body& body) {
  try {
    return body();
  } catch (...) {
    return plain_call([&] { return status_of_failure(name); });
  }
}

/// Without a callback there is nothing to loop for.
template <class CallBack>
int check_callback(const char* name, CallBack callback) {
  if (callback != nullptr) return 0;
  return plain_call(
      [&] { return report(name, QX_ERROR_PARAMETER, "CallBack Function pointer Bug"); });
}

int call_back(QXRowCallBack callback, const VisitedRow& row) {
  const JoinBlock& block = row.block;
  return callback(block.number, block.first_row, block.last_row, block.master_row,
                  block.slave_count, row.slave_row, static_cast<int>(row.columns.size()),
                  row.columns.data());
}

}  // namespace

int QXRowInfoCallBack(int table, int slot, int set, int* filters, QXRowCallBack callback) {
  return guarded_loop(__func__, [&] {
    const int status = check_callback("QXRowInfoCallBack", callback);
    if (status < 0) return status;
    LoopReader reader("QXRowInfoCallBack", slot, table, set, filters);
    if (reader.status() < 0) return reader.status();
    return reader.for_each_row("QXJBAead failed!",
                               [&](const VisitedRow& row) { return call_back(callback, row); });
  });
}

int QXSearchCallBack(int table, int slot, int set, int* filters, QXRowCallBack callback) {
  return guarded_loop(__func__, [&] {
    static constexpr char kName[] = "QXSearchCallBack";
    int status = check_callback(kName, callback);
    if (status < 0) return status;
    status = plain_call([&] { return innerQXCallBackSetSize(table, set); });
    if (status < 0) return status;
    std::vector<int> rows;
    if (status > 0) {
      LoopReader reader(kName, slot, table, set, filters);
      if (reader.status() < 0) return reader.status();
      status = reader.for_each_row("QXJBAead failed!", [&](const VisitedRow& row) {
        if (call_back(callback, row) != 0) rows.push_back(row.block.master_row);
        return 0;
      });
      if (status < 0) return status;
    }
    return plain_call([&] {
      const int id = innerQXAddSetReal(table, static_cast<int>(rows.size()), rows.data());
      return id < 0 ? report(kName, id, "QXAddSetReal failed!:") : id;
    });
  });
}

namespace {

/// The addresses of a row's values, which are equal exactly when the values are.
std::string addresses(const std::vector<_TColumnBuf>& columns) {
  std::string key;
  for (const _TColumnBuf& column : columns) {
    key.append(reinterpret_cast<const char*>(column.values), sizeof *column.values);
  }
  return key;
}

}  // namespace

int QXUniqueRowCallBack(int table, int slot, int set, int* filters, QXUniqueCallBack callback) {
  return guarded_loop(__func__, [&] {
    const int status = check_callback("QXUniqueRowCallBack", callback);
    if (status < 0) return status;
    LoopReader reader("QXUniqueRowCallBack", slot, table, set, filters);
    if (reader.status() < 0) return reader.status();
    std::unordered_set<std::string> seen;
    return reader.for_each_row("QXJBARead failed!", [&](const VisitedRow& row) {
      if (!seen.insert(addresses(row.columns)).second) return 0;
      return callback(row.position, row.block.master_row, static_cast<int>(row.columns.size()),
                      row.columns.data());
    });
  });
}
