#include "search/scan.h"

namespace qxe {

namespace {

/// How the rows are tested: by which keys, against what.
struct Scan {
  const int* rows;
  int* out;  // each slice writes from its own start on
  const int* pv;
  const int* local_keys;  // instead of pv when not null
  TableTest table;        // instead of the ranges when not null
  RangeTest ranges;
};

struct MoveRecParams {
  Scan scan;
  Slice slice;
  long kept;  // out
};

long move_slice(const Scan& scan, Slice slice) {
  int* const out = scan.out + slice.begin;
  if (scan.local_keys != nullptr) {
    return move_recs(scan.rows, slice, LocalKeys{scan.local_keys}, scan.table, out);
  }
  if (scan.table.hits != nullptr) {
    return move_recs(scan.rows, slice, RowKeys{scan.pv}, scan.table, out);
  }
  return move_recs(scan.rows, slice, RowKeys{scan.pv}, scan.ranges, out);
}

int move_all(const Scan& scan, int n) {
  return static_cast<int>(move_slice(scan, {0, n}));
}

int mpp_move_all(const Scan& scan, int n) {
  SlicedTask<MoveRecParams> task(QX_MPP_MOVE_REC, n, ENG->rows_per_worker());
  task.run([&](Slice slice) { return MoveRecParams{scan, slice, 0}; });
  long kept = task[0].kept;
  for (int worker = 1; worker < task.workers(); ++worker) {
    const MoveRecParams& part = task[worker];
    memmove(scan.out + kept, scan.out + part.slice.begin,
            sizeof(int) * static_cast<size_t>(part.kept));
    kept += part.kept;
  }
  return static_cast<int>(kept);
}

}  // namespace

int mpp_move_rec(void* block) {
  return run_task<MoveRecParams>(
      block, [](MoveRecParams& params) { params.kept = move_slice(params.scan, params.slice); });
}

int MoveRecsForScan(int n, const int* rows, int* out, const int* pv, const RangeTest& test) {
  return move_all({rows, out, pv, nullptr, {nullptr}, test}, n);
}

int MoveRecsForScan(int n, const int* rows, int* out, const int* pv, const TableTest& test) {
  return move_all({rows, out, pv, nullptr, test, {}}, n);
}

int MoveRecsForScanScope(int n, const int* rows, int* out, const int* keys, const TableTest& test) {
  return move_all({rows, out, nullptr, keys, test, {}}, n);
}

int MppMoveRecsForScan(int n, const int* rows, int* out, const int* pv, const RangeTest& test) {
  return mpp_move_all({rows, out, pv, nullptr, {nullptr}, test}, n);
}

int MppMoveRecsForScan(int n, const int* rows, int* out, const int* pv, const TableTest& test) {
  return mpp_move_all({rows, out, pv, nullptr, test, {}}, n);
}

int MppMoveRecsForScanScope(int n, const int* rows, int* out, const int* keys,
                            const TableTest& test) {
  return mpp_move_all({rows, out, nullptr, keys, test, {}}, n);
}

}  // namespace qxe
