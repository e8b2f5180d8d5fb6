// A walk over the places where the cells of a delimited text end. Some blocks are looked through
// ahead, and lines without quotes are known as a whole.
#pragma once

#include <array>
#include <bit>

#include "frame/base/bits.h"
#include "import/cell_masks.h"
#include "import/cell_scanner.h"

namespace qxe {

template <int N>
class CellFinder {
 public:
  CellFinder(const char* begin, const char* end, const Delimiters<N>& delimiters)
      : end_(end), delimiters_(delimiters), ahead_(begin) {}

  /// The next stop; the text's end when there is no further one.
  const char* next() {
    if (next_ == found_) find_more();
    if (next_ == found_) return end_;
    return stops_[next_++];
  }

  /// Goes on at `place`, which is not before the last stop; it may be the last stop itself.
  void seek(const char* place) {
    if (next_ > 0 && stops_[next_ - 1] == place) --next_;
    while (next_ < found_ && stops_[next_] < place) ++next_;
    if (ahead_ < place) ahead_ = place;
  }

  /// The stops of the line that begins at `line` when it is of the plain kind: `cells` cells,
  /// short, and no quote near. Goes on behind it. Else null.
  const char* const* plain_line(const char* line, int cells) {
    if (found_ - next_ < cells) {
      if (cells > kMaxFound) return nullptr;
      find_more();
      if (found_ - next_ < cells) return nullptr;
    }
    while (next_line_ < lines_ && line_ends_[next_line_] < line) ++next_line_;
    const char* const* const stops = &stops_[next_];
    const char* const end = stops[cells - 1];
    if (next_line_ == lines_ || line_ends_[next_line_] != end) return nullptr;
    if (last_quote_ >= line || end - line > kMaxUnquotedCell) return nullptr;
    next_ += cells;
    return stops;
  }

 private:
  static constexpr int kBlocks = 16;  // looked through at a time
  static constexpr int kMaxFound = kBlocks * kMaskBlock;
  static constexpr int kSlack = 8;  // for a last batch
  static_assert(SourceFile::kReadable >= kMaskBlock);

  using Places = std::array<const char*, 2 * kMaxFound + kSlack>;

  /// Keeps the stops not walked yet and finds further ones, if there are any.
  [[gnu::noinline]] void find_more() {
    const char* const place = next_ < found_ ? stops_[next_] : ahead_;
    while (next_line_ < lines_ && line_ends_[next_line_] < place) ++next_line_;
    found_ = keep(stops_, next_, found_);
    lines_ = keep(line_ends_, next_line_, lines_);
    for (const int before = found_; found_ == before && ahead_ < end_;) look_ahead();
  }

  static int keep(Places& places, int& from, int to) {
    const int kept = to - from;
    for (int i = 0; i < kept; ++i) places[i] = places[from + i];
    from = 0;
    return kept;
  }

  void look_ahead() {
    CellMasks masks[kBlocks];
    const long left = end_ - ahead_;
    const int blocks =
        left < kMaxFound ? static_cast<int>((left + kMaskBlock - 1) / kMaskBlock) : kBlocks;
    find_cell_masks(ahead_, blocks, {delimiters_.data(), N}, masks);
    for (int i = 0; i < blocks; ++i, ahead_ += kMaskBlock) {
      const long rest = end_ - ahead_;
      const uint64_t inside = rest < kMaskBlock ? (uint64_t{1} << rest) - 1 : ~uint64_t{0};
      found_ = store<8>(masks[i].stops & inside, stops_, found_);
      lines_ = store<2>(masks[i].line_feeds & inside, line_ends_, lines_);
      if (masks[i].quotes != 0) last_quote_ = ahead_ + kMaskBlock - 1;  // or before
    }
  }

  /// Stores `Batch` places at a time and so more than there are: most blocks take the same way.
  template <int Batch>
  int store(uint64_t mask, Places& places, int count) const {
    const int after = count + bit_count(mask);
    do {
      for (int i = 0; i < Batch; ++i, mask &= mask - 1) {
        places[count + i] = ahead_ + std::countr_zero(mask);
      }
      count += Batch;
    } while (count < after);
    return after;
  }

  const char* const end_;
  const Delimiters<N> delimiters_;
  const char* ahead_;  // the first byte that was not looked at
  int next_ = 0;
  int found_ = 0;
  int next_line_ = 0;
  int lines_ = 0;
  const char* last_quote_ = nullptr;  // no quote stands behind it
  Places stops_;
  Places line_ends_;
};

}  // namespace qxe
