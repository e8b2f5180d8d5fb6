// Building a join set from the rows of its two sides.
#pragma once

#include "joins/join_key.h"
#include "joins/join_set.h"

namespace qxe {

/// The rows of one side, none of them 0. Those of the set's own stay where they are if they can.
struct SideRows {
  explicit SideRows(const TSetArray& borrowed, const TSetArray* key_runs = nullptr)
      : rows(&borrowed), runs(key_runs) {}
  explicit SideRows(std::unique_ptr<TSetArray> rows_of_its_own, const TSetArray* key_runs = nullptr)
      : rows(rows_of_its_own.get()), own(std::move(rows_of_its_own)), runs(key_runs) {}

  /// A set of these rows, which are used up.
  std::unique_ptr<TSetArray> take();

  const TSetArray* rows;
  std::unique_ptr<TSetArray> own;
  /// If known: the index by key of an inner join of all these rows, where a key without a run has
  /// no row here either.
  const TSetArray* runs;
};

struct JoinSource {
  int direction;
  SideRows sides[kSides];
  bool first = false;  // the join's first set: the rows without partner are noted, which none asks
                       // of the others
};

/// Pairs the rows with equal keys. The driving rows keep their order, and so do the partners of
/// each. Both sides' rows keep name and attribute block of their source. Throws QX_ERROR_JOIN_SIZE
/// for more join rows than an int can number.
///
/// Inner: rows without partner are dropped. NULL pairs with NULL.
JoinSet MakeInnerJoin(JoinSource source, const JoinKey& key);
/// Outer: rows without partner stay, with row 0 for one. Rows with key number 0 are dropped.
JoinSet MakeOuterJoin(JoinSource source, const JoinKey& key);

}  // namespace qxe
