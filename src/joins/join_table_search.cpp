// Searches, sorts and set algebra of a join table: they choose or order the rows of a side, and the
// new set joins these with the rows of the other side.
#include <algorithm>

#include "joins/join_table.h"
#include "search/multi_key_sort.h"
#include "search/set_operations.h"
#include "search/set_searches.h"
#include "search/sort.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

JoinSource source_of(int direction, int side, SideRows rows, SideRows other) {
  if (side == QX_JOIN_MASTER) return {direction, {std::move(rows), std::move(other)}};
  return {direction, {std::move(other), std::move(rows)}};
}

RowSpan span_of(const SideRows& side) {
  return {side.rows->PIntAr(), static_cast<size_t>(side.rows->FArraySize)};
}

}  // namespace

// Searches

/// The frame of every search: `make(rows, column)` chooses among the rows of the column's side.
template <class Make>
int TJoinTable::make_set(const char* layer, int filter, int set, Make&& make) {
  int status = 0;
  const Column column = find_column(layer, filter, &status);
  if (column.filter == nullptr) return status;
  const JoinSet* const source = find_set(set);
  if (source == nullptr) return report(layer, QX_ERROR_NO_SET, "No Such Set: %d", set);
  const SideRows rows = side_rows(*source, column.side);
  return RegNewSet(source_of(source->direction, column.side,
                             SideRows(make(*rows.rows, column.filter)),
                             side_rows(*source, OppositeSide(column.side))));
}

/// The same for the plain searches, whose sets have no name.
template <class Make>
int TJoinTable::make_unnamed_set(const char* layer, int filter, int set, Make&& make) {
  const int id = make_set(layer, filter, set, make);
  if (id >= 0) GetSet(id)->SetSetName("");
  return id;
}

int TJoinTable::SearchByField(int filter, int set, int ope, const char* v1, const char* v2) {
  return make_unnamed_set("SearchByField", filter, set,
                          [&](const TSetArray& source, TFilter* column) {
                            return source.SearchByValue(column, ope, v1, v2, false);
                          });
}

int TJoinTable::MppSearchByField(int filter, int set, int ope, const char* v1, const char* v2) {
  return make_unnamed_set("MppSearchByField", filter, set,
                          [&](const TSetArray& source, TFilter* column) {
                            return source.MppSearchByValue(column, ope, v1, v2, false);
                          });
}

int TJoinTable::search_values(const char* layer, int filter, int set, int count,
                              const void* values) {
  return make_unnamed_set(layer, filter, set, [&](const TSetArray& source, TFilter* column) {
    return source.SearchByNValues(column, count, values);
  });
}

int TJoinTable::SearchByFieldNValues(int filter, int set, int count, const void* values) {
  return search_values("SearchByFieldNValues", filter, set, count, values);
}

int TJoinTable::MppSearchByFieldNValues(int filter, int set, int count, const void* values) {
  return search_values("MppSearchByFieldNValues", filter, set, count, values);
}

int TJoinTable::SearchByField2(int filter, int set, int ope, const char* v1, const char* v2) {
  return make_set("SearchByField2", filter, set, [&](const TSetArray& source, TFilter* column) {
    return search_skipped_texts(source, *column, ope, v1, v2);
  });
}

int TJoinTable::Search(int filter, int set, const unsigned char* flags) {
  return make_set("Search", filter, set, [&](const TSetArray& source, TFilter* column) {
    return search_hits(source, *column, flags);
  });
}

int TJoinTable::SearchByRecNo(int filter, int set, int ope, int n1, int n2) {
  return make_set("SearchByRecNo", filter, set, [&](const TSetArray& source, TFilter*) {
    return search_row_numbers(source, ope, n1, n2);
  });
}

int TJoinTable::refuse_wildcard(const char* layer) const {
  return report(layer, QX_ERROR_NOT_REAL, "Not RealTable: %d ", id());
}

int TJoinTable::SearchByFieldWildCard(int, int, const char*) {
  return refuse_wildcard("SearchByFieldWildCard");
}

int TJoinTable::MppSearchByFieldWildCard(int, int, const char*) {
  return refuse_wildcard("MppSearchByFieldWildCard");
}

// Sorts: the sorted side drives the new set.

/// `sort(rows, sorted)` fills a set that has room for all rows.
template <class Sort>
int TJoinTable::sort_side(const char* layer, int side, int set, Sort&& sort) {
  const JoinSet* const source = find_set(set);
  if (source == nullptr) return report(layer, QX_ERROR_NO_SET, "No Such Set: %d", set);
  const SideRows rows = side_rows(*source, side);
  auto sorted = set_like(*source->rows[source->direction]);  // whose name clients know
  sorted->SetArraySize(rows.rows->FArraySize);
  sort(*rows.rows, *sorted);
  return RegNewSet(source_of(side, side, SideRows(std::move(sorted), rows.runs),
                             side_rows(*source, OppositeSide(side))));
}

