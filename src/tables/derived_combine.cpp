// The rows of two tables, one below the other, as a new table.
#include <algorithm>
#include <utility>

#include "search/compiler.h"
#include "tables/column_claims.h"
#include "tables/converted_list.h"
#include "tables/pseudo_columns.h"
#include "tables/realtables.h"
#include "tables/value_use.h"

namespace qxe {

int mpp_combine_realtables(void* block) {
  return run_pool_step(block);
}

namespace {

/// One column of the new table.
struct PlannedColumn {
  int pseudo;      // QX_FLT_TABLE_ID, QX_FLT_REC_NO, or 0
  TFilter* first;  // null: NULL for the rows of the first table
  TFilter* second;

  const char* name() const {
    if (pseudo != 0) return pseudo == QX_FLT_TABLE_ID ? "TableID" : "RecNo";
    return (first != nullptr ? first : second)->FFilterName;
  }
};

TFilter* planned_filter(const char* layer, const char* list, int index, int id, TRealTable& table) {
  if (id == 0) return nullptr;
  const int position = table.FilterID2Pos(id);
  if (position >= 0) return table.filter_at(position);
  throw CQXException(
      report(layer, QX_ERROR_NO_FILTER, "No Such Filter: %s[%d](%d)", list, index, id));
}

PlannedColumn planned_column(const char* layer, int index, const CombineSource& first,
                             const CombineSource& second) {
  const int id1 = first.filters[index];
  const int id2 = second.filters[index];
  if (id1 < 0 || id2 < 0) {
    throw CQXException(
        report(layer, QX_ERROR_NO_JOIN_FILTER, "Invalid Parameter : FltIDList1,FltIDList2"));
  }
  const PlannedColumn column{0, planned_filter(layer, "FltIDList1", index, id1, first.table),
                             planned_filter(layer, "FltIDList2", index, id2, second.table)};
  if (column.first != nullptr && column.second != nullptr &&
      column.first->data_type() != column.second->data_type()) {
    throw CQXException(report(layer, QX_ERROR_APPEND_TYPE, "Illegal data type"));
  }
  return column;
}

/// The two lists are walked in step up to the position at which both have ended.
std::vector<PlannedColumn> plan_columns(const char* layer, const CombineSource& first,
                                        const CombineSource& second, CombinePseudo pseudo) {
  std::vector<PlannedColumn> plan;
  if (pseudo.table_id) plan.push_back({QX_FLT_TABLE_ID, nullptr, nullptr});
  if (pseudo.row_number) plan.push_back({QX_FLT_REC_NO, nullptr, nullptr});
  for (int i = 0; first.filters[i] >= 1 || second.filters[i] >= 1; ++i) {
    if (plan.size() >= TBaseTable::kMaxFilters) {
      throw CQXException(report(layer, QX_ERROR_FILTER_COUNT, "FilterCount overflow"));
    }
    plan.push_back(planned_column(layer, i, first, second));
  }
  if (plan.empty()) throw CQXException(report(layer, QX_ERROR_NO_FILTER, "No Filter"));
  return plan;
}

void renumber(int* numbers, int count, const int* map) {
  for (int i = 0; i < count; ++i) numbers[i] = map[numbers[i]];
}

/// A column on its way: the row pointers of both tables' rows, one below the other.
struct StackedRows {
  Block<int> numbers;
  int* first;
  int first_count;
  int* second;
  int second_count;

  StackedRows(const RowList& rows1, const RowList& rows2)
      : numbers(make_block<int>(static_cast<long>(rows1.count) + rows2.count + 1)),
        first(numbers.get() + 1),
        first_count(rows1.count),
        second(first + rows1.count),
        second_count(rows2.count) {
    numbers[0] = 0;
  }

  /// Without a filter the rows are NULL.
  static void gather(const TFilter* filter, const RowList& rows, int* out) {
    if (filter == nullptr) {
      std::fill_n(out, rows.count, 0);
    } else {
      gather_rows(std::as_const(*filter->PVL).PIntAr(), rows, 0, rows.count, out);
    }
  }

