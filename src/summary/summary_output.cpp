// A summary as columns of a real table: a row for each cell, or for each that has rows.
#include <algorithm>
#include <utility>

#include "parallel/smpengine.h"
#include "storage/family.h"
#include "summary/output_table.h"
#include "summary/result_columns.h"
#include "summary/summary.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr int kAtTheEnd = 1024;

}  // namespace

/// The cells that become rows, in ascending order.
struct TSummary::OutputRows {
  int count;
  Block<int> cells;  // null: all

  bool all() const { return cells == nullptr; }

  /// `of_cell(cell)` for each row.
  template <class Value, class OfCell>
  void fill(Value* out, OfCell&& of_cell) const {
    for (int row = 0; row < count; ++row) out[row] = of_cell(all() ? row : cells[row]);
  }

  template <class Value>
  Block<Value> picked(const Value* of_cells) const {
    Block<Value> values = make_block<Value>(count);
    fill(values.get(), [&](int cell) { return of_cells[cell]; });
    return values;
  }

  /// A column of the values at these numbers.
  Column picked_values(const TBaseArray& list, const int* numbers) const {
    Block<int> rows = make_row_numbers(count);
    fill(rows.get() + 1, [&](int cell) { return numbers[cell]; });
    return used_values_column(list, std::move(rows), count);
  }
};

/// Averages of all cells: of doubles or of decimals.
struct TSummary::Averages {
  Block<double> doubles;
  Block<Numeric> decimals;
};

TSummary::OutputRows TSummary::output_rows(bool nonEmptyOnly) const {
  const int all = static_cast<int>(cell_count_);
  const auto used =
      static_cast<int>(all - std::count(cells_.count.get(), cells_.count.get() + all, 0));
  if (!nonEmptyOnly || used == all) return {all, nullptr};
  Block<int> cells = make_block<int>(static_cast<long>(used) + 1);  // one to write in vain
  int row = 0;
  for (int cell = 0; cell < all; ++cell) {
    cells[row] = cell;
    row += cells_.count[cell] != 0;
  }
  return {used, std::move(cells)};
}

int TSummary::SummaryIntoRealTable(int mask, bool nonEmptyOnly) {
  const UntrimmedNames untrimmed;
  follow_lists();
  const OutputRows rows = output_rows(nonEmptyOnly);
  std::unique_ptr<TRealTable> output = new_output_table(*source_, rows.count);
  for (int i = 0; i < dimension_count(); ++i) add_dimension(*output, i, rows);
  Averages averages = add_results(*output, mask, rows);
  const int id = ENG->collection()->adopt_table(std::move(output));
  if (rows.all()) keep(std::move(averages));
  return id;
}

void TSummary::AppendSummaryToRealTable(TRealTable& table, int mask, bool nonEmptyOnly) {
  const UntrimmedNames untrimmed;
  table.CheckMergeFilterTVL(true);
  const OutputRows rows = output_rows(nonEmptyOnly);
  if (rows.count != table.TotalRecs()) {
    throw CQXException(report("AppendSummaryToRealTable", QX_ERROR_ROW_SIZE,
                              "Invalid Parameter : RowCount(%d)", rows.count));
  }
  Averages averages = add_results(table, mask, rows);
  if (rows.all()) keep(std::move(averages));
}

/// Deliberate: an output of all cells leaves its averages in the place of the sums, where later
/// reads and outputs find them.
void TSummary::keep(Averages averages) {
  if (averages.doubles != nullptr) cells_.sum = std::move(averages.doubles);
  if (averages.decimals != nullptr) cells_.decimal_sum = std::move(averages.decimals);
}

// Dimensions

