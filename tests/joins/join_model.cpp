#include "join_model.h"

#include <algorithm>

namespace qxe::test {

std::vector<Cell> JoinModel::key(int side, int row) const {
  std::vector<Cell> cells;
  for (const auto& [master, slave] : keys_) {
    cells.push_back(sides_[side]->cell(side == 0 ? master : slave, row));
  }
  return cells;
}

bool JoinModel::has_partner(int side, int row, const std::vector<int>& others) const {
  const auto own = key(side, row);
  return std::any_of(others.begin(), others.end(),
                     [&](int other) { return key(1 - side, other) == own; });
}

bool JoinModel::is_left_out(int side, int row) const {
  if (keys_.size() > 1) {
    const std::vector<int>& known = first_.side[side];
    return std::find(known.begin(), known.end(), row) == known.end();
  }
  if (!outer_) return false;
  const Cell cell = key(side, row)[0];
  return is_null(cell) || cell == Cell(std::string());
}

std::vector<int> JoinModel::unmatched(const JoinRowsOf& rows, int side) const {
  std::vector<int> found;
  for (const int row : rows.side[side]) {
    if (!has_partner(side, row, rows.side[1 - side])) found.push_back(row);
  }
  return found;
}

JoinRowsOf JoinModel::joined(const JoinRowsOf& rows) const {
  JoinRowsOf result;
  result.direction = rows.direction;
  for (int side = 0; side < 2; ++side) {
    for (const int row : rows.side[side]) {
      if (is_left_out(side, row)) continue;
      if (outer_ || has_partner(side, row, rows.side[1 - side])) result.side[side].push_back(row);
    }
  }
  const int driven = 1 - rows.direction;
  const std::vector<int>& driving_rows = result.side[rows.direction];
  const auto order = [&](int row) {  // rows without partner first, as they are
    return has_partner(driven, row, driving_rows) ? key(driven, row) : std::vector<Cell>();
  };
  std::stable_sort(result.side[driven].begin(), result.side[driven].end(),
                   [&](int a, int b) { return order(a) < order(b); });
  return result;
}

std::vector<std::pair<int, int>> JoinModel::pairs(const JoinRowsOf& rows) const {
  std::vector<std::pair<int, int>> result;
  const int direction = rows.direction;
  const auto put = [&](int driving, int driven) {
    result.push_back(direction == 0 ? std::pair(driving, driven) : std::pair(driven, driving));
  };
  for (const int driven : unmatched(rows, 1 - direction)) put(0, driven);
  for (const int driving : rows.side[direction]) {
    const auto own = key(direction, driving);
    const size_t before = result.size();
    for (const int driven : rows.side[1 - direction]) {
      if (key(1 - direction, driven) == own) put(driving, driven);
    }
    if (result.size() == before) put(driving, 0);
  }
  return result;
}

}  // namespace qxe::test
