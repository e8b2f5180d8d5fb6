// The rows of a set as a table of their own.
#include <algorithm>
#include <utility>

#include "search/compiler_values.h"
#include "tables/column_claims.h"
#include "tables/pseudo_columns.h"
#include "tables/realtables.h"
#include "tables/value_use.h"

namespace qxe {

int mpp_extract_realtables(void* block) {
  return run_pool_step(block);
}

namespace {

// With fewer rows than this share of the value list, sorting the value numbers met costs less than
// marking them in a table of all.
constexpr long kNarrowShare = 64;

/// Value numbers of the rows behind a leading 0, and marks for the values they name.
Block<int> gather_marked(const TFilter& source, const RowList& rows, ValueUse& use) {
  Block<int> numbers = make_block<int>(static_cast<long>(rows.count) + 1);
  numbers[0] = 0;
  const int* const old = std::as_const(*source.PVL).PIntAr();
  for (int begin = 0; begin < rows.count;) {
    const int end = begin + std::min(rows.count - begin, kMarkedRows);
    int* const part = numbers.get() + 1 + begin;
    gather_rows(old, rows, begin, end, part);
    if (!use.all_used()) use.mark(part, end - begin);
    begin = end;
  }
  return numbers;
}

Column wide_extract(const TFilter& source, const RowList& rows) {
  ValueUse use(source.VL->FArraySize);
  Block<int> numbers = gather_marked(source, rows, use);
  const int count = rows.count + 1;
  std::unique_ptr<TBaseArray> values;
  if (use.all_used()) {
    values = copied_values(*source.VL);
  } else {
    UsedValues used = use.used_values(*source.VL);
    for (int i = 0; i < count; ++i) numbers[i] = used.numbers[numbers[i]];
    values = std::move(used.list);
  }
  return {std::make_unique<TIntArray>(count, std::move(numbers)), std::move(values)};
}

Column narrow_extract(const TFilter& source, const RowList& rows) {
  const int count = rows.count + 1;
  Block<int> old = make_block<int>(count);
  old[0] = 0;  // the lowest of all, so NULL keeps number 0
  gather_rows(std::as_const(*source.PVL).PIntAr(), rows, 0, rows.count, old.get() + 1);
  Block<int> numbers = make_block<int>(count);
  const auto met = compile_values<TIntArray>(old.get(), count, numbers.get(), false, 1);
  return {std::make_unique<TIntArray>(count, std::move(numbers)),
          values_at(*source.VL, met.values.get(), met.size)};
}

Column extracted(const TFilter& source, const RowList& rows) {
  return rows.count * kNarrowShare < source.VL->FArraySize ? narrow_extract(source, rows)
                                                           : wide_extract(source, rows);
}

const char* pseudo_name(int id) {
  if (id == QX_FLT_TABLE_ID) return "#TABLE_ID";
  return id == QX_FLT_REC_NO ? "#REC_NO" : nullptr;
}

/// The ids of all columns of the new table.
std::vector<int> listed_filters(const TRealTable& source, const ExtractedColumns& columns) {
  std::vector<int> ids;
  if (columns.table_id) ids.push_back(QX_FLT_TABLE_ID);
  if (columns.rec_no) ids.push_back(QX_FLT_REC_NO);
  if (columns.filters == nullptr) {
    for (int i = 0; i < source.GetNFilter(); ++i) ids.push_back(source.filter_at(i)->FFilterID);
    return ids;
  }
  for (const int* id = columns.filters; *id >= 1 && ids.size() <= TBaseTable::kMaxFilters; ++id) {
    ids.push_back(*id);
  }
  return ids;
}

int check_filters(const char* layer, const TRealTable& source, const std::vector<int>& ids) {
  if (ids.empty()) return report(layer, QX_ERROR_NO_FILTER, "No Filter");
  if (ids.size() > TBaseTable::kMaxFilters) {
    return report(layer, QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  }
  for (const int id : ids) {
    if (pseudo_name(id) == nullptr && source.FilterID2Pos(id) < 0) {
      return report(layer, QX_ERROR_NO_FILTER, "No Such Filter: %d", id);
    }
  }
  return 0;
}

}  // namespace

int TRealTable::extract_rows(const char* layer, int set, TRealTable& source,
                             const ExtractedColumns& columns) {
  const TSetArray* const rows = source.GetSet(set);
  if (rows == nullptr) return report(layer, QX_ERROR_NO_SET, "No Such Set: %d", set);
  const std::vector<int> ids = listed_filters(source, columns);
  const int status = check_filters(layer, source, ids);
  if (status < 0) return status;
  source.settle_values();
  add_root_set(rows->FArraySize);

  std::vector<const TFilter*> filters;  // null: a pseudo column
  std::vector<long> costs;
  for (const int id : ids) {
    const char* const pseudo = pseudo_name(id);
    filters.push_back(pseudo == nullptr ? source.GetFilter(id) : nullptr);
    costs.push_back(column_cost(rows->FArraySize, filters.back()));
    add_blank_filter(pseudo == nullptr ? filters.back()->FFilterName : pseudo);
  }
  const SourceRows part{source.id(), RowList(*rows)};
  claim_columns(QX_MPP_EXTRACT_REALTABLE, costs, [&](int column) {
    const auto index = static_cast<size_t>(column);
    TFilter& filter = *filter_at(column);
    if (filters[index] != nullptr) {
      filter.adopt(extracted(*filters[index], part.rows));
    } else {
      const bool is_table_id = ids[index] == QX_FLT_TABLE_ID;
      filter.adopt(is_table_id ? table_id_column({&part, 1}) : row_number_column({&part, 1}));
    }
  });
  return 0;
}

int TRealTable::ExtractRealTable(int set, TRealTable& source, const ExtractedColumns& columns) {
  return extract_rows("ExtractRealTable", set, source, columns);
}

int TRealTable::MppExtractRealTable(int set, TRealTable& source, const ExtractedColumns& columns) {
  return extract_rows("MppExtractRealTable", set, source, columns);
}

}  // namespace qxe
