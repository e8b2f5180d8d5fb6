// Opening a summary, and the pass over its rows.
#include "summary/summary.h"

#include <algorithm>

#include "joins/join_table.h"
#include "parallel/smpengine.h"
#include "storage/family.h"
#include "summary/summaries.h"
#include "tables/table_collection.h"

namespace qxe {

void OwnedTable::adopt(int id) {
  table_ = static_cast<TRealTable*>(ENG->collection()->find(raised(id)));
  id_ = id;
}

OwnedTable::~OwnedTable() {
  // When a whole collection goes, another one, or none, has taken its place already.
  TTableCollection* const tables = ENG->collection();
  if (table_ == nullptr || tables == nullptr || tables->find(id_) != table_) return;
  tables->DelTable(id_);
}

_TDimensionDef SummaryDimension::definition() const {
  return {.FilterID = filter,
          .nCategory = category_count,
          .piCatNo = own_map ? nullptr : const_cast<int*>(categories.data()),
          .ppCatName = names.empty() ? nullptr : const_cast<char**>(names.data()),
          .pfnCatName = name_of};
}

namespace {

/// A name that is missing is empty.
void copy_names(SummaryDimension& dimension, char* const* names) {
  std::vector<size_t> starts;
  for (int i = 0; i < dimension.category_count; ++i) {
    const char* const name = names[i] == nullptr ? "" : names[i];
    starts.push_back(dimension.name_text.size());
    dimension.name_text.insert(dimension.name_text.end(), name, name + strlen(name) + 1);
  }
  for (const size_t start : starts) dimension.names.push_back(dimension.name_text.data() + start);
}

}  // namespace

TSummary::TSummary(int handle, TBaseTable& table, int set, int nDim, const _TDimensionDef* dims,
                   int measure)
    : handle_(handle),
      source_(&table),
      table_(&table),
      set_id_(set < 0 ? table.GetCurrentSetID() : set),
      measure_(measure) {
  if (table_->GetSet(set_id_) == nullptr) throw CQXException(QX_ERROR_NO_SET);
  if (measure_ != 0) filter(measure_);
  if (nDim < 0 || nDim > QX_MAX_DIM) {
    throw CQXException(
        report("TSummary", QX_ERROR_PARAMETER, "Invalid Parameter : nDim(%d)", nDim));
  }
  define_dimensions(nDim, dims);
  merge_values();
  if (!is_join()) condense_dimensions();
  if (!is_join() && is_sparse()) work_on_extract();
  lay_out();
  for (SummaryDimension& dimension : dims_) {
    const _TDimensionDef& given = *dims++;
    if (given.piCatNo != nullptr) copy_map(dimension, given.piCatNo);
    if (given.ppCatName != nullptr) copy_names(dimension, given.ppCatName);
  }
  visit(*source_);
  if (table_ != source_) visit(*table_);
}

void TSummary::table_goes() {
  close_summary(handle_);
}

TFilter& TSummary::filter(int id) const {
  TFilter* const column = table_->GetFilter(id);
  if (column == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  return *column;
}

void TSummary::define_dimensions(int nDim, const _TDimensionDef* dims) {
  for (int i = 0; i < nDim; ++i) {
    const _TDimensionDef& given = dims[i];
    SummaryDimension& dimension = dims_.emplace_back();
    filter(given.FilterID);
    dimension.filter = given.FilterID;
    dimension.own_map = given.piCatNo == nullptr;
    dimension.own_names = given.ppCatName == nullptr && given.pfnCatName == nullptr;
    dimension.name_of = given.pfnCatName;
    dimension.category_count = given.nCategory;
    const bool bad_count = !dimension.own_map && given.nCategory < 1;
    const bool nameless = !dimension.own_map && dimension.own_names;
    const bool twice_named = given.ppCatName != nullptr && given.pfnCatName != nullptr;
    if (bad_count || nameless || twice_named) throw CQXException(QX_ERROR_PARAMETER);
  }
}

void TSummary::merge_values() const {
  if (!is_join()) {
    static_cast<TRealTable&>(*table_).CheckMergeFilterTVL(true);
    return;
  }
  auto& join = static_cast<TJoinTable&>(*table_);
  for (int side = 0; side < kSides; ++side) join.parent(side).CheckMergeFilterTVL(true);
}

/// Up to the first dimension with a map of the caller's, whose numbers are those from before. A
/// value list that another table uses stays as it is.
void TSummary::condense_dimensions() const {
  auto& table = static_cast<TRealTable&>(*table_);
  if (table.shared() || table.isQXTShared()) return;
  if (ENG->collection()->IsReferred(table_->id())) return;
  for (const SummaryDimension& dimension : dims_) {
    raised(table.CondenseFilter(dimension.filter));
    if (!dimension.own_map) return;
  }
}

/// Whether the set has so few of the values of a dimension that its rows are better worked on as a
/// table of their own, with short value lists.
bool TSummary::is_sparse() const {
  constexpr int kSparse = 20;  // values for each row
  const int rows = table_->GetSetSize(set_id_);
  const bool all_plain = std::all_of(dims_.begin(), dims_.end(),
                                     [](const auto& dimension) { return dimension.is_plain(); });
  return all_plain && std::any_of(dims_.begin(), dims_.end(), [&](const auto& dimension) {
           return filter(dimension.filter).VL->FArraySize / kSparse >= rows;
         });
}

void TSummary::work_on_extract() {
  std::vector<int> ids;
  for (const SummaryDimension& dimension : dims_) ids.push_back(dimension.filter);
  if (measure_ != 0) ids.push_back(measure_);
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  const auto new_id = [count = ids.size(), &ids](int id) {
    const auto end = ids.begin() + static_cast<long>(count);
    return static_cast<int>(std::lower_bound(ids.begin(), end, id) - ids.begin()) + 1;
  };
  ids.push_back(0);
  extract_.adopt(
      ENG->collection()->ExtractRealTable(nullptr, table_->id(), set_id_, {.filters = ids.data()}));
  for (SummaryDimension& dimension : dims_) dimension.filter = new_id(dimension.filter);
  if (measure_ != 0) measure_ = new_id(measure_);
  table_ = extract_.get();
  set_id_ = table_->GetCurrentSetID();
}

/// Numbers the cells by the value lists as they are.
void TSummary::lay_out() {
  cell_count_ = 1;
  for (auto dimension = dims_.rbegin(); dimension != dims_.rend(); ++dimension) {
    const TFilter& column = filter(dimension->filter);
    if (dimension->own_map) dimension->category_count = column.VL->FArraySize;
    dimension->list_version = column.list_version();
    dimension->multiplier = static_cast<int>(cell_count_);
    cell_count_ *= dimension->category_count;
    if (cell_count_ > kMaxCells) throw CQXException(QX_ERROR_CUBE_SIZE);
  }
}

void TSummary::copy_map(SummaryDimension& dimension, const int* categories) const {
  dimension.categories.assign(categories, categories + filter(dimension.filter).VL->FArraySize);
  const bool all_exist = std::all_of(
      dimension.categories.begin(), dimension.categories.end(),
      [&](int category) { return category >= 0 && category < dimension.category_count; });
  if (!all_exist) throw CQXException(QX_ERROR_PARAMETER);
}

/// After a change of value lists: as if the summary had been opened just now. What a caller has
/// said of single values, and what has been computed, cannot follow.
void TSummary::follow_lists() {
  const bool changed = std::any_of(dims_.begin(), dims_.end(), [&](const auto& dimension) {
    return filter(dimension.filter).list_version() != dimension.list_version;
  });
  if (!changed) return;
  const bool can_follow =
      done_ == 0 && std::all_of(dims_.begin(), dims_.end(),
                                [](const auto& dimension) { return dimension.is_plain(); });
  if (!can_follow) {
    throw CQXException(report("TSummary", QX_ERROR_ROW_RANGE, "Invalid Parameter : SumHandle"));
  }
  lay_out();
}

namespace {

/// The sum types that there are for a measure.
int types_of(int data_type) {
  const int any = QX_SUM_COUNT | QX_SUM_MAX | QX_SUM_MIN;
  return data_type == QX_DT_STRING ? any : any | QX_SUM_SUM;
}

PassColumn column_of(const TFilter& filter, const TSetArray& rows) {
  return {std::as_const(*filter.PVL).PIntAr(), RowList(rows)};
}

}  // namespace

int TSummary::SummaryExec(int mask) {
  merge_values();
  follow_lists();
  const TSetArray* const rows = table_->GetSet(set_id_);
  if (rows == nullptr) throw CQXException(QX_ERROR_NO_SET);
  const int wanted = measure_ == 0 ? QX_SUM_COUNT : mask & types_of(filter(measure_).data_type());
  if (wanted == 0) return done_;
  const int kept = wanted | QX_SUM_COUNT;
  cells_ = is_join() ? joined_cells(kept) : summed_cells(*rows, kept);
  if (measure_ != 0) finish(cells_);
  done_ = kept;
  return done_;
}

std::vector<PassDimension> TSummary::pass_dimensions(const TSetArray& rows) const {
  std::vector<PassDimension> dimensions;
  for (const SummaryDimension& dimension : dims_) {
    dimensions.push_back({column_of(filter(dimension.filter), rows),
                          dimension.own_map ? nullptr : dimension.categories.data(),
                          dimension.multiplier});
  }
  return dimensions;
}

CellArrays TSummary::summed_cells(const TSetArray& rows, int mask) {
  CellArrays cells;
  if (measure_ == 0) {
    cells.make(mask, 0, cell_count_);
    count_rows(pass_dimensions(rows), RowList(rows), cells);
    return cells;
  }
  const TFilter& column = filter(measure_);
  cells.make(mask, column.data_type(), cell_count_);
  sum_rows(pass_dimensions(rows), {column_of(column, rows), *column.VL}, cells);
  note_measure(column);
  return cells;
}

void TSummary::note_measure(const TFilter& column) {
  measure_type_ = column.data_type();
  measure_version_ = column.list_version();
  if (measure_type_ == QX_DT_DECIMAL) {
    measure_info_ = static_cast<const TNumericArray&>(*column.VL).GetDecimalInfo();
  }
}

/// Empty cells have no sum and no minimum.
void TSummary::finish(CellArrays& cells) const {
  for (long cell = 0; cell < cell_count_; ++cell) {
    const bool empty = cells.count[cell] == 0;
    if (cells.min != nullptr && cells.min[cell] == CellArrays::kNoMinimum) cells.min[cell] = 0;
    if (cells.sum != nullptr) {
      double& sum = cells.sum[cell];
      sum = empty ? kNullDouble : Family<TDoubleArray>::normalized(sum);
    }
    if (cells.decimal_sum != nullptr && empty) RQXNumericSetNan(&cells.decimal_sum[cell]);
  }
}

}  // namespace qxe
