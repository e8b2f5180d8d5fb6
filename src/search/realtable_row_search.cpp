// Searches of a real table by row number and by position in a set.
#include <limits.h>

#include <algorithm>

#include "search/set_searches.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

/// Positions from 1, both ends included; empty when last is below first.
struct PositionRange {
  int first;
  int last;
};

/// Positions below and above which nothing lies that is in the set of `n` rows.
struct PositionRanges {
  PositionRange a;
  PositionRange b{1, 0};
};

PositionRanges positions_of(int ope, int n, int n1, int n2) {
  const int from = std::clamp(n1, 0, n == INT_MAX ? n : n + 1);
  const int to = std::clamp(n2, 0, n == INT_MAX ? n : n + 1);
  switch (ope) {
    case QX_OPE_EQ: return {{from, from}};
    case QX_OPE_BETWEEN: return {{from, to}};
    case QX_OPE_LEQ: return {{1, from}};
    case QX_OPE_GEQ: return {{from, n}};
    case QX_OPE_NEQ: return {{1, from - 1}, {from + 1, n}};
    case QX_OPE_WITHIN: return {{from + 1, to - 1}};
    case QX_OPE_LES: return {{1, from - 1}};
    case QX_OPE_GT: return {{from + 1, n}};
    default:
      throw CQXException(report("SearchByRowNo", QX_ERROR_OPERATION, "Invalid Parameter : OpeNo"));
  }
}

/// Appends the rows at a range of positions.
int* copy_positions(const TSetArray& source, PositionRange range, int* out) {
  const int first = std::max(range.first, 1);
  const int last = std::min(range.last, source.FArraySize);
  if (first > last) return out;
  return std::copy(source.PIntAr() + first - 1, source.PIntAr() + last, out);
}

}  // namespace

int TRealTable::SearchByRecNo(int, int set, int ope, int n1, int n2) {
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) {
    return report("SearchByRecNo", QX_ERROR_NO_SET_ID, "No Such Set: %d", set);
  }
  return AddSetWithoutCopy(search_row_numbers(*source, ope, n1, n2));
}

int TRealTable::SearchByRowNo(int set, int ope, int n1, int n2) {
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) {
    return report("SearchByRowNo", QX_ERROR_NO_SET_ID, "No Such Set: %d", set);
  }
  const PositionRanges positions = positions_of(ope, source->FArraySize, n1, n2);
  auto result = set_like(*source);
  int* const out = result->PIntAr();
  int* end = copy_positions(*source, positions.a, out);
  end = copy_positions(*source, positions.b, end);
  result->SetArraySize(static_cast<int>(end - out));
  result->AdjustMemArea();
  return AddSetWithoutCopy(std::move(result));
}

}  // namespace qxe
