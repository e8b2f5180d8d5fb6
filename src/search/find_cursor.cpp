#include "search/find_cursor.h"

#include <limits.h>

#include <algorithm>

#include "search/bitmaps.h"
#include "storage/setarray.h"

namespace qxe {

void FindCursor::open(int filter, int totalRows, const TSetArray& hits, bool null_hits) {
  const int words = bitmap_words(totalRows);
  Block<uint32_t> marks = make_block<uint32_t>(words);
  MppToBitMap({hits.PIntAr(), static_cast<size_t>(hits.FArraySize)}, words, marks.get());
  filter_ = filter;
  hit_count_ = hits.FArraySize + (null_hits ? 1 : 0);
  words_ = words;
  marks_ = std::move(marks);
}

void FindCursor::close() {
  id_ = id_ == INT_MAX ? kFirstId : id_ + 1;
  filter_ = -1;
  hit_count_ = 0;
  words_ = 0;
  marks_.reset();
}

int FindCursor::next_hit(const TSetArray& set, int position, bool backward) const {
  const int* const rows = set.PIntAr();
  const int size = set.FArraySize;
  if (backward) {
    const int* place = rows + std::clamp(position - 1L, 0L, static_cast<long>(size));
    while (place != rows) {
      if (is_hit(*--place)) return static_cast<int>(place - rows) + 1;
    }
    return 0;
  }
  const int* const end = rows + size;
  const int* const hit =
      std::find_if(rows + std::clamp(position, 0, size), end, [&](int row) { return is_hit(row); });
  return hit == end ? 0 : static_cast<int>(hit - rows) + 1;
}

}  // namespace qxe