/// A value of its own is its category's number; the numbers of a caller's categories stand one
/// higher, behind NULL.
void TSummary::add_dimension(TRealTable& target, int dimNo, const OutputRows& rows) const {
  const SummaryDimension& dimension = this->dimension(dimNo);
  const int first = dimension.own_map ? 0 : 1;
  Block<int> numbers = make_row_numbers(rows.count);
  rows.fill(numbers.get() + 1, [&](int cell) {
    return cell / dimension.multiplier % dimension.category_count + first;
  });
  const TFilter& source = filter(dimension.filter);
  if (dimension.own_map) {
    raised(target.AddFilter(kAtTheEnd, table_->filter_name(dimension.filter),
                            whole_list_column(*source.VL, std::move(numbers), rows.count)));
    return;
  }
  const auto list = category_list(dimNo, target.id());
  raised(target.AddFilter(kAtTheEnd, table_->filter_name(dimension.filter),
                          whole_list_column(*list, std::move(numbers), rows.count)));
}

/// NULL, and for each category its number and name. Blanks before the numbers keep the list in
/// order.
std::unique_ptr<TBaseArray> TSummary::category_list(int dimNo, int table) const {
  const int categories = dimension(dimNo).category_count;
  const int width = static_cast<int>(std::to_string(static_cast<long>(categories) + 2).size());
  auto list = std::make_unique<TStrArray>();
  list->reserve(static_cast<long>(categories) + 1);
  list->AppendData("");
  for (int i = 0; i < categories; ++i) {
    char text[TStrArray::kMaxText + 1];
    snprintf(text, sizeof text, "%*d:%s", width, i, category_name(dimNo, i, table).c_str());
    list->AppendData(text);
  }
  return list;
}

// Results

TSummary::Averages TSummary::add_results(TRealTable& target, int mask,
                                         const OutputRows& rows) const {
  const int wanted = mask & done_;
  const int for_average = QX_SUM_COUNT | QX_SUM_SUM;
  std::vector<std::pair<const char*, Column>> columns;
  if (wanted & QX_SUM_COUNT) {
    columns.emplace_back("COUNT", int_column(rows.picked(cells_.count.get()).get(), rows.count));
  }
  if (wanted & QX_SUM_MAX) {
    columns.emplace_back("MAX", rows.picked_values(measure_values(), cells_.max.get()));
  }
  if (wanted & QX_SUM_MIN) {
    columns.emplace_back("MIN", rows.picked_values(measure_values(), cells_.min.get()));
  }
  const auto add_amounts = [&](const char* name, const double* doubles, const Numeric* decimals) {
    columns.emplace_back(
        name, doubles != nullptr
                  ? double_column(rows.picked(doubles).get(), rows.count)
                  : decimal_column(rows.picked(decimals).get(), rows.count, measure_info_));
  };
  if (wanted & QX_SUM_SUM) add_amounts("SUM", cells_.sum.get(), cells_.decimal_sum.get());
  Averages averages;
  if ((mask & QX_SUM_AVG) && (done_ & for_average) == for_average) {
    averages = averages_of_cells();
    add_amounts("AVERAGE", averages.doubles.get(), averages.decimals.get());
  }
  for (auto& [name, column] : columns) {
    raised(target.AddFilter(kAtTheEnd, name, std::move(column)));
  }
  return averages;
}

TSummary::Averages TSummary::averages_of_cells() const {
  Averages averages;
  if (cells_.sum != nullptr) {
    averages.doubles = make_block<double>(cell_count_);
    for (long cell = 0; cell < cell_count_; ++cell) {
      const int count = cells_.count[cell];
      averages.doubles[cell] = count == 0 ? kNullDouble : cells_.sum[cell] / count;
    }
    return averages;
  }
  averages.decimals = make_block<Numeric>(cell_count_);
  for (long cell = 0; cell < cell_count_; ++cell) {
    const Numeric count{static_cast<unsigned long>(cells_.count[cell]), 0};
    RQXNumericDiv(&cells_.decimal_sum[cell], &count, &averages.decimals[cell]);
  }
  return averages;
}

}  // namespace qxe
