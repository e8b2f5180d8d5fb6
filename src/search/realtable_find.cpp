// Find cursors of a real table, and the place of a row in a set.
#include <algorithm>

#include "search/scan.h"
#include "search/search_condition.h"
#include "storage/family.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

ValueRange range(int first, int end) {
  return first < end ? ValueRange{first, end} : ValueRange{};
}

/// Value numbers for which operator `ope` holds; NULL is the lowest value like any other. Throws
/// QX_ERROR_OPERATION for an operator that compares in another way.
RangeTest ranges_of(const char* layer, int ope, BoundPosition first, BoundPosition second,
                    int size) {
  switch (ope) {
    case QX_OPE_EQ: return {range(first.lower(), first.upper()), {}};
    case QX_OPE_BETWEEN: return {range(first.lower(), second.upper()), {}};
    case QX_OPE_LEQ: return {range(0, first.upper()), {}};
    case QX_OPE_GEQ: return {range(first.lower(), size), {}};
    case QX_OPE_NEQ: return {range(0, first.lower()), range(first.upper(), size)};
    case QX_OPE_WITHIN: return {range(first.upper(), second.lower()), {}};
    case QX_OPE_LES: return {range(0, first.lower()), {}};
    case QX_OPE_GT: return {range(first.upper(), size), {}};
    default:
      throw CQXException(
          report(layer, QX_ERROR_OPERATION, "Invalid Parameter : SrchKind(%d)", ope));
  }
}

/// The rows of a table that meet a condition.
struct Hits {
  std::unique_ptr<TSetArray> rows;
  bool null;  // the condition holds for NULL
};

Hits hits_in(const RangeTest& test, const TSetArray& root, const TFilter& filter) {
  return {MoveRecsForScan(root, filter.PVL->PIntAr(), test), test(0)};
}

template <class Array>
Hits find_hits(const char* layer, const TSetArray& root, const TFilter& filter, int ope,
               typename Family<Array>::Value v1, typename Family<Array>::Value v2) {
  const auto list = view_of(static_cast<const Array&>(*filter.VL));
  if constexpr (std::is_same_v<Array, TStrArray>) {
    if (ope == QX_OPE_BEGINS) {
      const ValueRange texts = with_prefix(list, v1);
      return hits_in({range(texts.first, texts.end), {}}, root, filter);
    }
    if (ope == QX_OPE_CONTAINS || ope == QX_OPE_ENDS) {
      const TextCondition condition = text_condition({ope, false, false}, v1);
      return {root.FArraySize == 0 ? set_like(root) : search_texts(root, filter, condition),
              condition.matches("", v1)};
    }
  }
  const BoundPosition first = bound_position(Family<Array>::normalized(v1), list);
  const BoundPosition second = bound_position(Family<Array>::normalized(v2), list);
  return hits_in(ranges_of(layer, ope, first, second, list.size), root, filter);
}

}  // namespace

template <class Array, class Value>
int TRealTable::open_find(const char* layer, const char* typeText, int filter, int ope, Value v1,
                          Value v2) {
  CloseFind();
  const int position = FilterID2Pos(filter);
  if (position < 0) {
    return report(layer, QX_ERROR_FILTER_INDEX, "Invalid Parameter : SrchFltID");
  }
  const TFilter& column = *filter_at(position);
  if (column.VL->GetDataType() != Family<Array>::kDataType) {
    return report(layer, QX_ERROR_TYPE_MISMATCH, "%s", typeText);
  }
  CheckMergeFilterTVL(true);
  const Hits hits = find_hits<Array>(layer, root_set(), column, ope, v1, v2);
  find_cursor_.open(filter, TotalRecs(), *hits.rows, hits.null);
  return find_cursor_.id();
}

int TRealTable::OpenIntFind(int filter, int ope, int v1, int v2) {
  return open_find<TIntArray>("OpenIntFind", "Illegal data type", filter, ope, v1, v2);
}

int TRealTable::OpenFloatFind(int filter, int ope, double v1, double v2) {
  return open_find<TDoubleArray>("OpenFloatFind", "Illegal data type", filter, ope, v1, v2);
}

int TRealTable::OpenNumericFind(int filter, int ope, const Numeric& v1, const Numeric& v2) {
  return open_find<TNumericArray>("OpenNumericFind", "Illegal data type", filter, ope, v1, v2);
}

int TRealTable::OpenStrFind(int filter, int ope, const char* v1, const char* v2) {
  return open_find<TStrArray>("OpenStrFind", "Illegal data type ( Not STRING )", filter, ope, v1,
                              v2);
}

int TRealTable::GetNextHit(int searchId, int set, int position, bool backward, int* filter,
                           int* hit) const {
  static constexpr char kLayer[] = "GetNextHit";
  if (!find_cursor_.is_open()) {
    return report(kLayer, QX_ERROR_FIND_CLOSED, "Failed to open find");
  }
  if (searchId != find_cursor_.id()) {
    return report(kLayer, QX_ERROR_FIND_ID, "Invalid Parameter : SrchID");
  }
  const TSetArray* const rows = GetSet(set);
  if (rows == nullptr) return QX_ERROR_NO_SET;
  *filter = find_cursor_.filter();
  const int place = find_cursor_.next_hit(*rows, position, backward);
  if (place == 0) return 0;
  *hit = place;
  return 1;
}

int TRealTable::GetFindStatus(int* hitCount, int* filter) const {
  if (!find_cursor_.is_open()) return 0;
  *hitCount = find_cursor_.hit_count();
  *filter = find_cursor_.filter();
  return find_cursor_.id();
}

int TRealTable::FindRecNo(int set, int row) const {
  const TSetArray* const rows = GetSet(set);
  if (rows == nullptr) return QX_ERROR_NO_SET;
  const int size = rows->FArraySize;
  if (rows->is_counted_up()) return row >= 1 && row <= size ? row : 0;
  const int* const first = rows->PIntAr();
  const int* const place = std::find(first, first + size, row);
  return place == first + size ? 0 : static_cast<int>(place - first) + 1;
}

}  // namespace qxe
