// Columns of a tree table: what the rows that its nodes stand for have in a source table.
#include <algorithm>
#include <vector>

#include "joins/join_chain.h"
#include "tables/column_claims.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"
#include "tables/value_use.h"

namespace qxe {

namespace {

constexpr char kLayer[] = "Qualify";
constexpr int kDepthFilter = 1;
constexpr int kRowFilter = 2;

TRealTable& qualified_table(const TTableCollection& tables, int id) {
  TBaseTable* const table = tables.find(id);
  if (table == nullptr) {
    throw CQXException(report(kLayer, QX_ERROR_NO_TABLE, "No Such Table: %d ", id));
  }
  if (table->GetType() == TableKind::kReal) return static_cast<TRealTable&>(*table);
  throw CQXException(report(kLayer, QX_ERROR_NOT_REAL, "Illegal table type ( Not REAL )"));
}

/// Values of an integer column by row.
class TreeColumn {
 public:
  TreeColumn(TRealTable& tree, int id) {
    const int position = tree.FilterID2Pos(id);
    if (position < 0) {
      throw CQXException(report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", id));
    }
    const TFilter& filter = *tree.filter_at(position);
    if (filter.VL->GetDataType() != QX_DT_INTEGER) {
      throw CQXException(report(kLayer, QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )"));
    }
    numbers_ = std::as_const(*filter.PVL).PIntAr();
    values_ = static_cast<const TIntArray&>(*filter.VL).PIntAr();
  }

  int operator[](int row) const { return values_[numbers_[row]]; }

 private:
  const int* numbers_;
  const int* values_;
};

/// The filters of the list up to the first that does not exist.
std::vector<TFilter*> source_filters(const TRealTable& source, const int* ids) {
  std::vector<TFilter*> filters;
  for (int i = 0; i < ValMaxTreeQualify && ids[i] >= 1; ++i) {
    const int position = source.FilterID2Pos(ids[i]);
    if (position < 0) break;
    filters.push_back(source.filter_at(position));
  }
  if (!filters.empty()) return filters;
  throw CQXException(report(kLayer, QX_ERROR_NO_FILTER, "Invalid Parameter : SrcFltIDs"));
}

/// The source's row for each row of the tree, 0 for none. Element 0 is 0.
Block<int> source_rows(const TRealTable& tree, const TreeColumn& depth, const TreeColumn& row_of,
                       const TreeColumns& wanted) {
  const int rows = tree.TotalRecs();
  Block<int> sources = make_block<int>(rows + 1L);
  sources[0] = 0;
  int ancestor = 0;  // the node of the level that was passed last
  for (int row = 1; row <= rows; ++row) {
    const int level = depth[row];
    if (wanted.level < 0) {
      sources[row] = level > 0 ? row_of[row] : 0;
    } else if (level == wanted.level) {
      sources[row] = ancestor = row_of[row];
    } else {
      sources[row] = wanted.inherited && level > wanted.level ? ancestor : 0;
    }
  }
  return sources;
}

/// Rows that the source does not have read NULL.
void drop_missing_rows(int* rows, int count, int last) {
  for (int i = 0; i < count; ++i) {
    if (rows[i] < 0 || rows[i] > last) rows[i] = 0;
  }
}

Column gathered(const TFilter& source, const int* rows, int count) {
  Block<int> numbers = make_block<int>(count);
  const int* const old = std::as_const(*source.PVL).PIntAr();
  std::transform(rows, rows + count, numbers.get(), [old](int row) { return old[row]; });
  return {std::make_unique<TIntArray>(count, std::move(numbers)), copied_values(*source.VL)};
}

/// All columns or none.
void add_columns(TRealTable& tree, const std::vector<TFilter*>& filters,
                 std::vector<Column> columns) {
  const int before = tree.GetNFilter();
  try {
    for (size_t i = 0; i < filters.size(); ++i) {
      raised(tree.AddFilter(tree.GetNFilter(), filters[i]->FFilterName, std::move(columns[i])));
    }
  } catch (...) {
    while (tree.GetNFilter() > before) {
      tree.DropFilter(tree.filter_at(tree.GetNFilter() - 1)->FFilterID);
    }
    throw;
  }
}

}  // namespace

int TTableCollection::Qualify(int treeTable, const TreeColumns& wanted) {
  TRealTable& tree = qualified_table(*this, treeTable);
  tree.CheckMergeFilterTVL(true);
  const TreeColumn depth(tree, kDepthFilter);
  const TreeColumn row_of(tree, kRowFilter);
  TRealTable& source = qualified_table(*this, wanted.source);
  source.CheckMergeFilterTVL(true);
  const std::vector<TFilter*> filters = source_filters(source, wanted.filters);
  if (tree.GetNFilter() + static_cast<int>(filters.size()) > TBaseTable::kMaxFilters) {
    return report(kLayer, QX_ERROR_FILTER_COUNT, "FilterCount overflow");
  }
  const int count = tree.TotalRecs() + 1;
  const Block<int> rows = source_rows(tree, depth, row_of, wanted);
  drop_missing_rows(rows.get(), count, source.TotalRecs());
  std::vector<long> costs;
  for (const TFilter* const filter : filters) costs.push_back(column_cost(count, filter));
  std::vector<Column> columns(filters.size());
  claim_columns(QX_MPP_JOIN_CHAIN, costs, [&](int column) {
    const auto index = static_cast<size_t>(column);
    columns[index] = gathered(*filters[index], rows.get(), count);
  });
  add_columns(tree, filters, std::move(columns));
  return 0;
}

}  // namespace qxe
