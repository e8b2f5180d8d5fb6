// The pairs of a join as rows of a real table, which keeps no tie to the join.
#include <limits.h>

#include <vector>

#include "joins/join_table.h"
#include "search/compiler.h"
#include "tables/column_claims.h"
#include "tables/realtables.h"
#include "tables/value_use.h"

namespace qxe {

int mpp_realize_jointable(void* block) {
  return run_pool_step(block);
}

namespace {

constexpr char kLayer[] = "ConvertJoinToReal";

/// A column of the new table: a parent's filter, or null for the row numbers of that side.
struct RealizedColumn {
  const TFilter* source;
  int side;
  const char* name;
};

std::vector<int> listed_ids(const RealizedColumns& columns) {
  std::vector<int> ids;
  if (columns.master_rows) ids.push_back(QX_FLT_MRECNO);
  if (columns.slave_rows) ids.push_back(QX_FLT_SRECNO);
  if (columns.filters == nullptr) return ids;
  for (const int* id = columns.filters; *id >= 1 && ids.size() <= TBaseTable::kMaxFilters; ++id) {
    ids.push_back(*id);
  }
  return ids;
}

RealizedColumn column_of(TJoinTable& join, int id) {
  if (id == QX_FLT_MRECNO) return {nullptr, QX_JOIN_MASTER, "MRecNo"};
  if (id == QX_FLT_SRECNO) return {nullptr, QX_JOIN_SLAVE, "SRecNo"};
  int side = 0;
  raised(join.GetJoinSrcFltID(id, &side));
  const TFilter* const source = join.GetFilter(id);
  if (source != nullptr) return {source, side, join.GetJoinFilterName(id)};
  throw CQXException(report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", id));
}

std::vector<RealizedColumn> realized_columns(TJoinTable& join, const RealizedColumns& columns) {
  const std::vector<int> ids = listed_ids(columns);
  if (ids.size() > TBaseTable::kMaxFilters) {
    throw CQXException(report(kLayer, QX_ERROR_FILTER_COUNT, "FilterCount overflow"));
  }
  std::vector<RealizedColumn> list;
  for (const int id : ids) list.push_back(column_of(join, id));
  return list;
}

/// The rows of one side behind all pairs.
struct FlatRows {
  const int* rows = nullptr;
  Block<int> own;  // unless they are a set's
};

/// `fill(first, count, out)` writes the rows of some pairs.
template <class Fill>
FlatRows filled(int count, Fill&& fill) {
  Block<int> rows = make_block<int>(count);
  const int workers = compile_workers(count, true);
  run_step(QX_MPP_REALIZE_JOINTABLE, workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    const auto first = static_cast<int>(slice.begin);
    fill(first, static_cast<int>(slice.size()), rows.get() + first);
  });
  const int* const all = rows.get();
  return {all, std::move(rows)};
}

FlatRows flattened(const JoinRows& pairs, int side) {
  const int* const single = pairs.single_rows();
  const KeyNumbers& key = pairs.driving_key();
  if (single != nullptr && side == pairs.direction()) return {single, nullptr};
  if (single != nullptr && key.values < pairs.count()) {
    const Block<int> partners = pairs.partners_of_values();
    return filled(pairs.count(), [&](int first, int count, int* out) {
      for (int i = 0; i < count; ++i) out[i] = partners[key.pv[single[first + i]]];
    });
  }
  return filled(pairs.count(),
                [&](int first, int count, int* out) { pairs.rows_of(side, first, count, out); });
}

/// The whole value list, so that the value numbers stay what they are.
Column realized(const TFilter& source, const int* rows, int count) {
  Block<int> numbers = make_block<int>(count + 1L);
  const int* const old = std::as_const(*source.PVL).PIntAr();
  int* const out = numbers.get();
  out[0] = 0;
  for (int i = 0; i < count; ++i) out[i + 1] = old[rows[i]];
  return {std::make_unique<TIntArray>(count + 1, std::move(numbers)), copied_values(*source.VL)};
}

}  // namespace

int TRealTable::ConvertJoinToReal(TJoinTable& join, int set, const RealizedColumns& columns) {
  const JoinSet* const found = join.find_set(set);
  if (found == nullptr) return report(kLayer, QX_ERROR_NO_JOIN_SET, "No Such Set: %d", set);
  const JoinRows pairs = join.rows(*found);
  const int count = pairs.count();
  if (count == INT_MAX) return report(kLayer, QX_ERROR_REALIZE, "RowSize overflow");
  const std::vector<RealizedColumn> plan = realized_columns(join, columns);
  for (int side = 0; side < kSides; ++side) join.parent(side).settle_values();
  add_root_set(count);

  FlatRows rows[kSides];
  std::vector<long> costs;
  for (const RealizedColumn& column : plan) {
    if (rows[column.side].rows == nullptr) rows[column.side] = flattened(pairs, column.side);
    costs.push_back(column_cost(count, column.source));
    add_blank_filter(column.name);
  }
  claim_columns(QX_MPP_REALIZE_JOINTABLE, costs, [&](int index) {
    const RealizedColumn& column = plan[static_cast<size_t>(index)];
    const int* const own = rows[column.side].rows;
    filter_at(index)->adopt(column.source != nullptr
                                ? realized(*column.source, own, count)
                                : compile_column(QX_DT_INTEGER, count, count, own, false));
  });
  return 0;
}

}  // namespace qxe
