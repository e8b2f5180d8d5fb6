// A find cursor: the rows of a table that met a condition when it was opened, marked once, to step
// from hit to hit within any set of the table.
#pragma once

#include <stdint.h>

#include "frame/base/memory.h"

namespace qxe {

class TSetArray;

/// A table has one. It knows row numbers only and goes stale with the rows that they name.
class FindCursor : NonCopyable {
 public:
  /// Marks `hits`, rows of a table of `totalRows` rows. `null_hits`: the condition holds for NULL,
  /// so that row 0, which no set holds and which reads NULL, is a hit too.
  void open(int filter, int totalRows, const TSetArray& hits, bool null_hits);
  /// Whether it is open or not, the next one gets another id.
  void close();

  bool is_open() const { return filter_ >= 0; }
  int id() const { return id_; }
  int filter() const { return filter_; }
  /// With row 0 when that is a hit.
  int hit_count() const { return hit_count_; }

  /// Position (from 1) of the first hit of `set` behind `position`, or before it; 0 for none. Any
  /// position is good: one outside the set means its nearer end.
  int next_hit(const TSetArray& set, int position, bool backward) const;

  long GetMemSize() const { return words_ * static_cast<long>(sizeof(uint32_t)); }

 private:
  static constexpr int kFirstId = 100;

  bool is_hit(int row) const { return (marks_[row >> 5] >> (row & 31) & 1) != 0; }

  int id_ = kFirstId;
  int filter_ = -1;  // -1 while closed
  int hit_count_ = 0;
  int words_ = 0;
  Block<uint32_t> marks_;  // a bit for each row number, 0 to the row count
};

}  // namespace qxe
