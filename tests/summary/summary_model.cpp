#include "summary/summary_model.h"

#include <algorithm>
#include <set>

#include "support/raw_values.h"

namespace qxe::test {

int ModelDimension::category_of(const Cell& cell) const {
  const auto place = std::lower_bound(values.begin(), values.end(), cell);
  const auto number = static_cast<size_t>(place - values.begin());
  return categories.empty() ? static_cast<int>(number) : categories[number];
}

SummaryModel::SummaryModel(const NaiveModel& table, const std::vector<std::string>& dimensions,
                           const std::vector<int>& valueRows)
    : table_(table) {
  for (const std::string& name : dimensions) {
    std::set<Cell> values = {normal_form({}, table.column(name).type)};
    for (const int row : valueRows) values.insert(table.cell(name, row));
    dimensions_.push_back(
        {name, {values.begin(), values.end()}, {}, static_cast<int>(values.size())});
  }
}

long SummaryModel::cell_count() const {
  long count = 1;
  for (const ModelDimension& dimension : dimensions_) count *= dimension.count;
  return count;
}

Coordinates SummaryModel::coordinates(long number) const {
  Coordinates coordinates;
  for (auto dimension = dimensions_.rbegin(); dimension != dimensions_.rend(); ++dimension) {
    coordinates.insert(coordinates.begin(), static_cast<int>(number % dimension->count));
    number /= dimension->count;
  }
  return coordinates;
}

void SummaryModel::run(const std::vector<int>& rows, const std::string& measure) {
  cells_.clear();
  measure_ = measure.empty() ? nullptr : &table_.column(measure);
  for (const int row : rows) {
    const Cell value = measure_ == nullptr ? Cell{} : table_.cell(measure, row);
    if (measure_ != nullptr && is_null(value)) continue;  // no string is
    Coordinates coordinates;
    for (const ModelDimension& dimension : dimensions_) {
      coordinates.push_back(dimension.category_of(table_.cell(dimension.column, row)));
    }
    add(cells_[coordinates], value);
  }
}

void SummaryModel::add(ModelCell& cell, const Cell& value) const {
  cell.max = cell.count == 0 ? value : std::max(cell.max, value);
  cell.min = cell.count == 0 ? value : std::min(cell.min, value);
  ++cell.count;
  if (measure_ == nullptr || measure_->type == QX_DT_STRING) return;
  if (measure_->type == QX_DT_DECIMAL) {
    const Numeric number = to_numeric(value);
    RQXNumericAdd(&cell.decimal_sum, &number, &cell.decimal_sum);
  } else {
    cell.sum += measure_->type == QX_DT_INTEGER ? std::get<int>(value) : std::get<double>(value);
  }
}

const ModelCell& SummaryModel::cell(const Coordinates& coordinates) const {
  static const ModelCell kEmpty;
  const auto found = cells_.find(coordinates);
  return found == cells_.end() ? kEmpty : found->second;
}

int SummaryModel::type_of(int sumType) const {
  if (sumType == QX_SUM_COUNT) return QX_DT_INTEGER;
  if (sumType == QX_SUM_MAX || sumType == QX_SUM_MIN) return measure_->type;
  return measure_->type == QX_DT_DECIMAL ? QX_DT_DECIMAL : QX_DT_DOUBLE;
}

namespace {

Cell double_cell(double value) {
  return value != value || value == kNullDouble ? Cell{} : Cell{value};
}

Numeric divided(const Numeric& sum, int count) {
  const Numeric divisor{static_cast<unsigned long>(count), 0};
  Numeric result{};
  RQXNumericDiv(&sum, &divisor, &result);
  return result;
}

}  // namespace

Cell SummaryModel::result(int sumType, const ModelCell& cell) const {
  if (sumType == QX_SUM_COUNT) return cell.count;
  if (cell.count == 0) return normal_form({}, type_of(sumType));
  if (sumType == QX_SUM_MAX) return cell.max;
  if (sumType == QX_SUM_MIN) return cell.min;
  const bool average = sumType == QX_SUM_AVG;
  if (measure_->type != QX_DT_DECIMAL) {
    return double_cell(average ? cell.sum / cell.count : cell.sum);
  }
  return from_numeric(average ? divided(cell.decimal_sum, cell.count) : cell.decimal_sum,
                      measure_->scale);
}

void SummaryModel::put_averages_for_sums() {
  for (auto& [coordinates, cell] : cells_) {
    cell.sum /= cell.count;
    cell.decimal_sum = divided(cell.decimal_sum, cell.count);
  }
}

}  // namespace qxe::test
