#include "search/set_searches.h"

#include <algorithm>

#include "search/scan.h"
#include "search/search_condition.h"
#include "storage/charcode.h"

namespace qxe {

std::unique_ptr<TSetArray> search_hits(const TSetArray& source, const TFilter& column,
                                       const unsigned char* hits) {
  auto result =
      MoveRecsForScan(source, column.PVL->PIntAr(), TableTest{hits, column.VL->FArraySize});
  result->SetSetName(source.GetSetName());
  return result;
}

// Texts behind a leading byte

namespace {

/// A text list past the leading byte of every entry but entry 0.
struct SkippedTexts {
  using FamilyOf = Family<TStrArray>;

  explicit SkippedTexts(const TStrArray& array) : list(array), size(array.FArraySize) {}
  const char* operator[](int i) const { return list[i] + (i > 0 ? 1 : 0); }

  ValueView<TStrArray> list;
  int size;
};

/// Marks the entries from 1 on that meet the condition; entry 0 never hits.
void mark_skipped_texts(const SkippedTexts& list, int ope, const char* v1, const char* v2,
                        unsigned char* hits) {
  const auto mark_range = [&](int first, int end) {
    for (int i = std::max(first, 1); i < end; ++i) hits[i] = 1;
  };
  const auto mark_each = [&](auto&& matches) {
    for (int i = 1; i < list.size; ++i) hits[i] = matches(list[i]);
  };
  const BoundPosition first = bound_position(v1, list);
  switch (ope) {
    case QX_OPE_EQ: return mark_range(first.lower(), first.found ? first.upper() : 0);
    case QX_OPE_BETWEEN: return mark_range(first.lower(), bound_position(v2, list).upper());
    case QX_OPE_LEQ: return mark_range(1, first.upper());
    case QX_OPE_GEQ: return mark_range(first.lower(), list.size);
    case QX_OPE_NEQ: mark_range(1, first.lower()); return mark_range(first.upper(), list.size);
    case QX_OPE_WITHIN: return mark_range(first.upper(), bound_position(v2, list).lower());
    case QX_OPE_LES: return mark_range(1, first.lower());
    case QX_OPE_GT: return mark_range(first.upper(), list.size);
    case QX_OPE_BEGINS: {
      const size_t length = strlen(v1);
      return mark_each([&](const char* text) { return strncmp(text, v1, length) == 0; });
    }
    case QX_OPE_CONTAINS:
      return mark_each([&](const char* text) { return qxembsstr(text, v1) != nullptr; });
    case QX_OPE_ENDS: return mark_each([&](const char* text) { return has_tail(text, v1); });
    default:
      throw CQXException(report("SearchByField2", QX_ERROR_OPERATION, "Invalid Parameter : OpeNo"));
  }
}

}  // namespace

std::unique_ptr<TSetArray> search_skipped_texts(const TSetArray& source, const TFilter& column,
                                                int ope, const char* v1, const char* v2) {
  if (column.VL->GetDataType() != QX_DT_STRING) {
    throw CQXException(
        report("SearchByField2", QX_ERROR_NOT_STRING, "Illegal data type ( Not STRING )"));
  }
  const SkippedTexts list(static_cast<const TStrArray&>(*column.VL));
  const Block<unsigned char> hits = make_cleared_block<unsigned char>(list.size);
  mark_skipped_texts(list, ope, v1, v2, hits.get());
  return search_hits(source, column, hits.get());
}

// Row numbers

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

}  // namespace

std::unique_ptr<TSetArray> search_row_numbers(const TSetArray& source, int ope, int n1, int n2) {
  auto result = set_like(source);
  const int* const rows = source.PIntAr();
  const int* const end = rows + source.FArraySize;
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
  return result;
}

}  // namespace qxe
