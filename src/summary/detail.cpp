#include "summary/detail.h"

#include <utility>

#include "search/compiler_values.h"
#include "search/sort.h"
#include "storage/family.h"
#include "tables/row_list.h"

namespace qxe {

std::unique_ptr<TDetailDisp> DetailDisp;
int DetailHandle = 0;

namespace {

// With more values than so many for each row, only those that rows have are listed.
constexpr int kDenseShare = 8;

}  // namespace

TDetailDisp::TDetailDisp(TBaseTable& table, int set, int filter) : table_(table), filter_(filter) {
  const TSetArray* const rows = table.GetSet(set);  // of a join the driving ones
  if (rows == nullptr) throw CQXException(QX_ERROR_NO_SET);
  TFilter* const column = table.GetFilter(filter);
  if (column == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  column->MergeTVL(true);
  list_version_ = column->list_version();
  data_type_ = column->data_type();
  value_count_ = column->VL->FArraySize;
  const bool is_join = table.GetType() == TableKind::kJoin;
  if (is_join || value_count_ / kDenseShare <= rows->FArraySize) {
    count_all_values(set);
  } else {
    count_values_met(*rows, *column);
  }
  order_values();
  visit(table);
}

void TDetailDisp::table_goes() {
  DetailDisp.reset();
}

void TDetailDisp::count_all_values(int set) {
  listed_ = value_count_;
  counts_ = make_block<int>(listed_);
  raised(table_.CountN(set, filter_, counts_.get()));
}

void TDetailDisp::count_values_met(const TSetArray& rows, const TFilter& column) {
  const int count = rows.FArraySize;
  if (count > 0) {
    const Block<int> met = make_block<int>(count);
    gather_rows(std::as_const(*column.PVL).PIntAr(), RowList(rows), 0, count, met.get());
    const Block<int> places = make_block<int>(count);
    auto distinct = compile_values<TIntArray>(met.get(), count, places.get(), false, 1);
    listed_ = distinct.size;
    numbers_ = std::move(distinct.values);
    counts_ = make_block<int>(listed_);
    CountupNExist2(count, places.get(), listed_, counts_.get());
  } else {
    numbers_ = make_block<int>(0);
  }
}

void TDetailDisp::order_values() {
  present_ = make_block<int>(listed_);
  order_ = make_block<int>(listed_);
  service_sort_by_n(listed_, counts_.get(), &distinct_, present_.get(), order_.get());
}

/// Index of the listed value.
int TDetailDisp::CalcPos(const DetailPosition& place) const {
  const int size = place.list_kind == 0 ? listed_ : distinct_;
  if (place.position < 1 || place.position > size) {
    throw CQXException(report("CalcPos", QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : Row(%d)",
                              place.position));
  }
  const int index = place.direction == 0 ? place.position - 1 : size - place.position;
  if (place.order_kind != 0) return order_[index];  // those without rows come last
  return place.list_kind == 0 ? index : present_[index];
}

const TBaseArray& TDetailDisp::values() const {
  const TFilter* const column = table_.GetFilter(filter_);
  if (column == nullptr) throw CQXException(QX_ERROR_NO_FILTER);
  if (column->list_version() != list_version_) throw CQXException(QX_ERROR_DETAIL);
  return *column->VL;
}

int TDetailDisp::number_at(const DetailPosition& place) const {
  const int index = CalcPos(place);
  return numbers_ == nullptr ? index : numbers_[index];
}

}  // namespace qxe