  Column with(std::unique_ptr<TBaseArray> values) {
    return {std::make_unique<TIntArray>(first_count + second_count + 1, std::move(numbers)),
            std::move(values)};
  }
};

const NumericInfo* decimal_info(const TBaseArray& list) {
  if (list.GetDataType() != QX_DT_DECIMAL) return nullptr;
  return &static_cast<const TNumericArray&>(list).GetDecimalInfo();
}

bool needs_rescaling(const TBaseArray& first, const TBaseArray& second) {
  const NumericInfo* const info1 = decimal_info(first);
  const NumericInfo* const info2 = decimal_info(second);
  return info1 != nullptr && (info1->scale != info2->scale || info1->rounding != info2->rounding);
}

Column stacked(const PlannedColumn& column, const RowList& rows1, const RowList& rows2) {
  StackedRows rows(rows1, rows2);
  StackedRows::gather(column.first, rows1, rows.first);
  StackedRows::gather(column.second, rows2, rows.second);
  if (column.first == nullptr) return rows.with(copied_values(*column.second->VL));
  TBaseArray& list1 = *column.first->VL;
  if (column.second == nullptr) return rows.with(copied_values(list1));
  const TBaseArray* list2 = column.second->VL;
  ConvertedList rescaled;
  if (needs_rescaling(list1, *list2)) {
    rescaled = convert_list(*list2, QX_DT_DECIMAL, *decimal_info(list1), false);
    renumber(rows.second, rows.second_count, rescaled.numbers.get());
    list2 = rescaled.list.get();
  }
  MergedLists merged = MergeLists(list1, *list2);
  if (merged.list == nullptr) return rows.with(copied_values(list1));  // the same values
  renumber(rows.first, rows.first_count, merged.map1.get());
  renumber(rows.second, rows.second_count, merged.map2.get());
  return rows.with(std::move(merged.list));
}

const TSetArray& combined_set(const char* layer, const CombineSource& source) {
  const TSetArray* const set = source.table.GetSet(source.set);
  if (set != nullptr) return *set;
  throw CQXException(report(layer, QX_ERROR_COMBINE_SET, "No Such Set: %d", source.set));
}

}  // namespace

int TRealTable::combine(const char* layer, const CombineSource& first, const CombineSource& second,
                        CombinePseudo pseudo) {
  const SourceRows parts[] = {{first.table.id(), RowList(combined_set(layer, first))},
                              {second.table.id(), RowList(combined_set(layer, second))}};
  const int rows = total_rows(parts);
  const std::vector<PlannedColumn> plan = plan_columns(layer, first, second, pseudo);
  first.table.settle_values();
  second.table.settle_values();
  add_root_set(rows);
  std::vector<long> costs;
  for (const PlannedColumn& column : plan) {
    add_blank_filter(column.name());
    costs.push_back(column_cost(rows, column.first) + column_cost(0, column.second));
  }
  claim_columns(QX_MPP_COMBINE_REALTABLE, costs, [&](int column) {
    const PlannedColumn& planned = plan[static_cast<size_t>(column)];
    TFilter& filter = *filter_at(column);
    switch (planned.pseudo) {
      case QX_FLT_TABLE_ID: filter.adopt(table_id_column(parts)); break;
      case QX_FLT_REC_NO: filter.adopt(row_number_column(parts)); break;
      default: filter.adopt(stacked(planned, parts[0].rows, parts[1].rows));
    }
  });
  return 0;
}

int TRealTable::CombineRealTable(const CombineSource& first, const CombineSource& second,
                                 CombinePseudo pseudo) {
  return combine("CombineRealTable", first, second, pseudo);
}

int TRealTable::MppCombineRealTable(const CombineSource& first, const CombineSource& second,
                                    CombinePseudo pseudo) {
  return combine("MppCombineRealTable", first, second, pseudo);
}

}  // namespace qxe
