// A cube for each worker: cells for all combinations, into which the worker adds its share of the
// rows; then the cubes are merged.
#include <vector>

#include "search/compiler_steps.h"
#include "summary/cell_addresses.h"
#include "summary/group_results.h"

namespace qxe {

int mpp_cubesum_measure_step1(void* block) {
  return run_pool_step(block);
}

int mpp_cubesum_measure_step2(void* block) {
  return run_pool_step(block);
}

namespace {

// A sum waits for the one before in its cell. A cube of a few cells is kept several times, so that
// neighbouring rows do not wait for each other.
constexpr long kFewCells = 64;
constexpr int kCopies = 4;
// Values lie out of the first caches, so they are called so many rows ahead. Beside cells that do
// too it costs more than it brings.
constexpr int kRowsAhead = 24;

class Cube : public Grouping {
 public:
  explicit Cube(const GroupedRows& source)
      : source_(source),
        addresses_(source),
        copies_(addresses_.cells() <= kFewCells ? kCopies : 1),
        workers_(compile_workers(source.rows(), true)),
        mergers_(compile_workers(addresses_.cells(), true)) {}

  Reduced reduce(const Wanted& wanted) override {
    return with_measure(wanted, source_, [this](const auto& measure) { return sum_up(measure); });
  }

  Block<int> dimension(int d) const override {
    return addresses_.dimension(d, occupied_.get(), groups_);
  }

 private:
  template <class Measure>
  using Cubes = std::vector<Block<typename Measure::Cell>>;

  template <class Measure>
  Reduced sum_up(const Measure& measure) {
    Cubes<Measure> cubes(static_cast<size_t>(workers_));
    run_step(QX_MPP_CUBESUM_MEASURE_STEP1, workers_, [&](int worker) {
      auto& cube = cubes[static_cast<size_t>(worker)];
      cube = make_cleared_block<typename Measure::Cell>(addresses_.cells() * copies_);
      add_rows(measure, even_slice(source_.rows(), workers_, worker), cube.get());
    });
    run_step(QX_MPP_CUBESUM_MEASURE_STEP2, mergers_,
             [&](int worker) { merge(cubes, even_slice(addresses_.cells(), mergers_, worker)); });
    const auto* const cells = cubes[0].get();
    if (counts_ == nullptr) find_groups(cells);
    return results(measure, cells);
  }

  template <class Measure>
  void add_rows(const Measure& measure, Slice slice, typename Measure::Cell* cube) const {
    int address_room[CellAddresses::kBlock];
    int number_room[CellAddresses::kBlock];
    for_each_block(slice, [&](long begin, int count) {
      const int* numbers = nullptr;
      if constexpr (Measure::Cell::kHasSum || Measure::Cell::kHasExtremes) {
        numbers = addresses_.read_numbers(measure.numbers, begin, count, number_room);
      }
      addresses_.visit(begin, count, address_room, [&](const auto& address_at) {
        if (copies_ == 1) {
          add_block<1>(measure, address_at, numbers, count, cube);
        } else {
          add_block<kCopies>(measure, address_at, numbers, count, cube);
        }
      });
    });
  }

  /// Turns by turns into the copies of the cube.
  template <int copies, class Measure, class AddressAt>
  void add_block(const Measure& measure, const AddressAt& address_at, const int* numbers, int count,
                 typename Measure::Cell* cube) const {
    const auto values = measure.values;
    const NullMinimum nulls = measure.nulls;
    const long size = addresses_.cells();
    const auto add = [=](int i, int copy) {
      if constexpr (copies > 1 && Measure::Cell::kHasSum) {
        values.prefetch(numbers[std::min(i + kRowsAhead, count - 1)]);
      }
      auto& cell = cube[copy * size + address_at(i)];
      if constexpr (Measure::Cell::kHasSum || Measure::Cell::kHasExtremes) {
        cell.add_to_many(numbers[i], values, nulls);
      } else {
        ++cell.count;
      }
    };
    int i = 0;
    for (; i + copies <= count; i += copies) {
      for (int copy = 0; copy < copies; ++copy) add(i + copy, copy);
    }
    for (; i < count; ++i) add(i, 0);
  }

  template <class Cell>
  void merge(std::vector<Block<Cell>>& cubes, Slice cells) const {
    for (size_t worker = 0; worker < cubes.size(); ++worker) {
      for (int copy = worker == 0 ? 1 : 0; copy < copies_; ++copy) {
        const Cell* const from = cubes[worker].get() + copy * addresses_.cells();
        for (long i = cells.begin; i < cells.end; ++i) cubes[0][i].merge(from[i]);
      }
    }
  }

  template <class Cell>
  void find_groups(const Cell* cells) {
    std::vector<int> sizes(static_cast<size_t>(mergers_));
    run_step(QX_MPP_CUBESUM_MEASURE_STEP2, mergers_, [&](int worker) {
      const Slice slice = even_slice(addresses_.cells(), mergers_, worker);
      sizes[static_cast<size_t>(worker)] =
          static_cast<int>(std::count_if(cells + slice.begin, cells + slice.end,
                                         [](const Cell& cell) { return cell.count != 0; }));
    });
    int groups = 0;
    for (int& size : sizes) groups += std::exchange(size, groups);
    occupied_ = make_block<int>(groups);
    Block<int> counts = make_block<int>(groups);
    run_step(QX_MPP_CUBESUM_MEASURE_STEP2, mergers_, [&](int worker) {
      const Slice slice = even_slice(addresses_.cells(), mergers_, worker);
      int group = sizes[static_cast<size_t>(worker)];
      for (long i = slice.begin; i < slice.end; ++i) {
        if (cells[i].count == 0) continue;
        occupied_[group] = static_cast<int>(i);
        counts[group++] = cells[i].count;
      }
    });
    groups_ = groups;
    counts_ = std::move(counts);
  }

  template <class Measure>
  Reduced results(const Measure& measure, const typename Measure::Cell* cells) const {
    ResultRows<typename Measure::Cell> rows(groups_);
    const int workers = compile_workers(groups_, true);
    run_step(QX_MPP_CUBESUM_MEASURE_STEP2, workers, [&](int worker) {
      const Slice slice = even_slice(groups_, workers, worker);
      for (long i = slice.begin; i < slice.end; ++i) {
        rows.put(i, cells[occupied_[i]], measure.nulls);
      }
    });
    return rows.take();
  }

  const GroupedRows& source_;
  const CellAddresses addresses_;
  const int copies_;
  const int workers_;    // that add rows
  const int mergers_;    // that merge cells
  Block<int> occupied_;  // addresses of the groups
};

}  // namespace

std::unique_ptr<Grouping> make_cube(const GroupedRows& source) {
  return std::make_unique<Cube>(source);
}

}  // namespace qxe
