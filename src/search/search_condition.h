// From an operator and its bounds to the value numbers that hit. Nothing here looks at a row.
#pragma once

#include "search/find_pos.h"
#include "search/scan_kernels.h"
#include "search/text_search.h"

namespace qxe {

/// An operator as the searches work with it: GEQ, NEQ and GT are the negations of LES, EQ and LEQ.
struct SearchCondition {
  int code = 0;         // QX_OPE_EQ, BETWEEN, LEQ, WITHIN, LES, BEGINS, CONTAINS, ENDS, ISNULL
  bool strict = false;  // NULL-strict: a NULL bound finds nothing, NULL rows never hit
  bool negate = false;

  bool reads_value1() const { return code != QX_OPE_ISNULL; }
  bool reads_value2() const { return code == QX_OPE_BETWEEN || code == QX_OPE_WITHIN; }
  /// Whether each value is tested by itself instead of a range being found by bisection.
  bool tests_each_text() const { return code == QX_OPE_CONTAINS || code == QX_OPE_ENDS; }
};

/// Normalises operator `ope` for a list of strings or not. Throws QX_ERROR_OPERATION, logged under
/// `layer`, for an unknown code or one that does not go with the list's type.
SearchCondition normalized_condition(const char* layer, int ope, bool negate, bool strings);

/// Where a bound stands in an ascending value list.
struct BoundPosition {
  int position = 0;    // last entry not above the bound
  bool found = false;  // that entry equals it

  /// First entry not below the bound.
  int lower() const { return position + (found ? 0 : 1); }
  /// First entry above the bound.
  int upper() const { return position + 1; }
};

template <class Value, class List>
BoundPosition bound_position(const Value& value, const List& list) {
  BoundPosition bound;
  bound.position = find_pos(value, list, &bound.found);
  return bound;
}

/// Value numbers of an integer, double or decimal list of `size` entries that hit.
RangeTest number_ranges(const SearchCondition& condition, BoundPosition first, BoundPosition second,
                        int size);

/// The same for a string list; `empty_value1`: the first bound is the empty string.
RangeTest text_ranges(const SearchCondition& condition, BoundPosition first, BoundPosition second,
                      int size, bool empty_value1);

/// Whether the bytes of `text` end with `pattern`.
bool has_tail(const char* text, const char* pattern);

/// CONTAINS or ENDS as a test of single texts, on character boundaries of the database code.
TextCondition text_condition(const SearchCondition& condition, const char* value1);

}  // namespace qxe
