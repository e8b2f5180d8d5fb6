#include "summary/cell_addresses.h"

#include "search/compiler_steps.h"
#include "summary/result_columns.h"

namespace qxe {

CellAddresses::CellAddresses(const GroupedRows& source) : rows_(source.set) {
  for (auto filter = source.dimensions.rbegin(); filter != source.dimensions.rend(); ++filter) {
    const auto size = static_cast<uint32_t>((*filter)->VL->FArraySize);
    dimensions_.push_back(
        {std::as_const(*(*filter)->PVL).PIntAr(), size, static_cast<uint32_t>(cells_)});
    cells_ *= size;
  }
  std::reverse(dimensions_.begin(), dimensions_.end());
}

template <class NumberAt>
void CellAddresses::combine_numbers(int count, int* out, const NumberAt& number_at) const {
  if (dimensions_.empty()) {
    std::fill_n(out, count, 0);
    return;
  }
  for (const Dimension& dimension : dimensions_) {
    const int* const numbers = dimension.numbers;
    const auto weight = static_cast<int>(dimension.weight);
    if (&dimension == dimensions_.data()) {
      for (int i = 0; i < count; ++i) out[i] = number_at(numbers, i) * weight;
    } else {
      for (int i = 0; i < count; ++i) out[i] += number_at(numbers, i) * weight;
    }
  }
}

void CellAddresses::combine(long begin, int count, int* out) const {
  if (rows_.rows == nullptr) {
    combine_numbers(count, out, [=](const int* numbers, int i) { return numbers[begin + 1 + i]; });
  } else {
    const int* const rows = rows_.rows + begin;
    combine_numbers(count, out, [=](const int* numbers, int i) { return numbers[rows[i]]; });
  }
}

const int* CellAddresses::read_numbers(const int* numbers, long begin, int count, int* room) const {
  if (rows_.rows == nullptr) return numbers + begin + 1;
  const int* const rows = rows_.rows + begin;
  for (int i = 0; i < count; ++i) room[i] = numbers[rows[i]];
  return room;
}

Block<int> CellAddresses::dimension(int d, const int* addresses, int count) const {
  const uint32_t weight = dimensions_[static_cast<size_t>(d)].weight;
  const uint32_t turn = dimensions_[static_cast<size_t>(d)].size *
                        weight;  // after so many addresses the numbers begin anew
  Block<int> result = make_row_numbers(count);
  const int workers = compile_workers(count, true);
  run_step(QX_MPP_CUBESUM_MEASURE_STEP2, workers, [&, addresses, turn, weight](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    int* const out = result.get();
    uint32_t turn_begin = 0;
    uint32_t number = 0;
    // Neighbours mostly share the turn and the number, so that there is little to divide.
    for (long i = slice.begin; i < slice.end; ++i) {
      const auto address = static_cast<uint32_t>(addresses[i]);
      if (address - turn_begin >= turn) turn_begin = address / turn * turn;
      const uint32_t within = address - turn_begin;
      if (weight == 1) {
        number = within;
      } else if (within - number * weight >= weight) {
        number = within / weight;
      }
      out[i + 1] = static_cast<int>(number);
    }
  });
  return result;
}

}  // namespace qxe
