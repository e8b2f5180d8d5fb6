// A join beside the engine's, by nested loops over the parents' rows: slow and plainly right.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/naive_model.h"

namespace qxe::test {

/// The number at another scale, rounded half up, unless it has too many digits then.
std::optional<Decimal> at_scale(const Decimal& number, int scale);

/// The rows of both sides behind a join set, in the engine's order; row 0 stands nowhere here.
struct JoinRowsOf {
  std::vector<int> side[2];
  int direction = 0;
};

class JoinModel {
 public:
  /// `keys` names the key columns of each side, in turn; `rows` are the joined ones.
  JoinModel(const NaiveModel& master, const NaiveModel& slave,
            std::vector<std::pair<std::string, std::string>> keys, JoinRowsOf rows, bool outer)
      : sides_{&master, &slave}, keys_(std::move(keys)), first_(std::move(rows)), outer_(outer) {}

  const NaiveModel& side(int i) const { return *sides_[i]; }

  /// What stays of the rows when they are joined: those that are shown, the driven ones by key.
  JoinRowsOf joined(JoinRowsOf rows) const;
  /// The rows of either side without partner.
  std::vector<int> unmatched(const JoinRowsOf& rows, int side) const;
  /// Pairs of rows of side 0 and side 1 in order, 0 for a missing one. `rows` are joined ones.
  std::vector<std::pair<int, int>> pairs(const JoinRowsOf& rows) const;

 private:
  std::vector<Cell> key(int side, int row) const;
  bool has_partner(int side, int row, const std::vector<int>& others) const;
  /// A row with a NULL key in an outer join, or one that has no key because it was not joined.
  bool is_left_out(int side, int row) const;

  const NaiveModel* sides_[2];
  std::vector<std::pair<std::string, std::string>> keys_;
  JoinRowsOf first_;
  bool outer_;
};

}  // namespace qxe::test
