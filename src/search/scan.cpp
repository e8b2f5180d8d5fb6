#include "search/scan.h"

#include <algorithm>

#include "parallel/sliced_task.h"
#include "search/row_parts.h"

namespace qxe {

namespace {

/// How the rows are tested.
struct Scan {
  ScanRows rows;
  RangeTest ranges;
  BitTest bits;  // instead of the ranges when not null

  long keep(Slice slice, int* out) const {
    const ScanKernels& kernels = scan_kernels();
    return bits.words == nullptr ? kernels.in_ranges(rows, slice.begin, slice.end, ranges, out)
                                 : kernels.in_bits(rows, slice.begin, slice.end, bits, out);
  }
  /// Waking a worker costs as much as some ten thousand lookups. Comparing value numbers one behind
  /// the other runs at the speed of memory, of which a second worker adds little.
  long rows_per_worker() const {
    const bool streams = rows.rows == nullptr && bits.words == nullptr;
    return ENG->rows_per_worker() * (streams ? 16 : 4);
  }
};

struct MoveRecParams {
  Scan scan;
  Slice slice;
  int* out;   // room for the whole slice
  long kept;  // out
};

/// A set with the attribute block of `source` and room for all its rows.
std::unique_ptr<TSetArray> room_for(const TSetArray& source) {
  auto room = std::make_unique<TSetArray>(source.FArraySize, false);
  memcpy(room->FUserArea, source.FUserArea, sizeof room->FUserArea);
  return room;
}

std::unique_ptr<TSetArray> scanned(const TSetArray& source, const Scan& scan) {
  auto room = room_for(source);
  int* const out = room->PIntAr();
  SlicedTask<MoveRecParams> task(QX_MPP_MOVE_REC, source.FArraySize, scan.rows_per_worker());
  task.run([&](Slice slice) { return MoveRecParams{scan, slice, out + slice.begin, 0}; });
  std::vector<RowPart> parts;
  for (int i = 0; i < task.workers(); ++i) parts.push_back({task[i].out, task[i].kept});
  return packed_parts(std::move(room), parts);
}

ScanRows rows_of(const TSetArray& source, const int* pv) {
  return {pv, source.is_counted_up() ? nullptr : source.PIntAr()};
}

}  // namespace

int mpp_move_rec(void* block) {
  return run_task<MoveRecParams>(block, [](MoveRecParams& params) {
    params.kept = params.scan.keep(params.slice, params.out);
  });
}

std::unique_ptr<TSetArray> MoveRecsForScan(const TSetArray& source, const int* pv,
                                           const RangeTest& test) {
  return scanned(source, {rows_of(source, pv), test, {}});
}

std::unique_ptr<TSetArray> MoveRecsForScan(const TSetArray& source, const int* pv,
                                           const TableTest& test) {
  const Block<uint32_t> words = make_block<uint32_t>((test.size + 31) / 32);
  pack_hits(test.hits, test.size, words.get());
  if (!test.wanted) {
    std::for_each_n(words.get(), (test.size + 31) / 32, [](uint32_t& word) { word = ~word; });
  }
  return scanned(source, {rows_of(source, pv), {}, {words.get()}});
}

std::unique_ptr<TSetArray> MoveRecsForScanScope(const TSetArray& source, const int* keys,
                                                const unsigned char* hits) {
  auto room = room_for(source);
  const int* const rows = source.PIntAr();
  int* const out = room->PIntAr();
  int kept = 0;
  for (int i = 0; i < source.FArraySize; ++i) {
    out[kept] = rows[i];
    kept += hits[keys[i]] != 0;
  }
  return packed_parts(std::move(room), {{out, kept}});
}

}  // namespace qxe