template <class Sort>
int TJoinTable::sort_by_field(const char* layer, int filter, int set, int dir, Sort&& sort) {
  int status = 0;
  const Column column = find_column(layer, filter, &status);
  if (column.filter == nullptr) return status;
  return sort_side(layer, column.side, set, [&](const TSetArray& rows, TSetArray& sorted) {
    sort(dir, rows.FArraySize, rows.PIntAr(), sorted.PIntAr(), column.filter->PVL->PIntAr(),
         column.filter->VL->FArraySize);
  });
}

int TJoinTable::SortByField(int filter, int set, int dir) {
  return sort_by_field("SortByField", filter, set, dir, CountingSort);
}

int TJoinTable::MppSortByField(int filter, int set, int dir) {
  return sort_by_field("SortByField", filter, set, dir, MppCountingSort);
}

int TJoinTable::SortByRecNo(int filter, int set, int dir) {
  constexpr char kLayer[] = "SortByRecNo";
  int side = 0;
  if (JFilterID2Pos(filter, &side) < 0) {
    return report(kLayer, QX_ERROR_NO_JOIN_FILTER, "No Such Filter: %d", filter);
  }
  return sort_side(kLayer, side, set, [&](const TSetArray& rows, TSetArray& sorted) {
    sorted.SetArraySize(
        BitMapSort(dir, parent(side).TotalRecs(), rows.FArraySize, rows.PIntAr(), sorted.PIntAr()));
    sorted.AdjustMemArea();
  });
}

int TJoinTable::MppIntegratedSortByField(int set, const int* filters, const int* dirs) {
  constexpr char kLayer[] = "IntegratedSortByField";
  std::vector<TFilter*> keys;
  int side = -1;
  for (int i = 0; i < QX_MAX_SORT_KEYS && filters[i] >= 1; ++i) {
    int status = 0;
    const Column column = find_column(kLayer, filters[i], &status);
    if (column.filter == nullptr) return status;
    if (i > 0 && column.side != side) {
      return report(kLayer, QX_ERROR_JOIN_SIDE, "Illegal target ( Not Master or Slave )");
    }
    side = column.side;
    keys.push_back(column.filter);
  }
  if (keys.empty()) {
    const JoinSet* const source = find_set(set);
    if (source == nullptr) return QX_ERROR_NO_SET;
    side = source->direction;
  }
  return sort_side(kLayer, side, set, [&](const TSetArray& rows, TSetArray& sorted) {
    SortForMultiItem(static_cast<int>(keys.size()), rows.FArraySize, rows.PIntAr(), keys.data(),
                     dirs, sorted.PIntAr());
  });
}

// Set algebra: side by side, so that the result is the join of two row sets and not a set of pairs.

template <class Combine>
int TJoinTable::combine(const char* layer, int op, int set1, int set2, Combine&& combine_rows) {
  const JoinSet* const first = find_set(set1);
  const JoinSet* const second = find_set(set2);
  if (first == nullptr || second == nullptr) {
    return report(layer, QX_ERROR_NO_SET, "No Such Set: %d", first == nullptr ? set1 : set2);
  }
  const auto combined = [&](int side) {
    return SideRows(combine_rows(op, parent(side).TotalRecs(), span_of(side_rows(*first, side)),
                                 span_of(side_rows(*second, side))));
  };
  SideRows master = combined(QX_JOIN_MASTER);
  SideRows slave = op == QX_SET_ANDNOT ? side_rows(*first, QX_JOIN_SLAVE) : combined(QX_JOIN_SLAVE);
  return RegNewSet({QX_JOIN_MASTER, {std::move(master), std::move(slave)}});
}

int TJoinTable::SetOpe(int op, int set1, int set2) {
  return combine("SetOpe", op, set1, set2, SetOpeCommon);
}

int TJoinTable::MppSetOpe(int op, int set1, int set2) {
  return combine("MppSetOpe", op, set1, set2, MppSetOpeCommon);
}

template <class Negate>
int TJoinTable::negate(const char* layer, int set, Negate&& negate_rows) {
  const JoinSet* const source = find_set(set);
  if (source == nullptr) return report(layer, QX_ERROR_NO_SET, "No Such Set: %d", set);
  SideRows master(negate_rows(parent(0).TotalRecs(), span_of(side_rows(*source, QX_JOIN_MASTER))));
  return RegNewSet({QX_JOIN_MASTER, {std::move(master), side_rows(*source, QX_JOIN_SLAVE)}});
}

int TJoinTable::SetNot(int set) {
  return negate("SetNot", set, SetOpeNot);
}

int TJoinTable::MppSetNot(int set) {
  return negate("MppSetNot", set, MppSetOpeNot);
}

}  // namespace qxe
