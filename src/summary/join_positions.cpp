#include "summary/join_positions.h"

#include <algorithm>

#include "search/compiler_steps.h"
#include "storage/strings.h"
#include "summary/result_columns.h"
#include "tables/realtables.h"
#include "tables/row_list.h"

namespace qxe {

int mpp_join_summary_add_dimension_filter(void* block) {
  return run_pool_step(block);
}

PositionColumn::PositionColumn(const TFilter& source, const std::string& name)
    : own_numbers_(false) {
  qxe_strlcpy(filter_.FFilterName, name.c_str(), TFilter::kNameSize);
  filter_.PVL = source.PVL;
  filter_.VL = source.VL;
  filter_.FVLBorrowed = true;
}

PositionColumn::PositionColumn(const TFilter& source, const std::string& name, Block<int> numbers,
                               int count)
    : PositionColumn(source, name) {
  numbers[0] = 0;
  filter_.PVL = std::make_unique<TIntArray>(count + 1, std::move(numbers)).release();
  own_numbers_ = true;
}

namespace {

const int* row_pointers(const TFilter& filter) {
  return std::as_const(*filter.PVL).PIntAr();
}

/// `body(position)`, from 0, for all positions, shared out among the workers.
template <class Body>
void for_positions(int count, const Body& body) {
  const int workers = compile_workers(count, true);
  run_step(QX_MPP_JOIN_SUMMARY_ADD_DIMENSION_FILTER, workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    for (long i = slice.begin; i < slice.end; ++i) body(i);
  });
}

/// The row pointers at `rows`.
Block<int> numbers_at(const TFilter& source, const int* rows, int count) {
  Block<int> numbers = make_row_numbers(count);
  const int* const pv = row_pointers(source);
  int* const out = numbers.get() + 1;
  for_positions(count, [=](long i) { out[i] = pv[rows[i]]; });
  return numbers;
}

}  // namespace

PositionColumn::~PositionColumn() {
  if (!own_numbers_) filter_.PVL = nullptr;
}

void PositionColumn::test_for_null() {
  const int count = filter_.PVL->FArraySize - 1;
  Block<int> numbers = make_row_numbers(count);
  numbers[0] = 0;
  for_positions(count, [pv = row_pointers(filter_) + 1, out = numbers.get() + 1](long i) {
    out[i] = pv[i] != 0 ? 1 : 0;
  });
  if (own_numbers_) delete filter_.PVL;
  filter_.PVL = nullptr;
  filter_.PVL = std::make_unique<TIntArray>(count + 1, std::move(numbers)).release();
  own_numbers_ = true;
  two_values_.SetArraySize(2);
  filter_.VL = &two_values_;
}

SidePositions::SidePositions(const JoinRows& pairs, int side, int keys) {
  if (side == pairs.direction()) {
    take_driving(pairs);
  } else {
    take_driven(pairs, keys);
  }
}

void SidePositions::take_driving(const JoinRows& pairs) {
  rows_.assign(pairs.driving(), pairs.driving() + pairs.driving_count());
  keys_.SetArraySize(count() + 1);
  int* const out = keys_.values() + 1;
  for_positions(count(), [&, out](long i) { out[i] = pairs.driving_key()(pairs.driving()[i]); });
}

void SidePositions::take_driven(const JoinRows& pairs, int keys) {
  std::vector<int> numbers;
  for (int key = 0; key < keys; ++key) {
    const Slice places = pairs.partners(key);
    rows_.insert(rows_.end(), pairs.driven() + places.begin, pairs.driven() + places.end);
    numbers.resize(rows_.size(), key);
  }
  keys_.SetArraySize(count() + 1);
  std::copy(numbers.begin(), numbers.end(), keys_.values() + 1);
}

std::unique_ptr<PositionColumn> SidePositions::column(const TFilter& source, int,
                                                      const std::string& name) const {
  return std::make_unique<PositionColumn>(source, name, numbers_at(source, rows_.data(), count()),
                                          count());
}

