// Searches of a real table by row number and by position in a set.
#include <limits.h>

#include <algorithm>

#include "tables/realtables.h"

namespace qxe {

namespace {

/// Calls `use` with the comparison that operator `ope` makes with n1 and n2. Throws
/// QX_ERROR_OPERATION for a code above 7.
template <class Use>
auto with_row_test(int ope, int n1, int n2, Use&& use) {
  switch (ope) {
    case QX_OPE_EQ: return use([=](int row) { return row == n1; });
    case QX_OPE_BETWEEN: return use([=](int row) { return n1 <= row && row <= n2; });
    case QX_OPE_LEQ: return use([=](int row) { return row <= n1; });
    case QX_OPE_GEQ: return use([=](int row) { return row >= n1; });
    case QX_OPE_NEQ: return use([=](int row) { return row != n1; });
    case QX_OPE_WITHIN: return use([=](int row) { return n1 < row && row < n2; });
    case QX_OPE_LES: return use([=](int row) { return row < n1; });
    case QX_OPE_GT: return use([=](int row) { return row > n1; });
    default:
      throw CQXException(report("SearchByRecNo", QX_ERROR_OPERATION, "Invalid Parameter : OpeNo"));
  }
}

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
  auto result = set_like(*source);
  const int* const rows = source->PIntAr();
  const int* const end = rows + source->FArraySize;
  int* const out = result->PIntAr();
  const long kept = with_row_test(ope, n1, n2, [&](auto test) {
    if (ope == QX_OPE_EQ) {  // a row number is looked up once
      const int* const hit = std::find_if(rows, end, test);
      return hit == end ? 0L : std::copy(hit, hit + 1, out) - out;
    }
    return static_cast<long>(std::copy_if(rows, end, out, test) - out);
  });
  result->SetArraySize(static_cast<int>(kept));
  result->AdjustMemArea();
  return AddSetWithoutCopy(std::move(result));
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
