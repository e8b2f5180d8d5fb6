#include "search/scan.h"

#include <vector>

#include "parallel/mpp_memory.h"
#include "parallel/sliced_task.h"

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
  /// Comparing value numbers one behind the other runs at the speed of memory, of which a second
  /// worker adds little; waking it costs as much as some hundred thousand rows.
  long rows_per_worker() const {
    const bool streams = rows.rows == nullptr && bits.words == nullptr;
    return ENG->rows_per_worker() * (streams ? 16 : 1);
  }
};

struct MoveRecParams {
  Scan scan;
  Slice slice;
  int* out;   // room for the whole slice
  long kept;  // out
};

/// Hits of one slice.
struct Part {
  const int* rows;
  size_t bytes;
};

std::unique_ptr<TSetArray> result_like(const TSetArray& source, int capacity) {
  auto result = std::make_unique<TSetArray>(capacity, false);
  memcpy(result->FUserArea, source.FUserArea, sizeof result->FUserArea);
  return result;
}

/// `room` was made for every row and touched as far as there are hits. Few of them move to a block
/// of their own, so that the next search finds `room` in the allocator's cache; many stay.
std::unique_ptr<TSetArray> packed(std::unique_ptr<TSetArray> room, const std::vector<Part>& parts,
                                  int kept) {
  if (kept >= room->FArraySize / 2) {
    char* out = reinterpret_cast<char*>(room->PIntAr());
    for (const Part& part : parts) {
      memmove(out, part.rows, part.bytes);
      out += part.bytes;
    }
    room->SetArraySize(kept);
    room->AdjustMemArea();
    return room;
  }
  auto result = result_like(*room, kept);
  char* out = reinterpret_cast<char*>(result->PIntAr());
  for (const Part& part : parts) {
    MppMemCpy(out, part.rows, part.bytes);
    out += part.bytes;
  }
  return result;
}

std::unique_ptr<TSetArray> scanned(const TSetArray& source, const Scan& scan) {
  auto room = result_like(source, source.FArraySize);
  int* const out = room->PIntAr();
  SlicedTask<MoveRecParams> task(QX_MPP_MOVE_REC, source.FArraySize, scan.rows_per_worker());
  task.run([&](Slice slice) { return MoveRecParams{scan, slice, out + slice.begin, 0}; });
  std::vector<Part> parts;
  long kept = 0;
  for (int worker = 0; worker < task.workers(); ++worker) {
    const MoveRecParams& done = task[worker];
    parts.push_back({done.out, sizeof(int) * static_cast<size_t>(done.kept)});
    kept += done.kept;
  }
  return packed(std::move(room), parts, static_cast<int>(kept));
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
  return scanned(source, {rows_of(source, pv), {}, {words.get()}});
}

std::unique_ptr<TSetArray> MoveRecsForScanScope(const TSetArray& source, const int* keys,
                                                const unsigned char* hits) {
  auto room = result_like(source, source.FArraySize);
  const int* const rows = source.PIntAr();
  int* const out = room->PIntAr();
  int kept = 0;
  for (int i = 0; i < source.FArraySize; ++i) {
    out[kept] = rows[i];
    kept += hits[keys[i]] != 0;
  }
  return packed(std::move(room), {{out, sizeof(int) * static_cast<size_t>(kept)}}, kept);
}

}  // namespace qxe