namespace {

/// For each driven row the row that drives it, or null if one of them has several.
Block<int> single_drivers(const JoinRows& pairs, int driven_count, int keys) {
  Block<int> drivers = make_cleared_block<int>(driven_count);
  std::vector<int> lonely(static_cast<size_t>(keys));  // driving rows so far, each with a row 0
  long pair_count = 0;
  for (int i = 0; i < pairs.driving_count() && pair_count <= driven_count; ++i) {
    const int row = pairs.driving()[i];
    const int key = pairs.driving_key()(row);
    const Slice places = pairs.partners(key);
    pair_count += places.size();
    if (pairs.driven()[places.begin] == 0) {
      drivers[places.begin + lonely[static_cast<size_t>(key)]++] = row;
    } else {
      std::fill(drivers.get() + places.begin, drivers.get() + places.end, row);
    }
  }
  return pair_count == driven_count ? std::move(drivers) : nullptr;
}

bool has_single_partners(const JoinRows& pairs, int keys) {
  long most = 0;
  for (int key = 0; key < keys; ++key) most = std::max(most, pairs.partners(key).size());
  return most <= 1;
}

}  // namespace

std::unique_ptr<LinePositions> LinePositions::find(const TJoinTable& join, const JoinSet& set) {
  const JoinRows pairs = join.rows(set);
  const int keys = join.key().size();
  if (pairs.single_rows() != nullptr || has_single_partners(pairs, keys)) {
    return std::unique_ptr<LinePositions>(
        new LinePositions(join, set, pairs, set.direction, nullptr));
  }
  Block<int> drivers = single_drivers(pairs, set.rows[set.driven()]->FArraySize, keys);
  if (drivers == nullptr) return nullptr;
  return std::unique_ptr<LinePositions>(
      new LinePositions(join, set, pairs, set.driven(), std::move(drivers)));
}

LinePositions::LinePositions(const TJoinTable& join, const JoinSet& set, const JoinRows& pairs,
                             int side, Block<int> partners)
    : pairs_(pairs), side_(side), rows_(*set.rows[side]), partners_(std::move(partners)) {
  all_ = &join.parent(side).root_set();
  if (rows_.FArraySize == all_->FArraySize && all_->is_counted_up()) return;
  own_all_ = std::make_unique<TSetArray>(rows_.FArraySize, false);
  own_all_->InitAsSet();
  all_ = own_all_.get();
}

std::unique_ptr<PositionColumn> LinePositions::column(const TFilter& source, int side,
                                                      const std::string& name) const {
  const int count = rows_.FArraySize;
  if (side != side_) {
    return std::make_unique<PositionColumn>(source, name, partner_numbers(source), count);
  }
  if (rows_.is_counted_up() && source.PVL->FArraySize == count + 1) {
    return std::make_unique<PositionColumn>(source, name);
  }
  return std::make_unique<PositionColumn>(
      source, name, numbers_at(source, std::as_const(rows_).PIntAr(), count), count);
}

/// The driven rows' column by the driving rows: what a key's partner has is found once.
Block<int> LinePositions::partner_numbers(const TFilter& source) const {
  const int count = rows_.FArraySize;
  if (partners_ != nullptr) return numbers_at(source, partners_.get(), count);
  const KeyNumbers& key = pairs_.driving_key();
  const Block<int> by_value = pairs_.partners_of_values();
  const int* const pv = row_pointers(source);
  for (int value = 0; value < key.values; ++value) by_value[value] = pv[by_value[value]];
  Block<int> numbers = make_row_numbers(count);
  const auto fill = [&, key_pv = key.pv, values = by_value.get(),
                     out = numbers.get() + 1](const auto& row_at) {
    for_positions(count, [=](long i) { out[i] = values[key_pv[row_at(i)]]; });
  };
  const RowList rows(rows_);
  if (rows.rows == nullptr) {
    fill([](long i) { return i + 1; });
  } else {
    fill([list = rows.rows](long i) { return list[i]; });
  }
  return numbers;
}

}  // namespace qxe
