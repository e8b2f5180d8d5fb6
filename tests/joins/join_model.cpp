#include "join_model.h"

#include <algorithm>

namespace qxe::test {

std::optional<Decimal> at_scale(const Decimal& number, int scale) {
  constexpr int kDigits = 38;
  int128 limit = 1;
  for (int i = 0; i < kDigits; ++i) limit *= 10;
  int128 units = number.units;
  for (int i = number.scale; i < scale; ++i) {
    if (units >= limit / 10 || units <= -limit / 10) return std::nullopt;
    units *= 10;
  }
  int128 divisor = 1;
  for (int i = scale; i < number.scale; ++i) divisor *= 10;
  const int128 rest = units % divisor;
  units /= divisor;
  if (rest >= divisor - rest) ++units;
  if (-rest >= divisor + rest) --units;
  return Decimal{scale, units};
}

std::vector<Cell> JoinModel::key(int side, int row) const {
  std::vector<Cell> cells;
  for (const auto& [master, slave] : keys_) {
    Cell cell = sides_[side]->cell(side == 0 ? master : slave, row);
    const int scale = sides_[0]->column(master).scale;
    if (auto* const number = std::get_if<Decimal>(&cell)) {
      // One that does not fit is no decimal of the master.
      cell = at_scale(*number, scale).value_or(Decimal{scale + 1, number->units});
    }
    cells.push_back(cell);
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

JoinRowsOf JoinModel::joined(JoinRowsOf rows) const {
  JoinRowsOf result;
  result.direction = rows.direction;
  for (int side = 0; side < 2; ++side) {
    std::vector<int>& own = rows.side[side];
    own.erase(
        std::remove_if(own.begin(), own.end(), [&](int row) { return is_left_out(side, row); }),
        own.end());
  }
  for (int side = 0; side < 2; ++side) {
    for (const int row : rows.side[side]) {
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
